#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/FastInfosetWriter.h"
#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlObjectBase.h"
#include "fastinfoset/OctetBuffer.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using Mode = CFastInfosetContext::TypedValueMode;

constexpr const char* kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

/// Hexadecimal digits, and in quotation marks ASCII characters, in one form.
std::string Plain(std::string_view octets) {
  CBinaryData data;
  std::string digits;
  for (std::size_t at = 0; at < octets.size(); ++at) {
    if (octets[at] == ' ') continue;
    if (octets[at] != '\'') {
      digits += octets[at];
      continue;
    }
    const std::size_t end = octets.find('\'', at + 1);
    data.SetBuffer(std::string(octets.substr(at + 1, end - at - 1)).c_str());
    digits += data.GetAsHexString();
    at = end;
  }
  return digits;
}

using Calls = std::function<void(CFastInfosetWriter&)>;

/// The document that calls write, without the five octets that every one begins with.
std::string Written(const Calls& calls, const CFastInfosetContext& context = {}) {
  CBinaryStream stream;
  CFastInfosetWriter writer(stream, context);
  writer.Open();
  calls(writer);
  writer.Close();
  const std::string digits = stream.GetBinaryStream().GetAsHexString();
  EXPECT_EQ(digits.substr(0, 10), "E000000100");
  return digits.substr(10);
}

void Element(CFastInfosetWriter& writer, const char* name, const char* text,
             ItemType type = ItemType::string, const char* namespaceUri = "") {
  writer.WriteStartElement(name, namespaceUri);
  writer.WriteString(text, type, false);
  writer.WriteEndElement();
}

TEST(FastInfosetWriter, WritesRepeatedNamesAndValuesByIndex) {
  const auto item = [](CFastInfosetWriter& writer) {
    writer.WriteStartElement("item", "urn:example:orders");
    writer.WriteAttributeString("qty", "", "2", ItemType::i4);
    writer.WriteString("pen", ItemType::string, false);
    writer.WriteEndElement();
  };
  const auto order = [&](CFastInfosetWriter& writer) {
    writer.AddNamespace("o", "urn:example:orders");
    writer.WriteStartElement("order", "urn:example:orders");
    writer.WriteAttributeString("id", "", "A7", ItemType::string);
    writer.WriteAttributeString("lang", CXmlWriter::XML_NAMESPACE, "en", ItemType::string);
    writer.WriteString("\r\n", ItemType::string, false);
    item(writer);
    item(writer);
    Element(writer, "note", "", ItemType::string, "urn:example:orders");
    writer.WriteEndElement();
  };
  EXPECT_EQ(Written(order), Plain("78 CF 00'o' 11'urn:example:orders' F0"  // xmlns:o
                                  "3F 81 81 04'order'"                     // o:order
                                  "78 01'id' 41'A7'"                       // id="A7"
                                  "7B 80 80 03'lang' 41'en' F0"            // xml:lang="en"
                                  "90 0A"                                  // a line feed
                                  "7F 81 81 03'item'"                      // o:item
                                  "78 02'qty' 40'2' F0"                    // qty="2"
                                  "92 00'pen' F0"
                                  "41 02 82 F0 A1 F0"  // all of it again, by index
                                  "3F 81 81 03'note' FF F0"));
}

struct DocumentCase {
  const char* name;
  Calls calls;
  const char* octets;
};

std::ostream& operator<<(std::ostream& out, const DocumentCase& document) {
  return out << document.name;
}

class FastInfosetDocument : public testing::TestWithParam<DocumentCase> {};

TEST_P(FastInfosetDocument, IsWritten) {
  EXPECT_EQ(Written(GetParam().calls), Plain(GetParam().octets));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Of, FastInfosetDocument, testing::Values(
    DocumentCase{"EmptyElement", [](CFastInfosetWriter& w) { Element(w, "a", ""); }, "3C 00'a' FF"},
    DocumentCase{"EmptyAndRepeatedAttributeValues", [](CFastInfosetWriter& w) {
      w.WriteStartElement("a", "");
      w.WriteAttributeString("b", "", "", ItemType::string);
      w.WriteAttributeString("c", "", "x\r", ItemType::string);
      w.WriteAttributeString("d", "", "x", ItemType::string);
      w.WriteEndElement();
    }, "7C 00'a' 78 00'b' FF 78 00'c' 40'x' 78 00'd' 80 FF F0"},
    // The second b declares AA again: it is declared where it is needed, and no longer known.
    DocumentCase{"AllocatedPrefixes", [](CFastInfosetWriter& w) {
      w.WriteStartElement("a", "");
      Element(w, "b", "", ItemType::string, "urn:1");
      Element(w, "b", "", ItemType::string, "urn:2");
      Element(w, "b", "", ItemType::string, "urn:1");
      w.WriteEndElement();
    }, "3C 00'a' 38 CF 01'AA' 04'urn:1' F0 3F 81 81 00'b' F0 38 CF 81 04'urn:2' F0 3F 81 82 81 F0 38 CF 81 81 F0 01 FF F0"},
    // c has no namespace, so that the default one ends there and begins anew in d.
    DocumentCase{"ElementsWithAndWithoutDefaultNamespace", [](CFastInfosetWriter& w) {
      w.SetDefaultNamespace("urn:d");
      w.WriteStartElement("a", "urn:d");
      Element(w, "b", "", ItemType::string, "urn:d");
      w.WriteStartElement("c", "");
      Element(w, "d", "", ItemType::string, "urn:d");
      w.WriteEndElement();
      w.WriteEndElement();
    }, "38 CD 04'urn:d' F0 3D 81 00'a' 3D 81 00'b' F0 38 CC F0 3C 00'c' 38 CD 81 F0 3D 81 00'd' FF FF"},
    DocumentCase{"DefaultNamespaceNotOnARootWithoutOne", [](CFastInfosetWriter& w) {
      w.SetDefaultNamespace("urn:d");
      w.WriteStartElement("a", "");
      Element(w, "b", "", ItemType::string, "urn:d");
      w.WriteEndElement();
    }, "3C 00'a' 38 CD 04'urn:d' F0 3D 81 00'b' FF F0"},
    // All on a: p for the name, AA for the attribute, since p had been used when it changed.
    DocumentCase{"PrefixThatChangesOnTheElementThatUsesIt", [](CFastInfosetWriter& w) {
      w.AddNamespace("p", "urn:1");
      w.WriteStartElement("a", "urn:1");
      w.AddNamespace("p", "urn:2");
      w.WriteAttributeString("b", "urn:2", "", ItemType::string);
      w.WriteEndElement();
    }, "78 CF 00'p' 04'urn:1' CF 01'AA' 04'urn:2' F0 3F 81 81 00'a' 7B 82 82 00'b' FF FF F0"},
    DocumentCase{"DeclarationsInOrderOfTheirUris", [](CFastInfosetWriter& w) {
      w.AddNamespace("p", "urn:2");
      w.AddNamespace("q", "urn:1");
      w.SetDefaultNamespace("urn:3");
      w.WriteStartElement("a", "urn:3");
      w.AddNamespace("r", "urn:4");
      w.WriteEndElement();
    }, "38 CD 04'urn:3' CF 00'q' 04'urn:1' CF 00'p' 04'urn:2' CF 00'r' 04'urn:4' F0 3D 81 00'a' FF"},
    DocumentCase{"CommentsAndInstructions", [](CFastInfosetWriter& w) {
      w.WritePI("<?xml version='1.0'?>");
      w.WritePI("<?t  a b?>");
      w.WriteComment("");
      w.WriteStartElement("a", "");
      w.WriteComment("c");
      w.WritePI("<?t?>");
      w.WriteEndElement();
      w.WriteComment("d");
    }, "E1 00't' 02'a b' E2 FF 3C 00'a' E2 00'c' E1 80 FF F0 E2 00'd' F0"},
    DocumentCase{"CDataSectionsAsText", [](CFastInfosetWriter& w) {
      Element(w, "a", "<![CDATA[<]]>b<![CDATA[]]>");
    }, "3C 00'a' 90'<' 90'b' FF"},
    DocumentCase{"TypesAndNil", [](CFastInfosetWriter& w) {
      w.SetDefaultNamespace("urn:d");
      w.AddNamespace("x", kSchemaInstance);
      w.WriteStartElement("a", "urn:d");
      w.WriteAttributeType("urn:d", "T", ItemType::r8);
      w.WriteStartElement("a", "urn:d");
      w.WriteAttributeType("urn:t", "T", ItemType::string);
      w.WriteAttributeNil();
      w.WriteEndElement();
      w.WriteEndElement();
    }, "78 CD 04'urn:d' CF 00'x' 28'http://www.w3.org/2001/XMLSchema-instance' F0 3D 81 00'a'"
       "7B 81 82 03'type' 40'T' F0"
       "78 CF 01'AA' 04'urn:t' F0 00 00 43'AA:T' 7B 81 82 02'nil' 43'true' FF FF"},
    DocumentCase{"InlineSchema", [](CFastInfosetWriter& w) {
      w.WriteStartElement("a", "");
      w.WriteInlineSchema("<?xml version='1.0'?><s:s xmlns:s='urn:s' xmlns='urn:d'>\n <t s:u='s:v'>w</t>\n</s:s>");
      w.WriteEndElement();
    }, "3C 00'a' 38 CF 00's' 04'urn:s' CD 04'urn:d' F0 3F 81 81 00's' 7D 82 00't' 7B 81 81 00'u' 42's:v' F0 90'w' FF FF"}
  ), [](const auto& document) { return document.param.name; });
// clang-format on

TEST(FastInfosetWriter, EncodesValuesByTypeWhenToldSo) {
  const struct {
    Mode mode;
    ItemType type;
    const char* text;
    const char* attribute;
    const char* chunk;
  } cases[] = {
      // clang-format off
      {Mode::Binary, ItemType::hexBinary,    "0AFF",       "30 01 0AFF",             "8C 01 0AFF"},
      {Mode::Binary, ItemType::hexBinary,    "0aff",       "43'0aff'",               "92 01'0aff'"},
      {Mode::Binary, ItemType::base64Binary, "AQID",       "30 12 010203",           "8C 06 00 010203"},
      {Mode::Binary, ItemType::base64Binary, "AQ=",        "42'AQ='",                "92 00'AQ='"},
      {Mode::Binary, ItemType::string,       "AQID",       "43'AQID'",               "92 01'AQID'"},
      {Mode::Binary, ItemType::boolean,      "true",       "43'true'",               "92 01'true'"},
      {Mode::Text,   ItemType::hexBinary,    "0AFF",       "43'0AFF'",               "92 01'0AFF'"},
      {Mode::All,    ItemType::i2,           "-2",         "30 21 FFFE",             "8C 09 FFFE"},
      {Mode::All,    ItemType::i4,           "-2",         "30 33 FFFFFFFE",         "8C 0E 01 FFFFFFFE"},
      {Mode::All,    ItemType::i4,           "007",        "42'007'",                "92 00'007'"},
      {Mode::All,    ItemType::i4,           "4294967296", "30 47 0000000100000000", "8C 12 05 0000000100000000"},
      {Mode::All,    ItemType::i8,           "1",          "30 47 0000000000000001", "8C 12 05 0000000000000001"},
      {Mode::All,    ItemType::ui4,          "1",          "40'1'",                  "90'1'"},
      {Mode::All,    ItemType::r4,           "1.5",        "30 63 3FC00000",         "8C 1A 01 3FC00000"},
      {Mode::All,    ItemType::r8,           "1.5",        "30 77 3FF8000000000000", "8C 1E 05 3FF8000000000000"},
      {Mode::All,    ItemType::boolean,      "true",       "30 50 38",               "8C 14 38"},
      // clang-format on
  };
  for (const auto& value : cases) {
    CFastInfosetContext context;
    context.SetTypedValues(value.mode);
    const auto calls = [&](CFastInfosetWriter& writer) {
      writer.WriteStartElement("a", "");
      writer.WriteAttributeString("b", "", value.text, value.type);
      writer.WriteString(value.text, value.type, false);
      writer.WriteEndElement();
    };
    EXPECT_EQ(Written(calls, context), Plain(std::string("7C 00'a' 78 00'b' ") + value.attribute +
                                             "F0" + value.chunk + "FF"))
        << value.text;
  }
}

TEST(FastInfosetWriter, IndexesAsTheSettingsSay) {
  const auto calls = [](CFastInfosetWriter& writer) {
    writer.WriteStartElement("a", "");
    for (const char* const text : {"xx", "xx", "xyz", "xyz", "yy", "yy"}) {
      writer.WriteAttributeString(text, "", text, ItemType::string);
    }
    for (const char* const text : {"xx", "xx", "xyz", "xyz", "yy", "yy"}) {
      writer.WriteString(text, ItemType::string, false);
    }
    writer.WriteEndElement();
  };
  const std::string start = "7C 00'a' ";
  const auto attributes = [](const char* xx, const char* yy) {
    return std::string("78 01'xx' 41'xx' 00 ") + xx + "78 02'xyz' 02'xyz' 01 02'xyz' 78 01'yy' " +
           yy;
  };
  CFastInfosetContext context;
  context.SetMaxAttributeValueLength(2);
  context.SetMaxElementValueLength(2);
  EXPECT_EQ(Written(calls, context), Plain(start + attributes("80", "41'yy' 02 81") +
                                           "F0 91'xx' A0 82 00'xyz' 82 00'xyz' 91'yy' A1 FF"));
  context.SetMaxIndexedValues(1);
  EXPECT_EQ(Written(calls, context), Plain(start + attributes("80", "01'yy' 02 01'yy'") +
                                           "F0 91'xx' A0 82 00'xyz' 82 00'xyz' 81'yy' 81'yy' FF"));
  context.SetIndexElementValues(false);
  EXPECT_EQ(Written(calls, context),
            Plain(start + attributes("80", "01'yy' 02 01'yy'") +
                  "F0 81'xx' 81'xx' 82 00'xyz' 82 00'xyz' 81'yy' 81'yy' FF"));
}

TEST(FastInfosetWriter, KeepsCDataSectionsOnRequest) {
  CFastInfosetContext context;
  context.SetCDataSections(true);
  const auto calls = [](CFastInfosetWriter& w) { Element(w, "a", "<![CDATA[<]]>b"); };
  EXPECT_EQ(Written(calls, context), Plain("3C 00'a' 92 0B'<![CDATA[<]]>b' FF"))
      << "text: it does not end as a section";
  const auto section = [](CFastInfosetWriter& w) { Element(w, "a", "<![CDATA[a<b]]>"); };
  EXPECT_EQ(Written(section, context), Plain("3C 00'a' 8C 26 00'a<b' FF"));
}

TEST(FastInfosetWriter, WritesTextInUtf8) {
  const char* const euro = "\xE2\x82\xAC";
  const auto text = [&](CFastInfosetWriter& w) { Element(w, "a", euro); };
  const auto latinText = [&](CFastInfosetWriter& w) { Element(w, "\xE4", "\xE4\r"); };
  {
    const CharacterTypeLocale utf8("C.UTF-8");
    EXPECT_EQ(Written(text), Plain("3C 00'a' 92 00 E282AC FF"));
    EXPECT_EQ(Written([](CFastInfosetWriter& w) { Element(w, "a", "\xE4\r"); }),
              Plain("3C 00'a' 90'?' FF"))
        << "malformed";
  }
  const CharacterTypeLocale latin("de_DE.ISO-8859-1");
  if (!latin.IsAvailable()) GTEST_SKIP() << "no such locale on this system";
  EXPECT_EQ(Written(latinText), Plain("3C 01 C3A4 91 C3A4 FF"));
}

TEST(FastInfosetWriter, StartsWithTheDeclarationThatIsSet) {
  const auto start = [](int declaration) {
    CBinaryStream stream;
    CFastInfosetWriter writer(stream, CFastInfosetContext());
    writer.SetDeclaration(static_cast<FInfoDecl>(declaration));
    writer.Open();
    writer.Close();
    const CBinaryData data = stream.GetBinaryStream();
    const std::string text(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
    const std::string_view behind("\xE0\0\0\1\0\xF0", 6);
    EXPECT_EQ(text.substr(text.size() - behind.size()), behind);
    return text.substr(0, text.size() - behind.size());
  };
  EXPECT_EQ(start(0), "");
  EXPECT_EQ(start(1), "<?xml encoding='finf'?>");
  EXPECT_EQ(start(5), "<?xml version='1.0' encoding='finf' standalone='yes'?>");
  EXPECT_EQ(start(9), "<?xml version='1.1' encoding='finf' standalone='no'?>");
  for (const int declaration : {-1, 10}) {
    EXPECT_ZU_ERROR(CZuException, start(declaration),
                    "Invalid Fast Infoset declaration [" + std::to_string(declaration) + "].", "");
  }
}

TEST(FastInfosetWriter, BuildsOnTheVocabularyOfTheContext) {
  CFastInfosetContext context;
  context.GetVocabulary().AddElement("p", "urn:p", "a");
  context.GetVocabulary().AddElementValue("text");
  context.SetExternalVocabularyURI("urn:v");
  CBinaryStream stream;
  CFastInfosetWriter writer(stream, context);
  writer.Open();
  writer.AddNamespace("p", "urn:p");
  Element(writer, "a", "text", ItemType::string, "urn:p");
  writer.Close();
  EXPECT_EQ(stream.GetBinaryStream().GetAsHexString(),
            Plain("E0000001 20 1000 04'urn:v' 38 CF 81 81 F0 00 A0 FF"));
  EXPECT_EQ(context.GetVocabulary().GetElementNamesTable().GetSize(), 1U);
}

TEST(FastInfosetWriter, RefusesWhatMakesNoDocument) {
  CBinaryStream stream;
  CFastInfosetWriter writer(stream, CFastInfosetContext());
  writer.Open();
  EXPECT_ZU_ERROR(CZuException, writer.WriteAttributeNil(),
                  "Attributes must be added before elements", "");
  for (const char* const text : {"",
                                 "<?"
                                 "?>",
                                 "<?t", "t?>", "<?>", "<? t?>"}) {
    EXPECT_ZU_ERROR(CZuException, writer.WritePI(text),
                    "Invalid processing instruction [" + std::string(text) + "].", "");
  }
  writer.WriteStartElement("a", "");
  writer.WriteString("default", ItemType::string, true);
  writer.WriteAttributeString("b", "", "still open", ItemType::string);
  writer.WriteString("text", ItemType::string, false);
  EXPECT_ZU_ERROR(CZuException, writer.WriteAttributeString("c", "", "", ItemType::string),
                  "Attributes must be added before elements", "");
  EXPECT_ZU_ERROR(CZuException, writer.WriteInlineSchema("<s>"), "no element found at line 1", "");
  EXPECT_ZU_ERROR(CZuException, writer.Close(), "An Element has not been closed.", "");
  writer.WriteEndElement();
  EXPECT_ZU_ERROR(CZuException, writer.WriteStartElement("a", ""),
                  "A document has only one root element.", "");
}

TEST(FastInfosetWriter, RefusesWhatIsNoName) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const auto expectRefused = [](const std::string& name, const Calls& calls) {
    EXPECT_ZU_ERROR(CZuException, Written(calls),
                    "The name [" + name + "] cannot be written as Fast Infoset.", "");
  };
  for (const char* const name : {"", "p:a", "a b", "1", "\xE4"}) {
    expectRefused(name, [&](CFastInfosetWriter& w) { Element(w, name, ""); });
  }
  expectRefused("xmlns", [](CFastInfosetWriter& w) {
    w.WriteStartElement("xmlns", "");
    w.WriteAttributeString("xmlns", "", "", ItemType::string);
  });
  expectRefused("p q", [](CFastInfosetWriter& w) {
    w.AddNamespace("p q", "urn:p");
    Element(w, "a", "");
  });
  expectRefused("", [](CFastInfosetWriter& w) {  // where the name before it was followed by another
    w.WriteStartElement("a", "");
    for (const char* const name : {"\xC3\xA9", "a", "\xC3\xA9", "a", ""})
      Element(w, name, "");
  });
}

TEST(OctetBuffer, PutsIndicesAndLengthsInTheirShortestForm) {
  using detail::OctetBuffer;
  const auto text = [](unsigned long length) { return std::string(length, 'x'); };
  const struct {
    std::function<void(OctetBuffer&, unsigned long)> put;
    std::vector<std::pair<unsigned long, const char*>> cases;
  } forms[] = {
      // clang-format off
      {[](OctetBuffer& out, unsigned long index) { out.PutIndexOnBit2(0, index); },
       {{1, "00"}, {64, "3F"}, {65, "4000"}, {8256, "5FFF"}, {8257, "600000"}, {1048576, "6FDFBF"}}},
      {[](OctetBuffer& out, unsigned long index) { out.PutIndex<3>(0, index); },
       {{1, "00"}, {32, "1F"}, {33, "2000"}, {2080, "27FF"}, {2081, "280000"}, {526368, "2FFFFF"},
        {526369, "30000000"}, {1048576, "3007F7DF"}}},
      {[](OctetBuffer& out, unsigned long index) { out.PutIndex<4>(0, index); },
       {{1, "00"}, {16, "0F"}, {17, "1000"}, {1040, "13FF"}, {1041, "140000"}, {263184, "17FFFF"},
        {263185, "18000000"}, {1048576, "180BFBEF"}}},
      {[&](OctetBuffer& out, unsigned long length) { out.PutString<2>(0, text(length)); },
       {{1, "00"}, {64, "3F"}, {65, "4000"}, {320, "40FF"}, {321, "6000000000"}, {66000, "600001008F"}}},
      {[&](OctetBuffer& out, unsigned long length) { out.PutString<5>(0, text(length)); },
       {{1, "00"}, {8, "07"}, {9, "0800"}, {264, "08FF"}, {265, "0C00000000"}}},
      {[&](OctetBuffer& out, unsigned long length) { out.PutString<7>(0, text(length)); },
       {{2, "01"}, {3, "0200"}, {258, "02FF"}, {259, "0300000000"}}},
      // clang-format on
  };
  for (const auto& form : forms) {
    for (const auto& [value, octets] : form.cases) {
      OctetBuffer out;
      form.put(out, value);
      const std::string_view put = out.View().substr(0, out.View().find("x"));
      EXPECT_EQ(CBinaryData::GetAsHexString(reinterpret_cast<const unsigned char*>(put.data()),
                                            put.size()),
                octets)
          << value;
    }
  }
}

}  // namespace
}  // namespace ZuXmlLib16
