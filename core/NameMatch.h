#pragma once

#include <string>

#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectHelper.h"

namespace ZuXmlLib16::detail {

/// CXmlObjectHelper::DoesElementNameMatch for many elements in a row. A document keeps every name
/// once: where the last match was has to be compared as a place only.
class NameMatch {
 public:
  /// All three must outlive the object.
  NameMatch(const CSerializationContext& context, const std::string& name,
            const std::string& namespaceUri)
      : m_context(context), m_name(name), m_namespaceUri(namespaceUri) {}

  bool operator()(const CXmlElement* element) {
    if (element == nullptr) return false;
    if (&element->GetLocalName() == m_lastMatch) return true;
    if (!CXmlObjectHelper::DoesElementNameMatch(m_context, element, m_name, m_namespaceUri)) {
      return false;
    }
    m_lastMatch = &element->GetLocalName();
    return true;
  }

 private:
  const CSerializationContext& m_context;
  const std::string& m_name;
  const std::string& m_namespaceUri;
  const std::string* m_lastMatch = nullptr;
};

}  // namespace ZuXmlLib16::detail
