#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/JsonTextReader.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

/// Writes down what it is told.
class Recorder : public IJsonReaderHandler {
 public:
  Recorder() : IJsonReaderHandler("Recorder") {}

  void ReadStartDocument() override { events += '<'; }
  bool ReadEndDocument() override {
    events += '>';
    return false;
  }
  void ReadName(const std::string& name) override { events += name + '='; }
  void ReadString(const std::string& value) override { events += '\'' + value + '\''; }
  void ReadNumber(const std::string& text) override { events += '#' + text + ' '; }
  void ReadStartObject() override { events += '{'; }
  void ReadEndObject() override { events += '}'; }
  void ReadStartArray() override { events += '['; }
  void ReadEndArray() override { events += ']'; }
  void ReadBool(bool value) override { events += value ? "T " : "F "; }
  void ReadNull() override { events += "N "; }

  std::string events;
};

std::string Events(const std::string& json, bool allowComments = true, const char* root = "") {
  Recorder recorder;
  CJsonTextReader reader(json);
  reader.SetAllowComments(allowComments);
  reader.SetRootElementName(root);
  reader.SetJsonReaderHandler(&recorder);
  EXPECT_FALSE(reader.Read());
  return recorder.events;
}

std::string Repeated(const std::string& text, std::size_t count) {
  std::string repeated;
  for (; count > 0; --count) {
    repeated += text;
  }
  return repeated;
}

struct EventCase {
  std::string json;
  std::string events;
};

TEST(JsonTextReader, ReportsWhatItReads) {
  const EventCase cases[] = {
      {"{}", "<{}>"},
      {"[]", "<[]>"},
      {" \t\r\n", "<>"},
      {R"({"a": [1, "b", true, false, null, {"c": -0.5E+10}]})",
       "<{a=[#1 'b'T F N {c=#-0.5E+10 }]}>"},
      {"[0,10,-1,1.50,1e5,1E-2]", "<[#0 #10 #-1 #1.50 #1e5 #1E-2 ]>"},
      {"01", "<#0 >"},
      {"{} and more", "<{}>"},
      {R"("\"\\\/\b\f\n\r\t")", "<'\"\\/\b\f\n\r\t'>"},
      {"\"a\tb\rc\x01\"", "<'a\tb\rc\x01'>"},
      {"// one\n/* two * / **/ [/*three*/1//\n,// four\n2/**/] // five", "<[#1 #2 ]>"},
      {"\"a\nb\\\n\nn\"", "<'ab\n'>"},
      {"[1\n2.\n5,t\nrue]", "<[#12.5 T ]>"},
      {Repeated("[", 100) + Repeated("]", 100),
       "<" + Repeated("[", 100) + Repeated("]", 100) + ">"},
      {Repeated("9", 1000000), "<#" + Repeated("9", 1000000) + " >"},
      {"\"" + Repeated("x", 1000000) + "\"", "<'" + Repeated("x", 1000000) + "'>"},
  };
  for (const EventCase& test : cases) {
    EXPECT_EQ(Events(test.json), test.events);
  }
  EXPECT_EQ(Events("[1]", true, "root"), "<{root=[#1 ]}>");
  EXPECT_EQ(Events(" ", true, "root"), "<{root=}>");
}

TEST(JsonTextReader, DecodesUnicodeEscapes) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const EventCase cases[] = {
      {R"("\u0041\u00e9\u20AC")", "<'A\u00E9\u20AC'>"},
      {R"("\ud83D\uDE00")", "<'\U0001F600'>"},
      {R"("\uD83Dx\uDE00\uD83D\uD83D\uDE00\uD83D")", "<'?x??\U0001F600?'>"},
      {R"("a\u0000b")", "<'a?b'>"},
  };
  for (const EventCase& test : cases) {
    EXPECT_EQ(Events(test.json), test.events);
  }
  const CharacterTypeLocale ascii("C");
  EXPECT_EQ(Events(R"("\u0041\u00e9")"), "<'A?'>");
}

struct ErrorCase {
  std::string json;
  const char* message;
  const char* path;
};

TEST(JsonTextReader, SaysWhatIsWrongAndWhere) {
  const std::string manyFirsts = Repeated("[1]", 100);
  const ErrorCase cases[] = {
      {"x",
       "Expected Value '{', '[', '\"', '0-9', '-', 'true', 'false' or 'null', found 'x' at line 1, "
       "position 1.",
       ""},
      {"[1,]",
       "Expected Value '{', '[', '\"', '0-9', '-', 'true', 'false' or 'null', found ']' at line 1, "
       "position 4.",
       "[2]"},
      {Repeated("[", 101), "JSON exceeded depth limit at line 1, position 101.",
       manyFirsts.c_str()},
      {"{",
       "Unexpected End of File. Expected Object terminator character '}}' at line 1, position 1.",
       ""},
      {"{\"a\":1,",
       "Unexpected End of File. Expected Object terminator character '}}' at line 1, position 7.",
       "/a"},
      {"{\"a\":1,}",
       "Expected quotation mark character '\"' before Name, found '}' at line 1, position 8.",
       "/a"},
      {"{\"r\":{\"items\":[1,{\"name\"",
       "Unexpected End of File. Expected Object Name/Value separator character ':' at line 1, "
       "position 24.",
       "/r/items[2]/name"},
      {"{\"a\" 1",
       "Expected Object Name/Value separator character ':', found '1' at line 1, position 6.",
       "/a"},
      {"{\"a\": ", "Unexpected End of File. Expected Object Value at line 1, position 6.", "/a"},
      {"{\"a\": 1",
       "Unexpected End of File. Expected Object terminator character '}' at line 1, position 7.",
       "/a"},
      {"{\"a\":1;", "Expected Object separator character ',', found ';' at line 1, position 7.",
       "/a"},
      {"[",
       "Unexpected End of File. Expected Array terminator character ']' at line 1, position 1.",
       "[1]"},
      {"[1,\n ",
       "Unexpected End of File. Expected Array terminator character ']' at line 2, position 1.",
       "[2]"},
      {"[01]", "Expected Array separator character ',', found '1' at line 1, position 3.", "[2]"},
      {"\"a", "Unexpected End of File. Expected string value at line 1, position 2.", ""},
      {"\"\\", "Unexpected End of File. Expected string value at line 1, position 2.", ""},
      {"\"\\u12",
       "Unexpected End of File. Expected 4 hexadecimal digits'\\uxxxx' at line 1, position 5.", ""},
      {"\"\\u12G4\"", "Invalid Escape Character 'G' at line 1, position 6.", ""},
      {"\"\\x\"", "Invalid Escape Character 'x' at line 1, position 3.", ""},
      {"-", "Unexpected End of File. Expected a digit '0' to '9' at line 1, position 1.", ""},
      {"-a", "Expected a digit '0' to '9', found 'a' at line 1, position 2.", ""},
      {"1.", "Unexpected End of File. Expected a digit '0' to '9' at line 1, position 2.", ""},
      {"1.e5", "Expected a digit '0' to '9', found 'e' at line 1, position 3.", ""},
      {"1e", "Unexpected End of File. Expected '+', '-' or a number at line 1, position 2.", ""},
      {"1e+", "Unexpected End of File. Expected a number at line 1, position 3.", ""},
      {"1ex", "Unexpected End of File. Expected a digit '0' to '9' at line 1, position 3.", ""},
      {"[nul", "Unexpected End of File. Expected value 'NULL' at line 1, position 4.", "[1]"},
      {"[\n\n  trux", "Expected 'true' at line 3, position 6.", "[1]"},
      {"nulx", "Expected 'NULL' at line 1, position 4.", ""},
      {"falsy", "Expected 'false' at line 1, position 5.", ""},
      {"[nullx]", "Expected Array separator character ',', found 'x' at line 1, position 6.",
       "[2]"},
      {"[1 /* open",
       "Unexpected End of File. Expected Array terminator character ']' at line 1, position 10.",
       "[2]"},
      {"/x",
       "Expected Value '{', '[', '\"', '0-9', '-', 'true', 'false' or 'null', found '/' at line 1, "
       "position 1.",
       ""},
  };
  for (const ErrorCase& test : cases) {
    EXPECT_ZU_ERROR(CZuValidationException, Events(test.json), test.message, test.path);
  }
  EXPECT_ZU_ERROR(CZuValidationException, Events("// a\n1", false),
                  "Expected Value '{', '[', '\"', '0-9', '-', 'true', 'false' or 'null', found '/' "
                  "at line 1, position 1.",
                  "");
}

TEST(JsonTextReader, FailsWhereverADocumentEnds) {
  const std::string json = R"({"a":[1.5e-3,"x\u00e9\n",{"b":null,"c":[true,false]}],"d":-12})";
  for (std::size_t length = 1; length < json.size(); ++length) {
    EXPECT_THROW(Events(json.substr(0, length)), CZuValidationException) << length;
  }
}

TEST(JsonTextReader, ReadsWithoutAHandlerAndAgain) {
  const std::string json = "{\"a\": [1]}";
  CJsonTextReader reader(json);
  EXPECT_TRUE(reader.Read());
  EXPECT_TRUE(reader.Read());
}

}  // namespace
}  // namespace ZuXmlLib16
