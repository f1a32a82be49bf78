#pragma once

#include <clocale>

namespace ZuXmlLib16 {

/// Makes this thread use the character set of a locale until the scope ends.
class CharacterTypeLocale {
 public:
  explicit CharacterTypeLocale(const char* name)
      : m_locale(newlocale(LC_CTYPE_MASK, name, nullptr)), m_previous(uselocale(m_locale)) {}
  CharacterTypeLocale(const CharacterTypeLocale&) = delete;
  CharacterTypeLocale& operator=(const CharacterTypeLocale&) = delete;
  ~CharacterTypeLocale() {
    uselocale(m_previous);
    if (m_locale != locale_t{}) freelocale(m_locale);
  }

  /// Whether the system has the locale; without it nothing was changed.
  bool IsAvailable() const { return m_locale != locale_t{}; }

 private:
  locale_t m_locale;
  locale_t m_previous;
};

}  // namespace ZuXmlLib16
