#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/FastInfosetWriter.h"
#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "core/LocalXml.h"

namespace ZuXmlLib16 {
namespace {

struct QName {
  std::string_view prefix;
  std::string_view localName;
};

QName Split(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) return {"", name};
  return {name.substr(0, colon), name.substr(colon + 1)};
}

/// Whether an attribute is a declaration.
/// @param prefix  receives the declared one, "" for the default namespace.
bool IsDeclaration(const CXmlAttribute& attribute, std::string_view& prefix) {
  const QName name = Split(attribute.GetLocalName());
  const bool isDefault = name.prefix.empty() && name.localName == "xmlns";
  prefix = isDefault ? "" : name.localName;
  return isDefault || name.prefix == "xmlns";
}

bool IsWhiteSpace(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace

/// Writes the elements of a document whose names were read with their prefixes, so that its own
/// declarations stay: a schema uses prefixes in values, too.
class CFastInfosetWriter::SchemaWriter {
 public:
  explicit SchemaWriter(CFastInfosetWriter& writer) : m_writer(writer) {}

  void WriteTree(const CXmlElement& root) {
    Start(root);
    while (!m_open.empty()) {
      const CXmlElement* const next = m_open.back().nextChild;
      if (next != nullptr) {
        m_open.back().nextChild = next->GetNextSiblingElement();
        Start(*next);
      } else {
        m_writer.WriteEndElement();
        m_declared.resize(m_open.back().declaredBefore);
        m_open.pop_back();
      }
    }
  }

 private:
  struct Declaration {
    std::string_view prefix;
    std::string_view namespaceUri;
  };
  struct OpenElement {
    const CXmlElement* nextChild;
    std::size_t declaredBefore;
  };

  std::string_view NamespaceOf(std::string_view prefix) const {
    if (prefix == "xml") return XML_NAMESPACE;
    for (auto declared = m_declared.rbegin(); declared != m_declared.rend(); ++declared) {
      if (declared->prefix == prefix) return declared->namespaceUri;
    }
    return {};
  }

  void Start(const CXmlElement& element) {
    m_open.push_back({element.GetFirstElement(), m_declared.size()});
    std::string_view prefix;
    for (const CXmlAttribute* const attribute : element.GetAttributes()) {
      if (!IsDeclaration(*attribute, prefix)) continue;
      m_declared.push_back({prefix, attribute->GetValueView()});
    }
    const QName name = Split(element.GetLocalName());
    CXmlWriterContext& context = m_writer.OpenElement(name.localName, NamespaceOf(name.prefix));
    for (std::size_t i = m_open.back().declaredBefore; i < m_declared.size(); ++i) {
      Declare(context, m_declared[i]);
    }
    m_writer.StartElement(context);
    WriteAttributes(element);
    // What stands between elements is layout.
    const bool isLayout =
        element.GetFirstElement() != nullptr && IsWhiteSpace(element.GetTextView());
    if (!isLayout) m_writer.WriteString(element.GetTextView(), ItemType::string, false);
  }

  void Declare(CXmlWriterContext& element, const Declaration& declaration) {
    if (!declaration.prefix.empty()) {
      m_writer.AddNamespace(declaration.prefix, declaration.namespaceUri);
    } else if (!element.GetNamespace().empty()) {
      m_writer.SetDefaultNamespace(declaration.namespaceUri);
    }
  }

  void WriteAttributes(const CXmlElement& element) {
    std::string_view prefix;
    for (const CXmlAttribute* const attribute : element.GetAttributes()) {
      if (IsDeclaration(*attribute, prefix)) continue;
      const QName name = Split(attribute->GetLocalName());
      const std::string_view space = name.prefix.empty() ? "" : NamespaceOf(name.prefix);
      m_writer.WriteAttributeString(name.localName, space, attribute->GetValueView(),
                                    ItemType::string);
    }
  }

  CFastInfosetWriter& m_writer;
  std::vector<OpenElement> m_open;
  std::vector<Declaration> m_declared;  // in scope
};

void CFastInfosetWriter::WriteInlineSchema(CTextRef schema) {
  CSerializationContext asWritten;
  asWritten.SetSchemaType(SchemaType::NoNamespaces);
  CXmlDocument document(asWritten);
  const std::string text(schema.substr(0, schema.find('\0')));
  document.LoadXml(detail::LocalXmlAsUtf8(text).c_str());
  SchemaWriter(*this).WriteTree(*document.GetDocumentElement());
}

}  // namespace ZuXmlLib16
