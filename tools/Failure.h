#pragma once

#include <string>
#include <utility>

namespace ZuXmlTool {

enum : int { kExitFailure = 1, kExitUsage = 2 };

/// Ends the program with a message on standard error.
struct Failure {
  explicit Failure(std::string text, int status = kExitFailure)
      : message(std::move(text)), exitStatus(status) {}

  std::string message;
  int exitStatus;
};

/// A failed system call: "subject: reason", the reason being that of errno.
Failure SystemFailure(const std::string& subject);

}  // namespace ZuXmlTool
