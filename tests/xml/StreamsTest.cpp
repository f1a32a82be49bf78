#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ZuXmlLib16/Streams.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

std::string BytesOf(const CBinaryData& data) {
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

std::string LettersOf(std::size_t length) {
  std::string text;
  while (text.size() < length)
    text += static_cast<char>('a' + text.size() % 23);
  return text;
}

TEST(StringBuffer, GivesTheSameTextInEveryBlockSize) {
  for (std::size_t blockSize = 0; blockSize < 40; ++blockSize) {
    CStringBuffer buffer(blockSize);
    std::string expected;
    for (std::size_t length = 0; length < 30; ++length) {
      const std::string piece = LettersOf(length);
      buffer.Append(piece.c_str());
      buffer.Append(piece.data(), length);
      buffer.Append(';');
      expected += piece + piece + ';';
      if (char* const room = buffer.Room(2)) {
        room[0] = room[1] = '#';
        buffer.Commit(2);
        expected += "##";
      }
      if (length % 7 == 0) buffer.GetText();  // joins the blocks so far
    }
    EXPECT_EQ(buffer.CopyText(), expected);
    EXPECT_EQ(buffer.GetText(), expected) << blockSize;
  }
}

TEST(StringBuffer, EndsEveryTextAtItsFirstNul) {
  CStringBuffer buffer;
  buffer.Append(static_cast<const char*>(nullptr));
  buffer.Append(std::string("a\0b", 3));
  buffer.Append('\0');
  buffer.Append("c\0d");
  EXPECT_STREQ(buffer.GetText(), "ac");
  EXPECT_EQ(buffer.GetLength(), 2u);
}

TEST(StringBuffer, StartsAnewWhenEmptied) {
  CStringBuffer buffer(8);
  EXPECT_STREQ(buffer.GetText(), "");
  buffer.Append("more than a block");
  buffer.Empty();
  EXPECT_EQ(buffer.GetLength(), 0u);
  buffer.SetText("efg");
  buffer.SetText(buffer.GetText() + 1);
  buffer.Append(buffer.GetText());
  EXPECT_STREQ(buffer.GetText(), "fgfg");
}

struct EncodedCase {
  const char* name;
  const char* locale;
  XmlEncoding encoding;
  std::string text;
  std::string encoded;
};

std::vector<EncodedCase> EncodedCases() {
  return {
      {"Utf8", "C.UTF-8", XmlEncoding::Utf8, "a\u00FC\u20AC\U0001F600", "a\u00FC\u20AC\U0001F600"},
      {"InvalidUtf8", "C.UTF-8", XmlEncoding::Utf8, "a\xC3(\xFF", "a?(?"},
      {"AsciiLocale", "C", XmlEncoding::Utf8, "a\u00FCz", "a??z"},
      {"Wide", "C.UTF-8", XmlEncoding::Wide, "a\u20AC", std::string("a\0\0\0\xAC\x20\0\0", 8)},
      {"Utf16IsWide", "C.UTF-8", XmlEncoding::Utf16, "\xFF\n", std::string("?\0\0\0\n\0\0\0", 8)},
  };
}

TEST(TextStream, EncodesEachText) {
  for (const EncodedCase& c : EncodedCases()) {
    const CharacterTypeLocale locale(c.locale);
    CTextStream stream(c.encoding);
    stream.Append(c.text);
    EXPECT_EQ(BytesOf(stream.GetEncodedStream()), c.encoded) << c.name;
    EXPECT_EQ(stream.GetText(), c.text);
  }
}

TEST(TextStream, RepairsCharactersAcrossBlocks) {
  const CharacterTypeLocale locale("C.UTF-8");
  CTextStream stream(XmlEncoding::Utf8);
  std::string text = "x";
  while (text.size() < 20000)
    text += "\u20AC";
  stream.Append(text);
  EXPECT_EQ(BytesOf(stream.GetEncodedStream()), text);
}

TEST(TextStream, EncodesInKnownEncodingsOnly) {
  for (const int encoding : {0, 4, -1}) {
    EXPECT_ZU_ERROR(CZuException,
                    CTextStream(static_cast<XmlEncoding>(encoding)).GetEncodedStream(),
                    "Unknown Encoding, select UTF-8 (contact our support team)", "");
  }
}

class Files : public testing::Test {
 public:
  ~Files() override { std::filesystem::remove(m_path); }

 protected:
  std::string Content() const {
    std::ifstream file(m_path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::string m_path = testing::TempDir() + "ZuXmlLib16StreamsTest." +
                             testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(Files, GetEachEncodedTextInFlushes) {
  for (const EncodedCase& encodedCase : EncodedCases()) {
    const CharacterTypeLocale locale(encodedCase.locale);
    CFileTextStream stream(m_path, encodedCase.encoding);
    stream.Append("dropped by Open");
    stream.Open();
    stream.Append(encodedCase.text);
    stream.Flush();
    EXPECT_EQ(stream.GetLength(), 0u);
    stream.Append(encodedCase.text);
    stream.Close();
    const std::string mark = encodedCase.encoding == XmlEncoding::Utf8 ? "" : "\xFF\xFE";
    EXPECT_EQ(Content(), mark + encodedCase.encoded + encodedCase.encoded) << encodedCase.name;
  }
}

TEST_F(Files, AreMadeBeforeAnUnknownEncodingIsNoticed) {
  CFileTextStream stream(m_path, XmlEncoding::Unknown);
  stream.Open();
  stream.Flush();
  stream.Append("x");
  EXPECT_ZU_ERROR(CZuException, stream.Flush(),
                  "Unknown Encoding, select UTF-8 (contact our support team)", "");
  EXPECT_TRUE(std::filesystem::exists(m_path));
}

TEST_F(Files, GetBytesAsTheyAre) {
  CBinaryData data("\r\n");
  data.Append('\0');
  CFileBinaryStream utf8(m_path, XmlEncoding::Utf8, data);
  utf8.Append(0xFF);
  utf8.ToFile();
  EXPECT_EQ(Content(), std::string("\r\n\0\xFF", 4));
  CFileBinaryStream(m_path, XmlEncoding::Wide, data).ToFile();
  EXPECT_EQ(Content(), std::string("\xFF\xFE\r\n\0", 5));
  EXPECT_EQ(data.GetLength(), 3u) << "the stream appended to a copy";
  EXPECT_ZU_ERROR(CZuException, CFileBinaryStream(m_path, XmlEncoding::Utf8).ToFile(),
                  "Failed to write data to the file [" + m_path + "].", "");
  EXPECT_EQ(Content(), "");
}

TEST(Writing, NoticesFullDisksAndMissingFolders) {
  for (const std::size_t length : {std::size_t{1}, std::size_t{100000}}) {
    CFileTextStream text("/dev/full", XmlEncoding::Utf8);
    text.Open();
    text.Append(LettersOf(length));
    EXPECT_ZU_ERROR(CZuException, text.Close(), "Failed to write data to the file", "");
    text.Close();
    CFileBinaryStream bytes("/dev/full", XmlEncoding::Utf8, CBinaryData(LettersOf(length).c_str()));
    EXPECT_ZU_ERROR(CZuException, bytes.ToFile(), "Failed to write data to the file [/dev/full].",
                    "");
  }
  const char* const missing = "Failed to write data to the file [/no/such/file].";
  EXPECT_ZU_ERROR(CZuException, CFileTextStream("/no/such/file", XmlEncoding::Utf8).Open(), missing,
                  "");
  CFileBinaryStream bytes("/no/such/file", XmlEncoding::Utf8, CBinaryData("x"));
  EXPECT_ZU_ERROR(CZuException, bytes.ToFile(), missing, "");
}

}  // namespace
}  // namespace ZuXmlLib16
