#pragma once

#include <string>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

class CXmlElement;

/// Base of generated class factories: what the xsi:type attribute of an element says (XML Schema
/// Part 1, 2.6.1).
class ZUXMLLIB16_API CClassfactoryBase {
 public:
  /// @return the local name of the type, "" without the attribute.
  static std::string GetElementType(const CXmlElement* element);
  /// @return the namespace of the type's prefix, or of the element when the prefix is not declared.
  static std::string GetElementTypeNamespaceUri(const CXmlElement* element);
};

}  // namespace ZuXmlLib16
