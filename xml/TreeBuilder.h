#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/XmlTree.h"

namespace ZuXmlLib16::detail {

/// Fills the tree of a document from the events of a parser. Everything it is given is valid UTF-8
/// and becomes local text.
class TreeBuilder {
 public:
  /// Between namespace URI and local name in the spelling of a name.
  static constexpr char kSeparator = '|';

  TreeBuilder(CXmlDocument& document, XmlTree& tree);

  /// A declaration of the element that starts next.
  void StartNamespace(std::string_view prefix, std::string_view namespaceUri);
  /// @param spelling  "uri|local" or "local".
  void StartElement(const char* spelling, std::size_t attributeCount);
  /// An attribute of the element that was started last.
  void AddAttribute(const char* spelling, std::string_view value);
  void AddText(std::string_view text);
  void EndElement() { m_tree.Close(); }

 private:
  XmlName* NameAfterLast(const char* spelling);
  void AddLocalText(std::string_view utf8);
  /// utf8 as local text, valid until the next call.
  std::string_view Local(std::string_view utf8);

  CXmlDocument& m_document;
  XmlTree& m_tree;
  bool m_isLocalUtf8;
  CXmlElement* m_element = nullptr;  // started last
  XmlName* m_lastName = nullptr;     // of that element
  XmlName** m_nextAttribute = nullptr;
  std::string m_converted;
};

}  // namespace ZuXmlLib16::detail
