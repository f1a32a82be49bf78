#pragma once

#include <locale.h>  // NOLINT(modernize-deprecated-headers): locale_t is POSIX, not C++

namespace ZuXmlLib16::detail {

/// The "C" locale, made once: lexical forms never follow the decimal sign of the process's locale.
locale_t CLocale();

/// Makes this thread use the "C" locale until the scope ends.
class CLocaleScope {
 public:
  CLocaleScope() : m_previous(uselocale(CLocale())) {}
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;
  ~CLocaleScope() { uselocale(m_previous); }

 private:
  locale_t m_previous;
};

}  // namespace ZuXmlLib16::detail
