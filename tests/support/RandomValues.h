#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <type_traits>

#include "types/Item.h"

namespace ZuXmlLib16 {

/// Random values of every item type whose texts read back as the same value. The seed is shown with
/// the failures of its scope.
class RandomValues {
 public:
  explicit RandomValues(unsigned seed)
      : m_random(seed), m_trace(__FILE__, __LINE__, "seed " + std::to_string(seed)) {}

  template <ItemType type>
  detail::ItemValue<type> Next() {
    using Value = detail::ItemValue<type>;
    if constexpr (type == ItemType::year) {
      return static_cast<Value>(1000 + Below(9000));
    } else if constexpr (type == ItemType::month) {
      return static_cast<Value>(1 + Below(12));
    } else if constexpr (type == ItemType::day) {
      return static_cast<Value>(1 + Below(31));
    } else if constexpr (type == ItemType::char_) {
      return static_cast<Value>(1 + Below(255));
    } else if constexpr (std::is_floating_point_v<Value>) {
      return static_cast<Value>(static_cast<int>(Below(16001)) - 8000) / 8;
    } else if constexpr (std::is_arithmetic_v<Value>) {
      return static_cast<Value>(Bits());
    } else if constexpr (std::is_same_v<Value, std::string>) {
      return Bytes();
    } else if constexpr (std::is_same_v<Value, CBinaryData>) {
      CBinaryData data;
      data.Append(Bytes());
      return data;
    } else if constexpr (std::is_same_v<Value, CDateTimeSpan>) {
      return CDateTimeSpan(0, Below(4), 1 + Below(90), Below(48), Below(99), Below(100));
    } else if constexpr (std::is_same_v<Value, CDecimal>) {
      return CDecimal(Sign() + std::to_string(Bits()) + '.' + std::to_string(Below(200)));
    } else if constexpr (std::is_same_v<Value, CBigInteger>) {
      return CBigInteger(Sign() + std::to_string(Bits()) + std::to_string(Bits()));
    } else {
      return Date(type);
    }
  }

 private:
  std::uint64_t Below(std::uint64_t limit) { return m_random() % limit; }
  /// Numbers of every length alike.
  std::uint64_t Bits() { return m_random() >> Below(64); }
  std::string Sign() { return Below(2) == 0 ? "-" : ""; }

  std::string Bytes() {
    std::string bytes(Below(40), '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(m_random());
    return bytes;
  }

  CDateTime Date(ItemType type) {
    using DT = CDateTime::DTType;
    const DT target = type == ItemType::yearMonth  ? DT::dt_gYearMonth
                      : type == ItemType::monthDay ? DT::dt_gMonthDay
                      : type == ItemType::date     ? DT::dt_date
                      : type == ItemType::time     ? DT::dt_time
                                                   : DT::dt_dateTime;
    const auto byte = [this](unsigned limit) { return static_cast<unsigned char>(Below(limit)); };
    CDateTime value(static_cast<short>(2018 + Below(2)), static_cast<unsigned char>(1 + byte(12)),
                    static_cast<unsigned char>(1 + byte(28)), byte(24), byte(60), byte(60));
    if (Below(2) == 0) value.SetTimeZone(static_cast<short>(byte(28) - 14), byte(60));
    CDateTime converted;
    converted.SetDateTime(value, target);
    return converted;
  }

  std::mt19937_64 m_random;
  testing::ScopedTrace m_trace;
};

/// Calls visit with the ItemTag of every primitive type.
template <class Visitor>
void ForEachItemType(Visitor visit) {
  for (std::int32_t type = 0; type <= static_cast<std::int32_t>(ItemType::XmlCollection); ++type) {
    detail::VisitItem(static_cast<ItemType>(type), visit);
  }
}

}  // namespace ZuXmlLib16
