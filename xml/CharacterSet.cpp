#include "xml/CharacterSet.h"

#include <emmintrin.h>
#include <langinfo.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <cwchar>

#include "ZuXmlLib16/Encoder.h"

namespace ZuXmlLib16::detail {
namespace {

bool IsAscii(char byte) {
  return (static_cast<unsigned char>(byte) & 0x80) == 0;
}

bool IsBetween(unsigned char byte, unsigned char low, unsigned char high) {
  return byte >= low && byte <= high;
}

bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

bool IsThreeByteStart(unsigned char lead, unsigned char second) {
  switch (lead) {
    case 0xE0:  // below is overlong
      return IsBetween(second, 0xA0, 0xBF);
    case 0xED:  // above are surrogates
      return IsBetween(second, 0x80, 0x9F);
    default:
      return IsContinuation(second);
  }
}

bool IsFourByteStart(unsigned char lead, unsigned char second) {
  switch (lead) {
    case 0xF0:  // below is overlong
      return IsBetween(second, 0x90, 0xBF);
    case 0xF4:  // above is beyond U+10FFFF
      return IsBetween(second, 0x80, 0x8F);
    default:
      return IsContinuation(second);
  }
}

/// Length of the valid sequence of two to four bytes at the start of the text, 0 for none.
std::size_t SequenceLength(const char* text, std::size_t length) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
  const unsigned char lead = bytes[0];
  if (length < 2 || lead < 0xC2) return 0;
  if (lead < 0xE0) return IsContinuation(bytes[1]) ? 2 : 0;
  if (length < 3) return 0;
  if (lead < 0xF0) return IsThreeByteStart(lead, bytes[1]) && IsContinuation(bytes[2]) ? 3 : 0;
  if (length < 4 || lead > 0xF4 || !IsFourByteStart(lead, bytes[1])) return 0;
  return IsContinuation(bytes[2]) && IsContinuation(bytes[3]) ? 4 : 0;
}

constexpr std::size_t kBlockSize = 16;

unsigned int Bits(__m128i lanes) {
  return static_cast<unsigned int>(_mm_movemask_epi8(lanes));
}

/// @param bytes  of which ASCII is not looked at.
unsigned int AtLeast(__m128i bytes, int limit) {
  return Bits(
      _mm_and_si128(bytes, _mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(limit - 1)))));
}

unsigned int Equal(__m128i bytes, int value) {
  return Bits(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(value))));
}

/// Checks a block that starts with a character, one bit a byte.
/// @return the number of bytes of its whole characters; 0 when there is an offending byte.
std::size_t ValidInBlock(const char* text) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const unsigned int high = Bits(bytes);
  if (high == 0) return kBlockSize;
  const unsigned int leads = AtLeast(bytes, 0xC0);
  const unsigned int leadsOfThree = AtLeast(bytes, 0xE0);
  const unsigned int leadsOfFour = AtLeast(bytes, 0xF0);
  const unsigned int wanted = leads << 1 | leadsOfThree << 2 | leadsOfFour << 3;
  const unsigned int neverValid = Equal(bytes, 0xC0) | Equal(bytes, 0xC1) | AtLeast(bytes, 0xF5);
  const unsigned int from90 = AtLeast(bytes, 0x90);
  const unsigned int fromA0 = AtLeast(bytes, 0xA0);
  // Overlong forms, surrogates and what is beyond U+10FFFF show in the second byte.
  const unsigned int wrongSecond =
      (Equal(bytes, 0xE0) << 1 & ~fromA0) | (Equal(bytes, 0xED) << 1 & fromA0) |
      (Equal(bytes, 0xF0) << 1 & ~from90) | (Equal(bytes, 0xF4) << 1 & from90);
  const unsigned int wrong = ((high & ~leads) ^ wanted) | neverValid | wrongSecond;
  if ((wrong & 0xFFFF) != 0) return 0;
  const bool endsInsideCharacter = wanted >> kBlockSize != 0;
  return endsInsideCharacter ? 31 - static_cast<std::size_t>(__builtin_clz(leads)) : kBlockSize;
}

/// Checks whole blocks up to the first one with an offending byte.
/// @return a number of bytes that are valid characters.
std::size_t ValidBlocks(const char* text, std::size_t length) {
  std::size_t at = 0;
  while (length - at >= kBlockSize) {
    const std::size_t valid = ValidInBlock(text + at);
    if (valid == 0) break;
    at += valid;
  }
  return at;
}

void AppendRepaired(std::string& out, const char* utf8, std::size_t length) {
  const std::size_t start = out.size();
  out.append(utf8, length);
  RepairUtf8(out.data() + start, length);
}

void AppendLocal(std::string& out, char32_t character) {
  char bytes[MB_LEN_MAX];
  std::mbstate_t state{};
  const std::size_t length = std::wcrtomb(bytes, static_cast<wchar_t>(character), &state);
  if (length == static_cast<std::size_t>(-1)) {
    out += '?';
  } else {
    out.append(bytes, length);
  }
}

void AppendConverted(std::string& out, const char* utf8, std::size_t length) {
  for (std::size_t at = 0; at < length;) {
    const std::size_t ascii = AsciiPrefix(utf8 + at, length - at);
    out.append(utf8 + at, ascii);
    at += ascii;
    while (at < length && !IsAscii(utf8[at])) {
      char32_t character = U'?';
      const std::size_t used = DecodeUtf8(utf8 + at, length - at, character);
      AppendLocal(out, character);
      at += used != 0 ? used : 1;
    }
  }
}

}  // namespace

bool LocaleIsUtf8() {
  return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

std::size_t AsciiPrefix(const char* text, std::size_t length) {
  std::size_t at = 0;
  for (; length - at >= 16; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
    const int highBits = _mm_movemask_epi8(bytes);
    if (highBits != 0)
      return at + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned int>(highBits)));
  }
  for (; length - at >= 8; at += 8) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text + at, 8);
    if ((bytes & 0x8080808080808080) != 0) break;
  }
  while (at < length && IsAscii(text[at])) {
    ++at;
  }
  return at;
}

std::size_t DecodeUtf8(const char* text, std::size_t length, char32_t& character) {
  if (IsAscii(text[0])) {
    character = static_cast<unsigned char>(text[0]);
    return 1;
  }
  const std::size_t used = SequenceLength(text, length);
  if (used == 0) return 0;
  character = static_cast<unsigned char>(text[0]) & (0x7Fu >> used);
  for (std::size_t i = 1; i < used; ++i) {
    character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
  }
  return used;
}

void AppendUtf8(std::string& out, char32_t character) {
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  if (isSurrogate || character > 0x10FFFF) character = U'?';
  if (character < 0x80) {
    out += static_cast<char>(character);
    return;
  }
  constexpr char32_t kLeads[] = {0x00, 0xC0, 0xE0, 0xF0};
  const int continuations = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  out += static_cast<char>(kLeads[continuations] | character >> 6 * continuations);
  for (int i = continuations - 1; i >= 0; --i) {
    out += static_cast<char>(0x80 | (character >> 6 * i & 0x3F));
  }
}

std::size_t ValidUtf8Prefix(const char* text, std::size_t length) {
  for (std::size_t at = 0;;) {
    at += ValidBlocks(text + at, length - at);
    // What stopped the blocks lies within the next one.
    const std::size_t blockEnd = std::min(length, at + kBlockSize);
    while (at < blockEnd) {
      const std::size_t used = IsAscii(text[at]) ? 1 : SequenceLength(text + at, length - at);
      if (used == 0) return at;
      at += used;
    }
    if (at == length) return at;
  }
}

std::size_t RepairUtf8(char* text, std::size_t length) {
  std::size_t replaced = 0;
  for (std::size_t at = ValidUtf8Prefix(text, length); at < length;
       at += ValidUtf8Prefix(text + at, length - at)) {
    text[at++] = '?';
    ++replaced;
  }
  return replaced;
}

void AppendUtf8AsLocal(std::string& out, const char* utf8, std::size_t length) {
  const std::size_t plain = CEncoder::ASCII_ONLY ? length : AsciiPrefix(utf8, length);
  out.append(utf8, plain);
  if (plain == length) return;
  if (LocaleIsUtf8()) {
    AppendRepaired(out, utf8 + plain, length - plain);
  } else {
    AppendConverted(out, utf8 + plain, length - plain);
  }
}

}  // namespace ZuXmlLib16::detail
