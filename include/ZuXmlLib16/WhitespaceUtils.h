#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Whitespace normalisation of lexical forms (XML Schema Part 2, 4.3.6). Text is handled as bytes;
/// whitespace is space, tab, line feed and carriage return.
class ZUXMLLIB16_API CWhitespaceUtils {
 public:
  enum class WhitespaceRule : std::int32_t {
    None = 0,      ///< unchanged
    Preserve = 1,  ///< CR LF and a lone CR become one LF
    Replace = 2,   ///< tab, LF, CR LF and a lone CR each become one space
    Collapse = 3,  ///< runs become one space; leading and trailing whitespace goes
  };

  /// @param length  bytes of data; below 1 gives "". The result ends at the first NUL.
  static std::string Preserve(const char* data, int length);
  static std::string Preserve(const std::string& text);
  static std::string Replace(const std::string& text);
  static std::string Collapse(const std::string& text);
  /// @throws CZuException  "Unknown WhitespaceRule" for a value outside the enumeration.
  static std::string ApplyRule(WhitespaceRule rule, const std::string& text);
  static bool IsWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
};

}  // namespace ZuXmlLib16
