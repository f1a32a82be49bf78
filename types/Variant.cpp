#include "ZuXmlLib16/Variant.h"

#include <cstddef>
#include <memory>
#include <utility>

#include "ZuXmlLib16/XmlCollection.h"
#include "ZuXmlLib16/XmlObjectBase.h"
#include "core/Errors.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16 {

using detail::HeldValue;
using detail::Item;
using detail::ItemValue;
using detail::LoadSlot;
using detail::VisitItem;

namespace {

CWhitespaceUtils::WhitespaceRule UsualRule(ItemType type) {
  return type == ItemType::string || type == ItemType::char_
             ? CWhitespaceUtils::WhitespaceRule::None
             : CWhitespaceUtils::WhitespaceRule::Collapse;
}

/// Whether the memory of a value may stay for the next one: not when it is much, nor when it is
/// shared.
bool IsWorthKeeping(ItemType type, std::uint64_t slot) {
  constexpr std::size_t kMostText = 4096;
  constexpr std::size_t kMostDigits = 64;
  if (slot == 0) return true;
  switch (type) {
    case ItemType::string:
      return LoadSlot<std::string*>(slot)->capacity() <= kMostText;
    case ItemType::decimal:
      return LoadSlot<CDecimal*>(slot)->GetDigits().capacity() <= kMostDigits;
    case ItemType::integer:
      return LoadSlot<CBigInteger*>(slot)->GetDigits().capacity() <= kMostDigits;
    case ItemType::hexBinary:
    case ItemType::base64Binary:
    case ItemType::XmlObject:
    case ItemType::XmlCollection:
      return false;
    default:  // numbers, dates and durations, whose size is fixed
      return true;
  }
}

}  // namespace

template <ItemType type, class Value>
void ZuVariant::Store(Value&& value) {
  using Stored = ItemValue<type>;
  if constexpr (detail::kIsInline<type>) {
    Clear();
    const auto stored = static_cast<Stored>(value);
    std::memcpy(&m_slot, &stored, sizeof stored);
  } else if (m_storedType == type && m_slot != 0) {
    *LoadSlot<Stored*>(m_slot) = std::forward<Value>(value);
  } else {
    auto stored = std::make_unique<Stored>(std::forward<Value>(value));
    Clear();
    m_slot = reinterpret_cast<std::uintptr_t>(stored.release());
  }
  m_isNil = false;
  m_type = m_storedType = type;
}

/// The new reference is taken before the old one is given back: both may be to the same object.
template <class Object>
void ZuVariant::StoreReference(ItemType type, Object* object) {
  if (object != nullptr) object->AddRef();
  Clear();
  m_slot = reinterpret_cast<std::uintptr_t>(object);
  m_type = m_storedType = type;
}

ZuVariant::ZuVariant(const ZuVariant& other) {
  if (other.m_isNil || other.m_type == ItemType::Invalid) {
    m_isNil = other.m_isNil;
    m_type = other.m_type;
  } else if (other.m_type == ItemType::XmlObject) {
    SetXmlObject(LoadSlot<CXmlObjectBase*>(other.m_slot));
  } else if (other.m_type == ItemType::XmlCollection) {
    SetXmlCollection(LoadSlot<CXmlCollectionBase*>(other.m_slot));
  } else {
    const bool isPrimitive = VisitItem(other.m_type, [this, &other](auto tag) {
      constexpr ItemType type = decltype(tag)::value;
      Store<type>(HeldValue<type>(other));
    });
    if (!isPrimitive) ThrowUnknownItemType();
  }
}

ZuVariant& ZuVariant::operator=(const ZuVariant& other) {
  if (this == &other) return *this;
  // Given back last, since other may live inside the object that this variant holds.
  const ZuVariant old = std::move(*this);
  ZuVariant copy(other);
  Swap(copy);
  return *this;
}

ZuVariant& ZuVariant::operator=(ZuVariant&& other) noexcept {
  ZuVariant taken = std::move(other);
  Swap(taken);
  return *this;
}

ZuVariant::~ZuVariant() {
  Clear();
}

void ZuVariant::Swap(ZuVariant& other) noexcept {
  std::swap(m_isNil, other.m_isNil);
  std::swap(m_type, other.m_type);
  std::swap(m_storedType, other.m_storedType);
  std::swap(m_slot, other.m_slot);
}

void ZuVariant::Clear() {
  // Taken out first: giving an object back may run code that looks at this variant.
  const std::uint64_t slot = std::exchange(m_slot, 0);
  const ItemType type = std::exchange(m_storedType, ItemType::Invalid);
  m_type = ItemType::Invalid;
  m_isNil = false;
  if (slot == 0) return;
  if (type == ItemType::XmlObject) {
    LoadSlot<CXmlObjectBase*>(slot)->Release();
  } else if (type == ItemType::XmlCollection) {
    LoadSlot<CXmlCollectionBase*>(slot)->Release();
  } else {
    VisitItem(type, [slot](auto tag) {
      constexpr ItemType stored = decltype(tag)::value;
      if constexpr (!detail::kIsInline<stored>) {
        const std::unique_ptr<ItemValue<stored>> freed(LoadSlot<ItemValue<stored>*>(slot));
      }
    });
  }
}

void ZuVariant::SetNil() {
  const ItemType type = m_type;
  Clear();
  m_type = type;
  m_isNil = true;
}

// clang-format off
void ZuVariant::SetHexBinary(const CBinaryData& value) { Store<ItemType::hexBinary>(value); }
void ZuVariant::SetBase64Binary(const CBinaryData& value) { Store<ItemType::base64Binary>(value); }
void ZuVariant::SetI2(short value) { Store<ItemType::i2>(value); }
void ZuVariant::SetI4(long value) { Store<ItemType::i4>(value); }
void ZuVariant::SetI8(long long value) { Store<ItemType::i8>(value); }
void ZuVariant::SetUI1(unsigned char value) { Store<ItemType::ui1>(value); }
void ZuVariant::SetUI2(unsigned short value) { Store<ItemType::ui2>(value); }
void ZuVariant::SetUI4(unsigned long value) { Store<ItemType::ui4>(value); }
void ZuVariant::SetUI8(unsigned long long value) { Store<ItemType::ui8>(value); }
void ZuVariant::SetR4(float value) { Store<ItemType::r4>(value); }
void ZuVariant::SetR8(double value) { Store<ItemType::r8>(value); }
void ZuVariant::SetDuration(const CDateTimeSpan& value) { Store<ItemType::duration>(value); }
void ZuVariant::SetYearMonth(const CDateTime& value) { Store<ItemType::yearMonth>(value); }
void ZuVariant::SetMonthDay(const CDateTime& value) { Store<ItemType::monthDay>(value); }
void ZuVariant::SetYear(unsigned short value) { Store<ItemType::year>(value); }
void ZuVariant::SetMonth(unsigned char value) { Store<ItemType::month>(value); }
void ZuVariant::SetDay(unsigned char value) { Store<ItemType::day>(value); }
void ZuVariant::SetDate(const CDateTime& value) { Store<ItemType::date>(value); }
void ZuVariant::SetDateTime(const CDateTime& value) { Store<ItemType::datetime>(value); }
void ZuVariant::SetTime(const CDateTime& value) { Store<ItemType::time>(value); }
void ZuVariant::SetChar(char value) { Store<ItemType::char_>(value); }
void ZuVariant::SetBoolean(bool value) { Store<ItemType::boolean>(value); }
void ZuVariant::SetDecimal(const CDecimal& value) { Store<ItemType::decimal>(value); }
void ZuVariant::SetInteger(const CBigInteger& value) { Store<ItemType::integer>(value); }
// clang-format on

void ZuVariant::SetI1(char value) {
  Store<ItemType::i1>(value);
}

void ZuVariant::SetString(CTextRef value) {
  if (m_storedType == ItemType::string && m_slot != 0) {
    auto& stored = *LoadSlot<std::string*>(m_slot);
    stored.clear();
    stored.append(value);
    m_isNil = false;
    m_type = ItemType::string;
  } else {
    Store<ItemType::string>(std::string(value));
  }
}

void ZuVariant::SetXmlObject(CXmlObjectBase* value) {
  StoreReference(ItemType::XmlObject, value);
}

void ZuVariant::SetXmlCollection(CXmlCollectionBase* value) {
  StoreReference(ItemType::XmlCollection, value);
}

// clang-format off
CBinaryData ZuVariant::GetHexBinary() const { return HeldValue<ItemType::hexBinary>(*this); }
CBinaryData ZuVariant::GetBase64Binary() const { return HeldValue<ItemType::base64Binary>(*this); }
short ZuVariant::GetI2() const { return HeldValue<ItemType::i2>(*this); }
long ZuVariant::GetI4() const { return HeldValue<ItemType::i4>(*this); }
long long ZuVariant::GetI8() const { return HeldValue<ItemType::i8>(*this); }
unsigned char ZuVariant::GetUI1() const { return HeldValue<ItemType::ui1>(*this); }
unsigned short ZuVariant::GetUI2() const { return HeldValue<ItemType::ui2>(*this); }
unsigned long ZuVariant::GetUI4() const { return HeldValue<ItemType::ui4>(*this); }
unsigned long long ZuVariant::GetUI8() const { return HeldValue<ItemType::ui8>(*this); }
float ZuVariant::GetR4() const { return HeldValue<ItemType::r4>(*this); }
double ZuVariant::GetR8() const { return HeldValue<ItemType::r8>(*this); }
CDateTimeSpan ZuVariant::GetDuration() const { return HeldValue<ItemType::duration>(*this); }
CDateTime ZuVariant::GetYearMonth() const { return HeldValue<ItemType::yearMonth>(*this); }
CDateTime ZuVariant::GetMonthDay() const { return HeldValue<ItemType::monthDay>(*this); }
unsigned short ZuVariant::GetYear() const { return HeldValue<ItemType::year>(*this); }
unsigned char ZuVariant::GetMonth() const { return HeldValue<ItemType::month>(*this); }
unsigned char ZuVariant::GetDay() const { return HeldValue<ItemType::day>(*this); }
CDateTime ZuVariant::GetDate() const { return HeldValue<ItemType::date>(*this); }
CDateTime ZuVariant::GetDateTime() const { return HeldValue<ItemType::datetime>(*this); }
CDateTime ZuVariant::GetTime() const { return HeldValue<ItemType::time>(*this); }
char ZuVariant::GetChar() const { return HeldValue<ItemType::char_>(*this); }
bool ZuVariant::GetBoolean() const { return HeldValue<ItemType::boolean>(*this); }
CDecimal ZuVariant::GetDecimal() const { return HeldValue<ItemType::decimal>(*this); }
CBigInteger ZuVariant::GetInteger() const { return HeldValue<ItemType::integer>(*this); }
// clang-format on

char ZuVariant::GetI1() const {
  return static_cast<char>(HeldValue<ItemType::i1>(*this));
}

std::string ZuVariant::GetString() const {
  return HeldValue<ItemType::string>(*this);
}

CSmartPtr<CXmlObjectBase> ZuVariant::GetXmlObject() const {
  return detail::VariantAccess::Object(*this);
}

CSmartPtr<CXmlCollectionBase> ZuVariant::GetXmlCollection() const {
  return detail::VariantAccess::Collection(*this);
}

std::string ZuVariant::GetType() const {
  std::string code;
  const bool isPrimitive =
      VisitItem(m_type, [&code](auto tag) { code = Item<decltype(tag)::value>::kCode; });
  if (!isPrimitive) ThrowInvalidItemType(static_cast<int>(m_type));
  return code;
}

std::string ZuVariant::ToString(const char* format) const {
  detail::TextBuffer buffer;
  return detail::TakeText(detail::VariantText(*this, format, buffer), buffer);
}

void detail::VariantAccess::Parse(ZuVariant& variant, std::string_view text, ItemType type,
                                  WhitespaceRule rule) {
  if (type == ItemType::string && rule == WhitespaceRule::None) return variant.SetString(text);
  const bool isPrimitive = VisitItem(type, [&](auto tag) {
    constexpr ItemType parsed = decltype(tag)::value;
    variant.Store<parsed>(Item<parsed>::Parse(text, rule));
  });
  if (!isPrimitive) ThrowItemTypeWithoutText(static_cast<int>(type));
}

void detail::VariantAccess::Vacate(ZuVariant& variant) {
  if (!IsWorthKeeping(variant.m_storedType, variant.m_slot)) return variant.Clear();
  variant.m_type = ItemType::Invalid;
  variant.m_isNil = false;
}

void detail::VariantAccess::Parse(ZuVariant& variant, std::string_view text, ItemType type) {
  Parse(variant, text, type, UsualRule(type));
}

void ZuVariant::FromString(const std::string& text, ItemType type,
                           CWhitespaceUtils::WhitespaceRule rule) {
  detail::VariantAccess::Parse(*this, text, type, rule);
}

void ZuVariant::FromString(const std::string& text, ItemType type) {
  detail::VariantAccess::Parse(*this, text, type);
}

std::string_view detail::VariantText(const ZuVariant& variant, const char* format,
                                     TextBuffer& buffer) {
  if (variant.IsNil()) return {};
  std::string_view text;
  const bool isPrimitive = VisitItem(variant.GetItemType(), [&](auto tag) {
    constexpr ItemType type = decltype(tag)::value;
    if constexpr (kTakesFormat<type>) {
      text = Item<type>::FormatAs(HeldValue<type>(variant), format, buffer);
    } else {
      text = Item<type>::Format(HeldValue<type>(variant), buffer);
    }
  });
  if (!isPrimitive) ThrowItemTypeWithoutText(static_cast<int>(variant.GetItemType()));
  return text;
}

}  // namespace ZuXmlLib16
