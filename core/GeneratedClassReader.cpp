#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlGeneratedClass.h"
#include "core/ElementMatches.h"
#include "core/Errors.h"
#include "core/GroupSearch.h"
#include "core/NestingLevel.h"
#include "core/NilAttribute.h"
#include "types/ScratchVariant.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16 {

using detail::ScratchVariant;
using detail::VariantAccess;
using ZuXmlLib16Data::XmlElementGroupType;
using ZuXmlLib16Data::detail::ElementMatches;

namespace {

/// A mark for every entry of a table, made without an allocation for tables of usual length.
class Marks {
 public:
  bool operator[](int index) const {
    return index < kFew ? (m_few >> index & 1) != 0
                        : Far(index) < m_many.size() && m_many[Far(index)];
  }
  void Set(int index) {
    if (index < kFew) {
      m_few |= std::uint64_t{1} << index;
    } else {
      if (Far(index) >= m_many.size()) m_many.resize(Far(index) + 1);
      m_many[Far(index)] = true;
    }
  }

 private:
  static constexpr int kFew = 64;
  static std::size_t Far(int index) { return static_cast<std::size_t>(index - kFew); }

  std::uint64_t m_few = 0;
  std::vector<bool> m_many;
};

/// A table that was not supplied is an empty one.
template <class Entry>
Entry* const* Table(Entry* const* entries) {
  static constexpr Entry* kNone = nullptr;
  return entries != nullptr ? entries : &kNone;
}

[[noreturn]] void ThrowLeftover(const CXmlElement& parent, const CXmlElement& element) {
  ThrowUnexpectedElement(parent.GetLocalName(), element.GetLocalName(), parent.GetXPath());
}

}  // namespace

// Reading calls itself for every level of elements; NestingLevel bounds them.
// NOLINTBEGIN(misc-no-recursion)

CXmlElement* CXmlGeneratedClass::FromXml_Int(CXmlElement* parentElement,
                                             CXmlElement* firstChildElement,
                                             const CSerializationContext& context,
                                             bool isOptionalChoice) {
  if (parentElement == nullptr) ThrowPropertyIsNull("element");
  try {
    const detail::NestingLevel level(*parentElement, context);
    const detail::GroupSearch search(*parentElement, context);
    return ReadContent(parentElement, firstChildElement, context, isOptionalChoice);
  } catch (const CZuException& cause) {
    // The innermost class says where it was.
    if (!cause.GetPath().empty()) throw;
    ThrowProcessingFailed(parentElement->GetXPath(), cause);
  }
}

CXmlElement* CXmlGeneratedClass::ReadContent(CXmlElement* parent, CXmlElement* cursor,
                                             const CSerializationContext& context,
                                             bool isOptionalChoice) {
  OnFromXmlStart(parent, cursor, context, isOptionalChoice);
  const CParentElementInfo& classInfo = *GetClassMetaData();
  const XmlElementType elementType = classInfo.GetElementType();
  if (elementType == XmlElementType::Element && ElementName() != parent->GetLocalName()) {
    SetElementName(parent->GetLocalName());
  }
  INillable* const nillable = FindNillable(classInfo);
  // What an earlier document said does not hold for this one.
  if (nillable != nullptr && nillable->IsNil()) nillable->SetNil(false);
  ProcessAttributesFromXml(context, parent, classInfo.HasStrictAttributes());
  if (nillable != nullptr && nillable->IsNil()) return cursor;
  CXmlElement* end = nullptr;
  switch (classInfo.GetGroupType()) {
    case XmlElementGroupType::Sequence:
      end = ProcessElementSeqFromXml(context, parent, cursor, elementType);
      break;
    case XmlElementGroupType::Choice:
      end = ProcessElementChoiceFromXml(context, parent, cursor, elementType, isOptionalChoice);
      break;
    case XmlElementGroupType::All:
      end = ProcessElementAllFromXml(context, parent, cursor, elementType);
      break;
    default:
      ThrowUnknownGroupType();
  }
  ReadText(*parent, classInfo);
  return end;
}

void CXmlGeneratedClass::ReadText(const CXmlElement& element, const CParentElementInfo& classInfo) {
  const ItemType type = classInfo.GetTextItemType();
  if (classInfo.GetTextPropertyIndex() == -1 || type == ItemType::Invalid) return;
  ScratchVariant value(type);
  if (classInfo.KeepsTextRaw()) {
    value->SetString(element.GetTextView());
  } else {
    VariantAccess::Parse(*value, element.GetTextView(), type);
  }
  AccessProperty(classInfo.GetTextPropertyIndex(), false, *value);
}

void CXmlGeneratedClass::ProcessAttributesFromXml(const CSerializationContext& context,
                                                  CXmlElement* element, bool strictAttributes) {
  CAttributeInfo* const* const entries = Table(GetAttributeMetaData());
  const bool isPseudo = GetClassMetaData()->GetElementType() != XmlElementType::Element;
  // A repeated group must not look at all attributes of its parent for every item.
  if (isPseudo && entries[0] == nullptr && !strictAttributes) return;
  Marks found;
  for (CXmlAttribute* const attribute : element->GetAttributes()) {
    if (attribute->IsNamespaceAttribute()) continue;
    if (attribute->IsNilAttribute()) {
      ReadNil(*element, *attribute);
      continue;
    }
    const int index = ReadAttribute(context, *attribute, entries);
    if (index >= 0) {
      found.Set(index);
    } else if (strictAttributes && !context.GetIgnoreUnknownAttributes()) {
      ThrowUnexpectedAttribute(attribute->GetXPath());
    }
  }
  for (int i = 0; entries[i] != nullptr; ++i) {
    entries[i]->Validate(context, found[i]);
  }
}

void CXmlGeneratedClass::ReadNil(const CXmlElement& element, const CXmlAttribute& attribute) {
  // The attribute of a pseudo element's parent is the business of the parent's own class.
  const CParentElementInfo& classInfo = *GetClassMetaData();
  if (classInfo.GetElementType() != XmlElementType::Element) return;
  INillable* const nillable = FindNillable(classInfo);
  if (nillable == nullptr) ThrowNilNotAllowed(element.GetXPath());
  nillable->SetNil(detail::ReadNilValue(attribute));
}

int CXmlGeneratedClass::ReadAttribute(const CSerializationContext& context,
                                      CXmlAttribute& attribute, CAttributeInfo* const* entries) {
  for (int i = 0; entries[i] != nullptr; ++i) {
    if (entries[i]->AttributeFromXml(context, this, &attribute)) return i;
  }
  return -1;
}

bool CXmlGeneratedClass::ReadSequence(const CSerializationContext& context, CXmlElement* parent,
                                      CXmlElement*& cursor, XmlElementType elementType,
                                      int& reached) {
  CElementInfo* const* const entries = Table(GetElementMetaData());
  const char* const targetNamespace = GetClassMetaData()->GetNamespace().c_str();
  for (int i = reached; entries[i] != nullptr;) {
    CElementInfo& entry = *entries[i];
    const CXmlElement* const before = cursor;
    const bool isContent =
        entry.ElementFromXml(context, this, parent, &cursor, targetNamespace, elementType);
    if (isContent) {
      if (cursor != before) reached = entry.IsCollection() ? i : i + 1;
      ++i;
      continue;
    }
    if (!context.GetIgnoreUnknownElements() || cursor == nullptr) return false;
    ElementMatches matches(context);
    entry.AddMatches(this, matches);
    cursor = matches.FirstFrom(cursor->GetNextSiblingElement());
  }
  return true;
}

CXmlElement* CXmlGeneratedClass::ProcessElementSeqFromXml(const CSerializationContext& context,
                                                          CXmlElement* parent, CXmlElement* cursor,
                                                          XmlElementType elementType) {
  CElementInfo* const* const entries = Table(GetElementMetaData());
  if (detail::GroupSearch::IsInVain(entries, cursor)) return cursor;
  CXmlElement* const start = cursor;
  int reached = 0;
  if (!ReadSequence(context, parent, cursor, elementType, reached)) {
    detail::GroupSearch::NoteFailure(entries, start);
    return start;
  }
  if (elementType != XmlElementType::Element || cursor == nullptr) return cursor;
  if (!context.GetIgnoreUnknownElements()) ThrowLeftover(*parent, *cursor);
  while (cursor != nullptr) {
    // The entries that are left stay the same while none of them takes anything.
    ElementMatches matches(context);
    for (int i = reached; entries[i] != nullptr; ++i) {
      entries[i]->AddMatches(this, matches);
    }
    for (const int reachedBefore = reached; cursor != nullptr && reached == reachedBefore;) {
      cursor = matches.FirstFrom(cursor->GetNextSiblingElement());
      if (cursor != nullptr) ReadSequence(context, parent, cursor, elementType, reached);
    }
  }
  return nullptr;
}

CElementInfo* CXmlGeneratedClass::ReadChoice(const CSerializationContext& context,
                                             CXmlElement* parent, CXmlElement*& cursor,
                                             XmlElementType elementType) {
  const char* const targetNamespace = GetClassMetaData()->GetNamespace().c_str();
  for (CElementInfo* const* entry = Table(GetElementMetaData()); *entry != nullptr; ++entry) {
    CXmlElement* tried = cursor;
    if ((*entry)->ElementFromXml(context, this, parent, &tried, targetNamespace, elementType)) {
      cursor = tried;
      return *entry;
    }
  }
  return nullptr;
}

CXmlElement* CXmlGeneratedClass::ProcessElementChoiceFromXml(const CSerializationContext& context,
                                                             CXmlElement* parent,
                                                             CXmlElement* cursor,
                                                             XmlElementType elementType,
                                                             bool isOptionalChoice) {
  const bool isElement = elementType == XmlElementType::Element;
  CElementInfo* chosen = ReadChoice(context, parent, cursor, elementType);
  if (chosen == nullptr && isElement && context.GetIgnoreUnknownElements()) {
    ElementMatches matches(context);
    matches.AddEntriesOf(this);
    while (chosen == nullptr && cursor != nullptr) {
      cursor = matches.FirstFrom(cursor->GetNextSiblingElement());
      if (cursor != nullptr) chosen = ReadChoice(context, parent, cursor, elementType);
    }
  }
  if (chosen == nullptr && !isOptionalChoice) {
    if (isElement && !context.GetIgnoreMissingChoice() && !DoesElementContainOptionalElements()) {
      ThrowNoChoiceFound(parent->GetLocalName(), parent->GetXPath());
    }
    return cursor;
  }
  if (!isElement || cursor == nullptr) return cursor;
  if (!context.GetIgnoreUnknownElements()) ThrowLeftover(*parent, *cursor);
  // What follows can only be more items of the collection that was chosen.
  if (chosen == nullptr || !chosen->IsCollection()) return nullptr;
  ElementMatches matches(context);
  chosen->AddMatches(this, matches);
  const char* const targetNamespace = GetClassMetaData()->GetNamespace().c_str();
  while (cursor != nullptr) {
    cursor = matches.FirstFrom(cursor->GetNextSiblingElement());
    if (cursor != nullptr) {
      chosen->ElementFromXml(context, this, parent, &cursor, targetNamespace, elementType);
    }
  }
  return nullptr;
}

CXmlElement* CXmlGeneratedClass::ProcessElementAllFromXml(const CSerializationContext& context,
                                                          CXmlElement* parent, CXmlElement* cursor,
                                                          XmlElementType elementType) {
  CElementInfo* const* const entries = Table(GetElementMetaData());
  const char* const targetNamespace = GetClassMetaData()->GetNamespace().c_str();
  const bool isElement = elementType == XmlElementType::Element;
  CXmlElement* const start = cursor;
  Marks done;
  for (;;) {
    const CXmlElement* const before = cursor;
    for (int i = 0; entries[i] != nullptr; ++i) {
      if (done[i]) continue;
      if (entries[i]->ElementFromXml(context, this, parent, &cursor, targetNamespace,
                                     elementType)) {
        done.Set(i);
      }
    }
    if (cursor == nullptr) break;
    if (cursor != before) continue;
    if (!isElement || !context.GetIgnoreUnknownElements()) break;
    ElementMatches matches(context);
    for (int i = 0; entries[i] != nullptr; ++i) {
      if (!done[i]) entries[i]->AddMatches(this, matches);
    }
    cursor = matches.FirstFrom(cursor->GetNextSiblingElement());
    if (cursor == nullptr) break;
  }
  for (int i = 0; entries[i] != nullptr; ++i) {
    // Collections check their counts themselves.
    if (entries[i]->IsCollection()) continue;
    if (!entries[i]->Validate(context, this, done[i], isElement)) return start;
  }
  if (isElement && cursor != nullptr) ThrowLeftover(*parent, *cursor);
  return cursor;
}

// NOLINTEND(misc-no-recursion)

}  // namespace ZuXmlLib16
