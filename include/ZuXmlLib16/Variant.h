#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/BigInteger.h"
#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/DateTime.h"
#include "ZuXmlLib16/DateTimeSpan.h"
#include "ZuXmlLib16/Decimal.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/TextRef.h"
#include "ZuXmlLib16/WhitespaceUtils.h"

namespace ZuXmlLib16 {

class CXmlCollectionBase;
class CXmlObjectBase;

namespace detail {
struct VariantAccess;
}

/// A value of any item type on its way between metadata and generated classes: nothing, a primitive
/// value, or a reference to a bound object or collection, and a mark for nil (xsi:nil). Copies are
/// deep; objects and collections get one reference more.
class ZUXMLLIB16_API ZuVariant {
 public:
  ZuVariant() = default;
  ZuVariant(const ZuVariant& other);
  /// Leaves an invalid variant behind.
  ZuVariant(ZuVariant&& other) noexcept { Swap(other); }
  /// Invalid when copying throws.
  ZuVariant& operator=(const ZuVariant& other);
  ZuVariant& operator=(ZuVariant&& other) noexcept;
  virtual ~ZuVariant();

  /// Frees the value; the variant is then invalid and not nil.
  void Clear();
  void SetInvalid() { Clear(); }
  /// Whether there is a value or nil.
  bool IsValid() const { return m_type != ItemType::Invalid || m_isNil; }
  /// Frees the value and keeps the type.
  void SetNil();
  bool IsNil() const { return m_isNil; }

  /// What the setters store replaces type, value and nil mark. Dates keep the type they have.
  void SetHexBinary(const CBinaryData& value);
  void SetBase64Binary(const CBinaryData& value);
  void SetI1(char value);
  void SetI2(short value);
  void SetI4(long value);
  void SetI8(long long value);
  void SetUI1(unsigned char value);
  void SetUI2(unsigned short value);
  void SetUI4(unsigned long value);
  void SetUI8(unsigned long long value);
  void SetR4(float value);
  void SetR8(double value);
  void SetDuration(const CDateTimeSpan& value);
  void SetYearMonth(const CDateTime& value);
  void SetMonthDay(const CDateTime& value);
  void SetYear(unsigned short value);
  void SetMonth(unsigned char value);
  void SetDay(unsigned char value);
  void SetDate(const CDateTime& value);
  void SetDateTime(const CDateTime& value);
  void SetTime(const CDateTime& value);
  void SetChar(char value);
  void SetString(CTextRef value);
  void SetBoolean(bool value);
  void SetDecimal(const CDecimal& value);
  void SetInteger(const CBigInteger& value);
  /// Take a reference; null is stored as null.
  void SetXmlObject(CXmlObjectBase* value);
  void SetXmlCollection(CXmlCollectionBase* value);

  /// A copy of the value, or a new reference. The zero, empty or null value when the variant is nil
  /// or holds another type.
  CBinaryData GetHexBinary() const;
  CBinaryData GetBase64Binary() const;
  char GetI1() const;
  short GetI2() const;
  long GetI4() const;
  long long GetI8() const;
  unsigned char GetUI1() const;
  unsigned short GetUI2() const;
  unsigned long GetUI4() const;
  unsigned long long GetUI8() const;
  float GetR4() const;
  double GetR8() const;
  CDateTimeSpan GetDuration() const;
  CDateTime GetYearMonth() const;
  CDateTime GetMonthDay() const;
  unsigned short GetYear() const;
  unsigned char GetMonth() const;
  unsigned char GetDay() const;
  CDateTime GetDate() const;
  CDateTime GetDateTime() const;
  CDateTime GetTime() const;
  char GetChar() const;
  std::string GetString() const;
  bool GetBoolean() const;
  CDecimal GetDecimal() const;
  CBigInteger GetInteger() const;
  CSmartPtr<CXmlObjectBase> GetXmlObject() const;
  CSmartPtr<CXmlCollectionBase> GetXmlCollection() const;

  ItemType GetItemType() const { return m_type; }
  /// The code of a primitive type, e.g. "i4".
  /// @throws CZuException  "Invalid Type %d" for other types.
  std::string GetType() const;

  /// The lexical form of a primitive value (see CConversions); "" when nil.
  /// @param format  for r4 and r8 a printf format, for decimal the number of fraction digits; null
  /// or "" gives the usual form. Other types ignore it.
  /// @throws CZuException  "Invalid Type %d to convert to string" for other types.
  std::string ToString(const char* format = "") const;
  /// Reads a primitive value. Nothing changes when this throws.
  /// @throws CZuException  "Invalid Type %d to convert to string" when type is not primitive; else
  /// as the conversion of CConversions.
  void FromString(const std::string& text, ItemType type, CWhitespaceUtils::WhitespaceRule rule);
  /// Takes string and char as they are, and collapses white space of all others.
  void FromString(const std::string& text, ItemType type);

 private:
  friend struct detail::VariantAccess;

  void Swap(ZuVariant& other) noexcept;
  template <ItemType type, class Value>
  void Store(Value&& value);
  template <class Object>
  void StoreReference(ItemType type, Object* object);

  bool m_isNil = false;
  ItemType m_type = ItemType::Invalid;
  // What the slot holds. Other than m_type only while an invalid variant keeps the memory of an
  // earlier value for the next one.
  ItemType m_storedType = ItemType::Invalid;
  // The bytes of a number, or a pointer: to an own heap object, or to a referenced object.
  std::uint64_t m_slot = 0;
};

}  // namespace ZuXmlLib16
