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

/// Errs on the safe side: true for everything compressed, and for every character reference.
bool MayHoldMoreThanAscii(const std::vector<unsigned char>& document) {
  constexpr std::string_view kReference = "&#";
  return std::any_of(document.begin(), document.end(),
                     [](unsigned char byte) { return byte > 127; }) ||
         std::search(document.begin(), document.end(), kReference.begin(), kReference.end()) !=
             document.end();
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
