#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ZuXmlLib16/XmlWriter.h"
#include "xml/PersistentMap.h"

namespace ZuXmlLib16::detail {

/// The namespaces in scope at an element. A copy, for an element inside, costs nothing, however
/// much is declared.
class PrefixScope {
 public:
  PrefixScope() = default;
  /// The scope of an element inside outer; afterwards the two are independent.
  explicit PrefixScope(PrefixScope& outer);
  PrefixScope(const PrefixScope&) = delete;
  PrefixScope& operator=(const PrefixScope&) = delete;

  const std::string& GetDefaultNamespace() const { return m_defaultNamespace; }
  void SetDefaultNamespace(std::string_view namespaceUri);

  /// Sets the prefix of a namespace, whatever other namespaces have it.
  void Set(std::string_view namespaceUri, std::string_view prefix);
  /// The same, but a prefix stands for one namespace: others that have it lose it.
  void Declare(std::string_view namespaceUri, std::string_view prefix);
  /// Sets the first free prefix of AA, AB, ... for a namespace.
  const std::string& Allocate(std::string_view namespaceUri);
  /// The prefix of a namespace, null when it has none.
  const std::string* Find(std::string_view namespaceUri) const;
  /// The prefix of a namespace, made empty when there is none. It may be changed.
  std::string& FindOrAdd(std::string_view namespaceUri);
  CNamespaceMap Flatten() const;

  /// Tells states of scopes apart: the same number stands for the same declarations. 0 while they
  /// may change without notice.
  std::uint64_t Stamp() const { return m_isExposed ? 0 : m_stamp; }

 private:
  /// The namespaces that have a prefix: how many, and the one that got it last.
  struct Holders {
    int count = 0;
    std::string last;
  };
  using Prefixes = PersistentMap<std::optional<std::string>>;  // none: was taken away
  using HoldersOf = PersistentMap<Holders>;

  bool IsUsed(std::string_view prefix) const;
  void SkipUsedCandidates();
  void Change(std::string_view namespaceUri, std::optional<std::string> prefix);
  void Recount();
  static std::uint64_t NextStamp();

  std::string m_defaultNamespace;
  Prefixes m_prefixes;
  HoldersOf m_holders;
  int m_firstCandidate = 0;  // all before it are in use
  bool m_isExposed = false;  // a prefix may be changed from outside
  std::uint64_t m_stamp = NextStamp();
  // The entry found last; most elements of a document ask for the same.
  mutable const std::pair<const std::string, std::optional<std::string>>* m_lastEntry = nullptr;
};

}  // namespace ZuXmlLib16::detail
