#include "ZuXmlLib16/FastInfosetWriter.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "ZuXmlLib16/XmlObjectBase.h"
#include "core/Errors.h"
#include "fastinfoset/FastInfosetOutput.h"
#include "fastinfoset/Identification.h"

namespace ZuXmlLib16 {
namespace {

constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kCDataStart = "<![CDATA[";
constexpr std::string_view kCDataEnd = "]]>";
constexpr std::string_view kWhiteSpace = " \t\r\n";

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace

CFastInfosetWriter::CFastInfosetWriter(CBinaryStream& stream, const CFastInfosetContext& context)
    : CXmlWriter("CFastInfosetWriter"),
      m_output(std::make_unique<detail::FastInfosetOutput>(stream, context)) {}

CFastInfosetWriter::~CFastInfosetWriter() = default;

void CFastInfosetWriter::SetDeclaration(FInfoDecl declaration) {
  const auto number = static_cast<std::int32_t>(declaration);
  constexpr auto& kDeclarations = detail::kFastInfosetDeclarations;
  if (number < 0 || static_cast<std::size_t>(number) > std::size(kDeclarations)) {
    ThrowInvalidFastInfosetDeclaration(number);
  }
  m_declaration = number == 0 ? std::string_view() : kDeclarations[number - 1];
}

void CFastInfosetWriter::Open() {
  m_output->encoder.StartDocument(m_declaration);
}

void CFastInfosetWriter::Close() {
  CXmlWriter::Close();
  m_output->encoder.EndDocument();
}

void CFastInfosetWriter::SetDefaultNamespace(CTextRef namespaceUri) {
  CXmlWriter::SetDefaultNamespace(namespaceUri);
  m_lastPrefix = nullptr;
  const CXmlWriterContext* const element = Current();
  if (element != nullptr && element->m_isStartTagOpen && !namespaceUri.empty()) {
    Bind("", namespaceUri);
  }
}

void CFastInfosetWriter::AddNamespace(CTextRef prefix, CTextRef namespaceUri) {
  CXmlWriter::AddNamespace(prefix, namespaceUri);
  m_lastPrefix = nullptr;
  const CXmlWriterContext* const element = Current();
  if (element == nullptr || !element->m_isStartTagOpen) return;
  // What cannot be declared was ignored.
  const std::string* const declared = element->FindPrefix(namespaceUri);
  if (declared != nullptr && *declared == prefix) Bind(prefix, namespaceUri);
}

/// Binds a prefix for the names of the current element, whose start is open.
/// @return null when the element uses the prefix for another namespace.
detail::NamespacePrefix* CFastInfosetWriter::Bind(std::string_view prefix,
                                                  std::string_view namespaceUri) {
  using Outcome = detail::DeclaredPrefixes::Outcome;
  detail::DeclaredPrefixes& prefixes = m_output->prefixes;
  detail::NamespacePrefix& found = prefixes.Find(prefix);
  switch (prefixes.Use(found, namespaceUri)) {
    case Outcome::Bound:
      return &found;
    case Outcome::Taken:
      return nullptr;
    case Outcome::Unbound:
      break;
  }
  detail::NamespaceName* const name =
      namespaceUri.empty() ? nullptr : &prefixes.FindNamespace(namespaceUri);
  prefixes.Declare(found, name, Current()->GetDepth());
  m_lastPrefix = nullptr;
  m_output->encoder.AddDeclaration(found, name);
  return &found;
}

/// Binds the prefix in scope, or one that is free.
detail::NamespacePrefix& CFastInfosetWriter::BindAny(CXmlWriterContext& element,
                                                     std::string_view namespaceUri) {
  const std::string* const known = element.FindPrefix(namespaceUri);
  if (known == nullptr) m_lastPrefix = nullptr;
  const std::string& prefix = known != nullptr ? *known : element.AllocatePrefix(namespaceUri);
  if (auto* const bound = Bind(prefix, namespaceUri)) return *bound;
  // The prefix was declared anew when the element had used it.
  for (;;) {
    const std::string spare = NsIntToString(m_nextSparePrefix++);
    if (auto* const bound = Bind(spare, namespaceUri)) {
      element.SetNamespaceMapValue(namespaceUri, spare);
      return *bound;
    }
  }
}

/// Makes an element current; its name is still to be written.
CXmlWriter::CXmlWriterContext& CFastInfosetWriter::OpenElement(CTextRef localName,
                                                               CTextRef namespaceUri) {
  EndStart();
  m_output->encoder.EndStart();
  if (CXmlWriterContext* const parent = Current()) {
    ++parent->m_childCount;
  } else if (WasElementOpened()) {
    ThrowSecondRootElement();
  }
  m_output->prefixes.Enter();
  return PushContext(localName, namespaceUri);
}

void CFastInfosetWriter::StartElement(CXmlWriterContext& element) {
  const bool isLikeTheLast = m_lastPrefix != nullptr && m_lastScope == element.m_scope &&
                             m_lastPrefix->Namespace() == element.m_namespaceUri;
  if (isLikeTheLast) {
    m_output->prefixes.Use(*m_lastPrefix);
  } else {
    m_lastPrefix = &BindForElement(element);
    m_lastScope = element.m_scope;
  }
  const bool hasNamespace = !element.m_namespaceUri.empty();
  m_output->encoder.StartElement({element.m_name, hasNamespace ? m_lastPrefix : nullptr});
}

detail::NamespacePrefix& CFastInfosetWriter::BindForElement(CXmlWriterContext& element) {
  const std::string& namespaceUri = element.m_namespaceUri;
  const bool isUnprefixed = namespaceUri.empty() || namespaceUri == element.GetDefaultNamespace();
  if (isUnprefixed) {
    if (auto* const bound = Bind("", namespaceUri)) return *bound;
  }
  return BindAny(element, namespaceUri);
}

/// What follows is content.
void CFastInfosetWriter::EndStart() {
  if (CXmlWriterContext* const element = Current()) element->m_isStartTagOpen = false;
}

void CFastInfosetWriter::WriteStartElement(CTextRef localName, CTextRef namespaceUri) {
  CXmlWriterContext& element = OpenElement(localName, namespaceUri);
  if (element.m_depth == 0) {
    // A default namespace would take a root in with it that has none.
    const std::string& byDefault = RootDefaultNamespace();
    if (!namespaceUri.empty() && !byDefault.empty()) Bind("", byDefault);
    for (const auto& [uri, prefix] : RootNamespaceMap()) {
      Bind(prefix, uri);
    }
  }
  StartElement(element);
}

void CFastInfosetWriter::WriteEndElement() {
  const CXmlWriterContext* const element = Current();
  if (element == nullptr) return;
  m_output->encoder.EndElement();
  if (m_output->prefixes.Leave(element->m_depth)) m_lastPrefix = nullptr;
  PopContext();
}

void CFastInfosetWriter::WriteString(CTextRef text, ItemType type, bool isDefault) {
  if (Current() == nullptr || text.empty() || text.front() == '\0') return;
  if (isDefault && !m_writeDefaultElementValues) return;
  EndStart();
  if (StartsWith(text, kCDataStart)) {
    const std::string_view whole = text.substr(0, text.find('\0'));
    if (EndsWith(whole, kCDataEnd)) return WriteCDataSections(whole);
  }
  m_output->encoder.AddText(text, type);
}

/// @param text  begins and ends as a section does; may hold several, with text between them.
void CFastInfosetWriter::WriteCDataSections(std::string_view text) {
  while (!text.empty()) {
    const std::size_t start = text.find(kCDataStart);
    if (start != 0) m_output->encoder.AddText(text.substr(0, start), ItemType::string);
    if (start == std::string_view::npos) return;
    text.remove_prefix(start + kCDataStart.size());
    const std::size_t end = text.find(kCDataEnd);
    m_output->encoder.AddCData(text.substr(0, end));
    text.remove_prefix(end + kCDataEnd.size());
  }
}

CXmlWriter::CXmlWriterContext& CFastInfosetWriter::ContextOfOpenStart() const {
  if (Current() == nullptr || !Current()->m_isStartTagOpen) ThrowAttributeAfterContent();
  return *Current();
}

void CFastInfosetWriter::WriteAttributeString(CTextRef localName, CTextRef namespaceUri,
                                              CTextRef value, ItemType type) {
  CXmlWriterContext& element = ContextOfOpenStart();
  const detail::NamespacePrefix* const prefix =
      namespaceUri.empty() ? nullptr : &BindAny(element, namespaceUri);
  m_output->encoder.AddAttribute({localName, prefix}, value, type);
}

void CFastInfosetWriter::WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName,
                                            ItemType /*type*/) {
  // The value names a type, whatever the values of that type are.
  CXmlWriterContext& element = ContextOfOpenStart();
  const bool isUnprefixed =
      typeNamespaceUri.empty() ||
      (typeNamespaceUri == element.GetDefaultNamespace() && Bind("", typeNamespaceUri) != nullptr);
  if (isUnprefixed) {
    return WriteAttributeString("type", kSchemaInstance, typeName, ItemType::string);
  }
  std::string value = BindAny(element, typeNamespaceUri).text;
  value += ':';
  value += typeName;
  WriteAttributeString("type", kSchemaInstance, value, ItemType::string);
}

void CFastInfosetWriter::WriteAttributeNil() {
  // Text also where booleans are encoded: all readers understand that.
  WriteAttributeString("nil", kSchemaInstance, "true", ItemType::string);
}

void CFastInfosetWriter::WriteComment(CTextRef text) {
  EndStart();
  m_output->encoder.AddComment(text);
}

void CFastInfosetWriter::WritePI(CTextRef instruction) {
  constexpr std::string_view kStart = "<?";
  constexpr std::string_view kEnd = "?>";
  const std::string_view text = instruction.substr(0, instruction.find('\0'));
  const bool isComplete = text.size() >= kStart.size() + kEnd.size() && StartsWith(text, kStart) &&
                          EndsWith(text, kEnd);
  if (!isComplete) ThrowInvalidInstruction(text);
  std::string_view content = text.substr(2, text.size() - kStart.size() - kEnd.size());
  const std::string_view target = content.substr(0, content.find_first_of(kWhiteSpace));
  if (target.empty()) ThrowInvalidInstruction(text);
  if (target == "xml") return;
  content.remove_prefix(target.size());
  content.remove_prefix(std::min(content.size(), content.find_first_not_of(kWhiteSpace)));
  EndStart();
  m_output->encoder.AddInstruction(target, content);
}

}  // namespace ZuXmlLib16
