// Inflating any bytes either leaves them as they are or replaces them by a result within the limit;
// a CZuException leaves them alone. Any bytes, compressed in either framing, inflate to themselves.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/Zip.h"

using namespace ZuXmlLib16;

namespace {

constexpr unsigned long kLimit = 1 << 20;

void Require(bool isSo) {
  if (!isSo) std::abort();
}

struct Bytes {
  Bytes(const unsigned char* bytes, std::size_t size)
      : data(new unsigned char[size]), length(size) {
    std::copy_n(bytes, size, data);
  }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  ~Bytes() { delete[] data; }

  bool Holds(const unsigned char* bytes, std::size_t size) const {
    return std::equal(data, data + length, bytes, bytes + size);
  }

  unsigned char* data;  // the operations replace the array
  unsigned long length;
};

void CheckInflating(const unsigned char* data, std::size_t size) {
  Bytes bytes(data, size);
  const unsigned char* const before = bytes.data;
  bool isRefused = false;
  try {
    CZuZip::Decompress(&bytes.data, &bytes.length, kLimit);
  } catch (const CZuException&) {
    isRefused = true;
  }
  if (isRefused || bytes.data == before) {
    Require(bytes.data == before && bytes.Holds(data, size));
  } else {
    Require(bytes.length <= kLimit);
  }
}

void CheckCompressing(const unsigned char* data, std::size_t size, CompressionType type) {
  CBinaryData value;
  value.SetBuffer(data, size);
  CZuZip::CompressData(value, type, true);
  Bytes bytes(value.GetData(), value.GetLength());
  CZuZip::Decompress(&bytes.data, &bytes.length);
  Require(bytes.Holds(data, size));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  CheckInflating(data, size);
  CheckCompressing(data, size, CompressionType::Gzip);
  CheckCompressing(data, size, CompressionType::Zlib);
  return 0;
}
