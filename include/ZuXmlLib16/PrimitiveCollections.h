#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "ZuXmlLib16/BigInteger.h"
#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/DateTime.h"
#include "ZuXmlLib16/DateTimeSpan.h"
#include "ZuXmlLib16/Decimal.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/PrimitiveRestrictions.h"
#include "ZuXmlLib16/TextRef.h"
#include "ZuXmlLib16/WhitespaceUtils.h"
#include "ZuXmlLib16/XmlCollection.h"

namespace ZuXmlLib16 {

/// Base of the collections of plain values: a repeated element of a simple type. Every value that
/// is added passes the facets. The list of objects below stays empty and refuses objects.
///
/// An insertion fires Added before any test, so that a refused value was announced, too, and
/// AddComplete and Changed after it; item is the address of a value of the element type and lasts
/// for the call. A removal fires Removed with the index before it, also for an index that is then
/// refused, and RemoveComplete, always with 0, and Changed after it.
class ZUXMLLIB16_API CXmlTypeCollection : public CXmlCollection {
 public:
  using WhitespaceRule = CWhitespaceUtils::WhitespaceRule;

  ~CXmlTypeCollection() override;

  using CXmlCollection::FromXml_Int;
  /// Adds the texts of the elements from current on, as long as they have the collection's name.
  /// Neither the maximum nor xsi:nil is looked at.
  /// @throws CZuException  as AddFromString; the values before the refused one are in.
  CXmlElement* FromXml_Int(CXmlElement* parentElement, CXmlElement* current,
                           const CSerializationContext& context, bool isOptionalChoice) override;

  /// Converts the text, as CConversions does under the whitespace rule, and appends the value.
  virtual void AddFromString(CTextRef text) = 0;

  const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }
  /// The type that the values are written with.
  ItemType GetItemType() const { return m_itemType; }
  WhitespaceRule GetWhitespaceRule() const { return m_whitespaceRule; }
  /// The last argument of the constructor; it has no effect.
  const std::string& GetLastText() const { return m_lastText; }

 protected:
  /// @param maximum  -1 for any number.
  /// @param pattern  begins the facets, which are those of CPrimitiveRestrictions.
  CXmlTypeCollection(ItemType itemType, CTextRef name, CTextRef namespaceUri, std::int32_t minimum,
                     std::int32_t maximum, CTextRef pattern, std::int64_t minLength,
                     std::int64_t maxLength, CTextRef minInclusive, CTextRef maxInclusive,
                     CTextRef minExclusive, CTextRef maxExclusive, std::int64_t length,
                     std::int64_t totalDigits, std::int64_t fractionDigits,
                     WhitespaceRule whitespaceRule, CTextRef lastText);

  /// Writes one element with the given text.
  void WriteItem(CXmlWriter& writer, CTextRef text) const;

 private:
  // The operations on the list of objects.
  using CXmlCollection::AddAfterItem;
  using CXmlCollection::AddBeforeItem;
  using CXmlCollection::AddItemAt;
  using CXmlCollection::Append;
  using CXmlCollection::AppendItem;
  using CXmlCollection::GetHead;
  using CXmlCollection::GetNodeAtIndex;
  using CXmlCollection::GetNodeForItem;
  using CXmlCollection::GetTail;
  using CXmlCollection::ItemsToXml;
  using CXmlCollection::PrependItem;
  using CXmlCollection::RemoveNode;
  using CXmlCollection::SetItemTest;

  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  WhitespaceRule m_whitespaceRule;
  std::string m_lastText;
};

namespace detail {

/// Holds the values, one behind the other. The bodies are in the library.
template <class Stored>
class ZUXMLLIB16_API ValueCol : public CXmlTypeCollection {
 public:
  ~ValueCol() override;

  std::int32_t GetCount() const override;
  /// Takes linear time, with listeners too.
  void Clear() override;
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  void Remove(int index) override;

  /// All values in order, until the collection changes.
  const Stored* begin() const { return m_values.data() + m_removed; }
  const Stored* end() const { return m_values.data() + m_values.size(); }

 protected:
  using CXmlTypeCollection::CXmlTypeCollection;

  const Stored& At(int index) const;
  /// @throws CZuInvalidParamException  "Index out of range", also when no more values fit.
  void CheckInsertion(int index) const;
  /// Inserts at a checked index, then tells the listeners.
  template <class Value>
  void Insert(int index, Value value);

 private:
  std::vector<Stored> m_values;
  // Values removed at the front, still in the array: removing all of them from there stays linear.
  std::size_t m_removed = 0;
};

/// bool is kept as a byte, 0 or 1, since std::vector<bool> is no array.
template <class T>
using StoredAs = std::conditional_t<std::is_same_v<T, bool>, unsigned char, T>;

template <class T, ItemType type>
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): virtual by the base
class ZUXMLLIB16_API TypedCol : public ValueCol<StoredAs<T>> {
 public:
  using Result = std::conditional_t<std::is_arithmetic_v<T>, T, const T&>;
  using typename CXmlTypeCollection::WhitespaceRule;

  /// @param maximum  -1 for any number.
  /// @param pattern  begins the facets, which are those of CPrimitiveRestrictions.
  TypedCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
           CTextRef pattern, std::int64_t minLength, std::int64_t maxLength, CTextRef minInclusive,
           CTextRef maxInclusive, CTextRef minExclusive, CTextRef maxExclusive, std::int64_t length,
           std::int64_t totalDigits, std::int64_t fractionDigits, WhitespaceRule whitespaceRule,
           CTextRef lastText);
  ~TypedCol() override;

  using CXmlTypeCollection::ToXml_Int;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  void AddFromString(CTextRef text) override;

  void Add(T value);
  /// @param index  the value's index afterwards, 0 to GetCount().
  /// @throws CZuInvalidParamException  "Index out of range", tested before the facets.
  /// @throws CZuException              the value violates a facet.
  void AddAt(int index, T value);
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  Result Item(int index) const;
};

// clang-format off
// Exported once more: an instantiation is otherwise as visible as the enumeration in its arguments.
extern template class ZUXMLLIB16_API TypedCol<signed char, ItemType::i1>;
extern template class ZUXMLLIB16_API TypedCol<short, ItemType::i2>;
extern template class ZUXMLLIB16_API TypedCol<long, ItemType::i4>;
extern template class ZUXMLLIB16_API TypedCol<long long, ItemType::i8>;
extern template class ZUXMLLIB16_API TypedCol<unsigned char, ItemType::ui1>;
extern template class ZUXMLLIB16_API TypedCol<unsigned short, ItemType::ui2>;
extern template class ZUXMLLIB16_API TypedCol<unsigned long, ItemType::ui4>;
extern template class ZUXMLLIB16_API TypedCol<unsigned long long, ItemType::ui8>;
extern template class ZUXMLLIB16_API TypedCol<float, ItemType::r4>;
extern template class ZUXMLLIB16_API TypedCol<double, ItemType::r8>;
extern template class ZUXMLLIB16_API TypedCol<CDateTimeSpan, ItemType::duration>;
extern template class ZUXMLLIB16_API TypedCol<unsigned short, ItemType::year>;
extern template class ZUXMLLIB16_API TypedCol<unsigned char, ItemType::month>;
extern template class ZUXMLLIB16_API TypedCol<unsigned char, ItemType::day>;
extern template class ZUXMLLIB16_API TypedCol<std::string, ItemType::string>;
extern template class ZUXMLLIB16_API TypedCol<bool, ItemType::boolean>;
extern template class ZUXMLLIB16_API TypedCol<CDecimal, ItemType::decimal>;
extern template class ZUXMLLIB16_API TypedCol<CBigInteger, ItemType::integer>;
extern template class ZUXMLLIB16_API TypedCol<CBinaryData, ItemType::hexBinary>;
extern template class ZUXMLLIB16_API TypedCol<CBinaryData, ItemType::base64Binary>;
// clang-format on

}  // namespace detail

// clang-format off
class ZUXMLLIB16_API Ci1Col : public detail::TypedCol<signed char, ItemType::i1> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Ci2Col : public detail::TypedCol<short, ItemType::i2> { public: using TypedCol::TypedCol; };
/// Takes all 64 bits of long.
class ZUXMLLIB16_API Ci4Col : public detail::TypedCol<long, ItemType::i4> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Ci8Col : public detail::TypedCol<long long, ItemType::i8> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Cui1Col : public detail::TypedCol<unsigned char, ItemType::ui1> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Cui2Col : public detail::TypedCol<unsigned short, ItemType::ui2> { public: using TypedCol::TypedCol; };
/// Takes all 64 bits of unsigned long.
class ZUXMLLIB16_API Cui4Col : public detail::TypedCol<unsigned long, ItemType::ui4> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Cui8Col : public detail::TypedCol<unsigned long long, ItemType::ui8> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Cr4Col : public detail::TypedCol<float, ItemType::r4> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Cr8Col : public detail::TypedCol<double, ItemType::r8> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CdurationCol : public detail::TypedCol<CDateTimeSpan, ItemType::duration> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CyearCol : public detail::TypedCol<unsigned short, ItemType::year> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CmonthCol : public detail::TypedCol<unsigned char, ItemType::month> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CdayCol : public detail::TypedCol<unsigned char, ItemType::day> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CstringCol : public detail::TypedCol<std::string, ItemType::string> { public: using TypedCol::TypedCol; };
/// The array holds bytes, 0 and 1.
class ZUXMLLIB16_API CbooleanCol : public detail::TypedCol<bool, ItemType::boolean> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CdecimalCol : public detail::TypedCol<CDecimal, ItemType::decimal> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API CintegerCol : public detail::TypedCol<CBigInteger, ItemType::integer> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API ChexBinaryCol : public detail::TypedCol<CBinaryData, ItemType::hexBinary> { public: using TypedCol::TypedCol; };
class ZUXMLLIB16_API Cbase64BinaryCol : public detail::TypedCol<CBinaryData, ItemType::base64Binary> { public: using TypedCol::TypedCol; };
// clang-format on

/// Base of the collections of dates, each of which takes values of one date type. All of them are
/// written as ItemType::datetime.
class ZUXMLLIB16_API CdatetimeBaseCol : public detail::ValueCol<CDateTime> {
 public:
  /// @param maximum  -1 for any number.
  /// @param pattern  begins the facets, which are those of CPrimitiveRestrictions.
  CdatetimeBaseCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
                   CTextRef pattern, std::int64_t minLength, std::int64_t maxLength,
                   CTextRef minInclusive, CTextRef maxInclusive, CTextRef minExclusive,
                   CTextRef maxExclusive, std::int64_t length, std::int64_t totalDigits,
                   std::int64_t fractionDigits, WhitespaceRule whitespaceRule, CTextRef lastText);
  ~CdatetimeBaseCol() override;

  using CXmlTypeCollection::ToXml_Int;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;

  void Add(const CDateTime& value) { AddAt(GetCount(), value); }
  /// @param index  the value's index afterwards, 0 to GetCount().
  /// @throws CZuInvalidParamException  "Dates added to this collection must be of type ...", tested
  /// first; "Index out of range", tested last.
  /// @throws CZuException              the value violates a facet.
  virtual void AddAt(int index, const CDateTime& value) = 0;
  /// The same without the tests of type and facets.
  void BaseAddAt(int index, const CDateTime& value);
  /// The text of a value in the document.
  virtual std::string ItemToString(const CDateTime& value) const = 0;
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  const CDateTime& Item(int index) const { return At(index); }
};

namespace detail {

template <CDateTime::DTType dateType, ItemType type>
class ZUXMLLIB16_API DateCol : public CdatetimeBaseCol {
 public:
  using CdatetimeBaseCol::CdatetimeBaseCol;
  ~DateCol() override;

  void AddFromString(CTextRef text) override;
  void AddAt(int index, const CDateTime& value) override;
  std::string ItemToString(const CDateTime& value) const override;
};

// clang-format off
extern template class ZUXMLLIB16_API DateCol<CDateTime::DTType::dt_dateTime, ItemType::datetime>;
extern template class ZUXMLLIB16_API DateCol<CDateTime::DTType::dt_date, ItemType::date>;
extern template class ZUXMLLIB16_API DateCol<CDateTime::DTType::dt_gYearMonth, ItemType::yearMonth>;
extern template class ZUXMLLIB16_API DateCol<CDateTime::DTType::dt_time, ItemType::time>;
extern template class ZUXMLLIB16_API DateCol<CDateTime::DTType::dt_gMonthDay, ItemType::monthDay>;
// clang-format on

}  // namespace detail

// clang-format off
class ZUXMLLIB16_API CdatetimeCol : public detail::DateCol<CDateTime::DTType::dt_dateTime, ItemType::datetime> { public: using DateCol::DateCol; };
class ZUXMLLIB16_API CdateCol : public detail::DateCol<CDateTime::DTType::dt_date, ItemType::date> { public: using DateCol::DateCol; };
class ZUXMLLIB16_API CyearMonthCol : public detail::DateCol<CDateTime::DTType::dt_gYearMonth, ItemType::yearMonth> { public: using DateCol::DateCol; };
class ZUXMLLIB16_API CtimeCol : public detail::DateCol<CDateTime::DTType::dt_time, ItemType::time> { public: using DateCol::DateCol; };
class ZUXMLLIB16_API CmonthDayCol : public detail::DateCol<CDateTime::DTType::dt_gMonthDay, ItemType::monthDay> { public: using DateCol::DateCol; };
// clang-format on

namespace detail {

/// Enumeration values as numbers.
class ZUXMLLIB16_API EnumCol : public ValueCol<int> {
 public:
  /// Throws what it likes for a number or a text that is none of the enumeration's.
  using EnumToText = std::string (*)(int value);
  using TextToEnum = int (*)(const std::string& text);

  /// @param maximum  -1 for any number.
  EnumCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
          EnumToText toText, TextToEnum fromText);
  ~EnumCol() override;

  using CXmlTypeCollection::ToXml_Int;
  void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                 const CSerializationContext& context, bool isOptionalChoice) const override;
  /// The enumeration gets the text as it is.
  void AddFromString(CTextRef text) override;

 protected:
  void AddNumberAt(int index, int value);

 private:
  EnumToText m_toText;
  TextToEnum m_fromText;
};

}  // namespace detail

/// Values of an enumerated simple type. They are written as ItemType::string and have no facets.
/// begin() and end(), and the events, give them as int.
template <class E>
class CXmlEnumCol : public detail::EnumCol {
 public:
  using EnumCol::EnumCol;

  void Add(E value) { AddAt(GetCount(), value); }
  /// @param index  the value's index afterwards, 0 to GetCount().
  /// @throws CZuInvalidParamException  "Index out of range"
  void AddAt(int index, E value) { AddNumberAt(index, static_cast<int>(value)); }
  /// @throws CZuInvalidParamException  "Index %d is out of range, use 0 - %d" (index, count).
  E Item(int index) const { return static_cast<E>(At(index)); }
};

}  // namespace ZuXmlLib16
