#include "bench/Documents.h"

#include <cstdio>
#include <iterator>
#include <utility>
#include <vector>

namespace bench {
namespace {

/// SplitMix64.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_state(seed) {}

  std::uint64_t Next() {
    m_state += 0x9E3779B97F4A7C15u;
    std::uint64_t bits = m_state;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
    return bits ^ (bits >> 31);
  }
  unsigned Below(unsigned bound) { return static_cast<unsigned>(Next() % bound); }
  template <std::size_t size>
  const char* OneOf(const char* const (&choices)[size]) {
    return choices[Below(static_cast<unsigned>(size))];
  }

 private:
  std::uint64_t m_state;
};

enum class ValueKind { Text, Number, Boolean, Nil };

struct Attribute {
  const char* name;
  std::string value;
  bool isNumber = false;  ///< without quotes in JSON
};

/// An element of a record: with attributes, and with a text or children.
struct Node {
  explicit Node(const char* nodeName, std::string nodeText = {},
                ValueKind valueKind = ValueKind::Text)
      : name(nodeName), text(std::move(nodeText)), kind(valueKind) {}

  void Add(const char* childName, std::string childText, ValueKind childKind = ValueKind::Text) {
    children.emplace_back(childName, std::move(childText), childKind);
  }

  const char* name;
  std::string text;
  ValueKind kind;
  bool isRepeated = false;  ///< an item of an array in JSON
  std::vector<Attribute> attributes;
  std::vector<Node> children;
};

template <class... Arguments>
std::string Format(const char* format, Arguments... arguments) {
  char buffer[128];
  const int length = std::snprintf(buffer, sizeof(buffer), format, arguments...);
  return std::string(buffer, static_cast<std::size_t>(length));
}

constexpr const char* kWords[] = {"lamp",   "copper", "valve",  "north",  "river",
                                  "orange", "steel",  "paper",  "garden", "window",
                                  "harbor", "silver", "cotton", "engine", "market",
                                  "bridge", "candle", "mirror", "pocket", "winter"};
constexpr const char* kAccentedWords[] = {u8"München", u8"café", u8"niño",
                                          u8"straße",  u8"東京", u8"Łódź"};
constexpr const char* kCountries[] = {"US", "DE", "FR", "GB", "JP"};

/// Makes the values and records of one document. Arguments are drawn in statements of their own, so
/// that their order does not depend on the compiler.
class Records {
 public:
  Records(std::uint64_t seed, unsigned nonAsciiPercent)
      : m_random(seed), m_nonAsciiPercent(nonAsciiPercent) {}

  Node Order(unsigned id);
  Node Sample();

 private:
  std::string Phrase(unsigned words);
  std::string Date();
  std::string DateTime();
  std::string Base64(unsigned bytes);
  std::string Number(unsigned bound) { return std::to_string(1 + m_random.Below(bound)); }
  std::string Money(unsigned bound);
  std::string Sku();
  std::string Real(bool isPrecise, double range);

  Node ShipTo();
  Node Item();
  Node Payment();

  Random m_random;
  unsigned m_nonAsciiPercent;
};

std::string Records::Phrase(unsigned words) {
  std::string phrase;
  for (unsigned i = 0; i < words; ++i) {
    if (i > 0) phrase += ' ';
    const bool isAccented = m_random.Below(100) < m_nonAsciiPercent;
    phrase += isAccented ? m_random.OneOf(kAccentedWords) : m_random.OneOf(kWords);
  }
  if (m_random.Below(40) == 0) phrase += " & <co>";
  return phrase;
}

std::string Records::Date() {
  const unsigned year = 2000 + m_random.Below(30);
  const unsigned month = 1 + m_random.Below(12);
  const unsigned day = 1 + m_random.Below(28);
  return Format("%04u-%02u-%02u", year, month, day);
}

std::string Records::DateTime() {
  const std::string date = Date();
  const unsigned hour = m_random.Below(24);
  const unsigned minute = m_random.Below(60);
  const unsigned second = m_random.Below(60);
  return date + Format("T%02u:%02u:%02uZ", hour, minute, second);
}

std::string Records::Base64(unsigned bytes) {
  static constexpr char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (unsigned i = 0; i < bytes / 3 * 4; ++i) {
    text += kAlphabet[m_random.Below(64)];
  }
  return text;
}

std::string Records::Money(unsigned bound) {
  const unsigned whole = m_random.Below(bound);
  const unsigned cents = m_random.Below(100);
  return Format("%u.%02u", whole, cents);
}

std::string Records::Sku() {
  const unsigned number = m_random.Below(1000);
  const char first = static_cast<char>('A' + m_random.Below(26));
  const char second = static_cast<char>('A' + m_random.Below(26));
  return Format("%03u-%c%c", number, first, second);
}

std::string Records::Real(bool isPrecise, double range) {
  const double fraction = static_cast<double>(m_random.Next() >> 11) / 9007199254740992.0;  // 2^53
  const double value = (fraction - 0.5) * range;
  return isPrecise ? Format("%.16g", value) : Format("%.6g", value);
}

Node Records::ShipTo() {
  Node address("shipTo");
  address.attributes.push_back({"country", m_random.OneOf(kCountries)});
  address.Add("name", Phrase(2));
  const std::string houseNumber = Number(999);
  address.Add("street", houseNumber + ' ' + Phrase(2));
  address.Add("city", Phrase(1));
  address.Add("state", Phrase(1));
  address.Add("zip", Format("%05u", m_random.Below(100000)));
  return address;
}

Node Records::Item() {
  Node item("item");
  item.isRepeated = true;
  item.attributes.push_back({"sku", Sku()});
  item.Add("productName", Phrase(1 + m_random.Below(4)));
  item.Add("quantity", Number(99), ValueKind::Number);
  item.Add("price", Money(5000), ValueKind::Number);
  if (m_random.Below(2) != 0) item.Add("shipDate", DateTime());
  if (m_random.Below(8) == 0) item.Add("thumbnail", Base64(48));
  return item;
}

Node Records::Payment() {
  switch (m_random.Below(3)) {
    case 0: {
      Node card("card");
      card.Add("number", Format("4%015llu", m_random.Next() % 1000000000000000ull));
      card.Add("holder", Phrase(2));
      const unsigned year = 2026 + m_random.Below(8);
      const unsigned month = 1 + m_random.Below(12);
      card.Add("expires", Format("%04u-%02u", year, month));
      return card;
    }
    case 1: {
      Node transfer("transfer");
      transfer.Add("iban", Format("DE%020llu", static_cast<unsigned long long>(m_random.Next())));
      transfer.Add("amount", Money(50000), ValueKind::Number);
      return transfer;
    }
    default:
      return Node("invoice", Format("INV-%06u", m_random.Below(1000000)));
  }
}

Node Records::Order(unsigned id) {
  Node order("order");
  order.isRepeated = true;
  order.attributes.push_back({"id", std::to_string(id), true});
  order.attributes.push_back({"date", Date()});
  order.children.push_back(ShipTo());
  if (m_random.Below(3) == 0) order.Add("comment", Phrase(4 + m_random.Below(16)));
  if (m_random.Below(4) == 0) {
    order.Add("reference", "", ValueKind::Nil);
  } else {
    order.Add("reference", Format("R-%08x", static_cast<unsigned>(m_random.Next() & 0xFFFFFFFFu)));
  }
  Node items("items");
  for (unsigned count = 1 + m_random.Below(6); count > 0; --count) {
    items.children.push_back(Item());
  }
  order.children.push_back(std::move(items));
  order.children.push_back(Payment());
  return order;
}

Node Records::Sample() {
  Node sample("sample");
  sample.isRepeated = true;
  sample.attributes.push_back({"t", DateTime()});
  for (int i = 0; i < 12; ++i) {  // half in full precision, half as a sensor gives them
    sample.Add("v", Real(i % 2 != 0, i % 3 == 2 ? 1e9 : 200.0), ValueKind::Number);
  }
  for (int i = 0; i < 4; ++i) {
    sample.Add("n", std::to_string(static_cast<int>(m_random.Below(2000000)) - 1000000),
               ValueKind::Number);
  }
  for (int i = 0; i < 2; ++i) {
    sample.Add("ok", m_random.Below(2) != 0 ? "true" : "false", ValueKind::Boolean);
  }
  for (Node& value : sample.children) {
    value.isRepeated = true;
  }
  return sample;
}

void AppendEscaped(std::string& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
}

// As deep as a record, which is four levels.
// NOLINTNEXTLINE(misc-no-recursion)
void AppendXml(std::string& out, const Node& node, std::size_t depth, bool isPretty) {
  if (isPretty) out.append(depth, '\t');
  (out += '<') += node.name;
  for (const Attribute& attribute : node.attributes) {
    ((out += ' ') += attribute.name) += "=\"";
    AppendEscaped(out, attribute.value);
    out += '"';
  }
  if (node.kind == ValueKind::Nil) {
    out += " xsi:nil=\"true\"/>";
  } else {
    out += '>';
    AppendEscaped(out, node.text);
    if (isPretty && !node.children.empty()) out += '\n';
    for (const Node& child : node.children) {
      AppendXml(out, child, depth + 1, isPretty);
    }
    if (isPretty && !node.children.empty()) out.append(depth, '\t');
    ((out += "</") += node.name) += '>';
  }
  if (isPretty || depth == 1) out += '\n';
}

void AppendJsonString(std::string& out, std::string_view text) {
  out += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  out += '"';
}

void AppendJson(std::string& out, const Node& node);

/// The members of an object; repeated children become one array.
// NOLINTNEXTLINE(misc-no-recursion)
void AppendJsonMembers(std::string& out, const Node& node) {
  const char* separator = "";
  for (const Attribute& attribute : node.attributes) {
    (((out += separator) += "\"@") += attribute.name) += "\":";
    if (attribute.isNumber) {
      out += attribute.value;
    } else {
      AppendJsonString(out, attribute.value);
    }
    separator = ",";
  }
  const std::string_view noName;
  std::string_view openArray = noName;
  for (const Node& child : node.children) {
    if (child.isRepeated && child.name == openArray) {
      out += ',';
    } else {
      if (openArray != noName) out += ']';
      out += separator;
      AppendJsonString(out, child.name);
      out += child.isRepeated ? ":[" : ":";
      openArray = child.isRepeated ? child.name : noName;
    }
    AppendJson(out, child);
    separator = ",";
  }
  if (openArray != noName) out += ']';
}

// NOLINTNEXTLINE(misc-no-recursion)
void AppendJson(std::string& out, const Node& node) {
  if (node.kind == ValueKind::Nil) {
    out += "null";
  } else if (!node.children.empty() || !node.attributes.empty()) {
    out += '{';
    AppendJsonMembers(out, node);
    out += '}';
  } else if (node.kind == ValueKind::Text) {
    AppendJsonString(out, node.text);
  } else {
    out += node.text;
  }
}

std::string MakeRecords(const std::string& root, bool isJson, const DocumentOptions& options) {
  const bool isOrders = root == "orders";
  std::string out;
  out.reserve(options.sizeInBytes + options.sizeInBytes / 64 + 4096);
  if (isJson) {
    out = "{\"" + root + "\":{\"" + (isOrders ? "order" : "sample") + "\":[";
  } else {
    out =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + root + " xmlns=\"urn:bench:" + root + '"';
    if (isOrders) out += " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
    out += ">\n";
  }
  constexpr std::size_t kFrameBytes = 120;  // about what stands around the records
  Records records(options.seed, options.nonAsciiPercent);
  std::string xml;
  std::size_t sizeInBytes = kFrameBytes;
  for (unsigned id = 1; sizeInBytes < options.sizeInBytes; ++id) {
    const Node record = isOrders ? records.Order(id) : records.Sample();
    xml.clear();
    AppendXml(xml, record, 1, options.isPretty);
    sizeInBytes += xml.size();
    if (isJson) {
      if (id > 1) out += ",\n";
      AppendJson(out, record);
    } else {
      out += xml;
    }
  }
  out += isJson ? "]}}\n" : "</" + root + ">\n";
  return out;
}

std::string MakeDeep(std::uint64_t seed) {
  constexpr int kLevels = 200;
  Random random(seed);
  std::string out = "<?xml version=\"1.0\"?>\n";
  for (int i = 0; i < kLevels; ++i) {
    out += Format("<level%d depth=\"%d\">", i % 7, i) + random.OneOf(kWords);
  }
  for (int i = kLevels - 1; i >= 0; --i) {
    out += Format("</level%d>\n", i % 7);
  }
  return out;
}

std::string MakeWideNamespaces(std::uint64_t seed) {
  Random random(seed);
  std::string out = "<?xml version=\"1.0\"?>\n<root";
  for (int i = 0; i < 64; ++i) {
    out += Format("\n  xmlns:p%d=\"urn:bench:wide:namespace:%d\"", i, i);
  }
  out += ">\n";
  for (int i = 0; i < 512; ++i) {
    const unsigned outer = random.Below(64);
    const unsigned inner = random.Below(64);
    out += Format("<p%u:e%d p%u:a=\"%u\"", outer, i % 16, inner, random.Below(1000));
    if (i % 4 == 0) out += Format(" xmlns:local=\"urn:bench:local:%d\" local:b=\"x\"", i);
    out +=
        Format("><p%u:v>%u</p%u:v></p%u:e%d>\n", inner, random.Below(100000), inner, outer, i % 16);
  }
  return out + "</root>\n";
}

constexpr std::string_view kKinds[] = {"orders",         "telemetry", "orders-json",
                                       "telemetry-json", "deep",      "wide-ns"};

}  // namespace

bool IsDocumentKind(std::string_view kind) {
  for (const std::string_view known : kKinds) {
    if (kind == known) return true;
  }
  return false;
}

std::string MakeDocument(std::string_view kind, const DocumentOptions& options) {
  if (kind == "deep") return MakeDeep(options.seed);
  if (kind == "wide-ns") return MakeWideNamespaces(options.seed);
  const std::size_t dash = kind.find('-');
  return MakeRecords(std::string(kind.substr(0, dash)), dash != std::string_view::npos, options);
}

}  // namespace bench
