#include "json/JsonMapping.h"

#include <algorithm>
#include <functional>

#include "ZuXmlLib16/SerializationContext.h"
#include "core/Errors.h"
#include "core/LocalXml.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlnsNamespace = "http://www.w3.org/2000/xmlns/";
constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

std::string LocalText(std::string_view utf8) {
  std::string local;
  AppendUtf8AsLocal(local, utf8.data(), utf8.size());
  return local;
}

/// Namespaces in XML 1.0, section 3; and the bar, which expat reserves for itself.
bool IsDeclarable(std::string_view prefix, std::string_view namespaceUri) {
  return prefix != "xmlns" && namespaceUri != kXmlnsNamespace &&
         (prefix == "xml") == (namespaceUri == kXmlNamespace) &&
         (prefix.empty() || !namespaceUri.empty()) &&
         namespaceUri.find('|') == std::string_view::npos;
}

}  // namespace

JsonMapping::JsonMapping(const JsonTape& tape, const CSerializationContext& context, XmlSink& sink)
    : m_tape(tape),
      m_sink(sink),
      m_hasNamespaces(context.GetSchemaType() != SchemaType::NoNamespaces),
      m_scopes(1) {
  for (const auto& [namespaceUri, alias] : context.GetNamespaceAliases()) {
    m_aliases.emplace(LocalXmlAsUtf8(alias), LocalXmlAsUtf8(namespaceUri));
  }
}

void JsonMapping::Convert() {
  m_frames.push_back({kNone, kNone, 0, m_tape.Count(), false});
  while (!m_frames.empty()) {
    Frame& frame = m_frames.back();
    if (frame.next == frame.end) {
      Leave();
      continue;
    }
    m_item = frame.next;
    frame.next = m_tape[m_item].end;
    Visit(frame.container);
  }
  if (!m_hasRoot) ThrowJsonRootMissing("");
}

void JsonMapping::Visit(std::size_t container) {
  if (container == kNone) {
    VisitTopLevel();
  } else if (m_tape[container].kind == JsonTape::Kind::Object) {
    VisitMember();
  } else if (m_tape[m_item].kind == JsonTape::Kind::Array) {
    ThrowJsonArrayWithoutName(Path());
  } else {
    StartElement(container);
  }
}

void JsonMapping::VisitTopLevel() {
  switch (m_tape[m_item].kind) {
    case JsonTape::Kind::Object:
      return Enter(kNone);
    case JsonTape::Kind::Array:
      ThrowJsonArrayWithoutName(Path());
    case JsonTape::Kind::Scalar:
    case JsonTape::Kind::Null:
      ThrowJsonNameEmpty(Path());
  }
}

void JsonMapping::VisitMember() {
  const JsonTape::Item& item = m_tape[m_item];
  switch (item.role) {
    case JsonTape::Role::Element:
      return item.kind == JsonTape::Kind::Array ? Enter(kNone) : StartElement(m_item);
    case JsonTape::Role::Text:
      return VisitText();
    case JsonTape::Role::Attribute:
    case JsonTape::Role::Declaration:  // of an element they were written with its start tag
      if (IsOutsideRoot()) {
        ThrowJsonMemberOutsideRoot(LocalText(JsonTape::NameAsWritten(item)), Path());
      }
  }
}

void JsonMapping::VisitText() {
  const JsonTape::Item& item = m_tape[m_item];
  const std::string name = LocalText(JsonTape::NameAsWritten(item));
  const bool isArray = item.kind == JsonTape::Kind::Array;
  if (isArray || item.kind == JsonTape::Kind::Object) {
    if (!name.empty()) ThrowJsonMemberHolds(name, isArray ? "an array" : "an object", Path());
    if (isArray) ThrowJsonArrayWithoutName(Path());
    ThrowJsonNameEmpty(Path());
  }
  if (IsOutsideRoot()) ThrowJsonMemberOutsideRoot(name, Path());
  if (item.size > 0) m_sink.AddText(JsonTape::Value(item));
}

void JsonMapping::Enter(std::size_t name) {
  m_frames.push_back({m_item, name, m_item + 1, m_tape[m_item].end, false});
}

void JsonMapping::Leave() {
  const Frame& frame = m_frames.back();
  if (frame.name != kNone) {
    const JsonTape::Item& name = m_tape[frame.name];
    m_sink.EndElement({JsonTape::Prefix(name), JsonTape::LocalName(name), {}});
    --m_openElements;
  }
  if (frame.hasScope) m_scopes.pop_back();
  m_frames.pop_back();
}

void JsonMapping::StartElement(std::size_t name) {
  if (IsOutsideRoot() && m_hasRoot) ThrowJsonSecondRoot(Path());
  m_hasRoot = true;
  m_declarations.clear();
  m_attributes.clear();
  m_attributeItems.clear();
  const std::size_t index = m_item;
  const JsonTape::Item& value = m_tape[index];
  const bool isObject = value.kind == JsonTape::Kind::Object;
  Enter(name);
  if (isObject && value.size > 0) CollectAttributes(index);
  m_item = index;
  const std::string_view prefix = JsonTape::Prefix(m_tape[name]);
  const std::string_view namespaceUri =
      prefix.empty() ? m_scopes.back().defaultNamespace : ResolvePrefix(prefix);
  if (value.kind == JsonTape::Kind::Null || (isObject && value.hasNullText)) AddNil();
  DropRepeatedAttributes();
  m_sink.StartElement({prefix, JsonTape::LocalName(m_tape[name]), namespaceUri}, m_declarations,
                      m_attributes);
  ++m_openElements;
  if (value.kind == JsonTape::Kind::Scalar && value.size > 0)
    m_sink.AddText(JsonTape::Value(value));
}

void JsonMapping::CollectAttributes(std::size_t object) {
  std::size_t left = m_tape[object].size;
  for (m_item = object + 1; left > 0; m_item = m_tape[m_item].end) {
    const JsonTape::Item& item = m_tape[m_item];
    if (item.role != JsonTape::Role::Attribute && item.role != JsonTape::Role::Declaration)
      continue;
    --left;
    CollectAttribute(item);
  }
  // A prefix may be declared behind the attributes that have it.
  ResolveAttributes();
}

void JsonMapping::CollectAttribute(const JsonTape::Item& item) {
  const std::string_view name = JsonTape::LocalName(item);
  const bool isAttribute = item.role == JsonTape::Role::Attribute;
  if (isAttribute && name.empty()) ThrowJsonNameEmpty(Path());
  switch (item.kind) {
    case JsonTape::Kind::Null:
      break;
    case JsonTape::Kind::Array:
      ThrowJsonMemberHolds(LocalText(JsonTape::NameAsWritten(item)), "an array", Path());
    case JsonTape::Kind::Object:
      ThrowJsonMemberHolds(LocalText(JsonTape::NameAsWritten(item)), "an object", Path());
    case JsonTape::Kind::Scalar:
      if (!isAttribute) return Declare(name, JsonTape::Value(item));
      m_attributes.push_back({{JsonTape::Prefix(item), name, {}}, JsonTape::Value(item)});
      m_attributeItems.push_back(m_item);
  }
}

void JsonMapping::ResolveAttributes() {
  for (std::size_t i = 0; i < m_attributes.size(); ++i) {
    XmlQName& name = m_attributes[i].name;
    m_item = m_attributeItems[i];
    if (!name.prefix.empty()) name.namespaceUri = ResolvePrefix(name.prefix);
  }
}

void JsonMapping::AddNil() {
  if (m_hasNamespaces) m_attributes.push_back({{NilPrefix(), "nil", kSchemaInstance}, "true"});
}

/// Of attributes of one name the last stays.
void JsonMapping::DropRepeatedAttributes() {
  const std::size_t count = m_attributes.size();
  if (count < 2) return;
  m_attributeOrder.clear();
  for (std::size_t i = 0; i < count; ++i) {
    const XmlQName& name = m_attributes[i].name;
    const std::hash<std::string_view> hash;
    m_attributeOrder.push_back({hash(name.localName) ^ name.namespaceUri.size(), i});
  }
  const auto compare = [this](const HashedAttribute& a, const HashedAttribute& b) {
    if (a.hash != b.hash) return a.hash < b.hash ? -1 : 1;
    const XmlQName& left = m_attributes[a.index].name;
    const XmlQName& right = m_attributes[b.index].name;
    const int order = left.localName.compare(right.localName);
    return order != 0 ? order : left.namespaceUri.compare(right.namespaceUri);
  };
  std::sort(m_attributeOrder.begin(), m_attributeOrder.end(),
            [&](const HashedAttribute& a, const HashedAttribute& b) {
              const int order = compare(a, b);
              return order != 0 ? order < 0 : a.index < b.index;
            });
  bool isAnyRepeated = false;
  for (std::size_t i = 0; i + 1 < count; ++i) {
    if (compare(m_attributeOrder[i], m_attributeOrder[i + 1]) != 0) continue;
    m_attributes[m_attributeOrder[i].index].name.localName = {};  // to be dropped
    isAnyRepeated = true;
  }
  if (!isAnyRepeated) return;
  const auto isDropped = [](const XmlAttributeEvent& attribute) {
    return attribute.name.localName.empty();
  };
  m_attributes.erase(std::remove_if(m_attributes.begin(), m_attributes.end(), isDropped),
                     m_attributes.end());
}

std::string_view JsonMapping::ResolvePrefix(std::string_view prefix) {
  if (const auto* const entry = m_scopes.back().prefixes.Find(prefix)) {
    return entry->second.namespaceUri;
  }
  if (prefix == "xml") return kXmlNamespace;
  const auto alias = m_aliases.find(prefix);
  std::string_view namespaceUri = kSchemaInstance;
  if (alias != m_aliases.end()) {
    namespaceUri = alias->second;
  } else if (prefix != "xsi") {
    ThrowJsonPrefixUndeclared(LocalText(prefix), Path());
  }
  Declare(prefix, namespaceUri);
  return namespaceUri;
}

void JsonMapping::Declare(std::string_view prefix, std::string_view namespaceUri) {
  if (!IsDeclarable(prefix, namespaceUri)) {
    ThrowJsonPrefixUnusable(LocalText(prefix), LocalText(namespaceUri), Path());
  }
  if (prefix == "xml") return;  // is there without
  Scope& scope = OwnScope();
  const auto* const known = scope.prefixes.Find(prefix);
  std::size_t index = m_declarations.size();
  if (known != nullptr && known->second.scope == m_scopes.size()) {
    index = known->second.declaration;
    m_declarations[index].namespaceUri = namespaceUri;
  } else {
    m_declarations.push_back({prefix, namespaceUri});
  }
  scope.prefixes = scope.prefixes.With(prefix, {namespaceUri, m_scopes.size(), index});
  if (prefix.empty()) scope.defaultNamespace = namespaceUri;
}

JsonMapping::Scope& JsonMapping::OwnScope() {
  if (!m_frames.back().hasScope) {
    SkipNilCandidates(m_scopes.back());  // once for all that are inside of it
    m_scopes.push_back(Scope(m_scopes.back()));
    m_frames.back().hasScope = true;
  }
  return m_scopes.back();
}

std::string_view JsonMapping::NilPrefix() {
  Scope& scope = m_scopes.back();
  const bool isDeclared = SkipNilCandidates(scope) != nullptr;
  const std::string_view prefix = NilCandidate(scope.nilCandidate);
  if (!isDeclared) Declare(prefix, kSchemaInstance);
  return prefix;
}

/// @return the declaration of the candidate, null when it is free.
const JsonMapping::Scope::Entry* JsonMapping::SkipNilCandidates(Scope& scope) {
  for (;; ++scope.nilCandidate) {
    const auto* const entry = scope.prefixes.Find(NilCandidate(scope.nilCandidate));
    if (entry == nullptr) return nullptr;
    if (entry->second.namespaceUri == kSchemaInstance) return &entry->second;
  }
}

std::string_view JsonMapping::NilCandidate(std::size_t index) {
  while (m_nilCandidates.size() <= index) {
    const std::size_t next = m_nilCandidates.size();
    m_nilCandidates.push_back(next == 0 ? "xsi" : "xsi" + std::to_string(next));
  }
  return m_nilCandidates[index];
}

std::string JsonMapping::Path() const {
  std::string path;
  for (std::size_t i = 0; i < m_frames.size(); ++i) {
    const std::size_t container = m_frames[i].container;
    if (container == kNone) continue;
    const std::size_t inner = i + 1 < m_frames.size() ? m_frames[i + 1].container : m_item;
    if (inner == container) break;  // the element itself
    if (m_tape[container].kind == JsonTape::Kind::Object) {
      path += '/' + LocalText(JsonTape::NameAsWritten(m_tape[inner]));
      continue;
    }
    std::size_t position = 1;
    for (std::size_t item = container + 1; item != inner; item = m_tape[item].end) {
      ++position;
    }
    path += '[' + std::to_string(position) + ']';
  }
  return path;
}

}  // namespace ZuXmlLib16::detail
