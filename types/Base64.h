#pragma once

#include <cstddef>
#include <string>

// Base64 (RFC 4648, section 4) for lengths of any size.

namespace ZuXmlLib16::detail {

/// Padded, without line breaks.
std::string EncodeBase64(const unsigned char* data, std::size_t length);

/// Skips what is not in the alphabet and drops left-over bits.
/// @param out  room for the decoded bytes: three for every four characters, rounded up.
/// @return the number of bytes written.
std::size_t DecodeBase64(const char* text, std::size_t length, unsigned char* out);

}  // namespace ZuXmlLib16::detail
