#pragma once

namespace ZuXmlLib16::detail {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace ZuXmlLib16::detail
