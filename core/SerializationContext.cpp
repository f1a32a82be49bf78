#include "ZuXmlLib16/SerializationContext.h"

#include <mutex>

#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/TextRef.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "core/Errors.h"

namespace ZuXmlLib16 {
namespace {

std::mutex& LazyPartsMutex() {
  static std::mutex mutex;
  return mutex;
}

}  // namespace

CSerializationContext::LazyParts::LazyParts() = default;

CSerializationContext::LazyParts::LazyParts(const LazyParts& other) {
  *this = other;
}

CSerializationContext::LazyParts& CSerializationContext::LazyParts::operator=(
    const LazyParts& other) {
  if (this == &other) return *this;
  LazyParts copy;  // gets the old parts, which go when the lock is free again
  const std::lock_guard<std::mutex> lock(LazyPartsMutex());
  copy.fastInfoset = other.fastInfoset;
  copy.json = other.json;
  copy.additionalRootAttributes = other.additionalRootAttributes;
  fastInfoset.swap(copy.fastInfoset);
  json.swap(copy.json);
  additionalRootAttributes.Swap(copy.additionalRootAttributes);
  return *this;
}

CSerializationContext::LazyParts::~LazyParts() = default;

CSerializationContext::CSerializationContext() = default;
CSerializationContext::CSerializationContext(const CSerializationContext&) = default;
CSerializationContext& CSerializationContext::operator=(const CSerializationContext&) = default;
CSerializationContext::~CSerializationContext() = default;

CFastInfosetContext& CSerializationContext::GetFIContext() const {
  const std::lock_guard<std::mutex> lock(LazyPartsMutex());
  if (!m_lazyParts.fastInfoset) m_lazyParts.fastInfoset = std::make_shared<CFastInfosetContext>();
  return *m_lazyParts.fastInfoset;
}

CJsonContext& CSerializationContext::GetJsonContext() const {
  const std::lock_guard<std::mutex> lock(LazyPartsMutex());
  if (!m_lazyParts.json) m_lazyParts.json = std::make_shared<CJsonContext>();
  return *m_lazyParts.json;
}

CSmartPtr<CAttributeCol> CSerializationContext::GetAdditionalRootAttributes() const {
  const std::lock_guard<std::mutex> lock(LazyPartsMutex());
  if (!m_lazyParts.additionalRootAttributes) {
    m_lazyParts.additionalRootAttributes.Reset(new CAttributeCol("", "##any", ""));
  }
  return m_lazyParts.additionalRootAttributes;
}

const CAttributeCol* CSerializationContext::FindAdditionalRootAttributes() const {
  const std::lock_guard<std::mutex> lock(LazyPartsMutex());
  return m_lazyParts.additionalRootAttributes.Get();
}

void CSerializationContext::SetDefaultNamespaceURI(const char* namespaceUri) {
  m_defaultNamespaceUri = CTextRef(namespaceUri);
}

void CSerializationContext::SetInLineSchema(const char* schema) {
  m_inLineSchema = CTextRef(schema);
}

void CSerializationContext::SetIgnoreMissingMandatoryElements(bool ignore) {
  if (ignore && m_ignoreUnknownElements) {
    ThrowExclusiveIgnoreOptions("IgnoreUnknownElements", "IgnoreMissingMandatoryElements");
  }
  m_ignoreMissingMandatoryElements = ignore;
}

void CSerializationContext::SetIgnoreUnknownElements(bool ignore) {
  if (ignore && m_ignoreMissingMandatoryElements) {
    ThrowExclusiveIgnoreOptions("IgnoreMissingMandatoryElements", "IgnoreUnknownElements");
  }
  m_ignoreUnknownElements = ignore;
}

void CSerializationContext::SetIndentChars(const char* chars) {
  const CTextRef text(chars);
  if (text.find_first_not_of("\t ") != CTextRef::npos) ThrowIndentCharsNotWhitespace();
  m_indentChars = text;
}

}  // namespace ZuXmlLib16
