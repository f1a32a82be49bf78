#include "types/DateTimeText.h"

#include <cstdlib>

#include "core/Errors.h"
#include "types/AsciiDigit.h"
#include "types/DateTimeFields.h"

namespace ZuXmlLib16 {

using namespace detail;

namespace {

constexpr std::string_view kNotSet = "Error: Date Not Set";

/// The number of two decimal digits, -1 when one of them is none.
int ReadPair(const char* digits) {
  if (!IsDigit(digits[0]) || !IsDigit(digits[1])) return -1;
  return (digits[0] - '0') * 10 + (digits[1] - '0');
}

/// The fields of a date of any type; those that its form lacks are zero.
struct DateParts {
  CDateTime::DTType type = CDateTime::DTType::dt_yearZero;
  int year = 0;
  int month = 0;
  int day = 0;
};

/// Reads `--MM`, `--MM--`, `---DD` or `--MM-DD`, the first two characters known; false for another
/// form.
bool ReadRecurringDate(std::string_view body, DateParts& date) {
  const char* const text = body.data();
  switch (body.size()) {
    case 4:
    case 6:  // the older form --MM--, whose last two characters are not looked at
      date.type = CDateTime::DTType::dt_gMonth;
      date.month = ReadPair(text + 2);
      return date.month >= 0;
    case 5:
      date.type = CDateTime::DTType::dt_gDay;
      date.day = ReadPair(text + 3);
      return text[2] == '-' && date.day >= 0;
    case 7:
      date.type = CDateTime::DTType::dt_gMonthDay;
      date.month = ReadPair(text + 2);
      date.day = ReadPair(text + 5);
      return text[4] == '-' && date.month >= 0 && date.day >= 0;
    default:
      return false;
  }
}

/// Reads `[-]CCYY`, `[-]CCYY-MM` or `[-]CCYY-MM-DD`; false for another form.
bool ReadYearDate(std::string_view body, DateParts& date) {
  const bool isNegative = !body.empty() && body[0] == '-';
  if (isNegative) body.remove_prefix(1);
  const char* const text = body.data();
  const std::size_t size = body.size();
  if (size != 4 && size != 7 && size != 10) return false;

  const int century = ReadPair(text);
  const int yearOfCentury = ReadPair(text + 2);
  if (century < 0 || yearOfCentury < 0) return false;
  date.year = (century * 100 + yearOfCentury) * (isNegative ? -1 : 1);
  date.type = CDateTime::DTType::dt_gYear;
  if (size == 4) return true;
  date.month = ReadPair(text + 5);
  date.type = CDateTime::DTType::dt_gYearMonth;
  if (text[4] != '-' || date.month < 0) return false;
  if (size == 7) return true;
  date.day = ReadPair(text + 8);
  date.type = CDateTime::DTType::dt_date;
  return text[7] == '-' && date.day >= 0;
}

constexpr unsigned PowerOfTen(int exponent) {
  unsigned power = 1;
  for (int i = 0; i < exponent; ++i) {
    power *= 10;
  }
  return power;
}

/// Writes a value with leading zeros to at least width digits.
template <int width>
char* PutPadded(unsigned value, char* out) {
  int digits = width;
  for (unsigned limit = PowerOfTen(width); value >= limit; limit *= 10) {
    ++digits;
  }
  for (int i = digits; i-- > 0; value /= 10) {
    out[i] = static_cast<char>('0' + value % 10);
  }
  return out + digits;
}

}  // namespace

SecondFraction detail::ParseFraction(std::string_view text) {
  SecondFraction fraction;
  unsigned short* const groups[] = {&fraction.milli, &fraction.micro, &fraction.nano};
  static constexpr int kWeights[] = {100, 10, 1};
  for (std::size_t& i = fraction.digits; i < text.size() && IsDigit(text[i]); ++i) {
    if (i == kMaxFractionDigits) {
      ++i;
      break;
    }
    unsigned short& group = *groups[i / 3];
    group = static_cast<unsigned short>(group + kWeights[i % 3] * (text[i] - '0'));
  }
  return fraction;
}

char* detail::FormatFraction(unsigned milli, unsigned micro, unsigned nano, char* out) {
  if ((milli | micro | nano) == 0) return out;
  *out++ = '.';
  out = PutPadded<3>(milli, out);
  if ((micro | nano) != 0) out = PutPadded<3>(micro, out);
  if (nano != 0) out = PutPadded<3>(nano, out);
  while (out[-1] == '0') {
    --out;
  }
  return out;
}

char* detail::FormatDateTime(const CDateTime& value, char* out) {
  if (value.IsNotSet()) return out + kNotSet.copy(out, kNotSet.size());
  const unsigned fields = FieldsOf(value.m_type);
  if ((fields & (kYear | kMonth | kDay)) != 0) out = value.WriteDate(fields, out);
  if (fields == FieldsOf(CDateTime::DTType::dt_dateTime)) *out++ = 'T';
  if ((fields & kTimeOfDay) != 0) out = value.WriteTime(out);
  return value.WriteZone(out);
}

// A missing year or month leaves a '-' in its place.
char* CDateTime::WriteDate(unsigned fields, char* out) const {
  if (m_year < 0 || (fields & kYear) == 0) *out++ = '-';
  if ((fields & kYear) != 0) out = PutPadded<4>(static_cast<unsigned>(std::abs(m_year)), out);
  if (fields == kYear) return out;
  *out++ = '-';
  if ((fields & kMonth) != 0) out = PutPadded<2>(m_month, out);
  if ((fields & kDay) == 0) return out;
  *out++ = '-';
  return PutPadded<2>(m_day, out);
}

char* CDateTime::WriteTime(char* out) const {
  out = PutPadded<2>(m_hour, out);
  *out++ = ':';
  out = PutPadded<2>(m_minute, out);
  *out++ = ':';
  out = PutPadded<2>(m_second, out);
  return FormatFraction(m_milli, m_micro, m_nano, out);
}

char* CDateTime::WriteZone(char* out) const {
  if (!m_utc) return out;
  if (!m_hasOffset) {
    *out++ = 'Z';
    return out;
  }
  *out++ = m_zoneHour < 0 ? '-' : '+';
  out = PutPadded<2>(static_cast<unsigned>(std::abs(m_zoneHour)), out);
  *out++ = ':';
  return PutPadded<2>(m_zoneMinute, out);
}

CDateTime::CDateTime(const char* text) {
  const std::string_view view(text != nullptr ? text : "");
  if (text == nullptr || view.find('T') != std::string_view::npos) {
    ParseXSDDateTime(text);
  } else if (view.size() > 2 && view[2] == ':') {
    ParseXSDTime(view);
  } else {
    ParseXSDDate(view);
  }
}

void CDateTime::ParseXSDDate(const char* text) {
  Clear();
  if (text == nullptr) ThrowInvalidDate("Null String");
  ParseXSDDate(std::string_view(text));
}

void CDateTime::ParseXSDDate(std::string_view text) {
  Clear();
  ReadDate(text);
}

void CDateTime::ReadDate(std::string_view text) {
  if (text.empty()) ThrowInvalidDate("Empty String");
  bool hasColon = false;
  for (const char c : text) {
    if (c == 'T') ThrowInvalidDate("'T' not allowed");
    hasColon |= c == ':';
  }
  const bool endsWithZ = text.back() == 'Z';
  if (endsWithZ && hasColon) ThrowInvalidDate("Bad Zone value");

  const std::size_t zoneLength = endsWithZ ? 1 : hasColon ? 6 : 0;
  if (text.size() < zoneLength) ThrowInvalidDateForm(text);
  const std::string_view body = text.substr(0, text.size() - zoneLength);
  DateParts date;
  const bool isRecurring = text.substr(0, 2) == "--";
  const bool isRead = isRecurring ? ReadRecurringDate(body, date) : ReadYearDate(body, date);
  if (!isRead) ThrowInvalidDateForm(text);
  m_type = date.type;
  m_year = static_cast<short>(date.year);
  m_month = static_cast<unsigned char>(date.month);
  m_day = static_cast<unsigned char>(date.day);
  if (zoneLength != 0) SetZone(text.substr(body.size()));
  Validate();
}

void CDateTime::SetZone(std::string_view text) {
  if (text == "Z") return SetUTC();
  const bool isOffset = text.size() == 6 && (text[0] == '+' || text[0] == '-') && text[3] == ':';
  const int hour = isOffset ? ReadPair(text.data() + 1) : -1;
  const int minute = isOffset ? ReadPair(text.data() + 4) : -1;
  if (hour < 0 || minute < 0) ThrowInvalidTimeZoneForm(text);
  const int storedHour = hour == 24 ? 0 : hour;
  SetTimeZone(static_cast<short>(text[0] == '-' ? -storedHour : storedHour),
              static_cast<unsigned char>(minute));
}

void CDateTime::ParseXSDTime(const char* text) {
  Clear();
  if (text == nullptr) ThrowNullTime();
  ParseXSDTime(std::string_view(text));
}

void CDateTime::ParseXSDTime(std::string_view text) {
  Clear();
  ReadTime(text);
  m_type = DTType::dt_time;
}

// Leaves nothing for Validate to find.
void CDateTime::ReadTime(std::string_view text) {
  if (text.empty()) ThrowEmptyTime();
  const bool isClock = text.size() >= 8 && text[2] == ':' && text[5] == ':';
  const int hour = isClock ? ReadPair(text.data()) : -1;
  const int minute = isClock ? ReadPair(text.data() + 3) : -1;
  const int second = isClock ? ReadPair(text.data() + 6) : -1;
  const bool isInRange =
      hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
  if (!isInRange) ThrowInvalidTimeForm(text);
  m_hour = static_cast<unsigned char>(hour);
  m_minute = static_cast<unsigned char>(minute);
  m_second = static_cast<unsigned short>(second);
  std::size_t end = 8;
  if (end < text.size() && text[end] == '.') {
    const SecondFraction fraction = ParseFraction(text.substr(end + 1));
    m_milli = fraction.milli;
    m_micro = fraction.micro;
    m_nano = fraction.nano;
    if (fraction.digits > kMaxFractionDigits) ThrowTimeFractionTooLong(text);
    end += 1 + fraction.digits;
  }
  if (end < text.size()) SetZone(text.substr(end));
}

void CDateTime::ParseXSDDateTime(const char* text) {
  Clear();
  if (text == nullptr) ThrowNullDateTime();
  ParseXSDDateTime(std::string_view(text));
}

void CDateTime::ParseXSDDateTime(std::string_view text) {
  Clear();
  const std::size_t separator = text.find('T');
  if (separator == std::string_view::npos) ThrowDateTimeWithoutTime(text);
  ReadDate(text.substr(0, separator));
  if (m_type != DTType::dt_date) ThrowInvalidDateTimeForm(text);
  // A zone behind the date stays when the time has none.
  ReadTime(text.substr(separator + 1));
  m_type = DTType::dt_dateTime;
}

bool CDateTime::IsNotSet() const {
  if (m_type == DTType::dt_yearZero) return true;
  if (m_type == DTType::dt_time) return false;
  return (m_year | m_month | m_day) == 0 && IsMidnight();
}

std::string CDateTime::ToString() const {
  char buffer[kMaxDateTimeText];
  return std::string(buffer, FormatDateTime(*this, buffer));
}

std::string CDateTime::ToString(const char* format) const {
  const std::string_view name(format != nullptr ? format : "");
  if (name == "s" || IsNotSet()) return ToString();
  if (name.empty() || name == "G") return "";
  return "Unknown Format: " + std::string(name);
}

}  // namespace ZuXmlLib16
