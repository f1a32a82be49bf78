#pragma once

#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "ZuXmlLib16/XmlObjectBase.h"

namespace ZuXmlLib16 {

class CXmlTextWriter;

/// A free-form element: name, namespace, text, attributes and child elements. Comments, processing
/// instructions and the place of text between children are not kept.
///
/// Namespace restrictions are "##any", "##other", "##local", "##targetNamespace" or a list of URIs
/// separated by single blanks (XML Schema Part 1, 3.10.1).
class ZUXMLLIB16_API CElement : public CXmlObjectBase {
 public:
  /// An element without a namespace, for which everything is allowed.
  explicit CElement(const char* name);
  /// @param namespaceOrRestriction  one of the four "##" tokens is the restriction; anything else
  /// is the
  ///                                namespace, and the restriction too.
  /// @throws CZuInvalidNamespaceException  "Invalid Namespace [%s]." for whitespace or another "##"
  /// text.
  CElement(const char* name, const char* namespaceOrRestriction);
  /// @throws CZuInvalidNamespaceException  name, restriction or target namespace is null; the
  /// namespace is not
  ///                                       allowed.
  CElement(const char* name, const char* namespaceUri, const char* restriction,
           const char* targetNamespace);
  /// The content of another object, taken over through its XML form, to be written raw (see
  /// SetRaw).
  /// @throws CZuInvalidNamespaceException  "Element Name must have a value" for null; what Init
  /// throws.
  CElement(CXmlObjectBase* object, const char* restriction);
  ~CElement() override;

  /// Gives the element a name and a place and drops its attributes and children; its text stays.
  /// Throws as the constructor does.
  void Init(const char* name, const char* namespaceUri, const char* restriction,
            const char* targetNamespace);

  using CXmlObjectBase::FromXml;
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::GetBase;
  using CXmlObjectBase::ToXml_Int;
  CXmlObjectBase* GetBase() override { return this; }
  std::string GetTargetNamespace() const override;
  std::string GetNamespace() const override;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// Takes over the element: name, namespace, text, attributes, children. Text that is only layout
  /// (whitespace beside child elements) is dropped.
  /// @return element itself, unchanged object, when the namespace is not allowed here; else its
  /// next sibling.
  CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* firstChildElement,
                           const CSerializationContext& context, bool isOptionalChoice) override;

  /// Reads XML text with the default options.
  void FromXml(const char* xml);
  /// Fills the element from a DOM element, whatever its namespaces.
  void CopyXmlElement(CXmlElement* element);
  CSmartPtr<CElement> Clone() const;

  // Changes call OnEvent(this, Changed, null) when the value differs.

  const std::string& GetName() const { return ElementName(); }
  void SetName(const char* name);
  const std::string& GetText() const { return m_text; }
  void SetText(const char* text);
  /// @throws CZuInvalidNamespaceException  it is not allowed by the restriction.
  void SetNamespace(const char* namespaceUri);
  const std::string& GetNamespaceRestriction() const { return m_scope->restriction; }
  /// Sets what namespaces are allowed, for the collections too, and tests the element, its
  /// attributes and everything below.
  /// @throws CZuException  "The namespace %s in the class %s is invalid against restriction %s";
  /// the new texts
  ///                       stay set.
  void SetNamespaceRestrictions(const char* restriction, const char* targetNamespace);

  CSmartPtr<CAttributeCol> GetAttributes() const;
  CSmartPtr<CElementCol> GetElements() const;

  /// Whether an XML text writer writes the element as a document of its own, with its namespace as
  /// the default one; false unless it was made from an object.
  bool GetRaw() const { return m_raw; }
  void SetRaw(bool raw) { m_raw = raw; }

 protected:
  void FireOnChangeName();
  void FireOnChangeNamespace();
  void FireOnChangeText();

 private:
  friend class CElementCol;

  explicit CElement(detail::NamespaceScopePtr scope);

  /// A copy without the children.
  CSmartPtr<CElement> CloneSelf() const;
  /// Takes name, namespace and text; attributes and children that were there are dropped.
  void TakeOver(const CXmlElement& element);
  void MoveTo(const std::string& namespaceUri);
  void RestrictSelf(CTextRef restriction, CTextRef targetNamespace);
  CAttributeCol& Attributes() const;
  CElementCol& Elements() const;
  static bool HasSameName(const CElement& a, const CElement& b);
  void WriteTree(CXmlWriter& writer, bool isDocumentRoot,
                 const CSerializationContext& context) const;
  void WriteRaw(CXmlTextWriter& outer) const;

  std::string m_text;
  detail::NamespaceScopePtr m_scope;
  // Made when somebody asks for them; most elements have no attributes or no children.
  mutable CSmartPtr<CAttributeCol> m_attributes;
  mutable CSmartPtr<CElementCol> m_elements;
  bool m_raw = false;
};

/// A free-form attribute.
class ZUXMLLIB16_API CAttribute : public CXmlObjectBase {
 public:
  CAttribute(CTextRef name, CTextRef value, CTextRef namespaceUri);
  ~CAttribute() override;

  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::GetBase;
  using CXmlObjectBase::ToXml_Int;
  CXmlObjectBase* GetBase() override { return this; }
  std::string GetTargetNamespace() const override { return m_namespaceUri; }
  std::string GetNamespace() const override { return m_namespaceUri; }
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// @throws CZuException  always: CAttributeCol reads attributes.
  CXmlElement* FromXml_Int(CXmlElement* parentElement, CXmlElement* firstChildElement,
                           const CSerializationContext& context, bool isOptionalChoice) override;

  CSmartPtr<CAttribute> Clone() const;

  const std::string& GetName() const { return ElementName(); }
  void SetName(const char* name) { SetElementName(name); }
  const std::string& GetValue() const { return m_value; }
  void SetValue(const char* value);
  void SetNamespace(const char* namespaceUri);

 private:
  std::string m_value;
  std::string m_namespaceUri;
};

}  // namespace ZuXmlLib16
