#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16 {

class CBinaryStream;
class CFastInfosetContext;
enum class FInfoDecl : std::int32_t;

namespace detail {
struct FastInfosetOutput;
struct NamespacePrefix;
}  // namespace detail

/// Writes a Fast Infoset document (ITU-T Rec. X.891 | ISO/IEC 24824-1) into a stream. Values are
/// those that CXmlTextWriter writes: carriage returns are dropped; what has no place in the local
/// character set becomes "?". Nothing is indented. Every name is declared on its element or around
/// it, a default namespace only where it changes the names of no element without one.
///
/// Attribute operations throw CZuException "Attributes must be added before elements" once the
/// current element has content; every operation throws CZuException "The text is too long for Fast
/// Infoset." for more than 2^32 octets, and "The name [%s] cannot be written as Fast Infoset." for
/// what is no name without a colon, or would be a declaration. A writer that has thrown cannot go
/// on with its document.
class ZUXMLLIB16_API CFastInfosetWriter : public CXmlWriter {
 public:
  /// @param stream   not owned; must outlive the writer.
  /// @param context  copied, with its vocabulary.
  CFastInfosetWriter(CBinaryStream& stream, const CFastInfosetContext& context);
  ~CFastInfosetWriter() override;

  /// Starts the document.
  void Open() override;
  /// Ends the document; only then has the stream all of it.
  /// @throws CZuException  "An Element has not been closed."
  void Close() override;
  void SetDefaultNamespace(CTextRef namespaceUri) override;
  void AddNamespace(CTextRef prefix, CTextRef namespaceUri) override;
  void WriteComment(CTextRef text) override;
  /// @param instruction  complete; an XML declaration is left out.
  /// @throws CZuException  "Invalid processing instruction [%s]." for text of another shape.
  void WritePI(CTextRef instruction) override;
  /// Writes the elements of a text in XML, with their attributes, declarations and texts.
  /// @throws CZuException  the text is not well-formed.
  void WriteInlineSchema(CTextRef schema) override;
  /// @throws CZuException  "A document has only one root element."
  void WriteStartElement(CTextRef localName, CTextRef namespaceUri) override;
  /// A text made of CDATA sections, that begins with "<![CDATA[" and ends with "]]>", is written as
  /// what they hold.
  void WriteString(CTextRef text, ItemType type, bool isDefault) override;
  void WriteEndElement() override;
  void WriteAttributeString(CTextRef localName, CTextRef namespaceUri, CTextRef value,
                            ItemType type) override;
  void WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName, ItemType type) override;
  void WriteAttributeNil() override;

  /// The declaration that the document begins with; to be set before Open. None by default.
  /// @throws CZuException  "Invalid Fast Infoset declaration [%d]."; nothing changes then.
  void SetDeclaration(FInfoDecl declaration);
  /// Whether texts that are default values are written.
  bool GetWriteDefaultElementValues() const { return m_writeDefaultElementValues; }
  void SetWriteDefaultElementValues(bool write) { m_writeDefaultElementValues = write; }

 private:
  class SchemaWriter;

  CXmlWriterContext& ContextOfOpenStart() const;
  CXmlWriterContext& OpenElement(CTextRef localName, CTextRef namespaceUri);
  void StartElement(CXmlWriterContext& element);
  void EndStart();
  detail::NamespacePrefix* Bind(std::string_view prefix, std::string_view namespaceUri);
  detail::NamespacePrefix& BindAny(CXmlWriterContext& element, std::string_view namespaceUri);
  detail::NamespacePrefix& BindForElement(CXmlWriterContext& element);
  void WriteCDataSections(std::string_view text);

  std::unique_ptr<detail::FastInfosetOutput> m_output;
  std::string_view m_declaration;
  bool m_writeDefaultElementValues = false;
  int m_nextSparePrefix = 0;
  // The prefix of the last element, null when declarations may have changed, and its scope: most
  // elements have the same.
  detail::NamespacePrefix* m_lastPrefix = nullptr;
  const detail::PrefixScope* m_lastScope = nullptr;
};

}  // namespace ZuXmlLib16
