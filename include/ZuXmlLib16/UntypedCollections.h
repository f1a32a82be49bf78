#pragma once

#include <memory>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/XmlCollection.h"

namespace ZuXmlLib16 {

class CAttribute;
class CElement;

namespace detail {

/// A namespace and what is allowed around it. Immutable: the untyped elements of a document share a
/// few.
struct NamespaceScope {
  std::string namespaceUri;
  std::string restriction;
  std::string targetNamespace;
};
using NamespaceScopePtr = std::shared_ptr<const NamespaceScope>;

/// The same scope in another namespace; scope itself when that is its namespace already.
NamespaceScopePtr InNamespace(const NamespaceScopePtr& scope, const std::string& namespaceUri);

}  // namespace detail

/// Untyped elements, as an element wildcard (xs:any) holds them.
class ZUXMLLIB16_API CElementCol : public CXmlCollection {
 public:
  using Iterator = CIterator<CElement>;

  /// The namespace of new elements is the first URI of the restriction; for a "##" token the target
  /// namespace
  /// ("##targetNamespace"), the text "DefaultNamespace" ("##other") or none.
  CElementCol(CTextRef name, CTextRef restriction, CTextRef targetNamespace, std::int32_t minimum,
              std::int32_t maximum);
  /// @param namespaceUri  namespace of new elements.
  CElementCol(CTextRef name, CTextRef namespaceUri, CTextRef restriction, CTextRef targetNamespace,
              std::int32_t minimum, std::int32_t maximum);
  ~CElementCol() override;

  using CXmlCollection::FromXml_Int;
  using CXmlCollection::ToXml_Int;
  std::string GetNamespace() const override { return m_scope->namespaceUri; }
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// Reads elements from current on, as long as their namespaces are allowed.
  CXmlElement* FromXml_Int(CXmlElement* parentElement, CXmlElement* current,
                           const CSerializationContext& context, bool isOptionalChoice) override;
  /// Reads elements from current on, as long as they have this name; each may hold anything.
  /// @throws CZuInvalidNamespaceException  the namespace is not allowed by the collection's
  /// restriction.
  virtual CXmlElement* FromXmlLockElementName_Int(const std::string& name,
                                                  const std::string& namespaceUri,
                                                  CXmlElement* parentElement, CXmlElement* current,
                                                  const CSerializationContext& context);

  /// Appends an element.
  /// @throws CZuInvalidNamespaceException  its namespace is not allowed here.
  /// @throws CZuInvalidParamException      null.
  CSmartPtr<CElement> Add(CElement* element);
  CSmartPtr<CElement> Add(const char* name, const char* namespaceUri);
  /// Makes an element in the namespace of new elements.
  /// @throws CZuInvalidStateException  "A Namespace has not been set for this Collection"
  CSmartPtr<CElement> Add(const char* name);
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  CSmartPtr<CElement> Item(int index) const;
  /// Copies the items too, not the listeners.
  CSmartPtr<CElementCol> Clone() const;

  Iterator begin() const { return Iterator(GetHead()); }
  Iterator end() const { return Iterator(nullptr); }

  const std::string& GetNamespaceRestriction() const { return m_scope->restriction; }
  /// Changes what is allowed from now on; the items are not tested.
  void SetNamespaceRestrictions(CTextRef restriction, CTextRef targetNamespace);

 private:
  friend class CElement;
  explicit CElementCol(detail::NamespaceScopePtr scope);

  /// Appends what make gives for each element from current on, until it gives nothing.
  template <class Make>
  CXmlElement* ReadItems(CXmlElement* current, const CSerializationContext& context, Make make);

  detail::NamespaceScopePtr m_scope;  // its namespace is that of new elements
};

/// Untyped attributes, as an attribute wildcard (xs:anyAttribute) holds them.
class ZUXMLLIB16_API CAttributeCol : public CXmlCollection {
 public:
  using Iterator = CIterator<CAttribute>;

  CAttributeCol(CTextRef namespaceUri, CTextRef restriction, CTextRef targetNamespace);
  ~CAttributeCol() override;

  using CXmlCollection::FromXml_Int;
  using CXmlCollection::ToXml_Int;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// Reads all attributes of the element, in order.
  /// @return current.
  /// @throws CZuInvalidNamespaceException  an attribute's namespace is not allowed; those before it
  /// are in.
  CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* current,
                           const CSerializationContext& context, bool isOptionalChoice) override;

  /// @throws CZuInvalidParamException  null.
  CSmartPtr<CAttribute> Add(CAttribute* attribute);
  CSmartPtr<CAttribute> Add(const char* name);
  CSmartPtr<CAttribute> Add(const char* name, const char* value);
  /// @throws CZuInvalidNamespaceException  a namespace is given that is not allowed here.
  CSmartPtr<CAttribute> Add(const char* name, const char* value, const char* namespaceUri);
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  CSmartPtr<CAttribute> Item(int index) const;
  /// Copies the items too, not the listeners.
  CSmartPtr<CAttributeCol> Clone() const;

  Iterator begin() const { return Iterator(GetHead()); }
  Iterator end() const { return Iterator(nullptr); }

  /// Changes what is allowed from now on; the items are not tested.
  void SetNamespaceRestrictions(CTextRef restriction, CTextRef targetNamespace);

 private:
  friend class CElement;

  void ReadAttributes(const CXmlElement& element, bool isTested);

  std::string m_restriction;
  std::string m_targetNamespace;
};

}  // namespace ZuXmlLib16
