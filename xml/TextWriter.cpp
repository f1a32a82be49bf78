#include "ZuXmlLib16/TextWriter.h"

#include <cstddef>

#include "core/Errors.h"

namespace ZuXmlLib16::detail {

TextWriter::TextWriter(const char* className, bool hasArrays, bool format, CTextStream& stream)
    : CXmlWriter(className, hasArrays), m_format(format), m_stream(stream) {}

TextWriter::~TextWriter() = default;

void TextWriter::Open() {
  m_stream.Open();
}

void TextWriter::Close() {
  m_stream.Close();
  CXmlWriter::Close();
}

void TextWriter::SetEOLType(EOLType type) {
  switch (type) {
    case EOLType::CrLf:
      m_eol = "\r\n";
      break;
    case EOLType::Lf:
      m_eol = "\n";
      break;
    default:
      ThrowInvalidEolType();
  }
  m_eolType = type;
}

void TextWriter::SetIndentChars(const char* chars) {
  m_indentChars = CTextRef(chars);
  m_indent.clear();
}

void TextWriter::PutIndent(std::uint64_t levels) {
  const std::size_t size = levels * m_indentChars.size();
  while (m_indent.size() < size) {
    m_indent += m_indentChars;
  }
  m_stream.Append(m_indent.data(), size);
}

}  // namespace ZuXmlLib16::detail
