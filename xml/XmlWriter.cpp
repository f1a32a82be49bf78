#include "ZuXmlLib16/XmlWriter.h"

#include <iterator>
#include <set>
#include <utility>

#include "core/Errors.h"
#include "xml/PrefixScope.h"

namespace ZuXmlLib16 {
namespace {

/// What a name is worth: texts end at their first NUL.
std::string_view UpToNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

/// "xml" and its namespace belong together; "xmlns" and the empty prefix cannot be declared.
bool IsDeclarable(std::string_view prefix, std::string_view namespaceUri) {
  return !prefix.empty() && prefix != "xmlns" && prefix != "xml" && !namespaceUri.empty() &&
         namespaceUri != CXmlWriter::XML_NAMESPACE;
}

}  // namespace

CXmlWriter::CXmlWriterContext::CXmlWriterContext(CTextRef name, CTextRef namespaceUri,
                                                 std::unique_ptr<CXmlWriterContext>&& parent) {
  Reuse(name, namespaceUri, std::move(parent));
}

CXmlWriter::CXmlWriterContext::CXmlWriterContext(CTextRef name, CTextRef namespaceUri,
                                                 CTextRef defaultNamespace,
                                                 const CNamespaceMap& namespaceMap,
                                                 std::unique_ptr<CXmlWriterContext>&& parent)
    : CXmlWriterContext(name, namespaceUri, std::move(parent)) {
  m_ownScope = std::make_unique<detail::PrefixScope>();
  m_scope = m_ownScope.get();
  m_scope->SetDefaultNamespace(defaultNamespace);
  for (const auto& [uri, prefix] : namespaceMap) {
    m_scope->Set(uri, prefix);
  }
}

CXmlWriter::CXmlWriterContext::~CXmlWriterContext() {
  // One by one: a deep chain must not need a deep stack.
  while (m_parent) {
    m_parent = std::move(m_parent->m_parent);
  }
}

void CXmlWriter::CXmlWriterContext::Reuse(CTextRef name, CTextRef namespaceUri,
                                          std::unique_ptr<CXmlWriterContext>&& parent) {
  // What can fail comes first: the parent must not get lost.
  m_name = UpToNul(name);
  if (m_namespaceUri != namespaceUri) m_namespaceUri = namespaceUri;  // mostly the same
  m_prefix.clear();
  m_childCount = 0;
  m_isStartTagOpen = true;
  m_depth = parent ? parent->m_depth + 1 : 0;
  m_parent = std::move(parent);
  m_state = ContextState::Normal;
  m_ownScope.reset();
  if (m_parent) {
    m_scope = m_parent->m_scope;
  } else {
    OwnScope();
  }
}

detail::PrefixScope& CXmlWriter::CXmlWriterContext::OwnScope() {
  if (!m_ownScope) {
    m_ownScope = m_parent ? std::make_unique<detail::PrefixScope>(*m_parent->m_scope)
                          : std::make_unique<detail::PrefixScope>();
    m_scope = m_ownScope.get();
  }
  return *m_ownScope;
}

void CXmlWriter::CXmlWriterContext::TakeScope(std::unique_ptr<detail::PrefixScope> scope) {
  m_ownScope = std::move(scope);
  m_scope = m_ownScope.get();
}

const std::string& CXmlWriter::CXmlWriterContext::GetDefaultNamespace() const {
  return m_scope->GetDefaultNamespace();
}

CNamespaceMap CXmlWriter::CXmlWriterContext::GetNamespaceMap() const {
  return m_scope->Flatten();
}

void CXmlWriter::CXmlWriterContext::SetDefaultNamespace(CTextRef namespaceUri) {
  OwnScope().SetDefaultNamespace(namespaceUri);
}

void CXmlWriter::CXmlWriterContext::SetNamespaceMapValue(CTextRef namespaceUri, CTextRef prefix) {
  OwnScope().Set(namespaceUri, prefix);
}

std::string& CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const std::string& namespaceUri) {
  return m_scope->FindOrAdd(namespaceUri);
}

std::string& CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const char* namespaceUri) {
  return m_scope->FindOrAdd(CTextRef(namespaceUri));
}

const std::string* CXmlWriter::CXmlWriterContext::FindPrefix(std::string_view namespaceUri) const {
  return m_scope->Find(namespaceUri);
}

const std::string& CXmlWriter::CXmlWriterContext::AllocatePrefix(std::string_view namespaceUri) {
  return OwnScope().Allocate(namespaceUri);
}

CXmlWriter::CXmlWriter(const char* className)
    : CInstanceMonitor(className), m_rootScope(std::make_unique<detail::PrefixScope>()) {
  m_rootScope->Set(XML_NAMESPACE, "xml");
}

CXmlWriter::~CXmlWriter() = default;

void CXmlWriter::Open() {}

void CXmlWriter::Close() {
  if (m_context) ThrowElementNotClosed();
}

void CXmlWriter::SetDefaultNamespace(CTextRef namespaceUri) {
  if (m_context) {
    m_context->SetDefaultNamespace(namespaceUri);
  } else {
    m_rootScope->SetDefaultNamespace(namespaceUri);
  }
}

void CXmlWriter::AddNamespace(CTextRef prefix, CTextRef namespaceUri) {
  if (!IsDeclarable(prefix, namespaceUri)) return;
  (m_context ? m_context->OwnScope() : *m_rootScope).Declare(namespaceUri, prefix);
}

const std::string& CXmlWriter::RootDefaultNamespace() const {
  return m_rootScope->GetDefaultNamespace();
}

CNamespaceMap CXmlWriter::RootNamespaceMap() const {
  return m_rootScope->Flatten();
}

void CXmlWriter::SetContextState(ContextState state) {
  if (m_context) m_context->m_state = state;
}

std::string CXmlWriter::NsIntToString(int index) {
  // Two letters for the first 26 * 26, then three, and so on.
  std::string letters = "AA";
  std::int64_t combinations = std::int64_t{26} * 26;
  while (index >= combinations) {
    index -= static_cast<int>(combinations);
    combinations *= 26;
    letters += 'A';
  }
  for (auto letter = letters.rbegin(); index > 0; ++letter, index /= 26) {
    *letter = static_cast<char>('A' + index % 26);
  }
  return letters;
}

std::string CXmlWriter::GetUniquePrefix(const CNamespaceMap& map) {
  std::set<std::string_view> used;
  for (const auto& entry : map) {
    used.insert(entry.second);
  }
  for (int index = 0;; ++index) {
    std::string candidate = NsIntToString(index);
    if (used.count(candidate) == 0) return candidate;
  }
}

CXmlWriter::CXmlWriterContext& CXmlWriter::PushContext(CTextRef localName, CTextRef namespaceUri) {
  m_wasElementOpened = true;
  std::unique_ptr<detail::PrefixScope> rootScope;
  if (!m_context) rootScope = std::make_unique<detail::PrefixScope>(*m_rootScope);
  if (m_spare) {
    std::unique_ptr<CXmlWriterContext> element = std::move(m_spare);
    m_spare = std::move(element->m_parent);
    element->Reuse(localName, namespaceUri, std::move(m_context));
    m_context = std::move(element);
  } else {
    m_context = std::make_unique<CXmlWriterContext>(localName, namespaceUri, std::move(m_context));
  }
  if (rootScope) m_context->TakeScope(std::move(rootScope));
  return *m_context;
}

void CXmlWriter::PopContext() {
  std::unique_ptr<CXmlWriterContext> closed = std::move(m_context);
  m_context = std::move(closed->m_parent);
  closed->m_ownScope.reset();
  closed->m_parent = std::move(m_spare);
  m_spare = std::move(closed);
}

}  // namespace ZuXmlLib16
