#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "support/ErrorMatch.h"
#include "support/PlainObject.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

const CSerializationContext& kDefault = CSerializationContext::m_defaultContext;

std::string InvalidNamespace(const std::string& namespaceUri, const std::string& restriction,
                             const std::string& targetNamespace) {
  return "Invalid namespace [" + namespaceUri + "]. The namespace must be one of [" + restriction +
         "] where the target namespace is [" + targetNamespace + "].";
}

TEST(UntypedElement, SecondArgumentIsNamespaceOrRestriction) {
  using Case = std::pair<const char*, const char*>;  // no namespace when the argument is refused
  const Case cases[] = {{"##other", ""},    {"urn:x", "urn:x"}, {"#any", "#any"},    {"", ""},
                        {"##Any", nullptr}, {" ", nullptr},     {"urn:x\n", nullptr}};
  for (const auto& [argument, namespaceUri] : cases) {
    SCOPED_TRACE(argument);
    if (namespaceUri == nullptr) {
      EXPECT_ZU_ERROR(CZuInvalidNamespaceException, CElement("e", argument),
                      "Invalid Namespace [" + std::string(argument) + "].", "");
    } else {
      const CElement element("e", argument);
      EXPECT_EQ(element.GetNamespace(), namespaceUri);
      EXPECT_EQ(element.GetNamespaceRestriction(), argument);
    }
  }
}

TEST(UntypedElement, RefusesMissingAndForbiddenTexts) {
  const struct {
    const char* name;
    const char* restriction;
    const char* target;
    std::string error;
  } cases[] = {
      {nullptr, nullptr, nullptr, "Element Name must have a value"},
      {"e", nullptr, nullptr, "Namespace Restriction must have a value"},
      {"e", "##any", nullptr, "Target Namespace must have a value"},
      {"e", "##other", "urn:t", InvalidNamespace("urn:t", "##other", "urn:t")},
  };
  const CSmartPtr<CElement> kept = ReadUntyped("<kept i='1'><c/></kept>");
  for (const auto& [name, restriction, target, error] : cases) {
    EXPECT_ZU_ERROR(CZuInvalidNamespaceException, CElement(name, "urn:t", restriction, target),
                    error, "");
    EXPECT_ZU_ERROR(CZuInvalidNamespaceException, kept->Init(name, "urn:t", restriction, target),
                    error, "");
  }
  EXPECT_EQ(Written(*kept), "<kept i=\"1\"><c/></kept>");
  kept->Init("n", nullptr, "urn:n", "");  // no namespace passes every restriction here
  EXPECT_EQ(Written(*kept), "<n/>");
}

TEST(UntypedElement, ReadingReplacesAndWritingRestores) {
  // clang-format off
  const std::pair<const char*, const char*> cases[] = {
      {"<a>x<b/>y</a>",                      "<a><b/>xy</a>"},
      {"<a>\n\t<b> </b>\n</a>",              "<a><b> </b></a>"},  // layout goes, content stays
      {"<a><!--c-->x<?p i?></a>",            "<a>x</a>"},
      {"<a><![CDATA[<&]]></a>",              "<a>&lt;&amp;</a>"},
      {"<a xmlns='urn:a' i='1'><b/></a>",    "<AA:a xmlns:AA=\"urn:a\" i=\"1\"><AA:b/></AA:a>"},
  };
  // clang-format on
  const CSmartPtr<CElement> element = ReadUntyped("<old i='1' xmlns='urn:o'>old<old/></old>");
  for (const auto& [text, written] : cases) {
    element->FromXml(text);
    EXPECT_EQ(Written(*element), written);
    EXPECT_EQ(element->GetElements()->GetNamespace(), element->GetNamespace());
  }
}

TEST(UntypedElement, LeavesWhatItsRestrictionForbidsUnread) {
  CXmlDocument document;
  document.LoadXml("<r><a xmlns='urn:y'/><b/></r>");
  CXmlElement* const first = document.GetDocumentElement()->GetFirstElement();
  CElement element("kept", "urn:x");
  EXPECT_EQ(element.FromXml_Int(first, nullptr, kDefault, false), first);
  EXPECT_EQ(element.FromXml_Int(nullptr, nullptr, kDefault, false), nullptr);
  EXPECT_EQ(element.GetName(), "kept");
  element.CopyXmlElement(first);  // which does not ask
  EXPECT_EQ(element.GetName() + element.GetNamespace(), "aurn:y");
  EXPECT_EQ(element.GetNamespaceRestriction(), "urn:x");
  EXPECT_EQ(CElement("any").FromXml_Int(first, nullptr, kDefault, false)->GetLocalName(), "b");
  EXPECT_ZU_ERROR(CZuInvalidParamException, element.CopyXmlElement(nullptr),
                  "The Property [element] is mandatory, it may node be NULL", "");
}

TEST(UntypedElement, RestrictionReachesChildrenOnlyWhenSetLater) {
  const char* const xml = "<a xmlns='urn:x'><b/><f:c xmlns:f='urn:foreign'/></a>";
  CElement element("a", "urn:x");
  element.FromXml(xml);
  EXPECT_EQ(element.GetElements()->GetCount(), 2);
  element.GetElements()->Clear();
  element.SetNamespaceRestrictions("urn:x", "urn:t");
  EXPECT_ZU_ERROR(CZuValidationException, element.FromXml(xml), "Invalid Element [c] found.",
                  "/a/f:c");
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, element.FromXml("<a xmlns='urn:x' b='1'/>"),
                  "Invalid Attribute [b]. The attributes namespace is Inappropriate.", "/a");
}

TEST(UntypedElement, NewRestrictionTestsEverythingBelow) {
  const std::pair<const char*, const char*> cases[] = {
      {"<a xmlns='urn:x' i='1'/>", " in the class i"},
      {"<x:a xmlns:x='urn:x' x:i='1' y:j='2' xmlns:y='urn:y'/>", "urn:y in the class j"},
      {"<a xmlns='urn:x'><b><c xmlns='urn:z'/></b><d xmlns='urn:y'/></a>", "urn:z in the class c"},
  };
  for (const auto& [xml, offender] : cases) {
    const CSmartPtr<CElement> element = ReadUntyped(xml);
    EXPECT_ZU_ERROR(
        CZuException, element->SetNamespaceRestrictions("urn:x", "urn:t"),
        "The namespace " + std::string(offender) + " is invalid against restriction urn:x", "");
    EXPECT_EQ(element->GetNamespaceRestriction() + element->GetTargetNamespace(), "urn:xurn:t");
  }
}

TEST(UntypedElement, TellsAndTestsChanges) {
  class Watched : public CElement {
   public:
    using CElement::CElement;
    void OnEvent(CXmlObjectBase* sender, MsgType type, void* data) override {
      changes += sender == this && type == MsgType::Changed && data == nullptr ? '.' : '?';
    }
    std::string changes;
  };
  Watched element("e", "", "##local urn:f", "");
  element.SetName("e");
  element.SetNamespace("");
  element.SetText(nullptr);
  EXPECT_EQ(element.changes, "");
  element.SetName("f");
  element.SetNamespace("urn:f");
  element.SetText("text");
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, element.SetNamespace("urn:y"),
                  InvalidNamespace("urn:y", "##local urn:f", ""), "");
  EXPECT_EQ(element.changes, "...");
  EXPECT_EQ(Written(element), "<AA:f xmlns:AA=\"urn:f\">text</AA:f>");
}

TEST(UntypedElement, RawOneIsADocumentOfItsOwn) {
  CElement outer("outer", "urn:o", "##any", "");
  CSmartPtr<CElement> inner = outer.GetElements()->Add("inner", "urn:i");
  inner->GetElements()->Add("leaf", "urn:i")->SetText("<");
  outer.GetElements()->Add("last", "urn:o");
  inner->SetRaw(true);
  // Indented from the margin; the line end of its last line stays before that of the outer one.
  EXPECT_EQ(outer.ToXml(false, true, EOLType::Lf, kDefault),
            "<AA:outer xmlns:AA=\"urn:o\">\n<inner xmlns=\"urn:i\">\n\t<leaf>&lt;</leaf>\n"
            "</inner>\n\n\t<AA:last/>\n</AA:outer>\n");
}

TEST(UntypedElement, TakesOverOtherObjects) {
  CSmartPtr<PlainObject> object(new PlainObject("p", "<text>"));
  const CElement element(object.Get(), "urn:plain");
  EXPECT_TRUE(element.GetRaw());
  EXPECT_EQ(Written(element), "<p xmlns=\"urn:plain\">&lt;text&gt;</p>");
  CXmlObjectBase* const none = nullptr;
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, CElement(none, "##any"),
                  "Element Name must have a value", "");
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, CElement(object.Get(), "urn:x"),
                  InvalidNamespace("urn:plain", "urn:x", ""), "");
}

TEST(UntypedElement, CloneIsIndependent) {
  const CSmartPtr<CElement> source = ReadUntyped("<a xmlns='urn:x'><b><c/></b></a>");
  source->SetNamespaceRestrictions("urn:x", "urn:t");
  source->GetElements()->Item(0)->SetRaw(true);
  const CSmartPtr<CElement> clone = source->Clone();
  const std::string before = Written(*source);
  source->GetElements()->Item(0)->GetElements()->Item(0)->SetText("changed");
  source->GetAttributes()->Add("changed");
  EXPECT_EQ(Written(*clone), before);
  EXPECT_TRUE(clone->GetElements()->Item(0)->GetRaw());
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, clone->GetElements()->Add("d", "urn:y"),
                  InvalidNamespace("urn:y", "urn:x", "urn:t"), "");
}

TEST(UntypedElement, DepthCostsNoStack) {
  constexpr int kDepth = 100000;
  CElement root("e");
  {
    CXmlDocument document;
    document.LoadXml(NestedDocument(kDepth).xml.c_str());
    root.CopyXmlElement(document.GetDocumentElement());
  }
  EXPECT_EQ(Written(*root.Clone()).size(), 7 * (kDepth - 1) + 4);
  root.SetNamespaceRestrictions("##local", "");
  root.GetElements()->Clear();
  EXPECT_EQ(Written(root), "<e/>");
}

TEST(UntypedElement, ReadingStopsAtTheDepthLimit) {
  CSerializationContext context;
  CElement element("unread");
  for (const int limit : {1000, 3, 0}) {
    if (limit != 1000) context.SetMaxDepth(limit);
    // Twice: a failure leaves no level behind.
    for (int i = 0; i < 2; ++i) {
      if (limit > 0) element.FromXml(NestedDocument(limit).xml.c_str(), context);
      const NestedDocument tooDeep(limit + 1);
      EXPECT_ZU_ERROR(
          CZuValidationException, element.FromXml(tooDeep.xml.c_str(), context),
          "The element [e] is nested too deeply, the limit is " + std::to_string(limit) + ".",
          tooDeep.path);
    }
  }
}

TEST(UntypedElements, StopAtTheFirstElementNotAllowed) {
  CXmlDocument document;
  document.LoadXml("<r xmlns:a='urn:a'><a:x><y/></a:x><a:x/><a:z/><x/></r>");
  CXmlElement* const root = document.GetDocumentElement();
  CXmlElement* const first = root->GetFirstElement();
  CElementCol locked("x", "##other", "urn:t", 0, -1);
  EXPECT_EQ(locked.FromXmlLockElementName_Int("x", "urn:a", root, first, kDefault)->GetLocalName(),
            "z");
  ASSERT_EQ(locked.GetCount(), 2);
  EXPECT_EQ(locked.Item(0)->GetNamespaceRestriction(), "##any");
  CElementCol other("x", "urn:a", "", 0, -1);
  EXPECT_EQ(other.FromXml_Int(root, first, kDefault, false)->GetNamespaceURI(), "");
  ASSERT_EQ(other.GetCount(), 3);
  EXPECT_EQ(other.Item(2)->GetNamespaceRestriction(), "urn:a");
}

TEST(UntypedElements, NewOnesNeedAnAllowedNamespace) {
  CElementCol first("x", "urn:a urn:b", "urn:t", 0, -1);
  EXPECT_EQ(first.Add("n")->GetNamespace(), "urn:a");
  CElementCol any("x", "##any", "urn:t", 0, -1);
  EXPECT_ZU_ERROR(CZuInvalidStateException, any.Add("n"),
                  "A Namespace has not been set for this Collection", "");
  EXPECT_EQ(any.GetCount(), 0);
  CElementCol other("x", "##other", "urn:t", 1, 2);
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, other.Add("n", "urn:t"),
                  InvalidNamespace("urn:t", "##other", "urn:t"), "");
  EXPECT_ZU_ERROR(CZuInvalidParamException, other.Add(static_cast<CElement*>(nullptr)),
                  "The Property [element] is mandatory, it may node be NULL", "");
  const CSmartPtr<CElement> added = other.Add("n", "urn:n");
  const CSmartPtr<CElementCol> clone = other.Clone();
  EXPECT_NE(clone->Item(0), added);
  EXPECT_EQ(clone->Add("m")->GetNamespace(), "DefaultNamespace");
}

TEST(UntypedAttributes, AreTestedOnlyInANamespace) {
  CAttributeCol collection("urn:t", "##targetNamespace", "urn:t");
  collection.Add("a", "1", nullptr);
  collection.Add("b", "2", "urn:t");
  collection.Add(new CAttribute("c", "3", "urn:u"));
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException, collection.Add("d", "4", "urn:u"),
                  InvalidNamespace("urn:u", "##targetNamespace", "urn:t"), "");
  const CSmartPtr<CAttributeCol> clone = collection.Clone();
  collection.Item(2)->SetValue("changed");
  std::string values;
  for (const CAttribute* attribute : *clone)
    values += attribute->GetName() + attribute->GetValue() + attribute->GetNamespace() + ' ';
  EXPECT_EQ(values, "a1 b2urn:t c3urn:u ");
}

TEST(UntypedAttributes, ThoseBeforeTheForbiddenOneAreRead) {
  CXmlDocument document;
  document.LoadXml("<r><e t:a='1' t:b='2' c='3' t:d='4' xmlns:t='urn:t'/></r>");
  CXmlElement* const element = document.GetDocumentElement()->GetFirstElement();
  CAttributeCol collection("", "##targetNamespace", "urn:t");
  EXPECT_ZU_ERROR(CZuInvalidNamespaceException,
                  collection.FromXml_Int(element, nullptr, kDefault, false),
                  "Invalid Attribute [c]. The attributes namespace is Inappropriate.", "/r/e");
  EXPECT_EQ(collection.GetCount(), 2);
  EXPECT_EQ(CAttributeCol("", "##any", "").FromXml_Int(element, element, kDefault, false), element);
  EXPECT_ZU_ERROR(CZuException, collection.Item(0)->FromXml_Int(element, nullptr, kDefault, false),
                  "This should be done by the collection", "");
}

}  // namespace
}  // namespace ZuXmlLib16
