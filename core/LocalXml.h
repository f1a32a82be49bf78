#pragma once

#include <string>

namespace ZuXmlLib16 {

class CXmlDocument;

namespace detail {

/// Parses XML text in the local character set, as ToXml gives it; parsers take UTF-8.
void LoadLocalXml(CXmlDocument& document, const std::string& xml);

}  // namespace detail
}  // namespace ZuXmlLib16
