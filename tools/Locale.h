#pragma once

#include <vector>

namespace ZuXmlTool {

/// The library keeps text in the character set of the process's locale. Takes that of the
/// environment, or C.UTF-8 when the environment's is not UTF-8.
void ChooseLocale();

/// Whether there was no UTF-8 locale and the document may hold characters that the one in force has
/// not; the library then reads them as "?".
bool MayLoseText(const std::vector<unsigned char>& document);

}  // namespace ZuXmlTool
