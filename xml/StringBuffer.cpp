#include <algorithm>
#include <utility>

#include "ZuXmlLib16/Streams.h"
#include "xml/ChunkPool.h"

namespace ZuXmlLib16 {
namespace {

constexpr std::size_t kDefaultBlockSize = 4096;
constexpr std::size_t kSmallestBlockSize = 2;
constexpr std::size_t kLargestGrowth = (std::size_t{1} << 20) - 1;

}  // namespace

CStringBuffer::CStringBuffer() : CStringBuffer(kDefaultBlockSize) {}

CStringBuffer::CStringBuffer(std::size_t blockSize)
    : CInstanceMonitor("CStringBuffer"),
      m_blockCapacity(std::max(blockSize, kSmallestBlockSize) - 1) {}

CStringBuffer::~CStringBuffer() = default;

void CStringBuffer::FreeBlock::operator()(char* text) const {
  detail::GiveChunk({text, size});
}

void CStringBuffer::SetText(const char* text) {
  const std::vector<Block> old = std::move(m_blocks);  // the text may lie in them
  Clear();
  Append(text);
}

const char* CStringBuffer::GetText() const {
  if (m_blocks.empty()) return "";
  if (m_blocks.size() > 1) JoinBlocks();
  *m_next = '\0';
  return m_start;
}

std::string CStringBuffer::CopyText() const {
  std::string text;
  CopyTo(text);
  return text;
}

void CStringBuffer::CopyTo(std::string& out) const {
  out.reserve(out.size() + GetLength());
  ForEachBlock([&out](const char* text, std::size_t length) { out.append(text, length); });
}

void CStringBuffer::CopyTo(char* out) const {
  ForEachBlock([&out](const char* text, std::size_t length) {
    std::memcpy(out, text, length);
    out += length;
  });
}

void CStringBuffer::Empty() {
  if (m_blocks.size() == 1) {
    m_next = m_start;
  } else {
    Clear();
  }
}

void CStringBuffer::Clear() {
  m_blocks.clear();
  m_start = m_next = m_end = nullptr;
  m_lengthBefore = 0;
}

void CStringBuffer::AddBlock() {
  // Later blocks are larger, so that a long text has few.
  m_blocks.push_back(NewBlock(std::max(m_blockCapacity, std::min(GetLength(), kLargestGrowth))));
  m_lengthBefore += Used();
  WriteInto(m_blocks.back(), 0);
}

void CStringBuffer::AppendAcrossBlocks(const char* text, std::size_t length) {
  while (length > 0) {
    if (Left() == 0) AddBlock();
    const std::size_t piece = std::min(length, Left());
    std::memcpy(m_next, text, piece);
    m_next += piece;
    text += piece;
    length -= piece;
  }
}

void CStringBuffer::JoinBlocks() const {
  const std::size_t length = GetLength();
  Block joined = NewBlock(length);
  CopyTo(joined.text.get());
  m_blocks.resize(1);
  m_blocks.front() = std::move(joined);
  m_lengthBefore = 0;
  WriteInto(m_blocks.front(), length);
}

CStringBuffer::Block CStringBuffer::NewBlock(std::size_t capacity) {
  // Not zeroed: the terminator is put when the text is asked for.
  const detail::Chunk chunk = detail::TakeChunk(capacity + 1);
  return {std::unique_ptr<char, FreeBlock>(chunk.memory, FreeBlock{chunk.size}), capacity};
}

void CStringBuffer::WriteInto(const Block& block, std::size_t used) const {
  m_start = block.text.get();
  m_next = m_start + used;
  m_end = m_start + block.capacity;
}

template <class Sink>
void CStringBuffer::ForEachBlock(Sink sink) const {
  if (m_blocks.empty()) return;
  for (std::size_t i = 0; i + 1 < m_blocks.size(); ++i) {
    sink(m_blocks[i].text.get(), m_blocks[i].capacity);
  }
  sink(m_start, Used());
}

}  // namespace ZuXmlLib16
