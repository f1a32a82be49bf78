#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/Zip.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/FailingAllocator.h"
#include "support/RandomTree.h"

namespace ZuXmlLib16 {
namespace {

constexpr const char* kXsi = "http://www.w3.org/2001/XMLSchema-instance";

void LoadBytes(CXmlDocument& document, const std::string& bytes) {
  document.LoadXmlStream(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string Compressed(const std::string& text, CompressionType type) {
  CBinaryData data;
  data.Append(text);
  CZuZip::CompressData(data, type, true);
  return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

/// A path for a file that goes with the scope.
class TemporaryPath {
 public:
  TemporaryPath()
      : m_path(testing::TempDir() + "ZuXmlLib16XmlDocumentTest." + std::to_string(getpid())) {}
  TemporaryPath(const TemporaryPath&) = delete;
  TemporaryPath& operator=(const TemporaryPath&) = delete;
  ~TemporaryPath() { std::remove(m_path.c_str()); }

  const char* Get() const { return m_path.c_str(); }
  void Fill(const std::string& bytes) const { std::ofstream(m_path, std::ios::binary) << bytes; }

 private:
  std::string m_path;
};

TEST(Loaders, AgreeAndDropWhatWasLoadedBefore) {
  const std::string xml = "<p:a xmlns:p='u:1' b='1'>2<c/></p:a>";
  const std::wstring wide(xml.begin(), xml.end());
  const TemporaryPath file;
  file.Fill(xml);
  const std::string compressed = Compressed(xml, CompressionType::Zlib) + "behind the end";
  const std::function<void(CXmlDocument&)> loads[] = {
      [&](CXmlDocument& document) { document.LoadXml(xml.c_str()); },
      [&](CXmlDocument& document) { document.LoadXml(wide.c_str()); },
      [&](CXmlDocument& document) { LoadBytes(document, compressed); },
      [&](CXmlDocument& document) { document.Load(file.Get()); }};
  for (const auto& load : loads) {
    CXmlDocument document;
    document.LoadXml("<old xmlns:q='u:old'>text</old>");
    load(document);
    EXPECT_EQ(Outline(document), "{u:1}a\n @{}b=1\n \"2\"\n  {}c\n");
    EXPECT_EQ(document.LookupNamespaceFromAlias("q"), "");
  }
}

TEST(Loaders, RefuseNothing) {
  CXmlDocument document;
  document.LoadXml("<old/>");
  const char* const noString = "XML String is empty!";
  EXPECT_ZU_ERROR(CZuException, document.LoadXml(""), noString, "");
  EXPECT_EQ(document.GetDocumentElement(), nullptr);
  for (const wchar_t* wide : {static_cast<const wchar_t*>(nullptr), L""})
    EXPECT_ZU_ERROR(CZuException, document.LoadXml(wide), noString, "");
  const unsigned char byte = '<';
  EXPECT_ZU_ERROR(CZuException, document.LoadXmlStream(&byte, 0), "XML Stream is empty!", "");
  EXPECT_ZU_ERROR(CZuException, document.LoadXmlStream(nullptr, 1), "XML Stream is empty!", "");
}

TEST(FileErrors, NameTheFile) {
  const TemporaryPath file;
  const std::string name = file.Get();
  CXmlDocument document;
  EXPECT_ZU_ERROR(CZuException, document.Load(file.Get()),
                  "Failed to open the file [" + name + "].", "");
  EXPECT_ZU_ERROR(CZuException, document.Load(nullptr), "Failed to open the file [].", "");
  file.Fill("");
  EXPECT_ZU_ERROR(CZuException, document.Load(file.Get()),
                  "Failed to read the contents of the file [" + name + "] Error [0]", "");
  file.Fill("<a/>");
  std::filesystem::remove(name);
  std::filesystem::create_directories(name + "/something");
  EXPECT_ZU_ERROR(CZuException, document.Load(file.Get()),
                  "Failed to read the contents of the file [" + name + "] Error [21]", "");
  std::filesystem::remove_all(name);
}

TEST(SizeLimit, HoldsForEveryLoader) {
  const std::string xml = "<a>" + std::string(93, 'x') + "</a>";
  const std::wstring wide = L"<a>" + std::wstring(43, L'x') + L"</a>";
  const TemporaryPath file;
  file.Fill(xml);
  CSerializationContext context;
  CXmlDocument document(context);
  const std::function<void()> loads[] = {
      [&] { document.LoadXml(xml.c_str()); }, [&] { LoadBytes(document, xml); },
      [&] { LoadBytes(document, Compressed(xml, CompressionType::Zlib)); },
      [&] { document.Load(file.Get()); }, [&] { document.LoadXml(wide.c_str()); }};
  for (const auto& load : loads) {
    context.SetMaxDocumentSize(99);
    EXPECT_ZU_ERROR(CZuException, load(), "The document is larger than the limit of 99 bytes.", "");
    for (const unsigned long limit : {0UL, 100UL}) {
      context.SetMaxDocumentSize(limit);
      EXPECT_NO_THROW(load());
    }
  }
}

TEST(SizeLimit, StopsABombBeforeItFillsMemory) {
  constexpr std::size_t kLimit = 1 << 20;
  const std::string bomb =
      Compressed("<a>" + std::string(64 << 20, ' ') + "</a>", CompressionType::Gzip);
  CSerializationContext context;
  context.SetMaxDocumentSize(kLimit);
  CXmlDocument document(context);
  const AllocationWatch watch;
  EXPECT_ZU_ERROR(CZuException, LoadBytes(document, bomb),
                  "The document is larger than the limit of 1048576 bytes.", "");
  EXPECT_LE(watch.GetLargest(), kLimit + 1);
}

TEST(DamagedInput, NamesItsDamage) {
  const std::string whole = Compressed("<a>damaged sooner or later</a>", CompressionType::Gzip);
  const auto causeOf = [](const std::string& bytes) {
    try {
      CXmlDocument document;
      LoadBytes(document, bytes);
    } catch (const CZuException& error) {
      EXPECT_EQ(error.GetMessage(), "not well-formed (invalid token) at line 1");
      return error.GetInnerException() ? error.GetInnerException()->GetMessage() : "none";
    }
    return std::string("not refused");
  };
  EXPECT_EQ(causeOf("\x1F"), "none");
  EXPECT_EQ(causeOf(whole.substr(0, whole.size() - 1)),
            "The compressed data is damaged: unexpected end of data");
}

TEST(Builder, MakesATree) {
  CXmlDocument document;
  document.EndElement();  // nothing is open
  CXmlElement* const root = document.AddChildElement("", "a");
  CXmlElement* const child = document.AddChildElement("u:1", "b");
  document.AddElementAttribute(child, "x", "1", "u:2");
  document.AppendTextExcludingCR(child, "\r1\r\n2\r3\n", 7);
  document.AppendTextExcludingCR(child, "4\0x", 3);
  document.AppendTextExcludingCR(child, nullptr);
  document.EndElement();
  document.AddElementAttribute(root, "y", "2", "");
  document.AddChildElement("", "c");
  EXPECT_EQ(Outline(document), "{}a\n @{}y=2\n  {u:1}b\n   @{u:2}x=1\n   \"1\n234\"\n  {}c\n");
  const char* const noElement = "The Property [element] is mandatory, it may node be NULL";
  EXPECT_ZU_ERROR(CZuInvalidParamException, document.AppendTextExcludingCR(nullptr, "x"), noElement,
                  "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, document.AddElementAttribute(nullptr, "x", "", ""),
                  noElement, "");
  document.AddDocElement("", "new");
  EXPECT_EQ(Outline(document), "{}new\n") << "the first tree is gone";
}

TEST(Elements, AreTakenOffTheEnd) {
  CXmlDocument document;
  CXmlElement& root = *document.AddDocElement("", "a");
  EXPECT_EQ(root.RemoveLastChildElement(), nullptr);
  for (const char* name : {"b", "c", "d"})
    root.CreateNewChildElement()->SetElementName(name);
  const std::unique_ptr<CXmlElement> last(root.RemoveLastChildElement());
  EXPECT_EQ(last->GetLocalName(), "d");
  const std::unique_ptr<CXmlElement> second(root.RemoveLastChildElement());
  EXPECT_EQ(root.GetFirstElement()->GetNextSiblingElement(), nullptr);
  root.CreateNewChildElement()->SetElementName("e");
  EXPECT_EQ(Outline(document), "{}a\n  {}b\n  {}e\n");
}

TEST(Paths, CountElementsOfOneQName) {
  CXmlDocument document;
  document.LoadXml(
      "<a xmlns:p='u:1' p:z=''><b/><p:b q:y='' x='' xmlns:q='u:1'/><b><c xmlns='u:2'/><c "
      "xmlns='u:3'/></b></a>");
  std::string paths;
  std::vector<const CXmlElement*> pending{document.GetDocumentElement()};
  while (!pending.empty()) {
    const CXmlElement* const element = pending.back();
    pending.pop_back();
    if (element == nullptr) continue;
    paths += element->GetXPath() + ' ';
    for (const CXmlAttribute* attribute : element->GetAttributes())
      paths += attribute->GetXPath() + ' ';
    pending.insert(pending.end(), {element->GetNextSiblingElement(), element->GetFirstElement()});
  }
  EXPECT_EQ(paths,
            "/a /a/p:@z /a/b[1] /a/p:b /a/p:b/p:@y /a/p:b/@x /a/b[2] /a/b[2]/c[1] /a/b[2]/c[2] ");
}

TEST(Attributes, OfInstancesAreKnown) {
  CXmlDocument document;
  CXmlElement* const root = document.AddDocElement("", "a");
  for (const char* namespaceUri : {kXsi, "http://www.w3.org/2000/xmlns/", "u:1"}) {
    for (const char* name :
         {"xmlns", "type", "schemaLocation", "noNamespaceSchemaLocation", "nil", "x"})
      root->AddAttribute(name, "", namespaceUri);
  }
  std::string kinds;
  for (const CXmlAttribute* attribute : root->GetAttributes())
    kinds += attribute->IsNamespaceAttribute() ? 'n' : attribute->IsNilAttribute() ? '0' : '-';
  EXPECT_EQ(kinds, "nnnn0-nnnn0-------");
}

std::string filtered;
bool DiscardUpperCase(CXmlElement* element) {
  filtered += element->GetLocalName() + element->GetText() + ' ';
  if (element->GetLocalName() == "throw") throw CZuException("from the filter");
  return element->GetLocalName() < "a";
}

TEST(Filter, SeesEveryElementCompleteAndDiscards) {
  filtered.clear();
  CXmlDocument document(DiscardUpperCase);
  document.LoadXml("<R>0<A x='1'>1<b>2</b><C>3</C></A><d>4<E/><f>5</f><G/>6</d><H/></R>");
  EXPECT_EQ(filtered, "b2 C3 A1 E f5 G d46 H R0 ");
  EXPECT_EQ(Outline(document), "{}R\n \"0\"\n  {}d\n   \"46\"\n    {}f\n     \"5\"\n");
  EXPECT_ZU_ERROR(CZuException, document.LoadXml("<a>x<b/><throw/><c/></a>"), "from the filter",
                  "");
  EXPECT_EQ(Outline(document), "{}a\n \"x\"\n  {}b\n  {}throw\n");
}

long ResidentKilobytes() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

constexpr int kItems = 200000;
std::string ManyItems() {
  std::string xml = "<a>";
  for (int i = 0; i < kItems; ++i)
    xml += "<b c='" + std::to_string(i) + "'><d>" + std::string(200, 'x') + "</d></b>";
  return xml + "</a>";
}

int itemsSeen = 0;
long residentAtFirst = 0;
bool DiscardItems(CXmlElement* element) {
  if (element->GetLocalName() != "b") return false;
  if (itemsSeen++ == 1000) residentAtFirst = ResidentKilobytes();
  // The tenth item from the end shows what all others left behind.
  if (itemsSeen == kItems - 10) {
    EXPECT_LT(ResidentKilobytes() - residentAtFirst, 4096);
  }
  return true;
}
bool DiscardEverySecondItem(CXmlElement* element) {
  return element->GetLocalName() == "b" && itemsSeen++ % 2 == 1;
}

TEST(Filter, StreamsALongDocumentInBoundedMemory) {
  itemsSeen = 0;
  CXmlDocument document(DiscardItems);
  document.LoadXml(ManyItems().c_str());
  EXPECT_EQ(itemsSeen, kItems);
  EXPECT_EQ(document.GetDocumentElement()->GetFirstElement(), nullptr);
}

TEST(Filter, KeepsEverySecondOfManyItems) {
  itemsSeen = 0;
  CXmlDocument document(DiscardEverySecondItem);
  document.LoadXml(ManyItems().c_str());  // takes hours if discarding walks the siblings
  int expected = 0;
  for (const CXmlElement* item = document.GetDocumentElement()->GetFirstElement(); item != nullptr;
       item = item->GetNextSiblingElement(), expected += 2)
    ASSERT_EQ(item->GetAttribute("c", ""), std::to_string(expected));
  EXPECT_EQ(expected, kItems);
}

class RoundTrip : public testing::Test {
 protected:
  ~RoundTrip() override { CXmlObjectBase::AsyncToXmlFile(false); }

  void ExpectFileReadsBack(bool direct, CompressionType compression) {
    CXmlObjectBase::AsyncToXmlFile(direct);
    m_tree->ToXmlFile(m_path.Get(), true, m_prettyPrint, XmlEncoding::Utf8, m_eol, m_context,
                      compression);
    ExpectReadsBack([this](CElement& copy) { copy.FromXmlFile(m_path.Get(), m_context); });
  }
  template <class Read>
  void ExpectReadsBack(Read read) {
    CElement copy("");
    read(copy);
    EXPECT_EQ(Outline(copy), Outline(*m_tree));
  }

  const CharacterTypeLocale m_locale{"C.UTF-8"};
  const CSerializationContext m_context;
  const TemporaryPath m_path;
  CSmartPtr<CElement> m_tree;
  bool m_prettyPrint = false;
  EOLType m_eol = EOLType::Lf;
};

TEST_F(RoundTrip, GivesTheSameTreeWhateverTheForm) {
  constexpr unsigned kSeed = 1712;
  RandomTree random(kSeed);
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
    m_tree = random.Make(100 + 5 * round);
    m_prettyPrint = round % 2 == 0;
    m_eol = round % 4 < 2 ? EOLType::Lf : EOLType::CrLf;
    const std::string xml = m_tree->ToXml(round % 3 == 0, m_prettyPrint, m_eol, m_context);
    ExpectReadsBack([&](CElement& copy) { copy.FromXml(xml.c_str()); });
    for (const CompressionType compression :
         {CompressionType::None, CompressionType::Gzip, CompressionType::Zlib})
      ExpectReadsBack([&](CElement& copy) {
        copy.FromXmlStream(m_tree->ToXmlStream(true, m_prettyPrint, XmlEncoding::Utf8, m_eol,
                                               m_context, compression),
                           m_context);
      });
    ExpectReadsBack([&](CElement& copy) { copy.FromXmlElement(m_tree.Get(), m_context); });
    CXmlDocument document;
    document.LoadXml(xml.c_str());
    ExpectReadsBack(
        [&](CElement& copy) { copy.FromXmlElement(document.GetDocumentElement(), m_context); });
    ExpectFileReadsBack(false, CompressionType::None);
    ExpectFileReadsBack(true, CompressionType::None);
    ExpectFileReadsBack(true, CompressionType::Gzip);
    if (testing::Test::HasFailure()) break;
  }
}

TEST_F(RoundTrip, ReportsFullDisks) {
  m_tree = RandomTree(6).Make(2000);
  const auto write = [this](bool direct, CompressionType compression) {
    CXmlObjectBase::AsyncToXmlFile(direct);
    m_tree->ToXmlFile("/dev/full", false, true, XmlEncoding::Utf8, m_eol, m_context, compression);
  };
  const std::string text = "Failed to write data to the file";
  const std::string named = text + " [/dev/full].";
  EXPECT_ZU_ERROR(CZuException, write(false, CompressionType::None), named, "");
  EXPECT_ZU_ERROR(CZuException, write(true, CompressionType::Gzip), named, "");
  EXPECT_ZU_ERROR(CZuException, write(true, CompressionType::None), text, "");
}

constexpr const char* kSmallXml =
    "<?xml version='1.0'?><p:first-name xmlns:p='urn:a-rather-long-namespace' p:attribute='a value "
    "beyond small strings'><child xmlns='urn:another-long-namespace'><![CDATA[character data, and "
    "more of it]]></child><child/>some text &amp; more of the text</p:first-name>";

/// Everything that reading does, from the bytes to a path.
struct ReadsDocument {
  CSerializationContext context;
  CXmlDocument document{DiscardNone, context};
  std::string compressed = Compressed(kSmallXml, CompressionType::Gzip);

  static bool DiscardNone(CXmlElement* /*element*/) { return false; }

  std::string operator()() {
    context.SetStripCDATA(false);
    LoadBytes(document, compressed);
    const CXmlElement& root = *document.GetDocumentElement();
    return Outline(document) + root.GetText() + root.GetFirstElement()->GetXPath();
  }
};

struct FailsToRead {
  CXmlDocument document;
  std::string operator()() {
    try {
      document.LoadXml("<element-of-some-length>text of some length</>");
    } catch (const CZuException& error) {
      return error.GetMessage();
    }
    return "";
  }
};

template <bool direct>
struct Writes {
  CElement element{"long-enough-a-name"};
  CSerializationContext context;
  TemporaryPath file;

  std::string operator()() {
    element.FromXml(kSmallXml);
    CXmlObjectBase::AsyncToXmlFile(direct);
    element.ToXmlFile(file.Get(), true, true, XmlEncoding::Utf8, EOLType::Lf, context,
                      CompressionType::None);
    const std::string text = element.ToXml(false, true, EOLType::CrLf, context);
    const CBinaryData bytes = element.ToXmlStream(true, true, XmlEncoding::Utf8, EOLType::Lf,
                                                  context, CompressionType::Gzip);
    CElement copy("x");
    copy.FromXmlStream(bytes, context);
    return text + Outline(*copy.Clone());
  }
};

TEST(LackOfMemory, ComesOutAsAnExceptionAndPasses) {
  FailEveryAllocationOf<ReadsDocument>();
  FailEveryAllocationOf<FailsToRead>();
  FailEveryAllocationOf<Writes<false>>();
  FailEveryAllocationOf<Writes<true>>();
  CXmlObjectBase::AsyncToXmlFile(false);
}

}  // namespace
}  // namespace ZuXmlLib16
