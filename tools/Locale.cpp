#include "tools/Locale.h"

#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <string_view>

namespace ZuXmlTool {
namespace {

bool IsUtf8() {
  return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

bool Holds(const std::vector<unsigned char>& document, std::string_view text) {
  return std::search(document.begin(), document.end(), text.begin(), text.end()) != document.end();
}

/// Errs on the safe side: true for everything compressed, and for every reference to a character.
bool MayHoldMoreThanAscii(const std::vector<unsigned char>& document) {
  return std::any_of(document.begin(), document.end(),
                     [](unsigned char byte) { return byte > 127; }) ||
         Holds(document, "&#") || Holds(document, "\\u");
}

}  // namespace

void ChooseLocale() {
  std::setlocale(LC_CTYPE, "");
  if (!IsUtf8()) std::setlocale(LC_CTYPE, "C.UTF-8");
}

bool MayLoseText(const std::vector<unsigned char>& document) {
  return !IsUtf8() && MayHoldMoreThanAscii(document);
}

}  // namespace ZuXmlTool
