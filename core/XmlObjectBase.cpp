#include "ZuXmlLib16/XmlObjectBase.h"

#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/XmlCollection.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/Errors.h"
#include "core/ObjectMemory.h"
#include "core/Version.h"

namespace ZuXmlLib16 {
namespace {

void Tell(IEventSink* sink, CXmlCollectionBase* collection, IEventSink::MsgType type, void* data) {
  CXmlObjectBase* const sender = collection != nullptr ? collection->GetBase() : nullptr;
  if (sink != nullptr) sink->OnEvent(sender, type, data);
}

}  // namespace

CXmlObjectBase::CXmlObjectBase() {
  CheckVersionOnce();
}

CXmlObjectBase::~CXmlObjectBase() = default;

// NOLINTNEXTLINE(misc-new-delete-overloads): sized delete only
void* CXmlObjectBase::operator new(std::size_t sizeInBytes) {
  return detail::AllocateObject(sizeInBytes);
}

void CXmlObjectBase::operator delete(void* object, std::size_t sizeInBytes) noexcept {
  detail::FreeObject(object, sizeInBytes);
}

void* CXmlObjectBase::operator new(std::size_t sizeInBytes, std::align_val_t alignment) {
  return ::operator new(sizeInBytes, alignment);
}

void CXmlObjectBase::operator delete(void* object, std::size_t /*sizeInBytes*/,
                                     std::align_val_t alignment) noexcept {
  ::operator delete(object, alignment);
}

void CXmlObjectBase::OnEvent(CXmlObjectBase* /*sender*/, MsgType /*type*/, void* /*data*/) {}

void CXmlObjectBase::AttributesToXml_Int(CXmlWriter* /*writer*/,
                                         const CSerializationContext& /*context*/) const {}

std::int64_t CXmlObjectBase::AddRef() {
  const CZUCriticalSection::CGuard guard(m_lock);
  return ++m_referenceCount;
}

std::int64_t CXmlObjectBase::Release() {
  m_lock.Enter();
  const std::int64_t count = --m_referenceCount;
  m_lock.Leave();
  if (count == 0) delete this;
  return count;
}

void CXmlObjectBase::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                               bool isDocumentRoot, const char* namespaceUri,
                               const CSerializationContext& context, bool isOptionalChoice) {
  if (object != nullptr) {
    object->ToXml_Int(writer, isDocumentRoot, namespaceUri, context, isOptionalChoice);
  }
}

CXmlElement* CXmlObjectBase::FromXml_Int(CXmlObjectBase* object, CXmlElement* parentElement,
                                         CXmlElement* firstChildElement,
                                         const CSerializationContext& context) {
  if (object == nullptr) return firstChildElement;
  return object->FromXml_Int(parentElement, firstChildElement, context, false);
}

void CXmlObjectBase::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                         const CSerializationContext& context) {
  if (object != nullptr) object->AttributesToXml_Int(writer, context);
}

void CXmlObjectBase::FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection) {
  Tell(sink, collection, MsgType::Changed, nullptr);
}

void CXmlObjectBase::FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                              void* item) {
  Tell(sink, collection, MsgType::Added, item);
}

void CXmlObjectBase::FireOnCollectionAddCompleteEvent(IEventSink* sink,
                                                      CXmlCollectionBase* collection, void* item) {
  Tell(sink, collection, MsgType::AddComplete, item);
}

void CXmlObjectBase::FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                                 int index) {
  Tell(sink, collection, MsgType::Removed, index == -1 ? nullptr : &index);
}

void CXmlObjectBase::FireOnCollectionRemoveCompleteEvent(IEventSink* sink,
                                                         CXmlCollectionBase* collection,
                                                         int index) {
  Tell(sink, collection, MsgType::RemoveComplete, index == -1 ? nullptr : &index);
}

void CXmlObjectBase::Choice_SetElementValid(bool valid, const char* name, std::string& selected) {
  if (!valid) {
    selected.clear();
  } else if (selected != CTextRef(name)) {
    ThrowChoiceAlreadySet(selected, false);
  }
}

void CXmlObjectBase::Choice_SelectElement(const char* name, CXmlObjectBase* value,
                                          std::string& selected) {
  const CTextRef wanted(name);
  if (selected == wanted) {
    if (value == nullptr) selected.clear();
  } else if (selected.empty()) {
    selected = wanted;
  } else if (value != nullptr) {
    ThrowChoiceAlreadySet(selected, true);
  }
}

void CXmlObjectBase::Choice_CollectionChanged(const char* name, long count, std::string& selected) {
  const CTextRef wanted(name);
  if (selected == wanted) {
    if (count == 0) selected.clear();
  } else if (selected.empty()) {
    if (count > 0) selected = wanted;
  } else if (count != 0) {
    ThrowChoiceAlreadySet(selected, true);
  }
}

void CXmlObjectBase::Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* parent,
                                            CXmlElement*& cursor, long& itemsRead,
                                            const CSerializationContext& context) {
  if (collection == nullptr || itemsRead > 0) return;
  CXmlElement* const next = collection->FromXml_Int(parent, cursor, context, false);
  if (next == cursor) return;
  cursor = next;
  collection->ValidateCount(context);
  ++itemsRead;
}

void CXmlObjectBase::Throw_IfPropertyIsNull(CXmlObjectBase* value, const char* propertyName) {
  if (value == nullptr) ThrowPropertyIsNull(CTextRef(propertyName).data());
}

void CXmlObjectBase::Throw_IfElementNameDiffers(CXmlObjectBase* value, const char* expectedName) {
  if (value == nullptr) return;
  const CTextRef expected(expectedName);
  const std::string actual = value->GetBase()->GetElementName();
  if (actual != expected) ThrowElementNameDiffers(std::string(expected), actual);
}

bool CXmlObjectBase::TestNamespace(const char* namespaceUri, const char* restriction,
                                   const char* targetNamespace) const {
  return CXmlObjectHelper::TestNamespace(std::string(CTextRef(namespaceUri)),
                                         std::string(CTextRef(restriction)),
                                         std::string(CTextRef(targetNamespace)));
}

bool CXmlObjectBase::IsNamespaceValid(const char* namespaceUri, const char* restriction,
                                      const char* targetNamespace) const {
  return CXmlObjectHelper::IsNamespaceValid(std::string(CTextRef(namespaceUri)),
                                            std::string(CTextRef(restriction)),
                                            std::string(CTextRef(targetNamespace)));
}

bool CXmlObjectBase::DoesElementNameMatch(const CSerializationContext& context,
                                          const CXmlElement* element, const char* name,
                                          const char* namespaceUri) const {
  return CXmlObjectHelper::DoesElementNameMatch(context, element, std::string(CTextRef(name)),
                                                std::string(CTextRef(namespaceUri)));
}

void CXmlObjectBase::ASCIIOnly(bool copyUnchanged) {
  CEncoder::ASCII_ONLY = copyUnchanged;
}

}  // namespace ZuXmlLib16
