// The items of a document: elements with their content, and what stands around them (ITU-T Rec.
// X.891, C.2 to C.9).

#include <algorithm>
#include <functional>

#include "core/Errors.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "fastinfoset/FastInfosetReaderParser.h"

namespace ZuXmlLib16::detail {
namespace {

// First octets; flags and indices are 0 here.
constexpr unsigned int kChunk = 0x80;
constexpr unsigned int kBehindChunks = 0xC0;
constexpr unsigned int kChunkIndex = 0x20;
constexpr unsigned int kDocumentType = 0xC4;
constexpr unsigned int kEntityReference = 0xC8;
constexpr unsigned int kDeclaration = 0xCC;
constexpr unsigned int kInstruction = 0xE1;
constexpr unsigned int kComment = 0xE2;
constexpr unsigned int kEnd = 0xF0;
constexpr unsigned int kTwoEnds = 0xFF;
constexpr unsigned int kNamespaces = 0x38;
constexpr unsigned int kHasAttributes = 0x40;

bool IsReserved(std::string_view prefix, std::string_view namespaceUri) {
  return prefix == "xml" || prefix == "xmlns" ||
         namespaceUri == "http://www.w3.org/XML/1998/namespace" || namespaceUri == kXmlnsNamespace;
}

}  // namespace

void FastInfosetParser::ReadDocumentItem(unsigned int octet) {
  if (octet < kChunk) {
    if (m_hasRoot) m_cursor.Refuse();
    m_hasRoot = true;
    ReadElement(octet);
    ReadContent();
  } else if (octet == kEnd) {
    m_isEnded = true;
  } else if ((octet & ~3U) == kDocumentType) {
    if (m_hasRoot || m_hasDocumentType) m_cursor.Refuse();
    m_hasDocumentType = true;
    ReadDocumentType(octet);
  } else if (!ReadMiscellaneous(octet)) {
    m_cursor.Refuse();
  }
}

void FastInfosetParser::ReadDocumentType(unsigned int octet) {
  SkipIdentifiers(octet);
  while ((octet = m_cursor.Octet()) != kEnd) {
    if (octet != kInstruction) m_cursor.Refuse();
    ReadMiscellaneous(octet);
  }
}

/// @return whether the item was a comment or a processing instruction.
bool FastInfosetParser::ReadMiscellaneous(unsigned int octet) {
  if (octet != kComment && octet != kInstruction) return false;
  if (octet == kInstruction) Identifier(m_otherNCNames);
  SkipOtherString();
  return true;
}

void FastInfosetParser::ReadContent() {
  while (m_depth > 0) {
    const unsigned int octet = m_cursor.Octet();
    if (octet < kChunk) {
      ReadElement(octet);
    } else if (octet == kEnd) {
      CloseElement();
    } else if (octet < kBehindChunks) {
      ReadChunk(octet);
    } else if (octet == kTwoEnds) {
      CloseTwo();
    } else if ((octet & ~3U) == kEntityReference) {
      Identifier(m_otherNCNames);
      SkipIdentifiers(octet);
    } else if (!ReadMiscellaneous(octet)) {
      m_cursor.Refuse();
    }
  }
}

void FastInfosetParser::CloseElement() {
  m_tree.Close();
  --m_depth;
}

void FastInfosetParser::CloseTwo() {
  CloseElement();
  if (m_depth > 0) {
    CloseElement();
  } else {
    m_isEnded = true;
  }
}

void FastInfosetParser::ReadElement(unsigned int octet) {
  m_attributes.clear();
  const bool hasAttributes = (octet & kHasAttributes) != 0;
  if ((octet & 0x3F) == kNamespaces) {
    ReadNamespaces();
    octet = m_cursor.Octet();
    if (octet >= kHasAttributes) m_cursor.Refuse();
  }
  const Name name = ElementName(octet);
  if (m_depth >= m_maxDepth) ThrowFastInfosetDepth(m_maxDepth);
  Deliver(name.size);
  CXmlElement& element = *m_tree.Open(name.name);
  ++m_depth;
  if (!hasAttributes && m_attributes.empty()) return;
  const std::size_t first = m_hasNamespaces ? m_attributes.size() : 0;
  const bool isEmpty = hasAttributes && ReadAttributes();
  CheckAttributesDiffer();
  DeliverAttributes(element, first);
  if (isEmpty) CloseElement();
}

FastInfosetParser::Name FastInfosetParser::ElementName(unsigned int octet) {
  octet &= 0x3F;
  if (octet >= 0x3C) return LiteralName(octet, m_elementNames);
  return m_elementNames[m_cursor.IndexOnBit3(octet)];
}

void FastInfosetParser::ReadNamespaces() {
  for (unsigned int octet = m_cursor.Octet(); octet != kEnd; octet = m_cursor.Octet()) {
    if ((octet & ~3U) != kDeclaration) m_cursor.Refuse();
    const std::string_view prefix = (octet & 2) != 0 ? NamePart(m_prefixes) : std::string_view();
    const std::string_view uri = (octet & 1) != 0 ? Identifier(m_namespaces) : std::string_view();
    if (IsReserved(prefix, uri)) ThrowFastInfosetDeclaration(prefix);
    AddDeclaration(prefix, uri);
  }
}

/// A declaration counts as an attribute, although only without namespaces it becomes one.
void FastInfosetParser::AddDeclaration(std::string_view prefix, std::string_view namespaceUri) {
  Deliver(prefix.size() + namespaceUri.size());
  std::string name = "xmlns";
  if (!prefix.empty()) name.append(1, ':').append(prefix);
  if (m_hasNamespaces) {
    m_document.AddNamespaceAlias(prefix, namespaceUri);
  } else {
    namespaceUri = m_tree.CopySharedText(namespaceUri);
  }
  m_attributes.push_back({m_tree.NameOf({}, name), namespaceUri});
}

/// @return whether the element ends with its attributes.
bool FastInfosetParser::ReadAttributes() {
  for (;;) {
    const unsigned int octet = m_cursor.Octet();
    if (octet == kEnd) return false;
    if (octet == kTwoEnds) return true;
    if (octet >= 0x80) m_cursor.Refuse();
    const Name name = AttributeName(octet);
    const std::string_view value = AttributeValue();
    Deliver(name.size + value.size());
    m_attributes.push_back({name.name, value});
  }
}

FastInfosetParser::Name FastInfosetParser::AttributeName(unsigned int octet) {
  if ((octet & ~3U) == 0x78) return CheckedAttribute(LiteralName(octet, m_attributeNames));
  return m_attributeNames[m_cursor.IndexOnBit2(octet)];
}

void FastInfosetParser::CheckAttributesDiffer() {
  constexpr std::size_t kFew = 8;
  m_sortedNames.clear();
  for (const Attribute& attribute : m_attributes) {
    const bool isKnown = m_attributes.size() <= kFew &&
                         std::find(m_sortedNames.begin(), m_sortedNames.end(), attribute.name) !=
                             m_sortedNames.end();
    if (isKnown) ThrowFastInfosetDuplicate(attribute.name->localName);
    m_sortedNames.push_back(attribute.name);
  }
  if (m_attributes.size() <= kFew) return;
  std::sort(m_sortedNames.begin(), m_sortedNames.end(), std::less<>());
  const auto twice = std::adjacent_find(m_sortedNames.begin(), m_sortedNames.end());
  if (twice != m_sortedNames.end()) ThrowFastInfosetDuplicate((*twice)->localName);
}

/// @param first  the first one that the element gets.
void FastInfosetParser::DeliverAttributes(CXmlElement& element, std::size_t first) {
  const std::size_t count = m_attributes.size() - first;
  if (count == 0) return;
  m_tree.AttributesOf(element).reserve(count);
  for (std::size_t i = first; i < m_attributes.size(); ++i) {
    m_tree.AddLastingAttribute(element, m_attributes[i].name, m_attributes[i].value);
  }
}

void FastInfosetParser::ReadChunk(unsigned int octet) {
  if ((octet & kChunkIndex) != 0) return AddText(m_chunks[m_cursor.IndexOnBit4(octet)], true);
  const EncodedString string = m_cursor.String<2>(octet);
  std::string_view text = m_text.DecodeContent(string);
  const bool isShared = string.isAdded && !m_chunks.IsFull();
  if (isShared) {
    text = m_tree.CopySharedText(text);
    m_chunks.Add(text);
  }
  const bool isCData = m_keepsCData && string.format == StringFormat::Algorithm &&
                       string.number == static_cast<unsigned int>(EncodingAlgorithm::Cdata);
  if (isCData) AddText("<![CDATA[", true);
  AddText(text, isShared);
  if (isCData) AddText("]]>", true);
}

void FastInfosetParser::AddText(std::string_view text, bool isLasting) {
  Deliver(text.size());
  m_tree.AddText(text, isLasting);
}

}  // namespace ZuXmlLib16::detail
