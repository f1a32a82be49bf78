#include "ZuXmlLib16/ElementInfo.h"

#include <string_view>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/XmlCollection.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlGeneratedClass.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "ZuXmlLib16/XmlWriter.h"
#include "core/ElementMatches.h"
#include "core/Errors.h"
#include "core/NamespaceWildcard.h"
#include "core/NilAttribute.h"
#include "types/ScratchVariant.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16Data {

using ZuXmlLib16::CXmlAttribute;
using ZuXmlLib16::CZuException;
using ZuXmlLib16::detail::ScratchVariant;
using ZuXmlLib16::detail::VariantAccess;

CElementInfo::CElementInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex)
    : m_name(name), m_namespaceUri(namespaceUri), m_propertyIndex(propertyIndex) {}

CElementInfo::CElementInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                           bool nillable, EnumToText toText, TextToEnum toEnum,
                           CTextRef defaultValue)
    : CElementInfo(name, namespaceUri, propertyIndex) {
  m_nillable = nillable;
  m_enumToText = toText;
  m_textToEnum = toEnum;
  m_defaultValue = defaultValue;
}

CElementInfo::CElementInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                           bool nillable, ItemType itemType, CTextRef format,
                           WhitespaceRule whitespaceRule,
                           const CPrimitiveRestrictions& restrictions, CTextRef defaultValue)
    : m_name(name),
      m_namespaceUri(namespaceUri),
      m_propertyIndex(propertyIndex),
      m_restrictions(restrictions),
      m_itemType(itemType),
      m_format(format),
      m_whitespaceRule(whitespaceRule),
      m_defaultValue(defaultValue),
      m_nillable(nillable),
      m_isPrimitive(true),
      m_isChecked(restrictions.HasFacets() || !ZuXmlLib16::detail::TypeHasFacets(itemType)) {}

CElementInfo::~CElementInfo() = default;

bool CElementInfo::Validate(const CSerializationContext& /*context*/,
                            const CXmlGeneratedClass* /*object*/, bool /*found*/,
                            bool /*mustExist*/) const {
  ZuXmlLib16::ThrowValidateNotImplemented();
}

void CElementInfo::PseudoChildAttributeToXml(const CSerializationContext& /*context*/,
                                             const CXmlGeneratedClass* /*object*/,
                                             CXmlWriter* /*writer*/) const {}

void CElementInfo::AddMatches(const CXmlGeneratedClass* /*object*/,
                              detail::ElementMatches& matches) const {
  matches.AddName(m_name, m_namespaceUri);
}

bool CElementInfo::IsThisElement(const CSerializationContext& context,
                                 const CXmlElement* element) const {
  return ZuXmlLib16::CXmlObjectHelper::DoesElementNameMatch(context, element, m_name,
                                                            m_namespaceUri);
}

void CElementInfo::InvokePropertyGet(CXmlGeneratedClass* object, ZuVariant& value) const {
  ReadProperty(object, value);
}

void CElementInfo::ReadProperty(const CXmlGeneratedClass* object, ZuVariant& value) const {
  try {
    object->ReadProperty(m_propertyIndex, value);
  } catch (const CZuException& cause) {
    ZuXmlLib16::ThrowGetPropertyFailed(m_name, cause);
  }
}

void CElementInfo::InvokePropertySet(CXmlGeneratedClass* object, ZuVariant& value,
                                     const CXmlElement& element) const {
  try {
    object->AccessProperty(m_propertyIndex, false, value);
  } catch (const CZuException& cause) {
    ZuXmlLib16::ThrowSetElementFailed(element.GetXPath(), cause);
  }
}

bool CElementInfo::IsOptionalCollection(const CXmlGeneratedClass* object) const {
  if (!m_isCollection) return false;
  ZuVariant value;
  ReadProperty(object, value);
  const CXmlCollectionBase* const collection = VariantAccess::Collection(value);
  return collection != nullptr && collection->GetMinOccurs() == 0;
}

CXmlElement* CElementInfo::FromXml_Int(CXmlObjectBase* child, CXmlElement* parent,
                                       CXmlElement* current, const CSerializationContext& context,
                                       bool isOptionalChoice) {
  return child->FromXml_Int(parent, current, context, isOptionalChoice);
}

void CElementInfo::AttributesToXml_Int(const CXmlObjectBase* child, CXmlWriter* writer,
                                       const CSerializationContext& context) {
  CXmlObjectBase::AttributesToXml_Int(child, writer, context);
}

bool CElementInfo::ElementToXmlCls(const CSerializationContext& context,
                                   const CXmlGeneratedClass* object, CXmlWriter* writer,
                                   bool isOptionalChoice) const {
  ZuVariant value;
  ReadProperty(object, value);
  const CXmlObjectBase* const child = VariantAccess::Object(value);
  if (child == nullptr) return false;
  child->ToXml_Int(writer, false, m_namespaceUri.c_str(), context, isOptionalChoice);
  return true;
}

bool CElementInfo::ElementToXmlCol(const CSerializationContext& context,
                                   const CXmlGeneratedClass* object, CXmlWriter* writer) const {
  ZuVariant value;
  ReadProperty(object, value);
  const CXmlCollectionBase* const collection = VariantAccess::Collection(value);
  return collection != nullptr && WriteItems(*collection, {context, object, writer});
}

bool CElementInfo::WriteItems(const CXmlCollectionBase& collection,
                              const detail::Writing& out) const {
  using State = CXmlWriter::ContextState;
  if (collection.GetCount() < 1) return false;
  out.writer->SetContextState(State::CollectionPending);
  collection.ToXml_Int(out.writer, false, m_namespaceUri.c_str(), out.context, false);
  out.writer->SetContextState(State::CollectionEnded);
  return true;
}

bool CElementInfo::ElementToXmlPrim(const CSerializationContext& /*context*/,
                                    const CXmlGeneratedClass* object, CXmlWriter* writer) const {
  ScratchVariant value(m_itemType);
  ReadProperty(object, *value);
  if (!value->IsValid()) return false;
  if (value->IsNil()) {
    WriteNil(*writer);
    return true;
  }
  ZuXmlLib16::detail::TextBuffer buffer;
  const std::string_view text = ZuXmlLib16::detail::VariantText(*value, m_format.c_str(), buffer);
  // A default value is right whatever the facets say.
  const bool isDefault = !m_defaultValue.empty() && text == m_defaultValue;
  if (!isDefault && m_isChecked) CheckRestriction(*value);
  WriteText(*writer, text, m_itemType, isDefault);
  return true;
}

bool CElementInfo::ElementToXmlEnum(const CSerializationContext& /*context*/,
                                    const CXmlGeneratedClass* object, CXmlWriter* writer,
                                    EnumToText toText) const {
  ZuVariant value;
  ReadProperty(object, value);
  if (!value.IsValid()) return false;
  if (value.IsNil()) {
    WriteNil(*writer);
    return true;
  }
  const std::string text = toText(static_cast<int>(value.GetI4()));
  WriteText(*writer, text, ItemType::string, !m_defaultValue.empty() && text == m_defaultValue);
  return true;
}

void CElementInfo::ElementFromXmlPrim(const CSerializationContext& context,
                                      CXmlGeneratedClass* object, CXmlElement** current) const {
  const CXmlElement& element = **current;
  ScratchVariant value(m_itemType);
  if (IsNil(context, element)) {
    value->SetNil();
  } else {
    const std::string_view text = element.GetTextView();
    VariantAccess::Parse(*value, text.empty() ? m_defaultValue : text, m_itemType,
                         m_whitespaceRule);
  }
  InvokePropertySet(object, *value, element);
  *current = element.GetNextSiblingElement();
}

void CElementInfo::ElementFromXmlEnum(const CSerializationContext& context,
                                      CXmlGeneratedClass* object, CXmlElement** current) const {
  const CXmlElement& element = **current;
  ZuVariant value;
  if (IsNil(context, element)) {
    value.SetNil();
  } else {
    const std::string_view text = element.GetTextView();
    value.SetI4(m_textToEnum(text.empty() ? m_defaultValue : std::string(text)));
  }
  InvokePropertySet(object, value, element);
  *current = element.GetNextSiblingElement();
}

void CElementInfo::CheckRestriction(const ZuVariant& value) const {
  if (!m_isPrimitive) ZuXmlLib16::ThrowCannotCheckRestriction(value.GetType());
  ZuXmlLib16::CXmlObjectHelper::CheckRestriction(m_name.c_str(), value, m_itemType, m_restrictions);
}

std::string CElementInfo::GetAnyDefaultNamespace(const std::string& restriction,
                                                 const std::string& namespaceUri,
                                                 const std::string& targetNamespace) {
  return ZuXmlLib16::detail::AnyDefaultNamespace(restriction, namespaceUri, targetNamespace);
}

bool CElementInfo::Written(bool written, bool isMandatory) const {
  if (!written && isMandatory) ZuXmlLib16::ThrowMandatoryPropertyIsNull(m_name);
  return written;
}

bool CElementInfo::ValidateFound(bool found, bool mustExist, bool mayBeMissing) const {
  if (found || !mustExist) return found;
  if (!mayBeMissing) ZuXmlLib16::ThrowMissingElement(m_name);
  return true;
}

bool CElementInfo::IsNil(const CSerializationContext& context, const CXmlElement& element) const {
  bool isNil = false;
  for (const CXmlAttribute* const attribute : element.GetAttributes()) {
    if (attribute->IsNilAttribute()) {
      isNil = ZuXmlLib16::detail::ReadNilValue(*attribute);
      if (isNil && !m_nillable) ZuXmlLib16::ThrowNilNotAllowed(element.GetXPath());
    } else if (!context.GetIgnoreUnknownAttributes()) {
      ZuXmlLib16::ThrowUnexpectedAttribute(attribute->GetXPath());
    }
  }
  return isNil;
}

void CElementInfo::WriteNil(CXmlWriter& writer) const {
  writer.WriteStartElement(m_name, m_namespaceUri);
  writer.WriteAttributeNil();
  writer.WriteEndElement();
}

void CElementInfo::WriteText(CXmlWriter& writer, CTextRef text, ItemType type,
                             bool isDefault) const {
  writer.WriteStartElement(m_name, m_namespaceUri);
  writer.WriteString(text, type, isDefault);
  writer.WriteEndElement();
}

}  // namespace ZuXmlLib16Data
