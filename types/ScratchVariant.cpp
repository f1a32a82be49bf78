#include "types/ScratchVariant.h"

#include <cstddef>
#include <memory>
#include <utility>

#include "types/VariantAccess.h"

namespace ZuXmlLib16::detail {
namespace {

/// One variant for every item type; the last one serves for what is none.
constexpr std::size_t kCount = static_cast<std::size_t>(ItemType::XmlCollection) + 2;
using Kept = std::array<ZuVariant, kCount>;

__attribute__((tls_model("initial-exec"))) thread_local Kept* kept = nullptr;
__attribute__((tls_model("initial-exec"))) thread_local bool isThreadEnding = false;

void MakeKept() {
  struct Owner {
    std::unique_ptr<Kept> variants = std::make_unique<Kept>();
    ~Owner() {
      kept = nullptr;
      isThreadEnding = true;
    }
  };
  static thread_local Owner owner;
  kept = owner.variants.get();
}

ZuVariant* KeptFor(ItemType type) {
  if (kept == nullptr) {
    if (isThreadEnding) return nullptr;
    MakeKept();
  }
  const auto index = static_cast<std::size_t>(type);
  return &(*kept)[index < kCount ? index : kCount - 1];
}

}  // namespace

ScratchVariant::ScratchVariant(ItemType type) : m_kept(KeptFor(type)) {
  if (m_kept != nullptr) m_variant = std::move(*m_kept);
}

ScratchVariant::~ScratchVariant() {
  if (m_kept == nullptr) return;
  VariantAccess::Vacate(m_variant);
  *m_kept = std::move(m_variant);
}

}  // namespace ZuXmlLib16::detail
