#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

// The seam to the regular expression library. Exactly one of PatternEnginePcre.cpp and
// PatternEnginePcre2.cpp has a body, chosen by ZUXMLLIB16_USE_PCRE2; both give the same answers.

namespace ZuXmlLib16::detail {

enum class MatchOutcome {
  Match,        ///< the whole subject matches
  NoMatch,      ///< it does not, or it is no valid UTF-8
  LimitHit,     ///< given up before an answer was found
  Unsupported,  ///< this way of matching is not available for the pattern or on this machine
};

/// Memory in which backtracking keeps its way back, so that the stack of the calling thread is not
/// used for it. Used by one match at a time.
struct MatchStack;
struct MatchStackDeleter {
  void operator()(MatchStack* stack) const noexcept;
};
using MatchStackPtr = std::unique_ptr<MatchStack, MatchStackDeleter>;

/// @param maxBytes  limit of growth; memory is taken as it is used.
/// @return null when compiled code cannot run on this machine.
/// @throws std::bad_alloc
MatchStackPtr MakeMatchStack(std::size_t maxBytes);

/// A compiled expression. Used by one thread at a time.
class CompiledPattern {
 public:
  CompiledPattern() = default;
  CompiledPattern(const CompiledPattern&) = delete;
  CompiledPattern& operator=(const CompiledPattern&) = delete;
  virtual ~CompiledPattern() = default;

  /// Runs the pattern as machine code that backtracks: the fast way, but some patterns take
  /// exponential time on some subjects.
  /// @param stepLimit  number of backtracking points passed; each may scan the whole subject.
  /// @param stack      null gives Unsupported.
  virtual MatchOutcome Backtrack(std::string_view subject, unsigned long stepLimit,
                                 MatchStack* stack) = 0;

  /// Follows all alternatives at once, in time proportional to the subject's length times the
  /// square of maxStates at most. Not for patterns with "(?" extensions, such as look-around and
  /// recursion. Gives Unsupported for back references.
  /// @param maxStates  alternatives followed at the same time; more give LimitHit.
  virtual MatchOutcome Simulate(std::string_view subject, std::size_t maxStates) = 0;
};

/// Compiles for UTF-8, anchored at the start, '$' matching only at the very end.
/// @param expression  in UTF-8, up to its first NUL.
/// @return null when the expression cannot be compiled; error then holds the library's reason.
/// @throws std::bad_alloc
std::unique_ptr<CompiledPattern> CompilePattern(const std::string& expression, std::string& error);

}  // namespace ZuXmlLib16::detail
