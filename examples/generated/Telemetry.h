#pragma once

#include "ZuXmlLib16.h"

/// The types of bench/telemetry.xsd. A document holds samples; a sample collections of values.
namespace telemetry {

using namespace ZuXmlLib16;

inline constexpr const char* kNamespace = "urn:bench:telemetry";

class CSample : public CXmlDescribedClass<CSample> {
 public:
  explicit CSample(const char* elementName = "sample");

  /// Without a type as long as nobody has set it.
  const CDateTime& GetT() const { return m_t; }
  void SetT(const CDateTime& value) { m_t = value; }
  /// Measured values, at least one.
  const CSmartPtr<Cr8Col>& GetV() const { return m_v; }
  /// Counters, at least one.
  const CSmartPtr<Ci4Col>& GetN() const { return m_n; }
  /// Switches, at least one.
  const CSmartPtr<CbooleanCol>& GetOk() const { return m_ok; }
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kT, kV, kN, kOk };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  CDateTime m_t;
  CSmartPtr<Cr8Col> m_v;
  CSmartPtr<Ci4Col> m_n;
  CSmartPtr<CbooleanCol> m_ok;
};

/// The document element.
class CTelemetry : public CXmlDescribedClass<CTelemetry> {
 public:
  explicit CTelemetry(const char* elementName = "telemetry");

  const CSmartPtr<CXmlClassCol<CSample>>& GetSample() const { return m_sample; }
  void Clear() { m_sample->Clear(); }
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kSample };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  CSmartPtr<CXmlClassCol<CSample>> m_sample;
};

}  // namespace telemetry
