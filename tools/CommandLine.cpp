#include "tools/CommandLine.h"

#include <getopt.h>

#include <charconv>
#include <string_view>

#include "tools/Failure.h"

namespace ZuXmlTool {

using ZuXmlLib16::CompressionType;
using ZuXmlLib16::EOLType;
using ZuXmlLib16::JsonRoundTrip;
using ZuXmlLib16::XmlEncoding;

const char kHelp[] =
    "usage: zuxml convert [OPTION...] IN OUT\n"
    "       zuxml tree IN\n"
    "       zuxml --help | --version\n"
    "\n"
    "convert reads an XML, JSON or Fast Infoset document, plain or compressed, and writes it to\n"
    "OUT. tree prints a line for every element: its XPath, namespace and attributes.\n"
    "IN and OUT may be '-' for standard input and output.\n"
    "\n"
    "  --from xml|json|finf           form of the input; otherwise told by its content, or the\n"
    "                                 ending of IN\n"
    "  --to xml|json|finf             form of the output; otherwise told by the ending of OUT,\n"
    "                                 .xml, .json or .finf; those marked * are for text only\n"
    "  --mode full|marked|plain       JSON with namespaces and '@' attributes (full), without the\n"
    "                                 namespaces (marked), without the '@' too (plain)\n"
    "  --root NAME                    put all of a JSON input into an element NAME\n"
    "  --compact *                    no line breaks and no indentation\n"
    "  --indent N|tab *               indent by N blanks (0 to 16) or by a tab (the default)\n"
    "  --eol lf|crlf *                line ends (lf)\n"
    "  --encoding utf-8|utf-16|wide * encoding of the output (utf-8)\n"
    "  --compress none|gzip|zlib      compress the output; an OUT that ends in .gz means gzip\n"
    "  --no-header *                  leave out the XML declaration\n"
    "  --help, --version\n";

namespace {

enum Option : int {
  kFrom = 256,
  kTo,
  kMode,
  kRoot,
  kCompact,
  kIndent,
  kEol,
  kEncoding,
  kCompress,
  kNoHeader,
  kHelpAsked,
  kVersion
};

const option kOptions[] = {
    {"from", required_argument, nullptr, kFrom},
    {"to", required_argument, nullptr, kTo},
    {"mode", required_argument, nullptr, kMode},
    {"root", required_argument, nullptr, kRoot},
    {"compact", no_argument, nullptr, kCompact},
    {"indent", required_argument, nullptr, kIndent},
    {"eol", required_argument, nullptr, kEol},
    {"encoding", required_argument, nullptr, kEncoding},
    {"compress", required_argument, nullptr, kCompress},
    {"no-header", no_argument, nullptr, kNoHeader},
    {"help", no_argument, nullptr, kHelpAsked},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
};

Failure UsageFailure(const std::string& text) {
  return Failure(text + "\nTry 'zuxml --help'.", kExitUsage);
}

template <class Value>
struct Choice {
  std::string_view text;
  Value value;
};

constexpr Choice<Format> kFormats[] = {
    {"xml", Format::Xml}, {"json", Format::Json}, {"finf", Format::FastInfoset}};
constexpr Choice<Format> kEndings[] = {
    {".xml", Format::Xml}, {".json", Format::Json}, {".finf", Format::FastInfoset}};
constexpr Choice<JsonRoundTrip> kModes[] = {{"full", JsonRoundTrip::Full},
                                            {"marked", JsonRoundTrip::Marked},
                                            {"plain", JsonRoundTrip::Plain}};
constexpr Choice<EOLType> kLineEnds[] = {{"lf", EOLType::Lf}, {"crlf", EOLType::CrLf}};
constexpr Choice<XmlEncoding> kEncodings[] = {
    {"utf-8", XmlEncoding::Utf8}, {"utf-16", XmlEncoding::Utf16}, {"wide", XmlEncoding::Wide}};
constexpr Choice<CompressionType> kCompressions[] = {{"none", CompressionType::None},
                                                     {"gzip", CompressionType::Gzip},
                                                     {"zlib", CompressionType::Zlib}};

template <class Value, std::size_t count>
Value Choose(const char* optionName, std::string_view text, const Choice<Value> (&choices)[count]) {
  std::string known;
  for (const Choice<Value>& choice : choices) {
    if (choice.text == text) return choice.value;
    known += known.empty() ? "" : ", ";
    known += choice.text;
  }
  throw UsageFailure(std::string(optionName) + " takes one of " + known + ", not '" +
                     std::string(text) + "'");
}

std::string IndentOf(std::string_view text) {
  constexpr int kMaxBlanks = 16;
  if (text == "tab") return "\t";
  int blanks = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), blanks);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  if (!isNumber || blanks < 0 || blanks > kMaxBlanks) {
    throw UsageFailure("--indent takes a number from 0 to 16 or 'tab', not '" + std::string(text) +
                       "'");
  }
  return std::string(static_cast<std::size_t>(blanks), ' ');
}

bool TakeEnding(std::string_view& path, std::string_view ending) {
  if (path.size() <= ending.size()) return false;
  if (path.substr(path.size() - ending.size()) != ending) return false;
  path.remove_suffix(ending.size());
  return true;
}

/// What was not said by options is told by the ending of OUT: ".xml", ".json.gz" and so on.
void CompleteFromOutputName(Command& command, bool formatGiven, bool compressionGiven) {
  if (command.output == "-") return;
  std::string_view path = command.output;
  if (TakeEnding(path, ".gz") && !compressionGiven) command.compression = CompressionType::Gzip;
  if (formatGiven) return;
  for (const Choice<Format>& ending : kEndings) {
    if (!TakeEnding(path, ending.text)) continue;
    command.format = ending.value;
    return;
  }
  throw UsageFailure("the ending of '" + command.output +
                     "' tells no known form; say it with --to");
}

void CheckOperands(int given, int wanted, const char* usage) {
  if (given != wanted) throw UsageFailure("usage: zuxml " + std::string(usage));
}

[[noreturn]] void RefuseOption(int found, char** argv) {
  const bool isShort = optopt > 0 && optopt < kFrom;
  const std::string text =
      isShort ? "-" + std::string(1, static_cast<char>(optopt)) : argv[optind - 1];
  if (found == ':') throw UsageFailure("the option " + text + " needs a value");
  throw UsageFailure("unknown option " + text);
}

Command ParseConvert(int argc, char** argv) {
  Command command;
  command.action = Action::Convert;
  bool formatGiven = false;
  bool compressionGiven = false;
  for (int found = 0; (found = getopt_long(argc, argv, ":", kOptions, nullptr)) != -1;) {
    switch (found) {
      case kTo:
        command.format = Choose("--to", optarg, kFormats);
        formatGiven = true;
        break;
      case kFrom:
        command.inputFormat = Choose("--from", optarg, kFormats);
        break;
      case kMode:
        command.jsonMode = Choose("--mode", optarg, kModes);
        break;
      case kRoot:
        command.jsonRoot = optarg;
        break;
      case kCompact:
        command.compact = true;
        break;
      case kIndent:
        command.indent = IndentOf(optarg);
        break;
      case kEol:
        command.eol = Choose("--eol", optarg, kLineEnds);
        break;
      case kEncoding:
        command.encoding = Choose("--encoding", optarg, kEncodings);
        break;
      case kCompress:
        command.compression = Choose("--compress", optarg, kCompressions);
        compressionGiven = true;
        break;
      case kNoHeader:
        command.header = false;
        break;
      case kHelpAsked:
        return Command();
      default:
        RefuseOption(found, argv);
    }
  }
  CheckOperands(argc - optind, 2, "convert [OPTION...] IN OUT");
  command.input = argv[optind];
  command.output = argv[optind + 1];
  CompleteFromOutputName(command, formatGiven, compressionGiven);
  return command;
}

Command ParseTree(int argc, char** argv) {
  const int found = getopt_long(argc, argv, ":", kOptions, nullptr);
  if (found == kHelpAsked) return Command();
  if (found != -1) RefuseOption(found, argv);
  CheckOperands(argc - optind, 1, "tree IN");
  Command command;
  command.action = Action::Tree;
  command.input = argv[optind];
  return command;
}

}  // namespace

Command ParseCommandLine(int argc, char** argv) {
  opterr = 0;
  const std::string_view word = argc > 1 ? argv[1] : "";
  if (word == "convert") return ParseConvert(argc - 1, argv + 1);
  if (word == "tree") return ParseTree(argc - 1, argv + 1);
  Command command;
  if (word == "--help") return command;
  if (word == "--version") {
    command.action = Action::Version;
    return command;
  }
  if (word.empty()) throw UsageFailure("a command is missing");
  throw UsageFailure("unknown command '" + std::string(word) + "'");
}

}  // namespace ZuXmlTool
