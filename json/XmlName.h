#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ZuXmlLib16::detail {

// Names in the sense of Namespaces in XML 1.0: parts that are letters, digits and the like, with a
// prefix and a colon before it or without. Letters are those of XML 1.0, fourth edition, which is
// what expat takes.

/// Whether a text is such a name, in ASCII.
/// @param prefixLength  gets the position of the colon, 0 for none.
bool IsPlainXmlName(std::string_view name, std::size_t& prefixLength);

/// Appends the nearest XML name of a UTF-8 text: what cannot stand where it does becomes "_xHHHH_"
/// (six digits beyond U+FFFF). A single colon that is not at an end stays, others do not.
/// @return the position of the colon in what was appended, 0 for none.
std::size_t AppendXmlName(std::string& out, std::string_view name);

}  // namespace ZuXmlLib16::detail
