#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/FastInfosetBinaryData.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/RandomValues.h"

namespace ZuXmlLib16 {
namespace {

CFastInfosetBinaryData DataOf(const char* hex) {
  CFastInfosetBinaryData data;
  data.SetAsHexString(hex);
  return data;
}

std::string Encoded(unsigned long algorithm, const char* text) {
  CFastInfosetBinaryData data("before");
  data.SetAsEncodedString(algorithm, text);
  return data.GetAsHexString();
}

struct AlgorithmCase {
  const char* octets;
  unsigned long algorithm;
  const char* text;
};

// Texts that decode from the octets. The first values of lists, and single ones, encode to them.
constexpr AlgorithmCase kSingleValues[] = {
    {"0AFF", 1, "0AFF"},
    {"010203", 2, "AQID"},
    {"01", 2, "AQ=="},
    {"FFFE", 3, "-2"},
    {"8000", 3, "-32768"},
    {"FFFFFFFE", 4, "-2"},
    {"7FFFFFFF", 4, "2147483647"},
    {"8000000000000000", 5, "-9223372036854775808"},
    {"38", 6, "true"},
    {"30", 6, "false"},
    {"3FC00000", 7, "1.5"},
    {"7F800000", 7, "INF"},
    {"BFF8000000000000", 8, "-1.5"},
    {"3FB999999999999A", 8, "0.1"},
    {"F81D4FAE7DEC11D0A76500A0C91E6BF6", 9, "F81D4FAE7DEC11D0A76500A0C91E6BF6"},
};

constexpr AlgorithmCase kLists[] = {
    {"0001FFFF", 3, "1 -1"},
    {"00000001FFFFFFFF", 4, "1 -1"},
    {"00000000000000010000000000000002", 5, "1 2"},
    {"7A80", 6, "true false true false true"},
    {"0A", 6, "true false true false"},
    {"00FF", 6, "false false false false true true true true true true true true"},
    {"F0", 6, ""},  // says that more bits are unused than there are
    {"3F8000007FC00000", 7, "1 NaN"},
    {"0123456789ABCDEF0123456789ABCDEFFEDCBA9876543210FEDCBA9876543210", 9,
     "0123456789ABCDEF0123456789ABCDEF FEDCBA9876543210FEDCBA9876543210"},
};

TEST(FastInfosetBinaryData, EncodesAndDecodesValues) {
  for (const AlgorithmCase& value : kSingleValues) {
    EXPECT_EQ(DataOf(value.octets).GetAsString(value.algorithm), value.text);
    EXPECT_EQ(Encoded(value.algorithm, value.text), value.octets) << value.text;
  }
  for (const AlgorithmCase& list : kLists) {
    EXPECT_EQ(DataOf(list.octets).GetAsString(list.algorithm), list.text);
  }
  EXPECT_EQ(Encoded(4, " 7\n"), "00000007") << "white space is collapsed";
  EXPECT_EQ(Encoded(2, nullptr), "");
  for (const unsigned long algorithm : {0UL, 1UL, 6UL, 10UL, 99UL}) {
    EXPECT_EQ(CFastInfosetBinaryData().GetAsString(algorithm), "");
  }
}

TEST(FastInfosetBinaryData, RefusesOctetsThatAreNoValue) {
  const AlgorithmCase cases[] = {
      {"000102", 3, "SHORT"}, {"000102", 4, "INT"},      {"0001020304", 5, "LONG"},
      {"0102", 7, "FLOAT"},   {"01020304", 8, "DOUBLE"}, {"010203", 9, "UUID"},
  };
  for (const AlgorithmCase& value : cases) {
    EXPECT_ZU_ERROR(CZuException, DataOf(value.octets).GetAsString(value.algorithm),
                    "Invalid value for " + std::string(value.text) + " byte encoding.", "");
  }
  for (const unsigned long algorithm : {0UL, 10UL, 11UL, ~0UL}) {
    EXPECT_ZU_ERROR(CZuException, DataOf("41").GetAsString(algorithm), "Unknown byte encoding.",
                    "");
  }
}

TEST(FastInfosetBinaryData, RefusesTextsThatAreNoValueAndIsEmptyThen) {
  CFastInfosetBinaryData data("before");
  EXPECT_ZU_ERROR(CZuInvalidValueException, data.SetAsEncodedString(4, "2147483648"),
                  "The value [2147483648] is to large to fit in a i4", "");
  EXPECT_EQ(data.GetLength(), 0U);
  EXPECT_ZU_ERROR(CZuInvalidValueException, data.SetAsEncodedString(3, nullptr),
                  "The value [] can not be converted to a i4", "");
  EXPECT_ZU_ERROR(CZuException, data.SetAsEncodedString(1, "0"), "Invalid length in hex string",
                  "");
  EXPECT_ZU_ERROR(CZuException, data.SetAsEncodedString(11, "a"), "Unknown byte encoding.", "");
}

TEST(FastInfosetBinaryData, EncodesCDataInUtf8) {
  EXPECT_EQ(Encoded(10, "a<b"), "613C62");
  const CharacterTypeLocale latin("de_DE.ISO-8859-1");
  if (!latin.IsAvailable()) GTEST_SKIP() << "no such locale on this system";
  EXPECT_EQ(Encoded(10, "\xE4"), "C3A4");
}

TEST(EncodingAlgorithms, EncodeExactlyOnlyWhatDecodesToTheSameText) {
  using Algorithm = detail::EncodingAlgorithm;
  struct Case {
    Algorithm algorithm;
    const char* text;
  };
  const Case lost[] = {
      {Algorithm::Hexadecimal, "0aff"},
      {Algorithm::Hexadecimal, "0"},
      {Algorithm::Hexadecimal, ""},
      {Algorithm::Base64, "AQ ID"},
      {Algorithm::Base64, "AR=="},
      {Algorithm::Base64, "AQI"},
      {Algorithm::Short, "007"},
      {Algorithm::Int, "+5"},
      {Algorithm::Int, "4294967296"},
      {Algorithm::Long, "9223372036854775808"},
      {Algorithm::Boolean, "1"},
      {Algorithm::Boolean, "TRUE"},
      {Algorithm::Float, "0.12345678"},
      {Algorithm::Double, "1.50"},
      {Algorithm::Double, "0.12345678901234567"},
  };
  for (const Case& value : lost) {
    std::string octets = "before";
    EXPECT_FALSE(AppendEncodedExactly(octets, value.algorithm, value.text)) << value.text;
    EXPECT_EQ(octets, "before");
  }
}

}  // namespace
}  // namespace ZuXmlLib16
