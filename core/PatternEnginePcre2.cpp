#ifdef ZUXMLLIB16_USE_PCRE2

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "core/PatternEngine.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr std::size_t kStackStartBytes = std::size_t{32} << 10;
// pcre2_dfa_match's workspace: a head, then two lists of states; ints.
constexpr std::size_t kWorkspaceHead = 2;
constexpr std::size_t kWorkspacePerState = 6;

struct CodeDeleter {
  void operator()(pcre2_code* code) const noexcept { pcre2_code_free(code); }
};
struct ContextDeleter {
  void operator()(pcre2_match_context* context) const noexcept {
    pcre2_match_context_free(context);
  }
};
struct DataDeleter {
  void operator()(pcre2_match_data* data) const noexcept { pcre2_match_data_free(data); }
};
using Pcre2Ptr = std::unique_ptr<pcre2_code, CodeDeleter>;
using ContextPtr = std::unique_ptr<pcre2_match_context, ContextDeleter>;
using DataPtr = std::unique_ptr<pcre2_match_data, DataDeleter>;

pcre2_jit_stack* Handle(MatchStack* stack) {
  return reinterpret_cast<pcre2_jit_stack*>(stack);
}

PCRE2_SPTR Units(const char* text) {
  return reinterpret_cast<PCRE2_SPTR>(text);
}

class Pattern : public CompiledPattern {
 public:
  explicit Pattern(Pcre2Ptr code)
      : m_code(std::move(code)),
        m_context(pcre2_match_context_create(nullptr)),
        // Room for the whole match alone; the groups inside it are of no interest.
        m_match(pcre2_match_data_create(1, nullptr)),
        m_hasMachineCode(pcre2_jit_compile(m_code.get(), PCRE2_JIT_COMPLETE) == 0) {
    if (m_context == nullptr || m_match == nullptr) throw std::bad_alloc();
  }

  MatchOutcome Backtrack(std::string_view subject, unsigned long stepLimit,
                         MatchStack* stack) override {
    if (!m_hasMachineCode || stack == nullptr) return MatchOutcome::Unsupported;
    pcre2_set_match_limit(m_context.get(), static_cast<std::uint32_t>(
                                               std::min<unsigned long>(stepLimit, UINT32_MAX)));
    pcre2_jit_stack_assign(m_context.get(), nullptr, Handle(stack));
    const int result = pcre2_match(m_code.get(), Units(subject.data()), subject.size(), 0, 0,
                                   m_match.get(), m_context.get());
    if (result == PCRE2_ERROR_MATCHLIMIT || result == PCRE2_ERROR_JIT_STACKLIMIT) {
      return MatchOutcome::LimitHit;
    }
    return Judge(result, subject);
  }

  MatchOutcome Simulate(std::string_view subject, std::size_t maxStates) override {
    std::vector<int> workspace(kWorkspaceHead + kWorkspacePerState * maxStates);
    const int result = pcre2_dfa_match(m_code.get(), Units(subject.data()), subject.size(), 0, 0,
                                       m_match.get(), nullptr, workspace.data(), workspace.size());
    if (result == PCRE2_ERROR_DFA_WSSIZE) return MatchOutcome::LimitHit;
    if (result < PCRE2_ERROR_NOMATCH) return MatchOutcome::Unsupported;
    return Judge(result, subject);
  }

 private:
  /// A result of 0 is a match with more groups than there was room for.
  MatchOutcome Judge(int result, std::string_view subject) const {
    const PCRE2_SIZE* const match = pcre2_get_ovector_pointer(m_match.get());
    const bool isWhole = result >= 0 && match[0] == 0 && match[1] == subject.size();
    return isWhole ? MatchOutcome::Match : MatchOutcome::NoMatch;
  }

  Pcre2Ptr m_code;
  ContextPtr m_context;
  DataPtr m_match;
  bool m_hasMachineCode;
};

}  // namespace

void MatchStackDeleter::operator()(MatchStack* stack) const noexcept {
  pcre2_jit_stack_free(Handle(stack));
}

MatchStackPtr MakeMatchStack(std::size_t maxBytes) {
  std::uint32_t hasJit = 0;
  if (pcre2_config(PCRE2_CONFIG_JIT, &hasJit) != 0 || hasJit == 0) return nullptr;
  pcre2_jit_stack* const stack = pcre2_jit_stack_create(kStackStartBytes, maxBytes, nullptr);
  if (stack == nullptr) throw std::bad_alloc();
  return MatchStackPtr(reinterpret_cast<MatchStack*>(stack));
}

std::unique_ptr<CompiledPattern> CompilePattern(const std::string& expression, std::string& error) {
  int reason = 0;
  PCRE2_SIZE offset = 0;
  Pcre2Ptr code(pcre2_compile(Units(expression.c_str()), PCRE2_ZERO_TERMINATED,
                              PCRE2_UTF | PCRE2_ANCHORED | PCRE2_DOLLAR_ENDONLY, &reason, &offset,
                              nullptr));
  if (code != nullptr) return std::make_unique<Pattern>(std::move(code));
  PCRE2_UCHAR text[256];
  pcre2_get_error_message(reason, text, sizeof text);
  error = reinterpret_cast<const char*>(text);
  return nullptr;
}

}  // namespace ZuXmlLib16::detail

#endif
