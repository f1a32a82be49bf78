#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

#include "ZuXmlLib16/BigInteger.h"
#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Conversions.h"
#include "ZuXmlLib16/DateTime.h"
#include "ZuXmlLib16/DateTimeSpan.h"
#include "ZuXmlLib16/Decimal.h"
#include "ZuXmlLib16/WhitespaceUtils.h"

// The conversions of CConversions for hot paths: text is read from views and written into a buffer,
// so that the usual forms need no temporary string. Leniencies and errors are those of
// CConversions.

namespace ZuXmlLib16::detail {

using WhitespaceRule = CWhitespaceUtils::WhitespaceRule;

/// Where the Format functions put text. What they return lies in here, or in the value itself, and
/// lasts until either is changed.
struct TextBuffer {
  char chars[64];    ///< numbers and dates
  std::string text;  ///< texts of any length
};

/// What a Format function gave, as a string of its own.
/// @param text  its result for this buffer.
inline std::string TakeText(std::string_view text, TextBuffer& buffer) {
  return text.data() == buffer.text.data() ? std::move(buffer.text) : std::string(text);
}

/// A text with a whitespace rule applied; the given text itself when the rule leaves it as it is.
class NormalizedText {
 public:
  /// @throws CZuException  "Unknown WhitespaceRule"
  NormalizedText(std::string_view text, WhitespaceRule rule);
  NormalizedText(const NormalizedText&) = delete;
  NormalizedText& operator=(const NormalizedText&) = delete;

  std::string_view View() const { return m_view; }
  /// The text up to its first NUL, where the C library would see it end.
  std::string_view UpToNul() const { return m_view.substr(0, m_view.find('\0')); }

 private:
  std::string m_changed;
  std::string_view m_view;
};

/// @param expected  in lower-case letters or digits.
bool EqualsIgnoringCase(std::string_view text, std::string_view expected);

constexpr bool IsKnownRule(WhitespaceRule rule) {
  return rule >= WhitespaceRule::None && rule <= WhitespaceRule::Collapse;
}

/// The forms that ParseInteger does not read at once: white space, '+', wrapped negatives, errors.
template <class Integer>
Integer ParseUnusualInteger(std::string_view text, WhitespaceRule rule);

/// Reads 16 to 20 digits, eight at a time where from_chars tests each for overflow.
/// @return false for any other text, and for a value that does not fit.
bool ParseLongUnsigned(std::string_view text, std::uint64_t& value);

/// Integer is one of the eight types of the codes i1 to ui8.
template <class Integer>
Integer ParseInteger(std::string_view text, WhitespaceRule rule) {
  if constexpr (std::is_unsigned_v<Integer> && sizeof(Integer) == sizeof(std::uint64_t)) {
    std::uint64_t number = 0;
    if (ParseLongUnsigned(text, number) && IsKnownRule(rule)) return number;
  }
  Integer value{};
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  // Digits are the same under every rule.
  if (last == end && error == std::errc() && IsKnownRule(rule)) return value;
  return ParseUnusualInteger<Integer>(text, rule);
}

template <class Integer>
std::string_view FormatInteger(Integer value, TextBuffer& buffer) {
  using Magnitude = std::make_unsigned_t<Integer>;
  char* out = buffer.chars;
  auto magnitude = static_cast<Magnitude>(value);
  if constexpr (std::is_signed_v<Integer>) {
    if (value < 0) {
      *out++ = '-';
      magnitude = static_cast<Magnitude>(-magnitude);  // right for the smallest value, too
    }
  }
  out = std::to_chars(out, std::end(buffer.chars), magnitude).ptr;  // there is room for any
  return {buffer.chars, static_cast<std::size_t>(out - buffer.chars)};
}

float ParseFloat(std::string_view text, WhitespaceRule rule);
double ParseDouble(std::string_view text, WhitespaceRule rule);
std::string_view FormatFloat(float value, TextBuffer& buffer);
std::string_view FormatDouble(double value, TextBuffer& buffer);
/// @param format  for printf; null or "" gives the usual form. The text is cut at 47 bytes.
std::string_view FormatFloatAs(float value, const char* format, TextBuffer& buffer);
std::string_view FormatDoubleAs(double value, const char* format, TextBuffer& buffer);

bool ParseBoolean(std::string_view text, WhitespaceRule rule);
std::string_view FormatBoolean(bool value, TextBuffer& buffer);
char ParseChar(std::string_view text, WhitespaceRule rule);
std::string_view FormatChar(char value, TextBuffer& buffer);
std::string ParseText(std::string_view text, WhitespaceRule rule);
std::string_view FormatText(const std::string& value, TextBuffer& buffer);

CDateTime ParseDateTime(std::string_view text, WhitespaceRule rule);
CDateTime ParseTime(std::string_view text, WhitespaceRule rule);
/// Dates of every shape.
CDateTime ParseDate(std::string_view text, WhitespaceRule rule);
std::string_view FormatDate(const CDateTime& value, TextBuffer& buffer);
unsigned short ParseYear(std::string_view text, WhitespaceRule rule);
unsigned char ParseMonth(std::string_view text, WhitespaceRule rule);
unsigned char ParseDay(std::string_view text, WhitespaceRule rule);
std::string_view FormatMonth(unsigned char value, TextBuffer& buffer);
std::string_view FormatDay(unsigned char value, TextBuffer& buffer);
CDateTimeSpan ParseDuration(std::string_view text, WhitespaceRule rule);
std::string_view FormatDuration(const CDateTimeSpan& value, TextBuffer& buffer);

CDecimal ParseDecimal(std::string_view text, WhitespaceRule rule);
std::string_view FormatDecimal(const CDecimal& value, TextBuffer& buffer);
/// @param format  number of fraction digits; null or "" for those that the value has.
std::string_view FormatDecimalAs(const CDecimal& value, const char* format, TextBuffer& buffer);
CBigInteger ParseBigInteger(std::string_view text, WhitespaceRule rule);
std::string_view FormatBigInteger(const CBigInteger& value, TextBuffer& buffer);

CBinaryData ParseHexBinary(std::string_view text, WhitespaceRule rule);
std::string_view FormatHexBinary(const CBinaryData& value, TextBuffer& buffer);
CBinaryData ParseBase64Binary(std::string_view text, WhitespaceRule rule);
std::string_view FormatBase64Binary(const CBinaryData& value, TextBuffer& buffer);

}  // namespace ZuXmlLib16::detail
