#include "ZuXmlLib16/DateTime.h"

#include "core/Errors.h"
#include "types/DateTimeFields.h"

namespace ZuXmlLib16 {

using namespace detail;

namespace {

void ValidateMonth(CDateTime::DTType type, int month) {
  if ((FieldsOf(type) & kMonth) == 0) {
    if (month != 0) ThrowDateFieldNotAllowed("Month", month, CDateTime::GetTypeAsString(type));
  } else if (month < 1 || month > 12) {
    ThrowInvalidMonth(month);
  }
}

void ValidateYear(CDateTime::DTType type, int year) {
  if ((FieldsOf(type) & kYear) == 0) {
    if (year != 0) ThrowDateFieldNotAllowed("Year", year, CDateTime::GetTypeAsString(type));
  } else if (year == 0 || year < MIN_YEAR || year > MAX_YEAR) {
    ThrowInvalidYear(year);
  }
}

// Relies on a valid month.
void ValidateDay(CDateTime::DTType type, int year, int month, int day) {
  const unsigned fields = FieldsOf(type);
  if ((fields & kDay) == 0) {
    if (day != 0) ThrowDateFieldNotAllowed("Day", day, CDateTime::GetTypeAsString(type));
  } else if ((fields & kMonth) == 0) {
    if (day < 1 || day > 31) ThrowInvalidDay(day);
  } else if ((fields & kYear) == 0) {
    if (day < 1 || day > g_monthMax[month - 1]) ThrowInvalidDayOfMonth(day);
  } else {
    const bool isMissingLeapDay = month == 2 && day == 29 && !IsLeapYear(year);
    if (day < 1 || day > g_monthMax[month - 1] || isMissingLeapDay) ThrowInvalidDayOfDate(day);
  }
}

}  // namespace

CDateTime::CDateTime(short year, unsigned char month, unsigned char day) {
  SetDate(year, month, day);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned short second) {
  SetDateTime(year, month, day, hour, minute, second);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned short second, unsigned short milli,
                     unsigned short micro, unsigned short nano) {
  SetDateTime(year, month, day, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetDateTime(DTType type, short year, unsigned char month, unsigned char day,
                            unsigned char hour, unsigned char minute, unsigned short second,
                            unsigned short milli, unsigned short micro, unsigned short nano) {
  if (m_type != DTType::dt_yearZero && m_type != type) {
    ThrowDateTypeConflict(GetTypeAsString(type), GetTypeAsString());
  }
  Clear();
  m_type = type;
  m_year = year;
  m_month = month;
  m_day = day;
  m_hour = hour;
  m_minute = minute;
  m_second = second;
  m_milli = milli;
  m_micro = micro;
  m_nano = nano;
  Validate();
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned short second) {
  SetDateTime(DTType::dt_dateTime, year, month, day, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned short second, unsigned short milli,
                            unsigned short micro, unsigned short nano) {
  SetDateTime(DTType::dt_dateTime, year, month, day, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetDate(short year, unsigned char month, unsigned char day) {
  SetDateTime(DTType::dt_date, year, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned short second) {
  SetTime(hour, minute, second, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned short second,
                        unsigned short milli, unsigned short micro, unsigned short nano) {
  SetDateTime(DTType::dt_time, 0, 0, 0, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetFracTime(unsigned short milli, unsigned short micro, unsigned short nano) {
  SetTime(0, 0, 0, milli, micro, nano);
}

void CDateTime::SetGYear(short year) {
  SetDateTime(DTType::dt_gYear, year, 0, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGYearMonth(short year, unsigned char month) {
  SetDateTime(DTType::dt_gYearMonth, year, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonth(unsigned char month) {
  SetDateTime(DTType::dt_gMonth, 0, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonthDay(unsigned char month, unsigned char day) {
  SetDateTime(DTType::dt_gMonthDay, 0, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGDay(unsigned char day) {
  SetDateTime(DTType::dt_gDay, 0, 0, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetDateTime(const CDateTime& source, DTType target) {
  if (!IsDateType(target)) ThrowUnknownDateType(static_cast<int>(target));
  const unsigned fields = FieldsOf(target);
  if ((fields & ~FieldsOf(source.m_type)) != 0) {
    ThrowDateConversion(GetTypeAsString(target), source.GetTypeAsString());
  }
  CDateTime result(target);
  if ((fields & kYear) != 0) result.m_year = source.m_year;
  if ((fields & kMonth) != 0) result.m_month = source.m_month;
  if ((fields & kDay) != 0) result.m_day = source.m_day;
  if ((fields & kTimeOfDay) != 0) {
    result.m_hour = source.m_hour;
    result.m_minute = source.m_minute;
    result.m_second = source.m_second;
    result.m_milli = source.m_milli;
    result.m_micro = source.m_micro;
    result.m_nano = source.m_nano;
  }
  if (fields != 0) {
    result.m_utc = source.m_utc;
    result.m_hasOffset = source.m_hasOffset;
    result.m_zoneHour = source.m_zoneHour;
    result.m_zoneMinute = source.m_zoneMinute;
  }
  *this = result;
  Validate();
}

void CDateTime::SetTimeZone(short hour, unsigned char minute) {
  m_zoneHour = hour;
  m_zoneMinute = minute;
  if (hour < -23 || hour > 23 || minute > 59) ThrowInvalidTimeZone(hour, minute);
  m_utc = true;
  m_hasOffset = true;
}

void CDateTime::SetUTC() {
  m_utc = true;
  m_hasOffset = false;
  m_zoneHour = 0;
  m_zoneMinute = 0;
}

std::string CDateTime::GetTypeAsString(DTType type) {
  return IsDateType(type) ? kDateTypes[static_cast<std::size_t>(type)].name : "";
}

void CDateTime::Require(unsigned fields, const char* operation) const {
  if ((fields & ~FieldsOf(m_type)) != 0) ThrowDateTypeLacksField(operation, GetTypeAsString());
}

short CDateTime::GetYear() const {
  Require(kYear, "GetYear");
  return m_year;
}

unsigned char CDateTime::GetMonth() const {
  Require(kMonth, "GetMonth");
  return m_month;
}

unsigned char CDateTime::GetDay() const {
  Require(kDay, "GetDay");
  return m_day;
}

unsigned char CDateTime::GetHour() const {
  Require(kTimeOfDay, "GetHour");
  return m_hour;
}

unsigned char CDateTime::GetMinute() const {
  Require(kTimeOfDay, "GetMinute");
  return m_minute;
}

unsigned short CDateTime::GetSecond() const {
  Require(kTimeOfDay, "GetSecond");
  return m_second;
}

unsigned short CDateTime::GetMilliSecond() const {
  Require(kTimeOfDay, "GetMilliSecond");
  return m_milli;
}

unsigned short CDateTime::GetMicroSecond() const {
  Require(kTimeOfDay, "GetMicroSecond");
  return m_micro;
}

unsigned short CDateTime::GetNanoSecond() const {
  Require(kTimeOfDay, "GetNanoSecond");
  return m_nano;
}

// The setters report a missing field with the getter's name.
template <class T>
void CDateTime::Store(T CDateTime::*member, T value, unsigned field, const char* getter) {
  Require(field, getter);
  this->*member = value;
  Validate();
}

void CDateTime::SetYear(short year) {
  Store(&CDateTime::m_year, year, kYear, "GetYear");
}

void CDateTime::SetMonth(unsigned char month) {
  Store(&CDateTime::m_month, month, kMonth, "GetMonth");
}

void CDateTime::SetDay(unsigned char day) {
  Store(&CDateTime::m_day, day, kDay, "GetDay");
}

void CDateTime::SetHour(unsigned char hour) {
  Store(&CDateTime::m_hour, hour, kTimeOfDay, "GetHour");
}

void CDateTime::SetMinute(unsigned char minute) {
  Store(&CDateTime::m_minute, minute, kTimeOfDay, "GetMinute");
}

void CDateTime::SetSecond(unsigned short second) {
  Store(&CDateTime::m_second, second, kTimeOfDay, "GetSecond");
}

void CDateTime::SetMilliSecond(unsigned short milli) {
  Store(&CDateTime::m_milli, milli, kTimeOfDay, "GetMilliSecond");
}

void CDateTime::SetMicroSecond(unsigned short micro) {
  Store(&CDateTime::m_micro, micro, kTimeOfDay, "GetMicroSecond");
}

void CDateTime::SetNanoSecond(unsigned short nano) {
  Store(&CDateTime::m_nano, nano, kTimeOfDay, "GetNanoSecond");
}

double CDateTime::GetRealSecond() const {
  Require(kTimeOfDay, "GetRealSecond");
  return m_second + m_milli / 1000.0 + m_micro / 1000000.0 + m_nano / 1000000000.0;
}

short CDateTime::GetZoneHour() const {
  if (!m_hasOffset) ThrowNoTimeZone();
  return m_zoneHour;
}

unsigned char CDateTime::GetZoneMinute() const {
  if (!m_hasOffset) ThrowNoTimeZone();
  return m_zoneMinute;
}

void CDateTime::Validate() const {
  if (m_type == DTType::dt_yearZero) return;
  ValidateMonth(m_type, m_month);
  ValidateYear(m_type, m_year);
  ValidateDay(m_type, m_year, m_month, m_day);
  ValidateTime();
}

bool CDateTime::IsMidnight() const {
  return (m_hour | m_minute | m_second | m_milli | m_micro | m_nano) == 0;
}

void CDateTime::ValidateTime() const {
  if (IsMidnight()) return;
  struct Part {
    int value;
    int max;
    const char* name;
    const char* variable;
  };
  const Part parts[] = {
      {m_hour, 23, "Hour", "hour"},
      {m_minute, 59, "Minute", "minute"},
      {m_second, 59, "Second", "second"},
      {m_milli, 999, "Milli-Second", "milli"},
      {m_micro, 999, "Micro-Second", "micro"},
      {m_nano, 999, "Nano-Second", "nano"},
  };
  const bool hasTime = (FieldsOf(m_type) & kTimeOfDay) != 0;
  for (const Part& part : parts) {
    if (!hasTime && part.value != 0) {
      ThrowDateFieldNotAllowed(part.name, part.value, GetTypeAsString());
    }
    if (part.value > part.max) {
      ThrowInvalidTimePart(part.name, part.value, part.variable, part.max);
    }
  }
}

}  // namespace ZuXmlLib16
