#include "ZuXmlLib16/JsonTextWriter.h"

#include <emmintrin.h>

#include "ZuXmlLib16/Streams.h"
#include "core/Errors.h"
#include "xml/StreamPut.h"

namespace ZuXmlLib16 {
namespace {

constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::size_t kFlushAbove = 4095;

std::string_view UpToNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

/// Whether values of the type are bare: the integer and real types, booleans, decimals, integers.
bool IsBareType(ItemType type) {
  constexpr std::uint32_t kBareTypes = 0x7001FF8;
  const auto index = static_cast<std::uint32_t>(type);
  return index < 27 && (kBareTypes >> index & 1) != 0;
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
    ++at;
  }
  return at;
}

/// Whether the text is a number of JSON (RFC 8259, section 6).
bool IsNumber(std::string_view text) {
  const std::size_t start = text.substr(0, 1) == "-" ? 1 : 0;
  std::size_t end = SkipDigits(text, start);
  if (end == start || (text[start] == '0' && end > start + 1)) return false;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = end + 1;
    end = SkipDigits(text, fraction);
    if (end == fraction) return false;
  }
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    end = SkipDigits(text, exponent);
    if (end == exponent) return false;
  }
  return end == text.size();
}

/// Whether a character breaks a run that is written as it is; quotes and backslashes only when
/// escaping is strict.
bool IsSpecial(char character, bool isStrict) {
  return static_cast<unsigned char>(character) < 0x20 ||
         (isStrict && (character == '"' || character == '\\'));
}

/// Finds the specials in blocks of 16 characters, one bit a character.
class SpecialFinder {
 public:
  // Without strict escaping quote and backslash look for what is found anyway.
  explicit SpecialFinder(bool isStrict)
      : m_quote(_mm_set1_epi8(isStrict ? '"' : '\0')),
        m_backslash(_mm_set1_epi8(isStrict ? '\\' : '\0')) {}

  unsigned Find(__m128i block) const {
    const __m128i isControl = _mm_cmpeq_epi8(_mm_min_epu8(block, m_lastControl), block);
    const __m128i isOther =
        _mm_or_si128(_mm_cmpeq_epi8(block, m_quote), _mm_cmpeq_epi8(block, m_backslash));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isControl, isOther)));
  }

 private:
  __m128i m_lastControl = _mm_set1_epi8(0x1F);
  __m128i m_quote;
  __m128i m_backslash;
};

__m128i LoadHalf(const char* text) {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
}

std::size_t RunLength(const char* text, std::size_t length, bool isStrict) {
  const SpecialFinder finder(isStrict);
  std::size_t i = 0;
  for (; i + 16 <= length; i += 16) {
    const unsigned found = finder.Find(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i)));
    if (found != 0) return i + static_cast<std::size_t>(__builtin_ctz(found));
  }
  const std::size_t left = length - i;
  if (left >= 8) {  // two halves that overlap
    const __m128i block = _mm_unpacklo_epi64(LoadHalf(text + i), LoadHalf(text + length - 8));
    if (finder.Find(block) == 0) return length;
  }
  while (i < length && !IsSpecial(text[i], isStrict)) {
    ++i;
  }
  return i;
}

/// The letter of a two-character escape, 0 when there is none.
char ShortEscape(char special) {
  switch (special) {
    case '"':
    case '\\':
      return special;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return '\0';
  }
}

}  // namespace

CJsonTextWriter::CJsonTextWriter(CTextStream& stream, const CJsonContext& settings)
    : CXmlWriter("CJsonTextWriter", true),
      m_mode(settings.GetSupportRoundtrip()),
      m_isStrict(settings.GetStrictEscaping()),
      m_stream(stream) {}

CJsonTextWriter::~CJsonTextWriter() = default;

void CJsonTextWriter::Open() {
  m_stream.Open();
}

void CJsonTextWriter::Close() {
  m_stream.Close();
  CXmlWriter::Close();
}

void CJsonTextWriter::SetEOLType(EOLType type) {
  switch (type) {
    case EOLType::CrLf:
      m_eol = "\r\n";
      break;
    case EOLType::Lf:
      m_eol = "\n";
      break;
    default:
      ThrowInvalidEolType();
  }
  m_eolType = type;
}

void CJsonTextWriter::SetIndentChars(const char* chars) {
  m_indentChars = CTextRef(chars);
  m_indent.clear();
}

template <class... Parts>
void CJsonTextWriter::Put(const Parts&... parts) {
  detail::PutTexts(m_stream, parts...);
}

void CJsonTextWriter::PutEolWhenFormatting() {
  if (m_format) Put(m_eol);
}

void CJsonTextWriter::PutIndent(std::uint64_t below) {
  if (!m_format) return;
  // Everything inside an open array stands one level further in.
  const std::uint64_t elements = Current() != nullptr ? Current()->GetDepth() + 1 : 0;
  const std::size_t size = (elements + m_openArrays + below) * m_indentChars.size();
  while (m_indent.size() < size) {
    m_indent += m_indentChars;
  }
  m_stream.Append(m_indent.data(), size);
}

void CJsonTextWriter::PutEscaped(std::string_view text, bool isStrict) {
  constexpr char kHexDigits[] = "0123456789ABCDEF";
  for (;;) {
    const std::size_t run = RunLength(text.data(), text.size(), isStrict);
    m_stream.Append(text.data(), run);
    if (run == text.size() || text[run] == '\0') return;
    const char special = text[run];
    text.remove_prefix(run + 1);
    const char letter = ShortEscape(special);
    if (letter == '\0') {
      const char escape[] = {
          '\\', 'u', '0', '0', special < 0x10 ? '0' : '1', kHexDigits[special & 0xF]};
      m_stream.Append(escape, sizeof(escape));
    } else if (isStrict) {
      m_stream.Append('\\');
      m_stream.Append(letter);
    } else if (special == '\n') {
      Put(m_eol);
    } else if (special != '\r') {  // dropped
      m_stream.Append(special);
    }
  }
}

void CJsonTextWriter::PutString(std::string_view text) {
  if (RunLength(text.data(), text.size(), m_isStrict) == text.size()) return Put("\"", text, "\"");
  Put("\"");
  PutEscaped(text, m_isStrict);
  Put("\"");
}

void CJsonTextWriter::PutValue(std::string_view text, ItemType type) {
  const bool isBare = IsBareType(type) && (text == "true" || text == "false" || IsNumber(text));
  if (isBare) {
    Put(text);
  } else {
    PutString(text);
  }
}

void CJsonTextWriter::PutName(const std::string* prefix, std::string_view name) {
  if (prefix != nullptr) {
    Put("\"", *prefix, ":", name, "\": ");
  } else {
    Put("\"", name, "\": ");
  }
}

template <class... Parts>
void CJsonTextWriter::PutMember(const Parts&... nameParts) {
  BeginMember(LevelForMember());
  PutIndent(1);
  Put("\"", nameParts..., "\": ");
}

void CJsonTextWriter::PutDeclaration(std::string_view prefix, std::string_view namespaceUri) {
  PutMember(prefix.empty() ? "@xmlns" : "@xmlns:", prefix);
  PutString(namespaceUri);
}

void CJsonTextWriter::FlushWhenFull() {
  if (m_stream.GetLength() > kFlushAbove) m_stream.Flush();
}

CJsonTextWriter::Level& CJsonTextWriter::LevelForMember() {
  if (Current() == nullptr) ThrowAttributeAfterContent();
  Level& level = m_levels[Current()->GetDepth()];
  if (level.hasValue) ThrowAttributeAfterContent();
  if (level.hasArray) CloseArray(level);
  return level;
}

void CJsonTextWriter::PushLevel(CTextRef localName, CTextRef namespaceUri) {
  const std::uint64_t depth = Current() != nullptr ? Current()->GetDepth() + 1 : 0;
  if (depth == m_levels.size()) m_levels.emplace_back();
  Level& level = m_levels[depth];
  level.isObjectOpen = level.hasValue = level.isNil = level.hasArray = false;
  PushContext(localName, namespaceUri);
}

void CJsonTextWriter::BeginMember(Level& level) {
  Put(level.isObjectOpen ? "," : "{");
  PutEolWhenFormatting();
  level.isObjectOpen = true;
}

void CJsonTextWriter::OpenArray(Level& level, std::string_view itemName,
                                std::string_view itemNamespace) {
  Put("[");
  level.hasArray = true;
  level.itemName = itemName;
  level.itemNamespace = itemNamespace;
  SetContextState(ContextState::CollectionOpen);
  ++m_openArrays;
  PutEolWhenFormatting();
  PutIndent(1);
}

void CJsonTextWriter::CloseArray(Level& level) {
  PutEolWhenFormatting();
  PutIndent(0);
  Put("]");
  --m_openArrays;
  level.hasArray = false;
  const ContextState state = Current()->GetState();
  const bool mayGoOn =
      state == ContextState::CollectionPending || state == ContextState::CollectionOpen;
  SetContextState(mayGoOn ? ContextState::CollectionPending : ContextState::Normal);
}

const std::string* CJsonTextWriter::ChildPrefix(std::string_view localName,
                                                std::string_view namespaceUri) const {
  if (m_mode != JsonRoundTrip::Full || namespaceUri.empty() ||
      namespaceUri == RootDefaultNamespace()) {
    return nullptr;
  }
  const std::string* const prefix = Current()->FindPrefix(namespaceUri);
  if (prefix == nullptr) ThrowUnknownNamespace(std::string(localName));
  return prefix;
}

void CJsonTextWriter::WriteStartElement(CTextRef localName, CTextRef namespaceUri) {
  if (Current() == nullptr) {
    StartRoot(UpToNul(localName), namespaceUri);
  } else {
    StartChild(UpToNul(localName), namespaceUri);
  }
  FlushWhenFull();
}

void CJsonTextWriter::StartRoot(CTextRef localName, CTextRef namespaceUri) {
  PutIndent(1);
  if (m_mode != JsonRoundTrip::Full) {
    PutName(nullptr, localName);
    PushLevel(localName, namespaceUri);
    return;
  }
  m_prefixes = RootNamespaceMap();
  const bool isBare = namespaceUri.empty() || namespaceUri == RootDefaultNamespace();
  const bool isAllocated = !isBare && FindRootPrefix(namespaceUri) == nullptr;
  // In the map before the root's scope copies it, so that attributes and children have it too.
  if (isAllocated) AddNamespace(GetUniquePrefix(m_prefixes), namespaceUri);
  const std::string* const prefix = isBare ? nullptr : FindRootPrefix(namespaceUri);
  PutName(prefix, localName);
  PushLevel(localName, namespaceUri);
  if (isAllocated) PutDeclaration(*prefix, namespaceUri);
  if (!RootDefaultNamespace().empty()) PutDeclaration("", RootDefaultNamespace());
  for (const auto& [uri, declaredPrefix] : m_prefixes) {
    if (uri != XML_NAMESPACE) PutDeclaration(declaredPrefix, uri);
  }
  if (isAllocated) m_prefixes.emplace(namespaceUri, *prefix);
}

void CJsonTextWriter::StartChild(CTextRef localName, CTextRef namespaceUri) {
  Level& parent = m_levels[Current()->GetDepth()];
  if (parent.hasValue) ThrowAttributeAfterContent();
  const bool isItem = parent.hasArray && Current()->GetState() == ContextState::CollectionOpen &&
                      parent.itemName == localName && parent.itemNamespace == namespaceUri;
  const std::string* const prefix = isItem ? nullptr : ChildPrefix(localName, namespaceUri);
  if (parent.hasArray && !isItem) CloseArray(parent);
  BeginMember(parent);
  PutIndent(1);
  if (!isItem) {
    PutName(prefix, localName);
    if (Current()->GetState() == ContextState::CollectionPending) {
      OpenArray(parent, localName, namespaceUri);
    }
  }
  PushLevel(localName, namespaceUri);
}

void CJsonTextWriter::WriteString(CTextRef text, ItemType type, bool /*isDefault*/) {
  if (Current() == nullptr) return;
  Level& level = LevelForMember();
  level.isNil = false;
  if (level.isObjectOpen) {
    PutMember(m_mode == JsonRoundTrip::Plain ? "" : "#text");
  } else {
    level.hasValue = true;
  }
  PutValue(text, type);
  FlushWhenFull();
}

void CJsonTextWriter::WriteEndElement() {
  if (Current() == nullptr) return;
  Level& level = m_levels[Current()->GetDepth()];
  if (level.hasArray) CloseArray(level);
  if (level.isObjectOpen) {
    if (level.isNil) {
      PutMember(m_mode == JsonRoundTrip::Plain ? "" : "#text");
      Put("null");
    }
    PutEolWhenFormatting();
    PutIndent(0);
    Put("}");
  } else if (!level.hasValue) {
    Put(level.isNil ? "null" : "{}");
  }
  FlushWhenFull();
  PopContext();
}

void CJsonTextWriter::WriteAttributeString(CTextRef localName, CTextRef namespaceUri,
                                           CTextRef value, ItemType type) {
  const std::string_view name = UpToNul(localName);
  if (m_mode == JsonRoundTrip::Plain) {
    PutMember(name);
  } else if (namespaceUri.empty() || m_mode == JsonRoundTrip::Marked) {
    PutMember("@", name);
  } else {
    const std::string* const prefix = FindRootPrefix(namespaceUri);
    if (prefix == nullptr) ThrowUnknownNamespace(std::string(name));
    PutMember("@", *prefix, ":", name);
  }
  PutValue(value, type);
  FlushWhenFull();
}

std::string CJsonTextWriter::DeclaredPrefix(std::string_view namespaceUri) {
  if (const std::string* const prefix = Current()->FindPrefix(namespaceUri)) return *prefix;
  // The same wherever it is declared: a prefix inside a value is looked up in the document.
  const auto [entry, isNew] = m_prefixes.try_emplace(std::string(namespaceUri));
  if (isNew) entry->second = GetUniquePrefix(m_prefixes);
  Current()->SetNamespaceMapValue(namespaceUri, entry->second);
  PutDeclaration(entry->second, namespaceUri);
  return entry->second;
}

void CJsonTextWriter::WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName,
                                         ItemType /*type*/) {
  LevelForMember();
  if (m_mode != JsonRoundTrip::Full) return;
  const std::string prefix = DeclaredPrefix(kSchemaInstance);
  std::string value;
  if (!typeNamespaceUri.empty() && typeNamespaceUri != RootDefaultNamespace()) {
    value = DeclaredPrefix(typeNamespaceUri) + ':';
  }
  value += UpToNul(typeName);
  PutMember("@", prefix, ":type");
  PutString(value);
  FlushWhenFull();
}

void CJsonTextWriter::WriteAttributeNil() {
  LevelForMember().isNil = true;
}

void CJsonTextWriter::WriteStartDocument() {
  Put("{");
  PutEolWhenFormatting();
  FlushWhenFull();
}

void CJsonTextWriter::WriteEndDocument() {
  PutEolWhenFormatting();
  Put("}");
  FlushWhenFull();
}

void CJsonTextWriter::WriteComment(CTextRef text) {
  Put("/* ");
  PutEscaped(text, false);
  Put(" */", m_eol);
  FlushWhenFull();
}

void CJsonTextWriter::WritePI(CTextRef /*instruction*/) {}

void CJsonTextWriter::WriteInlineSchema(CTextRef /*schema*/) {}

}  // namespace ZuXmlLib16
