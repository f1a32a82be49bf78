#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ZuXmlLib16/DateTimeSpan.h"
#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

class CDateTime;

namespace detail {
char* FormatDateTime(const CDateTime& value, char* out);
}

inline constexpr short MIN_YEAR = -9999;
inline constexpr short MAX_YEAR = 9999;
/// Days of the months, January first; February as in a leap year.
inline constexpr unsigned char g_monthMax[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

/// The Gregorian rule on the signed year as it stands.
ZUXMLLIB16_API bool IsLeapYear(int year);

/// floor(a / b), computed and rounded in single precision (XML Schema Part 2, Appendix E,
/// fQuotient): from 2^24 on the result may be off. What does not fit an int gives its smallest
/// value.
ZUXMLLIB16_API int GetQuotient(long long a, int b);
/// a - b * GetQuotient(a, b), so outside 0..b-1 wherever the quotient is off.
ZUXMLLIB16_API long long GetModulo(long long a, int b);

/// Compares field by field from the year down, zones left aside.
/// A field that only one side's type carries decides: a missing year is -1 against a negative year;
/// any other missing field orders first against 0; else the result is indeterminate. So are years
/// of opposite sign.
/// @return 0 equal, 1 a is less, 2 a is greater, 3 indeterminate.
ZUXMLLIB16_API int Compare(const CDateTime& a, const CDateTime& b);

/// A value of one of the eight XML Schema date and time types (XML Schema Part 2, 3.2.7 to 3.2.14).
/// The type decides which fields are meaningful; the others are zero.
/// A setter whose value is out of range throws CZuInvalidValueException and has stored the field.
/// A plain value without locking; GetTime and the conversions from a calendar time use the
/// process's time zone.
class ZUXMLLIB16_API CDateTime {
 public:
  enum class DTType : std::int32_t {
    dt_yearZero = 0,  ///< no value: the state after Clear
    dt_dateTime,
    dt_date,
    dt_gYearMonth,
    dt_gYear,
    dt_time,
    dt_gDay,
    dt_gMonth,
    dt_gMonthDay,
  };

  /// Without a type.
  CDateTime() = default;
  /// All fields zero, which for most types is not a valid value yet.
  CDateTime(DTType type) : m_type(type) {}
  /// A text with a 'T' is read as dateTime, one with ':' as its third character as time, any other
  /// as date. Throws as the Parse operations do.
  CDateTime(const char* text);
  CDateTime(short year, unsigned char month, unsigned char day);
  CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
            unsigned char minute, unsigned short second);
  CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
            unsigned char minute, unsigned short second, unsigned short milli, unsigned short micro,
            unsigned short nano);
  /// A dateTime without zone: the local time of a C library calendar time in seconds.
  CDateTime(const long& calendarTime);
  CDateTime(const CDateTime&) = default;
  CDateTime& operator=(const CDateTime&) = default;
  CDateTime& operator=(const long& calendarTime);
  virtual ~CDateTime() = default;

  static CDateTime GetCurrentTime();

  /// Replaces all fields and drops the zone.
  /// @throws CZuInvalidStateException  the value has another type already; nothing is changed.
  /// @throws CZuInvalidValueException  a field is out of range or not carried by the type.
  void SetDateTime(DTType type, short year, unsigned char month, unsigned char day,
                   unsigned char hour, unsigned char minute, unsigned short second,
                   unsigned short milli, unsigned short micro, unsigned short nano);
  /// The shorter forms do the same for the type they name. SetFracTime makes a time of that
  /// fraction of a second after midnight.
  void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                   unsigned char minute, unsigned short second);
  void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                   unsigned char minute, unsigned short second, unsigned short milli,
                   unsigned short micro, unsigned short nano);
  void SetDate(short year, unsigned char month, unsigned char day);
  void SetTime(unsigned char hour, unsigned char minute, unsigned short second);
  void SetTime(unsigned char hour, unsigned char minute, unsigned short second,
               unsigned short milli, unsigned short micro, unsigned short nano);
  void SetFracTime(unsigned short milli, unsigned short micro, unsigned short nano);
  void SetGYear(short year);
  void SetGYearMonth(short year, unsigned char month);
  void SetGMonth(unsigned char month);
  void SetGMonthDay(unsigned char month, unsigned char day);
  void SetGDay(unsigned char day);

  /// Takes the fields of the target type, and the zone, from a source that carries them all. The
  /// type this value had does not matter; source may be this value.
  /// @throws CZuInvalidValueException  source lacks a field or target is no type.
  void SetDateTime(const CDateTime& source, DTType target);

  /// Each reads the whole text; the form decides the type, not the type the value had.
  /// Dates: `[-]CCYY[-MM[-DD]]`, `--MM-DD`, `--MM` (also `--MM--`), `---DD`; times:
  /// `hh:mm:ss[.f{0,9}]`; both with an optional zone `Z` or `(+|-)hh:mm`, an hour of 24 counting as
  /// 0. The sign of a zone belongs to its hour, so that of "-00:30" is lost.
  /// @param text  NUL-terminated.
  /// @throws CZuInvalidValueException  null, empty or malformed text or a field out of range; the
  /// value then holds what was read so far.
  void ParseXSDDateTime(const char* text);
  void ParseXSDDateTime(std::string_view text);
  void ParseXSDDate(const char* text);
  void ParseXSDDate(std::string_view text);
  void ParseXSDTime(const char* text);
  void ParseXSDTime(std::string_view text);

  /// @param hour  -23..23, the sign of the whole zone.
  /// @param minute  0..59.
  /// @throws CZuInvalidValueException  out of range.
  void SetTimeZone(short hour, unsigned char minute);
  /// Zone "Z"; an offset is dropped.
  void SetUTC();
  /// Back to no type and no fields.
  void Clear() { *this = CDateTime(); }

  DTType GetType() const { return m_type; }
  std::string GetTypeAsString() const { return GetTypeAsString(m_type); }
  /// The name in XML Schema, "yearZero" for none; "" for a number that is no type.
  static std::string GetTypeAsString(DTType type);

  /// Getters and setters of one field.
  /// @throws CZuInvalidStateException  the type does not carry the field.
  short GetYear() const;
  unsigned char GetMonth() const;
  unsigned char GetDay() const;
  unsigned char GetHour() const;
  unsigned char GetMinute() const;
  unsigned short GetSecond() const;
  unsigned short GetMilliSecond() const;
  unsigned short GetMicroSecond() const;
  unsigned short GetNanoSecond() const;
  void SetYear(short year);
  void SetMonth(unsigned char month);
  void SetDay(unsigned char day);
  void SetHour(unsigned char hour);
  void SetMinute(unsigned char minute);
  void SetSecond(unsigned short second);
  void SetMilliSecond(unsigned short milli);
  void SetMicroSecond(unsigned short micro);
  void SetNanoSecond(unsigned short nano);

  /// Seconds with their fraction.
  /// @throws CZuInvalidStateException  the type is neither dateTime nor time.
  double GetRealSecond() const;
  /// 1 to 366.
  /// @throws CZuInvalidStateException  the type is neither dateTime nor date; so do the next two.
  int GetDayOfYear() const;
  /// 1 = Sunday to 7 = Saturday, whatever the zone.
  int GetDayOfWeek() const;
  /// The fields taken as local time, as a C library calendar time; -1 where mktime fails. The zone
  /// is ignored.
  long GetTime() const;

  /// Whether there is a zone, "Z" or an offset.
  bool IsUTC() const { return m_utc; }
  /// Whether the zone is an offset.
  bool HasTimeZone() const { return m_hasOffset; }
  /// @throws CZuInvalidStateException  no offset; GetZoneMinute alike.
  short GetZoneHour() const;
  unsigned char GetZoneMinute() const;

  /// The lexical form; "Error: Date Not Set" when there is nothing to print.
  std::string ToString() const;
  /// @param format  "s" is the lexical form; null, "" and "G" give ""; others "Unknown Format: "
  /// and the format. A value that is not set says so first.
  std::string ToString(const char* format) const;

  /// A copy moved to the zone +00:00 when there is an offset, otherwise as it is. Where the year
  /// would not fit any more, the copy stays unmoved.
  CDateTime GetNormalized() const;

  /// @throws CZuInvalidValueException  a field is out of range or not carried by the type.
  void Validate() const;

  /// XML Schema Part 2, Appendix E, with the quotients of GetQuotient. Zone and type stay. Fields
  /// finer than the type are kept although they do not print, so that twice PT12H moves a date by a
  /// day; missing coarser ones count as 1972, January, the 1st and are dropped again. Year 0 and
  /// years beyond MAX_YEAR may result.
  /// @throws CZuInvalidValueException  a year beyond 16 bits; the value is unchanged.
  void AddDateTimeSpan(const CDateTimeSpan& span);
  CDateTime& operator+=(const CDateTimeSpan& span);
  CDateTime& operator-=(const CDateTimeSpan& span);
  CDateTime operator+(const CDateTimeSpan& span) const;
  CDateTime operator-(const CDateTimeSpan& span) const;
  /// Always the zero span: the difference of two dates is deliberately not computed.
  CDateTimeSpan operator-(const CDateTime& other) const;

  /// Order of XML Schema Part 2, 3.2.7.4: values with and without zone are ordered only when they
  /// are more than 14 hours apart.
  /// @return 0 equal, 1 less, 2 greater, 3 indeterminate.
  int CompareTo(const CDateTime& other) const;

  bool operator==(const CDateTime& other) const { return CompareTo(other) == 0; }
  bool operator!=(const CDateTime& other) const { return CompareTo(other) != 0; }
  bool operator<(const CDateTime& other) const { return CompareTo(other) == 1; }
  bool operator>(const CDateTime& other) const { return CompareTo(other) == 2; }
  bool operator<=(const CDateTime& other) const;
  bool operator>=(const CDateTime& other) const;

 private:
  friend int Compare(const CDateTime& a, const CDateTime& b);
  friend char* detail::FormatDateTime(const CDateTime& value, char* out);

  void Require(unsigned fields, const char* operation) const;
  template <class T>
  void Store(T CDateTime::*member, T value, unsigned field, const char* getter);
  void ValidateTime() const;
  bool IsMidnight() const;

  void ReadDate(std::string_view text);
  void ReadTime(std::string_view text);
  void SetZone(std::string_view text);
  bool IsNotSet() const;
  char* WriteDate(unsigned fields, char* out) const;
  char* WriteTime(char* out) const;
  char* WriteZone(char* out) const;

  void Normalize();
  CDateTime AtZone(short hour) const;
  int OrderAgainstZoned(const CDateTime& zoned) const;

  DTType m_type = DTType::dt_yearZero;
  short m_year = 0;
  unsigned char m_month = 0;
  unsigned char m_day = 0;
  unsigned char m_hour = 0;
  unsigned char m_minute = 0;
  unsigned short m_second = 0;
  unsigned short m_milli = 0;
  unsigned short m_micro = 0;
  unsigned short m_nano = 0;
  bool m_utc = false;
  bool m_hasOffset = false;
  short m_zoneHour = 0;
  unsigned char m_zoneMinute = 0;
};

}  // namespace ZuXmlLib16
