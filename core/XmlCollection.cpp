#include "ZuXmlLib16/XmlCollection.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "core/Errors.h"

namespace ZuXmlLib16 {

CXmlCollectionBase::CXmlCollectionBase() : CInstanceMonitor("CXmlCollectionBase") {}

CXmlCollectionBase::CXmlCollectionBase(CTextRef name, CTextRef namespaceUri, std::int32_t minimum,
                                       std::int32_t maximum)
    : CInstanceMonitor("CXmlCollectionBase"),
      m_name(name),
      m_namespaceUri(namespaceUri),
      m_minimum(minimum),
      m_maximum(maximum) {}

CXmlCollectionBase::~CXmlCollectionBase() = default;

std::string CXmlCollectionBase::GetTargetNamespace() const {
  ThrowCollectionHasNoTargetNamespace();
}

CXmlCollectionBase::CountState CXmlCollectionBase::CheckCount(
    const CSerializationContext& context) const {
  if (context.GetIgnoreInvalidCollectionCounts()) return CountState::Valid;
  const std::int32_t count = GetCount();
  if (m_maximum != -1 && count > m_maximum) return CountState::TooMany;
  return count < m_minimum ? CountState::TooFew : CountState::Valid;
}

void CXmlCollectionBase::ValidateCount(const CSerializationContext& context) const {
  switch (CheckCount(context)) {
    case CountState::Valid:
      return;
    case CountState::TooMany:
      ThrowTooManyItems(m_name, m_maximum);
    case CountState::TooFew:
      ThrowTooFewItems(m_name, m_minimum);
  }
}

bool CXmlCollectionBase::IsValidCount(const CSerializationContext& context) const {
  return CheckCount(context) == CountState::Valid;
}

void CXmlCollectionBase::AddEventListener(IEventSink* listener) {
  m_listeners.push_back(listener);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* listener) {
  m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener),
                    m_listeners.end());
}

template <class Event>
void CXmlCollectionBase::TellListeners(Event event) {
  // By index, with the size read anew: a listener may remove itself.
  for (std::size_t i = 0; i < m_listeners.size(); ++i) {
    event(m_listeners[i]);
  }
}

void CXmlCollectionBase::FireOnCollectionAdd(void* item) {
  TellListeners([&](IEventSink* sink) { FireOnCollectionAddEvent(sink, this, item); });
}

void CXmlCollectionBase::FireOnCollectionAddComplete(void* item) {
  TellListeners([&](IEventSink* sink) { FireOnCollectionAddCompleteEvent(sink, this, item); });
}

void CXmlCollectionBase::FireOnCollectionRemove(int index) {
  TellListeners([&](IEventSink* sink) { FireOnCollectionRemoveEvent(sink, this, index); });
}

void CXmlCollectionBase::FireOnCollectionRemoveComplete(int index) {
  TellListeners([&](IEventSink* sink) { FireOnCollectionRemoveCompleteEvent(sink, this, index); });
}

void CXmlCollectionBase::FireOnCollectionChange() {
  TellListeners([&](IEventSink* sink) { FireOnCollectionChangeEvent(sink, this); });
}

CXmlCollection::CXmlCollection() = default;

CXmlCollection::CXmlCollection(CTextRef name, CTextRef namespaceUri, std::int32_t minimum,
                               std::int32_t maximum)
    : CXmlCollectionBase(name, namespaceUri, minimum, maximum) {}

CXmlCollection::~CXmlCollection() {
  // An item may own collections, whose items own collections, and so on: the outermost destructor
  // of a thread frees the nodes of all of them, so that depth costs no stack.
  static thread_local CNode* doomed = nullptr;
  static thread_local bool isFreeing = false;
  if (m_head == nullptr) return;
  m_tail->m_next = doomed;
  doomed = m_head;
  if (isFreeing) return;
  isFreeing = true;
  while (doomed != nullptr) {
    const std::unique_ptr<CNode> node(doomed);
    doomed = node->m_next;
  }
  isFreeing = false;
}

template <class Find>
void CXmlCollection::Insert(CSmartPtr<CXmlObjectBase> item, Find find) {
  Throw_IfPropertyIsNull(item.Get(), "item");
  if (m_itemTest != nullptr && !m_itemTest(*item)) ThrowWrongItemKind();
  CXmlObjectBase* const object = item.Get();
  // A listener may take the item out again while others are still to be told of it.
  const CSmartPtr<CXmlObjectBase> held = HasListeners() ? item : nullptr;
  FireOnCollectionAdd(object);
  CNode* const successor = find();
  CNode* const node = new CNode(this, std::move(item));
  node->m_next = successor;
  node->m_previous = successor != nullptr ? successor->m_previous : m_tail;
  (node->m_previous != nullptr ? node->m_previous->m_next : m_head) = node;
  (successor != nullptr ? successor->m_previous : m_tail) = node;
  ++m_count;
  ++m_changes;
  if (successor != nullptr) m_lastNode = nullptr;
  FireOnCollectionAddComplete(object);
  FireOnCollectionChange();
}

void CXmlCollection::Append(CSmartPtr<CXmlObjectBase> item) {
  Insert(std::move(item), [] { return nullptr; });
}

void CXmlCollection::AppendItem(CXmlObjectBase* item) {
  Append(item);
}

void CXmlCollection::PrependItem(CXmlObjectBase* item) {
  Insert(item, [this] { return m_head; });
}

void CXmlCollection::AddItemAt(int index, CXmlObjectBase* item) {
  CSmartPtr<CXmlObjectBase> held(item);
  if (index < 0 || index > m_count) ThrowIndexOutOfRange();
  Insert(std::move(held), [=] { return index < m_count ? GetNodeAtIndex(index) : nullptr; });
}

void CXmlCollection::AddAfterItem(CXmlObjectBase* existing, CXmlObjectBase* item) {
  Insert(item, [=] { return existing == nullptr ? m_head : GetNodeForItem(existing)->GetNext(); });
}

void CXmlCollection::AddBeforeItem(CXmlObjectBase* existing, CXmlObjectBase* item) {
  Insert(item, [=] { return existing == nullptr ? nullptr : GetNodeForItem(existing); });
}

CXmlCollection::CNode* CXmlCollection::GetNodeAtIndex(int index) const {
  if (index < 0 || index >= m_count) ThrowIndexOutOfRange(index, m_count);
  // From the nearest of the head, the tail and where the last look-up ended.
  const int fromTail = m_count - 1 - index;
  const int fromLast = m_lastNode != nullptr ? std::abs(index - m_lastIndex) : m_count;
  if (index < fromLast && index <= fromTail) {
    m_lastNode = m_head;
    m_lastIndex = 0;
  } else if (fromTail < fromLast) {
    m_lastNode = m_tail;
    m_lastIndex = m_count - 1;
  }
  for (; m_lastIndex < index; ++m_lastIndex) {
    m_lastNode = m_lastNode->m_next;
  }
  for (; m_lastIndex > index; --m_lastIndex) {
    m_lastNode = m_lastNode->m_previous;
  }
  return m_lastNode;
}

CXmlCollection::CNode* CXmlCollection::GetNodeForItem(const CXmlObjectBase* item) const {
  const CXmlObjectBase* const wanted = item != nullptr ? item->GetBase() : nullptr;
  CNode* node = m_head;
  while (node != nullptr && node->GetItem()->GetBase() != wanted) {
    node = node->m_next;
  }
  if (node == nullptr) ThrowItemNotFound();
  return node;
}

void CXmlCollection::Remove(int index) {
  RemoveNode(GetNodeAtIndex(index));
}

void CXmlCollection::RemoveNode(CNode* node) {
  if (node == nullptr || node->m_owner != this) ThrowItemNotFound();
  const std::uint64_t changesBefore = m_changes;
  FireOnCollectionRemove(-1);
  // A listener that changed the collection may have removed the node itself.
  if (m_changes != changesBefore && !HoldsNode(node)) return;
  Unlink(node);
  std::unique_ptr<CNode>(node).reset();
  FireOnCollectionRemoveComplete(-1);
  FireOnCollectionChange();
}

bool CXmlCollection::HoldsNode(const CNode* wanted) const {
  const CNode* node = m_head;
  while (node != nullptr && node != wanted) {
    node = node->m_next;
  }
  return node != nullptr;
}

void CXmlCollection::Unlink(CNode* node) {
  if (node == m_lastNode) {  // the next one moves up to its index
    m_lastNode = node->m_next;
  } else if (node != m_tail) {
    m_lastNode = nullptr;
  }
  (node->m_previous != nullptr ? node->m_previous->m_next : m_head) = node->m_next;
  (node->m_next != nullptr ? node->m_next->m_previous : m_tail) = node->m_previous;
  --m_count;
  ++m_changes;
}

void CXmlCollection::Clear() {
  while (m_count > 0) {
    Remove(0);
  }
}

void CXmlCollection::AttributesToXml_Int(CXmlWriter* writer,
                                         const CSerializationContext& context) const {
  for (const CNode* node = m_head; node != nullptr; node = node->m_next) {
    node->GetItem()->GetBase()->AttributesToXml_Int(writer, context);
  }
}

void CXmlCollection::ItemsToXml(CXmlWriter* writer, const char* namespaceUri,
                                const CSerializationContext& context) const {
  for (const CNode* node = m_head; node != nullptr; node = node->m_next) {
    node->GetItem()->GetBase()->ToXml_Int(writer, false, namespaceUri, context, false);
  }
}

}  // namespace ZuXmlLib16
