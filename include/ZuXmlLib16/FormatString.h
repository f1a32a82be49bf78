#pragma once

#include <string>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Printf-style formatting into a new string of any length; numbers are written as in the "C"
/// locale.
/// "%n" prints an int argument like "%d" and never writes memory. A null "%s" prints "(null)".
ZUXMLLIB16_API std::string FormatString(const char* format, ...);

/// Replaces every occurrence of find in text. After each replacement the search starts again from
/// the beginning, so a replacement must not contain find. An empty find changes nothing.
ZUXMLLIB16_API void FindReplace(std::string& text, const std::string& find,
                                const std::string& replacement);
ZUXMLLIB16_API void FindReplace(std::wstring& text, const std::wstring& find,
                                const std::wstring& replacement);

/// The text without its trailing '0' characters; the first character always stays.
ZUXMLLIB16_API std::string TrimTrainingZeros(std::string text);

/// Upper-cases a NUL-terminated text in place with toupper; null stays null.
/// @return text
ZUXMLLIB16_API char* strupr(char* text);

/// The value in decimal with leading zeros to at least width digits.
ZUXMLLIB16_API std::string PadZero(int value, unsigned char width);

}  // namespace ZuXmlLib16
