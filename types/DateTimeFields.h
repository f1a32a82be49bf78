#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "ZuXmlLib16/DateTime.h"

namespace ZuXmlLib16::detail {

/// Results of the comparisons of dates and durations.
enum Order : int { kEqual = 0, kLess = 1, kGreater = 2, kIndeterminate = 3 };

/// The fields a date type carries, as bits; hour to nanosecond come together.
enum DateField : unsigned { kYear = 1, kMonth = 2, kDay = 4, kTimeOfDay = 8 };

struct DateTypeRow {
  const char* name;
  unsigned fields;
};

// clang-format off
inline constexpr DateTypeRow kDateTypes[] = {
    // name        carries
    {"yearZero",   0},
    {"dateTime",   kYear | kMonth | kDay | kTimeOfDay},
    {"date",       kYear | kMonth | kDay},
    {"gYearMonth", kYear | kMonth},
    {"gYear",      kYear},
    {"time",       kTimeOfDay},
    {"gDay",       kDay},
    {"gMonth",     kMonth},
    {"gMonthDay",  kMonth | kDay},
};
// clang-format on
static_assert(std::size(kDateTypes) ==
              static_cast<std::size_t>(CDateTime::DTType::dt_gMonthDay) + 1);

constexpr bool IsDateType(CDateTime::DTType type) {
  return static_cast<std::uint32_t>(type) < std::size(kDateTypes);
}

/// None for a number that is no type.
constexpr unsigned FieldsOf(CDateTime::DTType type) {
  return IsDateType(type) ? kDateTypes[static_cast<std::size_t>(type)].fields : 0;
}

}  // namespace ZuXmlLib16::detail
