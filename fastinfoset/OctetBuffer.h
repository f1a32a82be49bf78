#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "ZuXmlLib16/FIVocabulary.h"
#include "xml/StreamPut.h"

namespace ZuXmlLib16::detail {

/// The longest octet string that a Fast Infoset document can hold.
inline constexpr std::size_t kMaxOctetString = std::size_t{1} << 32;

/// Octets under construction, and the forms of lengths and indices in which Fast Infoset documents
/// hold them (ITU-T Rec. X.891, annex C). The bits of an octet are counted from 1, the most
/// significant one; where a form starts inside an octet, `before` holds the bits in front of it.
class OctetBuffer {
 public:
  const char* GetData() const { return m_octets.get(); }
  std::size_t GetSize() const { return m_size; }
  bool IsEmpty() const { return m_size == 0; }
  std::string_view View() const { return {m_octets.get(), m_size}; }
  /// Keeps the memory.
  void Clear() { m_size = 0; }
  /// The octets; this buffer is empty afterwards, and without memory.
  OctetBuffer Take() {
    OctetBuffer taken;
    std::swap(taken.m_octets, m_octets);
    std::swap(taken.m_size, m_size);
    std::swap(taken.m_capacity, m_capacity);
    return taken;
  }

  /// Makes room for more octets.
  void Reserve(std::size_t size) {
    if (size > m_capacity - m_size) Grow(size);
  }
  void Put(unsigned int octet) {
    Reserve(1);
    PutOctet(octet);
  }
  void Put(std::string_view octets) {
    Reserve(octets.size());
    PutOctets(octets);
  }

  /// A length of 1 to kMaxOctetString starting on bit 2, 5 or 7, and the octets (C.22 to C.24).
  template <int bit>
  void PutString(unsigned int before, std::string_view octets) {
    static_assert(bit == 2 || bit == 5 || bit == 7);
    constexpr unsigned int kShort = 1 << (8 - bit);
    constexpr unsigned int kMiddle = kShort + 256;
    const std::size_t length = octets.size();
    Reserve(length + kLongestForm);
    if (length <= kShort) {
      PutOctet(before | static_cast<unsigned int>(length - 1));
    } else if (length <= kMiddle) {
      PutOctet(before | kShort);
      PutOctet(static_cast<unsigned int>(length - kShort - 1));
    } else {
      PutOctet(before | kShort | kShort / 2);
      PutLow<4>(length - kMiddle - 1);
    }
    PutOctets(octets);
  }

  /// An index of 1 to 2^20 starting on bit 2 (C.25).
  void PutIndexOnBit2(unsigned int before, unsigned long index) {
    Reserve(kLongestForm);
    if (index <= 64) {
      PutOctet(before | static_cast<unsigned int>(index - 1));
    } else if (index <= 8256) {
      PutOctet(before | 0x40 | static_cast<unsigned int>((index - 65) >> 8));
      PutLow<1>(index - 65);
    } else {
      PutOctet(before | 0x60 | static_cast<unsigned int>((index - 8257) >> 16));
      PutLow<2>(index - 8257);
    }
  }

  /// The same starting on bit 3 or 4 (C.27, C.28).
  template <int bit>
  void PutIndex(unsigned int before, unsigned long index) {
    static_assert(bit == 3 || bit == 4);
    constexpr unsigned int kShort = 1 << (8 - bit);
    constexpr unsigned int kMiddle = kShort + kShort * 64;
    constexpr unsigned int kLong = kMiddle + kShort * 16384;
    Reserve(kLongestForm);
    if (index <= kShort) {
      PutOctet(before | static_cast<unsigned int>(index - 1));
    } else if (index <= kMiddle) {
      const unsigned long rest = index - kShort - 1;
      PutOctet(before | kShort | static_cast<unsigned int>(rest >> 8));
      PutLow<1>(rest);
    } else if (index <= kLong) {
      const unsigned long rest = index - kMiddle - 1;
      PutOctet(before | kShort | kShort / 4 | static_cast<unsigned int>(rest >> 16));
      PutLow<2>(rest);
    } else {
      PutOctet(before | kShort | kShort / 2);
      PutLow<3>(index - kLong - 1);
    }
  }

  /// A literal of the strings that identify, starting on bit 1 (C.13).
  void PutIdentifier(std::string_view octets) { PutString<2>(0, octets); }
  /// The index of such a string.
  void PutIdentifier(unsigned long index) { PutIndexOnBit2(0x80, index); }

 private:
  static constexpr std::size_t kLongestForm = 5;

  void Grow(std::size_t size) {
    constexpr std::size_t kFirst = 256;
    const std::size_t capacity = std::max({kFirst, 2 * m_capacity, m_size + size});
    PooledBlock octets = NewPooledBlock(capacity);
    if (m_size > 0) std::memcpy(octets.get(), m_octets.get(), m_size);
    m_octets = std::move(octets);
    m_capacity = capacity;
  }
  void PutOctet(unsigned int octet) { m_octets[m_size++] = static_cast<char>(octet); }
  void PutOctets(std::string_view octets) {
    CopyText(m_octets.get() + m_size, octets);
    m_size += octets.size();
  }
  template <int count>
  void PutLow(unsigned long value) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) {
      PutOctet(static_cast<unsigned int>(value >> shift & 0xFF));
    }
  }

  PooledBlock m_octets;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

}  // namespace ZuXmlLib16::detail
