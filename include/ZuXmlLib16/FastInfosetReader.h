#pragma once

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"

namespace ZuXmlLib16 {

class CXmlDocument;

/// Builds the tree of a CXmlDocument from a Fast Infoset document (ITU-T Rec. X.891) in the
/// document's input. Made for one parse. Comments, processing instructions and document type
/// declarations are passed over; references to entities contribute no text.
class ZUXMLLIB16_API CFastInfosetReader : public CInstanceMonitor {
 public:
  explicit CFastInfosetReader(CXmlDocument& document);
  CFastInfosetReader(const CFastInfosetReader&) = delete;
  CFastInfosetReader& operator=(const CFastInfosetReader&) = delete;
  ~CFastInfosetReader() override;

  /// Reads the document's whole input.
  /// @return false, with the document untouched, when the input does not start as Fast Infoset: one
  ///         of the nine XML declarations of the standard or none, then the octets E0 00 00 01.
  /// @throws CZuException  "Failed to parse FastInfoset. " and what is wrong, with the path
  ///         "octet <n>", n octets of the inflated input having been read: the document is
  ///         malformed or cut off, needs an external vocabulary other than that of the context, or
  ///         passes a limit (CFastInfosetContext::GetMaxDepth and GetMaxExpansion,
  ///         CSerializationContext::GetMaxDocumentSize).
  bool Parse();

 private:
  CXmlDocument& m_document;
};

}  // namespace ZuXmlLib16
