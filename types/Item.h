#pragma once

#include <type_traits>

#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "types/ConversionsInternal.h"

// The item types: one row a type. Metadata, collections, variants and facet checks find here what
// they need to know of a type.

namespace ZuXmlLib16::detail {

/// A row holds the type's code, how its text is read and written, how it is written in a format of
/// the caller where it takes one, and its facet check, which char does not have.
template <ItemType type>
struct Item;

template <ItemType type>
using ItemTag = std::integral_constant<ItemType, type>;

/// The C++ type of the values.
template <ItemType type>
using ItemValue = decltype(Item<type>::Parse({}, WhitespaceRule::None));

// clang-format off
template <> struct Item<ItemType::hexBinary> {
  static constexpr const char* kCode = "hexBinary";
  static constexpr auto Parse = ParseHexBinary;
  static constexpr auto Format = FormatHexBinary;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForhexBinary;
};
template <> struct Item<ItemType::base64Binary> {
  static constexpr const char* kCode = "base64Binary";
  static constexpr auto Parse = ParseBase64Binary;
  static constexpr auto Format = FormatBase64Binary;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForbase64Binary;
};
template <> struct Item<ItemType::i1> {
  static constexpr const char* kCode = "i1";
  static constexpr auto Parse = ParseInteger<signed char>;
  static constexpr auto Format = FormatInteger<signed char>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFori1;
};
template <> struct Item<ItemType::i2> {
  static constexpr const char* kCode = "i2";
  static constexpr auto Parse = ParseInteger<short>;
  static constexpr auto Format = FormatInteger<short>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFori2;
};
template <> struct Item<ItemType::i4> {
  static constexpr const char* kCode = "i4";
  static constexpr auto Parse = ParseInteger<long>;
  static constexpr auto Format = FormatInteger<long>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFori4;
};
template <> struct Item<ItemType::i8> {
  static constexpr const char* kCode = "i8";
  static constexpr auto Parse = ParseInteger<long long>;
  static constexpr auto Format = FormatInteger<long long>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFori8;
};
template <> struct Item<ItemType::ui1> {
  static constexpr const char* kCode = "ui1";
  static constexpr auto Parse = ParseInteger<unsigned char>;
  static constexpr auto Format = FormatInteger<unsigned char>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForui1;
};
template <> struct Item<ItemType::ui2> {
  static constexpr const char* kCode = "ui2";
  static constexpr auto Parse = ParseInteger<unsigned short>;
  static constexpr auto Format = FormatInteger<unsigned short>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForui2;
};
template <> struct Item<ItemType::ui4> {
  static constexpr const char* kCode = "ui4";
  static constexpr auto Parse = ParseInteger<unsigned long>;
  static constexpr auto Format = FormatInteger<unsigned long>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForui4;
};
template <> struct Item<ItemType::ui8> {
  static constexpr const char* kCode = "ui8";
  static constexpr auto Parse = ParseInteger<unsigned long long>;
  static constexpr auto Format = FormatInteger<unsigned long long>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForui8;
};
template <> struct Item<ItemType::r4> {
  static constexpr const char* kCode = "r4";
  static constexpr auto Parse = ParseFloat;
  static constexpr auto Format = FormatFloat;
  static constexpr auto FormatAs = FormatFloatAs;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForr4;
};
template <> struct Item<ItemType::r8> {
  static constexpr const char* kCode = "r8";
  static constexpr auto Parse = ParseDouble;
  static constexpr auto Format = FormatDouble;
  static constexpr auto FormatAs = FormatDoubleAs;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForr8;
};
template <> struct Item<ItemType::duration> {
  static constexpr const char* kCode = "duration";
  static constexpr auto Parse = ParseDuration;
  static constexpr auto Format = FormatDuration;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForduration;
};
template <> struct Item<ItemType::yearMonth> {
  static constexpr const char* kCode = "yearMonth";
  static constexpr auto Parse = ParseDate;
  static constexpr auto Format = FormatDate;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForyearMonth;
};
template <> struct Item<ItemType::monthDay> {
  static constexpr const char* kCode = "monthDay";
  static constexpr auto Parse = ParseDate;
  static constexpr auto Format = FormatDate;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFormonthDay;
};
template <> struct Item<ItemType::year> {
  static constexpr const char* kCode = "year";
  static constexpr auto Parse = ParseYear;
  static constexpr auto Format = FormatInteger<unsigned short>;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForyear;
};
template <> struct Item<ItemType::month> {
  static constexpr const char* kCode = "month";
  static constexpr auto Parse = ParseMonth;
  static constexpr auto Format = FormatMonth;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFormonth;
};
template <> struct Item<ItemType::day> {
  static constexpr const char* kCode = "day";
  static constexpr auto Parse = ParseDay;
  static constexpr auto Format = FormatDay;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForday;
};
template <> struct Item<ItemType::date> {
  static constexpr const char* kCode = "date";
  static constexpr auto Parse = ParseDate;
  static constexpr auto Format = FormatDate;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFordate;
};
template <> struct Item<ItemType::datetime> {
  static constexpr const char* kCode = "datetime";
  static constexpr auto Parse = ParseDateTime;
  static constexpr auto Format = FormatDate;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFordatetime;
};
template <> struct Item<ItemType::time> {
  static constexpr const char* kCode = "time";
  static constexpr auto Parse = ParseTime;
  static constexpr auto Format = FormatDate;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFortime;
};
template <> struct Item<ItemType::char_> {
  static constexpr const char* kCode = "char";
  static constexpr auto Parse = ParseChar;
  static constexpr auto Format = FormatChar;
};
template <> struct Item<ItemType::string> {
  static constexpr const char* kCode = "string";
  static constexpr auto Parse = ParseText;
  static constexpr auto Format = FormatText;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForstring;
};
template <> struct Item<ItemType::boolean> {
  static constexpr const char* kCode = "boolean";
  static constexpr auto Parse = ParseBoolean;
  static constexpr auto Format = FormatBoolean;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForboolean;
};
template <> struct Item<ItemType::decimal> {
  static constexpr const char* kCode = "decimal";
  static constexpr auto Parse = ParseDecimal;
  static constexpr auto Format = FormatDecimal;
  static constexpr auto FormatAs = FormatDecimalAs;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionFordecimal;
};
template <> struct Item<ItemType::integer> {
  static constexpr const char* kCode = "integer";
  static constexpr auto Parse = ParseBigInteger;
  static constexpr auto Format = FormatBigInteger;
  static constexpr auto Check = CXmlObjectHelper::CheckRestrictionForinteger;
};
// clang-format on

template <ItemType type, class = void>
inline constexpr bool kTakesFormat = false;
template <ItemType type>
inline constexpr bool kTakesFormat<type, std::void_t<decltype(Item<type>::FormatAs)>> = true;

template <ItemType type, class = void>
inline constexpr bool kHasFacets = false;
template <ItemType type>
inline constexpr bool kHasFacets<type, std::void_t<decltype(Item<type>::Check)>> = true;

/// Calls visit with the ItemTag of a primitive type.
/// @return false, without a call, for other types.
template <class Visitor>
constexpr bool VisitItem(ItemType type, Visitor&& visit) {
  switch (type) {
    // clang-format off
    case ItemType::hexBinary: visit(ItemTag<ItemType::hexBinary>()); return true;
    case ItemType::base64Binary: visit(ItemTag<ItemType::base64Binary>()); return true;
    case ItemType::i1: visit(ItemTag<ItemType::i1>()); return true;
    case ItemType::i2: visit(ItemTag<ItemType::i2>()); return true;
    case ItemType::i4: visit(ItemTag<ItemType::i4>()); return true;
    case ItemType::i8: visit(ItemTag<ItemType::i8>()); return true;
    case ItemType::ui1: visit(ItemTag<ItemType::ui1>()); return true;
    case ItemType::ui2: visit(ItemTag<ItemType::ui2>()); return true;
    case ItemType::ui4: visit(ItemTag<ItemType::ui4>()); return true;
    case ItemType::ui8: visit(ItemTag<ItemType::ui8>()); return true;
    case ItemType::r4: visit(ItemTag<ItemType::r4>()); return true;
    case ItemType::r8: visit(ItemTag<ItemType::r8>()); return true;
    case ItemType::duration: visit(ItemTag<ItemType::duration>()); return true;
    case ItemType::yearMonth: visit(ItemTag<ItemType::yearMonth>()); return true;
    case ItemType::monthDay: visit(ItemTag<ItemType::monthDay>()); return true;
    case ItemType::year: visit(ItemTag<ItemType::year>()); return true;
    case ItemType::month: visit(ItemTag<ItemType::month>()); return true;
    case ItemType::day: visit(ItemTag<ItemType::day>()); return true;
    case ItemType::date: visit(ItemTag<ItemType::date>()); return true;
    case ItemType::datetime: visit(ItemTag<ItemType::datetime>()); return true;
    case ItemType::time: visit(ItemTag<ItemType::time>()); return true;
    case ItemType::char_: visit(ItemTag<ItemType::char_>()); return true;
    case ItemType::string: visit(ItemTag<ItemType::string>()); return true;
    case ItemType::boolean: visit(ItemTag<ItemType::boolean>()); return true;
    case ItemType::decimal: visit(ItemTag<ItemType::decimal>()); return true;
    case ItemType::integer: visit(ItemTag<ItemType::integer>()); return true;
    // clang-format on
    case ItemType::Invalid:
    case ItemType::XmlObject:
    case ItemType::XmlCollection:
      break;
  }
  return false;
}

/// Whether values of the type can be checked against facets.
constexpr bool TypeHasFacets(ItemType type) {
  bool hasFacets = false;
  VisitItem(type, [&hasFacets](auto tag) { hasFacets = kHasFacets<decltype(tag)::value>; });
  return hasFacets;
}

}  // namespace ZuXmlLib16::detail
