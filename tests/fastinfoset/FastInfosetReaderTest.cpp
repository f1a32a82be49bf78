#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "fastinfoset/FastInfosetReaderCursor.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/FailingAllocator.h"
#include "support/RandomTree.h"

namespace ZuXmlLib16 {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr const char* kFailed = "Failed to parse FastInfoset. ";
const std::string kStart = "\xE0\0\0\1"s;

std::string FileContent(const std::string& name) {
  std::ifstream file(fs::path(ZUXMLLIB16_TEST_DATA) / "fast-infoset" / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Sample {
  std::string name, expect;
};

std::vector<Sample> Samples() {
  std::istringstream index(FileContent("index.tsv"));
  std::string line;
  std::getline(index, line);
  std::vector<Sample> samples;
  while (std::getline(index, line)) {
    std::istringstream fields(line);
    Sample sample;
    std::getline(std::getline(fields, sample.name, '\t'), sample.expect, '\t');
    samples.push_back(sample);
  }
  EXPECT_GT(samples.size(), 100U);
  return samples;
}

/// Octets of a whole document from hexadecimal digits behind the identification and, between
/// apostrophes, characters.
std::string Octets(const std::string& notation) {
  std::string octets = kStart;
  for (std::size_t at = 0; at < notation.size(); ++at) {
    if (notation[at] == '\'') {
      const std::size_t end = notation.find('\'', at + 1);
      octets += notation.substr(at + 1, end - at - 1);
      at = end;
    } else if (notation[at] != ' ') {
      octets += static_cast<char>(std::stoi(notation.substr(at++, 2), nullptr, 16));
    }
  }
  return octets;
}

void Load(CXmlDocument& document, const std::string& octets) {
  document.LoadXmlStream(reinterpret_cast<const unsigned char*>(octets.data()), octets.size());
}

std::string OutlineOf(const std::string& octets, const CSerializationContext& context = {}) {
  CXmlDocument document(context);
  Load(document, octets);
  return Outline(document);
}

/// @return the message, "" when the document is read.
std::string FailureOf(const std::string& octets) {
  try {
    CXmlDocument document;
    Load(document, octets);
  } catch (const CZuException& failure) {
    const bool isFastInfoset = failure.GetMessage().find(kFailed) == 0;
    EXPECT_EQ(failure.GetPath().find("octet "), isFastInfoset ? 0 : std::string::npos);
    return failure.GetMessage().substr(0, failure.GetMessage().find("\nPath: "));
  }
  return "";
}

class FastInfosetReader : public testing::Test {
 protected:
  const CharacterTypeLocale m_locale{"C.UTF-8"};
};

TEST_F(FastInfosetReader, GivesTheTreeOfTheXmlTwin) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    const std::string octets = FileContent(sample.name + ".finf");
    if (sample.expect == "equal") {
      EXPECT_EQ(OutlineOf(octets), OutlineOf(FileContent(sample.name + ".xml")));
    } else {
      EXPECT_EQ(FailureOf(octets), kFailed + "Unknown external vocabulary [urn:vocab:code]."s);
    }
  }
}

TEST_F(FastInfosetReader, RefusesEveryTruncationAndSurvivesEveryDamagedOctet) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    const std::string octets = FileContent(sample.name + ".finf");
    const std::size_t start = octets.find(kStart);
    if (octets.size() > 400 || start == std::string::npos) continue;
    for (std::size_t size = start + 4; size < octets.size() && sample.expect == "equal"; ++size) {
      EXPECT_EQ(FailureOf(octets.substr(0, size)), kFailed + "Unexpected end of the document."s);
    }
    for (std::size_t at = start + 4; at < octets.size(); ++at) {
      for (const int change : {0x01, 0x40, 0x80, 0xFF}) {
        std::string damaged = octets;
        damaged[at] = static_cast<char>(damaged[at] ^ change);
        const std::string failure = FailureOf(damaged);
        EXPECT_TRUE(failure.empty() || failure.rfind(kFailed, 0) == 0) << failure;
      }
    }
  }
}

TEST_F(FastInfosetReader, LeavesEverythingElseToTheXmlParser) {
  const std::string content = "\0\x3C\0a\xFF"s;
  const std::string declaration = "<?xml version='1.0' encoding='finf' standalone='no'?>";
  EXPECT_EQ(OutlineOf(declaration + kStart + content), "{}a\n");
  for (const std::string& start :
       {"\xE0\0\0\2"s, "\xE0\0\1"s, "\xEF\xBB\xBF"s + kStart, declaration + "\n" + kStart,
        "<?xml version=\"1.0\" encoding=\"finf\"?>" + kStart, declaration, declaration + "<a/>"}) {
    const std::string failure = FailureOf(start + content);
    EXPECT_NE(failure.find(" at line "), std::string::npos) << failure;
  }
}

struct TextCase {
  const char* octets;
  const char* expected;
};

TEST_F(FastInfosetReader, TellsWhatIsWrong) {
  const TextCase cases[] = {
      {"00 3C 00'a'FF 00", "Data after the end of the document."},
      {"00 F0", "The document has no document element."},
      {"00 3C 00'a'F0 3C 00'a'FF", "Invalid octet [0x3C] at offset 9."},
      {"00 82 00'pen'F0", "Invalid octet [0x82] at offset 5."},
      {"00 3C 00'a'F0 C4 F0 F0", "Invalid octet [0xC4] at offset 9."},
      {"00 C4 F0 C4 F0 3C 00'a'FF", "Invalid octet [0xC4] at offset 7."},
      {"00 C4 FF", "Invalid octet [0xFF] at offset 6."},
      {"00 38 CD 00'u'FF", "Invalid octet [0xFF] at offset 9."},
      {"00 38 F0 40 00'a'FF", "Invalid octet [0x40] at offset 7."},
      {"00 3E 00'p'00'a'FF", "Invalid octet [0x3E] at offset 5."},
      {"00 3C 00'a'F1", "Invalid octet [0xF1] at offset 8."},
      {"00 3C 00'a'B8 10", "Invalid octet [0x10] at offset 9."},
      {"80", "Invalid octet [0x80] at offset 4."},
      {"02 02", "Invalid octet [0x02] at offset 5."},
      {"20 20 00", "Invalid octet [0x20] at offset 5."},
      {"20 00 02 00 02 00 00", "Invalid octet [0x02] at offset 8."},
      {"00 00", "Invalid index [1] for the ELEMENT NAME table."},
      {"00 3D 81 00'a'FF", "Invalid index [2] for the NAMESPACE NAME table."},
      {"00 7C 00'a'03", "Invalid index [4] for the ATTRIBUTE NAME table."},
      {"00 7C 00'a'78 00'b'80", "Invalid index [1] for the ATTRIBUTE VALUE table."},
      {"00 3C 00'a'B8 0F FF FF", "Invalid index [1311760] for the CONTENT CHARACTER CHUNK table."},
      {"00 E2 80", "Invalid index [1] for the OTHER STRING table."},
      {"00 3C 63 FF FF FF FF'a'", "Invalid octet [0x63] at offset 6."},
      {"00 3C 60 FF FF FF FF'a'", "Unexpected end of the document."},
      {"00 3C 00'a'82 00'a'C0 AF F0", "Invalid UTF-8 string."},
      {"00 3C 00'a'85 D8 3D FF", "Invalid UTF-16 string."},
      {"00 3C 00'a'86 00 DC 3D D8 FF", "Invalid UTF-16 string."},
      {"00 3C 00'a'80 00 FF", "Invalid character."},
      {"00 3C 00'a'82 00 EF BF BF FF", "Invalid character."},
      {"00 3C 02'a>b'FF", "Invalid name [a>b]."},
      {"00 7C 00'a'78 04'xmlns'00'u'FF F0", "Invalid name [xmlns]."},
      {"00 3D 1C'http://www.w3.org/2000/xmlns/'00'a'FF", "Invalid name [a]."},
      {"00 38 CF 02'xml'00'u'F0 3C 00'a'FF", "Invalid declaration of the prefix [xml]."},
      {"00 38 CF 00'p'00'u'CF 81 00'v'F0 3C 00'a'FF", "Duplicate attribute [xmlns:p]."},
      {"00 7C 00'a'7B 00'p'00'u'00'b'FF 7B 00'q'81 81 FF F0", "Duplicate attribute [b]."},
      {"00 3C 00'a'88 08 00 FF", "Unknown restricted alphabet [3]."},
      {"00 3C 00'a'88 00 F0 FF", "Invalid restricted alphabet string."},
      {"00 3C 00'a'88 01 0F FF FF", "Invalid restricted alphabet string."},
      {"20 08 00 00 00'a'", "Invalid restricted alphabet string."},
      {"00 3C 00'a'8C 28 00 FF", "Unknown encoding algorithm [11]."},
      {"00 3C 00'a'8C 14 4F FF", "Invalid boolean string."},
      {"00 3C 00'a'8C 0C 00 FF", "Invalid value for INT byte encoding."},
  };
  for (const TextCase& c : cases) {
    EXPECT_EQ(FailureOf(Octets(c.octets)), std::string(kFailed) + c.expected) << c.octets;
  }
}

TEST_F(FastInfosetReader, FollowsTheOptionsOfTheContext) {
  // <p:a xmlns:p='u' p:b='c'>1 CR <![CDATA[2]]></p:a>
  const std::string octets =
      Octets("00 78 CF 00'p'00'u'F0 3F 81 81 00'a'7B 81 81 00'b'00'c'F0 81'1'0D 8C 24'2'FF");
  EXPECT_EQ(OutlineOf(octets), "{u}a\n @{u}b=c\n \"12\"\n");
  CSerializationContext context;
  context.SetStripCDATA(false);
  context.SetSchemaType(SchemaType::NoNamespaces);
  EXPECT_EQ(OutlineOf(octets, context), "{}p:a\n @{}xmlns:p=u\n @{}p:b=c\n \"1<![CDATA[2]]>\"\n");
  for (const SchemaType type :
       {SchemaType::NoNamespaces, CSerializationContext().GetSchemaType()}) {
    context.SetSchemaType(type);
    CXmlDocument document(context);
    Load(document, octets);
    const bool hasNamespaces = type != SchemaType::NoNamespaces;
    EXPECT_EQ(document.LookupNamespaceFromAlias("p"), hasNamespaces ? "u" : "");
  }
}

TEST_F(FastInfosetReader, SharesTextsWithElementsThatAreDiscarded) {
  CXmlDocument document([](CXmlElement* element) { return element->GetLocalName() == "x"; });
  // <a><x y='value'>text</x><b y='value'>text</b>; the filter drops x
  Load(document, Octets("00 3C 00'a'7C 00'x'78 00'y'44'value'F0 92 01'text'F0"
                        "7C 00'b'00 80 F0 A0 FF F0"));
  EXPECT_EQ(Outline(document), "{}a\n  {}b\n   @{}y=value\n   \"text\"\n");
}

TEST_F(FastInfosetReader, TakesAnExternalVocabularyFromTheContext) {
  CSerializationContext context;
  CFIVocabulary& vocabulary = context.GetFIContext().GetVocabulary();
  vocabulary.AddElement("p", "u", "a");
  vocabulary.AddElementValue("one");
  vocabulary.AddAttribute("", "", "b");
  vocabulary.AddAttributeValue("two");
  const std::string byIndex = "40 00 80 F0 A0 FF";
  EXPECT_EQ(OutlineOf(Octets("00" + byIndex), context), "{u}a\n @{}b=two\n \"one\"\n");
  context.GetFIContext().SetExternalVocabularyURI("urn:v");
  EXPECT_EQ(OutlineOf(Octets("20 10 00 04'urn:v'" + byIndex), context),
            "{u}a\n @{}b=two\n \"one\"\n");
  CXmlDocument document(context);
  EXPECT_ZU_ERROR(CZuException, Load(document, Octets("00" + byIndex)),
                  kFailed + "Invalid index [1] for the ELEMENT NAME table."s, "octet 6");
}

TEST(FastInfosetReaderLocale, ConvertsToTheLocalCharacterSet) {
  const CharacterTypeLocale locale("de_DE.ISO-8859-1");
  if (!locale.IsAvailable()) GTEST_SKIP() << "no such locale on this system";
  CXmlDocument document;  // an e with an acute accent everywhere, and a euro sign in the text
  Load(document, Octets("00 7C 01 C3 A9 78 80 41 C3 A9 F0 86 01 00 E9 20 AC FF"));
  const CXmlElement& root = *document.GetDocumentElement();
  EXPECT_EQ(root.GetLocalName(), "\xE9");
  EXPECT_EQ(root.GetAttribute("\xE9", ""), "\xE9");
  EXPECT_EQ(root.GetText(), "\xE9?");
}

TEST(FastInfosetLimits, HoldForNestingAndExpansion) {
  CSerializationContext context;
  CXmlDocument document(context);
  const std::string deep = Octets("20 00 82 00 00'a'00 00 00") + std::string(1000000, '\0');
  EXPECT_ZU_ERROR(CZuException, Load(document, deep), kFailed + "The nesting depth exceeds 10000."s,
                  "octet 10014");
  // A text of 64 KiB, and a million octets that repeat it in the same element.
  const std::string bomb =
      Octets("00 3C 00'a'93 00 00 FE FD") + std::string(65536, 'x') + std::string(1000000, '\xA0');
  context.SetMaxDocumentSize(20000000);
  const AllocationWatch watch;
  EXPECT_ZU_ERROR(CZuException, Load(document, bomb),
                  kFailed + "The document expands to more than 20000000 bytes."s, "octet 65854");
  EXPECT_LE(watch.GetLargest(), 2U * 20000000);
  context.SetMaxDocumentSize(0);
  context.GetFIContext().SetMaxExpansion(1);
  EXPECT_ZU_ERROR(CZuException, Load(document, bomb),
                  kFailed + "The document expands to more than 67108864 bytes."s, "octet 66572");
}

TEST(FastInfosetLimits, TablesStopGrowingAtTheirLast) {
  // Attributes of more values than the table takes, the last one by index 2^20.
  std::string octets = Octets("20 00 83 01 00'a'00'b'00 00 00 00 00 01 00");
  for (int i = 1; i <= 0x100000 + 10; ++i) {
    const char value[] = {0x40, 0x00, 0x40, i == 0x100000 ? 'z' : 'y', '\xFF'};
    octets.append(value, sizeof(value));
  }
  octets += "\x40\x00\xEF\xDF\xBF\xFF\xFF"s;
  CXmlDocument document;
  Load(document, octets);
  const CXmlElement* last = document.GetDocumentElement()->GetFirstElement();
  while (last->GetNextSiblingElement() != nullptr) {
    last = last->GetNextSiblingElement();
  }
  EXPECT_EQ(last->GetAttribute("b", ""), "z");
}

TEST(FastInfosetLimits, ManyAttributesTakeNoQuadraticTime) {
  std::string octets = Octets("00 7C 00'a'");
  for (int i = 0; i < 100000; ++i) {
    const std::string name = "n" + std::to_string(100000 + i);
    octets += "\x78\x06" + name + "\xFF";
  }
  EXPECT_EQ(FailureOf(octets + "\xFF\xF0"), "");
  EXPECT_EQ(FailureOf(octets + "\x00\xFF\xFF\xF0"s), kFailed + "Duplicate attribute [n100000]."s);
}

struct LoadWithVocabulary {
  std::string operator()() {
    Load(document, Octets("20 08 90 00 02'abc'00 00'e'00 02'old'7C 00'a'78 00'b'43'text'F0"
                          "98 3C 1B A0 86 01 00 E9 00 EA 3C 81 FF F0"));
    return Outline(document);
  }
  CXmlDocument document;
};

TEST(FastInfosetFaults, FailedAllocationsComeOutAndLeakNothing) {
  FailEveryAllocationOf<LoadWithVocabulary>();
}

TEST(FastInfosetIndices, HaveTheirFormsAtEveryBoundary) {
  using Cursor = detail::FastInfosetCursor;
  constexpr auto kBit2 = &Cursor::IndexOnBit2;
  constexpr auto kBit3 = &Cursor::IndexOnBit3;
  constexpr auto kBit4 = &Cursor::IndexOnBit4;
  struct {
    std::string octets;
    std::uint32_t (Cursor::*decode)(unsigned int);
    std::uint32_t expected;
  } const cases[] = {
      {"\x3F"s, kBit2, 64},
      {"\x40\x00"s, kBit2, 65},
      {"\x5F\xFF"s, kBit2, 8256},
      {"\x60\0\0"s, kBit2, 8257},
      {"\x6F\xDF\xBF"s, kBit2, 1 << 20},
      {"\x1F"s, kBit3, 32},
      {"\x20\x00"s, kBit3, 33},
      {"\x27\xFF"s, kBit3, 2080},
      {"\x28\0\0"s, kBit3, 2081},
      {"\x2F\xFF\xFF"s, kBit3, 526368},
      {"\x30\0\0\0"s, kBit3, 526369},
      {"\x30\x07\xF7\xDF"s, kBit3, 1 << 20},
      {"\x0F"s, kBit4, 16},
      {"\x10\x00"s, kBit4, 17},
      {"\x13\xFF"s, kBit4, 1040},
      {"\x14\0\0"s, kBit4, 1041},
      {"\x17\xFF\xFF"s, kBit4, 263184},
      {"\x18\0\0\0"s, kBit4, 263185},
      {"\x18\x0B\xFB\xEF"s, kBit4, 1 << 20},
  };
  for (const auto& [octets, decode, expected] : cases) {
    Cursor cursor(octets);
    EXPECT_EQ((cursor.*decode)(cursor.Octet()), expected);
    EXPECT_TRUE(cursor.IsAtEnd());
  }
}

}  // namespace
}  // namespace ZuXmlLib16
