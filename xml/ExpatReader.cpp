#include "ZuXmlLib16/ExpatReader.h"

#include <expat.h>

#include <algorithm>
#include <exception>
#include <string>
#include <type_traits>

#include "ZuXmlLib16/XmlDocument.h"
#include "core/Errors.h"
#include "xml/TreeBuilder.h"
#include "xml/XmlTree.h"

namespace ZuXmlLib16 {
namespace {

struct ExpatParserFree {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ExpatParserPtr = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ExpatParserFree>;

constexpr unsigned long kLargestPiece = 1UL << 30;  // XML_Parse takes an int

}  // namespace

/// What the handlers need.
class CExpatReader::CState {
 public:
  CState(CXmlDocument& document, detail::XmlTree& tree);

  void Parse(const unsigned char* data, unsigned long size, bool isFinal);

 private:
  /// Runs the body of a handler; an exception must not reach expat, so it is kept until parsing
  /// ends.
  template <class Body>
  static void Guard(void* userData, Body body);

  static void XMLCALL FnStartElement(void* userData, const XML_Char* name,
                                     const XML_Char** attributes);
  static void XMLCALL FnEndElement(void* userData, const XML_Char* name);
  static void XMLCALL FnText(void* userData, const XML_Char* text, int length);
  static void XMLCALL FnStartCData(void* userData);
  static void XMLCALL FnEndCData(void* userData);
  static void XMLCALL FnStartNamespace(void* userData, const XML_Char* prefix, const XML_Char* uri);

  void StartElement(const char* name, const char** attributes);

  detail::XmlTree& m_tree;
  detail::TreeBuilder m_builder;
  ExpatParserPtr m_parser;
  std::exception_ptr m_failure;
};

CExpatReader::CState::CState(CXmlDocument& document, detail::XmlTree& tree)
    : m_tree(tree),
      m_builder(document, tree),
      m_parser(document.m_schemaType == SchemaType::NoNamespaces
                   ? XML_ParserCreate(nullptr)
                   : XML_ParserCreateNS(nullptr, detail::TreeBuilder::kSeparator)) {
  if (!m_parser) throw std::bad_alloc();
  XML_SetUserData(m_parser.get(), this);
  XML_SetElementHandler(m_parser.get(), FnStartElement, FnEndElement);
  XML_SetCharacterDataHandler(m_parser.get(), FnText);
  XML_SetStartNamespaceDeclHandler(m_parser.get(), FnStartNamespace);
  if (!document.GetContext().GetStripCDATA()) {
    XML_SetCdataSectionHandler(m_parser.get(), FnStartCData, FnEndCData);
  }
}

template <class Body>
void CExpatReader::CState::Guard(void* userData, Body body) {
  CState& state = *static_cast<CState*>(userData);
  if (state.m_failure) return;  // expat may still finish the element it is at
  try {
    body(state);
  } catch (...) {
    state.m_failure = std::current_exception();
    XML_StopParser(state.m_parser.get(), XML_FALSE);
  }
}

void CExpatReader::CState::FnStartElement(void* userData, const XML_Char* name,
                                          const XML_Char** attributes) {
  Guard(userData, [&](CState& state) { state.StartElement(name, attributes); });
}

void CExpatReader::CState::FnEndElement(void* userData, const XML_Char* /*name*/) {
  Guard(userData, [](CState& state) { state.m_builder.EndElement(); });
}

void CExpatReader::CState::FnText(void* userData, const XML_Char* text, int length) {
  Guard(userData, [&](CState& state) {
    state.m_builder.AddText({text, static_cast<std::size_t>(length)});
  });
}

void CExpatReader::CState::FnStartCData(void* userData) {
  Guard(userData, [](CState& state) { state.m_tree.AddText("<![CDATA[", true); });
}

void CExpatReader::CState::FnEndCData(void* userData) {
  Guard(userData, [](CState& state) { state.m_tree.AddText("]]>", true); });
}

void CExpatReader::CState::FnStartNamespace(void* userData, const XML_Char* prefix,
                                            const XML_Char* uri) {
  Guard(userData,
        [&](CState& state) { state.m_builder.StartNamespace(CTextRef(prefix), CTextRef(uri)); });
}

void CExpatReader::CState::StartElement(const char* name, const char** attributes) {
  const char** end = attributes;
  while (*end != nullptr) {
    end += 2;
  }
  m_builder.StartElement(name, static_cast<std::size_t>(end - attributes) / 2);
  for (; attributes != end; attributes += 2) {
    m_builder.AddAttribute(attributes[0], attributes[1]);
  }
}

void CExpatReader::CState::Parse(const unsigned char* data, unsigned long size, bool isFinal) {
  const char* next = reinterpret_cast<const char*>(data);
  XML_Status status = XML_STATUS_OK;
  do {
    const unsigned long piece = std::min(size, kLargestPiece);
    size -= piece;
    status = XML_Parse(m_parser.get(), next, static_cast<int>(piece), isFinal && size == 0);
    next += piece;
  } while (status == XML_STATUS_OK && size > 0);
  if (status == XML_STATUS_OK) return;
  m_tree.KeepOpenText();
  if (m_failure) std::rethrow_exception(m_failure);
  ThrowParseError(XML_ErrorString(XML_GetErrorCode(m_parser.get())),
                  static_cast<int>(XML_GetCurrentLineNumber(m_parser.get())));
}

CExpatReader::CExpatReader(CXmlDocument& document)
    : CInstanceMonitor("CExpatReader"), m_document(document) {}

CExpatReader::~CExpatReader() = default;

void CExpatReader::CreateParser() {
  m_state = std::make_unique<CState>(m_document, *m_document.m_tree);
}

void CExpatReader::Parse(bool isFinal) {
  if (!m_state) CreateParser();
  try {
    m_state->Parse(m_document.m_input, m_document.m_inputLength, isFinal);
  } catch (...) {
    Cleanup();
    throw;
  }
  if (isFinal) Cleanup();
}

void CExpatReader::Cleanup() {
  m_state.reset();
}

}  // namespace ZuXmlLib16
