#pragma once

#include <string>
#include <string_view>

/// Arithmetic on magnitudes kept as decimal digits: one char a digit, values 0 to 9, the least
/// significant digit first, no zero at the far end, at least one digit ("clean"). Short arrays need
/// no memory of their own. Sums and differences may be stored over an operand.
namespace ZuXmlLib16::detail {

using Digits = std::string;

inline bool IsZero(const Digits& digits) {
  return digits.size() == 1 && digits[0] == 0;
}

/// Removes zeros at the most significant end; an empty array becomes the digit 0.
void Clean(Digits& digits);

/// Puts the digits of a text above those present; not clean when the text begins with zeros.
void AppendText(std::string_view text, Digits& digits);

Digits DigitsOf(unsigned long long value);
/// As many digits always fit a machine word.
inline constexpr std::size_t kWordDigits = 19;
/// @param digits  kWordDigits at most.
unsigned long long WordOf(const Digits& digits);
/// @param magnitude  finite and not negative. Halves round down. All steps are taken in double
/// precision, so that from 2^52 on the lowest digits may be wrong.
Digits DigitsOf(double magnitude);

/// @return -1, 0 or 1 as a is smaller than, equal to or larger than b.
int Compare(const Digits& a, const Digits& b);

void Add(const Digits& a, const Digits& b, Digits& sum);
/// Needs a >= b.
void Subtract(const Digits& a, const Digits& b, Digits& difference);
Digits Multiply(const Digits& a, const Digits& b);
/// Multiplies by 10^places.
void ShiftLeft(Digits& digits, std::size_t places);
/// Divides by 10^places and drops the remainder.
void ShiftRight(Digits& digits, std::size_t places);

struct Division {
  Digits quotient;
  Digits remainder;
};
/// Needs b other than zero.
Division Divide(const Digits& a, const Digits& b);

}  // namespace ZuXmlLib16::detail
