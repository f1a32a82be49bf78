#include "ZuXmlLib16/AttributeInfo.h"

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlGeneratedClass.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "ZuXmlLib16/XmlWriter.h"
#include "core/Errors.h"
#include "types/ScratchVariant.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16Data {

using ZuXmlLib16::CAttributeCol;
using ZuXmlLib16::CXmlObjectHelper;
using ZuXmlLib16::CZuException;
using ZuXmlLib16::detail::ScratchVariant;
using ZuXmlLib16::detail::VariantAccess;

CAttributeInfo::CAttributeInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                               bool optional, CTextRef defaultValue)
    : m_name(name),
      m_namespaceUri(namespaceUri),
      m_propertyIndex(propertyIndex),
      m_optional(optional),
      m_defaultValue(defaultValue) {}

CAttributeInfo::~CAttributeInfo() = default;

bool CAttributeInfo::IsThisAttribute(const CSerializationContext& context,
                                     const CXmlAttribute* attribute) const {
  return attribute != nullptr && attribute->GetLocalName() == m_name &&
         (context.GetIgnoreNamespaces() || attribute->GetNamespaceURI() == m_namespaceUri);
}

void CAttributeInfo::InvokePropertyGet(CXmlGeneratedClass* object, ZuVariant& value) const {
  ReadProperty(object, value);
}

void CAttributeInfo::ReadProperty(const CXmlGeneratedClass* object, ZuVariant& value) const {
  try {
    object->ReadProperty(m_propertyIndex, value);
  } catch (const CZuException& cause) {
    ZuXmlLib16::ThrowGetPropertyFailed(m_name, cause);
  }
}

void CAttributeInfo::InvokePropertySet(CXmlGeneratedClass* object, ZuVariant& value,
                                       const CXmlAttribute& attribute) const {
  try {
    object->AccessProperty(m_propertyIndex, false, value);
  } catch (const CZuException& cause) {
    ZuXmlLib16::ThrowSetAttributeFailed(attribute.GetValue(), attribute.GetXPath(), cause);
  }
}

void CAttributeInfo::ToXml_Int(const CXmlCollectionBase* collection, CXmlWriter* writer,
                               bool isDocumentRoot, const char* namespaceUri,
                               const CSerializationContext& context) {
  CXmlObjectBase::ToXml_Int(collection, writer, isDocumentRoot, namespaceUri, context, false);
}

std::string CAttributeInfo::GetTargetNamespace(const CXmlObjectBase* object) {
  return object->GetTargetNamespace();
}

bool CAttributeInfo::TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                                   const std::string& targetNamespace) {
  return CXmlObjectHelper::TestNamespace(namespaceUri, restriction, targetNamespace);
}

bool CAttributeInfo::IsNamespaceValid(const std::string& namespaceUri,
                                      const std::string& restriction,
                                      const std::string& targetNamespace) {
  return CXmlObjectHelper::IsNamespaceValid(namespaceUri, restriction, targetNamespace);
}

bool CAttributeInfo::IsLeftOut(const CSerializationContext& context, CTextRef text) const {
  return m_optional && !m_defaultValue.empty() && context.GetNoOptionalAttributeDefaultOutput() &&
         text == m_defaultValue;
}

void CAttributeInfo::RequireFound(bool found) const {
  if (!found && !m_optional) ZuXmlLib16::ThrowMissingAttribute(m_name);
}

CAttributeInfoEnum::CAttributeInfoEnum(CTextRef name, CTextRef namespaceUri,
                                       std::int32_t propertyIndex, bool optional, EnumToText toText,
                                       TextToEnum toEnum, CTextRef defaultValue)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, defaultValue),
      m_enumToText(toText),
      m_textToEnum(toEnum) {}

void CAttributeInfoEnum::AttributeToXml(const CSerializationContext& context,
                                        const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) const {
  ZuVariant value;
  ReadProperty(object, value);
  // An attribute cannot be nil.
  if (IsOptional() && (!value.IsValid() || value.IsNil())) return;
  const std::string text = m_enumToText(static_cast<int>(value.GetI4()));
  if (IsLeftOut(context, text)) return;
  writer->WriteAttributeString(GetName(), GetNamespace(), text, ItemType::string);
}

bool CAttributeInfoEnum::AttributeFromXml(const CSerializationContext& context,
                                          CXmlGeneratedClass* object, CXmlAttribute* attribute) {
  if (!IsThisAttribute(context, attribute)) return false;
  ZuVariant value;
  value.SetI4(m_textToEnum(std::string(attribute->GetValueView())));
  InvokePropertySet(object, value, *attribute);
  return true;
}

void CAttributeInfoEnum::Validate(const CSerializationContext& /*context*/, bool found) const {
  RequireFound(found);
}

CAttributeInfoPrimitive::CAttributeInfoPrimitive(CTextRef name, CTextRef namespaceUri,
                                                 std::int32_t propertyIndex, bool optional,
                                                 ItemType itemType, CTextRef format,
                                                 WhitespaceRule whitespaceRule,
                                                 const CPrimitiveRestrictions& restrictions,
                                                 CTextRef defaultValue)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, defaultValue),
      m_restrictions(restrictions),
      m_itemType(itemType),
      m_format(format),
      m_whitespaceRule(whitespaceRule),
      m_isChecked(restrictions.HasFacets() || !ZuXmlLib16::detail::TypeHasFacets(itemType)) {}

void CAttributeInfoPrimitive::AttributeToXml(const CSerializationContext& context,
                                             const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
  ScratchVariant value(m_itemType);
  ReadProperty(object, *value);
  // An attribute cannot be nil.
  if (IsOptional() && (!value->IsValid() || value->IsNil())) return;
  ZuXmlLib16::detail::TextBuffer buffer;
  const std::string_view text = ZuXmlLib16::detail::VariantText(*value, m_format.c_str(), buffer);
  if (IsLeftOut(context, text)) return;
  if (m_isChecked) CheckRestriction(*value);
  writer->WriteAttributeString(GetName(), GetNamespace(), text, m_itemType);
}

bool CAttributeInfoPrimitive::AttributeFromXml(const CSerializationContext& /*context*/,
                                               CXmlGeneratedClass* object,
                                               CXmlAttribute* attribute) {
  // Deliberately unlike the enumerated form: the namespace always counts.
  if (attribute == nullptr || attribute->GetLocalName() != GetName() ||
      attribute->GetNamespaceURI() != GetNamespace()) {
    return false;
  }
  ScratchVariant value(m_itemType);
  VariantAccess::Parse(*value, attribute->GetValueView(), m_itemType, m_whitespaceRule);
  InvokePropertySet(object, *value, *attribute);
  return true;
}

void CAttributeInfoPrimitive::Validate(const CSerializationContext& /*context*/, bool found) const {
  RequireFound(found);
}

void CAttributeInfoPrimitive::CheckRestriction(const ZuVariant& value) const {
  CXmlObjectHelper::CheckRestriction(GetName().c_str(), value, m_itemType, m_restrictions);
}

CAttributeInfoAny::CAttributeInfoAny(CTextRef name, CTextRef namespaceUri,
                                     std::int32_t propertyIndex, bool optional,
                                     CTextRef restriction, CTextRef targetNamespace,
                                     CTextRef defaultValue)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, defaultValue),
      m_restriction(restriction),
      m_targetNamespace(targetNamespace) {}

void CAttributeInfoAny::AttributeToXml(const CSerializationContext& context,
                                       const CXmlGeneratedClass* object, CXmlWriter* writer) const {
  ZuVariant value;
  ReadProperty(object, value);
  const std::string targetNamespace = GetTargetNamespace(object);
  ToXml_Int(VariantAccess::Collection(value), writer, false, targetNamespace.c_str(), context);
}

bool CAttributeInfoAny::AttributeFromXml(const CSerializationContext& /*context*/,
                                         CXmlGeneratedClass* object, CXmlAttribute* attribute) {
  if (attribute == nullptr) return false;
  const std::string& namespaceUri = attribute->GetNamespaceURI();
  if (!IsNamespaceValid(namespaceUri, m_restriction, m_targetNamespace)) return false;
  ZuVariant value;
  InvokePropertyGet(object, value);
  auto* const attributes = dynamic_cast<CAttributeCol*>(VariantAccess::Collection(value));
  if (attributes == nullptr) ZuXmlLib16::ThrowNoAttributeCollection();
  const std::string text(attribute->GetValueView());
  attributes->Add(attribute->GetLocalName().c_str(), text.c_str(), namespaceUri.c_str());
  return true;
}

void CAttributeInfoAny::Validate(const CSerializationContext& /*context*/, bool /*found*/) const {}

}  // namespace ZuXmlLib16Data
