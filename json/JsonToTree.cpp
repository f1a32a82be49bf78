#include "json/JsonToTree.h"

#include "ZuXmlLib16/JsonTextReader.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "json/JsonMapping.h"
#include "xml/TreeBuilder.h"

namespace ZuXmlLib16::detail {
namespace {

/// Tells a tree builder what expat would tell it about the XML text.
class XmlTreeSink final : public XmlSink {
 public:
  XmlTreeSink(CXmlDocument& document, XmlTree& tree) : m_builder(document, tree) {}

  void StartElement(const XmlQName& name, const std::vector<XmlDeclaration>& declarations,
                    const std::vector<XmlAttributeEvent>& attributes) override {
    for (const XmlDeclaration& declaration : declarations) {
      m_builder.StartNamespace(declaration.prefix, declaration.namespaceUri);
    }
    m_builder.StartElement(Spelled(name), attributes.size());
    for (const XmlAttributeEvent& attribute : attributes) {
      m_builder.AddAttribute(Spelled(attribute.name), attribute.value);
    }
  }
  void AddText(std::string_view text) override { m_builder.AddText(text); }
  void EndElement(const XmlQName& /*name*/) override { m_builder.EndElement(); }

 private:
  const char* Spelled(const XmlQName& name) {
    m_spelling = name.namespaceUri;
    if (!m_spelling.empty()) m_spelling += TreeBuilder::kSeparator;
    m_spelling += name.localName;
    return m_spelling.c_str();
  }

  TreeBuilder m_builder;
  std::string m_spelling;
};

}  // namespace

void JsonToTree(const std::string& json, CXmlDocument& document, XmlTree& tree) {
  const CSerializationContext& context = document.GetContext();
  JsonTape tape(context.GetSchemaType() != SchemaType::NoNamespaces);
  CJsonTextReader reader(json);
  reader.SetContext(context.GetJsonContext());
  reader.SetJsonReaderHandler(&tape);
  reader.Read();
  XmlTreeSink sink(document, tree);
  try {
    JsonMapping(tape, context, sink).Convert();
  } catch (...) {
    tree.KeepOpenText();
    throw;
  }
}

}  // namespace ZuXmlLib16::detail
