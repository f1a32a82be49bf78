#pragma once

#include <initializer_list>
#include <string>

#include "ZuXmlLib16/AttributeInfo.h"
#include "ZuXmlLib16/ElementInfo.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ParentElementInfo.h"
#include "ZuXmlLib16/Variant.h"
#include "ZuXmlLib16/XmlObjectBase.h"

namespace ZuXmlLib16 {

using ZuXmlLib16Data::CAttributeInfo;
using ZuXmlLib16Data::CElementInfo;
using ZuXmlLib16Data::CParentElementInfo;
using ZuXmlLib16Data::XmlElementType;

/// Base of all generated classes. A derived class describes itself by metadata and gives access to
/// its properties; reading and writing is done here.
///
/// Failures of reading are CZuValidationException with the path of the innermost class at fault;
/// what is raised below it without a path becomes "Failed to process the element." with the cause
/// inside. What was assigned before stays. Failures of writing are wrapped at every level in
/// "Failed to convert the element [%s] to XML".
class ZUXMLLIB16_API CXmlGeneratedClass : public CXmlObjectBase {
 public:
  CXmlGeneratedClass();
  ~CXmlGeneratedClass() override;

  using CXmlObjectBase::AttributesToXml_Int;
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::GetBase;
  using CXmlObjectBase::ToXml_Int;
  CXmlObjectBase* GetBase() override { return this; }
  /// Both are the namespace of the class metadata.
  std::string GetTargetNamespace() const override;
  std::string GetNamespace() const override;
  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const override;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// Takes the name of parentElement, unless the class is a pseudo element. Properties that the
  /// document does not mention keep their values, collections get more items; a class that is to
  /// start empty clears itself in OnFromXmlStart.
  CXmlElement* FromXml_Int(CXmlElement* parentElement, CXmlElement* firstChildElement,
                           const CSerializationContext& context, bool isOptionalChoice) override;

  // What a generated class supplies. The order is binary interface.

  /// The one access to the properties.
  /// @param read  true: stores the property in value, which is invalid on entry and stays so for an
  /// absent property. Nil is SetNil, an enumeration SetI4, an object SetXmlObject (null allowed), a
  /// collection SetXmlCollection. false: assigns value to the property, in the same forms.
  /// @throws CZuInvalidParamException  an index that the class does not know.
  virtual void AccessProperty(int propertyIndex, bool read, ZuVariant& value) = 0;
  virtual const CParentElementInfo* GetClassMetaData() const = 0;
  /// The child elements in the order of the schema, null at the end. A null table is an empty one.
  virtual CElementInfo* const* GetElementMetaData() const = 0;
  /// The attributes, in the same form.
  virtual CAttributeInfo* const* GetAttributeMetaData() const = 0;
  /// Called first by every FromXml_Int, with its arguments; more than once in a reading for a
  /// pseudo element.
  virtual void OnFromXmlStart(CXmlElement* parentElement, CXmlElement* firstChildElement,
                              const CSerializationContext& context, bool isOptionalChoice) = 0;

  void ReadProperty(int propertyIndex, ZuVariant& value) const;
  int GetClassElementInfoCount() const;
  /// Whether some entry of the class is for an element of this name.
  bool IsElementInList(const CSerializationContext& context, CXmlElement* element) const;
  /// Whether some entry is a collection that may be empty.
  bool DoesElementContainOptionalElements() const;

  // The groups. The readers give the first child that was not taken.

  CXmlElement* ProcessElementSeqFromXml(const CSerializationContext& context, CXmlElement* parent,
                                        CXmlElement* cursor, XmlElementType elementType);
  CXmlElement* ProcessElementChoiceFromXml(const CSerializationContext& context,
                                           CXmlElement* parent, CXmlElement* cursor,
                                           XmlElementType elementType, bool isOptionalChoice);
  CXmlElement* ProcessElementAllFromXml(const CSerializationContext& context, CXmlElement* parent,
                                        CXmlElement* cursor, XmlElementType elementType);
  void ProcessAttributesFromXml(const CSerializationContext& context, CXmlElement* element,
                                bool strictAttributes);
  void ProcessElementSeqToXml(const CSerializationContext& context, CElementInfo* const* elements,
                              CXmlWriter* writer) const;
  void ProcessElementChoiceToXml(const CSerializationContext& context,
                                 CElementInfo* const* elements, CXmlWriter* writer,
                                 bool isOptionalChoice) const;
  void ProcessElementAllToXml(const CSerializationContext& context, CElementInfo* const* elements,
                              CXmlWriter* writer) const;
  /// Writes the attributes, then those of pseudo children.
  void ProcessAttributesToXml(const CSerializationContext& context, CElementInfo* const* elements,
                              CAttributeInfo* const* attributes, CXmlWriter* writer) const;

  /// Deletes metadata: what the arrays, which new[] made, hold, and the arrays. Null is fine. All
  /// three are null afterwards.
  static void CleanMetaData(CParentElementInfo*& classInfo, CElementInfo**& elements,
                            CAttributeInfo**& attributes);

 private:
  CXmlElement* ReadContent(CXmlElement* parent, CXmlElement* cursor,
                           const CSerializationContext& context, bool isOptionalChoice);
  void ReadText(const CXmlElement& element, const CParentElementInfo& classInfo);
  void ReadNil(const CXmlElement& element, const CXmlAttribute& attribute);
  /// Offers an attribute to the entries.
  /// @return the index of the one that took it, -1 for none.
  int ReadAttribute(const CSerializationContext& context, CXmlAttribute& attribute,
                    CAttributeInfo* const* entries);
  /// Runs the entries of a sequence.
  /// @param reached  the entry to begin with; afterwards how far reading got: the entry that took
  /// something last when it is a collection, which may take more, else the one behind it.
  /// @return whether all entries are content.
  bool ReadSequence(const CSerializationContext& context, CXmlElement* parent, CXmlElement*& cursor,
                    XmlElementType elementType, int& reached);
  /// Tries the entries of a choice.
  /// @return the one that took something, null when none did; then cursor stays.
  CElementInfo* ReadChoice(const CSerializationContext& context, CXmlElement* parent,
                           CXmlElement*& cursor, XmlElementType elementType);
  void WriteElement(CXmlWriter& writer, const CParentElementInfo& classInfo, bool isDocumentRoot,
                    const char* namespaceUri, const CSerializationContext& context,
                    bool isOptionalChoice) const;
  void WriteContent(CXmlWriter& writer, const CParentElementInfo& classInfo,
                    const CSerializationContext& context, bool isOptionalChoice) const;
  static void WriteSchema(CXmlWriter& writer, const std::string& schema);
  void WriteTypeAttribute(CXmlWriter& writer, const CSerializationContext& context) const;
  void WriteText(CXmlWriter& writer, const CParentElementInfo& classInfo) const;
  const std::string& NameToWrite() const;
  INillable* FindNillable(const CParentElementInfo& classInfo) const;
};

/// Owns the metadata of one class, as a static of it.
class ZUXMLLIB16_API CClassMetaData {
 public:
  /// Takes over what it is given, made with new.
  CClassMetaData(CParentElementInfo* classInfo, std::initializer_list<CElementInfo*> elements,
                 std::initializer_list<CAttributeInfo*> attributes);
  CClassMetaData(const CClassMetaData&) = delete;
  CClassMetaData& operator=(const CClassMetaData&) = delete;
  ~CClassMetaData();

  const CParentElementInfo* GetClassInfo() const { return m_classInfo; }
  CElementInfo* const* GetElements() const { return m_elements; }
  CAttributeInfo* const* GetAttributes() const { return m_attributes; }

 private:
  CParentElementInfo* m_classInfo;
  CElementInfo** m_elements;
  CAttributeInfo** m_attributes;
};

/// Joins a class with its metadata: what most generated classes have in common.
/// @tparam T  the class itself. It has `static const CClassMetaData& MetaData()`, and `void
/// Clear()` makes it as it was when it was made, which every reading begins with.
/// @tparam Base  another generated class, for a type that extends that one's.
template <class T, class Base = CXmlGeneratedClass>
class CXmlDescribedClass : public Base {
 public:
  using Base::Base;

  const CParentElementInfo* GetClassMetaData() const override {
    return T::MetaData().GetClassInfo();
  }
  CElementInfo* const* GetElementMetaData() const override { return T::MetaData().GetElements(); }
  CAttributeInfo* const* GetAttributeMetaData() const override {
    return T::MetaData().GetAttributes();
  }
  void OnFromXmlStart(CXmlElement* /*parentElement*/, CXmlElement* /*firstChildElement*/,
                      const CSerializationContext& /*context*/,
                      bool /*isOptionalChoice*/) override {
    static_cast<T*>(this)->Clear();
  }
};

}  // namespace ZuXmlLib16
