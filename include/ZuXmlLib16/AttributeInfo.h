#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/ElementInfo.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/PrimitiveRestrictions.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {
class CXmlAttribute;
}

namespace ZuXmlLib16Data {

using ZuXmlLib16::CXmlAttribute;

/// One entry of a class's table of attributes. Made once for a class, immutable, shared by all its
/// objects and by threads.
class ZUXMLLIB16_API CAttributeInfo {
 public:
  CAttributeInfo(const CAttributeInfo&) = delete;
  CAttributeInfo& operator=(const CAttributeInfo&) = delete;

  // The order of the virtual operations is binary interface.

  virtual ~CAttributeInfo();
  /// Writes the property into the open start tag.
  virtual void AttributeToXml(const CSerializationContext& context,
                              const CXmlGeneratedClass* object, CXmlWriter* writer) const = 0;
  /// Reads the property from an attribute.
  /// @return whether the entry took it.
  virtual bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                                CXmlAttribute* attribute) = 0;
  /// @throws CZuValidationException  "Failed to find the required Attribute [%s]."
  virtual void Validate(const CSerializationContext& context, bool found) const = 0;

  const std::string& GetName() const { return m_name; }
  const std::string& GetNamespace() const { return m_namespaceUri; }
  std::int32_t GetPropertyIndex() const { return m_propertyIndex; }
  bool IsOptional() const { return m_optional; }
  const std::string& GetDefaultValue() const { return m_defaultValue; }

  /// Whether an attribute has the entry's name; its namespace counts unless the context ignores
  /// namespaces. Null has not.
  bool IsThisAttribute(const CSerializationContext& context, const CXmlAttribute* attribute) const;

  /// @throws CZuValidationException  "Failed to get the property value for [%s]." with the cause.
  void InvokePropertyGet(CXmlGeneratedClass* object, ZuVariant& value) const;
  void ReadProperty(const CXmlGeneratedClass* object, ZuVariant& value) const;
  /// @throws CZuValidationException  "Failed to set the property value [%s]." at the attribute.
  void InvokePropertySet(CXmlGeneratedClass* object, ZuVariant& value,
                         const CXmlAttribute& attribute) const;

  static void ToXml_Int(const CXmlCollectionBase* collection, CXmlWriter* writer,
                        bool isDocumentRoot, const char* namespaceUri,
                        const CSerializationContext& context);
  static std::string GetTargetNamespace(const CXmlObjectBase* object);
  /// Namespace wildcard tests, see CXmlObjectHelper.
  static bool TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                            const std::string& targetNamespace);
  static bool IsNamespaceValid(const std::string& namespaceUri, const std::string& restriction,
                               const std::string& targetNamespace);

 protected:
  CAttributeInfo(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, bool optional,
                 CTextRef defaultValue);

  /// Whether a text is the default value, and the context wants such attributes left out.
  bool IsLeftOut(const CSerializationContext& context, CTextRef text) const;
  void RequireFound(bool found) const;

 private:
  std::string m_name;
  std::string m_namespaceUri;
  std::int32_t m_propertyIndex;
  bool m_optional;
  std::string m_defaultValue;
};

/// An attribute of an enumerated simple type.
class ZUXMLLIB16_API CAttributeInfoEnum : public CAttributeInfo {
 public:
  CAttributeInfoEnum(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                     bool optional, EnumToText toText, TextToEnum toEnum, CTextRef defaultValue);

  void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const CSerializationContext& context, bool found) const override;

 private:
  EnumToText m_enumToText;
  TextToEnum m_textToEnum;
};

/// An attribute of a primitive simple type. Its facets are tested when it is written.
class ZUXMLLIB16_API CAttributeInfoPrimitive : public CAttributeInfo {
 public:
  CAttributeInfoPrimitive(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex,
                          bool optional, ItemType itemType, CTextRef format,
                          WhitespaceRule whitespaceRule, const CPrimitiveRestrictions& restrictions,
                          CTextRef defaultValue);

  void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  /// The namespace counts here, whatever the context says.
  bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const CSerializationContext& context, bool found) const override;

  /// @throws CZuException  the value violates a facet.
  void CheckRestriction(const ZuVariant& value) const;

 private:
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  std::string m_format;
  WhitespaceRule m_whitespaceRule;
  bool m_isChecked;  // whether a check of the facets can fail
};

/// An attribute wildcard (xs:anyAttribute), whose property is a CAttributeCol.
class ZUXMLLIB16_API CAttributeInfoAny : public CAttributeInfo {
 public:
  /// @param restriction  the namespaces that are allowed, see CXmlObjectHelper::IsNamespaceValid.
  /// @param targetNamespace  what "##targetNamespace" and "##other" are judged against.
  CAttributeInfoAny(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex, bool optional,
                    CTextRef restriction, CTextRef targetNamespace, CTextRef defaultValue);

  void AttributeToXml(const CSerializationContext& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  /// @throws CZuException  the property is no CAttributeCol.
  bool AttributeFromXml(const CSerializationContext& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  /// Never fails.
  void Validate(const CSerializationContext& context, bool found) const override;

 private:
  std::string m_restriction;
  std::string m_targetNamespace;
};

}  // namespace ZuXmlLib16Data
