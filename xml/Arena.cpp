#include "xml/Arena.h"

#include <algorithm>
#include <functional>

namespace ZuXmlLib16::detail {
namespace {

constexpr std::size_t kFirstChunk = std::size_t{16} << 10;

}  // namespace

void Arena::AddChunk(std::size_t atLeast) {
  // Doubles up to one huge page, so that at most that much stays unused.
  const std::size_t size = std::clamp(m_total, kFirstChunk, kHugePage);
  m_chunks.emplace_back();
  m_chunks.back() = TakeChunk(std::max(size, atLeast));
  m_next = m_chunks.back().memory;
  m_end = m_next + m_chunks.back().size;
  m_total += m_chunks.back().size;
}

void Arena::DropLastChunk() {
  m_total -= m_chunks.back().size;
  if (m_chunks.back().size > 0) GiveChunk(m_chunks.back());
  m_chunks.pop_back();
}

void Arena::RewindTo(const void* piece) {
  const auto isIn = [&](const Chunk& chunk) {
    const std::less<const void*> before;
    return !before(piece, chunk.memory) && before(piece, chunk.memory + chunk.size);
  };
  while (!m_chunks.empty() && !isIn(m_chunks.back())) {
    DropLastChunk();
  }
  if (m_chunks.empty()) return Clear();
  const Chunk& last = m_chunks.back();
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
