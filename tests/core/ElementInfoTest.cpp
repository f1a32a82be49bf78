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
using Group = XmlElementGroupType;
constexpr auto kElement = XmlElementType::Element;
constexpr auto kPseudo = XmlElementType::Pseudo;
const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

/// Children of a root, ready to be read one entry at a time.
struct Input {
  explicit Input(const std::string& children) {
    document.LoadXml(("<r xmlns:z='urn:z' xmlns:i='http://www.w3.org/2001/XMLSchema-instance'>" +
                      children + "</r>")
                         .c_str());
    root = document.GetDocumentElement();
    current = root->GetFirstElement();
  }
  CXmlDocument document;
  CXmlElement* root;
  CXmlElement* current;
};

/// Reads with the only entry: its answer, the number of digits "1" that the property then holds,
/// and the local name of the element reading has got to; or the failure.
std::string ReadEntry(BindableClass& object, const std::string& children, const char* options,
                      XmlElementType parentType) {
  Input in(children);
  try {
    const bool answer =
        (*object.GetElementMetaData())
            ->ElementFromXml(Ignoring(options), &object, in.root, &in.current, "", parentType);
    const std::string held = object.Describe();
    return std::string(answer ? "yes " : "no ") +
           std::to_string(std::count(held.begin(), held.end(), '1')) + " " +
           (in.current != nullptr ? in.current->GetLocalName() : "-");
  } catch (const CZuException& failure) {
    return "!" + failure.GetMessage();
  }
}

/// Writes with the only entry: its answer and what is in the root; or the failure.
std::string WriteEntry(const BindableClass& object, const char* options) {
  CTextStream stream;
  CXmlTextWriter writer(stream);
  writer.SetFormat(false);
  writer.Open();
  writer.WriteStartElement("r", "");
  std::string outcome;
  try {
    outcome = (*object.GetElementMetaData())->ElementToXml(Ignoring(options), &object, &writer)
                  ? "yes "
                  : "no ";
  } catch (const CZuException& failure) {
    outcome = "!" + failure.GetMessage();
  }
  writer.WriteEndElement();
  writer.Close();
  const std::string xml = stream.CopyText();
  return outcome + (xml == "<r/>" ? "" : xml.substr(3, xml.size() - 7));
}

// The grid: for every entry a class whose only member it is, an element "p" that holds a digit.

enum class Place { SeqMnd, SeqOpt, ChoiceOpt, AllMnd, AllOpt, SeqCol, ChoiceCol, AllCol };
enum class Content { Simple, Class, Abstract, Untyped };

struct Cell {
  const char* name;
  Place place;
  Content content;
  std::function<void(Shape&, const Shape&)> addEntry;  // of the class, for objects of the other
};

CXmlCollectionBase* NewDigits() {
  return new CXmlEnumCol<int>("p", "", 1, 2, DigitToText, DigitFromText);
}
CXmlCollectionBase* NewSubstitutes() {
  return new CXmlClassCol<BindableClass>("p", "", 1, 2, kElement, Shape::MakeSubstitute);
}
CXmlCollectionBase* NewUntyped() {
  return new CElementCol("p", "##local", "", 1, 2);
}

// clang-format off
template <class Prim, class Enum, class Cls, class AbsCls, class Untpd>
void AddCells(std::vector<Cell>& cells, const char* name, Place place) {
  cells.push_back({name, place, Content::Simple, [](Shape& s, const Shape&) { s.Prim<Prim>("p"); }});
  cells.push_back({name, place, Content::Simple, [](Shape& s, const Shape&) { s.Enum<Enum>("p"); }});
  cells.push_back({name, place, Content::Class, [](Shape& s, const Shape& item) { s.Child<Cls>("p", item); }});
  cells.push_back({name, place, Content::Abstract, [](Shape& s, const Shape& item) { s.Substitute<AbsCls>("p", item.GetType()); }});
  cells.push_back({name, place, Content::Untyped, [](Shape& s, const Shape&) { s.Any<Untpd>("p", "##local"); }});
}

template <class Col, class Prim, class Cls, class AbsCls, class Untpd>
void AddColCells(std::vector<Cell>& cells, const char* name, Place place) {
  cells.push_back({name, place, Content::Simple, [](Shape& s, const Shape&) { s.Numbers<Col>("p", 1, 2); }});
  cells.push_back({name, place, Content::Simple, [](Shape& s, const Shape&) { s.Numbers<Prim>("p", 1, 2); }});
  cells.push_back({name, place, Content::Class, [](Shape& s, const Shape& item) { s.Objects<Cls>("p", item, 1, 2); }});
  cells.push_back({name, place, Content::Abstract, [](Shape& s, const Shape& item) { s.Items<AbsCls>("p", NewSubstitutes, item.GetType()); }});
  cells.push_back({name, place, Content::Untyped, [](Shape& s, const Shape&) { s.Items<Untpd>("p", NewUntyped, "##local", ""); }});
}
// clang-format on

std::vector<Cell> Grid() {
  std::vector<Cell> cells;
  // clang-format off
  AddCells<CElementInfoSeqPrimMnd, CElementInfoSeqEnumMnd, CElementInfoSeqClsMnd, CElementInfoSeqAbsClsMnd, CElementInfoSeqUntpdMnd>(cells, "SeqMnd", Place::SeqMnd);
  AddCells<CElementInfoSeqPrimOpt, CElementInfoSeqEnumOpt, CElementInfoSeqClsOpt, CElementInfoSeqAbsClsOpt, CElementInfoSeqUntpdOpt>(cells, "SeqOpt", Place::SeqOpt);
  AddCells<CElementInfoChoicePrimOpt, CElementInfoChoiceEnumOpt, CElementInfoChoiceClsOpt, CElementInfoChoiceAbsClsOpt, CElementInfoChoiceUntpdOpt>(cells, "ChoiceOpt", Place::ChoiceOpt);
  AddCells<CElementInfoAllPrimMnd, CElementInfoAllEnumMnd, CElementInfoAllClsMnd, CElementInfoAllAbsClsMnd, CElementInfoAllUntpdMnd>(cells, "AllMnd", Place::AllMnd);
  AddCells<CElementInfoAllPrimOpt, CElementInfoAllEnumOpt, CElementInfoAllClsOpt, CElementInfoAllAbsClsOpt, CElementInfoAllUntpdOpt>(cells, "AllOpt", Place::AllOpt);
  AddColCells<CElementInfoSeqCol, CElementInfoSeqPrimCol, CElementInfoSeqClsCol, CElementInfoSeqAbsClsCol, CElementInfoSeqUntpdCol>(cells, "SeqCol", Place::SeqCol);
  AddColCells<CElementInfoChoiceCol, CElementInfoChoicePrimCol, CElementInfoChoiceClsCol, CElementInfoChoiceAbsClsCol, CElementInfoChoiceUntpdCol>(cells, "ChoiceCol", Place::ChoiceCol);
  AddColCells<CElementInfoAllCol, CElementInfoAllPrimCol, CElementInfoAllClsCol, CElementInfoAllAbsClsCol, CElementInfoAllUntpdCol>(cells, "AllCol", Place::AllCol);
  // clang-format on
  cells.push_back({"SeqEnumCol", Place::SeqCol, Content::Simple, [](Shape& s, const Shape&) {
                     s.Items<CElementInfoSeqEnumCol>("p", NewDigits);
                   }});
  cells.push_back({"ChoiceEnumCol", Place::ChoiceCol, Content::Simple, [](Shape& s, const Shape&) {
                     s.Items<CElementInfoChoiceEnumCol>("p", NewDigits);
                   }});
  return cells;
}

/// An object of a class that has the entry of a cell, whose objects are elements "p" with a digit.
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
void ForCells(bool (*isWanted)(const Cell&), Check check) {
  for (const Cell& cell : Grid()) {
    SCOPED_TRACE(std::string(cell.name) + ", content " +
                 std::to_string(static_cast<int>(cell.content)));
    if (isWanted(cell)) check(cell);
  }
}

// Repeated enumerations of an all-group are held otherwise.
static_assert(std::is_abstract_v<CElementInfoAllEnumCol>);

constexpr const char* kP = "<p>1</p>";
constexpr const char* kTooFew =
    "!The Minimum number of [p] elements allowed in this collection is 1";
constexpr const char* kTooMany =
    "!The Maximum number of [p] elements allowed in this collection is 2";

struct ReadCase {
  Place place;
  const char* children;  // "p" and "z:z" are short for elements
  const char* options;
  const char* inElement;
  const char* inPseudo;
};

// clang-format off
const ReadCase kReadCases[] = {
    {Place::SeqMnd,    "p z",     "",  "yes 1 z",  "yes 1 z"},
    {Place::SeqMnd,    "",        "",  "!missing", "no 0 -"},
    {Place::SeqMnd,    "z",       "",  "!missing", "no 0 z"},
    {Place::SeqMnd,    "q p",     "",  "!refused", "no 0 p"},  // "q" is "p" of another namespace
    {Place::SeqMnd,    "z p",     "",  "!missing", "no 0 z"},
    {Place::SeqMnd,    "z q p z", "U", "yes 1 z",  "yes 1 z"},
    {Place::SeqMnd,    "z",       "U", "!missing", "no 0 -"},
    {Place::SeqMnd,    "z p",     "M", "yes 0 z",  "no 0 z"},
    {Place::SeqMnd,    "",        "M", "yes 0 -",  "no 0 -"},
    {Place::SeqOpt,    "p z",     "",  "yes 1 z",  "yes 1 z"},
    {Place::SeqOpt,    "",        "",  "yes 0 -",  "yes 0 -"},
    {Place::SeqOpt,    "q",       "",  "yes 0 p",  "yes 0 p"},
    {Place::SeqOpt,    "z p",     "U", "yes 0 z",  "yes 0 z"},
    {Place::ChoiceOpt, "p p",     "",  "yes 1 p",  "yes 1 p"},
    {Place::ChoiceOpt, "",        "",  "no 0 -",   "no 0 -"},
    {Place::ChoiceOpt, "q",       "",  "no 0 p",   "no 0 p"},
    {Place::ChoiceOpt, "z p",     "U", "no 0 z",   "no 0 z"},
    {Place::AllMnd,    "p z",     "",  "yes 1 z",  "yes 1 z"},
    {Place::AllMnd,    "",        "",  "no 0 -",   "no 0 -"},
    {Place::AllMnd,    "q",       "",  "no 0 p",   "no 0 p"},
    {Place::AllMnd,    "z p",     "U", "no 0 z",   "no 0 z"},
    {Place::AllOpt,    "p z",     "",  "yes 1 z",  "yes 1 z"},
    {Place::AllOpt,    "",        "",  "no 0 -",   "no 0 -"},
    {Place::AllOpt,    "z p",     "U", "no 0 z",   "no 0 z"},
    {Place::SeqCol,    "p p z",   "",  "yes 2 z",  "yes 2 z"},
    {Place::SeqCol,    "",        "",  kTooFew,    "no 0 -"},
    {Place::SeqCol,    "q",       "",  kTooFew,    "no 0 p"},
    {Place::SeqCol,    "z p",     "U", kTooFew,    "no 0 z"},
    {Place::SeqCol,    "p p p z", "",  kTooMany,   "no 0 z"},  // the items are out again
    {Place::SeqCol,    "p p p z", "I", "yes 3 z",  "yes 3 z"},
    {Place::ChoiceCol, "p p z",   "",  "yes 2 z",  "yes 2 z"},
    {Place::ChoiceCol, "z p",     "",  "no 0 z",   "no 0 z"},
    {Place::ChoiceCol, "p p p z", "",  kTooMany,   "no 0 p"},
    {Place::AllCol,    "p p p z", "",  "no 3 z",   "no 3 z"},
    {Place::AllCol,    "z p",     "",  "no 0 z",   "no 0 z"},
};
// clang-format on

std::string Children(const std::string& names) {
  std::string children;
  for (const char name : names) {
    if (name == 'p') children += kP;
    if (name == 'q') children += "<z:p>1</z:p>";
    if (name == 'z') children += "<z:z>1</z:z>";
  }
  return children;
}

/// What "!missing" and "!refused" (a name right in a wrong namespace) stand for.
std::string Expected(const std::string& outcome, Content content, bool isSkipping) {
  const std::string path = "\nPath: /r";
  if (outcome != "!missing" && outcome != "!refused") return outcome;
  if (content == Content::Abstract) {
    return "!Failed to find a suitable substitution element for [p]." + path;
  }
  if (content == Content::Untyped && outcome == "!refused" && !isSkipping) {
    return "!Failed to find the required element from namespace [##local]." + path;
  }
  return "!Failed to find the required child element [p]." + path;
}

bool IsAny(const Cell&) {
  return true;
}

TEST(ElementGrid, EveryEntryReadsAsItsPlaceSays) {
  ForCells(IsAny, [](const Cell& cell) {
    for (const ReadCase& c : kReadCases) {
      if (c.place != cell.place) continue;
      SCOPED_TRACE(std::string(c.children) + ", ignoring " + c.options);
      for (const XmlElementType parent : {kElement, kPseudo}) {
        const char* const outcome = parent == kElement ? c.inElement : c.inPseudo;
        EXPECT_EQ(ReadEntry(*CellObject(cell).object, Children(c.children), c.options, parent),
                  Expected(outcome, cell.content, *c.options == 'U'));
      }
    }
  });
}

struct WriteCase {
  Place place;
  unsigned count;  // of elements that the property holds
  const char* options;
  const char* expected;
};

constexpr const char* kNull = "!The Property [p] is mandatory, it may not be NULL";

// clang-format off
const WriteCase kWriteCases[] = {
    {Place::SeqMnd,    1, "",  "yes <p>1</p>"},
    {Place::SeqMnd,    0, "M", kNull},
    {Place::AllMnd,    1, "",  "yes <p>1</p>"},
    {Place::AllMnd,    0, "",  kNull},
    {Place::SeqOpt,    1, "",  "yes <p>1</p>"},
    {Place::SeqOpt,    0, "",  "no "},
    {Place::ChoiceOpt, 1, "",  "yes <p>1</p>"},
    {Place::ChoiceOpt, 0, "",  "no "},
    {Place::AllOpt,    1, "",  "yes <p>1</p>"},
    {Place::AllOpt,    0, "",  "no "},
    {Place::SeqCol,    2, "",  "yes <p>1</p><p>1</p>"},
    {Place::SeqCol,    0, "",  kTooFew},
    {Place::SeqCol,    3, "",  kTooMany},
    {Place::SeqCol,    3, "I", "yes <p>1</p><p>1</p><p>1</p>"},
    {Place::SeqCol,    0, "I", "no "},
    {Place::AllCol,    0, "",  kTooFew},
    {Place::AllCol,    2, "",  "yes <p>1</p><p>1</p>"},
    {Place::ChoiceCol, 0, "",  "no "},
    {Place::ChoiceCol, 3, "",  "yes <p>1</p><p>1</p><p>1</p>"},
};
// clang-format on

TEST(ElementGrid, EveryEntryWritesAsItsPlaceSays) {
  ForCells(IsAny, [](const Cell& cell) {
    for (const WriteCase& c : kWriteCases) {
      if (c.place != cell.place) continue;
      SCOPED_TRACE(std::to_string(c.count) + " elements, ignoring " + c.options);
      const CellObject one(cell);
      if (cell.place < Place::SeqCol) one.object->properties[0].Clear();
      if (c.count > 0) {
        ReadEntry(*one.object, Children(std::string(c.count, 'p')), "I", kElement);
      }
      EXPECT_EQ(WriteEntry(*one.object, c.options), c.expected);
    }
  });
}

TEST(ElementGrid, OnlySingleMembersOfAllGroupsCanBeValidated) {
  ForCells(IsAny, [](const Cell& cell) {
    const CellObject one(cell);
    const CElementInfo& entry = **one.shape.GetElements();
    const auto validate = [&](bool found, bool mustExist) {
      return entry.Validate(kContext, nullptr, found, mustExist);
    };
    EXPECT_EQ(entry.IsCollection(), cell.place >= Place::SeqCol);
    if (cell.place == Place::AllOpt) {
      EXPECT_TRUE(validate(false, true) && validate(false, false));
    } else if (cell.place != Place::AllMnd) {
      EXPECT_ZU_ERROR(CZuException, validate(true, true), "Not implemented, should never be called",
                      "");
    } else {
      EXPECT_TRUE(validate(true, true));
      EXPECT_FALSE(validate(false, false));
      if (cell.content == Content::Class) {  // a real element; deliberately let through
        EXPECT_TRUE(validate(false, true));
      } else {
        EXPECT_ZU_ERROR(CZuValidationException, validate(false, true),
                        "Failed to find the mandatory element [p].", "");
      }
    }
  });
}

TEST(ElementGrid, NullCollectionsCountAsAbsent) {
  const auto isCollection = [](const Cell& cell) { return cell.place >= Place::SeqCol; };
  ForCells(isCollection, [](const Cell& cell) {
    const CellObject one(cell);
    one.object->properties[0].SetXmlCollection(nullptr);
    EXPECT_EQ(WriteEntry(*one.object, ""), "no ");
    EXPECT_EQ(ReadEntry(*one.object, kP, "", kElement),
              cell.place == Place::SeqCol ? "yes 0 p" : "no 0 p");
  });
}

TEST(ElementGrid, PseudoElementsWriteTheirAttributesIntoTheTagOfTheirParent) {
  const auto isObject = [](const Cell& cell) {
    return cell.content == Content::Class || cell.content == Content::Abstract;
  };
  ForCells(isObject, [](const Cell& cell) {
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
      CTextStream stream;
      CXmlTextWriter writer(stream);
      writer.SetFormat(false);
      writer.Open();
      writer.WriteStartElement("r", "");
      (*one.shape.GetElements())->PseudoChildAttributeToXml(kContext, one.object.Get(), &writer);
      writer.WriteEndElement();
      writer.Close();
      EXPECT_EQ(stream.CopyText(), type == kPseudo ? "<r n=\"1\"/>" : "<r/>");
    }
  });
}

/// A class with one entry, and what single documents and values make of it.
template <class Entry>
struct OfOne {
  template <class... More>
  explicit OfOne(const More&... more) : shape("r") {
    if constexpr (std::is_base_of_v<ZuXmlLib16Data::detail::EnumEntry, Entry>) {
      shape.Enum<Entry>("p", more...);
    } else {
      shape.Prim<Entry>("p", more...);
    }
  }
  std::string Read(const std::string& children, const char* options = "") {
    const CSmartPtr<BindableClass> object = shape.Make();
    const std::string outcome = ReadEntry(*object, children, options, kElement);
    return outcome[0] == '!' ? outcome : object->Describe();
  }
  std::string Write(const ZuVariant& value) {
    const CSmartPtr<BindableClass> object = shape.Make();
    object->properties[0] = value;
    return WriteEntry(*object, "");
  }
  Shape shape;
};

ZuVariant Number(long value) {
  ZuVariant number;
  number.SetI4(value);
  return number;
}

ZuVariant Nil() {
  ZuVariant nil;
  nil.SetNil();
  return nil;
}

TEST(SimpleElement, ReadsNilAndJudgesAttributes) {
  struct Case {
    const char* element;
    const char* options;
    const char* nillable;
    const char* notNillable;
  };
  const std::string notAllowed =
      "!Invalid use of 'nil' attribute in non-nillable element.\nPath: /r/p";
  const std::string unexpected = "!Unexpected Attribute found.\nPath: /r/p/";
  const std::string unexpectedType = unexpected + "i:@type";
  const std::string unexpectedX = unexpected + "@x";
  const char* const kValue =
      "!Unexpected Value [yes] for 'nil' Attribute found.\nPath: /r/p/i:@nil";
  // clang-format off
  const Case cases[] = {
      {"<p i:nil='TRUE'/>",           "",  "p=nil", notAllowed.c_str()},
      {"<p i:nil='1'>2</p>",          "",  "p=nil", notAllowed.c_str()},
      {"<p i:nil='False'>2</p>",      "",  "p=2",   "p=2"},
      {"<p i:nil='0'>2</p>",          "",  "p=2",   "p=2"},
      {"<p i:nil='yes'>2</p>",        "A", kValue,  kValue},
      {"<p x='' i:nil='yes'>2</p>",   "",  unexpectedX.c_str(), unexpectedX.c_str()},
      {"<p i:type='t'>2</p>",         "",  unexpectedType.c_str(), unexpectedType.c_str()},
      {"<p i:type='t' x=''>2</p>",    "A", "p=2",   "p=2"},
      {"<p xmlns:y='urn:y'>2<p/></p>", "", "p=2",   "p=2"},  // declarations are no attributes
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.element);
    EXPECT_EQ(OfOne<CElementInfoSeqPrimMnd>("", true).Read(c.element, c.options), c.nillable);
    EXPECT_EQ(OfOne<CElementInfoChoicePrimOpt>().Read(c.element, c.options), c.notNillable);
    EXPECT_EQ(OfOne<CElementInfoAllEnumOpt>("", true).Read(c.element, c.options), c.nillable);
    EXPECT_EQ(OfOne<CElementInfoSeqEnumOpt>().Read(c.element, c.options), c.notNillable);
  }
  EXPECT_EQ(OfOne<CElementInfoSeqPrimOpt>().Write(Nil()),
            "yes <p xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>");
  EXPECT_EQ(OfOne<CElementInfoChoiceEnumOpt>().Write(Nil()),
            OfOne<CElementInfoAllPrimMnd>().Write(Nil()));
}

TEST(SimpleElement, UsesDefaultAndFacets) {
  OfOne<CElementInfoSeqPrimMnd> number("42", false, kOneDigit);
  EXPECT_EQ(number.Read("<p/>"), "p=42");
  EXPECT_EQ(number.Read("<p> 7 </p>"), "p=7");
  EXPECT_EQ(number.Read("<p> </p>").substr(0, 1), "!") << "only an empty element is the default";
  EXPECT_EQ(number.Read("<p>99</p>"), "p=99") << "reading looks at no facet";
  EXPECT_EQ(number.Write(Number(9)), "yes <p>9</p>");
  EXPECT_EQ(number.Write(Number(42)), "yes <p/>") << "the default, left out; no facet is looked at";
  EXPECT_EQ(number.Write(Number(43)), "!Invalid Value for p [43]") << "before the tag";
  OfOne<CElementInfoAllEnumMnd> digit("2");
  EXPECT_EQ(digit.Read("<p/>"), "p=2");
  EXPECT_EQ(digit.Read("<p> 1</p>"), "!No digit:  1") << "white space is kept";
  EXPECT_EQ(digit.Write(Number(2)), "yes <p/>");
}

TEST(SimpleElement, IgnoresNamespacesOnRequest) {
  EXPECT_EQ(OfOne<CElementInfoSeqPrimOpt>().Read("<z:p>1</z:p>", "N"), "p=1");
  EXPECT_EQ(OfOne<CElementInfoSeqEnumOpt>().Read("<z:p>1</z:p>", "N"), "p=1");
}

TEST(SimpleElement, TellsWhichPropertyFailed) {
  OfOne<CElementInfoSeqPrimOpt> one;
  const CSmartPtr<BindableClass> object = one.shape.Make();
  object->isFailing = true;
  EXPECT_EQ(WriteEntry(*object, ""), "!Failed to get the property value for [p].");
  EXPECT_EQ(ReadEntry(*object, kP, "", kElement), "!Failed to set the property value.\nPath: /r/p");
}

TEST(ChildObject, ExistingOneIsReadIntoAndOptionalOneIsReplacedOnceRead) {
  Shape item("p");
  item.Text();
  Shape shape("r");
  shape.Child<CElementInfoSeqClsMnd>("p", item);
  const CSmartPtr<BindableClass> holder = shape.Make();
  const CSmartPtr<CXmlObjectBase> child = holder->properties[0].GetXmlObject();
  EXPECT_EQ(ReadEntry(*holder, kP, "", kElement), "yes 1 -");
  EXPECT_EQ(holder->properties[0].GetXmlObject(), child);

  Shape optional("r");
  optional.Child<CElementInfoSeqClsOpt>("p", item);
  const CSmartPtr<BindableClass> other = optional.Make();
  ReadEntry(*other, kP, "", kElement);
  const CSmartPtr<CXmlObjectBase> first = other->properties[0].GetXmlObject();
  EXPECT_EQ(ReadEntry(*other, "<p>bad</p>", "", kElement).substr(0, 30),
            "!Failed to process the element");
  EXPECT_EQ(other->properties[0].GetXmlObject(), first);
  EXPECT_EQ(ReadEntry(*other, kP, "", kElement), "yes 1 -");
  EXPECT_NE(other->properties[0].GetXmlObject(), first);
}

/// A member that is a group of an optional "a" and the attribute "n".
template <class Entry>
std::string PseudoRead(const std::string& children, const char* options, XmlElementType parent,
                       bool required = false) {
  Shape group("g", Group::Sequence, kPseudo);
  group.Prim<CElementInfoSeqPrimOpt>("a");
  Shape shape("r");
  shape.Child<Entry>("g", group, required);
  return ReadEntry(*shape.Make(), children, options, parent);
}

TEST(PseudoChild, TakesFromItsParentWhatItCan) {
  constexpr const char* kA = "<a>1</a><z/>";
  constexpr const char* kMissing = "!Failed to find the required child element [g].\nPath: /r";
  for (const XmlElementType parent : {kElement, kPseudo}) {
    const bool isElement = parent == kElement;
    using Mnd = CElementInfoSeqClsMnd;
    EXPECT_EQ(PseudoRead<Mnd>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(PseudoRead<Mnd>("<z/>", "", parent), "yes 0 z");
    EXPECT_EQ(PseudoRead<Mnd>("", "", parent), "yes 0 -");
    EXPECT_EQ(PseudoRead<Mnd>("<y/><a>1</a><z/>", "U", parent), "yes 1 z");
    EXPECT_EQ(PseudoRead<Mnd>("<y/><z/>", "U", parent), "yes 0 y") << "others may know them";
    EXPECT_EQ(PseudoRead<Mnd>(kA, "", parent, true), "yes 1 z");
    EXPECT_EQ(PseudoRead<Mnd>("<z/>", "", parent, true), isElement ? kMissing : "no 0 z");
    EXPECT_EQ(PseudoRead<Mnd>("", "", parent, true), isElement ? kMissing : "no 0 -");
    EXPECT_EQ(PseudoRead<Mnd>("<z/>", "M", parent, true), isElement ? "yes 0 z" : "no 0 z");
    EXPECT_EQ(PseudoRead<Mnd>("<y/><a>1</a>", "U", parent, true), "yes 1 -");
    EXPECT_EQ(PseudoRead<CElementInfoSeqClsOpt>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(PseudoRead<CElementInfoSeqClsOpt>("<z/>", "U", parent), "yes 0 z");
    EXPECT_EQ(PseudoRead<CElementInfoChoiceClsOpt>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(PseudoRead<CElementInfoChoiceClsOpt>("<z/>", "", parent), "no 0 z");
    EXPECT_EQ(PseudoRead<CElementInfoAllClsMnd>(kA, "", parent), "yes 1 z");
    EXPECT_EQ(PseudoRead<CElementInfoAllClsOpt>("<z/>", "", parent), "no 0 z");
  }
}

TEST(PseudoChild, MayNotBeMissingFromAnAllGroup) {
  const Shape group("g", Group::Sequence, kPseudo);
  const Shape element("g");
  Shape shape("r");
  shape.Child<CElementInfoAllClsMnd>("g", group).Child<CElementInfoAllClsMnd>("g", element, true);
  for (int i = 0; i < 2; ++i) {
    EXPECT_ZU_ERROR(CZuValidationException,
                    shape.GetElements()[i]->Validate(kContext, nullptr, false, true),
                    "Failed to find the mandatory element [g].", "");
  }
}

TEST(AbstractMember, IsMadeByTypeOrNameAndMayBePseudo) {
  Shape derived("derived");
  derived.Text();
  Shape group("a", Group::Sequence, kPseudo);
  group.Prim<CElementInfoSeqPrimMnd>("a");
  Shape shape("r");
  shape.Substitute<CElementInfoSeqAbsClsMnd>("p").Substitute<CElementInfoSeqAbsClsOpt>("g",
                                                                                       kPseudo);
  const CSmartPtr<BindableClass> object = shape.Make();
  const std::string xml =
      "<r xmlns:i='http://www.w3.org/2001/XMLSchema-instance'><x i:type='derived'>5</x>";
  EXPECT_EQ(Outcome(*object, xml + "<a>6</a></r>", kContext), "p={5} g={a=6}");
  EXPECT_EQ(object->properties[0].GetXmlObject()->GetElementName(), "x");
  EXPECT_EQ(Outcome(*shape.Make(), xml + "</r>", kContext), "p={5}");
}

TEST(UntypedMember, TakesNamesAndNamespacesThatAreAllowed) {
  struct Case {
    const char* name;
    const char* restriction;
    const char* children;
    const char* expected;
  };
  const Case cases[] = {
      {"AnyElement", "##any", "<q>1</q>", "yes 1 -"},
      {"AnyElement", "##other", "<q>1</q><z/>", "no 0 q"},
      {"AnyElement", "##other", "<z:q>1</z:q>", "yes 1 -"},
      {"AnyElement", "urn:y urn:z", "<z:q>1</z:q>", "yes 1 -"},
      {"q", "urn:y urn:z", "<z:q>1</z:q>", "yes 1 -"},
      {"p", "urn:y urn:z", "<z:q>1</z:q>", "no 0 q"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.restriction);
    Shape shape("r", Group::Choice);
    shape.Any<CElementInfoChoiceUntpdOpt>(c.name, c.restriction);
    EXPECT_EQ(ReadEntry(*shape.Make(), c.children, "", kElement), c.expected);
  }
  Shape held("r");
  held.Any<CElementInfoSeqUntpdOpt>("AnyElement", "##any");
  const CSmartPtr<BindableClass> object = held.Make();
  object->properties[0].SetXmlObject(new CElement("own", "", "urn:y", ""));
  EXPECT_EQ(ReadEntry(*object, "<z:q/>", "", kElement), "yes 0 q") << "its own rules hold";
}

TEST(UntypedCollection, TakesElementsOfItsNameOnly) {
  Shape shape("r");
  shape.Items<CElementInfoSeqUntpdCol>(
      "q", [] { return new CElementCol("q", "##any", "", 0, -1); }, "##targetNamespace", "urn:z");
  EXPECT_EQ(ReadEntry(*shape.Make(), "<z:q>1</z:q><z:q>1</z:q><q>1</q>", "", kElement), "yes 2 q");
  Shape any("r");
  any.Items<CElementInfoSeqUntpdCol>(
      "AnyElement", [] { return new CElementCol("", "##any", "", 0, -1); }, "##any", "");
  EXPECT_EQ(ReadEntry(*any.Make(), "<z:q>1</z:q><q>1</q>", "", kElement), "yes 2 -");
}

TEST(AnyDefaultNamespace, FollowsTheRestriction) {
  const char* const cases[][3] = {
      {"##any", "urn:n", "urn:n"},
      {"##other", "urn:n", ""},
      {"##other", "", "DefaultNamespace"},
      {"##local", "urn:n", ""},
      {"##targetNamespace", "urn:n", "urn:t"},
      {"##targetNamespace urn:a", "urn:n", "urn:t"},
      {"##any ##local", "urn:n", "urn:n"},
      {"urn:a", "urn:n", ""},
      {"urn:a ##any", "urn:n", ""},
      {"## ", "urn:n", ""},
      {"", "urn:n", ""},
  };
  for (const auto& [restriction, namespaceUri, expected] : cases) {
    EXPECT_EQ(CElementInfo::GetAnyDefaultNamespace(restriction, namespaceUri, "urn:t"), expected)
        << restriction;
  }
}

TEST(CheckRestriction, IsForPrimitivesOnly) {
  Shape shape("r");
  shape.Prim<CElementInfoSeqPrimOpt>("p", "", false, kOneDigit).Enum<CElementInfoSeqEnumOpt>("e");
  CElementInfo* const* const entries = shape.GetElements();
  EXPECT_NO_THROW(entries[0]->CheckRestriction(Number(9)));
  EXPECT_ZU_ERROR(CZuException, entries[0]->CheckRestriction(Number(10)),
                  "Invalid Value for p [10]", "");
  EXPECT_ZU_ERROR(CZuException, entries[1]->CheckRestriction(Number(1)),
                  "Cannot CheckRestriction for type: i4", "");
}

}  // namespace
}  // namespace ZuXmlLib16
