#include "ZuXmlLib16/ElementInfoMembers.h"

#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/Variant.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/ElementMatches.h"
#include "core/Errors.h"
#include "core/GroupSearch.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16Data::detail {

using ZuXmlLib16::CElement;
using ZuXmlLib16::CXmlObjectHelper;
using ZuXmlLib16::detail::GroupSearch;
using ZuXmlLib16::detail::VariantAccess;

namespace {

/// A mandatory member of a sequence: unknown elements before it are skipped where that is asked
/// for. Others may have the missing element when the parent is a pseudo element.
template <class TryRead, class ThrowMissing>
bool ReadMandatory(const Reading& in, TryRead tryRead, ThrowMissing throwMissing) {
  while (!tryRead()) {
    if (in.context.GetIgnoreUnknownElements() && in.current != nullptr) {
      in.current = in.current->GetNextSiblingElement();
    } else if (in.parentType != XmlElementType::Element) {
      return false;
    } else if (in.context.GetIgnoreMissingMandatoryElements()) {
      return true;
    } else {
      throwMissing();
    }
  }
  return true;
}

/// How all single members are read. Members of choices and all-groups just tell whether they took
/// something: their class knows better what that means.
template <class TryRead, class ThrowMissing>
bool ReadMember(Place place, const Reading& in, TryRead tryRead, ThrowMissing throwMissing) {
  if (place.group != XmlElementGroupType::Sequence) return tryRead();
  if (place.need == Need::Mnd) return ReadMandatory(in, tryRead, throwMissing);
  tryRead();
  return true;
}

}  // namespace

PrimEntry::PrimEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                     bool nillable, ItemType itemType, CTextRef format,
                     WhitespaceRule whitespaceRule, const CPrimitiveRestrictions& restrictions,
                     CTextRef defaultValue)
    : CElementInfo(name, namespaceUri, propertyIndex, nillable, itemType, format, whitespaceRule,
                   restrictions, defaultValue) {}

bool PrimEntry::Write(Place place, const Writing& out) const {
  return Written(ElementToXmlPrim(out.context, out.object, out.writer), place.need == Need::Mnd);
}

bool PrimEntry::Read(Place place, const Reading& in) const {
  const auto tryRead = [&] {
    if (!IsThisElement(in.context, in.current)) return false;
    ElementFromXmlPrim(in.context, in.object, &in.current);
    return true;
  };
  return ReadMember(place, in, tryRead,
                    [&] { ZuXmlLib16::ThrowMissingChild(GetName(), in.parent->GetXPath()); });
}

EnumEntry::EnumEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                     bool nillable, EnumToText toText, TextToEnum toEnum, CTextRef defaultValue)
    : CElementInfo(name, namespaceUri, propertyIndex, nillable, toText, toEnum, defaultValue) {}

bool EnumEntry::Write(Place place, const Writing& out) const {
  return Written(ElementToXmlEnum(out.context, out.object, out.writer, GetEnumToText()),
                 place.need == Need::Mnd);
}

bool EnumEntry::Read(Place place, const Reading& in) const {
  const auto tryRead = [&] {
    if (!IsThisElement(in.context, in.current)) return false;
    ElementFromXmlEnum(in.context, in.object, &in.current);
    return true;
  };
  return ReadMember(place, in, tryRead,
                    [&] { ZuXmlLib16::ThrowMissingChild(GetName(), in.parent->GetXPath()); });
}

ObjectEntry::ObjectEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                         XmlElementType elementType)
    : CElementInfo(name, namespaceUri, propertyIndex), m_elementType(elementType) {}

void ObjectEntry::PseudoChildAttributeToXml(const CSerializationContext& context,
                                            const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
  if (m_elementType != XmlElementType::Pseudo) return;
  ZuVariant value;
  ReadProperty(object, value);
  AttributesToXml_Int(VariantAccess::Object(value), writer, context);
}

bool ObjectEntry::Write(Place place, const Writing& out) const {
  const bool isChoice = place.group == XmlElementGroupType::Choice;
  return Written(ElementToXmlCls(out.context, out.object, out.writer, isChoice),
                 place.need == Need::Mnd);
}

// Reading calls itself for every level of elements, which the classes bound.
// NOLINTBEGIN(misc-no-recursion)

bool ObjectEntry::ReadObject(Place place, const Reading& in, CXmlObjectBase& child,
                             bool keep) const {
  CXmlElement* const start = in.current;
  const CXmlElement* element = in.parent;
  if (IsPseudo()) {
    in.current = FromXml_Int(&child, in.parent, start, in.context, false);
    if (in.current == start) return false;
  } else {
    element = start;
    FromXml_Int(&child, start, start->GetFirstElement(), in.context,
                place.group == XmlElementGroupType::Choice);
    in.current = start->GetNextSiblingElement();
  }
  if (keep) {
    ZuVariant value;
    value.SetXmlObject(&child);
    InvokePropertySet(in.object, value, *element);
  }
  return true;
}

ClsEntry::ClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                   XmlElementType elementType, ClassFactory factory, int classIdentifier)
    : ClsEntry(name, namespaceUri, propertyIndex, elementType, factory, classIdentifier, false) {}

ClsEntry::ClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                   XmlElementType elementType, ClassFactory factory, int classIdentifier,
                   bool isContentRequired)
    : ObjectEntry(name, namespaceUri, propertyIndex, elementType),
      m_factory(factory),
      m_classIdentifier(classIdentifier),
      m_isContentRequired(isContentRequired) {}

/// Mandatory children are there from the start and read into themselves; an optional one is made
/// for the element and becomes the property's value when it has read it.
class ClsEntry::CChild {
 public:
  CChild(const ClsEntry& entry, const CXmlGeneratedClass* object, Need need) {
    if (need == Need::Mnd) entry.ReadProperty(object, m_value);
    m_object = VariantAccess::Object(m_value);
    if (m_object != nullptr) return;
    m_made = entry.m_factory(entry.m_classIdentifier, entry.GetName().c_str());
    m_object = m_made.Get();
  }

  CXmlObjectBase* Get() const { return m_object; }
  bool IsNew() const { return static_cast<bool>(m_made); }

 private:
  ZuVariant m_value;
  CSmartPtr<CXmlObjectBase> m_made;
  CXmlObjectBase* m_object = nullptr;
};

void ClsEntry::AddMatches(const CXmlGeneratedClass* object, ElementMatches& matches) const {
  if (!IsPseudo()) return CElementInfo::AddMatches(object, matches);
  matches.AddEntriesOf(CChild(*this, object, Need::Mnd).Get());
}

bool ClsEntry::ReadChild(Place place, const Reading& in) const {
  if (!IsPseudo() && !IsThisElement(in.context, in.current)) return false;
  const CChild child(*this, in.object, place.need);
  return child.Get() != nullptr && ReadObject(place, in, *child.Get(), child.IsNew());
}

/// A group that may be empty lets pass what it does not take. Unknown elements before its content
/// are skipped on request; when there is no content behind them, they are not.
bool ClsEntry::ReadMandatoryGroup(Place place, const Reading& in) const {
  const CChild child(*this, in.object, place.need);
  if (child.Get() == nullptr) return false;
  CXmlElement* const start = in.current;
  if (start == nullptr && m_isContentRequired) return false;
  if (ReadObject(place, in, *child.Get(), child.IsNew())) return true;
  if (start == nullptr || !in.context.GetIgnoreUnknownElements()) return false;
  if (GroupSearch::IsInVain(this, start)) return false;
  ElementMatches matches(in.context);
  matches.AddEntriesOf(child.Get());
  while ((in.current = matches.FirstFrom(in.current->GetNextSiblingElement())) != nullptr) {
    if (ReadObject(place, in, *child.Get(), child.IsNew())) return true;
  }
  GroupSearch::NoteFailure(this, start);
  in.current = start;
  return false;
}

bool ClsEntry::Read(Place place, const Reading& in) const {
  const auto throwMissing = [&] {
    ZuXmlLib16::ThrowMissingChild(GetName(), in.parent->GetXPath());
  };
  const bool isMandatoryOfSequence =
      place.group == XmlElementGroupType::Sequence && place.need == Need::Mnd;
  if (!IsPseudo() || !isMandatoryOfSequence) {
    return ReadMember(
        place, in, [&] { return ReadChild(place, in); }, throwMissing);
  }
  if (ReadMandatoryGroup(place, in) || !m_isContentRequired) return true;
  if (in.parentType != XmlElementType::Element) return false;
  if (!in.context.GetIgnoreMissingMandatoryElements()) throwMissing();
  return true;
}

MndClsEntry::MndClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                         XmlElementType elementType, ClassFactory factory, int classIdentifier,
                         bool isContentRequired)
    : ClsEntry(name, namespaceUri, propertyIndex, elementType, factory, classIdentifier,
               isContentRequired) {}

AbsClsEntry::AbsClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                         XmlElementType elementType, AbstractClassFactory factory)
    : ObjectEntry(name, namespaceUri, propertyIndex, elementType), m_factory(factory) {}

void AbsClsEntry::AddMatches(const CXmlGeneratedClass* /*object*/, ElementMatches& matches) const {
  matches.AddEverything();
}

bool AbsClsEntry::Read(Place place, const Reading& in) const {
  const auto tryRead = [&] {
    if (in.current == nullptr) return false;
    const CSmartPtr<CXmlObjectBase> child = m_factory(in.current);
    return child && ReadObject(place, in, *child, true);
  };
  return ReadMember(place, in, tryRead, [&] {
    ZuXmlLib16::ThrowMissingSubstitution(GetName(), in.parent->GetXPath());
  });
}

UntpdEntry::UntpdEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                       CTextRef restriction, CTextRef targetNamespace)
    : CElementInfo(name, namespaceUri, propertyIndex),
      m_restriction(restriction),
      m_targetNamespace(targetNamespace) {}

void UntpdEntry::AddMatches(const CXmlGeneratedClass* /*object*/, ElementMatches& matches) const {
  matches.AddEverything();
}

bool UntpdEntry::IsNameAllowed(const CXmlElement& element) const {
  return GetName() == "AnyElement" || GetName() == element.GetLocalName();
}

bool UntpdEntry::Write(Place place, const Writing& out) const {
  const bool isChoice = place.group == XmlElementGroupType::Choice;
  ZuVariant value;
  ReadProperty(out.object, value);
  const CXmlObjectBase* const element = VariantAccess::Object(value);
  if (element != nullptr) {
    const std::string namespaceUri =
        GetAnyDefaultNamespace(m_restriction, GetNamespace(), m_targetNamespace);
    element->ToXml_Int(out.writer, false, namespaceUri.c_str(), out.context, isChoice);
  }
  return Written(element != nullptr, place.need == Need::Mnd);
}

bool UntpdEntry::Read(Place place, const Reading& in) const {
  const auto tryRead = [&] {
    CXmlElement* const element = in.current;
    if (element == nullptr || !IsNameAllowed(*element)) return false;
    ZuVariant value;
    ReadProperty(in.object, value);
    auto* untyped = dynamic_cast<CElement*>(VariantAccess::Object(value));
    const bool isNew = untyped == nullptr;
    if (isNew) {
      const std::string& namespaceUri = element->GetNamespaceURI();
      if (!CXmlObjectHelper::IsNamespaceValid(namespaceUri, m_restriction, m_targetNamespace)) {
        return false;
      }
      untyped = new CElement(element->GetLocalName().c_str(), namespaceUri.c_str(),
                             m_restriction.c_str(), m_targetNamespace.c_str());
      value.SetXmlObject(untyped);
    }
    in.current = FromXml_Int(untyped, element, element->GetFirstElement(), in.context, false);
    if (in.current == element) return false;
    if (isNew) InvokePropertySet(in.object, value, *element);
    return true;
  };
  return ReadMember(place, in, tryRead, [&] {
    const std::string path = in.parent->GetXPath();
    const bool isNamespaceWrong = in.current != nullptr && IsNameAllowed(*in.current);
    if (isNamespaceWrong) ZuXmlLib16::ThrowMissingFromNamespace(m_restriction, path);
    ZuXmlLib16::ThrowMissingChild(GetName(), path);
  });
}

// NOLINTEND(misc-no-recursion)

}  // namespace ZuXmlLib16Data::detail
