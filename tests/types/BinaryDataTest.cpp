#include <cctype>
#include <climits>
#include <cstring>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "ZuXmlLib16/BinaryData.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using Bytes = std::vector<unsigned char>;

CBinaryData DataOf(const Bytes& bytes) {
  CBinaryData data;
  data.SetBuffer(bytes.data(), bytes.size());
  return data;
}

Bytes RandomBytes(std::size_t length) {
  static std::mt19937 generator(20240517);
  Bytes bytes(length);
  for (unsigned char& byte : bytes)
    byte = static_cast<unsigned char>(generator());
  return bytes;
}

Bytes FromHex(const std::string& text) {
  CBinaryData data;
  data.SetAsHexString(text.c_str());
  return Bytes(data.GetData(), data.GetData() + data.GetLength());
}

Bytes FromBase64(const std::string& text) {
  CBinaryData data;
  data.SetAsBase64(text.c_str());
  return Bytes(data.GetData(), data.GetData() + data.GetLength());
}

std::string TextFromBase64(const std::string& text) {
  const Bytes bytes = FromBase64(text);
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

// One digit at a time, to check the block-wise forms against.
std::string PlainBase64(const Bytes& bytes) {
  std::string text;
  unsigned int bits = 0;
  int count = 0;
  for (const unsigned char byte : bytes) {
    bits = bits << 8 | byte;
    for (count += 8; count >= 6; count -= 6) {
      text += CBase64::m_sBase64Alphabet[bits >> (count - 6) & 63];
    }
  }
  if (count > 0) text += CBase64::m_sBase64Alphabet[bits << (6 - count) & 63];
  while (text.size() % 4 != 0) {
    text += '=';
  }
  return text;
}

TEST(BinaryDataText, RoundTripsEveryLength) {
  for (std::size_t length = 0; length <= 100; ++length) {
    const Bytes bytes = RandomBytes(length);
    const CBinaryData data = DataOf(bytes);
    EXPECT_EQ(FromHex(data.GetAsHexString()), bytes);
    EXPECT_EQ(data.GetAsBase64(), PlainBase64(bytes));
    EXPECT_EQ(FromBase64(data.GetAsBase64()), bytes);
    Bytes decoded(length + 1, 0xEE);
    EXPECT_EQ(CBase64::Decode(data.GetAsBase64().c_str(), decoded.data()),
              static_cast<int>(length));
    EXPECT_EQ(decoded[length], 0xEE) << "wrote beyond the last byte";
  }
}

TEST(BinaryDataText, IsThatOfTheStandards) {
  EXPECT_EQ(DataOf(FromHex("0aFf")).GetAsHexString(), "0AFF");
  EXPECT_EQ(CBinaryData("Man").GetAsBase64(), "TWFu");
  EXPECT_EQ(CBinaryData("Ma").GetAsBase64(), "TWE=");
  EXPECT_EQ(CBinaryData("M").GetAsBase64(), "TQ==");
}

// Long enough for a block and for the rest behind it.
class CharacterInPlace : public testing::TestWithParam<std::size_t> {};

TEST_P(CharacterInPlace, IsHexDigitOrNamedInTheError) {
  for (int code = 1; code <= UCHAR_MAX; ++code) {
    std::string text(46, '7');
    text[GetParam()] = static_cast<char>(code);
    CBinaryData data("old");
    if (std::isxdigit(code) != 0) {
      data.SetAsHexString(text.c_str());
      for (char& c : text) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      }
      EXPECT_EQ(data.GetAsHexString(), text);
    } else {
      EXPECT_ZU_ERROR(
          CZuException, data.SetAsHexString(text.c_str()),
          "Invalid char in hex string [" + std::string(1, static_cast<char>(code)) + "]", "");
      EXPECT_EQ(data.GetLength(), 0u);
    }
  }
}

TEST_P(CharacterInPlace, IsBase64DigitOrSkipped) {
  const Bytes bytes = RandomBytes(33);
  const std::string text = DataOf(bytes).GetAsBase64();
  const std::string alphabet = CBase64::m_sBase64Alphabet;
  for (int code = 1; code <= UCHAR_MAX; ++code) {
    std::string changed = text;
    const char character = static_cast<char>(code);
    if (alphabet.find(character) != std::string::npos) {
      changed[GetParam() % changed.size()] = character;
      EXPECT_EQ(DataOf(FromBase64(changed)).GetAsBase64(), changed);
    } else {
      changed.insert(GetParam() % changed.size(), 1, character);
      EXPECT_EQ(FromBase64(changed), bytes) << code;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Places, CharacterInPlace, testing::Values(0, 1, 15, 16, 31, 32, 43, 45));

TEST(BinaryDataText, FailsOnOddHexLengthBeforeLookingAtDigits) {
  CBinaryData data("old");
  EXPECT_ZU_ERROR(CZuException, data.SetAsHexString("xyz"), "Invalid length in hex string", "");
  EXPECT_EQ(data.GetData(), nullptr);
  unsigned char* out = nullptr;
  EXPECT_EQ(CBinaryData::ConvertToHexData("", &out), 0u);
  delete[] out;
}

TEST(BinaryDataText, DecodesBase64AroundPaddingAndLayout) {
  EXPECT_EQ(TextFromBase64("TW E=\n"), "Ma");
  EXPECT_EQ(TextFromBase64("TQ==TQ"), TextFromBase64("TQTQ"));
  EXPECT_EQ(TextFromBase64("TWFuT"), "Man");
  for (const char* nothing : {"", "====", " \n", "T", "\xFF\x80"}) {
    CBinaryData data("old");
    data.SetAsBase64(nothing);
    EXPECT_TRUE(data == CBinaryData()) << nothing;
    EXPECT_EQ(data.GetData(), nullptr);
    EXPECT_EQ(data.GetAsBase64(), "");
    EXPECT_ZU_ERROR(CZuException, data[0], "Index Out of range [0]", "");
  }
}

TEST(BinaryDataText, MayLieInTheValueItself) {
  CBinaryData hex("4D616E");
  hex.Append('\0');
  hex.SetAsHexString(reinterpret_cast<const char*>(hex.GetData()));
  EXPECT_TRUE(hex == CBinaryData("Man"));
  CBinaryData base64("TWFu");
  base64.Append('\0');
  base64.SetAsBase64(reinterpret_cast<const char*>(base64.GetData()));
  EXPECT_TRUE(base64 == CBinaryData("Man"));
  base64.SetBuffer(base64.GetData() + 1, 2);
  EXPECT_TRUE(base64 == CBinaryData("an"));
}

TEST(Base64Bits, GoInAndOutInAnyWidth) {
  const unsigned char input[] = {0xA5, 0x0F};
  CBase64 reader(input, 2);
  CBase64 writer;
  unsigned char output[2] = {};
  int got = 0;
  int read = 0;
  int written = 0;
  for (const int width : {3, 8, 0, 5}) {
    const unsigned int value = reader.Read(width, &got, read);
    EXPECT_EQ(got, width);
    writer.Write(value | 0x100, width, output, written);
  }
  EXPECT_EQ(written, 2);
  EXPECT_EQ(0, std::memcmp(input, output, 2));
  EXPECT_EQ(reader.Read(6, &got, read), 0u);
  EXPECT_EQ(got, 0);
  CBase64 shortReader(input, 1);
  read = 0;
  shortReader.Read(6, &got, read);
  EXPECT_EQ(shortReader.Read(6, &got, read), 0b010000u);
  EXPECT_EQ(got, 2);
}

TEST(BinaryData, ChangesNoCopy) {
  const auto expectApart = [](void (*change)(CBinaryData&), const char* result) {
    const CBinaryData original("abc");
    CBinaryData copy(original);
    EXPECT_EQ(copy.GetData(), original.GetData());
    change(copy);
    EXPECT_TRUE(original == CBinaryData("abc"));
    EXPECT_TRUE(copy == CBinaryData(result)) << result;
  };
  expectApart([](CBinaryData& data) { data.Append('x'); }, "abcx");
  expectApart([](CBinaryData& data) { data.Append("xy"); }, "abcxy");
  expectApart([](CBinaryData& data) { data.Append(data); }, "abcabc");
  expectApart([](CBinaryData& data) { data[1] = 'x'; }, "axc");
  expectApart([](CBinaryData& data) { data.SetBuffer("x"); }, "x");
  expectApart([](CBinaryData& data) { data.Clear(); }, "");
  expectApart([](CBinaryData& data) { delete[] data.ReleaseData(); }, "");
}

TEST(BinaryData, AppendsItsOwnBytes) {
  // Copied and shared values, and one without spare room.
  CBinaryData roomy("abc");
  roomy.Append(roomy.GetData() + 1, 2);
  EXPECT_TRUE(roomy == CBinaryData("abcbc"));
  CBinaryData exact(new unsigned char[2]{'a', 'b'}, 2, true);
  for (int i = 0; i < 12; ++i)
    exact.Append(exact);
  EXPECT_EQ(exact.GetLength(), 2u << 12);
  EXPECT_EQ(exact[(2u << 12) - 1], 'b');
}

TEST(BinaryData, GrowsSeldom) {
  CBinaryData data("x");
  const unsigned char* const first = data.GetData();
  for (int i = 1; i < 8192; ++i)
    data.Append('x');
  EXPECT_EQ(data.GetData(), first);
  int moves = 0;
  for (const unsigned char* last = first; data.GetLength() < 1000000; data.Append('x')) {
    if (data.GetData() != last) ++moves;
    last = data.GetData();
  }
  EXPECT_LT(moves, 10);
}

TEST(BinaryData, AcceptsTheIndexBehindTheLastByte) {
  CBinaryData exact(new unsigned char[2]{1, 2}, 2, true);
  EXPECT_EQ(std::as_const(exact)[2], 0);
  exact[2] = 7;
  EXPECT_EQ(exact.GetLength(), 2u);
  EXPECT_ZU_ERROR(CZuException, exact[3], "Index Out of range [3]", "");
  EXPECT_ZU_ERROR(CZuException, std::as_const(exact)[3], "Index Out of range [3]", "");
  EXPECT_ZU_ERROR(CZuException, exact[1ul << 40], "Index Out of range [2147483647]", "");
}

TEST(BinaryData, IsEmptyAfterItIsAssignedToItself) {
  CBinaryData data("abc");
  const CBinaryData copy(data);
  data = *&data;
  EXPECT_EQ(data.GetLength(), 0u);
  EXPECT_TRUE(copy == CBinaryData("abc"));
}

TEST(BinaryData, HandsOverWhatItAdopted) {
  auto* const bytes = new unsigned char[3]{1, 2, 3};
  CBinaryData data(bytes, 3, true);
  EXPECT_EQ(data.ReleaseData(), bytes);
  EXPECT_EQ(data.ReleaseData(), nullptr);
  delete[] bytes;
  const CBinaryData nothing(new unsigned char[0], 0, true);
  EXPECT_EQ(nothing.GetData(), nullptr);
}

TEST(BinaryData, ComparesLengthAndBytes) {
  EXPECT_TRUE(CBinaryData() == CBinaryData(""));
  EXPECT_TRUE(CBinaryData("a") != CBinaryData());
  EXPECT_TRUE(CBinaryData("ab") != CBinaryData("a"));
  EXPECT_TRUE(CBinaryData("ab") != CBinaryData("ac"));
}

TEST(BinaryDataHolder, RefusesToChangeOrDetachWhileShared) {
  auto* const holder = new CBinaryData::CDataHolder(new unsigned char[1]{1}, 1, true);
  holder->AddRef();
  holder->AddRef();
  const unsigned char byte = 2;
  EXPECT_ZU_ERROR(CZuException, holder->Append(&byte, 1), "Failed to append. [RefCount=3]", "");
  EXPECT_ZU_ERROR(CZuException, holder->Release(true), "Failed to release data. [RefCount=2]", "");
  CBinaryData::CDataHolder* const copy = holder->GetExclusiveCopy();
  EXPECT_NE(copy, holder);
  copy->Release(false);
  EXPECT_EQ(holder->GetExclusiveCopy(), holder);
  EXPECT_THROW(holder->Append(&byte, ULONG_MAX), std::bad_alloc);
  holder->Release(false);
  auto* const empty = new CBinaryData::CDataHolder(nullptr, 0, true);
  empty->Append(&byte, 1);
  EXPECT_EQ(empty->GetData()[0], 2);
  empty->Release(false);
}

TEST(BinaryData, IsSharedAcrossThreads) {
  CBinaryData data("shared");
  std::vector<CBinaryData> copies(4, data);
  std::vector<std::thread> threads;
  threads.reserve(copies.size());
  for (CBinaryData& copy : copies) {
    threads.emplace_back([&copy] {
      for (int i = 0; i < 1000; ++i) {
        CBinaryData second(copy);
        second.Append(second);
        copy = i % 3 == 0 ? second : CBinaryData(copy);
        if (copy.GetLength() > 100) copy.SetBuffer("shared");
      }
      copy.Append('!');
    });
  }
  data.Clear();
  for (std::thread& thread : threads)
    thread.join();
  for (CBinaryData& copy : copies)
    EXPECT_EQ(copy[copy.GetLength() - 1], '!');
}

}  // namespace
}  // namespace ZuXmlLib16
