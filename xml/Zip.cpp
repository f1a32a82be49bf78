#include "ZuXmlLib16/Zip.h"

#include <memory>

#include "core/Errors.h"
#include "xml/Inflate.h"
#include "xml/ZlibStreams.h"

namespace ZuXmlLib16 {
namespace {

struct Deflated {
  std::unique_ptr<unsigned char[]> data;
  std::size_t length;
};

bool IsCompressing(CompressionType type) {
  return type == CompressionType::Gzip || type == CompressionType::Zlib;
}

/// @param type  a type that compresses.
Deflated Deflate(const unsigned char* data, std::size_t length, CompressionType type,
                 bool mayGrow) {
  detail::DeflateStream stream(type == CompressionType::Gzip ? detail::Framing::Gzip
                                                             : detail::Framing::Zlib);
  const std::size_t capacity = mayGrow ? deflateBound(stream.Get(), length) : length;
  Deflated result{std::unique_ptr<unsigned char[]>(new unsigned char[capacity]), 0};
  detail::Pieces<const unsigned char> input(data, length);
  detail::Pieces<unsigned char> output(result.data.get(), capacity);
  const auto advance = [&](int flush) {
    input.Refill(stream->next_in, stream->avail_in);
    output.Refill(stream->next_out, stream->avail_out);
    return deflate(stream.Get(), flush);
  };
  // The input goes in first and is finished by a call of its own, whose code is reported.
  int code = Z_OK;
  while (code == Z_OK && input.HasMore(stream->avail_in) && output.HasMore(stream->avail_out)) {
    code = advance(Z_NO_FLUSH);
  }
  do {
    code = advance(Z_FINISH);
  } while (code == Z_OK && output.HasMore(stream->avail_out));
  if (code != Z_STREAM_END) ThrowNotCompressed(code);
  result.length = stream->total_out;
  return result;
}

}  // namespace

void CZuZip::Compress(unsigned char** data, unsigned long* length, CompressionType type) {
  if (!IsCompressing(type)) return;
  Deflated compressed = Deflate(*data, *length, type, false);
  delete[] * data;
  *data = compressed.data.release();
  *length = compressed.length;
}

void CZuZip::Decompress(unsigned char** data, unsigned long* length) {
  Decompress(data, length, 0);
}

void CZuZip::Decompress(unsigned char** data, unsigned long* length, unsigned long limit) {
  detail::Inflated inflated = detail::Inflate(*data, *length, limit);
  if (inflated.status != detail::InflateStatus::Complete) return;
  delete[] * data;
  *data = inflated.data.release();
  *length = inflated.length;
}

void CZuZip::CompressData(CBinaryData& data, CompressionType type, bool mayGrow) {
  if (!IsCompressing(type) || data.GetLength() == 0) return;
  Deflated compressed = Deflate(data.GetData(), data.GetLength(), type, mayGrow);
  data = CBinaryData(compressed.data.release(), compressed.length, true);
}

}  // namespace ZuXmlLib16
