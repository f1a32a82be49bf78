#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>

#include "ZuXmlLib16/BigInteger.h"
#include "ZuXmlLib16/Decimal.h"
#include "tests/support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

__extension__ typedef __int128 Int128;

constexpr unsigned int kSeed = 20240607;

// Another file's initialiser: the constants must be made by then.
// NOLINTNEXTLINE(cert-err58-cpp): throwing here is a failed test
const std::string g_sumOfConstants =
    (CBigInteger::MAX_LONGLONG + CBigInteger::MIN_LONGLONG + CBigInteger::MAX_LONG +
     CBigInteger::MIN_LONG + CBigInteger::MAX_DOUBLE + CBigInteger::MIN_DOUBLE)
        .ToString();

std::string ToText(Int128 value) {
  const bool negative = value < 0;
  std::string text;
  do {
    const int digit = static_cast<int>(value % 10);
    text.insert(text.begin(), static_cast<char>('0' + (digit < 0 ? -digit : digit)));
    value /= 10;
  } while (value != 0);
  return negative ? "-" + text : text;
}

CBigInteger ToBig(Int128 value) {
  return CBigInteger(ToText(value).c_str());
}

/// Random operands; the seed is printed with every failure.
class BigIntegerProperty : public testing::Test {
 protected:
  BigIntegerProperty() : m_trace(__FILE__, __LINE__, "seed " + std::to_string(kSeed)) {}

  int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned int>(limit)); }

  /// Up to 62 bits, all lengths alike.
  std::int64_t Operand() {
    const auto bits = (std::uint64_t{m_random()} << 32 | m_random()) >> (2 + Below(60));
    return Below(2) == 0 ? static_cast<std::int64_t>(bits) : -static_cast<std::int64_t>(bits);
  }

  /// Runs of 0 and 9 drive carries, borrows and bad quotient estimates; other digits are rare.
  std::string LongText(int maxDigits) {
    std::string text = Below(2) == 0 ? "-" : "";
    text += static_cast<char>('1' + Below(9));
    const int size = Below(maxDigits);
    while (static_cast<int>(text.size()) < size) {
      const char digit = "009975"[Below(6)];
      text.append(static_cast<std::size_t>(Below(20)) + 1, digit);
    }
    return text;
  }
  CBigInteger LongOperand(int maxDigits) { return CBigInteger(LongText(maxDigits).c_str()); }

 private:
  std::mt19937 m_random{kSeed};
  testing::ScopedTrace m_trace;
};

TEST_F(BigIntegerProperty, AgreesWith128BitArithmetic) {
  for (int i = 0; i < 20000; ++i) {
    const Int128 x = Operand();
    const Int128 y = Operand();
    const CBigInteger a = ToBig(x);
    const CBigInteger b = ToBig(y);
    SCOPED_TRACE(a.ToString() + " and " + b.ToString());
    ASSERT_EQ((a + b).ToString(), ToText(x + y));
    ASSERT_EQ((a - b).ToString(), ToText(x - y));
    ASSERT_EQ((a * b).ToString(), ToText(x * y));
    ASSERT_EQ(a < b, x < y);
    ASSERT_EQ(a >= b, x >= y);
    ASSERT_EQ(a == b, x == y);
    ASSERT_EQ(static_cast<long long>(a), static_cast<long long>(x));
    if (y == 0) continue;
    ASSERT_EQ((a / b).ToString(), ToText(x / y));
    ASSERT_EQ((a % b).ToString(), ToText(x % y));
    const Int128 product = x * y + y / 2;
    ASSERT_EQ((ToBig(product) / b).ToString(), ToText(product / y));
    ASSERT_EQ((ToBig(product) % b).ToString(), ToText(product % y));
  }
}

TEST_F(BigIntegerProperty, InverseOperationsUndoEachOther) {
  for (int i = 0; i < 3000; ++i) {
    const std::string text = LongText(300);
    const CBigInteger a(text.c_str());
    const CBigInteger b = LongOperand(200);
    SCOPED_TRACE(text + " and " + b.ToString());
    ASSERT_EQ(a.ToString(), text);
    ASSERT_EQ((a + b) - b, a);
    ASSERT_EQ((a * b) / b, a);
    ASSERT_EQ((a / b) * b + a % b, a);
    ASSERT_LT((a % b).GetAbs(), b.GetAbs());
    ASSERT_TRUE((a % b).IsZero() || (a % b).IsNegative() == a.IsNegative());
  }
}

TEST_F(BigIntegerProperty, SquareRootIsTheFloor) {
  for (int i = 0; i < 300; ++i) {
    const CBigInteger value = i < 120 ? CBigInteger(i) : LongOperand(120).GetAbs();
    const CBigInteger root = value.SquareRoot();
    SCOPED_TRACE(value.ToString());
    ASSERT_LE(root * root, value);
    ASSERT_GT((root + 1) * (root + 1), value);
    ASSERT_EQ((value * value).SquareRoot(), value);
  }
}

TEST(BigIntegerText, IsReadLeniently) {
  // A foreign character makes it a decimal, which loses its fraction. Otherwise only the digits at
  // the end and a leading '-' count, on purpose.
  const std::pair<const char*, const char*> cases[] = {
      {"  -123  ", "-123"}, {"000120", "120"}, {"-0", "0"},   {"-1.9", "-1"}, {"-0.5", "0"},
      {"\t1.5e1\n", "15"},  {"", "0"},         {"-", "0"},    {"+12", "12"},  {"1 2", "2"},
      {"12-3", "3"},        {"--7", "-7"},     {"- 7", "-7"}, {"12\n", "0"},  {"\t-5", "5"}};
  for (const auto& [text, value] : cases) {
    EXPECT_EQ(CBigInteger(text).ToString(), value) << text;
    EXPECT_EQ(CBigInteger(std::string(text)).ToString(), value) << text;
  }
  EXPECT_EQ(CBigInteger(static_cast<const char*>(nullptr)), 0);
}

TEST(BigIntegerText, AFailedParseLeavesTheValue) {
  CBigInteger value(5);
  EXPECT_ZU_ERROR(CZuInvalidValueException, value.Parse("12a"),
                  "The value [12a] can not be converted to a decimal", "");
  EXPECT_EQ(value, 5);
}

TEST(BigIntegerText, AMillionDigitsRoundTrip) {
  std::string text = "-1";
  for (int i = 0; i < 100000; ++i)
    text += "8070605049";
  const CBigInteger value(text.c_str());
  EXPECT_TRUE(value.ToString() == text);
  EXPECT_GT(value + 1, value);
  text += ".250";
  EXPECT_TRUE(CDecimal(text).ToString() == text);
  EXPECT_LT(CDecimal(text), value);
}

TEST(BigIntegerFromDouble, RoundsHalvesTowardZero) {
  // All steps are taken in double precision: the half cannot be subtracted exactly from 2^52 on,
  // nor the tenth part be taken exactly from 2^53 on. Pinned on purpose.
  const std::pair<double, const char*> cases[] = {{2.5, "2"},
                                                  {2.6, "3"},
                                                  {-2.5, "-2"},
                                                  {-2.6, "-3"},
                                                  {-0.3, "0"},
                                                  {1e20, "100000000000000000000"},
                                                  {9007199254740991.0, "9007199254740990"},
                                                  {1e23, "100000000000000000000002"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(CBigInteger(value).ToString(), text) << value;
  for (double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, CBigInteger(value),
                    "ERROR: Value is not a finite number.", "");
  }
}

TEST(BigIntegerConversion, TakesEveryBuiltInInteger) {
  const auto expectLimits = [](auto zero) {
    using Limits = std::numeric_limits<decltype(zero)>;
    EXPECT_EQ(CBigInteger(Limits::max()).ToString(), std::to_string(Limits::max()));
    EXPECT_EQ(CBigInteger(Limits::min()).ToString(), std::to_string(Limits::min()));
  };
  expectLimits(0);
  expectLimits(0U);
  expectLimits(0L);
  expectLimits(0UL);
  expectLimits(0LL);
  expectLimits(0ULL);
  const CBigInteger seven = 7;
  EXPECT_TRUE(7L == seven && seven != short{8} && 6ULL < seven && 8 >= seven && seven == "7");
  EXPECT_EQ(1 + 100 % seven * 2 - 3LL, 2);
}

TEST(BigIntegerConversion, ChecksTheRange) {
  using Ints = std::numeric_limits<int>;
  using Longs = std::numeric_limits<long long>;
  EXPECT_EQ(static_cast<int>(CBigInteger::MAX_LONG), Ints::max());
  EXPECT_EQ(static_cast<int>(CBigInteger::MIN_LONG), Ints::min());
  EXPECT_EQ(static_cast<long long>(CBigInteger::MAX_LONGLONG), Longs::max());
  EXPECT_EQ(static_cast<long long>(CBigInteger::MIN_LONGLONG), Longs::min());
  const CBigInteger huge = CBigInteger::Pow10(30);
  for (const CBigInteger& value : {CBigInteger::MAX_LONG + 1, CBigInteger::MIN_LONG - 1, huge}) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, static_cast<int>(value),
                    "ERROR: Value out of bound of int.", "");
  }
  for (const CBigInteger& value :
       {CBigInteger::MAX_LONGLONG + 1, CBigInteger::MIN_LONGLONG - 1, -1 * huge}) {
    EXPECT_ZU_ERROR(CZuInvalidValueException, static_cast<long long>(value),
                    "ERROR: Value out of bound of LONGLONG.", "");
  }
}

TEST(BigIntegerConstants, AreMadeBeforeOtherInitialisers) {
  EXPECT_EQ(g_sumOfConstants, "-2");
  EXPECT_EQ(CBigInteger::MAX_DOUBLE, 17 * CBigInteger::Pow10(307));
}

TEST(BigIntegerOperators, RefuseAZeroDivisorAndANegativeRadicand) {
  CBigInteger value = 7;
  EXPECT_ZU_ERROR(CZuInvalidValueException, value / 0, "ERROR: Overflow in operator/.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value % 0, "ERROR: Overflow in operator%.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value /= 0, "ERROR: Overflow in operator /=.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value %= 0, "ERROR: Overflow in operator%=.", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CBigInteger(-1).SquareRoot(),
                  "ERROR: Negative Number in function SquareRoot().", "");
  EXPECT_EQ(value, 7);
}

TEST(BigIntegerOperators, AreSafeOnThemselves) {
  CBigInteger value("-99999999999999999999");
  value += value;
  EXPECT_EQ(value.ToString(), "-199999999999999999998");
  value *= value;
  EXPECT_EQ(value.ToString(), "39999999999999999999200000000000000000004");
  CBigInteger copy = value;
  EXPECT_EQ(copy /= copy, 1);
  EXPECT_EQ(copy %= copy, 0);
  EXPECT_EQ((value -= value).ToString(), "0");
  value = std::move(copy);
  // A moved-from value is usable: NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-*)
  EXPECT_EQ((copy += 3).ToString(), "3");
}

TEST(BigIntegerSign, UnaryMinusChangesTheObject) {
  CBigInteger value = 5;
  EXPECT_EQ(-value, -5);
  EXPECT_EQ(value.GetNegative(), 5);
  EXPECT_EQ(value.GetAbs(), 5);
  EXPECT_EQ(value, -5);
  EXPECT_EQ(value.Abs(), 5);
}

TEST(BigIntegerSign, ZerosAreEqualHoweverTheyWereMade) {
  CBigInteger negated = 0;
  negated.Negate();
  for (const CBigInteger& zero :
       {negated, CBigInteger("-0"), CBigInteger(-0.3), 0 * CBigInteger(-3), CBigInteger(-3) + 3,
        CBigInteger(-1) / 2, CBigInteger(-4) % 2}) {
    EXPECT_EQ(zero.ToString(), "0");
    EXPECT_TRUE(zero == 0 && !(zero < 0) && zero >= 0 && !zero.IsNegative());
  }
}

}  // namespace
}  // namespace ZuXmlLib16
