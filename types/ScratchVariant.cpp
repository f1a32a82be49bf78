#include "types/ScratchVariant.h"

#include <array>
#include <cstddef>
#include <memory>

#include "types/VariantAccess.h"

namespace ZuXmlLib16::detail {
namespace {

struct Kept {
  ZuVariant variant;
  bool isInUse = false;
};
/// One for every item type; the last one serves for what is none.
constexpr std::size_t kCount = static_cast<std::size_t>(ItemType::XmlCollection) + 2;
using KeptVariants = std::array<Kept, kCount>;

__attribute__((tls_model("initial-exec"))) thread_local KeptVariants* kept = nullptr;
__attribute__((tls_model("initial-exec"))) thread_local bool isThreadEnding = false;

/// @return null while the thread ends.
[[gnu::noinline]] KeptVariants* MakeKept() {
  struct Owner {
    std::unique_ptr<KeptVariants> variants = std::make_unique<KeptVariants>();
    ~Owner() {
      kept = nullptr;
      isThreadEnding = true;
    }
  };
  if (isThreadEnding) return nullptr;
  static thread_local Owner owner;
  return kept = owner.variants.get();
}

}  // namespace

ScratchVariant::ScratchVariant(ItemType type) {
  KeptVariants* const variants = kept != nullptr ? kept : MakeKept();
  const auto index = static_cast<std::size_t>(type);
  Kept* const one =
      variants != nullptr ? &(*variants)[index < kCount ? index : kCount - 1] : nullptr;
  if (one == nullptr || one->isInUse) {
    m_variant = &m_own.emplace();
    return;
  }
  one->isInUse = true;
  m_isInUse = &one->isInUse;
  m_variant = &one->variant;
}

ScratchVariant::~ScratchVariant() {
  if (m_isInUse == nullptr) return;
  VariantAccess::Vacate(*m_variant);
  *m_isInUse = false;
}

}  // namespace ZuXmlLib16::detail
