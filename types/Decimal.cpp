#include "ZuXmlLib16/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "ZuXmlLib16/WhitespaceUtils.h"
#include "core/Errors.h"
#include "types/AsciiDigit.h"
#include "types/DigitArray.h"

namespace ZuXmlLib16 {
namespace {

constexpr int kMinQuotientDigits = 20;

/// Reads the parts of a text from its front.
class TextScanner {
 public:
  /// @param text  white space at both ends is left out.
  explicit TextScanner(std::string_view text) : m_rest(text) {
    while (!AtEnd() && CWhitespaceUtils::IsWhiteSpace(m_rest.front()))
      m_rest.remove_prefix(1);
    while (!AtEnd() && CWhitespaceUtils::IsWhiteSpace(m_rest.back()))
      m_rest.remove_suffix(1);
  }

  bool AtEnd() const { return m_rest.empty(); }
  bool Take(char c) {
    const bool found = !AtEnd() && m_rest.front() == c;
    if (found) m_rest.remove_prefix(1);
    return found;
  }
  /// @return whether the sign is '-'.
  bool TakeSign() {
    const bool negative = Take('-');
    if (!negative) Take('+');
    return negative;
  }
  std::string_view TakeDigits() {
    std::size_t size = 0;
    while (size < m_rest.size() && detail::IsDigit(m_rest[size]))
      ++size;
    const std::string_view digits = m_rest.substr(0, size);
    m_rest.remove_prefix(digits.size());
    return digits;
  }

 private:
  std::string_view m_rest;
};

/// A decimal number in text, taken apart.
struct NumberParts {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  bool negativeExponent = false;
  std::string_view exponent;
};

/// @return whether the text is well formed.
bool Split(std::string_view text, NumberParts& parts) {
  TextScanner scanner(text);
  parts.negative = scanner.TakeSign();
  parts.whole = scanner.TakeDigits();
  if (scanner.Take('.')) parts.fraction = scanner.TakeDigits();
  if (parts.whole.empty() && parts.fraction.empty()) return false;
  if (scanner.Take('e') || scanner.Take('E')) {
    parts.negativeExponent = scanner.TakeSign();
    parts.exponent = scanner.TakeDigits();
    if (parts.exponent.empty()) return false;
  }
  return scanner.AtEnd();
}

/// @return the exponent; any value above the limit when it is too large.
int ExponentOf(const NumberParts& parts) {
  int magnitude = 0;
  for (char c : parts.exponent) {
    magnitude = std::min(magnitude * 10 + (c - '0'), CDecimal::kMaxFractionalDigits + 1);
  }
  return parts.negativeExponent ? -magnitude : magnitude;
}

/// The digits of both parts above so many zeros.
detail::Digits DigitsOf(const NumberParts& parts, std::size_t zeros) {
  detail::Digits digits;
  digits.reserve(zeros + parts.fraction.size() + parts.whole.size());
  digits.append(zeros, '\0');
  detail::AppendText(parts.fraction, digits);
  detail::AppendText(parts.whole, digits);
  detail::Clean(digits);
  return digits;
}

}  // namespace

void CDecimal::Parse(std::string_view text) {
  NumberParts parts;
  if (!Split(text, parts)) ThrowNotADecimal(text);
  const int exponent = ExponentOf(parts);
  const long long fractionalDigits = static_cast<long long>(parts.fraction.size()) - exponent;
  if (std::abs(exponent) > kMaxFractionalDigits || fractionalDigits > kMaxFractionalDigits) {
    ThrowDecimalTooLarge(text);
  }
  const auto zeros = static_cast<std::size_t>(std::max(-fractionalDigits, 0LL));
  m_unscaled.Assign(parts.negative ? -1 : 1, DigitsOf(parts, zeros));
  m_fractionalDigits = static_cast<int>(std::max(fractionalDigits, 0LL));
}

CDecimal::CDecimal(double value) {
  if (!std::isfinite(value)) ThrowNotFinite();
  char text[32];
  const char* const end = std::to_chars(text, text + sizeof(text), value).ptr;
  Parse(std::string_view(text, static_cast<std::size_t>(end - text)));
}

CDecimal::CDecimal(const char* text) {
  Parse(text != nullptr ? text : "");
}

CDecimal::CDecimal(const std::string& text) {
  Parse(text);
}

CDecimal::CDecimal(std::string_view text) {
  Parse(text);
}

CDecimal::CDecimal(CBigInteger&& unscaled, int fractionalDigits)
    : m_unscaled(std::move(unscaled)), m_fractionalDigits(fractionalDigits) {}

std::string CDecimal::ToString() const {
  const Digits& digits = GetDigits();
  const auto point = static_cast<std::size_t>(m_fractionalDigits);
  const std::size_t shown = std::max(digits.size(), point + 1);
  std::string text(shown + (IsNegative() ? 1 : 0) + (point > 0 ? 1 : 0), '0');
  char* out = text.data();
  if (IsNegative()) *out++ = '-';
  for (std::size_t i = shown; i-- > 0;) {
    if (i < digits.size()) *out = static_cast<char>('0' + digits[i]);
    ++out;
    if (i == point && point > 0) *out++ = '.';
  }
  return text;
}

std::string CDecimal::ToString(int fractionalDigits) const {
  if (fractionalDigits < 0) return ToString();
  CDecimal rounded(*this);
  rounded.Round(fractionalDigits);
  return rounded.ToString();
}

CDecimal CDecimal::GetCanonical() const {
  CDecimal canonical(*this);
  canonical.TrimFraction(0);
  return canonical;
}

void CDecimal::ChangeFractionalDivider(int fractionalDigits) {
  const int wanted = std::clamp(fractionalDigits, 0, kMaxFractionalDigits);
  if (wanted >= m_fractionalDigits) {
    detail::ShiftLeft(m_unscaled.m_digits, static_cast<std::size_t>(wanted - m_fractionalDigits));
  } else {
    detail::ShiftRight(m_unscaled.m_digits, static_cast<std::size_t>(m_fractionalDigits - wanted));
    if (IsZero()) Abs();
  }
  m_fractionalDigits = wanted;
}

std::size_t CDecimal::GetIntegerPartLength() const {
  const auto fraction = static_cast<std::size_t>(m_fractionalDigits);
  if (IsZero() || GetDigits().size() <= fraction) return 0;
  return GetDigits().size() - fraction;
}

std::size_t CDecimal::GetFractionPartLength() const {
  const auto fraction = static_cast<std::size_t>(m_fractionalDigits);
  return fraction - std::min(GetDigits().find_first_not_of('\0'), fraction);
}

CDecimal& CDecimal::operator+=(const CDecimal& other) {
  const int fractionalDigits = std::max(m_fractionalDigits, other.m_fractionalDigits);
  CBigInteger sum = GetUnscaled(fractionalDigits) + other.GetUnscaled(fractionalDigits);
  return *this = CDecimal(std::move(sum), fractionalDigits);
}

CDecimal& CDecimal::operator-=(const CDecimal& other) {
  return *this += other.GetNegative();
}

CDecimal& CDecimal::operator*=(const CDecimal& other) {
  CDecimal product(m_unscaled * other.m_unscaled, m_fractionalDigits + other.m_fractionalDigits);
  product.TrimFraction(std::max(m_fractionalDigits, other.m_fractionalDigits));
  if (product.m_fractionalDigits > kMaxFractionalDigits) ThrowDecimalTooLarge(product.ToString());
  return *this = std::move(product);
}

CDecimal& CDecimal::operator/=(const CDecimal& divisor) {
  if (divisor.IsZero()) ThrowDivisionByZero(" /=");
  const int kept = std::max(m_fractionalDigits, divisor.m_fractionalDigits);
  const int cutAfter = std::max(kept, kMinQuotientDigits);
  const CBigInteger dividend = GetUnscaled(cutAfter + divisor.m_fractionalDigits);
  CDecimal quotient(dividend / divisor.m_unscaled, cutAfter);
  quotient.TrimFraction(kept);
  return *this = std::move(quotient);
}

CDecimal& CDecimal::operator%=(const CDecimal& divisor) {
  if (divisor.IsZero()) ThrowDivisionByZero("%=");
  const int fractionalDigits = std::max(m_fractionalDigits, divisor.m_fractionalDigits);
  CBigInteger remainder = GetUnscaled(fractionalDigits) % divisor.GetUnscaled(fractionalDigits);
  return *this = CDecimal(std::move(remainder), fractionalDigits);
}

CDecimal operator/(CDecimal left, const CDecimal& divisor) {
  if (divisor.IsZero()) ThrowDivisionByZero("/");
  return std::move(left /= divisor);
}

CDecimal operator%(CDecimal left, const CDecimal& divisor) {
  if (divisor.IsZero()) ThrowDivisionByZero("%");
  return std::move(left %= divisor);
}

CDecimal& CDecimal::Negate() {
  m_unscaled.Negate();
  return *this;
}

CDecimal& CDecimal::Abs() {
  m_unscaled.Abs();
  return *this;
}

CDecimal::operator double() const {
  const CBigInteger whole(*this);
  if (whole > CBigInteger::MAX_DOUBLE || whole < CBigInteger::MIN_DOUBLE) {
    ThrowDecimalOverflow("Double");
  }
  double value = IsNegative() ? -0.0 : 0.0;  // stays when the value is too small for a double
  const std::string text = ToString();
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

CDecimal::operator long() const {
  const CBigInteger whole(*this);
  if (whole > CBigInteger::MAX_LONG || whole < CBigInteger::MIN_LONG) ThrowDecimalOverflow("LONG");
  return static_cast<int>(whole);
}

CDecimal::operator long long() const {
  const CBigInteger whole(*this);
  if (whole > CBigInteger::MAX_LONGLONG || whole < CBigInteger::MIN_LONGLONG) {
    ThrowDecimalOverflow("LONGLONG");
  }
  return static_cast<long long>(whole);
}

int CDecimal::Compare(const CDecimal& other) const {
  if (IsNegative() != other.IsNegative()) return IsNegative() ? -1 : 1;
  return IsNegative() ? other.CompareMagnitude(*this) : CompareMagnitude(other);
}

int CDecimal::CompareMagnitude(const CDecimal& other) const {
  if (IsZero() || other.IsZero()) return (IsZero() ? 0 : 1) - (other.IsZero() ? 0 : 1);
  const Digits& a = GetDigits();
  const Digits& b = other.GetDigits();
  const long long firstOfA = static_cast<long long>(a.size()) - m_fractionalDigits;
  const long long firstOfB = static_cast<long long>(b.size()) - other.m_fractionalDigits;
  if (firstOfA != firstOfB) return firstOfA < firstOfB ? -1 : 1;
  // The leading digits stand at the same place; zeros behind the shorter number count for nothing.
  const auto [left, right] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
  if (left != a.rend() && right != b.rend()) return *left < *right ? -1 : 1;
  const auto isDigit = [](char digit) { return digit != 0; };
  if (std::any_of(left, a.rend(), isDigit)) return 1;
  return std::any_of(right, b.rend(), isDigit) ? -1 : 0;
}

CBigInteger CDecimal::GetUnscaled(int fractionalDigits) const {
  CBigInteger unscaled(m_unscaled);
  detail::ShiftLeft(unscaled.m_digits,
                    static_cast<std::size_t>(fractionalDigits - m_fractionalDigits));
  return unscaled;
}

void CDecimal::TrimFraction(int fractionalDigits) {
  const auto spare = static_cast<std::size_t>(m_fractionalDigits - fractionalDigits);
  const std::size_t dropped = std::min(GetDigits().find_first_not_of('\0'), spare);
  detail::ShiftRight(m_unscaled.m_digits, dropped);
  m_fractionalDigits -= static_cast<int>(dropped);
}

void CDecimal::Round(int fractionalDigits) {
  const int firstDropped = m_fractionalDigits - fractionalDigits - 1;
  const auto index = static_cast<std::size_t>(std::max(firstDropped, 0));
  const bool away = firstDropped >= 0 && index < GetDigits().size() && GetDigits()[index] >= 5;
  const int step = IsNegative() ? -1 : 1;
  ChangeFractionalDivider(fractionalDigits);
  if (away) m_unscaled += step;
}

}  // namespace ZuXmlLib16
