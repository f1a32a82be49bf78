#pragma once

#include <atomic>
#include <string>

#include "ZuXmlLib16/XmlObjectBase.h"

namespace ZuXmlLib16 {

/// The smallest class that can be written: an element that holds text.
class PlainObject : public CXmlObjectBase {
 public:
  /// How many of these there are in the process.
  static inline std::atomic<int> living{0};

  explicit PlainObject(const char* name, const char* text = "") : m_text(text) {
    SetElementName(name);
    ++living;
  }
  ~PlainObject() override { --living; }

  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::GetBase;
  using CXmlObjectBase::ToXml_Int;
  CXmlObjectBase* GetBase() override { return m_representative; }
  std::string GetTargetNamespace() const override { return "urn:plain"; }
  std::string GetNamespace() const override { return "urn:plain"; }
  void ToXml_Int(CXmlWriter* writer, bool, const char* namespaceUri, const CSerializationContext&,
                 bool) const override {
    writer->WriteStartElement(ElementName(), namespaceUri);
    writer->WriteString(m_text, ItemType::string, false);
    writer->WriteEndElement();
  }
  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* firstChildElement,
                           const CSerializationContext&, bool) override {
    return firstChildElement;
  }

  /// Lets another object stand for this one to the outside.
  void SetRepresentative(CXmlObjectBase* object) { m_representative = object; }

 private:
  std::string m_text;
  CXmlObjectBase* m_representative = this;
};

}  // namespace ZuXmlLib16
