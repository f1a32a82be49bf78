#pragma once

#include <optional>
#include <string>

#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlTool {

enum class Action { Help, Version, Convert, Tree };
enum class Format { Xml, Json, FastInfoset };

/// What the user asked for. The defaults are those of `convert` without options.
struct Command {
  Action action = Action::Help;
  std::string input;                  ///< a path, "-" for standard input
  std::string output;                 ///< a path, "-" for standard output
  std::optional<Format> inputFormat;  ///< told by the content when not given
  Format format = Format::Xml;
  ZuXmlLib16::JsonRoundTrip jsonMode = ZuXmlLib16::JsonRoundTrip::Full;
  std::string jsonRoot;  ///< names JSON input that has no root of its own
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
