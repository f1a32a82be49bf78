#pragma once

#include <string>
#include <string_view>

#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16::detail {

/// The namespace declarations of one element. What it does not declare is found in the scope
/// outside it, so a scope costs what it declares, however much is declared around it.
class PrefixScope {
 public:
  /// @param outer  must outlive the scope and not change meanwhile; null for the root.
  explicit PrefixScope(PrefixScope* outer);

  const std::string& GetDefaultNamespace() const { return m_defaultNamespace; }
  void SetDefaultNamespace(std::string_view namespaceUri) { m_defaultNamespace = namespaceUri; }

  /// Sets the prefix of a namespace, whatever other namespaces have it.
  void Set(std::string_view namespaceUri, std::string_view prefix);
  /// The same, but a prefix stands for one namespace: another one that has it loses it.
  void Declare(std::string_view namespaceUri, std::string_view prefix);
  /// Declares the first free prefix of AA, AB, ... for a namespace.
  const std::string& Allocate(std::string_view namespaceUri);
  /// The prefix of a namespace, null when it has none.
  const std::string* Find(std::string_view namespaceUri) const;
  /// The entry of a namespace, made with an empty prefix when there is none. It may be changed.
  std::string& FindOrAdd(std::string_view namespaceUri);
  /// All that is in scope.
  CNamespaceMap Flatten() const;

 private:
  CNamespaceMap::value_type* FindEntry(std::string_view namespaceUri) const;
  bool IsUsed(std::string_view prefix) const;

  PrefixScope* m_outer;
  std::string m_defaultNamespace;
  CNamespaceMap m_prefixes;    // namespace URI -> prefix; an empty one hides that of an outer scope
  CNamespaceMap m_namespaces;  // prefix -> namespace URI that got it last
  bool m_isExposed = false;    // a prefix may have been changed without m_namespaces
  int m_firstCandidate = 0;    // all prefixes before this one are in use
  // The entry found last; most elements of a document ask for the same.
  mutable CNamespaceMap::value_type* m_lastEntry = nullptr;
};

}  // namespace ZuXmlLib16::detail
