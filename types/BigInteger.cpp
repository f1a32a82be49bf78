#include "ZuXmlLib16/BigInteger.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "ZuXmlLib16/Decimal.h"
#include "core/Errors.h"
#include "types/AsciiDigit.h"
#include "types/DigitArray.h"

namespace ZuXmlLib16 {
namespace {

unsigned long long Magnitude(long long value) {
  const auto bits = static_cast<unsigned long long>(value);
  return value < 0 ? ~bits + 1 : bits;
}

/// Whether a text can be read without CDecimal.
bool HasOnlyDigitsSignsAndSpace(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return detail::IsDigit(c) || c == '+' || c == '-' || c == ' ' || c == '\t' || c == '\n' ||
           c == '\r';
  });
}

/// Without spaces at both ends; other white space stays.
std::string_view TrimSpaces(std::string_view text) {
  text.remove_suffix(text.size() - (text.find_last_not_of(' ') + 1));
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

std::string_view LastDigits(std::string_view text) {
  std::size_t first = text.size();
  while (first > 0 && detail::IsDigit(text[first - 1]))
    --first;
  return text.substr(first);
}

}  // namespace

// Made before the statics of every other file, so that their initialisers may use them. Their texts
// are well formed: nothing is thrown.
// NOLINTBEGIN(cert-err58-cpp)
[[gnu::init_priority(101)]] const CBigInteger CBigInteger::MAX_LONG("2147483647");
[[gnu::init_priority(101)]] const CBigInteger CBigInteger::MIN_LONG("-2147483648");
[[gnu::init_priority(101)]] const CBigInteger CBigInteger::MAX_LONGLONG("9223372036854775807");
[[gnu::init_priority(101)]] const CBigInteger CBigInteger::MIN_LONGLONG("-9223372036854775808");
[[gnu::init_priority(101)]] const CBigInteger CBigInteger::MAX_DOUBLE("1.7E+308");
[[gnu::init_priority(101)]] const CBigInteger CBigInteger::MIN_DOUBLE("-1.7E+308");
// NOLINTEND(cert-err58-cpp)

CBigInteger::CBigInteger(int value) : CBigInteger(static_cast<long long>(value)) {}
CBigInteger::CBigInteger(unsigned int value)
    : CBigInteger(static_cast<unsigned long long>(value)) {}
CBigInteger::CBigInteger(long value) : CBigInteger(static_cast<long long>(value)) {}
CBigInteger::CBigInteger(unsigned long value)
    : CBigInteger(static_cast<unsigned long long>(value)) {}
CBigInteger::CBigInteger(long long value)
    : CBigInteger(value < 0, detail::DigitsOf(Magnitude(value))) {}
CBigInteger::CBigInteger(unsigned long long value) : CBigInteger(false, detail::DigitsOf(value)) {}

CBigInteger::CBigInteger(double value) {
  if (!std::isfinite(value)) ThrowNotFinite();
  Assign(value < 0 ? -1 : 1, detail::DigitsOf(std::fabs(value)));
}

CBigInteger::CBigInteger(const char* text) {
  Parse(text);
}

CBigInteger::CBigInteger(const std::string& text) {
  Parse(text);
}

CBigInteger::CBigInteger(std::string_view text) {
  Parse(text);
}

CBigInteger::CBigInteger(const CDecimal& value) {
  CDecimal whole(value);
  whole.ChangeFractionalDivider(0);
  Assign(whole.IsNegative() ? -1 : 1, Digits(whole.GetDigits()));
}

CBigInteger::CBigInteger(bool negative, Digits&& digits) {
  Assign(negative ? -1 : 1, std::move(digits));
}

CBigInteger::CBigInteger(CBigInteger&& other) noexcept {
  *this = std::move(other);
}

CBigInteger& CBigInteger::operator=(CBigInteger&& other) noexcept {
  std::swap(m_sign, other.m_sign);
  m_digits.swap(other.m_digits);
  return *this;
}

CBigInteger::~CBigInteger() = default;

void CBigInteger::Parse(const char* text) {
  Parse(std::string_view(text != nullptr ? text : ""));
}

void CBigInteger::Parse(std::string_view text) {
  if (!HasOnlyDigitsSignsAndSpace(text)) {
    *this = CBigInteger(CDecimal(text));
    return;
  }
  const std::string_view trimmed = TrimSpaces(text);
  const bool negative = !trimmed.empty() && trimmed.front() == '-';
  Digits digits;
  detail::AppendText(LastDigits(trimmed), digits);
  detail::Clean(digits);
  Assign(negative ? -1 : 1, std::move(digits));
}

std::string CBigInteger::ToString() const {
  const std::size_t signLength = IsNegative() ? 1 : 0;
  std::string text(signLength + m_digits.size(), '-');
  std::transform(m_digits.rbegin(), m_digits.rend(), text.data() + signLength,
                 [](char digit) { return static_cast<char>('0' + digit); });
  return text;
}

CBigInteger CBigInteger::operator/(const CBigInteger& divisor) const {
  if (divisor.IsZero()) ThrowDivisionByZero("/");
  return std::move(CBigInteger(*this) /= divisor);
}

CBigInteger CBigInteger::operator%(const CBigInteger& divisor) const {
  if (divisor.IsZero()) ThrowDivisionByZero("%");
  return std::move(CBigInteger(*this) %= divisor);
}

CBigInteger& CBigInteger::operator+=(const CBigInteger& other) {
  AddSigned(other.m_sign, other.m_digits);
  return *this;
}

CBigInteger& CBigInteger::operator-=(const CBigInteger& other) {
  AddSigned(-other.m_sign, other.m_digits);
  return *this;
}

CBigInteger& CBigInteger::operator*=(const CBigInteger& other) {
  Assign(m_sign * other.m_sign, detail::Multiply(m_digits, other.m_digits));
  return *this;
}

CBigInteger& CBigInteger::operator/=(const CBigInteger& divisor) {
  if (divisor.IsZero()) ThrowDivisionByZero(" /=");
  Assign(m_sign * divisor.m_sign, detail::Divide(m_digits, divisor.m_digits).quotient);
  return *this;
}

CBigInteger& CBigInteger::operator%=(const CBigInteger& divisor) {
  if (divisor.IsZero()) ThrowDivisionByZero("%=");
  Assign(m_sign, detail::Divide(m_digits, divisor.m_digits).remainder);
  return *this;
}

CBigInteger& CBigInteger::Negate() {
  if (!IsZero()) m_sign = -m_sign;
  return *this;
}

CBigInteger& CBigInteger::Abs() {
  m_sign = 1;
  return *this;
}

CBigInteger CBigInteger::SquareRoot() const {
  if (IsNegative()) ThrowNegativeSquareRoot();
  if (IsZero()) return CBigInteger();
  // Newton's steps fall to the root from any start not below it.
  CBigInteger estimate = 2 * Pow10(static_cast<unsigned int>((m_digits.size() + 1) / 2));
  for (;;) {
    CBigInteger next = (estimate + *this / estimate) / 2;
    if (next >= estimate) return estimate;
    estimate = std::move(next);
  }
}

CBigInteger CBigInteger::Pow10(unsigned int exponent) {
  Digits digits(std::size_t{exponent} + 1, '\0');
  digits.back() = 1;
  return CBigInteger(false, std::move(digits));
}

CBigInteger::operator int() const {
  constexpr std::size_t kMaxDigits = std::numeric_limits<int>::digits10 + 1;
  if (m_digits.size() <= kMaxDigits) {
    const long long value = m_sign * static_cast<long long>(detail::WordOf(m_digits));
    if (value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()) {
      return static_cast<int>(value);
    }
  }
  ThrowOutOfBound("int");
}

CBigInteger::operator long long() const {
  if (m_digits.size() <= detail::kWordDigits) {
    const unsigned long long magnitude = detail::WordOf(m_digits);
    if (magnitude <= Magnitude(std::numeric_limits<long long>::max())) {
      return m_sign * static_cast<long long>(magnitude);
    }
    if (IsNegative() && magnitude == Magnitude(std::numeric_limits<long long>::min())) {
      return std::numeric_limits<long long>::min();
    }
  }
  ThrowOutOfBound("LONGLONG");
}

int CBigInteger::Compare(const CBigInteger& other) const {
  if (m_sign != other.m_sign) return m_sign < other.m_sign ? -1 : 1;
  return m_sign * detail::Compare(m_digits, other.m_digits);
}

void CBigInteger::AddSigned(std::int32_t sign, const Digits& digits) {
  if (sign == m_sign) {
    detail::Add(m_digits, digits, m_digits);
  } else if (detail::Compare(m_digits, digits) >= 0) {
    detail::Subtract(m_digits, digits, m_digits);
  } else {
    detail::Subtract(digits, m_digits, m_digits);
    m_sign = sign;
  }
  if (IsZero()) m_sign = 1;
}

void CBigInteger::Assign(std::int32_t sign, Digits&& digits) {
  m_digits = std::move(digits);
  m_sign = IsZero() ? 1 : sign;
}

}  // namespace ZuXmlLib16
