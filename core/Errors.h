#pragma once

// Every message of the library, one function a family. Each names class, text and place of the
// failure, so that a throw site is one call. The texts are part of the interface, word for word;
// "sic" marks a slip.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ZuXmlLib16 {

class CZuException;

// Options and parameters
[[noreturn]] void ThrowExclusiveIgnoreOptions(const char* optionSet, const char* optionWanted);
[[noreturn]] void ThrowIndentCharsNotWhitespace();
/// Null where an object is needed.
[[noreturn]] void ThrowPropertyIsNull(const char* name);
[[noreturn]] void ThrowIndexOutOfRange(int index, int count);
/// The short form, of insertions.
[[noreturn]] void ThrowIndexOutOfRange();
[[noreturn]] void ThrowWrongVersion(int generatorMajor, int generatorMinor);
[[noreturn]] void ThrowZlibOnlyForStreams();

// Choices and elements
/// @param isBracketed  whether the message shows the name in brackets.
[[noreturn]] void ThrowChoiceAlreadySet(const std::string& selected, bool isBracketed);
[[noreturn]] void ThrowElementNameDiffers(const std::string& expected, const std::string& actual);
[[noreturn]] void ThrowNestedTooDeeply(const std::string& name, int limit, const std::string& path);
[[noreturn]] void ThrowInvalidElement(const std::string& name, const std::string& path);
[[noreturn]] void ThrowInappropriateAttribute(const std::string& name, const std::string& path);
[[noreturn]] void ThrowInvalidNamespace(const std::string& namespaceUri,
                                        const std::string& restriction,
                                        const std::string& targetNamespace);
[[noreturn]] void ThrowUnusableNamespace(const std::string& namespaceUri);
[[noreturn]] void ThrowNamespaceOutsideRestriction(const std::string& namespaceUri,
                                                   const std::string& name,
                                                   const std::string& restriction);
/// @param what  "Element Name", "Namespace Restriction" or "Target Namespace".
[[noreturn]] void ThrowMustHaveValue(const char* what);
[[noreturn]] void ThrowReadByCollection();
[[noreturn]] void ThrowUnknownAlias(const std::string& alias);

// Generated classes
/// What a class is raised for while it reads or writes; the cause goes with it.
[[noreturn]] void ThrowProcessingFailed(const std::string& path, const CZuException& cause);
[[noreturn]] void ThrowConversionFailed(const std::string& name, const CZuException& cause);
[[noreturn]] void ThrowAttributesFailed(const CZuException& cause);
[[noreturn]] void ThrowUnexpectedElement(const std::string& parentName, const std::string& name,
                                         const std::string& path);
[[noreturn]] void ThrowNoChoiceFound(const std::string& name, const std::string& path);
[[noreturn]] void ThrowNoChoiceSet();
/// The group type of a class is none, met when reading and when writing.
[[noreturn]] void ThrowUnknownGroupType();
[[noreturn]] void ThrowUnknownXmlGroupType();
[[noreturn]] void ThrowNilNotAllowed(const std::string& path);
[[noreturn]] void ThrowUnexpectedNilValue(const std::string& value, const std::string& path);
[[noreturn]] void ThrowUnexpectedAttribute(const std::string& path);

// Metadata
[[noreturn]] void ThrowMandatoryPropertyIsNull(const std::string& name);
[[noreturn]] void ThrowGetPropertyFailed(const std::string& name, const CZuException& cause);
[[noreturn]] void ThrowSetElementFailed(const std::string& path, const CZuException& cause);
[[noreturn]] void ThrowSetAttributeFailed(const std::string& value, const std::string& path,
                                          const CZuException& cause);
/// A mandatory child of a sequence, an element of an all-group, a required attribute.
[[noreturn]] void ThrowMissingChild(const std::string& name, const std::string& path);
[[noreturn]] void ThrowMissingElement(const std::string& name);
[[noreturn]] void ThrowMissingAttribute(const std::string& name);
[[noreturn]] void ThrowMissingSubstitution(const std::string& name, const std::string& path);
[[noreturn]] void ThrowMissingFromNamespace(const std::string& restriction,
                                            const std::string& path);
[[noreturn]] void ThrowValidateNotImplemented();
/// @param type  code of the value's type.
[[noreturn]] void ThrowCannotCheckRestriction(const std::string& type);
[[noreturn]] void ThrowNoAttributeCollection();

// Collections
[[noreturn]] void ThrowTooManyItems(const std::string& name, int maximum);
[[noreturn]] void ThrowTooFewItems(const std::string& name, int minimum);
[[noreturn]] void ThrowItemNotFound();
[[noreturn]] void ThrowWrongItemKind();
[[noreturn]] void ThrowCollectionHasNoTargetNamespace();
[[noreturn]] void ThrowCollectionHasNoNamespace();
/// @param type  the date type that is wanted, e.g. "gYearMonth".
[[noreturn]] void ThrowWrongDateType(const std::string& type);

// JSON reading
/// A place in a text; both count from 1.
struct JsonPlace {
  int line;
  int position;
};
[[noreturn]] void ThrowJsonStringEmpty();
[[noreturn]] void ThrowJsonStreamEmpty();
[[noreturn]] void ThrowJsonDepthLimit(const JsonPlace& place, const std::string& path);
/// @param expected  what should stand where the text ends.
[[noreturn]] void ThrowJsonEnd(const char* expected, const JsonPlace& place,
                               const std::string& path);
/// @param expected  what should stand where the character does.
[[noreturn]] void ThrowJsonCharacter(const char* expected, char found, const JsonPlace& place,
                                     const std::string& path);
[[noreturn]] void ThrowJsonEscape(char character, const JsonPlace& place, const std::string& path);
/// @param name  "NULL", "true" or "false".
[[noreturn]] void ThrowJsonLiteral(const char* name, const JsonPlace& place,
                                   const std::string& path);

// JSON that is no XML
[[noreturn]] void ThrowJsonNameEmpty(const std::string& path);
[[noreturn]] void ThrowJsonArrayWithoutName(const std::string& path);
[[noreturn]] void ThrowJsonRootMissing(const std::string& path);
[[noreturn]] void ThrowJsonSecondRoot(const std::string& path);
[[noreturn]] void ThrowJsonMemberOutsideRoot(const std::string& name, const std::string& path);
/// @param what  "an array" or "an object".
[[noreturn]] void ThrowJsonMemberHolds(const std::string& name, const char* what,
                                       const std::string& path);
[[noreturn]] void ThrowJsonPrefixUndeclared(const std::string& prefix, const std::string& path);
[[noreturn]] void ThrowJsonPrefixUnusable(const std::string& prefix,
                                          const std::string& namespaceUri, const std::string& path);

// Documents
[[noreturn]] void ThrowXmlStringEmpty();
[[noreturn]] void ThrowXmlStreamEmpty();
[[noreturn]] void ThrowFileOpenFailed(const std::string& path);
[[noreturn]] void ThrowFileSizeFailed(const std::string& path, int error);
[[noreturn]] void ThrowFileReadFailed(const std::string& path, int error);
[[noreturn]] void ThrowParseError(const char* text, int line);
/// Compressed input that is damaged fails as the text it is not; the cause goes with it.
[[noreturn]] void ThrowDamagedInput(const std::string& parseError, const std::string& cause);

// Writers
[[noreturn]] void ThrowElementNotClosed();
[[noreturn]] void ThrowAttributeAfterContent();
[[noreturn]] void ThrowDirectiveAfterElement();
[[noreturn]] void ThrowInvalidEolType();

// JSON writing
/// @param name  of the element or attribute whose namespace has no prefix.
[[noreturn]] void ThrowUnknownNamespace(const std::string& name);

// Value types
[[noreturn]] void ThrowUnknownWhitespaceRule();

// Binary data
[[noreturn]] void ThrowSharedAppend(std::int64_t refCount);
[[noreturn]] void ThrowSharedRelease(std::int64_t refCount);
[[noreturn]] void ThrowByteIndexOutOfRange(unsigned long index);
[[noreturn]] void ThrowOddHexLength();
[[noreturn]] void ThrowInvalidHexCharacter(char character);

// Dates and durations
/// @param reason  what the message shows in parentheses.
[[noreturn]] void ThrowInvalidDate(const char* reason);
[[noreturn]] void ThrowInvalidDateForm(std::string_view text);
[[noreturn]] void ThrowNullTime();
[[noreturn]] void ThrowEmptyTime();
[[noreturn]] void ThrowInvalidTimeForm(std::string_view text);
[[noreturn]] void ThrowTimeFractionTooLong(std::string_view text);
[[noreturn]] void ThrowNullDateTime();
[[noreturn]] void ThrowDateTimeWithoutTime(std::string_view text);
[[noreturn]] void ThrowInvalidDateTimeForm(std::string_view text);
[[noreturn]] void ThrowInvalidTimeZoneForm(std::string_view text);
[[noreturn]] void ThrowInvalidTimeZone(int hour, int minute);
[[noreturn]] void ThrowInvalidMonth(int month);
[[noreturn]] void ThrowInvalidYear(long long year);
/// The day of a date, of a month in any year, and of any month.
[[noreturn]] void ThrowInvalidDayOfDate(int day);
[[noreturn]] void ThrowInvalidDayOfMonth(int day);
[[noreturn]] void ThrowInvalidDay(int day);
/// @param variable  the name in the range that the message shows.
[[noreturn]] void ThrowInvalidTimePart(const char* name, int value, const char* variable, int max);
[[noreturn]] void ThrowDateFieldNotAllowed(const char* name, int value, const std::string& type);
[[noreturn]] void ThrowDateConversion(const std::string& target, const std::string& source);
[[noreturn]] void ThrowUnknownDateType(int type);
[[noreturn]] void ThrowDateTypeConflict(const std::string& requested, const std::string& current);
[[noreturn]] void ThrowDateTypeLacksField(const char* operation, const std::string& type);
[[noreturn]] void ThrowNoCalendarTime(const std::string& type);
[[noreturn]] void ThrowNoTimeZone();
[[noreturn]] void ThrowNullDuration();
[[noreturn]] void ThrowEmptyDuration();
[[noreturn]] void ThrowInvalidDurationForm(std::string_view text);
[[noreturn]] void ThrowDurationFractionTooLong(std::string_view text);

// Streams and compression
[[noreturn]] void ThrowFileNotWritten(const std::string& path);
[[noreturn]] void ThrowFlushFailed();
[[noreturn]] void ThrowUnknownEncoding();
[[noreturn]] void ThrowNotCompressed(int zlibCode);
[[noreturn]] void ThrowDocumentTooLarge(std::size_t limitInBytes);

// Fast Infoset input
/// @param octets  how many had been read when it failed.
[[noreturn]] void ThrowFastInfosetFailure(const CZuException& failure, std::size_t octets);
[[noreturn]] void ThrowFastInfosetEnd();
/// @param offset  of the octet, from 0 on.
[[noreturn]] void ThrowFastInfosetOctet(unsigned int octet, std::size_t offset);
/// @param table  its name in the standard, e.g. "LOCAL NAME".
[[noreturn]] void ThrowFastInfosetIndex(unsigned long index, const char* table);
/// @param format  what the string is not, e.g. "UTF-8".
[[noreturn]] void ThrowFastInfosetString(const char* format);
[[noreturn]] void ThrowFastInfosetCharacter();
/// @param what  e.g. "encoding algorithm".
[[noreturn]] void ThrowFastInfosetUnknown(const char* what, std::string_view which);
[[noreturn]] void ThrowFastInfosetAlgorithm(const CZuException& cause);
[[noreturn]] void ThrowFastInfosetName(std::string_view name);
[[noreturn]] void ThrowFastInfosetDeclaration(std::string_view prefix);
[[noreturn]] void ThrowFastInfosetDuplicate(std::string_view attribute);
[[noreturn]] void ThrowFastInfosetDepth(int limit);
[[noreturn]] void ThrowFastInfosetExpansion(std::size_t limitInBytes);
[[noreturn]] void ThrowFastInfosetWithoutRoot();
[[noreturn]] void ThrowFastInfosetDataAfterEnd();

// Big integers and decimals
/// @param operatorText  the operator as its message shows it: "/", "%", " /=" or "%=".
[[noreturn]] void ThrowDivisionByZero(const char* operatorText);
[[noreturn]] void ThrowNegativeSquareRoot();
/// @param type  "int" or "LONGLONG".
[[noreturn]] void ThrowOutOfBound(const char* type);
[[noreturn]] void ThrowNotFinite();
[[noreturn]] void ThrowNotADecimal(std::string_view text);
[[noreturn]] void ThrowDecimalTooLarge(std::string_view text);
/// @param type  "Double", "LONGLONG" or "LONG".
[[noreturn]] void ThrowDecimalOverflow(const char* type);

// Text conversions and variants
/// @param type  the item type's code, e.g. "i4".
[[noreturn]] void ThrowNotConvertible(std::string_view text, const char* type);
[[noreturn]] void ThrowTooLarge(std::string_view text, const char* type);
[[noreturn]] void ThrowNotOneChar(std::string_view text);
[[noreturn]] void ThrowInvalidBoolean(std::string_view text);
[[noreturn]] void ThrowInvalidItemType(int type);
[[noreturn]] void ThrowItemTypeWithoutText(int type);
[[noreturn]] void ThrowUnknownItemType();

// Fast Infoset
/// @param type  as the message shows it, e.g. "SHORT".
[[noreturn]] void ThrowInvalidEncodingLength(const char* type);
[[noreturn]] void ThrowUnknownEncodingAlgorithm();
[[noreturn]] void ThrowInvalidFastInfosetDeclaration(int declaration);
[[noreturn]] void ThrowSecondRootElement();
[[noreturn]] void ThrowInvalidInstruction(std::string_view text);
[[noreturn]] void ThrowFastInfosetTextTooLong();
[[noreturn]] void ThrowNoFastInfosetName(std::string_view name);

// Facets
/// @param name  of the element or attribute; null counts as "".
[[noreturn]] void ThrowInvalidFacetNumber(const char* name, const std::string& value);
[[noreturn]] void ThrowInvalidFacetValue(const char* name, std::string_view value);
/// @param cause  the full message of what went wrong in the check.
[[noreturn]] void ThrowFailedFacetCheck(const std::string& cause, const char* name,
                                        std::string_view value);
[[noreturn]] void ThrowUncheckedType(const std::string& type);
[[noreturn]] void ThrowInvalidRegularExpression(std::string_view value, const std::string& reason);

}  // namespace ZuXmlLib16
