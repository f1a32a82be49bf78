#pragma once

#include <string>
#include <string_view>

namespace ZuXmlLib16 {

/// A borrowed text argument: a NUL-terminated C string (null counts as ""), a std::string or a
/// std::string_view. It must outlive the call only.
class CTextRef : public std::string_view {
 public:
  constexpr CTextRef() noexcept : std::string_view("") {}
  constexpr CTextRef(const char* text) : std::string_view(text != nullptr ? text : "") {}
  CTextRef(const std::string& text) noexcept : std::string_view(text) {}
  constexpr CTextRef(std::string_view text) noexcept
      : std::string_view(text.data() != nullptr ? text : "") {}
};

}  // namespace ZuXmlLib16
