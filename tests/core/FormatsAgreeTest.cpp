#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16.h"
#include "bench/Documents.h"
#include "examples/generated/Orders.h"
#include "examples/generated/Telemetry.h"
#include "support/CharacterTypeLocale.h"
#include "support/RandomTree.h"

// The same objects through XML, JSON and Fast Infoset.

namespace ZuXmlLib16 {
namespace {

std::string AsXml(const CXmlObjectBase& object, const CSerializationContext& context) {
  return object.ToXml(false, false, EOLType::Lf, context);
}

const CompressionType kCompressions[] = {CompressionType::None, CompressionType::Gzip,
                                         CompressionType::Zlib};

/// Writes the object in every form and reads each into a new object of its class.
template <class Make>
void ExpectFormsAgree(const CXmlObjectBase& object, const CSerializationContext& context,
                      Make make) {
  const std::string expected = AsXml(object, context);
  for (const CompressionType compression : kCompressions) {
    SCOPED_TRACE("compression " + std::to_string(static_cast<int>(compression)));
    const auto expectSame = [&](const char* form, auto read) {
      const auto copy = make();
      read(*copy);
      EXPECT_EQ(AsXml(*copy, context), expected) << form;
    };
    expectSame("XML", [&](CXmlObjectBase& copy) {
      copy.FromXmlStream(
          object.ToXmlStream(true, true, XmlEncoding::Utf8, EOLType::CrLf, context, compression),
          context);
    });
    expectSame("JSON", [&](CXmlObjectBase& copy) {
      copy.FromJsonStream(
          object.ToJsonStream(true, XmlEncoding::Utf8, EOLType::Lf, context, compression), context);
    });
    expectSame("Fast Infoset", [&](CXmlObjectBase& copy) {
      copy.FromXmlStream(object.ToFastInfosetStream(FInfoDecl::V10, context, compression), context);
    });
  }
}

template <class Root>
void ExpectExampleAgrees(const char* kind) {
  const CharacterTypeLocale utf8("C.UTF-8");
  bench::DocumentOptions options;
  options.sizeInBytes = 30000;
  options.nonAsciiPercent = 30;
  const CSmartPtr<Root> root(new Root);
  root->FromXml(bench::MakeDocument(kind, options).c_str(),
                CSerializationContext::m_defaultContext);
  CSerializationContext context;
  context.SetDefaultNamespaceURI(root->GetTargetNamespace().c_str());
  context.GetJsonContext().SetStrictEscaping(true);
  const auto make = [] { return CSmartPtr<Root>(new Root); };
  ExpectFormsAgree(*root, context, make);
  context.GetJsonContext().SetSupportRoundtrip(JsonRoundTrip::Marked);
  context.GetFIContext().SetTypedValues(CFastInfosetContext::TypedValueMode::Text);
  ExpectFormsAgree(*root, context, make);
  context.GetFIContext().SetTypedValues(CFastInfosetContext::TypedValueMode::All);
  ExpectFormsAgree(*root, context, make);
}

TEST(FormatsAgree, OnTypedObjects) {
  ExpectExampleAgrees<orders::COrderFeed>("orders");
  ExpectExampleAgrees<telemetry::CTelemetry>("telemetry");
}

TEST(FormatsAgree, OnUntypedTrees) {
  const CharacterTypeLocale utf8("C.UTF-8");
  CSerializationContext context;
  context.GetJsonContext().SetStrictEscaping(true);
  // JSON declares the namespaces of its root only.
  context.GetNamespaceAliases().Add("one", "urn:one");
  context.GetNamespaceAliases().Add("two", "urn:two");
  context.GetNamespaceAliases().Add("ex", "http://example.org/?a=1&b=<2>\"'");
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CSmartPtr<CElement> root = RandomTree(seed).Make(60);
    ExpectFormsAgree(*root, context, [] { return CSmartPtr<CElement>(new CElement("root")); });
  }
}

}  // namespace
}  // namespace ZuXmlLib16
