#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/FIVocabulary.h"
#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/ItemType.h"
#include "fastinfoset/DeclaredPrefixes.h"
#include "fastinfoset/NamePredictor.h"
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
  DocumentEncoder(const DocumentEncoder&) = delete;
  DocumentEncoder& operator=(const DocumentEncoder&) = delete;

  /// @param declaration  an XML declaration, or "".
  void StartDocument(std::string_view declaration);
  /// Hands the last octets to the stream.
  void EndDocument();

  // The start of an element holds its name, declarations and attributes, which may come in any
  // order, since they fill different tables. It ends with EndStart or the first content.

  void StartElement(const DocumentName& name);
  /// @param name  null for the empty namespace.
  void AddDeclaration(NamespacePrefix& prefix, NamespaceName* name);
  void AddAttribute(const DocumentName& name, std::string_view value, ItemType type);
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

  /// One of the two tables of names.
  struct Names {
    NameTable& table;
    NamePredictor predictor;
    unsigned int literal;  // the first octet of a name that is not written by index
  };

  /// The table of attribute values or of texts.
  struct Values {
    StringTable& table;
    std::size_t maxLength;  // of what is put into it
  };

  OctetBuffer& StartItem();
  OctetBuffer& PutPendingTerminator();
  void PutTerminator();
  void TakeOutputWhenFull();
  unsigned long PutUnlessKnown(OctetBuffer& out, const DocumentName& name, Names& names);
  static void PutIdentifier(OctetBuffer& out, std::string_view text, StringTable& table,
                            unsigned int& index);
  void PutUnindexed(OctetBuffer& out, std::string_view text);
  template <int lengthBit>
  void PutEncoded(OctetBuffer& out, unsigned int before);
  bool EncodeValue(std::string_view text, ItemType type);

  CBinaryStream& m_stream;
  CFastInfosetContext m_context;  // its vocabulary is the one of this document
  StringTable m_targets;          // of processing instructions
  Names m_elementNames;
  Names m_attributeNames;
  Values m_attributeValues;
  Values m_chunks;
  std::vector<OctetBuffer> m_full;  // in front of m_out
  OctetBuffer m_out;
  bool m_endsInTerminator = false;  // one that is not in m_out yet: it may share its octet
  // The start of the element that is open.
  bool m_isStartOpen = false;
  unsigned long m_nameIndex = 0;  // 0: the name is in m_name
  OctetBuffer m_name;
  OctetBuffer m_declarations;
  OctetBuffer m_attributes;
  // What had to be cleaned.
  std::string m_localName;
  std::string m_value;
  std::string m_clean;
  std::string m_octets;  // of an encoded value
  unsigned int m_algorithm = 0;
};

}  // namespace detail
}  // namespace ZuXmlLib16
