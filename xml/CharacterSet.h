#pragma once

#include <cstddef>
#include <string>

// Character sets: UTF-8, and the local one of the process's current locale. Both are taken to hold
// ASCII as it is.

namespace ZuXmlLib16::detail {

/// Whether the current locale's character set is UTF-8; asked at every call, since it may change.
bool LocaleIsUtf8();

/// Number of bytes before the first one above 127.
std::size_t AsciiPrefix(const char* text, std::size_t length);

/// The character at the start of a UTF-8 text of at least one byte (RFC 3629: no overlong form, no
/// surrogate, nothing above U+10FFFF).
/// @return its number of bytes, or 0 when there is no valid character.
std::size_t DecodeUtf8(const char* text, std::size_t length, char32_t& character);

/// Number of bytes before the first one that is not part of a valid character.
std::size_t ValidUtf8Prefix(const char* text, std::size_t length);

/// Appends a character in UTF-8; what is no Unicode scalar value becomes "?".
void AppendUtf8(std::string& out, char32_t character);

/// Replaces in place every byte that is not part of a valid character by "?".
/// @return the number of bytes replaced.
std::size_t RepairUtf8(char* text, std::size_t length);

/// Appends UTF-8 as local text. A malformed byte becomes "?", and so does a character that the
/// local set does not have; while CEncoder::ASCII_ONLY is set the bytes are copied.
void AppendUtf8AsLocal(std::string& out, const char* utf8, std::size_t length);

}  // namespace ZuXmlLib16::detail
