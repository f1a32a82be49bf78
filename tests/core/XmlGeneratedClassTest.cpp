#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
using Group = XmlElementGroupType;
constexpr auto kPseudo = XmlElementType::Pseudo;
const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

/// A document with the root "r".
std::string Root(const std::string& children, const std::string& attributes = "") {
  return "<r xmlns:z='urn:z' xmlns:i='http://www.w3.org/2001/XMLSchema-instance' " + attributes +
         ">" + children + "</r>";
}

struct ReadCase {
  const char* children;
  const char* options;
  std::string expected;
};

void ExpectReads(const Shape& shape, const std::vector<ReadCase>& cases) {
  for (const ReadCase& c : cases) {
    EXPECT_EQ(Outcome(*shape.Make(), Root(c.children), Ignoring(c.options)), c.expected)
        << c.children << ", ignoring " << c.options;
  }
}

std::string Leftover(const std::string& name, const std::string& parent = "r",
                     const std::string& path = "/r") {
  return "!Failed read all the elements held within the element [" + parent +
         "]. The unexpected element [" + name + "] remains un processed\nPath: " + path;
}

std::string MissingChild(const std::string& name) {
  return "!Failed to find the required child element [" + name + "].\nPath: /r";
}

constexpr const char* kFailed = "!Failed to process the element.\nPath: /r";
constexpr const char* kNoChoice =
    "!No child elements within the element [r] were populated. The element represents a choice, so "
    "one and only one element should be populated. The element contained no sutable child "
    "elements\nPath: /r";

TEST(Sequence, TakesItsMembersInOrderAndNothingElse) {
  Shape shape("r");
  shape.Prim<CElementInfoSeqPrimOpt>("a")
      .Prim<CElementInfoSeqPrimMnd>("b")
      .Numbers<CElementInfoSeqPrimCol>("c");
  ExpectReads(shape, {{"<a>1</a><b>2</b><c>3</c><c>4</c>", "", "a=1 b=2 c=[3 4]"},
                      {"<b>2</b>", "", "b=2"},
                      {"<b>2</b><a>1</a>", "", Leftover("a")},
                      {"<b>2</b><c>3</c><u/><v/>", "", Leftover("u")},
                      {"<u/><b>2</b>", "", MissingChild("b")},
                      {"<a>1</a>", "M", "a=1"},
                      {"<u/><b>2</b><v/><c>3</c><w/><w/><c>4</c>", "U", "b=2 c=[3 4]"},
                      {"<b>2</b><u/><v/>", "U", "b=2"},
                      {"<u/><v/>", "U", MissingChild("b")}});
}

TEST(Sequence, ReadsOnBehindUnknownElements) {
  Shape optional("r");
  optional.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimOpt>("b");
  ExpectReads(optional, {{"<u/><a>1</a><b>2</b>", "U", "a=1 b=2"},
                         {"<a>1</a><u/><b>2</b><a>3</a>", "U", "a=1 b=2"},
                         {"<b>2</b><u/><a>1</a><b>3</b>", "U", "b=2"}});
  ExpectReads(Shape("r"), {{"<u/><u/>", "U", ""}, {"<u/>", "", Leftover("u")}});
}

TEST(Choice, TakesOneMember) {
  Shape shape("r", Group::Choice);
  shape.Prim<CElementInfoChoicePrimOpt>("a")
      .Numbers<CElementInfoChoicePrimCol>("b", 1)
      .Prim<CElementInfoChoicePrimOpt>("a");
  ExpectReads(shape, {{"<a>1</a>", "", "a=1"},
                      {"<b>1</b><b>2</b>", "", "b=[1 2]"},
                      {"<a>1</a><b>2</b>", "", Leftover("b")},
                      {"", "", kNoChoice},
                      {"<u/>", "", kNoChoice},
                      {"<u/>", "U", kNoChoice},
                      {"", "C", ""},
                      {"<u/>", "C", ""},
                      {"<u/><v/><a>1</a><a>2</a>", "U", "a=1"},
                      {"<b>1</b><u/><b>2</b><a>3</a><b>4</b>", "U", "b=[1 2 4]"}});
  Shape withOptional("r", Group::Choice);
  withOptional.Prim<CElementInfoChoicePrimOpt>("a").Numbers<CElementInfoChoicePrimCol>("b");
  ExpectReads(withOptional, {{"", "", ""}, {"<u/>", "", ""}, {"<b>1</b>", "", "b=[1]"}});
}

TEST(Choice, MayBeEmptyAsAMemberOfAChoice) {
  Shape inner("c", Group::Choice);
  inner.Prim<CElementInfoChoicePrimOpt>("a");
  Shape shape("r", Group::Choice);
  shape.Child<CElementInfoChoiceClsOpt>("c", inner);
  ExpectReads(shape, {{"<c/>", "", "c={}"},
                      {"<c><u/></c>", "", Leftover("u", "c", "/r/c")},
                      {"<c><u/></c>", "U", "c={}"}});
  const CSmartPtr<BindableClass> object = shape.Make();
  Outcome(*object, Root("<c/>"), kContext);
  EXPECT_EQ(WriteOutcome(*object, kContext), "<r><c/></r>");
}

TEST(Choice, WritesItsFirstSetMemberAndNeedsOne) {
  Shape shape("r", Group::Choice);
  shape.Prim<CElementInfoChoicePrimOpt>("a").Prim<CElementInfoChoicePrimOpt>("b");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object, kContext),
            "!Failed to convert the element [r] to XML\nThis element is a choice, and as such must "
            "have at one (and only one) valid item, currently there are none set");
  EXPECT_EQ(WriteOutcome(*object, Ignoring("C")), "<r/>");
  object->properties[1].SetI4(2);
  EXPECT_EQ(WriteOutcome(*object, kContext), "<r><b>2</b></r>");
  object->properties[0].SetI4(1);
  EXPECT_EQ(WriteOutcome(*object, kContext), "<r><a>1</a></r>");
}

TEST(AllGroup, TakesItsMembersInAnyOrder) {
  Shape shape("r", Group::All);
  shape.Prim<CElementInfoAllPrimMnd>("a")
      .Prim<CElementInfoAllPrimOpt>("b")
      .Numbers<CElementInfoAllPrimCol>("c");
  ExpectReads(shape, {{"<c>3</c><b>2</b><a>1</a><c>4</c>", "", "a=1 b=2 c=[3 4]"},
                      {"<a>1</a>", "", "a=1"},
                      {"<a>1</a><a>2</a>", "", Leftover("a")},
                      {"<a>1</a><u/><b>2</b>", "", Leftover("u")},
                      {"<u/><b>2</b><u/><v/><a>1</a><u/>", "U", "a=1 b=2"},
                      {"", "", kFailed},
                      {"<b>1</b>", "U", kFailed},
                      {"<b>1</b>", "M", kFailed}});
}

/// Groups "g" of each kind between an optional "x" and a mandatory "y".
TEST(PseudoElement, LeavesToItsParentWhatItDoesNotTake) {
  Shape sequence("g", Group::Sequence, kPseudo);
  sequence.Prim<CElementInfoSeqPrimMnd>("a").Prim<CElementInfoSeqPrimMnd>("b");
  Shape choice("g", Group::Choice, kPseudo);
  choice.Prim<CElementInfoChoicePrimOpt>("a").Prim<CElementInfoChoicePrimOpt>("b");
  Shape all("g", Group::All, kPseudo);
  all.Prim<CElementInfoAllPrimMnd>("b").Prim<CElementInfoAllPrimOpt>("a");
  const auto expectReads = [](const Shape& group, const std::vector<ReadCase>& cases) {
    Shape shape("r");
    shape.Prim<CElementInfoSeqPrimOpt>("x")
        .Child<CElementInfoSeqClsOpt>("g", group)
        .Prim<CElementInfoSeqPrimMnd>("y");
    ExpectReads(shape, cases);
  };
  expectReads(sequence, {{"<a>1</a><b>2</b><y>3</y>", "", "g={a=1 b=2} y=3"},
                         {"<x>1</x><y>3</y>", "", "x=1 y=3"},
                         {"<a>1</a><y>3</y>", "", MissingChild("y")},
                         {"<u/><a>1</a><u/><b>2</b><u/><y>3</y>", "U", "g={a=1 b=2} y=3"},
                         {"<u/><y>3</y><u/>", "U", "y=3"}});
  expectReads(choice, {{"<b>2</b><y>3</y>", "", "g={b=2} y=3"},
                       {"<y>3</y>", "", "y=3"},
                       {"<a>1</a><b>2</b><y>3</y>", "", MissingChild("y")}});
  expectReads(all, {{"<a>1</a><b>2</b><y>3</y>", "", "g={b=2 a=1} y=3"},
                    {"<a>1</a><y>3</y>", "", MissingChild("y")},
                    {"<y>3</y>", "", "y=3"}});
}

TEST(PseudoElement, IsWrittenWithoutATagUnlessItIsTheRoot) {
  Shape group("g", Group::Sequence, kPseudo);
  group.Prim<CElementInfoSeqPrimOpt>("a").Number("n").WritesType();
  Shape shape("r");
  shape.Child<CElementInfoSeqClsMnd>("other", group);
  const CSmartPtr<BindableClass> object = shape.Make();
  const std::string xml = "<r n=\"1\"><a>2</a></r>";
  EXPECT_EQ(Outcome(*object, xml, kContext), "other={a=2 n=1}");
  EXPECT_EQ(WriteOutcome(*object, kContext), xml);
  EXPECT_EQ(WriteOutcome(*object->properties[0].GetXmlObject(), kContext),
            "<g n=\"1\"><a>2</a></g>");
}

TEST(Nil, IsReadFromTheAttribute) {
  Shape nillable("r");
  nillable.Nillable().Strict().Prim<CElementInfoSeqPrimMnd>("a");
  Shape plain("r");
  plain.Prim<CElementInfoSeqPrimMnd>("a");
  const std::string notAllowed =
      "!Invalid use of 'nil' attribute in non-nillable element.\nPath: /r";
  const std::string unexpected =
      "!Unexpected Value [yes] for 'nil' Attribute found.\nPath: /r/i:@nil";
  struct Case {
    const char* value;
    std::string expected;
    bool isNil;
  };
  for (const Case& c : {Case{"TRUE", "", true},
                        {"1", "", true},
                        {"yes", unexpected, false},
                        {"False", "a=1", false},
                        {"0", "a=1", false}}) {
    SCOPED_TRACE(c.value);
    const std::string xml = Root("<a>1</a>", "i:nil='" + std::string(c.value) + "'");
    const CSmartPtr<BindableClass> object = nillable.Make();
    EXPECT_EQ(Outcome(*object, xml, kContext), c.expected);
    EXPECT_EQ(dynamic_cast<INillable&>(*object).IsNil(), c.isNil);
    EXPECT_EQ(Outcome(*object, Root("<a>1</a>"), kContext), "a=1") << "not nil any more";
    EXPECT_EQ(Outcome(*plain.Make(), xml, kContext), notAllowed);
  }
}

TEST(Nil, WritesAnEmptyElementWithItsAttributes) {
  Shape shape("r");
  shape.Nillable().Number("n", false).Prim<CElementInfoSeqPrimMnd>("a");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(Outcome(*object, Root("", "i:nil='true'"), kContext), kFailed) << "required attribute";
  EXPECT_EQ(Outcome(*object, Root("", "n='1' i:nil='true'"), kContext), "n=1");
  CSerializationContext context;
  context.SetInLineSchema("<schema/>");
  EXPECT_EQ(WriteOutcome(*object, context),
            "<r n=\"1\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>");
}

TEST(Nil, OfTheParentIsNoBusinessOfAPseudoElement) {
  Shape group("g", Group::Sequence, kPseudo);
  group.Prim<CElementInfoSeqPrimOpt>("a");
  Shape shape("r");
  shape.Nillable().Child<CElementInfoSeqClsMnd>("g", group);
  EXPECT_EQ(Outcome(*shape.Make(), Root("<a>1</a>", "i:nil='false'"), kContext), "g={a=1}");
}

TEST(Attributes, UnknownOnesAreErrorsOfStrictClassesOnly) {
  Shape shape("r");
  shape.Strict().Number("n");
  Shape lax("r");
  lax.Number("n");
  const std::string xml = Root("", "n='1' i:type='t' i:schemaLocation='a b' z:m='2'");
  EXPECT_EQ(Outcome(*shape.Make(), xml, kContext), "!Unexpected Attribute found.\nPath: /r/z:@m");
  EXPECT_EQ(Outcome(*shape.Make(), xml, Ignoring("A")), "n=1");
  EXPECT_EQ(Outcome(*lax.Make(), xml, kContext), "n=1");
}

TEST(Attributes, FoundOnesAreToldApartBeyondTheSixtyFourth) {
  std::vector<std::string> names;
  std::string attributes;
  for (int i = 0; i < 70; ++i) {
    names.push_back("n" + std::to_string(i));
    attributes += names.back() + "='1' ";
  }
  Shape shape("r");
  for (const std::string& name : names)
    shape.Number(name.c_str(), false);
  EXPECT_EQ(Outcome(*shape.Make(), Root("", attributes), kContext).substr(0, 9), "n0=1 n1=1");
  attributes.erase(attributes.size() - 8);
  const CSmartPtr<BindableClass> object = shape.Make();
  try {
    object->FromXml(Root("", attributes).c_str(), kContext);
    ADD_FAILURE();
  } catch (const CZuException& failure) {
    EXPECT_EQ(failure.GetInnerException()->GetMessage(),
              "Failed to find the required Attribute [n69].");
  }
}

/// Three levels: "r" holds "m", which holds "p".
struct Nested {
  Nested() : p("p"), m("m"), r("r") {
    p.Prim<CElementInfoSeqPrimMnd>("v", "", false, kOneDigit);
    m.Child<CElementInfoSeqClsMnd>("p", p);
    r.Child<CElementInfoSeqClsMnd>("m", m);
    object = r.Make();
    innermost = Inner(*Inner(*object));
  }
  static CSmartPtr<BindableClass> Inner(const BindableClass& outer) {
    return dynamic_cast<BindableClass*>(outer.properties[0].GetXmlObject().Get());
  }
  Shape p, m, r;
  CSmartPtr<BindableClass> object;
  CSmartPtr<BindableClass> innermost;
};

TEST(Failures, OfReadingTellTheInnermostPathOnce) {
  const Nested nested;
  try {
    nested.object->FromXml("<r><m><p><v>x</v></p></m></r>", kContext);
    ADD_FAILURE();
  } catch (const CZuException& failure) {
    EXPECT_EQ(typeid(failure), typeid(CZuValidationException));
    EXPECT_EQ(failure.GetMessage(), "Failed to process the element.\nPath: /r/m/p");
    ASSERT_NE(failure.GetInnerException(), nullptr);
    EXPECT_EQ(typeid(*failure.GetInnerException()), typeid(CZuInvalidValueException));
    EXPECT_EQ(failure.GetInnerException()->GetInnerException(), nullptr);
  }
  EXPECT_ZU_ERROR(CZuValidationException, nested.object->FromXml("<r><m><p/></m></r>", kContext),
                  "Failed to find the required child element [v].", "/r/m/p");
  nested.innermost->isFailing = true;
  try {
    nested.object->FromXml("<r><m><p><v>1</v></p></m></r>", kContext);
    ADD_FAILURE();
  } catch (const CZuException& failure) {
    EXPECT_EQ(failure.GetFullMessage(),
              "Failed to set the property value.\nPath: /r/m/p/v\nFailing");
  }
}

TEST(Failures, OfWritingTellEveryLevel) {
  const Nested nested;
  const std::string levels =
      "!Failed to convert the element [r] to XML\nFailed to convert the element [m] to XML\n"
      "Failed to convert the element [p] to XML\n";
  EXPECT_EQ(WriteOutcome(*nested.object, kContext),
            levels + "The Property [v] is mandatory, it may not be NULL");
  nested.innermost->properties[0].SetI4(10);
  EXPECT_EQ(WriteOutcome(*nested.object, kContext), levels + "Invalid Value for v [10]");
  Shape attribute("r");
  attribute.Number("n", false);
  EXPECT_EQ(WriteOutcome(*attribute.Make(), kContext),
            "!Failed to convert the element [r] to XML\nFailed to convert attributes to XML\n"
            "Invalid Type 0 to convert to string");
}

TEST(TypeAttribute, TellsTheClassOfAnElementOfAnotherName) {
  const std::string typed =
      "<t:other xmlns:t=\"urn:t\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "AA:type=\"t:r\"/>";
  CSerializationContext context;
  context.GetNamespaceAliases().Add("t", "urn:t");
  Shape shape("r");
  shape.Namespace("urn:t").WritesType();
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object, context), "<t:r xmlns:t=\"urn:t\"/>");
  object->SetElementName("");
  EXPECT_EQ(WriteOutcome(*object, context), "<t:r xmlns:t=\"urn:t\"/>");
  object->SetElementName("other");
  EXPECT_EQ(WriteOutcome(*object, context), typed);
  context.SetWriteTypeAttribute(false);
  EXPECT_EQ(WriteOutcome(*object, context), "<t:other xmlns:t=\"urn:t\"/>");
}

TEST(RootOptions, AreWrittenAtTheRootOnly) {
  Shape item("c");
  item.Namespace("urn:d").Number("n");
  Shape shape("r");
  shape.Namespace("urn:d").WritesType().Number("n").Child<CElementInfoSeqClsMnd>("c", item);
  const CSmartPtr<BindableClass> object = shape.Make();
  object->SetElementName("s");
  object->properties[0].SetI4(1);
  CSerializationContext context;
  context.GetProcessingInstructions() = {"first a", "second"};
  context.GetNamespaceAliases().Add("z", "urn:a");
  context.GetNamespaceAliases().Add("y", "urn:b");
  context.SetDefaultNamespaceURI("urn:d");
  context.GetAdditionalRootAttributes()->Add("more", "2", "urn:a");
  context.SetInLineSchema("<schema/>");
  EXPECT_EQ(
      WriteOutcome(*object, context),
      "<?first a?><?second?><s xmlns=\"urn:d\" xmlns:z=\"urn:a\" xmlns:y=\"urn:b\" z:more=\"2\" "
      "xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"r\" n=\"1\"> "
      "\n<schema/>\n<c/></s>");
}

TEST(Text, IsConvertedOrKeptAndMayBeMissing) {
  struct Case {
    ItemType type;
    bool isRaw;
    const char* text;
    const char* expected;
  };
  for (const Case& c : {Case{ItemType::i4, false, " 5 ", "5"},
                        {ItemType::string, false, " 5 ", " 5 "},
                        {ItemType::i4, true, " 5 ", " 5 "},
                        {ItemType::i4, true, "x", "x"},
                        {ItemType::i4, false, "x", kFailed},
                        {ItemType::Invalid, true, "x", ""}}) {
    Shape shape("r");
    shape.Text(c.type, c.isRaw);
    EXPECT_EQ(Outcome(*shape.Make(), Root(c.text), kContext), c.expected) << c.text;
  }
  Shape shape("r");
  shape.Text().Prim<CElementInfoSeqPrimOpt>("a");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object, kContext), "<r/>");
  object->properties[0].SetNil();
  EXPECT_EQ(WriteOutcome(*object, kContext), "<r/>");
  EXPECT_EQ(Outcome(*object, "<r> 7 <a>1</a></r>", kContext), "7 a=1");
  EXPECT_EQ(WriteOutcome(*object, kContext), "<r><a>1</a>7</r>");
}

TEST(GeneratedClass, TakesTheNameOfItsElementAndKeepsWhatItIsNotTold) {
  Shape shape("r");
  shape.Prim<CElementInfoSeqPrimOpt>("a").Numbers<CElementInfoSeqPrimCol>("b");
  const CSmartPtr<BindableClass> object = shape.Make();
  Outcome(*object, "<r><a>1</a><b>2</b></r>", kContext);
  EXPECT_EQ(Outcome(*object, "<s><b>3</b></s>", kContext), "a=1 b=[2 3]");
  EXPECT_EQ(object->GetElementName(), "s");
  EXPECT_EQ(object->starts, 2);
  EXPECT_ZU_ERROR(CZuInvalidParamException, object->FromXml_Int(nullptr, nullptr, kContext, false),
                  "The Property [element] is mandatory, it may node be NULL", "");
}

TEST(GeneratedClass, RefusesAnUnknownGroupType) {
  const Shape shape("r", static_cast<Group>(3));
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object, kContext),
            "!Failed to convert the element [r] to XML\nUnknown XML Group Type");
  EXPECT_EQ(Outcome(*object, Root(""), kContext), kFailed);
}

TEST(GeneratedClass, KnowsItsEntries) {
  Shape shape("r");
  shape.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimOpt>("b");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(object->GetClassElementInfoCount(), 2);
  CXmlDocument document;
  document.LoadXml("<r xmlns:z='urn:z'><b/><c/><z:a/></r>");
  CXmlElement* const first = document.GetDocumentElement()->GetFirstElement();
  CXmlElement* const last = first->GetNextSiblingElement()->GetNextSiblingElement();
  EXPECT_TRUE(object->IsElementInList(kContext, first));
  EXPECT_FALSE(object->IsElementInList(kContext, first->GetNextSiblingElement()));
  EXPECT_FALSE(object->IsElementInList(kContext, last));
  EXPECT_TRUE(object->IsElementInList(Ignoring("N"), last));
  EXPECT_FALSE(object->IsElementInList(kContext, nullptr));
  const Shape empty("r");
  EXPECT_EQ(empty.Make()->GetClassElementInfoCount(), 0);
  EXPECT_FALSE(empty.Make()->IsElementInList(kContext, first));
}

TEST(GeneratedClass, IsReadToALimitedDepth) {
  Shape shape("r");
  shape.Child<CElementInfoSeqClsOpt>("r", shape);
  CSerializationContext context;
  context.SetMaxDepth(3);
  EXPECT_EQ(Outcome(*shape.Make(), "<r><r><r/></r></r>", context), "r={r={}}");
  EXPECT_EQ(Outcome(*shape.Make(), "<r><r><r><r/></r></r></r>", context),
            "!The element [r] is nested too deeply, the limit is 3.\nPath: /r/r/r/r");
}

TEST(MetaData, IsDeletedOnce) {
  CParentElementInfo* info = nullptr;
  CElementInfo** elements = nullptr;
  CAttributeInfo** attributes = nullptr;
  CXmlGeneratedClass::CleanMetaData(info, elements, attributes);
  info = new CParentElementInfo(Group::Sequence, XmlElementType::Element, "r", "", false, false, -1,
                                ItemType::Invalid, nullptr, false);
  EXPECT_EQ(info->GetThirdText(), "");
  elements = new CElementInfo* [2] { new CElementInfoSeqCol("a", "", 0), nullptr };
  attributes = new CAttributeInfo* [1] { nullptr };
  CXmlGeneratedClass::CleanMetaData(info, elements, attributes);
  EXPECT_TRUE(info == nullptr && elements == nullptr && attributes == nullptr);
  const CClassMetaData owner(nullptr, {new CElementInfoSeqCol("a", "", 0)}, {});
  EXPECT_EQ(owner.GetElements()[0]->GetName(), "a");
  EXPECT_EQ(owner.GetElements()[1], nullptr);
  EXPECT_EQ(owner.GetAttributes()[0], nullptr);
}

/// Would take hours if every unknown element cost a look at all behind it.
TEST(UnknownElements, AreSkippedInLinearTime) {
  std::string unknown;
  for (int i = 0; i < 300000; ++i)
    unknown += "<u/>";
  Shape group("g", Group::Sequence, kPseudo);
  group.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimMnd>("b");
  Shape loose("g", Group::Sequence, kPseudo);
  loose.Prim<CElementInfoSeqPrimOpt>("a");
  Shape choice("g", Group::Choice, kPseudo);
  choice.Prim<CElementInfoChoicePrimOpt>("a").Child<CElementInfoChoiceClsOpt>("g", group);

  Shape sequence("r");
  sequence.Prim<CElementInfoSeqPrimOpt>("x")
      .Child<CElementInfoSeqClsMnd>("g", loose)
      .Child<CElementInfoSeqClsOpt>("g", group)
      .Child<CElementInfoSeqClsMnd>("g", choice)
      .Objects<CElementInfoSeqClsCol>("g", group)
      .Numbers<CElementInfoSeqPrimCol>("n")
      .Prim<CElementInfoSeqPrimMnd>("y");
  Shape choices("r", Group::Choice);
  choices.Child<CElementInfoChoiceClsOpt>("g", choice)
      .Objects<CElementInfoChoiceClsCol>("g", group, 1)
      .Prim<CElementInfoChoicePrimOpt>("y");
  Shape all("r", Group::All);
  all.Child<CElementInfoAllClsOpt>("g", group)
      .Child<CElementInfoAllClsOpt>("g", choice)
      .Numbers<CElementInfoAllPrimCol>("n")
      .Prim<CElementInfoAllPrimMnd>("y");
  const std::string xml = Root(unknown + "<y>1</y>" + unknown);
  EXPECT_EQ(Outcome(*sequence.Make(), xml, Ignoring("U")), "y=1");
  EXPECT_EQ(Outcome(*choices.Make(), xml, Ignoring("U")), "y=1");
  EXPECT_EQ(Outcome(*all.Make(), xml, Ignoring("U")), "y=1");
}

}  // namespace
}  // namespace ZuXmlLib16
