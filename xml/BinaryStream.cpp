#include "ZuXmlLib16/Streams.h"
#include "core/Errors.h"
#include "xml/FileMark.h"

namespace ZuXmlLib16 {

bool detail::WriteByteOrderMark(std::FILE* file, XmlEncoding encoding) {
  if (encoding != XmlEncoding::Utf16 && encoding != XmlEncoding::Wide) return true;
  constexpr unsigned char kMark[] = {0xFF, 0xFE};
  return std::fwrite(kMark, sizeof kMark, 1, file) == 1;
}

CBinaryStream::CBinaryStream() : CBinaryStream("CBinaryStream") {}

CBinaryStream::CBinaryStream(const char* className) : CInstanceMonitor(className) {}

CBinaryStream::CBinaryStream(const CBinaryData& data) : CBinaryStream("CBinaryStream", data) {}

CBinaryStream::CBinaryStream(const char* className, const CBinaryData& data)
    : CInstanceMonitor(className), m_data(data) {}

CFileBinaryStream::CFileBinaryStream(CTextRef path, XmlEncoding encoding)
    : CFileBinaryStream(path, encoding, CBinaryData()) {}

CFileBinaryStream::CFileBinaryStream(CTextRef path, XmlEncoding encoding, const CBinaryData& data)
    : CBinaryStream("CFileBinaryStream", data), m_path(path), m_encoding(encoding) {}

void CFileBinaryStream::ToFile() {
  detail::FilePtr file(std::fopen(m_path.c_str(), "wt"));
  const bool isWritten = file != nullptr && detail::WriteByteOrderMark(file.get(), m_encoding) &&
                         m_data.GetLength() != 0 &&
                         std::fwrite(m_data.GetData(), m_data.GetLength(), 1, file.get()) == 1 &&
                         std::fclose(file.release()) == 0;
  if (!isWritten) ThrowFileNotWritten(m_path);
}

}  // namespace ZuXmlLib16
