#include "fastinfoset/FastInfosetReaderText.h"

#include <algorithm>

#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/FIVocabulary.h"
#include "core/Errors.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr unsigned int kBuiltInAlphabets = 2;
constexpr unsigned int kFirstOwnAlphabet = 16;

/// @param utf8  well-formed.
void CheckCharacters(std::string_view utf8, bool isAscii) {
  bool isControl = false;
  for (const char byte : utf8) {  // without a way out, so that it is done in blocks
    const auto code = static_cast<unsigned char>(byte);
    isControl |= (code < 0x20) & (code != '\t') & (code != '\n') & (code != '\r');
  }
  if (isControl) ThrowFastInfosetCharacter();
  if (isAscii) return;
  for (std::size_t at = utf8.find('\xEF'); at != std::string_view::npos;
       at = utf8.find('\xEF', at + 3)) {
    const std::string_view character = utf8.substr(at, 3);
    if (character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") ThrowFastInfosetCharacter();
  }
}

void CheckUtf8(std::string_view text) {
  const bool isAscii = AsciiPrefix(text.data(), text.size()) == text.size();
  if (!isAscii && ValidUtf8Prefix(text.data(), text.size()) != text.size()) {
    ThrowFastInfosetString("UTF-8");
  }
  CheckCharacters(text, isAscii);
}

/// Takes fixed numbers of bits from octets, the most significant first.
class BitReader {
 public:
  explicit BitReader(std::string_view octets) : m_octets(octets) {}

  std::uint64_t Left() const { return m_held + 8 * static_cast<std::uint64_t>(m_octets.size()); }
  /// @param count  0 to 32, and no more than are left.
  std::uint32_t Take(unsigned int count) {
    while (m_held < count) {
      m_bits = m_bits << 8 | static_cast<unsigned char>(m_octets.front());
      m_octets.remove_prefix(1);
      m_held += 8;
    }
    m_held -= count;
    return static_cast<std::uint32_t>(m_bits >> m_held & AllOnes(count));
  }

  static std::uint64_t AllOnes(unsigned int count) { return (std::uint64_t{1} << count) - 1; }

 private:
  std::string_view m_octets;
  std::uint64_t m_bits = 0;
  unsigned int m_held = 0;
};

/// A list of truth values: in the first half of the first octet stands how many bits at the end are
/// none.
void CheckBooleans(std::string_view octets) {
  const unsigned int unused = static_cast<unsigned char>(octets.front()) >> 4;
  const unsigned int last = static_cast<unsigned char>(octets.back());
  const unsigned int most = octets.size() == 1 ? 3 : 7;
  if (unused > most || (last & BitReader::AllOnes(unused)) != 0) ThrowFastInfosetString("boolean");
}

bool IsLead(char unit) {
  return (static_cast<unsigned char>(unit) & 0xFC) == 0xD8;
}

bool IsTrail(char unit) {
  return (static_cast<unsigned char>(unit) & 0xFC) == 0xDC;
}

}  // namespace

FastInfosetText::FastInfosetText() : m_isLocalUtf8(CEncoder::ASCII_ONLY || LocaleIsUtf8()) {
  for (unsigned int number = 1; number <= kBuiltInAlphabets; ++number) {
    AddAlphabet(CFIVocabulary::GetRestrictedAlphabet(number));
  }
}

void FastInfosetText::AddAlphabet(std::string_view characters) {
  CheckUtf8(characters);
  Alphabet alphabet{characters, {}, 1};
  for (std::size_t at = 0; at < characters.size(); ++at) {
    const bool isInside = (static_cast<unsigned char>(characters[at]) & 0xC0) == 0x80;
    if (!isInside) alphabet.starts.push_back(at);
  }
  const std::size_t count = alphabet.starts.size();
  if (count < 2) ThrowFastInfosetString("restricted alphabet");
  alphabet.starts.push_back(characters.size());
  while (std::size_t{1} << alphabet.bitsPerCharacter <= count) {
    ++alphabet.bitsPerCharacter;
  }
  m_alphabets.push_back(std::move(alphabet));
}

std::string_view FastInfosetText::DecodeOther(const EncodedString& string) {
  switch (string.format) {
    case StringFormat::Utf8:
      break;
    case StringFormat::Utf16:
      return DecodeUtf16(string.octets);
    case StringFormat::Alphabet:
      return DecodeRestricted(string);
    case StringFormat::Algorithm:
      return DecodeAlgorithm(string);
  }
  return DecodeUtf8(string.octets);
}

std::string_view FastInfosetText::DecodeSpecial(std::string_view utf8) {
  CheckUtf8(utf8);
  return Local(utf8);
}

std::string_view FastInfosetText::WithoutCR(std::string_view text) {
  if (text.find('\r') == std::string_view::npos) return text;
  m_withoutCR = text;
  m_withoutCR.erase(std::remove(m_withoutCR.begin(), m_withoutCR.end(), '\r'), m_withoutCR.end());
  return m_withoutCR;
}

std::string_view FastInfosetText::DecodeUtf16(std::string_view octets) {
  if (octets.size() % 2 != 0) ThrowFastInfosetString("UTF-16");
  const auto unitAt = [&](std::size_t at) {
    return static_cast<char32_t>(static_cast<unsigned char>(octets[at]) << 8 |
                                 static_cast<unsigned char>(octets[at + 1]));
  };
  m_decoded.clear();
  for (std::size_t at = 0; at < octets.size(); at += 2) {
    char32_t character = unitAt(at);
    if (IsTrail(octets[at])) ThrowFastInfosetString("UTF-16");
    if (IsLead(octets[at])) {
      at += 2;
      if (at == octets.size() || !IsTrail(octets[at])) ThrowFastInfosetString("UTF-16");
      character = 0x10000 + ((character & 0x3FF) << 10 | (unitAt(at) & 0x3FF));
    }
    AppendUtf8(m_decoded, character);
  }
  CheckCharacters(m_decoded, false);
  return Local(m_decoded);
}

std::string_view FastInfosetText::DecodeRestricted(const EncodedString& string) {
  const Alphabet& alphabet = AlphabetOf(string.number);
  const std::size_t size = alphabet.starts.size() - 1;
  const std::uint64_t padding = BitReader::AllOnes(alphabet.bitsPerCharacter);
  BitReader bits(string.octets);
  m_decoded.clear();
  unsigned int padded = 0;  // bits of a character that is none
  while (padded == 0 && bits.Left() >= alphabet.bitsPerCharacter) {
    const std::uint32_t code = bits.Take(alphabet.bitsPerCharacter);
    if (code < size) {
      m_decoded += alphabet.Character(code);
    } else if (code == padding) {
      padded = alphabet.bitsPerCharacter;
    } else {
      ThrowFastInfosetString("restricted alphabet");
    }
  }
  const std::uint64_t left = bits.Left();
  const bool isPadded =
      left + padded < 8 && bits.Take(static_cast<unsigned int>(left)) ==
                               BitReader::AllOnes(static_cast<unsigned int>(left));
  if (m_decoded.empty() || !isPadded) ThrowFastInfosetString("restricted alphabet");
  return Local(m_decoded);
}

const FastInfosetText::Alphabet& FastInfosetText::AlphabetOf(unsigned int number) const {
  if (number <= kBuiltInAlphabets) return m_alphabets[number - 1];
  const std::size_t own = kBuiltInAlphabets + std::size_t{number} - kFirstOwnAlphabet;
  if (number < kFirstOwnAlphabet || own >= m_alphabets.size()) {
    ThrowFastInfosetUnknown("restricted alphabet", std::to_string(number));
  }
  return m_alphabets[own];
}

std::string_view FastInfosetText::DecodeAlgorithm(const EncodedString& string) {
  const auto algorithm = static_cast<EncodingAlgorithm>(string.number);
  if (algorithm == EncodingAlgorithm::Cdata) return DecodeUtf8(string.octets);
  if (algorithm > EncodingAlgorithm::Cdata) {
    ThrowFastInfosetUnknown("encoding algorithm", std::to_string(string.number));
  }
  if (algorithm == EncodingAlgorithm::Boolean) CheckBooleans(string.octets);
  m_decoded.clear();
  try {
    AppendDecoded(m_decoded, string.number,
                  reinterpret_cast<const unsigned char*>(string.octets.data()),
                  string.octets.size());
  } catch (const CZuException& failure) {
    ThrowFastInfosetAlgorithm(failure);
  }
  return m_decoded;
}

std::string_view FastInfosetText::Local(std::string_view utf8) {
  if (m_isLocalUtf8) return utf8;
  m_local.clear();
  AppendUtf8AsLocal(m_local, utf8.data(), utf8.size());
  return m_local;
}

}  // namespace ZuXmlLib16::detail
