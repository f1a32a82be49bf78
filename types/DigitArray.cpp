#include "types/DigitArray.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace ZuXmlLib16::detail {
namespace {

// Multiplication and division work on groups of nine digits: the product of two groups and two
// carries fits 64 bits.
constexpr std::size_t kGroupDigits = 9;
constexpr std::uint64_t kGroupBase = 1'000'000'000;
using Groups = std::vector<std::uint32_t>;  // least significant first

Groups ToGroups(const Digits& digits) {
  Groups groups((digits.size() + kGroupDigits - 1) / kGroupDigits);
  for (std::size_t g = 0; g < groups.size(); ++g) {
    const std::size_t first = g * kGroupDigits;
    std::uint32_t group = 0;
    for (std::size_t i = std::min(first + kGroupDigits, digits.size()); i-- > first;) {
      group = group * 10 + static_cast<std::uint32_t>(digits[i]);
    }
    groups[g] = group;
  }
  return groups;
}

Digits ToDigits(const Groups& groups) {
  Digits digits(groups.size() * kGroupDigits, '\0');
  auto out = digits.begin();
  for (std::uint32_t group : groups) {
    for (std::size_t i = 0; i < kGroupDigits; ++i, group /= 10) {
      *out++ = static_cast<char>(group % 10);
    }
  }
  Clean(digits);
  return digits;
}

/// Multiplies in place; a group is added for the carry.
void MultiplyByGroup(Groups& value, std::uint64_t factor) {
  std::uint64_t carry = 0;
  for (std::uint32_t& group : value) {
    const std::uint64_t product = group * factor + carry;
    group = static_cast<std::uint32_t>(product % kGroupBase);
    carry = product / kGroupBase;
  }
  value.push_back(static_cast<std::uint32_t>(carry));
}

/// Divides in place.
/// @return the remainder
std::uint32_t DivideByGroup(Groups& value, std::uint64_t divisor) {
  std::uint64_t remainder = 0;
  for (std::size_t i = value.size(); i-- > 0;) {
    const std::uint64_t dividend = remainder * kGroupBase + value[i];
    value[i] = static_cast<std::uint32_t>(dividend / divisor);
    remainder = dividend % divisor;
  }
  return static_cast<std::uint32_t>(remainder);
}

/// Long division by at least two groups, the highest of them not below half the base: then a
/// quotient group estimated from the leading groups is at most one too large.
class LongDivision {
 public:
  LongDivision(Groups& dividend, const Groups& divisor) : m_rest(dividend), m_divisor(divisor) {}

  /// @return the quotient; the dividend is left holding the remainder.
  Groups Run() {
    Groups quotient(m_rest.size() - m_divisor.size());
    for (std::size_t place = quotient.size(); place-- > 0;) {
      std::uint64_t group = Estimate(place);
      if (SubtractProduct(place, group)) {
        --group;
        AddBack(place);
      }
      quotient[place] = static_cast<std::uint32_t>(group);
    }
    m_rest.resize(m_divisor.size());
    return quotient;
  }

 private:
  std::uint64_t Estimate(std::size_t place) const {
    const std::size_t top = m_divisor.size() - 1;
    const std::uint32_t* const rest = m_rest.data() + place + top;
    const std::uint64_t leading = rest[1] * kGroupBase + rest[0];
    std::uint64_t group = leading / m_divisor[top];
    std::uint64_t remainder = leading % m_divisor[top];
    while (
        remainder < kGroupBase &&
        (group >= kGroupBase || group * m_divisor[top - 1] > remainder * kGroupBase + rest[-1])) {
      --group;
      remainder += m_divisor[top];
    }
    return group;
  }

  /// @return whether the product was too large, so that the rest went below zero.
  bool SubtractProduct(std::size_t place, std::uint64_t group) {
    std::uint64_t carry = 0;  // of the product and the borrow together
    for (std::size_t i = 0; i <= m_divisor.size(); ++i) {
      const std::uint64_t product = (i < m_divisor.size() ? group * m_divisor[i] : 0) + carry;
      const auto low = static_cast<std::uint32_t>(product % kGroupBase);
      carry = product / kGroupBase;
      std::uint32_t& rest = m_rest[place + i];
      if (rest < low) {
        rest += static_cast<std::uint32_t>(kGroupBase);
        ++carry;
      }
      rest -= low;
    }
    return carry != 0;
  }

  void AddBack(std::size_t place) {
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i <= m_divisor.size(); ++i) {
      std::uint32_t& rest = m_rest[place + i];
      const std::uint64_t sum = rest + (i < m_divisor.size() ? m_divisor[i] : 0) + carry;
      rest = static_cast<std::uint32_t>(sum % kGroupBase);
      carry = sum / kGroupBase;
    }
  }

  Groups& m_rest;
  const Groups& m_divisor;
};

}  // namespace

void Clean(Digits& digits) {
  const std::size_t last = digits.find_last_not_of('\0');
  digits.resize(last == Digits::npos ? 1 : last + 1);
}

void AppendText(std::string_view text, Digits& digits) {
  const std::size_t size = digits.size();
  digits.resize(size + text.size());
  std::transform(text.rbegin(), text.rend(), digits.data() + size,
                 [](char c) { return static_cast<char>(c - '0'); });
}

Digits DigitsOf(unsigned long long value) {
  Digits digits;
  do {
    digits.push_back(static_cast<char>(value % 10));
    value /= 10;
  } while (value != 0);
  return digits;
}

unsigned long long WordOf(const Digits& digits) {
  unsigned long long value = 0;
  for (std::size_t i = digits.size(); i-- > 0;) {
    value = value * 10 + static_cast<unsigned char>(digits[i]);
  }
  return value;
}

Digits DigitsOf(double magnitude) {
  Digits digits;
  double rest = std::ceil(magnitude - 0.5);
  while (rest > 0) {
    digits.push_back(static_cast<char>(std::fmod(rest, 10)));
    rest = std::trunc(rest / 10);
  }
  Clean(digits);
  return digits;
}

int Compare(const Digits& a, const Digits& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  const auto [left, right] = std::mismatch(a.rbegin(), a.rend(), b.rbegin());
  if (left == a.rend()) return 0;
  return *left < *right ? -1 : 1;
}

void Add(const Digits& a, const Digits& b, Digits& sum) {
  // The sizes are taken first: sum may be a or b.
  const std::size_t sizeOfA = a.size();
  const std::size_t sizeOfB = b.size();
  const std::size_t size = std::max(sizeOfA, sizeOfB);
  sum.resize(size);
  int carry = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const int digit = carry + (i < sizeOfA ? a[i] : 0) + (i < sizeOfB ? b[i] : 0);
    carry = digit > 9 ? 1 : 0;
    sum[i] = static_cast<char>(digit - 10 * carry);
  }
  if (carry != 0) sum.push_back(1);
}

void Subtract(const Digits& a, const Digits& b, Digits& difference) {
  const std::size_t size = a.size();
  const std::size_t sizeOfB = b.size();
  difference.resize(size);
  int borrow = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const int digit = a[i] - borrow - (i < sizeOfB ? b[i] : 0);
    borrow = digit < 0 ? 1 : 0;
    difference[i] = static_cast<char>(digit + 10 * borrow);
  }
  Clean(difference);
}

Digits Multiply(const Digits& a, const Digits& b) {
  if (a.size() + b.size() <= kWordDigits) return DigitsOf(WordOf(a) * WordOf(b));
  const Groups left = ToGroups(a);
  const Groups right = ToGroups(b);
  Groups result(left.size() + right.size());
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::uint64_t sum = std::uint64_t{left[i]} * right[j] + result[i + j] + carry;
      result[i + j] = static_cast<std::uint32_t>(sum % kGroupBase);
      carry = sum / kGroupBase;
    }
    result[i + right.size()] = static_cast<std::uint32_t>(carry);
  }
  return ToDigits(result);
}

void ShiftLeft(Digits& digits, std::size_t places) {
  if (!IsZero(digits)) digits.insert(0, places, '\0');
}

void ShiftRight(Digits& digits, std::size_t places) {
  digits.erase(0, places);
  if (digits.empty()) digits.push_back(0);
}

Division Divide(const Digits& a, const Digits& b) {
  if (Compare(a, b) < 0) return {Digits(1, '\0'), a};
  if (a.size() <= kWordDigits) {
    const unsigned long long dividendWord = WordOf(a);
    const unsigned long long divisorWord = WordOf(b);
    // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): callers refuse zero
    return {DigitsOf(dividendWord / divisorWord), DigitsOf(dividendWord % divisorWord)};
  }
  Groups dividend = ToGroups(a);
  Groups divisor = ToGroups(b);
  if (divisor.size() == 1) {
    const std::uint32_t remainder = DivideByGroup(dividend, divisor.front());
    return {ToDigits(dividend), DigitsOf(static_cast<unsigned long long>(remainder))};
  }
  const std::uint64_t factor = kGroupBase / (divisor.back() + 1);
  MultiplyByGroup(dividend, factor);
  MultiplyByGroup(divisor, factor);
  divisor.pop_back();  // the factor is small enough to leave no carry
  const Groups quotient = LongDivision(dividend, divisor).Run();
  DivideByGroup(dividend, factor);
  return {ToDigits(quotient), ToDigits(dividend)};
}

}  // namespace ZuXmlLib16::detail
