#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "bench/Harness.h"

namespace bench {

inline constexpr std::size_t kKilobyte = 1000;
inline constexpr std::size_t kMegabyte = 1000 * kKilobyte;

struct Size {
  const char* name;
  std::size_t bytes;
};

/// A document of a kind that bench/Documents.h knows, with the usual options.
std::string MakeDocumentOfSize(const char* kind, std::size_t sizeInBytes);

/// What speeds are ratios to: expat alone, with namespaces and handlers that do nothing.
void ParseOnly(const std::string& document);
Work Parsing(const std::string& document);

/// What the work on a document adds to the memory of the process at its peak. Done by a child,
/// whose peak begins with what it has; on a small document first, so that the code does not count.
double AddedBytesPerByte(const std::string& small, const std::string& document,
                         const std::function<void(const std::string&)>& work);

}  // namespace bench
