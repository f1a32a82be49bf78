#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/FastInfosetWriter.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/FailingAllocator.h"
#include "support/RandomTree.h"
#include "support/RandomValues.h"
#include "types/Item.h"

namespace ZuXmlLib16 {
namespace {

using Mode = CFastInfosetContext::TypedValueMode;

std::string Outline(const CBinaryData& document, const CSerializationContext& context) {
  const CSmartPtr<CElement> root(new CElement("unread"));
  root->FromXmlStream(document, context);
  return ZuXmlLib16::Outline(*root);
}

CBinaryData AsXml(const CElement& root, const CSerializationContext& context) {
  return root.ToXmlStream(true, false, XmlEncoding::Utf8, EOLType::Lf, context,
                          CompressionType::None);
}

CBinaryData AsFastInfoset(const CElement& root, const CSerializationContext& context,
                          CompressionType compression = CompressionType::None) {
  return root.ToFastInfosetStream(FInfoDecl::V10, context, compression);
}

TEST(FastInfosetRoundTrip, GivesTheSameTreeAsXml) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const auto configure = [](int seed, CSerializationContext& context) {
    if (seed % 2 == 0) return;
    // Random trees have elements without namespaces, which XML would take into a default one.
    context.GetNamespaceAliases().Add("p", "urn:1");
    context.GetFIContext().SetTypedValues(Mode::All);
    context.GetFIContext().SetMaxIndexedValues(static_cast<unsigned long>(seed));
    context.GetFIContext().SetMaxElementValueLength(4);
    context.GetFIContext().SetIndexAttributeValues(seed % 3 == 0);
  };
  for (int seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE(seed);
    CSerializationContext context;
    configure(seed, context);
    const CSmartPtr<CElement> root = RandomTree(static_cast<unsigned>(seed)).Make(1 + 5 * seed);
    const CBinaryData document = AsFastInfoset(*root, context);
    const std::string outline = Outline(document, context);
    EXPECT_EQ(outline, ZuXmlLib16::Outline(*root));
    EXPECT_EQ(outline, Outline(AsXml(*root, context), context));
    EXPECT_EQ(document, AsFastInfoset(*root, context)) << "not deterministic";
  }
}

TEST(FastInfosetRoundTrip, KeepsElementsOutOfTheDefaultNamespace) {
  const CharacterTypeLocale utf8("C.UTF-8");
  CSerializationContext context;
  context.SetDefaultNamespaceURI("urn:1");
  for (unsigned seed = 0; seed < 20; ++seed) {
    const CSmartPtr<CElement> root = RandomTree(seed).Make(40);
    EXPECT_EQ(Outline(AsFastInfoset(*root, context), context), ZuXmlLib16::Outline(*root)) << seed;
  }
}

TEST(FastInfosetRoundTrip, GoesThroughFilesAndCompression) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const CSerializationContext context;
  const CSmartPtr<CElement> root = RandomTree(1).Make(300);
  const std::string outline = ZuXmlLib16::Outline(*root);
  for (const CompressionType compression : {CompressionType::Gzip, CompressionType::Zlib}) {
    const CBinaryData document = AsFastInfoset(*root, context, compression);
    EXPECT_LT(document.GetLength(), AsFastInfoset(*root, context).GetLength());
    EXPECT_EQ(Outline(document, context), outline);
  }
  const std::string file = testing::TempDir() + "round-trip.finf";
  for (const CompressionType compression : {CompressionType::None, CompressionType::Gzip}) {
    root->ToFastInfosetFile(file.c_str(), FInfoDecl::None, context, compression);
    const CSmartPtr<CElement> read(new CElement("unread"));
    read->FromXmlFile(file.c_str(), context);
    EXPECT_EQ(ZuXmlLib16::Outline(*read), outline);
  }
  EXPECT_ZU_ERROR(
      CZuException,
      root->ToFastInfosetFile(file.c_str(), FInfoDecl::None, context, CompressionType::Zlib),
      "ZLIB Compression only available for To Stream methods.", "");
  EXPECT_ZU_ERROR(
      CZuException,
      root->ToFastInfosetFile("/dev/full", FInfoDecl::None, context, CompressionType::None),
      "Failed to write data to the file [/dev/full].", "");
  EXPECT_ZU_ERROR(CZuException,
                  root->ToFastInfosetStream(FInfoDecl{10}, context, CompressionType::None),
                  "Invalid Fast Infoset declaration [10].", "");
}

/// What write makes, read again.
class WrittenDocument {
 public:
  explicit WrittenDocument(const std::function<void(CFastInfosetWriter&)>& write,
                           const CSerializationContext& context = {})
      : m_document(context) {
    CBinaryStream stream;
    CFastInfosetWriter writer(stream, context.GetFIContext());
    writer.Open();
    write(writer);
    writer.Close();
    const CBinaryData data = stream.GetBinaryStream();
    m_document.LoadXmlStream(data.GetData(), data.GetLength());
  }

  const CXmlElement& Root() const { return *m_document.GetDocumentElement(); }

 private:
  CXmlDocument m_document;
};

template <ItemType type>
void ExpectValuesKept(RandomValues& values, const CSerializationContext& context) {
  std::vector<std::string> texts(20);
  detail::TextBuffer buffer;
  for (std::string& text : texts) {
    do {
      text = detail::Item<type>::Format(values.Next<type>(), buffer);
    } while (text.find_first_not_of("\t\n\x7F") == std::string::npos);
    for (char& c : text) {
      if (c != '\t' && c != '\n' && (c < ' ' || c > '~')) c = '?';  // strings hold any byte
    }
  }
  const WrittenDocument document(
      [&](CFastInfosetWriter& writer) {
        writer.WriteStartElement("a", "");
        for (const std::string& text : texts) {
          writer.WriteStartElement("b", "");
          writer.WriteAttributeString("c", "", text, type);
          writer.WriteString(text, type, false);
          writer.WriteEndElement();
        }
        writer.WriteEndElement();
      },
      context);
  const CXmlElement* element = document.Root().GetFirstElement();
  for (const std::string& text : texts) {
    EXPECT_EQ(element->GetText(), text) << detail::Item<type>::kCode;
    EXPECT_EQ(element->GetAttribute("c", ""), text) << detail::Item<type>::kCode;
    element = element->GetNextSiblingElement();
  }
}

TEST(FastInfosetRoundTrip, KeepsTheTextsOfValuesOfAllTypes) {
  RandomValues values(7);
  for (const Mode mode : {Mode::Text, Mode::Binary, Mode::All}) {
    CSerializationContext context;
    context.GetFIContext().SetTypedValues(mode);
    for (int type = 0; type < 29; ++type) {
      detail::VisitItem(static_cast<ItemType>(type),
                        [&](auto tag) { ExpectValuesKept<decltype(tag)::value>(values, context); });
    }
  }
}

TEST(FastInfosetRoundTrip, KeepsTypesAndSchemas) {
  const WrittenDocument document([](CFastInfosetWriter& writer) {
    writer.SetDefaultNamespace("urn:d");
    writer.WriteStartElement("a", "");
    // Nothing has declared the default namespace yet, and then it is too late for it.
    writer.WriteAttributeType("urn:d", "T", ItemType::string);
    writer.WriteInlineSchema("<s xmlns='urn:s' xml:lang='en'><t xmlns=''>\n<u/> v</t></s>");
    writer.WriteEndElement();
  });
  EXPECT_EQ(document.Root().GetAttribute("type", "http://www.w3.org/2001/XMLSchema-instance"),
            "AA:T");
  const CXmlElement* const schema = document.Root().GetFirstElement();
  EXPECT_EQ(schema->GetNamespaceURI(), "urn:s");
  EXPECT_EQ(schema->GetAttribute("lang", CXmlWriter::XML_NAMESPACE), "en");
  EXPECT_EQ(schema->GetFirstElement()->GetNamespaceURI(), "");
  EXPECT_EQ(schema->GetFirstElement()->GetText(), "\n v");
}

TEST(FastInfosetRoundTrip, TakesDepthAndWidth) {
  constexpr int kDepth = 100000;
  constexpr int kWidth = 20000;
  CSerializationContext context;
  context.GetFIContext().SetMaxDepth(kDepth + 1);
  const WrittenDocument document(
      [](CFastInfosetWriter& writer) {
        for (int i = 0; i < kDepth; ++i) {
          writer.WriteStartElement("a", "urn:a");
        }
        writer.WriteStartElement("b", "");
        for (int i = 0; i < kWidth; ++i) {
          const std::string number = std::to_string(i);
          writer.WriteAttributeString("c" + number, "urn:" + number, number, ItemType::ui4);
        }
        for (int i = 0; i < kDepth + 1; ++i) {
          writer.WriteEndElement();
        }
      },
      context);
  const CXmlElement* innermost = &document.Root();
  while (innermost->GetFirstElement() != nullptr) {
    innermost = innermost->GetFirstElement();
  }
  EXPECT_EQ(innermost->GetAttributes().size(), static_cast<std::size_t>(kWidth));
  EXPECT_EQ(innermost->GetAttribute("c19999", "urn:19999"), "19999");
}

TEST(FastInfosetRoundTrip, WritesNamesInFullWhenTheirTablesAreFull) {
  CSerializationContext context;
  CFIVocabulary& vocabulary = context.GetFIContext().GetVocabulary();
  for (unsigned long i = 0; i < CFIVocabulary::kMaxEntries; ++i) {
    const std::string text = "n" + std::to_string(i);
    vocabulary.GetPrefixNamesTable().Append(text);
    vocabulary.GetNamespaceNamesTable().Append(text);
    vocabulary.GetLocalNamesTable().Append(text);
  }
  const WrittenDocument document(
      [](CFastInfosetWriter& writer) {
        writer.WriteStartElement("a", "urn:a");
        for (int i = 0; i < 2; ++i) {
          writer.WriteStartElement("b", "urn:a");
          writer.WriteAttributeString("c", "urn:c", "d", ItemType::string);
          writer.WriteEndElement();
        }
        writer.WriteEndElement();
      },
      context);
  const CXmlElement* const second = document.Root().GetFirstElement()->GetNextSiblingElement();
  EXPECT_EQ(second->GetLocalName(), "b");
  EXPECT_EQ(second->GetNamespaceURI(), "urn:a");
  EXPECT_EQ(second->GetAttribute("c", "urn:c"), "d");
}

/// Writes a document with something of everything.
struct WritingAttempt {
  std::string operator()() {
    CSerializationContext context;
    CBinaryStream stream;
    CFastInfosetWriter writer(stream, context.GetFIContext());
    writer.Open();
    writer.AddNamespace("p", "urn:p");
    writer.WriteStartElement("a", "urn:p");
    writer.WriteAttributeString("b", "urn:b", "\xE2\x82\xAC", ItemType::string);
    writer.WriteInlineSchema("<s/>");
    writer.WriteString("AQID", ItemType::base64Binary, false);
    writer.WriteEndElement();
    writer.Close();
    return stream.GetBinaryStream().GetAsHexString();
  }
};

TEST(FastInfosetRoundTrip, SurvivesRunningOutOfMemory) {
  FailEveryAllocationOf<WritingAttempt>();
}

}  // namespace
}  // namespace ZuXmlLib16
