#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/Streams.h"
#include "core/Errors.h"
#include "xml/CharacterSet.h"
#include "xml/FileMark.h"

namespace ZuXmlLib16 {

CTextStream::CTextStream() : CTextStream(XmlEncoding::Unknown) {}

CTextStream::CTextStream(XmlEncoding encoding) : CTextStream("CTextStream", encoding) {}

CTextStream::CTextStream(const char* className, XmlEncoding encoding)
    : CInstanceMonitor(className), m_encoding(encoding) {}

CTextStream::~CTextStream() = default;

void CTextStream::Open() {
  m_buffer.Empty();
}

void CTextStream::Close() {}

void CTextStream::Flush() {}

CBinaryData CTextStream::GetEncodedStream() const {
  switch (m_encoding) {
    case XmlEncoding::Utf8:
      return detail::LocaleIsUtf8() ? GetRepairedText()
                                    : CEncoder::LocalCodePageToUtf8Binary(GetText());
    case XmlEncoding::Utf16:
    case XmlEncoding::Wide:
      return CEncoder::LocalCodePageToUnicodeBinary(GetText());
    case XmlEncoding::Unknown:
      break;
  }
  ThrowUnknownEncoding();
}

CBinaryData CTextStream::GetRepairedText() const {
  const std::size_t length = GetLength();
  std::unique_ptr<unsigned char[]> bytes(new unsigned char[length]);
  auto* const text = reinterpret_cast<char*>(bytes.get());
  m_buffer.CopyTo(text);
  detail::RepairUtf8(text, length);
  return CBinaryData(bytes.release(), length, true);
}

CFileTextStream::CFileTextStream(CTextRef path, XmlEncoding encoding)
    : CTextStream("CFileTextStream", encoding), m_path(path) {}

CFileTextStream::~CFileTextStream() = default;

void CFileTextStream::Open() {
  CTextStream::Open();
  m_file.reset(std::fopen(m_path.c_str(), "wt"));
  if (m_file == nullptr || !detail::WriteByteOrderMark(m_file.get(), GetEncoding())) {
    m_file.reset();
    ThrowFileNotWritten(m_path);
  }
}

void CFileTextStream::Close() {
  try {
    Flush();
  } catch (...) {
    m_file.reset();
    throw;
  }
  if (m_file != nullptr && std::fclose(m_file.release()) != 0) ThrowFlushFailed();
  CTextStream::Close();
}

void CFileTextStream::Flush() {
  if (m_file == nullptr || GetLength() == 0) return;
  if (GetEncoding() == XmlEncoding::Utf8 && detail::LocaleIsUtf8()) {
    m_staging.clear();
    m_buffer.CopyTo(m_staging);
    detail::RepairUtf8(m_staging.data(), m_staging.size());
    Write(m_staging.data(), m_staging.size());
  } else {
    const CBinaryData encoded = GetEncodedStream();
    Write(encoded.GetData(), encoded.GetLength());
  }
  m_buffer.Empty();
}

void CFileTextStream::Write(const void* data, std::size_t length) {
  // One item, so that a short write counts as none.
  if (std::fwrite(data, length, 1, m_file.get()) == 1) return;
  m_file.reset();
  ThrowFlushFailed();
}

}  // namespace ZuXmlLib16
