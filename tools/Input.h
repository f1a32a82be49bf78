#pragma once

#include "ZuXmlLib16/XmlDocument.h"
#include "tools/CommandLine.h"
#include "tools/Files.h"

namespace ZuXmlTool {

/// Reads the input of a command, XML or JSON, into a document.
/// @throws Failure, or the library's exceptions for a document that cannot be read.
void Load(ZuXmlLib16::CXmlDocument& document, const Command& command, Progress& progress);

}  // namespace ZuXmlTool
