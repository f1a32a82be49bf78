#include "ZuXmlLib16/FormatString.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>

#include "types/CLocale.h"

namespace ZuXmlLib16 {
namespace {

/// The format with "%n" turned into "%d", so that no argument is ever written through.
std::string WithoutStores(const char* format) {
  std::string result = format;
  for (std::size_t i = 0; i + 1 < result.size(); ++i) {
    if (result[i] != '%') continue;
    i = result.find_first_not_of("-+ #'0123456789.*hlLqjzt", i + 1);  // flags, width, size
    if (i == std::string::npos) break;
    if (result[i] == 'n') result[i] = 'd';
  }
  return result;
}

template <class String>
void ReplaceAll(String& text, const String& find, const String& replacement) {
  if (find.empty()) return;
  for (auto at = text.find(find); at != String::npos; at = text.find(find)) {
    text.replace(at, find.size(), replacement);
  }
}

}  // namespace

std::string FormatString(const char* format, ...) {
  if (format == nullptr) return {};
  const std::string safeFormat = WithoutStores(format);
  const detail::CLocaleScope cLocale;
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, safeFormat.c_str(), arguments);
  va_end(arguments);
  std::string result;
  if (length > 0) {
    result.resize(static_cast<std::size_t>(length));
    std::vsnprintf(result.data(), result.size() + 1, safeFormat.c_str(), again);
  }
  va_end(again);
  return result;
}

void FindReplace(std::string& text, const std::string& find, const std::string& replacement) {
  ReplaceAll(text, find, replacement);
}

void FindReplace(std::wstring& text, const std::wstring& find, const std::wstring& replacement) {
  ReplaceAll(text, find, replacement);
}

std::string TrimTrainingZeros(std::string text) {
  const std::size_t last = text.find_last_not_of('0');
  const std::size_t kept = last == std::string::npos ? 1 : last + 1;
  if (kept < text.size()) text.resize(kept);
  return text;
}

char* strupr(char* text) {
  if (text == nullptr) return nullptr;
  for (char* p = text; *p != '\0'; ++p) {
    *p = static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
  }
  return text;
}

std::string PadZero(int value, unsigned char width) {
  return FormatString(FormatString("%%0%dd", static_cast<int>(width)).c_str(), value);
}

}  // namespace ZuXmlLib16
