#pragma once

#ifndef ZLIB_CONST
#define ZLIB_CONST  // input pointers to const bytes
#endif
#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>

// Owners of zlib's state, and what both directions share.

namespace ZuXmlLib16::detail {

/// Any zlib 1.x will do: zlib compares the first character only.
inline constexpr char kZlibVersion[] = "1.2.3";

class InflateStream {
 public:
  InflateStream() {
    constexpr int kEitherFraming = 47;
    // Only a lack of memory can make this fail.
    if (inflateInit2_(&m_state, kEitherFraming, kZlibVersion, sizeof m_state) != Z_OK) {
      throw std::bad_alloc();
    }
  }
  InflateStream(const InflateStream&) = delete;
  InflateStream& operator=(const InflateStream&) = delete;
  ~InflateStream() { inflateEnd(&m_state); }

  z_stream* Get() { return &m_state; }
  z_stream* operator->() { return &m_state; }

 private:
  z_stream m_state{};
};

enum class Framing { Gzip, Zlib };

class DeflateStream {
 public:
  explicit DeflateStream(Framing framing) {
    if (Init(framing) != Z_OK) throw std::bad_alloc();
  }
  DeflateStream(const DeflateStream&) = delete;
  DeflateStream& operator=(const DeflateStream&) = delete;
  ~DeflateStream() { deflateEnd(&m_state); }

  z_stream* Get() { return &m_state; }
  z_stream* operator->() { return &m_state; }

 private:
  int Init(Framing framing) {
    constexpr int kLevel = 1;
    constexpr int kGzipFraming = 31;
    constexpr int kMemoryLevel = 8;
    if (framing == Framing::Zlib) {
      return deflateInit_(&m_state, kLevel, kZlibVersion, sizeof m_state);
    }
    return deflateInit2_(&m_state, kLevel, Z_DEFLATED, kGzipFraming, kMemoryLevel,
                         Z_DEFAULT_STRATEGY, kZlibVersion, sizeof m_state);
  }

  z_stream m_state{};
};

/// Bytes that zlib reads or fills, handed over in pieces that its 32-bit counts can hold.
template <class Byte>
class Pieces {
 public:
  Pieces(Byte* bytes, std::size_t length) : m_next(bytes), m_left(length) {}

  /// Sets zlib's position to the next piece when it has used up the last one.
  void Refill(Byte*& next, uInt& available) {
    if (available != 0) return;
    constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
    available = static_cast<uInt>(std::min(m_left, kMost));
    next = m_next;
    m_next += available;
    m_left -= available;
  }
  /// Whether bytes are left, be it of the piece that zlib has.
  bool HasMore(uInt available) const { return available != 0 || m_left != 0; }

 private:
  Byte* m_next;
  std::size_t m_left;
};

}  // namespace ZuXmlLib16::detail
