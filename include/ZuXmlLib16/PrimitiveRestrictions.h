#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

/// The facets of a simple type (XML Schema Part 2, 4.3). Bounds are kept as text and read at every
/// check, as values of the type that is checked.
class ZUXMLLIB16_API CPrimitiveRestrictions {
 public:
  /// No facet is set.
  CPrimitiveRestrictions() noexcept = default;
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
  bool HasFacets() const { return m_facets != nullptr; }

  /// An XML Schema regular expression in the local character set.
  const std::string& GetPattern() const { return Facets().pattern; }
  std::int64_t GetMinLength() const { return Facets().minLength; }
  std::int64_t GetMaxLength() const { return Facets().maxLength; }
  const std::string& GetMinInclusive() const { return Facets().minInclusive; }
  const std::string& GetMaxInclusive() const { return Facets().maxInclusive; }
  const std::string& GetMinExclusive() const { return Facets().minExclusive; }
  const std::string& GetMaxExclusive() const { return Facets().maxExclusive; }
  std::int64_t GetLength() const { return Facets().length; }
  std::int64_t GetTotalDigits() const { return Facets().totalDigits; }
  std::int64_t GetFractionDigits() const { return Facets().fractionDigits; }

 private:
  struct FacetValues {
    std::string pattern;
    std::int64_t minLength = -1;
    std::int64_t maxLength = -1;
    std::string minInclusive;
    std::string maxInclusive;
    std::string minExclusive;
    std::string maxExclusive;
    std::int64_t length = -1;
    std::int64_t totalDigits = -1;
    std::int64_t fractionDigits = -1;
  };

  const FacetValues& Facets() const { return m_facets != nullptr ? *m_facets : NoFacets(); }
  static const FacetValues& NoFacets();

  // Immutable and shared by copies; null when none is set, as in most collections.
  std::shared_ptr<const FacetValues> m_facets;
};

}  // namespace ZuXmlLib16
