#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

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

struct ValueCase {
  ItemType type;
  const char* text;
  const char* octets;  // of the chunk, or of the attribute's value
};

void ExpectValues(const ValueCase (&cases)[9], bool areAttributes, Mode mode) {
  CFastInfosetContext context;
  context.SetTypedValues(mode);
  for (const ValueCase& value : cases) {
    const auto calls = [&](CFastInfosetWriter& writer) {
      writer.WriteStartElement("a", "");
      if (areAttributes) {
        writer.WriteAttributeString("b", "", value.text, value.type);
      } else {
        writer.WriteString(value.text, value.type, false);
      }
      writer.WriteEndElement();
    };
    const std::string octets = value.octets;
    EXPECT_EQ(Written(calls, context), areAttributes
                                           ? Plain("7C 00'a' 78 00'b' " + octets + " FF F0")
                                           : Plain("3C 00'a' " + octets + " FF"))
        << value.text;
  }
}

TEST(FastInfosetWriter, EncodesValuesByTypeWhenToldSo) {
  constexpr ValueCase kChunks[] = {
      {ItemType::hexBinary, "0AFF", "8C 01 0AFF"},
      {ItemType::base64Binary, "AQID", "8C 06 00 010203"},
      {ItemType::i2, "-2", "8C 09 FFFE"},
      {ItemType::i4, "-2", "8C 0E 01 FFFFFFFE"},
      {ItemType::i4, "4294967296", "8C 12 05 0000000100000000"},
      {ItemType::i8, "1", "8C 12 05 0000000000000001"},
      {ItemType::r8, "1.5", "8C 1E 05 3FF8000000000000"},
      {ItemType::boolean, "true", "8C 14 38"},
      {ItemType::boolean, "1", "90 31"},
  };
  ExpectValues(kChunks, false, Mode::All);
  constexpr ValueCase kAttributes[] = {
      {ItemType::hexBinary, "0AFF", "30 01 0AFF"},
      {ItemType::hexBinary, "0aff", "43 30616666"},
      {ItemType::base64Binary, "AQID", "30 12 010203"},
      {ItemType::i2, "7", "30 21 0007"},
      {ItemType::i4, "-2", "30 33 FFFFFFFE"},
      {ItemType::i4, "007", "42 303037"},
      {ItemType::ui4, "1", "40 31"},
      {ItemType::r4, "1.5", "30 63 3FC00000"},
      {ItemType::boolean, "false", "30 50 30"},
  };
  ExpectValues(kAttributes, true, Mode::All);
  constexpr ValueCase kBinaryOnly[] = {
      {ItemType::hexBinary, "0AFF", "8C 01 0AFF"},
      {ItemType::base64Binary, "AQID", "8C 06 00 010203"},
      {ItemType::base64Binary, "AQ=", "92 00 41513D"},
      {ItemType::string, "AQID", "92 01 41514944"},
      {ItemType::i2, "1", "90 31"},
      {ItemType::i4, "1", "90 31"},
      {ItemType::i8, "1", "90 31"},
      {ItemType::r8, "1", "90 31"},
      {ItemType::boolean, "true", "92 01 74727565"},
  };
  ExpectValues(kBinaryOnly, false, Mode::Binary);
}

TEST(FastInfosetWriter, IndexesValuesUpToTheLengthsThatAreSet) {
  const auto calls = [](CFastInfosetWriter& writer) {
    writer.WriteStartElement("a", "");
    for (const char* const name : {"b", "c", "d", "e"}) {
      writer.WriteAttributeString(name, "", *name < 'd' ? "12" : "123", ItemType::string);
    }
    for (const char* const name : {"b", "c", "d", "e"}) {
      Element(writer, name, *name < 'd' ? "1234" : "12345");
    }
    writer.WriteEndElement();
  };
  const std::string names =
      "7C 00'a' 78 00'b' %1 78 00'c' %2 78 00'd' %3 78 00'e' %3 F0 "
      "3C 81 %4 F0 3C 82 %5 F0 3C 83 %6 F0 3C 84 %6 FF";
  const auto with = [&](std::initializer_list<const char*> values) {
    std::string octets = names;
    char digit = '1';
    for (const char* const value : values) {
      for (std::size_t at = 0; (at = octets.find(std::string("%") + digit)) != std::string::npos;) {
        octets.replace(at, 2, value);
      }
      ++digit;
    }
    return Plain(octets) + "F0";
  };
  CFastInfosetContext context;
  context.SetMaxAttributeValueLength(2);
  context.SetMaxElementValueLength(4);
  EXPECT_EQ(Written(calls, context),
            with({"41'12'", "80", "02'123'", "92 01'1234'", "A0", "82 02'12345'"}));
  context.SetIndexAttributeValues(false);
  context.SetIndexElementValues(false);
  EXPECT_EQ(Written(calls, context),
            with({"01'12'", "01'12'", "02'123'", "82 01'1234'", "82 01'1234'", "82 02'12345'"}));
}

TEST(FastInfosetWriter, IndexesOnlyAsManyValuesAsAreAllowed) {
  CFastInfosetContext context;
  context.SetMaxIndexedValues(1);
  const auto calls = [](CFastInfosetWriter& writer) {
    writer.WriteStartElement("a", "");
    for (const char* const text : {"x", "y", "y", "x"}) {
      writer.WriteString(text, ItemType::string, false);
    }
    writer.WriteEndElement();
  };
  EXPECT_EQ(Written(calls, context), Plain("3C 00'a' 90'x' 80'y' 80'y' A0 FF"));
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
    EXPECT_EQ(Written(latinText), Plain("3C 00'?' 90'?' FF")) << "malformed";
  }
  const CharacterTypeLocale latin("de_DE.ISO-8859-1");
  if (!latin.IsAvailable()) GTEST_SKIP();
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
  EXPECT_ZU_ERROR(CZuException, Written([](CFastInfosetWriter& w) { Element(w, "", ""); }),
                  "A name in Fast Infoset must not be empty.", "");
  writer.WriteEndElement();
  EXPECT_ZU_ERROR(CZuException, writer.WriteStartElement("a", ""),
                  "A document has only one root element.", "");
}

struct FormCase {
  const char* form;
  unsigned long value;
  const char* octets;
};

TEST(OctetBuffer, PutsIndicesInTheirShortestForm) {
  const FormCase cases[] = {
      {"bit 2", 1, "00"},
      {"bit 2", 64, "3F"},
      {"bit 2", 65, "4000"},
      {"bit 2", 8256, "5FFF"},
      {"bit 2", 8257, "600000"},
      {"bit 2", 1048576, "6FDFBF"},
      {"bit 3", 1, "00"},
      {"bit 3", 32, "1F"},
      {"bit 3", 33, "2000"},
      {"bit 3", 2080, "27FF"},
      {"bit 3", 2081, "280000"},
      {"bit 3", 526368, "2FFFFF"},
      {"bit 3", 526369, "30000000"},
      {"bit 3", 1048576, "3007F7DF"},
      {"bit 4", 1, "00"},
      {"bit 4", 16, "0F"},
      {"bit 4", 17, "1000"},
      {"bit 4", 1040, "13FF"},
      {"bit 4", 1041, "140000"},
      {"bit 4", 263184, "17FFFF"},
      {"bit 4", 263185, "18000000"},
      {"bit 4", 1048576, "180BFBEF"},
  };
  for (const FormCase& index : cases) {
    detail::OctetBuffer out;
    switch (index.form[4]) {
      case '2':
        out.PutIndexOnBit2(0, index.value);
        break;
      case '3':
        out.PutIndex<3>(0, index.value);
        break;
      default:
        out.PutIndex<4>(0, index.value);
    }
    EXPECT_EQ(CBinaryData::GetAsHexString(reinterpret_cast<const unsigned char*>(out.GetData()),
                                          out.GetSize()),
              index.octets)
        << index.form << ' ' << index.value;
  }
}

TEST(OctetBuffer, PutsLengthsInTheirShortestForm) {
  const FormCase cases[] = {
      {"bit 2", 1, "00"},     {"bit 2", 64, "3F"},          {"bit 2", 65, "4000"},
      {"bit 2", 320, "40FF"}, {"bit 2", 321, "6000000000"}, {"bit 2", 66000, "600001008F"},
      {"bit 5", 1, "00"},     {"bit 5", 8, "07"},           {"bit 5", 9, "0800"},
      {"bit 5", 264, "08FF"}, {"bit 5", 265, "0C00000000"}, {"bit 7", 2, "01"},
      {"bit 7", 3, "0200"},   {"bit 7", 258, "02FF"},       {"bit 7", 259, "0300000000"},
  };
  for (const FormCase& length : cases) {
    const std::string text(length.value, 'x');
    detail::OctetBuffer out;
    switch (length.form[4]) {
      case '2':
        out.PutString<2>(0, text);
        break;
      case '5':
        out.PutString<5>(0, text);
        break;
      default:
        out.PutString<7>(0, text);
    }
    EXPECT_EQ(CBinaryData::GetAsHexString(reinterpret_cast<const unsigned char*>(out.GetData()),
                                          out.GetSize() - text.size()),
              length.octets)
        << length.form << ' ' << length.value;
  }
}

}  // namespace
}  // namespace ZuXmlLib16
