#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include "ZuXmlLib16/Version.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectBase.h"
#include "support/ErrorMatch.h"
#include "support/PlainObject.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

const CSerializationContext& kDefault = CSerializationContext::m_defaultContext;
constexpr auto kUtf8 = XmlEncoding::Utf8;
constexpr auto kLf = EOLType::Lf;

/// A path that no other run of the tests uses.
std::string FilePath() {
  return testing::TempDir() + "XmlObjectBaseTest." + std::to_string(getpid());
}

TEST(ReferenceCount, LastReleaseDeletesAndBelowZeroNothing) {
  const int before = PlainObject::living;
  auto* const object = new PlainObject("a");
  EXPECT_EQ(object->Release(), -1);
  EXPECT_EQ(object->AddRef(), 0);
  EXPECT_EQ(object->AddRef(), 1);
  EXPECT_EQ(PlainObject::living, before + 1);
  EXPECT_EQ(object->Release(), 0);
  EXPECT_EQ(PlainObject::living, before);
}

TEST(SmartPtr, CountsOneReferenceForEachOwner) {
  const int before = PlainObject::living;
  CSmartPtr<PlainObject> first(new PlainObject("a"));
  CSmartPtr<PlainObject>& self = first;
  first = self;
  first.Reset(first.Get());
  CSmartPtr<CXmlObjectBase> base = first;
  CSmartPtr<PlainObject> moved = std::move(first);
  EXPECT_EQ(moved->AddRef(), 3);
  EXPECT_EQ(moved->Release(), 2);
  first = CSmartPtr<PlainObject>(new PlainObject("b"));
  EXPECT_EQ(PlainObject::living, before + 2);
  first = moved;
  EXPECT_EQ(PlainObject::living, before + 1);
  first = moved = nullptr;
  base = nullptr;
  EXPECT_EQ(PlainObject::living, before);
}

TEST(EntryPoints, ZlibIsForStreamsOnly) {
  const CElement element("a");
  const std::string file = FilePath();
  constexpr auto kZlib = CompressionType::Zlib;
  const std::function<void()> writers[] = {
      [&] { element.ToXmlFile(file.c_str(), false, false, kUtf8, kLf, kDefault, kZlib); },
      [&] { element.ToJsonFile(file.c_str(), false, kUtf8, kLf, kDefault, kZlib); },
      [&] { element.ToFastInfosetFile(file.c_str(), FInfoDecl::None, kDefault, kZlib); },
  };
  CGeneratorVersion::Declare(16, 0);  // looked at later than the kind of compression
  for (const auto& write : writers) {
    EXPECT_ZU_ERROR(CZuException, write(), "ZLIB Compression only available for To Stream methods.",
                    "");
  }
  CGeneratorVersion::Declare(16, 1);
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(EntryPoints, RefuseMissingInput) {
  CElement element("kept");
  EXPECT_ZU_ERROR(CZuException, element.FromXmlStream(CBinaryData(), kDefault),
                  "XML Stream is empty!", "");
  const char* const isNull = "The Property [element] is mandatory, it may node be NULL";
  const CXmlElement* const noElement = nullptr;
  EXPECT_ZU_ERROR(CZuInvalidParamException, element.FromXmlElement(noElement, kDefault), isNull,
                  "");
  const CElement* const noUntyped = nullptr;
  EXPECT_ZU_ERROR(CZuInvalidParamException, element.FromXmlElement(noUntyped, kDefault), isNull,
                  "");
}

struct EntryPoint {
  const char* name;
  void (*call)(CElement& element, const char* file);
};

constexpr auto kPlain = CompressionType::None;
unsigned char noBytes[1];

// Arguments are bad on purpose: the version is looked at first.
// clang-format off
constexpr EntryPoint kEntryPoints[] = {
    {"ToXml", [](CElement& e, const char*) { e.ToXml(false, false, kLf, kDefault); }},
    {"ToXmlStream", [](CElement& e, const char*) { e.ToXmlStream(false, false, kUtf8, kLf, kDefault, kPlain); }},
    {"ToXmlFile", [](CElement& e, const char* file) { e.ToXmlFile(file, false, false, kUtf8, kLf, kDefault, kPlain); }},
    {"ToXmlFileDirect", [](CElement& e, const char* file) {
       CXmlObjectBase::AsyncToXmlFile(true);
       e.ToXmlFile(file, false, false, kUtf8, kLf, kDefault, kPlain);
     }},
    {"FromXml", [](CElement& e, const char*) { e.FromXml("", kDefault); }},
    {"FromXmlOneArgument", [](CElement& e, const char*) { e.FromXml("<a/>"); }},
    {"FromXmlWide", [](CElement& e, const char*) { e.FromXml(L"", kDefault); }},
    {"FromXmlFile", [](CElement& e, const char* file) { e.FromXmlFile(file, kDefault); }},
    {"FromXmlBytes", [](CElement& e, const char*) { e.FromXmlStream(noBytes, 0, kDefault); }},
    {"FromXmlStream", [](CElement& e, const char*) { e.FromXmlStream(CBinaryData("<a/>"), kDefault); }},
    {"FromXmlElement", [](CElement& e, const char*) { e.FromXmlElement(static_cast<CXmlElement*>(nullptr), kDefault); }},
    {"FromUntypedNull", [](CElement& e, const char*) { e.FromXmlElement(static_cast<CElement*>(nullptr), kDefault); }},
    {"FromUntyped", [](CElement& e, const char*) { e.FromXmlElement(&e, kDefault); }},
    {"ToJson", [](CElement& e, const char*) { e.ToJson(false, kLf, kDefault); }},
    {"ToJsonStream", [](CElement& e, const char*) { e.ToJsonStream(false, kUtf8, kLf, kDefault, kPlain); }},
    {"ToJsonFile", [](CElement& e, const char* file) { e.ToJsonFile(file, false, kUtf8, kLf, kDefault, kPlain); }},
    {"FromJson", [](CElement& e, const char*) { e.FromJson("", kDefault); }},
    {"FromJsonWide", [](CElement& e, const char*) { e.FromJson(L"", kDefault); }},
    {"FromJsonFile", [](CElement& e, const char* file) { e.FromJsonFile(file, kDefault); }},
    {"FromJsonBytes", [](CElement& e, const char*) { e.FromJsonStream(noBytes, 0, kDefault); }},
    {"FromJsonStream", [](CElement& e, const char*) { e.FromJsonStream(CBinaryData(), kDefault); }},
    {"ToFastInfosetStream", [](CElement& e, const char*) { e.ToFastInfosetStream(FInfoDecl::None, kDefault, kPlain); }},
    {"ToFastInfosetFile", [](CElement& e, const char* file) { e.ToFastInfosetFile(file, FInfoDecl::None, kDefault, kPlain); }},
};
// clang-format on

TEST(VersionMismatch, IsRefusedWithOneBannerOnBothStreams) {
  const std::string file = FilePath();
  for (const EntryPoint& entry : kEntryPoints) {
    SCOPED_TRACE(entry.name);
    CElement element("kept");
    CGeneratorVersion::Declare(16, 0);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_ZU_ERROR(CZuException, entry.call(element, file.c_str()),
                    "Wrong Version (Velmar Runtime: v16.1, Generator: v16.0)", "");
    const CElement madeLater("silently");  // only the first object of a process speaks
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string err = testing::internal::GetCapturedStderr();
    CXmlObjectBase::AsyncToXmlFile(false);
    CGeneratorVersion::Declare(16, 1);
    EXPECT_EQ(out,
              "\n-----------------Version Mismatch-----------------\n"
              "Velmar XML 2018 - Version Mismatch Error\n"
              "Please ensure your generated code is the same version as this library (Velmar "
              "Runtime: v16.1, Generator: v16.0).\n");
    EXPECT_EQ(err, out);
    EXPECT_EQ(element.GetName(), "kept");
  }
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(Choice, HelpersKeepTheSelection) {
  PlainObject object("o");
  const auto setValid = [](bool valid) {
    return [=](std::string& s) { CXmlObjectBase::Choice_SetElementValid(valid, "m", s); };
  };
  const auto select = [](CXmlObjectBase* value) {
    return [=](std::string& s) { CXmlObjectBase::Choice_SelectElement("m", value, s); };
  };
  const auto changed = [](long count) {
    return [=](std::string& s) { CXmlObjectBase::Choice_CollectionChanged("m", count, s); };
  };
  struct Case {
    const char* name;
    std::function<void(std::string&)> help;
    const char* selected;
    std::string expected;  // the selection afterwards, or what the error calls the property
    bool isRefused = false;
  };
  // clang-format off
  const Case cases[] = {
      {"valid", setValid(true), "m", "m"},
      {"valid, none yet",  setValid(true),  "",  "",    true},  // strict on purpose
      {"valid, another", setValid(true), "x", "x", true}, {"invalid", setValid(false), "m", ""},
      {"invalid, another", setValid(false), "x", ""},
      {"select, none yet", select(&object), "", "m"},
      {"select, another", select(&object), "x", "[x]", true},
      {"null, none yet", select(nullptr), "", "m"}, {"null, selected", select(nullptr), "m", ""},
      {"null, another", select(nullptr), "x", "x"}, {"items, none yet", changed(1), "", "m"},
      {"items, another", changed(1), "x", "[x]", true}, {"none, selected", changed(0), "m", ""},
      {"none, another", changed(0), "x", "x"},
  };
  // clang-format on
  const char* const alreadySet =
      " is already set. Only one element within this class bay be set at a time";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string selected = c.selected;
    if (c.isRefused) {
      EXPECT_ZU_ERROR(CZuInvalidStateException, c.help(selected),
                      "The Property " + c.expected + alreadySet, "");
    } else {
      c.help(selected);
    }
    EXPECT_EQ(selected, c.isRefused ? c.selected : c.expected);
  }
}

TEST(Choice, CollectionIsReadOnce) {
  CXmlDocument document;
  document.LoadXml("<r xmlns:a='urn:a' xmlns:b='urn:b'><b:x/><a:x/><a:x/><b:x/></r>");
  CXmlElement* const root = document.GetDocumentElement();
  CXmlElement* const first = root->GetFirstElement();
  CXmlElement* cursor = first;
  CElementCol atMostOne("x", "urn:a", "", 0, 1);
  long itemsRead = 0;
  const auto read = [&] {
    CXmlObjectBase::Choice_Read_Collection(&atMostOne, root, cursor, itemsRead, kDefault);
  };
  read();
  EXPECT_EQ(cursor, first);  // nothing here for the collection
  cursor = first->GetNextSiblingElement();
  EXPECT_ZU_ERROR(CZuValidationException, read(),
                  "The Maximum number of [x] elements allowed in this collection is 1", "");
  EXPECT_EQ(cursor->GetNamespaceURI(), "urn:b");
  EXPECT_EQ(itemsRead, 0);
  atMostOne.Clear();
  CXmlElement* const second = first->GetNextSiblingElement()->GetNextSiblingElement();
  cursor = second;
  read();
  EXPECT_EQ(itemsRead, 1);
  cursor = second;
  read();  // no more, though the cursor stands on one
  EXPECT_EQ(cursor, second);
  EXPECT_EQ(atMostOne.GetCount(), 1);
}

TEST(PropertyHelpers, RefuseNullAndOtherNames) {
  PlainObject object("own");
  PlainObject other("other");
  EXPECT_ZU_ERROR(CZuInvalidParamException, CXmlObjectBase::Throw_IfPropertyIsNull(nullptr, "P"),
                  "The Property [P] is mandatory, it may node be NULL", "");
  CXmlObjectBase::Throw_IfElementNameDiffers(nullptr, "x");
  object.SetRepresentative(&other);
  CXmlObjectBase::Throw_IfElementNameDiffers(&object, "other");
  EXPECT_ZU_ERROR(CZuInvalidParamException,
                  CXmlObjectBase::Throw_IfElementNameDiffers(&object, "own"),
                  "This property requires an element with the name own the element being set has "
                  "the element name other",
                  "");
}

TEST(PropertyHelpers, TakeNullNamesForEmpty) {
  CXmlDocument document;
  document.LoadXml("<a xmlns='urn:a'/>");
  const PlainObject object("o");
  EXPECT_TRUE(object.TestNamespace(nullptr, "##targetNamespace", nullptr));
  EXPECT_FALSE(object.IsNamespaceValid("urn:u", nullptr, "urn:t"));
  CSerializationContext context;
  const auto matches = [&](const char* name, const char* namespaceUri) {
    return object.DoesElementNameMatch(context, document.GetDocumentElement(), name, namespaceUri);
  };
  EXPECT_TRUE(matches("a", "urn:a"));
  EXPECT_FALSE(matches("a", nullptr) || matches(nullptr, "urn:a"));
  context.SetSchemaType(SchemaType::NoNamespaces);
  EXPECT_TRUE(matches("a", nullptr));
  EXPECT_FALSE(object.DoesElementNameMatch(context, nullptr, "a", "urn:a"));
}

}  // namespace
}  // namespace ZuXmlLib16
