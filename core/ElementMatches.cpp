#include "core/ElementMatches.h"

#include <algorithm>

#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlGeneratedClass.h"
#include "ZuXmlLib16/XmlObjectHelper.h"

namespace ZuXmlLib16Data::detail {

void ElementMatches::AddName(const std::string& name, const std::string& namespaceUri) {
  m_names.push_back({name, namespaceUri});
}

// Calls itself once for every class of nested model groups. NOLINTNEXTLINE(misc-no-recursion)
void ElementMatches::AddEntriesOf(const CXmlObjectBase* object) {
  const auto* const group = dynamic_cast<const CXmlGeneratedClass*>(object);
  if (group == nullptr) return AddEverything();
  CElementInfo* const* const table = group->GetElementMetaData();
  if (table == nullptr || std::find(m_tables.begin(), m_tables.end(), table) != m_tables.end()) {
    return;
  }
  m_tables.push_back(table);
  for (CElementInfo* const* entry = table; *entry != nullptr; ++entry) {
    (*entry)->AddMatches(group, *this);
  }
}

bool ElementMatches::MayTake(const CXmlElement& element) const {
  return m_isEverything || std::any_of(m_names.begin(), m_names.end(), [&](const Name& name) {
           return ZuXmlLib16::CXmlObjectHelper::DoesElementNameMatch(m_context, &element, name.name,
                                                                     name.namespaceUri);
         });
}

CXmlElement* ElementMatches::FirstFrom(CXmlElement* element) const {
  while (element != nullptr && !MayTake(*element)) {
    element = element->GetNextSiblingElement();
  }
  return element;
}

}  // namespace ZuXmlLib16Data::detail
