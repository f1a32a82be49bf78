#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/JsonReaderToXmlHandler.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/Zip.h"
#include "json/XmlName.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/RandomTree.h"
#include "support/SameTree.h"
#include "support/Untyped.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16 {
namespace {

constexpr const char* kHeader = R"(<?xml version="1.0" encoding="UTF-8"?>)";

std::string TextOf(const CBinaryData& data) {
  return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

/// The tree of a document, and the prefixes it declares for some namespaces.
std::string Tree(const CXmlDocument& document) {
  std::string tree = Outline(document);
  for (const char* prefix : {"", "p", "q", "xsi", "xsi1"}) {
    tree += document.LookupNamespaceFromAlias(prefix) + '\n';
  }
  return tree;
}

/// The XML of a JSON text. The tree made without it must be the same.
std::string Xml(const std::string& json, const CSerializationContext& context) {
  CXmlDocument document(context);
  const std::string xml = TextOf(document.LoadJson(json.c_str()));
  CXmlDocument parsed(context);
  parsed.LoadXml(xml.c_str());
  document.ReadJson(json.c_str());
  EXPECT_EQ(Tree(document), Tree(parsed));
  EXPECT_EQ(xml.substr(0, 38), kHeader);
  return xml.substr(38);
}

struct ConversionCase {
  const char* json;
  const char* xml;
};

TEST(JsonConversion, MakesXmlOfEveryKindOfMember) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const ConversionCase cases[] = {
      {R"({"r": {"a": "x", "b": 1.50, "c": true, "d": {"e": false}}})",
       "<r><a>x</a><b>1.50</b><c>true</c><d><e>false</e></d></r>"},
      {R"({"r": {"a": [1, {"b": [2, 3]}, ""], "c": [], "d": {}}})",
       "<r><a>1</a><a><b>2</b><b>3</b></a><a/><d/></r>"},
      {R"({"r": {"#text": "x", "a": "", "": "y", "b": 1, "#text": "z"}})",
       "<r>x<a/>y<b>1</b>z</r>"},
      {R"({"r": [{"@a": 1, "@b": null, "@c": "x", "@a": true}]})", R"(<r c="x" a="true"/>)"},
      {R"({"r": {"x": 1, "y": {"z": "", "@b": 2}, "@a": 1}})",
       R"(<r a="1"><x>1</x><y b="2"><z/></y></r>)"},
      {R"({"r": "<&>\"\t\n\r]]>"})", "<r>&lt;&amp;&gt;\"\t\n&#xD;]]&gt;</r>"},
      {R"({"r": {"@a": "<&>\"\t\n\r"}})", R"(<r a="&lt;&amp;&gt;&quot;&#x9;&#xA;&#xD;"/>)"},
      {"{\"r\": \"<![CDATA[x]]>\x01\\u0000\xFF\xEF\xBF\xBF\xEF\xBF\xBD\xEF\xBF\xBE\xC3\xA9\"}",
       "<r>&lt;![CDATA[x]]&gt;????\xEF\xBF\xBD?\xC3\xA9</r>"},
      // Names
      {R"({"r": {"first name": 1, "1a": 2, "a:b:c": 3, ":": 4, "é": 5, "€": 6, "·": 7, "😀": 8}})",
       "<r><first_x0020_name>1</first_x0020_name><_x0031_a>2</_x0031_a>"
       "<a_x003A_b_x003A_c>3</a_x003A_b_x003A_c><_x003A_>4</_x003A_><\u00E9>5</\u00E9>"
       "<_x20AC_>6</_x20AC_><_x00B7_>7</_x00B7_><_x01F600_>8</_x01F600_></r>"},
      {R"({"r": {"@#text": 1, "#x": 2, "@ a": 3}})",
       R"(<r _x0023_text="1" _x0020_a="3"><_x0023_x>2</_x0023_x></r>)"},
      // Namespaces
      {R"({"p:r": {"p:a": {"@p:b": 1, "@b": 2}, "@xmlns:p": "u", "@xmlns": "d"}})",
       R"(<p:r xmlns:p="u" xmlns="d"><p:a p:b="1" b="2"/></p:r>)"},
      {R"({"r": {"@xmlns:p": "u", "@xmlns:q": "u", "@p:a": 1, "@q:a": 2, "@xmlns:p": "v"}})",
       R"(<r xmlns:p="v" xmlns:q="u" p:a="1" q:a="2"/>)"},
      {R"({"r": {"@xmlns:p": "u", "@xmlns:q": "u", "@p:a": 1, "@q:a": 2}})",
       R"(<r xmlns:p="u" xmlns:q="u" q:a="2"/>)"},
      {R"({"r": {"@xml:lang": "en", "@xmlns:p": null, "@xmlns:xml": )"
       R"("http://www.w3.org/XML/1998/namespace"}})",
       R"(<r xml:lang="en"/>)"},
      {R"({"alias:r": {"@alias:a": 1, "alias:b": 2}})",
       R"(<alias:r xmlns:alias="urn:alias" alias:a="1"><alias:b>2</alias:b></alias:r>)"},
      // Nil
      {R"({"r": {"a": null, "b": {"@x": 1, "#text": null}, "c": {"@xsi:nil": false, "": null}}})",
       R"(<r><a xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:nil="true"/>)"
       R"(<b xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" x="1" xsi:nil="true"/>)"
       R"(<c xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:nil="true"/></r>)"},
      {R"({"r": {"@xmlns:xsi": "u", "xsi:a": null, "b": {"@xmlns:xsi1": "v", "c": null}}})",
       R"(<r xmlns:xsi="u"><xsi:a xmlns:xsi1="http://www.w3.org/2001/XMLSchema-instance" )"
       R"(xsi1:nil="true"/><b xmlns:xsi1="v"><c )"
       R"(xmlns:xsi2="http://www.w3.org/2001/XMLSchema-instance" xsi2:nil="true"/></b></r>)"},
  };
  CSerializationContext context;
  context.GetNamespaceAliases().Add("alias", "urn:alias");
  for (const ConversionCase& test : cases) {
    EXPECT_EQ(Xml(test.json, context), test.xml);
  }
}

TEST(JsonConversion, FollowsTheContext) {
  CSerializationContext flat;
  flat.SetSchemaType(SchemaType::NoNamespaces);
  EXPECT_EQ(Xml(R"({"p:r": {"@xmlns:p": "u", "@p:a": 1, "q:b": null}})", flat),
            R"(<p:r xmlns:p="u" p:a="1"><q:b/></p:r>)");
  CSerializationContext named;
  named.GetJsonContext().SetRootElementName("root");
  EXPECT_EQ(Xml("[1]", named), "<root>1</root>");
  EXPECT_EQ(Xml(R"({"a": 1, "b": 2})", named), "<root><a>1</a><b>2</b></root>");
  EXPECT_EQ(Xml("null", named).substr(0, 5), "<root");
  named.GetJsonContext().GetAllowComments(false);
  EXPECT_THROW(Xml("/**/1", named), CZuValidationException);
}

struct FaultCase {
  const char* json;
  const char* message;
  const char* path;
};

TEST(JsonConversion, SaysWhatHasNoCounterpartInXml) {
  const char* const noName = "JSON item has an empty Name.";
  const char* const noArrayName = "JSON Array has no Name.";
#define REASON(text) "Error converting JSON to XML:\n" text
  const FaultCase cases[] = {
      {"1", noName, ""},
      {R"({"r": {"a": [{}, {"": {}}]}})", noName, "/r/a[2]/"},
      {R"({"r": {"@": 1}})", noName, "/r/@"},
      {"[1]", noArrayName, ""},
      {R"({"r": {"a": [0, []]}})", noArrayName, "/r/a[2]"},
      {R"({"r": {"": []}})", noArrayName, "/r/"},
      {R"({"r": {"@a": []}})", REASON("The member [@a] can not hold an array."), "/r/@a"},
      {R"({"r": {"@xmlns": {}}})", REASON("The member [@xmlns] can not hold an object."),
       "/r/@xmlns"},
      {R"({"r": {"#text": {}}})", REASON("The member [#text] can not hold an object."), "/r/#text"},
      {" ", REASON("The document has no root element."), ""},
      {"{}", REASON("The document has no root element."), ""},
      {R"({"r": []})", REASON("The document has no root element."), ""},
      {R"({"r": 1, "s": 2})", REASON("The document has more than one root element."), "/s"},
      {R"({"r": [1, 2]})", REASON("The document has more than one root element."), "/r[2]"},
      {R"({"@a": 1, "r": 1})", REASON("The member [@a] must be inside the root element."), "/@a"},
      {R"({"r": 1, "#text": ""})", REASON("The member [#text] must be inside the root element."),
       "/#text"},
      {R"({"r": {"@p:a": 1}})", REASON("The prefix [p] is not declared."), "/r/@p:a"},
      {R"({"r": {"a b": {"p:c": 1}}})", REASON("The prefix [p] is not declared."), "/r/a b/p:c"},
      {R"({"r": {"@xmlns:xml": "u"}})",
       REASON("The prefix [xml] can not stand for the namespace [u]."), "/r/@xmlns:xml"},
      {R"({"r": {"@xmlns:p": ""}})", REASON("The prefix [p] can not stand for the namespace []."),
       "/r/@xmlns:p"},
      {R"({"r": {"@xmlns": "u|v"}})",
       REASON("The prefix [] can not stand for the namespace [u|v]."), "/r/@xmlns"},
  };
#undef REASON
  for (const FaultCase& test : cases) {
    CXmlDocument document;
    EXPECT_ZU_ERROR(CZuValidationException, document.LoadJson(test.json), test.message, test.path);
    EXPECT_ZU_ERROR(CZuValidationException, document.ReadJson(test.json), test.message, test.path);
  }
}

TEST(JsonConversion, EncodesExactlyTheNamesThatExpatRefuses) {
  const auto isParsed = [](const std::string& name) {
    try {
      CXmlDocument().LoadXml(("<" + name + "/>").c_str());
      return true;
    } catch (const CZuException&) {
      return false;
    }
  };
  for (char32_t character = 0x80; character < 0x10100; ++character) {
    for (const char* before : {"", "a"}) {
      std::string name = before;
      detail::AppendUtf8(name, character);
      std::string encoded;
      detail::AppendXmlName(encoded, name);
      ASSERT_EQ(encoded == name, isParsed(name)) << std::hex << static_cast<unsigned>(character);
      ASSERT_TRUE(encoded == name || isParsed(encoded)) << encoded;
    }
  }
}

// Inputs

TEST(JsonConversion, TakesEveryKindOfInput) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const std::string json = "{\"r\": \"caf\u00E9\"}";
  const std::string xml = kHeader + std::string("<r>caf\u00E9</r>");
  const std::string file = testing::TempDir() + "conversion.json";
  CXmlDocument document;
  EXPECT_EQ(TextOf(document.LoadJson(L"{\"r\": \"caf\u00E9\"}")), xml);
  for (const CompressionType compression :
       {CompressionType::None, CompressionType::Gzip, CompressionType::Zlib}) {
    CBinaryData data(("\xEF\xBB\xBF" + json).c_str());
    CZuZip::CompressData(data, compression, true);
    EXPECT_EQ(TextOf(document.LoadJsonStream(data.GetData(), data.GetLength())), xml);
    std::ofstream(file, std::ios::binary) << TextOf(data);
    EXPECT_EQ(TextOf(document.LoadJsonFile(file.c_str())), xml);
    for (unsigned long length = 1; length < data.GetLength(); ++length) {
      try {
        document.LoadJsonStream(data.GetData(), length);
        ADD_FAILURE() << length;
      } catch (const CZuException& failure) {
        const bool isDamaged = compression != CompressionType::None && length > 1;
        EXPECT_EQ(failure.GetInnerException() != nullptr, isDamaged) << length;
      }
    }
  }
  std::remove(file.c_str());
  EXPECT_ZU_ERROR(CZuException, document.LoadJson(""), "JSON String is empty!", "");
  EXPECT_ZU_ERROR(CZuException, document.LoadJson(static_cast<const wchar_t*>(nullptr)),
                  "JSON String is empty!", "");
  EXPECT_ZU_ERROR(CZuException, document.LoadJsonStream(nullptr, 0), "JSON Stream is empty!", "");
  EXPECT_ZU_ERROR(CZuException, document.LoadJsonFile(file.c_str()),
                  "Failed to open the file [" + file + "].", "");
}

TEST(JsonConversion, BoundsWhatItMakes) {
  CSerializationContext context;
  context.SetMaxDocumentSize(100000);
  CXmlDocument document(context);
  std::string items = "0";
  for (int i = 0; i < 1000; ++i) {
    items += ",0";
  }
  const std::string json = "{\"r\": {\"" + std::string(10000, 'n') + "\": [" + items + "]}}";
  EXPECT_ZU_ERROR(CZuException, document.LoadJson(json.c_str()),
                  "The document is larger than the limit of 100000 bytes.", "");
  document.ReadJson(json.c_str());
  const std::string longText = "{\"r\": \"" + std::string(50000, '&') + "\"}";
  EXPECT_ZU_ERROR(CZuException, document.LoadJson(longText.c_str()),
                  "The document is larger than the limit of 100000 bytes.", "");
  EXPECT_ZU_ERROR(CZuException, document.ReadJson(std::string(100001, ' ').c_str()),
                  "The document is larger than the limit of 100000 bytes.", "");
}

TEST(JsonConversion, KeepsTextInTheLocalCharacterSet) {
  const CharacterTypeLocale ascii("C");
  CElement element("r");
  element.FromJson("{\"r\": {\"@\xC3\xA9\": \"\xC3\xA9\"}}", CSerializationContext());
  EXPECT_EQ(Written(element), "<r _x003F__x003F_=\"??\"/>");
}

// Round trips

CSerializationContext RoundTripContext(JsonRoundTrip mode = JsonRoundTrip::Full) {
  CSerializationContext context;
  context.GetJsonContext().SetStrictEscaping(true);
  context.GetJsonContext().SetSupportRoundtrip(mode);
  // Those of the random trees.
  context.GetNamespaceAliases().Add("one", "urn:one");
  context.GetNamespaceAliases().Add("two", "urn:two");
  context.GetNamespaceAliases().Add("ex", "http://example.org/?a=1&b=<2>\"'");
  return context;
}

TEST(JsonConversion, GivesEveryTreeBack) {
  const CharacterTypeLocale utf8("C.UTF-8");
  constexpr unsigned kSeed = 20240607;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  RandomTree random(kSeed);
  const CSerializationContext context = RoundTripContext();
  for (int i = 0; i < 60; ++i) {
    const CSmartPtr<CElement> tree = random.Make(1 + i);
    for (const bool isFormatted : {false, true}) {
      const std::string json = tree->ToJson(isFormatted, EOLType::CrLf, context);
      EXPECT_TRUE(nlohmann::json::accept(json)) << json;
      CElement back("");
      back.FromJson(json.c_str(), context);
      ASSERT_EQ(Outline(back), Outline(*tree)) << json;
    }
  }
}

struct PlainCase {
  JsonRoundTrip mode;
  const char* json;
  const char* xml;
};

TEST(JsonConversion, GivesBackWhatAModeKeeps) {
  const CSmartPtr<CElement> tree = ReadUntyped(
      "<r xmlns='urn:one' xmlns:two='urn:two' a='1'><two:b>x</two:b><b>y</b><b k='v'>z</b></r>");
  const PlainCase cases[] = {
      {JsonRoundTrip::Full,
       R"({"one:r": {"@xmlns:ex": "http://example.org/?a=1&b=<2>\"'","@xmlns:one": "urn:one",)"
       R"("@xmlns:two": "urn:two","@a": "1","two:b": "x",)"
       R"("one:b": ["y",{"@k": "v","#text": "z"}],"#text": ""}})",
       nullptr},
      {JsonRoundTrip::Marked,
       R"({"r": {"@a": "1","b": "x","b": ["y",{"@k": "v","#text": "z"}],"#text": ""}})",
       "<r a=\"1\"><b>x</b><b>y</b><b k=\"v\">z</b></r>"},
      {JsonRoundTrip::Plain, R"({"r": {"a": "1","b": "x","b": ["y",{"k": "v","": "z"}],"": ""}})",
       "<r><a>1</a><b>x</b><b>y</b><b><k>v</k>z</b></r>"},
  };
  for (const PlainCase& test : cases) {
    const CSerializationContext context = RoundTripContext(test.mode);
    const std::string json = tree->ToJson(false, EOLType::Lf, context);
    EXPECT_EQ(json, test.json);
    CElement back("");
    back.FromJson(json.c_str(), context);
    EXPECT_EQ(Outline(back),
              test.xml != nullptr ? Outline(*ReadUntyped(test.xml)) : Outline(*tree));
  }
}

TEST(JsonConversion, WritesAndReadsTheSameThroughStreamsAndFiles) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const CSerializationContext context = RoundTripContext();
  const CSmartPtr<CElement> tree =
      ReadUntyped("<r><a k='\u00E9'>" + std::string(100, 'x') + "</a><a/></r>");
  const std::string file = testing::TempDir() + "tree.json";
  for (const CompressionType compression :
       {CompressionType::None, CompressionType::Gzip, CompressionType::Zlib}) {
    CElement fromStream("");
    // Indented, so that it is long enough to be compressed.
    fromStream.FromJsonStream(
        tree->ToJsonStream(true, XmlEncoding::Utf8, EOLType::CrLf, context, compression), context);
    EXPECT_TRUE(IsSameTree(*tree, fromStream));
    if (compression == CompressionType::Zlib) continue;
    for (const bool isDirect : {false, true}) {
      CXmlObjectBase::AsyncToXmlFile(isDirect);
      tree->ToJsonFile(file.c_str(), true, XmlEncoding::Utf8, EOLType::Lf, context, compression);
      CXmlObjectBase::AsyncToXmlFile(false);
      CElement fromFile("");
      fromFile.FromJsonFile(file.c_str(), context);
      EXPECT_TRUE(IsSameTree(*tree, fromFile));
    }
  }
  EXPECT_ZU_ERROR(CZuException,
                  tree->ToJsonFile("none.json", false, XmlEncoding::Utf8, EOLType::Lf, context,
                                   CompressionType::Zlib),
                  "ZLIB Compression only available for To Stream methods.", "");
  std::remove(file.c_str());
}

TEST(JsonConversion, ConvertsWhatAHandlerIsToldHoweverDeep) {
  const CSerializationContext context;
  CJsonReaderToXmlHandler handler(context);
  constexpr int kDepth = 100000;
  handler.ReadStartDocument();
  handler.ReadEndObject();  // nothing is open
  handler.ReadStartObject();
  for (int i = 0; i < kDepth; ++i) {
    handler.ReadName("e");
    handler.ReadStartObject();
  }
  EXPECT_TRUE(handler.ReadEndDocument());  // closes what is open
  EXPECT_EQ(handler.GetXml().GetLength(), 38 + 7 * kDepth - 3);
}

}  // namespace
}  // namespace ZuXmlLib16
