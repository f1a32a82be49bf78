// The first line is a pattern, the rest a value. Matching them gives the same answer twice or
// throws a CZuException, and takes about a second at most, whatever the pattern. A value whose
// special characters are escaped is a pattern that matches just that value.

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/XmlObjectHelper.h"

using namespace ZuXmlLib16;

namespace {

enum class Answer { No, Yes, Refused };

Answer Test(const std::string& pattern, const std::string& value) {
  try {
    return CXmlObjectHelper::TestRegEx(pattern, value) ? Answer::Yes : Answer::No;
  } catch (const CZuException&) {
    return Answer::Refused;
  }
}

bool IsAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c != 0 && c < 128; });
}

std::string Escaped(const std::string& value) {
  std::string pattern;
  for (const char c : value) {
    if (std::ispunct(static_cast<unsigned char>(c)) != 0) pattern += '\\';
    pattern += c;
  }
  return pattern;
}

void Require(bool isSo) {
  if (!isSo) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
  if (!isUtf8) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string pattern = text.substr(0, text.find('\n'));
  const std::string value = text.substr(std::min(pattern.size() + 1, text.size()));
  const Answer answer = Test(pattern, value);
  Require(Test(pattern, value) == answer);
  if (IsAscii(value)) {
    Require(Test(Escaped(value), value) == Answer::Yes);
    Require(Test(Escaped(value), value + 'x') == Answer::No);
  }
  return 0;
}
