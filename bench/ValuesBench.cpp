// What the values of XML Schema types cost, as ratios to what the C library does for the same
// values in the same run: 1 is as slow, less is faster. Binary data is measured beside memcpy,
// patterns beside compiling them every time, big integers against themselves at half the length.

#ifdef ZUXMLLIB16_USE_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#else
#include <pcre.h>
#endif

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ZuXmlLib16/BigInteger.h"
#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Conversions.h"
#include "ZuXmlLib16/DateTime.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "bench/Harness.h"

using namespace ZuXmlLib16;
using bench::BestSeconds;
using bench::Budget;
using bench::Require;
using bench::Timed;

namespace {

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule::Collapse;
constexpr std::size_t kBatch = 1000;

std::mt19937_64& Random() {
  static std::mt19937_64 generator(1);
  return generator;
}

template <class Make>
auto MakeBatch(Make make) {
  std::vector<decltype(make())> batch;
  for (std::size_t i = 0; i < kBatch; ++i) {
    batch.push_back(make());
  }
  return batch;
}

/// Applies a function to all items, for its time only.
template <class Items, class Function>
bench::Work ForAll(const Items& items, Function function) {
  return Timed([&items, function] {
    for (const auto& item : items) {
      bench::Keep(function(item));
    }
  });
}

/// Compares two functions that have the same results.
template <class Items, class Function, class Reference>
void Compare(const bench::Table& table, const std::string& name, const Items& items,
             Function function, Reference reference, double budget) {
  for (const auto& item : items) {
    Require(function(item) == reference(item), name.c_str());
  }
  const std::vector<double> seconds =
      BestSeconds({ForAll(items, reference), ForAll(items, function)});
  table.Row(name, seconds[1] / seconds[0], Budget::AtMost, budget);
}

/// A text printed by the C library.
class Printed {
 public:
  template <class... Arguments>
  explicit Printed(const char* format, Arguments... arguments) {
    std::snprintf(m_text, sizeof(m_text), format, arguments...);
  }

  friend bool operator==(const std::string& text, const Printed& printed) {
    return text == printed.m_text;
  }

 private:
  char m_text[64];
};

constexpr double kNumberBudget = 0.5;  // twice as fast
constexpr double kDateBudget = 0.2;    // five times as fast

template <class Value, class Print, class Read, class ReferenceRead>
void CompareNumbers(const bench::Table& table, const std::string& name,
                    const std::vector<Value>& values, const char* format, Print print, Read read,
                    ReferenceRead referenceRead) {
  Compare(
      table, name + ", print", values, print,
      [format](Value value) { return Printed(format, value); }, kNumberBudget);
  std::vector<std::string> texts;
  for (const Value value : values) {
    texts.push_back(print(value));
  }
  Compare(
      table, name + ", read", texts,
      [read](const std::string& text) { return read(text, kCollapse); },
      [referenceRead](const std::string& text) { return referenceRead(text.c_str()); },
      kNumberBudget);
}

void MeasureNumbers(const bench::Table& table) {
  table.Heading("numbers, time to that of strtol, strtod and snprintf");
  // All lengths alike.
  const auto signedValue = [] {
    return static_cast<long>(Random()()) >> std::uniform_int_distribution<int>(0, 62)(Random());
  };
  const auto i4 = [] { return static_cast<long>(static_cast<std::int32_t>(Random()())); };
  const auto real = [] { return std::uniform_real_distribution<double>(-100, 100)(Random()); };
  const auto shortReal = [&] { return static_cast<float>(real()); };

  CompareNumbers(table, "int", MakeBatch(i4), "%ld", CConversions::i4ToString,
                 CConversions::i4FromString,
                 [](const char* text) { return std::strtol(text, nullptr, 10); });
  CompareNumbers(table, "long", MakeBatch([&] { return static_cast<long long>(signedValue()); }),
                 "%lld", CConversions::i8ToString, CConversions::i8FromString,
                 [](const char* text) { return std::strtoll(text, nullptr, 10); });
  CompareNumbers(table, "unsignedLong",
                 MakeBatch([] { return static_cast<unsigned long long>(Random()()); }), "%llu",
                 CConversions::ui8ToString, CConversions::ui8FromString,
                 [](const char* text) { return std::strtoull(text, nullptr, 10); });
  CompareNumbers(
      table, "double", MakeBatch(real), "%.16g",
      [](double value) { return CConversions::r8ToString(value); }, CConversions::r8FromString,
      [](const char* text) { return std::strtod(text, nullptr); });
  CompareNumbers(
      table, "float", MakeBatch(shortReal), "%.7g",
      [](float value) { return CConversions::r4ToString(value); }, CConversions::r4FromString,
      [](const char* text) { return std::strtof(text, nullptr); });
}

unsigned Below(unsigned bound) {
  return std::uniform_int_distribution<unsigned>(0, bound - 1)(Random());
}

/// The fields of a dateTime as the C library reads and prints them.
struct Fields {
  int year;
  unsigned month;
  unsigned day;
  unsigned hour;
  unsigned minute;
  unsigned second;
};

constexpr const char* kDateTimeFormat = "%04d-%02u-%02uT%02u:%02u:%02uZ";
constexpr const char* kDateFormat = "%04d-%02u-%02u";
constexpr const char* kTimeFormat = "%02u:%02u:%02u";

Fields MakeFields() {
  Fields f{};
  f.year = 1900 + static_cast<int>(Below(200));
  f.month = 1 + Below(12);
  f.day = 1 + Below(28);
  f.hour = Below(24);
  f.minute = Below(60);
  f.second = Below(60);
  return f;
}

CDateTime DateOf(const Fields& f) {
  CDateTime date;
  date.SetDate(static_cast<short>(f.year), static_cast<unsigned char>(f.month),
               static_cast<unsigned char>(f.day));
  return date;
}

CDateTime TimeOf(const Fields& f) {
  CDateTime time;
  time.SetTime(static_cast<unsigned char>(f.hour), static_cast<unsigned char>(f.minute),
               static_cast<unsigned short>(f.second));
  return time;
}

CDateTime DateTimeOf(const Fields& f) {
  CDateTime value(static_cast<short>(f.year), static_cast<unsigned char>(f.month),
                  static_cast<unsigned char>(f.day), static_cast<unsigned char>(f.hour),
                  static_cast<unsigned char>(f.minute), static_cast<unsigned short>(f.second));
  value.SetUTC();
  return value;
}

/// A date with the fields it was made of, so that both sides print from what they hold.
struct Moment {
  Fields fields;
  CDateTime value;
};

template <class MakeValue, class Print, class Read, class ReferencePrint, class ReferenceRead>
void CompareDates(const bench::Table& table, const std::string& name, MakeValue makeValue,
                  Print print, Read read, ReferencePrint referencePrint,
                  ReferenceRead referenceRead) {
  const auto moments = MakeBatch([&] {
    const Fields fields = MakeFields();
    return Moment{fields, makeValue(fields)};
  });
  Compare(
      table, name + ", print", moments, [&](const Moment& m) { return print(m.value); },
      [&](const Moment& m) { return referencePrint(m.fields); }, kDateBudget);
  std::vector<std::string> texts;
  for (const Moment& moment : moments) {
    texts.push_back(print(moment.value));
    Require(read(texts.back(), kCollapse) == moment.value, name.c_str());
    Require(makeValue(referenceRead(texts.back().c_str())) == moment.value, name.c_str());
  }
  const std::vector<double> seconds = BestSeconds(
      {ForAll(texts, [&](const std::string& text) { return referenceRead(text.c_str()); }),
       ForAll(texts, [&](const std::string& text) { return read(text, kCollapse); })});
  table.Row(name + ", read", seconds[1] / seconds[0], Budget::AtMost, kDateBudget);
}

void MeasureDates(const bench::Table& table) {
  table.Heading("dates and times, time to that of sscanf and snprintf");
  CompareDates(
      table, "dateTime", DateTimeOf, CConversions::datetimeToString,
      CConversions::datetimeFromString,
      [](const Fields& f) {
        return Printed(kDateTimeFormat, f.year, f.month, f.day, f.hour, f.minute, f.second);
      },
      [](const char* text) {
        Fields f{};
        std::sscanf(text, kDateTimeFormat, &f.year, &f.month, &f.day, &f.hour, &f.minute,
                    &f.second);
        return f;
      });
  CompareDates(
      table, "date", DateOf, CConversions::dateToString, CConversions::dateFromString,
      [](const Fields& f) { return Printed(kDateFormat, f.year, f.month, f.day); },
      [](const char* text) {
        Fields f{};
        std::sscanf(text, kDateFormat, &f.year, &f.month, &f.day);
        return f;
      });
  CompareDates(
      table, "time", TimeOf, CConversions::timeToString, CConversions::timeFromString,
      [](const Fields& f) { return Printed(kTimeFormat, f.hour, f.minute, f.second); },
      [](const char* text) {
        Fields f{};
        std::sscanf(text, kTimeFormat, &f.hour, &f.minute, &f.second);
        return f;
      });
}

void MeasureBinary(const bench::Table& table) {
  constexpr std::size_t kBytes = 1 << 20;
  std::vector<unsigned char> bytes(kBytes);
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(Random()());
  }
  CBinaryData data;
  data.SetBuffer(bytes.data(), bytes.size());
  const std::string hex = data.GetAsHexString();
  const std::string base64 = data.GetAsBase64();
  Require(CConversions::hexBinaryFromString(hex, kCollapse) == data, "hexBinary");
  Require(CConversions::base64BinaryFromString(base64, kCollapse) == data, "base64Binary");

  std::vector<unsigned char> copy(kBytes);
  const std::vector<double> seconds = BestSeconds({
      Timed([&] {
        std::memcpy(copy.data(), bytes.data(), kBytes);
        bench::Keep(copy.front());
      }),
      Timed([&] { bench::Keep(data.GetAsHexString()); }),
      Timed([&] {
        CBinaryData read;
        read.SetAsHexString(hex.c_str());
      }),
      Timed([&] { bench::Keep(data.GetAsBase64()); }),
      Timed([&] {
        CBinaryData read;
        read.SetAsBase64(base64.c_str());
      }),
  });
  const auto rate = [&](std::size_t i) { return static_cast<double>(kBytes) / seconds[i] / 1e9; };
  table.Heading("binary data, GB/s of the bytes themselves, 1 MB at a time");
  table.Row("memcpy", rate(0));
  table.Row("hexBinary, print", rate(1), Budget::AtLeast, 1);
  table.Row("hexBinary, read", rate(2), Budget::AtLeast, 1);
  table.Row("base64Binary, print", rate(3), Budget::AtLeast, 1);
  table.Row("base64Binary, read", rate(4), Budget::AtLeast, 1);
}

/// Compiles an expression for this one match, as the plainest program would.
bool CompileAndMatch(const char* expression, const std::string& value) {
#ifdef ZUXMLLIB16_USE_PCRE2
  int error = 0;
  PCRE2_SIZE offset = 0;
  pcre2_code* const code =
      pcre2_compile(reinterpret_cast<PCRE2_SPTR>(expression), PCRE2_ZERO_TERMINATED,
                    PCRE2_UTF | PCRE2_ANCHORED, &error, &offset, nullptr);
  pcre2_match_data* const match = pcre2_match_data_create_from_pattern(code, nullptr);
  const int result = pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(value.data()), value.size(), 0,
                                 0, match, nullptr);
  pcre2_match_data_free(match);
  pcre2_code_free(code);
#else
  const char* reason = nullptr;
  int offset = 0;
  pcre* const code = pcre_compile(expression, PCRE_UTF8 | PCRE_ANCHORED, &reason, &offset, nullptr);
  int match[6];
  const int result =
      pcre_exec(code, nullptr, value.data(), static_cast<int>(value.size()), 0, 0, match, 6);
  pcre_free(code);
#endif
  return result >= 0;
}

void MeasurePatterns(const bench::Table& table) {
  struct Case {
    const char* name;
    std::string pattern;
    const char* expression;  // the same, as the library beneath knows it
    std::string value;
  };
  const Case cases[] = {
      {"\\d{3}-[A-Z]{2}", "\\d{3}-[A-Z]{2}", "^(\\d{3}-[A-Z]{2})$", "123-AB"},
      {"\\i\\c*", "\\i\\c*", "^(([^\\W\\d]|:)(\\w|\\.|-|:)*)$", "productName"},
  };
  table.Heading("a pattern kept, time to that of compiling it for every value");
  for (const Case& tested : cases) {
    Require(CXmlObjectHelper::TestRegEx(tested.pattern, tested.value), tested.name);
    Require(CompileAndMatch(tested.expression, tested.value), tested.name);
    const std::vector<std::string> values(kBatch, tested.value);
    const std::vector<double> seconds =
        BestSeconds({ForAll(values,
                            [&](const std::string& value) {
                              return CompileAndMatch(tested.expression, value);
                            }),
                     ForAll(values, [&](const std::string& value) {
                       return CXmlObjectHelper::TestRegEx(tested.pattern, value);
                     })});
    table.Row(tested.name, seconds[1] / seconds[0], Budget::AtMost, 0.2);
  }
}

std::string MakeDigits(std::size_t count) {
  std::string digits(1, '7');
  while (digits.size() < count) {
    digits += static_cast<char>('0' + Below(10));
  }
  return digits;
}

/// The seconds that the operations on numbers of so many digits take: reading, printing,
/// multiplying two of them, dividing one of twice the digits.
std::vector<double> BigIntegerSeconds(std::size_t digits) {
  const std::string text = MakeDigits(digits);
  const CBigInteger value(text.c_str());
  const CBigInteger other(MakeDigits(digits).c_str());
  const CBigInteger product = value * other;
  Require(value.ToString() == text && product / other == value, "big integers");
  return BestSeconds({
      Timed([&] { bench::Keep(CBigInteger(text.c_str())); }),
      Timed([&] { bench::Keep(value.ToString()); }),
      Timed([&] { bench::Keep(value * other); }),
      Timed([&] { bench::Keep(product / other); }),
  });
}

void MeasureBigIntegers(const bench::Table& table) {
  constexpr double kQuadratic = 4.4;  // four, and a tenth for what the machine adds
  table.Heading("big integers, time to that for half the digits");
  std::vector<double> half = BigIntegerSeconds(1000);
  for (std::size_t digits = 2000; digits <= 8000; digits *= 2) {
    const std::vector<double> seconds = BigIntegerSeconds(digits);
    const std::string name = std::to_string(digits) + " digits, ";
    const char* const operations[] = {"read", "print", "multiply", "divide"};
    for (std::size_t i = 0; i < seconds.size(); ++i) {
      table.Row(name + operations[i], seconds[i] / half[i], Budget::AtMost, kQuadratic);
    }
    half = seconds;
  }
}

}  // namespace

int main() {
  const bench::Table table("figure");
  MeasureNumbers(table);
  MeasureDates(table);
  MeasureBinary(table);
  MeasurePatterns(table);
  MeasureBigIntegers(table);
  return 0;
}
