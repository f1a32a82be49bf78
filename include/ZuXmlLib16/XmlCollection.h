#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"
#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/XmlObjectBase.h"

namespace ZuXmlLib16 {

/// Base of all collections: name and namespace of the items, occurrence bounds, listeners. A
/// listener may throw: before an insertion it vetoes it.
class ZUXMLLIB16_API CXmlCollectionBase : public CXmlObjectBase, public CInstanceMonitor {
 public:
  CXmlCollectionBase();
  /// @param maximum  -1 for any number.
  CXmlCollectionBase(CTextRef name, CTextRef namespaceUri, std::int32_t minimum,
                     std::int32_t maximum);
  ~CXmlCollectionBase() override;

  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::GetBase;
  using CXmlObjectBase::ToXml_Int;
  CXmlObjectBase* GetBase() override { return this; }

  // The order of the virtual operations is binary interface.

  /// @throws CZuException  always: a collection has no target namespace.
  std::string GetTargetNamespace() const override;
  std::string GetNamespace() const override { return m_namespaceUri; }
  virtual std::int32_t GetCount() const = 0;
  virtual void Clear() = 0;
  virtual void Remove(int index) = 0;
  /// @throws CZuValidationException  there are more items than the maximum or fewer than the
  /// minimum.
  virtual void ValidateCount(const CSerializationContext& context) const;
  virtual bool IsValidCount(const CSerializationContext& context) const;

  /// Element name of the items.
  const std::string& GetName() const { return m_name; }
  std::int32_t GetMinOccurs() const { return m_minimum; }
  /// -1 for any number.
  std::int32_t GetMaxOccurs() const { return m_maximum; }

  /// The listener is not owned and must be removed before it goes. One added twice is told twice.
  void AddEventListener(IEventSink* listener);
  /// Removes every occurrence.
  void RemoveEventListener(IEventSink* listener);

  void FireOnCollectionAdd(void* item);
  void FireOnCollectionAddComplete(void* item);
  void FireOnCollectionRemove(int index);
  void FireOnCollectionRemoveComplete(int index);
  void FireOnCollectionChange();

 protected:
  bool HasListeners() const { return !m_listeners.empty(); }
  const std::string& NamespaceUri() const { return m_namespaceUri; }

 private:
  enum class CountState { Valid, TooMany, TooFew };
  CountState CheckCount(const CSerializationContext& context) const;
  template <class Event>
  void TellListeners(Event event);

  std::string m_name;
  std::string m_namespaceUri;
  std::vector<IEventSink*> m_listeners;
  std::int32_t m_minimum = 0;
  std::int32_t m_maximum = -1;
};

/// An ordered list of objects; each is held by one reference. Items are told apart by identity,
/// never by value. Every insertion fires Add before it, AddComplete and Change after it; every
/// removal Remove before it, RemoveComplete and Change after it, both with the index -1.
class ZUXMLLIB16_API CXmlCollection : public CXmlCollectionBase {
 public:
  /// A place in the list.
  class CNode {
   public:
    CXmlObjectBase* GetItem() const { return m_item.Get(); }
    CNode* GetNext() const { return m_next; }
    CNode* GetPrevious() const { return m_previous; }

    // NOLINTNEXTLINE(misc-new-delete-overloads): as in CXmlObjectBase
    static void* operator new(std::size_t sizeInBytes) {
      return CXmlObjectBase::operator new(sizeInBytes);
    }
    static void operator delete(void* node, std::size_t sizeInBytes) noexcept {
      CXmlObjectBase::operator delete(node, sizeInBytes);
    }

   private:
    friend class CXmlCollection;
    CNode(const CXmlCollection* owner, CSmartPtr<CXmlObjectBase> item)
        : m_owner(owner), m_item(std::move(item)) {}

    const CXmlCollection* m_owner;
    CSmartPtr<CXmlObjectBase> m_item;
    CNode* m_next = nullptr;
    CNode* m_previous = nullptr;
  };

  CXmlCollection();
  CXmlCollection(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum);
  /// Gives the items back without events. When the collection goes together with an object around
  /// it, that may happen after it is gone: an item must not rely on the collection in its
  /// destructor.
  ~CXmlCollection() override;

  std::int32_t GetCount() const override { return m_count; }
  void Clear() override;
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  void Remove(int index) override;
  /// Lets the items write their attributes.
  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const override;

  // An item that is null or of the wrong kind for the collection throws CZuInvalidParamException.
  // An item that nobody else holds is deleted when it is refused.

  void AppendItem(CXmlObjectBase* item);
  void PrependItem(CXmlObjectBase* item);
  /// @param index  the item's index afterwards, 0 to GetCount().
  /// @throws CZuInvalidParamException  "Index out of range"
  void AddItemAt(int index, CXmlObjectBase* item);
  /// @param existing  null inserts at the head.
  /// @throws CZuInvalidParamException  existing is not in the collection; Add was fired by then.
  void AddAfterItem(CXmlObjectBase* existing, CXmlObjectBase* item);
  /// @param existing  null appends.
  void AddBeforeItem(CXmlObjectBase* existing, CXmlObjectBase* item);

  CNode* GetHead() const { return m_head; }
  CNode* GetTail() const { return m_tail; }
  /// A loop over the indices takes linear time.
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  CNode* GetNodeAtIndex(int index) const;
  /// @throws CZuInvalidParamException  "The object was not found in the collection"
  CNode* GetNodeForItem(const CXmlObjectBase* item) const;
  /// @throws CZuInvalidParamException  null or a node of another collection.
  void RemoveNode(CNode* node);

 protected:
  /// Goes over the items of a typed collection.
  template <class T>
  class CIterator {
   public:
    explicit CIterator(CNode* node) : m_node(node) {}
    T* operator*() const { return static_cast<T*>(m_node->GetItem()); }
    CIterator& operator++() {
      m_node = m_node->GetNext();
      return *this;
    }
    bool operator==(const CIterator& other) const { return m_node == other.m_node; }
    bool operator!=(const CIterator& other) const { return m_node != other.m_node; }

   private:
    CNode* m_node;
  };

  using ItemTest = bool (*)(const CXmlObjectBase& item);
  /// Has every item that is inserted pass a test.
  void SetItemTest(ItemTest test) { m_itemTest = test; }
  /// Appends an item that is not null, with its events.
  void Append(CSmartPtr<CXmlObjectBase> item);
  /// Writes every item below the open element.
  void ItemsToXml(CXmlWriter* writer, const char* namespaceUri,
                  const CSerializationContext& context) const;

 private:
  /// Fires Add, then inserts before the node that find gives (null appends), then fires the rest.
  template <class Find>
  void Insert(CSmartPtr<CXmlObjectBase> item, Find find);
  bool HoldsNode(const CNode* wanted) const;
  void Unlink(CNode* node);

  CNode* m_head = nullptr;
  CNode* m_tail = nullptr;
  std::int32_t m_count = 0;
  ItemTest m_itemTest = nullptr;
  std::uint64_t m_changes = 0;  // insertions and removals so far
  // The node looked up last by index, null when not known.
  mutable CNode* m_lastNode = nullptr;
  mutable std::int32_t m_lastIndex = 0;
};

}  // namespace ZuXmlLib16
