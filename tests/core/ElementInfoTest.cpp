#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "ZuXmlLib16/XmlTextWriter.h"
#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

/// Reads children of a root with the only entry: its answer, the number of digits "1" that the
/// property then holds, and the name of the element reading has got to; or "!" and the failure.
std::string ReadEntry(BindableClass& object, const std::string& children, const char* options = "",
                      XmlElementType parentType = kElement) {
  CXmlDocument document;
  document.LoadXml(("<r xmlns:z='urn:z' xmlns:i='http://www.w3.org/2001/XMLSchema-instance'>" +
                    children + "</r>")
                       .c_str());
  CXmlElement* const root = document.GetDocumentElement();
  CXmlElement* current = root->GetFirstElement();
  CElementInfo& entry = *object.GetElementMetaData()[0];
  try {
    const bool answer =
        entry.ElementFromXml(Ignoring(options), &object, root, &current, "", parentType);
    const std::string held = object.Describe();
    return std::string(answer ? "yes " : "no ") +
           std::to_string(std::count(held.begin(), held.end(), '1')) + " " +
           (current != nullptr ? current->GetLocalName() : "-");
  } catch (const CZuException& failure) {
    return "!" + failure.GetMessage();
  }
}

/// Has the only entry write into a root: what becomes of the root, before it "!" and the failure.
std::string WriteEntry(const BindableClass& object, const char* options = "",
                       bool attributesOnly = false) {
  CTextStream stream;
  CXmlTextWriter writer(stream);
  writer.SetFormat(false);
  writer.Open();
  writer.WriteStartElement("r", "");
  const CElementInfo& entry = *object.GetElementMetaData()[0];
  std::string outcome;
  try {
    if (attributesOnly) {
      entry.PseudoChildAttributeToXml(kContext, &object, &writer);
    } else if (!entry.ElementToXml(Ignoring(options), &object, &writer)) {
      outcome = "no ";
    }
  } catch (const CZuException& failure) {
    outcome = "!" + failure.GetMessage();
  }
  writer.WriteEndElement();
  writer.Close();
  return outcome + stream.CopyText();
}

// The grid: for every entry a class that has nothing else, for elements "p" that hold a digit.

enum class Place { SeqMnd, SeqOpt, ChoiceOpt, AllMnd, AllOpt, SeqCol, ChoiceCol, AllCol };
enum class Content { Simple, Class, Abstract, Untyped };

struct Cell {
  Place place;
  Content content;
  std::function<void(Shape&, const Shape&)> addEntry;  // of the first, for objects of the second
};

// Repeated enumerations of an all-group are held by the entry of primitives.
static_assert(std::is_abstract_v<CElementInfoAllEnumCol>);

// clang-format off
CXmlCollectionBase* NewDigits() { return new CXmlEnumCol<int>("p", "", 1, 2, DigitToText, DigitFromText); }
CXmlCollectionBase* NewSubstitutes() { return new CXmlClassCol<BindableClass>("p", "", 1, 2, kElement, Shape::MakeSubstitute); }
CXmlCollectionBase* NewUntyped() { return new CElementCol("p", "##local", "", 1, 2); }

template <class Prim, class Enum, class Cls, class AbsCls, class Untpd>
void AddCells(std::vector<Cell>& cells, Place place) {
  cells.push_back({place, Content::Simple, [](Shape& s, const Shape&) { s.Prim<Prim>("p"); }});
  cells.push_back({place, Content::Simple, [](Shape& s, const Shape&) { s.Enum<Enum>("p"); }});
  cells.push_back({place, Content::Class, [](Shape& s, const Shape& item) { s.Child<Cls>("p", item); }});
  cells.push_back({place, Content::Abstract, [](Shape& s, const Shape& item) { s.Substitute<AbsCls>("p", item.elementType); }});
  cells.push_back({place, Content::Untyped, [](Shape& s, const Shape&) { s.Any<Untpd>("p", "##local"); }});
}

template <class Col, class Prim, class Cls, class AbsCls, class Untpd>
void AddColCells(std::vector<Cell>& cells, Place place) {
  cells.push_back({place, Content::Simple, [](Shape& s, const Shape&) { s.Items<Col>("p", NewDigits); }});
  cells.push_back({place, Content::Simple, [](Shape& s, const Shape&) { s.Numbers<Prim>("p", 1, 2); }});
  cells.push_back({place, Content::Class, [](Shape& s, const Shape& item) { s.Objects<Cls>("p", item, 1, 2); }});
  cells.push_back({place, Content::Abstract, [](Shape& s, const Shape& item) { s.Items<AbsCls>("p", NewSubstitutes, item.elementType); }});
  cells.push_back({place, Content::Untyped, [](Shape& s, const Shape&) { s.Items<Untpd>("p", NewUntyped, "##local", ""); }});
}

std::vector<Cell> Grid() {
  std::vector<Cell> cells;
  AddCells<CElementInfoSeqPrimMnd, CElementInfoSeqEnumMnd, CElementInfoSeqClsMnd, CElementInfoSeqAbsClsMnd, CElementInfoSeqUntpdMnd>(cells, Place::SeqMnd);
  AddCells<CElementInfoSeqPrimOpt, CElementInfoSeqEnumOpt, CElementInfoSeqClsOpt, CElementInfoSeqAbsClsOpt, CElementInfoSeqUntpdOpt>(cells, Place::SeqOpt);
  AddCells<CElementInfoChoicePrimOpt, CElementInfoChoiceEnumOpt, CElementInfoChoiceClsOpt, CElementInfoChoiceAbsClsOpt, CElementInfoChoiceUntpdOpt>(cells, Place::ChoiceOpt);
  AddCells<CElementInfoAllPrimMnd, CElementInfoAllEnumMnd, CElementInfoAllClsMnd, CElementInfoAllAbsClsMnd, CElementInfoAllUntpdMnd>(cells, Place::AllMnd);
  AddCells<CElementInfoAllPrimOpt, CElementInfoAllEnumOpt, CElementInfoAllClsOpt, CElementInfoAllAbsClsOpt, CElementInfoAllUntpdOpt>(cells, Place::AllOpt);
  AddColCells<CElementInfoSeqCol, CElementInfoSeqPrimCol, CElementInfoSeqClsCol, CElementInfoSeqAbsClsCol, CElementInfoSeqUntpdCol>(cells, Place::SeqCol);
  AddColCells<CElementInfoSeqEnumCol, CElementInfoSeqPrimCol, CElementInfoSeqClsCol, CElementInfoSeqAbsClsCol, CElementInfoSeqUntpdCol>(cells, Place::SeqCol);
  AddColCells<CElementInfoChoiceCol, CElementInfoChoicePrimCol, CElementInfoChoiceClsCol, CElementInfoChoiceAbsClsCol, CElementInfoChoiceUntpdCol>(cells, Place::ChoiceCol);
  AddColCells<CElementInfoChoiceEnumCol, CElementInfoChoicePrimCol, CElementInfoChoiceClsCol, CElementInfoChoiceAbsClsCol, CElementInfoChoiceUntpdCol>(cells, Place::ChoiceCol);
  AddColCells<CElementInfoAllCol, CElementInfoAllPrimCol, CElementInfoAllClsCol, CElementInfoAllAbsClsCol, CElementInfoAllUntpdCol>(cells, Place::AllCol);
  return cells;
}
// clang-format on

/// An object of the class of a cell.
struct CellObject {
  explicit CellObject(const Cell& cell, XmlElementType itemType = kElement)
      : item("p", Group::Sequence, itemType), shape("r") {
    item.Text().Number("n");
    cell.addEntry(shape, item);
    object = shape.Make();
  }
  Shape item;
  Shape shape;
  CSmartPtr<BindableClass> object;
};

template <class Check>
void ForEveryCell(Check check) {
  for (const Cell& cell : Grid()) {
    SCOPED_TRACE("place " + std::to_string(static_cast<int>(cell.place)) + ", content " +
                 std::to_string(static_cast<int>(cell.content)));
    check(cell);
  }
}

constexpr const char* kTooFew =
    "!The Minimum number of [p] elements allowed in this collection is 1";
constexpr const char* kTooMany =
    "!The Maximum number of [p] elements allowed in this collection is 2";

struct ReadCase {
  Place place;
  const char* children;  // "q" is a "p" of another namespace
  const char* options;
  const char* inElement;
  const char* inPseudo;
};

// clang-format off
const ReadCase kReadCases[] = {
    {Place::SeqMnd,    "pz",   "",  "yes 1 z",  "yes 1 z"},
    {Place::SeqMnd,    "",     "",  "!missing", "no 0 -"},
    {Place::SeqMnd,    "qp",   "",  "!refused", "no 0 p"},
    {Place::SeqMnd,    "zp",   "",  "!missing", "no 0 z"},
    {Place::SeqMnd,    "zqpz", "U", "yes 1 z",  "yes 1 z"},
    {Place::SeqMnd,    "z",    "U", "!missing", "no 0 -"},
    {Place::SeqMnd,    "zp",   "M", "yes 0 z",  "no 0 z"},
    {Place::SeqOpt,    "pz",   "",  "yes 1 z",  "yes 1 z"},
    {Place::SeqOpt,    "",     "",  "yes 0 -",  "yes 0 -"},
    {Place::SeqOpt,    "q",    "",  "yes 0 p",  "yes 0 p"},
    {Place::SeqOpt,    "zp",   "U", "yes 0 z",  "yes 0 z"},
    {Place::ChoiceOpt, "pp",   "",  "yes 1 p",  "yes 1 p"},
    {Place::ChoiceOpt, "",     "",  "no 0 -",   "no 0 -"},
    {Place::ChoiceOpt, "zp",   "U", "no 0 z",   "no 0 z"},
    {Place::AllMnd,    "pz",   "",  "yes 1 z",  "yes 1 z"},
    {Place::AllMnd,    "zp",   "U", "no 0 z",   "no 0 z"},
    {Place::AllOpt,    "pz",   "",  "yes 1 z",  "yes 1 z"},
    {Place::AllOpt,    "q",    "",  "no 0 p",   "no 0 p"},
    {Place::SeqCol,    "ppz",  "",  "yes 2 z",  "yes 2 z"},
    {Place::SeqCol,    "",     "",  kTooFew,    "no 0 -"},
    {Place::SeqCol,    "q",    "",  kTooFew,    "no 0 p"},
    {Place::SeqCol,    "pppz", "",  kTooMany,   "no 0 z"},  // the items are out again
    {Place::SeqCol,    "pppz", "I", "yes 3 z",  "yes 3 z"},
    {Place::ChoiceCol, "ppz",  "",  "yes 2 z",  "yes 2 z"},
    {Place::ChoiceCol, "zp",   "",  "no 0 z",   "no 0 z"},
    {Place::ChoiceCol, "pppz", "",  kTooMany,   "no 0 p"},
    {Place::AllCol,    "pppz", "",  "no 3 z",   "no 3 z"},  // its count is looked at later
};
// clang-format on

std::string Children(const std::string& names) {
  std::string children;
  for (const char name : names) {
    children += name == 'p' ? "<p>1</p>" : name == 'q' ? "<z:p>1</z:p>" : "<z:z>1</z:z>";
  }
  return children;
}

/// What "!missing" and "!refused" (a right name in a wrong namespace) stand for.
std::string Expected(const std::string& outcome, Content content) {
  if (outcome != "!missing" && outcome != "!refused") return outcome;
  const std::string what = content == Content::Abstract
                               ? "!Failed to find a suitable substitution element for [p]."
                           : content == Content::Untyped && outcome == "!refused"
                               ? "!Failed to find the required element from namespace [##local]."
                               : "!Failed to find the required child element [p].";
  return what + "\nPath: /r";
}

TEST(ElementGrid, EveryEntryReadsAsItsPlaceSays) {
  ForEveryCell([](const Cell& cell) {
    for (const ReadCase& c : kReadCases) {
      if (c.place != cell.place) continue;
      SCOPED_TRACE(std::string(c.children) + ", ignoring " + c.options);
      for (const XmlElementType parent : {kElement, kPseudo}) {
        EXPECT_EQ(ReadEntry(*CellObject(cell).object, Children(c.children), c.options, parent),
                  Expected(parent == kElement ? c.inElement : c.inPseudo, cell.content));
      }
    }
  });
}

struct WriteCase {
  Place place;
  // What a property of so many elements gives: before the root or in it
  const char* none;
  const char* one;
  const char* three;
};

// clang-format off
constexpr const char* kNull = "!The Property [p] is mandatory, it may not be NULL";
constexpr const char* kOne = "<p>1</p>";
constexpr const char* kThree = "<p>1</p><p>1</p><p>1</p>";
const WriteCase kWriteCases[] = {
    {Place::SeqMnd,    kNull,   kOne, nullptr},
    {Place::SeqOpt,    "no ",   kOne, nullptr},
    {Place::ChoiceOpt, "no ",   kOne, nullptr},
    {Place::AllMnd,    kNull,   kOne, nullptr},
    {Place::AllOpt,    "no ",   kOne, nullptr},
    {Place::SeqCol,    kTooFew, kOne, kTooMany},
    {Place::ChoiceCol, "no ",   kOne, kThree},
    {Place::AllCol,    kTooFew, kOne, kTooMany},
};
// clang-format on

std::string WrittenWith(const Cell& cell, unsigned count, const char* options) {
  const CellObject one(cell);
  if (cell.place < Place::SeqCol) one.object->properties[0].Clear();
  if (count > 0) ReadEntry(*one.object, Children(std::string(count, 'p')), "I");
  return WriteEntry(*one.object, options);
}

std::string InRoot(const std::string& expected) {
  return expected[0] == '<' ? "<r>" + expected + "</r>" : expected + "<r/>";
}

TEST(ElementGrid, EveryEntryWritesAsItsPlaceSays) {
  ForEveryCell([](const Cell& cell) {
    const WriteCase& c = kWriteCases[static_cast<int>(cell.place)];
    EXPECT_EQ(WrittenWith(cell, 0, ""), InRoot(c.none));
    EXPECT_EQ(WrittenWith(cell, 1, ""), InRoot(c.one));
    if (c.three == nullptr) return;
    EXPECT_EQ(WrittenWith(cell, 3, ""), InRoot(c.three));
    EXPECT_EQ(WrittenWith(cell, 3, "I"), InRoot(kThree));
    EXPECT_EQ(WrittenWith(cell, 0, "I"), InRoot("no "));
  });
}

TEST(ElementGrid, OnlySingleMembersOfAllGroupsCanBeValidated) {
  ForEveryCell([](const Cell& cell) {
    const CellObject one(cell);
    const CElementInfo& entry = *one.shape.GetElements()[0];
    const auto validate = [&](bool found, bool mustExist) {
      return entry.Validate(kContext, nullptr, found, mustExist);
    };
    if (cell.place == Place::AllOpt) {
      EXPECT_TRUE(validate(false, true) && validate(false, false));
    } else if (cell.place != Place::AllMnd) {
      EXPECT_ZU_ERROR(CZuException, validate(true, true), "Not implemented, should never be called",
                      "");
    } else {
      EXPECT_TRUE(validate(true, true));
      EXPECT_FALSE(validate(false, false));
      if (cell.content == Content::Class) {  // deliberately let through
        EXPECT_TRUE(validate(false, true));
      } else {
        EXPECT_ZU_ERROR(CZuValidationException, validate(false, true),
                        "Failed to find the mandatory element [p].", "");
      }
    }
  });
}

TEST(ElementGrid, NullCollectionsCountAsAbsent) {
  ForEveryCell([](const Cell& cell) {
    if (cell.place < Place::SeqCol) return;
    const CellObject one(cell);
    one.object->properties[0].SetXmlCollection(nullptr);
    EXPECT_EQ(WriteEntry(*one.object), "no <r/>");
    EXPECT_EQ(ReadEntry(*one.object, "<p/>"), cell.place == Place::SeqCol ? "yes 0 p" : "no 0 p");
  });
}

TEST(ElementGrid, PseudoElementsWriteTheirAttributesIntoTheTagOfTheirParent) {
  ForEveryCell([](const Cell& cell) {
    if (cell.content != Content::Class && cell.content != Content::Abstract) return;
    for (const XmlElementType type : {kElement, kPseudo}) {
      const CellObject one(cell, type);
      const CSmartPtr<BindableClass> child = one.item.Make();
      child->properties[1].SetI4(1);
      ZuVariant& property = one.object->properties[0];
      if (const CSmartPtr<CXmlCollectionBase> items = property.GetXmlCollection()) {
        dynamic_cast<CXmlCollection&>(*items).AppendItem(child.Get());
      } else {
        property.SetXmlObject(child.Get());
      }
      EXPECT_EQ(WriteEntry(*one.object, "", true), type == kPseudo ? "<r n=\"1\"/>" : "<r/>");
    }
  });
}

/// What an element "p" becomes in a class with that entry, and a value in the property.
std::string ReadBy(const Shape& shape, const std::string& element, const char* options = "") {
  const CSmartPtr<BindableClass> object = shape.Make();
  const std::string outcome = ReadEntry(*object, element, options);
  return outcome[0] == '!' ? outcome : object->Describe();
}

std::string WrittenBy(const Shape& shape, const ZuVariant& value) {
  const CSmartPtr<BindableClass> object = shape.Make();
  object->properties[0] = value;
  return WriteEntry(*object);
}

ZuVariant Number(long value) {
  ZuVariant number;
  number.SetI4(value);
  return number;
}

TEST(SimpleElement, ReadsAndWritesNilAndJudgesAttributes) {
  Shape number("r"), nillableNumber("r"), digit("r"), nillableDigit("r");
  number.Prim<CElementInfoChoicePrimOpt>("p");
  nillableNumber.Prim<CElementInfoSeqPrimMnd>("p", "", true);
  digit.Enum<CElementInfoSeqEnumOpt>("p");
  nillableDigit.Enum<CElementInfoAllEnumOpt>("p", "", true);
  constexpr const char* kNotAllowed =
      "!Invalid use of 'nil' attribute in non-nillable element.\nPath: /r/p";
  constexpr const char* kNeither =
      "!Unexpected Value [yes] for 'nil' Attribute found.\nPath: /r/p/i:@nil";
  constexpr const char* kType = "!Unexpected Attribute found.\nPath: /r/p/i:@type";
  constexpr const char* kX = "!Unexpected Attribute found.\nPath: /r/p/@x";
  struct Case {
    const char* element;
    const char* options;
    const char* nillable;
    const char* notNillable;
  };
  // clang-format off
  const Case cases[] = {
      {"<p i:nil='TRUE'/>",            "",  "p=nil",  kNotAllowed},
      {"<p i:nil='1'>2</p>",           "",  "p=nil",  kNotAllowed},
      {"<p i:nil='False'>2</p>",       "",  "p=2",    "p=2"},
      {"<p i:nil='0'>2</p>",           "",  "p=2",    "p=2"},
      {"<p i:nil='yes'>2</p>",         "A", kNeither, kNeither},
      {"<p x='' i:nil='yes'>2</p>",    "",  kX,       kX},
      {"<p i:type='t'>2</p>",          "",  kType,    kType},
      {"<p i:type='t' x=''>2</p>",     "A", "p=2",    "p=2"},
      {"<p xmlns:y='urn:y'>2<p/></p>", "",  "p=2",    "p=2"},  // declarations are no attributes
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.element);
    EXPECT_EQ(ReadBy(number, c.element, c.options), c.notNillable);
    EXPECT_EQ(ReadBy(nillableNumber, c.element, c.options), c.nillable);
    EXPECT_EQ(ReadBy(digit, c.element, c.options), c.notNillable);
    EXPECT_EQ(ReadBy(nillableDigit, c.element, c.options), c.nillable);
  }
  ZuVariant nil;
  nil.SetNil();
  for (const Shape* shape : {&number, &nillableNumber, &digit}) {
    EXPECT_EQ(WrittenBy(*shape, nil),
              "<r><p xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/></r>");
  }
}

TEST(SimpleElement, UsesDefaultAndFacets) {
  Shape number("r"), digit("r");
  number.Prim<CElementInfoSeqPrimMnd>("p", "42", false, kOneDigit);
  digit.Enum<CElementInfoAllEnumMnd>("p", "2");
  EXPECT_EQ(ReadBy(number, "<p/>"), "p=42");
  EXPECT_EQ(ReadBy(number, "<p> 7 </p>"), "p=7");
  EXPECT_EQ(ReadBy(number, "<p> </p>")[0], '!') << "only an empty element is the default";
  EXPECT_EQ(ReadBy(number, "<p>99</p>"), "p=99") << "reading looks at no facet";
  EXPECT_EQ(WrittenBy(number, Number(9)), "<r><p>9</p></r>");
  EXPECT_EQ(WrittenBy(number, Number(42)), "<r><p/></r>") << "the default passes, and is left out";
  EXPECT_EQ(WrittenBy(number, Number(43)), "!Invalid Value for p [43]<r/>") << "before the tag";
  EXPECT_EQ(ReadBy(digit, "<p/>"), "p=2");
  EXPECT_EQ(ReadBy(digit, "<p> 1</p>"), "!No digit:  1") << "white space is kept";
  EXPECT_EQ(WrittenBy(digit, Number(2)), "<r><p/></r>");
  EXPECT_EQ(ReadBy(digit, "<z:p>1</z:p>", "N"), "p=1");
  EXPECT_EQ(ReadBy(number, "<z:p>1</z:p>", "N"), "p=1");
  EXPECT_ZU_ERROR(CZuException, digit.GetElements()[0]->CheckRestriction(Number(1)),
                  "Cannot CheckRestriction for type: i4", "");
}

TEST(ChildObject, ReadsIntoAMandatoryOneAndReplacesAnOptionalOne) {
  Shape item("p"), mandatory("r"), optional("r");
  item.Text();
  mandatory.Child<CElementInfoSeqClsMnd>("p", item);
  optional.Child<CElementInfoSeqClsOpt>("p", item);
  for (const Shape* shape : {&mandatory, &optional}) {
    const CSmartPtr<BindableClass> holder = shape->Make();
    ReadEntry(*holder, "<p>1</p>");
    const CSmartPtr<CXmlObjectBase> first = holder->properties[0].GetXmlObject();
    EXPECT_EQ(ReadEntry(*holder, "<p>bad</p>")[0], '!');
    EXPECT_EQ(holder->properties[0].GetXmlObject(), first) << "not replaced by one that failed";
    EXPECT_EQ(ReadEntry(*holder, "<p>1</p>"), "yes 1 -");
    EXPECT_EQ(holder->properties[0].GetXmlObject() == first, shape == &mandatory);
  }
}

/// Reads a member that is a group with an optional "a".
template <class Entry>
std::string ReadGroup(const char* children, const char* options, XmlElementType parent,
                      bool required = false) {
  Shape group("g", Group::Sequence, kPseudo), shape("r");
  group.Prim<CElementInfoSeqPrimOpt>("a");
  shape.Child<Entry>("g", group, required);
  return ReadEntry(*shape.Make(), children, options, parent);
}

TEST(PseudoChild, TakesFromItsParentWhatItCan) {
  constexpr const char* kA = "<a>1</a><z/>";
  constexpr const char* kMissing = "!Failed to find the required child element [g].\nPath: /r";
  for (const XmlElementType parent : {kElement, kPseudo}) {
    const bool isElement = parent == kElement;
    using Mnd = CElementInfoSeqClsMnd;
    EXPECT_EQ(ReadGroup<Mnd>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(ReadGroup<Mnd>("<z/>", "", parent), "yes 0 z");
    EXPECT_EQ(ReadGroup<Mnd>("", "", parent), "yes 0 -");
    EXPECT_EQ(ReadGroup<Mnd>("<y/><a>1</a><z/>", "U", parent), "yes 1 z");
    EXPECT_EQ(ReadGroup<Mnd>("<y/><z/>", "U", parent), "yes 0 y") << "others may know them";
    EXPECT_EQ(ReadGroup<Mnd>(kA, "", parent, true), "yes 1 z");
    EXPECT_EQ(ReadGroup<Mnd>("<z/>", "", parent, true), isElement ? kMissing : "no 0 z");
    EXPECT_EQ(ReadGroup<Mnd>("", "", parent, true), isElement ? kMissing : "no 0 -");
    EXPECT_EQ(ReadGroup<Mnd>("<z/>", "M", parent, true), isElement ? "yes 0 z" : "no 0 z");
    EXPECT_EQ(ReadGroup<Mnd>("<y/><a>1</a>", "U", parent, true), "yes 1 -");
    EXPECT_EQ(ReadGroup<CElementInfoSeqClsOpt>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(ReadGroup<CElementInfoSeqClsOpt>("<z/>", "U", parent), "yes 0 z");
    EXPECT_EQ(ReadGroup<CElementInfoChoiceClsOpt>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(ReadGroup<CElementInfoChoiceClsOpt>("<z/>", "", parent), "no 0 z");
    EXPECT_EQ(ReadGroup<CElementInfoAllClsMnd>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(ReadGroup<CElementInfoAllClsOpt>("<z/>", "", parent), "no 0 z");
  }
}

TEST(PseudoChild, MayNotBeMissingFromAnAllGroup) {
  const Shape group("g", Group::Sequence, kPseudo), element("g");
  Shape shape("r");
  shape.Child<CElementInfoAllClsMnd>("g", group).Child<CElementInfoAllClsMnd>("g", element, true);
  for (const int i : {0, 1}) {
    EXPECT_ZU_ERROR(CZuValidationException,
                    shape.GetElements()[i]->Validate(kContext, nullptr, false, true),
                    "Failed to find the mandatory element [g].", "");
  }
}

TEST(AbstractMember, IsMadeByTypeOrNameAndMayBePseudo) {
  Shape derived("derived"), group("a", Group::Sequence, kPseudo), shape("r");
  derived.Text();
  group.Prim<CElementInfoSeqPrimMnd>("a");
  shape.Substitute<CElementInfoSeqAbsClsMnd>("p").Substitute<CElementInfoSeqAbsClsOpt>("g",
                                                                                       kPseudo);
  const CSmartPtr<BindableClass> object = shape.Make();
  const std::string xml =
      "<r xmlns:i='http://www.w3.org/2001/XMLSchema-instance'><x i:type='derived'>5</x>";
  EXPECT_EQ(Outcome(*object, xml + "<a>6</a></r>"), "p={5} g={a=6}");
  EXPECT_EQ(object->properties[0].GetXmlObject()->GetElementName(), "x");
  EXPECT_EQ(Outcome(*shape.Make(), xml + "</r>"), "p={5}");
}

TEST(UntypedMember, TakesNamesAndNamespacesThatAreAllowed) {
  const char* const cases[][4] = {
      {"AnyElement", "##any", "<q>1</q>", "yes 1 -"},
      {"AnyElement", "##other", "<q>1</q><z/>", "no 0 q"},
      {"AnyElement", "##other", "<z:q>1</z:q>", "yes 1 -"},
      {"AnyElement", "urn:y urn:z", "<z:q>1</z:q>", "yes 1 -"},
      {"q", "urn:y urn:z", "<z:q>1</z:q>", "yes 1 -"},
      {"p", "urn:y urn:z", "<z:q>1</z:q>", "no 0 q"},
  };
  for (const auto& [name, restriction, children, expected] : cases) {
    Shape shape("r", Group::Choice);
    shape.Any<CElementInfoChoiceUntpdOpt>(name, restriction);
    EXPECT_EQ(ReadEntry(*shape.Make(), children), expected) << name << " of " << restriction;
  }
  Shape held("r");
  held.Any<CElementInfoSeqUntpdOpt>("AnyElement", "##any");
  const CSmartPtr<BindableClass> object = held.Make();
  object->properties[0].SetXmlObject(new CElement("own", "", "urn:y", ""));
  EXPECT_EQ(ReadEntry(*object, "<z:q/>"), "yes 0 q") << "the rules of its own element hold";
}

TEST(UntypedCollection, TakesElementsOfItsNameOnly) {
  const auto make = [] { return new CElementCol("q", "##any", "", 0, -1); };
  Shape named("r"), any("r");
  named.Items<CElementInfoSeqUntpdCol>("q", make, "##targetNamespace", "urn:z");
  any.Items<CElementInfoSeqUntpdCol>("AnyElement", make, "##targetNamespace", "urn:z");
  EXPECT_EQ(ReadEntry(*named.Make(), "<z:q>1</z:q><z:q>1</z:q><q>1</q>"), "yes 2 q");
  EXPECT_EQ(ReadEntry(*any.Make(), "<z:q>1</z:q><q>1</q>"), "yes 2 -");
}

}  // namespace
}  // namespace ZuXmlLib16
