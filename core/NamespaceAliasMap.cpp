#include "ZuXmlLib16/NamespaceAliasMap.h"

#include <algorithm>
#include <iterator>

#include "ZuXmlLib16/TextRef.h"
#include "core/Errors.h"

namespace ZuXmlLib16 {

void CNamespaceAliasMap::Add(const char* alias, const char* namespaceUri) {
  m_aliases.insert_or_assign(std::string(CTextRef(namespaceUri)), std::string(CTextRef(alias)));
}

void CNamespaceAliasMap::RemoveNamespace(const char* namespaceUri) {
  const auto entry = m_aliases.find(CTextRef(namespaceUri));
  if (entry != m_aliases.end()) m_aliases.erase(entry);
}

std::string CNamespaceAliasMap::GetAliasFromNamespace(const char* namespaceUri) const {
  const auto entry = m_aliases.find(CTextRef(namespaceUri));
  return entry != m_aliases.end() ? entry->second : std::string();
}

std::string CNamespaceAliasMap::GetNamespaceFromAlias(const char* alias) const {
  const CTextRef wanted(alias);
  const auto entry = std::find_if(m_aliases.begin(), m_aliases.end(),
                                  [&](const auto& item) { return item.second == wanted; });
  if (entry == m_aliases.end()) ThrowUnknownAlias(std::string(wanted));
  return entry->first;
}

bool CNamespaceAliasMap::DoesNamespaceExist(const char* namespaceUri) const {
  return m_aliases.find(CTextRef(namespaceUri)) != m_aliases.end();
}

bool CNamespaceAliasMap::DoesAliasExist(const char* alias) const {
  const CTextRef wanted(alias);
  return std::any_of(m_aliases.begin(), m_aliases.end(),
                     [&](const auto& item) { return item.second == wanted; });
}

const std::string& CNamespaceAliasMap::GetNamespaceAt(int index) const {
  if (index < 0 || index >= GetNamespaceCount()) ThrowIndexOutOfRange(index, GetNamespaceCount());
  return std::next(m_aliases.begin(), index)->first;
}

}  // namespace ZuXmlLib16
