#pragma once

#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/TextWriter.h"

namespace ZuXmlLib16 {

/// Writes XML text into a stream. Attribute operations throw CZuException "Attributes must be added
/// before elements" unless the start tag of the current element is open.
///
/// Carriage returns of values are dropped; line feeds become the line end in text and "&#xA;" in
/// attributes. Text that begins with "<![CDATA[" is written as it is. Other control characters and
/// comments, processing instructions, directives and raw elements are not checked.
class ZUXMLLIB16_API CXmlTextWriter : public detail::TextWriter {
 public:
  /// Pretty-printing is on.
  /// @param stream  not owned; must outlive the writer.
  explicit CXmlTextWriter(CTextStream& stream);
  ~CXmlTextWriter() override;

  void WriteComment(CTextRef text) override;
  void WritePI(CTextRef instruction) override;
  void WriteInlineSchema(CTextRef schema) override;
  void WriteStartElement(CTextRef localName, CTextRef namespaceUri) override;
  void WriteString(CTextRef text, ItemType type, bool isDefault) override;
  void WriteEndElement() override;
  void WriteAttributeString(CTextRef localName, CTextRef namespaceUri, CTextRef value,
                            ItemType type) override;
  void WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName, ItemType type) override;
  void WriteAttributeNil() override;

  /// The XML declaration; its encoding is that of the stream.
  void WriteStartDocument();
  /// Text between the declaration and the root, e.g. a document type, unchanged.
  /// @throws CZuException  "Headed directives must appear before an Element has been added."
  void WriteHeaderDirective(CTextRef text);
  /// A finished element, unchanged, at the place of a child.
  void WriteRawElement(CTextRef text);
  /// Ends the start tag of the current element, if there is one, so that a child can follow.
  void CloseParentElm();

  /// Whether texts that are default values are written.
  bool GetWriteDefaultElementValues() const { return m_writeDefaultElementValues; }
  void SetWriteDefaultElementValues(bool write) { m_writeDefaultElementValues = write; }

 private:
  template <class... Parts>
  void Put(const Parts&... parts);
  void PadAndAppend(std::string_view text, bool inAttribute);
  void PutStartTag(CXmlWriterContext& element);
  static bool FindPrefix(CXmlWriterContext& element);
  void PutRootDeclarations();
  CXmlWriterContext& ContextOfOpenTag() const;
  /// The prefix of a namespace for an attribute; declares one on the element when there is none.
  const std::string& AttributePrefix(CXmlWriterContext& element, std::string_view namespaceUri,
                                     std::string_view before);

  bool m_writeDefaultElementValues = false;
};

}  // namespace ZuXmlLib16
