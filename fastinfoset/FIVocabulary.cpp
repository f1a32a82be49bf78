#include "ZuXmlLib16/FIVocabulary.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <random>
#include <utility>

#include "ZuXmlLib16/XmlWriter.h"
#include "xml/ChunkPool.h"

namespace ZuXmlLib16 {
namespace {

using CQNameParts = CFIVocabulary::CQNameParts;

constexpr std::size_t kLeastPooled = 4096;

/// Powers of two, so that blocks fit each other's place.
std::size_t PooledSize(std::size_t sizeInBytes) {
  return std::size_t{1} << (64 - __builtin_clzll(sizeInBytes - 1));
}

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

inline std::uint32_t Fold(std::uint64_t hash) {
  return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

inline std::uint32_t HashOf(std::string_view text) {
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

inline std::uint32_t HashOf(std::uint64_t number) {
  return Fold(Mix(number ^ Key().first, Key().second | 1));
}

/// Most strings are short: two pieces that overlap, without a call.
inline bool IsEqual(std::string_view a, std::string_view b) {
  const std::size_t size = a.size();
  if (size != b.size()) return false;
  if (size > 16) return std::memcmp(a.data(), b.data(), size) == 0;
  const auto differ = [&](auto word, std::size_t at) {
    using Word = decltype(word);
    return Load<Word>(a.data() + at) ^ Load<Word>(b.data() + at);
  };
  if (size >= 8) return (differ(std::uint64_t{}, 0) | differ(std::uint64_t{}, size - 8)) == 0;
  if (size >= 4) return (differ(std::uint32_t{}, 0) | differ(std::uint32_t{}, size - 4)) == 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

/// The parts in one number: an index has 21 bits.
std::uint64_t Packed(CQNameParts name) {
  return std::uint64_t{name.prefix} << 42 | std::uint64_t{name.namespaceName} << 21 |
         name.localName;
}

}  // namespace

void* detail::AllocatePooled(std::size_t sizeInBytes) {
  if (sizeInBytes < kLeastPooled) return operator new(sizeInBytes);
  return TakeChunk(PooledSize(sizeInBytes)).memory;
}

void detail::FreePooled(void* memory, std::size_t sizeInBytes) noexcept {
  if (sizeInBytes < kLeastPooled) {
    operator delete(memory);
  } else {
    GiveChunk({static_cast<char*>(memory), PooledSize(sizeInBytes)});
  }
}

void detail::FIHashIndex::Grow() {
  constexpr std::size_t kFirstSize = 16;
  const std::size_t size = std::max(kFirstSize, m_slots.size() * 2);
  m_entries.reserve(size / 4 * 3);
  m_slots = PooledVector<std::uint32_t>(size);
  m_mask = size - 1;
  m_capacity = size / 4 * 3;
  for (const Entry entry : m_entries) {
    const std::size_t at = SlotOf(entry.hash, [](std::uint32_t) { return false; });
    m_slots[at] = (entry.hash & ~kNumberMask) | entry.number;
  }
}

CFIVocabulary::CFIStringTable::CFIStringTable(const CFIStringTable& other)
    : m_index(other.m_index) {
  std::size_t size = 0;
  for (const std::string_view entry : other) {
    size += entry.size();
  }
  m_entries.reserve(other.m_entries.size());
  if (size > 0) AddBlock(size);
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
  return m_index.Find(HashOf(value),
                      [&](std::uint32_t number) { return IsEqual((*this)[number], value); });
}

std::uint32_t CFIVocabulary::CFIStringTable::Announce(std::string_view value) const {
  const std::uint32_t hash = HashOf(value);
  m_index.Prefetch(hash);
  return hash;
}

unsigned long CFIVocabulary::CFIStringTable::Add(std::string_view value, std::uint32_t announced,
                                                 unsigned long limit, bool& isNew) {
  isNew = false;
  return m_index.FindOrAdd(
      announced, [&](std::uint32_t number) { return IsEqual((*this)[number], value); },
      [&] {
        isNew = GetSize() < std::min(limit, kMaxEntries);
        return isNew ? static_cast<std::uint32_t>(Append(value)) : 0;
      });
}

unsigned long CFIVocabulary::CFIStringTable::Append(std::string_view value) {
  if (IsFull()) return 0;
  Keep(value);
  return GetSize();
}

void CFIVocabulary::CFIStringTable::AddBlock(std::size_t sizeInBytes) {
  m_blocks.push_back(detail::NewPooledBlock(sizeInBytes));
  m_next = m_blocks.back().get();
  m_left = sizeInBytes;
}

void CFIVocabulary::CFIStringTable::Keep(std::string_view value) {
  constexpr std::size_t kFirstBlock = 256;
  constexpr std::size_t kDoublings = 10;
  if (value.size() > m_left) {
    AddBlock(std::max(kFirstBlock << std::min(m_blocks.size(), kDoublings), value.size()));
  }
  m_entries.emplace_back(m_next, value.size());
  // An empty string may come before there is any block.
  if (!value.empty()) std::memcpy(m_next, value.data(), value.size());
  m_next += value.size();
  m_left -= value.size();
}

unsigned long CFIVocabulary::CFIQNameTable::Find(CQNameParts name) const {
  const std::uint64_t key = Packed(name);
  return m_index.Find(HashOf(key),
                      [&](std::uint32_t number) { return Packed((*this)[number]) == key; });
}

unsigned long CFIVocabulary::CFIQNameTable::Add(CQNameParts name, bool& isNew) {
  const std::uint64_t key = Packed(name);
  isNew = false;
  return m_index.FindOrAdd(
      HashOf(key), [&](std::uint32_t number) { return Packed((*this)[number]) == key; },
      [&] {
        isNew = !IsFull();
        return static_cast<std::uint32_t>(Append(name));
      });
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
