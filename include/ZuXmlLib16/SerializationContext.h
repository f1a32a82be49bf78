#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/NamespaceAliasMap.h"
#include "ZuXmlLib16/SmartPtr.h"

namespace ZuXmlLib16 {

class CAttributeCol;
class CFastInfosetContext;
class CJsonContext;

/// Kind of schema that the generated classes came from.
enum class SchemaType : std::int32_t {
  Xsd = 0,
  Other = 1,
  NoNamespaces = 2,  ///< no namespaces: names are read with their prefix and match on it
};

/// The options of one or more serialisation calls: a plain value that callers build, adjust and
/// pass by reference. A call never changes it. Not locked: one thread at a time changes a context,
/// any number use it.
class ZUXMLLIB16_API CSerializationContext {
 public:
  /// The options of callers that have none of their own; made when the library is loaded.
  static CSerializationContext m_defaultContext;

  CSerializationContext();
  /// Copies every option; the Fast Infoset and JSON settings and the additional root attributes are
  /// shared with the source once they exist.
  CSerializationContext(const CSerializationContext& other);
  CSerializationContext& operator=(const CSerializationContext& other);
  virtual ~CSerializationContext();

  /// Settings of Fast Infoset, made on first use; owned by the context.
  CFastInfosetContext& GetFIContext() const;
  /// Settings of JSON, made on first use; owned by the context.
  CJsonContext& GetJsonContext() const;

  /// Namespace that the root element declares as the default one; "" for none.
  const std::string& GetDefaultNamespaceURI() const { return m_defaultNamespaceUri; }
  void SetDefaultNamespaceURI(const char* namespaceUri);

  /// Whether derived types are written with their xsi:type; true by default.
  bool GetWriteTypeAttribute() const { return m_writeTypeAttribute; }
  void SetWriteTypeAttribute(bool write) { m_writeTypeAttribute = write; }

  /// Prefixes declared on the root element.
  const CNamespaceAliasMap& GetNamespaceAliases() const { return m_namespaceAliases; }
  CNamespaceAliasMap& GetNamespaceAliases() { return m_namespaceAliases; }

  /// Extra attributes of the root element, of any namespace; made on first use.
  CSmartPtr<CAttributeCol> GetAdditionalRootAttributes() const;
  /// The same, but null when nobody has asked for them yet.
  const CAttributeCol* FindAdditionalRootAttributes() const;

  /// Complete processing instructions ("<?name data?>"), written before the root element.
  const std::vector<std::string>& GetProcessingInstructions() const { return m_instructions; }
  std::vector<std::string>& GetProcessingInstructions() { return m_instructions; }

  /// Schema text written inside the root element; "" for none.
  const std::string& GetInLineSchema() const { return m_inLineSchema; }
  void SetInLineSchema(const char* schema);

  /// Collections are written and read without checking minOccurs and maxOccurs.
  bool GetIgnoreInvalidCollectionCounts() const { return m_ignoreInvalidCollectionCounts; }
  void SetIgnoreInvalidCollectionCounts(bool ignore) { m_ignoreInvalidCollectionCounts = ignore; }

  /// A choice without a selected member is accepted.
  bool GetIgnoreMissingChoice() const { return m_ignoreMissingChoice; }
  void SetIgnoreMissingChoice(bool ignore) { m_ignoreMissingChoice = ignore; }

  /// A missing mandatory element of a sequence is accepted on reading.
  bool GetIgnoreMissingMandatoryElements() const { return m_ignoreMissingMandatoryElements; }
  /// @throws CZuInvalidStateException  true while IgnoreUnknownElements is set; nothing changes
  /// then.
  void SetIgnoreMissingMandatoryElements(bool ignore);

  /// Elements that match nothing are skipped on reading.
  bool GetIgnoreUnknownElements() const { return m_ignoreUnknownElements; }
  /// @throws CZuInvalidStateException  true while IgnoreMissingMandatoryElements is set; nothing
  /// changes then.
  void SetIgnoreUnknownElements(bool ignore);

  /// Attributes that match nothing are skipped on reading.
  bool GetIgnoreUnknownAttributes() const { return m_ignoreUnknownAttributes; }
  void SetIgnoreUnknownAttributes(bool ignore) { m_ignoreUnknownAttributes = ignore; }

  /// Whether names match on their local part alone: the option itself or SchemaType::NoNamespaces.
  bool GetIgnoreNamespaces() const {
    return m_ignoreNamespaces || m_schemaType == SchemaType::NoNamespaces;
  }
  void SetIgnoreNamespaces(bool ignore) { m_ignoreNamespaces = ignore; }

  SchemaType GetSchemaType() const { return m_schemaType; }
  void SetSchemaType(SchemaType type) { m_schemaType = type; }

  /// Optional attributes that hold their default value are not written.
  bool GetNoOptionalAttributeDefaultOutput() const { return m_noOptionalAttributeDefaultOutput; }
  void SetNoOptionalAttributeDefaultOutput(bool omit) { m_noOptionalAttributeDefaultOutput = omit; }

  /// Elements that hold their default value are written with it.
  bool GetWriteDefaultElementValues() const { return m_writeDefaultElementValues; }
  void SetWriteDefaultElementValues(bool write) { m_writeDefaultElementValues = write; }

  /// CDATA sections are read as plain text (the default); otherwise the text keeps their markup.
  bool GetStripCDATA() const { return m_stripCData; }
  void SetStripCDATA(bool strip) { m_stripCData = strip; }

  /// One level of indentation of pretty-printed output; one tab by default.
  const std::string& GetIndentChars() const { return m_indentChars; }
  /// @param chars  tabs and blanks only; null counts as "".
  /// @throws CZuInvalidParamException  for any other character; the old text stays.
  void SetIndentChars(const char* chars);

  /// Deepest nesting of objects that reading accepts; 1000 by default. Reading needs machine stack
  /// for every level (about a quarter of a kilobyte for untyped content, one for typed objects), so
  /// raise it only where the stack allows, and lower it in threads with a stack of less than 1.5
  /// MB. A limit below 1 refuses every document.
  int GetMaxDepth() const { return m_maxDepth; }
  void SetMaxDepth(int depth) { m_maxDepth = depth; }

  /// Largest document in bytes that is read, before and after inflating; 2147483647 by default, 0
  /// for no limit.
  unsigned long GetMaxDocumentSize() const { return m_maxDocumentSize; }
  void SetMaxDocumentSize(unsigned long sizeInBytes) { m_maxDocumentSize = sizeInBytes; }

 private:
  /// What the const getters make on first use. Guarded, since all threads share the default
  /// context.
  struct LazyParts {
    LazyParts();
    LazyParts(const LazyParts& other);
    LazyParts& operator=(const LazyParts& other);
    ~LazyParts();

    std::shared_ptr<CFastInfosetContext> fastInfoset;
    std::shared_ptr<CJsonContext> json;
    CSmartPtr<CAttributeCol> additionalRootAttributes;
  };

  mutable LazyParts m_lazyParts;
  std::string m_defaultNamespaceUri;
  bool m_writeTypeAttribute = true;
  CNamespaceAliasMap m_namespaceAliases;
  std::vector<std::string> m_instructions;
  std::string m_inLineSchema;
  bool m_ignoreInvalidCollectionCounts = false;
  bool m_ignoreMissingChoice = false;
  bool m_ignoreMissingMandatoryElements = false;
  bool m_ignoreUnknownElements = false;
  bool m_ignoreUnknownAttributes = false;
  bool m_ignoreNamespaces = false;
  SchemaType m_schemaType = SchemaType::Xsd;
  bool m_noOptionalAttributeDefaultOutput = false;
  bool m_writeDefaultElementValues = false;
  bool m_stripCData = true;
  std::string m_indentChars = "\t";
  int m_maxDepth = 1000;
  unsigned long m_maxDocumentSize = 2147483647;
};

}  // namespace ZuXmlLib16
