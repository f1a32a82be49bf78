#include "fastinfoset/DeclaredPrefixes.h"

#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16::detail {

template <class Entry>
Entry& DeclaredPrefixes::Registry<Entry>::FindOrAdd(std::string_view text) {
  const auto place = m_index.lower_bound(text);
  if (place != m_index.end() && place->first == text) return *place->second;
  Entry& entry = m_entries.emplace_back(text);
  m_index.emplace_hint(place, entry.text, &entry);
  return entry;
}

DeclaredPrefixes::DeclaredPrefixes() {
  // Bound in every document, by nobody. Both come first in their tables.
  NamespaceName& xmlNamespace = m_namespaces.FindOrAdd(CXmlWriter::XML_NAMESPACE);
  xmlNamespace.index = 1;
  NamespacePrefix& xml = Find("xml");
  xml.index = 1;
  xml.bound = &xmlNamespace;
}

NamespacePrefix& DeclaredPrefixes::Find(std::string_view prefix) {
  if (m_last == nullptr || m_last->text != prefix) m_last = &m_prefixes.FindOrAdd(prefix);
  return *m_last;
}

void DeclaredPrefixes::Declare(NamespacePrefix& prefix, const NamespaceName* name,
                               std::uint64_t depth) {
  m_undo.push_back({&prefix, prefix.bound, depth});
  prefix.bound = name;
  prefix.user = m_element;
}

void DeclaredPrefixes::Restore(std::uint64_t depth) {
  while (!m_undo.empty() && m_undo.back().depth >= depth) {
    m_undo.back().prefix->bound = m_undo.back().bound;
    m_undo.pop_back();
  }
}

}  // namespace ZuXmlLib16::detail
