#pragma once

#include <string>

namespace ZuXmlLib16::detail {

/// The namespace that untyped content gets under a namespace restriction, when the schema names
/// namespaceUri for it; of a list the first token counts. "##other" gives the text
/// "DefaultNamespace" when no namespace is named.
std::string AnyDefaultNamespace(const std::string& restriction, const std::string& namespaceUri,
                                const std::string& targetNamespace);

}  // namespace ZuXmlLib16::detail
