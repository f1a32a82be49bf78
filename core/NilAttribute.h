#pragma once

namespace ZuXmlLib16 {

class CXmlAttribute;

namespace detail {

/// What an xsi:nil attribute says (XML Schema Part 1, 2.6.2), in any case.
/// @throws CZuValidationException  "Unexpected Value [%s] for 'nil' Attribute found." at it.
bool ReadNilValue(const CXmlAttribute& attribute);

}  // namespace detail
}  // namespace ZuXmlLib16
