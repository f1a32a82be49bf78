#pragma once

#include <cstddef>
#include <vector>

#include "xml/ChunkPool.h"

namespace ZuXmlLib16::detail {

/// Memory that is handed out in pieces and freed as a whole.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;
  ~Arena() { Clear(); }

  /// @return memory aligned for pointers.
  void* Allocate(std::size_t sizeInBytes) {
    const std::size_t size = (sizeInBytes + sizeof(void*) - 1) & ~(sizeof(void*) - 1);
    if (static_cast<std::size_t>(m_end - m_next) < size) AddChunk(size);
    char* const piece = m_next;
    m_next += size;
    return piece;
  }

  /// Takes back piece and everything that was handed out after it.
  void RewindTo(const void* piece);
  void Clear();

 private:
  void AddChunk(std::size_t atLeast);
  void DropLastChunk();

  char* m_next = nullptr;
  char* m_end = nullptr;
  std::size_t m_total = 0;
  std::vector<Chunk> m_chunks;
};

}  // namespace ZuXmlLib16::detail
