#include "xml/PrefixHistory.h"

#include <utility>

#include "ZuXmlLib16/XmlDocument.h"

namespace ZuXmlLib16::detail {

void PrefixHistory::Declare(std::string_view prefix, std::string_view before,
                            std::string_view namespaceUri) {
  m_first.try_emplace(std::string(prefix), before);
  m_next.emplace_back(prefix, namespaceUri);
}

void PrefixHistory::Open(const CXmlElement* element) {
  m_declarations.erase(element);
  if (m_next.empty()) return;
  m_declarations.emplace(element, std::move(m_next));
  m_next.clear();
}

const std::string& PrefixHistory::Find(const CXmlElement* element, std::string_view prefix) const {
  for (; element != nullptr; element = element->m_parent) {
    const auto declared = m_declarations.find(element);
    if (declared == m_declarations.end()) continue;
    for (const auto& [name, namespaceUri] : declared->second) {
      if (name == prefix) return namespaceUri;
    }
  }
  return m_first.find(prefix)->second;
}

void PrefixHistory::Clear() {
  m_first.clear();
  m_next.clear();
  m_declarations.clear();
}

}  // namespace ZuXmlLib16::detail
