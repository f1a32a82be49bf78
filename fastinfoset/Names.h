#pragma once

#include <algorithm>
#include <string_view>

namespace ZuXmlLib16::detail {

inline bool IsLetterOrBeyondAscii(unsigned char byte) {
  const unsigned int letter = (byte | 0x20U) - 'a';
  return letter < 26 || byte == '_' || byte >= 0x80;
}

inline bool IsNameByte(unsigned char byte) {
  return IsLetterOrBeyondAscii(byte) || byte == '-' || byte == '.' || (byte >= '0' && byte <= '9');
}

/// Whether a part of a name can stand in XML without becoming markup or two parts; beyond ASCII
/// every character may be in one.
inline bool IsNamePart(std::string_view utf8) {
  return !utf8.empty() && IsLetterOrBeyondAscii(static_cast<unsigned char>(utf8.front())) &&
         std::all_of(utf8.begin(), utf8.end(),
                     [](char byte) { return IsNameByte(static_cast<unsigned char>(byte)); });
}

}  // namespace ZuXmlLib16::detail
