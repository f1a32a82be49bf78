// The main of a fuzz target that is built without a fuzzer: hands every file of the directories
// (and every file) given as arguments to the target once, in the order of their names. No input at
// all is an error, so that a corpus that got lost is noticed.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesBelow(const fs::path& place) {
  if (!fs::is_directory(place)) return {place};
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(place)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool Replay(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return false;
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return true;
}

int ReplayAll(int count, char** places) {
  std::size_t replayed = 0;
  for (int i = 0; i < count; ++i) {
    for (const fs::path& file : FilesBelow(places[i])) {
      if (!Replay(file)) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return 1;
      }
      ++replayed;
    }
  }
  std::printf("%zu inputs replayed\n", replayed);
  return replayed > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return ReplayAll(argc - 1, argv + 1);
  } catch (const fs::filesystem_error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
