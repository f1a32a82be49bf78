#pragma once

namespace ZuXmlLib16 {

// The version of this run time; generated code must come from a generator of the same one.
inline constexpr int kRuntimeMajor = 16;
inline constexpr int kRuntimeMinor = 1;

/// Compares the declared generator version with the run time's.
/// @throws CZuException  when they differ, after the banner was written to standard output and
/// standard error.
void CheckVersion();

/// Writes the banner when the versions differ; only the first call of the process does anything.
void CheckVersionOnce();

}  // namespace ZuXmlLib16
