#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

/// The facets of a simple type (XML Schema Part 2, 4.3). Bounds are kept as text and read at every
/// check, as values of the type that is checked.
class ZUXMLLIB16_API CPrimitiveRestrictions {
 public:
  /// An empty text or a negative number: the facet is not set.
  CPrimitiveRestrictions(CTextRef pattern, std::int64_t minLength, std::int64_t maxLength,
                         CTextRef minInclusive, CTextRef maxInclusive, CTextRef minExclusive,
                         CTextRef maxExclusive, std::int64_t length, std::int64_t totalDigits,
                         std::int64_t fractionDigits);
  CPrimitiveRestrictions(const CPrimitiveRestrictions&) = default;
  CPrimitiveRestrictions(CPrimitiveRestrictions&&) = default;
  CPrimitiveRestrictions& operator=(const CPrimitiveRestrictions&) = default;
  CPrimitiveRestrictions& operator=(CPrimitiveRestrictions&&) = default;
  virtual ~CPrimitiveRestrictions();

  /// Whether any facet is set.
  bool HasFacets() const { return m_hasFacets; }

  /// An XML Schema regular expression in the local character set.
  const std::string& GetPattern() const { return m_pattern; }
  std::int64_t GetMinLength() const { return m_minLength; }
  std::int64_t GetMaxLength() const { return m_maxLength; }
  const std::string& GetMinInclusive() const { return m_minInclusive; }
  const std::string& GetMaxInclusive() const { return m_maxInclusive; }
  const std::string& GetMinExclusive() const { return m_minExclusive; }
  const std::string& GetMaxExclusive() const { return m_maxExclusive; }
  std::int64_t GetLength() const { return m_length; }
  std::int64_t GetTotalDigits() const { return m_totalDigits; }
  std::int64_t GetFractionDigits() const { return m_fractionDigits; }

 private:
  std::string m_pattern;
  std::int64_t m_minLength;
  std::int64_t m_maxLength;
  std::string m_minInclusive;
  std::string m_maxInclusive;
  std::string m_minExclusive;
  std::string m_maxExclusive;
  std::int64_t m_length;
  std::int64_t m_totalDigits;
  std::int64_t m_fractionDigits;
  bool m_hasFacets;
};

}  // namespace ZuXmlLib16
