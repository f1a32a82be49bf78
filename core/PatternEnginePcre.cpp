#ifndef ZUXMLLIB16_USE_PCRE2

#include <pcre.h>

#include <climits>
#include <new>
#include <vector>

#include "core/PatternEngine.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr int kStackStartBytes = 32 * 1024;
// pcre_dfa_exec's workspace: a head, then two lists of states; ints.
constexpr std::size_t kWorkspaceHead = 2;
constexpr std::size_t kWorkspacePerState = 6;

struct CodeDeleter {
  void operator()(pcre* code) const noexcept { pcre_free(code); }
};
struct StudyDeleter {
  void operator()(pcre_extra* extra) const noexcept { pcre_free_study(extra); }
};
using PcrePtr = std::unique_ptr<pcre, CodeDeleter>;
using StudyPtr = std::unique_ptr<pcre_extra, StudyDeleter>;

pcre_jit_stack* Handle(MatchStack* stack) {
  return reinterpret_cast<pcre_jit_stack*>(stack);
}

class Pattern : public CompiledPattern {
 public:
  Pattern(PcrePtr code, StudyPtr study) : m_code(std::move(code)), m_study(std::move(study)) {
    int hasMachineCode = 0;
    pcre_fullinfo(m_code.get(), m_study.get(), PCRE_INFO_JIT, &hasMachineCode);
    m_hasMachineCode = hasMachineCode == 1;
    m_study->flags |= PCRE_EXTRA_MATCH_LIMIT;
  }

  MatchOutcome Backtrack(std::string_view subject, unsigned long stepLimit,
                         MatchStack* stack) override {
    if (!m_hasMachineCode || stack == nullptr) return MatchOutcome::Unsupported;
    if (subject.size() > INT_MAX) return MatchOutcome::Unsupported;
    m_study->match_limit = stepLimit;
    pcre_assign_jit_stack(m_study.get(), nullptr, Handle(stack));
    // Room for the whole match alone; the groups inside it are of no interest. The anchored option
    // is not repeated here: with it the machine code would not be used.
    int match[3];
    const int result = pcre_exec(m_code.get(), m_study.get(), subject.data(),
                                 static_cast<int>(subject.size()), 0, 0, match, 3);
    if (result == PCRE_ERROR_MATCHLIMIT || result == PCRE_ERROR_JIT_STACKLIMIT) {
      return MatchOutcome::LimitHit;
    }
    return Judge(result, match, subject);
  }

  MatchOutcome Simulate(std::string_view subject, std::size_t maxStates) override {
    if (subject.size() > INT_MAX) return MatchOutcome::Unsupported;
    std::vector<int> workspace(kWorkspaceHead + kWorkspacePerState * maxStates);
    int match[2];
    const int result =
        pcre_dfa_exec(m_code.get(), nullptr, subject.data(), static_cast<int>(subject.size()), 0, 0,
                      match, 2, workspace.data(), static_cast<int>(workspace.size()));
    if (result == PCRE_ERROR_DFA_WSSIZE) return MatchOutcome::LimitHit;
    if (result < PCRE_ERROR_NOMATCH) return MatchOutcome::Unsupported;
    return Judge(result, match, subject);
  }

 private:
  /// A result of 0 is a match with more groups than there was room for.
  static MatchOutcome Judge(int result, const int* match, std::string_view subject) {
    const bool isWhole =
        result >= 0 && match[0] == 0 && match[1] == static_cast<int>(subject.size());
    return isWhole ? MatchOutcome::Match : MatchOutcome::NoMatch;
  }

  PcrePtr m_code;
  StudyPtr m_study;
  bool m_hasMachineCode = false;
};

}  // namespace

void MatchStackDeleter::operator()(MatchStack* stack) const noexcept {
  pcre_jit_stack_free(Handle(stack));
}

MatchStackPtr MakeMatchStack(std::size_t maxBytes) {
  int hasJit = 0;
  if (pcre_config(PCRE_CONFIG_JIT, &hasJit) != 0 || hasJit == 0) return nullptr;
  pcre_jit_stack* const stack = pcre_jit_stack_alloc(kStackStartBytes, static_cast<int>(maxBytes));
  if (stack == nullptr) throw std::bad_alloc();
  return MatchStackPtr(reinterpret_cast<MatchStack*>(stack));
}

std::unique_ptr<CompiledPattern> CompilePattern(const std::string& expression, std::string& error) {
  const char* reason = "";
  int offset = 0;
  PcrePtr code(pcre_compile(expression.c_str(), PCRE_UTF8 | PCRE_ANCHORED | PCRE_DOLLAR_ENDONLY,
                            &reason, &offset, nullptr));
  if (code == nullptr) {
    error = reason;
    return nullptr;
  }
  StudyPtr study(pcre_study(code.get(), PCRE_STUDY_JIT_COMPILE | PCRE_STUDY_EXTRA_NEEDED, &reason));
  if (study == nullptr) throw std::bad_alloc();
  return std::make_unique<Pattern>(std::move(code), std::move(study));
}

}  // namespace ZuXmlLib16::detail

#endif
