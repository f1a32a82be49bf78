#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace ZuXmlLib16::detail {

enum class InflateStatus {
  NotCompressed,  ///< starts neither as gzip nor as zlib data
  Complete,
  Damaged,  ///< starts as compressed data, but is corrupt, cut off or wants a preset dictionary
};

struct Inflated {
  InflateStatus status = InflateStatus::NotCompressed;
  std::unique_ptr<unsigned char[]> data;  ///< only when complete
  std::size_t length = 0;
  std::string cause;  ///< what is wrong, only when damaged
};

/// Inflates the first gzip or zlib stream in data; what follows it is ignored.
/// @param limit  bytes the result may have, 0 for any number.
/// @throws CZuException  the result is larger than the limit; no more than about that is ever held.
Inflated Inflate(const unsigned char* data, std::size_t length, std::size_t limit);

}  // namespace ZuXmlLib16::detail
