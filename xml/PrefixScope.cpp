#include "xml/PrefixScope.h"

#include <algorithm>

namespace ZuXmlLib16::detail {

PrefixScope::PrefixScope(PrefixScope* outer) : m_outer(outer) {
  if (outer == nullptr) return;
  m_defaultNamespace = outer->m_defaultNamespace;
  m_isExposed = outer->m_isExposed;
  m_firstCandidate = outer->m_firstCandidate;
}

void PrefixScope::Set(std::string_view namespaceUri, std::string_view prefix) {
  if (FindEntry(namespaceUri) != nullptr) m_firstCandidate = 0;  // its old prefix becomes free
  m_lastEntry = nullptr;
  m_prefixes.insert_or_assign(std::string(namespaceUri), std::string(prefix));
  m_namespaces.insert_or_assign(std::string(prefix), std::string(namespaceUri));
}

void PrefixScope::Declare(std::string_view namespaceUri, std::string_view prefix) {
  for (const PrefixScope* scope = this; scope != nullptr; scope = scope->m_outer) {
    const auto holder = scope->m_namespaces.find(prefix);
    if (holder == scope->m_namespaces.end() || holder->second == namespaceUri) continue;
    const std::string* const held = Find(holder->second);
    if (held != nullptr && *held == prefix) m_prefixes.insert_or_assign(holder->second, "");
  }
  Set(namespaceUri, prefix);
}

const std::string& PrefixScope::Allocate(std::string_view namespaceUri) {
  std::string prefix = CXmlWriter::NsIntToString(m_firstCandidate);
  while (IsUsed(prefix)) {
    prefix = CXmlWriter::NsIntToString(++m_firstCandidate);
  }
  const int used = m_firstCandidate;
  Set(namespaceUri, prefix);
  m_firstCandidate = used + 1;
  return *Find(namespaceUri);
}

bool PrefixScope::IsUsed(std::string_view prefix) const {
  if (m_isExposed) {
    const CNamespaceMap all = Flatten();
    return std::any_of(all.begin(), all.end(),
                       [&](const auto& entry) { return entry.second == prefix; });
  }
  for (const PrefixScope* scope = this; scope != nullptr; scope = scope->m_outer) {
    const auto holder = scope->m_namespaces.find(prefix);
    if (holder == scope->m_namespaces.end()) continue;
    const std::string* const held = Find(holder->second);
    if (held != nullptr && *held == prefix) return true;
  }
  return false;
}

CNamespaceMap::value_type* PrefixScope::FindEntry(std::string_view namespaceUri) const {
  if (m_lastEntry != nullptr && m_lastEntry->first == namespaceUri) return m_lastEntry;
  for (PrefixScope* scope = const_cast<PrefixScope*>(this); scope != nullptr;
       scope = scope->m_outer) {
    const auto entry = scope->m_prefixes.find(namespaceUri);
    if (entry != scope->m_prefixes.end()) return m_lastEntry = &*entry;
  }
  return nullptr;
}

const std::string* PrefixScope::Find(std::string_view namespaceUri) const {
  const auto* const entry = FindEntry(namespaceUri);
  return entry != nullptr && !entry->second.empty() ? &entry->second : nullptr;
}

std::string& PrefixScope::FindOrAdd(std::string_view namespaceUri) {
  for (PrefixScope* scope = this; scope != nullptr; scope = scope->m_outer) {
    scope->m_isExposed = true;
  }
  m_firstCandidate = 0;
  auto* const entry = FindEntry(namespaceUri);
  if (entry != nullptr) return entry->second;
  return m_prefixes.emplace(namespaceUri, "").first->second;
}

CNamespaceMap PrefixScope::Flatten() const {
  CNamespaceMap all;
  for (const PrefixScope* scope = this; scope != nullptr; scope = scope->m_outer) {
    all.insert(scope->m_prefixes.begin(), scope->m_prefixes.end());  // keeps what is there
  }
  return all;
}

}  // namespace ZuXmlLib16::detail
