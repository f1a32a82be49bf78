#include <algorithm>
#include <atomic>
#include <string>
#include <typeinfo>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/XmlGeneratedClass.h"
#include "ZuXmlLib16/XmlTextWriter.h"
#include "ZuXmlLib16/XmlWriter.h"
#include "core/Errors.h"
#include "core/RootOptions.h"
#include "types/ScratchVariant.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16 {

using ZuXmlLib16Data::XmlElementGroupType;

CXmlGeneratedClass::CXmlGeneratedClass() = default;

CXmlGeneratedClass::~CXmlGeneratedClass() = default;

std::string CXmlGeneratedClass::GetTargetNamespace() const {
  return GetClassMetaData()->GetNamespace();
}

std::string CXmlGeneratedClass::GetNamespace() const {
  return GetClassMetaData()->GetNamespace();
}

void CXmlGeneratedClass::ReadProperty(int propertyIndex, ZuVariant& value) const {
  const_cast<CXmlGeneratedClass*>(this)->AccessProperty(propertyIndex, true, value);
}

int CXmlGeneratedClass::GetClassElementInfoCount() const {
  CElementInfo* const* const entries = GetElementMetaData();
  int count = 0;
  while (entries != nullptr && entries[count] != nullptr) {
    ++count;
  }
  return count;
}

bool CXmlGeneratedClass::IsElementInList(const CSerializationContext& context,
                                         CXmlElement* element) const {
  CElementInfo* const* const entries = GetElementMetaData();
  return std::any_of(entries, entries + GetClassElementInfoCount(), [&](const CElementInfo* entry) {
    return entry->IsThisElement(context, element);
  });
}

bool CXmlGeneratedClass::DoesElementContainOptionalElements() const {
  CElementInfo* const* const entries = GetElementMetaData();
  return std::any_of(
      entries, entries + GetClassElementInfoCount(),
      [this](const CElementInfo* entry) { return entry->IsOptionalCollection(this); });
}

const std::string& CXmlGeneratedClass::NameToWrite() const {
  return ElementName().empty() ? GetClassMetaData()->GetElementName() : ElementName();
}

INillable* CXmlGeneratedClass::FindNillable(const CParentElementInfo& classInfo) const {
  // Objects of one class answer alike; asking each of them would cost more than its members do.
  std::atomic<const std::type_info*>& notNillable = classInfo.m_notNillable;
  const std::type_info& type = typeid(*this);
  if (notNillable.load(std::memory_order_relaxed) == &type) return nullptr;
  auto* const nillable = dynamic_cast<INillable*>(const_cast<CXmlGeneratedClass*>(this));
  if (nillable == nullptr) notNillable.store(&type, std::memory_order_relaxed);
  return nillable;
}

// Writing calls itself for every level of objects, as deep as the program nests those.
// NOLINTBEGIN(misc-no-recursion)

void CXmlGeneratedClass::ToXml_Int(CXmlWriter* writer, bool isDocumentRoot,
                                   const char* namespaceUri, const CSerializationContext& context,
                                   bool isOptionalChoice) const {
  if (writer == nullptr) ThrowPropertyIsNull("writer");
  try {
    const CParentElementInfo& classInfo = *GetClassMetaData();
    const bool isPseudo = classInfo.GetElementType() != XmlElementType::Element;
    if (isPseudo && !isDocumentRoot) {
      WriteContent(*writer, classInfo, context, isOptionalChoice);
    } else {
      WriteElement(*writer, classInfo, isDocumentRoot, namespaceUri, context, isOptionalChoice);
    }
  } catch (const CZuException& cause) {
    if (!cause.GetPath().empty()) throw;
    ThrowConversionFailed(NameToWrite(), cause);
  }
}

void CXmlGeneratedClass::WriteElement(CXmlWriter& writer, const CParentElementInfo& classInfo,
                                      bool isDocumentRoot, const char* namespaceUri,
                                      const CSerializationContext& context,
                                      bool isOptionalChoice) const {
  if (isDocumentRoot) detail::WriteBeforeRoot(writer, context);
  writer.WriteStartElement(NameToWrite(), namespaceUri);
  if (isDocumentRoot) detail::WriteRootAttributes(writer, context);
  AttributesToXml_Int(&writer, context);
  const INillable* const nillable = FindNillable(classInfo);
  if (nillable != nullptr && nillable->IsNil()) {
    // The attribute of an empty element: no schema before it.
    writer.WriteAttributeNil();
  } else {
    if (isDocumentRoot && !context.GetInLineSchema().empty()) {
      WriteSchema(writer, context.GetInLineSchema());
    }
    WriteContent(writer, classInfo, context, isOptionalChoice);
  }
  writer.WriteEndElement();
}

void CXmlGeneratedClass::WriteSchema(CXmlWriter& writer, const std::string& schema) {
  // The text writer does not close the start tag by itself.
  if (auto* const textWriter = dynamic_cast<CXmlTextWriter*>(&writer)) textWriter->CloseParentElm();
  writer.WriteInlineSchema(schema);
}

void CXmlGeneratedClass::WriteContent(CXmlWriter& writer, const CParentElementInfo& classInfo,
                                      const CSerializationContext& context,
                                      bool isOptionalChoice) const {
  CElementInfo* const* const elements = GetElementMetaData();
  switch (classInfo.GetGroupType()) {
    case XmlElementGroupType::Sequence:
      ProcessElementSeqToXml(context, elements, &writer);
      break;
    case XmlElementGroupType::Choice:
      ProcessElementChoiceToXml(context, elements, &writer, isOptionalChoice);
      break;
    case XmlElementGroupType::All:
      ProcessElementAllToXml(context, elements, &writer);
      break;
    default:
      ThrowUnknownXmlGroupType();
  }
  WriteText(writer, classInfo);
}

void CXmlGeneratedClass::WriteText(CXmlWriter& writer, const CParentElementInfo& classInfo) const {
  const ItemType type = classInfo.GetTextItemType();
  if (classInfo.GetTextPropertyIndex() == -1 || type == ItemType::Invalid) return;
  detail::ScratchVariant value(type);
  ReadProperty(classInfo.GetTextPropertyIndex(), *value);
  if (!value->IsValid() || value->IsNil()) return;
  detail::TextBuffer buffer;
  writer.WriteString(detail::VariantText(*value, "", buffer), type, false);
}

void CXmlGeneratedClass::ProcessElementSeqToXml(const CSerializationContext& context,
                                                CElementInfo* const* elements,
                                                CXmlWriter* writer) const {
  if (elements == nullptr) return;
  for (; *elements != nullptr; ++elements) {
    (*elements)->ElementToXml(context, this, writer);
  }
}

void CXmlGeneratedClass::ProcessElementChoiceToXml(const CSerializationContext& context,
                                                   CElementInfo* const* elements,
                                                   CXmlWriter* writer,
                                                   bool isOptionalChoice) const {
  for (CElementInfo* const* entry = elements; entry != nullptr && *entry != nullptr; ++entry) {
    if ((*entry)->ElementToXml(context, this, writer)) return;
  }
  if (isOptionalChoice || context.GetIgnoreMissingChoice() ||
      DoesElementContainOptionalElements()) {
    return;
  }
  ThrowNoChoiceSet();
}

void CXmlGeneratedClass::ProcessElementAllToXml(const CSerializationContext& context,
                                                CElementInfo* const* elements,
                                                CXmlWriter* writer) const {
  ProcessElementSeqToXml(context, elements, writer);
}

void CXmlGeneratedClass::AttributesToXml_Int(CXmlWriter* writer,
                                             const CSerializationContext& context) const {
  WriteTypeAttribute(*writer, context);
  try {
    ProcessAttributesToXml(context, GetElementMetaData(), GetAttributeMetaData(), writer);
  } catch (const CZuException& cause) {
    ThrowAttributesFailed(cause);
  }
}

void CXmlGeneratedClass::WriteTypeAttribute(CXmlWriter& writer,
                                            const CSerializationContext& context) const {
  const CParentElementInfo& classInfo = *GetClassMetaData();
  // A pseudo element would write it into the tag of its parent.
  if (!context.GetWriteTypeAttribute() || !classInfo.WritesType() ||
      classInfo.GetElementType() != XmlElementType::Element ||
      NameToWrite() == classInfo.GetElementName()) {
    return;
  }
  writer.WriteAttributeType(classInfo.GetNamespace(), classInfo.GetElementName(), ItemType::string);
}

void CXmlGeneratedClass::ProcessAttributesToXml(const CSerializationContext& context,
                                                CElementInfo* const* elements,
                                                CAttributeInfo* const* attributes,
                                                CXmlWriter* writer) const {
  for (CAttributeInfo* const* entry = attributes; entry != nullptr && *entry != nullptr; ++entry) {
    (*entry)->AttributeToXml(context, this, writer);
  }
  for (CElementInfo* const* entry = elements; entry != nullptr && *entry != nullptr; ++entry) {
    (*entry)->PseudoChildAttributeToXml(context, this, writer);
  }
}

// NOLINTEND(misc-no-recursion)

void CXmlGeneratedClass::CleanMetaData(CParentElementInfo*& classInfo, CElementInfo**& elements,
                                       CAttributeInfo**& attributes) {
  for (CElementInfo** entry = elements; entry != nullptr && *entry != nullptr; ++entry) {
    delete *entry;
  }
  for (CAttributeInfo** entry = attributes; entry != nullptr && *entry != nullptr; ++entry) {
    delete *entry;
  }
  delete classInfo;
  delete[] elements;
  delete[] attributes;
  classInfo = nullptr;
  elements = nullptr;
  attributes = nullptr;
}

namespace {

template <class Entry>
Entry** NewTable(std::initializer_list<Entry*> entries) {
  Entry** const table = new Entry*[entries.size() + 1];
  *std::copy(entries.begin(), entries.end(), table) = nullptr;
  return table;
}

}  // namespace

CClassMetaData::CClassMetaData(CParentElementInfo* classInfo,
                               std::initializer_list<CElementInfo*> elements,
                               std::initializer_list<CAttributeInfo*> attributes)
    : m_classInfo(classInfo), m_elements(NewTable(elements)), m_attributes(NewTable(attributes)) {}

CClassMetaData::~CClassMetaData() {
  CXmlGeneratedClass::CleanMetaData(m_classInfo, m_elements, m_attributes);
}

}  // namespace ZuXmlLib16
