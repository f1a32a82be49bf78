#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/PrimitiveRestrictions.h"
#include "ZuXmlLib16/Variant.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/RandomValues.h"
#include "types/Item.h"

namespace ZuXmlLib16 {
namespace {

using detail::Item;
using detail::ItemValue;

/// Facets by name; what is not named is not set.
struct Facets {
  std::string pattern = {};
  long minLength = -1;
  long maxLength = -1;
  std::string minInclusive = {};
  std::string maxInclusive = {};
  std::string minExclusive = {};
  std::string maxExclusive = {};
  long length = -1;
  long totalDigits = -1;
  long fractionDigits = -1;

  operator CPrimitiveRestrictions() const {
    return {pattern,      minLength,    maxLength, minInclusive, maxInclusive,
            minExclusive, maxExclusive, length,    totalDigits,  fractionDigits};
  }
};

// clang-format off
Facets MinInclusive(const std::string& bound) { Facets f; f.minInclusive = bound; return f; }
Facets MaxInclusive(const std::string& bound) { Facets f; f.maxInclusive = bound; return f; }
Facets MinExclusive(const std::string& bound) { Facets f; f.minExclusive = bound; return f; }
Facets MaxExclusive(const std::string& bound) { Facets f; f.maxExclusive = bound; return f; }
Facets TotalDigits(long count) { Facets f; f.totalDigits = count; return f; }
Facets FractionDigits(long count) { Facets f; f.fractionDigits = count; return f; }
Facets Length(long count) { Facets f; f.length = count; return f; }
Facets MinLength(long count) { Facets f; f.minLength = count; return f; }
Facets MaxLength(long count) { Facets f; f.maxLength = count; return f; }
Facets Pattern(const std::string& pattern) { Facets f; f.pattern = pattern; return f; }
// clang-format on

/// What the check of a value throws, "" when it passes. Goes through the variant.
std::string Check(ItemType type, const std::string& text, const CPrimitiveRestrictions& facets) {
  ZuVariant value;
  value.FromString(text, type);
  try {
    CXmlObjectHelper::CheckRestriction("n", value, type, facets);
  } catch (const CZuException& error) {
    EXPECT_EQ(typeid(error), typeid(CZuException));
    return error.GetMessage();
  }
  return "";
}

struct FacetCase {
  ItemType type;
  const char* text;
  Facets facets;
  const char* message;
};

TEST(FacetCheck, ReportsViolations) {
  const FacetCase cases[] = {
      // The sign counts as a digit of machine integers. Meant so.
      {ItemType::i4, "-5", TotalDigits(1), "Invalid Value for n [-5]"},
      {ItemType::i4, "5", TotalDigits(1), ""},
      {ItemType::i4, "-4294967297", MinInclusive("0"), "Invalid Value for n [-4294967297]"},
      {ItemType::ui4, "18446744073709551615", MaxInclusive(" 1 "),
       "Invalid Value for n [18446744073709551615]"},
      {ItemType::i1, "-3", MinExclusive("-3"), "Invalid Value for n [-3]"},
      {ItemType::i8, "12", MaxExclusive("12"), "Invalid Value for n [12]."},
      {ItemType::ui8, "18446744073709551615", TotalDigits(19),
       "Invalid Value for n [18446744073709551615]."},
      {ItemType::ui8, "18446744073709551615", TotalDigits(20), ""},
      {ItemType::r4, "1.5", MaxInclusive("1"), "Invalid Value for n [1.500000]"},
      {ItemType::r8, "-2", MinInclusive("0"), "Invalid Value for n [-2.000000]"},
      {ItemType::r8, "INF", MaxInclusive("1e300"), "Invalid Value for n [inf]"},
      {ItemType::year, "2018", MinExclusive("2018"), "Invalid Value for n [2018]"},
      {ItemType::month, "--05", MaxInclusive("--04"), "Invalid Value for n [5]"},
      {ItemType::day, "---07", MinInclusive("---08"), "Invalid Value for n [7]"},
      {ItemType::date, "2018-05-07", MaxExclusive("2018-05-07"),
       "Invalid Value for n [2018-05-07]."},
      {ItemType::yearMonth, "2018-05", MinInclusive("2018-06"), "Invalid Value for n [2018-05]."},
      {ItemType::monthDay, "--05-07", MinInclusive("--05-08"), "Invalid Value for n [--05-07]."},
      {ItemType::time, "01:00:00", MinInclusive("02:00:00"), "Invalid Value for n [01:00:00]."},
      {ItemType::datetime, "2018-05-07T00:00:00Z", MinExclusive("2018-05-07T00:00:00Z"),
       "Invalid Value for n [2018-05-07T00:00:00Z]."},
      {ItemType::duration, "P1Y", MaxInclusive("P11M"), "Invalid Value for n [P1Y]."},
      {ItemType::decimal, "10.50", MaxInclusive("10.4"), "Invalid Value for n [10.50]."},
      {ItemType::decimal, "-012.50", TotalDigits(2), "Invalid Value for n [-12.50]."},
      {ItemType::decimal, "-012.50", TotalDigits(3), ""},
      {ItemType::decimal, "0.001", FractionDigits(2), "Invalid Value for n [0.001]."},
      {ItemType::decimal, "0.500", FractionDigits(1), ""},
      {ItemType::integer, "-0012", TotalDigits(1), "Invalid Value for n [-12]."},
      {ItemType::integer, "-0012", TotalDigits(2), ""},
      {ItemType::integer, "0", TotalDigits(0), "Invalid Value for n [0]."},
      {ItemType::hexBinary, "0AFF", Length(1), "Invalid Value for n [0AFF]."},
      {ItemType::hexBinary, "0AFF", Length(2), ""},
      {ItemType::base64Binary, "AAEC", MaxLength(2), "Invalid Value for n [AAEC]."},
      {ItemType::base64Binary, "AAEC", MinLength(3), ""},
      {ItemType::string, "abc", MinLength(4), "Invalid Value for n [abc]."},
      {ItemType::string, "abc", MaxLength(2), "Invalid Value for n [abc]."},
      {ItemType::string, "abc", Length(4), "Invalid Value for n [abc]."},
      {ItemType::string, "\u00e9", Length(2), ""},  // bytes
      {ItemType::string, "", Length(0), ""},
      {ItemType::string, "a1", Pattern("\\d+"), "Invalid Value for n [a1]."},
      {ItemType::string, "11", Pattern("\\d+"), ""},
      {ItemType::boolean, "true", Pattern("x"), ""},
      // An indeterminate order passes every bound.
      {ItemType::datetime, "2018-05-07T00:00:00", MinInclusive("2018-05-07T00:00:00Z"), ""},
      {ItemType::datetime, "2018-05-07T00:00:00", MaxInclusive("2018-05-07T00:00:00Z"), ""},
      {ItemType::datetime, "2018-05-07T00:00:00", MinExclusive("2018-05-07T00:00:00Z"), ""},
      {ItemType::datetime, "2018-05-07T00:00:00", MaxExclusive("2018-05-07T00:00:00Z"), ""},
      {ItemType::duration, "P1M", MaxExclusive("P30D"), ""},
      // So does NaN.
      {ItemType::r8, "NaN", MinInclusive("1"), ""},
      {ItemType::r8, "NaN", MaxExclusive("1"), ""},
  };
  for (const FacetCase& c : cases) {
    EXPECT_EQ(Check(c.type, c.text, c.facets), c.message) << c.text;
  }
}

template <ItemType type>
bool Passes(const ItemValue<type>& value, const CPrimitiveRestrictions& facets) {
  try {
    Item<type>::Check("n", value, facets);
  } catch (const CZuException&) {
    return false;
  }
  return true;
}

/// Every bound of a type against the comparison it stands for. What has no order, such as dates
/// with and without a zone, is within all bounds.
template <ItemType type>
void ExpectBounds(RandomValues& random) {
  for (int i = 0; i < 500; ++i) {
    const ItemValue<type> value = random.Next<type>();
    const ItemValue<type> bound = i % 5 == 0 ? value : random.Next<type>();
    detail::TextBuffer buffer;
    const std::string text(Item<type>::Format(bound, buffer));
    SCOPED_TRACE(Item<type>::kCode + (" bound " + text));
    EXPECT_EQ(Passes<type>(value, MinInclusive(text)), !(value < bound));
    EXPECT_EQ(Passes<type>(value, MaxInclusive(text)), !(value > bound));
    EXPECT_EQ(Passes<type>(value, MinExclusive(text)), !(value < bound || value == bound));
    EXPECT_EQ(Passes<type>(value, MaxExclusive(text)), !(value > bound || value == bound));
  }
}

TEST(FacetCheck, BoundsCompareAsTheValuesDo) {
  RandomValues random(1909);
  ForEachItemType([&random](auto tag) {
    constexpr ItemType type = decltype(tag)::value;
    constexpr bool isUnordered = type == ItemType::string || type == ItemType::char_ ||
                                 type == ItemType::boolean || type == ItemType::hexBinary ||
                                 type == ItemType::base64Binary;
    if constexpr (!isUnordered) ExpectBounds<type>(random);
  });
}

TEST(FacetCheck, StringsReportWhatThePatternDid) {
  const CPrimitiveRestrictions facets = Pattern("(");
  try {
    CXmlObjectHelper::CheckRestrictionForstring("n", "v", facets);
    ADD_FAILURE() << "did not throw";
  } catch (const CZuException& error) {
    const std::string message = error.GetMessage();
    EXPECT_EQ(message.substr(0, 31), "Invalid Regular Expression: v E");
    EXPECT_EQ(message.substr(message.find('\n')), "\nInvalid Value for n [v].");
  }
  // Lengths come first.
  Facets both = facets.GetPattern().empty() ? Facets() : Pattern("(");
  both.length = 2;
  EXPECT_ZU_ERROR(CZuException, CXmlObjectHelper::CheckRestrictionForstring(nullptr, "v", both),
                  "Invalid Value for  [v].", "");
}

TEST(FacetCheck, PatternsAreInTheLocalCharacterSet) {
  const CharacterTypeLocale utf8("C.UTF-8");
  ASSERT_TRUE(utf8.IsAvailable());
  EXPECT_EQ(Check(ItemType::string, "\u00e9\u00e9", Pattern("\u00e9{2}")), "");
  EXPECT_NE(Check(ItemType::string, "\u00e8", Pattern("\u00e9")), "");
}

TEST(FacetCheck, BadBoundsAndUnknownTypesPassOn) {
  const CPrimitiveRestrictions bad = MaxInclusive("x");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CXmlObjectHelper::CheckRestrictionFori4("n", 1, bad),
                  "The value [x] can not be converted to a i4", "");
  // The first bound that fails is reported, before a later one is read.
  Facets two = MinInclusive("2");
  two.maxInclusive = "x";
  EXPECT_ZU_ERROR(CZuException, CXmlObjectHelper::CheckRestrictionFori4("n", 1, two),
                  "Invalid Value for n [1]", "");

  ZuVariant value;
  const CPrimitiveRestrictions none = Facets();
  const auto check = [&](ItemType type) {
    CXmlObjectHelper::CheckRestriction("n", value, type, none);
  };
  EXPECT_ZU_ERROR(CZuException, check(ItemType::Invalid), "Unknown type [0]", "");
  value.SetChar('x');
  EXPECT_ZU_ERROR(CZuException, check(ItemType::char_), "Unknown type [char]", "");
  EXPECT_ZU_ERROR(CZuException, check(ItemType::XmlObject), "Unknown type [char]", "");
  EXPECT_ZU_ERROR(CZuException, check(static_cast<ItemType>(99)), "Unknown type [char]", "");
  EXPECT_NO_THROW(check(ItemType::i4));
}

}  // namespace
}  // namespace ZuXmlLib16
