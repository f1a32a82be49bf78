#include "core/RootOptions.h"

#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16::detail {

void WriteBeforeRoot(CXmlWriter& writer, const CSerializationContext& context) {
  for (const std::string& instruction : context.GetProcessingInstructions()) {
    writer.WritePI(instruction);
  }
  const CNamespaceAliasMap& aliases = context.GetNamespaceAliases();
  for (const auto& [namespaceUri, alias] : aliases) {
    writer.AddNamespace(alias, namespaceUri);
  }
  if (!context.GetDefaultNamespaceURI().empty()) {
    writer.SetDefaultNamespace(context.GetDefaultNamespaceURI());
  }
}

void WriteRootAttributes(CXmlWriter& writer, const CSerializationContext& context) {
  if (const CAttributeCol* const attributes = context.FindAdditionalRootAttributes()) {
    attributes->ToXml_Int(&writer, false, "", context, false);
  }
}

}  // namespace ZuXmlLib16::detail
