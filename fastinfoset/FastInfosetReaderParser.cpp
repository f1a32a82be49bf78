#include "fastinfoset/FastInfosetReaderParser.h"

#include <algorithm>

#include "ZuXmlLib16/Exceptions.h"
#include "core/Errors.h"
#include "fastinfoset/Names.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::size_t kAlwaysDelivered = std::size_t{64} << 20;

/// How many characters the nodes of a tree may have together.
std::size_t DeliveryLimit(const CSerializationContext& context, std::size_t documentSize) {
  const std::size_t factor = context.GetFIContext().GetMaxExpansion();
  std::size_t limit = 0;
  if (__builtin_mul_overflow(factor, documentSize, &limit)) limit = SIZE_MAX;
  limit = std::max(limit, kAlwaysDelivered);
  const std::size_t sizeLimit = context.GetMaxDocumentSize();
  return sizeLimit != 0 ? std::min(limit, sizeLimit) : limit;
}

}  // namespace

FastInfosetParser::FastInfosetParser(CXmlDocument& document, XmlTree& tree, std::string_view octets,
                                     std::size_t start)
    : m_document(document),
      m_tree(tree),
      m_context(document.GetContext().GetFIContext()),
      m_hasNamespaces(document.GetContext().GetSchemaType() != SchemaType::NoNamespaces),
      m_keepsCData(!document.GetContext().GetStripCDATA()),
      m_maxDepth(m_context.GetMaxDepth()),
      m_maxDelivered(DeliveryLimit(document.GetContext(), octets.size())),
      m_cursor(octets) {
  m_cursor.Take(start);
}

void FastInfosetParser::Parse() {
  try {
    ReadDocument();
  } catch (const CZuException& failure) {
    m_tree.KeepOpenText();
    ThrowFastInfosetFailure(failure, m_cursor.Position());
  } catch (...) {
    m_tree.KeepOpenText();
    throw;
  }
}

void FastInfosetParser::ReadDocument() {
  ReadComponents();
  while (!m_isEnded) {
    ReadDocumentItem(m_cursor.Octet());
  }
  if (!m_hasRoot) ThrowFastInfosetWithoutRoot();
  if (!m_cursor.IsAtEnd()) ThrowFastInfosetDataAfterEnd();
}

/// A string that is always added when it does not come by index (C.13).
/// @param keep  checks a new one and gives the text that it stands for.
std::string_view FastInfosetParser::Identifier(StringTable& table, Keep keep) {
  const unsigned int octet = m_cursor.Octet();
  if (octet >= 0x80) return table[m_cursor.IndexOnBit2(octet)];
  const std::string_view text = (this->*keep)(m_cursor.Take(m_cursor.Length<7>(octet)));
  m_hasFullTable |= !table.Add(text);
  return text;
}

std::string_view FastInfosetParser::CheckedNamePart(std::string_view utf8) {
  const std::string_view text = Kept(utf8);
  if (!IsNamePart(utf8)) ThrowFastInfosetName(text);
  return text;
}

/// The text that UTF-8 stands for: where it lies when that is it, otherwise kept in the tree.
std::string_view FastInfosetParser::Kept(std::string_view utf8) {
  const std::string_view text = m_text.DecodeUtf8(utf8);
  return text.data() == utf8.data() ? text : m_tree.CopySharedText(text);
}

/// System and public identifiers.
void FastInfosetParser::SkipIdentifiers(unsigned int flags) {
  if ((flags & 2) != 0) Identifier(m_otherUris);
  if ((flags & 1) != 0) Identifier(m_otherUris);
}

/// A value that lasts as long as the tree (C.14).
std::string_view FastInfosetParser::AttributeValue() {
  const unsigned int octet = m_cursor.Octet();
  if (octet == 0xFF) return {};
  if (octet >= 0x80) return m_attributeValues[m_cursor.IndexOnBit2(octet)];
  const EncodedString string = m_cursor.String<4>(octet);
  std::string_view text = m_text.Decode(string);
  if (!string.isAdded || m_attributeValues.IsFull()) return m_tree.CopyText(text);
  text = m_tree.CopySharedText(text);
  m_attributeValues.Add(text);
  return text;
}

void FastInfosetParser::SkipOtherString() {
  const unsigned int octet = m_cursor.Octet();
  if (octet == 0xFF) return;
  if (octet >= 0x80) {
    static_cast<void>(m_otherStrings[m_cursor.IndexOnBit2(octet)]);
    return;
  }
  const EncodedString string = m_cursor.String<4>(octet);
  m_text.Decode(string);
  if (string.isAdded) m_otherStrings.Add({});
}

/// @param flags  in the last two bits: whether there is a prefix, whether there is a namespace.
FastInfosetParser::Name FastInfosetParser::LiteralName(unsigned int flags, NameTable& table) {
  const bool hasPrefix = (flags & 2) != 0;
  const bool hasNamespace = (flags & 1) != 0;
  if (hasPrefix && !hasNamespace) m_cursor.Refuse();
  m_hasFullTable = false;
  const std::string_view prefix = hasPrefix ? NamePart(m_prefixes) : std::string_view();
  const std::string_view uri = hasNamespace ? Identifier(m_namespaces) : std::string_view();
  const Name name = MakeName(prefix, uri, NamePart(m_localNames));
  if (!m_hasFullTable) table.Add(name);  // without an index, a part cannot be one of a name
  return name;
}

FastInfosetParser::Name FastInfosetParser::MakeName(std::string_view prefix,
                                                    std::string_view namespaceUri,
                                                    std::string_view localName) {
  const std::size_t size = prefix.size() + namespaceUri.size() + localName.size();
  if (prefix == "xmlns" || namespaceUri == kXmlnsNamespace) ThrowFastInfosetName(localName);
  Deliver(size);  // the tree keeps the name, used or not
  if (m_hasNamespaces) return {m_tree.NameOf(namespaceUri, localName), size};
  if (prefix.empty()) return {m_tree.NameOf({}, localName), size};
  std::string qualified(prefix);
  qualified += ':';
  qualified += localName;
  return {m_tree.NameOf({}, qualified), size};
}

/// Refuses what would be a declaration in XML.
FastInfosetParser::Name FastInfosetParser::CheckedAttribute(Name name) {
  const bool isDeclaration = name.name->localName == "xmlns" && name.name->namespaceUri.empty();
  if (isDeclaration) ThrowFastInfosetName("xmlns");
  return name;
}

}  // namespace ZuXmlLib16::detail
