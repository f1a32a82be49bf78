#include "examples/generated/Telemetry.h"

namespace telemetry {

using namespace ZuXmlLib16Data;

namespace {

const CGeneratorVersion kGeneratorVersion(16, 1);

enum ClassIdentifier : int { kSampleClass };

CSmartPtr<CXmlObjectBase> MakeObject(int classIdentifier, const char* elementName) {
  if (classIdentifier == kSampleClass) return new CSample(elementName);
  return nullptr;
}

/// A collection of at least one value, without facets.
template <class Collection>
Collection* MakeCollection(const char* name) {
  return new Collection(name, kNamespace, 1, -1, "", -1, -1, "", "", "", "", -1, -1, -1,
                        WhitespaceRule::Collapse, "");
}

bool IsSet(const CDateTime& value) {
  return value.GetType() != CDateTime::DTType::dt_yearZero;
}

[[noreturn]] void ThrowUnknownProperty() {
  throw CZuInvalidParamException("Index out of range");
}

/// Collections are filled, never replaced.
void GetCollection(CXmlCollectionBase* collection, bool read, ZuVariant& value) {
  if (!read) ThrowUnknownProperty();
  value.SetXmlCollection(collection);
}

}  // namespace

// CSample

CSample::CSample(const char* elementName)
    : m_v(MakeCollection<Cr8Col>("v")),
      m_n(MakeCollection<Ci4Col>("n")),
      m_ok(MakeCollection<CbooleanCol>("ok")) {
  SetElementName(elementName);
}

void CSample::Clear() {
  m_t.Clear();
  m_v->Clear();
  m_n->Clear();
  m_ok->Clear();
}

void CSample::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kT:
      if (!read) return SetT(value.GetDateTime());
      if (IsSet(m_t)) value.SetDateTime(m_t);
      return;
    case kV:
      return GetCollection(m_v.Get(), read, value);
    case kN:
      return GetCollection(m_n.Get(), read, value);
    case kOk:
      return GetCollection(m_ok.Get(), read, value);
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& CSample::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Sample",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqPrimCol("v", kNamespace, kV),
       new CElementInfoSeqPrimCol("n", kNamespace, kN),
       new CElementInfoSeqPrimCol("ok", kNamespace, kOk)},
      {new CAttributeInfoPrimitive("t", "", kT, false, ItemType::datetime, "",
                                   WhitespaceRule::Collapse, {}, "")});
  return metaData;
}

// CTelemetry

CTelemetry::CTelemetry(const char* elementName)
    : m_sample(new CXmlClassCol<CSample>("sample", kNamespace, 0, -1, XmlElementType::Element,
                                         MakeObject, kSampleClass)) {
  SetElementName(elementName);
}

void CTelemetry::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  if (propertyIndex != kSample) ThrowUnknownProperty();
  GetCollection(m_sample.Get(), read, value);
}

const CClassMetaData& CTelemetry::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Telemetry",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqClsCol("sample", kNamespace, kSample, XmlElementType::Element)}, {});
  return metaData;
}

}  // namespace telemetry
