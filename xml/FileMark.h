#pragma once

#include <cstdio>

#include "ZuXmlLib16/Streams.h"

namespace ZuXmlLib16::detail {

/// Writes FF FE for the wide encodings, nothing for the others.
/// @return false when the write failed.
bool WriteByteOrderMark(std::FILE* file, XmlEncoding encoding);

}  // namespace ZuXmlLib16::detail
