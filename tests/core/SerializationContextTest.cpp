#include "ZuXmlLib16/SerializationContext.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/ErrorMatch.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

// Generated code may read and write before main, when most static objects are not made yet.
const std::string writtenBeforeMain = [] {
  CSmartPtr<CElement> element = ReadUntyped("<early xml:lang='en' xmlns='urn:e'>text</early>");
  return Written(*element);
}();

TEST(SerializationContext, DefaultOneServesStaticInitialisers) {
  EXPECT_EQ(writtenBeforeMain, "<early xml:lang=\"en\" xmlns=\"urn:e\">text</early>");
}

TEST(SerializationContext, IgnoreOptionsExcludeEachOther) {
  CSerializationContext context;
  context.SetIgnoreUnknownElements(true);
  EXPECT_ZU_ERROR(CZuInvalidStateException, context.SetIgnoreMissingMandatoryElements(true),
                  "The parser can only ignore additional elements, or ignore the fact that some "
                  "required ones are missing, you can not ignore both\nSet IgnoreUnknownElements "
                  "to false before setting IgnoreMissingMandatoryElements to true",
                  "");
  EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
  EXPECT_TRUE(context.GetIgnoreUnknownElements());
  context.SetIgnoreMissingMandatoryElements(false);
  context.SetIgnoreUnknownElements(true);

  context.SetIgnoreUnknownElements(false);
  context.SetIgnoreMissingMandatoryElements(true);
  EXPECT_ZU_ERROR(CZuInvalidStateException, context.SetIgnoreUnknownElements(true),
                  "The parser can only ignore additional elements, or ignore the fact that some "
                  "required ones are missing, you can not ignore both\nSet "
                  "IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements "
                  "to true",
                  "");
  EXPECT_FALSE(context.GetIgnoreUnknownElements());
}

TEST(SerializationContext, IndentCharsAreTabsAndBlanksOnly) {
  CSerializationContext context;
  EXPECT_EQ(context.GetIndentChars(), "\t");
  for (const char* bad : {" x", "\n", "\t\r", "\xC2\xA0", " \v"}) {
    context.SetIndentChars("  \t");
    EXPECT_ZU_ERROR(CZuInvalidParamException, context.SetIndentChars(bad),
                    "IndentChars can only contain Whitespace characters, i.e. \t or spaces", "");
    EXPECT_EQ(context.GetIndentChars(), "  \t");
  }
  context.SetIndentChars(nullptr);
  EXPECT_EQ(context.GetIndentChars(), "");
}

TEST(SerializationContext, SchemaWithoutNamespacesIgnoresThem) {
  CSerializationContext context;
  context.SetSchemaType(SchemaType::Other);
  EXPECT_FALSE(context.GetIgnoreNamespaces());
  context.SetSchemaType(SchemaType::NoNamespaces);
  EXPECT_TRUE(context.GetIgnoreNamespaces());
}

enum class Copying { Construct, Assign };

CSerializationContext CopyOf(const CSerializationContext& source, Copying copying) {
  if (copying == Copying::Construct) return CSerializationContext(source);
  CSerializationContext copy;
  copy.GetJsonContext();
  copy.GetNamespaceAliases().Add("gone", "urn:gone");
  copy = source;
  return copy;
}

class ContextCopy : public testing::TestWithParam<Copying> {};

TEST_P(ContextCopy, SharesSettingsOfFormatsOnceTheyExist) {
  auto source = std::make_unique<CSerializationContext>();
  const CSerializationContext early = CopyOf(*source, GetParam());
  const CJsonContext* const json = &source->GetJsonContext();
  const CFastInfosetContext* const fastInfoset = &source->GetFIContext();
  source->GetAdditionalRootAttributes()->Add("a", "1", "urn:any");

  const CSerializationContext late = CopyOf(*source, GetParam());
  source.reset();
  EXPECT_EQ(&late.GetJsonContext(), json);
  EXPECT_EQ(&late.GetFIContext(), fastInfoset);
  EXPECT_EQ(late.GetAdditionalRootAttributes()->Item(0)->GetNamespace(), "urn:any");
  EXPECT_NE(&early.GetJsonContext(), json);
  EXPECT_NE(&early.GetFIContext(), fastInfoset);
  EXPECT_EQ(early.GetAdditionalRootAttributes()->GetCount(), 0);
}

TEST_P(ContextCopy, OwnsItsAliasesAndInstructions) {
  CSerializationContext source;
  source.GetNamespaceAliases().Add("p", "urn:p");
  source.GetProcessingInstructions().push_back("<?one?>");
  const CSerializationContext copy = CopyOf(source, GetParam());
  source.GetNamespaceAliases().Add("q", "urn:p");
  source.GetProcessingInstructions().clear();
  EXPECT_EQ(copy.GetNamespaceAliases().GetAliasFromNamespace("urn:p"), "p");
  EXPECT_EQ(copy.GetNamespaceAliases().GetNamespaceCount(), 1);
  EXPECT_EQ(copy.GetProcessingInstructions(), std::vector<std::string>{"<?one?>"});
}

INSTANTIATE_TEST_SUITE_P(Both, ContextCopy, testing::Values(Copying::Construct, Copying::Assign),
                         [](const auto& tested) {
                           return tested.param == Copying::Construct ? "Constructed" : "Assigned";
                         });

TEST(SerializationContext, MayBeAssignedToItself) {
  CSerializationContext context;
  context.SetInLineSchema("schema");
  context.GetAdditionalRootAttributes()->Add("a", "1");
  const CSerializationContext& self = context;
  context = self;
  EXPECT_EQ(context.GetInLineSchema(), "schema");
  EXPECT_EQ(context.GetAdditionalRootAttributes()->GetCount(), 1);
}

TEST(SerializationContext, IsNotChangedByReadingAndWriting) {
  const CSerializationContext context;
  CElement element("a");
  element.FromXml("<a b='1'><c/></a>", context);
  element.ToXml(true, true, EOLType::Lf, context);
  EXPECT_EQ(context.FindAdditionalRootAttributes(), nullptr);
  EXPECT_EQ(context.GetAdditionalRootAttributes().Get(), context.FindAdditionalRootAttributes());
}

}  // namespace
}  // namespace ZuXmlLib16
