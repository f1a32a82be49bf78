#pragma once

#include <string>

#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/UntypedContent.h"

namespace ZuXmlLib16 {

/// The object as compact XML without a declaration.
inline std::string Written(const CXmlObjectBase& object) {
  return object.ToXml(false, false, EOLType::Lf, CSerializationContext::m_defaultContext);
}

/// The document as an untyped element.
inline CSmartPtr<CElement> ReadUntyped(const std::string& xml) {
  CSmartPtr<CElement> element(new CElement("unread"));
  element->FromXml(xml.c_str());
  return element;
}

/// A document of nested elements "e", and the path of its innermost one.
struct NestedDocument {
  explicit NestedDocument(int depth) {
    for (int i = 0; i < depth; ++i) {
      xml += "<e>";
      path += "/e";
    }
    for (int i = 0; i < depth; ++i) {
      xml += "</e>";
    }
  }

  std::string xml;
  std::string path;
};

}  // namespace ZuXmlLib16
