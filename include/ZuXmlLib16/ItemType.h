#pragma once

#include <cstdint>

namespace ZuXmlLib16 {

/// The primitive item types of the library, and what else a ZuVariant can hold.
enum class ItemType : std::int32_t {
  Invalid = 0,
  hexBinary = 1,
  base64Binary = 2,
  i1 = 3,
  i2 = 4,
  i4 = 5,
  i8 = 6,
  ui1 = 7,
  ui2 = 8,
  ui4 = 9,
  ui8 = 10,
  r4 = 11,
  r8 = 12,
  duration = 13,
  yearMonth = 14,
  monthDay = 15,
  year = 16,
  month = 17,
  day = 18,
  date = 19,
  datetime = 20,
  time = 21,
  char_ = 22,
  string = 23,
  boolean = 24,
  decimal = 25,
  integer = 26,
  XmlObject = 27,
  XmlCollection = 28,
};

}  // namespace ZuXmlLib16
