#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/FIVocabulary.h"
#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "fastinfoset/FastInfosetReaderCursor.h"
#include "fastinfoset/FastInfosetReaderText.h"
#include "xml/XmlTree.h"

namespace ZuXmlLib16::detail {

/// The entries of a vocabulary table in the order of their indices, equal ones included.
template <class Entry>
class FastInfosetTable {
 public:
  /// @param name  of the table in the standard, for messages.
  explicit FastInfosetTable(const char* name) : m_name(name) {}

  /// @param index  from 1 on.
  /// @throws CZuException  there is no such entry.
  const Entry& operator[](std::uint32_t index) const {
    if (index > m_entries.size()) ThrowFastInfosetIndex(index, m_name);
    return m_entries[index - 1];
  }
  bool IsFull() const { return m_entries.size() >= CFIVocabulary::kMaxEntries; }
  /// @return false when the table is full and stays as it is.
  bool Add(const Entry& entry) {
    if (IsFull()) return false;
    m_entries.push_back(entry);
    return true;
  }

 private:
  const char* m_name;
  std::vector<Entry> m_entries;
};

inline constexpr std::string_view kXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

/// Builds a tree from the octets of a document behind their identification (ITU-T Rec. X.891).
///
/// Memory grows with what was read, never with a length or a count that was announced: texts that
/// come again by index are shared by the nodes that have them.
class FastInfosetParser {
 public:
  /// @param octets  the whole input, so that messages tell places in it; must outlive this object.
  /// @param start  where the identification ends.
  FastInfosetParser(CXmlDocument& document, XmlTree& tree, std::string_view octets,
                    std::size_t start);

  void Parse();

 private:
  using StringTable = FastInfosetTable<std::string_view>;

  struct Name {
    const XmlName* name;
    std::size_t size;  // of its parts together
  };
  using NameTable = FastInfosetTable<Name>;

  struct Attribute {
    const XmlName* name;
    std::string_view value;  // lasts as long as the tree
  };

  // FastInfosetReaderVocabulary.cpp: what stands before the items of the document.
  void ReadComponents();
  void SkipAdditionalData();
  void ReadNotations();
  void ReadUnparsedEntities();
  void ReadVocabulary();
  template <class ReadItem>
  void ReadList(bool isPresent, ReadItem readItem);
  void StartFromExternalVocabulary(std::string_view uri);
  void StartFrom(const CFIVocabulary& vocabulary);
  std::string_view InitialValue();
  Name InitialName();
  Name NameOf(std::uint32_t prefix, std::uint32_t namespaceName, std::uint32_t localName);

  void ReadDocument();

  // FastInfosetReaderItems.cpp
  void ReadDocumentItem(unsigned int octet);
  void ReadDocumentType(unsigned int octet);
  bool ReadMiscellaneous(unsigned int octet);
  void ReadContent();
  void ReadElement(unsigned int octet);
  Name ElementName(unsigned int octet);
  void ReadNamespaces();
  void AddDeclaration(std::string_view prefix, std::string_view namespaceUri);
  bool ReadAttributes();
  Name AttributeName(unsigned int octet);
  void CheckAttributesDiffer();
  void DeliverAttributes(CXmlElement& element, std::size_t first);
  void CloseElement();
  void CloseTwo();
  void ReadChunk(unsigned int octet);
  void AddText(std::string_view text, bool isLasting);

  // FastInfosetReaderParser.cpp: strings and names.
  using Keep = std::string_view (FastInfosetParser::*)(std::string_view utf8);
  std::string_view Identifier(StringTable& table, Keep keep = &FastInfosetParser::Kept);
  std::string_view NamePart(StringTable& table) {
    return Identifier(table, &FastInfosetParser::CheckedNamePart);
  }
  std::string_view CheckedNamePart(std::string_view utf8);
  std::string_view Kept(std::string_view utf8);
  void SkipIdentifiers(unsigned int flags);
  std::string_view AttributeValue();
  void SkipOtherString();
  Name LiteralName(unsigned int flags, NameTable& table);
  static Name CheckedAttribute(Name name);
  Name MakeName(std::string_view prefix, std::string_view namespaceUri, std::string_view localName);
  /// Counts characters that a node or a name gets.
  void Deliver(std::size_t size) {
    m_delivered += size;
    if (m_delivered > m_maxDelivered) ThrowFastInfosetExpansion(m_maxDelivered);
  }

  CXmlDocument& m_document;
  XmlTree& m_tree;
  const CFastInfosetContext& m_context;
  const bool m_hasNamespaces;
  const bool m_keepsCData;
  const int m_maxDepth;
  const std::size_t m_maxDelivered;
  FastInfosetCursor m_cursor;
  FastInfosetText m_text;

  // Names are in the local character set, in the input where possible; values and texts in the
  // memory of the tree. Strings that nobody asks for count only.
  StringTable m_prefixes{"PREFIX"};
  StringTable m_namespaces{"NAMESPACE NAME"};
  StringTable m_localNames{"LOCAL NAME"};
  StringTable m_otherNCNames{"OTHER NCNAME"};
  StringTable m_otherUris{"OTHER URI"};
  StringTable m_attributeValues{"ATTRIBUTE VALUE"};
  StringTable m_chunks{"CONTENT CHARACTER CHUNK"};
  StringTable m_otherStrings{"OTHER STRING"};
  NameTable m_elementNames{"ELEMENT NAME"};
  NameTable m_attributeNames{"ATTRIBUTE NAME"};

  std::vector<Attribute> m_attributes;  // of the element at hand: declarations, then the others
  std::vector<const XmlName*> m_sortedNames;
  bool m_hasFullTable = false;  // whether a part of the name at hand found no room
  int m_depth = 0;
  std::size_t m_delivered = 0;
  bool m_hasRoot = false;
  bool m_hasDocumentType = false;
  bool m_isEnded = false;
};

}  // namespace ZuXmlLib16::detail
