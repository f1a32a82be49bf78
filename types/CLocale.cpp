#include "types/CLocale.h"

namespace ZuXmlLib16::detail {

locale_t CLocale() {
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  return cLocale;
}

}  // namespace ZuXmlLib16::detail
