#include "types/DoubleText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZuXmlLib16::detail {
namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kDigits = 16;
constexpr int kMostFives = 20;
constexpr std::uint64_t kLimit = 10000000000000000;  // 10 to the power of kDigits

constexpr auto kPowersOfFive = [] {
  std::array<std::uint64_t, kMostFives + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) {
    powers[i] = powers[i - 1] * 5;
  }
  return powers;
}();

constexpr auto kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// mantissa * 2^exponent * 10^power, rounded half to even. Exact: the product with the power of
/// five has less than 128 bits, and the power of two is a shift.
std::uint64_t Scaled(std::uint64_t mantissa, int exponent, int power) {
  const Wide product = Wide{mantissa} * kPowersOfFive[static_cast<std::size_t>(power)];
  const int shift = -(exponent + power);
  if (shift <= 0) return static_cast<std::uint64_t>(product << -shift);
  const Wide half = Wide{1} << (shift - 1);
  const Wide rest = product & (2 * half - 1);
  const auto whole = static_cast<std::uint64_t>(product >> shift);
  return whole + (rest > half || (rest == half && whole % 2 == 1) ? 1 : 0);
}

void WriteDigits(std::uint64_t number, char* digits) {
  for (int at = kDigits - 2; at >= 0; at -= 2) {
    std::memcpy(digits + at, &kPairs[2 * (number % 100)], 2);
    number /= 100;
  }
}

}  // namespace

char* WriteEverydayDouble(double value, char* out) {
  constexpr int kMantissaBits = 52;
  constexpr int kBias = 1075;  // of the exponent of an integer mantissa
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  const double magnitude = value < 0 ? -value : value;
  if (!(magnitude >= 1e-4 && magnitude < 1e16)) return nullptr;
  const std::uint64_t implicitBit = std::uint64_t{1} << kMantissaBits;
  const std::uint64_t mantissa = (bits & (implicitBit - 1)) | implicitBit;
  const int exponent = static_cast<int>(bits >> kMantissaBits & 0x7FF) - kBias;
  // The decimal exponent, or one less: 78913 / 2^18 is a little less than log10(2).
  int decimal = (exponent + kMantissaBits) * 78913 >> 18;
  std::uint64_t number = Scaled(mantissa, exponent, kDigits - 1 - decimal);
  if (number >= kLimit) {
    ++decimal;
    number = Scaled(mantissa, exponent, kDigits - 1 - decimal);
  }

  char digits[kDigits];
  WriteDigits(number, digits);
  const char* end = digits + kDigits;
  while (end[-1] == '0') {
    --end;
  }
  if (value < 0) *out++ = '-';
  if (decimal < 0) {
    out = std::copy_n("0.000", 1 - decimal, out);
    return std::copy(static_cast<const char*>(digits), end, out);
  }
  const char* const point = digits + decimal + 1;
  out = std::copy(static_cast<const char*>(digits), point, out);
  if (end <= point) return out;
  *out++ = '.';
  return std::copy(point, end, out);
}

}  // namespace ZuXmlLib16::detail
