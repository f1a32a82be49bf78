#pragma once

#include <optional>

#include "ZuXmlLib16/Variant.h"

namespace ZuXmlLib16::detail {

/// An invalid variant that has the memory of an earlier value of its type, so that many values in a
/// row need none anew. Every thread keeps such variants; while one is in use, another that is asked
/// for has no such memory.
class ScratchVariant {
 public:
  explicit ScratchVariant(ItemType type);
  ScratchVariant(const ScratchVariant&) = delete;
  ScratchVariant& operator=(const ScratchVariant&) = delete;
  ~ScratchVariant();

  ZuVariant& operator*() { return *m_variant; }
  ZuVariant* operator->() { return m_variant; }

 private:
  ZuVariant* m_variant;
  bool* m_isInUse = nullptr;       // of the variant that the thread keeps
  std::optional<ZuVariant> m_own;  // when there is none
};

}  // namespace ZuXmlLib16::detail
