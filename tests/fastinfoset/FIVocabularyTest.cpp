#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "ZuXmlLib16/FIVocabulary.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16 {
namespace {

using StringTable = CFIVocabulary::CFIStringTable;

TEST(FIVocabulary, StartsWithThePrefixXml) {
  CFIVocabulary vocabulary;
  unsigned long index = 0;
  EXPECT_TRUE(vocabulary.FindPrefixNameIndex("xml", index));
  EXPECT_EQ(index, 1U);
  EXPECT_TRUE(vocabulary.FindNamespaceNameIndex(CXmlWriter::XML_NAMESPACE, index));
  EXPECT_EQ(index, 1U);
  vocabulary.AddPrefixName("p");
  EXPECT_TRUE(vocabulary.FindPrefixNameIndex("p", index));
  EXPECT_EQ(index, 2U);
  EXPECT_FALSE(vocabulary.FindLocalNameIndex("p", index));
  EXPECT_EQ(index, 2U) << "left as it was";
}

TEST(FIVocabulary, AddsNamesWithThoseOfTheirPartsThatAreNew) {
  CFIVocabulary vocabulary;
  vocabulary.AddElement("p", "urn:a", "item");
  vocabulary.AddElement("q", "urn:a", "item");
  vocabulary.AddElement("q", "urn:a", "item");
  vocabulary.AddElement("", "", "item");
  vocabulary.AddAttribute("q", "urn:a", "id");
  EXPECT_EQ(vocabulary.GetPrefixNamesTable().GetSize(), 3U);
  EXPECT_EQ(vocabulary.GetNamespaceNamesTable().GetSize(), 2U);
  EXPECT_EQ(vocabulary.GetLocalNamesTable().GetSize(), 2U);
  std::string parts;
  for (const auto& name : vocabulary.GetElementNamesTable()) {
    parts += std::to_string(name.prefix) + std::to_string(name.namespaceName) +
             std::to_string(name.localName) + " ";
  }
  EXPECT_EQ(parts, "221 321 001 ");
  EXPECT_EQ(vocabulary.GetAttributeNamesTable().GetSize(), 1U);
}

TEST(FIVocabulary, TakesNoMoreThanItMay) {
  CFIVocabulary vocabulary;
  StringTable& table = vocabulary.GetAttributeValuesTable();
  const auto value = [](unsigned long number) { return "v" + std::to_string(number); };
  for (unsigned long i = 1; i <= CFIVocabulary::kMaxEntries + 1; ++i) {
    vocabulary.AddAttributeValue(value(i));
    vocabulary.AddAttributeValue(value(1));
  }
  EXPECT_EQ(table.GetSize(), CFIVocabulary::kMaxEntries);
  EXPECT_EQ(table.Find(value(1)), 1U);
  EXPECT_EQ(table.Find(value(CFIVocabulary::kMaxEntries)), CFIVocabulary::kMaxEntries);
  EXPECT_EQ(table[CFIVocabulary::kMaxEntries], value(CFIVocabulary::kMaxEntries));
  EXPECT_EQ(table.Find(value(CFIVocabulary::kMaxEntries + 1)), 0U);
  EXPECT_EQ(table.Append("more"), 0U);
}

TEST(FIVocabulary, TellsStringsOfAllLengthsApart) {
  // The same octet at any place, and runs of the same one in any number.
  StringTable table;
  std::vector<std::string> values;
  for (std::size_t size = 1; size < 70; ++size) {
    values.emplace_back(size, 'a');
    for (std::size_t at = 0; at < size; ++at) {
      values.emplace_back(size, 'a')[at] = 'b';
    }
  }
  bool isNew = false;
  for (const std::string& value : values) {
    table.Add(value, isNew);
  }
  EXPECT_TRUE(std::equal(table.begin(), table.end(), values.begin(), values.end()));
}

TEST(FIVocabulary, KeepsWhatReadersAppendTwice) {
  StringTable table;
  EXPECT_EQ(table.Append("a"), 1U);
  EXPECT_EQ(table.Append("a"), 2U);
  EXPECT_EQ(table[2], "a");
}

TEST(FIVocabulary, CopiesAreIndependent) {
  StringTable table;
  bool isNew = false;
  const std::string text = "a text that is longer than the others";
  table.Add(text, isNew);
  StringTable copy(table);
  copy.Add("b", isNew);
  EXPECT_EQ(table.GetSize(), 1U);
  const StringTable moved(std::move(table));
  EXPECT_EQ(moved.Find(text), 1U);
  table = copy;  // NOLINT(bugprone-use-after-move): it is to be usable again
  copy = StringTable();
  EXPECT_EQ(table.Find(text), 1U);
  EXPECT_EQ(table.Find("b"), 2U);
  EXPECT_EQ(copy.Find("b"), 0U);
}

}  // namespace
}  // namespace ZuXmlLib16
