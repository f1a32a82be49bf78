#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ZuXmlLib16::detail {

/// A namespace that a document declares.
struct NamespaceName {
  explicit NamespaceName(std::string_view name) : text(name) {}

  std::string text;
  unsigned int index = 0;  ///< in the document's table, 0 while it is not there
};

/// A prefix that a document declares; the empty one stands for the default namespace.
struct NamespacePrefix {
  explicit NamespacePrefix(std::string_view prefix) : text(prefix) {}

  std::string_view Namespace() const { return bound != nullptr ? bound->text : std::string_view(); }

  std::string text;
  unsigned int index = 0;                ///< in the document's table, 0 while it is not there
  const NamespaceName* bound = nullptr;  ///< by the innermost declaration; null for none, or ""
  std::uint64_t user = 0;  ///< the element that declares it or whose names use it, the last one
};

/// The declarations that a document holds so far, as opposed to those that its writer was told of:
/// a name needs one that really stands on its element or around it.
class DeclaredPrefixes {
 public:
  DeclaredPrefixes();

  /// Begins an element.
  void Enter() { ++m_element; }
  /// Ends the element at a depth: what was bound before is bound again.
  /// @return whether that changes anything.
  bool Leave(std::uint64_t depth) {
    const bool hasDeclared = !m_undo.empty() && m_undo.back().depth >= depth;
    if (hasDeclared) Restore(depth);
    return hasDeclared;
  }

  NamespacePrefix& Find(std::string_view prefix);
  NamespaceName& FindNamespace(std::string_view namespaceUri) {
    return m_namespaces.FindOrAdd(namespaceUri);
  }

  enum class Outcome {
    Bound,    ///< by a declaration that stands already
    Unbound,  ///< a declaration is needed
    Taken,    ///< the element uses the prefix for another namespace
  };
  /// Makes the element use the prefix as it is bound.
  void Use(NamespacePrefix& prefix) const { prefix.user = m_element; }
  /// The same for a namespace, if it is bound to that.
  Outcome Use(NamespacePrefix& prefix, std::string_view namespaceUri) const {
    if (prefix.Namespace() != namespaceUri) {
      return prefix.user == m_element ? Outcome::Taken : Outcome::Unbound;
    }
    Use(prefix);
    return Outcome::Bound;
  }
  /// @param name   null for the empty namespace.
  /// @param depth  of the element.
  void Declare(NamespacePrefix& prefix, const NamespaceName* name, std::uint64_t depth);

 private:
  template <class Entry>
  class Registry {
   public:
    Entry& FindOrAdd(std::string_view text);

   private:
    std::deque<Entry> m_entries;
    std::map<std::string_view, Entry*> m_index;  // ordered: nobody can choose texts that collide
  };
  struct Undo {
    NamespacePrefix* prefix;
    const NamespaceName* bound;
    std::uint64_t depth;
  };

  void Restore(std::uint64_t depth);

  Registry<NamespacePrefix> m_prefixes;
  Registry<NamespaceName> m_namespaces;
  NamespacePrefix* m_last = nullptr;  // found last
  std::vector<Undo> m_undo;
  std::uint64_t m_element = 0;
};

}  // namespace ZuXmlLib16::detail
