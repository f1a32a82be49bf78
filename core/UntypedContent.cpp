#include "ZuXmlLib16/UntypedContent.h"

#include <algorithm>
#include <typeinfo>
#include <utility>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "ZuXmlLib16/XmlTextWriter.h"
#include "core/Errors.h"
#include "core/LocalXml.h"
#include "core/NestingLevel.h"
#include "core/RootOptions.h"

namespace ZuXmlLib16 {
namespace {

using detail::NamespaceScope;
using detail::NamespaceScopePtr;

constexpr std::string_view kWhitespace = " \t\n\r";

bool IsRestrictionToken(std::string_view text) {
  return text == "##any" || text == "##other" || text == "##local" || text == "##targetNamespace";
}

bool IsAllowed(const NamespaceScope& scope, const std::string& namespaceUri) {
  return CXmlObjectHelper::IsNamespaceValid(namespaceUri, scope.restriction, scope.targetNamespace);
}

}  // namespace

CElement::CElement(const char* name) {
  Init(name, "", "##any", "");
}

CElement::CElement(const char* name, const char* namespaceOrRestriction) {
  const CTextRef text(namespaceOrRestriction);
  const bool isToken = IsRestrictionToken(text);
  const bool isUsable =
      text.substr(0, 2) != "##" && text.find_first_of(kWhitespace) == CTextRef::npos;
  if (!isToken && !isUsable) ThrowUnusableNamespace(std::string(text));
  Init(name, isToken ? "" : text.data(), namespaceOrRestriction, "");
}

CElement::CElement(const char* name, const char* namespaceUri, const char* restriction,
                   const char* targetNamespace) {
  Init(name, namespaceUri, restriction, targetNamespace);
}

CElement::CElement(CXmlObjectBase* object, const char* restriction) {
  if (object == nullptr) ThrowMustHaveValue("Element Name");
  Init(object->GetElementName().c_str(), object->GetTargetNamespace().c_str(), restriction, "");
  // Options of the default context shall not get into the copy.
  const CSerializationContext plain;
  CXmlDocument document;
  document.LoadXml(detail::LocalXmlAsUtf8(object->ToXml(false, false, EOLType::Lf, plain)).c_str());
  CopyXmlElement(document.GetDocumentElement());
  m_raw = true;
}

CElement::CElement(NamespaceScopePtr scope) : m_scope(std::move(scope)) {}

CElement::~CElement() = default;

void CElement::Init(const char* name, const char* namespaceUri, const char* restriction,
                    const char* targetNamespace) {
  if (name == nullptr) ThrowMustHaveValue("Element Name");
  if (restriction == nullptr) ThrowMustHaveValue("Namespace Restriction");
  if (targetNamespace == nullptr) ThrowMustHaveValue("Target Namespace");
  const auto scope = std::make_shared<NamespaceScope>(
      NamespaceScope{std::string(CTextRef(namespaceUri)), restriction, targetNamespace});
  if (!scope->namespaceUri.empty()) {
    CXmlObjectHelper::TestNamespace(scope->namespaceUri, restriction, targetNamespace);
  }
  SetElementName(name);
  m_scope = scope;
  m_attributes.Reset();
  m_elements.Reset();
}

std::string CElement::GetTargetNamespace() const {
  return m_scope->targetNamespace;
}

std::string CElement::GetNamespace() const {
  return m_scope->namespaceUri;
}

CAttributeCol& CElement::Attributes() const {
  if (!m_attributes) {
    m_attributes.Reset(new CAttributeCol(m_scope->namespaceUri, "##any", m_scope->targetNamespace));
  }
  return *m_attributes;
}

CElementCol& CElement::Elements() const {
  if (m_elements) return *m_elements;
  // Below the element everything is allowed, whatever restricts the element itself.
  NamespaceScopePtr scope = m_scope;
  if (scope->restriction != "##any") {
    scope = std::make_shared<NamespaceScope>(
        NamespaceScope{scope->namespaceUri, "##any", scope->targetNamespace});
  }
  m_elements.Reset(new CElementCol(std::move(scope)));
  return *m_elements;
}

CSmartPtr<CAttributeCol> CElement::GetAttributes() const {
  return &Attributes();
}

CSmartPtr<CElementCol> CElement::GetElements() const {
  return &Elements();
}

void CElement::SetName(const char* name) {
  if (GetName() == CTextRef(name)) return;
  SetElementName(name);
  FireOnChangeName();
}

void CElement::SetText(const char* text) {
  const CTextRef newText(text);
  if (m_text == newText) return;
  m_text = newText;
  FireOnChangeText();
}

void CElement::SetNamespace(const char* namespaceUri) {
  const std::string newNamespace(CTextRef{namespaceUri});
  if (m_scope->namespaceUri == newNamespace) return;
  CXmlObjectHelper::TestNamespace(newNamespace, m_scope->restriction, m_scope->targetNamespace);
  MoveTo(newNamespace);
  FireOnChangeNamespace();
}

void CElement::MoveTo(const std::string& namespaceUri) {
  m_scope = detail::InNamespace(m_scope, namespaceUri);
  // New children are in the namespace of their parent.
  if (m_elements) m_elements->m_scope = detail::InNamespace(m_elements->m_scope, namespaceUri);
}

void CElement::FireOnChangeName() {
  OnEvent(this, MsgType::Changed, nullptr);
}

void CElement::FireOnChangeNamespace() {
  OnEvent(this, MsgType::Changed, nullptr);
}

void CElement::FireOnChangeText() {
  OnEvent(this, MsgType::Changed, nullptr);
}

void CElement::SetNamespaceRestrictions(const char* restriction, const char* targetNamespace) {
  std::vector<CElement*> pending{this};
  while (!pending.empty()) {
    CElement& element = *pending.back();
    pending.pop_back();
    element.RestrictSelf(CTextRef(restriction), CTextRef(targetNamespace));
    if (!element.m_elements) continue;
    // Children are tested in document order, each before those behind it.
    const std::size_t firstChild = pending.size();
    for (CElement* child : *element.m_elements) {
      pending.push_back(child);
    }
    std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(firstChild), pending.end());
  }
}

void CElement::RestrictSelf(CTextRef restriction, CTextRef targetNamespace) {
  m_scope = std::make_shared<NamespaceScope>(NamespaceScope{
      m_scope->namespaceUri, std::string(restriction), std::string(targetNamespace)});
  Attributes().SetNamespaceRestrictions(restriction, targetNamespace);
  Elements().SetNamespaceRestrictions(restriction, targetNamespace);
  const auto test = [this](const std::string& namespaceUri, const std::string& name) {
    if (IsAllowed(*m_scope, namespaceUri)) return;
    ThrowNamespaceOutsideRestriction(namespaceUri, name, m_scope->restriction);
  };
  test(m_scope->namespaceUri, GetName());
  for (const CAttribute* attribute : *m_attributes) {
    test(attribute->GetNamespace(), attribute->GetName());
  }
}

void CElement::TakeOver(const CXmlElement& element) {
  SetElementName(element.GetLocalName());
  MoveTo(element.GetNamespaceURI());
  m_text = element.GetTextView();
  // Whitespace beside child elements is layout; kept, it would grow with every pretty-printed round
  // trip.
  if (element.GetFirstElement() != nullptr &&
      m_text.find_first_not_of(kWhitespace) == std::string::npos) {
    m_text.clear();
  }
  if (m_attributes) m_attributes->Clear();
  if (m_elements) m_elements->Clear();
}

CXmlElement* CElement::FromXml_Int(CXmlElement* element, CXmlElement* /*firstChildElement*/,
                                   const CSerializationContext& context,
                                   bool /*isOptionalChoice*/) {
  if (element == nullptr) return nullptr;
  if (!IsAllowed(*m_scope, element->GetNamespaceURI())) return element;
  const detail::NestingLevel level(*element, context);
  TakeOver(*element);
  if (!element->GetAttributes().empty()) Attributes().ReadAttributes(*element, true);
  if (element->GetFirstElement() != nullptr) {
    const CXmlElement* const refused =
        Elements().FromXml_Int(element, element->GetFirstElement(), context, false);
    if (refused != nullptr) ThrowInvalidElement(refused->GetLocalName(), refused->GetXPath());
  }
  return element->GetNextSiblingElement();
}

void CElement::FromXml(const char* xml) {
  CXmlObjectBase::FromXml(xml, CSerializationContext::m_defaultContext);
}

void CElement::CopyXmlElement(CXmlElement* element) {
  if (element == nullptr) ThrowPropertyIsNull("element");
  // With a stack of its own: the depth is that of the document.
  std::vector<std::pair<CElement*, const CXmlElement*>> pending{{this, element}};
  while (!pending.empty()) {
    const auto [copy, source] = pending.back();
    pending.pop_back();
    copy->TakeOver(*source);
    if (!source->GetAttributes().empty()) copy->Attributes().ReadAttributes(*source, false);
    for (const CXmlElement* child = source->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      CSmartPtr<CElement> childCopy(new CElement(copy->Elements().m_scope));
      pending.emplace_back(childCopy.Get(), child);
      copy->Elements().Append(std::move(childCopy));
    }
  }
}

CSmartPtr<CElement> CElement::CloneSelf() const {
  CSmartPtr<CElement> copy(new CElement(m_scope));
  copy->SetElementName(GetName());
  copy->m_text = m_text;
  copy->m_raw = m_raw;
  if (m_attributes) copy->m_attributes = m_attributes->Clone();
  if (m_elements) copy->m_elements.Reset(new CElementCol(m_elements->m_scope));
  return copy;
}

CSmartPtr<CElement> CElement::Clone() const {
  CSmartPtr<CElement> clone = CloneSelf();
  std::vector<std::pair<CElement*, const CElement*>> pending{{clone.Get(), this}};
  while (!pending.empty()) {
    const auto [copy, source] = pending.back();
    pending.pop_back();
    if (!source->m_elements) continue;
    for (const CElement* child : *source->m_elements) {
      CSmartPtr<CElement> childCopy = child->CloneSelf();
      pending.emplace_back(childCopy.Get(), child);
      copy->m_elements->Append(std::move(childCopy));
    }
  }
  return clone;
}

// Plain elements are written by a loop. Recursion is left for raw elements and classes derived from
// this one, as deep as the program nests those. NOLINTBEGIN(misc-no-recursion)

void CElement::ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* /*namespaceUri*/,
                         const CSerializationContext& context, bool /*isOptionalChoice*/) const {
  if (writer == nullptr) ThrowPropertyIsNull("writer");
  if (m_raw) {
    if (auto* const textWriter = dynamic_cast<CXmlTextWriter*>(writer)) {
      return WriteRaw(*textWriter);
    }
  }
  if (isDocumentRoot) detail::WriteBeforeRoot(*writer, context);
  WriteTree(*writer, isDocumentRoot, context);
}

bool CElement::HasSameName(const CElement& a, const CElement& b) {
  return a.GetName() == b.GetName() &&
         (a.m_scope == b.m_scope || a.m_scope->namespaceUri == b.m_scope->namespaceUri);
}

void CElement::WriteTree(CXmlWriter& writer, bool isDocumentRoot,
                         const CSerializationContext& context) const {
  struct OpenElement {
    const CElement* element;
    CXmlCollection::CNode* nextChild;
    bool isInRun;  // the next child has the name of the one before it
  };
  std::vector<OpenElement> open;
  const auto start = [&](const CElement& element) {
    writer.WriteStartElement(element.GetName(), element.m_scope->namespaceUri);
    if (isDocumentRoot && open.empty()) detail::WriteRootAttributes(writer, context);
    if (element.m_attributes) {
      element.m_attributes->ToXml_Int(&writer, false, element.m_scope->namespaceUri.c_str(),
                                      context, false);
    }
    open.push_back({&element, element.m_elements ? element.m_elements->GetHead() : nullptr, false});
  };
  start(*this);
  while (!open.empty()) {
    OpenElement& innermost = open.back();
    if (innermost.nextChild != nullptr) {
      const auto& child = static_cast<const CElement&>(*innermost.nextChild->GetItem());
      innermost.nextChild = innermost.nextChild->GetNext();
      if (writer.HasArrays()) {  // neighbours of one name are a collection there
        const bool runGoesOn =
            innermost.nextChild != nullptr &&
            HasSameName(child, static_cast<const CElement&>(*innermost.nextChild->GetItem()));
        if (!innermost.isInRun) {
          writer.SetContextState(runGoesOn ? CXmlWriter::ContextState::CollectionPending
                                           : CXmlWriter::ContextState::CollectionEnded);
        }
        innermost.isInRun = runGoesOn;
      }
      // A derived class may write itself in its own way; the plain ones need no call for every
      // level.
      if (typeid(child) == typeid(CElement) && !child.m_raw) {
        start(child);
      } else {
        child.ToXml_Int(&writer, false, innermost.element->m_scope->namespaceUri.c_str(), context,
                        false);
      }
    } else {
      writer.WriteString(innermost.element->m_text, ItemType::string, false);
      writer.WriteEndElement();
      open.pop_back();
    }
  }
}

void CElement::WriteRaw(CXmlTextWriter& outer) const {
  CTextStream stream;
  CXmlTextWriter writer(stream);
  writer.Open();
  writer.SetEOLType(outer.GetEOLType());
  writer.SetFormat(outer.GetFormat());
  writer.SetDefaultNamespace(m_scope->namespaceUri);
  CSerializationContext context;
  context.SetDefaultNamespaceURI(m_scope->namespaceUri.c_str());
  WriteTree(writer, false, context);
  writer.Close();
  outer.CloseParentElm();
  outer.WriteRawElement(stream.CopyText());
}

// NOLINTEND(misc-no-recursion)

CAttribute::CAttribute(CTextRef name, CTextRef value, CTextRef namespaceUri)
    : m_value(value), m_namespaceUri(namespaceUri) {
  SetElementName(name);
}

CAttribute::~CAttribute() = default;

void CAttribute::ToXml_Int(CXmlWriter* writer, bool /*isDocumentRoot*/,
                           const char* /*namespaceUri*/, const CSerializationContext& /*context*/,
                           bool /*isOptionalChoice*/) const {
  writer->WriteAttributeString(GetName(), m_namespaceUri, m_value, ItemType::string);
}

CXmlElement* CAttribute::FromXml_Int(CXmlElement* /*parentElement*/,
                                     CXmlElement* /*firstChildElement*/,
                                     const CSerializationContext& /*context*/,
                                     bool /*isOptionalChoice*/) {
  ThrowReadByCollection();
}

CSmartPtr<CAttribute> CAttribute::Clone() const {
  return new CAttribute(GetName(), m_value, m_namespaceUri);
}

void CAttribute::SetValue(const char* value) {
  m_value = CTextRef(value);
}

void CAttribute::SetNamespace(const char* namespaceUri) {
  m_namespaceUri = CTextRef(namespaceUri);
}

}  // namespace ZuXmlLib16
