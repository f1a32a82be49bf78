#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/PrimitiveRestrictions.h"
#include "ZuXmlLib16/Variant.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
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
  const char* shown;  // the end of the message, "" when the value passes
};

TEST(FacetCheck, ReportsViolations) {
  using T = ItemType;
  // clang-format off
  const FacetCase cases[] = {
      // The sign counts as a digit of machine integers. Meant so.
      {T::i4, "-5", TotalDigits(1), "-5]"}, {T::i4, "5", TotalDigits(1), ""},
      {T::i4, "-4294967297", MinInclusive("0"), "-4294967297]"},
      {T::ui4, "18446744073709551615", MaxInclusive(" 1 "), "18446744073709551615]"},
      {T::i1, "-3", MinExclusive("-3"), "-3]"}, {T::i8, "12", MaxExclusive("12"), "12]."},
      {T::ui8, "18446744073709551615", TotalDigits(19), "18446744073709551615]."},
      {T::r4, "1.5", MaxInclusive("1"), "1.500000]"}, {T::r8, "INF", MaxInclusive("1e300"), "inf]"},
      {T::year, "2018", MinExclusive("2018"), "2018]"},
      {T::month, "--05", MaxInclusive("--04"), "5]"},
      {T::day, "---07", MinInclusive("---08"), "7]"},
      {T::date, "2018-05-07", MaxExclusive("2018-05-07"), "2018-05-07]."},
      {T::duration, "P1Y", MaxInclusive("P11M"), "P1Y]."},
      {T::decimal, "10.50", MaxInclusive("10.4"), "10.50]."},
      {T::decimal, "-012.50", TotalDigits(2), "-12.50]."},
      {T::decimal, "0.001", FractionDigits(2), "0.001]."},
      {T::integer, "-0012", TotalDigits(1), "-12]."}, {T::integer, "0", TotalDigits(0), "0]."},
      {T::hexBinary, "0AFF", Length(1), "0AFF]."}, {T::hexBinary, "0AFF", Length(2), ""},
      {T::base64Binary, "AAEC", MaxLength(2), "AAEC]."}, {T::string, "abc", MinLength(4), "abc]."},
      {T::string, "abc", MaxLength(2), "abc]."}, {T::string, "abc", Length(4), "abc]."},
      {T::string, "\u00e9", Length(2), ""},  // bytes
      {T::string, "a1", Pattern("\\d+"), "a1]."}, {T::boolean, "true", Pattern("x"), ""},
      // An indeterminate order passes every bound.
      {T::datetime, "2018-05-07T00:00:00", MinInclusive("2018-05-07T00:00:00Z"), ""},
      {T::datetime, "2018-05-07T00:00:00", MaxExclusive("2018-05-07T00:00:00Z"), ""},
      {T::duration, "P1M", MaxExclusive("P30D"), ""},
      // So does NaN.
      {T::r8, "NaN", MinInclusive("1"), ""},
  };
  // clang-format on
  for (const FacetCase& c : cases) {
    EXPECT_EQ(Check(c.type, c.text, c.facets),
              *c.shown == 0 ? "" : std::string("Invalid Value for n [") + c.shown)
        << c.text;
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
  const std::string message = Check(ItemType::string, "v", facets);
  EXPECT_EQ(message.substr(0, 31), "Invalid Regular Expression: v E");
  EXPECT_EQ(message.substr(message.find('\n')), "\nInvalid Value for n [v].");
  // Lengths come first.
  Facets both = Pattern("(");
  both.length = 2;
  EXPECT_ZU_ERROR(CZuException, CXmlObjectHelper::CheckRestrictionForstring(nullptr, "v", both),
                  "Invalid Value for  [v].", "");
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
}

}  // namespace
}  // namespace ZuXmlLib16
