#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
using Group = XmlElementGroupType;
constexpr auto kPseudo = XmlElementType::Pseudo;
const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

std::string Repeated(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

/// Would take days if every "a" were the begin of a search for the "b" that is missing, and longer
/// with groups inside of groups.
TEST(IncompleteGroups, AreSearchedForInLinearTime) {
  Shape pair("g", Group::Sequence, kPseudo);
  pair.Prim<CElementInfoSeqPrimMnd>("a").Prim<CElementInfoSeqPrimMnd>("b");
  Shape run("g", Group::Sequence, kPseudo);
  run.Numbers<CElementInfoSeqPrimCol>("a").Prim<CElementInfoSeqPrimMnd>("b");
  Shape open("g", Group::Sequence, kPseudo);
  open.Substitute<CElementInfoSeqAbsClsMnd>("s").Prim<CElementInfoSeqPrimMnd>("b");
  Shape outer("o", Group::Sequence, kPseudo);
  outer.Child<CElementInfoSeqClsMnd>("g", pair, true).Prim<CElementInfoSeqPrimOpt>("z");
  Shape choice("o", Group::Choice, kPseudo);
  choice.Child<CElementInfoChoiceClsOpt>("g", pair).Prim<CElementInfoChoicePrimOpt>("a");
  Shape allGroup("o", Group::All, kPseudo);
  allGroup.Prim<CElementInfoAllPrimMnd>("a").Prim<CElementInfoAllPrimMnd>("b");

  Shape mandatory("r");
  mandatory.Child<CElementInfoSeqClsMnd>("g", pair)
      .Child<CElementInfoSeqClsMnd>("g", run)
      .Child<CElementInfoSeqClsMnd>("g", open)
      .Child<CElementInfoSeqClsMnd>("o", outer)
      .Child<CElementInfoSeqClsMnd>("o", allGroup);
  Shape repeated("r");
  repeated.Objects<CElementInfoSeqClsCol>("g", pair).Objects<CElementInfoSeqClsCol>("o", choice);
  Shape choices("r", Group::Choice);
  choices.Child<CElementInfoChoiceClsOpt>("g", pair).Child<CElementInfoChoiceClsOpt>("o", outer);
  Shape all("r", Group::All);
  all.Child<CElementInfoAllClsOpt>("g", pair).Child<CElementInfoAllClsOpt>("o", outer);
  const std::string xml = "<r>" + Repeated(20000, "<a>1</a>") + "</r>";
  for (const Shape* shape : {&mandatory, &repeated, &choices, &all}) {
    Outcome(*shape->Make(), xml, Ignoring("UC"));
  }
}

/// What was looked for in vain from one place on may stand before it.
TEST(IncompleteGroups, AreFoundBeforeThePlaceWhereTheyWereMissing) {
  Shape pair("g", Group::Sequence, kPseudo);
  pair.Prim<CElementInfoSeqPrimMnd>("a").Prim<CElementInfoSeqPrimMnd>("b");
  Shape behind("h", Group::Sequence, kPseudo);
  behind.Prim<CElementInfoSeqPrimMnd>("k").Child<CElementInfoSeqClsMnd>("g", pair, true);
  Shape shape("r", Group::Choice);
  shape.Child<CElementInfoChoiceClsOpt>("h", behind).Child<CElementInfoChoiceClsOpt>("g", pair);
  EXPECT_EQ(Outcome(*shape.Make(), "<r><a>1</a><b>2</b><k>3</k><a>4</a></r>", Ignoring("U")),
            "g={a=1 b=2}");
}

/// Would take minutes if every item looked at all attributes.
TEST(RepeatedGroup, CostsNothingForTheAttributesOfItsParent) {
  Shape group("g", Group::Sequence, kPseudo);
  group.Prim<CElementInfoSeqPrimMnd>("a");
  Shape shape("r");
  shape.Objects<CElementInfoSeqClsCol>("g", group);
  std::string xml = "<r";
  for (int i = 0; i < 50000; ++i) {
    xml += " x" + std::to_string(i) + "=''";
  }
  xml += ">" + Repeated(50000, "<a>1</a>") + "</r>";
  EXPECT_NE(Outcome(*shape.Make(), xml, kContext)[0], '!');
}

/// Runs something of the test's whenever a property is asked for or set, and before reading.
class MeddlingObject : public BindableClass {
 public:
  MeddlingObject(const Shape& shape, std::function<void()> meddle)
      : BindableClass(shape, "c"), m_meddle(std::move(meddle)) {}
  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override {
    m_meddle();
    BindableClass::AccessProperty(propertyIndex, read, value);
  }
  void OnFromXmlStart(CXmlElement*, CXmlElement*, const CSerializationContext&, bool) override {
    m_meddle();
  }

 private:
  std::function<void()> m_meddle;
};

struct Meddling {
  Meddling() : child("c"), shape("r") {
    child.Prim<CElementInfoSeqPrimOpt>("a").Numbers<CElementInfoSeqPrimCol>("n");
    shape.Child<CElementInfoSeqClsMnd>("c", child).Numbers<CElementInfoSeqPrimCol>("n");
    object = shape.Make();
  }
  void SetChild(std::function<void()> meddle) {
    object->properties[0].SetXmlObject(new MeddlingObject(child, std::move(meddle)));
  }
  Shape child, shape;
  CSmartPtr<BindableClass> object;
  const std::string xml = "<r><c><a>1</a><n>2</n></c><n>3</n></r>";
};

TEST(Accessor, MayReadAndWriteOtherObjects) {
  Meddling outer;
  int calls = 0;
  outer.SetChild([&] {
    const Meddling inner;
    EXPECT_EQ(Outcome(*inner.object, inner.xml, Ignoring("U")), "c={a=1 n=[2]} n=[3]");
    EXPECT_EQ(WriteOutcome(*inner.object, kContext), inner.xml);
    ++calls;
  });
  EXPECT_EQ(Outcome(*outer.object, outer.xml, Ignoring("U")), "c={a=1 n=[2]} n=[3]");
  EXPECT_EQ(WriteOutcome(*outer.object, kContext), outer.xml);
  EXPECT_GT(calls, 4);
}

TEST(Accessor, MayDropWhatIsBeingReadOrWritten) {
  Meddling outer;
  const auto dropAll = [&] {
    outer.object->properties[0].SetXmlObject(nullptr);
    outer.object->properties[1].SetXmlCollection(nullptr);
  };
  outer.SetChild(dropAll);
  EXPECT_EQ(Outcome(*outer.object, outer.xml, kContext),
            "!Failed read all the elements held within the element [r]. The unexpected element [n] "
            "remains un processed\nPath: /r");
  outer.SetChild(dropAll);
  EXPECT_EQ(WriteOutcome(*outer.object, kContext), "<r><c/></r>");
}

/// Every call in turn, by an exception of the library and by another one.
TEST(Accessor, MayFailAtAnyCall) {
  Meddling outer;
  for (const bool isOurs : {true, false}) {
    int failures = 0;
    for (int failing = 0; failing == failures; ++failing) {
      int calls = 0;
      outer.SetChild([&] {
        if (calls++ != failing) return;
        ++failures;
        if (isOurs) throw CZuInvalidStateException("Failing");
        throw calls;
      });
      try {
        Outcome(*outer.object, outer.xml, kContext);
        WriteOutcome(*outer.object, kContext);
      } catch (int call) {
        EXPECT_EQ(call, calls);
      }
      const Meddling other;
      Outcome(*other.object, other.xml, kContext);
      EXPECT_EQ(WriteOutcome(*other.object, kContext), other.xml);
    }
    EXPECT_GT(failures, 4);
  }
}

TEST(RefusedItems, AreLeftToWhatFollows) {
  for (const Group group : {Group::Sequence, Group::Choice}) {
    Shape pair("g", group, kPseudo);
    if (group == Group::Sequence) {
      pair.Numbers<CElementInfoSeqPrimCol>("n", 2, 2);
    } else {
      pair.Numbers<CElementInfoChoicePrimCol>("n", 2, 2);
    }
    Shape shape("r");
    shape.Child<CElementInfoSeqClsMnd>("g", pair).Numbers<CElementInfoSeqPrimCol>("n");
    const CSmartPtr<BindableClass> object = shape.Make();
    EXPECT_EQ(Outcome(*object, "<r><n>1</n></r>", kContext), "g={} n=[1]");
    EXPECT_EQ(Outcome(*shape.Make(), "<r><n>1</n><n>2</n></r>", kContext), "g={n=[1 2]}");
  }
}

TEST(MetaData, IsSharedByThreads) {
  const Meddling classes;
  const auto run = [&] {
    for (int i = 0; i < 50; ++i) {
      const CSmartPtr<BindableClass> object = classes.shape.Make();
      Outcome(*object, classes.xml, Ignoring(i % 2 == 0 ? "U" : ""));
      EXPECT_EQ(WriteOutcome(*object, kContext), classes.xml);
    }
  };
  classes.shape.GetInfo();
  classes.child.GetInfo();
  std::thread first(run);
  std::thread second(run);
  first.join();
  second.join();
}

}  // namespace
}  // namespace ZuXmlLib16
