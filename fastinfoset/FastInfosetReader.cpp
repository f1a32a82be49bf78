#include "ZuXmlLib16/FastInfosetReader.h"

#include <string_view>

#include "ZuXmlLib16/XmlDocument.h"
#include "fastinfoset/FastInfosetReaderParser.h"
#include "fastinfoset/Identification.h"

namespace ZuXmlLib16 {
namespace {

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

/// @return where the identification ends, 0 when there is none.
std::size_t IdentificationEnd(std::string_view octets) {
  std::size_t start = 0;
  for (const std::string_view declaration : detail::kFastInfosetDeclarations) {
    if (StartsWith(octets, declaration)) start = declaration.size();
  }
  if (!StartsWith(octets.substr(start), detail::kFastInfosetIdentification)) return 0;
  return start + detail::kFastInfosetIdentification.size();
}

}  // namespace

CFastInfosetReader::CFastInfosetReader(CXmlDocument& document)
    : CInstanceMonitor("CFastInfosetReader"), m_document(document) {}

CFastInfosetReader::~CFastInfosetReader() = default;

bool CFastInfosetReader::Parse() {
  const std::string_view octets(reinterpret_cast<const char*>(m_document.m_input),
                                m_document.m_inputLength);
  const std::size_t start = IdentificationEnd(octets);
  if (start == 0) return false;
  detail::FastInfosetParser(m_document, *m_document.m_tree, octets, start).Parse();
  return true;
}

}  // namespace ZuXmlLib16
