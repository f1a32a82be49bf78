#pragma once

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Empty polymorphic base of the run-time classes (writers, streams, DOM nodes, readers,
/// collections).
class ZUXMLLIB16_API CInstanceMonitor {
 public:
  /// @param className  name of the most derived class; not kept.
  explicit CInstanceMonitor(const char* /*className*/) {}
  CInstanceMonitor(const CInstanceMonitor&) = default;
  CInstanceMonitor& operator=(const CInstanceMonitor&) = default;
  virtual ~CInstanceMonitor();
};

}  // namespace ZuXmlLib16
