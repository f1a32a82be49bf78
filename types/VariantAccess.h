#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "ZuXmlLib16/Variant.h"
#include "types/Item.h"

// Values of variants without the copies that the public getters make.

namespace ZuXmlLib16::detail {

/// Numbers lie in the slot of the variant, other values on the heap.
template <ItemType type>
inline constexpr bool kIsInline = std::is_arithmetic_v<ItemValue<type>>;

/// What the slot of a variant holds, as T: a number or a pointer.
template <class T>
T LoadSlot(std::uint64_t slot) {
  constexpr std::size_t kSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of a pointer, too
  static_assert(kSize <= sizeof slot && std::is_trivially_copyable_v<T>);
  T value;
  std::memcpy(&value, &slot, kSize);
  return value;
}

struct VariantAccess {
  static std::uint64_t Slot(const ZuVariant& variant) { return variant.m_slot; }
  /// The object or collection that the variant holds, without a reference for the caller; null when
  /// it holds none.
  static CXmlObjectBase* Object(const ZuVariant& variant) {
    return variant.m_type == ItemType::XmlObject ? LoadSlot<CXmlObjectBase*>(variant.m_slot)
                                                 : nullptr;
  }
  static CXmlCollectionBase* Collection(const ZuVariant& variant) {
    return variant.m_type == ItemType::XmlCollection ? LoadSlot<CXmlCollectionBase*>(variant.m_slot)
                                                     : nullptr;
  }
  /// Makes the variant invalid, keeping the memory of a value of moderate size for the next one.
  static void Vacate(ZuVariant& variant);
  /// ZuVariant::FromString of a view.
  static void Parse(ZuVariant& variant, std::string_view text, ItemType type, WhitespaceRule rule);
  static void Parse(ZuVariant& variant, std::string_view text, ItemType type);
};

/// The value that the variant holds; the zero or empty one when it is nil or of another type.
/// Heap values are borrowed: the reference lasts until the variant changes.
template <ItemType type>
std::conditional_t<kIsInline<type>, ItemValue<type>, const ItemValue<type>&> HeldValue(
    const ZuVariant& variant) {
  using Value = ItemValue<type>;
  if constexpr (kIsInline<type>) {
    return variant.GetItemType() == type ? LoadSlot<Value>(VariantAccess::Slot(variant)) : Value();
  } else {
    static const Value zero{};
    if (variant.GetItemType() != type) return zero;
    const auto* const value = LoadSlot<const Value*>(VariantAccess::Slot(variant));
    return value != nullptr ? *value : zero;
  }
}

/// The text of ZuVariant::ToString. It lies in the buffer or, for a string, in the variant.
std::string_view VariantText(const ZuVariant& variant, const char* format, TextBuffer& buffer);

}  // namespace ZuXmlLib16::detail
