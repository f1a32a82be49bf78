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
  Chunk Find(std::size_t size) noexcept;

  struct KeptChunk {
    Chunk chunk;
    bool isReclaimable = false;
  };

  std::mutex mutex;
  std::array<KeptChunk, 256> chunks{};
  std::size_t total = 0;
  std::size_t reclaimable = 0;
};

Pool pool;

bool Pool::Keep(const Chunk& chunk) noexcept {
  if (chunk.size < kLeastKept || chunk.size > kHugePage) return false;
  const auto free = std::find_if(chunks.begin(), chunks.end(),
                                 [](const KeptChunk& kept) { return kept.chunk.size == 0; });
  if (free == chunks.end()) return false;
  if (total + chunk.size <= kMostKept) {
    total += chunk.size;
    *free = {chunk, false};
    return true;
  }
  // The system may take what is beyond the first megabytes whenever it needs memory.
  if (chunk.size < kHugePage || reclaimable + chunk.size > kMostReclaimable) return false;
  if (madvise(chunk.memory, chunk.size, MADV_FREE) != 0) return false;
  reclaimable += chunk.size;
  *free = {chunk, true};
  return true;
}

Chunk Pool::Find(std::size_t size) noexcept {
  const auto kept = std::find_if(chunks.begin(), chunks.end(), [&](const KeptChunk& candidate) {
    return candidate.chunk.size == size;
  });
  if (kept == chunks.end()) return {};
  (kept->isReclaimable ? reclaimable : total) -= size;
  return std::exchange(*kept, {}).chunk;
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
    const Chunk kept = pool.Find(sizeInBytes);
    if (kept.memory != nullptr) return kept;
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

void LockChunkPool() {
  pool.mutex.lock();
}

void UnlockChunkPool() {
  pool.mutex.unlock();
}

}  // namespace ZuXmlLib16::detail
