#pragma once

#include <map>
#include <string>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Prefixes (aliases) of namespace URIs, ordered by URI.
class ZUXMLLIB16_API CNamespaceAliasMap {
 public:
  /// Sets or replaces the alias of a namespace. Null arguments count as "".
  void Add(const char* alias, const char* namespaceUri);
  void RemoveNamespace(const char* namespaceUri);

  /// @return the alias of the namespace, "" when it has none.
  std::string GetAliasFromNamespace(const char* namespaceUri) const;
  /// @throws CZuException  "Namespace alias [%s] not found".
  std::string GetNamespaceFromAlias(const char* alias) const;
  bool DoesNamespaceExist(const char* namespaceUri) const;
  bool DoesAliasExist(const char* alias) const;

  /// Goes over the pairs of namespace and alias, in the order of the URIs.
  auto begin() const { return m_aliases.begin(); }
  auto end() const { return m_aliases.end(); }
  int GetNamespaceCount() const { return static_cast<int>(m_aliases.size()); }
  /// @param index  position in the order of the URIs, from 0.
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  const std::string& GetNamespaceAt(int index) const;

 private:
  std::map<std::string, std::string, std::less<>> m_aliases;  // namespace URI -> alias
};

}  // namespace ZuXmlLib16
