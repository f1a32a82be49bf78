#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "tools/Commands.h"
#include "tools/Files.h"
#include "tools/Input.h"

namespace ZuXmlTool {

using ZuXmlLib16::CSerializationContext;
using ZuXmlLib16::CXmlAttribute;
using ZuXmlLib16::CXmlDocument;
using ZuXmlLib16::CXmlElement;

namespace {

/// Longer paths are printed as "..." and their last step, so that a deep document of n elements
/// does not become n * n bytes.
constexpr std::size_t kMaxPathLength = 4096;

/// Namespaces whose prefix is looked up; each look-up walks all prefixes of the document.
constexpr std::size_t kMaxPrefixes = 256;

constexpr std::size_t kOutputBlock = 1 << 16;

/// Prints the elements of a document in document order. Paths are built while walking, and the walk
/// keeps its own stack: the time is in proportion to the size of the document, whatever its shape.
class TreePrinter {
 public:
  explicit TreePrinter(const CXmlDocument& document) : m_document(document) {}

  void Print();

 private:
  struct Occurrences {
    int total = 0;
    int seen = 0;
  };
  /// The siblings that are being walked: the next one, and how many there are of each name.
  struct Level {
    const CXmlElement* next;
    std::size_t parentPathLength;
    std::map<std::string, Occurrences> names;
  };

  void Enter(const CXmlElement* firstSibling);
  void PrintElement(const CXmlElement& element, Level& level);
  void PrintAttribute(const CXmlAttribute& attribute);
  void PrintEscaped(std::string_view text);
  std::string NameOf(const CXmlElement& element);
  const std::string& PrefixOf(const std::string& namespaceUri);
  void Flush();

  const CXmlDocument& m_document;
  std::vector<Level> m_levels;
  std::map<std::string, std::string> m_prefixes;
  std::string m_path;
  std::string m_output;
};

void TreePrinter::Print() {
  Enter(m_document.GetDocumentElement());
  while (!m_levels.empty()) {
    Level& level = m_levels.back();
    const CXmlElement* const element = level.next;
    if (element == nullptr) {
      m_levels.pop_back();
      continue;
    }
    level.next = element->GetNextSiblingElement();
    PrintElement(*element, level);
    Enter(element->GetFirstElement());
  }
  Flush();
}

void TreePrinter::Enter(const CXmlElement* firstSibling) {
  if (firstSibling == nullptr) return;
  Level level = {firstSibling, m_path.size(), {}};
  for (const CXmlElement* sibling = firstSibling; sibling != nullptr;
       sibling = sibling->GetNextSiblingElement()) {
    ++level.names[NameOf(*sibling)].total;
  }
  m_levels.push_back(std::move(level));
}

void TreePrinter::PrintElement(const CXmlElement& element, Level& level) {
  const std::string name = NameOf(element);
  Occurrences& occurrences = level.names[name];
  ++occurrences.seen;
  m_path.resize(level.parentPathLength);
  m_path += '/';
  m_path += name;
  if (occurrences.total > 1) m_path += '[' + std::to_string(occurrences.seen) + ']';

  if (m_path.size() <= kMaxPathLength) {
    m_output += m_path;
  } else {
    m_output += "...";
    m_output.append(m_path, level.parentPathLength);
  }
  if (!element.GetNamespaceURI().empty()) {
    m_output += " {";
    m_output += element.GetNamespaceURI();
    m_output += '}';
  }
  for (const CXmlAttribute* attribute : element.GetAttributes())
    PrintAttribute(*attribute);
  m_output += '\n';
  if (m_output.size() >= kOutputBlock) Flush();
}

void TreePrinter::PrintAttribute(const CXmlAttribute& attribute) {
  m_output += ' ';
  if (!attribute.GetNamespaceURI().empty()) {
    m_output += '{';
    m_output += attribute.GetNamespaceURI();
    m_output += '}';
  }
  m_output += attribute.GetLocalName();
  m_output += "=\"";
  PrintEscaped(attribute.GetValueView());
  m_output += '"';
}

/// As in XML text, so that a value stays on its line and ends where it seems to end.
void TreePrinter::PrintEscaped(std::string_view text) {
  for (const char character : text) {
    switch (character) {
      case '"':
        m_output += "&quot;";
        break;
      case '&':
        m_output += "&amp;";
        break;
      case '\n':
        m_output += "&#xA;";
        break;
      case '\r':
        m_output += "&#xD;";
        break;
      case '\t':
        m_output += "&#x9;";
        break;
      default:
        m_output += character;
    }
  }
}

std::string TreePrinter::NameOf(const CXmlElement& element) {
  const std::string& prefix = PrefixOf(element.GetNamespaceURI());
  return prefix.empty() ? element.GetLocalName() : prefix + ':' + element.GetLocalName();
}

const std::string& TreePrinter::PrefixOf(const std::string& namespaceUri) {
  static const std::string kNone;
  if (namespaceUri.empty()) return kNone;
  const auto known = m_prefixes.find(namespaceUri);
  if (known != m_prefixes.end()) return known->second;
  if (m_prefixes.size() == kMaxPrefixes) return kNone;
  return m_prefixes[namespaceUri] = m_document.LookupAliasFromNamespace(namespaceUri);
}

void TreePrinter::Flush() {
  WriteAll("-", reinterpret_cast<const unsigned char*>(m_output.data()), m_output.size());
  m_output.clear();
}

}  // namespace

void PrintTree(const Command& command) {
  Progress progress(command.input);
  const CSerializationContext context;
  CXmlDocument document(context);
  Load(document, command, progress);
  TreePrinter(document).Print();
}

}  // namespace ZuXmlTool
