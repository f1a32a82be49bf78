#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "ZuXmlLib16/Conversions.h"
#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/PrimitiveRestrictions.h"
#include "support/CommaLocale.h"
#include "support/ErrorMatch.h"
#include "support/RandomValues.h"
#include "types/Item.h"

namespace ZuXmlLib16 {
namespace {

using namespace std::string_literals;
using detail::Item;
using detail::ItemValue;
using detail::TextBuffer;
using Rule = CWhitespaceUtils::WhitespaceRule;

/// Reads a text as a type and writes what was read.
template <ItemType type>
std::string Rewritten(const std::string& text, Rule rule) {
  TextBuffer buffer;
  return std::string(Item<type>::Format(Item<type>::Parse(text, rule), buffer));
}

using Rewrite = std::string (*)(const std::string&, Rule);

struct TextCase {
  Rewrite rewrite;
  std::string text;
  const char* written;
};

TEST(Conversions, ReadAndWriteLexicalForms) {
  // clang-format off
  const TextCase cases[] = {
      {Rewritten<ItemType::i1>, "-128", "-128"}, {Rewritten<ItemType::i4>, "3000000000", "3000000000"},
      {Rewritten<ItemType::i4>, "+7", "7"},
      // White space to the C library only.
      {Rewritten<ItemType::i4>, "\v7", "7"},
      {Rewritten<ItemType::i4>, "12\0x"s, "12"}, {Rewritten<ItemType::ui1>, "-18446744073709551615", "1"},
      {Rewritten<ItemType::ui4>, "-1", "18446744073709551615"},
      {Rewritten<ItemType::ui8>, "18446744073709551615", "18446744073709551615"},
      {Rewritten<ItemType::ui8>, "00001234567890123456", "1234567890123456"},
      {Rewritten<ItemType::ui8>, "1234567890123456", "1234567890123456"},
      {Rewritten<ItemType::r4>, "16777217", "1.677722e+07"},
      // Rounded to double first: 1 + 2^-24 and a little more becomes a tie, and the tie 1.
      {Rewritten<ItemType::r4>, "1.00000005960464477540", "1"},
      {Rewritten<ItemType::r4>, "3.4028235677973366e38", "INF"},
      {Rewritten<ItemType::r4>, "3.4028235677973360e38", "3.402823e+38"},
      {Rewritten<ItemType::r8>, "9.95", "9.949999999999999"}, {Rewritten<ItemType::r8>, "1e16", "1e+16"},
      {Rewritten<ItemType::r8>, " INF ", "INF"}, {Rewritten<ItemType::r8>, "inf", "INF"},
      {Rewritten<ItemType::r8>, "1e999", "INF"}, {Rewritten<ItemType::r8>, "NaN", "NaN"},
      {Rewritten<ItemType::r8>, "1.#QNAN", "NaN"}, {Rewritten<ItemType::r8>, "0x1p4", "16"},
      {Rewritten<ItemType::r8>, "1.5\0x"s, "1.5"}, {Rewritten<ItemType::boolean>, "TrUe", "true"},
      {Rewritten<ItemType::boolean>, " 1 ", "true"}, {Rewritten<ItemType::char_>, " x ", "x"},
      {Rewritten<ItemType::char_>, "\0"s, ""}, {Rewritten<ItemType::string>, " a \t b ", "a b"},
      {Rewritten<ItemType::year>, "0005Z", "5"}, {Rewritten<ItemType::year>, "-0001", "65535"},
      {Rewritten<ItemType::month>, "2018-12", "--12"}, {Rewritten<ItemType::day>, "---07+01:00", "---07"},
      {Rewritten<ItemType::date>, "2018", "2018"},
      {Rewritten<ItemType::datetime>, " 2018-05-07T01:02:03.5Z\n", "2018-05-07T01:02:03.5Z"},
      {Rewritten<ItemType::integer>, " 0012 ", "12"},
      {Rewritten<ItemType::hexBinary>, " 0aFF\0x"s, "0AFF"},
      {Rewritten<ItemType::base64Binary>, "AAEC\0AAEC"s, "AAEC"},
  };
  // clang-format on
  for (const TextCase& c : cases)
    EXPECT_EQ(c.rewrite(c.text, Rule::Collapse), c.written) << c.text;
}

struct ErrorCase {
  Rewrite rewrite;
  std::string text;
  const char* message;
  std::optional<std::string> shown = {};  // when other than the text
};

TEST(Conversions, RefuseOtherTextsWithTheirMessages) {
  const char* const noChar =
      "] can not be a char as it is either empty of greater than 1 char long";
  const ErrorCase cases[] = {
      {Rewritten<ItemType::i4>, "", "] can not be converted to a i4"},
      {Rewritten<ItemType::i4>, " 12abc ", "] can not be converted to a i4", "12abc"},
      {Rewritten<ItemType::i1>, " x1 ", "] can not be converted to a i4", "x1"},
      {Rewritten<ItemType::ui2>, "-", "] can not be converted to a ui4"},
      {Rewritten<ItemType::i8>, "1 2", "] can not be converted to a i8"},
      {Rewritten<ItemType::ui8>, "1.0", "] can not be converted to a ui8"},
      // Out of range comes before what stands behind the number.
      {Rewritten<ItemType::i4>, "99999999999999999999x", "] is to large to fit in a i4"},
      {Rewritten<ItemType::ui8>, "18446744073709551616", "] is to large to fit in a ui8"},
      {Rewritten<ItemType::ui8>, "1234567890123456:", "] can not be converted to a ui8"},
      {Rewritten<ItemType::ui8>, "123456789012345/7", "] can not be converted to a ui8"},
      {Rewritten<ItemType::i8>, "-9223372036854775809", "] is to large to fit in a i8"},
      {Rewritten<ItemType::ui4>, "18446744073709551616", "] is to large to fit in a ui4"},
      {Rewritten<ItemType::ui8>, "18446744073709551616", "] is to large to fit in a ui8"},
      // The narrow types and boolean show the text as it was given.
      {Rewritten<ItemType::i1>, " 128 ", "] is to large to fit in a i1"},
      {Rewritten<ItemType::i1>, "-129", "] is to large to fit in a i1"},
      {Rewritten<ItemType::i2>, "32768", "] is to large to fit in a i2"},
      {Rewritten<ItemType::ui1>, "-1", "] is to large to fit in a ui1"},
      {Rewritten<ItemType::ui2>, "65536", "] is to large to fit in a ui2"},
      {Rewritten<ItemType::r4>, " 1.5x ", "] can not be converted to a r4", "1.5x"},
      {Rewritten<ItemType::r8>, " ", "] can not be converted to a r8", ""},
      {Rewritten<ItemType::char_>, " ab ", noChar, "ab"},
      {Rewritten<ItemType::char_>, "", noChar}};
  for (const ErrorCase& c : cases) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, c.rewrite(c.text, Rule::Collapse),
                    "The value [" + c.shown.value_or(c.text) + c.message, "");
  }
  EXPECT_ZU_ERROR(CZuInvalidValueException,
                  CConversions::booleanFromString(" yes ", Rule::Collapse),
                  "A Boolean Value read from an XML document was invalid [ yes ]. Valid values are "
                  "'true', 'false', '1', or '0'",
                  "");
}

TEST(Conversions, ApplyTheWhitespaceRuleFirst) {
  EXPECT_THROW(CConversions::i4FromString("42 ", Rule::None), CZuInvalidValueException);
  EXPECT_EQ(CConversions::i4FromString(" 42", Rule::None), 42);
  EXPECT_EQ(CConversions::stringFromString("a\r\nb\0c"s, Rule::Preserve), "a\nb");
  EXPECT_EQ(CConversions::stringFromString("a\0 b"s, Rule::Collapse), "a\0 b"s);
  EXPECT_EQ(CConversions::charFromString("\t", Rule::Replace), ' ');
  // Unknown rules are refused for texts, too, that no rule would change.
  for (const Rewrite rewrite :
       {Rewritten<ItemType::i4>, Rewritten<ItemType::r8>, Rewritten<ItemType::string>})
    EXPECT_ZU_ERROR(CZuException, rewrite("1", static_cast<Rule>(9)), "Unknown WhitespaceRule", "");
}

TEST(Conversions, FieldsOfOtherDatesAreInvalid) {
  EXPECT_THROW(CConversions::yearFromString("--05", Rule::Collapse), CZuInvalidStateException);
  EXPECT_THROW(CConversions::dayFromString("2018-05", Rule::Collapse), CZuInvalidStateException);
}

TEST(Conversions, FormatsOfTheCaller) {
  EXPECT_EQ(CConversions::r8ToString(1.5, "%.2f"), "1.50");
  EXPECT_EQ(CConversions::r4ToString(0.1F, "%.9g"), "0.100000001");
  EXPECT_EQ(CConversions::r8ToString(1, "%060.1f"), std::string(47, '0'));
  EXPECT_EQ(CConversions::r8ToString(std::nan(""), "%.2f"), "NaN");
  EXPECT_EQ(CConversions::decimalToString(CDecimal("2.345"), "x"), "2");
  EXPECT_EQ(CConversions::decimalToString(CDecimal("2.345"), "-1"), "2.345");
}

template <ItemType type>
std::string Written(const ItemValue<type>& value) {
  TextBuffer buffer;
  return std::string(Item<type>::Format(value, buffer));
}

// Reals are written with fewer digits than they have; the random ones here need no more.
TEST(Conversions, TextsReadBackAsTheValueTheyShow) {
  RandomValues random(5701);
  ForEachItemType([&random](auto tag) {
    constexpr ItemType type = decltype(tag)::value;
    constexpr bool isText = type == ItemType::string || type == ItemType::char_;
    for (int i = 0; i < 2000; ++i) {
      const ItemValue<type> value = random.Next<type>();
      const std::string text = Written<type>(value);
      const auto again = Item<type>::Parse(text, isText ? Rule::None : Rule::Collapse);
      ASSERT_TRUE(again == value) << Item<type>::kCode << " " << text;
      ASSERT_EQ(Written<type>(again), text) << Item<type>::kCode;
    }
  });
}

template <ItemType type>
void ExpectUnreadable(const ItemValue<type>& value, const char* text) {
  EXPECT_EQ(Written<type>(value), text);
  EXPECT_THROW(Item<type>::Parse(text, Rule::Collapse), CZuInvalidValueException) << text;
}

// All values whose text does not read back as the value. Meant so: both halves are promised.
TEST(Conversions, TextsOfTheseValuesDoNotRoundTrip) {
  EXPECT_EQ(Rewritten<ItemType::r8>("0.30000000000000004", Rule::None), "0.3");
  EXPECT_EQ(Written<ItemType::r8>(std::numeric_limits<double>::max()), "1.797693134862316e+308");
  EXPECT_EQ(Rewritten<ItemType::r8>("1.797693134862316e+308", Rule::None), "INF");
  EXPECT_EQ(Written<ItemType::r4>(16777215.0F), "1.677722e+07");
  ExpectUnreadable<ItemType::year>(999, "999");
  ExpectUnreadable<ItemType::year>(65535, "65535");
  ExpectUnreadable<ItemType::month>(0, "--00");
  ExpectUnreadable<ItemType::month>(255, "--255");
  ExpectUnreadable<ItemType::day>(32, "---32");
  ExpectUnreadable<ItemType::char_>('\0', "");
  ExpectUnreadable<ItemType::duration>(CDateTimeSpan(), "P");
  ExpectUnreadable<ItemType::date>(CDateTime(), "Error: Date Not Set");
  CDateTime year(9999, 12, 31);
  year += CDateTimeSpan(24, 0, 0);
  ExpectUnreadable<ItemType::date>(year, "10000-01-01");
}

// Megabytes of digits and blanks end in a value or an error, soon.
TEST(Conversions, HostileTextsEnd) {
  const std::string nines(1'000'000, '9');
  const std::string zeros(1'000'000, '0');
  EXPECT_EQ(Rewritten<ItemType::i8>(zeros + "7", Rule::Collapse), "7");
  EXPECT_THROW(CConversions::ui1FromString(nines, Rule::Collapse), CZuInvalidValueException);
  EXPECT_EQ(Rewritten<ItemType::r8>("0." + nines, Rule::Collapse), "1");
  EXPECT_EQ(Rewritten<ItemType::r8>("+" + nines + "e-1000000", Rule::Collapse), "1");
  EXPECT_EQ(Rewritten<ItemType::r8>("0." + zeros + "1e1000001", Rule::Collapse), "1");
  EXPECT_EQ(Rewritten<ItemType::string>(std::string(1'000'000, ' ') + "x", Rule::Collapse), "x");
  EXPECT_THROW(CConversions::decimalFromString("1e" + nines, Rule::Collapse),
               CZuInvalidValueException);
}

TEST(Conversions, RealsAgreeWithTheCLibrary) {
  constexpr unsigned kSeed = 5702;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t pattern = random();
    double value = 0;
    std::memcpy(&value, &pattern, sizeof value);
    if (i % 2 == 0) value = static_cast<double>(static_cast<long>(pattern) >> 40) / 1000;
    // All digits, and halves between two digits, at everyday sizes.
    if (i % 3 == 0) value = std::ldexp(static_cast<double>(pattern >> 11), -(i % 70));
    if (i % 5 == 0) value = std::ldexp(static_cast<double>(pattern % 64 * 2 + 1), -(i % 60));
    if (!std::isfinite(value)) continue;
    char text[48];
    std::snprintf(text, sizeof text, "%.16g", value);
    ASSERT_EQ(CConversions::r8ToString(value), text);
    ASSERT_EQ(CConversions::r8FromString(text, Rule::None), std::strtod(text, nullptr)) << text;
    std::snprintf(text, sizeof text, "%.17g", value);
    ASSERT_EQ(CConversions::r8FromString(text, Rule::None), value) << text;
    const auto narrow = static_cast<float>(std::ldexp(std::remainder(value, 2), i % 200 - 100));
    std::snprintf(text, sizeof text, "%.7g", static_cast<double>(narrow));
    ASSERT_EQ(CConversions::r4ToString(narrow), text);
  }
}

TEST(Conversions, NumbersIgnoreTheLocale) {
  const CommaLocale comma;
  if (!comma.IsAvailable()) GTEST_SKIP() << "no locale with a decimal comma could be made";
  char text[8];
  std::snprintf(text, sizeof text, "%.1f", 1.5);
  ASSERT_STREQ(text, "1,5");
  EXPECT_EQ(CConversions::r8ToString(1.5), "1.5");
  EXPECT_EQ(CConversions::r8ToString(1234.5, "%.2f"), "1234.50");
  // The second is read by the C library.
  EXPECT_EQ(CConversions::r8FromString("+1.5", Rule::None), 1.5);
  EXPECT_THROW(CConversions::r8FromString("1,5", Rule::None), CZuInvalidValueException);
  EXPECT_EQ(CConversions::decimalToString(CDecimal("1.5"), "2"), "1.50");
  EXPECT_EQ(static_cast<double>(CDecimal("1.5")), 1.5);
  const CPrimitiveRestrictions facets("", -1, -1, "", "1.25", "", "", -1, -1, -1);
  EXPECT_ZU_ERROR(CZuException, CXmlObjectHelper::CheckRestrictionForr8("n", 1.5, facets),
                  "Invalid Value for n [1.500000]", "");
  std::snprintf(text, sizeof text, "%.1f", 1.5);
  EXPECT_STREQ(text, "1,5");  // put back after every conversion
}

}  // namespace
}  // namespace ZuXmlLib16
