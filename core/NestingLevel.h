#pragma once

#include "ZuXmlLib16/SerializationContext.h"

namespace ZuXmlLib16 {

class CXmlElement;

namespace detail {

/// One level of objects that read their content out of one another; reading calls itself for every
/// level, so the context bounds them. Counted per thread, over all classes.
class NestingLevel {
 public:
  /// @throws CZuValidationException  "The element [%s] is nested too deeply, ..." at the element.
  NestingLevel(const CXmlElement& element, const CSerializationContext& context);
  NestingLevel(const NestingLevel&) = delete;
  NestingLevel& operator=(const NestingLevel&) = delete;
  ~NestingLevel();
};

}  // namespace detail
}  // namespace ZuXmlLib16
