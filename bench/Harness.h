#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// Makes the compiler believe that somebody looks at the value.
template <class T>
void Keep(const T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

/// The processor time of this thread, so that what else the machine does is not counted.
inline double NowInSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Does some work once and gives the seconds that count.
using Work = std::function<double()>;

/// Work of which everything counts.
template <class Function>
Work Timed(Function function) {
  return [function = std::move(function)] {
    const double start = NowInSeconds();
    function();
    return NowInSeconds() - start;
  };
}

/// The seconds that each work takes: the best of several rounds. In a round all have their turn, so
/// that what disturbs the machine for a while hits them alike, and each is repeated until its time
/// can be trusted.
inline std::vector<double> BestSeconds(const std::vector<Work>& works, int rounds = 9) {
  constexpr double kShortestTurn = 0.01;
  std::vector<double> best(works.size(), std::numeric_limits<double>::infinity());
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < works.size(); ++i) {
      double seconds = 0;
      int repeats = 0;
      for (const double start = NowInSeconds();
           repeats == 0 || NowInSeconds() - start < kShortestTurn; ++repeats) {
        seconds += works[i]();
      }
      best[i] = std::min(best[i], seconds / repeats);
    }
  }
  return best;
}

enum class Budget { None, AtLeast, AtMost };

/// The figures on the standard output, a line for each as it comes.
class Table {
 public:
  explicit Table(const char* figureName) {
    std::printf("%-56s %12s %13s\n", "", figureName, "budget");
  }

  void Heading(const std::string& text) const { std::printf("\n%s\n", text.c_str()); }
  void Row(const std::string& name, double figure, Budget kind = Budget::None,
           double budget = 0) const {
    std::printf("  %-54s %12.3f", name.c_str(), figure);
    if (kind != Budget::None) {
      const bool isMet = kind == Budget::AtLeast ? figure >= budget : figure <= budget;
      std::printf("    %s %5.2f  %s", kind == Budget::AtLeast ? ">=" : "<=", budget,
                  isMet ? "met" : "MISSED");
    }
    std::printf("\n");
    std::fflush(stdout);
  }
};

/// Ends the program when a result is not what it has to be: then its time means nothing.
inline void Require(bool isSo, const char* what) {
  if (isSo) return;
  std::fprintf(stderr, "wrong result: %s\n", what);
  std::exit(1);
}

}  // namespace bench
