#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/NamespaceWildcard.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

TEST(NamespaceWildcard, AllowsWhatOneOfItsTokensAllows) {
  struct Case {
    const char* restriction;
    const char* target;
    const char* allowed;  // e: the empty namespace, t: urn:t, u: urn:u, T: urn:tt
  };
  // clang-format off
  const Case cases[] = {
      {"##any",                   "urn:t", "etuT"},
      {"##other",                 "urn:t", "euT"},  // the empty namespace too
      {"##other",                 "",      "tuT"},
      {"##local",                 "urn:t", "e"},
      {"##targetNamespace",       "urn:t", "t"},
      {"##targetNamespace",       "",      "e"},
      {"urn:t",                   "",      "t"},
      {"",                        "urn:t", "e"},
      {"##local urn:u",           "urn:t", "eu"},
      {"urn:u ##targetNamespace", "urn:t", "tu"},
      {"urn:u ##any",             "",      "etuT"},
      {"urn:t  urn:u",            "",      "etu"},  // an empty token between two blanks
      {"urn:u ",                  "",      "eu"},
      {"urn:t\turn:u",            "",      ""},     // only blanks separate
      {"##ANY",                   "urn:t", ""},
  };
  // clang-format on
  const std::string namespaces[] = {"", "urn:t", "urn:u", "urn:tt"};
  for (const Case& c : cases) {
    std::string allowed;
    for (std::size_t i = 0; i < 4; ++i) {
      if (CXmlObjectHelper::IsNamespaceValid(namespaces[i], c.restriction, c.target)) {
        allowed += "etuT"[i];
      }
    }
    EXPECT_EQ(allowed, c.allowed) << '[' << c.restriction << "] target [" << c.target << ']';
  }
  EXPECT_TRUE(CXmlObjectHelper::TestNamespace("urn:u", "##other", "urn:t"));
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException,
                  CXmlObjectHelper::TestNamespace("urn:u", "##local urn:v", "urn:t"),
                  "Invalid namespace [urn:u]. The namespace must be one of [##local urn:v] where "
                  "the target namespace is [urn:t].",
                  "");
}

TEST(NamespaceWildcard, NamesTheNamespaceOfNewContent) {
  struct Case {
    const char* restriction;
    const char* namespaceUri;  // as the schema names it
    const char* expected;
  };
  // clang-format off
  const Case cases[] = {
      {"##any",                     "urn:n", "urn:n"},
      {"##other",                   "",      "DefaultNamespace"},
      {"##other",                   "urn:n", ""},
      {"##local",                   "urn:n", ""},
      {"##targetNamespace",         "urn:n", "urn:t"},
      {"##targetNamespace ##local", "urn:n", "urn:t"},
      {"##local ##targetNamespace", "urn:n", ""},
      {"urn:u ##targetNamespace",   "urn:n", ""},
  };
  // clang-format on
  for (const Case& c : cases) {
    EXPECT_EQ(detail::AnyDefaultNamespace(c.restriction, c.namespaceUri, "urn:t"), c.expected)
        << c.restriction << " and " << c.namespaceUri;
  }
}

}  // namespace
}  // namespace ZuXmlLib16
