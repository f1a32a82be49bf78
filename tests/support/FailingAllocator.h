#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

#include "ZuXmlLib16/Exceptions.h"

namespace ZuXmlLib16 {

/// Watches what this thread takes with operator new and gives back with operator delete, until the
/// scope ends; on request one allocation fails. One watch at a time.
class AllocationWatch {
 public:
  static constexpr long kNone = -1;

  /// @param failing  index of the allocation that throws std::bad_alloc; those after it succeed.
  explicit AllocationWatch(long failing = kNone);
  AllocationWatch(const AllocationWatch&) = delete;
  AllocationWatch& operator=(const AllocationWatch&) = delete;
  ~AllocationWatch();

  bool HasFailed() const;
  /// Blocks taken less blocks given back.
  long GetUnfreed() const;
  /// Bytes of the largest block asked for.
  std::size_t GetLargest() const;
};

/// Runs an attempt again and again, with its first, second, third... allocation failing. The
/// failure must come out as an exception and leak nothing, and then the same objects must still do
/// their work.
/// @tparam Attempt  holds the objects; its operator() works on them and returns a std::string.
template <class Attempt>
void FailEveryAllocationOf() {
  const std::string expected = Attempt{}();  // makes what is made once, too
  bool hasFailed = true;
  for (long index = 0; hasFailed && !testing::Test::HasFailure(); ++index) {
    SCOPED_TRACE("failing allocation " + std::to_string(index));
    const AllocationWatch watch(index);
    bool hasThrown = true;
    try {
      Attempt attempt;
      try {
        EXPECT_EQ(attempt(), expected);
        hasThrown = false;
      } catch (...) {
        EXPECT_EQ(attempt(), expected) << "after the failure";
        throw;
      }
    } catch (const std::bad_alloc&) {
    } catch (const CZuException&) {
    }
    hasFailed = watch.HasFailed();
    EXPECT_EQ(hasThrown, hasFailed);
    EXPECT_EQ(watch.GetUnfreed(), 0);
  }
}

}  // namespace ZuXmlLib16
