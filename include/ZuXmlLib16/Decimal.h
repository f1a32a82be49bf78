#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "ZuXmlLib16/BigInteger.h"
#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// An exact decimal number of any length (xs:decimal, XML Schema Part 2, 3.2.3): an integer and the
/// number of its digits that are fraction digits, 0 to kMaxFractionalDigits. Trailing zeros of the
/// fraction are kept, so that a document is written as it was read; they count in no comparison.
///
/// A compound operator that throws leaves its operand unchanged.
class ZUXMLLIB16_API CDecimal {
 public:
  using Digits = CBigInteger::Digits;

  static constexpr int kMaxFractionalDigits = 100000;

  CDecimal() = default;
  CDecimal(int value) : m_unscaled(value) {}
  CDecimal(unsigned int value) : m_unscaled(value) {}
  CDecimal(long value) : m_unscaled(value) {}
  CDecimal(unsigned long value) : m_unscaled(value) {}
  CDecimal(long long value) : m_unscaled(value) {}
  CDecimal(unsigned long long value) : m_unscaled(value) {}
  /// The shortest number that reads back as the same double: 0.1 is "0.1".
  /// @throws CZuInvalidValueException  for infinities and NaN.
  CDecimal(double value);
  /// Reads an optional sign, digits with at most one '.' and at least one digit, and an optional
  /// exponent of ten, with white space around. "1.5E3" becomes 1500, "1E-2" becomes 0.01.
  /// @throws CZuInvalidValueException  other texts, null and "" among them; an exponent beyond
  /// +-kMaxFractionalDigits or more fraction digits than that.
  CDecimal(const char* text);
  CDecimal(const std::string& text);
  explicit CDecimal(std::string_view text);
  CDecimal(const CBigInteger& value) : m_unscaled(value) {}

  /// The digits without leading zeros, at least one before the '.', which stands only before a
  /// fraction; never an exponent.
  std::string ToString() const;
  /// With exactly this many fraction digits, at most kMaxFractionalDigits, rounded half away from
  /// zero. A result of zeros only has no sign. A negative number asks for ToString().
  std::string ToString(int fractionalDigits) const;
  /// A copy without trailing zeros in the fraction.
  CDecimal GetCanonical() const;

  bool IsNegative() const { return m_unscaled.IsNegative(); }
  bool IsZero() const { return m_unscaled.IsZero(); }
  /// All digits without the point and without leading zeros: "0.050" has 50.
  const Digits& GetDigits() const { return m_unscaled.GetDigits(); }
  /// Fraction digits as printed, trailing zeros included.
  int GetFractionalDigits() const { return m_fractionalDigits; }
  /// Pads the fraction with zeros or cuts it, without rounding.
  /// @param fractionalDigits  taken as the nearest of 0 and kMaxFractionalDigits when outside.
  void ChangeFractionalDivider(int fractionalDigits);
  /// Significant digits before the point: none in "0.5".
  std::size_t GetIntegerPartLength() const;
  /// Digits after the point up to the last that is not zero: three in "0.0010".
  std::size_t GetFractionPartLength() const;

  /// Sums and differences are exact, with the fraction digits of the longer operand.
  CDecimal& operator+=(const CDecimal& other);
  CDecimal& operator-=(const CDecimal& other);
  /// Exact; trailing zeros are dropped down to the fraction digits of the longer operand.
  /// @throws CZuInvalidValueException  when more than kMaxFractionalDigits would be left.
  CDecimal& operator*=(const CDecimal& other);
  /// Cut toward zero after 20 fraction digits, or as many as the longer operand has; trailing zeros
  /// are dropped as in a product.
  /// @throws CZuInvalidValueException  for a divisor of zero, as the three others.
  CDecimal& operator/=(const CDecimal& divisor);
  /// What the integer part of the quotient leaves, exact; it has the sign of the dividend.
  CDecimal& operator%=(const CDecimal& divisor);
  friend CDecimal operator+(CDecimal left, const CDecimal& right) {
    return std::move(left += right);
  }
  friend CDecimal operator-(CDecimal left, const CDecimal& right) {
    return std::move(left -= right);
  }
  friend CDecimal operator*(CDecimal left, const CDecimal& right) {
    return std::move(left *= right);
  }
  friend ZUXMLLIB16_API CDecimal operator/(CDecimal left, const CDecimal& divisor);
  friend ZUXMLLIB16_API CDecimal operator%(CDecimal left, const CDecimal& divisor);

  /// Changes the sign of this object, not only that of the result.
  CDecimal operator-() { return Negate(); }
  CDecimal& Negate();
  CDecimal GetNegative() const { return std::move(CDecimal(*this).Negate()); }
  /// Makes this object positive.
  CDecimal& Abs();
  CDecimal GetAbs() const { return std::move(CDecimal(*this).Abs()); }

  friend bool operator==(const CDecimal& a, const CDecimal& b) { return a.Compare(b) == 0; }
  friend bool operator!=(const CDecimal& a, const CDecimal& b) { return a.Compare(b) != 0; }
  friend bool operator<(const CDecimal& a, const CDecimal& b) { return a.Compare(b) < 0; }
  friend bool operator>(const CDecimal& a, const CDecimal& b) { return a.Compare(b) > 0; }
  friend bool operator<=(const CDecimal& a, const CDecimal& b) { return a.Compare(b) <= 0; }
  friend bool operator>=(const CDecimal& a, const CDecimal& b) { return a.Compare(b) >= 0; }

  /// The nearest double.
  /// @throws CZuOverFlowException  an integer part outside CBigInteger::MIN_DOUBLE to MAX_DOUBLE.
  explicit operator double() const;
  /// The integer part.
  /// @throws CZuOverFlowException  outside MIN_LONG to MAX_LONG, 32 bits although long is wider.
  explicit operator long() const;
  /// The integer part.
  /// @throws CZuOverFlowException  outside the range of long long.
  explicit operator long long() const;

 private:
  CDecimal(CBigInteger&& unscaled, int fractionalDigits);

  void Parse(std::string_view text);

  /// @return -1, 0 or 1 as this value is smaller than, equal to or larger than other.
  int Compare(const CDecimal& other) const;
  int CompareMagnitude(const CDecimal& other) const;
  /// The digits of this value when it is given that many fraction digits.
  CBigInteger GetUnscaled(int fractionalDigits) const;
  /// Drops trailing zeros of the fraction as long as more than this many digits are left.
  void TrimFraction(int fractionalDigits);
  void Round(int fractionalDigits);

  CBigInteger m_unscaled;
  int m_fractionalDigits = 0;
};

}  // namespace ZuXmlLib16
