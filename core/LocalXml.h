#pragma once

#include <string>

namespace ZuXmlLib16 {

namespace detail {

/// XML text in the local character set, as ToXml gives it, in UTF-8, as parsers take it.
std::string LocalXmlAsUtf8(std::string xml);

}  // namespace detail
}  // namespace ZuXmlLib16
