#pragma once

#include <string>
#include <vector>

#include "ZuXmlLib16/ElementInfo.h"

namespace ZuXmlLib16Data::detail {

/// Which elements some entries may take. Reading that ignores unknown elements steps over all
/// others at once, where it would otherwise try every entry at each of them.
class ElementMatches {
 public:
  explicit ElementMatches(const CSerializationContext& context) : m_context(context) {}

  /// Elements of this name.
  void AddName(const std::string& name, const std::string& namespaceUri);
  void AddEverything() { m_isEverything = true; }
  /// What the entries of a generated class may take; everything, for other objects.
  void AddEntriesOf(const CXmlObjectBase* object);

  /// The first element from element on that may be taken, or null.
  CXmlElement* FirstFrom(CXmlElement* element) const;

 private:
  struct Name {
    std::string name;
    std::string namespaceUri;
  };

  bool MayTake(const CXmlElement& element) const;

  const CSerializationContext& m_context;
  bool m_isEverything = false;
  std::vector<Name> m_names;
  std::vector<CElementInfo* const*> m_tables;  // of the classes whose entries are in
};

}  // namespace ZuXmlLib16Data::detail
