#include "core/Errors.h"

#include <algorithm>
#include <limits>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/FormatString.h"
#include "core/Version.h"

namespace ZuXmlLib16 {
namespace {

std::string FastInfosetError(const std::string& text) {
  return "Failed to parse FastInfoset. " + text;
}

}  // namespace

void ThrowExclusiveIgnoreOptions(const char* optionSet, const char* optionWanted) {
  throw CZuInvalidStateException(FormatString(
      "The parser can only ignore additional elements, or ignore the fact that some required ones "
      "are missing, you can not ignore both\nSet %s to false before setting %s to true",
      optionSet, optionWanted));
}

void ThrowIndentCharsNotWhitespace() {
  throw CZuInvalidParamException(
      "IndentChars can only contain Whitespace characters, i.e. \t or spaces");
}

void ThrowPropertyIsNull(const char* name) {
  throw CZuInvalidParamException(
      FormatString("The Property [%s] is mandatory, it may node be NULL", name));  // sic
}

void ThrowIndexOutOfRange(int index, int count) {
  throw CZuInvalidParamException(
      FormatString("Index %d is out of range, use 0 - %d", index, count));
}

void ThrowIndexOutOfRange() {
  throw CZuInvalidParamException("Index out of range");
}

void ThrowWrongVersion(int generatorMajor, int generatorMinor) {
  throw CZuException(FormatString("Wrong Version (Velmar Runtime: v%d.%d, Generator: v%d.%d)",
                                  kRuntimeMajor, kRuntimeMinor, generatorMajor, generatorMinor));
}

void ThrowZlibOnlyForStreams() {
  throw CZuException("ZLIB Compression only available for To Stream methods.");
}

void ThrowChoiceAlreadySet(const std::string& selected, bool isBracketed) {
  const char* const format =
      isBracketed ? "The Property [%s] is already set. Only one element within this class bay be "
                    "set at a time"  // sic
                  : "The Property %s is already set. Only one element within this class bay be "
                    "set at a time";  // sic
  throw CZuInvalidStateException(FormatString(format, selected.c_str()));
}

void ThrowElementNameDiffers(const std::string& expected, const std::string& actual) {
  throw CZuInvalidParamException(
      FormatString("This property requires an element with the name %s the element being set has "
                   "the element name %s",
                   expected.c_str(), actual.c_str()));
}

void ThrowNestedTooDeeply(const std::string& name, int limit, const std::string& path) {
  throw CZuValidationException(
      FormatString("The element [%s] is nested too deeply, the limit is %d.", name.c_str(), limit),
      path);
}

void ThrowInvalidElement(const std::string& name, const std::string& path) {
  throw CZuValidationException(FormatString("Invalid Element [%s] found.", name.c_str()), path);
}

void ThrowInappropriateAttribute(const std::string& name, const std::string& path) {
  throw CZuInvalidNamespaceException(
      FormatString("Invalid Attribute [%s]. The attributes namespace is Inappropriate.",
                   name.c_str()),
      path);
}

void ThrowInvalidNamespace(const std::string& namespaceUri, const std::string& restriction,
                           const std::string& targetNamespace) {
  throw CZuInvalidNamespaceException(
      FormatString("Invalid namespace [%s]. The namespace must be one of [%s] where the target "
                   "namespace is [%s].",
                   namespaceUri.c_str(), restriction.c_str(), targetNamespace.c_str()));
}

void ThrowUnusableNamespace(const std::string& namespaceUri) {
  throw CZuInvalidNamespaceException(FormatString("Invalid Namespace [%s].", namespaceUri.c_str()));
}

void ThrowNamespaceOutsideRestriction(const std::string& namespaceUri, const std::string& name,
                                      const std::string& restriction) {
  throw CZuException(
      FormatString("The namespace %s in the class %s is invalid against restriction %s",
                   namespaceUri.c_str(), name.c_str(), restriction.c_str()));
}

void ThrowMustHaveValue(const char* what) {
  throw CZuInvalidNamespaceException(FormatString("%s must have a value", what));
}

void ThrowReadByCollection() {
  throw CZuException("This should be done by the collection");
}

void ThrowUnknownAlias(const std::string& alias) {
  throw CZuException(FormatString("Namespace alias [%s] not found", alias.c_str()));
}

void ThrowProcessingFailed(const std::string& path, const CZuException& cause) {
  throw CZuValidationException("Failed to process the element.", path, cause);
}

void ThrowConversionFailed(const std::string& name, const CZuException& cause) {
  throw CZuValidationException(
      FormatString("Failed to convert the element [%s] to XML", name.c_str()), cause);
}

void ThrowAttributesFailed(const CZuException& cause) {
  throw CZuException("Failed to convert attributes to XML", cause);
}

void ThrowUnexpectedElement(const std::string& parentName, const std::string& name,
                            const std::string& path) {
  throw CZuValidationException(
      FormatString("Failed read all the elements held within the element [%s]. The unexpected "
                   "element [%s] remains un processed",  // sic
                   parentName.c_str(), name.c_str()),
      path);
}

void ThrowNoChoiceFound(const std::string& name, const std::string& path) {
  throw CZuValidationException(
      FormatString("No child elements within the element [%s] were populated. The element "
                   "represents a choice, so one and only one element should be populated. The "
                   "element contained no sutable child elements",  // sic
                   name.c_str()),
      path);
}

void ThrowNoChoiceSet() {
  throw CZuValidationException(
      "This element is a choice, and as such must have at one (and only one) valid item, currently "
      "there are none set");  // sic
}

void ThrowUnknownGroupType() {
  throw CZuException("Unknown Group Type");
}

void ThrowUnknownXmlGroupType() {
  throw CZuException("Unknown XML Group Type");
}

void ThrowNilNotAllowed(const std::string& path) {
  throw CZuValidationException("Invalid use of 'nil' attribute in non-nillable element.", path);
}

void ThrowUnexpectedNilValue(const std::string& value, const std::string& path) {
  throw CZuValidationException(
      FormatString("Unexpected Value [%s] for 'nil' Attribute found.", value.c_str()), path);
}

void ThrowUnexpectedAttribute(const std::string& path) {
  throw CZuValidationException("Unexpected Attribute found.", path);
}

void ThrowMandatoryPropertyIsNull(const std::string& name) {
  throw CZuInvalidParamException(
      FormatString("The Property [%s] is mandatory, it may not be NULL", name.c_str()));
}

void ThrowGetPropertyFailed(const std::string& name, const CZuException& cause) {
  throw CZuValidationException(
      FormatString("Failed to get the property value for [%s].", name.c_str()), cause);
}

void ThrowSetElementFailed(const std::string& path, const CZuException& cause) {
  throw CZuValidationException("Failed to set the property value.", path, cause);
}

void ThrowSetAttributeFailed(const std::string& value, const std::string& path,
                             const CZuException& cause) {
  throw CZuValidationException(
      FormatString("Failed to set the property value [%s].", value.c_str()), path, cause);
}

void ThrowMissingChild(const std::string& name, const std::string& path) {
  throw CZuValidationException(
      FormatString("Failed to find the required child element [%s].", name.c_str()), path);
}

void ThrowMissingElement(const std::string& name) {
  throw CZuValidationException(
      FormatString("Failed to find the mandatory element [%s].", name.c_str()));
}

void ThrowMissingAttribute(const std::string& name) {
  throw CZuValidationException(
      FormatString("Failed to find the required Attribute [%s].", name.c_str()));
}

void ThrowMissingSubstitution(const std::string& name, const std::string& path) {
  throw CZuValidationException(
      FormatString("Failed to find a suitable substitution element for [%s].", name.c_str()), path);
}

void ThrowMissingFromNamespace(const std::string& restriction, const std::string& path) {
  throw CZuValidationException(
      FormatString("Failed to find the required element from namespace [%s].", restriction.c_str()),
      path);
}

void ThrowValidateNotImplemented() {
  throw CZuException("Not implemented, should never be called");
}

void ThrowCannotCheckRestriction(const std::string& type) {
  throw CZuException("Cannot CheckRestriction for type: " + type);
}

void ThrowNoAttributeCollection() {
  throw CZuException(
      "Serialization Data Error : The collection should be a CAttributeCol, it was not!");
}

void ThrowTooManyItems(const std::string& name, int maximum) {
  throw CZuValidationException(
      FormatString("The Maximum number of [%s] elements allowed in this collection is %d",
                   name.c_str(), maximum));
}

void ThrowTooFewItems(const std::string& name, int minimum) {
  throw CZuValidationException(
      FormatString("The Minimum number of [%s] elements allowed in this collection is %d",
                   name.c_str(), minimum));
}

void ThrowItemNotFound() {
  throw CZuInvalidParamException("The object was not found in the collection");
}

void ThrowWrongItemKind() {
  throw CZuInvalidParamException("The object is of the wrong kind for the collection");
}

void ThrowCollectionHasNoTargetNamespace() {
  throw CZuException(
      "CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection (program "
      "logic error)");
}

void ThrowCollectionHasNoNamespace() {
  throw CZuInvalidStateException("A Namespace has not been set for this Collection");
}

void ThrowWrongDateType(const std::string& type) {
  throw CZuInvalidParamException(
      FormatString("Dates added to this collection must be of type dt_%s", type.c_str()));
}

void ThrowJsonStringEmpty() {
  throw CZuException("JSON String is empty!");
}

void ThrowJsonStreamEmpty() {
  throw CZuException("JSON Stream is empty!");
}

void ThrowJsonDepthLimit(const JsonPlace& place, const std::string& path) {
  throw CZuValidationException(FormatString("JSON exceeded depth limit at line %d, position %d.",
                                            place.line, place.position),
                               path);
}

void ThrowJsonEnd(const char* expected, const JsonPlace& place, const std::string& path) {
  throw CZuValidationException(
      FormatString("Unexpected End of File. Expected %s at line %d, position %d.", expected,
                   place.line, place.position),
      path);
}

void ThrowJsonCharacter(const char* expected, char found, const JsonPlace& place,
                        const std::string& path) {
  throw CZuValidationException(FormatString("Expected %s, found '%c' at line %d, position %d.",
                                            expected, found, place.line, place.position),
                               path);
}

void ThrowJsonEscape(char character, const JsonPlace& place, const std::string& path) {
  throw CZuValidationException(
      FormatString("Invalid Escape Character '%c' at line %d, position %d.", character, place.line,
                   place.position),
      path);
}

void ThrowJsonLiteral(const char* name, const JsonPlace& place, const std::string& path) {
  throw CZuValidationException(
      FormatString("Expected '%s' at line %d, position %d.", name, place.line, place.position),
      path);
}

void ThrowJsonNameEmpty(const std::string& path) {
  throw CZuValidationException("JSON item has an empty Name.", path);
}

void ThrowJsonArrayWithoutName(const std::string& path) {
  throw CZuValidationException("JSON Array has no Name.", path);
}

[[noreturn]] static void ThrowJsonConversion(const std::string& reason, const std::string& path) {
  throw CZuValidationException("Error converting JSON to XML:\n" + reason, path);
}

void ThrowJsonRootMissing(const std::string& path) {
  ThrowJsonConversion("The document has no root element.", path);
}

void ThrowJsonSecondRoot(const std::string& path) {
  ThrowJsonConversion("The document has more than one root element.", path);
}

void ThrowJsonMemberOutsideRoot(const std::string& name, const std::string& path) {
  ThrowJsonConversion("The member [" + name + "] must be inside the root element.", path);
}

void ThrowJsonMemberHolds(const std::string& name, const char* what, const std::string& path) {
  ThrowJsonConversion("The member [" + name + "] can not hold " + what + '.', path);
}

void ThrowJsonPrefixUndeclared(const std::string& prefix, const std::string& path) {
  ThrowJsonConversion("The prefix [" + prefix + "] is not declared.", path);
}

void ThrowJsonPrefixUnusable(const std::string& prefix, const std::string& namespaceUri,
                             const std::string& path) {
  ThrowJsonConversion(
      "The prefix [" + prefix + "] can not stand for the namespace [" + namespaceUri + "].", path);
}

void ThrowXmlStringEmpty() {
  throw CZuException("XML String is empty!");
}

void ThrowXmlStreamEmpty() {
  throw CZuException("XML Stream is empty!");
}

void ThrowFileOpenFailed(const std::string& path) {
  throw CZuException(FormatString("Failed to open the file [%s].", path.c_str()));
}

void ThrowFileSizeFailed(const std::string& path, int error) {
  throw CZuException(
      FormatString("Failed to get the size of the file [%s] Error [%n]", path.c_str(), error));
}

void ThrowFileReadFailed(const std::string& path, int error) {
  throw CZuException(
      FormatString("Failed to read the contents of the file [%s] Error [%n]", path.c_str(), error));
}

void ThrowParseError(const char* text, int line) {
  throw CZuException(FormatString("%s at line %d", text, line));
}

void ThrowDamagedInput(const std::string& parseError, const std::string& cause) {
  throw CZuException(parseError, CZuException("The compressed data is damaged: " + cause));
}

void ThrowElementNotClosed() {
  throw CZuException("An Element has not been closed.");
}

void ThrowAttributeAfterContent() {
  throw CZuException("Attributes must be added before elements");
}

void ThrowDirectiveAfterElement() {
  throw CZuException("Headed directives must appear before an Element has been added.");  // sic
}

void ThrowInvalidEolType() {
  throw CZuException("Invalid EOL type.");
}

void ThrowUnknownNamespace(const std::string& name) {
  throw CZuException(FormatString("Unknown Namespace: %s.", name.c_str()));
}

void ThrowUnknownWhitespaceRule() {
  throw CZuException("Unknown WhitespaceRule");
}

void ThrowSharedAppend(std::int64_t refCount) {
  throw CZuException(FormatString("Failed to append. [RefCount=%ld]", refCount));
}

void ThrowSharedRelease(std::int64_t refCount) {
  throw CZuException(FormatString("Failed to release data. [RefCount=%ld]", refCount));
}

void ThrowByteIndexOutOfRange(unsigned long index) {
  constexpr unsigned long kLargestShown = std::numeric_limits<int>::max();
  throw CZuException(
      FormatString("Index Out of range [%d]", static_cast<int>(std::min(index, kLargestShown))));
}

void ThrowOddHexLength() {
  throw CZuException("Invalid length in hex string");
}

void ThrowInvalidHexCharacter(char character) {
  throw CZuException(FormatString("Invalid char in hex string [%c]", character));
}

void ThrowInvalidDate(const char* reason) {
  throw CZuInvalidValueException(FormatString("Invalid Date (%s)", reason));
}

// The texts of dates and durations come from documents and may hold NUL: no formatter.
[[noreturn]] static void ThrowInvalidText(const char* before, std::string_view text,
                                          const char* after) {
  throw CZuInvalidValueException(before + std::string(text) + after);
}

void ThrowInvalidDateForm(std::string_view text) {
  ThrowInvalidText("Invalid XSD Date [", text, "] expected CCYY-MM-DD[Z|[+|-]hh:mm]");
}

void ThrowNullTime() {
  throw CZuInvalidValueException("Invalid Time (Null String)");
}

void ThrowEmptyTime() {
  throw CZuInvalidValueException("Invalid XSD Time (Empty String)");
}

void ThrowInvalidTimeForm(std::string_view text) {
  ThrowInvalidText("Invalid XSD Time [", text, "] expected hh:mm:ss[.ff]");
}

void ThrowTimeFractionTooLong(std::string_view text) {
  ThrowInvalidText("Invalid XSD Time [", text, "] Fraction part too long");
}

void ThrowNullDateTime() {
  throw CZuInvalidValueException("Invalid DateTime (Null String)");
}

void ThrowDateTimeWithoutTime(std::string_view text) {
  ThrowInvalidText("Invalid XSD DateTime [", text, "].");
}

void ThrowInvalidDateTimeForm(std::string_view text) {
  ThrowInvalidText("Invalid XSD DateTime [", text, "] expected CCYY-MM-DDThh:mm:ss[.ff]");
}

void ThrowInvalidTimeZoneForm(std::string_view text) {
  ThrowInvalidText("Invalid XSD Time Zone [", text, "].");
}

void ThrowInvalidTimeZone(int hour, int minute) {
  throw CZuInvalidValueException(FormatString("Invalid TimeZone [%d:%d]", hour, minute));
}

void ThrowInvalidMonth(int month) {
  throw CZuInvalidValueException(FormatString("Invalid Month [%d] (1 <= month <= 12)", month));
}

void ThrowInvalidYear(long long year) {
  throw CZuInvalidValueException(
      FormatString("Invalid Year [%lld] (-9999 <= year <= 9999 && year != 0)", year));
}

void ThrowInvalidDayOfDate(int day) {
  // sic: no closing parenthesis
  throw CZuInvalidValueException(FormatString("Invalid Day [%d] (1 <= day <= days in month", day));
}

void ThrowInvalidDayOfMonth(int day) {
  throw CZuInvalidValueException(FormatString("Invalid Day [%d] (1 <= day <= days in month)", day));
}

void ThrowInvalidDay(int day) {
  throw CZuInvalidValueException(FormatString("Invalid Day [%d] (1 <= day <= 31)", day));
}

void ThrowInvalidTimePart(const char* name, int value, const char* variable, int max) {
  throw CZuInvalidValueException(
      FormatString("Invalid %s [%d] (0 <= %s <= %d)", name, value, variable, max));
}

void ThrowDateFieldNotAllowed(const char* name, int value, const std::string& type) {
  throw CZuInvalidValueException(
      FormatString("Invalid %s [%d] for type %s", name, value, type.c_str()));
}

void ThrowDateConversion(const std::string& target, const std::string& source) {
  // sic: "an XmlDateTime", "contian"
  throw CZuInvalidValueException(
      FormatString("Attempting to set a CDateTime of type %s using an XmlDateTime of type %s. The "
                   "source CDateTime does not contian enough data to allow the conversion.",
                   target.c_str(), source.c_str()));
}

void ThrowUnknownDateType(int type) {
  throw CZuInvalidValueException(FormatString("Unknown date type %d.", type));
}

void ThrowDateTypeConflict(const std::string& requested, const std::string& current) {
  throw CZuInvalidStateException(
      FormatString("Failed to copy CDateTime. Invalid Date Type: %s, expected: %s.",
                   requested.c_str(), current.c_str()));
}

void ThrowDateTypeLacksField(const char* operation, const std::string& type) {
  throw CZuInvalidStateException(
      FormatString("Failed to %s. Invalid Date Type: %s.", operation, type.c_str()));
}

void ThrowNoCalendarTime(const std::string& type) {
  throw CZuInvalidStateException(FormatString(
      "Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: %s.",
      type.c_str()));
}

void ThrowNoTimeZone() {
  throw CZuInvalidStateException("TimeZone is not been used");  // sic
}

void ThrowNullDuration() {
  throw CZuInvalidValueException("Invalid XSD Duration (Null String)");
}

void ThrowEmptyDuration() {
  throw CZuInvalidValueException("Invalid XSD Duration (Empty String)");
}

void ThrowInvalidDurationForm(std::string_view text) {
  ThrowInvalidText("Invalid XSD Duration [", text, "] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]");
}

void ThrowDurationFractionTooLong(std::string_view text) {
  ThrowInvalidText("Invalid XSD Duration [", text, "] Fraction part too long");
}

void ThrowFileNotWritten(const std::string& path) {
  throw CZuException(FormatString("Failed to write data to the file [%s].", path.c_str()));
}

void ThrowFlushFailed() {
  throw CZuException("Failed to write data to the file");
}

void ThrowUnknownEncoding() {
  throw CZuException("Unknown Encoding, select UTF-8 (contact our support team)");
}

void ThrowNotCompressed(int zlibCode) {
  throw CZuException(FormatString("Failed to compress data. [Error Code: %d]", zlibCode));
}

void ThrowDocumentTooLarge(std::size_t limitInBytes) {
  throw CZuException(FormatString("The document is larger than the limit of %s bytes.",
                                  std::to_string(limitInBytes).c_str()));
}

void ThrowFastInfosetFailure(const CZuException& failure, std::size_t octets) {
  const std::string place = FormatString("octet %zu", octets);
  if (failure.GetInnerException() == nullptr) throw CZuException(failure.GetMessage(), place);
  throw CZuException(failure.GetMessage(), place, *failure.GetInnerException());
}

void ThrowFastInfosetEnd() {
  throw CZuException(FastInfosetError("Unexpected end of the document."));
}

void ThrowFastInfosetOctet(unsigned int octet, std::size_t offset) {
  throw CZuException(
      FastInfosetError(FormatString("Invalid octet [0x%02X] at offset %zu.", octet, offset)));
}

void ThrowFastInfosetIndex(unsigned long index, const char* table) {
  throw CZuException(
      FastInfosetError(FormatString("Invalid index [%lu] for the %s table.", index, table)));
}

void ThrowFastInfosetString(const char* format) {
  throw CZuException(FastInfosetError(FormatString("Invalid %s string.", format)));
}

void ThrowFastInfosetCharacter() {
  throw CZuException(FastInfosetError("Invalid character."));
}

void ThrowFastInfosetUnknown(const char* what, std::string_view which) {
  throw CZuException(FastInfosetError(FormatString("Unknown %s [", what)) + std::string(which) +
                     "].");
}

void ThrowFastInfosetAlgorithm(const CZuException& cause) {
  throw CZuException(FastInfosetError(cause.GetMessage()), cause);
}

void ThrowFastInfosetName(std::string_view name) {
  throw CZuException(FastInfosetError("Invalid name [" + std::string(name) + "]."));
}

void ThrowFastInfosetDeclaration(std::string_view prefix) {
  throw CZuException(
      FastInfosetError("Invalid declaration of the prefix [" + std::string(prefix) + "]."));
}

void ThrowFastInfosetDuplicate(std::string_view attribute) {
  throw CZuException(FastInfosetError("Duplicate attribute [" + std::string(attribute) + "]."));
}

void ThrowFastInfosetDepth(int limit) {
  throw CZuException(FastInfosetError(FormatString("The nesting depth exceeds %d.", limit)));
}

void ThrowFastInfosetExpansion(std::size_t limitInBytes) {
  throw CZuException(
      FastInfosetError(FormatString("The document expands to more than %zu bytes.", limitInBytes)));
}

void ThrowFastInfosetWithoutRoot() {
  throw CZuException(FastInfosetError("The document has no document element."));
}

void ThrowFastInfosetDataAfterEnd() {
  throw CZuException(FastInfosetError("Data after the end of the document."));
}

void ThrowDivisionByZero(const char* operatorText) {
  // sic: only the message of "/=" has a space before the operator
  throw CZuInvalidValueException(std::string("ERROR: Overflow in operator") + operatorText + '.');
}

void ThrowNegativeSquareRoot() {
  throw CZuInvalidValueException("ERROR: Negative Number in function SquareRoot().");
}

void ThrowOutOfBound(const char* type) {
  throw CZuInvalidValueException(std::string("ERROR: Value out of bound of ") + type + '.');
}

void ThrowNotFinite() {
  throw CZuInvalidValueException("ERROR: Value is not a finite number.");
}

// These texts come from documents and may hold NUL: no formatter.
void ThrowNotADecimal(std::string_view text) {
  throw CZuInvalidValueException("The value [" + std::string(text) +
                                 "] can not be converted to a decimal");
}

void ThrowDecimalTooLarge(std::string_view text) {
  throw CZuInvalidValueException("The value [" + std::string(text) +
                                 "] is to large to fit in a decimal");  // sic
}

void ThrowDecimalOverflow(const char* type) {
  // sic: "if to"
  throw CZuOverFlowException(std::string("The Decimal value if to large to fit into a ") + type);
}

// As above: no formatter for texts that may hold NUL.
void ThrowNotConvertible(std::string_view text, const char* type) {
  throw CZuInvalidValueException("The value [" + std::string(text) +
                                 "] can not be converted to a " + type);
}

void ThrowTooLarge(std::string_view text, const char* type) {
  throw CZuInvalidValueException("The value [" + std::string(text) + "] is to large to fit in a " +
                                 type);  // sic
}

void ThrowNotOneChar(std::string_view text) {
  // sic: "empty of greater"
  throw CZuInvalidValueException(
      "The value [" + std::string(text) +
      "] can not be a char as it is either empty of greater than 1 char long");
}

void ThrowInvalidBoolean(std::string_view text) {
  throw CZuInvalidValueException("A Boolean Value read from an XML document was invalid [" +
                                 std::string(text) +
                                 "]. Valid values are 'true', 'false', '1', or '0'");
}

void ThrowInvalidItemType(int type) {
  throw CZuException(FormatString("Invalid Type %d", type));
}

void ThrowItemTypeWithoutText(int type) {
  throw CZuException(FormatString("Invalid Type %d to convert to string", type));
}

void ThrowUnknownItemType() {
  throw CZuException("Unknown Type");
}

void ThrowInvalidEncodingLength(const char* type) {
  throw CZuException(FormatString("Invalid value for %s byte encoding.", type));
}

void ThrowUnknownEncodingAlgorithm() {
  throw CZuException("Unknown byte encoding.");
}

void ThrowInvalidFastInfosetDeclaration(int declaration) {
  throw CZuException(FormatString("Invalid Fast Infoset declaration [%d].", declaration));
}

void ThrowSecondRootElement() {
  throw CZuException("A document has only one root element.");
}

void ThrowInvalidInstruction(std::string_view text) {
  throw CZuException(
      FormatString("Invalid processing instruction [%s].", std::string(text).c_str()));
}

void ThrowFastInfosetTextTooLong() {
  throw CZuException("The text is too long for Fast Infoset.");
}

void ThrowNoFastInfosetName(std::string_view name) {
  throw CZuException("The name [" + std::string(name) + "] cannot be written as Fast Infoset.");
}

void ThrowInvalidFacetNumber(const char* name, const std::string& value) {
  throw CZuException(FormatString("Invalid Value for %s [", name != nullptr ? name : "") + value +
                     ']');
}

void ThrowInvalidFacetValue(const char* name, std::string_view value) {
  throw CZuException(FormatString("Invalid Value for %s [", name != nullptr ? name : "") +
                     std::string(value) + "].");
}

void ThrowFailedFacetCheck(const std::string& cause, const char* name, std::string_view value) {
  throw CZuException(cause + FormatString("\nInvalid Value for %s [", name != nullptr ? name : "") +
                     std::string(value) + "].");
}

void ThrowUncheckedType(const std::string& type) {
  throw CZuException("Unknown type [" + type + ']');
}

void ThrowInvalidRegularExpression(std::string_view value, const std::string& reason) {
  throw CZuException("Invalid Regular Expression: " + std::string(value) + " Error: '" + reason +
                     '\'');
}

}  // namespace ZuXmlLib16
