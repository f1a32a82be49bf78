#pragma once

#include <string>
#include <string_view>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// An xs:duration (XML Schema Part 2, 3.2.6): nine non-negative components and one sign for all of
/// them. Components are kept as given: 90 minutes stay 90 minutes, 12 months stay 12 months.
/// A plain value without locking.
class ZUXMLLIB16_API CDateTimeSpan {
 public:
  CDateTimeSpan() = default;
  CDateTimeSpan(unsigned long hours, unsigned long long minutes, unsigned long long seconds);
  CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                unsigned long long minutes, unsigned long long seconds);
  CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                unsigned long long minutes, unsigned long long seconds, unsigned short milli,
                unsigned short micro, unsigned short nano);
  CDateTimeSpan(const CDateTimeSpan&) = default;
  CDateTimeSpan& operator=(const CDateTimeSpan&) = default;
  virtual ~CDateTimeSpan() = default;

  /// Replaces the whole value; components that are not given become zero, the sign positive.
  void SetDateTimeSpan(unsigned long hours, unsigned long long minutes, unsigned long long seconds);
  void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                       unsigned long hours, unsigned long long minutes, unsigned long long seconds);
  void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                       unsigned long hours, unsigned long long minutes, unsigned long long seconds,
                       unsigned short milli, unsigned short micro, unsigned short nano);
  /// Zero and positive.
  void Clear() { *this = CDateTimeSpan(); }

  unsigned short GetYears() const { return m_years; }
  unsigned long GetMonths() const { return m_months; }
  unsigned long GetDays() const { return m_days; }
  unsigned long GetHours() const { return m_hours; }
  unsigned long long GetMinutes() const { return m_minutes; }
  unsigned long long GetSeconds() const { return m_seconds; }
  unsigned short GetMilliSeconds() const { return m_milli; }
  unsigned short GetMicroSeconds() const { return m_micro; }
  unsigned short GetNanoSeconds() const { return m_nano; }

  /// The setters store any value; no component has a range.
  void SetYears(unsigned short years) { m_years = years; }
  void SetMonths(unsigned long months) { m_months = months; }
  void SetDays(unsigned long days) { m_days = days; }
  void SetHours(unsigned long hours) { m_hours = hours; }
  void SetMinutes(unsigned long long minutes) { m_minutes = minutes; }
  void SetSeconds(unsigned long long seconds) { m_seconds = seconds; }
  void SetMilliSeconds(unsigned short milli) { m_milli = milli; }
  void SetMicroSeconds(unsigned short micro) { m_micro = micro; }
  void SetNanoSeconds(unsigned short nano) { m_nano = nano; }

  bool IsNegative() const { return m_negative; }
  void Negate() { m_negative = !m_negative; }
  /// A copy that is negative, whatever the sign of this value; zero may be negative.
  CDateTimeSpan GetAsNegative() const;

  /// Reads `[-]P[nY][nM][nD][T[nH][nM][nS.ff]]`, e.g. "P1Y2M3DT4H5M6.789S". Lenient in these ways:
  /// years may stand anywhere ("P1M2Y"), a designator without digits counts zero ("PY"), digits
  /// before 'T' are dropped, the last 'S' may be missing after a fraction ("PT1.5"). Digit runs are
  /// read modulo 2^32, years modulo 2^16; at most nine fraction digits.
  /// @param text  NUL-terminated.
  /// @throws CZuInvalidValueException  null, empty or malformed text; the value then holds what was
  /// read so far.
  void ParseXSDDuration(const char* text);
  void ParseXSDDuration(std::string_view text);

  /// The same form, only with components that are not zero. Zero gives "P" ("-P" when negative),
  /// which ParseXSDDuration refuses.
  std::string ToString() const;

  /// Order of XML Schema Part 2, 3.2.6.2: both spans are added to four reference dates. Differences
  /// of less than a day count only as far as they reach another day, so PT1H equals PT2H.
  /// @return 0 equal, 1 less, 2 greater, 3 indeterminate.
  int CompareTo(const CDateTimeSpan& other) const;

  bool operator==(const CDateTimeSpan& other) const { return CompareTo(other) == 0; }
  bool operator!=(const CDateTimeSpan& other) const { return CompareTo(other) != 0; }
  bool operator<(const CDateTimeSpan& other) const { return CompareTo(other) == 1; }
  bool operator>(const CDateTimeSpan& other) const { return CompareTo(other) == 2; }

 private:
  bool HasSameComponents(const CDateTimeSpan& other) const;

  unsigned short m_years = 0;
  unsigned long m_months = 0;
  unsigned long m_days = 0;
  unsigned long m_hours = 0;
  unsigned long long m_minutes = 0;
  unsigned long long m_seconds = 0;
  unsigned short m_milli = 0;
  unsigned short m_micro = 0;
  unsigned short m_nano = 0;
  bool m_negative = false;
};

}  // namespace ZuXmlLib16
