#include "ZuXmlLib16/XmlTextWriter.h"

#include <emmintrin.h>

#include <array>

#include "ZuXmlLib16/Streams.h"
#include "core/Errors.h"
#include "xml/PrefixScope.h"
#include "xml/StreamPut.h"

namespace ZuXmlLib16 {
namespace {

constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kCDataStart = "<![CDATA[";

/// The bytes that break a run of characters written as they are. NUL ends the text.
constexpr char kTextSpecials[] = {'&', '<', '>', '\r', '\n', '\0'};
constexpr char kAttributeSpecials[] = {'&', '<', '>', '\r', '\n', '\0', '"'};

template <std::size_t count>
constexpr std::array<bool, 256> TableOf(const char (&specials)[count]) {
  std::array<bool, 256> table{};
  for (const char special : specials) {
    table[static_cast<unsigned char>(special)] = true;
  }
  return table;
}
constexpr std::array<bool, 256> kIsTextSpecial = TableOf(kTextSpecials);
constexpr std::array<bool, 256> kIsAttributeSpecial = TableOf(kAttributeSpecials);

/// Length of the part of text before the first of the specials.
template <std::size_t count>
inline std::size_t RunLength(const char* text, std::size_t length, const char (&specials)[count],
                             const std::array<bool, 256>& isSpecial) {
  std::size_t i = 0;
  for (; i + 16 <= length; i += 16) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    __m128i found = _mm_setzero_si128();
    for (const char special : specials) {
      found = _mm_or_si128(found, _mm_cmpeq_epi8(block, _mm_set1_epi8(special)));
    }
    const int mask = _mm_movemask_epi8(found);
    if (mask != 0) return i + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(mask)));
  }
  while (i < length && !isSpecial[static_cast<unsigned char>(text[i])]) {
    ++i;
  }
  return i;
}

}  // namespace

CXmlTextWriter::CXmlTextWriter(CTextStream& stream)
    : TextWriter("CXmlTextWriter", false, true, stream) {}

CXmlTextWriter::~CXmlTextWriter() = default;

template <class... Parts>
void CXmlTextWriter::Put(const Parts&... parts) {
  detail::PutTexts(Stream(), parts...);
}

void CXmlTextWriter::PadAndAppend(std::string_view text, bool inAttribute) {
  const char* next = text.data();
  std::size_t left = text.size();
  for (;;) {
    const std::size_t run = inAttribute
                                ? RunLength(next, left, kAttributeSpecials, kIsAttributeSpecial)
                                : RunLength(next, left, kTextSpecials, kIsTextSpecial);
    Put(std::string_view(next, run));
    if (run == left || next[run] == '\0') return;
    switch (next[run]) {
      case '&':
        Put("&amp;");
        break;
      case '<':
        Put("&lt;");
        break;
      case '>':
        Put("&gt;");
        break;
      case '"':
        Put("&quot;");
        break;
      case '\n':
        Put(inAttribute ? "&#xA;" : Eol());
        break;
      default:  // a carriage return is dropped
        break;
    }
    next += run + 1;
    left -= run + 1;
  }
}

CXmlWriter::CXmlWriterContext& CXmlTextWriter::ContextOfOpenTag() const {
  if (Current() == nullptr || !Current()->m_isStartTagOpen) ThrowAttributeAfterContent();
  return *Current();
}

void CXmlTextWriter::CloseParentElm() {
  CXmlWriterContext* const parent = Current();
  if (parent == nullptr) return;
  ++parent->m_childCount;
  if (!parent->m_isStartTagOpen) return;
  parent->m_isStartTagOpen = false;
  Put(">");
  PutEolWhenFormatting();
}

void CXmlTextWriter::WriteStartElement(CTextRef localName, CTextRef namespaceUri) {
  CloseParentElm();
  CXmlWriterContext& element = PushContext(localName, namespaceUri);
  try {
    PutStartTag(element);
    FlushWhenFull();
  } catch (...) {
    PopContext();  // an element that was not written is not open
    throw;
  }
}

void CXmlTextWriter::PutStartTag(CXmlWriterContext& element) {
  PutIndentWhenFormatting(element.m_depth);
  if (!FindPrefix(element)) {
    element.m_prefix = element.AllocatePrefix(element.m_namespaceUri);
    element.m_prefixStamp = 0;
    Put("<", element.m_prefix, ":", element.m_name, " xmlns:", element.m_prefix, "=\"");
    PadAndAppend(element.m_namespaceUri, true);
    Put("\"");
  } else if (element.m_prefix.empty()) {
    Put("<", element.m_name);
  } else {
    Put("<", element.m_prefix, ":", element.m_name);
  }
  if (element.m_depth == 0) PutRootDeclarations();
}

/// Finds the prefix that the element's namespace has in its scope; none when it is the default one.
bool CXmlTextWriter::FindPrefix(CXmlWriterContext& element) {
  const std::uint64_t stamp = element.m_scope->Stamp();
  if (element.m_prefixStamp == stamp && stamp != 0) return true;
  if (element.m_namespaceUri.empty() || element.m_namespaceUri == element.GetDefaultNamespace()) {
    element.m_prefix.clear();
  } else if (const std::string* const prefix = element.FindPrefix(element.m_namespaceUri)) {
    element.m_prefix = *prefix;
  } else {
    return false;
  }
  element.m_prefixStamp = stamp;
  return true;
}

void CXmlTextWriter::PutRootDeclarations() {
  if (!RootDefaultNamespace().empty()) {
    Put(" xmlns=\"");
    PadAndAppend(RootDefaultNamespace(), true);
    Put("\"");
  }
  for (const auto& [namespaceUri, prefix] : RootNamespaceMap()) {
    if (namespaceUri == XML_NAMESPACE) continue;
    Put(" xmlns:", prefix, "=\"");
    PadAndAppend(namespaceUri, true);
    Put("\"");
  }
}

void CXmlTextWriter::WriteString(CTextRef text, ItemType /*type*/, bool isDefault) {
  CXmlWriterContext* const element = Current();
  if (element == nullptr || text.empty() || text.front() == '\0') return;
  if (isDefault && !m_writeDefaultElementValues) return;
  if (element->m_isStartTagOpen) {
    element->m_isStartTagOpen = false;
    Stream().Append('>');
  }
  if (text.substr(0, kCDataStart.size()) == kCDataStart) {
    Put(text.substr(0, text.find('\0')));
  } else {
    PadAndAppend(text, false);
  }
  FlushWhenFull();
}

void CXmlTextWriter::WriteEndElement() {
  CXmlWriterContext* const element = Current();
  if (element == nullptr) return;
  if (element->m_isStartTagOpen) {
    Put("/>");
  } else {
    if (element->m_childCount > 0) PutIndentWhenFormatting(element->m_depth);
    if (element->m_prefix.empty()) {
      Put("</", element->m_name, ">");
    } else {
      Put("</", element->m_prefix, ":", element->m_name, ">");
    }
  }
  PutEolWhenFormatting();
  FlushWhenFull();
  PopContext();
}

const std::string& CXmlTextWriter::AttributePrefix(CXmlWriterContext& element,
                                                   std::string_view namespaceUri,
                                                   std::string_view before) {
  if (const std::string* const prefix = element.FindPrefix(namespaceUri)) return *prefix;
  const std::string& prefix = element.AllocatePrefix(namespaceUri);
  Put(before, "xmlns:", prefix, "=\"");
  PadAndAppend(namespaceUri, true);
  Put("\" ");
  return prefix;
}

void CXmlTextWriter::WriteAttributeString(CTextRef localName, CTextRef namespaceUri, CTextRef value,
                                          ItemType /*type*/) {
  CXmlWriterContext& element = ContextOfOpenTag();
  Put(" ");
  if (!namespaceUri.empty()) Put(AttributePrefix(element, namespaceUri, ""), ":");
  Put(localName.substr(0, localName.find('\0')), "=\"");
  PadAndAppend(value, true);
  Put("\"");
  FlushWhenFull();
}

void CXmlTextWriter::WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName,
                                        ItemType type) {
  CXmlWriterContext& element = ContextOfOpenTag();
  if (typeNamespaceUri.empty() || typeNamespaceUri == element.GetDefaultNamespace()) {
    return WriteAttributeString("type", kSchemaInstance, typeName, type);
  }
  // A new declaration ends with a blank and the attribute begins with one: two in a row are meant.
  std::string value = AttributePrefix(element, typeNamespaceUri, " ");
  value += ':';
  value += typeName;
  WriteAttributeString("type", kSchemaInstance, value, type);
}

void CXmlTextWriter::WriteAttributeNil() {
  static_cast<void>(ContextOfOpenTag());
  WriteAttributeString("nil", kSchemaInstance, "true", ItemType::boolean);
}

void CXmlTextWriter::WriteStartDocument() {
  Put("<?xml version=\"1.0\"");
  switch (Stream().GetEncoding()) {
    case XmlEncoding::Utf8:
      Put(" encoding=\"UTF-8\"");
      break;
    case XmlEncoding::Utf16:
      Put(" encoding=\"UTF-16\"");
      break;
    default:
      break;
  }
  Put("?>", Eol());
  FlushWhenFull();
}

void CXmlTextWriter::WriteHeaderDirective(CTextRef text) {
  if (WasElementOpened()) ThrowDirectiveAfterElement();
  Stream().Append(std::string(text));
  Put(Eol());
  FlushWhenFull();
}

void CXmlTextWriter::WriteComment(CTextRef text) {
  Put("<!--");
  PadAndAppend(text, false);
  Put("-->", Eol());
  FlushWhenFull();
}

void CXmlTextWriter::WritePI(CTextRef instruction) {
  Stream().Append(std::string(instruction));
  Put(Eol(), Eol());
  FlushWhenFull();
}

void CXmlTextWriter::WriteInlineSchema(CTextRef schema) {
  Put(" ", Eol());
  Stream().Append(std::string(schema));
  Put(Eol());
  FlushWhenFull();
}

void CXmlTextWriter::WriteRawElement(CTextRef text) {
  Stream().Append(std::string(text));
  PutEolWhenFormatting();
}

}  // namespace ZuXmlLib16
