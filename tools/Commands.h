#pragma once

#include "tools/CommandLine.h"

namespace ZuXmlTool {

/// Both throw Failure, or the library's exceptions for a document that cannot be read.
void Convert(const Command& command);
void PrintTree(const Command& command);

}  // namespace ZuXmlTool
