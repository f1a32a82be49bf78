#pragma once

#include <string>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Conversions between UTF-8, the local character set (that of the process's current locale) and
/// wide characters. None of them fails: what is malformed, or has no counterpart, becomes "?", one
/// for each malformed byte or missing character. Null texts count as "".
class ZUXMLLIB16_API CEncoder {
 public:
  /// Process-wide: UTF-8 is taken over as local text byte by byte. Not guarded; set it before use.
  static bool ASCII_ONLY;

  /// @param wide, narrow  scratch areas with their capacities; accepted for the sake of callers
  /// that have them, and not needed: the result is the same without.
  static std::string Utf8ToLocalCodePage(const unsigned char* utf8, int length, wchar_t* wide,
                                         unsigned long wideCapacity, char* narrow,
                                         unsigned long narrowCapacity);
  static std::string Utf8ToLocalCodePage(const char* utf8, wchar_t* wide,
                                         unsigned long wideCapacity, char* narrow,
                                         unsigned long narrowCapacity);
  static std::string Utf8ToLocalCodePage(const unsigned char* utf8, int length);
  static std::string Utf8ToLocalCodePage(const char* utf8);

  static CBinaryData LocalCodePageToUtf8Binary(const char* text);
  /// Gives wide characters as they are held in memory, without a terminator.
  static CBinaryData LocalCodePageToUnicodeBinary(const char* text);
  static CBinaryData UnicodeToUtf8Binary(const wchar_t* text);
  /// Always empty.
  static std::string Utf16ToLocalCodePage(const unsigned char* utf16, int length);
};

}  // namespace ZuXmlLib16
