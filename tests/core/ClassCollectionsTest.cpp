#include <gtest/gtest.h>

#include <string>

#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
using Items = CXmlClassCol<BindableClass>;
const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

/// Reads the children of a root: the items, and the local name of the element that stopped it.
std::string Read(Items& items, const std::string& children) {
  CXmlDocument document;
  document.LoadXml(("<r xmlns:z='urn:z'>" + children + "</r>").c_str());
  CXmlElement* const root = document.GetDocumentElement();
  std::string outcome;
  try {
    const CXmlElement* const end =
        items.FromXml_Int(root, root->GetFirstElement(), kContext, false);
    outcome = end != nullptr ? end->GetLocalName() : "-";
  } catch (const CZuException& failure) {
    outcome = "!" + failure.GetMessage();
  }
  std::string read;
  for (const BindableClass* item : items) {
    read += "{" + item->Describe() + "}";
  }
  return read + " " + outcome;
}

TEST(ClassCollection, ReadsItemsAsTheirKindSays) {
  Shape item("c"), group("g", Group::Sequence, kPseudo);
  item.Prim<CElementInfoSeqPrimMnd>("a");
  group.Prim<CElementInfoSeqPrimMnd>("a").Prim<CElementInfoSeqPrimOpt>("b");
  struct Case {
    XmlElementType type;
    bool isAbstract;
    const char* children;
    const char* expected;
  };
  // clang-format off
  const Case cases[] = {
      {kElement, false, "<c><a>1</a></c><c><a>2</a></c><d/><c/>", "{a=1}{a=2} d"},
      {kElement, false, "<z:c><a>1</a></z:c>",                    " c"},
      {kElement, false, "",                                       " -"},
      {kElement, false, "<c><a>1</a></c><c/>",
       "{a=1} !Failed to find the required child element [a].\nPath: /r/c[2]"},
      {kElement, true,  "<c><a>1</a></c><c><a>2</a></c><d/>",     "{a=1}{a=2} d"},
      {kPseudo,  false, "<a>1</a><a>2</a><b>3</b><c/>",           "{a=1}{a=2 b=3} c"},
      {kPseudo,  false, "<b>1</b><a>2</a>",                       " b"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.children);
    const Shape& shape = c.type == kPseudo ? group : item;
    const CSmartPtr<Items> items(
        c.isAbstract ? new Items("c", "", 0, -1, c.type, Shape::MakeSubstitute)
                     : new Items("c", "", 0, -1, c.type, Shape::MakeObject, shape.GetIdentifier()));
    EXPECT_EQ(Read(*items, c.children), c.expected);
  }
}

TEST(ClassCollection, StopsAtAFactoryThatMakesNothing) {
  const auto none = [](int, const char*) -> CSmartPtr<CXmlObjectBase> { return nullptr; };
  const CSmartPtr<Items> items(new Items("c", "", 0, -1, kElement, none, 0));
  EXPECT_EQ(Read(*items, "<c/>"), " c");
}

TEST(ClassCollection, AddsItemsOfItsName) {
  Shape item("c");
  item.Text();
  const CSmartPtr<Items> items(
      new Items("c", "", 0, -1, kElement, Shape::MakeObject, item.GetIdentifier()));
  const CSmartPtr<BindableClass> added = items->Add();
  EXPECT_EQ(added->GetElementName(), "c");
  const CSmartPtr<BindableClass> first = items->AddAt(0, new BindableClass(item, "c"));
  EXPECT_EQ(items->Item(0), first);
  EXPECT_EQ(items->Item(1), added);
  EXPECT_ZU_ERROR(CZuInvalidParamException, items->Add(nullptr),
                  "The Property [item] is mandatory, it may node be NULL", "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, items->Add(new BindableClass(item, "d")),
                  "This property requires an element with the name c the element being set has the "
                  "element name d",
                  "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, items->AddAt(3, new BindableClass(item, "c")),
                  "Index out of range", "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, items->Item(2), "Index 2 is out of range, use 0 - 2",
                  "");
  EXPECT_EQ(items->GetCount(), 2);

  const CSmartPtr<Items> substitutes(new Items("c", "", 0, -1, kElement, Shape::MakeSubstitute));
  EXPECT_EQ(substitutes->Add(new BindableClass(item, "d"))->GetElementName(), "d");
  EXPECT_EQ(substitutes->Add(), nullptr) << "no class to make it of";
  EXPECT_EQ(substitutes->GetCount(), 1);
}

}  // namespace
}  // namespace ZuXmlLib16
