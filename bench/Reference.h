#pragma once

#include <expat.h>

#include <string_view>

#include "bench/Harness.h"

namespace bench {

/// What the figures are ratios to: expat alone, with namespaces and handlers that do nothing.
inline void ParseOnly(std::string_view xml) {
  const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
  XML_SetElementHandler(
      parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
  XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
  XML_SetStartNamespaceDeclHandler(parser, [](void*, const XML_Char*, const XML_Char*) {});
  const XML_Status status = XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), 1);
  XML_ParserFree(parser);
  Require(status == XML_STATUS_OK, "the reference parser");
}

}  // namespace bench
