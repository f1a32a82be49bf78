#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlWriter.h"
#include "ZuXmlLib16/Zip.h"
#include "tools/Commands.h"
#include "tools/Files.h"
#include "tools/Input.h"

namespace ZuXmlTool {

using ZuXmlLib16::CBinaryData;
using ZuXmlLib16::CElement;
using ZuXmlLib16::CJsonContext;
using ZuXmlLib16::CompressionType;
using ZuXmlLib16::CSerializationContext;
using ZuXmlLib16::CSmartPtr;
using ZuXmlLib16::CXmlAttribute;
using ZuXmlLib16::CXmlDocument;
using ZuXmlLib16::CXmlElement;
using ZuXmlLib16::CXmlWriter;
using ZuXmlLib16::CZuZip;
using ZuXmlLib16::FInfoDecl;
using ZuXmlLib16::XmlEncoding;

namespace {

/// How many elements hold both child elements and a text that is more than the layout between them.
/// The text of an element is one piece, so that theirs loses its places.
std::size_t CountMixedElements(const CXmlElement& root) {
  std::size_t mixed = 0;
  std::vector<const CXmlElement*> open = {&root};
  while (!open.empty()) {
    const CXmlElement* const element = open.back();
    open.pop_back();
    const CXmlElement* child = element->GetFirstElement();
    const std::string_view text = element->GetTextView();
    if (child != nullptr && text.find_first_not_of(" \t\r\n") != std::string_view::npos) ++mixed;
    for (; child != nullptr; child = child->GetNextSiblingElement())
      open.push_back(child);
  }
  return mixed;
}

/// Has the output declare its namespaces on the root, under the prefixes that the input gave them.
class PrefixKeeper {
 public:
  PrefixKeeper(const CXmlDocument& document, CSerializationContext& context)
      : m_document(document), m_context(context) {
    m_met.insert(CXmlWriter::XML_NAMESPACE);  // needs no declaration
  }

  void Keep(const CXmlElement& root) {
    std::vector<const CXmlElement*> open = {&root};
    while (!open.empty()) {
      const CXmlElement* const element = open.back();
      open.pop_back();
      KeepElement(*element);
      const CXmlElement* const sibling = element->GetNextSiblingElement();
      const CXmlElement* const child = element->GetFirstElement();
      if (sibling != nullptr) open.push_back(sibling);
      if (child != nullptr) open.push_back(child);
    }
    // Below a default namespace an element without one would be read as in it.
    const std::string& defaultNamespace = m_document.LookupNamespaceFromAlias("");
    if (m_isEachElementQualified) m_context.SetDefaultNamespaceURI(defaultNamespace.c_str());
  }

  /// Makes prefixes for the namespaces that have none: JSON declares them all on the root.
  void AddMissing() {
    int number = 0;
    for (const std::string& namespaceUri : m_withoutPrefix) {
      if (namespaceUri == m_context.GetDefaultNamespaceURI()) continue;
      std::string prefix;
      do {
        prefix = "ns" + std::to_string(++number);
      } while (m_prefixes.count(prefix) > 0);
      m_context.GetNamespaceAliases().Add(prefix.c_str(), namespaceUri.c_str());
    }
  }

 private:
  /// Each look-up walks all prefixes of the document; what is beyond gets prefixes made for it.
  static constexpr std::size_t kMaxLookUps = 256;

  void KeepElement(const CXmlElement& element) {
    if (element.GetNamespaceURI().empty()) m_isEachElementQualified = false;
    KeepNamespace(element.GetNamespaceURI());
    for (const CXmlAttribute* attribute : element.GetAttributes()) {
      KeepNamespace(attribute->GetNamespaceURI());
    }
  }

  void KeepNamespace(const std::string& namespaceUri) {
    if (namespaceUri.empty() || !m_met.insert(namespaceUri).second) return;
    const bool mayLookUp = m_met.size() <= kMaxLookUps;
    const std::string prefix = mayLookUp ? m_document.LookupAliasFromNamespace(namespaceUri) : "";
    if (prefix.empty()) {
      m_withoutPrefix.push_back(namespaceUri);
    } else {
      m_prefixes.insert(prefix);
      m_context.GetNamespaceAliases().Add(prefix.c_str(), namespaceUri.c_str());
    }
  }

  const CXmlDocument& m_document;
  CSerializationContext& m_context;
  std::set<std::string> m_met;
  std::set<std::string> m_prefixes;
  std::vector<std::string> m_withoutPrefix;
  bool m_isEachElementQualified = true;
};

CSmartPtr<CElement> Read(const Command& command, CSerializationContext& context,
                         Progress& progress) {
  CXmlDocument document(context);
  Load(document, command, progress);
  const CXmlElement& source = *document.GetDocumentElement();
  CSmartPtr<CElement> root(new CElement("document"));
  root->FromXmlElement(&source, context);
  PrefixKeeper prefixes(document, context);
  prefixes.Keep(source);
  if (command.format == Format::Json) prefixes.AddMissing();
  if (const std::size_t mixed = CountMixedElements(source); mixed > 0) {
    progress.Tell("text between child elements moves behind them (in " + std::to_string(mixed) +
                  " elements)");
  }
  return root;
}

/// The wide encodings are announced by the two bytes that the library puts into files of them.
CBinaryData WithByteOrderMark(const CBinaryData& document) {
  constexpr unsigned char kMark[] = {0xFF, 0xFE};
  CBinaryData marked;
  marked.Append(kMark, sizeof kMark);
  marked.Append(document);
  return marked;
}

CBinaryData Written(const CElement& root, const Command& command,
                    const CSerializationContext& context) {
  const bool isPretty = !command.compact;
  constexpr CompressionType kPlain = CompressionType::None;
  CBinaryData document;
  switch (command.format) {
    case Format::Xml:
      document = root.ToXmlStream(command.header, isPretty, command.encoding, command.eol, context,
                                  kPlain);
      break;
    case Format::Json:
      document = root.ToJsonStream(isPretty, command.encoding, command.eol, context, kPlain);
      break;
    case Format::FastInfoset:
      document = root.ToFastInfosetStream(FInfoDecl::None, context, kPlain);
      break;
  }
  const bool isText = command.format != Format::FastInfoset;
  if (isText && command.encoding != XmlEncoding::Utf8) document = WithByteOrderMark(document);
  constexpr bool kMayGrow = true;  // small documents do
  if (command.compression != CompressionType::None) {
    CZuZip::CompressData(document, command.compression, kMayGrow);
  }
  return document;
}

}  // namespace

void Convert(const Command& command) {
  Progress progress(command.input);
  CSerializationContext context;
  context.SetIndentChars(command.indent.c_str());
  CJsonContext& json = context.GetJsonContext();
  json.SetSupportRoundtrip(command.jsonMode);
  json.SetRootElementName(command.jsonRoot.c_str());
  json.SetStrictEscaping(true);  // nobody wants JSON that others cannot read

  const CSmartPtr<CElement> root = Read(command, context, progress);
  const CBinaryData document = Written(*root, command, context);
  progress.Show("writing", document.GetLength());
  WriteAll(command.output, document.GetData(), document.GetLength());
}

}  // namespace ZuXmlTool
