#pragma once

#include <cstdint>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Settings of Fast Infoset output and input (ITU-T Rec. X.891).
class ZUXMLLIB16_API CFastInfosetContext {
 public:
  /// Which values go out with a built-in encoding algorithm.
  enum class TypedValueMode : std::int32_t {
    Text = 0,    ///< none, all values are text
    Binary = 1,  ///< hexBinary and base64Binary
    All = 2,     ///< every type with an algorithm of its own
  };

  /// Whether attribute values of up to MaxAttributeValueLength octets are written once and then by
  /// index.
  bool GetIndexAttributeValues() const { return m_indexAttributeValues; }
  void SetIndexAttributeValues(bool index) { m_indexAttributeValues = index; }
  unsigned long GetMaxAttributeValueLength() const { return m_maxAttributeValueLength; }
  void SetMaxAttributeValueLength(unsigned long octets) { m_maxAttributeValueLength = octets; }

  /// The same for texts of up to MaxElementValueLength octets.
  bool GetIndexElementValues() const { return m_indexElementValues; }
  void SetIndexElementValues(bool index) { m_indexElementValues = index; }
  unsigned long GetMaxElementValueLength() const { return m_maxElementValueLength; }
  void SetMaxElementValueLength(unsigned long octets) { m_maxElementValueLength = octets; }

  TypedValueMode GetTypedValues() const { return m_typedValues; }
  void SetTypedValues(TypedValueMode mode) { m_typedValues = mode; }

  /// Whether a "<![CDATA[" ... "]]>" wrapper is written as a CDATA section; otherwise its content
  /// is text.
  bool GetCDataSections() const { return m_cdataSections; }
  void SetCDataSections(bool keep) { m_cdataSections = keep; }

  /// Deepest nesting of elements that the reader takes.
  int GetMaxDepth() const { return m_maxDepth; }
  void SetMaxDepth(int depth) { m_maxDepth = depth; }

 private:
  bool m_indexAttributeValues = true;
  unsigned long m_maxAttributeValueLength = 32;
  bool m_indexElementValues = true;
  unsigned long m_maxElementValueLength = 32;
  TypedValueMode m_typedValues = TypedValueMode::Binary;
  bool m_cdataSections = false;
  int m_maxDepth = 10000;
};

}  // namespace ZuXmlLib16
