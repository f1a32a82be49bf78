#include <gtest/gtest.h>

#include <random>

#include "ZuXmlLib16/Encoder.h"
#include "support/CharacterTypeLocale.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16 {
namespace {

std::string BytesOf(const CBinaryData& data) {
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

std::u32string WideOf(const CBinaryData& data) {
  return std::u32string(reinterpret_cast<const char32_t*>(data.GetData()), data.GetLength() / 4);
}

// At every place in a block and at the end of the text, as local text and as UTF-8.
TEST(RepairUtf8, LeavesWhatIsValid) {
  const CharacterTypeLocale locale("C.UTF-8");
  const char* const smallestAndLargest = "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
  const std::pair<std::string, std::string> cases[] = {
      {smallestAndLargest, smallestAndLargest},
      {"\xED\xA0\x80\xED\xBF\xBF", "??????"},  // surrogates
      {"\xC0\x80\xC1\xBF", "????"},            // longer than needed: two, three and four bytes
      {"\xE0\x9F\xBF", "???"},
      {"\xF0\x8F\xBF\xBF", "????"},
      {"\xF4\x90\x80\x80\xF5\x80\x80\x80", "????????"},  // beyond U+10FFFF
      {"\x80\u00FC\xBF", "?\u00FC?"},
      {"\xC3", "?"},  // cut off
      {"\xE2\x82", "??"},
      {"\xF0\x9F\x98", "???"},
      {"\xF0\x9F\u00FC", "??\u00FC"},
  };
  for (const auto& [text, repaired] : cases) {
    for (std::size_t before = 0; before < 36; ++before) {
      for (const char* after : {"", "z", "\u20AC and more than a block"}) {
        const std::string whole = std::string(before, 'a') + text + after;
        const std::string expected = std::string(before, 'a') + repaired + after;
        EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(whole.c_str()), expected);
        EXPECT_EQ(BytesOf(CEncoder::LocalCodePageToUtf8Binary(whole.c_str())), expected);
      }
    }
  }
}

// One byte at a time, to check the block-wise form against.
std::string PlainRepair(std::string text) {
  for (std::size_t at = 0; at < text.size();) {
    char32_t character = 0;
    const std::size_t used = detail::DecodeUtf8(&text[at], text.size() - at, character);
    std::string again;
    if (used != 0) detail::AppendUtf8(again, character);
    const bool isValid = used != 0 && text.compare(at, used, again) == 0;
    if (!isValid) text[at] = '?';
    at += isValid ? used : 1;
  }
  return text;
}

TEST(RepairUtf8, TreatsBlocksAsItTreatsSingleCharacters) {
  const std::string bytes = "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC3\xE0\xE2\xED\xF0\xF1\xF4\xF5";
  const std::string characters[] = {"a", "\u00FC", "\u20AC", "\uD7FF", "\U0001F600"};
  std::mt19937 generator(7);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    while (text.size() < 40) {
      text += generator() % 8 != 0 ? characters[generator() % std::size(characters)]
                                   : std::string(1, bytes[generator() % bytes.size()]);
    }
    std::string repaired = text;
    const std::size_t count = detail::RepairUtf8(repaired.data(), repaired.size());
    ASSERT_EQ(repaired, PlainRepair(text)) << testing::PrintToString(text);
    EXPECT_EQ(count == 0, repaired == text);
  }
}

TEST(Encoder, WritesAQuestionMarkForWhatTheLocaleLacks) {
  const CharacterTypeLocale locale("C");
  const std::string utf8 = "Gr\u00FC\u00DFe \u20AC \xC3(";
  const auto* const bytes = reinterpret_cast<const unsigned char*>(utf8.data());
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(utf8.c_str()), "Gr??e ? ?(");
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(bytes, 6), "Gr??");
  EXPECT_EQ(BytesOf(CEncoder::LocalCodePageToUtf8Binary("a\xFC\xFFz")), "a??z");
  EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("a\xFCz")), U"a?z");
}

TEST(Encoder, ConvertsThroughAnEightBitLocale) {
  const CharacterTypeLocale locale("de_DE.ISO-8859-1");
  if (!locale.IsAvailable()) GTEST_SKIP() << "no such locale on this system";
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\u00FC\u00DF \u20AC\xC3"), "\xFC\xDF ??");
  EXPECT_EQ(BytesOf(CEncoder::LocalCodePageToUtf8Binary("\xFC\xDF")), "\u00FC\u00DF");
  EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("\xFC")), U"\u00FC");
}

TEST(Encoder, ConvertsThroughAMultibyteLocale) {
  const CharacterTypeLocale locale("ja_JP.EUC-JP");
  if (!locale.IsAvailable()) GTEST_SKIP() << "no such locale on this system";
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("a\u65E5 "), "a\xC6\xFC ");
  EXPECT_EQ(BytesOf(CEncoder::LocalCodePageToUtf8Binary("\xC6\xFC\xC6")), "\u65E5?");
}

TEST(Encoder, GivesWideCharactersWithoutTerminator) {
  const CharacterTypeLocale locale("C.UTF-8");
  EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("a\u20AC\U0001F600\xC3z")),
            U"a\u20AC\U0001F600?z");
  EXPECT_EQ(CEncoder::LocalCodePageToUnicodeBinary("").GetLength(), 0u);
}

TEST(Encoder, WritesAQuestionMarkForWideValuesThatAreNoCharacters) {
  const wchar_t text[] = {L'a', 0x20AC, 0xD800, 0x10FFFF, 0x110000, -1, 0};
  EXPECT_EQ(BytesOf(CEncoder::UnicodeToUtf8Binary(text)), "a\u20AC?\U0010FFFF??");
}

TEST(Encoder, CopiesBytesWhileAsciiOnly) {
  const CharacterTypeLocale locale("C");
  CEncoder::ASCII_ONLY = true;
  const std::string copied = CEncoder::Utf8ToLocalCodePage("\u00FC\xFF");
  CEncoder::ASCII_ONLY = false;
  EXPECT_EQ(copied, "\u00FC\xFF");
}

TEST(Encoder, NeedsNoScratchAreaAndNoText) {
  const CharacterTypeLocale locale("C.UTF-8");
  wchar_t wide[2];
  char narrow[2];
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\u20AC\u20AC", wide, 2, narrow, 2), "\u20AC\u20AC");
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(nullptr, nullptr, 0, nullptr, 0), "");
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(nullptr, 3), "");
  EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(reinterpret_cast<const unsigned char*>("x"), -1), "");
  EXPECT_EQ(CEncoder::LocalCodePageToUtf8Binary(nullptr).GetLength(), 0u);
  EXPECT_EQ(CEncoder::UnicodeToUtf8Binary(nullptr).GetLength(), 0u);
}

}  // namespace
}  // namespace ZuXmlLib16
