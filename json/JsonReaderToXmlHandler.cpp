#include "ZuXmlLib16/JsonReaderToXmlHandler.h"

#include "ZuXmlLib16/SerializationContext.h"
#include "json/JsonTape.h"
#include "json/XmlTextSink.h"

namespace ZuXmlLib16 {

CJsonReaderToXmlHandler::CJsonReaderToXmlHandler(const CSerializationContext& context)
    : IJsonReaderHandler("CJsonReaderToXmlHandler"),
      m_context(context),
      m_tape(std::make_unique<detail::JsonTape>(context.GetSchemaType() !=
                                                SchemaType::NoNamespaces)) {}

CJsonReaderToXmlHandler::~CJsonReaderToXmlHandler() = default;

void CJsonReaderToXmlHandler::ReadStartDocument() {
  m_xml.Clear();
  m_tape->ReadStartDocument();
}

bool CJsonReaderToXmlHandler::ReadEndDocument() {
  m_tape->ReadEndDocument();
  detail::XmlTextSink sink(m_context.GetMaxDocumentSize());
  detail::JsonMapping(*m_tape, m_context, sink).Convert();
  m_xml = sink.GetDocument();
  return true;
}

void CJsonReaderToXmlHandler::ReadName(const std::string& name) {
  m_tape->ReadName(name);
}

void CJsonReaderToXmlHandler::ReadString(const std::string& value) {
  m_tape->ReadString(value);
}

void CJsonReaderToXmlHandler::ReadNumber(const std::string& text) {
  m_tape->ReadNumber(text);
}

void CJsonReaderToXmlHandler::ReadStartObject() {
  m_tape->ReadStartObject();
}

void CJsonReaderToXmlHandler::ReadEndObject() {
  m_tape->ReadEndObject();
}

void CJsonReaderToXmlHandler::ReadStartArray() {
  m_tape->ReadStartArray();
}

void CJsonReaderToXmlHandler::ReadEndArray() {
  m_tape->ReadEndArray();
}

void CJsonReaderToXmlHandler::ReadBool(bool value) {
  m_tape->ReadBool(value);
}

void CJsonReaderToXmlHandler::ReadNull() {
  m_tape->ReadNull();
}

}  // namespace ZuXmlLib16
