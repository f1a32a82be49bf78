#pragma once

#include <cstring>
#include <string_view>

#include "ZuXmlLib16/Streams.h"

namespace ZuXmlLib16::detail {

/// Copies a text that is mostly short; returns the end.
inline char* CopyText(char* out, std::string_view text) {
  const std::size_t size = text.size();
  if (size > 16) {
    std::memcpy(out, text.data(), size);
  } else if (size >= 8) {  // two pieces that overlap
    std::memcpy(out, text.data(), 8);
    std::memcpy(out + size - 8, text.data() + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(out, text.data(), 4);
    std::memcpy(out + size - 4, text.data() + size - 4, 4);
  } else {
    for (std::size_t i = 0; i < size; ++i) {
      out[i] = text[i];
    }
  }
  return out + size;
}

/// Appends texts without NUL one behind the other.
template <class... Views>
void PutViews(CTextStream& stream, Views... parts) {
  const std::size_t size = (parts.size() + ...);
  if (char* out = stream.Room(size)) {
    ((out = CopyText(out, parts)), ...);
    stream.Commit(size);
  } else {
    (stream.Append(parts.data(), parts.size()), ...);
  }
}

/// The same for anything that is a text.
template <class... Parts>
void PutTexts(CTextStream& stream, const Parts&... parts) {
  PutViews(stream, std::string_view(parts)...);
}

}  // namespace ZuXmlLib16::detail
