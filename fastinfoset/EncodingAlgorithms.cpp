#include "fastinfoset/EncodingAlgorithms.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/Exceptions.h"
#include "core/Errors.h"
#include "types/Base64.h"
#include "types/ConversionsInternal.h"

namespace ZuXmlLib16::detail {
namespace {

constexpr WhitespaceRule kRule = WhitespaceRule::Collapse;

void AppendBytes(std::string& octets, const CBinaryData& data) {
  octets.append(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

/// The bits of a number, the first octet being the most significant one.
template <class Number>
struct BigEndian {
  using Bits =
      std::conditional_t<sizeof(Number) == 2, std::uint16_t,
                         std::conditional_t<sizeof(Number) == 4, std::uint32_t, std::uint64_t>>;

  static Number Read(const unsigned char* octets) {
    Bits bits = 0;
    for (std::size_t i = 0; i < sizeof bits; ++i) {
      bits = static_cast<Bits>(bits << 8 | octets[i]);
    }
    Number number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
  }

  static void Append(std::string& out, Number number) {
    Bits bits;
    std::memcpy(&bits, &number, sizeof bits);
    char octets[sizeof bits];
    for (std::size_t i = sizeof octets; i > 0; bits = static_cast<Bits>(bits >> 8)) {
      octets[--i] = static_cast<char>(bits & 0xFF);
    }
    out.append(octets, sizeof octets);
  }
};

// What reads and writes the text of a number: one row a type.
// clang-format off
template <class Number> struct NumberRow;
template <> struct NumberRow<std::int16_t> { static constexpr auto Parse = ParseInteger<short>;     static constexpr auto Format = FormatInteger<short>;     static constexpr const char* kName = "SHORT"; };
template <> struct NumberRow<std::int32_t> { static constexpr auto Parse = ParseInteger<long>;      static constexpr auto Format = FormatInteger<long>;      static constexpr const char* kName = "INT"; };
template <> struct NumberRow<std::int64_t> { static constexpr auto Parse = ParseInteger<long long>; static constexpr auto Format = FormatInteger<long long>; static constexpr const char* kName = "LONG"; };
template <> struct NumberRow<float>        { static constexpr auto Parse = ParseFloat;              static constexpr auto Format = FormatFloat;              static constexpr const char* kName = "FLOAT"; };
template <> struct NumberRow<double>       { static constexpr auto Parse = ParseDouble;             static constexpr auto Format = FormatDouble;             static constexpr const char* kName = "DOUBLE"; };
// clang-format on

template <class Number>
void AppendNumbers(std::string& text, const unsigned char* octets, std::size_t length) {
  if (length % sizeof(Number) != 0) ThrowInvalidEncodingLength(NumberRow<Number>::kName);
  TextBuffer buffer;
  for (std::size_t at = 0; at < length; at += sizeof(Number)) {
    if (at > 0) text += ' ';
    text += NumberRow<Number>::Format(BigEndian<Number>::Read(octets + at), buffer);
  }
}

template <class Number>
void AppendNumber(std::string& octets, std::string_view text) {
  const auto value = NumberRow<Number>::Parse(text, kRule);
  using Value = decltype(value);
  if constexpr (std::is_integral_v<Number> && sizeof(Value) > sizeof(Number)) {
    using Limits = std::numeric_limits<Number>;
    if (value < Limits::min() || value > Limits::max()) ThrowTooLarge(text, "i4");
  }
  BigEndian<Number>::Append(octets, static_cast<Number>(value));
}

/// The first four bits tell how many bits at the end are unused; the values are between them.
void AppendBooleans(std::string& text, const unsigned char* octets, std::size_t length) {
  constexpr std::size_t kCountBits = 4;
  const std::size_t unused = octets[0] >> kCountBits;
  TextBuffer buffer;
  for (std::size_t bit = kCountBits; bit + unused < 8 * length; ++bit) {
    if (bit > kCountBits) text += ' ';
    const bool value = (octets[bit / 8] >> (7 - bit % 8) & 1) != 0;
    text += FormatBoolean(value, buffer);
  }
}

void AppendBoolean(std::string& octets, std::string_view text) {
  octets += ParseBoolean(text, kRule) ? '\x38' : '\x30';  // three bits are unused
}

void AppendUuids(std::string& text, const unsigned char* octets, std::size_t length) {
  constexpr std::size_t kSize = 16;
  if (length % kSize != 0) ThrowInvalidEncodingLength("UUID");
  for (std::size_t at = 0; at < length; at += kSize) {
    if (at > 0) text += ' ';
    text += CBinaryData::GetAsHexString(octets + at, kSize);
  }
}

void AppendHexadecimal(std::string& octets, std::string_view text) {
  CBinaryData data;
  data.SetAsHexString(text);
  AppendBytes(octets, data);
}

void AppendBase64(std::string& octets, std::string_view text) {
  const std::size_t start = octets.size();
  octets.resize(start + text.size() / 4 * 3 + 3);
  auto* const out = reinterpret_cast<unsigned char*>(&octets[start]);
  octets.resize(start + DecodeBase64(text.data(), text.size(), out));
}

/// Whether decoding gives the text from which the octets behind start came.
bool IsTextOf(const std::string& octets, std::size_t start, EncodingAlgorithm algorithm,
              std::string_view text) {
  if (algorithm == EncodingAlgorithm::Hexadecimal) {
    // The octets come out in upper case; all else was tested when they were made.
    return std::none_of(text.begin(), text.end(), [](char digit) { return digit >= 'a'; });
  }
  std::string decoded;
  AppendDecoded(decoded, static_cast<unsigned long>(algorithm),
                reinterpret_cast<const unsigned char*>(&octets[start]), octets.size() - start);
  return decoded == text;
}

}  // namespace

void AppendDecoded(std::string& text, unsigned long algorithm, const unsigned char* octets,
                   std::size_t length) {
  if (length == 0) return;
  switch (EncodingAlgorithm{algorithm}) {
    case EncodingAlgorithm::Hexadecimal:
      text += CBinaryData::GetAsHexString(octets, length);
      return;
    case EncodingAlgorithm::Base64:
      text += EncodeBase64(octets, length);
      return;
    case EncodingAlgorithm::Short:
      return AppendNumbers<std::int16_t>(text, octets, length);
    case EncodingAlgorithm::Int:
      return AppendNumbers<std::int32_t>(text, octets, length);
    case EncodingAlgorithm::Long:
      return AppendNumbers<std::int64_t>(text, octets, length);
    case EncodingAlgorithm::Boolean:
      return AppendBooleans(text, octets, length);
    case EncodingAlgorithm::Float:
      return AppendNumbers<float>(text, octets, length);
    case EncodingAlgorithm::Double:
      return AppendNumbers<double>(text, octets, length);
    case EncodingAlgorithm::Uuid:
      return AppendUuids(text, octets, length);
    case EncodingAlgorithm::Cdata:
      break;  // encoded only: its octets are text already
  }
  ThrowUnknownEncodingAlgorithm();
}

void AppendEncoded(std::string& octets, unsigned long algorithm, std::string_view text) {
  switch (EncodingAlgorithm{algorithm}) {
    case EncodingAlgorithm::Hexadecimal:
    case EncodingAlgorithm::Uuid:
      return AppendHexadecimal(octets, text);
    case EncodingAlgorithm::Base64:
      return AppendBase64(octets, text);
    case EncodingAlgorithm::Short:
      return AppendNumber<std::int16_t>(octets, text);
    case EncodingAlgorithm::Int:
      return AppendNumber<std::int32_t>(octets, text);
    case EncodingAlgorithm::Long:
      return AppendNumber<std::int64_t>(octets, text);
    case EncodingAlgorithm::Boolean:
      return AppendBoolean(octets, text);
    case EncodingAlgorithm::Float:
      return AppendNumber<float>(octets, text);
    case EncodingAlgorithm::Double:
      return AppendNumber<double>(octets, text);
    case EncodingAlgorithm::Cdata:
      return AppendBytes(octets, CEncoder::LocalCodePageToUtf8Binary(std::string(text).c_str()));
  }
  ThrowUnknownEncodingAlgorithm();
}

bool AppendEncodedExactly(std::string& octets, EncodingAlgorithm algorithm, std::string_view text) {
  const std::size_t start = octets.size();
  try {
    AppendEncoded(octets, static_cast<unsigned long>(algorithm), text);
  } catch (const CZuException&) {
    return false;
  }
  if (octets.size() > start && IsTextOf(octets, start, algorithm, text)) return true;
  octets.resize(start);
  return false;
}

}  // namespace ZuXmlLib16::detail
