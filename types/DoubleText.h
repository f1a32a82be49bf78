#pragma once

namespace ZuXmlLib16::detail {

/// Writes a number of everyday size, 0.0001 to 10^16 without its sign, with at most 16 significant
/// digits, correctly rounded: the text of "%.16g" in the "C" locale.
/// @param out  room for 24 characters.
/// @return the end of the text; null, and nothing is written, for other numbers.
char* WriteEverydayDouble(double value, char* out);

}  // namespace ZuXmlLib16::detail
