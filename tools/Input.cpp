#include "tools/Input.h"

#include <cstddef>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/SerializationContext.h"
#include "tools/Locale.h"

namespace ZuXmlTool {

using ZuXmlLib16::CXmlDocument;

namespace {

bool EndsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

/// Told by the first character that is no blank: XML begins with "<", JSON with a bracket or a
/// comment. Anything else, such as compressed data, is what the ending of its name says.
Format FormatOf(std::string_view document, std::string_view path) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (document.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    document.remove_prefix(kByteOrderMark.size());
  }
  const std::size_t first = document.find_first_not_of(" \t\r\n");
  const char character = first != std::string_view::npos ? document[first] : '\0';
  if (character == '<') return Format::Xml;
  const bool isJson = character == '{' || character == '[' || character == '/' ||
                      EndsWith(path, ".json") || EndsWith(path, ".json.gz");
  return isJson ? Format::Json : Format::Xml;
}

}  // namespace

void Load(CXmlDocument& document, const Command& command, Progress& progress) {
  const std::vector<unsigned char> bytes =
      ReadAll(command.input, document.GetContext().GetMaxDocumentSize(), progress);
  if (MayLoseText(bytes)) progress.Tell("there is no UTF-8 locale, so that characters become '?'");
  progress.Show("parsing", bytes.size());
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (command.inputFormat.value_or(FormatOf(text, command.input)) == Format::Json) {
    document.ReadJsonStream(bytes.data(), bytes.size());
  } else {
    document.LoadXmlStream(bytes.data(), bytes.size());
  }
}

}  // namespace ZuXmlTool
