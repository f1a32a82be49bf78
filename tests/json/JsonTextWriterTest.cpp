#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ZuXmlLib16/JsonTextWriter.h"
#include "ZuXmlLib16/Streams.h"
#include "support/ErrorMatch.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

using State = CXmlWriter::ContextState;

CJsonContext Settings(JsonRoundTrip mode, bool isStrict = false) {
  CJsonContext settings;
  settings.SetSupportRoundtrip(mode);
  settings.SetStrictEscaping(isStrict);
  return settings;
}

/// What write makes of a writer.
std::string Json(const std::function<void(CJsonTextWriter&)>& write,
                 const CJsonContext& settings = CJsonContext(), bool isFormatted = false,
                 EOLType eol = EOLType::Lf) {
  CTextStream stream;
  CJsonTextWriter writer(stream, settings);
  writer.Open();
  writer.SetFormat(isFormatted);
  writer.SetEOLType(eol);
  writer.WriteStartDocument();
  write(writer);
  writer.WriteEndDocument();
  writer.Close();
  return stream.CopyText();
}

void Leaf(CJsonTextWriter& writer, const char* name, const char* text,
          ItemType type = ItemType::string) {
  writer.WriteStartElement(name, "");
  writer.WriteString(text, type, false);
  writer.WriteEndElement();
}

/// The value of a root that holds this text.
std::string Value(const char* text, ItemType type, bool isStrict = false,
                  EOLType eol = EOLType::Lf) {
  const std::string json = Json([&](CJsonTextWriter& writer) { Leaf(writer, "r", text, type); },
                                Settings(JsonRoundTrip::Full, isStrict), false, eol);
  return json.substr(6, json.size() - 7);
}

void Collection(CJsonTextWriter& writer, const char* name, int count) {
  writer.SetContextState(State::CollectionPending);
  for (int i = 1; i <= count; ++i) {
    Leaf(writer, name, std::to_string(i).c_str(), ItemType::i4);
  }
  writer.SetContextState(State::CollectionEnded);
}

struct ValueCase {
  const char* text;
  ItemType type;
  const char* written;
};

TEST(JsonTextWriter, WritesNumbersAndBooleansBareWhereJsonHasAFormForThem) {
  const ValueCase cases[] = {
      {"-12", ItemType::i4, "-12"},
      {"12", ItemType::string, "\"12\""},
      {"true", ItemType::boolean, "true"},
      {"true", ItemType::string, "\"true\""},
      {"1.5E+10", ItemType::r8, "1.5E+10"},
      {"INF", ItemType::r8, "\"INF\""},
      {"0", ItemType::ui1, "0"},
      {"01", ItemType::integer, "\"01\""},
      {"1.", ItemType::decimal, "\"1.\""},
      {".5", ItemType::decimal, "\".5\""},
      {"1e", ItemType::r4, "\"1e\""},
      {"-", ItemType::i8, "\"-\""},
      {"", ItemType::i4, "\"\""},
      {" 1", ItemType::i4, "\" 1\""},
      {"2024", ItemType::year, "\"2024\""},
      {"1", ItemType::base64Binary, "\"1\""},
  };
  for (const ValueCase& test : cases) {
    EXPECT_EQ(Value(test.text, test.type), test.written);
  }
}

TEST(JsonTextWriter, EscapesAsItWasAskedTo) {
  const char* const text = "a\"\\/\b\f\t\x01\x1F\x7Fz\r\n\xC3\xA9 and sixteen more \" bytes";
  EXPECT_EQ(Value(text, ItemType::string),
            "\"a\"\\/\b\f\t\\u0001\\u001F\x7Fz\n\xC3\xA9 and sixteen more \" bytes\"");
  EXPECT_EQ(Value("a\r\nb", ItemType::string, false, EOLType::CrLf), "\"a\r\nb\"");
  EXPECT_EQ(Value(text, ItemType::string, true, EOLType::CrLf),
            "\"a\\\"\\\\/\\b\\f\\t\\u0001\\u001F\x7Fz\\r\\n\xC3\xA9 and sixteen more \\\" bytes\"");
}

TEST(JsonTextWriter, WritesAnArrayForEachCollection) {
  const auto twoAndAMember = [](CJsonTextWriter& writer) {
    writer.WriteStartElement("C", "");
    Collection(writer, "n", 2);
    Collection(writer, "m", 1);
    Leaf(writer, "x", "4", ItemType::i4);
    writer.WriteEndElement();
  };
  EXPECT_EQ(Json(twoAndAMember), R"({"C": {"n": [1,2],"m": [1],"x": 4}})");
  EXPECT_EQ(
      Json(twoAndAMember, CJsonContext(), true),
      "{\n\t\"C\": {\n\t\t\"n\": [\n\t\t\t1,\n\t\t\t2\n\t\t],\n\t\t\"m\": [\n\t\t\t1\n\t\t],\n"
      "\t\t\"x\": 4\n\t}\n}");

  const auto nested = [](CJsonTextWriter& writer) {
    writer.WriteStartElement("C", "");
    writer.SetContextState(State::CollectionPending);
    for (int i = 0; i < 2; ++i) {
      writer.WriteStartElement("I", "");
      Collection(writer, "j", 2);
      Leaf(writer, "k", "9", ItemType::i4);
      writer.WriteEndElement();
    }
    writer.SetContextState(State::CollectionEnded);
    writer.WriteEndElement();
  };
  EXPECT_EQ(Json(nested), R"({"C": {"I": [{"j": [1,2],"k": 9},{"j": [1,2],"k": 9}]}})");
  EXPECT_EQ(Json(nested, CJsonContext(), true),
            "{\n\t\"C\": {\n\t\t\"I\": [\n\t\t\t{\n\t\t\t\t\"j\": [\n\t\t\t\t\t1,\n\t\t\t\t\t2\n"
            "\t\t\t\t],\n\t\t\t\t\"k\": 9\n\t\t\t},\n\t\t\t{\n\t\t\t\t\"j\": [\n\t\t\t\t\t1,\n"
            "\t\t\t\t\t2\n\t\t\t\t],\n\t\t\t\t\"k\": 9\n\t\t\t}\n\t\t]\n\t}\n}");
}

TEST(JsonTextWriter, GivesItemsOfOtherNamesArraysOfTheirOwn) {
  EXPECT_EQ(Json([](CJsonTextWriter& writer) {
              writer.WriteStartElement("C", "");
              writer.SetContextState(State::CollectionPending);
              for (const char* name : {"a", "a", "b", "a"}) {
                writer.WriteStartElement(name, "");
                writer.WriteEndElement();
              }
              writer.SetContextState(State::CollectionEnded);
              writer.WriteString("t", ItemType::string, false);
              writer.WriteEndElement();
            }),
            R"({"C": {"a": [{},{}],"b": [{}],"a": [{}],"#text": "t"}})");
}

TEST(JsonTextWriter, WritesWhatAnElementHolds) {
  using Write = void (*)(CJsonTextWriter&);
  struct Case {
    Write content;
    const char* full;
    const char* plain;
  };
  const Case cases[] = {
      {[](CJsonTextWriter&) {}, "{}", "{}"},
      {[](CJsonTextWriter& w) { w.WriteString("", ItemType::string, true); }, "\"\"", "\"\""},
      {[](CJsonTextWriter& w) { w.WriteAttributeNil(); }, "null", "null"},
      {[](CJsonTextWriter& w) {
         w.WriteAttributeString("a", "", "1", ItemType::i4);
         w.WriteAttributeNil();
       },
       R"({"@a": 1,"#text": null})", R"({"a": 1,"": null})"},
      {[](CJsonTextWriter& w) {
         w.WriteAttributeString("a", "", "1", ItemType::string);
         w.WriteString("t", ItemType::string, false);
       },
       R"({"@a": "1","#text": "t"})", R"({"a": "1","": "t"})"},
  };
  for (const Case& test : cases) {
    const auto root = [&](CJsonTextWriter& writer) {
      writer.WriteStartElement("r", "");
      test.content(writer);
      writer.WriteEndElement();
    };
    EXPECT_EQ(Json(root), "{\"r\": " + std::string(test.full) + "}");
    EXPECT_EQ(Json(root, Settings(JsonRoundTrip::Plain)),
              "{\"r\": " + std::string(test.plain) + "}");
  }
}

TEST(JsonTextWriter, DeclaresNamespacesOnTheRoot) {
  const auto write = [](CJsonTextWriter& writer) {
    writer.SetDefaultNamespace("urn:d");
    writer.AddNamespace("p", "urn:p");
    writer.WriteStartElement("r", "urn:r");
    writer.WriteAttributeString("a", "urn:r", "1", ItemType::string);
    writer.WriteAttributeString("lang", CXmlWriter::XML_NAMESPACE, "en", ItemType::string);
    writer.WriteAttributeType("urn:t", "T", ItemType::string);
    for (const char* uri : {"urn:d", "urn:p", "urn:r", ""}) {
      writer.WriteStartElement("c", uri);
      writer.WriteEndElement();
    }
    writer.WriteEndElement();
  };
  EXPECT_EQ(Json(write),
            R"({"AA:r": {"@xmlns:AA": "urn:r","@xmlns": "urn:d","@xmlns:p": "urn:p","@AA:a": "1",)"
            R"("@xml:lang": "en","@xmlns:AB": "http://www.w3.org/2001/XMLSchema-instance",)"
            R"("@xmlns:AC": "urn:t","@AB:type": "AC:T","c": {},"p:c": {},"AA:c": {},"c": {}}})");
  EXPECT_EQ(Json(write, Settings(JsonRoundTrip::Marked)),
            R"({"r": {"@a": "1","@lang": "en","c": {},"c": {},"c": {},"c": {}}})");
}

TEST(JsonTextWriter, RefusesWhatWouldBreakTheDocument) {
  const auto root = [](const std::function<void(CJsonTextWriter&)>& content) {
    return Json([&](CJsonTextWriter& writer) {
      writer.WriteStartElement("r", "");
      content(writer);
      writer.WriteEndElement();
    });
  };
  const auto text = [](CJsonTextWriter& w) { w.WriteString("t", ItemType::string, false); };
  const auto attribute = [](CJsonTextWriter& w, const char* uri) {
    w.WriteAttributeString("a", uri, "", ItemType::string);
  };
  const char* const late = "Attributes must be added before elements";
  EXPECT_ZU_ERROR(CZuException, root([&](auto& w) { text(w), attribute(w, ""); }), late, "");
  EXPECT_ZU_ERROR(CZuException, root([&](auto& w) { text(w), text(w); }), late, "");
  EXPECT_ZU_ERROR(CZuException, root([&](auto& w) { text(w), w.WriteStartElement("c", ""); }), late,
                  "");
  EXPECT_ZU_ERROR(CZuException, root([](auto& w) { w.WriteStartElement("c", "urn:x"); }),
                  "Unknown Namespace: c.", "");
  EXPECT_ZU_ERROR(CZuException, root([&](auto& w) { attribute(w, "urn:x"); }),
                  "Unknown Namespace: a.", "");
  EXPECT_ZU_ERROR(CZuException, Json([](auto& w) { w.WriteStartElement("r", ""); }),
                  "An Element has not been closed.", "");
  EXPECT_ZU_ERROR(CZuException, Json([&](auto& w) { attribute(w, ""); }), late, "");
  EXPECT_ZU_ERROR(CZuException, Json([](auto&) {}, CJsonContext(), false, EOLType{5}),
                  "Invalid EOL type.", "");
  EXPECT_EQ(Json([&](auto& w) { text(w), w.WriteEndElement(); }), "{}");
}

TEST(JsonTextWriter, WritesUntypedNeighboursOfOneNameAsAnArray) {
  const CSmartPtr<CElement> root =
      ReadUntyped("<r><a/><b/><b k='1'/><c>x</c><b/><d/><d/><e/><e/></r>");
  EXPECT_EQ(root->ToJson(false, EOLType::Lf, CSerializationContext()),
            R"({"r": {"a": "","b": ["",{"@k": "1","#text": ""}],"c": "x","b": "","d": ["",""],)"
            R"("e": ["",""],"#text": ""}})");
}

}  // namespace
}  // namespace ZuXmlLib16
