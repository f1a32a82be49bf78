#pragma once

#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/WhitespaceUtils.h"

namespace ZuXmlLib16 {

class CBigInteger;
class CBinaryData;
class CDateTime;
class CDateTimeSpan;
class CDecimal;

/// The lexical forms of the simple types (XML Schema Part 2). Numbers never depend on the process's
/// locale.
///
/// Every FromString applies the whitespace rule first, unknown rules throwing CZuException "Unknown
/// WhitespaceRule", and throws CZuInvalidValueException for text that is no value of the type.
/// Dates, durations, decimals, integers and binary data report through their own classes.
class ZUXMLLIB16_API CConversions {
 public:
  using Rule = CWhitespaceUtils::WhitespaceRule;

  /// Integers in base 10, read with the leniency of the C library: leading white space and a '+'
  /// are accepted, a '-' before an unsigned number wraps it, and the text ends at a NUL.
  static std::string i1ToString(signed char value);
  static std::string i2ToString(short value);
  static std::string i4ToString(long value);
  static std::string i8ToString(long long value);
  static std::string ui1ToString(unsigned char value);
  static std::string ui2ToString(unsigned short value);
  static std::string ui4ToString(unsigned long value);
  static std::string ui8ToString(unsigned long long value);
  static signed char i1FromString(const std::string& text, Rule rule);
  static short i2FromString(const std::string& text, Rule rule);
  static long i4FromString(const std::string& text, Rule rule);
  static long long i8FromString(const std::string& text, Rule rule);
  static unsigned char ui1FromString(const std::string& text, Rule rule);
  static unsigned short ui2FromString(const std::string& text, Rule rule);
  static unsigned long ui4FromString(const std::string& text, Rule rule);
  static unsigned long long ui8FromString(const std::string& text, Rule rule);

  /// Reals: 7 and 16 significant digits, "NaN", "INF" and "-INF".
  /// @param format  a printf format for one double, "" for the usual form; the text is cut at 47
  /// bytes.
  static std::string r4ToString(float value);
  static std::string r4ToString(float value, const std::string& format);
  static std::string r8ToString(double value);
  static std::string r8ToString(double value, const std::string& format);
  /// Reads what strtod reads, and "NaN", "-NAN", "1.#QNAN", "INF", "-INF". Too large values become
  /// infinite. A float is rounded twice, to double and then to float.
  static float r4FromString(const std::string& text, Rule rule);
  static double r8FromString(const std::string& text, Rule rule);

  /// Reads "true", "1", "false" and "0" in any case of letters.
  static std::string booleanToString(bool value);
  static bool booleanFromString(const std::string& text, Rule rule);
  /// One byte; NUL gives "".
  static std::string charToString(char value);
  static char charFromString(const std::string& text, Rule rule);
  static std::string stringToString(const std::string& value);
  static std::string stringFromString(const std::string& text, Rule rule);

  /// Dates print by the type that the value itself has. FromString takes any shape of date and sets
  /// the type from it; year, month and day return the field from any shape that carries it, without
  /// the time zone, a negative year wrapped.
  /// @throws CZuInvalidStateException  year, month and day: a date without the field.
  static std::string datetimeToString(const CDateTime& value);
  static std::string dateToString(const CDateTime& value);
  static std::string timeToString(const CDateTime& value);
  static std::string yearMonthToString(const CDateTime& value);
  static std::string monthDayToString(const CDateTime& value);
  static std::string yearToString(unsigned short value);
  static std::string monthToString(unsigned char value);
  static std::string dayToString(unsigned char value);
  static CDateTime datetimeFromString(const std::string& text, Rule rule);
  static CDateTime dateFromString(const std::string& text, Rule rule);
  static CDateTime timeFromString(const std::string& text, Rule rule);
  static CDateTime yearMonthFromString(const std::string& text, Rule rule);
  static CDateTime monthDayFromString(const std::string& text, Rule rule);
  static unsigned short yearFromString(const std::string& text, Rule rule);
  static unsigned char monthFromString(const std::string& text, Rule rule);
  static unsigned char dayFromString(const std::string& text, Rule rule);

  static std::string durationToString(const CDateTimeSpan& value);
  static CDateTimeSpan durationFromString(const std::string& text, Rule rule);

  /// @param format  number of fraction digits in decimal, "" for those that the value has.
  static std::string decimalToString(const CDecimal& value);
  static std::string decimalToString(const CDecimal& value, const std::string& format);
  static CDecimal decimalFromString(const std::string& text, Rule rule);
  static std::string integerToString(const CBigInteger& value);
  static CBigInteger integerFromString(const std::string& text, Rule rule);

  static std::string hexBinaryToString(const CBinaryData& value);
  static std::string base64BinaryToString(const CBinaryData& value);
  static CBinaryData hexBinaryFromString(const std::string& text, Rule rule);
  static CBinaryData base64BinaryFromString(const std::string& text, Rule rule);
};

}  // namespace ZuXmlLib16
