#include "core/NestingLevel.h"

#include "ZuXmlLib16/XmlDocument.h"
#include "core/Errors.h"

namespace ZuXmlLib16::detail {
namespace {

__attribute__((tls_model("initial-exec"))) thread_local int openLevels = 0;

}  // namespace

NestingLevel::NestingLevel(const CXmlElement& element, const CSerializationContext& context) {
  if (openLevels >= context.GetMaxDepth()) {
    ThrowNestedTooDeeply(element.GetLocalName(), context.GetMaxDepth(), element.GetXPath());
  }
  ++openLevels;
}

NestingLevel::~NestingLevel() {
  --openLevels;
}

}  // namespace ZuXmlLib16::detail
