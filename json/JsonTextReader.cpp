#include "ZuXmlLib16/JsonTextReader.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

#include "ZuXmlLib16/TextRef.h"
#include "core/Errors.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16 {
namespace {

constexpr const char* kDigit = "a digit '0' to '9'";
constexpr const char* kFirstOfObject = "Object terminator character '}}'";  // sic

bool IsWhitespace(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Number of characters of a string before its end, an escape or a line feed.
std::size_t RunLength(const char* text, std::size_t length) {
  std::size_t i = 0;
  for (; i + 16 <= length; i += 16) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('"')),
                                       _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\\')),
                                                    _mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))));
    const int mask = _mm_movemask_epi8(found);
    if (mask != 0) return i + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(mask)));
  }
  while (i < length && text[i] != '"' && text[i] != '\\' && text[i] != '\n') {
    ++i;
  }
  return i;
}

constexpr unsigned kNoDigit = 16;

unsigned HexValue(char character) {
  if (IsDigit(character)) return static_cast<unsigned>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a') + 10;
  if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A') + 10;
  return kNoDigit;
}

bool IsHighSurrogate(unsigned unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(unsigned unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// What the escape of two characters stands for, 0 when there is none.
char Unescaped(char letter) {
  switch (letter) {
    case '"':
    case '\\':
    case '/':
      return letter;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return '\0';
  }
}

/// Line and position after the characters from start to taken.
JsonPlace PlaceAfter(const char* start, const char* taken) {
  const auto lines = std::count(start, taken, '\n');
  const auto* const newest = static_cast<const char*>(
      lines > 0 ? memrchr(start, '\n', static_cast<std::size_t>(taken - start)) : nullptr);
  const char* const lineStart = newest != nullptr ? newest + 1 : start;
  return {static_cast<int>(lines) + 1, static_cast<int>(taken - lineStart)};
}

}  // namespace

IJsonReaderHandler::~IJsonReaderHandler() = default;

IErrorPathProvider::~IErrorPathProvider() = default;

CJsonReaderDefaultHandler::CJsonReaderDefaultHandler()
    : IJsonReaderHandler("CJsonReaderDefaultHandler") {}

CJsonReaderDefaultHandler::~CJsonReaderDefaultHandler() = default;

void CJsonReaderDefaultHandler::Enter(bool isArray) {
  if (m_depth == m_levels.size()) m_levels.emplace_back();
  Level& level = m_levels[m_depth++];
  level.isArray = isArray;
  level.hasName = false;
  level.completedItems = 0;
}

void CJsonReaderDefaultHandler::Leave() {
  if (m_depth > 0) --m_depth;
  CountValue();
}

void CJsonReaderDefaultHandler::CountValue() {
  if (m_depth > 0) ++m_levels[m_depth - 1].completedItems;
}

void CJsonReaderDefaultHandler::ReadStartDocument() {
  m_depth = 0;
  if (m_inner != nullptr) m_inner->ReadStartDocument();
}

bool CJsonReaderDefaultHandler::ReadEndDocument() {
  return m_inner == nullptr || m_inner->ReadEndDocument();
}

void CJsonReaderDefaultHandler::ReadName(const std::string& name) {
  if (m_depth > 0) {
    Level& level = m_levels[m_depth - 1];
    level.hasName = true;
    level.name = name;
  }
  if (m_inner != nullptr) m_inner->ReadName(name);
}

void CJsonReaderDefaultHandler::ReadString(const std::string& value) {
  if (m_inner != nullptr) m_inner->ReadString(value);
  CountValue();
}

void CJsonReaderDefaultHandler::ReadNumber(const std::string& text) {
  if (m_inner != nullptr) m_inner->ReadNumber(text);
  CountValue();
}

void CJsonReaderDefaultHandler::ReadStartObject() {
  if (m_inner != nullptr) m_inner->ReadStartObject();
  Enter(false);
}

void CJsonReaderDefaultHandler::ReadEndObject() {
  if (m_inner != nullptr) m_inner->ReadEndObject();
  Leave();
}

void CJsonReaderDefaultHandler::ReadStartArray() {
  if (m_inner != nullptr) m_inner->ReadStartArray();
  Enter(true);
}

void CJsonReaderDefaultHandler::ReadEndArray() {
  if (m_inner != nullptr) m_inner->ReadEndArray();
  Leave();
}

void CJsonReaderDefaultHandler::ReadBool(bool value) {
  if (m_inner != nullptr) m_inner->ReadBool(value);
  CountValue();
}

void CJsonReaderDefaultHandler::ReadNull() {
  if (m_inner != nullptr) m_inner->ReadNull();
  CountValue();
}

std::string CJsonReaderDefaultHandler::GetPath() const {
  std::string path;
  for (std::size_t i = 0; i < m_depth; ++i) {
    const Level& level = m_levels[i];
    if (level.isArray) {
      path += '[' + std::to_string(level.completedItems + 1) + ']';
    } else if (level.hasName) {
      path += '/' + level.name;
    }
  }
  return path;
}

CJsonTextReader::CJsonTextReader(const std::string& text)
    : CInstanceMonitor("CJsonTextReader"), m_text(text) {}

CJsonTextReader::~CJsonTextReader() = default;

void CJsonTextReader::SetRootElementName(const char* name) {
  m_rootElementName = CTextRef(name);
}

void CJsonTextReader::SetContext(const CJsonContext& settings) {
  m_allowComments = settings.GetAllowComments();
  m_rootElementName = settings.GetRootElementName();
}

void CJsonTextReader::FailAtEnd(const char* expected) const {
  ThrowJsonEnd(expected, PlaceAfter(m_text.data(), m_end), m_handler.GetPath());
}

void CJsonTextReader::FailAtCharacter(const char* expected) const {
  ThrowJsonCharacter(expected, *m_next, PlaceAfter(m_text.data(), m_next + 1), m_handler.GetPath());
}

bool CJsonTextReader::Read() {
  m_next = m_text.data();
  m_end = m_next + m_text.size();
  m_handler.ReadStartDocument();
  if (!m_rootElementName.empty()) {
    m_handler.ReadStartObject();
    m_handler.ReadName(m_rootElementName);
  }
  if (AtToken()) ReadValue(0);
  if (!m_rootElementName.empty()) m_handler.ReadEndObject();
  return m_handler.ReadEndDocument();
}

/// Passes line feeds, which are never delivered.
/// @return whether there is a character.
bool CJsonTextReader::AtCharacter() {
  while (m_next != m_end && *m_next == '\n') {
    ++m_next;
  }
  return m_next != m_end;
}

/// Passes whitespace and comments.
/// @return whether there is a character.
bool CJsonTextReader::AtToken() {
  do {
    while (m_next != m_end && IsWhitespace(*m_next)) {
      ++m_next;
    }
  } while (m_next != m_end && *m_next == '/' && SkipComment());
  return m_next != m_end;
}

/// @return whether there is a comment, at a slash.
bool CJsonTextReader::SkipComment() {
  if (!m_allowComments || m_end - m_next < 2) return false;
  const bool isLine = m_next[1] == '/';
  if (!isLine && m_next[1] != '*') return false;
  const std::string_view rest(m_next + 2, static_cast<std::size_t>(m_end - m_next - 2));
  const std::size_t length = isLine ? rest.find('\n') : rest.find("*/");
  m_next = length == std::string_view::npos ? m_end : rest.data() + length + (isLine ? 1 : 2);
  return true;
}

// Values nest no deeper than m_depthLimit. NOLINTBEGIN(misc-no-recursion)

void CJsonTextReader::ReadValue(int depth) {
  if (depth + 1 > m_depthLimit) {
    ThrowJsonDepthLimit(PlaceAfter(m_text.data(), m_next + 1), m_handler.GetPath());
  }
  switch (*m_next) {
    case '{':
      return ReadObject(depth);
    case '[':
      return ReadArray(depth);
    case '"':
      ReadText();
      return m_handler.ReadString(m_string);
    case 'n':
      ReadLiteral("null", "NULL");
      return m_handler.ReadNull();
    case 't':
      ReadLiteral("true", "true");
      return m_handler.ReadBool(true);
    case 'f':
      ReadLiteral("false", "false");
      return m_handler.ReadBool(false);
    default:
      if (*m_next != '-' && !IsDigit(*m_next)) {
        FailAtCharacter("Value '{', '[', '\"', '0-9', '-', 'true', 'false' or 'null'");
      }
      ReadNumber();
      return m_handler.ReadNumber(m_string);
  }
}

void CJsonTextReader::ReadObject(int depth) {
  m_handler.ReadStartObject();
  ++m_next;
  if (!AtToken()) FailAtEnd(kFirstOfObject);
  const bool isEmpty = *m_next == '}';
  while (!isEmpty) {
    if (*m_next != '"') FailAtCharacter("quotation mark character '\"' before Name");
    ReadText();
    m_handler.ReadName(m_string);
    if (!AtToken()) FailAtEnd("Object Name/Value separator character ':'");
    if (*m_next != ':') FailAtCharacter("Object Name/Value separator character ':'");
    ++m_next;
    if (!AtToken()) FailAtEnd("Object Value");
    ReadValue(depth + 1);
    if (!AtToken()) FailAtEnd("Object terminator character '}'");
    if (*m_next == '}') break;
    if (*m_next != ',') FailAtCharacter("Object separator character ','");
    ++m_next;
    if (!AtToken()) FailAtEnd(kFirstOfObject);
  }
  ++m_next;
  m_handler.ReadEndObject();
}

void CJsonTextReader::ReadArray(int depth) {
  constexpr const char* kTerminator = "Array terminator character ']'";
  m_handler.ReadStartArray();
  ++m_next;
  if (!AtToken()) FailAtEnd(kTerminator);
  const bool isEmpty = *m_next == ']';
  while (!isEmpty) {
    ReadValue(depth + 1);
    if (!AtToken()) FailAtEnd(kTerminator);
    if (*m_next == ']') break;
    if (*m_next != ',') FailAtCharacter("Array separator character ','");
    ++m_next;
    if (!AtToken()) FailAtEnd(kTerminator);
  }
  ++m_next;
  m_handler.ReadEndArray();
}

// NOLINTEND(misc-no-recursion)

void CJsonTextReader::ReadText() {
  ++m_next;
  m_string.clear();
  for (;;) {
    const std::size_t run = RunLength(m_next, static_cast<std::size_t>(m_end - m_next));
    m_string.append(m_next, run);
    m_next += run;
    if (!AtCharacter()) FailAtEnd("string value");
    if (*m_next == '"') break;
    if (*m_next == '\\') ReadEscape();
  }
  ++m_next;
}

void CJsonTextReader::ReadEscape() {
  ++m_next;
  if (!AtCharacter()) FailAtEnd("string value");
  if (*m_next == 'u') return AppendUnicodeEscape();
  const char character = Unescaped(*m_next);
  if (character == '\0') {
    ThrowJsonEscape(*m_next, PlaceAfter(m_text.data(), m_next + 1), m_handler.GetPath());
  }
  m_string += character;
  ++m_next;
}

void CJsonTextReader::AppendUnicodeEscape() {
  ++m_next;
  const unsigned unit = ReadHexDigits();
  char32_t character = unit != 0 ? unit : U'?';  // a NUL would end the text
  if (IsHighSurrogate(unit)) {
    if (const unsigned low = PeekLowSurrogate()) {
      character = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
      m_next += 6;
    }
  }
  std::string utf8;
  detail::AppendUtf8(utf8, character);
  detail::AppendUtf8AsLocal(m_string, utf8.data(), utf8.size());
}

unsigned CJsonTextReader::ReadHexDigits() {
  unsigned value = 0;
  for (int i = 0; i < 4; ++i) {
    if (!AtCharacter()) FailAtEnd("4 hexadecimal digits'\\uxxxx'");  // sic
    const unsigned digit = HexValue(*m_next);
    if (digit == kNoDigit) {
      ThrowJsonEscape(*m_next, PlaceAfter(m_text.data(), m_next + 1), m_handler.GetPath());
    }
    value = value << 4 | digit;
    ++m_next;
  }
  return value;
}

/// The low surrogate that is escaped at once behind this point, 0 for none.
unsigned CJsonTextReader::PeekLowSurrogate() const {
  if (m_end - m_next < 6 || m_next[0] != '\\' || m_next[1] != 'u') return 0;
  unsigned unit = 0;
  for (int i = 2; i < 6; ++i) {
    const unsigned digit = HexValue(m_next[i]);
    if (digit == kNoDigit) return 0;
    unit = unit << 4 | digit;
  }
  return IsLowSurrogate(unit) ? unit : 0;
}

void CJsonTextReader::ReadNumber() {
  const char* const start = m_next;
  if (*m_next == '-') ++m_next;
  if (!AtCharacter()) FailAtEnd(kDigit);
  if (!IsDigit(*m_next)) FailAtCharacter(kDigit);
  if (*m_next == '0') {
    ++m_next;
  } else {
    ReadDigits();
  }
  if (AtCharacter() && *m_next == '.') {
    ++m_next;
    if (!AtCharacter()) FailAtEnd(kDigit);
    if (!IsDigit(*m_next)) FailAtCharacter(kDigit);
    ReadDigits();
  }
  if (AtCharacter() && (*m_next == 'e' || *m_next == 'E')) {
    ++m_next;
    if (!AtCharacter()) FailAtEnd("'+', '-' or a number");
    if (*m_next == '+' || *m_next == '-') {
      ++m_next;
      if (!AtCharacter()) FailAtEnd("a number");
    }
    if (!IsDigit(*m_next)) {
      // The wording of the end, sic.
      ThrowJsonEnd(kDigit, PlaceAfter(m_text.data(), m_next + 1), m_handler.GetPath());
    }
    ReadDigits();
  }
  m_string.assign(start, m_next);
  if (m_string.find('\n') != std::string::npos) {
    m_string.erase(std::remove(m_string.begin(), m_string.end(), '\n'), m_string.end());
  }
}

void CJsonTextReader::ReadDigits() {
  do {
    while (m_next != m_end && IsDigit(*m_next)) {
      ++m_next;
    }
  } while (AtCharacter() && IsDigit(*m_next));
}

/// @param text  what the literal is, at its first character.
/// @param name  what messages call it.
void CJsonTextReader::ReadLiteral(const char* text, const char* name) {
  bool isRight = true;
  for (; *text != '\0'; ++text) {
    if (!AtCharacter()) FailAtEnd(("value '" + std::string(name) + "'").c_str());
    isRight = isRight && *m_next == *text;
    ++m_next;
  }
  if (!isRight) ThrowJsonLiteral(name, PlaceAfter(m_text.data(), m_next), m_handler.GetPath());
}

}  // namespace ZuXmlLib16
