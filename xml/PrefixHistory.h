#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ZuXmlLib16 {

class CXmlElement;

namespace detail {

/// What prefixes stand for at an element, for those that a document declares for more than one
/// namespace. Nothing is kept of any other prefix.
class PrefixHistory {
 public:
  /// A declaration of the element that opens next.
  /// @param before  what the prefix stood for until now.
  void Declare(std::string_view prefix, std::string_view before, std::string_view namespaceUri);
  bool IsEmpty() const { return m_first.empty(); }
  /// Gives the element that opens its declarations. Where it lies, one that is gone may have lain.
  void Open(const CXmlElement* element);
  bool Knows(std::string_view prefix) const { return m_first.find(prefix) != m_first.end(); }
  /// The namespace that a known prefix stands for at an element.
  const std::string& Find(const CXmlElement* element, std::string_view prefix) const;
  void Clear();

 private:
  using Declarations = std::vector<std::pair<std::string, std::string>>;  // prefix, namespace URI

  // What a prefix stands for where no declaration is kept: all were of its first namespace.
  std::map<std::string, std::string, std::less<>> m_first;
  Declarations m_next;  // of the element that opens next
  std::unordered_map<const CXmlElement*, Declarations> m_declarations;
};

}  // namespace detail
}  // namespace ZuXmlLib16
