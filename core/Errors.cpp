#include "core/Errors.h"

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/FormatString.h"

namespace ZuXmlLib16 {

void ThrowUnknownWhitespaceRule() {
  throw CZuException("Unknown WhitespaceRule");
}

}  // namespace ZuXmlLib16
