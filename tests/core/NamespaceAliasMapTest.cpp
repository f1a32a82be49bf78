#include <gtest/gtest.h>

#include "ZuXmlLib16/NamespaceAliasMap.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

TEST(NamespaceAliasMap, OrdersByUriAndReplacesAliases) {
  CNamespaceAliasMap map;
  map.Add("z", "urn:b");
  map.Add("x", "urn:a");
  map.Add("w", "urn:b");
  ASSERT_EQ(map.GetNamespaceCount(), 2);
  EXPECT_EQ(map.GetNamespaceAt(0), "urn:a");
  EXPECT_EQ(map.GetAliasFromNamespace("urn:b"), "w");
  EXPECT_EQ(map.GetNamespaceFromAlias("w"), "urn:b");
  EXPECT_FALSE(map.DoesAliasExist("z"));
  EXPECT_EQ(map.GetAliasFromNamespace("x"), "");
  map.RemoveNamespace("x");
  map.RemoveNamespace("urn:a");
  EXPECT_ZU_ERROR(CZuException, map.GetNamespaceFromAlias("x"), "Namespace alias [x] not found",
                  "");
  for (const int index : {-1, 1}) {
    EXPECT_ZU_ERROR(CZuInvalidParamException, map.GetNamespaceAt(index),
                    "Index " + std::to_string(index) + " is out of range, use 0 - 1", "");
  }
}

TEST(NamespaceAliasMap, TakesNullForEmpty) {
  CNamespaceAliasMap map;
  map.Add(nullptr, nullptr);
  EXPECT_EQ(map.GetNamespaceFromAlias(nullptr), "");
  map.RemoveNamespace(nullptr);
  EXPECT_FALSE(map.DoesNamespaceExist(nullptr));
}

}  // namespace
}  // namespace ZuXmlLib16
