#pragma once

#include <memory>

namespace ZuXmlLib16 {

class CSerializationContext;
class CXmlElement;

namespace detail {

/// What reading that ignores unknown elements has learned of the children of one element: which
/// groups came to nothing although all children behind were looked at. It does not search for them
/// again further on. Otherwise every try would look at all of those children once more, and groups
/// within groups would do so for every try of the outer one.
class GroupSearch {
 public:
  /// Opens the knowledge of parent's children for the thread; that of an outer search goes on when
  /// it is for the same element, which a pseudo element reads from as well. Nothing is kept in
  /// mind unless the context ignores unknown elements.
  GroupSearch(const CXmlElement& parent, const CSerializationContext& context);
  GroupSearch(const GroupSearch&) = delete;
  GroupSearch& operator=(const GroupSearch&) = delete;
  ~GroupSearch();

  /// Notes that nothing from a child on, up to the last, was content.
  /// @param group  tells groups apart, of no other use.
  static void NoteFailure(const void* group, const CXmlElement* from);
  /// Whether that was noted for this child or for one before it.
  static bool IsInVain(const void* group, const CXmlElement* from);

 private:
  struct Knowledge;

  const CXmlElement& m_parent;
  const CSerializationContext& m_context;
  GroupSearch* m_outer;
  std::unique_ptr<Knowledge> m_knowledge;  // null while there is none
};

}  // namespace detail
}  // namespace ZuXmlLib16
