#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "ZuXmlLib16/Zip.h"
#include "support/ErrorMatch.h"
#include "xml/Inflate.h"

namespace ZuXmlLib16 {
namespace {

/// An array and its length, as the compressor takes and replaces them.
struct HeapBytes {
  explicit HeapBytes(const std::string& bytes)
      : data(new unsigned char[bytes.size()]), length(bytes.size()) {
    std::memcpy(data, bytes.data(), length);
  }
  HeapBytes(const HeapBytes&) = delete;
  HeapBytes& operator=(const HeapBytes&) = delete;
  ~HeapBytes() { delete[] data; }

  std::string Text() const { return std::string(reinterpret_cast<const char*>(data), length); }

  unsigned char* data;
  unsigned long length;
};

std::string Repetitive(std::size_t length) {
  std::string text;
  while (text.size() < length)
    text += "<item id=\"1\"/>";
  text.resize(length);
  return text;
}

std::string Random(std::size_t length) {
  std::mt19937 generator(11);
  std::string bytes(length, '\0');
  for (char& byte : bytes)
    byte = static_cast<char>(generator());
  return bytes;
}

std::string Compressed(const std::string& text, CompressionType type) {
  CBinaryData data;
  data.Append(text);
  CZuZip::CompressData(data, type, true);
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

std::string Decompressed(const std::string& bytes) {
  HeapBytes heap(bytes);
  CZuZip::Decompress(&heap.data, &heap.length);
  return heap.Text();
}

detail::Inflated Inflated(const std::string& bytes, std::size_t limit = 0) {
  return detail::Inflate(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), limit);
}

class Framings : public testing::TestWithParam<CompressionType> {};

TEST_P(Framings, RoundTripEverySize) {
  for (const std::size_t size : {1000u, 65536u, 3000000u}) {
    HeapBytes heap(Repetitive(size));
    CZuZip::Compress(&heap.data, &heap.length, GetParam());
    EXPECT_LT(heap.length, size / 4);
    EXPECT_EQ(Decompressed(heap.Text()), Repetitive(size));
    EXPECT_EQ(Decompressed(heap.Text() + heap.Text() + "tail"), Repetitive(size));
  }
  for (const std::size_t size : {1u, 2u, 16u, 100000u})
    EXPECT_EQ(Decompressed(Compressed(Random(size), GetParam())), Random(size));
}

TEST_P(Framings, FailWhenTheDataDoesNotShrinkAndMayNotGrow) {
  HeapBytes heap(Random(1000));
  EXPECT_ZU_ERROR(CZuException, CZuZip::Compress(&heap.data, &heap.length, GetParam()),
                  "Failed to compress data. [Error Code: 0]", "");
  EXPECT_EQ(heap.Text(), Random(1000));
  CBinaryData data("x");
  EXPECT_ZU_ERROR(CZuException, CZuZip::CompressData(data, GetParam()),
                  "Failed to compress data. [Error Code: -5]", "");
  EXPECT_TRUE(data == CBinaryData("x"));
}

TEST_P(Framings, LeaveDamagedDataAndSayWhatIsWrong) {
  const std::string whole = Compressed(Repetitive(300), GetParam());
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    EXPECT_EQ(Decompressed(cut), cut);
    const detail::Inflated inflated = Inflated(cut);
    EXPECT_EQ(inflated.status,
              length < 2 ? detail::InflateStatus::NotCompressed : detail::InflateStatus::Damaged);
    EXPECT_EQ(inflated.cause, length < 2 ? "" : "unexpected end of data");
  }
  std::string wrongCheck = whole;
  wrongCheck[whole.size() - (GetParam() == CompressionType::Gzip ? 5 : 1)] ^= 1;
  EXPECT_EQ(Decompressed(wrongCheck), wrongCheck);
  EXPECT_EQ(Inflated(wrongCheck).cause, "incorrect data check");
}

TEST_P(Framings, KeepToTheLimit) {
  const std::string bomb = Compressed(Repetitive(50000000), GetParam());
  for (const unsigned long limit : {1ul, 65536ul, 49999999ul}) {
    HeapBytes heap(bomb);
    EXPECT_ZU_ERROR(CZuException, CZuZip::Decompress(&heap.data, &heap.length, limit),
                    "The document is larger than the limit of " + std::to_string(limit) + " bytes.",
                    "");
    EXPECT_EQ(heap.Text(), bomb);
  }
  for (const unsigned long limit : {0ul, 50000000ul, ~0ul}) {
    HeapBytes heap(bomb);
    CZuZip::Decompress(&heap.data, &heap.length, limit);
    EXPECT_EQ(heap.length, 50000000u) << limit;
  }
}

INSTANTIATE_TEST_SUITE_P(Both, Framings,
                         testing::Values(CompressionType::Gzip, CompressionType::Zlib));

TEST(Compression, WritesTheFramingAskedFor) {
  EXPECT_EQ(Compressed("x", CompressionType::Gzip).substr(0, 3), "\x1F\x8B\x08");
  EXPECT_EQ(Compressed("x", CompressionType::Zlib)[0], '\x78');
  EXPECT_EQ(Compressed("x", static_cast<CompressionType>(3)), "x");
  EXPECT_EQ(Compressed("", CompressionType::Gzip), "");
}

TEST(Compression, ChangesNoCopyOfTheData) {
  CBinaryData data(Repetitive(1000).c_str());
  const CBinaryData copy(data);
  CZuZip::CompressData(data, CompressionType::Gzip);
  EXPECT_LT(data.GetLength(), 1000u);
  EXPECT_TRUE(copy == CBinaryData(Repetitive(1000).c_str()));
}

TEST(Decompression, LeavesWhatIsNotCompressed) {
  for (const char* text :
       {"", "<a/>", "\xEF\xBB\xBF<a/>", "\x78", "\x78\x9D", "\x88\x1C", "\x1F\x8C"}) {
    EXPECT_EQ(Decompressed(text), text);
    EXPECT_EQ(Inflated(text).status, detail::InflateStatus::NotCompressed) << text;
  }
}

TEST(Decompression, RefusesAPresetDictionary) {
  const detail::Inflated inflated = Inflated(std::string("\x78\xBB\x01\x02\x03\x04zzzz"));
  EXPECT_EQ(inflated.status, detail::InflateStatus::Damaged);
  EXPECT_EQ(inflated.cause, "need dictionary");
}

}  // namespace
}  // namespace ZuXmlLib16
