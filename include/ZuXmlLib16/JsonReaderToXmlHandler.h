#pragma once

#include <memory>
#include <string>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/JsonTextReader.h"

namespace ZuXmlLib16 {

class CSerializationContext;

namespace detail {
class JsonTape;
}

/// Turns what a CJsonTextReader reads into XML text: members become elements, "@name" attributes,
/// "#text" the text, arrays repeated elements, null xsi:nil. The XML is made at the end of the
/// document.
class ZUXMLLIB16_API CJsonReaderToXmlHandler final : public IJsonReaderHandler {
 public:
  /// @param context  its namespace aliases, schema type and largest document are used; must outlive
  /// the handler.
  explicit CJsonReaderToXmlHandler(const CSerializationContext& context);
  CJsonReaderToXmlHandler(const CJsonReaderToXmlHandler&) = delete;
  CJsonReaderToXmlHandler& operator=(const CJsonReaderToXmlHandler&) = delete;
  ~CJsonReaderToXmlHandler() override;

  /// The document in UTF-8, always well-formed; empty before its end was read.
  const CBinaryData& GetXml() const { return m_xml; }

  void ReadStartDocument() override;
  /// @return true.
  /// @throws CZuValidationException  "JSON item has an empty Name.", "JSON Array has no Name.", or
  /// "Error converting JSON to XML:" and the reason; the path is the place in the JSON document.
  /// @throws CZuException  the XML is larger than the limit of the context.
  bool ReadEndDocument() override;
  void ReadName(const std::string& name) override;
  void ReadString(const std::string& value) override;
  void ReadNumber(const std::string& text) override;
  void ReadStartObject() override;
  void ReadEndObject() override;
  void ReadStartArray() override;
  void ReadEndArray() override;
  void ReadBool(bool value) override;
  void ReadNull() override;

 private:
  const CSerializationContext& m_context;
  std::unique_ptr<detail::JsonTape> m_tape;
  CBinaryData m_xml;
};

}  // namespace ZuXmlLib16
