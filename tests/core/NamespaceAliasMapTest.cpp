#include "ZuXmlLib16/NamespaceAliasMap.h"

#include <gtest/gtest.h>

#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

TEST(NamespaceAliasMap, OrdersByUriAndReplacesAliases) {
  CNamespaceAliasMap map;
  map.Add("z", "urn:b");
  map.Add("y", "urn:c");
  map.Add("x", "urn:a");
  map.Add("w", "urn:b");
  ASSERT_EQ(map.GetNamespaceCount(), 3);
  EXPECT_EQ(map.GetNamespaceAt(0), "urn:a");
  EXPECT_EQ(map.GetNamespaceAt(1), "urn:b");
  EXPECT_EQ(map.GetNamespaceAt(2), "urn:c");
  EXPECT_EQ(map.GetAliasFromNamespace("urn:b"), "w");
  EXPECT_EQ(map.GetNamespaceFromAlias("w"), "urn:b");
  EXPECT_FALSE(map.DoesAliasExist("z"));
}

TEST(NamespaceAliasMap, TellsWhatItDoesNotKnow) {
  CNamespaceAliasMap map;
  map.Add("p", "urn:p");
  map.RemoveNamespace("urn:other");
  EXPECT_ZU_ERROR(CZuException, map.GetNamespaceFromAlias("urn:p"),
                  "Namespace alias [urn:p] not found", "");
  EXPECT_EQ(map.GetAliasFromNamespace("p"), "");
  EXPECT_FALSE(map.DoesNamespaceExist("p"));
  EXPECT_ZU_ERROR(CZuInvalidParamException, map.GetNamespaceAt(1),
                  "Index 1 is out of range, use 0 - 1", "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, map.GetNamespaceAt(-1),
                  "Index -1 is out of range, use 0 - 1", "");
  map.RemoveNamespace("urn:p");
  EXPECT_ZU_ERROR(CZuException, map.GetNamespaceFromAlias("p"), "Namespace alias [p] not found",
                  "");
}

TEST(NamespaceAliasMap, TakesNullForEmpty) {
  CNamespaceAliasMap map;
  map.Add(nullptr, nullptr);
  EXPECT_TRUE(map.DoesNamespaceExist(""));
  EXPECT_TRUE(map.DoesAliasExist(nullptr));
  EXPECT_EQ(map.GetNamespaceFromAlias(nullptr), "");
  map.RemoveNamespace(nullptr);
  EXPECT_EQ(map.GetNamespaceCount(), 0);
}

}  // namespace
}  // namespace ZuXmlLib16
