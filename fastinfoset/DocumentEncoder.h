#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ZuXmlLib16/FIVocabulary.h"
#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/ItemType.h"
#include "fastinfoset/DeclaredPrefixes.h"
#include "fastinfoset/OctetBuffer.h"

namespace ZuXmlLib16 {

class CBinaryStream;

namespace detail {

/// Turns the items of a document into octets (ITU-T Rec. X.891, annex C). Takes care of tables and
/// terminators; what may stand where, and with which declarations, is the caller's affair. Texts
/// are in the local character set; they end at their first NUL and lose their carriage returns.
class DocumentEncoder {
 public:
  /// @param stream   not owned.
  /// @param context  copied.
  DocumentEncoder(CBinaryStream& stream, const CFastInfosetContext& context);

  /// @param declaration  an XML declaration, or "".
  void StartDocument(std::string_view declaration);
  /// Hands the last octets to the stream.
  void EndDocument();

  // An element starts with its name; declarations and attributes follow in any order, since they
  // fill different tables; then come EndStart, content and EndElement.

  /// A name of an element or attribute. prefix is null without a namespace, the empty one when the
  /// namespace is the default one. The namespace is the one to which the prefix is bound.
  struct Name {
    std::string_view localName;
    const NamespacePrefix* prefix;
  };
  void StartElement(const Name& name);
  /// @param name  null for the empty namespace.
  void AddDeclaration(NamespacePrefix& prefix, NamespaceName* name);
  void AddAttribute(const Name& name, std::string_view value, ItemType type);
  void EndStart();
  void EndElement();

  void AddText(std::string_view text, ItemType type);
  /// Text that is to be shown as a CDATA section.
  void AddCData(std::string_view text);
  void AddComment(std::string_view text);
  void AddInstruction(std::string_view target, std::string_view content);

 private:
  using StringTable = CFIVocabulary::CFIStringTable;
  using NameTable = CFIVocabulary::CFIQNameTable;
  enum class NamePlace { Element, Attribute };

  OctetBuffer& StartItem();
  void PutTerminator();
  void FlushWhenFull();
  void Flush();
  template <NamePlace place>
  void PutName(OctetBuffer& out, const Name& name, NameTable& table);
  static void PutIdentifier(OctetBuffer& out, std::string_view text, StringTable& table,
                            unsigned int& index);
  void PutUnindexed(OctetBuffer& out, std::string_view text);
  template <int lengthBit>
  void PutEncoded(OctetBuffer& out, unsigned int before);
  bool EncodeValue(std::string_view text, ItemType type);
  std::string_view Clean(std::string_view text);

  CBinaryStream& m_stream;
  CFastInfosetContext m_context;  // its vocabulary is the one of this document
  StringTable m_targets;          // of processing instructions
  OctetBuffer m_out;
  bool m_endsInTerminator = false;  // one that is not in m_out yet: it may share its octet
  // The start of the element that is open.
  OctetBuffer m_name;
  OctetBuffer m_declarations;
  OctetBuffer m_attributes;
  std::string m_clean;
  std::string m_part;    // of a name
  std::string m_octets;  // of an encoded value
  unsigned int m_algorithm = 0;
};

}  // namespace detail
}  // namespace ZuXmlLib16
