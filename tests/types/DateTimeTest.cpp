#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "ZuXmlLib16/DateTime.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using DT = CDateTime::DTType;

constexpr int kEqual = 0;
constexpr int kLess = 1;
constexpr int kGreater = 2;
constexpr int kIndeterminate = 3;
constexpr unsigned kSeed = 20240229;

constexpr DT kTypes[] = {DT::dt_dateTime, DT::dt_date, DT::dt_gYearMonth, DT::dt_gYear,
                         DT::dt_time,     DT::dt_gDay, DT::dt_gMonth,     DT::dt_gMonthDay};

using Parser = void (CDateTime::*)(const char*);
constexpr Parser kDateTime = &CDateTime::ParseXSDDateTime;
constexpr Parser kDate = &CDateTime::ParseXSDDate;
constexpr Parser kTime = &CDateTime::ParseXSDTime;

CDateTimeSpan Span(const char* text) {
  CDateTimeSpan span;
  span.ParseXSDDuration(text);
  return span;
}

TEST(DateTimeText, ReadsEveryFormAndWritesItBack) {
  const struct {
    Parser parse;
    const char* text;
    const char* written;
    const char* type;
  } cases[] = {
      {kDate, "2018-05-07", "2018-05-07", "date"},
      {kDate, "-0001-01-01", "-0001-01-01", "date"},
      {kDate, "2016-02-29Z", "2016-02-29Z", "date"},
      {kDate, "2000-02-29-05:30", "2000-02-29-05:30", "date"},
      {kDate, "2018-05-07+24:00", "2018-05-07+00:00", "date"},
      {kDate, "2018-05-07-24:15", "2018-05-07+00:15", "date"},
      {kDate, "2018-05-07-00:30", "2018-05-07+00:30", "date"},  // the sign belongs to the hour
      {kDate, "2018", "2018", "gYear"},
      {kDate, "-2018-05:00", "-2018-05:00", "gYear"},
      {kDate, "2018-05", "2018-05", "gYearMonth"},
      {kDate, "2018-05Z", "2018-05Z", "gYearMonth"},
      {kDate, "--02-29", "--02-29", "gMonthDay"},
      {kDate, "--02-29+01:00", "--02-29+01:00", "gMonthDay"},
      {kDate, "--12", "--12", "gMonth"},
      {kDate, "--12--", "--12", "gMonth"},
      {kDate, "--12xyZ", "--12Z",
       "gMonth"},  // the two characters of the old form are not looked at
      {kDate, "---31Z", "---31Z", "gDay"},
      {kTime, "00:00:00", "00:00:00", "time"},
      {kTime, "12:30:00.", "12:30:00", "time"},
      {kTime, "12:30:00.Z", "12:30:00Z", "time"},
      {kTime, "23:59:59.5-14:00", "23:59:59.5-14:00", "time"},
      {kTime, "12:30:00.0015", "12:30:00.0015", "time"},
      {kTime, "12:30:00.000000120Z", "12:30:00.00000012Z", "time"},
      {kTime, "12:30:00.123456789", "12:30:00.123456789", "time"},
      {kDateTime, "2018-05-07T12:30:00Z", "2018-05-07T12:30:00Z", "dateTime"},
      {kDateTime, "-0044-03-15T12:30:00.25+05:30", "-0044-03-15T12:30:00.25+05:30", "dateTime"},
      {kDateTime, "2018-05-07ZT12:30:00", "2018-05-07T12:30:00Z", "dateTime"},
      {kDateTime, "2018-05-07+01:00T12:30:00Z", "2018-05-07T12:30:00Z", "dateTime"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    CDateTime value(DT::dt_gDay);  // the type before does not matter
    (value.*c.parse)(c.text);
    EXPECT_EQ(value.ToString(), c.written);
    EXPECT_EQ(value.GetTypeAsString(), c.type);
    EXPECT_EQ(CDateTime(c.text).ToString(), c.written);  // finds the form by itself
  }
}

TEST(DateTimeText, RefusesOtherFormsWithTheirMessages) {
  const std::string shape = "] expected CCYY-MM-DD[Z|[+|-]hh:mm]";
  const std::string clock = "] expected hh:mm:ss[.ff]";
  const struct {
    Parser parse;
    const char* text;
    std::string message;
  } cases[] = {
      {kDate, nullptr, "Invalid Date (Null String)"},
      {kDate, "", "Invalid Date (Empty String)"},
      {kDate, "T", "Invalid Date ('T' not allowed)"},
      {kDate, "2018-05-07T:Z", "Invalid Date ('T' not allowed)"},
      {kDate, "2018-05-07+01:00Z", "Invalid Date (Bad Zone value)"},
      {kDate, "12018-01-01", "Invalid XSD Date [12018-01-01" + shape},
      {kDate, "218-01-01", "Invalid XSD Date [218-01-01" + shape},
      {kDate, "2018-1-001", "Invalid XSD Date [2018-1-001" + shape},
      {kDate, "2018/05-07", "Invalid XSD Date [2018/05-07" + shape},
      {kDate, "2018-05/07", "Invalid XSD Date [2018-05/07" + shape},
      {kDate, "2018-05-0a", "Invalid XSD Date [2018-05-0a" + shape},
      {kDate, " 2018-05-07", "Invalid XSD Date [ 2018-05-07" + shape},
      {kDate, "1:2", "Invalid XSD Date [1:2" + shape},
      {kDate, "Z", "Invalid XSD Date [Z" + shape},
      {kDate, "-", "Invalid XSD Date [-" + shape},
      {kDate, "--Z", "Invalid XSD Date [--Z" + shape},
      {kDate, "--1:00", "Invalid XSD Date [--1:00" + shape},
      {kDate, "--005", "Invalid XSD Date [--005" + shape},
      {kDate, "--05/07", "Invalid XSD Date [--05/07" + shape},
      {kDate, "--05-07-08", "Invalid XSD Date [--05-07-08" + shape},
      {kDate, "2018-05-07 05:00", "Invalid XSD Time Zone [ 05:00]."},
      {kDate, "2018-05-07+0500:", "Invalid XSD Time Zone [+0500:]."},
      {kDate, "2018-05-07+05:60", "Invalid TimeZone [5:60]"},
      {kDate, "2018-02-30-25:00", "Invalid TimeZone [-25:0]"},
      {kDate, "0000-01-01", "Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
      {kDate, "0000-13-01", "Invalid Month [13] (1 <= month <= 12)"},
      {kDate, "--00", "Invalid Month [0] (1 <= month <= 12)"},
      {kDate, "2018-02-29", "Invalid Day [29] (1 <= day <= days in month"},  // no parenthesis
      {kDate, "1900-02-29", "Invalid Day [29] (1 <= day <= days in month"},
      {kDate, "--02-30", "Invalid Day [30] (1 <= day <= days in month)"},
      {kDate, "---32", "Invalid Day [32] (1 <= day <= 31)"},
      {kTime, nullptr, "Invalid Time (Null String)"},
      {kTime, "", "Invalid XSD Time (Empty String)"},
      {kTime, "12:30:0", "Invalid XSD Time [12:30:0" + clock},
      {kTime, "12-30-00", "Invalid XSD Time [12-30-00" + clock},
      {kTime, "24:00:00", "Invalid XSD Time [24:00:00" + clock},
      {kTime, "12:60:00", "Invalid XSD Time [12:60:00" + clock},
      {kTime, "12:30:60", "Invalid XSD Time [12:30:60" + clock},
      {kTime, "12:30:00.1234567891",
       "Invalid XSD Time [12:30:00.1234567891] Fraction part too long"},
      {kTime, "12:30:00,5", "Invalid XSD Time Zone [,5]."},
      {kTime, "12:30:00.5.5", "Invalid XSD Time Zone [.5]."},
      {kDateTime, nullptr, "Invalid DateTime (Null String)"},
      {kDateTime, "", "Invalid XSD DateTime []."},
      {kDateTime, "2018-05-07", "Invalid XSD DateTime [2018-05-07]."},
      {kDateTime, "2018-05T12:30:00",
       "Invalid XSD DateTime [2018-05T12:30:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
      {kDateTime, "T12:30:00", "Invalid Date (Empty String)"},
      {kDateTime, "2018-05-07T", "Invalid XSD Time (Empty String)"},
      {kDateTime, "2018-05-07T12:30:00T", "Invalid XSD Time Zone [T]."},
      {kDateTime, "2018-02-29T12:30:00", "Invalid Day [29] (1 <= day <= days in month"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    CDateTime value;
    EXPECT_ZU_ERROR(CZuInvalidValueException, (value.*c.parse)(c.text), c.message, "");
  }
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime(static_cast<const char*>(nullptr)),
                  "Invalid DateTime (Null String)", "");
}

TEST(DateTimeText, HostileTextFailsWhole) {
  CDateTime value;
  const std::string huge(1000000, '9');
  EXPECT_THROW(value.ParseXSDDate(huge), CZuInvalidValueException);
  EXPECT_THROW(value.ParseXSDTime(huge), CZuInvalidValueException);
  EXPECT_THROW(value.ParseXSDTime("12:30:00." + huge), CZuInvalidValueException);
  const std::string withNul("2018-05-07\0", 11);
  EXPECT_ZU_ERROR(CZuInvalidValueException, value.ParseXSDDate(withNul),
                  "Invalid XSD Date [" + withNul + "] expected CCYY-MM-DD[Z|[+|-]hh:mm]", "");
}

TEST(DateTimeText, PrintsWhatIsNotSetAndOnlyKnownFormats) {
  const char* const notSet = "Error: Date Not Set";
  EXPECT_EQ(CDateTime().ToString(), notSet);
  CDateTime cleared(DT::dt_dateTime);
  cleared.SetUTC();
  EXPECT_EQ(cleared.ToString(), notSet);
  EXPECT_EQ(cleared.ToString("x"), notSet);
  EXPECT_EQ(CDateTime(DT::dt_time).ToString(), "00:00:00");
  const CDateTime value(2018, 5, 7);
  EXPECT_EQ(value.ToString("s"), "2018-05-07");
  EXPECT_EQ(value.ToString("x"), "Unknown Format: x");
  for (const char* general : {static_cast<const char*>(nullptr), "", "G"}) {
    EXPECT_EQ(value.ToString(general), "");
  }
}

TEST(DateTimeText, RandomValuesRoundTrip) {
  std::mt19937 random(kSeed);
  SCOPED_TRACE(kSeed);
  const auto below = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
  for (int i = 0; i < 20000; ++i) {
    const int fraction[] = {0, below(10) * 100, below(1000)};
    CDateTime value(
        static_cast<short>((1 + below(9999)) * (below(4) == 0 ? -1 : 1)),
        static_cast<unsigned char>(1 + below(12)), static_cast<unsigned char>(1 + below(28)),
        static_cast<unsigned char>(below(24)), static_cast<unsigned char>(below(60)),
        static_cast<unsigned short>(below(60)), static_cast<unsigned short>(fraction[below(3)]),
        static_cast<unsigned short>(fraction[below(3)]),
        static_cast<unsigned short>(fraction[below(3)]));
    if (below(3) == 0) value.SetUTC();
    if (below(3) == 0) value.SetTimeZone(static_cast<short>(below(47) - 23), 30);
    CDateTime part;
    part.SetDateTime(value, kTypes[below(8)]);
    const std::string text = part.ToString();
    const CDateTime again(text.c_str());
    ASSERT_EQ(again.ToString(), text);
    ASSERT_EQ(again.GetType(), part.GetType()) << text;
    ASSERT_EQ(again.CompareTo(part), kEqual) << text;
    ASSERT_EQ(again.HasTimeZone(), part.HasTimeZone()) << text;
  }
}

struct FieldCase {
  const char* name;
  void (*get)(const CDateTime&);
  void (*set)(CDateTime&);
  const char* types;  // the numbers of the types that carry the field
};

const FieldCase kFields[] = {
    {"GetYear", [](const CDateTime& d) { d.GetYear(); }, [](CDateTime& d) { d.SetYear(1); },
     "1234"},
    {"GetMonth", [](const CDateTime& d) { d.GetMonth(); }, [](CDateTime& d) { d.SetMonth(1); },
     "12378"},
    {"GetDay", [](const CDateTime& d) { d.GetDay(); }, [](CDateTime& d) { d.SetDay(1); }, "1268"},
    {"GetHour", [](const CDateTime& d) { d.GetHour(); }, [](CDateTime& d) { d.SetHour(1); }, "15"},
    {"GetMinute", [](const CDateTime& d) { d.GetMinute(); }, [](CDateTime& d) { d.SetMinute(1); },
     "15"},
    {"GetSecond", [](const CDateTime& d) { d.GetSecond(); }, [](CDateTime& d) { d.SetSecond(1); },
     "15"},
    {"GetMilliSecond", [](const CDateTime& d) { d.GetMilliSecond(); },
     [](CDateTime& d) { d.SetMilliSecond(1); }, "15"},
    {"GetMicroSecond", [](const CDateTime& d) { d.GetMicroSecond(); },
     [](CDateTime& d) { d.SetMicroSecond(1); }, "15"},
    {"GetNanoSecond", [](const CDateTime& d) { d.GetNanoSecond(); },
     [](CDateTime& d) { d.SetNanoSecond(1); }, "15"},
    {"GetRealSecond", [](const CDateTime& d) { d.GetRealSecond(); }, nullptr, "15"},
    {"GetDayOfYear", [](const CDateTime& d) { d.GetDayOfYear(); }, nullptr, "12"},
    {"GetDayOfWeek", [](const CDateTime& d) { d.GetDayOfWeek(); }, nullptr, "12"},
};

TEST(DateTimeFields, AreRefusedByTypesWithoutThem) {
  const CDateTime full(2018, 5, 7, 12, 30, 45);
  for (const FieldCase& field : kFields) {
    for (const DT type : kTypes) {
      CDateTime value;
      value.SetDateTime(full, type);
      SCOPED_TRACE(field.name + (" of " + value.GetTypeAsString()));
      const char number = static_cast<char>('0' + static_cast<int>(type));
      if (std::string(field.types).find(number) != std::string::npos) {
        EXPECT_NO_THROW(field.get(value));
        if (field.set != nullptr) {
          EXPECT_NO_THROW(field.set(value));
        }
        continue;
      }
      const std::string message = std::string("Failed to ") + field.name +
                                  ". Invalid Date Type: " + value.GetTypeAsString() + ".";
      EXPECT_ZU_ERROR(CZuInvalidStateException, field.get(value), message, "");
      // The setters report themselves by the getter's name.
      if (field.set != nullptr) {
        EXPECT_ZU_ERROR(CZuInvalidStateException, field.set(value), message, "");
      }
    }
  }
  EXPECT_ZU_ERROR(
      CZuInvalidStateException, CDateTime("12:00:00").GetTime(),
      "Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: time.", "");
  EXPECT_EQ(CDateTime::GetTypeAsString(static_cast<DT>(9)), "");
  EXPECT_DOUBLE_EQ(CDateTime("12:00:45.123456789").GetRealSecond(), 45.123456789);
}

TEST(DateTimeFields, AreValidatedByType) {
  const struct {
    DT type;
    int fields[9];
    const char* message;
  } cases[] = {
      {DT::dt_time, {0, 1}, "Invalid Month [1] for type time"},
      {DT::dt_gDay, {1, 0, 1}, "Invalid Year [1] for type gDay"},
      {DT::dt_gYear, {10000}, "Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)"},
      {DT::dt_gYear, {2018, 0, 1}, "Invalid Day [1] for type gYear"},
      {DT::dt_date, {2018, 5, 7, 1, 1}, "Invalid Hour [1] for type date"},
      {DT::dt_gMonth, {0, 5, 0, 0, 2}, "Invalid Minute [2] for type gMonth"},
      {DT::dt_date, {2018, 5, 7, 0, 0, 3}, "Invalid Second [3] for type date"},
      {DT::dt_date, {2018, 5, 7, 0, 0, 0, 4}, "Invalid Milli-Second [4] for type date"},
      {DT::dt_date, {2018, 5, 7, 0, 0, 0, 0, 5}, "Invalid Micro-Second [5] for type date"},
      {DT::dt_date, {2018, 5, 7, 0, 0, 0, 0, 0, 6}, "Invalid Nano-Second [6] for type date"},
      {DT::dt_time, {0, 0, 0, 24}, "Invalid Hour [24] (0 <= hour <= 23)"},
      {DT::dt_time, {0, 0, 0, 0, 60}, "Invalid Minute [60] (0 <= minute <= 59)"},
      {DT::dt_time, {0, 0, 0, 0, 0, 60}, "Invalid Second [60] (0 <= second <= 59)"},
      {DT::dt_time, {0, 0, 0, 0, 0, 0, 1000}, "Invalid Milli-Second [1000] (0 <= milli <= 999)"},
      {DT::dt_time, {0, 0, 0, 0, 0, 0, 0, 1000}, "Invalid Micro-Second [1000] (0 <= micro <= 999)"},
      {DT::dt_time,
       {0, 0, 0, 0, 0, 0, 0, 0, 1000},
       "Invalid Nano-Second [1000] (0 <= nano <= 999)"},
  };
  for (const auto& c : cases) {
    CDateTime value;
    const auto byte = [&c](int i) { return static_cast<unsigned char>(c.fields[i]); };
    const auto word = [&c](int i) { return static_cast<unsigned short>(c.fields[i]); };
    EXPECT_ZU_ERROR(CZuInvalidValueException,
                    value.SetDateTime(c.type, static_cast<short>(c.fields[0]), byte(1), byte(2),
                                      byte(3), byte(4), word(5), word(6), word(7), word(8)),
                    c.message, "");
  }
  CDateTime date(2018, 5, 7);
  EXPECT_ZU_ERROR(CZuInvalidStateException, date.SetTime(1, 2, 3),
                  "Failed to copy CDateTime. Invalid Date Type: time, expected: date.", "");
  EXPECT_EQ(date.ToString(), "2018-05-07");
}

// A value that a setter refused is stored all the same, and prints with all its digits.
TEST(DateTimeFields, StayStoredWhenRefused) {
  CDateTime value(2018, 5, 7, 12, 30, 45);
  value.SetTimeZone(1, 0);
  EXPECT_THROW(value.SetTimeZone(SHRT_MIN, 255), CZuInvalidValueException);
  EXPECT_THROW(value.SetYear(SHRT_MIN), CZuInvalidValueException);
  EXPECT_THROW(value.SetMonth(255), CZuInvalidValueException);
  EXPECT_THROW(value.SetDay(255), CZuInvalidValueException);
  EXPECT_THROW(value.SetHour(255), CZuInvalidValueException);
  EXPECT_THROW(value.SetMinute(255), CZuInvalidValueException);
  EXPECT_THROW(value.SetSecond(65535), CZuInvalidValueException);
  EXPECT_THROW(value.SetMilliSecond(65535), CZuInvalidValueException);
  EXPECT_THROW(value.SetMicroSecond(65535), CZuInvalidValueException);
  EXPECT_THROW(value.SetNanoSecond(65535), CZuInvalidValueException);
  EXPECT_EQ(value.ToString(), "-32768-255-255T255:255:65535.655356553565535-32768:255");
  value.GetDayOfYear();
  value.GetDayOfWeek();
  value.GetNormalized();
}

TEST(DateTimeFields, ConvertToTypesTheSourceCovers) {
  const CDateTime source("2018-05-07T12:30:45.5+01:00");
  const char* const texts[] = {"2018-05-07T12:30:45.5+01:00",
                               "2018-05-07+01:00",
                               "2018-05+01:00",
                               "2018+01:00",
                               "12:30:45.5+01:00",
                               "---07+01:00",
                               "--05+01:00",
                               "--05-07+01:00"};
  int covered = 0;
  for (int from = 0; from < 8; ++from) {
    for (int to = 0; to < 8; ++to) {
      CDateTime value(texts[from]);
      try {
        value.SetDateTime(value, kTypes[to]);
        EXPECT_EQ(value.ToString(), texts[to]);
        ++covered;
      } catch (const CZuInvalidValueException& error) {
        EXPECT_EQ(error.GetMessage(),
                  "Attempting to set a CDateTime of type " +
                      CDateTime::GetTypeAsString(kTypes[to]) + " using an XmlDateTime of type " +
                      CDateTime::GetTypeAsString(kTypes[from]) +
                      ". The source CDateTime does not contian enough data to allow the "
                      "conversion.");
        EXPECT_EQ(value.ToString(), texts[from]);
      }
    }
  }
  EXPECT_EQ(covered, 8 + 6 + 3 + 1 + 1 + 1 + 1 + 3);
  CDateTime value;
  EXPECT_ZU_ERROR(CZuInvalidValueException, value.SetDateTime(source, static_cast<DT>(9)),
                  "Unknown date type 9.", "");
}

TEST(DateTimeZone, IsAnOffsetOrZ) {
  CDateTime value(2018, 5, 7);
  EXPECT_FALSE(value.IsUTC());
  value.SetTimeZone(-5, 30);
  EXPECT_TRUE(value.IsUTC() && value.HasTimeZone());
  EXPECT_EQ(value.GetZoneHour(), -5);
  EXPECT_EQ(value.GetZoneMinute(), 30);
  value.SetUTC();
  EXPECT_TRUE(value.IsUTC() && !value.HasTimeZone());
  EXPECT_ZU_ERROR(CZuInvalidStateException, value.GetZoneHour(), "TimeZone is not been used", "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, value.SetTimeZone(24, 0), "Invalid TimeZone [24:0]",
                  "");
}

TEST(DateTimeZone, IsAppliedByNormalising) {
  const char* const cases[][2] = {
      {"2018-05-07T12:30:00+05:30", "2018-05-07T07:00:00+00:00"},
      {"2018-12-31T23:00:00-05:30", "2019-01-01T04:30:00+00:00"},
      {"2018-05-07T12:30:00-00:30", "2018-05-07T12:00:00+00:00"},  // read as +00:30
      {"2018-05-07T12:30:00Z", "2018-05-07T12:30:00Z"},
      {"2018-05-07T12:30:00", "2018-05-07T12:30:00"},
      {"2018-05-07+05:00", "2018-05-06+00:00"},
      {"02:00:00+05:00", "21:00:00+00:00"},
      {"-0001-12-31T23:00:00-02:00", "0000-01-01T01:00:00+00:00"},  // a year 0 is not repaired
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CDateTime(c[0]).GetNormalized().ToString(), c[1]) << c[0];
  }
}

TEST(DateTimeArithmetic, AddsAsAppendixESays) {
  const char* const cases[][3] = {
      {"2000-01-12T12:13:14Z", "P1Y3M5DT7H10M3.3S", "2001-04-17T19:23:17.3Z"},
      {"2000-01", "-P3M", "1999-10"},
      {"2000-01-12-05:00", "PT33H", "2000-01-13-05:00"},
      {"2000-01-31", "P1M", "2000-02-29"},
      {"2001-03-31", "-P1M", "2001-02-28"},
      {"2000-02-29", "P1Y", "2001-02-28"},
      {"2000-02-29", "P4Y", "2004-02-29"},
      {"1999-12-31", "P1D", "2000-01-01"},
      {"2000-03-01", "-P1D", "2000-02-29"},
      {"1900-02-28", "P1D", "1900-03-01"},
      {"2018-05-07", "P292194D", "2818-05-07"},  // two cycles of 400 years
      {"-0001-12-31", "P1D", "0000-01-01"},      // there is a year 0 in sums
      {"0400-01-01", "-P146098D", "-0001-12-31"},
      {"12:00:00", "-PT0.5S", "11:59:59.5"},
      {"12:00:00", "-PT0.000000001S", "11:59:59.999999999"},
      {"23:59:59.9999", "PT0.0001S", "00:00:00"},
      {"--02-28", "P1D", "--02-29"},
      {"--02-29", "P1Y", "--02-28"},
      {"--12-31", "P1D", "--01-01"},
      {"--12", "P1M", "--01"},
      {"---31", "P1D", "---01"},
      {"---01", "-P1D", "---31"},
      {"2018", "P11M", "2018"},
      {"2018", "P12M", "2019"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ((CDateTime(c[0]) + Span(c[1])).ToString(), c[2]) << c[0] << " + " << c[1];
    CDateTimeSpan negated = Span(c[1]);
    negated.Negate();
    EXPECT_EQ((CDateTime(c[0]) - negated).ToString(), c[2]) << c[0] << " - -" << c[1];
  }
  const CDateTime date("2000-03-30");
  EXPECT_EQ((date + Span("P1D") + Span("P1M")).ToString(), "2000-04-30");
  EXPECT_EQ((date + Span("P1M") + Span("P1D")).ToString(), "2000-05-01");
  EXPECT_EQ((date + Span("PT12H") + Span("PT12H")).ToString(), "2000-03-31");
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
  EXPECT_EQ(GetQuotient(-1, 3), -1);
  EXPECT_EQ(GetModulo(-1, 3), 2);
  EXPECT_EQ(GetQuotient(-3, 3), -1);
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
  const struct {
    const char* a;
    const char* b;
    int order;
  } cases[] = {
      {"2000-01-01T12:00:00Z", "2000-01-01T12:00:00", kIndeterminate},
      {"2000-01-01T12:00:00Z", "2000-01-02T12:00:00", kLess},
      {"2000-01-15T00:00:00", "2000-02-15T00:00:00", kLess},
      {"2000-01-15T12:00:00", "2000-01-16T12:00:00Z", kLess},
      {"2000-01-16T00:00:00", "2000-01-16T14:00:00Z", kIndeterminate},
      {"2000-01-16T00:00:00", "2000-01-16T14:00:01Z", kLess},
      {"2000-01-16T14:00:01", "2000-01-16T00:00:00Z", kGreater},
      {"2000-01-16T14:00:00", "2000-01-16T00:00:00Z", kIndeterminate},
      {"2000-03-04T20:00:00-03:00", "2000-03-04T23:00:00Z", kEqual},
      {"2000-03-04T20:00:00+03:00", "2000-03-04T20:00:00+02:59", kLess},
      {"2000-01-01T12:00:00.000000001", "2000-01-01T12:00:00", kGreater},
      {"12:00:00", "12:00:01", kLess},
      {"2018-05-07+05:00", "2018-05-06Z", kEqual},
      {"-0002-01-01", "-0001-01-01", kLess},
      {"-0001-01-01", "0001-01-01", kIndeterminate},  // years of opposite sign
      // A field that one side lacks: first against 0, a missing year -1 against negative ones.
      {"2018-05-07", "2018-05-07T00:00:00.5", kLess},
      {"2018-05-07", "2018-05-07T01:00:00", kIndeterminate},
      {"2018-05-07", "2018-05-08T00:00:00", kLess},
      {"2018-05", "2018-05-07", kIndeterminate},
      {"--05-07", "2018-05-07", kIndeterminate},
      {"--05-07", "-0001-05-07", kEqual},
      {"--05-07", "-0002-05-07", kGreater},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.a) + " and " + c.b);
    const CDateTime a(c.a);
    const CDateTime b(c.b);
    const int reversed[] = {kEqual, kGreater, kLess, kIndeterminate};
    EXPECT_EQ(a.CompareTo(b), c.order);
    EXPECT_EQ(b.CompareTo(a), reversed[c.order]);
    EXPECT_EQ(a == b, c.order == kEqual);
    EXPECT_EQ(a != b, c.order != kEqual);
    EXPECT_EQ(a < b, c.order == kLess);
    EXPECT_EQ(a > b, c.order == kGreater);
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
  for (int i = 0; i < 20000; ++i) {
    const CDateTime a = make();
    const CDateTime b = make();
    const CDateTime c = make();
    ASSERT_EQ(a<b, b> a) << a.ToString() << " " << b.ToString();
    ASSERT_EQ(a == b, b == a) << a.ToString() << " " << b.ToString();
    if (a <= b && b < c) {
      ASSERT_TRUE(a < c) << a.ToString() << " " << b.ToString() << " " << c.ToString();
    }
  }
}

class ZoneScope {
 public:
  explicit ZoneScope(const char* zone) {
    if (const char* previous = std::getenv("TZ")) m_previous.push_back(previous);
    setenv("TZ", zone, 1);
    tzset();
  }
  ZoneScope(const ZoneScope&) = delete;
  ZoneScope& operator=(const ZoneScope&) = delete;
  ~ZoneScope() {
    m_previous.empty() ? unsetenv("TZ") : setenv("TZ", m_previous[0].c_str(), 1);
    tzset();
  }

 private:
  std::vector<std::string> m_previous;
};

TEST(DateTimeCalendar, TakesFieldsAsLocalTimeWhateverTheirZone) {
  const struct {
    const char* text;
    long utc;
    long centralEurope;
  } cases[] = {
      {"1970-01-01", 0, -3600},
      {"2018-01-15T12:00:00-05:00", 1516017600, 1516014000},
      {"2018-07-15T12:00:00.9Z", 1531656000, 1531648800},
      {"9999-12-31T23:59:59", 253402300799, 253402297199},
  };
  const auto check = [&cases](const char* zone, auto column) {
    const ZoneScope scope(zone);
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.text) + zone);
      EXPECT_EQ(CDateTime(c.text).GetTime(), c.*column);
      CDateTime local(DT::dt_time);
      local = c.*column;
      EXPECT_EQ(local.GetType(), DT::dt_dateTime);
      EXPECT_FALSE(local.IsUTC());
      EXPECT_EQ(local.ToString().substr(0, 10), std::string(c.text).substr(0, 10));
      EXPECT_EQ(local.GetTime(), c.*column);
    }
  };
  using Case = std::remove_const_t<std::remove_reference_t<decltype(cases[0])>>;
  check("UTC0", &Case::utc);
  check("CET-1CEST,M3.5.0,M10.5.0/3", &Case::centralEurope);
}

TEST(DateTimeCalendar, KnowsDaysOfWeekAndYear) {
  const ZoneScope scope("UTC0");
  EXPECT_EQ(CDateTime("2000-01-01").GetDayOfWeek(), 7);
  EXPECT_EQ(CDateTime("2018-05-06T23:59:59-12:00").GetDayOfWeek(), 1);
  EXPECT_EQ(CDateTime("2000-12-31").GetDayOfYear(), 366);
  EXPECT_EQ(CDateTime("1900-12-31").GetDayOfYear(), 365);
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
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime(LONG_MAX),
                  "Invalid Year [292277026596" + range, "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime(LONG_MIN),
                  "Invalid Year [-292277022657" + range, "");
  EXPECT_GT(CDateTime::GetCurrentTime().GetYear(), 2000);
}

}  // namespace
}  // namespace ZuXmlLib16
