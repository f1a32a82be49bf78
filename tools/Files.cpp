#include "tools/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "tools/Failure.h"

namespace ZuXmlTool {

Failure SystemFailure(const std::string& subject) {
  return Failure(subject + ": " + std::strerror(errno));
}

namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_number > STDERR_FILENO) ::close(m_number);
  }

  int Get() const { return m_number; }
  bool IsOpen() const { return m_number >= 0; }
  /// Closes it, which may report that earlier writes were lost.
  bool Close() { return ::close(std::exchange(m_number, -1)) == 0; }

 private:
  int m_number;
};

/// A new file beside the target, removed again unless it took the target's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string target)
      : m_target(std::move(target)),
        m_path(BesideTarget()),
        m_file(::mkostemp(m_path.data(), O_CLOEXEC)) {
    if (!m_file.IsOpen()) throw SystemFailure("cannot create a file beside " + m_target);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!m_path.empty()) ::unlink(m_path.c_str());
  }

  int Get() const { return m_file.Get(); }

  void TakePlace(mode_t mode) {
    if (::fchmod(m_file.Get(), mode) != 0 || !m_file.Close() ||
        ::rename(m_path.c_str(), m_target.c_str()) != 0) {
      throw SystemFailure(m_target);
    }
    m_path.clear();
  }

 private:
  std::string BesideTarget() const { return m_target + ".XXXXXX"; }

  std::string m_target;
  std::string m_path;
  Descriptor m_file;
};

void WriteTo(int descriptor, const std::string& name, const unsigned char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(descriptor, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      throw SystemFailure(name);
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
}

mode_t ModeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

/// The file that a path means in the end, so that a symbolic link stays one.
std::string Resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real ? real.get() : path;
}

/// Devices, pipes and the like are written to; they cannot be replaced.
void WriteDirectly(const std::string& path, const unsigned char* data, std::size_t size) {
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (!file.IsOpen()) throw SystemFailure(path);
  WriteTo(file.Get(), path, data, size);
  if (!file.Close()) throw SystemFailure(path);
}

void Grow(std::vector<unsigned char>& bytes, std::size_t used) {
  constexpr std::size_t kSmallest = 65536;
  if (used == bytes.size()) bytes.resize(std::max(kSmallest, 2 * used));
}

}  // namespace

Progress::Progress(std::string input)
    : m_input(std::move(input)), m_isTerminal(::isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  Hide();
}

void Progress::Tell(const std::string& message) {
  Hide();
  std::fprintf(stderr, "zuxml: %s: %s\n", m_input.c_str(), message.c_str());
}

void Progress::Hide() {
  if (m_isShown) std::fputs("\r\033[K", stderr);
  m_isShown = false;
}

void Progress::Show(const char* doing, std::size_t sizeInBytes) {
  constexpr std::size_t kMegabyte = 1000000;
  if (!m_isTerminal || sizeInBytes <= 10 * kMegabyte) return;
  std::fprintf(stderr, "\r\033[K%s: %s, %zu MB", m_input.c_str(), doing, sizeInBytes / kMegabyte);
  m_isShown = true;
}

std::vector<unsigned char> ReadAll(const std::string& path, unsigned long limit,
                                   Progress& progress) {
  const bool isStandardInput = path == "-";
  const std::string name = isStandardInput ? "standard input" : path;
  const Descriptor file(isStandardInput ? STDIN_FILENO
                                        : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.IsOpen()) throw SystemFailure(name);

  std::vector<unsigned char> bytes;
  std::size_t used = 0;
  for (;;) {
    Grow(bytes, used);
    const ssize_t got = ::read(file.Get(), bytes.data() + used, bytes.size() - used);
    if (got == 0) break;
    if (got < 0) {
      if (errno == EINTR) continue;
      throw SystemFailure(name);
    }
    used += static_cast<std::size_t>(got);
    if (limit != 0 && used > limit) {
      throw Failure(name + ": larger than the limit of " + std::to_string(limit) + " bytes");
    }
    progress.Show("reading", used);
  }
  bytes.resize(used);
  return bytes;
}

void WriteAll(const std::string& path, const unsigned char* data, std::size_t size) {
  if (path == "-") return WriteTo(STDOUT_FILENO, "standard output", data, size);
  struct stat status = {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) return WriteDirectly(path, data, size);
  if (exists && ::access(path.c_str(), W_OK) != 0) throw SystemFailure(path);

  TemporaryFile file(Resolved(path));
  WriteTo(file.Get(), path, data, size);
  file.TakePlace(exists ? status.st_mode & 07777 : ModeOfNewFiles());
}

}  // namespace ZuXmlTool
