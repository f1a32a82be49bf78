#include "json/XmlTextSink.h"

#include "core/Errors.h"

namespace ZuXmlLib16::detail {
namespace {

// Carriage returns and, in attributes, other white space would be normalised by a parser.
constexpr const char* kTextSpecials = "&<>\r";
constexpr const char* kAttributeSpecials = "&<>\r\n\t\"";

const char* ReferenceTo(char special) {
  switch (special) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#x9;";
    case '\n':
      return "&#xA;";
    default:
      return "&#xD;";
  }
}

}  // namespace

XmlTextSink::XmlTextSink(std::size_t limit)
    : m_document(R"(<?xml version="1.0" encoding="UTF-8"?>)"), m_limit(limit) {}

void XmlTextSink::StartElement(const XmlQName& name,
                               const std::vector<XmlDeclaration>& declarations,
                               const std::vector<XmlAttributeEvent>& attributes) {
  CloseStartTag();
  m_document += '<';
  AppendName(name);
  for (const XmlDeclaration& declaration : declarations) {
    m_document += declaration.prefix.empty() ? " xmlns" : " xmlns:";
    (m_document += declaration.prefix) += "=\"";
    AppendEscaped(declaration.namespaceUri, kAttributeSpecials);
    m_document += '"';
  }
  for (const XmlAttributeEvent& attribute : attributes) {
    m_document += ' ';
    AppendName(attribute.name);
    m_document += "=\"";
    AppendEscaped(attribute.value, kAttributeSpecials);
    m_document += '"';
  }
  m_isStartTagOpen = true;
}

void XmlTextSink::AddText(std::string_view text) {
  CloseStartTag();
  AppendEscaped(text, kTextSpecials);
}

void XmlTextSink::EndElement(const XmlQName& name) {
  if (m_isStartTagOpen) {
    m_document += "/>";
    m_isStartTagOpen = false;
  } else {
    m_document += "</";
    AppendName(name);
    m_document += '>';
  }
  if (m_limit != 0 && m_document.size() > m_limit) ThrowDocumentTooLarge(m_limit);
}

CBinaryData XmlTextSink::GetDocument() const {
  CBinaryData document;
  document.Append(reinterpret_cast<const unsigned char*>(m_document.data()), m_document.size());
  return document;
}

void XmlTextSink::CloseStartTag() {
  if (m_isStartTagOpen) m_document += '>';
  m_isStartTagOpen = false;
}

void XmlTextSink::AppendName(const XmlQName& name) {
  if (!name.prefix.empty()) (m_document += name.prefix) += ':';
  m_document += name.localName;
}

void XmlTextSink::AppendEscaped(std::string_view text, const char* specials) {
  for (;;) {
    const std::size_t run = text.find_first_of(specials);
    m_document += text.substr(0, run);
    if (run == std::string_view::npos) return;
    m_document += ReferenceTo(text[run]);
    text.remove_prefix(run + 1);
  }
}

}  // namespace ZuXmlLib16::detail
