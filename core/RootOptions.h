#pragma once

namespace ZuXmlLib16 {

class CSerializationContext;
class CXmlWriter;

namespace detail {

/// What the options put before a root element: processing instructions, prefixes, the default
/// namespace.
void WriteBeforeRoot(CXmlWriter& writer, const CSerializationContext& context);

/// The additional attributes of a root element, whose start tag is open.
void WriteRootAttributes(CXmlWriter& writer, const CSerializationContext& context);

}  // namespace detail
}  // namespace ZuXmlLib16
