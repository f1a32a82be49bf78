#include "ZuXmlLib16/Encoder.h"

#include <cstring>
#include <cwchar>
#include <memory>
#include <vector>

#include "xml/CharacterSet.h"

namespace ZuXmlLib16 {
namespace {

CBinaryData BytesOf(const void* data, std::size_t length) {
  CBinaryData bytes;
  bytes.SetBuffer(static_cast<const unsigned char*>(data), length);
  return bytes;
}

/// Takes local text apart, character by character.
class LocalDecoder {
 public:
  /// @return the number of bytes of the first character; a malformed byte is "?".
  std::size_t Next(const char* text, std::size_t length, char32_t& character) {
    const std::size_t used = m_isUtf8 ? detail::DecodeUtf8(text, length, character)
                                      : NextMultibyte(text, length, character);
    if (used != 0) return used;
    character = U'?';
    return 1;
  }

 private:
  /// @return 0 when malformed or cut off.
  std::size_t NextMultibyte(const char* text, std::size_t length, char32_t& character) {
    wchar_t wide = 0;
    const std::size_t used = std::mbrtowc(&wide, text, length, &m_state);
    if (used > length) {
      m_state = {};
      return 0;
    }
    character = static_cast<char32_t>(wide);
    return used;
  }

  const bool m_isUtf8 = detail::LocaleIsUtf8();
  std::mbstate_t m_state{};
};

/// Hands on runs of ASCII and the characters between them.
template <class OnAscii, class OnCharacter>
void DecodeLocal(const char* text, std::size_t length, OnAscii onAscii, OnCharacter onCharacter) {
  LocalDecoder decoder;
  for (std::size_t at = 0; at < length;) {
    const std::size_t ascii = detail::AsciiPrefix(text + at, length - at);
    onAscii(text + at, ascii);
    at += ascii;
    if (at == length) break;
    char32_t character = 0;
    at += decoder.Next(text + at, length - at, character);
    onCharacter(character);
  }
}

CBinaryData RepairedCopy(const char* text, std::size_t length) {
  std::unique_ptr<unsigned char[]> bytes(new unsigned char[length]);
  std::memcpy(bytes.get(), text, length);
  detail::RepairUtf8(reinterpret_cast<char*>(bytes.get()), length);
  return CBinaryData(bytes.release(), length, true);
}

}  // namespace

bool CEncoder::ASCII_ONLY = false;

std::string CEncoder::Utf8ToLocalCodePage(const unsigned char* utf8, int length, wchar_t* /*wide*/,
                                          unsigned long /*wideCapacity*/, char* /*narrow*/,
                                          unsigned long /*narrowCapacity*/) {
  return Utf8ToLocalCodePage(utf8, length);
}

std::string CEncoder::Utf8ToLocalCodePage(const char* utf8, wchar_t* /*wide*/,
                                          unsigned long /*wideCapacity*/, char* /*narrow*/,
                                          unsigned long /*narrowCapacity*/) {
  return Utf8ToLocalCodePage(utf8);
}

std::string CEncoder::Utf8ToLocalCodePage(const unsigned char* utf8, int length) {
  std::string local;
  if (utf8 == nullptr || length <= 0) return local;
  detail::AppendUtf8AsLocal(local, reinterpret_cast<const char*>(utf8),
                            static_cast<std::size_t>(length));
  return local;
}

std::string CEncoder::Utf8ToLocalCodePage(const char* utf8) {
  std::string local;
  if (utf8 != nullptr) detail::AppendUtf8AsLocal(local, utf8, std::strlen(utf8));
  return local;
}

CBinaryData CEncoder::LocalCodePageToUtf8Binary(const char* text) {
  if (text == nullptr) return {};
  const std::size_t length = std::strlen(text);
  if (detail::LocaleIsUtf8()) return RepairedCopy(text, length);
  std::string utf8;
  utf8.reserve(length);
  DecodeLocal(
      text, length, [&utf8](const char* run, std::size_t size) { utf8.append(run, size); },
      [&utf8](char32_t character) { detail::AppendUtf8(utf8, character); });
  return BytesOf(utf8.data(), utf8.size());
}

CBinaryData CEncoder::LocalCodePageToUnicodeBinary(const char* text) {
  if (text == nullptr) return {};
  const std::size_t length = std::strlen(text);
  std::vector<wchar_t> wide;
  wide.reserve(length);
  DecodeLocal(
      text, length,
      [&wide](const char* run, std::size_t size) { wide.insert(wide.end(), run, run + size); },
      [&wide](char32_t character) { wide.push_back(static_cast<wchar_t>(character)); });
  return BytesOf(wide.data(), wide.size() * sizeof(wchar_t));
}

CBinaryData CEncoder::UnicodeToUtf8Binary(const wchar_t* text) {
  if (text == nullptr) return {};
  std::string utf8;
  for (; *text != L'\0'; ++text)
    detail::AppendUtf8(utf8, static_cast<char32_t>(*text));
  return BytesOf(utf8.data(), utf8.size());
}

std::string CEncoder::Utf16ToLocalCodePage(const unsigned char* /*utf16*/, int /*length*/) {
  return {};
}

}  // namespace ZuXmlLib16
