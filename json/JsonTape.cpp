#include "json/JsonTape.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "ZuXmlLib16/Encoder.h"
#include "json/XmlName.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::string_view kText = "#text";
constexpr std::string_view kXmlns = "@xmlns";

bool IsForbidden(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 && character != '\t' && character != '\n' && character != '\r';
}

bool IsPlain(char character) {
  return static_cast<unsigned char>(character) < 0x80 && !IsForbidden(character);
}

/// Whether a text is ASCII that XML 1.0 allows.
bool IsPlain(std::string_view text) {
  std::size_t i = 0;
  for (; i + 16 <= text.size(); i += 16) {
    // As signed bytes those that are not ASCII are below the blank, too.
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + i));
    if (_mm_movemask_epi8(_mm_cmpgt_epi8(block, _mm_set1_epi8(0x1F))) != 0xFFFF) break;
  }
  return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(),
                     [](char character) { return IsPlain(character); });
}

/// Replaces U+FFFE and U+FFFF in valid UTF-8 by "?".
void ReplaceNoncharacters(std::string& text, std::size_t start) {
  constexpr std::string_view kLead = "\xEF\xBF";
  std::size_t out = start;
  std::size_t copied = start;
  for (std::size_t at = start; (at = text.find(kLead, at)) != std::string::npos; at += 3) {
    if (text[at + 2] != '\xBE' && text[at + 2] != '\xBF') continue;
    std::memmove(&text[out], &text[copied], at - copied);
    out += at - copied;
    text[out++] = '?';
    copied = at + 3;
  }
  if (copied == start) return;
  std::memmove(&text[out], &text[copied], text.size() - copied);
  text.resize(out + text.size() - copied);
}

/// The prefix that a name declares, null for none; "" is the default namespace.
std::optional<std::string_view> DeclaredPrefix(std::string_view written) {
  if (written.substr(0, kXmlns.size()) != kXmlns) return std::nullopt;
  const std::string_view rest = written.substr(kXmlns.size());
  if (rest.empty()) return rest;
  const bool isPrefix = rest.size() > 1 && rest.rfind(':') == 0;
  return isPrefix ? std::optional(rest.substr(1)) : std::nullopt;
}

}  // namespace

JsonTape::JsonTape(bool hasNamespaces)
    : IJsonReaderHandler("JsonTape"),
      m_hasNamespaces(hasNamespaces),
      m_isLocalUtf8(CEncoder::ASCII_ONLY || LocaleIsUtf8()) {}

JsonTape::~JsonTape() = default;

std::string_view JsonTape::LocalName(const Item& item) const {
  const std::size_t before = item.prefixLength > 0 ? item.prefixLength + 1 : 0;
  return Text(item.name + before, item.nameLength - before);
}

std::string_view JsonTape::NameAsWritten(const Item& item) const {
  return Text(item.name - item.writtenNameOffset,
              item.writtenNameOffset + (item.isNameChanged ? 0 : item.nameLength));
}

void JsonTape::ReadStartDocument() {
  m_items.clear();
  m_open.clear();
  m_text.clear();
  m_isNamed = false;
}

bool JsonTape::ReadEndDocument() {
  while (!m_open.empty()) {
    Close();
  }
  return true;
}

void JsonTape::ReadName(const std::string& name) {
  m_named = Item();
  m_isNamed = true;
  m_named.name = m_text.size();
  AppendText(name);
  const std::string_view written = Text(m_named.name, m_text.size());
  if (written.empty() || written == kText) {
    m_named.role = Role::Text;
    m_named.nameLength = written.size();
  } else if (written.front() != '@') {
    SetXmlName(written);
  } else if (const auto prefix = DeclaredPrefix(written); prefix && m_hasNamespaces) {
    m_named.role = Role::Declaration;
    SetXmlName(*prefix);
  } else {
    m_named.role = Role::Attribute;
    SetXmlName(written.substr(1));
  }
}

/// Makes a part of the written name, up to its end, the name of the item: as it is or, behind it,
/// as an XML name.
void JsonTape::SetXmlName(std::string_view part) {
  const std::size_t written = m_named.name;
  std::size_t start = m_text.size() - part.size();
  std::size_t prefixLength = 0;
  m_named.isNameChanged = !part.empty() && !IsPlainXmlName(part, prefixLength);
  if (m_named.isNameChanged) {
    start = m_text.size();
    prefixLength = AppendXmlName(m_text, std::string(part));
  }
  m_named.name = start;
  m_named.nameLength = m_text.size() - start;
  m_named.prefixLength = m_hasNamespaces ? prefixLength : 0;
  m_named.writtenNameOffset = start - written;
}

JsonTape::Item& JsonTape::Add(Kind kind) {
  Item& item = m_items.emplace_back();
  if (m_isNamed) {
    item = m_named;
    m_isNamed = false;
  } else {
    item.name = m_text.size();
  }
  item.kind = kind;
  item.end = m_items.size();
  if (item.role == Role::Element || m_open.empty()) return item;
  Item& object = m_items[m_open.back()];
  if (item.role == Role::Text) {
    object.hasNullText = object.hasNullText || kind == Kind::Null;
  } else {
    ++object.size;
  }
  return item;
}

void JsonTape::AddScalar(std::string_view text) {
  Item& item = Add(Kind::Scalar);
  const std::size_t start = m_text.size();
  AppendText(text);
  item.size = m_text.size() - start;
}

void JsonTape::Open(Kind kind) {
  Add(kind);
  m_open.push_back(m_items.size() - 1);
}

void JsonTape::Close() {
  if (m_open.empty()) return;
  m_items[m_open.back()].end = m_items.size();
  m_open.pop_back();
  m_isNamed = false;
}

void JsonTape::AppendText(std::string_view local) {
  if (IsPlain(local)) {
    m_text.append(local);
    return;
  }
  const std::size_t start = m_text.size();
  std::string allowed(local);
  std::replace_if(allowed.begin(), allowed.end(), IsForbidden, '?');
  if (m_isLocalUtf8) {
    m_text.append(allowed);
    RepairUtf8(&m_text[start], m_text.size() - start);
  } else {
    const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(allowed.c_str());
    m_text.append(reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength());
  }
  ReplaceNoncharacters(m_text, start);
}

}  // namespace ZuXmlLib16::detail
