#include "types/Base64.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

#include "ZuXmlLib16/BinaryData.h"

namespace ZuXmlLib16 {
namespace {

constexpr auto& kAlphabet = CBase64::m_sBase64Alphabet;
constexpr unsigned char kNoValue = 0x80;

/// The two characters of each 12-bit group, in the little-endian order of the platform.
constexpr std::array<std::uint16_t, 4096> MakePairs() {
  std::array<std::uint16_t, 4096> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<std::uint16_t>(kAlphabet[i >> 6] | kAlphabet[i & 63] << 8);
  }
  return pairs;
}

/// The value of each character, kNoValue outside the alphabet.
constexpr std::array<unsigned char, 256> MakeValues() {
  std::array<unsigned char, 256> values{};
  for (unsigned char& value : values)
    value = kNoValue;
  for (unsigned char value = 0; value < 64; ++value) {
    values[static_cast<unsigned char>(kAlphabet[value])] = value;
  }
  return values;
}

constexpr std::array<std::uint16_t, 4096> kPairs = MakePairs();
constexpr std::array<unsigned char, 256> kValues = MakeValues();

unsigned char ValueOf(char character) {
  return kValues[static_cast<unsigned char>(character)];
}

__m128i InRange(__m128i chars, char first, char count) {
  const __m128i fromFirst = _mm_sub_epi8(chars, _mm_set1_epi8(first));
  return _mm_cmpeq_epi8(_mm_min_epu8(fromFirst, _mm_set1_epi8(static_cast<char>(count - 1))),
                        fromFirst);
}

/// The values of sixteen characters.
/// @return false when there is one outside the alphabet.
bool DecodeValues(const char* text, __m128i& values) {
  const __m128i chars = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  __m128i known = _mm_setzero_si128();
  values = chars;
  const auto shift = [&](char first, char count, int firstValue) {
    const __m128i isHere = InRange(chars, first, count);
    const __m128i toValue = _mm_set1_epi8(static_cast<char>(firstValue - first));
    values = _mm_add_epi8(values, _mm_and_si128(isHere, toValue));
    known = _mm_or_si128(known, isHere);
  };
  shift('A', 26, 0);
  shift('a', 26, 26);
  shift('0', 10, 52);
  shift('+', 1, 62);
  shift('/', 1, 63);
  return _mm_movemask_epi8(known) == 0xFFFF;
}

/// Two groups of 24 bits, one in each half, as the first six bytes in memory.
std::uint64_t JoinGroups(std::uint64_t groups) {
  return __builtin_bswap64(groups << 40 | groups >> 32 << 16);
}

/// Twelve bytes from sixteen characters.
bool DecodeBlock(const char* text, unsigned char* out) {
  __m128i values;
  if (!DecodeValues(text, values)) return false;
  const __m128i firsts = _mm_and_si128(_mm_slli_epi16(values, 6), _mm_set1_epi16(0xFC0));
  const __m128i pairs = _mm_or_si128(firsts, _mm_srli_epi16(values, 8));
  const __m128i groups = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 1 << 12));
  std::uint64_t halves[2];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(halves), groups);
  const std::uint64_t first = JoinGroups(halves[0]);
  const std::uint64_t second = JoinGroups(halves[1]);
  std::memcpy(out, &first, 6);
  std::memcpy(out + 6, &second, 6);
  return true;
}

/// Three bytes from four characters.
bool DecodeGroup(const char* text, unsigned char* out) {
  const unsigned int first = ValueOf(text[0]);
  const unsigned int second = ValueOf(text[1]);
  const unsigned int third = ValueOf(text[2]);
  const unsigned int fourth = ValueOf(text[3]);
  if (((first | second | third | fourth) & kNoValue) != 0) return false;
  out[0] = static_cast<unsigned char>(first << 2 | second >> 4);
  out[1] = static_cast<unsigned char>((second << 4 | third >> 2) & 0xFF);
  out[2] = static_cast<unsigned char>((third << 6 | fourth) & 0xFF);
  return true;
}

/// Decodes whole groups up to the first foreign character, and moves both positions. Writes no byte
/// beyond the decoded ones.
void DecodeGroups(const char*& text, const char* end, unsigned char*& out) {
  while (end - text >= 16 && DecodeBlock(text, out)) {
    text += 16;
    out += 12;
  }
  while (end - text >= 4 && DecodeGroup(text, out)) {
    text += 4;
    out += 3;
  }
}

/// Encodes six bytes a step while eight can be read.
/// @return the number of bytes encoded.
std::size_t EncodeSixes(const unsigned char* data, std::size_t length, char* out) {
  std::size_t done = 0;
  for (; length - done >= 8; done += 6, out += 8) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, data + done, 8);
    bits = __builtin_bswap64(bits);
    for (std::size_t pair = 0; pair < 4; ++pair) {
      std::memcpy(out + 2 * pair, &kPairs[bits >> (52 - 12 * pair) & 0xFFF], 2);
    }
  }
  return done;
}

}  // namespace

namespace detail {

std::string EncodeBase64(const unsigned char* data, std::size_t length) {
  if (data == nullptr) return {};
  std::string text((length + 2) / 3 * 4, '=');
  const std::size_t done = EncodeSixes(data, length, text.data());
  const int left = static_cast<int>(length - done);  // less than 8
  CBase64 rest(data + done, left);
  char* out = text.data() + done / 3 * 4;
  int position = 0;
  for (int bits = left * 8; bits > 0; bits -= 6) {
    int got = 0;
    *out++ = kAlphabet[rest.Read(6, &got, position)];
  }
  return text;
}

std::size_t DecodeBase64(const char* text, std::size_t length, unsigned char* out) {
  const char* const end = text + length;
  unsigned char* next = out;
  CBase64 split;  // the group that a foreign character stands in
  unsigned int digitsOfGroup = 0;
  while (text != end) {
    if (digitsOfGroup == 0) {
      DecodeGroups(text, end, next);
      if (text == end) break;
    }
    const unsigned char value = ValueOf(*text++);
    if (value == kNoValue) continue;
    int stored = 0;
    split.Write(value, 6, next, stored);
    next += stored;
    digitsOfGroup = (digitsOfGroup + 1) % 4;
  }
  return static_cast<std::size_t>(next - out);
}

}  // namespace detail

std::string CBase64::Encode(const unsigned char* data, int length) {
  return length > 0 ? detail::EncodeBase64(data, static_cast<std::size_t>(length)) : std::string();
}

int CBase64::Decode(const char* text, unsigned char* out) {
  if (text == nullptr) return 0;
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(detail::DecodeBase64(text, std::strlen(text), out), kMost));
}

unsigned int CBase64::Read(int bits, int* got, int& position) {
  bits = std::clamp(bits, 0, 8);
  while (m_bitCount < bits && position < m_inputLength) {
    m_bitBuffer = m_bitBuffer << 8 | m_input[position++];
    m_bitCount += 8;
  }
  const int taken = std::min(bits, m_bitCount);
  m_bitCount -= taken;
  *got = taken;
  return (static_cast<unsigned int>(m_bitBuffer >> m_bitCount) & m_nMask[taken]) << (bits - taken);
}

void CBase64::Write(unsigned int value, int bits, unsigned char* out, int& position) {
  bits = std::clamp(bits, 0, 8);
  m_bitBuffer = m_bitBuffer << bits | (value & m_nMask[bits]);
  m_bitCount += bits;
  while (m_bitCount >= 8) {
    m_bitCount -= 8;
    out[position++] = static_cast<unsigned char>(m_bitBuffer >> m_bitCount);
  }
}

}  // namespace ZuXmlLib16
