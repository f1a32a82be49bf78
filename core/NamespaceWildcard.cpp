#include "core/NamespaceWildcard.h"

#include <string_view>

#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/Errors.h"

namespace ZuXmlLib16 {
namespace {

bool DoesTokenAllow(std::string_view token, const std::string& namespaceUri,
                    const std::string& targetNamespace) {
  if (token == "##any") return true;
  if (token == "##other") return namespaceUri != targetNamespace;
  if (token == "##local") return namespaceUri.empty();
  if (token == "##targetNamespace") return namespaceUri == targetNamespace;
  return namespaceUri == token;
}

}  // namespace

bool CXmlObjectHelper::IsNamespaceValid(const std::string& namespaceUri,
                                        const std::string& restriction,
                                        const std::string& targetNamespace) {
  if (restriction == "##any") return true;
  std::string_view rest = restriction;
  for (;;) {
    const std::size_t blank = rest.find(' ');
    if (DoesTokenAllow(rest.substr(0, blank), namespaceUri, targetNamespace)) return true;
    if (blank == std::string_view::npos) return false;
    rest.remove_prefix(blank + 1);
  }
}

bool CXmlObjectHelper::TestNamespace(const std::string& namespaceUri,
                                     const std::string& restriction,
                                     const std::string& targetNamespace) {
  if (IsNamespaceValid(namespaceUri, restriction, targetNamespace)) return true;
  ThrowInvalidNamespace(namespaceUri, restriction, targetNamespace);
}

bool CXmlObjectHelper::DoesElementNameMatch(const CSerializationContext& context,
                                            const CXmlElement* element, const std::string& name,
                                            const std::string& namespaceUri) {
  return element != nullptr && element->GetLocalName() == name &&
         (context.GetIgnoreNamespaces() || element->GetNamespaceURI() == namespaceUri);
}

std::string detail::AnyDefaultNamespace(const std::string& restriction,
                                        const std::string& namespaceUri,
                                        const std::string& targetNamespace) {
  const std::string_view token = std::string_view(restriction).substr(0, restriction.find(' '));
  if (token == "##any") return namespaceUri;
  if (token == "##other") return namespaceUri.empty() ? "DefaultNamespace" : "";
  if (token == "##targetNamespace") return targetNamespace;
  return {};
}

}  // namespace ZuXmlLib16
