#pragma once

#include <string>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// The octets that a Fast Infoset document holds in place of a text, made by one of the encoding
/// algorithms that the standard builds in (ITU-T Rec. X.891, clause 10): 1 hexadecimal, 2 base64,
/// 3 short, 4 int, 5 long, 6 boolean, 7 float, 8 double, 9 uuid, 10 cdata. Numbers are big-endian.
class ZUXMLLIB16_API CFastInfosetBinaryData : public CBinaryData {
 public:
  using CBinaryData::CBinaryData;
  CFastInfosetBinaryData() = default;
  CFastInfosetBinaryData(const CBinaryData& data) : CBinaryData(data) {}

  /// The text of the octets; lists of values have one blank between them, a uuid 32 digits without
  /// hyphens. No octets give "" under every algorithm, known or not.
  /// @throws CZuException  "Invalid value for INT byte encoding." and its siblings when the length
  ///                       does not fit; "Unknown byte encoding.", also for 10, whose octets are
  ///                       the text in UTF-8.
  std::string GetAsString(unsigned long algorithm) const;
  /// Takes the octets of one value, not of a list; null counts as "".
  /// @param text  under 9 hexadecimal digits, and nothing else; under 10 any text in the local
  ///              character set.
  /// @throws CZuException  what the conversion of the type throws; CZuInvalidValueException under 4
  ///                       for a value beyond 32 bits; "Unknown byte encoding.". There are no
  ///                       octets then.
  void SetAsEncodedString(unsigned long algorithm, const char* text);
};

}  // namespace ZuXmlLib16
