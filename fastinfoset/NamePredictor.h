#pragma once

#include <string_view>
#include <vector>

#include "fastinfoset/DeclaredPrefixes.h"

namespace ZuXmlLib16::detail {

/// A name of an element or attribute.
struct DocumentName {
  std::string_view localName;
  const NamespacePrefix* prefix = nullptr;  ///< null without a namespace; bound to it otherwise
};

/// Guesses the names of a document: most come in the order in which they came the last time. A
/// guess is tested by comparing it, where finding a name takes two look-ups in tables.
class NamePredictor {
 public:
  /// @return the index of the name, 0 when it is not the one that was expected.
  unsigned long Predict(const DocumentName& name) {
    const unsigned long index = m_known[m_last].next;
    const Known& known = m_known[index];
    if (known.localName != name.localName || known.prefix != name.prefix ||
        (name.prefix != nullptr && known.bound != name.prefix->bound)) {
      return 0;
    }
    m_last = index;
    return index;
  }

  /// Tells the index of a name that was not predicted.
  /// @param localName  the one of the table, which stays.
  void Learn(const DocumentName& name, std::string_view localName, unsigned long index) {
    if (index >= m_known.size()) m_known.resize(index + 1);
    const NamespaceName* const bound = name.prefix != nullptr ? name.prefix->bound : nullptr;
    const unsigned long next = m_known[index].next;
    m_known[index] = {localName, name.prefix, bound, next};
    m_known[m_last].next = index;
    m_last = index;
  }

 private:
  struct Known {
    std::string_view localName;
    const NamespacePrefix* prefix = nullptr;
    const NamespaceName* bound = nullptr;
    unsigned long next = 0;  // the name that came after this one
  };

  // By index. The first one is before all names, and equal to none.
  std::vector<Known> m_known = std::vector<Known>(1);
  unsigned long m_last = 0;
};

}  // namespace ZuXmlLib16::detail
