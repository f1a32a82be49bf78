// What stands between the identification of a document and its items (ITU-T Rec. X.891, C.2): most
// of it is of no use for a tree, but has its place in the tables.

#include "core/Errors.h"
#include "fastinfoset/FastInfosetReaderParser.h"

namespace ZuXmlLib16::detail {

void FastInfosetParser::ReadComponents() {
  const unsigned int present = m_cursor.Octet();
  if (present >= 0x80) m_cursor.Refuse();
  if ((present & 0x40) != 0) SkipAdditionalData();
  if ((present & 0x20) != 0) {
    ReadVocabulary();
  } else {
    StartFromExternalVocabulary({});
  }
  if ((present & 0x10) != 0) ReadNotations();
  if ((present & 0x08) != 0) ReadUnparsedEntities();
  if ((present & 0x04) != 0) m_cursor.PlainString();  // the original character encoding
  if ((present & 0x02) != 0 && m_cursor.Octet() > 1) m_cursor.Refuse();  // standalone
  if ((present & 0x01) != 0) SkipOtherString();                          // the version of XML
}

void FastInfosetParser::SkipAdditionalData() {
  ReadList(true, [this] {
    m_cursor.PlainString();  // the URI that tells what it is
    m_cursor.PlainString();
  });
}

void FastInfosetParser::ReadNotations() {
  for (unsigned int octet = m_cursor.Octet(); octet != 0xF0; octet = m_cursor.Octet()) {
    if ((octet & ~3U) != 0xC0) m_cursor.Refuse();
    Identifier(m_otherNCNames);
    SkipIdentifiers(octet);
  }
}

void FastInfosetParser::ReadUnparsedEntities() {
  for (unsigned int octet = m_cursor.Octet(); octet != 0xF0; octet = m_cursor.Octet()) {
    if ((octet & ~1U) != 0xD0) m_cursor.Refuse();
    Identifier(m_otherNCNames);
    SkipIdentifiers(octet | 2);
    Identifier(m_otherNCNames);  // the notation
  }
}

/// The initial vocabulary: what it holds comes behind the entries that every document starts with
/// and those of an external vocabulary.
void FastInfosetParser::ReadVocabulary() {
  const unsigned int high = m_cursor.Octet();
  if (high >= 0x20) m_cursor.Refuse();
  const unsigned int present = high << 8 | m_cursor.Octet();
  const auto has = [&](unsigned int component) { return (present & component) != 0; };
  StartFromExternalVocabulary(has(0x1000) ? m_cursor.PlainString() : std::string_view());
  ReadList(has(0x0800), [this] { m_text.AddAlphabet(m_cursor.PlainString()); });
  ReadList(has(0x0400), [this] { m_cursor.PlainString(); });  // algorithms of applications
  ReadList(has(0x0200), [this] { m_prefixes.Add(CheckedNamePart(m_cursor.PlainString())); });
  ReadList(has(0x0100), [this] { m_namespaces.Add(Kept(m_cursor.PlainString())); });
  ReadList(has(0x0080), [this] { m_localNames.Add(CheckedNamePart(m_cursor.PlainString())); });
  ReadList(has(0x0040), [this] { m_otherNCNames.Add(Kept(m_cursor.PlainString())); });
  ReadList(has(0x0020), [this] { m_otherUris.Add(Kept(m_cursor.PlainString())); });
  ReadList(has(0x0010), [this] { m_attributeValues.Add(m_tree.CopySharedText(InitialValue())); });
  ReadList(has(0x0008),
           [this] { m_chunks.Add(m_tree.CopySharedText(m_text.WithoutCR(InitialValue()))); });
  ReadList(has(0x0004), [this] {
    InitialValue();
    m_otherStrings.Add({});
  });
  ReadList(has(0x0002), [this] { m_elementNames.Add(InitialName()); });
  ReadList(has(0x0001), [this] { m_attributeNames.Add(CheckedAttribute(InitialName())); });
}

template <class ReadItem>
void FastInfosetParser::ReadList(bool isPresent, ReadItem readItem) {
  if (!isPresent) return;
  for (std::uint32_t left = m_cursor.ItemCount(); left > 0; --left) {
    readItem();
  }
}

/// @param uri  "" for none.
void FastInfosetParser::StartFromExternalVocabulary(std::string_view uri) {
  const std::string_view name = m_text.DecodeUtf8(uri);
  if (name == m_context.GetExternalVocabularyURI()) return StartFrom(m_context.GetVocabulary());
  if (!uri.empty()) ThrowFastInfosetUnknown("external vocabulary", name);
  StartFrom(CFIVocabulary());
}

void FastInfosetParser::StartFrom(const CFIVocabulary& vocabulary) {
  for (const std::string_view prefix : vocabulary.GetPrefixNamesTable()) {
    m_prefixes.Add(m_tree.CopySharedText(CheckedNamePart(prefix)));
  }
  for (const std::string_view uri : vocabulary.GetNamespaceNamesTable()) {
    m_namespaces.Add(m_tree.CopySharedText(Kept(uri)));
  }
  for (const std::string_view name : vocabulary.GetLocalNamesTable()) {
    m_localNames.Add(m_tree.CopySharedText(CheckedNamePart(name)));
  }
  for (const std::string_view value : vocabulary.GetAttributeValuesTable()) {
    m_attributeValues.Add(m_tree.CopySharedText(m_text.DecodeUtf8(value)));
  }
  for (const std::string_view text : vocabulary.GetCharacterChunksTable()) {
    m_chunks.Add(m_tree.CopySharedText(m_text.WithoutCR(m_text.DecodeUtf8(text))));
  }
  for (const CFIVocabulary::CQNameParts& name : vocabulary.GetElementNamesTable()) {
    m_elementNames.Add(NameOf(name.prefix, name.namespaceName, name.localName));
  }
  for (const CFIVocabulary::CQNameParts& name : vocabulary.GetAttributeNamesTable()) {
    m_attributeNames.Add(CheckedAttribute(NameOf(name.prefix, name.namespaceName, name.localName)));
  }
}

/// The text of a value (C.14 without flag and index), valid until the next one.
std::string_view FastInfosetParser::InitialValue() {
  const unsigned int octet = m_cursor.Octet();
  if (octet >= 0x40) m_cursor.Refuse();
  return m_text.Decode(m_cursor.String<4>(octet));
}

/// A name by the indices of its parts (C.16).
FastInfosetParser::Name FastInfosetParser::InitialName() {
  const unsigned int flags = m_cursor.Octet();
  if (flags > 3 || flags == 2) m_cursor.Refuse();
  const auto index = [this] {
    const unsigned int octet = m_cursor.Octet();
    if (octet >= 0x80) m_cursor.Refuse();
    return m_cursor.IndexOnBit2(octet);
  };
  const std::uint32_t prefix = (flags & 2) != 0 ? index() : 0;
  const std::uint32_t namespaceName = (flags & 1) != 0 ? index() : 0;
  return NameOf(prefix, namespaceName, index());
}

/// A name whose prefix and namespace have the index 0 when there is none.
FastInfosetParser::Name FastInfosetParser::NameOf(std::uint32_t prefix, std::uint32_t namespaceName,
                                                  std::uint32_t localName) {
  return MakeName(prefix != 0 ? m_prefixes[prefix] : std::string_view(),
                  namespaceName != 0 ? m_namespaces[namespaceName] : std::string_view(),
                  m_localNames[localName]);
}

}  // namespace ZuXmlLib16::detail
