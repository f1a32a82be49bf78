#include <gtest/gtest.h>
#include <pthread.h>

#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/XmlObjectHelper.h"
#include "core/PatternEngine.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using namespace std::string_literals;

bool Matches(const std::string& pattern, const std::string& value) {
  return CXmlObjectHelper::TestRegEx(pattern, value);
}

struct PatternCase {
  std::string pattern;
  std::string value;
  bool matches;
};

void ExpectAll(const std::vector<PatternCase>& cases) {
  for (const PatternCase& c : cases) {
    EXPECT_EQ(Matches(c.pattern, c.value), c.matches)
        << c.pattern << " on " << c.value.substr(0, 80);
  }
}

TEST(PatternFacet, MatchesTheWholeValue) {
  // clang-format off
  ExpectAll({
      {"\\d{3}", "123", true}, {"\\d{3}", "1234", false}, {"a|ab", "ab", true}, {"", "a", false},
      // A line feed at the end is part of the value.
      {"a", "a\n", false}, {"a\\n", "a\n", true}, {"a.", "a\n", false},
      {"a*", "aaa\0b"s, true},  // ends at the NUL
      {"a*b", "aaa\0b"s, false}, {"a)|(b", "ab", false},
  });
  // clang-format on
}

TEST(PatternFacet, TranslatesWhatSchemasWrite) {
  // clang-format off
  ExpectAll({
      {"\\i\\c*", "a:b-c.d", true}, {"\\i\\c*", "1abc", false}, {"\\I\\C", "1 ", true},
      {"\\I\\C", "a ", false},
      // An escaped backslash starts no escape.
      {"\\\\i", "\\i", true}, {"\\\\\\i", "\\a", true}, {"\\p{IsBasicLatin}+", "az~", true},
      {"\\p{Lu}\\d", "A1", true},
  });
  // clang-format on
}

TEST(PatternFacet, MatchesCharactersOfTheLocalSet) {
  const CharacterTypeLocale utf8("C.UTF-8");
  ASSERT_TRUE(utf8.IsAvailable());
  // clang-format off
  ExpectAll({
      {".", "\u00e9", true}, {"\u00e9?", "\u00e9", true}, {"\\p{IsBasicLatin}", "\u0080", false},
      {"\\p{IsLatin-1Supplement}{2}", "\u0080\u00ff", true},
      {"\\p{IsLatin-1Supplement}", "\u0100", false},
      {"\\p{IsLatinExtended-A}{2}", "\u0100\u017f", true},
      {"\\p{IsLatinExtended-B}{2}", "\u0180\u024f", true},
      {"\\p{IsLatinExtended-B}", "\u0250", false},
      {"\\w", "\u00e9", false},  // ASCII only, and \d alike
      {"\\d", "\u0661", false},
      {"a\\?", "a\xff", true},  // a malformed byte is "?"
  });
  // clang-format on
}

TEST(PatternFacet, ReportsTheValueOfABadPatternEveryTime) {
  for (const std::string value : {"one", "two"}) {
    try {
      ADD_FAILURE() << Matches("(", value);
    } catch (const CZuException& error) {
      const std::string start = "Invalid Regular Expression: " + value + " Error: 'missing ";
      EXPECT_EQ(error.GetMessage().substr(0, start.size()), start);
    }
  }
}

/// Runs a function in a thread with a stack of 256 KiB.
template <class Function>
void RunOnSmallStack(Function function) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 256 * 1024);
  pthread_t thread;
  const auto start = [](void* argument) -> void* {
    (*static_cast<Function*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, start, &function), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

// Each of these takes a stack as long as the value, or hours, when matched by plain backtracking.
TEST(PatternFacet, AnswersLongValuesOnASmallStack) {
  RunOnSmallStack([] {
    const std::string letters(1'000'000, 'a');
    std::string words;
    while (words.size() < letters.size())
      words += "some words ";
    ExpectAll({
        {"\\i\\c*", letters, true},
        {"\\i\\c*", letters + '!', false},
        {"a*a*b", letters, false},
        {"a*a*b", letters + 'b', true},
        {"(\\w+\\s?)+", words, true},
        {"([a-z]{1,64} ?)+", words, true},
        {"([a-z]{1,64} ?)+", words + '!', false},
        // No schema patterns, and not simulated either: a back reference (the wrapping is the
        // first group), a look-ahead.
        {"((a)\\3)+", letters, true},
        {"(?=a)(a|b)*", letters, true},
    });
  });
}

TEST(PatternFacet, GivesUpOnEndlessBacktracking) {
  const std::string letters(40, 'a');
  for (const char* pattern : {"(a+)+b", "(a+)+[bc]", "(a|a)*[bc]", "((a+)\\3?)+[bc]"})
    EXPECT_FALSE(Matches(pattern, letters)) << pattern;
}

TEST(PatternFacet, KeepsItsAnswersWhenPatternsAreManyThreadsToo) {
  const auto check = [] {
    for (int round = 0; round < 2; ++round) {
      for (int i = 0; i < 600; ++i) {
        const std::string digits = std::to_string(i);
        ASSERT_TRUE(Matches("x{0}" + digits, digits));
        ASSERT_FALSE(Matches("x{0}" + digits, digits + '0'));
      }
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back(check);
  for (std::thread& thread : threads)
    thread.join();
}

// The two ways of matching stand in for each other.
TEST(PatternEngine, BacktrackingAndSimulationAgree) {
  constexpr unsigned kSeed = 20240611;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const auto pick = [&random](std::size_t count) { return random() % count; };
  const char* const atoms[] = {"a", "b", "[ab]", ".", "(a|bc)", "(b+c?)", "[^a]", "(abab)"};
  const char* const counts[] = {"", "", "*", "+", "?", "{2,3}", "{0,1}"};
  const auto stack = detail::MakeMatchStack(1 << 20);
  int matched = 0;
  for (int i = 0; i < 300; ++i) {
    std::string pattern = "^(";
    for (std::size_t atom = 0; atom < 4; ++atom) {
      pattern +=
          std::string(atom == 2 && pick(2) == 0 ? "|" : "") + atoms[pick(8)] + counts[pick(7)];
    }
    std::string error;
    const auto compiled = detail::CompilePattern(pattern + ")$", error);
    ASSERT_NE(compiled, nullptr) << pattern << error;
    for (int j = 0; j < 30; ++j) {
      std::string value;
      for (std::size_t length = pick(8); length > 0; --length)
        value += static_cast<char>('a' + pick(3));
      const auto simulated = compiled->Simulate(value, 1000);
      if (stack != nullptr) {
        EXPECT_EQ(compiled->Backtrack(value, 1'000'000, stack.get()), simulated)
            << pattern << " on " << value;
      }
      matched += simulated == detail::MatchOutcome::Match ? 1 : 0;
    }
  }
  EXPECT_GT(matched, 500);
}

}  // namespace
}  // namespace ZuXmlLib16
