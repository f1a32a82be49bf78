#include "ZuXmlLib16/FIVocabulary.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <utility>

#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16 {
namespace {

using CQNameParts = CFIVocabulary::CQNameParts;

/// Two random numbers that nobody outside of the process knows.
struct HashKey {
  std::uint64_t first;
  std::uint64_t second;
};

const HashKey& Key() {
  static const HashKey key = [] {
    std::random_device source;
    const auto draw = [&] { return std::uint64_t{source()} << 32 | source(); };
    return HashKey{draw(), draw()};
  }();
  return key;
}

std::uint64_t Mix(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <class Word>
std::uint64_t Load(const char* text) {
  Word word;
  std::memcpy(&word, text, sizeof word);
  return word;
}

std::uint32_t Fold(std::uint64_t hash) {
  return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

/// The parts in one number: an index has 21 bits.
std::uint64_t Packed(CQNameParts name) {
  return std::uint64_t{name.prefix} << 42 | std::uint64_t{name.namespaceName} << 21 |
         name.localName;
}

}  // namespace

std::uint32_t detail::FIHashIndex::Hash(std::string_view text) {
  const HashKey& key = Key();
  const char* const start = text.data();
  const std::size_t size = text.size();
  std::uint64_t hash = key.second ^ size;
  if (size >= 8) {
    for (std::size_t at = 0; at + 16 < size; at += 16) {
      hash = Mix(Load<std::uint64_t>(start + at) ^ key.first,
                 Load<std::uint64_t>(start + at + 8) ^ hash);
    }
    // The rest; what it shares with the words before is hashed twice.
    const char* const rest = size > 16 ? start + size - 16 : start;
    hash = Mix(Load<std::uint64_t>(rest) ^ key.first, Load<std::uint64_t>(start + size - 8) ^ hash);
  } else if (size >= 4) {
    hash =
        Mix(Load<std::uint32_t>(start) ^ key.first, Load<std::uint32_t>(start + size - 4) ^ hash);
  } else if (size > 0) {
    const std::uint64_t bytes = Load<unsigned char>(start) |
                                Load<unsigned char>(start + size / 2) << 8 |
                                Load<unsigned char>(start + size - 1) << 16;
    hash = Mix(bytes ^ key.first, hash);
  }
  return Fold(hash);
}

std::uint32_t detail::FIHashIndex::Hash(std::uint64_t number) {
  return Fold(Mix(number ^ Key().first, Key().second | 1));
}

void detail::FIHashIndex::Reserve() {
  constexpr std::size_t kFirstSize = 16;
  if ((m_count + 1) * 4 <= m_slots.size() * 3) return;
  FIHashIndex larger;
  larger.m_slots.resize(std::max(kFirstSize, m_slots.size() * 2), {0, 0});
  larger.m_mask = larger.m_slots.size() - 1;
  for (const Slot& slot : m_slots) {
    if (slot.number != 0) larger.Insert(slot.hash, slot.number);
  }
  *this = std::move(larger);
}

void detail::FIHashIndex::Insert(std::uint32_t hash, std::uint32_t number) noexcept {
  std::size_t at = hash & m_mask;
  while (m_slots[at].number != 0) {
    at = (at + 1) & m_mask;
  }
  m_slots[at] = {hash, number};
  ++m_count;
}

CFIVocabulary::CFIStringTable::CFIStringTable(const CFIStringTable& other)
    : m_index(other.m_index) {
  std::size_t size = 0;
  for (const std::string_view entry : other) {
    size += entry.size();
  }
  m_entries.reserve(other.m_entries.size());
  m_blocks.emplace_back(new char[size]);
  m_next = m_blocks.back().get();
  m_left = size;
  for (const std::string_view entry : other) {
    Keep(entry);
  }
}

CFIVocabulary::CFIStringTable& CFIVocabulary::CFIStringTable::operator=(
    CFIStringTable other) noexcept {
  Swap(other);
  return *this;
}

void CFIVocabulary::CFIStringTable::Swap(CFIStringTable& other) noexcept {
  m_entries.swap(other.m_entries);
  m_blocks.swap(other.m_blocks);
  std::swap(m_next, other.m_next);
  std::swap(m_left, other.m_left);
  std::swap(m_index, other.m_index);
}

unsigned long CFIVocabulary::CFIStringTable::Find(std::string_view value) const {
  return m_index.Find(detail::FIHashIndex::Hash(value),
                      [&](std::uint32_t number) { return (*this)[number] == value; });
}

unsigned long CFIVocabulary::CFIStringTable::Add(std::string_view value, bool& isNew) {
  const std::uint32_t hash = detail::FIHashIndex::Hash(value);
  isNew = false;
  const std::uint32_t found =
      m_index.Find(hash, [&](std::uint32_t number) { return (*this)[number] == value; });
  if (found != 0 || IsFull()) return found;
  m_index.Reserve();
  const unsigned long index = Append(value);
  m_index.Insert(hash, static_cast<std::uint32_t>(index));
  isNew = true;
  return index;
}

unsigned long CFIVocabulary::CFIStringTable::Append(std::string_view value) {
  if (IsFull()) return 0;
  Keep(value);
  return GetSize();
}

void CFIVocabulary::CFIStringTable::Keep(std::string_view value) {
  constexpr std::size_t kFirstBlock = 256;
  constexpr std::size_t kLargestBlock = 65536;
  if (value.size() > m_left) {
    const std::size_t usual = kFirstBlock << std::min<std::size_t>(m_blocks.size(), 8);
    static_assert(kFirstBlock << 8 == kLargestBlock);
    const std::size_t size = std::max(usual, value.size());
    m_blocks.emplace_back(new char[size]);
    m_next = m_blocks.back().get();
    m_left = size;
  }
  // An empty string may come before there is any block.
  if (!value.empty()) std::memcpy(m_next, value.data(), value.size());
  m_entries.emplace_back(m_next, value.size());
  m_next += value.size();
  m_left -= value.size();
}

unsigned long CFIVocabulary::CFIQNameTable::Find(CQNameParts name) const {
  const std::uint64_t key = Packed(name);
  return m_index.Find(detail::FIHashIndex::Hash(key),
                      [&](std::uint32_t number) { return Packed((*this)[number]) == key; });
}

unsigned long CFIVocabulary::CFIQNameTable::Add(CQNameParts name, bool& isNew) {
  const std::uint64_t key = Packed(name);
  const std::uint32_t hash = detail::FIHashIndex::Hash(key);
  isNew = false;
  const std::uint32_t found =
      m_index.Find(hash, [&](std::uint32_t number) { return Packed((*this)[number]) == key; });
  if (found != 0 || IsFull()) return found;
  m_index.Reserve();
  const unsigned long index = Append(name);
  m_index.Insert(hash, static_cast<std::uint32_t>(index));
  isNew = true;
  return index;
}

unsigned long CFIVocabulary::CFIQNameTable::Append(CQNameParts name) {
  if (IsFull()) return 0;
  m_entries.push_back(name);
  return GetSize();
}

CFIVocabulary::CFIVocabulary() {
  AddPrefixName("xml");
  AddNamespaceName(CXmlWriter::XML_NAMESPACE);
}

void CFIVocabulary::AddElement(CTextRef prefix, CTextRef namespaceName, CTextRef localName) {
  AddQName(prefix, namespaceName, localName, m_elementNames);
}

void CFIVocabulary::AddAttribute(CTextRef prefix, CTextRef namespaceName, CTextRef localName) {
  AddQName(prefix, namespaceName, localName, m_attributeNames);
}

void CFIVocabulary::AddQName(CTextRef prefix, CTextRef namespaceName, CTextRef localName,
                             CFIQNameTable& table) {
  bool hasAllParts = true;
  bool isNew = false;
  const auto indexOf = [&](std::string_view part, CFIStringTable& parts) {
    const auto index = static_cast<unsigned int>(parts.Add(part, isNew));
    hasAllParts = hasAllParts && index != 0;
    return index;
  };
  CQNameParts name;
  if (!prefix.empty()) name.prefix = indexOf(prefix, m_prefixNames);
  if (!namespaceName.empty()) name.namespaceName = indexOf(namespaceName, m_namespaceNames);
  name.localName = indexOf(localName, m_localNames);
  if (hasAllParts) table.Add(name, isNew);
}

void CFIVocabulary::AddValueToMap(CTextRef value, CFIStringTable& table) {
  bool isNew = false;
  table.Add(value, isNew);
}

bool CFIVocabulary::FindIndex(const CFIStringTable& table, CTextRef value, unsigned long& index) {
  const unsigned long found = table.Find(value);
  if (found != 0) index = found;
  return found != 0;
}

std::string_view CFIVocabulary::GetRestrictedAlphabet(unsigned long number) {
  switch (number) {
    case 1:
      return "0123456789-+.e ";
    case 2:
      return "0123456789-:TZ ";
    default:
      return {};
  }
}

}  // namespace ZuXmlLib16
