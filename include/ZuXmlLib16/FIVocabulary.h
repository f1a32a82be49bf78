#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

namespace detail {

/// Memory for what one document after the other needs: larger blocks are kept for the next one.
ZUXMLLIB16_API void* AllocatePooled(std::size_t sizeInBytes);
/// @param sizeInBytes  the size that was asked for.
ZUXMLLIB16_API void FreePooled(void* memory, std::size_t sizeInBytes) noexcept;

template <class T>
struct PoolAllocator {
  using value_type = T;

  PoolAllocator() = default;
  template <class U>
  explicit PoolAllocator(const PoolAllocator<U>&) {}

  T* allocate(std::size_t count) {
    return static_cast<T*>(AllocatePooled(count * sizeof(T)));  // vectors check the product
  }
  void deallocate(T* items, std::size_t count) { FreePooled(items, count * sizeof(T)); }
  bool operator==(const PoolAllocator&) const { return true; }
  bool operator!=(const PoolAllocator&) const { return false; }
};

template <class T>
using PooledVector = std::vector<T, PoolAllocator<T>>;

struct PoolDeleter {
  std::size_t sizeInBytes = 0;
  void operator()(char* memory) const noexcept { FreePooled(memory, sizeInBytes); }
};
using PooledBlock = std::unique_ptr<char[], PoolDeleter>;

inline PooledBlock NewPooledBlock(std::size_t sizeInBytes) {
  return {static_cast<char*>(AllocatePooled(sizeInBytes)), PoolDeleter{sizeInBytes}};
}

/// A hash table of the numbers of entries that are kept elsewhere. Nobody can choose entries that
/// collide: hashes depend on a key that is drawn at random once a process.
class FIHashIndex {
 public:
  /// @param isEntry  whether the entry of a number is the one that is sought.
  /// @return the entry's number, 0 for none.
  template <class Predicate>
  std::uint32_t Find(std::uint32_t hash, Predicate isEntry) const {
    return m_slots.empty() ? 0 : m_slots[SlotOf(hash, isEntry)] & kNumberMask;
  }
  /// Puts an entry in unless it is there.
  /// @param add  makes the entry that was not found; gives its number, above 0 and less than 2^21,
  /// or 0 when there is to be none.
  /// @return the entry's number, 0 for none.
  template <class Predicate, class Function>
  std::uint32_t FindOrAdd(std::uint32_t hash, Predicate isEntry, Function add) {
    if (m_entries.size() == m_capacity) Grow();
    std::uint32_t& slot = m_slots[SlotOf(hash, isEntry)];
    if (slot != 0) return slot & kNumberMask;
    const std::uint32_t number = add();
    if (number != 0) {
      m_entries.push_back({hash, number});
      slot = (hash & ~kNumberMask) | number;
    }
    return number;
  }
  /// Fetches the place of an entry, to be at hand when it is sought a little later.
  void Prefetch(std::uint32_t hash) const {
    if (!m_slots.empty()) __builtin_prefetch(&m_slots[hash & m_mask]);
  }

 private:
  struct Entry {
    std::uint32_t hash;
    std::uint32_t number;
  };

  static constexpr std::uint32_t kNumberMask = (1 << 21) - 1;

  /// The slot of the entry, or the free one where it belongs. There must be slots.
  template <class Predicate>
  std::size_t SlotOf(std::uint32_t hash, Predicate isEntry) const {
    for (std::size_t at = hash & m_mask;; at = (at + 1) & m_mask) {
      const std::uint32_t slot = m_slots[at];
      if (slot == 0) return at;
      if ((slot ^ hash) <= kNumberMask && isEntry(slot & kNumberMask)) return at;
    }
  }
  void Grow();

  // A number and the first eleven bits of its hash, 0 when free. A power of two of them.
  PooledVector<std::uint32_t> m_slots;
  std::size_t m_mask = 0;
  PooledVector<Entry> m_entries;
  std::size_t m_capacity = 0;  // entries that the slots take
};

}  // namespace detail

/// The vocabulary tables of a Fast Infoset document (ITU-T Rec. X.891, clause 8). Writer and reader
/// build them up in step: where a string or a name comes again, its index is written instead.
/// Indices start at 1 and follow first use; a table takes 2^20 entries and then silently no more.
/// Strings are in UTF-8.
///
/// Memory: an entry of a string table needs its octets and at most 64 more, one of a name table at
/// most 64.
class ZUXMLLIB16_API CFIVocabulary {
 public:
  /// Entries that a table takes.
  static constexpr unsigned long kMaxEntries = 0x100000;

  /// Strings in the order of their indices: that of index 1 comes first.
  class ZUXMLLIB16_API CFIStringTable {
   public:
    using const_iterator = detail::PooledVector<std::string_view>::const_iterator;

    CFIStringTable() = default;
    CFIStringTable(const CFIStringTable& other);
    CFIStringTable(CFIStringTable&& other) noexcept { Swap(other); }
    CFIStringTable& operator=(CFIStringTable other) noexcept;
    ~CFIStringTable() = default;

    const_iterator begin() const { return m_entries.begin(); }
    const_iterator end() const { return m_entries.end(); }
    unsigned long GetSize() const { return m_entries.size(); }
    bool IsFull() const { return GetSize() >= kMaxEntries; }
    /// @param index  1 to GetSize(); not checked. The view lasts as long as the table.
    std::string_view operator[](unsigned long index) const { return m_entries[index - 1]; }

    /// The index of a string that Add has put in, 0 for none.
    unsigned long Find(std::string_view value) const;
    /// Puts a string in unless it is there or the table is full.
    /// @param isNew  receives whether it was put in.
    /// @return its index; 0 when it is not in the table afterwards.
    unsigned long Add(std::string_view value, bool& isNew) {
      return Add(value, Announce(value), kMaxEntries, isNew);
    }
    /// The first step of Add. In large tables it takes its time to get at a string: other work may
    /// be done before the second step.
    std::uint32_t Announce(std::string_view value) const;
    /// @param announced  what Announce has given for the value.
    /// @param limit      how many entries count as a full table, kMaxEntries at most.
    unsigned long Add(std::string_view value, std::uint32_t announced, unsigned long limit,
                      bool& isNew);
    /// Puts a string behind the others unless the table is full, whether it is there or not. Find
    /// and Add do not see what came this way: it is meant for readers, which look up indices only.
    /// @return its index; 0 when the table is full.
    unsigned long Append(std::string_view value);

   private:
    void Swap(CFIStringTable& other) noexcept;
    void AddBlock(std::size_t sizeInBytes);
    void Keep(std::string_view value);

    detail::PooledVector<std::string_view> m_entries;  // in m_blocks
    std::vector<detail::PooledBlock> m_blocks;
    char* m_next = nullptr;  // in the last block
    std::size_t m_left = 0;
    detail::FIHashIndex m_index;
  };

  /// A name: indices of its parts in their tables, 0 for a part that it does not have.
  struct CQNameParts {
    unsigned int prefix = 0;
    unsigned int namespaceName = 0;
    unsigned int localName = 0;
  };

  /// Names in the order of their indices. Its operations are those of CFIStringTable.
  class ZUXMLLIB16_API CFIQNameTable {
   public:
    using const_iterator = detail::PooledVector<CQNameParts>::const_iterator;

    const_iterator begin() const { return m_entries.begin(); }
    const_iterator end() const { return m_entries.end(); }
    unsigned long GetSize() const { return m_entries.size(); }
    bool IsFull() const { return GetSize() >= kMaxEntries; }
    const CQNameParts& operator[](unsigned long index) const { return m_entries[index - 1]; }

    unsigned long Find(CQNameParts name) const;
    unsigned long Add(CQNameParts name, bool& isNew);
    unsigned long Append(CQNameParts name);

   private:
    detail::PooledVector<CQNameParts> m_entries;
    detail::FIHashIndex m_index;
  };

  /// Holds what every document starts with: the prefix "xml" and its namespace, each at index 1.
  CFIVocabulary();

  const CFIStringTable& GetPrefixNamesTable() const { return m_prefixNames; }
  CFIStringTable& GetPrefixNamesTable() { return m_prefixNames; }
  const CFIStringTable& GetNamespaceNamesTable() const { return m_namespaceNames; }
  CFIStringTable& GetNamespaceNamesTable() { return m_namespaceNames; }
  const CFIStringTable& GetLocalNamesTable() const { return m_localNames; }
  CFIStringTable& GetLocalNamesTable() { return m_localNames; }
  const CFIStringTable& GetAttributeValuesTable() const { return m_attributeValues; }
  CFIStringTable& GetAttributeValuesTable() { return m_attributeValues; }
  /// Texts of elements.
  const CFIStringTable& GetCharacterChunksTable() const { return m_characterChunks; }
  CFIStringTable& GetCharacterChunksTable() { return m_characterChunks; }
  const CFIQNameTable& GetElementNamesTable() const { return m_elementNames; }
  CFIQNameTable& GetElementNamesTable() { return m_elementNames; }
  const CFIQNameTable& GetAttributeNamesTable() const { return m_attributeNames; }
  CFIQNameTable& GetAttributeNamesTable() { return m_attributeNames; }

  // What is there already, or finds its table full, changes nothing.

  void AddPrefixName(CTextRef prefix) { AddValueToMap(prefix, m_prefixNames); }
  void AddNamespaceName(CTextRef namespaceName) { AddValueToMap(namespaceName, m_namespaceNames); }
  void AddLocalName(CTextRef localName) { AddValueToMap(localName, m_localNames); }
  void AddAttributeValue(CTextRef value) { AddValueToMap(value, m_attributeValues); }
  void AddElementValue(CTextRef text) { AddValueToMap(text, m_characterChunks); }
  /// Adds the name and those of its parts that are new. Prefix and namespace may be empty: the name
  /// then has none.
  void AddElement(CTextRef prefix, CTextRef namespaceName, CTextRef localName);
  void AddAttribute(CTextRef prefix, CTextRef namespaceName, CTextRef localName);
  /// The same for either table of names. A name that has a part without an index is not added.
  void AddQName(CTextRef prefix, CTextRef namespaceName, CTextRef localName, CFIQNameTable& table);

  static void AddValueToMap(CTextRef value, CFIStringTable& table);
  /// For readers, see CFIStringTable::Append.
  static void AddValueToVector(CTextRef value, CFIStringTable& table) { table.Append(value); }
  static void AddQNameToVector(CQNameParts name, CFIQNameTable& table) { table.Append(name); }

  /// @param index  receives the index of a string that is in the table; otherwise unchanged.
  /// @return whether it is.
  static bool FindIndex(const CFIStringTable& table, CTextRef value, unsigned long& index);
  bool FindPrefixNameIndex(CTextRef prefix, unsigned long& index) const {
    return FindIndex(m_prefixNames, prefix, index);
  }
  bool FindNamespaceNameIndex(CTextRef namespaceName, unsigned long& index) const {
    return FindIndex(m_namespaceNames, namespaceName, index);
  }
  bool FindLocalNameIndex(CTextRef localName, unsigned long& index) const {
    return FindIndex(m_localNames, localName, index);
  }

  /// The characters of a restricted alphabet that the standard builds in (X.891, clause 9), in the
  /// order of their codes.
  /// @param number  1 for numeric, 2 for date and time; "" for others.
  static std::string_view GetRestrictedAlphabet(unsigned long number);

 private:
  CFIStringTable m_prefixNames;
  CFIStringTable m_namespaceNames;
  CFIStringTable m_localNames;
  CFIStringTable m_attributeValues;
  CFIStringTable m_characterChunks;
  CFIQNameTable m_elementNames;
  CFIQNameTable m_attributeNames;
};

}  // namespace ZuXmlLib16
