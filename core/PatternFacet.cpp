#include <algorithm>
#include <cmath>
#include <ctime>
#include <list>
#include <string_view>
#include <unordered_map>

#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/Errors.h"
#include "core/PatternEngine.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16 {
namespace {

using detail::CompiledPattern;
using detail::MatchOutcome;
using detail::MatchStackPtr;

struct Construct {
  std::string_view schema;
  std::string_view translated;
};

// What XML Schema writes (Part 2, appendix F) and the matching library does not know.
constexpr Construct kConstructs[] = {
    {"\\i", "([^\\W\\d]|:)"},
    {"\\I", "([\\W\\d])"},
    {"\\c", "(\\w|\\.|-|:)"},
    {"\\C", "([^\\w\\.\\-\\:])"},
    {"\\p{IsBasicLatin}", "[\\000-\\177]"},
    {"\\p{IsLatin-1Supplement}", "[\\200-\\377]"},
    {"\\p{IsLatinExtended-A}", "[\\400-\\577]"},
    {"\\p{IsLatinExtended-B}", "[\\x{180}-\\x{24F}]"},
};

struct Translation {
  std::string expression;
  bool hasExtensions = false;  ///< holds "(?", which is no XML Schema syntax
};

/// The translation of the escape at the start of the text: itself unless it is in the table.
Construct TranslateEscape(std::string_view text) {
  for (const Construct& construct : kConstructs) {
    if (text.substr(0, construct.schema.size()) == construct.schema) return construct;
  }
  // The escaped character goes with its backslash, so that an escaped backslash starts nothing.
  const std::string_view escape = text.substr(0, 2);
  return {escape, escape};
}

Translation Translate(std::string_view pattern) {
  Translation result;
  result.expression = "^(";
  for (std::size_t i = 0; i < pattern.size();) {
    if (pattern[i] == '\\') {
      const Construct escape = TranslateEscape(pattern.substr(i));
      result.expression += escape.translated;
      i += escape.schema.size();
    } else {
      result.hasExtensions |= pattern.substr(i, 2) == "(?";
      result.expression += pattern[i++];
    }
  }
  result.expression += ")$";
  return result;
}

struct Pattern {
  std::string source;  ///< as in the schema
  std::unique_ptr<CompiledPattern> code;
  bool hasExtensions;
};

Pattern Compile(const std::string& source, const std::string& value) {
  const Translation translation = Translate(source);
  std::string error;
  auto code = detail::CompilePattern(translation.expression, error);
  if (code == nullptr) ThrowInvalidRegularExpression(value, error);
  return {source, std::move(code), translation.hasExtensions};
}

// Ample for values of ordinary length; what needs more is simulated or gets the large stack.
constexpr std::size_t kStackBytes = std::size_t{512} << 10;
constexpr std::size_t kLargeStackBytes = std::size_t{256} << 20;

/// What one thread keeps of its last matches. A pattern that cannot be compiled is not kept.
class ThreadPatterns {
 public:
  /// @param value  the value to be matched, for the message.
  Pattern& Find(const std::string& source, const std::string& value) {
    if (!m_recent.empty() && m_recent.front().source == source) return m_recent.front();
    const auto found = m_index.find(source);
    if (found != m_index.end()) {
      m_recent.splice(m_recent.begin(), m_recent, found->second);
    } else {
      Add(Compile(source, value));
    }
    return m_recent.front();
  }

  detail::MatchStack* Stack() const { return m_stack.get(); }

 private:
  static constexpr std::size_t kMaxPatterns = 256;

  void Add(Pattern pattern) {
    if (m_recent.size() == kMaxPatterns) {
      m_index.erase(m_recent.back().source);
      m_recent.pop_back();
    }
    m_recent.push_front(std::move(pattern));
    m_index.emplace(m_recent.front().source, m_recent.begin());
  }

  std::list<Pattern> m_recent;  // the last used first
  std::unordered_map<std::string_view, std::list<Pattern>::iterator> m_index;
  MatchStackPtr m_stack = detail::MakeMatchStack(kStackBytes);
};

ThreadPatterns& OfThisThread() {
  thread_local ThreadPatterns patterns;
  return patterns;
}

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Steps for a first attempt. Since one step may scan the whole value, they go down with its
/// length.
unsigned long FirstSteps(std::size_t length) {
  return std::clamp<std::size_t>(400'000'000 / (length + 1), 100, 1'000'000);
}

/// States for a simulation: each costs up to the number of all states for every character.
std::size_t MaxStates(std::size_t length) {
  const double states = std::sqrt(2e9 / static_cast<double>(length + 1));
  return static_cast<std::size_t>(std::clamp(states, 64.0, 2048.0));
}

/// Gives the machine code ever more steps while the time lasts. Doubling at most quadruples the
/// time of an attempt, which bounds the last one.
MatchOutcome BacktrackOnTime(Pattern& pattern, std::string_view value) {
  constexpr double kSeconds = 0.2;
  const MatchStackPtr stack = detail::MakeMatchStack(kLargeStackBytes);
  const double start = ThreadSeconds();
  MatchOutcome outcome = MatchOutcome::LimitHit;
  for (unsigned long steps = 2 * FirstSteps(value.size());
       outcome == MatchOutcome::LimitHit && ThreadSeconds() - start < kSeconds; steps *= 2) {
    outcome = pattern.code->Backtrack(value, steps, stack.get());
  }
  return outcome;
}

/// Backtracking answers almost everything at once. What it leaves open is simulated, in linear
/// time; only patterns with very many alternatives at a time, or with extensions, need the last
/// resort. No answer counts as no match.
bool Matches(Pattern& pattern, std::string_view value, detail::MatchStack* stack) {
  const MatchOutcome first = pattern.code->Backtrack(value, FirstSteps(value.size()), stack);
  MatchOutcome outcome = first;
  const auto isOpen = [&outcome] {
    return outcome == MatchOutcome::LimitHit || outcome == MatchOutcome::Unsupported;
  };
  if (isOpen() && !pattern.hasExtensions) {
    outcome = pattern.code->Simulate(value, MaxStates(value.size()));
  }
  if (isOpen() && first == MatchOutcome::LimitHit) outcome = BacktrackOnTime(pattern, value);
  return outcome == MatchOutcome::Match;
}

}  // namespace

bool CXmlObjectHelper::TestRegEx(const std::string& pattern, const std::string& value) {
  ThreadPatterns& patterns = OfThisThread();
  Pattern& compiled = patterns.Find(pattern, value);
  const std::string_view text = value.c_str();  // up to the first NUL
  if (detail::AsciiPrefix(text.data(), text.size()) == text.size()) {
    return Matches(compiled, text, patterns.Stack());
  }
  const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(value.c_str());
  return Matches(compiled, {reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength()},
                 patterns.Stack());
}

}  // namespace ZuXmlLib16
