#include "ZuXmlLib16/ClassCollections.h"

#include <string>
#include <utility>

#include "ZuXmlLib16/XmlDocument.h"
#include "core/NameMatch.h"

namespace ZuXmlLib16::detail {

ClassCol::ClassCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
                   XmlElementType elementType, ClassFactory factory, int classIdentifier)
    : CXmlCollection(name, namespaceUri, minimum, maximum),
      m_elementType(elementType),
      m_factory(factory),
      m_classIdentifier(classIdentifier) {}

ClassCol::ClassCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
                   XmlElementType elementType, AbstractClassFactory factory)
    : CXmlCollection(name, namespaceUri, minimum, maximum),
      m_elementType(elementType),
      m_abstractFactory(factory) {}

ClassCol::~ClassCol() = default;

void ClassCol::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/, const char* namespaceUri,
                         const CSerializationContext& context, bool /*isOptionalChoice*/) const {
  ItemsToXml(writer, namespaceUri, context);
}

CSmartPtr<CXmlObjectBase> ClassCol::NewItem() const {
  return m_factory != nullptr ? m_factory(m_classIdentifier, GetName().c_str()) : nullptr;
}

CSmartPtr<CXmlObjectBase> ClassCol::ItemFor(CXmlElement* element, NameMatch& isItem) const {
  if (IsAbstract()) return m_abstractFactory(element);
  return m_elementType != XmlElementType::Element || isItem(element) ? NewItem() : nullptr;
}

// Calls itself for every level of elements, which the classes bound.
// NOLINTNEXTLINE(misc-no-recursion)
CXmlElement* ClassCol::FromXml_Int(CXmlElement* parentElement, CXmlElement* current,
                                   const CSerializationContext& context,
                                   bool /*isOptionalChoice*/) {
  NameMatch isItem(context, GetName(), NamespaceUri());
  while (current != nullptr) {
    CSmartPtr<CXmlObjectBase> item = ItemFor(current, isItem);
    if (!item) break;
    if (m_elementType == XmlElementType::Element) {
      item->FromXml_Int(current, current->GetFirstElement(), context, false);
      current = current->GetNextSiblingElement();
    } else {
      CXmlElement* const end = item->FromXml_Int(parentElement, current, context, false);
      if (end == current) break;
      current = end;
    }
    Append(std::move(item));
  }
  return current;
}

void ClassCol::CheckItem(CXmlObjectBase* item) const {
  Throw_IfPropertyIsNull(item, "item");
  if (m_elementType == XmlElementType::Element && !IsAbstract()) {
    Throw_IfElementNameDiffers(item, GetName().c_str());
  }
}

}  // namespace ZuXmlLib16::detail
