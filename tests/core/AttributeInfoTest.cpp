#include <gtest/gtest.h>

#include <string>

#include "support/BindableClass.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
const CSerializationContext& kContext = CSerializationContext::m_defaultContext;

constexpr const char* kWriting =
    "!Failed to convert the element [r] to XML\nFailed to convert attributes to XML\n";

std::string Root(const std::string& attributes) {
  return "<r xmlns:z='urn:z' xmlns:y='urn:y' " + attributes + "/>";
}

/// An attribute "n" of "urn:z" that is one of an enumeration.
void AddDigit(Shape& shape, bool optional, const char* defaultValue = "") {
  shape.Attribute<CAttributeInfoEnum>("n", "urn:z", optional, nullptr, DigitToText, DigitFromText,
                                      defaultValue);
}

/// What is behind the root's name when the only attribute has a value.
std::string WrittenBy(const Shape& shape, const ZuVariant& value, bool leaveOutDefaults = false) {
  const CSmartPtr<BindableClass> object = shape.Make();
  object->properties[0] = value;
  CSerializationContext context;
  context.GetNamespaceAliases().Add("z", "urn:z");
  context.SetNoOptionalAttributeDefaultOutput(leaveOutDefaults);
  const std::string outcome = WriteOutcome(*object, context);
  return outcome[0] == '!' ? outcome : outcome.substr(sizeof "<r xmlns:z=\"urn:z\"" - 1);
}

TEST(AttributeInfo, OptionalDefaultIsLeftOutOnRequest) {
  ZuVariant one, twelve, nil;
  one.SetI4(1);
  twelve.SetI4(12);
  nil.SetNil();
  const std::string tooLarge = std::string(kWriting) + "Invalid Value for n [12]";
  for (const bool optional : {true, false}) {
    SCOPED_TRACE(optional);
    Shape number("r"), largeDefault("r"), digit("r");
    number.Number("n", optional, "1");
    EXPECT_EQ(WrittenBy(number, one), " n=\"1\"/>");
    EXPECT_EQ(WrittenBy(number, one, true), optional ? "/>" : " n=\"1\"/>");
    EXPECT_EQ(WrittenBy(number, twelve, true), tooLarge);
    EXPECT_EQ(WrittenBy(number, ZuVariant()),
              optional ? "/>" : std::string(kWriting) + "Invalid Type 0 to convert to string");
    largeDefault.Number("n", optional, "12");
    EXPECT_EQ(WrittenBy(largeDefault, twelve), tooLarge) << "a default is checked, too";
    AddDigit(digit, optional, "1");
    EXPECT_EQ(WrittenBy(digit, one), " z:n=\"1\"/>");
    EXPECT_EQ(WrittenBy(digit, one, true), optional ? "/>" : " z:n=\"1\"/>");
    EXPECT_EQ(WrittenBy(digit, nil), optional ? "/>" : " z:n=\"0\"/>");
  }
}

TEST(AttributeInfo, PrimitivesNeedTheirNamespaceWhateverIsIgnored) {
  Shape number("r"), digit("r");
  number.Number("n", true, "", "urn:z");
  AddDigit(digit, true);
  for (const char* const options : {"", "N"}) {
    const CSerializationContext context = Ignoring(options);
    EXPECT_EQ(Outcome(*number.Make(), Root("y:n='1' m='2'"), context), "");
    EXPECT_EQ(Outcome(*number.Make(), Root("z:n=' 12 '"), context), "n=12") << "facets unseen";
    EXPECT_EQ(Outcome(*digit.Make(), Root("z:n='1'"), context), "n=1");
    EXPECT_EQ(Outcome(*digit.Make(), Root("y:n='1'"), context), *options == 'N' ? "n=1" : "");
  }
}

TEST(AttributeInfo, RequiredOneHasToBeThere) {
  for (const bool optional : {true, false}) {
    Shape shape("r");
    AddDigit(shape.Number("n", optional), optional);
    for (const int i : {0, 1}) {
      const CAttributeInfo& entry = *shape.GetAttributes()[i];
      EXPECT_NO_THROW(entry.Validate(kContext, true));
      if (optional) {
        EXPECT_NO_THROW(entry.Validate(kContext, false));
      } else {
        EXPECT_ZU_ERROR(CZuValidationException, entry.Validate(kContext, false),
                        "Failed to find the required Attribute [n].", "");
      }
    }
  }
}

TEST(AttributeInfo, TellsWhichPropertyFailed) {
  Shape shape("r");
  shape.Number("n");
  const CSmartPtr<BindableClass> object = shape.Make();
  object->isFailing = true;
  EXPECT_EQ(Outcome(*object, Root("n='5'")),
            "!Failed to set the property value [5].\nPath: /r/@n\nFailing");
  EXPECT_EQ(WriteOutcome(*object),
            std::string(kWriting) + "Failed to get the property value for [n].\nFailing");
}

/// A strict class with a number "n" and a wildcard behind it.
struct WithAny {
  explicit WithAny(const char* restriction) : shape("r") {
    shape.isStrict = true;
    const auto fill = [](ZuVariant& value) {
      value.SetXmlCollection(new CAttributeCol("", "##any", ""));
    };
    shape.Number("n").Attribute<CAttributeInfoAny>("any", "", false, fill, restriction, "urn:t",
                                                   "");
    object = shape.Make();
  }
  Shape shape;
  CSmartPtr<BindableClass> object;
};

TEST(AnyAttribute, TakesWhatItsRestrictionAllows) {
  constexpr const char* kUnexpected = "!Unexpected Attribute found.\nPath: /r/z:@a";
  const char* const cases[][3] = {
      {"##any", "z:a='1' n='2' b='3'", "n=2 any=[urn:z:a=1 :b=3]"},
      {"##other", "z:a='1'", "any=[urn:z:a=1]"},
      {"##local", "n='1' b='2'", "n=1 any=[:b=2]"},
      {"##local", "z:a='1'", kUnexpected},
      {"urn:y", "y:b='2' z:a='1'", kUnexpected},
  };
  for (const auto& [restriction, attributes, expected] : cases) {
    EXPECT_EQ(Outcome(*WithAny(restriction).object, Root(attributes)), expected) << restriction;
  }
  const WithAny any("##any");
  Outcome(*any.object, "<r a='1' n='2'/>");
  EXPECT_EQ(WriteOutcome(*any.object), "<r n=\"2\" a=\"1\"/>");
  EXPECT_NO_THROW(any.shape.GetAttributes()[1]->Validate(kContext, false));
}

TEST(AnyAttribute, NeedsACollectionOfAttributes) {
  const WithAny any("##any");
  for (CXmlCollectionBase* const wrong :
       {static_cast<CXmlCollectionBase*>(new CElementCol("", "##any", "", 0, -1)),
        static_cast<CXmlCollectionBase*>(nullptr)}) {
    any.object->properties[1].SetXmlCollection(wrong);
    EXPECT_EQ(Outcome(*any.object, Root("a='1'")),
              "!Failed to process the element.\nPath: /r\nSerialization Data Error : The "
              "collection should be a CAttributeCol, it was not!");
  }
  EXPECT_EQ(WriteOutcome(*any.object), "<r/>") << "null is empty";
}

}  // namespace
}  // namespace ZuXmlLib16
