#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/ElementInfo.h"
#include "ZuXmlLib16/Export.h"

// Entries of single elements. A name is made of group, content and cardinality:
// - Seq, Choice, All: the group that the element is a member of. Members of a choice are all Opt.
// - Prim, Enum: a primitive or enumerated simple type; Cls: a class; AbsCls: whatever class stands
//   in for an abstract one; Untpd: a wildcard (xs:any), held as a CElement.
// - Mnd, Opt: once, or at most once.
// The content classes hold the rules; group and cardinality reach them as a Place.

namespace ZuXmlLib16Data {
namespace detail {

enum class Need { Mnd, Opt };

/// The outer words of a class name.
struct Place {
  XmlElementGroupType group;
  Need need;
};

class ZUXMLLIB16_API PrimEntry : public CElementInfo {
 public:
  /// @param nillable  whether xsi:nil is allowed.
  /// @param format  see ZuVariant::ToString.
  /// @param restrictions  tested when a value is written that is not the default.
  /// @param defaultValue  the value of an empty element, "" for none.
  PrimEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, bool nillable,
            ItemType itemType, CTextRef format, WhitespaceRule whitespaceRule,
            const CPrimitiveRestrictions& restrictions, CTextRef defaultValue);

 protected:
  bool Write(Place place, const Writing& out) const;
  bool Read(Place place, const Reading& in) const;
  bool MayBeMissing() const { return false; }
};

class ZUXMLLIB16_API EnumEntry : public CElementInfo {
 public:
  /// Arguments as above.
  EnumEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, bool nillable,
            EnumToText toText, TextToEnum toEnum, CTextRef defaultValue);

 protected:
  bool Write(Place place, const Writing& out) const;
  bool Read(Place place, const Reading& in) const;
  bool MayBeMissing() const { return false; }
};

/// What the members with a class share: the attributes of pseudo elements.
class ZUXMLLIB16_API ObjectEntry : public CElementInfo {
 public:
  void PseudoChildAttributeToXml(const CSerializationContext& context,
                                 const CXmlGeneratedClass* object,
                                 CXmlWriter* writer) const override;

 protected:
  ObjectEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
              XmlElementType elementType);

  bool Write(Place place, const Writing& out) const;
  /// Has the object read the element at current, or from there on when it is a pseudo element.
  /// @param keep  whether it becomes the value of the property when it took something.
  /// @return whether it did.
  bool ReadObject(Place place, const Reading& in, CXmlObjectBase& child, bool keep) const;
  bool IsPseudo() const { return m_elementType != XmlElementType::Element; }

 private:
  XmlElementType m_elementType;
};

class ZUXMLLIB16_API ClsEntry : public ObjectEntry {
 public:
  /// @param classIdentifier  handed to the factory with the name.
  ClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
           XmlElementType elementType, ClassFactory factory, int classIdentifier);

  void AddMatches(const CXmlGeneratedClass* object, ElementMatches& matches) const override;

 protected:
  ClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
           XmlElementType elementType, ClassFactory factory, int classIdentifier,
           bool isContentRequired);

  bool Read(Place place, const Reading& in) const;
  /// A real element may: it passes as it was made. Meant to differ from the other members.
  bool MayBeMissing() const { return !IsPseudo() && !m_isContentRequired; }

 private:
  /// A child as the property has it, or a new one.
  class CChild;

  bool ReadChild(Place place, const Reading& in) const;
  bool ReadMandatoryGroup(Place place, const Reading& in) const;

  ClassFactory m_factory;
  int m_classIdentifier;
  bool m_isContentRequired;
};

class ZUXMLLIB16_API MndClsEntry : public ClsEntry {
 public:
  /// @param isContentRequired  whether a pseudo element has to take something.
  MndClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
              XmlElementType elementType, ClassFactory factory, int classIdentifier,
              bool isContentRequired);
};

class ZUXMLLIB16_API AbsClsEntry : public ObjectEntry {
 public:
  AbsClsEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
              XmlElementType elementType, AbstractClassFactory factory);

  void AddMatches(const CXmlGeneratedClass* object, ElementMatches& matches) const override;

 protected:
  bool Read(Place place, const Reading& in) const;
  bool MayBeMissing() const { return false; }

 private:
  AbstractClassFactory m_factory;
};

class ZUXMLLIB16_API UntpdEntry : public CElementInfo {
 public:
  /// @param name  "AnyElement" takes elements of any name.
  /// @param restriction  the namespaces that are allowed, see CXmlObjectHelper::IsNamespaceValid.
  /// @param targetNamespace  what "##targetNamespace" and "##other" are judged against.
  UntpdEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, CTextRef restriction,
             CTextRef targetNamespace);

  void AddMatches(const CXmlGeneratedClass* object, ElementMatches& matches) const override;

 protected:
  bool Write(Place place, const Writing& out) const;
  bool Read(Place place, const Reading& in) const;
  bool MayBeMissing() const { return false; }

 private:
  bool IsNameAllowed(const CXmlElement& element) const;

  std::string m_restriction;
  std::string m_targetNamespace;
};

/// Joins a content with a group and a cardinality.
template <XmlElementGroupType group, class Entry, Need need>
class Member : public Entry {
 public:
  using Entry::Entry;

  bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                    CXmlWriter* writer) const override {
    return Entry::Write({group, need}, {context, object, writer});
  }
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                      CXmlElement* parent, CXmlElement** current, const char* /*targetNamespace*/,
                      XmlElementType parentType) override {
    return Entry::Read({group, need}, {context, object, parent, *current, parentType});
  }
};

template <class Entry, Need need>
using SeqMember = Member<XmlElementGroupType::Sequence, Entry, need>;
template <class Entry>
using ChoiceMember = Member<XmlElementGroupType::Choice, Entry, Need::Opt>;

/// Members of an all-group may be missing until all of it was read.
template <class Entry, Need need>
class AllMember : public Member<XmlElementGroupType::All, Entry, need> {
 public:
  using Member<XmlElementGroupType::All, Entry, need>::Member;

  bool Validate(const CSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                bool found, bool mustExist) const override {
    if (need == Need::Opt) return true;
    return this->ValidateFound(found, mustExist, Entry::MayBeMissing());
  }
};

}  // namespace detail

// clang-format off
class ZUXMLLIB16_API CElementInfoSeqPrimMnd : public detail::SeqMember<detail::PrimEntry, detail::Need::Mnd> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqPrimOpt : public detail::SeqMember<detail::PrimEntry, detail::Need::Opt> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqEnumMnd : public detail::SeqMember<detail::EnumEntry, detail::Need::Mnd> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqEnumOpt : public detail::SeqMember<detail::EnumEntry, detail::Need::Opt> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqClsMnd : public detail::SeqMember<detail::MndClsEntry, detail::Need::Mnd> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqClsOpt : public detail::SeqMember<detail::ClsEntry, detail::Need::Opt> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqAbsClsMnd : public detail::SeqMember<detail::AbsClsEntry, detail::Need::Mnd> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqAbsClsOpt : public detail::SeqMember<detail::AbsClsEntry, detail::Need::Opt> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqUntpdMnd : public detail::SeqMember<detail::UntpdEntry, detail::Need::Mnd> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoSeqUntpdOpt : public detail::SeqMember<detail::UntpdEntry, detail::Need::Opt> { public: using Member::Member; };

class ZUXMLLIB16_API CElementInfoChoicePrimOpt : public detail::ChoiceMember<detail::PrimEntry> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoChoiceEnumOpt : public detail::ChoiceMember<detail::EnumEntry> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoChoiceClsOpt : public detail::ChoiceMember<detail::ClsEntry> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoChoiceAbsClsOpt : public detail::ChoiceMember<detail::AbsClsEntry> { public: using Member::Member; };
class ZUXMLLIB16_API CElementInfoChoiceUntpdOpt : public detail::ChoiceMember<detail::UntpdEntry> { public: using Member::Member; };

class ZUXMLLIB16_API CElementInfoAllPrimMnd : public detail::AllMember<detail::PrimEntry, detail::Need::Mnd> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllPrimOpt : public detail::AllMember<detail::PrimEntry, detail::Need::Opt> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllEnumMnd : public detail::AllMember<detail::EnumEntry, detail::Need::Mnd> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllEnumOpt : public detail::AllMember<detail::EnumEntry, detail::Need::Opt> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllClsMnd : public detail::AllMember<detail::MndClsEntry, detail::Need::Mnd> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllClsOpt : public detail::AllMember<detail::ClsEntry, detail::Need::Opt> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllAbsClsOpt : public detail::AllMember<detail::AbsClsEntry, detail::Need::Opt> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllUntpdMnd : public detail::AllMember<detail::UntpdEntry, detail::Need::Mnd> { public: using AllMember::AllMember; };
class ZUXMLLIB16_API CElementInfoAllUntpdOpt : public detail::AllMember<detail::UntpdEntry, detail::Need::Opt> { public: using AllMember::AllMember; };
// clang-format on

class ZUXMLLIB16_API CElementInfoAllAbsClsMnd
    : public detail::AllMember<detail::AbsClsEntry, detail::Need::Mnd> {
 public:
  /// @param extra  kept, of no effect.
  CElementInfoAllAbsClsMnd(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                           XmlElementType elementType, AbstractClassFactory factory, int extra)
      : AllMember(name, namespaceUri, propertyIndex, elementType, factory), m_extra(extra) {}

  int GetExtra() const { return m_extra; }

 private:
  int m_extra;
};

}  // namespace ZuXmlLib16Data
