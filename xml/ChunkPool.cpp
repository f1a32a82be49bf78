#include "xml/ChunkPool.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

namespace ZuXmlLib16::detail {
namespace {

Chunk NewChunk(std::size_t size) {
  if (size >= kHugePage) {
    size = (size + kHugePage - 1) / kHugePage * kHugePage;
    return {MapAligned(size, true), size};
  }
  char* const memory = static_cast<char*>(std::malloc(size));
  if (memory == nullptr) throw std::bad_alloc();
  return {memory, size};
}

void FreeChunk(const Chunk& chunk) noexcept {
  if (chunk.size >= kHugePage) {
    Unmap(chunk.memory, chunk.size);
  } else {
    std::free(chunk.memory);
  }
}

/// Trivially destructible: documents may outlive every static object.
struct Pool {
  static constexpr std::size_t kLeastKept = 4096;  // bytes of a chunk
  static constexpr std::size_t kMostKept = 8 * kHugePage;
  static constexpr std::size_t kMostReclaimable = 128 * kHugePage;

  bool Keep(const Chunk& chunk) noexcept;

  std::mutex mutex;
  std::array<Chunk, 256> chunks{};
  std::size_t total = 0;
};

Pool pool;

bool Pool::Keep(const Chunk& chunk) noexcept {
  if (chunk.size < kLeastKept || chunk.size > kHugePage) return false;
  const bool isReclaimable = total + chunk.size > kMostKept;
  if (isReclaimable && (chunk.size < kHugePage || total + chunk.size > kMostReclaimable))
    return false;
  const auto free =
      std::find_if(chunks.begin(), chunks.end(), [](const Chunk& kept) { return kept.size == 0; });
  if (free == chunks.end()) return false;
  // The system may take what is beyond the first megabytes whenever it needs memory.
  if (isReclaimable && madvise(chunk.memory, chunk.size, MADV_FREE) != 0) return false;
  total += chunk.size;
  *free = chunk;
  return true;
}

}  // namespace

char* MapAligned(std::size_t sizeInBytes, bool inHugePages) {
  constexpr int kProtection = PROT_READ | PROT_WRITE;
  void* const mapped =
      mmap(nullptr, sizeInBytes + kHugePage, kProtection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  char* const start = static_cast<char*>(mapped);
  const std::size_t tooMuch = reinterpret_cast<std::uintptr_t>(start) % kHugePage;
  const std::size_t before = tooMuch > 0 ? kHugePage - tooMuch : 0;
  if (before > 0) munmap(start, before);
  if (before < kHugePage) munmap(start + before + sizeInBytes, kHugePage - before);
  if (inHugePages) madvise(start + before, sizeInBytes, MADV_HUGEPAGE);  // advice only
  return start + before;
}

void Unmap(char* memory, std::size_t sizeInBytes) noexcept {
  munmap(memory, sizeInBytes);
}

Chunk TakeChunk(std::size_t sizeInBytes) {
  {
    const std::lock_guard<std::mutex> lock(pool.mutex);
    const auto kept = std::find_if(pool.chunks.begin(), pool.chunks.end(),
                                   [&](const Chunk& chunk) { return chunk.size == sizeInBytes; });
    if (kept != pool.chunks.end()) {
      pool.total -= kept->size;
      return std::exchange(*kept, {});
    }
  }
  return NewChunk(sizeInBytes);
}

void GiveChunk(const Chunk& chunk) noexcept {
  {
    const std::lock_guard<std::mutex> lock(pool.mutex);
    if (pool.Keep(chunk)) return;
  }
  FreeChunk(chunk);
}

}  // namespace ZuXmlLib16::detail
