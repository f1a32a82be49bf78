#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

#include "ZuXmlLib16/DateTime.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using DT = CDateTime::DTType;

constexpr DT kTypes[] = {DT::dt_dateTime, DT::dt_date, DT::dt_gYearMonth, DT::dt_gYear,
                         DT::dt_time,     DT::dt_gDay, DT::dt_gMonth,     DT::dt_gMonthDay};

using Parser = void (CDateTime::*)(const char*);
constexpr Parser kDateTime = &CDateTime::ParseXSDDateTime;
constexpr Parser kDate = &CDateTime::ParseXSDDate;
constexpr Parser kTime = &CDateTime::ParseXSDTime;

TEST(DateTimeText, ReadsEveryFormAndWritesItBack) {
  // clang-format off
  const struct {
    Parser parse;
    const char* text;
    const char* written;
    const char* type;
  } cases[] = {
      {kDate, "2018-05-07", "2018-05-07", "date"}, {kDate, "2016-02-29Z", "2016-02-29Z", "date"},
      {kDate, "2000-02-29-05:30", "2000-02-29-05:30", "date"},
      {kDate, "2018-05-07+24:00", "2018-05-07+00:00", "date"},
      {kDate, "2018-05-07-00:30", "2018-05-07+00:30", "date"},  // the sign belongs to the hour
      {kDate, "2018", "2018", "gYear"}, {kDate, "-2018-05:00", "-2018-05:00", "gYear"},
      {kDate, "2018-05", "2018-05", "gYearMonth"}, {kDate, "--02-29", "--02-29", "gMonthDay"},
      {kDate, "--12", "--12", "gMonth"}, {kDate, "--12--", "--12", "gMonth"},
      {kDate, "--12xyZ", "--12Z", "gMonth"},  // "xy" stands where the old form had "--"
      {kDate, "---31Z", "---31Z", "gDay"}, {kTime, "00:00:00", "00:00:00", "time"},
      {kTime, "12:30:00.", "12:30:00", "time"},
      {kTime, "23:59:59.5-14:00", "23:59:59.5-14:00", "time"},
      {kTime, "12:30:00.000000120Z", "12:30:00.00000012Z", "time"},
      {kDateTime, "2018-05-07T12:30:00Z", "2018-05-07T12:30:00Z", "dateTime"},
      {kDateTime, "-0044-03-15T12:30:00.25+05:30", "-0044-03-15T12:30:00.25+05:30", "dateTime"},
      {kDateTime, "2018-05-07ZT12:30:00", "2018-05-07T12:30:00Z", "dateTime"},
      {kDateTime, "2018-05-07+01:00T12:30:00Z", "2018-05-07T12:30:00Z", "dateTime"},
  };
  // clang-format on
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
  // clang-format off
  const struct {
    Parser parse;
    const char* text;
    std::string message;
  } cases[] = {
      {kDate, nullptr, "Invalid Date (Null String)"}, {kDate, "", "Invalid Date (Empty String)"},
      {kDate, "T", "Invalid Date ('T' not allowed)"},
      {kDate, "2018-05-07T:Z", "Invalid Date ('T' not allowed)"},
      {kDate, "2018-05-07+01:00Z", "Invalid Date (Bad Zone value)"},
      {kDate, "2018-05-07 05:00", "Invalid XSD Time Zone [ 05:00]."},
      {kDate, "2018-05-07+05:60", "Invalid TimeZone [5:60]"},
      {kDate, "2018-02-30-25:00", "Invalid TimeZone [-25:0]"},
      {kDate, "0000-01-01", "Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
      {kDate, "0000-13-01", "Invalid Month [13] (1 <= month <= 12)"},
      {kDate, "2018-02-29", "Invalid Day [29] (1 <= day <= days in month"},  // no parenthesis
      {kDate, "--02-30", "Invalid Day [30] (1 <= day <= days in month)"},
      {kDate, "---32", "Invalid Day [32] (1 <= day <= 31)"},
      {kTime, nullptr, "Invalid Time (Null String)"},
      {kTime, "", "Invalid XSD Time (Empty String)"},
      {kTime, "12:30:00.1234567891",
      "Invalid XSD Time [12:30:00.1234567891] Fraction part too long"},
      {kTime, "12:30:00,5", "Invalid XSD Time Zone [,5]."},
      {kDateTime, nullptr, "Invalid DateTime (Null String)"},
      {kDateTime, "", "Invalid XSD DateTime []."},
      {kDateTime, "2018-05-07", "Invalid XSD DateTime [2018-05-07]."},
      {kDateTime, "2018-05T12:30:00",
      "Invalid XSD DateTime [2018-05T12:30:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
      {kDateTime, "2018-05-07T", "Invalid XSD Time (Empty String)"},
      {kDateTime, "2018-05-07T12:30:00T", "Invalid XSD Time Zone [T]."},
  };
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    CDateTime value;
    EXPECT_ZU_ERROR(CZuInvalidValueException, (value.*c.parse)(c.text), c.message, "");
  }
  CDateTime value;
  for (const char* text : {"12018-01-01", "2018/05-07", "2018-05/07", "2018-05-0a", " 2018-05-07",
                           "Z", "-", "--1:00", "--05/07"})
    EXPECT_ZU_ERROR(CZuInvalidValueException, value.ParseXSDDate(text),
                    "Invalid XSD Date [" + (text + shape), "");
  for (const char* text : {"12:30:0", "12-30-00", "24:00:00", "12:60:00", "12:30:60"})
    EXPECT_ZU_ERROR(CZuInvalidValueException, value.ParseXSDTime(text),
                    "Invalid XSD Time [" + (text + clock), "");
  EXPECT_ZU_ERROR(CZuInvalidValueException, CDateTime(static_cast<const char*>(nullptr)),
                  "Invalid DateTime (Null String)", "");
}

TEST(DateTimeText, HostileTextFailsWhole) {
  CDateTime value;
  const std::string huge(1000000, '9');
  EXPECT_THROW(value.ParseXSDDate(huge), CZuInvalidValueException);
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
  EXPECT_EQ(CDateTime(DT::dt_time).ToString(), "00:00:00");
  const CDateTime value(2018, 5, 7);
  EXPECT_EQ(value.ToString("s"), "2018-05-07");
  EXPECT_EQ(value.ToString("x"), "Unknown Format: x");
  for (const char* general : {static_cast<const char*>(nullptr), "", "G"})
    EXPECT_EQ(value.ToString(general), "");
}

TEST(DateTimeText, RandomValuesRoundTrip) {
  constexpr unsigned kSeed = 20240228;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  const auto below = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
  for (int i = 0; i < 20000; ++i) {
    const auto byte = [&](unsigned limit) { return static_cast<unsigned char>(below(limit)); };
    const auto group = [&] {
      const int fractions[] = {0, below(10) * 100, below(1000)};
      return static_cast<unsigned short>(fractions[below(3)]);
    };
    CDateTime value(static_cast<short>((1 + below(9999)) * (below(4) == 0 ? -1 : 1)),
                    static_cast<unsigned char>(1 + byte(12)),
                    static_cast<unsigned char>(1 + byte(28)), byte(24), byte(60), byte(60), group(),
                    group(), group());
    if (below(3) == 0) value.SetUTC();
    if (below(3) == 0) value.SetTimeZone(static_cast<short>(below(47) - 23), 30);
    CDateTime part;
    part.SetDateTime(value, kTypes[below(8)]);
    const std::string text = part.ToString();
    const CDateTime again(text.c_str());
    ASSERT_EQ(again.ToString(), text);
    ASSERT_EQ(again.GetType(), part.GetType()) << text;
    ASSERT_EQ(again, part) << text;
    ASSERT_EQ(again.HasTimeZone(), part.HasTimeZone()) << text;
  }
}

struct FieldCase {
  const char* name;
  void (*use[2])(CDateTime&);  // getter and setter, which reports itself by the getter's name
  const char* types;           // the numbers of the types that carry the field
};

template <auto getter>
void Get(CDateTime& date) {
  (date.*getter)();
}

template <auto setter>
void SetOne(CDateTime& date) {
  (date.*setter)(1);
}

// clang-format off
const FieldCase kFields[] = {
    {"GetYear",        {Get<&CDateTime::GetYear>,        SetOne<&CDateTime::SetYear>},        "1234"},
    {"GetMonth",       {Get<&CDateTime::GetMonth>,       SetOne<&CDateTime::SetMonth>},       "12378"},
    {"GetDay",         {Get<&CDateTime::GetDay>,         SetOne<&CDateTime::SetDay>},         "1268"},
    {"GetHour",        {Get<&CDateTime::GetHour>,        SetOne<&CDateTime::SetHour>},        "15"},
    {"GetMinute",      {Get<&CDateTime::GetMinute>,      SetOne<&CDateTime::SetMinute>},      "15"},
    {"GetSecond",      {Get<&CDateTime::GetSecond>,      SetOne<&CDateTime::SetSecond>},      "15"},
    {"GetMilliSecond", {Get<&CDateTime::GetMilliSecond>, SetOne<&CDateTime::SetMilliSecond>}, "15"},
    {"GetMicroSecond", {Get<&CDateTime::GetMicroSecond>, SetOne<&CDateTime::SetMicroSecond>}, "15"},
    {"GetNanoSecond",  {Get<&CDateTime::GetNanoSecond>,  SetOne<&CDateTime::SetNanoSecond>},  "15"},
    {"GetRealSecond",  {Get<&CDateTime::GetRealSecond>},                                      "15"},
    {"GetDayOfYear",   {Get<&CDateTime::GetDayOfYear>},                                       "12"},
    {"GetDayOfWeek",   {Get<&CDateTime::GetDayOfWeek>},                                       "12"},
};
// clang-format on

TEST(DateTimeFields, AreRefusedByTypesWithoutThem) {
  const CDateTime full(2018, 5, 7, 12, 30, 45);
  for (const FieldCase& field : kFields) {
    for (const DT type : kTypes) {
      CDateTime value;
      value.SetDateTime(full, type);
      const char number = static_cast<char>('0' + static_cast<int>(type));
      const bool isCarried = std::string(field.types).find(number) != std::string::npos;
      for (const auto use : field.use) {
        if (use == nullptr) continue;
        if (isCarried) {
          EXPECT_NO_THROW(use(value)) << field.name;
        } else {
          EXPECT_ZU_ERROR(CZuInvalidStateException, use(value),
                          std::string("Failed to ") + field.name +
                              ". Invalid Date Type: " + value.GetTypeAsString() + ".",
                          "");
        }
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
  // clang-format off
  const struct {
    DT type;
    int fields[9];
    const char* message;
  } cases[] = {
      {DT::dt_time,   {0, 1},                         "Invalid Month [1] for type time"},
      {DT::dt_gDay,   {1, 0, 1},                      "Invalid Year [1] for type gDay"},
      {DT::dt_gYear,  {10000},                        "Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)"},
      {DT::dt_gYear,  {2018, 0, 1},                   "Invalid Day [1] for type gYear"},
      {DT::dt_date,   {2018, 5, 7, 1, 1},             "Invalid Hour [1] for type date"},
      {DT::dt_gMonth, {0, 5, 0, 0, 2},                "Invalid Minute [2] for type gMonth"},
      {DT::dt_date,   {2018, 5, 7, 0, 0, 3},          "Invalid Second [3] for type date"},
      {DT::dt_date,   {2018, 5, 7, 0, 0, 0, 4},       "Invalid Milli-Second [4] for type date"},
      {DT::dt_date,   {2018, 5, 7, 0, 0, 0, 0, 5},    "Invalid Micro-Second [5] for type date"},
      {DT::dt_date,   {2018, 5, 7, 0, 0, 0, 0, 0, 6}, "Invalid Nano-Second [6] for type date"},
      {DT::dt_time,   {0, 0, 0, 24},                  "Invalid Hour [24] (0 <= hour <= 23)"},
      {DT::dt_time,   {0, 0, 0, 0, 60},               "Invalid Minute [60] (0 <= minute <= 59)"},
      {DT::dt_time,   {0, 0, 0, 0, 0, 60},            "Invalid Second [60] (0 <= second <= 59)"},
      {DT::dt_time,   {0, 0, 0, 0, 0, 0, 1000},       "Invalid Milli-Second [1000] (0 <= milli <= 999)"},
      {DT::dt_time,   {0, 0, 0, 0, 0, 0, 0, 1000},    "Invalid Micro-Second [1000] (0 <= micro <= 999)"},
      {DT::dt_time,   {0, 0, 0, 0, 0, 0, 0, 0, 1000}, "Invalid Nano-Second [1000] (0 <= nano <= 999)"},
  };
  // clang-format on
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
  for (const auto set :
       {&CDateTime::SetMonth, &CDateTime::SetDay, &CDateTime::SetHour, &CDateTime::SetMinute})
    EXPECT_THROW((value.*set)(255), CZuInvalidValueException);
  for (const auto set : {&CDateTime::SetSecond, &CDateTime::SetMilliSecond,
                         &CDateTime::SetMicroSecond, &CDateTime::SetNanoSecond})
    EXPECT_THROW((value.*set)(65535), CZuInvalidValueException);
  EXPECT_EQ(value.ToString(), "-32768-255-255T255:255:65535.655356553565535-32768:255");
  value.GetDayOfYear();
  value.GetDayOfWeek();
  value.GetNormalized();
}

TEST(DateTimeFields, ConvertToTypesTheSourceCovers) {
  const CDateTime source("2018-05-07T12:30:45.5+01:00");
  // clang-format off
  const char* const texts[] = {"2018-05-07T12:30:45.5+01:00",
                               "2018-05-07+01:00", "2018-05+01:00", "2018+01:00",
                               "12:30:45.5+01:00", "---07+01:00", "--05+01:00", "--05-07+01:00"};
  // clang-format on
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
  CDateTime value("2018-05-07-05:30");
  EXPECT_TRUE(value.IsUTC() && value.HasTimeZone());
  value.SetUTC();
  EXPECT_TRUE(value.IsUTC() && !value.HasTimeZone());
  EXPECT_ZU_ERROR(CZuInvalidStateException, value.GetZoneHour(), "TimeZone is not been used", "");
}

}  // namespace
}  // namespace ZuXmlLib16
