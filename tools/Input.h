#pragma once

#include <string>

#include "ZuXmlLib16/XmlDocument.h"
#include "tools/Files.h"

namespace ZuXmlTool {

/// Reads a file, or standard input for "-", into a document.
/// @throws Failure, or the library's exceptions for a document that cannot be read.
void Load(ZuXmlLib16::CXmlDocument& document, const std::string& path, Progress& progress);

}  // namespace ZuXmlTool
