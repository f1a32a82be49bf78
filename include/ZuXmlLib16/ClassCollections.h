#pragma once

#include <cstdint>
#include <typeinfo>

#include "ZuXmlLib16/ElementInfo.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/XmlCollection.h"

namespace ZuXmlLib16 {

using ZuXmlLib16Data::AbstractClassFactory;
using ZuXmlLib16Data::ClassFactory;
using ZuXmlLib16Data::XmlElementType;

namespace detail {

class NameMatch;

/// What the collections of generated classes do, whatever the class.
class ZUXMLLIB16_API ClassCol : public CXmlCollection {
 public:
  ~ClassCol() override;

  using CXmlCollection::FromXml_Int;
  using CXmlCollection::ToXml_Int;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// Takes elements from current on: those of the collection's name; with an abstract factory those
  /// that it makes an object for; for pseudo elements as long as an object takes something. An item
  /// is in the collection once it was read. Neither bound is looked at.
  CXmlElement* FromXml_Int(CXmlElement* parentElement, CXmlElement* current,
                           const CSerializationContext& context, bool isOptionalChoice) override;

  XmlElementType GetElementType() const { return m_elementType; }
  bool IsAbstract() const { return m_abstractFactory != nullptr; }
  /// An item made by the class factory, not in the collection; null when there is none.
  CSmartPtr<CXmlObjectBase> NewItem() const;

 protected:
  /// @param maximum  -1 for any number.
  ClassCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
           XmlElementType elementType, ClassFactory factory, int classIdentifier);
  ClassCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
           XmlElementType elementType, AbstractClassFactory factory);

  /// @throws CZuInvalidParamException  null, or an item of another name than it has to have.
  void CheckItem(CXmlObjectBase* item) const;

 private:
  /// The object for an element; null when there is none.
  CSmartPtr<CXmlObjectBase> ItemFor(CXmlElement* element, NameMatch& isItem) const;

  XmlElementType m_elementType;
  ClassFactory m_factory = nullptr;
  int m_classIdentifier = 0;
  AbstractClassFactory m_abstractFactory = nullptr;
};

}  // namespace detail

/// Objects of a generated class, or of classes derived from it: a repeated element of a complex
/// type.
/// @tparam T  derived from CXmlGeneratedClass.
template <class T>
class CXmlClassCol : public detail::ClassCol {
 public:
  using Iterator = CIterator<T>;

  /// Items are made by the factory, from the identifier and the name.
  /// @param maximum  -1 for any number.
  CXmlClassCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
               XmlElementType elementType, ClassFactory factory, int classIdentifier)
      : ClassCol(name, namespaceUri, minimum, maximum, elementType, factory, classIdentifier) {
    SetItemTest(IsItem);
  }
  /// Items stand in for an abstract class, each made for the element it is read from.
  CXmlClassCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
               XmlElementType elementType, AbstractClassFactory factory)
      : ClassCol(name, namespaceUri, minimum, maximum, elementType, factory) {
    SetItemTest(IsItem);
  }

  /// Appends an item.
  /// @throws CZuInvalidParamException  null; another element name than the collection's, unless it
  /// stands for an abstract class or a pseudo element.
  CSmartPtr<T> Add(T* item) { return AddAt(GetCount(), item); }
  /// Appends a new item; null, and nothing is added, when there is no class factory.
  CSmartPtr<T> Add() {
    const CSmartPtr<CXmlObjectBase> item = NewItem();
    return item ? Add(dynamic_cast<T*>(item.Get())) : nullptr;
  }
  /// @param index  the item's index afterwards, 0 to GetCount().
  /// @throws CZuInvalidParamException  as Add; "Index out of range"
  CSmartPtr<T> AddAt(int index, T* item) {
    CSmartPtr<T> added(item);
    CheckItem(item);
    AddItemAt(index, item);
    return added;
  }
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  CSmartPtr<T> Item(int index) const { return static_cast<T*>(GetNodeAtIndex(index)->GetItem()); }

  Iterator begin() const { return Iterator(GetHead()); }
  Iterator end() const { return Iterator(nullptr); }

 private:
  static bool IsItem(const CXmlObjectBase& item) {
    return typeid(item) == typeid(T) || dynamic_cast<const T*>(&item) != nullptr;
  }
};

}  // namespace ZuXmlLib16
