#include "support/FailingAllocator.h"

#include <algorithm>
#include <cstdlib>

namespace ZuXmlLib16 {
namespace {

struct Watched {
  bool isOn;
  bool hasFailed;
  long left;  // allocations before the one that fails
  long unfreed;
  std::size_t largest;
};
thread_local Watched watched;

void* Allocate(std::size_t size) {
  if (watched.isOn) {
    watched.largest = std::max(watched.largest, size);
    if (watched.left-- == 0) {
      watched.hasFailed = true;
      throw std::bad_alloc();
    }
  }
  void* const block = std::malloc(std::max<std::size_t>(size, 1));
  if (block == nullptr) throw std::bad_alloc();
  ++watched.unfreed;
  return block;
}

void Free(void* block) noexcept {
  if (block != nullptr) --watched.unfreed;
  std::free(block);
}

}  // namespace

AllocationWatch::AllocationWatch(long failing) {
  watched = {true, false, failing, 0, 0};
}

AllocationWatch::~AllocationWatch() {
  watched.isOn = false;
}

bool AllocationWatch::HasFailed() const {
  return watched.hasFailed;
}

long AllocationWatch::GetUnfreed() const {
  return watched.unfreed;
}

std::size_t AllocationWatch::GetLargest() const {
  return watched.largest;
}

}  // namespace ZuXmlLib16

// Those for single objects and for arrays; a sanitizer would otherwise keep its own for the latter.
void* operator new(std::size_t size) {
  return ZuXmlLib16::Allocate(size);
}
void* operator new[](std::size_t size) {
  return ZuXmlLib16::Allocate(size);
}
void operator delete(void* block) noexcept {
  ZuXmlLib16::Free(block);
}
void operator delete[](void* block) noexcept {
  ZuXmlLib16::Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  ZuXmlLib16::Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  ZuXmlLib16::Free(block);
}
