#include "xml/Arena.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <new>
#include <utility>

namespace ZuXmlLib16::detail {
namespace {

constexpr std::size_t kFirstChunk = std::size_t{16} << 10;
constexpr std::size_t kHugePage = std::size_t{2} << 20;

/// Memory in huge pages, aligned to them: filling fresh memory in pages of 4 KB costs more than
/// building the nodes in it.
char* MapHugePages(std::size_t size) {
  constexpr int kProtection = PROT_READ | PROT_WRITE;
  void* const mapped =
      mmap(nullptr, size + kHugePage, kProtection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  char* const start = static_cast<char*>(mapped);
  const std::size_t before =
      (kHugePage - reinterpret_cast<std::uintptr_t>(start) % kHugePage) % kHugePage;
  if (before > 0) munmap(start, before);
  if (before < kHugePage) munmap(start + before + size, kHugePage - before);
  madvise(start + before, size, MADV_HUGEPAGE);  // advice: works without, only slower
  return start + before;
}

ArenaChunk NewChunk(std::size_t size) {
  if (size >= kHugePage) {
    size = (size + kHugePage - 1) / kHugePage * kHugePage;
    return {MapHugePages(size), size};
  }
  char* const memory = static_cast<char*>(std::malloc(size));
  if (memory == nullptr) throw std::bad_alloc();
  return {memory, size};
}

void FreeChunk(const ArenaChunk& chunk) {
  if (chunk.size >= kHugePage) {
    munmap(chunk.memory, chunk.size);
  } else {
    std::free(chunk.memory);
  }
}

/// Chunks of past documents for those to come: fresh memory from the system is slow. Never
/// destroyed, so that documents may outlive every static object.
class ChunkPool {
 public:
  ArenaChunk Take(std::size_t size) {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      const auto kept = std::find_if(m_chunks.begin(), m_chunks.end(),
                                     [&](const ArenaChunk& chunk) { return chunk.size == size; });
      if (kept != m_chunks.end()) {
        m_total -= size;
        return std::exchange(*kept, {});
      }
    }
    return NewChunk(size);
  }

  void Give(const ArenaChunk& chunk) {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      const auto free = std::find_if(m_chunks.begin(), m_chunks.end(),
                                     [](const ArenaChunk& kept) { return kept.size == 0; });
      if (free != m_chunks.end() && chunk.size <= kHugePage && m_total + chunk.size <= kMostKept) {
        m_total += chunk.size;
        *free = chunk;
        return;
      }
    }
    FreeChunk(chunk);
  }

 private:
  static constexpr std::size_t kMostKept = 8 * kHugePage;

  std::mutex m_mutex;
  std::array<ArenaChunk, 64> m_chunks{};
  std::size_t m_total = 0;
};

ChunkPool chunkPool;

}  // namespace

void Arena::AddChunk(std::size_t atLeast) {
  // Doubles up to one huge page, so that at most that much stays unused.
  const std::size_t size = std::clamp(m_total, kFirstChunk, kHugePage);
  m_chunks.emplace_back();
  m_chunks.back() = chunkPool.Take(std::max(size, atLeast));
  m_next = m_chunks.back().memory;
  m_end = m_next + m_chunks.back().size;
  m_total += m_chunks.back().size;
}

void Arena::DropLastChunk() {
  m_total -= m_chunks.back().size;
  if (m_chunks.back().size > 0) chunkPool.Give(m_chunks.back());
  m_chunks.pop_back();
}

void Arena::RewindTo(const void* piece) {
  const auto isIn = [&](const ArenaChunk& chunk) {
    const std::less<const void*> before;
    return !before(piece, chunk.memory) && before(piece, chunk.memory + chunk.size);
  };
  while (!m_chunks.empty() && !isIn(m_chunks.back())) {
    DropLastChunk();
  }
  if (m_chunks.empty()) return Clear();
  const ArenaChunk& last = m_chunks.back();
  m_next = last.memory + (static_cast<const char*>(piece) - last.memory);
  m_end = last.memory + last.size;
}

void Arena::Clear() {
  while (!m_chunks.empty()) {
    DropLastChunk();
  }
  m_next = m_end = nullptr;
}

}  // namespace ZuXmlLib16::detail
