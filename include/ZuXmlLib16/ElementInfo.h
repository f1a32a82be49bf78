#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/PrimitiveRestrictions.h"
#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/TextRef.h"
#include "ZuXmlLib16/WhitespaceUtils.h"

namespace ZuXmlLib16 {
class CSerializationContext;
class CXmlCollectionBase;
class CXmlElement;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlWriter;
class ZuVariant;
}  // namespace ZuXmlLib16

/// What a generated class tells of itself: tables of the objects in here.
namespace ZuXmlLib16Data {

using ZuXmlLib16::CPrimitiveRestrictions;
using ZuXmlLib16::CSerializationContext;
using ZuXmlLib16::CSmartPtr;
using ZuXmlLib16::CTextRef;
using ZuXmlLib16::CXmlCollectionBase;
using ZuXmlLib16::CXmlElement;
using ZuXmlLib16::CXmlGeneratedClass;
using ZuXmlLib16::CXmlObjectBase;
using ZuXmlLib16::CXmlWriter;
using ZuXmlLib16::ItemType;
using ZuXmlLib16::ZuVariant;
using WhitespaceRule = ZuXmlLib16::CWhitespaceUtils::WhitespaceRule;

/// Whether a class has a tag of its own.
enum class XmlElementType : std::int32_t {
  Element = 0,  ///< a real element
  Pseudo = 1,   ///< a model group: its content and attributes are in the element of its parent
};

/// How the members of a class follow one another (XML Schema Part 1, 3.8).
enum class XmlElementGroupType : std::int32_t { Sequence = 0, Choice = 1, All = 2 };

/// Enumerations as text. Both throw what they like for what is none of the enumeration's.
using EnumToText = std::string (*)(int value);
using TextToEnum = int (*)(const std::string& text);
/// Makes an object of a known class; null when it knows none.
using ClassFactory = CSmartPtr<CXmlObjectBase> (*)(int classIdentifier, const char* elementName);
/// Makes an object of the class that stands in for an abstract one, by the element's name or
/// xsi:type; null when none does. The element is never null.
using AbstractClassFactory = CSmartPtr<CXmlObjectBase> (*)(CXmlElement* element);

namespace detail {

class ElementMatches;

/// The arguments of the virtual operations below.
struct Writing {
  const CSerializationContext& context;
  const CXmlGeneratedClass* object;
  CXmlWriter* writer;
};
struct Reading {
  const CSerializationContext& context;
  CXmlGeneratedClass* object;
  CXmlElement* parent;
  CXmlElement*& current;
  XmlElementType parentType;
};

}  // namespace detail

/// One entry of a class's table of child elements: how the property is read from them and written
/// to them. Made once for a class, immutable, shared by all its objects and by threads.
class ZUXMLLIB16_API CElementInfo {
 public:
  CElementInfo(const CElementInfo&) = delete;
  CElementInfo& operator=(const CElementInfo&) = delete;

  // The order of the virtual operations is binary interface.

  virtual ~CElementInfo();
  /// Writes the property below the open element.
  /// @return whether anything was written.
  /// @throws CZuInvalidParamException  "The Property [%s] is mandatory, it may not be NULL"
  virtual bool ElementToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                            CXmlWriter* writer) const = 0;
  /// Reads the property from the children of parent.
  /// @param current  the child to begin with, or null; moved behind what was taken.
  /// @param targetNamespace  that of the object's class.
  /// @param parentType  with Pseudo a miss is no error, since others may take the element.
  /// @return whether reading may go on with the next entry; for the members of choices and
  /// all-groups whether the entry took something.
  virtual bool ElementFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                              CXmlElement* parent, CXmlElement** current,
                              const char* targetNamespace, XmlElementType parentType) = 0;
  /// For members of all-groups, after reading: whether the member may be as it was found.
  /// @throws CZuValidationException  "Failed to find the mandatory element [%s]."
  /// @throws CZuException  "Not implemented, should never be called" for all other entries.
  virtual bool Validate(const CSerializationContext& context, const CXmlGeneratedClass* object,
                        bool found, bool mustExist) const;
  /// Writes the attributes of a pseudo element into the open start tag of its parent.
  virtual void PseudoChildAttributeToXml(const CSerializationContext& context,
                                         const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const;
  /// Tells which elements the entry may take, so that others can be stepped over.
  virtual void AddMatches(const CXmlGeneratedClass* object, detail::ElementMatches& matches) const;

  const std::string& GetName() const { return m_name; }
  const std::string& GetNamespace() const { return m_namespaceUri; }
  std::int32_t GetPropertyIndex() const { return m_propertyIndex; }
  /// Whether the property is a collection.
  bool IsCollection() const { return m_isCollection; }

  /// Whether an element has the entry's name; its namespace counts unless the context ignores
  /// namespaces. Null has not.
  bool IsThisElement(const CSerializationContext& context, const CXmlElement* element) const;

  /// @throws CZuValidationException  "Failed to get the property value for [%s]." with the cause.
  void InvokePropertyGet(CXmlGeneratedClass* object, ZuVariant& value) const;
  void ReadProperty(const CXmlGeneratedClass* object, ZuVariant& value) const;
  /// @throws CZuValidationException  "Failed to set the property value." at the element.
  void InvokePropertySet(CXmlGeneratedClass* object, ZuVariant& value,
                         const CXmlElement& element) const;
  /// Whether the property is a collection that may be empty.
  bool IsOptionalCollection(const CXmlGeneratedClass* object) const;

  static CXmlElement* FromXml_Int(CXmlObjectBase* child, CXmlElement* parent, CXmlElement* current,
                                  const CSerializationContext& context, bool isOptionalChoice);
  static void AttributesToXml_Int(const CXmlObjectBase* child, CXmlWriter* writer,
                                  const CSerializationContext& context);

  // Each writes the property as its kind is written and tells whether it wrote anything.

  bool ElementToXmlCls(const CSerializationContext& context, const CXmlGeneratedClass* object,
                       CXmlWriter* writer, bool isOptionalChoice) const;
  bool ElementToXmlCol(const CSerializationContext& context, const CXmlGeneratedClass* object,
                       CXmlWriter* writer) const;
  bool ElementToXmlPrim(const CSerializationContext& context, const CXmlGeneratedClass* object,
                        CXmlWriter* writer) const;
  bool ElementToXmlEnum(const CSerializationContext& context, const CXmlGeneratedClass* object,
                        CXmlWriter* writer, EnumToText toText) const;

  /// Read the element at current, which has matched, and move current to its next sibling.
  /// @throws CZuValidationException  attributes that are not allowed.
  /// @throws CZuInvalidValueException  text that is no value.
  void ElementFromXmlPrim(const CSerializationContext& context, CXmlGeneratedClass* object,
                          CXmlElement** current) const;
  void ElementFromXmlEnum(const CSerializationContext& context, CXmlGeneratedClass* object,
                          CXmlElement** current) const;

  /// Tests a value against the facets of a primitive entry.
  /// @throws CZuException  the value violates one; "Cannot CheckRestriction for type: " for other
  /// entries.
  void CheckRestriction(const ZuVariant& value) const;

  /// The namespace of new content of a wildcard.
  /// @param restriction  "##any" gives namespaceUri, "##other" the text "DefaultNamespace" when
  /// that is empty, "##targetNamespace" the target namespace, a list of tokens what its first
  /// gives, everything else "".
  static std::string GetAnyDefaultNamespace(const std::string& restriction,
                                            const std::string& namespaceUri,
                                            const std::string& targetNamespace);

 protected:
  CElementInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex);
  /// An enumerated element.
  CElementInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, bool nillable,
               EnumToText toText, TextToEnum toEnum, CTextRef defaultValue);
  /// A primitive element.
  CElementInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, bool nillable,
               ItemType itemType, CTextRef format, WhitespaceRule whitespaceRule,
               const CPrimitiveRestrictions& restrictions, CTextRef defaultValue);

  void SetIsCollection() { m_isCollection = true; }
  /// What ElementToXml answers.
  /// @throws CZuInvalidParamException  a mandatory property was not written.
  bool Written(bool written, bool isMandatory) const;
  /// Validate of mandatory members of all-groups.
  bool ValidateFound(bool found, bool mustExist, bool mayBeMissing) const;
  EnumToText GetEnumToText() const { return m_enumToText; }
  bool WriteItems(const CXmlCollectionBase& collection, const detail::Writing& out) const;

 private:
  bool IsNil(const CSerializationContext& context, const CXmlElement& element) const;
  void WriteNil(CXmlWriter& writer) const;
  void WriteText(CXmlWriter& writer, CTextRef text, ItemType type, bool isDefault) const;

  std::string m_name;
  std::string m_namespaceUri;
  std::int32_t m_propertyIndex;
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType = ItemType::Invalid;
  std::string m_format;
  WhitespaceRule m_whitespaceRule = WhitespaceRule::None;
  std::string m_defaultValue;
  bool m_nillable = false;
  EnumToText m_enumToText = nullptr;
  TextToEnum m_textToEnum = nullptr;
  bool m_isPrimitive = false;
  bool m_isChecked = false;  // whether a check of the facets can fail
  bool m_isCollection = false;
};

}  // namespace ZuXmlLib16Data
