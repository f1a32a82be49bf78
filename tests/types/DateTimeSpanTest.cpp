#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

#include "ZuXmlLib16/DateTimeSpan.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

CDateTimeSpan Parsed(std::string_view text) {
  CDateTimeSpan span;
  span.ParseXSDDuration(text);
  return span;
}

TEST(DurationText, ParsesAndPrints) {
  // clang-format off
  const char* const cases[][2] = {
      {"P1Y2M3DT4H5M6.789S", "P1Y2M3DT4H5M6.789S"}, {"PT0.000000001S", "PT0.000000001S"},
      {"PT3.120S", "PT3.12S"},
      {"-PT0S", "-P"},  // zero prints what cannot be read
      // Leniencies.
      {"PT1H2Y", "P2YT1H"}, {"PT1.5S2YT3S", "P2YT3.5S"}, {"PT1.5S2YT3.25S", "P2YT3.25S"},
      {"PYMDTHMS", "P"}, {"P5T1H", "PT1H"}, {"PT1.5", "PT1.5S"}, {"PT1.S", "PT1S"}, {"PT.", "P"},
      // Digits wrap at 32 bits, years at 16.
      {"PT18446744073709551617S", "PT1S"}, {"P65537Y", "P1Y"},
  };
  // clang-format on
  for (const auto& c : cases)
    EXPECT_EQ(Parsed(c[0]).ToString(), c[1]) << c[0];
  CDateTimeSpan span(9, 9, 9);
  span.SetDateTimeSpan(USHRT_MAX, ULONG_MAX, ULONG_MAX, ULONG_MAX, ULLONG_MAX, ULLONG_MAX,
                       USHRT_MAX, USHRT_MAX, USHRT_MAX);
  span.Negate();
  EXPECT_EQ(span.ToString(),
            "-P65535Y18446744073709551615M18446744073709551615D"
            "T18446744073709551615H18446744073709551615M18446744073709551615.655356553565535S");
}

TEST(DurationText, RefusesOtherForms) {
  const auto fails = [](const std::string& text, const std::string& message) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, Parsed(text), message, "");
  };
  for (const char* text :
       {"-",      "1D",        "P",        "-P",     "PT",   "P1DT",   "P5T",   "P-1D",  "--P1D",
        "+P1D",   "P1",        "P1D2",     "P1H",    "P1S",  "PT1H1D", "P1D1D", "P1D1M", "PT1M1H",
        "PT1S1S", "P1DT1HT1M", "PT1.5.5S", "PT1.5H", "P1D ", " P1D",   "p1d"}) {
    fails(text, std::string("Invalid XSD Duration [") + text +
                    "] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]");
  }
  fails("", "Invalid XSD Duration (Empty String)");
  fails("PT1.1234567891S", "Invalid XSD Duration [PT1.1234567891S] Fraction part too long");
  const std::string withNul("P1D\0", 4);
  fails(withNul,
        "Invalid XSD Duration [" + withNul + "] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]");
  CDateTimeSpan span;
  EXPECT_ZU_ERROR(CZuInvalidValueException,
                  span.ParseXSDDuration(static_cast<const char*>(nullptr)),
                  "Invalid XSD Duration (Null String)", "");
}

TEST(DurationText, FailureKeepsWhatWasRead) {
  CDateTimeSpan span(1, 2, 3);
  EXPECT_THROW(span.ParseXSDDuration("-P7Y5M1H"), CZuInvalidValueException);
  EXPECT_EQ(span.ToString(), "-P7Y5M");
}

TEST(DurationText, HostileTextEnds) {
  const std::string digits(1000000, '9');
  EXPECT_NO_THROW(Parsed("P" + digits + "Y"));
  EXPECT_THROW(Parsed("PT1." + digits + "S"), CZuInvalidValueException);
  std::string years = "P";
  for (int i = 0; i < 100000; ++i)
    years += "1Y";
  EXPECT_EQ(Parsed(years).ToString(), "P1Y");
}

TEST(DurationText, RandomValuesRoundTrip) {
  constexpr unsigned kSeed = 20240301;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  const auto amount = [&random] { return random() % 2 == 0 ? 0u : random() >> (random() % 32); };
  const auto group = [&random] {
    return static_cast<unsigned short>(random() % 2 == 0 ? 0 : random() % 1000);
  };
  for (int i = 0; i < 20000; ++i) {
    CDateTimeSpan span(static_cast<unsigned short>(amount()), amount(), amount(), amount(),
                       amount(), amount(), group(), group(), group());
    if (random() % 2 == 0) span.Negate();
    const std::string text = span.ToString();
    if (text == "P" || text == "-P") continue;  // zero is the one value that cannot be read back
    const CDateTimeSpan again = Parsed(text);
    ASSERT_EQ(again.ToString(), text);
    ASSERT_TRUE(again == span) << text;
  }
}

TEST(DurationOrder, NeedsAgreementOfAllReferenceDates) {
  // clang-format off
  const struct {
    const char* a;
    const char* b;
    int order;
  } cases[] = {
      {"P1Y", "P12M", 0}, {"P1Y", "P364D", 2}, {"P1Y", "P365D", 3}, {"P1Y", "P367D", 1},
      {"P2M", "P62D", 3}, {"P1D", "P2D", 1},
      // The reference points are dates: less than a day does not count.
      {"PT1H", "PT2H", 0}, {"PT23H", "PT25H", 1}, {"PT0S", "-PT0S", 0},
      // The sums have years of opposite sign, or do not fit.
      {"-P2000Y", "P1Y", 3}, {"P65535Y", "P1Y", 3}, {"PT4294967295H", "PT1S", 3},
  };
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.a) + " and " + c.b);
    const CDateTimeSpan a = Parsed(c.a);
    const CDateTimeSpan b = Parsed(c.b);
    const int reversed[] = {0, 2, 1, 3};
    EXPECT_EQ(a.CompareTo(b), c.order);
    EXPECT_EQ(b.CompareTo(a), reversed[c.order]);
    EXPECT_TRUE((a == b) == (c.order == 0) && (a != b) == (c.order != 0));
    EXPECT_TRUE((a < b) == (c.order == 1) && (a > b) == (c.order == 2));
  }
}

TEST(DurationOrder, IsAntisymmetricAndTransitive) {
  constexpr unsigned kSeed = 20240302;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  const auto make = [&random] {
    CDateTimeSpan span(static_cast<unsigned short>(random() % 2), random() % 4, random() % 99,
                       random() % 48, 0, 0);
    if (random() % 3 == 0) span.Negate();
    return span;
  };
  int chains = 0;
  for (int i = 0; i < 10000; ++i) {
    const CDateTimeSpan a = make();
    const CDateTimeSpan b = make();
    const CDateTimeSpan c = make();
    SCOPED_TRACE(a.ToString() + " " + b.ToString() + " " + c.ToString());
    ASSERT_EQ((a < b), (b > a));
    ASSERT_EQ((a == b), (b == a));
    if (!(a < b && b < c)) continue;
    ASSERT_TRUE(a < c);
    ++chains;
  }
  EXPECT_GT(chains, 500);
}

TEST(DurationSign, IsOneForTheWholeValue) {
  CDateTimeSpan span = Parsed("-P1D");
  EXPECT_TRUE(span.GetAsNegative().IsNegative());
  span.Negate();
  EXPECT_EQ(span.GetAsNegative().ToString(), "-P1D");
  EXPECT_EQ(span.ToString(), "P1D");
  span.Negate();
  span.SetDateTimeSpan(1, 2, 3, 4, 5, 6);
  EXPECT_EQ(span.ToString(), "P1Y2M3DT4H5M6S");
}

}  // namespace
}  // namespace ZuXmlLib16
