#include "ZuXmlLib16/Conversions.h"

#include "types/ConversionsInternal.h"

namespace ZuXmlLib16 {
namespace {

/// The text that a Format function gives, as a string of its own.
template <class Format, class... Arguments>
std::string Text(Format format, const Arguments&... arguments) {
  detail::TextBuffer buffer;
  return detail::TakeText(format(arguments..., buffer), buffer);
}

}  // namespace

// clang-format off

std::string CConversions::i1ToString(signed char value) { return Text(detail::FormatInteger<signed char>, value); }
std::string CConversions::i2ToString(short value) { return Text(detail::FormatInteger<short>, value); }
std::string CConversions::i4ToString(long value) { return Text(detail::FormatInteger<long>, value); }
std::string CConversions::i8ToString(long long value) { return Text(detail::FormatInteger<long long>, value); }
std::string CConversions::ui1ToString(unsigned char value) { return Text(detail::FormatInteger<unsigned char>, value); }
std::string CConversions::ui2ToString(unsigned short value) { return Text(detail::FormatInteger<unsigned short>, value); }
std::string CConversions::ui4ToString(unsigned long value) { return Text(detail::FormatInteger<unsigned long>, value); }
std::string CConversions::ui8ToString(unsigned long long value) { return Text(detail::FormatInteger<unsigned long long>, value); }
signed char CConversions::i1FromString(const std::string& text, Rule rule) { return detail::ParseInteger<signed char>(text, rule); }
short CConversions::i2FromString(const std::string& text, Rule rule) { return detail::ParseInteger<short>(text, rule); }
long CConversions::i4FromString(const std::string& text, Rule rule) { return detail::ParseInteger<long>(text, rule); }
long long CConversions::i8FromString(const std::string& text, Rule rule) { return detail::ParseInteger<long long>(text, rule); }
unsigned char CConversions::ui1FromString(const std::string& text, Rule rule) { return detail::ParseInteger<unsigned char>(text, rule); }
unsigned short CConversions::ui2FromString(const std::string& text, Rule rule) { return detail::ParseInteger<unsigned short>(text, rule); }
unsigned long CConversions::ui4FromString(const std::string& text, Rule rule) { return detail::ParseInteger<unsigned long>(text, rule); }
unsigned long long CConversions::ui8FromString(const std::string& text, Rule rule) { return detail::ParseInteger<unsigned long long>(text, rule); }

std::string CConversions::r4ToString(float value) { return Text(detail::FormatFloat, value); }
std::string CConversions::r8ToString(double value) { return Text(detail::FormatDouble, value); }
std::string CConversions::r4ToString(float value, const std::string& format) { return Text(detail::FormatFloatAs, value, format.c_str()); }
std::string CConversions::r8ToString(double value, const std::string& format) { return Text(detail::FormatDoubleAs, value, format.c_str()); }
float CConversions::r4FromString(const std::string& text, Rule rule) { return detail::ParseFloat(text, rule); }
double CConversions::r8FromString(const std::string& text, Rule rule) { return detail::ParseDouble(text, rule); }

std::string CConversions::booleanToString(bool value) { return Text(detail::FormatBoolean, value); }
std::string CConversions::charToString(char value) { return Text(detail::FormatChar, value); }
std::string CConversions::stringToString(const std::string& value) { return value; }
bool CConversions::booleanFromString(const std::string& text, Rule rule) { return detail::ParseBoolean(text, rule); }
char CConversions::charFromString(const std::string& text, Rule rule) { return detail::ParseChar(text, rule); }
std::string CConversions::stringFromString(const std::string& text, Rule rule) { return detail::ParseText(text, rule); }

std::string CConversions::datetimeToString(const CDateTime& value) { return Text(detail::FormatDate, value); }
std::string CConversions::dateToString(const CDateTime& value) { return Text(detail::FormatDate, value); }
std::string CConversions::timeToString(const CDateTime& value) { return Text(detail::FormatDate, value); }
std::string CConversions::yearMonthToString(const CDateTime& value) { return Text(detail::FormatDate, value); }
std::string CConversions::monthDayToString(const CDateTime& value) { return Text(detail::FormatDate, value); }
std::string CConversions::yearToString(unsigned short value) { return Text(detail::FormatInteger<unsigned short>, value); }
std::string CConversions::monthToString(unsigned char value) { return Text(detail::FormatMonth, value); }
std::string CConversions::dayToString(unsigned char value) { return Text(detail::FormatDay, value); }
std::string CConversions::durationToString(const CDateTimeSpan& value) { return Text(detail::FormatDuration, value); }
CDateTime CConversions::datetimeFromString(const std::string& text, Rule rule) { return detail::ParseDateTime(text, rule); }
CDateTime CConversions::timeFromString(const std::string& text, Rule rule) { return detail::ParseTime(text, rule); }
CDateTime CConversions::dateFromString(const std::string& text, Rule rule) { return detail::ParseDate(text, rule); }
CDateTime CConversions::yearMonthFromString(const std::string& text, Rule rule) { return detail::ParseDate(text, rule); }
CDateTime CConversions::monthDayFromString(const std::string& text, Rule rule) { return detail::ParseDate(text, rule); }
unsigned short CConversions::yearFromString(const std::string& text, Rule rule) { return detail::ParseYear(text, rule); }
unsigned char CConversions::monthFromString(const std::string& text, Rule rule) { return detail::ParseMonth(text, rule); }
unsigned char CConversions::dayFromString(const std::string& text, Rule rule) { return detail::ParseDay(text, rule); }
CDateTimeSpan CConversions::durationFromString(const std::string& text, Rule rule) { return detail::ParseDuration(text, rule); }

std::string CConversions::decimalToString(const CDecimal& value) { return Text(detail::FormatDecimal, value); }
std::string CConversions::decimalToString(const CDecimal& value, const std::string& format) { return Text(detail::FormatDecimalAs, value, format.c_str()); }
std::string CConversions::integerToString(const CBigInteger& value) { return Text(detail::FormatBigInteger, value); }
std::string CConversions::hexBinaryToString(const CBinaryData& value) { return Text(detail::FormatHexBinary, value); }
std::string CConversions::base64BinaryToString(const CBinaryData& value) { return Text(detail::FormatBase64Binary, value); }
CDecimal CConversions::decimalFromString(const std::string& text, Rule rule) { return detail::ParseDecimal(text, rule); }
CBigInteger CConversions::integerFromString(const std::string& text, Rule rule) { return detail::ParseBigInteger(text, rule); }
CBinaryData CConversions::hexBinaryFromString(const std::string& text, Rule rule) { return detail::ParseHexBinary(text, rule); }
CBinaryData CConversions::base64BinaryFromString(const std::string& text, Rule rule) { return detail::ParseBase64Binary(text, rule); }

// clang-format on

}  // namespace ZuXmlLib16
