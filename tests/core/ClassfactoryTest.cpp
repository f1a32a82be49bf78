#include "ZuXmlLib16/Classfactory.h"

#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/XmlDocument.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

struct TypeCase {
  const char* name;
  const char* attributes;  // of the child element "d:c" of the root
  const char* type;
  const char* namespaceUri;
};

class TypeAttribute : public testing::TestWithParam<TypeCase> {};

TEST_P(TypeAttribute, NamesTypeAndItsNamespace) {
  const std::string xml =
      "<d:r xmlns:d='urn:d' xmlns:p='urn:p' "
      "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><d:c " +
      std::string(GetParam().attributes) + "/></d:r>";
  CXmlDocument document;
  document.LoadXml(xml.c_str());
  const CXmlElement* const element = document.GetDocumentElement()->GetFirstElement();
  EXPECT_EQ(CClassfactoryBase::GetElementType(element), GetParam().type);
  EXPECT_EQ(CClassfactoryBase::GetElementTypeNamespaceUri(element), GetParam().namespaceUri);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    Xsi, TypeAttribute,
    testing::Values(
        //        name                attributes                         type       namespace
        TypeCase{"Prefixed",          "xsi:type='p:T'",                  "T",       "urn:p"},
        TypeCase{"UndeclaredPrefix",  "xsi:type='q:T'",                  "T",       "urn:d"},
        TypeCase{"Unprefixed",        "xsi:type='T'",                    "T",       "urn:d"},
        TypeCase{"DefaultNamespace",  "xsi:type='T' xmlns='urn:default'", "T",      "urn:default"},
        TypeCase{"FirstColonCounts",  "xsi:type='p:T:U'",                "T:U",     "urn:p"},
        TypeCase{"NothingAfterColon", "xsi:type='p:'",                   "",        "urn:p"},
        TypeCase{"NotTrimmed",        "xsi:type=' p:T '",                "T ",      "urn:d"},
        TypeCase{"Absent",            "",                                "",        "urn:d"},
        TypeCase{"OtherNamespace",    "type='p:T' p:type='p:U'",         "",        "urn:d"}),
    [](const auto& tested) { return tested.param.name; });
// clang-format on

TEST(Classfactory, RefusesNullElements) {
  EXPECT_ZU_ERROR(CZuInvalidParamException, CClassfactoryBase::GetElementType(nullptr),
                  "The Property [element] is mandatory, it may node be NULL", "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, CClassfactoryBase::GetElementTypeNamespaceUri(nullptr),
                  "The Property [element] is mandatory, it may node be NULL", "");
}

}  // namespace
}  // namespace ZuXmlLib16
