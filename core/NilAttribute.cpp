#include "core/NilAttribute.h"

#include <string_view>

#include "ZuXmlLib16/XmlDocument.h"
#include "core/Errors.h"
#include "types/ConversionsInternal.h"

namespace ZuXmlLib16 {

bool detail::ReadNilValue(const CXmlAttribute& attribute) {
  const std::string_view value = attribute.GetValueView();
  if (value == "1" || EqualsIgnoringCase(value, "true")) return true;
  if (value == "0" || EqualsIgnoringCase(value, "false")) return false;
  ThrowUnexpectedNilValue(attribute.GetValue(), attribute.GetXPath());
}

}  // namespace ZuXmlLib16
