#include "ZuXmlLib16/PrimitiveCollections.h"

#include <limits>
#include <utility>

#include "ZuXmlLib16/XmlDocument.h"
#include "core/Errors.h"
#include "core/NameMatch.h"
#include "types/Item.h"

namespace ZuXmlLib16 {

CXmlTypeCollection::CXmlTypeCollection(ItemType itemType, CTextRef name, CTextRef namespaceUri,
                                       std::int32_t minimum, std::int32_t maximum, CTextRef pattern,
                                       std::int64_t minLength, std::int64_t maxLength,
                                       CTextRef minInclusive, CTextRef maxInclusive,
                                       CTextRef minExclusive, CTextRef maxExclusive,
                                       std::int64_t length, std::int64_t totalDigits,
                                       std::int64_t fractionDigits, WhitespaceRule whitespaceRule,
                                       CTextRef lastText)
    : CXmlCollection(name, namespaceUri, minimum, maximum),
      m_restrictions(pattern, minLength, maxLength, minInclusive, maxInclusive, minExclusive,
                     maxExclusive, length, totalDigits, fractionDigits),
      m_itemType(itemType),
      m_whitespaceRule(whitespaceRule),
      m_lastText(lastText) {
  SetItemTest([](const CXmlObjectBase& /*item*/) { return false; });
}

CXmlTypeCollection::~CXmlTypeCollection() = default;

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement* /*parentElement*/, CXmlElement* current,
                                             const CSerializationContext& context,
                                             bool /*isOptionalChoice*/) {
  detail::NameMatch isItem(context, GetName(), NamespaceUri());
  for (; isItem(current); current = current->GetNextSiblingElement()) {
    AddFromString(current->GetTextView());
  }
  return current;
}

void CXmlTypeCollection::WriteItem(CXmlWriter& writer, CTextRef text) const {
  writer.WriteStartElement(GetName(), NamespaceUri());
  writer.WriteString(text, m_itemType, false);
  writer.WriteEndElement();
}

namespace detail {

template <class Stored>
ValueCol<Stored>::~ValueCol() = default;

template <class Stored>
std::int32_t ValueCol<Stored>::GetCount() const {
  return static_cast<std::int32_t>(m_values.size() - m_removed);
}

template <class Stored>
void ValueCol<Stored>::Clear() {
  if (HasListeners()) {
    while (GetCount() > 0) {
      Remove(0);
    }
  } else {
    m_values.clear();
    m_removed = 0;
  }
}

template <class Stored>
void ValueCol<Stored>::Remove(int index) {
  FireOnCollectionRemove(index);
  if (index < 0 || index >= GetCount()) ThrowIndexOutOfRange(index, GetCount());
  const auto first = m_values.begin() + static_cast<std::ptrdiff_t>(m_removed);
  if (index > 0) {
    m_values.erase(first + index);
  } else {
    *first = Stored();
    ++m_removed;
    if (m_removed >= m_values.size() - m_removed) {
      m_values.erase(m_values.begin(), first + 1);
      m_removed = 0;
    }
  }
  FireOnCollectionRemoveComplete(0);  // deliberately not the index
  FireOnCollectionChange();
}

template <class Stored>
const Stored& ValueCol<Stored>::At(int index) const {
  if (index < 0 || index >= GetCount()) ThrowIndexOutOfRange(index, GetCount());
  return begin()[index];
}

template <class Stored>
void ValueCol<Stored>::CheckInsertion(int index) const {
  const std::int32_t count = GetCount();
  const bool isFull = count == std::numeric_limits<std::int32_t>::max();
  if (index < 0 || index > count || isFull) ThrowIndexOutOfRange();
}

template <class Stored>
template <class Value>
void ValueCol<Stored>::Insert(int index, Value value) {
  // A repeated element mostly has some more items than one.
  constexpr std::size_t kFirstRoom = 64 / sizeof(Stored) + 1;
  if (m_values.capacity() == 0) m_values.reserve(kFirstRoom);
  const auto place = m_values.begin() + static_cast<std::ptrdiff_t>(m_removed) + index;
  if (!HasListeners()) {
    m_values.insert(place, std::move(value));
    return;
  }
  // A copy, since a listener may take the value out again while others are still to be told of it.
  m_values.insert(place, value);
  FireOnCollectionAddComplete(&value);
  FireOnCollectionChange();
}

template <class T, ItemType type>
TypedCol<T, type>::TypedCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum,
                            std::int32_t maximum, CTextRef pattern, std::int64_t minLength,
                            std::int64_t maxLength, CTextRef minInclusive, CTextRef maxInclusive,
                            CTextRef minExclusive, CTextRef maxExclusive, std::int64_t length,
                            std::int64_t totalDigits, std::int64_t fractionDigits,
                            WhitespaceRule whitespaceRule, CTextRef lastText)
    : ValueCol<StoredAs<T>>(type, name, namespaceUri, minimum, maximum, pattern, minLength,
                            maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive,
                            length, totalDigits, fractionDigits, whitespaceRule, lastText) {}

template <class T, ItemType type>
TypedCol<T, type>::~TypedCol() = default;

template <class T, ItemType type>
void TypedCol<T, type>::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/,
                                  const char* /*namespaceUri*/,
                                  const CSerializationContext& /*context*/,
                                  bool /*isOptionalChoice*/) const {
  TextBuffer buffer;
  for (const auto& value : *this) {
    this->WriteItem(*writer, detail::Item<type>::Format(value, buffer));
  }
}

template <class T, ItemType type>
void TypedCol<T, type>::AddFromString(CTextRef text) {
  Add(detail::Item<type>::Parse(text, this->GetWhitespaceRule()));
}

template <class T, ItemType type>
void TypedCol<T, type>::Add(T value) {
  AddAt(this->GetCount(), std::move(value));
}

template <class T, ItemType type>
void TypedCol<T, type>::AddAt(int index, T value) {
  this->FireOnCollectionAdd(&value);
  this->CheckInsertion(index);
  detail::Item<type>::Check(this->GetName().c_str(), value, this->GetRestrictions());
  this->Insert(index, std::move(value));
}

template <class T, ItemType type>
typename TypedCol<T, type>::Result TypedCol<T, type>::Item(int index) const {
  return this->At(index);
}

}  // namespace detail

CdatetimeBaseCol::CdatetimeBaseCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum,
                                   std::int32_t maximum, CTextRef pattern, std::int64_t minLength,
                                   std::int64_t maxLength, CTextRef minInclusive,
                                   CTextRef maxInclusive, CTextRef minExclusive,
                                   CTextRef maxExclusive, std::int64_t length,
                                   std::int64_t totalDigits, std::int64_t fractionDigits,
                                   WhitespaceRule whitespaceRule, CTextRef lastText)
    : ValueCol(ItemType::datetime, name, namespaceUri, minimum, maximum, pattern, minLength,
               maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive, length,
               totalDigits, fractionDigits, whitespaceRule, lastText) {}

CdatetimeBaseCol::~CdatetimeBaseCol() = default;

void CdatetimeBaseCol::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/,
                                 const char* /*namespaceUri*/,
                                 const CSerializationContext& /*context*/,
                                 bool /*isOptionalChoice*/) const {
  for (const CDateTime& value : *this) {
    WriteItem(*writer, ItemToString(value));
  }
}

void CdatetimeBaseCol::BaseAddAt(int index, const CDateTime& value) {
  // The value may be one of the collection's own, which a listener may remove.
  CDateTime added(value);
  FireOnCollectionAdd(&added);
  CheckInsertion(index);
  Insert(index, added);
}

namespace detail {

template <CDateTime::DTType dateType, ItemType type>
DateCol<dateType, type>::~DateCol() = default;

template <CDateTime::DTType dateType, ItemType type>
void DateCol<dateType, type>::AddFromString(CTextRef text) {
  Add(detail::Item<type>::Parse(text, GetWhitespaceRule()));
}

template <CDateTime::DTType dateType, ItemType type>
void DateCol<dateType, type>::AddAt(int index, const CDateTime& value) {
  CDateTime added(value);
  FireOnCollectionAdd(&added);
  if (added.GetType() != dateType) ThrowWrongDateType(CDateTime::GetTypeAsString(dateType));
  detail::Item<type>::Check(GetName().c_str(), added, GetRestrictions());
  CheckInsertion(index);
  Insert(index, added);
}

template <CDateTime::DTType dateType, ItemType type>
std::string DateCol<dateType, type>::ItemToString(const CDateTime& value) const {
  TextBuffer buffer;
  return std::string(detail::Item<type>::Format(value, buffer));
}

EnumCol::EnumCol(CTextRef name, CTextRef namespaceUri, std::int32_t minimum, std::int32_t maximum,
                 EnumToText toText, TextToEnum fromText)
    : ValueCol(ItemType::string, name, namespaceUri, minimum, maximum, "", -1, -1, "", "", "", "",
               -1, -1, -1, WhitespaceRule::None, ""),
      m_toText(toText),
      m_fromText(fromText) {}

EnumCol::~EnumCol() = default;

void EnumCol::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/, const char* /*namespaceUri*/,
                        const CSerializationContext& /*context*/, bool /*isOptionalChoice*/) const {
  for (const int value : *this) {
    WriteItem(*writer, m_toText(value));
  }
}

void EnumCol::AddFromString(CTextRef text) {
  AddNumberAt(GetCount(), m_fromText(std::string(text)));
}

void EnumCol::AddNumberAt(int index, int value) {
  FireOnCollectionAdd(&value);
  CheckInsertion(index);
  Insert(index, value);
}

template class ValueCol<signed char>;
template class ValueCol<short>;
template class ValueCol<int>;
template class ValueCol<long>;
template class ValueCol<long long>;
template class ValueCol<unsigned char>;
template class ValueCol<unsigned short>;
template class ValueCol<unsigned long>;
template class ValueCol<unsigned long long>;
template class ValueCol<float>;
template class ValueCol<double>;
template class ValueCol<std::string>;
template class ValueCol<CDateTime>;
template class ValueCol<CDateTimeSpan>;
template class ValueCol<CDecimal>;
template class ValueCol<CBigInteger>;
template class ValueCol<CBinaryData>;

template class TypedCol<signed char, ItemType::i1>;
template class TypedCol<short, ItemType::i2>;
template class TypedCol<long, ItemType::i4>;
template class TypedCol<long long, ItemType::i8>;
template class TypedCol<unsigned char, ItemType::ui1>;
template class TypedCol<unsigned short, ItemType::ui2>;
template class TypedCol<unsigned long, ItemType::ui4>;
template class TypedCol<unsigned long long, ItemType::ui8>;
template class TypedCol<float, ItemType::r4>;
template class TypedCol<double, ItemType::r8>;
template class TypedCol<CDateTimeSpan, ItemType::duration>;
template class TypedCol<unsigned short, ItemType::year>;
template class TypedCol<unsigned char, ItemType::month>;
template class TypedCol<unsigned char, ItemType::day>;
template class TypedCol<std::string, ItemType::string>;
template class TypedCol<bool, ItemType::boolean>;
template class TypedCol<CDecimal, ItemType::decimal>;
template class TypedCol<CBigInteger, ItemType::integer>;
template class TypedCol<CBinaryData, ItemType::hexBinary>;
template class TypedCol<CBinaryData, ItemType::base64Binary>;

template class DateCol<CDateTime::DTType::dt_dateTime, ItemType::datetime>;
template class DateCol<CDateTime::DTType::dt_date, ItemType::date>;
template class DateCol<CDateTime::DTType::dt_gYearMonth, ItemType::yearMonth>;
template class DateCol<CDateTime::DTType::dt_time, ItemType::time>;
template class DateCol<CDateTime::DTType::dt_gMonthDay, ItemType::monthDay>;

}  // namespace detail
}  // namespace ZuXmlLib16
