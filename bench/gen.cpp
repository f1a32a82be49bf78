// Writes a benchmark document to the standard output.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "bench/Documents.h"

namespace {

constexpr std::string_view kNonAscii = "--nonascii=";

bool ReadOption(const std::string& argument, bench::DocumentOptions& options) {
  if (argument == "--pretty") {
    options.isPretty = true;
    return true;
  }
  if (argument.compare(0, kNonAscii.size(), kNonAscii) != 0) return false;
  options.nonAsciiPercent =
      static_cast<unsigned>(std::strtoul(argument.c_str() + kNonAscii.size(), nullptr, 10));
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  bench::DocumentOptions options;
  bool isUsable = argc >= 4 && bench::IsDocumentKind(argv[1]);
  for (int i = 4; i < argc && isUsable; ++i) {
    isUsable = ReadOption(argv[i], options);
  }
  if (!isUsable) {
    std::fputs(
        "usage: zuxml_bench_gen KIND BYTES SEED [--pretty] [--nonascii=PERCENT]\n"
        "KIND: orders, telemetry, orders-json, telemetry-json, deep or wide-ns\n",
        stderr);
    return 2;
  }
  options.sizeInBytes = std::strtoull(argv[2], nullptr, 10);
  options.seed = std::strtoull(argv[3], nullptr, 10);
  const std::string document = bench::MakeDocument(argv[1], options);
  const bool isWritten =
      std::fwrite(document.data(), 1, document.size(), stdout) == document.size();
  return isWritten && std::fflush(stdout) == 0 ? 0 : 1;
}
