#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The encoding algorithms that the standard builds in (ITU-T Rec. X.891, clause 10), for hot paths:
// what CFastInfosetBinaryData does, without a buffer for each value.

namespace ZuXmlLib16::detail {

/// The numbers of the standard.
enum class EncodingAlgorithm : unsigned long {
  Hexadecimal = 1,
  Base64,
  Short,
  Int,
  Long,
  Boolean,
  Float,
  Double,
  Uuid,
  Cdata,
};

/// Appends the text of octets, as CFastInfosetBinaryData::GetAsString gives it.
/// @param algorithm  any number.
/// @throws CZuException  as there; what was appended stays.
void AppendDecoded(std::string& text, unsigned long algorithm, const unsigned char* octets,
                   std::size_t length);

/// Appends the octets of a text, as CFastInfosetBinaryData::SetAsEncodedString gives them.
/// @param algorithm  any number.
/// @throws CZuException  as there; nothing was appended then.
void AppendEncoded(std::string& octets, unsigned long algorithm, std::string_view text);

/// The same, provided that decoding gives back the very same text: not "007", not a number with
/// more digits than the type holds.
/// @param algorithm  not Cdata, whose octets have no other text.
/// @return false, with nothing appended, when it does not, or when the text is no value at all.
bool AppendEncodedExactly(std::string& octets, EncodingAlgorithm algorithm, std::string_view text);

}  // namespace ZuXmlLib16::detail
