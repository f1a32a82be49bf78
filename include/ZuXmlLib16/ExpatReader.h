#pragma once

#include <memory>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"

namespace ZuXmlLib16 {

class CXmlDocument;

/// Builds the tree of a CXmlDocument from the XML text in the document's input, with the expat
/// parser. Made for one parse. No external entity is ever opened, and expat's protection against
/// entity expansion stays on.
class ZUXMLLIB16_API CExpatReader : public CInstanceMonitor {
 public:
  explicit CExpatReader(CXmlDocument& document);
  CExpatReader(const CExpatReader&) = delete;
  CExpatReader& operator=(const CExpatReader&) = delete;
  ~CExpatReader() override;

  /// Makes the parser, with namespaces unless the document's schema type has none. A parser made
  /// earlier is freed first.
  void CreateParser();
  /// Parses the document's whole input.
  /// @param isFinal  whether the document ends with the input; the parser is freed then.
  /// @throws CZuException  "<expat's text> at line <n>".
  void Parse(bool isFinal);
  /// Frees the parser.
  void Cleanup();

 private:
  class CState;

  CXmlDocument& m_document;
  std::unique_ptr<CState> m_state;
};

}  // namespace ZuXmlLib16
