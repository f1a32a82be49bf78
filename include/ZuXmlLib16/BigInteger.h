#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

class CDecimal;

/// An integer of any length (xs:integer and the types derived from it, XML Schema Part 2, 3.3.13),
/// kept as decimal digits. Parsing, printing, comparing, adding and subtracting take time linear in
/// the number of digits; multiplying, dividing and taking roots take quadratic time.
///
/// The operators take built-in integers on either side. A compound operator that throws leaves its
/// operand unchanged.
class ZUXMLLIB16_API CBigInteger {
 public:
  /// Decimal digits as values 0 to 9, the least significant first.
  using Digits = std::string;

  static const CBigInteger MAX_LONG;      ///< 2147483647
  static const CBigInteger MIN_LONG;      ///< -2147483648
  static const CBigInteger MAX_LONGLONG;  ///< 9223372036854775807
  static const CBigInteger MIN_LONGLONG;  ///< -9223372036854775808
  static const CBigInteger MAX_DOUBLE;    ///< 17 followed by 307 zeros
  static const CBigInteger MIN_DOUBLE;    ///< -MAX_DOUBLE

  CBigInteger() = default;
  CBigInteger(int value);
  CBigInteger(unsigned int value);
  CBigInteger(long value);
  CBigInteger(unsigned long value);
  CBigInteger(long long value);
  CBigInteger(unsigned long long value);
  /// Rounds to the nearest integer, halves toward zero. All steps are taken in double precision, so
  /// that from 2^52 on the lowest digits may be wrong; CDecimal reads the shortest text of a double
  /// instead.
  /// @throws CZuInvalidValueException  for infinities and NaN.
  CBigInteger(double value);
  /// As Parse.
  CBigInteger(const char* text);
  CBigInteger(const std::string& text);
  explicit CBigInteger(std::string_view text);
  /// The integer part; the fraction is dropped. Explicit, since it may lose digits.
  explicit CBigInteger(const CDecimal& value);
  CBigInteger(const CBigInteger& other) = default;
  /// Leaves zero behind.
  CBigInteger(CBigInteger&& other) noexcept;
  CBigInteger& operator=(const CBigInteger& other) = default;
  CBigInteger& operator=(CBigInteger&& other) noexcept;
  virtual ~CBigInteger();

  /// Reads leniently: spaces around the text and everything before the last run of digits are
  /// ignored, and a text without digits at its end is 0; only a '-' at the very beginning makes the
  /// value negative. A text with any other character than digits, signs and white space is read as
  /// a CDecimal, with its errors, and loses its fraction: "1.9" is 1, "1E3" is 1000.
  /// @param text  null counts as "".
  /// @throws CZuInvalidValueException  as the constructor of CDecimal; the value is unchanged.
  void Parse(const char* text);
  void Parse(std::string_view text);
  /// '-' for negative values and the digits, without leading zeros.
  std::string ToString() const;

  bool IsNegative() const { return m_sign < 0; }
  bool IsZero() const { return m_digits.size() == 1 && m_digits[0] == 0; }
  /// Without leading zeros; the single digit 0 for zero.
  const Digits& GetDigits() const { return m_digits; }

  CBigInteger operator+(const CBigInteger& other) const {
    return std::move(CBigInteger(*this) += other);
  }
  CBigInteger operator-(const CBigInteger& other) const {
    return std::move(CBigInteger(*this) -= other);
  }
  CBigInteger operator*(const CBigInteger& other) const {
    return std::move(CBigInteger(*this) *= other);
  }
  /// The quotient, cut toward zero.
  /// @throws CZuInvalidValueException  for a divisor of zero, as the three others below.
  CBigInteger operator/(const CBigInteger& divisor) const;
  /// The remainder of that quotient; it has the sign of the dividend.
  CBigInteger operator%(const CBigInteger& divisor) const;
  CBigInteger& operator+=(const CBigInteger& other);
  CBigInteger& operator-=(const CBigInteger& other);
  CBigInteger& operator*=(const CBigInteger& other);
  CBigInteger& operator/=(const CBigInteger& divisor);
  CBigInteger& operator%=(const CBigInteger& divisor);

  /// Changes the sign of this object, not only that of the result.
  CBigInteger operator-() { return Negate(); }
  CBigInteger& Negate();
  CBigInteger GetNegative() const { return std::move(CBigInteger(*this).Negate()); }
  /// Makes this object positive.
  CBigInteger& Abs();
  CBigInteger GetAbs() const { return std::move(CBigInteger(*this).Abs()); }

  /// The largest integer whose square is not above this value.
  /// @throws CZuInvalidValueException  for a negative value.
  CBigInteger SquareRoot() const;
  /// 10 to the power of exponent, which takes exponent bytes.
  static CBigInteger Pow10(unsigned int exponent);

  bool operator==(const CBigInteger& other) const { return Compare(other) == 0; }
  bool operator!=(const CBigInteger& other) const { return Compare(other) != 0; }
  bool operator<(const CBigInteger& other) const { return Compare(other) < 0; }
  bool operator>(const CBigInteger& other) const { return Compare(other) > 0; }
  bool operator<=(const CBigInteger& other) const { return Compare(other) <= 0; }
  bool operator>=(const CBigInteger& other) const { return Compare(other) >= 0; }

  /// @throws CZuInvalidValueException  outside the range of int.
  operator int() const;
  /// @throws CZuInvalidValueException  outside the range of long long.
  operator long long() const;

 private:
  friend class CDecimal;

  CBigInteger(bool negative, Digits&& digits);

  /// @return -1, 0 or 1 as this value is smaller than, equal to or larger than other.
  int Compare(const CBigInteger& other) const;
  void AddSigned(std::int32_t sign, const Digits& digits);
  void Assign(std::int32_t sign, Digits&& digits);

  std::int32_t m_sign = 1;  // 1 or -1; always 1 for zero
  Digits m_digits = Digits(1, '\0');
};

namespace detail {

/// True for a big integer and a built-in one, in either order.
template <class Left, class Right>
using IfWithBuiltIn =
    std::enable_if_t<(std::is_base_of_v<CBigInteger, Left> && std::is_integral_v<Right>) ||
                         (std::is_integral_v<Left> && std::is_base_of_v<CBigInteger, Right>),
                     int>;

}  // namespace detail

// Without these a built-in operand could as well mean the built-in operator on a converted value.
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
CBigInteger operator+(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator+(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
CBigInteger operator-(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator-(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
CBigInteger operator*(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator*(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
CBigInteger operator/(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator/(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
CBigInteger operator%(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator%(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
bool operator==(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator==(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
bool operator!=(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator!=(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
bool operator<(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator<(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
bool operator>(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator>(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
bool operator<=(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator<=(right);
}
template <class Left, class Right, detail::IfWithBuiltIn<Left, Right> = 0>
bool operator>=(const Left& left, const Right& right) {
  return static_cast<const CBigInteger&>(left).operator>=(right);
}

}  // namespace ZuXmlLib16
