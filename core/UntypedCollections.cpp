#include "ZuXmlLib16/UntypedCollections.h"

#include <typeinfo>
#include <utility>

#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/Errors.h"
#include "core/NamespaceWildcard.h"

namespace ZuXmlLib16 {
namespace {

using detail::NamespaceScope;
using detail::NamespaceScopePtr;

NamespaceScopePtr MakeScope(CTextRef namespaceUri, CTextRef restriction, CTextRef targetNamespace) {
  return std::make_shared<NamespaceScope>(NamespaceScope{
      std::string(namespaceUri), std::string(restriction), std::string(targetNamespace)});
}

template <class T>
bool Is(const CXmlObjectBase& item) {
  return typeid(item) == typeid(T) || dynamic_cast<const T*>(&item) != nullptr;
}

/// Namespace of new elements under a restriction.
std::string NewElementNamespace(CTextRef restriction, CTextRef targetNamespace) {
  if (restriction.substr(0, 2) != "##")
    return std::string(restriction.substr(0, restriction.find(' ')));
  return detail::AnyDefaultNamespace(std::string(restriction), "", std::string(targetNamespace));
}

bool IsAllowed(const NamespaceScope& scope, const std::string& namespaceUri) {
  return CXmlObjectHelper::IsNamespaceValid(namespaceUri, scope.restriction, scope.targetNamespace);
}

}  // namespace

NamespaceScopePtr detail::InNamespace(const NamespaceScopePtr& scope,
                                      const std::string& namespaceUri) {
  if (scope->namespaceUri == namespaceUri) return scope;
  return MakeScope(namespaceUri, scope->restriction, scope->targetNamespace);
}

CElementCol::CElementCol(CTextRef name, CTextRef restriction, CTextRef targetNamespace,
                         std::int32_t minimum, std::int32_t maximum)
    : CElementCol(name, NewElementNamespace(restriction, targetNamespace), restriction,
                  targetNamespace, minimum, maximum) {}

CElementCol::CElementCol(CTextRef name, CTextRef namespaceUri, CTextRef restriction,
                         CTextRef targetNamespace, std::int32_t minimum, std::int32_t maximum)
    : CXmlCollection(name, "", minimum, maximum),
      m_scope(MakeScope(namespaceUri, restriction, targetNamespace)) {
  SetItemTest(Is<CElement>);
}

CElementCol::CElementCol(NamespaceScopePtr scope) : m_scope(std::move(scope)) {
  SetItemTest(Is<CElement>);
}

CElementCol::~CElementCol() = default;

void CElementCol::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/, const char* namespaceUri,
                            const CSerializationContext& context, bool /*isOptionalChoice*/) const {
  ItemsToXml(writer, namespaceUri, context);
}

template <class Make>
CXmlElement* CElementCol::ReadItems(CXmlElement* current, const CSerializationContext& context,
                                    Make make) {
  while (current != nullptr) {
    CSmartPtr<CElement> item = make(*current);
    if (!item) return current;
    CXmlElement* const next =
        item->FromXml_Int(current, current->GetFirstElement(), context, false);
    if (next == current) return current;
    Append(std::move(item));
    current = next;
  }
  return nullptr;
}

CXmlElement* CElementCol::FromXml_Int(CXmlElement* /*parentElement*/, CXmlElement* current,
                                      const CSerializationContext& context,
                                      bool /*isOptionalChoice*/) {
  NamespaceScopePtr scope = m_scope;
  return ReadItems(current, context, [&](const CXmlElement& element) -> CSmartPtr<CElement> {
    const std::string& namespaceUri = element.GetNamespaceURI();
    if (!IsAllowed(*m_scope, namespaceUri)) return nullptr;
    scope = detail::InNamespace(scope, namespaceUri);
    return new CElement(scope);
  });
}

CXmlElement* CElementCol::FromXmlLockElementName_Int(const std::string& name,
                                                     const std::string& namespaceUri,
                                                     CXmlElement* /*parentElement*/,
                                                     CXmlElement* current,
                                                     const CSerializationContext& context) {
  const NamespaceScopePtr scope = MakeScope(namespaceUri, "##any", m_scope->targetNamespace);
  return ReadItems(current, context, [&](const CXmlElement& element) -> CSmartPtr<CElement> {
    if (element.GetLocalName() != name || element.GetNamespaceURI() != namespaceUri) return nullptr;
    CXmlObjectHelper::TestNamespace(namespaceUri, m_scope->restriction, m_scope->targetNamespace);
    return new CElement(scope);
  });
}

CSmartPtr<CElement> CElementCol::Add(CElement* element) {
  Throw_IfPropertyIsNull(element, "element");
  CSmartPtr<CElement> item(element);
  CXmlObjectHelper::TestNamespace(item->GetNamespace(), m_scope->restriction,
                                  m_scope->targetNamespace);
  Append(item);
  return item;
}

CSmartPtr<CElement> CElementCol::Add(const char* name, const char* namespaceUri) {
  return Add(new CElement(name, namespaceUri, m_scope->restriction.c_str(),
                          m_scope->targetNamespace.c_str()));
}

CSmartPtr<CElement> CElementCol::Add(const char* name) {
  if (m_scope->namespaceUri.empty()) ThrowCollectionHasNoNamespace();
  if (name == nullptr) ThrowMustHaveValue("Element Name");
  CSmartPtr<CElement> element(new CElement(m_scope));
  element->SetElementName(name);
  Append(element);
  return element;
}

CSmartPtr<CElement> CElementCol::Item(int index) const {
  return static_cast<CElement*>(GetNodeAtIndex(index)->GetItem());
}

CSmartPtr<CElementCol> CElementCol::Clone() const {
  CSmartPtr<CElementCol> copy(new CElementCol(GetName(), m_scope->namespaceUri,
                                              m_scope->restriction, m_scope->targetNamespace,
                                              GetMinOccurs(), GetMaxOccurs()));
  for (const CElement* element : *this) {
    copy->Append(element->Clone());
  }
  return copy;
}

void CElementCol::SetNamespaceRestrictions(CTextRef restriction, CTextRef targetNamespace) {
  m_scope = MakeScope(m_scope->namespaceUri, restriction, targetNamespace);
}

CAttributeCol::CAttributeCol(CTextRef namespaceUri, CTextRef restriction, CTextRef targetNamespace)
    : CXmlCollection("", namespaceUri, 0, -1),
      m_restriction(restriction),
      m_targetNamespace(targetNamespace) {
  SetItemTest(Is<CAttribute>);
}

CAttributeCol::~CAttributeCol() = default;

void CAttributeCol::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/, const char* namespaceUri,
                              const CSerializationContext& context,
                              bool /*isOptionalChoice*/) const {
  ItemsToXml(writer, namespaceUri, context);
}

CXmlElement* CAttributeCol::FromXml_Int(CXmlElement* element, CXmlElement* current,
                                        const CSerializationContext& /*context*/,
                                        bool /*isOptionalChoice*/) {
  if (element != nullptr) ReadAttributes(*element, true);
  return current;
}

void CAttributeCol::ReadAttributes(const CXmlElement& element, bool isTested) {
  for (const CXmlAttribute* attribute : element.GetAttributes()) {
    const std::string& namespaceUri = attribute->GetNamespaceURI();
    if (isTested &&
        !CXmlObjectHelper::IsNamespaceValid(namespaceUri, m_restriction, m_targetNamespace)) {
      ThrowInappropriateAttribute(attribute->GetLocalName(), element.GetXPath());
    }
    Append(new CAttribute(attribute->GetLocalName(), attribute->GetValueView(), namespaceUri));
  }
}

CSmartPtr<CAttribute> CAttributeCol::Add(CAttribute* attribute) {
  CSmartPtr<CAttribute> item(attribute);
  Append(item);
  return item;
}

CSmartPtr<CAttribute> CAttributeCol::Add(const char* name) {
  return Add(name, "");
}

CSmartPtr<CAttribute> CAttributeCol::Add(const char* name, const char* value) {
  return Add(new CAttribute(name, value, ""));
}

CSmartPtr<CAttribute> CAttributeCol::Add(const char* name, const char* value,
                                         const char* namespaceUri) {
  const CTextRef given(namespaceUri);
  if (!given.empty()) {
    CXmlObjectHelper::TestNamespace(std::string(given), m_restriction, m_targetNamespace);
  }
  return Add(new CAttribute(name, value, given));
}

CSmartPtr<CAttribute> CAttributeCol::Item(int index) const {
  return static_cast<CAttribute*>(GetNodeAtIndex(index)->GetItem());
}

CSmartPtr<CAttributeCol> CAttributeCol::Clone() const {
  CSmartPtr<CAttributeCol> copy(
      new CAttributeCol(CXmlCollection::GetNamespace(), m_restriction, m_targetNamespace));
  for (const CAttribute* attribute : *this) {
    copy->Append(attribute->Clone());
  }
  return copy;
}

void CAttributeCol::SetNamespaceRestrictions(CTextRef restriction, CTextRef targetNamespace) {
  m_restriction = restriction;
  m_targetNamespace = targetNamespace;
}

}  // namespace ZuXmlLib16
