#include "fastinfoset/DocumentEncoder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <memory>

#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/Streams.h"
#include "core/Errors.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "fastinfoset/Identification.h"
#include "fastinfoset/Names.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::string_view kNoComponents("\0", 1);
/// An initial vocabulary that is an external one.
constexpr std::string_view kExternalVocabulary("\x20\x10\0", 3);

// First octets of items.
constexpr unsigned int kWithAttributes = 0x40;
constexpr unsigned int kDeclarationsFollow = 0x38;
constexpr unsigned int kDeclaration = 0xCC;
constexpr unsigned int kHasPrefix = 2;
constexpr unsigned int kHasNamespace = 1;
constexpr unsigned int kLiteralElementName = 0x3C;
constexpr unsigned int kLiteralAttributeName = 0x78;
constexpr unsigned int kChunk = 0x80;
constexpr unsigned int kInstruction = 0xE1;
constexpr unsigned int kComment = 0xE2;
constexpr unsigned int kTerminator = 0xF0;
constexpr unsigned int kTwoTerminators = 0xFF;

// Strings that do not identify: bits 1 and 2 are before them in a chunk, nothing elsewhere.
constexpr unsigned int kIndex = 0x80;
constexpr unsigned int kEmptyString = 0xFF;
constexpr unsigned int kAddToTable = 0x40;
constexpr unsigned int kByAlgorithm = 0x30;
constexpr unsigned int kChunkIndex = 0x20;
constexpr unsigned int kAddChunkToTable = 0x10;
constexpr unsigned int kChunkByAlgorithm = 0x0C;

/// Whether a text can be written as it is: ASCII without carriage returns and NUL.
inline bool IsClean(std::string_view text) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  // High bits of bytes above 127, and of those from which subtracting borrows: zero, or a carriage
  // return turned into zero. Whatever else a borrow marks comes after such a byte.
  const auto unclean = [](std::uint64_t bytes) {
    const std::uint64_t returns = bytes ^ (kOnes * '\r');
    return (bytes | (bytes - kOnes) | (returns - kOnes)) & kHighBits;
  };
  const char* const start = text.data();
  const std::size_t size = text.size();
  std::uint64_t word = kOnes;
  if (size < sizeof word) {
    // The bytes in two pieces that overlap, or one by one.
    if (size >= 4) {
      std::memcpy(&word, start, 4);
      std::memcpy(reinterpret_cast<char*>(&word) + 4, start + size - 4, 4);
    } else {
      for (std::size_t i = 0; i < size; ++i) {
        reinterpret_cast<char*>(&word)[i] = start[i];
      }
    }
    return unclean(word) == 0;
  }
  for (std::size_t at = 0; at + sizeof word < size; at += sizeof word) {
    std::memcpy(&word, start + at, sizeof word);
    if (unclean(word) != 0) return false;
  }
  std::memcpy(&word, start + size - sizeof word, sizeof word);
  return unclean(word) == 0;
}

void AppendLocalAsUtf8(std::string& out, std::string_view text) {
  if (LocaleIsUtf8()) {
    const std::size_t start = out.size();
    out += text;
    RepairUtf8(&out[start], text.size());
  } else {
    const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(std::string(text).c_str());
    out.append(reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength());
  }
}

void MakeClean(std::string_view text, std::string& buffer) {
  buffer.clear();
  text = text.substr(0, text.find('\0'));
  while (!text.empty()) {
    const std::size_t run = text.find('\r');
    AppendLocalAsUtf8(buffer, text.substr(0, run));
    text.remove_prefix(run < text.size() ? run + 1 : text.size());
  }
}

/// The text in UTF-8 up to its first NUL, without carriage returns.
/// @param buffer  where it is made unless it is the given text itself.
inline std::string_view Clean(std::string_view text, std::string& buffer) {
  if (IsClean(text)) return text;
  MakeClean(text, buffer);
  return buffer;
}

/// Whether a text is a number of 32 bits.
bool IsInt(std::string_view text) {
  std::int32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  return last == end && error == std::errc();
}

using TypedValueMode = CFastInfosetContext::TypedValueMode;

/// How values of a type are encoded: by which algorithm, if any, and from which setting on.
struct Encoding {
  bool hasAlgorithm = false;
  EncodingAlgorithm algorithm = EncodingAlgorithm::Cdata;
  TypedValueMode from = TypedValueMode::All;
};

constexpr std::array<Encoding, 29> MakeEncodings() {
  std::array<Encoding, 29> encodings{};
  const auto set = [&](ItemType type, EncodingAlgorithm algorithm, TypedValueMode from) {
    encodings[static_cast<std::size_t>(type)] = Encoding{true, algorithm, from};
  };
  set(ItemType::hexBinary, EncodingAlgorithm::Hexadecimal, TypedValueMode::Binary);
  set(ItemType::base64Binary, EncodingAlgorithm::Base64, TypedValueMode::Binary);
  set(ItemType::i2, EncodingAlgorithm::Short, TypedValueMode::All);
  set(ItemType::i4, EncodingAlgorithm::Long, TypedValueMode::All);
  set(ItemType::i8, EncodingAlgorithm::Long, TypedValueMode::All);
  set(ItemType::r4, EncodingAlgorithm::Float, TypedValueMode::All);
  set(ItemType::r8, EncodingAlgorithm::Double, TypedValueMode::All);
  set(ItemType::boolean, EncodingAlgorithm::Boolean, TypedValueMode::All);
  return encodings;
}
constexpr auto kEncodings = MakeEncodings();  // by item type

void CheckLength(std::string_view octets) {
  if (octets.size() > kMaxOctetString) ThrowFastInfosetTextTooLong();
}

/// Puts a part of a name, or what else identifies something.
void PutLiteral(OctetBuffer& out, std::string_view text) {
  CheckLength(text);
  out.PutIdentifier(text);
}

}  // namespace

DocumentEncoder::DocumentEncoder(CBinaryStream& stream, const CFastInfosetContext& context)
    : m_stream(stream),
      m_context(context),
      m_elementNames{m_context.GetVocabulary().GetElementNamesTable(), {}, kLiteralElementName},
      m_attributeNames{
          m_context.GetVocabulary().GetAttributeNamesTable(), {}, kLiteralAttributeName},
      m_attributeValues{
          m_context.GetVocabulary().GetAttributeValuesTable(),
          context.GetIndexAttributeValues() ? context.GetMaxAttributeValueLength() : 0},
      m_chunks{m_context.GetVocabulary().GetCharacterChunksTable(),
               context.GetIndexElementValues() ? context.GetMaxElementValueLength() : 0} {}

void DocumentEncoder::StartDocument(std::string_view declaration) {
  m_out.Put(declaration);
  m_out.Put(kFastInfosetIdentification);
  const std::string_view uri = Clean(m_context.GetExternalVocabularyURI(), m_clean);
  if (uri.empty()) {
    m_out.Put(kNoComponents);
  } else {
    m_out.Put(kExternalVocabulary);
    PutLiteral(m_out, uri);
  }
}

void DocumentEncoder::EndDocument() {
  PutTerminator();
  StartItem();
  m_full.push_back(m_out.Take());
  std::size_t size = 0;
  for (const OctetBuffer& part : m_full) {
    size += part.GetSize();
  }
  std::unique_ptr<unsigned char[]> octets(new unsigned char[size]);
  unsigned char* next = octets.get();
  for (const OctetBuffer& part : m_full) {
    next = std::copy_n(part.GetData(), part.GetSize(), next);
  }
  m_full.clear();
  m_stream.Append(CBinaryData(octets.release(), size, true));
}

OctetBuffer& DocumentEncoder::StartItem() {
  EndStart();
  return PutPendingTerminator();
}

OctetBuffer& DocumentEncoder::PutPendingTerminator() {
  if (m_endsInTerminator) m_out.Put(kTerminator);
  m_endsInTerminator = false;
  return m_out;
}

void DocumentEncoder::PutTerminator() {
  if (m_endsInTerminator) m_out.Put(kTwoTerminators);
  m_endsInTerminator = !m_endsInTerminator;
}

void DocumentEncoder::TakeOutputWhenFull() {
  constexpr std::size_t kBlock = 65536;
  constexpr std::size_t kFull = kBlock - 4096;
  if (m_out.GetSize() <= kFull) return;
  m_full.push_back(m_out.Take());
  m_out.Reserve(kBlock);
}

void DocumentEncoder::PutIdentifier(OctetBuffer& out, std::string_view text, StringTable& table,
                                    unsigned int& index) {
  bool isNew = false;
  index = static_cast<unsigned int>(table.Add(text, isNew));
  if (index == 0 || isNew) {
    PutLiteral(out, text);
  } else {
    out.PutIdentifier(index);
  }
}

/// @return the index of the name; 0 when it had none and was put as a literal.
unsigned long DocumentEncoder::PutUnlessKnown(OctetBuffer& out, const DocumentName& name,
                                              Names& names) {
  if (const unsigned long predicted = names.predictor.Predict(name)) return predicted;
  StringTable& localNames = m_context.GetVocabulary().GetLocalNamesTable();
  const std::string_view localName = Clean(name.localName, m_localName);
  bool isNewPart = false;
  CFIVocabulary::CQNameParts parts;
  parts.localName = static_cast<unsigned int>(localNames.Add(localName, isNewPart));
  const bool hasNamespace = name.prefix != nullptr;
  const bool hasPrefix = hasNamespace && !name.prefix->text.empty();
  if (hasNamespace) parts.namespaceName = name.prefix->bound->index;
  if (hasPrefix) parts.prefix = name.prefix->index;
  // A part that its table had no room for makes a name that cannot be in its table either.
  const bool canBeKnown = parts.localName != 0 && hasNamespace == (parts.namespaceName != 0) &&
                          hasPrefix == (parts.prefix != 0);
  bool isNewName = false;
  const unsigned long index = canBeKnown ? names.table.Add(parts, isNewName) : 0;
  if (index != 0) {
    // What is not clean may be the same octets as another name in UTF-8.
    const bool isPlain = localName.data() == name.localName.data();
    if (isPlain) names.predictor.Learn(name, localNames[parts.localName], index);
    if (!isNewName) return index;
  }
  const bool isDeclaration = &names == &m_attributeNames && !hasNamespace && localName == "xmlns";
  if (isDeclaration || !IsNamePart(localName)) ThrowNoFastInfosetName(name.localName);
  out.Put(names.literal | (hasPrefix ? kHasPrefix : 0) | (hasNamespace ? kHasNamespace : 0));
  const auto putPart = [&](unsigned int partIndex, bool isNew, std::string_view text) {
    partIndex != 0 && !isNew ? out.PutIdentifier(partIndex) : PutLiteral(out, text);
  };
  if (hasPrefix) putPart(parts.prefix, false, Clean(name.prefix->text, m_clean));
  if (hasNamespace) {
    putPart(parts.namespaceName, false, Clean(name.prefix->bound->text, m_clean));
  }
  putPart(parts.localName, isNewPart, localName);
  return 0;
}

void DocumentEncoder::StartElement(const DocumentName& name) {
  m_name.Clear();
  m_nameIndex = PutUnlessKnown(m_name, name, m_elementNames);
  m_isStartOpen = true;
}

void DocumentEncoder::AddDeclaration(NamespacePrefix& prefix, NamespaceName* name) {
  CFIVocabulary& vocabulary = m_context.GetVocabulary();
  const bool hasPrefix = !prefix.text.empty();
  m_declarations.Put(kDeclaration | (hasPrefix ? kHasPrefix : 0) |
                     (name != nullptr ? kHasNamespace : 0));
  if (hasPrefix) {
    if (!IsNamePart(Clean(prefix.text, m_clean))) ThrowNoFastInfosetName(prefix.text);
    PutIdentifier(m_declarations, Clean(prefix.text, m_clean), vocabulary.GetPrefixNamesTable(),
                  prefix.index);
  }
  if (name != nullptr) {
    PutIdentifier(m_declarations, Clean(name->text, m_clean), vocabulary.GetNamespaceNamesTable(),
                  name->index);
  }
}

void DocumentEncoder::EndStart() {
  if (!m_isStartOpen) return;
  m_isStartOpen = false;
  OctetBuffer& out = PutPendingTerminator();
  const bool hasAttributes = !m_attributes.IsEmpty();
  unsigned int first = hasAttributes ? kWithAttributes : 0;
  if (!m_declarations.IsEmpty()) {
    out.Put(kDeclarationsFollow | first);
    out.Put(m_declarations.View());
    out.Put(kTerminator);
    m_declarations.Clear();
    first = 0;
  }
  if (m_nameIndex != 0) {
    out.PutIndex<3>(first, m_nameIndex);
  } else {
    out.Put(static_cast<unsigned char>(m_name.View().front()) | first);
    out.Put(m_name.View().substr(1));
  }
  if (!hasAttributes) return;
  out.Put(m_attributes.View());
  m_attributes.Clear();
  PutTerminator();
}

void DocumentEncoder::EndElement() {
  EndStart();
  PutTerminator();
  TakeOutputWhenFull();
}

void DocumentEncoder::AddAttribute(const DocumentName& name, std::string_view value,
                                   ItemType type) {
  OctetBuffer& out = m_attributes;
  StringTable& table = m_attributeValues.table;
  const std::string_view text = Clean(value, m_value);
  const bool isIndexed = text.size() <= m_attributeValues.maxLength;
  const std::uint32_t announced = isIndexed ? table.Announce(text) : 0;
  const unsigned long nameIndex = PutUnlessKnown(out, name, m_attributeNames);
  if (nameIndex != 0) out.PutIndexOnBit2(0, nameIndex);
  if (text.empty()) return out.Put(kEmptyString);
  if (EncodeValue(text, type)) return PutEncoded<5>(out, kByAlgorithm);
  CheckLength(text);
  bool isNew = false;
  const unsigned long index =
      isIndexed ? table.Add(text, announced, m_context.GetMaxIndexedValues(), isNew) : 0;
  if (index != 0 && !isNew) return out.PutIndexOnBit2(kIndex, index);
  out.PutString<5>(isNew ? kAddToTable : 0, text);
}

void DocumentEncoder::AddText(std::string_view value, ItemType type) {
  StringTable& table = m_chunks.table;
  const std::string_view text = Clean(value, m_value);
  if (text.empty()) return;
  const bool isIndexed = text.size() <= m_chunks.maxLength;
  const std::uint32_t announced = isIndexed ? table.Announce(text) : 0;
  OctetBuffer& out = StartItem();
  if (EncodeValue(text, type)) return PutEncoded<7>(out, kChunk | kChunkByAlgorithm);
  CheckLength(text);
  bool isNew = false;
  const unsigned long index =
      isIndexed ? table.Add(text, announced, m_context.GetMaxIndexedValues(), isNew) : 0;
  if (index != 0 && !isNew) return out.PutIndex<4>(kChunk | kChunkIndex, index);
  out.PutString<7>(isNew ? kChunk | kAddChunkToTable : kChunk, text);
}

void DocumentEncoder::AddCData(std::string_view text) {
  if (!m_context.GetCDataSections()) return AddText(text, ItemType::string);
  m_octets = Clean(text, m_clean);
  if (m_octets.empty()) return;
  m_algorithm = static_cast<unsigned int>(EncodingAlgorithm::Cdata);
  PutEncoded<7>(StartItem(), kChunk | kChunkByAlgorithm);
}

/// Encodes a value when its type asks for it and nothing gets lost.
bool DocumentEncoder::EncodeValue(std::string_view text, ItemType type) {
  const auto row = static_cast<std::size_t>(type);
  if (row >= kEncodings.size()) return false;
  const Encoding& encoding = kEncodings[row];
  if (!encoding.hasAlgorithm || m_context.GetTypedValues() < encoding.from) return false;
  // An i4 has 64 bits, most have a value of 32.
  const bool isShortForm = type == ItemType::i4 && IsInt(text);
  const EncodingAlgorithm algorithm = isShortForm ? EncodingAlgorithm::Int : encoding.algorithm;
  m_algorithm = static_cast<unsigned int>(algorithm);
  m_octets.clear();
  return AppendEncodedExactly(m_octets, algorithm, text);
}

/// Puts the octets of EncodeValue behind the algorithm's number, whose eight bits end four or six
/// bits into the octet where the length starts.
template <int lengthBit>
void DocumentEncoder::PutEncoded(OctetBuffer& out, unsigned int before) {
  constexpr int kBitsInSecond = lengthBit - 1;
  CheckLength(m_octets);
  const unsigned int number = m_algorithm - 1;
  out.Put(before | number >> kBitsInSecond);
  out.PutString<lengthBit>(number << (8 - kBitsInSecond) & 0xFF, m_octets);
}

void DocumentEncoder::PutUnindexed(OctetBuffer& out, std::string_view text) {
  if (text.empty()) return out.Put(kEmptyString);
  CheckLength(text);
  out.PutString<5>(0, text);
}

void DocumentEncoder::AddComment(std::string_view text) {
  OctetBuffer& out = StartItem();
  out.Put(kComment);
  PutUnindexed(out, Clean(text, m_clean));
}

void DocumentEncoder::AddInstruction(std::string_view target, std::string_view content) {
  OctetBuffer& out = StartItem();
  out.Put(kInstruction);
  unsigned int index = 0;
  PutIdentifier(out, Clean(target, m_clean), m_targets, index);
  PutUnindexed(out, Clean(content, m_clean));
}

}  // namespace ZuXmlLib16::detail
