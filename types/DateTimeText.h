#pragma once

#include <cstddef>
#include <string_view>

#include "ZuXmlLib16/DateTime.h"

namespace ZuXmlLib16::detail {

/// The longest text of FormatDateTime, reached only by fields out of range: 54 bytes.
inline constexpr std::size_t kMaxDateTimeText = 64;

/// Writes the text of CDateTime::ToString().
/// @param out  room for kMaxDateTimeText bytes; no NUL is appended.
/// @return the end of the text.
char* FormatDateTime(const CDateTime& value, char* out);

/// Writes "." and the groups up to the last one that is not zero, without trailing zeros; nothing
/// when all are zero. At most 16 bytes.
char* FormatFraction(unsigned milli, unsigned micro, unsigned nano, char* out);

inline constexpr std::size_t kMaxFractionDigits = 9;

/// The digits behind a decimal point, in groups of three.
struct SecondFraction {
  unsigned short milli = 0;
  unsigned short micro = 0;
  unsigned short nano = 0;
  std::size_t digits = 0;  ///< digits read; kMaxFractionDigits + 1 when there are too many.
};

/// Reads the run of digits at the start of the text.
SecondFraction ParseFraction(std::string_view text);

}  // namespace ZuXmlLib16::detail
