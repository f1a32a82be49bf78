#include "xml/XmlTree.h"

#include <new>

#include "xml/CharacterSet.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kXmlns = "http://www.w3.org/2000/xmlns/";

/// An element in the memory of its document: deleting it runs the destructor, the memory goes with
/// the document.
class TreeElement final : public CXmlElement {
 public:
  TreeElement(const CXmlDocument* document, const CXmlElement* parent, const XmlName* name)
      : CXmlElement(document, parent, name) {}

  // NOLINTBEGIN(misc-new-delete-overloads): nothing to free
  static void* operator new(std::size_t size, XmlTree& tree) { return tree.Allocate(size); }
  static void operator delete(void*, XmlTree&) {}
  static void operator delete(void*) {}
  // NOLINTEND(misc-new-delete-overloads)
};

AttributeKind KindOf(std::string_view namespaceUri, std::string_view localName) {
  if (namespaceUri != kSchemaInstance && namespaceUri != kXmlns) return AttributeKind::Plain;
  if (localName == "nil") return AttributeKind::Nil;
  const bool isDeclaration = localName == "xmlns" || localName == "type" ||
                             localName == "schemaLocation" ||
                             localName == "noNamespaceSchemaLocation";
  return isDeclaration ? AttributeKind::Namespace : AttributeKind::Plain;
}

std::string Local(std::string_view utf8) {
  std::string result;
  AppendUtf8AsLocal(result, utf8.data(), utf8.size());
  return result;
}

}  // namespace

void* AllocateFrom(XmlTree& tree, std::size_t sizeInBytes) {
  return tree.Allocate(sizeInBytes);
}

std::string& DocumentText::Materialise(XmlTree& tree) const {
  if (!m_string) {
    m_string = std::make_unique<std::string>(m_view);
    m_view = *m_string;
    tree.CountString();
  }
  return *m_string;
}

const std::string& DocumentText::AsString(XmlTree& tree) const {
  static const std::string empty;
  return m_view.empty() ? empty : Materialise(tree);
}

void DocumentText::Append(XmlTree& tree, std::string_view text) {
  if (text.empty()) return;
  std::string& string = Materialise(tree);
  string.append(text);
  m_view = string;
}

void XmlTree::Clear() {
  DestroyRoot();
  m_nodes.Clear();
  m_nameIndex.clear();
  m_names.clear();
  m_shared.Clear();
  m_prefixes.Clear();
  m_open.clear();
  m_openText.clear();
}

void XmlTree::DestroyRoot() {
  // Without strings no destructor has anything to free: the nodes go with their memory.
  if (m_stringCount > 0) delete m_root;
  m_root = nullptr;
  m_stringCount = 0;
}

std::string_view XmlTree::CopyInto(Arena& arena, std::string_view text) {
  if (text.empty()) return {};
  char* const copy = static_cast<char*>(arena.Allocate(text.size()));
  std::memcpy(copy, text.data(), text.size());
  return {copy, text.size()};
}

XmlName* XmlTree::FindOrAddSpelling(std::string_view spelling) {
  const auto known = m_nameIndex.find(spelling);
  if (known != m_nameIndex.end()) return known->second;
  const std::size_t bar = spelling.find('|');
  if (bar == std::string_view::npos) return AddName(spelling, {}, Local(spelling));
  return AddName(spelling, Local(spelling.substr(0, bar)), Local(spelling.substr(bar + 1)));
}

const XmlName* XmlTree::NameOf(std::string_view namespaceUri, std::string_view localName) {
  std::string key(namespaceUri);
  key += '\0';  // never in what a parser spells
  key += localName;
  const auto known = m_nameIndex.find(key);
  return known != m_nameIndex.end() ? known->second : AddName(key, namespaceUri, localName);
}

XmlName* XmlTree::AddName(std::string_view key, std::string_view namespaceUri,
                          std::string_view localName) {
  char* const spelling = static_cast<char*>(m_shared.Allocate(key.size() + 1));
  std::memcpy(spelling, key.data(), key.size());
  spelling[key.size()] = '\0';
  XmlName& name = m_names.emplace_back();
  name.namespaceUri = namespaceUri;
  name.localName = localName;
  name.kind = KindOf(namespaceUri, localName);
  name.spelling = spelling;
  m_nameIndex.emplace(std::string_view(spelling, key.size()), &name);
  return &name;
}

CXmlElement* XmlTree::Open(const XmlName* name) {
  OpenElement opened{nullptr, nullptr, m_openText.size()};
  CXmlElement* parent = InnermostOpen();
  if (parent == nullptr && m_root != nullptr) parent = m_root;
  if (parent != nullptr) {
    opened.previousSibling = parent->m_lastChild;
    opened.element = AddChild(*parent, name);
  } else {
    opened.element = m_root = new (*this) TreeElement(&m_document, nullptr, name);
  }
  m_open.push_back(opened);
  if (!m_prefixes.IsEmpty()) m_prefixes.Open(opened.element);
  return opened.element;
}

CXmlElement* XmlTree::AddChild(CXmlElement& parent, const XmlName* name) {
  CXmlElement* const child = new (*this) TreeElement(&m_document, &parent, name);
  if (parent.m_lastChild != nullptr) {
    parent.m_lastChild->m_nextSibling = child;
  } else {
    parent.m_firstChild = child;
  }
  parent.m_lastChild = child;
  return child;
}

void XmlTree::AddText(std::string_view text, bool isLasting) {
  const OpenElement& innermost = m_open.back();
  DocumentText& whole = innermost.element->m_text;
  if (whole.View().empty() && m_openText.size() == innermost.textStart) {
    whole = DocumentText(isLasting ? text : CopyText(text));
    return;
  }
  m_openText.append(whole.View());
  whole = DocumentText();
  m_openText.append(text);
}

void XmlTree::Close() {
  if (m_open.empty()) return;
  const OpenElement closed = m_open.back();
  m_open.pop_back();
  const std::string_view text = std::string_view(m_openText).substr(closed.textStart);
  if (!text.empty()) {
    if (closed.element->m_text.View().empty()) {
      closed.element->m_text = DocumentText(CopyText(text));
    } else {
      closed.element->m_text.Append(*this, text);
    }
    m_openText.resize(closed.textStart);
  }
  if (m_filter != nullptr && m_filter(closed.element) && closed.element != m_root) Discard(closed);
}

void XmlTree::Discard(const OpenElement& closed) {
  CXmlElement& parent = *const_cast<CXmlElement*>(closed.element->m_parent);
  parent.m_lastChild = closed.previousSibling;
  if (closed.previousSibling != nullptr) {
    closed.previousSibling->m_nextSibling = nullptr;
  } else {
    parent.m_firstChild = nullptr;
  }
  delete closed.element;
  if (m_mayRewind) m_nodes.RewindTo(closed.element);
}

void XmlTree::KeepOpenText() {
  while (!m_open.empty()) {
    const OpenElement& innermost = m_open.back();
    innermost.element->m_text.Append(*this,
                                     std::string_view(m_openText).substr(innermost.textStart));
    m_openText.resize(innermost.textStart);
    m_open.pop_back();
  }
}

CXmlAttributes& XmlTree::AttributesOf(CXmlElement& element) {
  if (element.m_attributes == nullptr) {
    const DocumentAllocator<CXmlAttribute*> allocator(*this);
    element.m_attributes = new (Allocate(sizeof(CXmlAttributes))) CXmlAttributes(allocator);
  }
  return *element.m_attributes;
}

CXmlAttribute* XmlTree::AddLastingAttribute(CXmlElement& element, const XmlName* name,
                                            std::string_view value) {
  CXmlAttributes& attributes = AttributesOf(element);
  void* const memory = Allocate(sizeof(CXmlAttribute));
  auto* const attribute = new (memory) CXmlAttribute(&element, name, value);
  attributes.push_back(attribute);
  return attribute;
}

}  // namespace ZuXmlLib16::detail
