#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZuXmlLib16/ClassCollections.h"
#include "ZuXmlLib16/Classfactory.h"
#include "ZuXmlLib16/ElementInfoCollections.h"
#include "ZuXmlLib16/ElementInfoMembers.h"
#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/PrimitiveCollections.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlGeneratedClass.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {

using Group = ZuXmlLib16Data::XmlElementGroupType;
constexpr auto kElement = ZuXmlLib16Data::XmlElementType::Element;
constexpr auto kPseudo = ZuXmlLib16Data::XmlElementType::Pseudo;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule::Collapse;
/// Below 10.
inline const CPrimitiveRestrictions kOneDigit{"", -1, -1, "", "9", "", "", -1, -1, -1};

/// An enumeration of two.
inline std::string DigitToText(int value) {
  return std::to_string(value);
}
inline int DigitFromText(const std::string& text) {
  if (text != "1" && text != "2") throw CZuInvalidValueException("No digit: " + text);
  return text[0] - '0';
}

/// A class put together entry by entry, each for a property of its own. While it lives, MakeObject
/// finds it by its identifier and MakeSubstitute by its name. The flags are set before it is used.
class Shape {
 public:
  using Fill = std::function<void(ZuVariant&)>;

  explicit Shape(const char* name, Group group = Group::Sequence, XmlElementType type = kElement)
      : elementType(type), m_name(name), m_group(group), m_identifier(Registry().size()) {
    Registry().push_back(this);
  }
  Shape(const Shape&) = delete;
  Shape& operator=(const Shape&) = delete;
  ~Shape() {
    Registry()[m_identifier] = nullptr;
    delete m_info;
    for (const CElementInfo* entry : m_elements)
      delete entry;
    for (const CAttributeInfo* entry : m_attributes)
      delete entry;
  }

  Shape& Text(ItemType type = ItemType::i4, bool raw = false) {
    m_textIndex = Property("");
    m_textType = type;
    m_textRaw = raw;
    return *this;
  }
  template <class Entry>
  Shape& Prim(const char* name, const char* defaultValue = "", bool nillable = false,
              const CPrimitiveRestrictions& facets = {}, ItemType type = ItemType::i4) {
    return Put<Entry>(name, nullptr, nillable, type, "", kCollapse, facets, defaultValue);
  }
  template <class Entry>
  Shape& Enum(const char* name, const char* defaultValue = "", bool nillable = false) {
    return Put<Entry>(name, nullptr, nillable, DigitToText, DigitFromText, defaultValue);
  }
  /// @param required  of mandatory entries: whether a pseudo element has to take something.
  template <class Entry>
  Shape& Child(const char* name, const Shape& child, bool required = false) {
    const int id = child.GetIdentifier();
    if constexpr (std::is_base_of_v<ZuXmlLib16Data::detail::MndClsEntry, Entry>) {
      const auto fill = [=](ZuVariant& value) { value.SetXmlObject(MakeObject(id, name).Get()); };
      return Put<Entry>(name, fill, child.elementType, MakeObject, id, required);
    } else {
      return Put<Entry>(name, nullptr, child.elementType, MakeObject, id);
    }
  }
  template <class Entry>
  Shape& Substitute(const char* name, XmlElementType type = kElement) {
    if constexpr (std::is_same_v<Entry, ZuXmlLib16Data::CElementInfoAllAbsClsMnd>) {
      return Put<Entry>(name, nullptr, type, MakeSubstitute, 0);
    } else {
      return Put<Entry>(name, nullptr, type, MakeSubstitute);
    }
  }
  template <class Entry>
  Shape& Any(const char* name, const char* restriction) {
    return Put<Entry>(name, nullptr, restriction, "");
  }
  /// @param make  makes the collection of a new object.
  /// @param more  further arguments of the entry.
  template <class Entry, class Make, class... More>
  Shape& Items(const char* name, Make make, More... more) {
    const auto fill = [make](ZuVariant& value) { value.SetXmlCollection(make()); };
    return Put<Entry>(name, fill, more...);
  }
  template <class Entry>
  Shape& Numbers(const char* name, int minimum = 0, int maximum = -1) {
    return Items<Entry>(name, [=] {
      return new Ci4Col(name, "", minimum, maximum, "", -1, -1, "", "", "", "", -1, -1, -1,
                        kCollapse, "");
    });
  }
  template <class Entry>
  Shape& Objects(const char* name, const Shape& item, int minimum = 0, int maximum = -1);
  /// @param more  what the entry takes behind its optional flag.
  template <class Entry, class... More>
  Shape& Attribute(const char* name, const char* namespaceUri, bool optional, Fill fill,
                   More... more) {
    m_attributes.back() = new Entry(name, namespaceUri, Property(name, fill), optional, more...);
    m_attributes.push_back(nullptr);
    return *this;
  }
  /// An attribute that is a number below 10.
  Shape& Number(const char* name, bool optional = true, const char* defaultValue = "",
                const char* namespaceUri = "") {
    return Attribute<ZuXmlLib16Data::CAttributeInfoPrimitive>(name, namespaceUri, optional, nullptr,
                                                              ItemType::i4, "", kCollapse,
                                                              kOneDigit, defaultValue);
  }

  const CParentElementInfo* GetInfo() const {
    if (m_info == nullptr) {
      m_info = new CParentElementInfo(m_group, elementType, m_name, uri, isStrict, writesType,
                                      m_textIndex, m_textType, "", m_textRaw);
    }
    return m_info;
  }
  /// Null when there are none.
  CElementInfo* const* GetElements() const { return TableOf(m_elements); }
  CAttributeInfo* const* GetAttributes() const { return TableOf(m_attributes); }
  const std::string& GetLabel(std::size_t property) const { return m_labels[property]; }
  int GetIdentifier() const { return static_cast<int>(m_identifier); }
  std::vector<ZuVariant> NewProperties() const {
    std::vector<ZuVariant> properties(m_fills.size());
    for (std::size_t i = 0; i < properties.size(); ++i) {
      if (m_fills[i]) m_fills[i](properties[i]);
    }
    return properties;
  }
  /// A new object, named as the class.
  CSmartPtr<class BindableClass> Make() const;
  static CSmartPtr<CXmlObjectBase> MakeObject(int identifier, const char* name);
  /// By xsi:type, else by the element's name; the namespace has to be the class's.
  static CSmartPtr<CXmlObjectBase> MakeSubstitute(CXmlElement* element);

  const XmlElementType elementType;
  const char* uri = "";
  bool isStrict = false;
  bool writesType = false;
  bool isNillable = false;

 private:
  static std::vector<Shape*>& Registry() {
    static std::vector<Shape*> shapes;
    return shapes;
  }
  template <class Entry>
  static Entry* const* TableOf(const std::vector<Entry*>& entries) {
    return entries.size() > 1 ? entries.data() : nullptr;
  }
  int Property(const char* label, Fill fill = nullptr) {
    m_labels.emplace_back(label);
    m_fills.push_back(std::move(fill));
    return static_cast<int>(m_labels.size()) - 1;
  }
  template <class Entry, class... More>
  Shape& Put(const char* name, Fill fill, const More&... more) {
    m_elements.back() = new Entry(name, uri, Property(name, std::move(fill)), more...);
    m_elements.push_back(nullptr);
    return *this;
  }

  const char* m_name;
  Group m_group;
  std::size_t m_identifier;
  bool m_textRaw = false;
  int m_textIndex = -1;
  ItemType m_textType = ItemType::Invalid;
  mutable CParentElementInfo* m_info = nullptr;
  std::vector<CElementInfo*> m_elements{nullptr};
  std::vector<CAttributeInfo*> m_attributes{nullptr};
  std::vector<std::string> m_labels;
  std::vector<Fill> m_fills;
};

/// An object of such a class. It does not clear itself when it is read.
class BindableClass : public CXmlGeneratedClass {
 public:
  BindableClass(const Shape& shape, const char* name)
      : properties(shape.NewProperties()), m_shape(shape) {
    SetElementName(name);
  }

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override {
    ZuVariant& property = properties.at(static_cast<std::size_t>(propertyIndex));
    if (isFailing) throw CZuInvalidStateException("Failing");
    (read ? value : property) = read ? property : value;
  }
  const CParentElementInfo* GetClassMetaData() const override { return m_shape.GetInfo(); }
  CElementInfo* const* GetElementMetaData() const override { return m_shape.GetElements(); }
  CAttributeInfo* const* GetAttributeMetaData() const override { return m_shape.GetAttributes(); }
  void OnFromXmlStart(CXmlElement*, CXmlElement*, const CSerializationContext&, bool) override {
    ++starts;
  }

  /// The properties that have a value, e.g. "a=1 b=nil c=[1 2] child={x=1}"; that of text has no
  /// name.
  std::string Describe() const {
    std::string text;
    for (std::size_t i = 0; i < properties.size(); ++i) {
      const std::string value = Describe(properties[i]);
      const std::string& label = m_shape.GetLabel(i);
      if (!value.empty()) text += " " + label + (label.empty() ? "" : "=") + value;
    }
    return text.empty() ? "" : text.substr(1);
  }

  std::vector<ZuVariant> properties;
  bool isFailing = false;
  int starts = 0;

 private:
  static std::string Describe(const CXmlObjectBase* object) {
    const auto* const bindable = dynamic_cast<const BindableClass*>(object);
    if (bindable != nullptr) return "{" + bindable->Describe() + "}";
    const auto* const attribute = dynamic_cast<const CAttribute*>(object);
    if (attribute == nullptr) return Written(*object);
    return attribute->GetNamespace() + ":" + attribute->GetName() + "=" + attribute->GetValue();
  }
  static std::string Describe(const ZuVariant& value) {
    if (value.IsNil()) return "nil";
    if (const auto object = value.GetXmlObject()) return Describe(object.Get());
    if (!value.IsValid() || value.GetItemType() == ItemType::XmlObject) return "";
    if (value.GetItemType() != ItemType::XmlCollection) return value.ToString();
    const auto items = value.GetXmlCollection();
    std::string text;
    if (const auto* const numbers = dynamic_cast<const Ci4Col*>(items.Get())) {
      for (const long number : *numbers)
        text += " " + std::to_string(number);
    } else if (const auto* const digits = dynamic_cast<const CXmlEnumCol<int>*>(items.Get())) {
      for (const int digit : *digits)
        text += " " + std::to_string(digit);
    } else if (const auto* const objects = dynamic_cast<const CXmlCollection*>(items.Get())) {
      for (auto* node = objects->GetHead(); node != nullptr; node = node->GetNext()) {
        text += " " + Describe(node->GetItem());
      }
    }
    return text.empty() ? "" : "[" + text.substr(1) + "]";
  }

  const Shape& m_shape;
};

class NillableBindableClass : public BindableClass, public INillable {
 public:
  using BindableClass::BindableClass;
  bool IsNil() const override { return m_isNil; }
  void SetNil(bool nil) override { m_isNil = nil; }

 private:
  bool m_isNil = false;
};

inline CSmartPtr<CXmlObjectBase> Shape::MakeObject(int identifier, const char* name) {
  const Shape& shape = *Registry()[static_cast<std::size_t>(identifier)];
  if (shape.isNillable) return new NillableBindableClass(shape, name);
  return new BindableClass(shape, name);
}

inline CSmartPtr<BindableClass> Shape::Make() const {
  return dynamic_cast<BindableClass*>(MakeObject(GetIdentifier(), m_name).Get());
}

inline CSmartPtr<CXmlObjectBase> Shape::MakeSubstitute(CXmlElement* element) {
  const std::string type = CClassfactoryBase::GetElementType(element);
  const std::string& name = type.empty() ? element->GetLocalName() : type;
  for (const Shape* shape : Registry()) {
    if (shape != nullptr && shape->m_name == name && element->GetNamespaceURI() == shape->uri) {
      return MakeObject(shape->GetIdentifier(), name.c_str());
    }
  }
  return nullptr;
}

template <class Entry>
Shape& Shape::Objects(const char* name, const Shape& item, int minimum, int maximum) {
  const auto make = [=, &item] {
    return new CXmlClassCol<BindableClass>(name, item.uri, minimum, maximum, item.elementType,
                                           MakeObject, item.GetIdentifier());
  };
  return Items<Entry>(name, make, item.elementType);
}

/// A context with options set by their letters: Unknown elements, Missing mandatory elements,
/// missing Choices, invalid Item counts, unknown Attributes and Namespaces are ignored.
inline CSerializationContext Ignoring(const std::string& letters) {
  const auto has = [&](char letter) { return letters.find(letter) != std::string::npos; };
  CSerializationContext context;
  context.SetIgnoreUnknownElements(has('U'));
  context.SetIgnoreMissingMandatoryElements(has('M'));
  context.SetIgnoreMissingChoice(has('C'));
  context.SetIgnoreInvalidCollectionCounts(has('I'));
  context.SetIgnoreUnknownAttributes(has('A'));
  context.SetIgnoreNamespaces(has('N'));
  return context;
}

/// What a document gives: the description of the object, or "!" and the message of the failure.
inline std::string Outcome(BindableClass& object, const std::string& xml,
                           const CSerializationContext& context = Ignoring("")) {
  try {
    object.FromXml(xml.c_str(), context);
    return object.Describe();
  } catch (const CZuException& failure) {
    return "!" + failure.GetFullMessage();
  }
}

/// What writing gives: XML, or "!" and the message of the failure.
inline std::string WriteOutcome(const CXmlObjectBase& object,
                                const CSerializationContext& context = Ignoring("")) {
  try {
    return object.ToXml(false, false, EOLType::Lf, context);
  } catch (const CZuException& failure) {
    return "!" + failure.GetFullMessage();
  }
}

}  // namespace ZuXmlLib16
