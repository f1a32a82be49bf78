#pragma once

#include <string>

namespace ZuXmlLib16::detail {

/// The namespace that untyped content gets under a namespace restriction, when the schema names
/// namespaceUri for it. The whole restriction is compared first; of a list only one that begins
/// with "##" counts, by its first token. "##other" gives the text "DefaultNamespace" when no
/// namespace is named.
std::string AnyDefaultNamespace(const std::string& restriction, const std::string& namespaceUri,
                                const std::string& targetNamespace);

}  // namespace ZuXmlLib16::detail
