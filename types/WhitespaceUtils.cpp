#include "ZuXmlLib16/WhitespaceUtils.h"

#include <string_view>

#include "core/Errors.h"

namespace ZuXmlLib16 {
namespace {

std::string PreserveLines(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size() && text[i] != '\0'; ++i) {
    if (text[i] != '\r') {
      result += text[i];
      continue;
    }
    result += '\n';
    if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
  }
  return result;
}

}  // namespace

std::string CWhitespaceUtils::Preserve(const char* data, int length) {
  if (data == nullptr || length < 1) return {};
  return PreserveLines({data, static_cast<std::size_t>(length)});
}

std::string CWhitespaceUtils::Preserve(const std::string& text) {
  return PreserveLines(text);
}

std::string CWhitespaceUtils::Replace(const std::string& text) {
  if (text.find_first_of("\t\n\r") == std::string::npos) return text;
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    result += IsWhiteSpace(text[i]) ? ' ' : text[i];
  }
  return result;
}

std::string CWhitespaceUtils::Collapse(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  bool afterSpace = true;
  for (const char c : text) {
    const bool isSpace = IsWhiteSpace(c);
    if (!isSpace) {
      result += c;
    } else if (!afterSpace) {
      result += ' ';
    }
    afterSpace = isSpace;
  }
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

std::string CWhitespaceUtils::ApplyRule(WhitespaceRule rule, const std::string& text) {
  switch (rule) {
    case WhitespaceRule::None:
      return text;
    case WhitespaceRule::Preserve:
      return Preserve(text);
    case WhitespaceRule::Replace:
      return Replace(text);
    case WhitespaceRule::Collapse:
      return Collapse(text);
  }
  ThrowUnknownWhitespaceRule();
}

}  // namespace ZuXmlLib16
