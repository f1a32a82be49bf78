#include "ZuXmlLib16/DateTimeSpan.h"

#include <charconv>
#include <cstdint>

#include "ZuXmlLib16/DateTime.h"
#include "ZuXmlLib16/Exceptions.h"
#include "core/Errors.h"
#include "types/AsciiDigit.h"
#include "types/DateTimeFields.h"
#include "types/DateTimeText.h"

namespace ZuXmlLib16 {

using namespace detail;

namespace {

/// What the last designator was, in the order in which they normally stand.
enum State : int {
  kStart = 0,
  kYears = 1,
  kMonths = 2,
  kDays = 3,
  kTimeMark = 4,
  kHours = 5,
  kMinutes = 6,
  kSeconds = 7,
};

/// Reads a duration into a span, component by component.
class DurationReader {
 public:
  DurationReader(std::string_view text, CDateTimeSpan& span) : m_text(text), m_span(span) {}

  /// False for a text of another form.
  bool Read() {
    if (Peek() == '-') {
      m_span.Negate();
      ++m_at;
    }
    if (Peek() != 'P') return false;
    ++m_at;
    while (!IsAtEnd()) {
      if (!ReadComponent()) return false;
    }
    return m_hasComponent && m_text.back() != 'T';
  }

 private:
  bool IsAtEnd() const { return m_at == m_text.size(); }
  char Peek() const { return IsAtEnd() ? '\0' : m_text[m_at]; }

  /// The digits at the cursor; none give 0, too many wrap.
  std::uint32_t ReadNumber() {
    std::uint32_t value = 0;
    for (; IsDigit(Peek()); ++m_at) {
      value = value * 10 + static_cast<std::uint32_t>(Peek() - '0');
    }
    return value;
  }

  bool ReadComponent() {
    const std::uint32_t value = ReadNumber();
    if (IsAtEnd()) return false;
    const char designator = m_text[m_at++];
    if (designator == 'T') return m_state <= kDays && Enter(kTimeMark);  // the value is dropped
    m_hasComponent = true;
    return designator == 'M' ? StoreMonthsOrMinutes(value) : Store(designator, value);
  }

  bool Store(char designator, std::uint32_t value) {
    switch (designator) {
      case 'Y':  // allowed anywhere, and opens the date part again
        m_span.SetYears(static_cast<unsigned short>(value));
        return Enter(kYears);
      case 'D':
        if (m_state > kMonths) return false;
        m_span.SetDays(value);
        return Enter(kDays);
      case 'H':
        if (m_state != kTimeMark) return false;
        m_span.SetHours(value);
        return Enter(kHours);
      case 'S':
      case '.':
        if (m_state < kTimeMark || m_state > kMinutes) return false;
        m_span.SetSeconds(value);
        return Enter(kSeconds) && (designator == 'S' || ReadFraction());
      default:
        return false;
    }
  }

  bool StoreMonthsOrMinutes(std::uint32_t value) {
    if (m_state < kMonths) {
      m_span.SetMonths(value);
      return Enter(kMonths);
    }
    if (m_state != kTimeMark && m_state != kHours) return false;
    m_span.SetMinutes(value);
    return Enter(kMinutes);
  }

  bool Enter(State state) {
    m_state = state;
    return true;
  }

  bool ReadFraction() {
    const SecondFraction fraction = ParseFraction(m_text.substr(m_at));
    m_span.SetMilliSeconds(fraction.milli);
    m_span.SetMicroSeconds(fraction.micro);
    m_span.SetNanoSeconds(fraction.nano);
    if (fraction.digits > kMaxFractionDigits) ThrowDurationFractionTooLong(m_text);
    m_at += fraction.digits;
    if (IsAtEnd()) return true;
    return m_text[m_at++] == 'S';
  }

  std::string_view m_text;
  CDateTimeSpan& m_span;
  std::size_t m_at = 0;
  State m_state = kStart;
  bool m_hasComponent = false;
};

/// Writes a component with its designator; nothing for zero.
char* PutComponent(unsigned long long value, char designator, char* out, char* end) {
  if (value == 0) return out;
  out = std::to_chars(out, end, value).ptr;
  *out++ = designator;
  return out;
}

}  // namespace

CDateTimeSpan::CDateTimeSpan(unsigned long hours, unsigned long long minutes,
                             unsigned long long seconds)
    : m_hours(hours), m_minutes(minutes), m_seconds(seconds) {}

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                             unsigned long hours, unsigned long long minutes,
                             unsigned long long seconds)
    : CDateTimeSpan(years, months, days, hours, minutes, seconds, 0, 0, 0) {}

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                             unsigned long hours, unsigned long long minutes,
                             unsigned long long seconds, unsigned short milli, unsigned short micro,
                             unsigned short nano)
    : m_years(years),
      m_months(months),
      m_days(days),
      m_hours(hours),
      m_minutes(minutes),
      m_seconds(seconds),
      m_milli(milli),
      m_micro(micro),
      m_nano(nano) {}

void CDateTimeSpan::SetDateTimeSpan(unsigned long hours, unsigned long long minutes,
                                    unsigned long long seconds) {
  *this = CDateTimeSpan(hours, minutes, seconds);
}

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                                    unsigned long hours, unsigned long long minutes,
                                    unsigned long long seconds) {
  *this = CDateTimeSpan(years, months, days, hours, minutes, seconds);
}

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days,
                                    unsigned long hours, unsigned long long minutes,
                                    unsigned long long seconds, unsigned short milli,
                                    unsigned short micro, unsigned short nano) {
  *this = CDateTimeSpan(years, months, days, hours, minutes, seconds, milli, micro, nano);
}

CDateTimeSpan CDateTimeSpan::GetAsNegative() const {
  CDateTimeSpan copy(*this);
  copy.m_negative = true;
  return copy;
}

void CDateTimeSpan::ParseXSDDuration(const char* text) {
  Clear();
  if (text == nullptr) ThrowNullDuration();
  ParseXSDDuration(std::string_view(text));
}

void CDateTimeSpan::ParseXSDDuration(std::string_view text) {
  Clear();
  if (text.empty()) ThrowEmptyDuration();
  if (!DurationReader(text, *this).Read()) ThrowInvalidDurationForm(text);
}

std::string CDateTimeSpan::ToString() const {
  char buffer[160];  // at most 5 + 5 * 20 digits, 16 bytes of fraction, 9 letters and a sign
  char* const end = buffer + sizeof(buffer);
  char* out = buffer;
  if (m_negative) *out++ = '-';
  *out++ = 'P';
  out = PutComponent(m_years, 'Y', out, end);
  out = PutComponent(m_months, 'M', out, end);
  out = PutComponent(m_days, 'D', out, end);
  const bool hasSeconds = m_seconds != 0 || (m_milli | m_micro | m_nano) != 0;
  if (!hasSeconds && m_hours == 0 && m_minutes == 0) return std::string(buffer, out);
  *out++ = 'T';
  out = PutComponent(m_hours, 'H', out, end);
  out = PutComponent(m_minutes, 'M', out, end);
  if (!hasSeconds) return std::string(buffer, out);
  out = std::to_chars(out, end, m_seconds).ptr;
  out = FormatFraction(m_milli, m_micro, m_nano, out);
  *out++ = 'S';
  return std::string(buffer, out);
}

bool CDateTimeSpan::HasSameComponents(const CDateTimeSpan& other) const {
  return m_years == other.m_years && m_months == other.m_months && m_days == other.m_days &&
         m_hours == other.m_hours && m_minutes == other.m_minutes && m_seconds == other.m_seconds &&
         m_milli == other.m_milli && m_micro == other.m_micro && m_nano == other.m_nano &&
         m_negative == other.m_negative;
}

int CDateTimeSpan::CompareTo(const CDateTimeSpan& other) const {
  if (HasSameComponents(other)) return kEqual;
  struct Date {
    short year;
    unsigned char month;
  };
  static constexpr Date kReferences[] = {{1696, 9}, {1697, 2}, {1903, 3}, {1903, 7}};
  int common = kIndeterminate;
  try {
    for (const Date& reference : kReferences) {
      const CDateTime point(reference.year, reference.month, 1);
      const int order = (point + *this).CompareTo(point + other);
      const bool isFirst = &reference == kReferences;
      if (order == kIndeterminate || (!isFirst && order != common)) return kIndeterminate;
      common = order;
    }
  } catch (const CZuInvalidValueException&) {
    return kIndeterminate;
  }
  return common;
}

}  // namespace ZuXmlLib16
