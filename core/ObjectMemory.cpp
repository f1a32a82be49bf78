#include "core/ObjectMemory.h"

#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>

#include "xml/ChunkPool.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZUXMLLIB16_PLAIN_OBJECT_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZUXMLLIB16_PLAIN_OBJECT_MEMORY 1
#endif
#endif

namespace ZuXmlLib16::detail {

#ifdef ZUXMLLIB16_PLAIN_OBJECT_MEMORY

namespace {

void BeforeFork() {
  LockChunkPool();
}
void AfterFork() {
  UnlockChunkPool();
}

}  // namespace

// The sanitizer finds misuse of single objects only.
void* AllocateObject(std::size_t sizeInBytes) {
  return ::operator new(sizeInBytes);
}
void FreeObject(void* object, std::size_t /*sizeInBytes*/) noexcept {
  ::operator delete(object);
}

#else

namespace {

constexpr std::size_t kSlabSize = std::size_t{16} << 10;
constexpr std::size_t kLargestObject = 1024;
constexpr std::size_t kSlabsPerRegion =
    kHugePage / kSlabSize - 1;  // the region itself lies in the first
/// What a slab's count holds while a thread still allocates from it.
constexpr std::int64_t kInUse = std::int64_t{1} << 40;

struct Region;

/// Starts every slab; aligned to its size, so that an object finds its slab by its address.
struct Slab {
  std::atomic<std::int64_t> objects;
  Region* region;
  Slab* nextFree;
};

constexpr std::size_t kSlabHeader = (sizeof(Slab) + 15) / 16 * 16;

/// Memory for many slabs, at the start of its mapping.
struct Region {
  std::size_t untouched = 1;  // index of the first slab never handed out
  Slab* free = nullptr;
  std::size_t freeCount = kSlabsPerRegion;
  bool isFirst = false;
  Region* next = nullptr;  // among those that have free slabs
  Region* previous = nullptr;
};

/// Trivially destructible: objects may outlive every static object.
class SlabPool {
 public:
  Slab* Take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_first == nullptr) AddRegion();
    Region& region = *m_first;
    void* memory = region.free;
    if (region.free != nullptr) {
      region.free = region.free->nextFree;
    } else {
      memory = reinterpret_cast<char*>(&region) + region.untouched * kSlabSize;
      ++region.untouched;
    }
    if (--region.freeCount == 0) Unlink(region);
    return new (memory) Slab{{kInUse}, &region, nullptr};
  }

  void Lock() { m_mutex.lock(); }
  void Unlock() { m_mutex.unlock(); }

  void Give(Slab* slab) noexcept {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Region& region = *slab->region;
    slab->nextFree = region.free;
    region.free = slab;
    if (region.freeCount == 0) Link(region);
    if (++region.freeCount < kSlabsPerRegion) return;
    if (region.isFirst) return;
    Unlink(region);
    GiveChunk({reinterpret_cast<char*>(&region), kHugePage});
  }

 private:
  void AddRegion() {
    // The first one stays, and in small pages: a program with few objects shall not pay for a huge
    // one.
    const bool isFirst = !m_hasRegion;
    char* const memory = isFirst ? MapAligned(kHugePage, false) : TakeChunk(kHugePage).memory;
    auto* const region = new (memory) Region;
    region->isFirst = isFirst;
    m_hasRegion = true;
    Link(*region);
  }

  void Link(Region& region) noexcept {
    region.previous = nullptr;
    region.next = m_first;
    if (m_first != nullptr) m_first->previous = &region;
    m_first = &region;
  }

  void Unlink(Region& region) noexcept {
    (region.previous != nullptr ? region.previous->next : m_first) = region.next;
    if (region.next != nullptr) region.next->previous = region.previous;
  }

  std::mutex m_mutex;
  Region* m_first = nullptr;
  bool m_hasRegion = false;
};

SlabPool slabPool;

void BeforeFork() {
  slabPool.Lock();
  LockChunkPool();
}
void AfterFork() {
  UnlockChunkPool();
  slabPool.Unlock();
}

/// The slab that a thread allocates from. Objects are counted here, and into the slab only when it
/// is full.
struct Current {
  Slab* slab;
  char* next;
  char* end;
  std::int64_t allocated;
  bool isThreadEnding;
};
// Small enough for the TLS block of the program, where access costs no call.
__attribute__((tls_model("initial-exec"))) thread_local Current current;

void Retire(Slab* slab, std::int64_t allocated) noexcept {
  const std::int64_t change = kInUse - allocated;
  if (slab->objects.fetch_sub(change, std::memory_order_acq_rel) == change) slabPool.Give(slab);
}

void RetireCurrent() noexcept {
  if (current.slab != nullptr) Retire(current.slab, current.allocated);
  const bool isThreadEnding = current.isThreadEnding;
  current = {};
  current.isThreadEnding = isThreadEnding;
}

struct ThreadEnd {
  bool isRegistered = false;
  ~ThreadEnd() {
    RetireCurrent();
    current.isThreadEnding = true;
  }
};
thread_local ThreadEnd threadEnd;

void StartSlab() {
  threadEnd.isRegistered = true;  // the first use has the destructor called when the thread ends
  RetireCurrent();
  Slab* const slab = slabPool.Take();
  char* const memory = reinterpret_cast<char*>(slab);
  current.slab = slab;
  current.next = memory + kSlabHeader;
  current.end = memory + kSlabSize;
}

}  // namespace

void* AllocateObject(std::size_t sizeInBytes) {
  if (sizeInBytes > kLargestObject) return ::operator new(sizeInBytes);
  const std::size_t size = (sizeInBytes + 15) / 16 * 16;
  if (static_cast<std::size_t>(current.end - current.next) < size) StartSlab();
  char* const object = current.next;
  current.next += size;
  ++current.allocated;
  if (current.isThreadEnding) RetireCurrent();  // nobody would do it later
  return object;
}

void FreeObject(void* object, std::size_t sizeInBytes) noexcept {
  if (object == nullptr) return;
  if (sizeInBytes > kLargestObject) return ::operator delete(object);
  const std::size_t offset = reinterpret_cast<std::uintptr_t>(object) % kSlabSize;
  Slab* const slab = reinterpret_cast<Slab*>(static_cast<char*>(object) - offset);
  if (slab->objects.fetch_sub(1, std::memory_order_acq_rel) == 1) slabPool.Give(slab);
}

#endif

namespace {

// Another thread may hold a lock when the process forks; nobody would open it in the child.
[[maybe_unused]] const int forkHandlers = pthread_atfork(BeforeFork, AfterFork, AfterFork);

}  // namespace

}  // namespace ZuXmlLib16::detail
