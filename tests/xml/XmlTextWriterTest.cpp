#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlTextWriter.h"
#include "support/ErrorMatch.h"
#include "support/FailingAllocator.h"

namespace ZuXmlLib16 {
namespace {

constexpr const char* kNotOpen = "Attributes must be added before elements";
constexpr const char* kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

/// A writer with its stream and short forms of its operations.
struct Writing {
  explicit Writing(XmlEncoding encoding = XmlEncoding::Utf8) : stream(encoding), writer(stream) {
    writer.Open();
  }

  Writing& Start(const char* name, const char* namespaceUri = "") {
    writer.WriteStartElement(name, namespaceUri);
    return *this;
  }
  Writing& Text(CTextRef text) {
    writer.WriteString(text, ItemType::string, false);
    return *this;
  }
  Writing& Attribute(CTextRef name, CTextRef value, const char* namespaceUri = "") {
    writer.WriteAttributeString(name, namespaceUri, value, ItemType::string);
    return *this;
  }
  Writing& End(int count = 1) {
    for (; count > 0; --count)
      writer.WriteEndElement();
    return *this;
  }

  CTextStream stream;
  CXmlTextWriter writer;
};

struct WriterCase {
  const char* name;
  void (*write)(Writing&);
  const char* expected;  // compact
};

class CompactOutput : public testing::TestWithParam<WriterCase> {};

TEST_P(CompactOutput, IsAsExpected) {
  Writing out;
  out.writer.SetFormat(false);
  GetParam().write(out);
  out.writer.Close();
  EXPECT_EQ(out.stream.CopyText(), GetParam().expected);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Writer, CompactOutput, testing::Values(
    WriterCase{"Text", [](Writing& out) { out.Start("a").Text("1<2>&\"'\t\x01\x7F\xC3\xA9").End(); },
               "<a>1&lt;2&gt;&amp;\"'\t\x01\x7F\xC3\xA9</a>"},
    WriterCase{"Attribute", [](Writing& out) { out.Start("a").Attribute("b", "1<2>&\"'\t\xC3\xA9").End(); },
               "<a b=\"1&lt;2&gt;&amp;&quot;'\t\xC3\xA9\"/>"},
    WriterCase{"LineEnds", [](Writing& out) { out.Start("a").Attribute("b", "x\r\ny\rz\n").Text("x\r\ny\rz\n").End(); },
               "<a b=\"x&#xA;yz&#xA;\">x\nyz\n</a>"},
    WriterCase{"EndsAtNul", [](Writing& out) {
                 out.Start("a").Attribute(std::string("b\0x", 3), std::string("1\0&", 3)).Text(std::string("2\0<", 3))
                     .Text(std::string("<![CDATA[\0x", 11)).End(); },
               "<a b=\"1\">2<![CDATA[</a>"},
    WriterCase{"SectionPassesThrough", [](Writing& out) { out.Start("a").Text("<![CDATA[1<2]]>&").End(); },
               "<a><![CDATA[1<2]]>&</a>"},
    WriterCase{"SectionFurtherInIsText", [](Writing& out) { out.Start("a").Text(" <![CDATA[x]]>").End(); },
               "<a> &lt;![CDATA[x]]&gt;</a>"},
    WriterCase{"Comment", [](Writing& out) { out.writer.WriteComment("a<b>\"&\r\n"); }, "<!--a&lt;b&gt;\"&amp;\n-->\n"},
    WriterCase{"DefaultTextIsLeftOut", [](Writing& out) {
                 out.Start("a"); out.writer.WriteString("x", ItemType::string, true); out.End(); }, "<a/>"},
    WriterCase{"DefaultTextOnRequest", [](Writing& out) {
                 out.writer.SetWriteDefaultElementValues(true);
                 out.Start("a"); out.writer.WriteString("x", ItemType::string, true); out.End(); }, "<a>x</a>"},
    WriterCase{"NothingOpen", [](Writing& out) { out.Text("x").End(2); }, ""},
    WriterCase{"HeadAndDirective", [](Writing& out) {
                 out.writer.WriteStartDocument(); out.writer.WriteHeaderDirective("<!DOCTYPE a>");
                 out.writer.WritePI("<?p a<b?>"); out.Start("a").End(); },
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE a>\n<?p a<b?>\n\n<a/>"},
    WriterCase{"SchemaAndCommentLeaveTheTagOpen", [](Writing& out) {
                 out.Start("a"); out.writer.WriteInlineSchema("<s/>"); out.writer.WriteComment("c"); out.End(); },
               "<a \n<s/>\n<!--c-->\n/>"},
    WriterCase{"AllocatedPerElement", [](Writing& out) {
                 out.Start("r").Start("a", "u:1").Start("b", "u:1").Start("c", "u:2").End(3).Start("a", "u:1").End(2); },
               "<r><AA:a xmlns:AA=\"u:1\"><AA:b><AB:c xmlns:AB=\"u:2\"/></AA:b></AA:a><AA:a xmlns:AA=\"u:1\"/></r>"},
    WriterCase{"UsedPrefixIsSkipped", [](Writing& out) {
                 out.writer.AddNamespace("AA", "u:1"); out.Start("a", "u:2").Attribute("x", "", "u:3").End(); },
               "<AB:a xmlns:AB=\"u:2\" xmlns:AA=\"u:1\" xmlns:AC=\"u:3\" AC:x=\"\"/>"},
    WriterCase{"RootDeclarationsInOrderOfUri", [](Writing& out) {
                 out.writer.SetDefaultNamespace("u:0"); out.writer.AddNamespace("p", "u:9"); out.writer.AddNamespace("q", "u:1");
                 out.Start("a", "u:0").Start("b", "u:9").Attribute("x", "", "u:1").End().Start("c").End(2); },
               "<a xmlns=\"u:0\" xmlns:q=\"u:1\" xmlns:p=\"u:9\"><p:b q:x=\"\"/><c/></a>"},
    WriterCase{"AttributeInDefaultNamespaceNeedsPrefix", [](Writing& out) {
                 out.writer.SetDefaultNamespace("u:0"); out.Start("a", "u:0").Attribute("x", "1", "u:0").Attribute("y", "2", "u:0").End(); },
               "<a xmlns=\"u:0\" xmlns:AA=\"u:0\" AA:x=\"1\" AA:y=\"2\"/>"},
    WriterCase{"UriIsEscaped", [](Writing& out) {
                 out.writer.AddNamespace("p", "u?a&b"); out.Start("a", "u\"<>").Attribute("x", "", "u&").End(); },
               "<AA:a xmlns:AA=\"u&quot;&lt;&gt;\" xmlns:p=\"u?a&amp;b\" xmlns:AB=\"u&amp;\" AB:x=\"\"/>"},
    WriterCase{"LaterDeclarationTakesThePrefix", [](Writing& out) {
                 out.writer.AddNamespace("p", "u:1"); out.writer.AddNamespace("p", "u:2"); out.writer.AddNamespace("q", "u:2");
                 out.Start("a", "u:2").Attribute("x", "", "u:1").End(); },
               "<q:a xmlns:q=\"u:2\" xmlns:AA=\"u:1\" AA:x=\"\"/>"},
    WriterCase{"UnusablePrefixesAreIgnored", [](Writing& out) {
                 for (const char* prefix : {"", "xml", "xmlns"}) out.writer.AddNamespace(prefix, "u:1");
                 out.writer.AddNamespace("x", CXmlWriter::XML_NAMESPACE);
                 out.Start("a", "u:1").Attribute("lang", "en", CXmlWriter::XML_NAMESPACE.c_str()).End(); },
               "<AA:a xmlns:AA=\"u:1\" xml:lang=\"en\"/>"},
    WriterCase{"DeclaredInAnElementWritesNothing", [](Writing& out) {
                 out.Start("r"); out.writer.AddNamespace("p", "u:1"); out.writer.SetDefaultNamespace("u:2");
                 out.Start("a", "u:1").Start("b", "u:2").End(3).writer.Close(); },
               "<r><p:a><b/></p:a></r>"},
    WriterCase{"RedeclaredInAnOpenElement", [](Writing& out) {
                 out.Start("r"); out.writer.AddNamespace("p", "u:1"); out.Attribute("x", "", "u:1");
                 out.writer.AddNamespace("p", "u:2"); out.Attribute("y", "", "u:1").Attribute("z", "", "u:2").End(); },
               "<r p:x=\"\" xmlns:AA=\"u:1\" AA:y=\"\" p:z=\"\"/>"},
    WriterCase{"DeclaredInsideFreesAndTakesPrefixes", [](Writing& out) {
                 out.Start("r", "u:1"); out.writer.AddNamespace("q", "u:1"); out.Start("a", "u:2").End();
                 out.writer.AddNamespace("q", "u:3"); out.Start("b", "u:1").Start("c", "u:3").End(3); },
               "<AA:r xmlns:AA=\"u:1\"><AA:a xmlns:AA=\"u:2\"/><AA:b xmlns:AA=\"u:1\"><q:c/></AA:b></AA:r>"},
    WriterCase{"TypeOfNewNamespaceHasTwoBlanks", [](Writing& out) {
                 out.Start("a"); out.writer.WriteAttributeType("u:t", "T", ItemType::string); out.End(); },
               "<a xmlns:AA=\"u:t\"  xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:type=\"AA:T\"/>"},
    WriterCase{"TypeInKnownAndDefaultNamespace", [](Writing& out) {
                 out.writer.AddNamespace("xsi", kSchemaInstance); out.writer.SetDefaultNamespace("u:d");
                 out.Start("a", "u:d"); out.writer.WriteAttributeType("u:d", "T", ItemType::string);
                 out.writer.AddNamespace("t", "u:t"); out.Start("b", "u:d");
                 out.writer.WriteAttributeType("u:t", "T", ItemType::string); out.writer.WriteAttributeNil(); out.End(2); },
               "<a xmlns=\"u:d\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"T\">"
               "<b xsi:type=\"t:T\" xsi:nil=\"true\"/></a>"}),
    [](const auto& tested) { return tested.param.name; });
// clang-format on

TEST(FormattedOutput, IndentsTagsAndKeepsTextOnItsLine) {
  const auto write = [](EOLType eol, const char* indent) {
    Writing out(XmlEncoding::Utf16);
    out.writer.SetEOLType(eol);
    out.writer.SetIndentChars(indent);
    out.writer.WriteStartDocument();
    out.Start("r").Start("a").Text("x\ny").End().Start("b").Start("c").End(2);
    out.Start("mixed").Text("t").Start("d").End(2).Start("e").writer.WriteRawElement("/>raw");
    out.End(2).writer.Close();
    return out.stream.CopyText();
  };
  const std::string expected =
      "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<r>\n\t<a>x\ny</a>\n\t<b>\n\t\t<c/>\n\t</b>\n"
      "\t<mixed>t\t\t<d/>\n\t</mixed>\n\t<e/>raw\n/>\n</r>\n";
  EXPECT_EQ(write(EOLType::Lf, "\t"), expected);
  std::string other;
  for (const char character : expected)
    other += character == '\n' ? "\r\n" : character == '\t' ? " \t " : std::string(1, character);
  EXPECT_EQ(write(EOLType::CrLf, " \t "), other);
}

TEST(Escaping, FindsSpecialsAtEveryPlaceOfARun) {
  // Runs are scanned in blocks, so every offset and length counts.
  const std::string specials("&<>\"\r\n", 6);
  for (std::size_t length = 1; length < 50; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      std::string text(length, 'x');
      text[place] = specials[(length + place) % specials.size()];
      Writing out;
      out.Start("a").Attribute("b", text).Text(text).End();
      CXmlDocument document;
      document.LoadXml(out.stream.GetText());
      if (text[place] == '\r') text.erase(place, 1);
      ASSERT_EQ(document.GetDocumentElement()->GetText(), text);
      ASSERT_EQ(document.GetDocumentElement()->GetAttribute("b", ""), text);
    }
  }
}

TEST(Prefixes, AreDistinctAndReadable) {
  std::set<std::string> seen;
  for (int i = 0; i < 26 * 26 + 26 * 26 * 26 + 1; ++i)
    EXPECT_TRUE(seen.insert(CXmlWriter::NsIntToString(i)).second) << i;
  const std::pair<int, const char*> cases[] = {{0, "AA"},   {25, "AZ"},   {26, "BA"},
                                               {675, "ZZ"}, {676, "AAA"}, {18252, "AAAA"}};
  for (const auto& [index, prefix] : cases)
    EXPECT_EQ(CXmlWriter::NsIntToString(index), prefix);
}

TEST(Context, InsertsAPrefixOnlyWhenAskedForAReference) {
  CXmlWriter::CXmlWriterContext root("r", "", "u:0", {{"u:1", "p"}}, nullptr);
  EXPECT_EQ(root.FindPrefix("u:2"), nullptr);
  EXPECT_EQ(root.GetNamespaceMapValue("u:2"), "");
  EXPECT_EQ(root.GetNamespaceMap().size(), 2u);
  EXPECT_EQ(root.FindPrefix("u:2"), nullptr) << "an empty prefix is none";
}

TEST(WriterErrors, AttributesNeedAnOpenStartTag) {
  const auto refuses = [](Writing& out) {
    EXPECT_ZU_ERROR(CZuException, out.Attribute("x", "1"), kNotOpen, "");
    EXPECT_ZU_ERROR(CZuException, out.writer.WriteAttributeNil(), kNotOpen, "");
    EXPECT_ZU_ERROR(CZuException, out.writer.WriteAttributeType("u", "T", ItemType::string),
                    kNotOpen, "");
  };
  Writing out;
  refuses(out);
  refuses(out.Start("a").Text("x"));
  refuses(out.Start("b").Start("c").End());
  refuses(out.End(2));
  EXPECT_EQ(out.stream.CopyText(), "<a>x\t<b>\n\t\t<c/>\n\t</b>\n</a>\n")
      << "refused without a trace";
}

TEST(WriterErrors, OfTheDocumentsOutline) {
  Writing out;
  out.writer.SetEOLType(EOLType::CrLf);
  EXPECT_ZU_ERROR(CZuException, out.writer.SetEOLType(static_cast<EOLType>(2)), "Invalid EOL type.",
                  "");
  EXPECT_EQ(out.writer.GetEOLType(), EOLType::CrLf);
  out.Start("a").Start("b").End();
  EXPECT_ZU_ERROR(CZuException, out.writer.Close(), "An Element has not been closed.", "");
  out.End().writer.Close();
  EXPECT_ZU_ERROR(CZuException, out.writer.WriteHeaderDirective("<!DOCTYPE a>"),
                  "Headed directives must appear before an Element has been added.", "");
}

TEST(Flushing, KeepsTheBufferSmall) {
  class CountingStream : public CTextStream {
   public:
    CountingStream() : CTextStream(XmlEncoding::Utf8) {}
    void Flush() override {
      largest = std::max(largest, GetLength());
      m_buffer.Empty();
    }
    std::size_t largest = 0;
  };
  CountingStream stream;
  CXmlTextWriter writer(stream);
  writer.WriteStartElement("r", "");
  for (int i = 0; i < 1000; ++i) {
    writer.WriteStartElement("item", "");
    writer.WriteString("0123456789", ItemType::string, false);
    writer.WriteEndElement();
  }
  EXPECT_GT(stream.largest, 4095u);
  EXPECT_LT(stream.largest, 4095u + 64u);
}

TEST(DeepOutput, NeedsNoDeepStack) {
  Writing out;
  out.writer.SetFormat(false);
  for (int depth = 0; depth < 1000000; ++depth)
    out.Start("a");
  EXPECT_ZU_ERROR(CZuException, out.writer.Close(), "An Element has not been closed.", "");
}  // the writer goes with all of its elements open

TEST(LackOfMemory, LeavesTheOpenElements) {
  const std::string name(100, 'n');        // longer than any string holds without memory
  for (const int closedBefore : {0, 2}) {  // closed elements are used again
    for (long index = 0;; ++index) {
      Writing out;
      out.writer.SetFormat(false);
      out.Start("r");
      for (int i = 0; i < closedBefore; ++i)
        out.Start("c").End();
      bool hasFailed = false;
      try {
        const AllocationWatch watch(index);
        out.Start(name.c_str(), "u:1");
        out.End();
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
      EXPECT_ZU_ERROR(CZuException, out.writer.Close(), "An Element has not been closed.", "");
      if (!hasFailed) break;
    }
  }
}

}  // namespace
}  // namespace ZuXmlLib16
