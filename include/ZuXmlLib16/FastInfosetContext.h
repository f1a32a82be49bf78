#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/FIVocabulary.h"
#include "ZuXmlLib16/TextRef.h"

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

  /// How many different attribute values, and as many texts, the writer puts into the tables of a
  /// document; what comes later is written in full unless it is in there. 65536 by default, of
  /// which the tables need at most 6 MB each while values have up to 32 octets; more make large
  /// documents hardly smaller and slower to write. At most 1048576 count.
  unsigned long GetMaxIndexedValues() const { return m_maxIndexedValues; }
  void SetMaxIndexedValues(unsigned long count) { m_maxIndexedValues = count; }

  TypedValueMode GetTypedValues() const { return m_typedValues; }
  void SetTypedValues(TypedValueMode mode) { m_typedValues = mode; }

  /// Whether a "<![CDATA[" ... "]]>" wrapper is written as a CDATA section; otherwise its content
  /// is text.
  bool GetCDataSections() const { return m_cdataSections; }
  void SetCDataSections(bool keep) { m_cdataSections = keep; }

  /// Deepest nesting of elements that the reader takes.
  int GetMaxDepth() const { return m_maxDepth; }
  void SetMaxDepth(int depth) { m_maxDepth = depth; }

  /// What the tables of a document hold at its start; every document works on a copy. Whoever adds
  /// to it must add the same to the context that the document is read with.
  const CFIVocabulary& GetVocabulary() const { return m_vocabulary; }
  CFIVocabulary& GetVocabulary() { return m_vocabulary; }

  /// Names the vocabulary of this context, so that documents say that they need it: they then carry
  /// the URI, and documents without one are read without the vocabulary. "", the default, for none.
  const std::string& GetExternalVocabularyURI() const { return m_externalVocabularyUri; }
  void SetExternalVocabularyURI(const char* uri) { m_externalVocabularyUri = CTextRef(uri); }

  /// Characters that the names, values and texts of a document may have together when it is read,
  /// as a multiple of its octets: what is written once may be used by index any number of times. 64
  /// MiB are always allowed, unless CSerializationContext::GetMaxDocumentSize is less.
  unsigned long GetMaxExpansion() const { return m_maxExpansion; }
  void SetMaxExpansion(unsigned long factor) { m_maxExpansion = factor; }

 private:
  bool m_indexAttributeValues = true;
  unsigned long m_maxAttributeValueLength = 32;
  bool m_indexElementValues = true;
  unsigned long m_maxElementValueLength = 32;
  unsigned long m_maxIndexedValues = 65536;
  TypedValueMode m_typedValues = TypedValueMode::Binary;
  bool m_cdataSections = false;
  int m_maxDepth = 10000;
  CFIVocabulary m_vocabulary;
  std::string m_externalVocabularyUri;
  unsigned long m_maxExpansion = 256;
};

}  // namespace ZuXmlLib16
