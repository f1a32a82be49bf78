#pragma once

#include <string>

#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlTool {

enum class Action { Help, Version, Convert, Tree };
enum class Format { Xml, FastInfoset };

/// What the user asked for. The defaults are those of `convert` without options.
struct Command {
  Action action = Action::Help;
  std::string input;   ///< a path, "-" for standard input
  std::string output;  ///< a path, "-" for standard output
  Format format = Format::Xml;
  bool compact = false;
  std::string indent = "\t";
  ZuXmlLib16::EOLType eol = ZuXmlLib16::EOLType::Lf;
  ZuXmlLib16::XmlEncoding encoding = ZuXmlLib16::XmlEncoding::Utf8;
  ZuXmlLib16::CompressionType compression = ZuXmlLib16::CompressionType::None;
  bool header = true;
};

extern const char kHelp[];

/// @throws Failure  with exit status 2, when the arguments make no sense.
Command ParseCommandLine(int argc, char** argv);

}  // namespace ZuXmlTool
