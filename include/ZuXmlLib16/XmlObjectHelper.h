#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ItemType.h"

namespace ZuXmlLib16 {

class CBigInteger;
class CBinaryData;
class CDateTime;
class CDateTimeSpan;
class CDecimal;
class CPrimitiveRestrictions;
class CSerializationContext;
class CXmlElement;
class ZuVariant;

/// Tests values against the facets of their type (XML Schema Part 2, 4.3), and names and namespaces
/// against what the schema allows.
///
/// A check that a value fails throws CZuException "Invalid Value for <name> [<value>]", with the
/// name of the element or attribute, null counting as "". A bound that is no value of the type lets
/// the CZuInvalidValueException of its conversion pass.
class ZUXMLLIB16_API CXmlObjectHelper {
 public:
  /// Checks the value that the variant holds; when it holds none of this type, that type's zero.
  /// @throws CZuException  "Unknown type [...]" for char and what is no primitive type.
  static void CheckRestriction(const char* name, const ZuVariant& value, ItemType type,
                               const CPrimitiveRestrictions& restrictions);

  /// Binary data: length, minLength and maxLength, in bytes.
  static void CheckRestrictionForhexBinary(const char* name, const CBinaryData& value,
                                           const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForbase64Binary(const char* name, const CBinaryData& value,
                                              const CPrimitiveRestrictions& restrictions);

  /// Integers: the four bounds and totalDigits. A minus sign counts as a digit.
  static void CheckRestrictionFori1(const char* name, char value,
                                    const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFori2(const char* name, short value,
                                    const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFori4(const char* name, long value,
                                    const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFori8(const char* name, long long value,
                                    const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForui1(const char* name, unsigned char value,
                                     const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForui2(const char* name, unsigned short value,
                                     const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForui4(const char* name, unsigned long value,
                                     const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForui8(const char* name, unsigned long long value,
                                     const CPrimitiveRestrictions& restrictions);

  /// Reals and parts of dates: the four bounds. NaN is within all of them.
  static void CheckRestrictionForr4(const char* name, float value,
                                    const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForr8(const char* name, double value,
                                    const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForyear(const char* name, unsigned short value,
                                      const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFormonth(const char* name, unsigned char value,
                                       const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForday(const char* name, unsigned char value,
                                     const CPrimitiveRestrictions& restrictions);

  /// Durations and dates: the four bounds. A bound that is neither less nor greater is kept.
  static void CheckRestrictionForduration(const char* name, const CDateTimeSpan& value,
                                          const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionForyearMonth(const char* name, const CDateTime& value,
                                           const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFormonthYear(const char* name, const CDateTime& value,
                                           const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFormonthDay(const char* name, const CDateTime& value,
                                          const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFordate(const char* name, const CDateTime& value,
                                      const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFordatetime(const char* name, const CDateTime& value,
                                          const CPrimitiveRestrictions& restrictions);
  static void CheckRestrictionFortime(const char* name, const CDateTime& value,
                                      const CPrimitiveRestrictions& restrictions);

  /// Text: length, minLength and maxLength, in bytes, then the pattern.
  static void CheckRestrictionForstring(const char* name, const std::string& value,
                                        const CPrimitiveRestrictions& restrictions);
  /// Always passes.
  static void CheckRestrictionForboolean(const char* name, bool value,
                                         const CPrimitiveRestrictions& restrictions);
  /// The four bounds, totalDigits and fractionDigits; digits are counted without sign, leading and
  /// trailing zeros.
  static void CheckRestrictionFordecimal(const char* name, const CDecimal& value,
                                         const CPrimitiveRestrictions& restrictions);
  /// The four bounds and totalDigits, without sign and leading zeros.
  static void CheckRestrictionForinteger(const char* name, const CBigInteger& value,
                                         const CPrimitiveRestrictions& restrictions);

  /// Digits before the point, without leading zeros: none in "0.5".
  static std::int64_t GetDecimalIntegerPartLen(const CDecimal& value);
  /// Digits after the point, without trailing zeros.
  static std::int64_t GetDecimalFractionPartLen(const CDecimal& value);

  /// Whether the value as a whole matches an XML Schema regular expression (XML Schema Part 2,
  /// appendix F). \w and \d know ASCII only. A match that is not found within about a second counts
  /// as none. Compiled expressions are kept per thread.
  /// @param pattern  in UTF-8.
  /// @param value  in the local character set; ends at its first NUL.
  /// @throws CZuException  "Invalid Regular Expression: ..." with the value, not the pattern.
  static bool TestRegEx(const std::string& pattern, const std::string& value);

  /// Whether a namespace wildcard (XML Schema Part 1, 3.10) allows a namespace.
  /// @param restriction  tokens separated by single blanks: ##any, ##other, ##local,
  /// ##targetNamespace or a URI; one that allows the namespace is enough.
  static bool IsNamespaceValid(const std::string& namespaceUri, const std::string& restriction,
                               const std::string& targetNamespace);
  /// @return true
  /// @throws CZuInvalidNamespaceException  when the namespace is not allowed.
  static bool TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                            const std::string& targetNamespace);
  /// Whether the element has this local name and, unless the context ignores namespaces, this
  /// namespace.
  static bool DoesElementNameMatch(const CSerializationContext& context, const CXmlElement* element,
                                   const std::string& name, const std::string& namespaceUri);
};

}  // namespace ZuXmlLib16
