#include <gtest/gtest.h>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/FormatString.h"
#include "ZuXmlLib16/WhitespaceUtils.h"

namespace ZuXmlLib16 {
namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

struct RuleCase {
  Rule rule;
  const char* text;
  const char* expected;
};

TEST(WhitespaceRules, NormaliseAsXmlSchemaSays) {
  const RuleCase cases[] = {
      {Rule::None, " a\r\n", " a\r\n"},
      {Rule::Preserve, "a\r\nb\rc\r", "a\nb\nc\n"},
      {Rule::Replace, "a\r\nb\tc\rd\n", "a b c d "},
      {Rule::Collapse, "\t a \r\n b  ", "a b"},
      {Rule::Collapse, " \t\r\n", ""},
      {Rule::Collapse, "a\vb", "a\vb"},
  };
  for (const RuleCase& c : cases)
    EXPECT_EQ(CWhitespaceUtils::ApplyRule(c.rule, c.text), c.expected) << c.text;
  EXPECT_THROW(CWhitespaceUtils::ApplyRule(static_cast<Rule>(9), "a"), CZuException);
}

TEST(WhitespaceRules, PreserveEndsAtNulAndAtItsLength) {
  EXPECT_EQ(CWhitespaceUtils::Preserve(std::string("a\rb\0c", 5)), "a\nb");
  EXPECT_EQ(CWhitespaceUtils::Preserve("a\r\nb", 2), "a\n");
  EXPECT_EQ(CWhitespaceUtils::Preserve("abc", -1), "");
  EXPECT_EQ(CWhitespaceUtils::Preserve(nullptr, 3), "");
}

TEST(FormatString, PrintsStoresAsNumbersAndAnyLength) {
  EXPECT_EQ(FormatString("Error [%n]", 21), "Error [21]");
  EXPECT_EQ(FormatString("%%n %s", "x"), "%n x");
  EXPECT_EQ(FormatString("%s", std::string(100000, 'x').c_str()), std::string(100000, 'x'));
  EXPECT_EQ(FormatString("%s", static_cast<const char*>(nullptr)), "(null)");
}

TEST(TextHelpers, KeepTheirOddities) {
  std::string text = "aab";
  FindReplace(text, "ab", "b");
  EXPECT_EQ(text, "b");
  FindReplace(text, "", "x");
  EXPECT_EQ(text, "b");
  std::wstring wide = L"a-b-c";
  FindReplace(wide, L"-", L"");
  EXPECT_EQ(wide, L"abc");
  const char* const trimmed[][2] = {
      {"1.500", "1.5"}, {"100", "1"}, {"1.000", "1."}, {"000", "0"}, {"", ""}};
  for (const auto& pair : trimmed)
    EXPECT_EQ(TrimTrainingZeros(pair[0]), pair[1]);
  char upper[] = "aB1z";
  EXPECT_STREQ(strupr(upper), "AB1Z");
  EXPECT_EQ(PadZero(7, 3), "007");
  EXPECT_EQ(PadZero(-7, 3), "-07");
  EXPECT_EQ(PadZero(12345, 3), "12345");
}

}  // namespace
}  // namespace ZuXmlLib16
