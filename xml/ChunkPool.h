#pragma once

#include <cstddef>

namespace ZuXmlLib16::detail {

/// A large block of memory.
struct Chunk {
  char* memory = nullptr;
  std::size_t size = 0;
};

/// Memory from the system comes in pages of 4 KB, and filling fresh ones costs more than building
/// what goes into them. So chunks of 2 MB and more are mapped in huge pages, and a few chunks that
/// were given back are kept for the next taker: 16 MB a process, and up to 256 MB that the system
/// may take back when it needs memory. Safe for any thread, also before and after main.
///
/// @return a chunk of at least sizeInBytes; the contents are undefined.
/// @throws std::bad_alloc
Chunk TakeChunk(std::size_t sizeInBytes);
void GiveChunk(const Chunk& chunk) noexcept;

/// Maps memory aligned to 2 MB, in huge pages if wanted and possible; sizeInBytes is a multiple of
/// 2 MB.
/// @throws std::bad_alloc
char* MapAligned(std::size_t sizeInBytes, bool inHugePages);
void Unmap(char* memory, std::size_t sizeInBytes) noexcept;

/// Keep the pool still while the process forks.
void LockChunkPool();
void UnlockChunkPool();

constexpr std::size_t kHugePage = std::size_t{2} << 20;

}  // namespace ZuXmlLib16::detail
