#include "types/ConversionsInternal.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

#include "core/Errors.h"
#include "types/AsciiDigit.h"
#include "types/CLocale.h"
#include "types/DateTimeText.h"
#include "types/DoubleText.h"

namespace ZuXmlLib16::detail {
namespace {

static_assert(sizeof(TextBuffer::chars) >= kMaxDateTimeText);

bool IsSpace(char c) {
  return CWhitespaceUtils::IsWhiteSpace(c);
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

/// Whether a text without white space at its ends holds single blanks only.
bool IsCollapsed(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsSpace(text[i]) && (text[i] != ' ' || IsSpace(text[i + 1]))) return false;
  }
  return true;
}

// Integers: one row a type.

template <class Integer>
struct IntegerRow;
// clang-format off
template <> struct IntegerRow<signed char>        { using Wide = long;          static constexpr const char* kCode = "i1"; };
template <> struct IntegerRow<short>              { using Wide = long;          static constexpr const char* kCode = "i2"; };
template <> struct IntegerRow<long>               { static constexpr auto Read = strtol_l;   static constexpr const char* kCode = "i4"; };
template <> struct IntegerRow<long long>          { static constexpr auto Read = strtoll_l;  static constexpr const char* kCode = "i8"; };
template <> struct IntegerRow<unsigned char>      { using Wide = unsigned long; static constexpr const char* kCode = "ui1"; };
template <> struct IntegerRow<unsigned short>     { using Wide = unsigned long; static constexpr const char* kCode = "ui2"; };
template <> struct IntegerRow<unsigned long>      { static constexpr auto Read = strtoul_l;  static constexpr const char* kCode = "ui4"; };
template <> struct IntegerRow<unsigned long long> { static constexpr auto Read = strtoull_l; static constexpr const char* kCode = "ui8"; };
// clang-format on

constexpr int kBase = 10;

template <class Integer>
Integer ParseWideInteger(std::string_view text, WhitespaceRule rule) {
  using Row = IntegerRow<Integer>;
  const std::string normalized(NormalizedText(text, rule).View());
  if (normalized.empty()) ThrowNotConvertible(normalized, Row::kCode);
  errno = 0;
  char* end = nullptr;
  const Integer value = Row::Read(normalized.c_str(), &end, kBase, CLocale());
  if (errno == ERANGE) ThrowTooLarge(normalized, Row::kCode);
  if (*end != '\0') ThrowNotConvertible(normalized, Row::kCode);
  return value;
}

// Reals

/// The forms that every reader of reals agrees on, so that they can be read without the C library.
bool ReadPlainReal(std::string_view text, double& value) {
  const std::size_t first = !text.empty() && text[0] == '-' ? 1 : 0;
  if (first == text.size() || !IsDigit(text[first])) return false;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  return last == end && error == std::errc();
}

bool ReadNamedReal(std::string_view text, double& value) {
  if (text == "NaN" || text == "1.#QNAN" || text == "-NAN") {
    value = std::numeric_limits<double>::quiet_NaN();
  } else if (text == "-INF") {
    value = -std::numeric_limits<double>::infinity();
  } else if (text == "INF") {
    value = std::numeric_limits<double>::infinity();
  } else {
    return false;
  }
  return true;
}

/// @param code  the type in messages.
double ParseReal(std::string_view text, WhitespaceRule rule, const char* code) {
  double value = 0;
  // Plain reals are the same under every rule.
  if (IsKnownRule(rule) && ReadPlainReal(text, value)) return value;
  const std::string normalized(NormalizedText(text, rule).View());
  if (normalized.empty()) ThrowNotConvertible(normalized, code);
  if (ReadNamedReal(normalized, value)) return value;
  char* end = nullptr;
  value = strtod_l(normalized.c_str(), &end, CLocale());
  if (*end != '\0') ThrowNotConvertible(normalized, code);
  return value;
}

/// Rounds to the nearest float; what lies beyond the largest becomes infinite as that rounding
/// asks.
float ToFloat(double value) {
  constexpr float kMax = std::numeric_limits<float>::max();
  constexpr double kFirstInfinite = 0x1.ffffffp127;  // half a unit above kMax; the tie goes up
  if (std::isnan(value) || std::fabs(value) <= kMax) return static_cast<float>(value);
  const float magnitude =
      std::fabs(value) < kFirstInfinite ? kMax : std::numeric_limits<float>::infinity();
  return std::signbit(value) ? -magnitude : magnitude;
}

/// "" for finite values.
std::string_view NameOfReal(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  return {};
}

std::string_view FormatReal(double value, int digits, TextBuffer& buffer) {
  const std::string_view name = NameOfReal(value);
  if (!name.empty()) return name;
  // The same text as printf's "%.<digits>g" in the C locale.
  // Sign, digits, point and exponent take 23 bytes at most.
  const char* const end =
      std::to_chars(buffer.chars, std::end(buffer.chars), value, std::chars_format::general, digits)
          .ptr;
  return {buffer.chars, static_cast<std::size_t>(end - buffer.chars)};
}

constexpr int kFloatDigits = 7;
constexpr int kDoubleDigits = 16;

/// @param digits  for an empty format.
std::string_view FormatRealAs(double value, const char* format, int digits, TextBuffer& buffer) {
  const std::string_view name = NameOfReal(value);
  if (!name.empty()) return name;
  if (format == nullptr || *format == '\0') return FormatReal(value, digits, buffer);
  constexpr std::size_t kRoom = 48;
  const CLocaleScope cLocale;
  buffer.chars[0] = '\0';
  std::snprintf(buffer.chars, kRoom, format, value);
  return buffer.chars;
}

/// Two digits at least, behind the hyphens of gMonth or gDay.
std::string_view FormatDatePart(std::string_view hyphens, unsigned char value, TextBuffer& buffer) {
  char* out = std::copy(hyphens.begin(), hyphens.end(), buffer.chars);
  if (value < 10) *out++ = '0';
  out = std::to_chars(out, std::end(buffer.chars), value).ptr;
  return {buffer.chars, static_cast<std::size_t>(out - buffer.chars)};
}

std::string_view Keep(std::string&& text, TextBuffer& buffer) {
  buffer.text = std::move(text);
  return buffer.text;
}

}  // namespace

NormalizedText::NormalizedText(std::string_view text, WhitespaceRule rule) : m_view(text) {
  bool isNormal = false;
  switch (rule) {
    case WhitespaceRule::None:
      isNormal = true;
      break;
    case WhitespaceRule::Preserve:
      isNormal = text.find_first_of(std::string_view("\r\0", 2)) == std::string_view::npos;
      break;
    case WhitespaceRule::Replace:
      isNormal = text.find_first_of("\t\n\r") == std::string_view::npos;
      break;
    case WhitespaceRule::Collapse:
      m_view = Trimmed(text);
      isNormal = IsCollapsed(m_view);
      break;
  }
  if (isNormal) return;
  m_changed = CWhitespaceUtils::ApplyRule(rule, std::string(m_view));
  m_view = m_changed;
}

template <class Integer>
Integer ParseUnusualInteger(std::string_view text, WhitespaceRule rule) {
  if constexpr (sizeof(Integer) == sizeof(long)) {
    return ParseWideInteger<Integer>(text, rule);
  } else {
    using Row = IntegerRow<Integer>;
    using Limits = std::numeric_limits<Integer>;
    const auto value = ParseInteger<typename Row::Wide>(text, rule);
    if (value < Limits::min() || value > Limits::max()) ThrowTooLarge(text, Row::kCode);
    return static_cast<Integer>(value);
  }
}

namespace {

/// Eight digits in one word, the first in its lowest byte.
bool ParseEightDigits(const char* text, std::uint64_t& value) {
  constexpr std::uint64_t kHighHalves = 0xF0F0F0F0F0F0F0F0;
  std::uint64_t word = 0;
  std::memcpy(&word, text, sizeof(word));
  const std::uint64_t aboveNine = ((word + 0x0606060606060606) & kHighHalves) >> 4;
  if (((word & kHighHalves) | aboveNine) != 0x3333333333333333) return false;
  // Neighbours are joined to numbers of two, four and eight digits.
  word = ((word & 0x0F0F0F0F0F0F0F0F) * (10 * 256 + 1)) >> 8;
  word = ((word & 0x00FF00FF00FF00FF) * (100 * 65536 + 1)) >> 16;
  value = ((word & 0x0000FFFF0000FFFF) * (10000 * (std::uint64_t{1} << 32) + 1)) >> 32;
  return true;
}

}  // namespace

bool ParseLongUnsigned(std::string_view text, std::uint64_t& value) {
  constexpr std::size_t kTail = 16;
  constexpr std::uint64_t kTailRange = 10000000000000000;
  if (text.size() < kTail || text.size() > kTail + 4) return false;
  std::uint64_t head = 0;
  for (const char digit : text.substr(0, text.size() - kTail)) {
    if (digit < '0' || digit > '9') return false;
    head = head * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  const char* const tail = text.data() + text.size() - kTail;
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  if (!ParseEightDigits(tail, high) || !ParseEightDigits(tail + 8, low)) return false;
  return !__builtin_mul_overflow(head, kTailRange, &value) &&
         !__builtin_add_overflow(value, high * 100000000 + low, &value);
}

template signed char ParseUnusualInteger(std::string_view, WhitespaceRule);
template short ParseUnusualInteger(std::string_view, WhitespaceRule);
template long ParseUnusualInteger(std::string_view, WhitespaceRule);
template long long ParseUnusualInteger(std::string_view, WhitespaceRule);
template unsigned char ParseUnusualInteger(std::string_view, WhitespaceRule);
template unsigned short ParseUnusualInteger(std::string_view, WhitespaceRule);
template unsigned long ParseUnusualInteger(std::string_view, WhitespaceRule);
template unsigned long long ParseUnusualInteger(std::string_view, WhitespaceRule);

float ParseFloat(std::string_view text, WhitespaceRule rule) {
  return ToFloat(ParseReal(text, rule, "r4"));
}

double ParseDouble(std::string_view text, WhitespaceRule rule) {
  return ParseReal(text, rule, "r8");
}

std::string_view FormatFloat(float value, TextBuffer& buffer) {
  return FormatReal(value, kFloatDigits, buffer);
}

std::string_view FormatDouble(double value, TextBuffer& buffer) {
  const char* const end = WriteEverydayDouble(value, buffer.chars);
  if (end == nullptr) return FormatReal(value, kDoubleDigits, buffer);
  return {buffer.chars, static_cast<std::size_t>(end - buffer.chars)};
}

std::string_view FormatFloatAs(float value, const char* format, TextBuffer& buffer) {
  return FormatRealAs(value, format, kFloatDigits, buffer);
}

std::string_view FormatDoubleAs(double value, const char* format, TextBuffer& buffer) {
  if (format == nullptr || *format == '\0') return FormatDouble(value, buffer);
  return FormatRealAs(value, format, kDoubleDigits, buffer);
}

bool ParseBoolean(std::string_view text, WhitespaceRule rule) {
  const NormalizedText normalized(text, rule);
  const std::string_view word = normalized.UpToNul();
  if (word == "1" || EqualsIgnoringCase(word, "true")) return true;
  if (word == "0" || EqualsIgnoringCase(word, "false")) return false;
  ThrowInvalidBoolean(text);
}

std::string_view FormatBoolean(bool value, TextBuffer& /*buffer*/) {
  return value ? "true" : "false";
}

char ParseChar(std::string_view text, WhitespaceRule rule) {
  const NormalizedText normalized(text, rule);
  if (normalized.View().size() != 1) ThrowNotOneChar(normalized.View());
  return normalized.View().front();
}

std::string_view FormatChar(char value, TextBuffer& buffer) {
  buffer.chars[0] = value;
  return {buffer.chars, value != '\0' ? 1u : 0u};
}

bool EqualsIgnoringCase(std::string_view text, std::string_view expected) {
  return std::equal(text.begin(), text.end(), expected.begin(), expected.end(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b;
  });
}

std::string ParseText(std::string_view text, WhitespaceRule rule) {
  return std::string(NormalizedText(text, rule).View());
}

std::string_view FormatText(const std::string& value, TextBuffer& /*buffer*/) {
  return value;
}

CDateTime ParseDateTime(std::string_view text, WhitespaceRule rule) {
  CDateTime value(CDateTime::DTType::dt_dateTime);
  value.ParseXSDDateTime(NormalizedText(text, rule).UpToNul());
  return value;
}

CDateTime ParseTime(std::string_view text, WhitespaceRule rule) {
  CDateTime value(CDateTime::DTType::dt_time);
  value.ParseXSDTime(NormalizedText(text, rule).UpToNul());
  return value;
}

CDateTime ParseDate(std::string_view text, WhitespaceRule rule) {
  CDateTime value;
  value.ParseXSDDate(NormalizedText(text, rule).UpToNul());
  return value;
}

std::string_view FormatDate(const CDateTime& value, TextBuffer& buffer) {
  const char* const end = FormatDateTime(value, buffer.chars);
  return {buffer.chars, static_cast<std::size_t>(end - buffer.chars)};
}

unsigned short ParseYear(std::string_view text, WhitespaceRule rule) {
  return static_cast<unsigned short>(ParseDate(text, rule).GetYear());
}

unsigned char ParseMonth(std::string_view text, WhitespaceRule rule) {
  return ParseDate(text, rule).GetMonth();
}

unsigned char ParseDay(std::string_view text, WhitespaceRule rule) {
  return ParseDate(text, rule).GetDay();
}

std::string_view FormatMonth(unsigned char value, TextBuffer& buffer) {
  return FormatDatePart("--", value, buffer);
}

std::string_view FormatDay(unsigned char value, TextBuffer& buffer) {
  return FormatDatePart("---", value, buffer);
}

CDateTimeSpan ParseDuration(std::string_view text, WhitespaceRule rule) {
  CDateTimeSpan value;
  value.ParseXSDDuration(NormalizedText(text, rule).UpToNul());
  return value;
}

std::string_view FormatDuration(const CDateTimeSpan& value, TextBuffer& buffer) {
  return Keep(value.ToString(), buffer);
}

CDecimal ParseDecimal(std::string_view text, WhitespaceRule rule) {
  return CDecimal(NormalizedText(text, rule).View());
}

std::string_view FormatDecimal(const CDecimal& value, TextBuffer& buffer) {
  return Keep(value.ToString(), buffer);
}

std::string_view FormatDecimalAs(const CDecimal& value, const char* format, TextBuffer& buffer) {
  if (format == nullptr || *format == '\0') return FormatDecimal(value, buffer);
  const long digits = strtol_l(format, nullptr, kBase, CLocale());
  return Keep(value.ToString(static_cast<int>(std::clamp<long>(digits, INT_MIN, INT_MAX))), buffer);
}

CBigInteger ParseBigInteger(std::string_view text, WhitespaceRule rule) {
  return CBigInteger(NormalizedText(text, rule).UpToNul());
}

std::string_view FormatBigInteger(const CBigInteger& value, TextBuffer& buffer) {
  return Keep(value.ToString(), buffer);
}

CBinaryData ParseHexBinary(std::string_view text, WhitespaceRule rule) {
  CBinaryData value;
  value.SetAsHexString(NormalizedText(text, rule).UpToNul());
  return value;
}

std::string_view FormatHexBinary(const CBinaryData& value, TextBuffer& buffer) {
  return Keep(value.GetAsHexString(), buffer);
}

CBinaryData ParseBase64Binary(std::string_view text, WhitespaceRule rule) {
  CBinaryData value;
  value.SetAsBase64(NormalizedText(text, rule).UpToNul());
  return value;
}

std::string_view FormatBase64Binary(const CBinaryData& value, TextBuffer& buffer) {
  return Keep(value.GetAsBase64(), buffer);
}

}  // namespace ZuXmlLib16::detail
