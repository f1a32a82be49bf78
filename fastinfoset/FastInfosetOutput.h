#pragma once

#include "fastinfoset/DeclaredPrefixes.h"
#include "fastinfoset/DocumentEncoder.h"

namespace ZuXmlLib16::detail {

/// A document under construction.
struct FastInfosetOutput {
  FastInfosetOutput(CBinaryStream& stream, const CFastInfosetContext& context)
      : encoder(stream, context) {}

  DocumentEncoder encoder;
  DeclaredPrefixes prefixes;
};

}  // namespace ZuXmlLib16::detail
