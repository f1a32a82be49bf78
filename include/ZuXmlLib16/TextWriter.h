#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16::detail {

/// What the writers of text have in common: the stream, line ends and indentation.
class ZUXMLLIB16_API TextWriter : public CXmlWriter {
 public:
  ~TextWriter() override;

  void Open() override;
  /// Closes the stream.
  /// @throws CZuException  "An Element has not been closed.", after the stream was closed; what the
  /// stream throws.
  void Close() override;

  /// Pretty-printing.
  bool GetFormat() const { return m_format; }
  void SetFormat(bool format) { m_format = format; }
  EOLType GetEOLType() const { return m_eolType; }
  /// @throws CZuException  "Invalid EOL type.".
  void SetEOLType(EOLType type);
  const std::string& GetIndentChars() const { return m_indentChars; }
  void SetIndentChars(const char* chars);

 protected:
  /// @param stream  not owned; must outlive the writer.
  TextWriter(const char* className, bool hasArrays, bool format, CTextStream& stream);

  CTextStream& Stream() const { return m_stream; }
  const std::string& Eol() const { return m_eol; }
  void PutEolWhenFormatting() {
    if (m_format) m_stream.Append(m_eol.data(), m_eol.size());
  }
  void PutIndentWhenFormatting(std::uint64_t levels) {
    if (m_format) PutIndent(levels);
  }
  void FlushWhenFull() {
    if (m_stream.GetLength() > kFlushAbove) m_stream.Flush();
  }

 private:
  static constexpr std::size_t kFlushAbove = 4095;

  void PutIndent(std::uint64_t levels);

  std::string m_indentChars = "\t";
  std::string m_eol = "\n";
  EOLType m_eolType = EOLType::Lf;
  bool m_format;
  CTextStream& m_stream;
  std::string m_indent;  // indent chars, repeated as often as was needed so far
};

}  // namespace ZuXmlLib16::detail
