#include "ZuXmlLib16/ParentElementInfo.h"

namespace ZuXmlLib16Data {

CParentElementInfo::CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType,
                                       CTextRef elementName, CTextRef namespaceUri,
                                       bool strictAttributes, bool writesType,
                                       std::int32_t textPropertyIndex, ItemType textItemType,
                                       CTextRef thirdText, bool keepTextRaw)
    : m_groupType(groupType),
      m_elementType(elementType),
      m_elementName(elementName),
      m_namespaceUri(namespaceUri),
      m_strictAttributes(strictAttributes),
      m_writesType(writesType),
      m_textPropertyIndex(textPropertyIndex),
      m_textItemType(textItemType),
      m_thirdText(thirdText),
      m_keepTextRaw(keepTextRaw) {}

CParentElementInfo::~CParentElementInfo() = default;

}  // namespace ZuXmlLib16Data
