#pragma once

#include <string>

namespace ZuXmlLib16 {

class CXmlDocument;

namespace detail {

class XmlTree;

/// Fills the tree of a document with what the XML text of a JSON document holds, without making
/// that text.
/// @param json  in the local character set.
void JsonToTree(const std::string& json, CXmlDocument& document, XmlTree& tree);

}  // namespace detail
}  // namespace ZuXmlLib16
