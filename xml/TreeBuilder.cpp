#include "xml/TreeBuilder.h"

#include <cstring>

#include "ZuXmlLib16/Encoder.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16::detail {

TreeBuilder::TreeBuilder(CXmlDocument& document, XmlTree& tree)
    : m_document(document), m_tree(tree), m_isLocalUtf8(CEncoder::ASCII_ONLY || LocaleIsUtf8()) {}

void TreeBuilder::StartNamespace(std::string_view prefix, std::string_view namespaceUri) {
  const std::string localPrefix(Local(prefix));
  m_document.AddNamespaceAlias(localPrefix, Local(namespaceUri));
}

void TreeBuilder::StartElement(const char* spelling, std::size_t attributeCount) {
  XmlName* const name = NameAfterLast(spelling);
  m_lastName = name;
  m_element = m_tree.Open(name);
  if (attributeCount == 0) return;
  m_tree.AttributesOf(*m_element).reserve(attributeCount);
  m_nextAttribute = &name->firstAttribute;
}

/// Names mostly follow one another as they did before.
XmlName* TreeBuilder::NameAfterLast(const char* spelling) {
  if (m_lastName == nullptr) return m_tree.NameOfSpelling(spelling, nullptr);
  XmlName* const next = m_lastName->next;
  if (next != nullptr && std::strcmp(next->spelling, spelling) == 0) return next;
  XmlName* const name = m_tree.NameOfSpelling(spelling, m_lastName->otherNext);
  m_lastName->otherNext = next;
  m_lastName->next = name;
  return name;
}

void TreeBuilder::AddAttribute(const char* spelling, std::string_view value) {
  *m_nextAttribute = m_tree.NameOfSpelling(spelling, *m_nextAttribute);
  m_tree.AddAttribute(*m_element, *m_nextAttribute, Local(value));
  m_nextAttribute = &(*m_nextAttribute)->next;
}

void TreeBuilder::AddText(std::string_view text) {
  // Line ends come normalised: carriage returns are left by character references only.
  while (const void* const found = std::memchr(text.data(), '\r', text.size())) {
    const auto before = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
    AddLocalText(text.substr(0, before));
    text.remove_prefix(before + 1);
  }
  AddLocalText(text);
}

void TreeBuilder::AddLocalText(std::string_view utf8) {
  const std::string_view local = Local(utf8);
  m_tree.AddText(local, false);
}

std::string_view TreeBuilder::Local(std::string_view utf8) {
  if (m_isLocalUtf8) return utf8;
  m_converted.clear();
  AppendUtf8AsLocal(m_converted, utf8.data(), utf8.size());
  return m_converted;
}

}  // namespace ZuXmlLib16::detail
