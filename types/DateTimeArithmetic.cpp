#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <limits>

#include "ZuXmlLib16/DateTime.h"
#include "ZuXmlLib16/Exceptions.h"
#include "core/Errors.h"
#include "types/DateTimeFields.h"

namespace ZuXmlLib16 {

using namespace detail;

namespace {

using Long = std::numeric_limits<long long>;

constexpr int kDaysOfCycle = 146097;  // of 400 years, after which the calendar repeats
constexpr int kYearsOfCycle = 400;
constexpr int kLeapYear = 1972;  // stands in for a missing year, so that --02-29 stays what it is
constexpr int kDaysBeforeMonth[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

long long FloorQuotient(long long a, long long b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

long long FloorModulo(long long a, long long b) {
  const long long rest = a % b;
  return rest < 0 ? rest + b : rest;
}

long long SaturatedSum(long long a, long long b) {
  long long sum = 0;
  if (!__builtin_add_overflow(a, b, &sum)) return sum;
  return a < 0 ? Long::min() : Long::max();
}

/// A component of a span with the span's sign, cut to the range of the result.
long long Signed(unsigned long long component, bool isNegative) {
  const unsigned long long limit = static_cast<unsigned long long>(Long::max());
  const long long amount = static_cast<long long>(std::min(component, limit));
  return isNegative ? -amount : amount;
}

/// Adds amount and carry to a field that counts from 0 to base - 1; carry becomes what goes to the
/// next larger field.
long long AddToField(long long field, long long amount, int base, int& carry) {
  const long long sum = SaturatedSum(SaturatedSum(field, amount), carry);
  if (sum >= 0 && sum < base) {
    carry = 0;
    return sum;
  }
  carry = GetQuotient(sum, base);
  return GetModulo(sum, base);
}

/// A date of the Gregorian calendar, extended both ways, with the year 0 in it.
struct CalendarDate {
  long long year;
  int month;
  int day;
};

/// Days from 0001-01-01 to the first day of the year; the year is within one cycle or two.
int DaysBeforeYear(int year) {
  const long long past = year - 1;
  return static_cast<int>(365 * past + FloorQuotient(past, 4) - FloorQuotient(past, 100) +
                          FloorQuotient(past, 400));
}

int DaysBeforeMonth(int year, int month) {
  return kDaysBeforeMonth[month - 1] + (month > 2 && IsLeapYear(year) ? 1 : 0);
}

int DaysInMonth(int year, int month) {
  return month == 2 && !IsLeapYear(year) ? 28 : g_monthMax[month - 1];
}

/// The date so many days after (or before) another one with a valid month and any day.
CalendarDate MovedByDays(const CalendarDate& date, long long days) {
  if (days == 0) return date;
  const long long cycle = FloorQuotient(date.year, kYearsOfCycle);
  const int yearOfCycle = static_cast<int>(FloorModulo(date.year, kYearsOfCycle));
  // Days since the first of January of the cycle's year 1.
  const long long sum = SaturatedSum(
      days, DaysBeforeYear(yearOfCycle) + DaysBeforeMonth(yearOfCycle, date.month) + date.day - 1);
  const long long moreCycles = FloorQuotient(sum, kDaysOfCycle);
  const int rest = static_cast<int>(FloorModulo(sum, kDaysOfCycle));

  int year = 1 + rest / 366;
  while (DaysBeforeYear(year + 1) <= rest) {
    ++year;
  }
  const int dayOfYear = rest - DaysBeforeYear(year);
  int newMonth = 12;
  while (DaysBeforeMonth(year, newMonth) > dayOfYear) {
    --newMonth;
  }
  return {year + (cycle + moreCycles) * kYearsOfCycle, newMonth,
          dayOfYear - DaysBeforeMonth(year, newMonth) + 1};
}

/// The year of a calendar time of UTC.
long long YearOf(long calendarTime) {
  constexpr int kSecondsOfDay = 86400;
  return MovedByDays({1970, 1, 1}, FloorQuotient(calendarTime, kSecondsOfDay)).year;
}

bool FitsYearField(long long year) {
  return year >= std::numeric_limits<short>::min() && year <= std::numeric_limits<short>::max();
}

/// The order of a field that one side's type lacks; its value on the other side.
int OrderAgainstMissing(int value, unsigned field) {
  if (field == kYear) {
    if (value >= 0) return kIndeterminate;
    return value == -1 ? kEqual : kGreater;
  }
  return value == 0 ? kLess : kIndeterminate;
}

int Reversed(int order) {
  return order == kLess ? kGreater : order == kGreater ? kLess : order;
}

int OrderOf(int a, int b) {
  return a == b ? kEqual : a < b ? kLess : kGreater;
}

}  // namespace

bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int GetQuotient(long long a, int b) {
  const float quotient = static_cast<float>(a) / static_cast<float>(b);
  // 2^31 is exact in single precision; the comparisons are false for NaN.
  constexpr float kLimit = 2147483648.0F;
  if (!(quotient >= -kLimit && quotient < kLimit)) return std::numeric_limits<int>::min();
  const int truncated = static_cast<int>(quotient);
  return static_cast<float>(truncated) > quotient ? truncated - 1 : truncated;
}

long long GetModulo(long long a, int b) {
  const long long multiple = static_cast<long long>(b) * GetQuotient(a, b);
  long long modulo = 0;
  // Beyond the range the difference wraps; the quotient is no longer the true one there anyway.
  static_cast<void>(__builtin_sub_overflow(a, multiple, &modulo));
  return modulo;
}

CDateTime::CDateTime(const long& calendarTime) {
  *this = calendarTime;
}

CDateTime& CDateTime::operator=(const long& calendarTime) {
  const std::time_t time = calendarTime;
  std::tm local = {};
  // It fails where the year does not fit an int.
  const bool isConverted = localtime_r(&time, &local) != nullptr;
  const long long year = isConverted ? local.tm_year + 1900LL : YearOf(calendarTime);
  if (!FitsYearField(year)) ThrowInvalidYear(year);
  Clear();
  SetDateTime(static_cast<short>(year), static_cast<unsigned char>(local.tm_mon + 1),
              static_cast<unsigned char>(local.tm_mday), static_cast<unsigned char>(local.tm_hour),
              static_cast<unsigned char>(local.tm_min), static_cast<unsigned short>(local.tm_sec));
  return *this;
}

CDateTime CDateTime::GetCurrentTime() {
  return CDateTime(static_cast<long>(std::time(nullptr)));
}

int CDateTime::GetDayOfYear() const {
  Require(kYear | kMonth | kDay, "GetDayOfYear");
  int days = m_day;
  for (int month = 1; month < std::min<int>(m_month, 13); ++month) {
    days += DaysInMonth(m_year, month);
  }
  return days;
}

int CDateTime::GetDayOfWeek() const {
  Require(kYear | kMonth | kDay, "GetDayOfWeek");
  // 0001-01-01 is a Monday, and a cycle holds whole weeks.
  const int year = static_cast<int>(FloorModulo(m_year, kYearsOfCycle));
  return static_cast<int>(FloorModulo(DaysBeforeYear(year) + GetDayOfYear(), 7)) + 1;
}

long CDateTime::GetTime() const {
  const unsigned dateFields = kYear | kMonth | kDay;
  if ((dateFields & ~FieldsOf(m_type)) != 0) ThrowNoCalendarTime(GetTypeAsString());
  std::tm local = {};
  local.tm_year = m_year - 1900;
  local.tm_mon = m_month - 1;
  local.tm_mday = m_day;
  local.tm_hour = m_hour;
  local.tm_min = m_minute;
  local.tm_sec = m_second;
  local.tm_isdst = -1;
  return std::mktime(&local);
}

void CDateTime::AddDateTimeSpan(const CDateTimeSpan& span) {
  const bool isNegative = span.IsNegative();
  const unsigned fields = FieldsOf(m_type);
  const bool hasYear = (fields & kYear) != 0;
  const bool hasMonth = (fields & kMonth) != 0;
  const bool hasDay = (fields & kDay) != 0;

  int carry = 0;
  const long long month =
      AddToField((hasMonth ? m_month : 1) - 1, Signed(span.GetMonths(), isNegative), 12, carry);
  CalendarDate date = {};
  date.year = (hasYear ? m_year : kLeapYear) + Signed(span.GetYears(), isNegative) + carry;
  // Only an inexact quotient leaves the month outside its range.
  date.year += FloorQuotient(month, 12);
  date.month = static_cast<int>(FloorModulo(month, 12)) + 1;

  carry = 0;
  const long long nano = AddToField(m_nano, Signed(span.GetNanoSeconds(), isNegative), 1000, carry);
  const long long micro =
      AddToField(m_micro, Signed(span.GetMicroSeconds(), isNegative), 1000, carry);
  const long long milli =
      AddToField(m_milli, Signed(span.GetMilliSeconds(), isNegative), 1000, carry);
  const long long second = AddToField(m_second, Signed(span.GetSeconds(), isNegative), 60, carry);
  const long long minute = AddToField(m_minute, Signed(span.GetMinutes(), isNegative), 60, carry);
  const long long hour = AddToField(m_hour, Signed(span.GetHours(), isNegative), 24, carry);

  const int yearOfCycle = static_cast<int>(FloorModulo(date.year, kYearsOfCycle));
  const int lastDay = DaysInMonth(yearOfCycle, date.month);
  date.day = std::clamp<int>(hasDay ? m_day : 1, 1, lastDay);
  date = MovedByDays(date, SaturatedSum(Signed(span.GetDays(), isNegative), carry));
  if (hasYear && !FitsYearField(date.year)) ThrowInvalidYear(date.year);

  // A field left outside its range by an inexact quotient keeps its low bits, 65535 seconds for -1.
  m_year = hasYear ? static_cast<short>(date.year) : static_cast<short>(0);
  m_month = hasMonth ? static_cast<unsigned char>(date.month) : static_cast<unsigned char>(0);
  m_day = hasDay ? static_cast<unsigned char>(date.day) : static_cast<unsigned char>(0);
  m_hour = static_cast<unsigned char>(hour);
  m_minute = static_cast<unsigned char>(minute);
  m_second = static_cast<unsigned short>(second);
  m_milli = static_cast<unsigned short>(milli);
  m_micro = static_cast<unsigned short>(micro);
  m_nano = static_cast<unsigned short>(nano);
}

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span) {
  AddDateTimeSpan(span);
  return *this;
}

CDateTime& CDateTime::operator-=(const CDateTimeSpan& span) {
  CDateTimeSpan negated(span);
  negated.Negate();
  return *this += negated;
}

CDateTime CDateTime::operator+(const CDateTimeSpan& span) const {
  return CDateTime(*this) += span;
}

CDateTime CDateTime::operator-(const CDateTimeSpan& span) const {
  return CDateTime(*this) -= span;
}

CDateTimeSpan CDateTime::operator-(const CDateTime&) const {
  return {};
}

void CDateTime::Normalize() {
  if (!m_hasOffset) return;
  CDateTimeSpan offset(static_cast<unsigned long>(std::abs(m_zoneHour)), m_zoneMinute, 0);
  if (m_zoneHour >= 0) offset.Negate();
  AddDateTimeSpan(offset);
  SetTimeZone(0, 0);
}

CDateTime CDateTime::GetNormalized() const {
  CDateTime copy(*this);
  try {
    copy.Normalize();
  } catch (const CZuInvalidValueException&) {
    // The copy is still as it was.
  }
  return copy;
}

int Compare(const CDateTime& a, const CDateTime& b) {
  struct Pair {
    int a;
    int b;
    unsigned field;
  };
  const Pair pairs[] = {
      {a.m_year, b.m_year, kYear},
      {a.m_month, b.m_month, kMonth},
      {a.m_day, b.m_day, kDay},
      {a.m_hour, b.m_hour, kTimeOfDay},
      {a.m_minute, b.m_minute, kTimeOfDay},
      {a.m_second, b.m_second, kTimeOfDay},
      {a.m_milli, b.m_milli, kTimeOfDay},
      {a.m_micro, b.m_micro, kTimeOfDay},
      {a.m_nano, b.m_nano, kTimeOfDay},
  };
  const unsigned fieldsOfA = FieldsOf(a.m_type);
  const unsigned fieldsOfB = FieldsOf(b.m_type);
  for (const Pair& pair : pairs) {
    const bool inA = (fieldsOfA & pair.field) != 0;
    const bool inB = (fieldsOfB & pair.field) != 0;
    int order = kEqual;
    if (inA && inB) {
      const bool isOtherEra =
          pair.field == kYear && ((pair.a < 0 && pair.b > 0) || (pair.a > 0 && pair.b < 0));
      order = isOtherEra ? kIndeterminate : OrderOf(pair.a, pair.b);
    } else if (inB) {
      order = OrderAgainstMissing(pair.b, pair.field);
    } else if (inA) {
      order = Reversed(OrderAgainstMissing(pair.a, pair.field));
    }
    if (order != kEqual) return order;
  }
  return kEqual;
}

int CDateTime::CompareTo(const CDateTime& other) const {
  if (!m_hasOffset && !other.m_hasOffset && m_utc == other.m_utc) return Compare(*this, other);
  try {
    CDateTime a(*this);
    CDateTime b(other);
    a.Normalize();
    b.Normalize();
    if (a.m_utc == b.m_utc) return Compare(a, b);
    return a.m_utc ? Reversed(b.OrderAgainstZoned(a)) : a.OrderAgainstZoned(b);
  } catch (const CZuInvalidValueException&) {
    return kIndeterminate;
  }
}

// The zone of this value may be any from +14:00, its earliest instant, to -14:00, its latest.
int CDateTime::OrderAgainstZoned(const CDateTime& zoned) const {
  if (Compare(AtZone(14), zoned) == kGreater) return kGreater;
  return Compare(AtZone(-14), zoned) == kLess ? kLess : kIndeterminate;
}

CDateTime CDateTime::AtZone(short hour) const {
  CDateTime copy(*this);
  copy.SetTimeZone(hour, 0);
  copy.Normalize();
  return copy;
}

bool CDateTime::operator<=(const CDateTime& other) const {
  const int order = CompareTo(other);
  return order == kEqual || order == kLess;
}

bool CDateTime::operator>=(const CDateTime& other) const {
  const int order = CompareTo(other);
  return order == kEqual || order == kGreater;
}

}  // namespace ZuXmlLib16
