#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "ZuXmlLib16/XmlDocument.h"
#include "core/Errors.h"
#include "xml/XmlTree.h"

namespace ZuXmlLib16 {
namespace {

/// Text as the C interface gives it: up to its first NUL, no more than length bytes.
std::string_view UpToNul(const char* text, std::size_t length) {
  return text == nullptr ? std::string_view() : std::string_view(text, strnlen(text, length));
}

}  // namespace

CXmlAttribute::CXmlAttribute(const CXmlElement* element, CTextRef localName, CTextRef value,
                             CTextRef namespaceUri)
    : CInstanceMonitor("CXmlAttribute"), m_element(element) {
  if (element == nullptr) ThrowPropertyIsNull("element");
  detail::XmlTree& tree = *element->m_document->m_tree;
  tree.StopRewinding();
  m_name = tree.NameOf(namespaceUri, localName);
  m_value = detail::DocumentText(tree.CopyText(value));
}

CXmlAttribute::CXmlAttribute(const CXmlElement* element, const detail::XmlName* name,
                             std::string_view value)
    : CInstanceMonitor("CXmlAttribute"), m_element(element), m_name(name), m_value(value) {}

CXmlAttribute::~CXmlAttribute() = default;

const std::string& CXmlAttribute::GetValue() const {
  return m_value.AsString(*m_element->m_document->m_tree);
}

std::string CXmlAttribute::GetXPath() const {
  std::string path = m_element->GetXPath() + '/';
  if (!GetNamespaceURI().empty()) {
    const std::string& prefix = m_element->m_document->LookupAliasFromNamespace(GetNamespaceURI());
    if (!prefix.empty()) path += prefix + ':';
  }
  return path + '@' + GetLocalName();
}

CXmlElement::CXmlElement(const CXmlDocument* document, const CXmlElement* parent)
    : CInstanceMonitor("CXmlElement"), m_document(document), m_parent(parent) {
  if (document == nullptr) ThrowPropertyIsNull("document");
  m_name = document->m_tree->NameOf({}, {});
}

CXmlElement::CXmlElement(const CXmlDocument* document, const CXmlElement* parent,
                         const detail::XmlName* name)
    : CInstanceMonitor("CXmlElement"), m_document(document), m_parent(parent), m_name(name) {}

CXmlElement::~CXmlElement() {
  DestroyChildren();
  if (m_attributes == nullptr) return;
  for (CXmlAttribute* attribute : *m_attributes)
    std::destroy_at(attribute);
}

void CXmlElement::DestroyChildren() {
  // Grandchildren move up into the list before their parent goes, so depth costs no stack.
  while (m_firstChild != nullptr) {
    CXmlElement* const child = m_firstChild;
    m_firstChild = child->m_nextSibling;
    if (child->m_firstChild != nullptr) {
      child->m_lastChild->m_nextSibling = m_firstChild;
      m_firstChild = std::exchange(child->m_firstChild, nullptr);
    }
    delete child;
  }
}

CXmlElement* CXmlElement::CreateNewChildElement() {
  detail::XmlTree& tree = *m_document->m_tree;
  tree.StopRewinding();
  return tree.AddChild(*this, tree.NameOf({}, {}));
}

CXmlElement* CXmlElement::RemoveLastChildElement() {
  CXmlElement* const last = m_lastChild;
  if (last == nullptr) return nullptr;
  if (last == m_firstChild) {
    m_firstChild = m_lastChild = nullptr;
    return last;
  }
  m_lastChild = m_firstChild;
  while (m_lastChild->m_nextSibling != last) {
    m_lastChild = m_lastChild->m_nextSibling;
  }
  m_lastChild->m_nextSibling = nullptr;
  return last;
}

void CXmlElement::SetElementName(CTextRef localName) {
  m_name = m_document->m_tree->NameOf(GetNamespaceURI(), localName);
}

void CXmlElement::SetNamespace(CTextRef namespaceUri) {
  m_name = m_document->m_tree->NameOf(namespaceUri, GetLocalName());
}

void CXmlElement::AppendText(const char* text, int length) {
  if (length <= 0) return;
  m_text.Append(*m_document->m_tree, UpToNul(text, static_cast<std::size_t>(length)));
}

void CXmlElement::AppendText(const char* text) {
  m_text.Append(*m_document->m_tree, CTextRef(text));
}

void CXmlElement::AddAttribute(CTextRef localName, CTextRef value, CTextRef namespaceUri) {
  detail::XmlTree& tree = *m_document->m_tree;
  if (tree.InnermostOpen() != this) tree.StopRewinding();
  tree.AddAttribute(*this, tree.NameOf(namespaceUri, localName), value);
}

const std::string& CXmlElement::GetText() const {
  return m_text.AsString(*m_document->m_tree);
}

const CXmlAttributes& CXmlElement::GetAttributes() const {
  return m_attributes != nullptr ? *m_attributes : m_document->m_tree->NoAttributes();
}

const std::string& CXmlElement::GetAttribute(CTextRef localName, CTextRef namespaceUri) const {
  static const std::string empty;
  if (m_attributes == nullptr) return empty;
  const auto found =
      std::find_if(m_attributes->begin(), m_attributes->end(), [&](const CXmlAttribute* attribute) {
        return attribute->GetLocalName() == localName &&
               attribute->GetNamespaceURI() == namespaceUri;
      });
  return found != m_attributes->end() ? (*found)->GetValue() : empty;
}

std::string CXmlElement::GetQName() const {
  if (!GetNamespaceURI().empty()) {
    const std::string& prefix = m_document->LookupAliasFromNamespace(GetNamespaceURI());
    if (!prefix.empty()) return prefix + ':' + GetLocalName();
  }
  return GetLocalName();
}

/// The prefixes of a document by namespace, made once for a whole path.
class CXmlElement::PrefixTable {
 public:
  explicit PrefixTable(const CXmlDocument& document) {
    for (const auto& [prefix, namespaceUri] : document.m_aliases) {
      m_prefixes.emplace(namespaceUri, prefix);  // the first one stays
    }
  }

  std::string_view PrefixOf(const CXmlElement& element) const {
    if (element.GetNamespaceURI().empty()) return {};
    const auto entry = m_prefixes.find(element.GetNamespaceURI());
    return entry != m_prefixes.end() ? entry->second : std::string_view();
  }

  bool HaveSameQName(const CXmlElement& a, const CXmlElement& b) const {
    if (a.m_name == b.m_name) return true;
    return a.GetLocalName() == b.GetLocalName() && PrefixOf(a) == PrefixOf(b);
  }

 private:
  std::map<std::string_view, std::string_view> m_prefixes;
};

std::string CXmlElement::GetNameWithPredicate() const {
  return GetNameWithPredicate(PrefixTable(*m_document));
}

std::string CXmlElement::GetNameWithPredicate(const PrefixTable& prefixes) const {
  std::string name(prefixes.PrefixOf(*this));
  if (!name.empty()) name += ':';
  name += GetLocalName();
  if (m_parent == nullptr) return name;
  std::size_t position = 0;
  std::size_t count = 0;
  for (const CXmlElement* child = m_parent->m_firstChild; child != nullptr;
       child = child->m_nextSibling) {
    if (prefixes.HaveSameQName(*child, *this)) ++count;
    if (child == this) position = count;
  }
  if (position > 0 && count > 1) name += '[' + std::to_string(position) + ']';
  return name;
}

std::string CXmlElement::GetXPath() const {
  std::vector<const CXmlElement*> line;
  for (const CXmlElement* element = this; element != nullptr; element = element->m_parent) {
    line.push_back(element);
  }
  const PrefixTable prefixes(*m_document);
  std::string path;
  for (auto element = line.rbegin(); element != line.rend(); ++element) {
    path += '/';
    path += (*element)->GetNameWithPredicate(prefixes);
  }
  return path;
}

}  // namespace ZuXmlLib16
