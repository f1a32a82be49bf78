#pragma once

#include <utility>
#include <vector>

#include "ZuXmlLib16/UntypedContent.h"

namespace ZuXmlLib16 {

inline bool HasSameAttributes(const CElement& a, const CElement& b) {
  const CSmartPtr<CAttributeCol> left = a.GetAttributes();
  const CSmartPtr<CAttributeCol> right = b.GetAttributes();
  if (left->GetCount() != right->GetCount()) return false;
  auto other = right->begin();
  for (const CAttribute* attribute : *left) {
    if (attribute->GetName() != (*other)->GetName() ||
        attribute->GetNamespace() != (*other)->GetNamespace() ||
        attribute->GetValue() != (*other)->GetValue()) {
      return false;
    }
    ++other;
  }
  return true;
}

/// Whether two untyped trees have the same names, namespaces, texts and attributes, in the same
/// order. Takes time in proportion to their size, and no stack for their depth.
inline bool IsSameTree(const CElement& a, const CElement& b) {
  std::vector<std::pair<const CElement*, const CElement*>> pending{{&a, &b}};
  while (!pending.empty()) {
    const auto [left, right] = pending.back();
    pending.pop_back();
    const CSmartPtr<CElementCol> leftChildren = left->GetElements();
    const CSmartPtr<CElementCol> rightChildren = right->GetElements();
    if (left->GetName() != right->GetName() || left->GetNamespace() != right->GetNamespace() ||
        left->GetText() != right->GetText() || !HasSameAttributes(*left, *right) ||
        leftChildren->GetCount() != rightChildren->GetCount()) {
      return false;
    }
    auto other = rightChildren->begin();
    for (const CElement* child : *leftChildren) {
      pending.emplace_back(child, *other);
      ++other;
    }
  }
  return true;
}

}  // namespace ZuXmlLib16
