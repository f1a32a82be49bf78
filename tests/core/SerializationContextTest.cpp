#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ZuXmlLib16/SerializationContext.h"
#include "support/ErrorMatch.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

// Generated code may read and write before main, when most static objects are not made yet.
const std::string writtenBeforeMain =  // NOLINT(cert-err58-cpp)
    Written(*ReadUntyped("<early xml:lang='en' xmlns='urn:e'>text</early>"));

TEST(SerializationContext, DefaultOneServesStaticInitialisers) {
  EXPECT_EQ(writtenBeforeMain, "<AA:early xmlns:AA=\"urn:e\" xml:lang=\"en\">text</AA:early>");
}

TEST(SerializationContext, IgnoreOptionsExcludeEachOther) {
  const auto text = [](const std::string& isSet, const std::string& wanted) {
    return "The parser can only ignore additional elements, or ignore the fact that some required "
           "ones are missing, you can not ignore both\nSet " +
           isSet + " to false before setting " + wanted + " to true";
  };
  CSerializationContext context;
  context.SetIgnoreUnknownElements(true);
  EXPECT_ZU_ERROR(CZuInvalidStateException, context.SetIgnoreMissingMandatoryElements(true),
                  text("IgnoreUnknownElements", "IgnoreMissingMandatoryElements"), "");
  EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
  context.SetIgnoreUnknownElements(false);
  context.SetIgnoreMissingMandatoryElements(true);
  EXPECT_ZU_ERROR(CZuInvalidStateException, context.SetIgnoreUnknownElements(true),
                  text("IgnoreMissingMandatoryElements", "IgnoreUnknownElements"), "");
  EXPECT_FALSE(context.GetIgnoreUnknownElements());
}

TEST(SerializationContext, IndentCharsAreTabsAndBlanksOnly) {
  CSerializationContext context;
  context.SetIndentChars("  \t");
  for (const char* bad : {" x", "\n", "\t\r", "\xC2\xA0", " \v"}) {
    EXPECT_ZU_ERROR(CZuInvalidParamException, context.SetIndentChars(bad),
                    "IndentChars can only contain Whitespace characters, i.e. \t or spaces", "");
    EXPECT_EQ(context.GetIndentChars(), "  \t");
  }
  context.SetIndentChars(nullptr);
  EXPECT_EQ(context.GetIndentChars(), "");
}

TEST(SerializationContext, CopiesShareWhatExistsAndOutliveTheirSource) {
  auto source = std::make_unique<CSerializationContext>();
  const CSerializationContext early(*source);
  const CJsonContext* const json = &source->GetJsonContext();
  const CFastInfosetContext* const fastInfoset = &source->GetFIContext();
  source->GetAdditionalRootAttributes()->Add("a", "1", "urn:any");
  const CSerializationContext constructed(*source);
  CSerializationContext assigned;
  assigned.GetJsonContext();
  assigned = *source;
  source.reset();
  for (const CSerializationContext& copy : {constructed, assigned}) {
    EXPECT_EQ(&copy.GetJsonContext(), json);
    EXPECT_EQ(&copy.GetFIContext(), fastInfoset);
    EXPECT_EQ(copy.GetAdditionalRootAttributes()->Item(0)->GetNamespace(), "urn:any");
  }
  EXPECT_NE(&early.GetJsonContext(), json);
  EXPECT_NE(&early.GetFIContext(), fastInfoset);
  EXPECT_EQ(early.GetAdditionalRootAttributes()->GetCount(), 0);
}

}  // namespace
}  // namespace ZuXmlLib16
