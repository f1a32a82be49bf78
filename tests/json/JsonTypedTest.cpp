#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "ZuXmlLib16/JsonContext.h"
#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;

CSerializationContext Strict(JsonRoundTrip mode = JsonRoundTrip::Full) {
  CSerializationContext context;
  context.GetJsonContext().SetStrictEscaping(true);
  context.GetJsonContext().SetSupportRoundtrip(mode);
  return context;
}

CSmartPtr<BindableClass> FromXml(const Shape& shape, const std::string& xml) {
  const CSmartPtr<BindableClass> object = shape.Make();
  object->FromXml(xml.c_str(), CSerializationContext());
  return object;
}

void ExpectComesBack(const Shape& shape, const BindableClass& object,
                     const CSerializationContext& context) {
  for (const bool isFormatted : {false, true}) {
    const std::string json = object.ToJson(isFormatted, EOLType::CrLf, context);
    EXPECT_TRUE(nlohmann::json::accept(json)) << json;
    const CSmartPtr<BindableClass> back = shape.Make();
    back->FromJson(json.c_str(), context);
    EXPECT_EQ(WriteOutcome(*back), WriteOutcome(object)) << json;
  }
}

TEST(JsonTyped, WritesWhatAClassHoldsAndReadsItBack) {
  Shape numbers("C"), item("I"), nested("C"), group("g", Group::Sequence, kPseudo), grouped("C");
  Shape choice("h", Group::Choice, kPseudo), choices("C"), nil("N"), nils("C"), text("T"),
      mixed("C");
  Shape values("C"), any("C");
  numbers.Numbers<CElementInfoSeqCol>("n").Numbers<CElementInfoSeqCol>("m");
  numbers.Prim<CElementInfoSeqPrimOpt>("x");
  item.Numbers<CElementInfoSeqCol>("j").Prim<CElementInfoSeqPrimOpt>("k");
  nested.Objects<CElementInfoSeqClsCol>("I", item).Prim<CElementInfoSeqPrimOpt>("x");
  group.Prim<CElementInfoSeqPrimMnd>("a").Numbers<CElementInfoSeqCol>("n");
  grouped.Objects<CElementInfoSeqClsCol>("g", group).Prim<CElementInfoSeqPrimOpt>("x");
  choice.Prim<CElementInfoChoicePrimOpt>("a").Prim<CElementInfoChoicePrimOpt>("b");
  choices.Objects<CElementInfoSeqClsCol>("h", choice).Prim<CElementInfoSeqPrimOpt>("x");
  nil.isNillable = true;
  nil.Number("q");
  nils.Objects<CElementInfoSeqClsCol>("N", nil).Prim<CElementInfoSeqPrimOpt>("p", "", true);
  text.Text(ItemType::string).Number("q");
  mixed.Text(ItemType::string).Objects<CElementInfoSeqClsCol>("T", text);
  values.Enum<CElementInfoSeqEnumOpt>("e", "1").Prim<CElementInfoSeqPrimOpt>("d", "7");
  const auto elements = [] { return new CElementCol("AnyElement", "##any", "", 0, -1); };
  any.Items<CElementInfoSeqUntpdCol>("AnyElement", elements, "##any", "");

  struct Case {
    const Shape& shape;
    const char* content;  // of the element C in XML
    const char* json;     // the value of the member C
    bool hasAttributes = false;
  };
  const Case cases[] = {
      {numbers, "", "{}"},
      {numbers, "<n>1</n><n>2</n><m>3</m><x>4</x>", R"({"n": [1,2],"m": [3],"x": 4})"},
      {nested, "<I><j>1</j><j>2</j><k>9</k></I><I/><I><j>3</j></I><x>4</x>",
       R"({"I": [{"j": [1,2],"k": 9},{},{"j": [3]}],"x": 4})"},
      {grouped, "<a>1</a><n>1</n><n>2</n><a>2</a><n>3</n><x>4</x>",
       R"({"a": [1],"n": [1,2],"a": 2,"n": [3],"x": 4})"},
      {choices, "<a>1</a><a>2</a><b>3</b><a>4</a><x>5</x>",
       R"({"a": [1,2],"b": [3],"a": [4],"x": 5})"},
      {nils, "<N i:nil='true'/><N q='1' i:nil='true'/><N q='2'/><N/><p i:nil='true'/>",
       R"({"N": [null,{"@q": 1,"#text": null},{"@q": 2},{}],"p": null})", true},
      {mixed, "\\&#9;\"<T q='1'>a</T><T>b</T><T/>",
       R"({"T": [{"@q": 1,"#text": "a"},"b",""],"#text": "\\\t\""})", true},
      {values, "<e/><d/>", R"({"e": "1","d": 7})"},
      {any, "<q a='1'><r/><r>2</r></q><q/><s/><q/>",
       R"({"q": [{"@a": "1","r": ["","2"],"#text": ""},""],"s": [""],"q": [""]})", true},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.content);
    const CSmartPtr<BindableClass> object =
        FromXml(test.shape, "<C xmlns:i='http://www.w3.org/2001/XMLSchema-instance'>" +
                                std::string(test.content) + "</C>");
    EXPECT_EQ(object->ToJson(false, EOLType::Lf, Strict()),
              "{\"C\": " + std::string(test.json) + "}");
    ExpectComesBack(test.shape, *object, Strict());
    ExpectComesBack(test.shape, *object, Strict(JsonRoundTrip::Marked));
    if (!test.hasAttributes) ExpectComesBack(test.shape, *object, Strict(JsonRoundTrip::Plain));
  }
}

// The types are of two namespaces, neither declared on the root: siblings give the same prefix to
// either.
TEST(JsonTyped, TellsDerivedTypesApart) {
  Shape root("r"), first("d"), second("d");
  root.uri = "urn:r";
  first.uri = "urn:a";
  second.uri = "urn:b";
  first.writesType = second.writesType = true;
  first.Prim<CElementInfoSeqPrimOpt>("x");
  second.Prim<CElementInfoSeqPrimOpt>("x");
  static int identifiers[2];  // factories are plain functions
  identifiers[0] = first.GetIdentifier();
  identifiers[1] = second.GetIdentifier();
  const auto items = [] {
    const auto make = [](CXmlElement* element) {
      const bool isFirst = CClassfactoryBase::GetElementTypeNamespaceUri(element) == "urn:a";
      return Shape::MakeObject(identifiers[isFirst ? 0 : 1], "i");
    };
    return new CXmlClassCol<BindableClass>("i", "urn:r", 0, -1, kElement, make);
  };
  root.Items<CElementInfoSeqAbsClsCol>("i", items, kElement);
  const CSmartPtr<BindableClass> object =
      FromXml(root,
              "<r xmlns='urn:r' xmlns:i='http://www.w3.org/2001/XMLSchema-instance' "
              "xmlns:a='urn:a' xmlns:b='urn:b'><i i:type='a:d'><a:x>1</a:x></i>"
              "<i i:type='b:d'><b:x>2</b:x></i><i i:type='a:d'/></r>");
  const std::string xsi = R"("@xmlns:AB": "http://www.w3.org/2001/XMLSchema-instance",)";
  EXPECT_EQ(object->ToJson(false, EOLType::Lf, Strict()),
            R"({"AA:r": {"@xmlns:AA": "urn:r","AA:i": [{)" + xsi +
                R"("@xmlns:AC": "urn:a","@AB:type": "AC:d","AC:x": 1},{)" + xsi +
                R"("@xmlns:AC": "urn:b","@AB:type": "AC:d","AC:x": 2},{)" + xsi +
                R"("@xmlns:AC": "urn:a","@AB:type": "AC:d"}]}})");
  ExpectComesBack(root, *object, Strict());
  const CSerializationContext& context = CSerializationContext::m_defaultContext;
  const std::string xml = object->ToXml(false, false, EOLType::Lf, context);
  EXPECT_EQ(FromXml(root, xml)->ToXml(false, false, EOLType::Lf, context), xml);
  const CSmartPtr<BindableClass> copy = root.Make();
  copy->FromXmlStream(object->ToFastInfosetStream(FInfoDecl::None, context, CompressionType::None),
                      context);
  EXPECT_EQ(copy->ToXml(false, false, EOLType::Lf, context), xml);
}

TEST(JsonTyped, SaysWhereAMemberIsWrong) {
  Shape item("I"), root("C");
  item.Prim<CElementInfoSeqPrimMnd>("a").Prim<CElementInfoSeqPrimOpt>("b");
  root.Objects<CElementInfoSeqClsCol>("I", item);
  struct Case {
    const char* items;
    const char* message;
    const char* path;
  };
  const Case cases[] = {
      {R"([{"a": 1}, {"b": 2, "a": 1}])", "Failed to find the required child element [a].",
       "/C/I[2]"},
      {R"({"a": null})", "Invalid use of 'nil' attribute in non-nillable element.", "/C/I/a"},
      {R"({"a": 1.0})", "Failed to process the element.", "/C/I"},
  };
  for (const Case& test : cases) {
    const CSmartPtr<BindableClass> object = root.Make();
    const std::string json = "{\"C\": {\"I\": " + std::string(test.items) + "}}";
    EXPECT_ZU_ERROR(CZuValidationException, object->FromJson(json.c_str(), Strict()), test.message,
                    test.path);
  }
}

}  // namespace
}  // namespace ZuXmlLib16
