#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>

#include "ZuXmlLib16/DateTime.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using DT = CDateTime::DTType;

enum Order { kEqual, kLess, kGreater, kIndeterminate };
constexpr int kReversed[] = {kEqual, kGreater, kLess, kIndeterminate};
constexpr unsigned kSeed = 20240229;

constexpr DT kTypes[] = {DT::dt_dateTime, DT::dt_date, DT::dt_gYearMonth, DT::dt_gYear,
                         DT::dt_time,     DT::dt_gDay, DT::dt_gMonth,     DT::dt_gMonthDay};

CDateTimeSpan Span(const char* text) {
  CDateTimeSpan span;
  span.ParseXSDDuration(text);
  return span;
}

TEST(DateTimeZone, IsAppliedByNormalising) {
  const char* const cases[][2] = {
      {"2018-05-07T12:30:00+05:30", "2018-05-07T07:00:00+00:00"},
      {"2018-12-31T23:00:00-05:30", "2019-01-01T04:30:00+00:00"},
      {"2018-05-07T12:30:00-00:30", "2018-05-07T12:00:00+00:00"},  // read as +00:30
      {"2018-05-07T12:30:00", "2018-05-07T12:30:00"},
      {"2018-05-07+05:00", "2018-05-06+00:00"},
      {"-0001-12-31T23:00:00-02:00", "0000-01-01T01:00:00+00:00"},  // a year 0 is not repaired
  };
  for (const auto& c : cases)
    EXPECT_EQ(CDateTime(c[0]).GetNormalized().ToString(), c[1]) << c[0];
}

TEST(DateTimeArithmetic, AddsAsAppendixESays) {
  // clang-format off
  const char* const cases[][3] = {
      {"2000-01-12T12:13:14Z", "P1Y3M5DT7H10M3.3S", "2001-04-17T19:23:17.3Z"},
      {"2000-01-12-05:00", "PT33H", "2000-01-13-05:00"}, {"2000-01-31", "P1M", "2000-02-29"},
      {"2001-03-31", "-P1M", "2001-02-28"}, {"2000-02-29", "P1Y", "2001-02-28"},
      {"1999-12-31", "P1D", "2000-01-01"}, {"1900-02-28", "P1D", "1900-03-01"},
      {"2018-05-07", "P292194D", "2818-05-07"},  // two cycles of 400 years
      {"-0001-12-31", "P1D", "0000-01-01"},      // there is a year 0 in sums
      {"0400-01-01", "-P146098D", "-0001-12-31"}, {"12:00:00", "-PT0.5S", "11:59:59.5"},
      {"23:59:59.9999", "PT0.0001S", "00:00:00"}, {"--02-29", "P1Y", "--02-28"},
      {"--12", "P1M", "--01"}, {"---31", "P1D", "---01"}, {"2018", "P11M", "2018"},
  };
  // clang-format on
  for (const auto& c : cases) {
    EXPECT_EQ((CDateTime(c[0]) + Span(c[1])).ToString(), c[2]) << c[0] << " + " << c[1];
    CDateTimeSpan negated = Span(c[1]);
    negated.Negate();
    EXPECT_EQ((CDateTime(c[0]) - negated).ToString(), c[2]) << c[0] << " - -" << c[1];
  }
  const CDateTime date("2000-03-30");
  EXPECT_EQ((date + Span("P1D") + Span("P1M")).ToString(), "2000-04-30");
  EXPECT_EQ((date + Span("P1M") + Span("P1D")).ToString(), "2000-05-01");
  EXPECT_EQ((date - CDateTime("1999-01-01")).ToString(), "P");  // never computed
}

TEST(DateTimeArithmetic, AgreesWithTheCLibrary) {
  std::mt19937_64 random(kSeed);
  SCOPED_TRACE(kSeed);
  const auto below = [&random](unsigned long limit) { return static_cast<long>(random() % limit); };
  for (int i = 0; i < 20000; ++i) {
    const auto at = [](std::time_t moment) {
      std::tm tm = {};
      gmtime_r(&moment, &tm);
      return CDateTime(
          static_cast<short>(tm.tm_year + 1900), static_cast<unsigned char>(tm.tm_mon + 1),
          static_cast<unsigned char>(tm.tm_mday), static_cast<unsigned char>(tm.tm_hour),
          static_cast<unsigned char>(tm.tm_min), static_cast<unsigned short>(tm.tm_sec));
    };
    const std::time_t start = below(310000000000) - 60000000000;  // years 68 to 9892
    const long days = below(50000);
    const long hours = below(200000);
    const long seconds = below(200000);
    CDateTimeSpan span(0, 0, static_cast<unsigned long>(days), static_cast<unsigned long>(hours), 0,
                       static_cast<unsigned long long>(seconds));
    long total = days * 86400 + hours * 3600 + seconds;
    if (i % 2 != 0) {
      span.Negate();
      total = -total;
    }
    std::tm expected = {};
    const std::time_t end = start + total;
    gmtime_r(&end, &expected);
    if (expected.tm_year + 1900 < 1 || expected.tm_year + 1900 > 9999) continue;
    const CDateTime sum = at(start) + span;
    ASSERT_EQ(sum.ToString(), at(end).ToString()) << span.ToString() << " from " << start;
    ASSERT_EQ(sum.GetDayOfWeek(), expected.tm_wday + 1) << sum.ToString();
    ASSERT_EQ(sum.GetDayOfYear(), expected.tm_yday + 1) << sum.ToString();
  }
}

// The quotient is rounded in single precision, and the sums inherit what that does.
TEST(DateTimeArithmetic, KeepsSinglePrecision) {
  EXPECT_EQ(GetQuotient(31457279, 60), 524288);
  EXPECT_EQ(GetModulo(31457279, 60), -1);
  EXPECT_EQ((CDateTime("00:00:00") + Span("PT31457279S")).GetSecond(), 65535);
  EXPECT_EQ(GetQuotient(16777217, 1), 16777216);
  EXPECT_EQ(GetModulo(-1, 3), 2);
  EXPECT_EQ(GetQuotient(-2147483648LL, 1), INT_MIN);
  for (const long long outside : {2147483648LL, LLONG_MAX, LLONG_MIN}) {
    EXPECT_EQ(GetQuotient(outside, 1), INT_MIN);
    GetModulo(outside, INT_MIN);
  }
  EXPECT_EQ(GetQuotient(1, 0), INT_MIN);
  EXPECT_EQ(GetQuotient(0, 0), INT_MIN);
}

TEST(DateTimeArithmetic, RefusesYearsBeyondSixteenBitsUnchanged) {
  CDateTime date(9999, 12, 31);
  EXPECT_ZU_ERROR(CZuInvalidValueException, date += Span("P65535Y"),
                  "Invalid Year [75534] (-9999 <= year <= 9999 && year != 0)", "");
  EXPECT_EQ(date.ToString(), "9999-12-31");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime("2018-05") + Span("P4294967295M"),
                  "Invalid Year [357915959] (-9999 <= year <= 9999 && year != 0)", "");
  date += Span("P1D");  // beyond the range of Validate, yet a result
  EXPECT_EQ(date.ToString(), "10000-01-01");
  EXPECT_EQ((date + Span("P22767Y11M30D")).ToString(), "32767-12-31");
  EXPECT_THROW(date + Span("P22768Y"), CZuInvalidValueException);
}

TEST(DateTimeArithmetic, EndsForAnySpan) {
  const unsigned long long amounts[] = {1, UINT_MAX, LLONG_MAX, ULLONG_MAX};
  for (const DT type : kTypes) {
    CDateTime value;
    value.SetDateTime(CDateTime("2018-05-07T12:30:45.5+01:00"), type);
    for (unsigned mask = 1; mask < 64; ++mask) {
      for (const unsigned long long amount : amounts) {
        const auto pick = [&](unsigned bit) { return (mask & bit) != 0 ? amount : 0; };
        CDateTimeSpan span(static_cast<unsigned short>(pick(1)), pick(2), pick(4), pick(8),
                           pick(16), pick(32), 65535, 65535, 65535);
        for (int sign = 0; sign < 2; ++sign, span.Negate()) {
          try {
            const CDateTime sum = value + span;
            sum.ToString();
            sum.CompareTo(value);
          } catch (const CZuInvalidValueException&) {
          }
        }
      }
    }
  }
}

TEST(DateTimeOrder, FollowsFieldsAndZones) {
  // clang-format off
  const struct {
    const char* a;
    const char* b;
    int order;
  } cases[] = {
      {"2000-01-01T12:00:00Z", "2000-01-01T12:00:00", kIndeterminate},
      {"2000-01-01T12:00:00Z", "2000-01-02T12:00:00", kLess},
      {"2000-01-16T00:00:00", "2000-01-16T14:00:00Z", kIndeterminate},
      {"2000-01-16T00:00:00", "2000-01-16T14:00:01Z", kLess},
      {"2000-01-16T14:00:01", "2000-01-16T00:00:00Z", kGreater},
      {"2000-03-04T20:00:00-03:00", "2000-03-04T23:00:00Z", kEqual},
      {"2000-03-04T20:00:00+03:00", "2000-03-04T20:00:00+02:59", kLess},
      {"2000-01-01T12:00:00.000000001", "2000-01-01T12:00:00", kGreater},
      {"2018-05-07+05:00", "2018-05-06Z", kEqual}, {"-0002-01-01", "-0001-01-01", kLess},
      {"-0001-01-01", "0001-01-01", kIndeterminate},  // years of opposite sign
      // A field that one side lacks: first against 0, a missing year -1 against negative ones.
      {"2018-05-07", "2018-05-07T00:00:00.5", kLess},
      {"2018-05-07", "2018-05-07T01:00:00", kIndeterminate},
      {"2018-05", "2018-05-07", kIndeterminate}, {"--05-07", "2018-05-07", kIndeterminate},
      {"--05-07", "-0001-05-07", kEqual}, {"--05-07", "-0002-05-07", kGreater},
  };
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.a) + " and " + c.b);
    const CDateTime a(c.a);
    const CDateTime b(c.b);
    EXPECT_EQ(a.CompareTo(b), c.order);
    EXPECT_EQ(b.CompareTo(a), kReversed[c.order]);
    EXPECT_TRUE((a == b) == (c.order == kEqual) && (a != b) == (c.order != kEqual));
    EXPECT_TRUE((a < b) == (c.order == kLess) && (a > b) == (c.order == kGreater));
    EXPECT_EQ(a <= b, c.order == kEqual || c.order == kLess);
    EXPECT_EQ(a >= b, c.order == kEqual || c.order == kGreater);
  }
  // Normalising leaves the range of a year.
  CDateTime last = CDateTime("9999-12-31T23:00:00-05:00") + Span("P22768Y");
  EXPECT_EQ(last.CompareTo(last), kIndeterminate);
  EXPECT_EQ(last.GetNormalized().ToString(), last.ToString());
}

TEST(DateTimeOrder, IsAntisymmetricAndTransitive) {
  std::mt19937 random(kSeed);
  SCOPED_TRACE(kSeed);
  const auto make = [&random] {
    CDateTime value(2018, 5, static_cast<unsigned char>(1 + random() % 4),
                    static_cast<unsigned char>(random() % 24), 0, 0);
    if (random() % 3 == 0) value.SetUTC();
    if (random() % 3 == 0) value.SetTimeZone(static_cast<short>(random() % 29 - 14), 0);
    return value;
  };
  const auto anyType = [&random](const CDateTime& value) {
    CDateTime converted;
    converted.SetDateTime(value, kTypes[random() % 8]);
    return converted;
  };
  for (int i = 0; i < 20000; ++i) {
    const CDateTime a = make();
    const CDateTime b = make();
    const CDateTime c = make();
    SCOPED_TRACE(a.ToString() + " " + b.ToString() + " " + c.ToString());
    if (a <= b && b < c) {
      ASSERT_TRUE(a < c);
    }
    const CDateTime x = anyType(a);
    const CDateTime y = anyType(b);
    ASSERT_EQ(x.CompareTo(y), kReversed[y.CompareTo(x)]) << x.ToString() << " " << y.ToString();
  }
}

/// The process's time zone, until the scope ends.
class ZoneScope {
 public:
  explicit ZoneScope(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
  ZoneScope(const ZoneScope&) = delete;
  ZoneScope& operator=(const ZoneScope&) = delete;
  ~ZoneScope() {
    unsetenv("TZ");
    tzset();
  }
};

TEST(DateTimeCalendar, TakesFieldsAsLocalTimeWhateverTheirZone) {
  const ZoneScope centralEurope("CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ(CDateTime("2018-01-15T12:00:00-05:00").GetTime(), 1516014000);
  EXPECT_EQ(CDateTime("2018-07-15T12:00:00.9Z").GetTime(), 1531648800);
  CDateTime local(DT::dt_time);
  local = 1531648800L;
  EXPECT_EQ(local.ToString(), "2018-07-15T12:00:00");
}

TEST(DateTimeCalendar, KnowsDaysOfWeekAndYear) {
  const ZoneScope scope("UTC0");
  EXPECT_EQ(CDateTime("2018-05-06T23:59:59-12:00").GetDayOfWeek(), 1);  // whatever the zone
  for (const char* text : {"-0001-03-01", "-0400-02-28", "-9999-12-31", "0001-01-01"}) {
    const CDateTime date(text);
    const std::time_t time = date.GetTime();
    std::tm expected = {};
    localtime_r(&time, &expected);
    EXPECT_EQ(date.GetDayOfWeek(), expected.tm_wday + 1) << text;
    EXPECT_EQ(date.GetDayOfYear(), expected.tm_yday + 1) << text;
  }
}

TEST(DateTimeCalendar, RefusesTimesBeyondTheYears) {
  const ZoneScope scope("UTC0");
  const std::string range = "] (-9999 <= year <= 9999 && year != 0)";
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime(253402300800L), "Invalid Year [10000" + range,
                  "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime(LONG_MIN),
                  "Invalid Year [-292277022657" + range, "");
  EXPECT_GT(CDateTime::GetCurrentTime().GetYear(), 2000);
}

}  // namespace
}  // namespace ZuXmlLib16
