#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ZuXmlLib16/BinaryData.h"
#include "json/JsonMapping.h"

namespace ZuXmlLib16::detail {

/// Makes a well-formed XML document in UTF-8.
class XmlTextSink final : public XmlSink {
 public:
  /// @param limit  bytes the document may have, 0 for any number: names of arrays are repeated for
  /// each item, so that it may be much longer than the JSON it comes from.
  explicit XmlTextSink(std::size_t limit);

  void StartElement(const XmlQName& name, const std::vector<XmlDeclaration>& declarations,
                    const std::vector<XmlAttributeEvent>& attributes) override;
  void AddText(std::string_view text) override;
  /// @throws CZuException  the document is larger than the limit.
  void EndElement(const XmlQName& name) override;

  CBinaryData GetDocument() const;

 private:
  void CloseStartTag();
  void AppendName(const XmlQName& name);
  void AppendEscaped(std::string_view text, const char* specials);

  std::string m_document;
  std::size_t m_limit;
  bool m_isStartTagOpen = false;
};

}  // namespace ZuXmlLib16::detail
