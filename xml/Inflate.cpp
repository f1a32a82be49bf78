#include "xml/Inflate.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "core/Errors.h"
#include "xml/ZlibStreams.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::size_t kSmallestCapacity = 65536;
constexpr std::size_t kUsualRatio = 4;

bool IsGzip(const unsigned char* data) {
  return data[0] == 0x1F && data[1] == 0x8B;
}

/// RFC 1950, section 2.2: method 8, a window of at most 32 KiB, and the check bits.
bool IsZlib(const unsigned char* data) {
  const unsigned int header = data[0] * 256u + data[1];
  return (data[0] & 0x0F) == 8 && data[0] >> 4 <= 7 && header % 31 == 0;
}

/// The inflated bytes so far, never more than one beyond the limit: that one tells that the limit
/// is passed.
class Output {
 public:
  Output(std::size_t inputLength, std::size_t limit)
      : m_limit(limit),
        m_capacity(Capped(std::max(kSmallestCapacity, Times(kUsualRatio, inputLength)))),
        m_data(new unsigned char[m_capacity]) {}

  /// Gives zlib the free part, after making one if there is none.
  void Offer(z_stream& stream) {
    if (m_length == m_capacity) Grow();
    constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
    m_offered = static_cast<uInt>(std::min(m_capacity - m_length, kMost));
    stream.next_out = m_data.get() + m_length;
    stream.avail_out = m_offered;
  }

  /// Takes in what zlib has made of the part offered.
  void Take(const z_stream& stream) {
    m_length += m_offered - stream.avail_out;
    if (m_limit != 0 && m_length > m_limit) ThrowDocumentTooLarge(m_limit);
  }

  std::size_t GetLength() const { return m_length; }
  std::unique_ptr<unsigned char[]> Release() { return std::move(m_data); }

 private:
  static std::size_t Times(std::size_t factor, std::size_t length) {
    return length > std::numeric_limits<std::size_t>::max() / factor
               ? std::numeric_limits<std::size_t>::max()
               : factor * length;
  }

  std::size_t Capped(std::size_t capacity) const {
    return m_limit != 0 && capacity > m_limit ? m_limit + 1 : capacity;
  }

  void Grow() {
    const std::size_t capacity = Capped(Times(2, m_capacity));
    std::unique_ptr<unsigned char[]> grown(new unsigned char[capacity]);
    std::memcpy(grown.get(), m_data.get(), m_length);
    m_data = std::move(grown);
    m_capacity = capacity;
  }

  std::size_t m_limit;
  std::size_t m_capacity;
  std::size_t m_length = 0;
  uInt m_offered = 0;
  std::unique_ptr<unsigned char[]> m_data;
};

std::string CauseOf(const z_stream& stream, int code) {
  if (code == Z_BUF_ERROR) return "unexpected end of data";
  return stream.msg != nullptr ? stream.msg : zError(code);
}

}  // namespace

Inflated Inflate(const unsigned char* data, std::size_t length, std::size_t limit) {
  Inflated result;
  if (data == nullptr || length < 2 || !(IsGzip(data) || IsZlib(data))) return result;
  InflateStream stream;
  Pieces<const unsigned char> input(data, length);
  Output output(length, limit);
  int code = Z_OK;
  while (code == Z_OK) {
    input.Refill(stream->next_in, stream->avail_in);
    output.Offer(*stream.Get());
    code = inflate(stream.Get(), Z_NO_FLUSH);
    output.Take(*stream.Get());
  }
  if (code == Z_MEM_ERROR) throw std::bad_alloc();
  if (code != Z_STREAM_END) {
    result.status = InflateStatus::Damaged;
    result.cause = CauseOf(*stream.Get(), code);
    return result;
  }
  result.status = InflateStatus::Complete;
  result.length = output.GetLength();
  result.data = output.Release();
  return result;
}

}  // namespace ZuXmlLib16::detail
