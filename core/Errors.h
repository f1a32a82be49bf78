#pragma once

// Every message of the library, one function a family. Each names class, text and place of the
// failure, so that a throw site is one call. The texts are part of the interface, word for word;
// "sic" marks a slip.

#include <string>

namespace ZuXmlLib16 {

// Value types
[[noreturn]] void ThrowUnknownWhitespaceRule();

}  // namespace ZuXmlLib16
