#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "ZuXmlLib16/PrimitiveCollections.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlTextWriter.h"
#include "support/ErrorMatch.h"
#include "support/FailingAllocator.h"
#include "support/PlainObject.h"

namespace ZuXmlLib16 {
namespace {

using WhitespaceRule = CWhitespaceUtils::WhitespaceRule;

const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

/// Facets by name; what is not named is not set.
struct Facets {
  const char* minInclusive = nullptr;
  long maxLength = -1;
};

/// A collection of elements "v" of "urn:v".
template <class Collection>
CSmartPtr<Collection> New(Facets facets = {}, std::int32_t minimum = 0, std::int32_t maximum = -1) {
  return new Collection("v", "urn:v", minimum, maximum, nullptr, -1, facets.maxLength,
                        facets.minInclusive, "", "", "", -1, -1, -1, WhitespaceRule::Collapse,
                        "last");
}

/// A writer that notes the type of every text.
class TypeWriter : public CXmlTextWriter {
 public:
  using CXmlTextWriter::CXmlTextWriter;
  void WriteString(CTextRef text, ItemType type, bool isDefault) override {
    types += std::to_string(static_cast<int>(type)) + (isDefault ? "! " : " ");
    CXmlTextWriter::WriteString(text, type, isDefault);
  }

  std::string types;
};

/// The collection as a document, and the types of its texts.
std::string Written(const CXmlTypeCollection& collection, std::string* types = nullptr) {
  CTextStream stream;
  TypeWriter writer(stream);
  writer.SetFormat(false);
  writer.SetDefaultNamespace("urn:v");
  writer.Open();
  writer.WriteStartElement("r", "urn:v");
  collection.ToXml_Int(&writer, false, "urn:ignored", kContext, false);
  writer.WriteEndElement();
  writer.Close();
  if (types != nullptr) *types = writer.types;
  return stream.CopyText();
}

/// What Written gives for these items.
std::string Document(const std::vector<std::string>& texts) {
  std::string xml = "<r xmlns=\"urn:v\"";
  if (texts.empty()) return xml + "/>";
  xml += '>';
  for (const std::string& text : texts) {
    xml += "<v>" + text + "</v>";
  }
  return xml + "</r>";
}

/// Reads a document's children into the collection.
/// @return the name of the child where reading ended, "" for none.
std::string Read(CXmlTypeCollection& collection, const std::string& xml,
                 const CSerializationContext& context = kContext) {
  CXmlDocument document;
  document.LoadXml(xml.c_str());
  CXmlElement* const root = document.GetDocumentElement();
  CXmlElement* const end = collection.FromXml_Int(root, root->GetFirstElement(), context, false);
  return end != nullptr ? end->GetLocalName() : "";
}

struct TypeCase {
  const char* name;
  CSmartPtr<CXmlTypeCollection> (*make)(Facets facets);
  int code;
  Facets facets;
  const char* read;
  const char* written;
  const char* refused;
  const char* error;
};

template <class Collection>
CSmartPtr<CXmlTypeCollection> Make(Facets facets) {
  return New<Collection>(facets);
}

// clang-format off
const TypeCase kTypes[] = {
    // name         made by                code  facets            read              written                  refused                 with
    {"i1",          Make<Ci1Col>,          3,    {"-3"},           " +7",            "7",                     "-4",                   "[-4]"},
    {"i2",          Make<Ci2Col>,          4,    {"-3"},           "0012",           "12",                    "-32768",               "[-32768]"},
    {"i4",          Make<Ci4Col>,          5,    {"-3"},           "9223372036854775807", "9223372036854775807", "-4",                "[-4]"},
    {"i8",          Make<Ci8Col>,          6,    {"-3"},           "-0",             "0",                     "-9223372036854775808", "[-9223372036854775808]."},
    {"ui1",         Make<Cui1Col>,         7,    {"3"},            "255",            "255",                   "2",                    "[2]"},
    {"ui2",         Make<Cui2Col>,         8,    {"3"},            "65535",          "65535",                 "2",                    "[2]"},
    {"ui4",         Make<Cui4Col>,         9,    {"3"},            "18446744073709551615", "18446744073709551615", "2",              "[2]"},
    {"ui8",         Make<Cui8Col>,         10,   {"3"},            "18446744073709551615", "18446744073709551615", "2",              "[2]."},
    {"r4",          Make<Cr4Col>,          11,   {"1"},            "1.50",           "1.5",                   "0.5",                  "[0.500000]"},
    {"r8",          Make<Cr8Col>,          12,   {"1"},            "INF",            "INF",                   "0.5",                  "[0.500000]"},
    {"duration",    Make<CdurationCol>,    13,   {"P2M"},          "P3M",            "P3M",                   "P1M",                  "[P1M]."},
    {"year",        Make<CyearCol>,        16,   {"2000"},         "2024Z",          "2024",                  "1999",                 "[1999]"},
    {"month",       Make<CmonthCol>,       17,   {"--03"},         "--04",           "--04",                  "--02",                 "[2]"},
    {"day",         Make<CdayCol>,         18,   {"---03"},        "---30",          "---30",                 "---02",                "[2]"},
    {"boolean",     Make<CbooleanCol>,     24,   {},               "TRUE",           "true",                  nullptr,                ""},
    {"string",      Make<CstringCol>,      23,   {nullptr, 8},     " a  &lt; \n b ", "a &lt; b",              "far too long",         "[far too long]."},
    {"decimal",     Make<CdecimalCol>,     25,   {"1.5"},          "+1.50",          "1.50",                  "1.49",                 "[1.49]."},
    {"integer",     Make<CintegerCol>,     26,   {"7"},            "123456789012345678901", "123456789012345678901", "6",             "[6]."},
    {"hexBinary",   Make<ChexBinaryCol>,   1,    {nullptr, 2},     "0aFF",           "0AFF",                  "010203",               "[010203]."},
    {"base64",      Make<Cbase64BinaryCol>, 2,   {nullptr, 2},     "AQI=",           "AQI=",                  "AQID",                 "[AQID]."},
    {"dateTime",    Make<CdatetimeCol>,    20,   {"2020-01-01T00:00:00"}, "2024-02-29T01:02:03Z", "2024-02-29T01:02:03Z", "2019-01-01T00:00:00", "[2019-01-01T00:00:00]."},
    {"date",        Make<CdateCol>,        20,   {"2020-01-01"},   "2024-02-29+01:00", "2024-02-29+01:00",    "2019-12-31",           "[2019-12-31]."},
    {"gYearMonth",  Make<CyearMonthCol>,   20,   {"2020-01"},      "2024-02",        "2024-02",               "2019-12",              "[2019-12]."},
    {"time",        Make<CtimeCol>,        20,   {"12:00:00"},     "13:00:00.50",    "13:00:00.5",            "11:00:00",             "[11:00:00]."},
    {"gMonthDay",   Make<CmonthDayCol>,    20,   {"--03-01"},      "--04-01",        "--04-01",               "--02-01",              "[--02-01]."},
};
// clang-format on

class PrimitiveCollection : public testing::TestWithParam<TypeCase> {};

TEST_P(PrimitiveCollection, ReadsAndWritesItsLexicalForm) {
  const auto collection = GetParam().make(GetParam().facets);
  const std::string text = GetParam().read;
  EXPECT_EQ(Read(*collection, Document({text, text})), "");
  std::string types;
  const std::string xml = Written(*collection, &types);
  EXPECT_EQ(xml, Document({GetParam().written, GetParam().written}));
  const std::string code = std::to_string(GetParam().code) + ' ';
  EXPECT_EQ(types, code + code);
  const auto again = GetParam().make(GetParam().facets);
  Read(*again, xml);
  EXPECT_EQ(Written(*again), xml);
}

TEST_P(PrimitiveCollection, RefusesWhatItsFacetsExclude) {
  if (GetParam().refused == nullptr) return;
  const auto collection = GetParam().make(GetParam().facets);
  const std::string refused = GetParam().refused;
  const std::string error = std::string("Invalid Value for v ") + GetParam().error;
  EXPECT_ZU_ERROR(CZuException, collection->AddFromString(refused), error, "");
  EXPECT_ZU_ERROR(CZuException, Read(*collection, Document({GetParam().read, refused})), error, "");
  EXPECT_EQ(Written(*collection), Document({GetParam().written}));
  GetParam().make({})->AddFromString(refused);
}

INSTANTIATE_TEST_SUITE_P(Types, PrimitiveCollection, testing::ValuesIn(kTypes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PrimitiveCollections, BooleansLieInBytes) {
  const auto collection = New<CbooleanCol>();
  Read(*collection, Document({"1", "FALSE"}));
  collection->AddAt(1, true);
  EXPECT_EQ(std::vector<int>(collection->begin(), collection->end()), (std::vector<int>{1, 1, 0}));
  EXPECT_EQ(Written(*collection), Document({"true", "true", "false"}));
  EXPECT_THROW(collection->AddFromString("yes"), CZuInvalidValueException);
}

TEST(PrimitiveCollections, ReadElementsOfTheirNameOnly) {
  CSerializationContext anyNamespace;
  anyNamespace.SetIgnoreNamespaces(true);
  const auto collection = New<Ci4Col>({}, 2, 2);
  const std::string foreign = "<r xmlns:v=\"urn:v\"><v:v>1</v:v><v>2</v><w>3</w></r>";
  EXPECT_EQ(Read(*collection, foreign), "v");
  EXPECT_EQ(collection->GetCount(), 1);
  EXPECT_FALSE(collection->IsValidCount(kContext));
  EXPECT_EQ(Read(*collection, foreign, anyNamespace), "w");
  EXPECT_EQ(collection->FromXml_Int(nullptr, nullptr, kContext, false), nullptr);
  // Beyond the maximum, too: the count is for the caller to check.
  EXPECT_ZU_ERROR(CZuValidationException, collection->ValidateCount(kContext),
                  "The Maximum number of [v] elements allowed in this collection is 2", "");
  collection->Clear();
  EXPECT_EQ(Written(*collection), Document({}));
  CXmlCollection& list = *collection;
  EXPECT_THROW(list.AppendItem(new PlainObject("v")), CZuInvalidParamException);
}

/// Notes every event: its kind, the value or index it names, and the count at that time.
template <class T>
class Recorder : public IEventSink {
 public:
  void OnEvent(CXmlObjectBase* sender, MsgType type, void* data) override {
    const bool isAddition = type == MsgType::Added || type == MsgType::AddComplete;
    static const char* const kinds[] = {"changed", "add:", "added:", "remove:", "removed:"};
    log += kinds[static_cast<int>(type)];
    if (data != nullptr) {
      log += isAddition ? Text(*static_cast<T*>(data)) : std::to_string(*static_cast<int*>(data));
    }
    auto& collection = dynamic_cast<CXmlCollection&>(*sender);
    log += "@" + std::to_string(collection.GetCount()) + " ";
    if (type == removesAt) collection.Remove(0);
  }
  /// The events of a call.
  std::string Of(const std::function<void()>& call) {
    log.clear();
    call();
    return log;
  }

  std::string log;
  MsgType removesAt = static_cast<MsgType>(-1);

 private:
  static std::string Text(long value) { return std::to_string(value); }
  static std::string Text(const std::string& value) { return value; }
  static std::string Text(const CDateTime& value) { return value.ToString(); }
};

TEST(PrimitiveCollectionEvents, AnnounceBeforeEveryTest) {
  const auto numbers = New<Ci4Col>({"0"});
  Recorder<long> recorder;
  numbers->AddEventListener(&recorder);
  struct Case {
    std::function<void()> call;
    const char* events;
    const char* error = nullptr;
  };
  const Case cases[] = {
      {[&] { numbers->Add(7); }, "add:7@0 added:7@1 changed@1 "},
      {[&] { numbers->AddFromString("8"); }, "add:8@1 added:8@2 changed@2 "},
      {[&] { numbers->AddAt(0, 6); }, "add:6@2 added:6@3 changed@3 "},
      {[&] { numbers->Remove(2); }, "remove:2@3 removed:0@2 changed@2 "},
      // The range comes before the facets.
      {[&] { numbers->AddAt(3, -1); }, "add:-1@2 ", "Index out of range"},
      {[&] { numbers->AddAt(-1, 1); }, "add:1@2 ", "Index out of range"},
      {[&] { numbers->Add(-1); }, "add:-1@2 ", "Invalid Value for v [-1]"},
      {[&] { numbers->Remove(2); }, "remove:2@2 ", "Index 2 is out of range, use 0 - 2"},
      {[&] { numbers->Remove(-1); }, "remove:@2 ", "Index -1 is out of range, use 0 - 2"},
      {[&] { numbers->Item(2); }, "", "Index 2 is out of range, use 0 - 2"},
      {[&] { numbers->Item(-1); }, "", "Index -1 is out of range, use 0 - 2"},
      {[&] { numbers->Clear(); },
       "remove:0@2 removed:0@1 changed@1 remove:0@1 removed:0@0 changed@0 "},
  };
  for (const Case& c : cases) {
    recorder.log.clear();
    std::string error;
    try {
      c.call();
    } catch (const CZuException& caught) {
      error = caught.GetMessage();
    }
    EXPECT_EQ(recorder.log, c.events);
    EXPECT_EQ(error, CTextRef(c.error));
  }
}

TEST(PrimitiveCollectionEvents, ComeOnceForDates) {
  const auto dates = New<CdateCol>({"2020-01-01"});
  Recorder<CDateTime> recorder;
  dates->AddEventListener(&recorder);
  const CDateTime date("2024-01-02");
  EXPECT_EQ(recorder.Of([&] { dates->Add(date); }),
            "add:2024-01-02@0 added:2024-01-02@1 changed@1 ");
  const CDateTime early("2019-01-02");
  EXPECT_EQ(recorder.Of([&] { EXPECT_THROW(dates->AddAt(9, early), CZuException); }),
            "add:2019-01-02@1 ");
  // Neither type nor facets are tested here, but the range is.
  EXPECT_EQ(recorder.Of([&] { dates->BaseAddAt(0, "10:00:00"); }),
            "add:10:00:00@1 added:10:00:00@2 changed@2 ");
  EXPECT_EQ(recorder.Of([&] { EXPECT_THROW(dates->BaseAddAt(3, early), CZuException); }),
            "add:2019-01-02@2 ");
  EXPECT_EQ(Written(*dates), Document({"10:00:00", "2024-01-02"}));
}

TEST(PrimitiveCollections, OfDatesTakeOneTypeOfDate) {
  struct Case {
    CSmartPtr<CdatetimeBaseCol> collection;
    const char* value;
    const char* type;
  };
  const Case cases[] = {
      {New<CdatetimeCol>({"2020-01-01T00:00:00"}), "2019-01-01", "dt_dateTime"},
      {New<CdateCol>({"2020-01-01"}), "10:00:00", "dt_date"},
      {New<CyearMonthCol>({"2020-01"}), "2019-01-01", "dt_gYearMonth"},
      {New<CtimeCol>({"12:00:00"}), "2019-01-01T10:00:00", "dt_time"},
      {New<CmonthDayCol>({"--12-01"}), "--11", "dt_gMonthDay"},
  };
  for (const Case& c : cases) {
    const std::string error = std::string("Dates added to this collection must be of type ");
    EXPECT_ZU_ERROR(CZuInvalidParamException, c.collection->AddAt(5, c.value), error + c.type, "");
    EXPECT_EQ(c.collection->GetCount(), 0);
  }
  EXPECT_ZU_ERROR(CZuInvalidParamException, New<CdateCol>()->AddFromString("2020-01"),
                  "Dates added to this collection must be of type dt_date", "");
}

TEST(PrimitiveCollections, BehaveAsAVectorUnderAnyMixOfChanges) {
  for (const bool isListening : {false, true}) {
    std::minstd_rand random(31);
    const auto strings = New<CstringCol>();
    Recorder<std::string> recorder;
    if (isListening) strings->AddEventListener(&recorder);
    std::vector<std::string> model;
    for (int step = 0; step < 3000; ++step) {
      const auto count = static_cast<int>(model.size());
      const int at = static_cast<int>(random() % 1000) % (count + 1);
      const auto action = random() % 100;
      if (action < 50) {
        const std::string value =
            action < 10 && count > 0 ? strings->Item(0) : std::string(action, 'x');
        strings->AddAt(at, value);
        model.insert(model.begin() + at, value);
      } else if (action == 99) {
        strings->Clear();
        model.clear();
      } else if (at < count) {
        const int index = action < 80 ? 0 : at;
        strings->Remove(index);
        model.erase(model.begin() + index);
      }
      ASSERT_EQ(std::vector<std::string>(strings->begin(), strings->end()), model) << step;
      ASSERT_EQ(strings->GetCount(), static_cast<int>(model.size()));
    }
  }
}

TEST(PrimitiveCollectionEvents, NameValuesThatAnotherListenerRemoves) {
  const std::string text(50, 'b');
  for (const auto trigger : {IEventSink::MsgType::Added, IEventSink::MsgType::AddComplete}) {
    const auto strings = New<CstringCol>();
    strings->Add(text);
    Recorder<std::string> remover;
    Recorder<std::string> recorder;
    remover.removesAt = trigger;
    strings->AddEventListener(&remover);
    strings->AddEventListener(&recorder);
    strings->AddAt(0, strings->Item(0));
    EXPECT_EQ(strings->GetCount(), 1);
    EXPECT_NE(recorder.log.find("added:" + text), std::string::npos);
  }
}

TEST(PrimitiveCollections, AllocateForTheArrayOnly) {
  CXmlDocument document;
  document.LoadXml(Document(std::vector<std::string>(5000, "12")).c_str());
  CXmlElement* const root = document.GetDocumentElement();
  const auto numbers = New<Cr8Col>();
  constexpr long kDoublings = 20;
  const AllocationWatch watch(kDoublings);
  numbers->FromXml_Int(root, root->GetFirstElement(), kContext, false);
  EXPECT_FALSE(watch.HasFailed());
  EXPECT_EQ(numbers->GetCount(), 5000);
}

enum class Colour : std::int16_t { Red = -1, Green = 300 };

std::string ColourToText(int value) {
  return value == static_cast<int>(Colour::Red) ? "red" : "green";
}

int TextToColour(const std::string& text) {
  if (text == "red") return static_cast<int>(Colour::Red);
  if (text == "green") return static_cast<int>(Colour::Green);
  throw CZuInvalidValueException("no colour");
}

TEST(EnumCollections, ReadAndWriteByTheirFunctions) {
  CXmlEnumCol<Colour> colours("v", "urn:v", 0, -1, ColourToText, TextToColour);
  EXPECT_EQ(Read(colours, Document({"green", "red"})), "");
  colours.AddAt(1, Colour::Green);
  std::string types;
  EXPECT_EQ(Written(colours, &types), Document({"green", "green", "red"}));
  EXPECT_EQ(types, "23 23 23 ");
  EXPECT_EQ(colours.Item(2), Colour::Red);
  EXPECT_THROW(colours.AddFromString(" red"), CZuInvalidValueException);
  EXPECT_THROW(colours.AddAt(4, Colour::Red), CZuInvalidParamException);
}

}  // namespace
}  // namespace ZuXmlLib16
