#pragma once

#include <expat.h>

#include <string>

#include "bench/Harness.h"

// The floor of the figures: expat alone, with namespaces and handlers that do nothing.

namespace bench {

inline void XMLCALL OnStart(void*, const XML_Char*, const XML_Char**) {}
inline void XMLCALL OnEnd(void*, const XML_Char*) {}
inline void XMLCALL OnText(void*, const XML_Char*, int) {}
inline void XMLCALL OnNamespaceStart(void*, const XML_Char*, const XML_Char*) {}

inline void ParseOnly(const std::string& document) {
  const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
  XML_SetElementHandler(parser, OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser, OnText);
  XML_SetStartNamespaceDeclHandler(parser, OnNamespaceStart);
  const XML_Status status =
      XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1);
  XML_ParserFree(parser);
  Require(status == XML_STATUS_OK, "the reference parser");
}

/// @param document  must outlive the work.
inline Work Parsing(const std::string& document) {
  return Timed([&document] { ParseOnly(document); });
}

}  // namespace bench
