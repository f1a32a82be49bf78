#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <utility>

#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/ExpatReader.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/RandomTree.h"

namespace ZuXmlLib16 {
namespace {

using namespace std::string_literals;

void LoadBytes(CXmlDocument& document, const std::string& bytes) {
  document.LoadXmlStream(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string Repeat(const char* text, int count) {
  std::string result;
  while (count-- > 0)
    result += text;
  return result;
}

TEST(ReadXml, GivesTheTree) {
  const CharacterTypeLocale locale("C.UTF-8");
  // clang-format off
  const std::pair<std::string, const char*> cases[] = {
      {"<a xmlns='u:1' xmlns:p='u:2' x='1' p:x='2'><p:b/><c xmlns='' p:y='3'><d xmlns:p='u:3' p:z='4'/></c></a>",
             "{u:1}a\n @{}x=1\n @{u:2}x=2\n  {u:2}b\n  {}c\n   @{u:2}y=3\n    {}d\n     @{u:3}z=4\n"},
      {"<a>1<b>x</b>2<!-- c -->3<?p i?>4<![CDATA[<5]]>&#54;&amp;</a>", "{}a\n \"1234<56&\"\n  {}b\n   \"x\"\n"},
      {"<a b='1\r\n2&#13;&#10;&#9;3\t4'>1\r\n2\r3&#13;4<![CDATA[\r\n5]]></a>",
             "{}a\n @{}b=1 2\r\n\t3 4\n \"1\n2\n34\n5\"\n"},
      {"<!DOCTYPE a [<!ENTITY e 'v<b/>&#38;#13;w'><!ATTLIST a d CDATA 'def'>]><a>&e;</a>", "{}a\n @{}d=def\n \"vw\"\n  {}b\n"},
      {"\xEF\xBB\xBF<\u00E9 \u540D='\u20AC'>\U0001F600</\u00E9>", "{}\u00E9\n @{}\u540D=\u20AC\n \"\U0001F600\"\n"},
      {"\xFF\xFE<\0a\0>\0\xAC\x20\x3D\xD8\x00\xDE<\0/\0a\0>\0"s, "{}a\n \"\u20AC\U0001F600\"\n"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>", "{}a\n \"\u00E9\"\n"},
  };
  // clang-format on
  for (const auto& [bytes, outline] : cases) {
    CXmlDocument document;
    LoadBytes(document, bytes);
    EXPECT_EQ(Outline(document), outline) << bytes;
  }
}

TEST(ReadWideXml, KeepsSixteenBitsOfACharacter) {
  const CharacterTypeLocale locale("C.UTF-8");
  CXmlDocument document;
  document.LoadXml(L"<?xml version='1.0' encoding='UTF-16'?><\u00E9>\u20AC\U00010041</\u00E9>");
  EXPECT_EQ(Outline(document), "{}\u00E9\n \"\u20ACA\"\n");
  EXPECT_ZU_ERROR(CZuException, document.LoadXml(L"<?xml version='1.0' encoding='UTF-8'?><a/>"),
                  "encoding specified in XML declaration is incorrect at line 1", "");
}

TEST(ReadXmlInLocale, ConvertsNamesAndTexts) {
  const char* const xml = "<\u00E9 xmlns='u:\u00E9' \u540D='\u00E9\u20AC'>\u00E9\u20AC</\u00E9>";
  const auto read = [xml](const char* name) {
    const CharacterTypeLocale locale(name);
    CXmlDocument document;
    document.LoadXml(xml);
    EXPECT_EQ(document.LookupNamespaceFromAlias(""),
              document.GetDocumentElement()->GetNamespaceURI());
    return Outline(document);
  };
  EXPECT_EQ(read("C"), "{u:?}?\n @{}?=??\n \"??\"\n");
  if (CharacterTypeLocale("de_DE.ISO-8859-1").IsAvailable()) {
    EXPECT_EQ(read("de_DE.ISO-8859-1"), "{u:\xE9}\xE9\n @{}?=\xE9?\n \"\xE9?\"\n");
  }
  CEncoder::ASCII_ONLY = true;
  EXPECT_EQ(read("C"), "{u:\u00E9}\u00E9\n @{}\u540D=\u00E9\u20AC\n \"\u00E9\u20AC\"\n");
  CEncoder::ASCII_ONLY = false;
}

TEST(ReadXmlWithoutNamespaces, KeepsQualifiedNames) {
  CSerializationContext context;
  context.SetSchemaType(SchemaType::NoNamespaces);
  CXmlDocument document(context);
  document.LoadXml("<p:a xmlns:p='u:1' xmlns='u:2' q:x='1'/>");
  EXPECT_EQ(Outline(document), "{}p:a\n @{}xmlns:p=u:1\n @{}xmlns=u:2\n @{}q:x=1\n");
  EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "");
}

TEST(ReadXmlSections, KeepTheirMarksOnRequest) {
  CSerializationContext context;
  context.SetStripCDATA(false);
  CElement element("a");
  const char* const xml = "<a><b><![CDATA[1<2]]></b><b><![CDATA[]]></b></a>";
  element.CXmlObjectBase::FromXml(xml, context);
  EXPECT_EQ(element.GetElements()->Item(0)->GetText(), "<![CDATA[1<2]]>");
  EXPECT_EQ(element.ToXml(false, false, EOLType::Lf, context), xml);
}

TEST(Aliases, AreThoseDeclaredLast) {
  CXmlDocument document;
  document.LoadXml(
      "<a xmlns:p='u:1' xmlns='u:1'><b xmlns:p='u:2' xmlns:c='u:1'/><b xmlns=''/></a>");
  EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "u:2");
  EXPECT_EQ(document.LookupNamespaceFromAlias(""), "");
  EXPECT_EQ(document.LookupAliasFromNamespace("u:1"), "c");
  EXPECT_EQ(document.LookupAliasFromNamespace("u:3"), "");
}

/// Ten levels, each of ten times the one below: ten thousand million characters.
std::string EntityBomb() {
  std::string xml = "<!DOCTYPE a [<!ENTITY e0 'xxxxxxxxxx'>";
  for (int level = 1; level < 10; ++level) {
    const std::string reference = "&e" + std::to_string(level - 1) + ';';
    xml += "<!ENTITY e" + std::to_string(level) + " '" + Repeat(reference.c_str(), 10) + "'>";
  }
  return xml + "]>\n<a>&e9;</a>";
}

TEST(RefusedXml, TellsReasonAndLine) {
  // clang-format off
  const std::pair<std::string, const char*> cases[] = {
      {"<a>\n<b>\r\n</a>", "mismatched tag at line 3"},
      {"<a>\r\r&e;</a>", "undefined entity at line 3"},
      {"<a>\n<p:b/></a>", "unbound prefix at line 2"},
      {"<a xmlns='u|1'/>", "syntax error at line 1"},
      {"<a>\0</a>"s, "not well-formed (invalid token) at line 1"},
      {"<a>\xC0\x80</a>", "not well-formed (invalid token) at line 1"},
      {"<?xml version='1.0' encoding='x-none'?><a/>", "unknown encoding at line 1"},
      {EntityBomb(), "limit on input amplification factor (from DTD and entities) breached at line 2"},
  };
  // clang-format on
  for (const auto& [bytes, message] : cases) {
    CXmlDocument document;
    EXPECT_ZU_ERROR(CZuException, LoadBytes(document, bytes), message, "");
  }
}

TEST(RefusedXml, LeavesWhatWasBuilt) {
  CXmlDocument document;
  EXPECT_ZU_ERROR(CZuException, document.LoadXml("<a x='1'>2<b>3<c/>4</a>"),
                  "mismatched tag at line 1", "");
  EXPECT_EQ(Outline(document), "{}a\n @{}x=1\n \"2\"\n  {}b\n   \"34\"\n    {}c\n");
}

TEST(HostileXml, CutAnywhereIsRefused) {
  const std::string whole =
      "<?xml version='1.0' encoding='UTF-8'?>\n<!DOCTYPE p:a [<!ENTITY e 'x<y/>'><!ATTLIST y d "
      "CDATA '&lt;'>]>\n<p:a xmlns:p='u:1' \u00E9='&#x20AC;'><!-- c --><?i n?>\r\n&e;"
      "<b xmlns='u:2' p:c=\"'\">&#13;&amp;\u20AC</b><![CDATA[<>]]]]></p:a>";
  for (std::size_t length = 1; length < whole.size(); ++length) {
    CXmlDocument document;
    EXPECT_THROW(LoadBytes(document, whole.substr(0, length)), CZuException) << length;
  }
  CXmlDocument document;
  LoadBytes(document, whole);
}

TEST(HostileXml, MillionLevels) {
  constexpr int kLevels = 1000000;
  CXmlDocument document;
  document.LoadXml((Repeat("<a>", kLevels) + "x" + Repeat("</a>", kLevels)).c_str());
  const CXmlElement* innermost = document.GetDocumentElement();
  while (innermost->GetFirstElement() != nullptr)
    innermost = innermost->GetFirstElement();
  EXPECT_EQ(innermost->GetText(), "x");
  EXPECT_EQ(innermost->GetXPath().size(), 2u * kLevels);
  CElement element("a");
  EXPECT_ZU_ERROR(CZuValidationException, element.FromXmlElement(document.GetDocumentElement(), {}),
                  "The element [a] is nested too deeply, the limit is 1000.", Repeat("/a", 1001));
  EXPECT_THROW(document.LoadXml(Repeat("<a>", kLevels).c_str()), CZuException);
}

TEST(HostileXml, MillionSiblingsAndHundredThousandAttributes) {
  std::string xml = "<a";
  for (int i = 0; i < 100000; ++i)
    xml += " x" + std::to_string(i) + "='" + std::to_string(i) + '\'';
  CXmlDocument document;
  document.LoadXml((xml + '>' + Repeat("<b/>", 999999) + "<c/></a>").c_str());
  const CXmlElement& root = *document.GetDocumentElement();
  EXPECT_EQ(root.GetAttributes().size(), 100000u);
  EXPECT_EQ(root.GetAttribute("x99999", ""), "99999");
  const CXmlElement* last = root.GetFirstElement();
  for (int i = 1; i < 1000000; ++i)
    last = last->GetNextSiblingElement();
  EXPECT_EQ(last->GetXPath(), "/a/c");
  EXPECT_EQ(last->GetNextSiblingElement(), nullptr);
}

TEST(HostileXml, OpensNoOtherFile) {
  const std::string path = testing::TempDir() + "ZuXmlLib16ExternalEntity";
  std::ofstream(path) << "<!ENTITY e 'secret'><!ATTLIST a b CDATA 'secret'>secret";
  const std::string system = " SYSTEM 'file://" + path + "'";
  for (const std::string& xml : {"<!DOCTYPE a" + system + "><a>&e;</a>",
                                 "<!DOCTYPE a [<!ENTITY e" + system + ">]><a>&e;</a>",
                                 "<!DOCTYPE a [<!ENTITY % p" + system + "> %p;]><a>&e;</a>"}) {
    CXmlDocument document;
    document.LoadXml(xml.c_str());
    EXPECT_EQ(Outline(document), "{}a\n") << xml;
  }
  std::remove(path.c_str());
}

TEST(Text, LosesCarriageReturnsOfEntitiesToo) {
  CXmlDocument document;
  document.LoadXml("<!DOCTYPE a [<!ENTITY e 'p&#13;q&#13;'>]><a>&e;&#13;r</a>");
  EXPECT_EQ(document.GetDocumentElement()->GetText(), "pqr");
}

}  // namespace
}  // namespace ZuXmlLib16
