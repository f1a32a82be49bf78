#include <cctype>
#include <climits>
#include <cstring>
#include <random>
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

Bytes BytesOf(const CBinaryData& data) {
  return Bytes(data.GetData(), data.GetData() + data.GetLength());
}

CBinaryData FromHex(const std::string& text) {
  CBinaryData data("old");
  data.SetAsHexString(text.c_str());
  return data;
}

CBinaryData FromBase64(const std::string& text) {
  CBinaryData data("old");
  data.SetAsBase64(text.c_str());
  return data;
}

// One digit at a time, to check the block-wise forms against.
std::string PlainBase64(const Bytes& bytes) {
  std::string text;
  unsigned int bits = 0;
  int count = 0;
  for (const unsigned char byte : bytes) {
    bits = bits << 8 | byte;
    for (count += 8; count >= 6; count -= 6)
      text += CBase64::m_sBase64Alphabet[bits >> (count - 6) & 63];
  }
  if (count > 0) text += CBase64::m_sBase64Alphabet[bits << (6 - count) & 63];
  while (text.size() % 4 != 0)
    text += '=';
  return text;
}

TEST(BinaryDataText, RoundTripsEveryLength) {
  for (std::size_t length = 0; length <= 100; ++length) {
    const Bytes bytes = RandomBytes(length);
    const CBinaryData data = DataOf(bytes);
    EXPECT_EQ(BytesOf(FromHex(data.GetAsHexString())), bytes);
    EXPECT_EQ(data.GetAsBase64(), PlainBase64(bytes));
    EXPECT_EQ(BytesOf(FromBase64(data.GetAsBase64())), bytes);
    Bytes decoded(length + 1, 0xEE);
    EXPECT_EQ(CBase64::Decode(data.GetAsBase64().c_str(), decoded.data()),
              static_cast<int>(length));
    EXPECT_EQ(decoded[length], 0xEE) << "wrote beyond the last byte";
  }
  EXPECT_EQ(CBinaryData("Ma\xFF").GetAsHexString(), "4D61FF");
  EXPECT_EQ(CBinaryData("M").GetAsBase64(), "TQ==");
}

// Long enough for a block and for the rest behind it.
class CharacterInPlace : public testing::TestWithParam<std::size_t> {};

TEST_P(CharacterInPlace, IsHexDigitOrNamedInTheError) {
  for (int code = 1; code <= UCHAR_MAX; ++code) {
    std::string text(46, '7');
    text[GetParam()] = static_cast<char>(code);
    if (std::isxdigit(code) != 0) {
      text[GetParam()] = static_cast<char>(std::toupper(code));
      EXPECT_EQ(FromHex(text).GetAsHexString(), text);
    } else {
      EXPECT_ZU_ERROR(
          CZuException, FromHex(text),
          "Invalid char in hex string [" + std::string(1, static_cast<char>(code)) + "]", "");
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
      EXPECT_EQ(FromBase64(changed).GetAsBase64(), changed);
    } else {
      changed.insert(GetParam() % changed.size(), 1, character);
      EXPECT_EQ(BytesOf(FromBase64(changed)), bytes) << code;
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
  const std::pair<const char*, const char*> cases[] = {
      {"TW E=\n", "Ma"}, {"TQ==TQ", "M\x04\xD0"}, {"TWFuT", "Man"}};
  for (const auto& [text, bytes] : cases)
    EXPECT_EQ(FromBase64(text), CBinaryData(bytes)) << text;
  for (const char* nothing : {"", "====", " \n", "T", "\xFF\x80"}) {
    CBinaryData data = FromBase64(nothing);
    EXPECT_EQ(data.GetData(), nullptr) << nothing;
    EXPECT_EQ(data.GetAsBase64(), "");
    EXPECT_ZU_ERROR(CZuException, data[0], "Index Out of range [0]", "");
  }
}

TEST(BinaryDataText, MayLieInTheValueItself) {
  const auto ownText = [](const CBinaryData& data) {
    return reinterpret_cast<const char*>(data.GetData());
  };
  CBinaryData hex("4D616E");
  hex.Append('\0');
  hex.SetAsHexString(ownText(hex));
  CBinaryData base64("TWFu");
  base64.Append('\0');
  base64.SetAsBase64(ownText(base64));
  EXPECT_TRUE(hex == CBinaryData("Man") && base64 == hex);
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
}

TEST(BinaryData, ChangesNoCopy) {
  const std::pair<void (*)(CBinaryData&), const char*> cases[] = {
      {[](CBinaryData& data) { data.Append('x'); }, "abcx"},
      {[](CBinaryData& data) { data[1] = 'x'; }, "axc"},
      {[](CBinaryData& data) { data.Clear(); }, ""},
      {[](CBinaryData& data) { delete[] data.ReleaseData(); }, ""}};
  for (const auto& [change, result] : cases) {
    const CBinaryData original("abc");
    CBinaryData copy(original);
    EXPECT_EQ(copy.GetData(), original.GetData());
    change(copy);
    EXPECT_TRUE(original == CBinaryData("abc") && copy == CBinaryData(result)) << result;
  }
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
  int moves = 0;
  for (const unsigned char* last = data.GetData(); data.GetLength() < 1000000; data.Append('x')) {
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

}  // namespace
}  // namespace ZuXmlLib16
