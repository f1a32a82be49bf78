#pragma once

#include <cstdint>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

/// How much of the XML form JSON keeps.
enum class JsonRoundTrip : std::int32_t {
  Plain = 0,   ///< attributes look like members, text has an empty name, no namespaces
  Marked = 1,  ///< attributes as "@name", text as "#text", no namespaces
  Full = 2,    ///< as Marked, with prefixes and "@xmlns" members
};

/// Settings of JSON output and input.
class ZUXMLLIB16_API CJsonContext {
 public:
  JsonRoundTrip GetSupportRoundtrip() const { return m_supportRoundtrip; }
  void SetSupportRoundtrip(JsonRoundTrip mode) { m_supportRoundtrip = mode; }

  /// Names JSON input that has no root member; "" (the default) expects one.
  const std::string& GetRootElementName() const { return m_rootElementName; }
  void SetRootElementName(const char* name) { m_rootElementName = CTextRef(name); }

  /// Whether JSON input may hold comments; true by default.
  bool GetAllowComments() const { return m_allowComments; }
  /// Sets the flag; the name is meant.
  void GetAllowComments(bool allow) { m_allowComments = allow; }

  /// Whether quotes, backslashes and control characters of values are written as JSON escapes, so
  /// that every text round-trips and every JSON reader takes it; false by default.
  bool GetStrictEscaping() const { return m_strictEscaping; }
  void SetStrictEscaping(bool strict) { m_strictEscaping = strict; }

 private:
  JsonRoundTrip m_supportRoundtrip = JsonRoundTrip::Full;
  std::string m_rootElementName;
  bool m_allowComments = true;
  bool m_strictEscaping = false;
};

}  // namespace ZuXmlLib16
