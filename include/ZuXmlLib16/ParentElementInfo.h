#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <typeinfo>

#include "ZuXmlLib16/ElementInfo.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16Data {

/// What there is to know of a generated class as a whole.
class ZUXMLLIB16_API CParentElementInfo {
 public:
  /// @param elementType  Pseudo for a model group inside the element of another class. Such a
  /// class, and one that holds such a class with attributes, has strictAttributes off: it sees the
  /// attributes of the others.
  /// @param strictAttributes  whether an attribute that no entry takes is an error.
  /// @param writesType  whether xsi:type is written when the element has another name.
  /// @param textPropertyIndex  property of the element's own text, -1 for none.
  /// @param textItemType  its type, Invalid for none.
  /// @param thirdText  kept, of no effect.
  /// @param keepTextRaw  whether the text is handed over as a string, whatever its type.
  CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType,
                     CTextRef elementName, CTextRef namespaceUri, bool strictAttributes,
                     bool writesType, std::int32_t textPropertyIndex, ItemType textItemType,
                     CTextRef thirdText, bool keepTextRaw);
  CParentElementInfo(const CParentElementInfo&) = delete;
  CParentElementInfo& operator=(const CParentElementInfo&) = delete;
  virtual ~CParentElementInfo();

  XmlElementGroupType GetGroupType() const { return m_groupType; }
  XmlElementType GetElementType() const { return m_elementType; }
  const std::string& GetElementName() const { return m_elementName; }
  const std::string& GetNamespace() const { return m_namespaceUri; }
  bool HasStrictAttributes() const { return m_strictAttributes; }
  bool WritesType() const { return m_writesType; }
  std::int32_t GetTextPropertyIndex() const { return m_textPropertyIndex; }
  ItemType GetTextItemType() const { return m_textItemType; }
  const std::string& GetThirdText() const { return m_thirdText; }
  bool KeepsTextRaw() const { return m_keepTextRaw; }

 private:
  friend class ZuXmlLib16::CXmlGeneratedClass;

  XmlElementGroupType m_groupType;
  XmlElementType m_elementType;
  std::string m_elementName;
  std::string m_namespaceUri;
  bool m_strictAttributes;
  bool m_writesType;
  std::int32_t m_textPropertyIndex;
  ItemType m_textItemType;
  std::string m_thirdText;
  bool m_keepTextRaw;
  /// A class of this metadata that is known not to be nillable.
  mutable std::atomic<const std::type_info*> m_notNillable{nullptr};
};

}  // namespace ZuXmlLib16Data
