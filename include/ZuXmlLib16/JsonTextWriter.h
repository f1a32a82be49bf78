#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16 {

class CTextStream;

/// Writes JSON (RFC 8259) into a stream. An element becomes a member of its parent's object: its
/// text alone, or an object that holds its attributes ("@name"), children and text ("#text"). The
/// items of a collection (see CXmlWriter::ContextState) become an array under their common name.
/// Values of the number, boolean, decimal and integer types are bare when JSON has a form for them,
/// all others are strings.
///
/// In the mode JsonRoundTrip::Full names keep their prefixes, which the root declares as "@xmlns"
/// members; every namespace but the root's must then be declared before the root is started, with
/// SetDefaultNamespace or AddNamespace. The other modes leave namespaces out.
///
/// Unless CJsonContext::GetStrictEscaping is set, quotes and backslashes of values are written as
/// they are, line feeds become the line end, and carriage returns are dropped.
///
/// Text that is written before an attribute or child of the same element, or twice, makes the later
/// call throw CZuException "Attributes must be added before elements"; behind an attribute or child
/// text may stand anywhere.
class ZUXMLLIB16_API CJsonTextWriter : public CXmlWriter {
 public:
  /// @param stream    not owned; must outlive the writer.
  /// @param settings  its mode and escaping are used; copied.
  explicit CJsonTextWriter(CTextStream& stream, const CJsonContext& settings = CJsonContext());
  ~CJsonTextWriter() override;

  void Open() override;
  /// Closes the stream.
  /// @throws CZuException  "An Element has not been closed.", after the stream was closed; what the
  /// stream throws.
  void Close() override;
  /// Writes "/* text */" and a line end. RFC 8259 has no comments.
  void WriteComment(CTextRef text) override;
  /// Writes nothing.
  void WritePI(CTextRef instruction) override;
  /// Writes nothing.
  void WriteInlineSchema(CTextRef schema) override;
  /// @throws CZuException  "Unknown Namespace: %s." with the name, when the namespace of an element
  /// below the root has no prefix in scope.
  void WriteStartElement(CTextRef localName, CTextRef namespaceUri) override;
  void WriteString(CTextRef text, ItemType type, bool isDefault) override;
  void WriteEndElement() override;
  /// @throws CZuException  "Unknown Namespace: %s." with the name, when the root has no prefix for
  /// the namespace.
  void WriteAttributeString(CTextRef localName, CTextRef namespaceUri, CTextRef value,
                            ItemType type) override;
  /// Writes xsi:type in the mode JsonRoundTrip::Full, declaring what has no prefix yet; nothing in
  /// the others.
  void WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName, ItemType type) override;
  /// Makes the element null unless it gets a text.
  void WriteAttributeNil() override;

  /// The brace before the root.
  void WriteStartDocument();
  /// The brace behind it.
  void WriteEndDocument();

  /// Pretty-printing; off by default.
  void SetFormat(bool format) { m_format = format; }
  /// @throws CZuException  "Invalid EOL type.".
  void SetEOLType(EOLType type);
  void SetIndentChars(const char* chars);

 private:
  /// What was written of an open element.
  struct Level {
    bool isObjectOpen = false;
    bool hasValue = false;  // a text, in place of an object
    bool isNil = false;
    bool hasArray = false;  // open, of the items below
    std::string itemName;
    std::string itemNamespace;
  };

  template <class... Parts>
  void Put(const Parts&... parts);
  void PutEolWhenFormatting();
  /// @param below  levels below the innermost open element.
  void PutIndent(std::uint64_t below);
  void PutEscaped(std::string_view text, bool isStrict);
  void PutString(std::string_view text);
  void PutValue(std::string_view text, ItemType type);
  void PutName(const std::string* prefix, std::string_view name);
  /// Begins a member of the innermost open element that is no child, up to its value.
  template <class... Parts>
  void PutMember(const Parts&... nameParts);
  void PutDeclaration(std::string_view prefix, std::string_view namespaceUri);

  /// @throws CZuException  the element already has a text for its value.
  Level& LevelForMember();
  void PushLevel(CTextRef localName, CTextRef namespaceUri);
  void BeginMember(Level& level);
  void OpenArray(Level& level, std::string_view itemName, std::string_view itemNamespace);
  void CloseArray(Level& level);
  void StartRoot(CTextRef localName, CTextRef namespaceUri);
  void StartChild(CTextRef localName, CTextRef namespaceUri);
  /// The prefix a child is written with, null for none.
  const std::string* ChildPrefix(std::string_view localName, std::string_view namespaceUri) const;
  /// The prefix of a namespace, which is declared on the innermost open element if need be.
  std::string DeclaredPrefix(std::string_view namespaceUri);
  void FlushWhenFull();

  std::string m_indentChars = "\t";
  std::string m_eol = "\n";
  EOLType m_eolType = EOLType::Lf;
  JsonRoundTrip m_mode;
  bool m_isStrict;
  bool m_format = false;
  CTextStream& m_stream;
  std::vector<Level> m_levels;  // those of closed elements are used again
  std::uint64_t m_openArrays = 0;
  CNamespaceMap m_prefixes;  // all that were declared, wherever
  std::string m_indent;      // indent chars, repeated as often as was needed so far
};

}  // namespace ZuXmlLib16
