#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
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

/// A failure without a path of its own.
std::string Failed(const std::string& cause) {
  return "!Failed to process the element.\nPath: /r\n" + cause;
}

constexpr const char* kNoChoice =
    "!No child elements within the element [r] were populated. The element represents a choice, so "
    "one and only one element should be populated. The element contained no sutable child "
    "elements\nPath: /r";

TEST(Sequence, TakesItsMembersInOrder) {
  Shape shape("r"), optional("r");
  shape.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimMnd>("b");
  shape.Numbers<CElementInfoSeqPrimCol>("c");
  ExpectReads(shape, {{"<a>1</a><b>2</b><c>3</c><c>4</c>", "", "a=1 b=2 c=[3 4]"},
                      {"<b>2</b><a>1</a>", "", Leftover("a")},
                      {"<b>2</b><c>3</c><u/><v/>", "", Leftover("u")},
                      {"<u/><b>2</b>", "", MissingChild("b")},
                      {"<a>1</a>", "M", "a=1"},
                      {"<u/><b>2</b><v/><c>3</c><w/><w/><c>4</c>", "U", "b=2 c=[3 4]"},
                      {"<b>2</b><u/><v/>", "U", "b=2"},
                      {"<u/><v/>", "U", MissingChild("b")}});
  optional.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimOpt>("b");
  ExpectReads(optional, {{"<u/><a>1</a><b>2</b>", "U", "a=1 b=2"},
                         {"<a>1</a><u/><b>2</b><a>3</a>", "U", "a=1 b=2"},
                         {"<b>2</b><u/><a>1</a><b>3</b>", "U", "b=2"}});
  ExpectReads(Shape("r"), {{"<u/><u/>", "U", ""}, {"<u/>", "", Leftover("u")}});
}

TEST(Choice, TakesOneMember) {
  Shape shape("r", Group::Choice), mayBeEmpty("r", Group::Choice);
  shape.Prim<CElementInfoChoicePrimOpt>("a").Numbers<CElementInfoChoicePrimCol>("b", 1);
  ExpectReads(shape, {{"<a>1</a>", "", "a=1"},
                      {"<b>1</b><b>2</b>", "", "b=[1 2]"},
                      {"<a>1</a><b>2</b>", "", Leftover("b")},
                      {"", "", kNoChoice},
                      {"<u/>", "", kNoChoice},
                      {"<u/>", "U", kNoChoice},
                      {"", "C", ""},
                      {"<u/>", "C", ""},
                      {"<u/><v/><a>1</a><u/><a>2</a>", "U", "a=1"},
                      {"<b>1</b><u/><b>2</b><a>3</a><b>4</b>", "U", "b=[1 2 4]"}});
  mayBeEmpty.Prim<CElementInfoChoicePrimOpt>("a").Numbers<CElementInfoChoicePrimCol>("b");
  ExpectReads(mayBeEmpty, {{"", "", ""}, {"<u/>", "", ""}, {"<b>1</b>", "", "b=[1]"}});
}

TEST(Choice, MayBeEmptyInAMemberOfAChoice) {
  Shape inner("c", Group::Choice), shape("r", Group::Choice);
  inner.Prim<CElementInfoChoicePrimOpt>("a");
  shape.Child<CElementInfoChoiceClsOpt>("c", inner);
  ExpectReads(shape,
              {{"<c><u/></c>", "", Leftover("u", "c", "/r/c")}, {"<c><u/></c>", "U", "c={}"}});
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(Outcome(*object, Root("<c/>")), "c={}");
  EXPECT_EQ(WriteOutcome(*object), "<r><c/></r>");
}

TEST(Choice, WritesItsFirstSetMember) {
  Shape shape("r", Group::Choice);
  shape.Prim<CElementInfoChoicePrimOpt>("a").Prim<CElementInfoChoicePrimOpt>("b");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object),
            "!Failed to convert the element [r] to XML\nThis element is a choice, and as such must "
            "have at one (and only one) valid item, currently there are none set");
  EXPECT_EQ(WriteOutcome(*object, Ignoring("C")), "<r/>");
  object->properties[1].SetI4(2);
  EXPECT_EQ(WriteOutcome(*object), "<r><b>2</b></r>");
  object->properties[0].SetI4(1);
  EXPECT_EQ(WriteOutcome(*object), "<r><a>1</a></r>");
}

TEST(AllGroup, TakesItsMembersInAnyOrder) {
  Shape shape("r", Group::All);
  shape.Prim<CElementInfoAllPrimMnd>("a").Prim<CElementInfoAllPrimOpt>("b");
  shape.Numbers<CElementInfoAllPrimCol>("c");
  const std::string missing = Failed("Failed to find the mandatory element [a].");
  ExpectReads(shape, {{"<c>3</c><b>2</b><a>1</a><c>4</c>", "", "a=1 b=2 c=[3 4]"},
                      {"<a>1</a><a>2</a>", "", Leftover("a")},
                      {"<a>1</a><u/><b>2</b>", "", Leftover("u")},
                      {"<u/><b>2</b><u/><v/><a>1</a><u/>", "U", "a=1 b=2"},
                      {"", "", missing},
                      {"<b>1</b>", "U", missing},
                      {"<b>1</b>", "M", missing}});
}

TEST(PseudoElement, LeavesToItsParentWhatItDoesNotTake) {
  const auto expectReads = [](const Shape& group, const std::vector<ReadCase>& cases) {
    Shape shape("r");
    shape.Prim<CElementInfoSeqPrimOpt>("x").Child<CElementInfoSeqClsOpt>("g", group);
    ExpectReads(shape.Prim<CElementInfoSeqPrimMnd>("y"), cases);
  };
  Shape sequence("g", Group::Sequence, kPseudo);
  sequence.Prim<CElementInfoSeqPrimMnd>("a").Prim<CElementInfoSeqPrimMnd>("b");
  expectReads(sequence, {{"<a>1</a><b>2</b><y>3</y>", "", "g={a=1 b=2} y=3"},
                         {"<x>1</x><y>3</y>", "", "x=1 y=3"},
                         {"<a>1</a><y>3</y>", "", MissingChild("y")},
                         {"<u/><a>1</a><u/><b>2</b><u/><y>3</y>", "U", "g={a=1 b=2} y=3"},
                         {"<u/><y>3</y><u/>", "U", "y=3"}});
  Shape choice("g", Group::Choice, kPseudo);
  choice.Prim<CElementInfoChoicePrimOpt>("a").Prim<CElementInfoChoicePrimOpt>("b");
  expectReads(choice, {{"<b>2</b><y>3</y>", "", "g={b=2} y=3"},
                       {"<y>3</y>", "", "y=3"},
                       {"<a>1</a><b>2</b><y>3</y>", "", MissingChild("y")}});
  Shape all("g", Group::All, kPseudo);
  all.Prim<CElementInfoAllPrimMnd>("b").Prim<CElementInfoAllPrimOpt>("a");
  expectReads(all, {{"<a>1</a><b>2</b><y>3</y>", "", "g={b=2 a=1} y=3"},
                    {"<a>1</a><y>3</y>", "", MissingChild("y")},
                    {"<y>3</y>", "", "y=3"}});
}

TEST(PseudoElement, IsWrittenWithoutATagUnlessItIsTheRoot) {
  Shape group("g", Group::Sequence, kPseudo), shape("r");
  group.writesType = true;
  group.Prim<CElementInfoSeqPrimOpt>("a").Number("n");
  shape.isNillable = true;
  shape.Child<CElementInfoSeqClsMnd>("other", group);
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(Outcome(*object, Root("<a>2</a>", "n='1' i:nil='0'")), "other={a=2 n=1}");
  EXPECT_EQ(WriteOutcome(*object), "<r n=\"1\"><a>2</a></r>");
  object->properties[0].GetXmlObject()->SetElementName("s");
  EXPECT_EQ(WriteOutcome(*object->properties[0].GetXmlObject()), "<s n=\"1\"><a>2</a></s>");
}

TEST(Nil, IsReadFromTheAttribute) {
  Shape nillable("r"), plain("r");
  nillable.isNillable = nillable.isStrict = true;
  nillable.Prim<CElementInfoSeqPrimMnd>("a");
  plain.Prim<CElementInfoSeqPrimMnd>("a");
  struct Case {
    const char* value;
    const char* expected;
    bool isNil;
  };
  for (const Case& c :
       {Case{"TRUE", "", true}, Case{"1", "", true}, Case{"False", "a=1", false},
        Case{"0", "a=1", false},
        Case{"yes", "!Unexpected Value [yes] for 'nil' Attribute found.\nPath: /r/i:@nil",
             false}}) {
    SCOPED_TRACE(c.value);
    const std::string xml = Root("<a>1</a>", "i:nil='" + std::string(c.value) + "'");
    const CSmartPtr<BindableClass> object = nillable.Make();
    EXPECT_EQ(Outcome(*object, xml), c.expected);
    EXPECT_EQ(dynamic_cast<INillable&>(*object).IsNil(), c.isNil);
    EXPECT_EQ(Outcome(*object, Root("<a>1</a>")), "a=1") << "not nil any more";
    EXPECT_EQ(Outcome(*plain.Make(), xml),
              "!Invalid use of 'nil' attribute in non-nillable element.\nPath: /r");
  }
}

TEST(Nil, LeavesTheAttributesAndNothingElse) {
  Shape shape("r");
  shape.isNillable = true;
  shape.Number("n", false).Prim<CElementInfoSeqPrimMnd>("a");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(Outcome(*object, Root("", "i:nil='true'")),
            Failed("Failed to find the required Attribute [n]."));
  EXPECT_EQ(Outcome(*object, Root("", "n='1' i:nil='true'")), "n=1");
  CSerializationContext context;
  context.SetInLineSchema("<schema/>");
  EXPECT_EQ(WriteOutcome(*object, context),
            "<r n=\"1\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>");
}

TEST(Attributes, UnknownOnesAreErrorsOfStrictClasses) {
  Shape strict("r"), lax("r");
  strict.isStrict = true;
  strict.Number("n");
  lax.Number("n");
  const std::string xml = Root("", "n='1' i:type='t' i:schemaLocation='a b' z:m='2'");
  EXPECT_EQ(Outcome(*strict.Make(), xml), "!Unexpected Attribute found.\nPath: /r/z:@m");
  EXPECT_EQ(Outcome(*strict.Make(), xml, Ignoring("A")), "n=1");
  EXPECT_EQ(Outcome(*lax.Make(), xml), "n=1");
}

TEST(Attributes, ManyAreToldApart) {
  std::vector<std::string> names;
  for (int i = 10; i < 80; ++i)
    names.push_back("n" + std::to_string(i));
  Shape shape("r");
  for (const std::string& name : names)
    shape.Number(name.c_str(), false);
  for (std::size_t missing : {std::size_t{3}, names.size() - 1, names.size()}) {
    std::string attributes;
    for (const std::string& name : names) {
      if (missing >= names.size() || name != names[missing]) attributes += name + "='1' ";
    }
    const std::string outcome = Outcome(*shape.Make(), Root("", attributes));
    EXPECT_EQ(outcome[0] == '!' ? outcome : "",
              missing < names.size()
                  ? Failed("Failed to find the required Attribute [" + names[missing] + "].")
                  : "");
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
    const CZuException& cause = *failure.GetInnerException();
    EXPECT_EQ(typeid(cause), typeid(CZuInvalidValueException));
    EXPECT_EQ(cause.GetInnerException(), nullptr);
  }
  EXPECT_EQ(Outcome(*nested.object, "<r><m><p/></m></r>"),
            "!Failed to find the required child element [v].\nPath: /r/m/p");
  nested.innermost->isFailing = true;
  EXPECT_EQ(Outcome(*nested.object, "<r><m><p><v>1</v></p></m></r>"),
            "!Failed to set the property value.\nPath: /r/m/p/v\nFailing");
}

TEST(Failures, OfWritingTellEveryLevel) {
  const Nested nested;
  const std::string levels =
      "!Failed to convert the element [r] to XML\nFailed to convert the element [m] to XML\n"
      "Failed to convert the element [p] to XML\n";
  EXPECT_EQ(WriteOutcome(*nested.object),
            levels + "The Property [v] is mandatory, it may not be NULL");
  nested.innermost->properties[0].SetI4(10);
  EXPECT_EQ(WriteOutcome(*nested.object), levels + "Invalid Value for v [10]");
  nested.innermost->isFailing = true;
  EXPECT_EQ(WriteOutcome(*nested.object),
            levels + "Failed to get the property value for [v].\nFailing");
}

TEST(RootOptions, AreWrittenAtTheRootOnly) {
  Shape item("c"), shape("r");
  item.uri = shape.uri = "urn:d";
  shape.writesType = true;
  shape.Number("n").Child<CElementInfoSeqClsMnd>("c", item);
  const CSmartPtr<BindableClass> object = shape.Make();
  object->SetElementName("s");
  object->properties[0].SetI4(1);
  CSerializationContext context;
  context.GetProcessingInstructions() = {"<?first a?>", "<?second?>"};
  context.GetNamespaceAliases().Add("z", "urn:a");
  context.GetNamespaceAliases().Add("y", "urn:b");
  context.SetDefaultNamespaceURI("urn:d");
  context.GetAdditionalRootAttributes()->Add("more", "2", "urn:a");
  context.SetInLineSchema("<schema/>");
  EXPECT_EQ(WriteOutcome(*object, context),
            "<?first a?>\n\n<?second?>\n\n<s xmlns=\"urn:d\" xmlns:z=\"urn:a\" xmlns:y=\"urn:b\" "
            "z:more=\"2\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"r\" "
            "n=\"1\"> \n<schema/>\n<c/></s>");
}

TEST(TypeAttribute, IsForElementsOfAnotherName) {
  Shape shape("r");
  shape.uri = "urn:t";
  shape.writesType = true;
  const CSmartPtr<BindableClass> object = shape.Make();
  CSerializationContext context;
  context.GetNamespaceAliases().Add("t", "urn:t");
  for (const char* const own : {"r", ""}) {
    object->SetElementName(own);
    EXPECT_EQ(WriteOutcome(*object, context), "<t:r xmlns:t=\"urn:t\"/>");
  }
  object->SetElementName("other");
  EXPECT_EQ(WriteOutcome(*object, context),
            "<t:other xmlns:t=\"urn:t\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "AA:type=\"t:r\"/>");
  context.SetWriteTypeAttribute(false);
  EXPECT_EQ(WriteOutcome(*object, context), "<t:other xmlns:t=\"urn:t\"/>");
}

TEST(Text, IsConvertedOrKeptAndMayBeMissing) {
  struct Case {
    ItemType type;
    bool isRaw;
    const char* text;
    const char* expected;
  };
  for (const Case& c :
       {Case{ItemType::i4, false, " 5 ", "5"}, Case{ItemType::string, false, " 5 ", " 5 "},
        Case{ItemType::i4, true, " x ", " x "}, Case{ItemType::Invalid, true, "x", ""}}) {
    Shape shape("r");
    shape.Text(c.type, c.isRaw);
    EXPECT_EQ(Outcome(*shape.Make(), Root(c.text)), c.expected) << c.text;
  }
  Shape shape("r");
  shape.Text().Prim<CElementInfoSeqPrimOpt>("a");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object), "<r/>");
  object->properties[0].SetNil();
  EXPECT_EQ(WriteOutcome(*object), "<r/>");
  EXPECT_EQ(Outcome(*object, "<r> 7 <a>1</a></r>"), "7 a=1");
  EXPECT_EQ(WriteOutcome(*object), "<r><a>1</a>7</r>");
}

TEST(GeneratedClass, TakesTheNameOfItsElementAndKeepsWhatItIsNotTold) {
  Shape shape("r");
  shape.Prim<CElementInfoSeqPrimOpt>("a").Numbers<CElementInfoSeqPrimCol>("b");
  const CSmartPtr<BindableClass> object = shape.Make();
  Outcome(*object, "<r><a>1</a><b>2</b></r>");
  EXPECT_EQ(Outcome(*object, "<s><b>3</b></s>"), "a=1 b=[2 3]");
  EXPECT_EQ(object->GetElementName(), "s");
  EXPECT_EQ(object->starts, 2);
}

TEST(GeneratedClass, RefusesWhatItCannotWorkWith) {
  const Shape shape("r", static_cast<Group>(3));
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(WriteOutcome(*object),
            "!Failed to convert the element [r] to XML\nUnknown XML Group Type");
  EXPECT_EQ(Outcome(*object, Root("")), Failed("Unknown Group Type"));
  EXPECT_ZU_ERROR(CZuInvalidParamException, object->FromXml_Int(nullptr, nullptr, kContext, false),
                  "The Property [element] is mandatory, it may node be NULL", "");
}

TEST(GeneratedClass, KnowsItsEntries) {
  Shape shape("r");
  const CSmartPtr<BindableClass> empty = shape.Make();
  EXPECT_EQ(empty->GetClassElementInfoCount(), 0) << "no table at all";
  EXPECT_FALSE(empty->IsElementInList(kContext, nullptr));
  shape.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimOpt>("b");
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_EQ(object->GetClassElementInfoCount(), 2);
  CXmlDocument document;
  document.LoadXml("<z:b xmlns:z='urn:z'/>");
  EXPECT_FALSE(object->IsElementInList(kContext, document.GetDocumentElement()));
  EXPECT_TRUE(object->IsElementInList(Ignoring("N"), document.GetDocumentElement()));
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
  info = new CParentElementInfo(Group::All, kElement, "r", "", false, false, -1, ItemType::Invalid,
                                nullptr, false);
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
  Shape group("g", Group::Sequence, kPseudo), choice("g", Group::Choice, kPseudo);
  group.Prim<CElementInfoSeqPrimOpt>("a").Prim<CElementInfoSeqPrimMnd>("b");
  choice.Prim<CElementInfoChoicePrimOpt>("a").Child<CElementInfoChoiceClsOpt>("g", group);
  Shape sequence("r"), choices("r", Group::Choice), all("r", Group::All);
  sequence.Child<CElementInfoSeqClsOpt>("g", group).Child<CElementInfoSeqClsMnd>("g", choice);
  sequence.Objects<CElementInfoSeqClsCol>("g", group).Numbers<CElementInfoSeqPrimCol>("n");
  sequence.Prim<CElementInfoSeqPrimMnd>("y");
  choices.Child<CElementInfoChoiceClsOpt>("g", choice);
  choices.Objects<CElementInfoChoiceClsCol>("g", group, 1).Prim<CElementInfoChoicePrimOpt>("y");
  all.Child<CElementInfoAllClsOpt>("g", group).Child<CElementInfoAllClsOpt>("g", choice);
  all.Numbers<CElementInfoAllPrimCol>("n").Prim<CElementInfoAllPrimMnd>("y");
  std::string unknown;
  for (int i = 0; i < 300000; ++i)
    unknown += "<u/>";
  const std::string xml = Root(unknown + "<y>1</y>" + unknown);
  EXPECT_EQ(Outcome(*sequence.Make(), xml, Ignoring("U")), "g={} y=1");
  EXPECT_EQ(Outcome(*choices.Make(), xml, Ignoring("U")), "y=1");
  EXPECT_EQ(Outcome(*all.Make(), xml, Ignoring("U")), "y=1");
}

}  // namespace
}  // namespace ZuXmlLib16
