#include "core/GroupSearch.h"

#include <cstddef>
#include <unordered_map>

#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/XmlDocument.h"

namespace ZuXmlLib16::detail {
namespace {

__attribute__((tls_model("initial-exec"))) thread_local GroupSearch* current = nullptr;

}  // namespace

struct GroupSearch::Knowledge {
  /// Whether both are children of parent, and the first one is not before the second.
  bool IsAtOrBehind(const CXmlElement* element, const CXmlElement* other,
                    const CXmlElement& parent) {
    if (element == other) return true;
    if (m_positions.empty()) {
      std::size_t position = 0;
      for (const CXmlElement* child = parent.GetFirstElement(); child != nullptr;
           child = child->GetNextSiblingElement()) {
        m_positions.emplace(child, position++);
      }
    }
    const auto place = m_positions.find(element);
    const auto otherPlace = m_positions.find(other);
    return place != m_positions.end() && otherPlace != m_positions.end() &&
           place->second >= otherPlace->second;
  }

  std::unordered_map<const void*, const CXmlElement*> failures;  // the earliest of every group

 private:
  // Of the children, found out when the order of two is asked for.
  std::unordered_map<const CXmlElement*, std::size_t> m_positions;
};

GroupSearch::GroupSearch(const CXmlElement& parent, const CSerializationContext& context)
    : m_parent(parent), m_context(context), m_outer(current) {
  if (!context.GetIgnoreUnknownElements()) {
    current = nullptr;
  } else if (current == nullptr || &current->m_parent != &parent ||
             &current->m_context != &context) {
    current = this;
  }
}

GroupSearch::~GroupSearch() {
  current = m_outer;
}

void GroupSearch::NoteFailure(const void* group, const CXmlElement* from) {
  if (current == nullptr || from == nullptr || IsInVain(group, from)) return;
  if (!current->m_knowledge) current->m_knowledge = std::make_unique<Knowledge>();
  current->m_knowledge->failures[group] = from;
}

bool GroupSearch::IsInVain(const void* group, const CXmlElement* from) {
  if (current == nullptr || !current->m_knowledge) return false;
  Knowledge& knowledge = *current->m_knowledge;
  const auto failure = knowledge.failures.find(group);
  return failure != knowledge.failures.end() &&
         knowledge.IsAtOrBehind(from, failure->second, current->m_parent);
}

}  // namespace ZuXmlLib16::detail
