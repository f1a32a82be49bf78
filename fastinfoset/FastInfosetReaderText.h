#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "fastinfoset/FastInfosetReaderCursor.h"

namespace ZuXmlLib16::detail {

/// Whether there is nothing in the text that needs a closer look: only ASCII from the blank on.
inline bool IsPlainText(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  constexpr std::uint64_t kBlanks = 0x2020202020202020;
  const auto word = [&](std::size_t at, std::size_t size) {
    std::uint64_t bytes = kBlanks;
    std::memcpy(&bytes, text.data() + at, size);
    // A byte below a blank borrows, one above ASCII has its high bit already.
    return (bytes - kBlanks) | bytes;
  };
  const std::size_t size = text.size();
  std::uint64_t found = 0;
  if (size >= 8) {
    for (std::size_t at = 0; at + 8 < size; at += 8) {
      found |= word(at, 8);
    }
    found |= word(size - 8, 8);
  } else if (size >= 4) {
    found = word(0, 4) | word(size - 4, 4);
  } else {
    for (std::size_t at = 0; at < size; ++at) {
      found |= word(at, 1);
    }
  }
  return (found & kHighBits) == 0;
}

/// Turns the strings of a document into text in the local character set. Only characters of XML 1.0
/// pass.
class FastInfosetText {
 public:
  FastInfosetText();

  /// Adds a restricted alphabet of the document; they count from 16 on.
  /// @param characters  in UTF-8, in the order of their codes; must outlive this object.
  void AddAlphabet(std::string_view characters);

  /// @return the octets themselves when they are the text, otherwise what is valid until the next
  /// call.
  std::string_view Decode(const EncodedString& string) {
    return string.format == StringFormat::Utf8 ? DecodeUtf8(string.octets) : DecodeOther(string);
  }
  std::string_view DecodeUtf8(std::string_view utf8) {
    return IsPlainText(utf8) ? utf8 : DecodeSpecial(utf8);
  }
  /// The same without its carriage returns.
  std::string_view DecodeContent(const EncodedString& string) {
    const bool isPlain = string.format == StringFormat::Utf8 && IsPlainText(string.octets);
    return isPlain ? string.octets : WithoutCR(Decode(string));
  }
  std::string_view WithoutCR(std::string_view text);

 private:
  struct Alphabet {
    std::string_view Character(std::size_t code) const {
      return characters.substr(starts[code], starts[code + 1] - starts[code]);
    }

    std::string_view characters;
    std::vector<std::size_t> starts;  // of the characters, and the end
    unsigned int bitsPerCharacter;
  };

  std::string_view DecodeOther(const EncodedString& string);
  std::string_view DecodeSpecial(std::string_view utf8);
  std::string_view DecodeUtf16(std::string_view octets);
  std::string_view DecodeRestricted(const EncodedString& string);
  std::string_view DecodeAlgorithm(const EncodedString& string);
  const Alphabet& AlphabetOf(unsigned int number) const;
  std::string_view Local(std::string_view utf8);

  bool m_isLocalUtf8;
  std::vector<Alphabet> m_alphabets;
  std::string m_decoded;  // in UTF-8
  std::string m_local;
  std::string m_withoutCR;
};

}  // namespace ZuXmlLib16::detail
