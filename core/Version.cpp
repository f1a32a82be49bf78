#include "core/Version.h"

#include <atomic>
#include <cstdio>
#include <string>

#include "ZuXmlLib16/FormatString.h"
#include "ZuXmlLib16/Version.h"
#include "core/Errors.h"

namespace ZuXmlLib16 {
namespace {

// Constant-initialised: generated code declares its version before main.
int generatorMajor = kRuntimeMajor;
int generatorMinor = kRuntimeMinor;
std::atomic<bool> firstCheckDone{false};

bool DoVersionsMatch() {
  return generatorMajor == kRuntimeMajor && generatorMinor == kRuntimeMinor;
}

void WriteBanner() {
  const std::string banner =
      "\n-----------------Version Mismatch-----------------\n"
      "Velmar XML 2018 - Version Mismatch Error\n" +
      FormatString(
          "Please ensure your generated code is the same version as this library (Velmar Runtime: "
          "v%d.%d, Generator: v%d.%d).\n",
          kRuntimeMajor, kRuntimeMinor, generatorMajor, generatorMinor);
  std::fputs(banner.c_str(), stdout);
  std::fflush(stdout);
  std::fputs(banner.c_str(), stderr);
}

}  // namespace

void CheckVersion() {
  if (DoVersionsMatch()) return;
  WriteBanner();
  ThrowWrongVersion(generatorMajor, generatorMinor);
}

void CheckVersionOnce() {
  if (firstCheckDone.load(std::memory_order_relaxed)) return;
  if (!firstCheckDone.exchange(true) && !DoVersionsMatch()) WriteBanner();
}

void CGeneratorVersion::Declare(int major, int minor) noexcept {
  generatorMajor = major;
  generatorMinor = minor;
}

const char* GetRuntimeVersion() {
  static const std::string version = FormatString("%d.%d", kRuntimeMajor, kRuntimeMinor);
  return version.c_str();
}

}  // namespace ZuXmlLib16
