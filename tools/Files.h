#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ZuXmlTool {

/// What a run tells on standard error: a line about what it is doing, for large inputs and only
/// when that is a terminal, which is gone when the object goes; and messages.
class Progress {
 public:
  explicit Progress(std::string input);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void Show(const char* doing, std::size_t sizeInBytes);
  /// Prints a message about the input.
  void Tell(const std::string& message);

 private:
  void Hide();

  std::string m_input;
  bool m_isTerminal;
  bool m_isShown = false;
};

/// Reads a file, or standard input for "-".
/// @param limit  most bytes to take, 0 for any number.
/// @throws Failure  when it cannot be read or is larger.
std::vector<unsigned char> ReadAll(const std::string& path, unsigned long limit,
                                   Progress& progress);

/// Writes a file, or standard output for "-". A regular file is replaced in one step when all is
/// written and keeps its permissions; on failure what was there before stays.
/// @throws Failure
void WriteAll(const std::string& path, const unsigned char* data, std::size_t size);

}  // namespace ZuXmlTool
