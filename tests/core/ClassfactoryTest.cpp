#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/Classfactory.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

TEST(Classfactory, ReadsTypeAndItsNamespace) {
  struct Case {
    const char* attributes;  // of the child "d:c" of the root
    const char* type;
    const char* namespaceUri;
  };
  // clang-format off
  const Case cases[] = {
      {"xsi:type='p:T'",                   "T",   "urn:p"},
      {"xsi:type='q:T'",                   "T",   "urn:d"},        // q is not declared
      {"xsi:type='T'",                     "T",   "urn:d"},
      {"xsi:type='T' xmlns='urn:default'", "T",   "urn:default"},
      {"xsi:type='p:T:U'",                 "T:U", "urn:p"},
      {"xsi:type='p:'",                    "",    "urn:p"},
      {"xsi:type=' p:T '",                 "T ",  "urn:d"},        // not trimmed
      {"type='p:T' p:type='p:U'",          "",    "urn:d"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.attributes);
    const std::string root =
        "<d:r xmlns:d='urn:d' xmlns:p='urn:p' "
        "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>";
    CXmlDocument document;
    document.LoadXml((root + "<d:c " + c.attributes + "/></d:r>").c_str());
    const CXmlElement* const element = document.GetDocumentElement()->GetFirstElement();
    EXPECT_EQ(CClassfactoryBase::GetElementType(element), c.type);
    EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(element), c.namespaceUri);
  }
  EXPECT_ZU_ERROR(CZuInvalidParamException, CClassfactoryBase::GetElementType(nullptr),
                  "The Property [element] is mandatory, it may node be NULL", "");
}

TEST(Classfactory, TakesThePrefixAsItIsDeclaredAtTheElement) {
  const auto namespaces = [](const CXmlElement* element, auto&& self) -> std::string {
    std::string found;
    for (; element != nullptr; element = element->GetNextSiblingElement()) {
      found += CClassfactoryBase::GetElementTypeNamespaceUri(element) + " ";
      found += self(element->GetFirstElement(), self);
    }
    return found;
  };
  CXmlDocument document;
  for (const bool isReloaded : {false, true}) {
    SCOPED_TRACE(isReloaded);
    document.LoadXml(
        "<r xmlns:i='http://www.w3.org/2001/XMLSchema-instance' xmlns:p='urn:1' i:type='p:T'>"
        "<a xmlns:p='urn:1' i:type='p:T'/><a xmlns:p='urn:2' i:type='p:T'><a i:type='p:T'>"
        "<a xmlns:p='urn:3' i:type='p:T'/></a><a i:type='p:T'/></a><a i:type='p:T'/></r>");
    EXPECT_EQ(namespaces(document.GetDocumentElement(), namespaces),
              "urn:1 urn:1 urn:2 urn:2 urn:3 urn:2 urn:1 ");
  }
}

}  // namespace
}  // namespace ZuXmlLib16
