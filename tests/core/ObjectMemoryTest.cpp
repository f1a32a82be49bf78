#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "core/ObjectMemory.h"
#include "support/PlainObject.h"

namespace ZuXmlLib16 {
namespace {

/// An object filled with one byte, which shows when two objects overlap.
struct Block {
  Block(std::size_t size, unsigned char fill)
      : memory(static_cast<unsigned char*>(detail::AllocateObject(size))),
        sizeInBytes(size),
        content(fill) {
    std::memset(memory, content, sizeInBytes);
  }

  /// Frees the object.
  /// @return whether its bytes were still there, and aligned.
  bool Free() const {
    bool isIntact = reinterpret_cast<std::uintptr_t>(memory) % 16 == 0;
    for (std::size_t i = 0; i < sizeInBytes; ++i)
      isIntact = isIntact && memory[i] == content;
    detail::FreeObject(memory, sizeInBytes);
    return isIntact;
  }

  unsigned char* memory;
  std::size_t sizeInBytes;
  unsigned char content;
};

/// Address space of the process.
std::size_t MappedBytes() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * 4096;
}

TEST(ObjectMemory, IsUsedAgain) {
  constexpr std::size_t kSize = 256;
  std::vector<void*> objects((std::size_t{32} << 20) / kSize);
  const std::size_t before = MappedBytes();
  for (int round = 0; round < 20; ++round) {
    for (void*& object : objects)
      object = detail::AllocateObject(kSize);
    // Every second one first: all slabs stay half full for a while.
    for (const std::size_t first : {0U, 1U}) {
      for (std::size_t i = first; i < objects.size(); i += 2)
        detail::FreeObject(objects[i], kSize);
    }
    for (std::size_t i = 0; i < objects.size(); ++i)
      detail::FreeObject(detail::AllocateObject(kSize), kSize);
  }
  // 1280 MB went through. A sanitizer may hold back 256 MB of freed memory.
  EXPECT_LT(MappedBytes(), before + (std::size_t{400} << 20));
}

TEST(ObjectMemoryThreads, FreeEachOthersObjects) {
  std::mutex mutex;
  std::vector<Block> shared;
  std::atomic<int> damaged{0};
  const auto work = [&](unsigned seed) {
    std::mt19937 random(seed);
    for (int i = 0; i < 10000; ++i) {
      // Up to the sizes that no longer come from slabs.
      const std::size_t size = 1 + random() % (i % 8 == 0 ? 1100 : 300);
      const Block made(size, static_cast<unsigned char>(random()));
      std::unique_lock<std::mutex> lock(mutex);
      shared.push_back(made);
      std::swap(shared[random() % shared.size()], shared.back());
      if (i % 4 == 0) continue;
      const Block other = shared.back();
      shared.pop_back();
      lock.unlock();
      if (!other.Free()) ++damaged;
    }
  };
  std::vector<std::thread> threads;
  for (unsigned seed = 0; seed < 6; ++seed)
    threads.emplace_back(work, seed);
  for (std::thread& thread : threads)
    thread.join();
  for (const Block& block : shared)
    if (!block.Free()) ++damaged;
  EXPECT_EQ(damaged, 0);
}

/// Makes objects when its thread has given up its memory already.
struct LateUser {
  void Touch() {}
  ~LateUser() {
    const CSmartPtr<PlainObject> first(new PlainObject("first"));
    const CSmartPtr<PlainObject> second(new PlainObject("second"));
    EXPECT_EQ(first->GetElementName(), "first");
  }
};

TEST(ObjectMemoryThreads, MayUseItWhileTheyEnd) {
  std::size_t warm = 0;
  for (int i = 0; i < 4000; ++i) {
    if (i == 20) warm = MappedBytes();
    CSmartPtr<PlainObject> survivor;
    std::thread([&] {
      if (i % 2 == 0) {
        static thread_local LateUser lateUser;  // made first, so it goes last
        lateUser.Touch();
      }
      survivor.Reset(new PlainObject("survivor"));
    }).join();
    EXPECT_EQ(survivor->GetElementName(), "survivor");
  }
  // If every second thread kept a slab, of 16 KiB, 32 MB were lost, of which the spare memory of
  // the process covers 16.
  EXPECT_LT(MappedBytes(), warm + (std::size_t{8} << 20));
}

}  // namespace
}  // namespace ZuXmlLib16
