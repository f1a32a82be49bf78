#include "json/JsonTape.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>

#include "ZuXmlLib16/Encoder.h"
#include "json/XmlName.h"
#include "xml/CharacterSet.h"
#include "xml/StreamPut.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::string_view kText = "#text";
constexpr std::string_view kXmlns = "@xmlns";

bool IsForbidden(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 && character != '\t' && character != '\n' && character != '\r';
}

/// Whether there is a byte of control characters or above ASCII among those of an integer.
template <class Integer>
bool HasSpecial(const char* text) {
  constexpr Integer kOnes = static_cast<Integer>(~Integer{0}) / 0xFF;
  Integer bytes = 0;
  std::memcpy(&bytes, text, sizeof(bytes));
  // A byte below the blank borrows from the next: what that one shows does not matter any more.
  return ((bytes | (bytes - kOnes * 0x20)) & kOnes * 0x80) != 0;
}

/// Whether a text is printing ASCII throughout.
bool IsPlain(std::string_view text) {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  const std::size_t size = text.size();
  if (size < kWord / 2) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' '; });
  }
  if (size < kWord) {  // two pieces that overlap
    return !HasSpecial<std::uint32_t>(text.data()) &&
           !HasSpecial<std::uint32_t>(text.data() + size - kWord / 2);
  }
  for (std::size_t i = 0; i + kWord < size; i += kWord) {
    if (HasSpecial<std::uint64_t>(text.data() + i)) return false;
  }
  return !HasSpecial<std::uint64_t>(text.data() + size - kWord);
}

/// Replaces U+FFFE and U+FFFF in valid UTF-8 by "?".
void ReplaceNoncharacters(std::string& text) {
  constexpr std::string_view kLead = "\xEF\xBF";
  std::size_t out = 0;
  std::size_t copied = 0;
  for (std::size_t at = 0; (at = text.find(kLead, at)) != std::string::npos; at += 3) {
    if (text[at + 2] != '\xBE' && text[at + 2] != '\xBF') continue;
    std::memmove(&text[out], &text[copied], at - copied);
    out += at - copied;
    text[out++] = '?';
    copied = at + 3;
  }
  if (copied == 0) return;
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

void JsonTape::ReadStartDocument() {
  m_blocks.clear();
  m_count = 0;
  m_open.clear();
  m_isNamed = false;
  m_memory.Clear();
}

bool JsonTape::ReadEndDocument() {
  while (!m_open.empty()) {
    Close();
  }
  return true;
}

void JsonTape::ReadName(const std::string& name) {
  const std::string_view written = Store(name);
  m_named = Item();
  m_isNamed = true;
  if (written.empty() || written == kText) {
    m_named.role = Role::Text;
    m_named.name = written.data();
    m_named.nameLength = written.size();
  } else if (written.front() != '@') {
    SetXmlName(written, 0);
  } else if (const auto prefix = DeclaredPrefix(written); prefix && m_hasNamespaces) {
    m_named.role = Role::Declaration;
    SetXmlName(written, written.size() - prefix->size());
  } else {
    m_named.role = Role::Attribute;
    SetXmlName(written, 1);
  }
}

/// Makes the written name from offset on the name of the item: as it is or, behind it, as an XML
/// name.
void JsonTape::SetXmlName(std::string_view written, std::size_t offset) {
  const std::string_view part = written.substr(offset);
  std::size_t prefixLength = 0;
  m_named.isNameChanged = !part.empty() && !IsPlainXmlName(part, prefixLength);
  if (m_named.isNameChanged) {
    std::string both(written);
    prefixLength = AppendXmlName(both, part);
    offset = written.size();
    written = Copy(both);
  }
  m_named.name = written.data() + offset;
  m_named.nameLength = written.size() - offset;
  m_named.prefixLength = m_hasNamespaces ? prefixLength : 0;
  m_named.nameOffset = offset;
}

JsonTape::Item& JsonTape::Add(Kind kind) {
  if (m_count % kBlockItems == 0) {
    m_blocks.push_back(static_cast<Item*>(m_memory.Allocate(kBlockItems * sizeof(Item))));
  }
  if (!m_isNamed) m_named = Item();
  m_isNamed = false;
  Item& item = *new (m_blocks.back() + m_count % kBlockItems) Item(m_named);
  ++m_count;
  item.kind = kind;
  item.end = m_count;
  if (item.role == Role::Element || m_open.empty()) return item;
  Item& object = *m_open.back();
  if (item.role == Role::Text) {
    object.hasNullText = object.hasNullText || kind == Kind::Null;
  } else {
    ++object.size;
  }
  return item;
}

void JsonTape::AddScalar(std::string_view text) {
  const std::string_view value = Store(text);
  Item& item = Add(Kind::Scalar);
  item.value = value.data();
  item.size = value.size();
}

void JsonTape::Open(Kind kind) {
  m_open.push_back(&Add(kind));
}

void JsonTape::Close() {
  if (m_open.empty()) return;
  m_open.back()->end = m_count;
  m_open.pop_back();
  m_isNamed = false;
}

std::string_view JsonTape::Store(std::string_view local) {
  return IsPlain(local) ? Copy(local) : Copy(Repaired(local));
}

std::string_view JsonTape::Copy(std::string_view text) {
  if (text.empty()) return "";
  char* const copy = static_cast<char*>(m_memory.Allocate(text.size()));
  CopyText(copy, text);
  return {copy, text.size()};
}

std::string JsonTape::Repaired(std::string_view local) const {
  std::string text(local);
  std::replace_if(text.begin(), text.end(), IsForbidden, '?');
  if (m_isLocalUtf8) {
    RepairUtf8(text.data(), text.size());
  } else {
    const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(text.c_str());
    text.assign(reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength());
  }
  ReplaceNoncharacters(text);
  return text;
}

}  // namespace ZuXmlLib16::detail
