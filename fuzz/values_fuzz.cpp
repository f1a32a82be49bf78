// Every primitive type either reads a text or throws a CZuException. What it prints for a value
// that was read, it reads again and prints in the same way, with the exceptions that HasStableText
// lists. Every white space rule changes nothing the second time.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/Variant.h"
#include "ZuXmlLib16/WhitespaceUtils.h"

using namespace ZuXmlLib16;

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

bool Read(ZuVariant& value, const std::string& text, ItemType type) {
  try {
    value.FromString(text, type);
    return true;
  } catch (const CZuException&) {
    return false;
  }
}

/// Whether the printed form of a value is one that its type reads as the same value.
bool HasStableText(const std::string& printed, ItemType type) {
  switch (type) {
    case ItemType::char_:  // NUL prints as nothing
      return !printed.empty();
    case ItemType::duration:  // zero prints without a component
      return printed != "P" && printed != "-P";
    case ItemType::year:  // prints without leading zeros, and a negative one wraps
      return printed.size() == 4;
    case ItemType::r8:  // sixteen digits may round the largest double up
      return printed.find("1.797693134862316e+308") == std::string::npos;
    default:
      return true;
  }
}

void CheckType(const std::string& text, ItemType type) {
  ZuVariant value;
  if (!Read(value, text, type)) return;
  const std::string printed = value.ToString();
  if (!HasStableText(printed, type)) return;
  if (!Read(value, printed, type) || value.ToString() != printed) std::abort();
}

void CheckRule(const std::string& text, Rule rule) {
  const std::string normalized = CWhitespaceUtils::ApplyRule(rule, text);
  if (CWhitespaceUtils::ApplyRule(rule, normalized) != normalized) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (int type = static_cast<int>(ItemType::hexBinary);
       type <= static_cast<int>(ItemType::integer); ++type) {
    CheckType(text, static_cast<ItemType>(type));
  }
  for (const Rule rule : {Rule::None, Rule::Preserve, Rule::Replace, Rule::Collapse}) {
    CheckRule(text, rule);
  }
  return 0;
}
