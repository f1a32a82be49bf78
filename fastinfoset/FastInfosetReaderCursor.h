#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/Errors.h"

namespace ZuXmlLib16::detail {

/// How the characters of a string are encoded.
enum class StringFormat : std::int8_t { Utf8, Utf16, Alphabet, Algorithm };

/// A string as it stands in the document.
struct EncodedString {
  StringFormat format;
  bool isAdded;         ///< whether its text enters the table it belongs to
  unsigned int number;  ///< of the alphabet or algorithm, 1 to 256
  std::string_view octets;
};

/// Goes over the octets of a document and decodes its lengths and indices (ITU-T Rec. X.891, annex
/// C). Bit 1 is the most significant one of an octet. What starts inside an octet is decoded from
/// that octet, the last one read; bits before the start are not looked at.
class FastInfosetCursor {
 public:
  explicit FastInfosetCursor(std::string_view octets)
      : m_begin(reinterpret_cast<const unsigned char*>(octets.data())),
        m_next(m_begin),
        m_end(m_begin + octets.size()) {}

  bool IsAtEnd() const { return m_next == m_end; }
  /// How many octets were read.
  std::size_t Position() const { return static_cast<std::size_t>(m_next - m_begin); }

  unsigned int Octet() {
    if (m_next == m_end) ThrowFastInfosetEnd();
    return *m_next++;
  }

  std::string_view Take(std::uint64_t count) {
    if (count > static_cast<std::uint64_t>(m_end - m_next)) ThrowFastInfosetEnd();
    const char* const first = reinterpret_cast<const char*>(m_next);
    m_next += count;
    return {first, static_cast<std::size_t>(count)};
  }

  /// Refuses the last octet that was read.
  [[noreturn]] void Refuse() const { ThrowFastInfosetOctet(m_next[-1], Position() - 1); }

  /// The length of a string that starts in the last bits of an octet (C.22 to C.24: on bit 2, 5 or
  /// 7 with 7, 4 or 2 bits).
  template <unsigned int bits>
  std::uint64_t Length(unsigned int octet) {
    constexpr unsigned int kLong = 1U << (bits - 1);
    constexpr unsigned int kLongest = 3U << (bits - 2);
    octet &= (1U << bits) - 1;
    if (octet < kLong) return octet + 1;
    if (octet == kLong) return Octet() + kLong + 1;
    if (octet != kLongest) Refuse();
    return Number(4) + kLong + 257;
  }

  /// An index on bit 2 (C.25). Like the others it may be above 2^20, where no table has an entry.
  std::uint32_t IndexOnBit2(unsigned int octet) {
    octet &= 0x7F;
    if (octet < 0x40) return octet + 1;
    if (octet < 0x60) return ((octet & 0x1F) << 8 | Octet()) + 65;
    if (octet >= 0x70) Refuse();
    const std::uint32_t high = (octet & 0x0F) << 16;
    return (high | static_cast<std::uint32_t>(Number(2))) + 8257;
  }

  /// An index in the last six bits of an octet (C.27).
  std::uint32_t IndexOnBit3(unsigned int octet) { return Index<6>(octet & 0x3F); }
  /// An index in the last five bits of an octet (C.28).
  std::uint32_t IndexOnBit4(unsigned int octet) { return Index<5>(octet & 0x1F); }

  /// The number of items of a list (C.21).
  std::uint32_t ItemCount() {
    const unsigned int octet = Octet();
    if (octet < 0x80) return octet + 1;
    if (octet >= 0x90) Refuse();
    const std::uint32_t high = (octet & 0x0F) << 16;
    return (high | static_cast<std::uint32_t>(Number(2))) + 129;
  }

  /// A string that has its length on bit 2, behind a bit 0.
  std::string_view PlainString() {
    const unsigned int octet = Octet();
    if (octet >= 0x80) Refuse();
    return Take(Length<7>(octet));
  }

  /// A string whose length starts in the last bits of an octet (C.14: 4 bits, C.15: 2 bits), with
  /// two bits for the format before them and one for the addition before these.
  template <unsigned int bits>
  EncodedString String(unsigned int octet) {
    EncodedString string{
        static_cast<StringFormat>(octet >> bits & 3), (octet >> bits & 4) != 0, 0, {}};
    if (string.format >= StringFormat::Alphabet) {
      const unsigned int next = Octet();
      string.number = ((octet << (8 - bits) & 0xFF) | next >> bits) + 1;
      octet = next;
    }
    string.octets = Take(Length<bits>(octet));
    return string;
  }

 private:
  /// A big-endian number.
  std::uint64_t Number(int sizeInOctets) {
    std::uint64_t number = 0;
    for (; sizeInOctets > 0; --sizeInOctets) {
      number = number << 8 | Octet();
    }
    return number;
  }

  template <unsigned int bits>
  std::uint32_t Index(unsigned int octet) {
    constexpr unsigned int kHigh = bits - 3;  // bits of the number in the first of several octets
    constexpr std::uint32_t kMedium = (1U << (bits - 1)) + 1;
    constexpr std::uint32_t kLarge = kMedium + (1U << (kHigh + 8));
    constexpr std::uint32_t kHuge = kLarge + (1U << (kHigh + 16));
    const std::uint32_t high = octet & ((1U << kHigh) - 1);
    switch (octet >> kHigh) {
      case 4:
        return (high << 8 | Octet()) + kMedium;
      case 5:
        return (high << 16 | static_cast<std::uint32_t>(Number(2))) + kLarge;
      case 6: {
        if (high != 0) Refuse();
        const unsigned int second = Octet();
        if (second >= 0x10) Refuse();
        return (second << 16 | static_cast<std::uint32_t>(Number(2))) + kHuge;
      }
      case 7:
        Refuse();
      default:
        return octet + 1;
    }
  }

  const unsigned char* m_begin;
  const unsigned char* m_next;
  const unsigned char* m_end;
};

}  // namespace ZuXmlLib16::detail
