#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace ZuXmlLib16 {

/// Makes the process print and read numbers with a decimal comma until the scope ends. The locale
/// is made by localedef, so that none needs to be installed.
class CommaLocale {
 public:
  CommaLocale() {
    if (mkdtemp(m_directory.data()) == nullptr) return;
    std::ofstream(m_directory + "/source")
        << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3\nEND LC_NUMERIC\n";
    const std::string command = "localedef --no-archive -c -i " + m_directory + "/source " +
                                m_directory + "/comma >" + m_directory + "/log 2>&1";
    // It complains of the categories that are missing and fails, with the numbers in place.
    [[maybe_unused]] const int status = std::system(command.c_str());
    const char* const path = std::getenv("LOCPATH");
    const std::string previous = path != nullptr ? path : "";
    setenv("LOCPATH", m_directory.c_str(), 1);
    m_isAvailable = std::setlocale(LC_NUMERIC, "comma") != nullptr;
    previous.empty() ? unsetenv("LOCPATH") : setenv("LOCPATH", previous.c_str(), 1);
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() {
    std::setlocale(LC_NUMERIC, "C");
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
  }

  /// Whether the locale could be made; without it nothing was changed.
  bool IsAvailable() const { return m_isAvailable; }

 private:
  std::string m_directory = "/tmp/comma-locale-XXXXXX";
  bool m_isAvailable = false;
};

}  // namespace ZuXmlLib16
