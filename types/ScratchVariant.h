#pragma once

#include <array>

#include "ZuXmlLib16/Variant.h"

namespace ZuXmlLib16::detail {

/// An invalid variant that has the memory of an earlier value of its type, so that many values in a
/// row need none anew. Every thread keeps such memory; one that is in use belongs to its user.
class ScratchVariant {
 public:
  explicit ScratchVariant(ItemType type);
  ScratchVariant(const ScratchVariant&) = delete;
  ScratchVariant& operator=(const ScratchVariant&) = delete;
  ~ScratchVariant();

  ZuVariant& operator*() { return m_variant; }
  ZuVariant* operator->() { return &m_variant; }

 private:
  ZuVariant* m_kept;  // where the memory goes back to; null while the thread ends
  ZuVariant m_variant;
};

}  // namespace ZuXmlLib16::detail
