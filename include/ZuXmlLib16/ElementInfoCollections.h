#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/ElementInfo.h"
#include "ZuXmlLib16/Export.h"

// Entries of repeated elements, whose property is a collection. The names are made as those of the
// single elements; the collection knows how its items are read and written.

namespace ZuXmlLib16Data {
namespace detail {

struct Wildcard {
  std::string restriction;
  std::string targetNamespace;
};

class ZUXMLLIB16_API ColEntry : public CElementInfo {
 public:
  ColEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex);

  void AddMatches(const CXmlGeneratedClass* object, ElementMatches& matches) const override;

 protected:
  bool Write(XmlElementGroupType group, const Writing& out) const;
  /// @param wildcard  of untyped items, null for others.
  bool Read(XmlElementGroupType group, const Reading& in, const Wildcard* wildcard) const;
  /// Writes the attributes of items that are pseudo elements.
  void WriteAttributes(const Writing& out) const;

 private:
  /// Has the collection take the items from current on.
  /// @return the first element that was not taken.
  CXmlElement* ReadItems(CXmlCollectionBase& collection, const Reading& in,
                         const Wildcard* wildcard) const;
};

template <XmlElementGroupType itsGroup>
class Col : public ColEntry {
 public:
  static constexpr XmlElementGroupType kGroup = itsGroup;

  using ColEntry::ColEntry;

  bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                    CXmlWriter* writer) const override {
    return ColEntry::Write(kGroup, {context, object, writer});
  }
  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                      CXmlElement* parent, CXmlElement** current, const char* /*targetNamespace*/,
                      XmlElementType parentType) override {
    return ColEntry::Read(kGroup, {context, object, parent, *current, parentType}, nullptr);
  }
};

/// Adds the attributes of pseudo elements.
template <class Collection>
class ObjectCol : public Collection {
 public:
  ObjectCol(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
            XmlElementType elementType)
      : Collection(name, namespaceUri, propertyIndex), m_elementType(elementType) {}

  void PseudoChildAttributeToXml(const CSerializationContext& context,
                                 const CXmlGeneratedClass* object,
                                 CXmlWriter* writer) const override {
    if (m_elementType == XmlElementType::Pseudo) this->WriteAttributes({context, object, writer});
  }

 private:
  XmlElementType m_elementType;
};

/// Adds the wildcard. With a name other than "AnyElement" only elements of that name are items.
template <class Collection>
class UntpdCol : public Collection {
 public:
  /// @param restriction  the namespaces that are allowed, see CXmlObjectHelper::IsNamespaceValid.
  /// @param targetNamespace  what "##targetNamespace" and "##other" are judged against.
  UntpdCol(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, CTextRef restriction,
           CTextRef targetNamespace)
      : Collection(name, namespaceUri, propertyIndex),
        m_wildcard{std::string(restriction), std::string(targetNamespace)} {}

  bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                      CXmlElement* parent, CXmlElement** current, const char* /*targetNamespace*/,
                      XmlElementType parentType) override {
    // In an all-group the collection reads what it allows, whatever the name. Meant to differ.
    const bool isAll = Collection::kGroup == XmlElementGroupType::All;
    return this->Read(Collection::kGroup, {context, object, parent, *current, parentType},
                      isAll ? nullptr : &m_wildcard);
  }

 private:
  Wildcard m_wildcard;
};

}  // namespace detail

// clang-format off
class ZUXMLLIB16_API CElementInfoSeqCol : public detail::Col<XmlElementGroupType::Sequence> { public: using Col::Col; };
class ZUXMLLIB16_API CElementInfoSeqPrimCol : public CElementInfoSeqCol { public: using CElementInfoSeqCol::CElementInfoSeqCol; };
class ZUXMLLIB16_API CElementInfoSeqEnumCol : public CElementInfoSeqCol { public: using CElementInfoSeqCol::CElementInfoSeqCol; };
class ZUXMLLIB16_API CElementInfoSeqClsCol : public detail::ObjectCol<CElementInfoSeqCol> { public: using ObjectCol::ObjectCol; };
class ZUXMLLIB16_API CElementInfoSeqAbsClsCol : public detail::ObjectCol<CElementInfoSeqCol> { public: using ObjectCol::ObjectCol; };
class ZUXMLLIB16_API CElementInfoSeqUntpdCol : public detail::UntpdCol<CElementInfoSeqCol> { public: using UntpdCol::UntpdCol; };

class ZUXMLLIB16_API CElementInfoChoiceCol : public detail::Col<XmlElementGroupType::Choice> { public: using Col::Col; };
class ZUXMLLIB16_API CElementInfoChoicePrimCol : public CElementInfoChoiceCol { public: using CElementInfoChoiceCol::CElementInfoChoiceCol; };
class ZUXMLLIB16_API CElementInfoChoiceEnumCol : public CElementInfoChoiceCol { public: using CElementInfoChoiceCol::CElementInfoChoiceCol; };
class ZUXMLLIB16_API CElementInfoChoiceClsCol : public detail::ObjectCol<CElementInfoChoiceCol> { public: using ObjectCol::ObjectCol; };
class ZUXMLLIB16_API CElementInfoChoiceAbsClsCol : public detail::ObjectCol<CElementInfoChoiceCol> { public: using ObjectCol::ObjectCol; };
class ZUXMLLIB16_API CElementInfoChoiceUntpdCol : public detail::UntpdCol<CElementInfoChoiceCol> { public: using UntpdCol::UntpdCol; };

class ZUXMLLIB16_API CElementInfoAllCol : public detail::Col<XmlElementGroupType::All> { public: using Col::Col; };
class ZUXMLLIB16_API CElementInfoAllPrimCol : public CElementInfoAllCol { public: using CElementInfoAllCol::CElementInfoAllCol; };
class ZUXMLLIB16_API CElementInfoAllClsCol : public detail::ObjectCol<CElementInfoAllCol> { public: using ObjectCol::ObjectCol; };
class ZUXMLLIB16_API CElementInfoAllAbsClsCol : public detail::ObjectCol<CElementInfoAllCol> { public: using ObjectCol::ObjectCol; };
class ZUXMLLIB16_API CElementInfoAllUntpdCol : public detail::UntpdCol<CElementInfoAllCol> { public: using UntpdCol::UntpdCol; };
// clang-format on

/// Stays abstract: repeated enumerations of an all-group are held by CElementInfoAllPrimCol.
class ZUXMLLIB16_API CElementInfoAllEnumCol : public CElementInfo {
 protected:
  CElementInfoAllEnumCol(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex)
      : CElementInfo(name, namespaceUri, propertyIndex) {
    SetIsCollection();
  }
};

}  // namespace ZuXmlLib16Data
