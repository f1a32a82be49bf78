#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "ZuXmlLib16/Decimal.h"
#include "tests/support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

constexpr unsigned int kSeed = 20240608;

std::string Zeros(std::size_t count) {
  return std::string(count, '0');
}

std::string NotADecimal(const std::string& text) {
  return "The value [" + text + "] can not be converted to a decimal";
}

std::string TooLarge(const std::string& text) {
  return "The value [" + text + "] is to large to fit in a decimal";
}

TEST(DecimalText, IsReadAndPrinted) {
  // clang-format off
  const struct {
    const char* text;
    const char* printed;
    const char* canonical;
  } cases[] = {
      {"007.50", "7.50", "7.5"}, {" \t\r\n+12.0\n", "12.0", "12"}, {"-.050", "-0.050", "-0.05"},
      {"-0.00", "0.00", "0"}, {"1.5E3", "1500", "1500"}, {"-12.5E-2", "-0.125", "-0.125"},
      {"0e-2", "0.00", "0"}, {"1e00000000000000000002", "100", "100"},
      {"123456789012345678901234567890.10", "123456789012345678901234567890.10",
      "123456789012345678901234567890.1"},
  };
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_STREQ(CDecimal(c.text).ToString().c_str(), c.printed);
    EXPECT_EQ(CDecimal(c.text).GetCanonical().ToString(), c.canonical);
    EXPECT_EQ(CDecimal(c.text).GetCanonical(), c.text);
  }
}

TEST(DecimalText, RefusesEverythingElse) {
  for (const char* text : {"", ".", "-", "+.e1", "1.2.3", "--1", "1 2", "1e", "1e+", "e5", "1e1.5",
                           "0x10", "INF", "1\v", "1e9999999999x"}) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, CDecimal(text), NotADecimal(text), "");
  }
  const std::string withNul("1\0", 2);
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDecimal(withNul), NotADecimal(withNul), "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDecimal(static_cast<const char*>(nullptr)),
                  NotADecimal(""), "");
}

TEST(DecimalText, BoundsExponentAndFraction) {
  for (const std::string text :
       {"1E100001", "1E-100001", "0E999999999999999999999", "0.1E-100000"}) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, CDecimal(text), TooLarge(text), "");
  }
  EXPECT_THROW(CDecimal("0." + Zeros(100001)), CZuInvalidValueException);
  EXPECT_EQ(CDecimal("0." + Zeros(100004) + "1E5").GetFractionalDigits(), 100000);
  EXPECT_EQ(CDecimal("1E100000").ToString(), "1" + Zeros(100000));
  EXPECT_EQ(CDecimal("1E-100000").ToString(), "0." + Zeros(99999) + "1");
}

TEST(DecimalText, RoundsHalfAwayFromZeroToAsManyDigitsAsAsked) {
  const struct {
    const char* text;
    int digits;
    const char* rounded;
  } cases[] = {
      {"-2.5", 0, "-3"},     {"2.4999", 0, "2"},    {"0.5", 0, "1"},      {"-0.4", 0, "0"},
      {"-0.004", 2, "0.00"}, {"9.995", 2, "10.00"}, {"1.5", 4, "1.5000"}, {"1.50", -1, "1.50"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(CDecimal(c.text).ToString(c.digits), c.rounded) << c.text << ", " << c.digits;
  EXPECT_EQ(CDecimal(1).ToString(std::numeric_limits<int>::max()), "1." + Zeros(100000));
}

TEST(DecimalFraction, IsCutOrPaddedInPlace) {
  CDecimal value("-1.99");
  value.ChangeFractionalDivider(1);
  EXPECT_EQ(value.ToString(), "-1.9");
  value.ChangeFractionalDivider(3);
  EXPECT_EQ(value.ToString(), "-1.900");
  value = "-0.9";
  value.ChangeFractionalDivider(0);
  EXPECT_EQ(value.ToString(), "0");
  EXPECT_FALSE(value.IsNegative());
  EXPECT_EQ(CBigInteger(CDecimal("-1.9")), -1);
}

TEST(DecimalDigitCounts, LeaveOutZerosThatCarryNoValue) {
  const struct {
    const char* text;
    std::size_t integer, fraction;
  } cases[] = {{"0.00", 0, 0}, {"-1.50", 1, 1}, {"0.0010", 0, 3}, {"00120.0", 3, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(CDecimal(c.text).GetIntegerPartLength(), c.integer) << c.text;
    EXPECT_EQ(CDecimal(c.text).GetFractionPartLength(), c.fraction) << c.text;
  }
}

TEST(DecimalArithmetic, KeepsTheScaleOfTheLongerOperand) {
  EXPECT_EQ((CDecimal("1.50") + 1).ToString(), "2.50");
  EXPECT_EQ((CDecimal("1.5") * CDecimal("2.0")).ToString(), "3.0");
  EXPECT_EQ((CDecimal("0.0") * CDecimal("-5.00")).ToString(), "0.00");
  EXPECT_EQ((CDecimal("-2") / 3).ToString(), "-0.66666666666666666666");
  EXPECT_EQ((CDecimal(10) / CDecimal("0.5")).ToString(), "20.0");
  EXPECT_EQ((CDecimal(1) / CDecimal("3.000000000000000000000")).ToString(),
            "0.333333333333333333333");
  // A big integer beside a decimal counts as a decimal.
  EXPECT_EQ((CBigInteger(2) * CDecimal("1.5")).ToString(), "3.0");
}

TEST(DecimalArithmetic, RefusesWhatHasNoResultAndKeepsTheOperand) {
  CDecimal value("1.5");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value / 0, "ERROR: Overflow in operator/.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value % 0, "ERROR: Overflow in operator%.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value /= "0.0", "ERROR: Overflow in operator /=.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value %= 0, "ERROR: Overflow in operator%=.", "");
  EXPECT_EQ(value, "1.5");
  CDecimal tiny("1E-60000");
  EXPECT_ZU_ERROR(CZuInvalidValueException, tiny *= tiny, TooLarge("0." + Zeros(119999) + "1"), "");
  EXPECT_EQ(tiny.GetFractionalDigits(), 60000);
}

TEST(DecimalArithmetic, IsSafeOnItself) {
  CDecimal value("-1.25");
  EXPECT_EQ((value += value).ToString(), "-2.50");
  EXPECT_EQ((value *= value).ToString(), "6.25");
  CDecimal copy = value;
  EXPECT_EQ((copy %= copy).ToString(), "0.00");
  EXPECT_EQ((value /= value).ToString(), "1.00");
  EXPECT_EQ((value -= value).ToString(), "0.00");
}

TEST(DecimalSign, UnaryMinusChangesTheObject) {
  CDecimal value("1.5");
  EXPECT_EQ(-value, "-1.5");
  EXPECT_EQ(value, "-1.5");
  EXPECT_EQ(CDecimal("0.0").Negate().ToString(), "0.0");
}

TEST(DecimalProperties, AgreeWithScaledIntegers) {
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const auto below = [&](unsigned int limit) { return static_cast<int>(random() % limit); };
  const int powers[] = {1, 10, 100, 1000, 10000};
  for (int i = 0; i < 20000; ++i) {
    // Small numbers, so that equal values of different scale are frequent.
    const long long x = below(2000) - 1000;
    const long long y = below(2000) - 1000;
    const int scaleOfX = below(5);
    const int scaleOfY = below(5);
    const CDecimal a(std::to_string(x) + "e-" + std::to_string(scaleOfX));
    const CDecimal b(std::to_string(y) + "e-" + std::to_string(scaleOfY));
    SCOPED_TRACE(a.ToString() + " and " + b.ToString());
    const long long left = x * powers[4 - scaleOfX];
    const long long right = y * powers[4 - scaleOfY];
    const auto scaled = [](long long value, const char* exponent) {
      return CDecimal(std::to_string(value) + exponent);
    };
    ASSERT_EQ(CDecimal(a.ToString()).ToString(), a.ToString());
    ASSERT_EQ(a < b, left < right);
    ASSERT_EQ(a <= b, left <= right);
    ASSERT_EQ(a == b, left == right);
    ASSERT_EQ(a + b, scaled(left + right, "e-4"));
    ASSERT_EQ(a - b, scaled(left - right, "e-4"));
    ASSERT_EQ(a * b, scaled(x * y, ("e-" + std::to_string(scaleOfX + scaleOfY)).c_str()));
    if (right == 0) continue;
    ASSERT_EQ(a % b, scaled(left % right, "e-4"));
    const CDecimal lost = a.GetAbs() - (a / b * b).GetAbs();
    ASSERT_TRUE(lost >= 0 && lost < b.GetAbs() * CDecimal("1E-20"));
  }
}

TEST(DecimalConversion, GivesBackEveryDouble) {
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 5000; ++i) {
    const std::uint64_t bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof(value));
    if (!(std::fabs(value) <= 1.7e308)) continue;
    ASSERT_EQ(static_cast<double>(CDecimal(value)), value);
  }
  EXPECT_EQ(CDecimal(0.1).ToString(), "0.1");
  EXPECT_EQ(CDecimal(-1e22).ToString(), "-10000000000000000000000");
  EXPECT_EQ(static_cast<double>(CDecimal("5E-324")), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(static_cast<double>(CDecimal("1E-99999")), 0.0);
  EXPECT_EQ(static_cast<double>(CDecimal("0." + std::string(90000, '3'))), 1.0 / 3);
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDecimal(std::nan("")),
                  "ERROR: Value is not a finite number.", "");
}

TEST(DecimalConversion, ChecksTheRangeOfTheIntegerPart) {
  using Longs = std::numeric_limits<long long>;
  EXPECT_EQ(static_cast<long>(CDecimal("-2147483648.9")), -2147483648L);
  EXPECT_EQ(static_cast<long long>(CDecimal("9223372036854775807.9")), Longs::max());
  EXPECT_EQ(static_cast<double>(CDecimal("1.7E308") + CDecimal("0.9")), 1.7e308);
  EXPECT_ZU_ERROR(CZuOverFlowException, static_cast<long>(CDecimal("2147483648")),
                  "The Decimal value if to large to fit into a LONG", "");
  EXPECT_ZU_ERROR(CZuOverFlowException, static_cast<long long>(CDecimal("-9223372036854775809")),
                  "The Decimal value if to large to fit into a LONGLONG", "");
  EXPECT_ZU_ERROR(CZuOverFlowException, static_cast<double>(CDecimal("1.7000000000000001E308")),
                  "The Decimal value if to large to fit into a Double", "");
}

}  // namespace
}  // namespace ZuXmlLib16
