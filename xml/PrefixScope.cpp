#include "xml/PrefixScope.h"

#include <atomic>
#include <utility>

namespace ZuXmlLib16::detail {

PrefixScope::PrefixScope(PrefixScope& outer) {
  outer.SkipUsedCandidates();  // once for all that are inside of it
  m_defaultNamespace = outer.m_defaultNamespace;
  m_prefixes = outer.m_prefixes;
  m_holders = outer.m_holders;
  m_firstCandidate = outer.m_firstCandidate;
  m_isExposed = outer.m_isExposed;
}

std::uint64_t PrefixScope::NextStamp() {
  static std::atomic<std::uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

void PrefixScope::SetDefaultNamespace(std::string_view namespaceUri) {
  m_defaultNamespace = namespaceUri;
  m_stamp = NextStamp();
}

void PrefixScope::Change(std::string_view namespaceUri, std::optional<std::string> prefix) {
  HoldersOf holders = m_holders;
  const auto* const entry = m_prefixes.Find(namespaceUri);
  const bool hadPrefix = entry != nullptr && entry->second.has_value();
  if (hadPrefix) {
    const auto* const held = holders.Find(*entry->second);
    if (held != nullptr) {
      holders = holders.With(held->first, {held->second.count - 1, held->second.last});
    }
  }
  if (prefix.has_value()) {
    const auto* const held = holders.Find(*prefix);
    const int count = held != nullptr ? held->second.count : 0;
    holders = holders.With(*prefix, {count + 1, std::string(namespaceUri)});
  }
  m_prefixes = m_prefixes.With(namespaceUri, std::move(prefix));
  m_holders = std::move(holders);
  m_lastEntry = nullptr;
  m_stamp = NextStamp();
  if (hadPrefix) m_firstCandidate = 0;  // the old one may be free now
}

void PrefixScope::Set(std::string_view namespaceUri, std::string_view prefix) {
  Change(namespaceUri, std::string(prefix));
}

void PrefixScope::Declare(std::string_view namespaceUri, std::string_view prefix) {
  while (IsUsed(prefix)) {
    const std::string& last = m_holders.Find(prefix)->second.last;
    const std::string* const held = Find(last);
    if (held != nullptr && *held == prefix) {
      Change(std::string(last), std::nullopt);
      continue;
    }
    // The one that got it last has another by now: look through all.
    for (const auto& [holder, heldPrefix] : Flatten()) {
      if (heldPrefix == prefix) Change(holder, std::nullopt);
    }
    break;
  }
  Set(namespaceUri, prefix);
}

const std::string& PrefixScope::Allocate(std::string_view namespaceUri) {
  if (m_isExposed) Recount();
  SkipUsedCandidates();
  Set(namespaceUri, CXmlWriter::NsIntToString(m_firstCandidate));
  return *Find(namespaceUri);
}

void PrefixScope::SkipUsedCandidates() {
  while (IsUsed(CXmlWriter::NsIntToString(m_firstCandidate))) {
    ++m_firstCandidate;
  }
}

bool PrefixScope::IsUsed(std::string_view prefix) const {
  const auto* const held = m_holders.Find(prefix);
  return held != nullptr && held->second.count > 0;
}

void PrefixScope::Recount() {
  HoldersOf holders;
  m_prefixes.ForEach([&](const std::string& namespaceUri,
                         const std::optional<std::string>& prefix) {
    if (!prefix.has_value()) return;
    const auto* const held = holders.Find(*prefix);
    holders = holders.With(*prefix, {held != nullptr ? held->second.count + 1 : 1, namespaceUri});
  });
  m_holders = std::move(holders);
  m_firstCandidate = 0;
}

const std::string* PrefixScope::Find(std::string_view namespaceUri) const {
  if (m_lastEntry == nullptr || m_lastEntry->first != namespaceUri) {
    const auto* const entry = m_prefixes.Find(namespaceUri);
    if (entry == nullptr) return nullptr;
    m_lastEntry = entry;
  }
  const std::optional<std::string>& prefix = m_lastEntry->second;
  return prefix.has_value() && !prefix->empty() ? &*prefix : nullptr;
}

std::string& PrefixScope::FindOrAdd(std::string_view namespaceUri) {
  const auto* const entry = m_prefixes.Find(namespaceUri);
  // Setting it anew gives this scope an entry of its own.
  Change(namespaceUri, entry != nullptr ? entry->second.value_or("") : std::string());
  m_isExposed = true;
  return *const_cast<std::optional<std::string>&>(m_prefixes.Find(namespaceUri)->second);
}

CNamespaceMap PrefixScope::Flatten() const {
  CNamespaceMap all;
  m_prefixes.ForEach(
      [&](const std::string& namespaceUri, const std::optional<std::string>& prefix) {
        if (prefix.has_value()) all.emplace_hint(all.end(), namespaceUri, *prefix);
      });
  return all;
}

}  // namespace ZuXmlLib16::detail
