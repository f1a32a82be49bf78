#pragma once

#include <atomic>
#include <string>

#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectBase.h"

namespace ZuXmlLib16 {

/// The smallest class that can be written and read by hand: an element that holds text.
class PlainObject : public CXmlObjectBase {
 public:
  /// How many of these there are in the process.
  static inline std::atomic<int> living{0};

  explicit PlainObject(const char* name, const char* text = "") : m_text(text) {
    SetElementName(name);
    ++living;
  }
  ~PlainObject() override { --living; }

  using CXmlObjectBase::AttributesToXml_Int;
  using CXmlObjectBase::FromXml_Int;
  using CXmlObjectBase::GetBase;
  using CXmlObjectBase::ToXml_Int;
  CXmlObjectBase* GetBase() override { return m_representative; }
  std::string GetTargetNamespace() const override { return "urn:plain"; }
  std::string GetNamespace() const override { return "urn:plain"; }
  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext&) const override {
    writer->WriteAttributeString(ElementName(), "", m_text, ItemType::string);
  }
  void ToXml_Int(CXmlWriter* writer, bool, const char* namespaceUri, const CSerializationContext&,
                 bool) const override {
    writer->WriteStartElement(ElementName(), namespaceUri);
    writer->WriteString(m_text, ItemType::string, false);
    writer->WriteEndElement();
  }
  CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement*, const CSerializationContext&,
                           bool isOptionalChoice) override {
    m_text = isOptionalChoice ? "an optional choice" : element->GetText();
    return element->GetNextSiblingElement();
  }

  const std::string& GetText() const { return m_text; }
  /// Lets another object stand for this one to the outside.
  void SetRepresentative(CXmlObjectBase* object) { m_representative = object; }

 private:
  std::string m_text;
  CXmlObjectBase* m_representative = this;
};

}  // namespace ZuXmlLib16
