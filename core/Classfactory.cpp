#include "ZuXmlLib16/Classfactory.h"

#include "ZuXmlLib16/XmlDocument.h"
#include "core/Errors.h"

namespace ZuXmlLib16 {
namespace {

const std::string& TypeAttribute(const CXmlElement* element) {
  if (element == nullptr) ThrowPropertyIsNull("element");
  return element->GetAttribute("type", "http://www.w3.org/2001/XMLSchema-instance");
}

}  // namespace

std::string CClassfactoryBase::GetElementType(const CXmlElement* element) {
  const std::string& type = TypeAttribute(element);
  const std::size_t colon = type.find(':');
  return colon == std::string::npos ? type : type.substr(colon + 1);
}

std::string CClassfactoryBase::GetElementTypeNamespaceUri(const CXmlElement* element) {
  const std::string& type = TypeAttribute(element);
  const std::size_t colon = type.find(':');
  const std::string prefix = colon == std::string::npos ? std::string() : type.substr(0, colon);
  const std::string& namespaceUri =
      element->GetDocument()->LookupNamespaceFromAlias(prefix, element);
  return namespaceUri.empty() ? element->GetNamespaceURI() : namespaceUri;
}

}  // namespace ZuXmlLib16
