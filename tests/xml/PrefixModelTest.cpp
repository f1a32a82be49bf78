#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/XmlTextWriter.h"

namespace ZuXmlLib16 {
namespace {

/// Namespace scopes in the plainest way: every element has a map of its own, and looks through all
/// of it.
class PlainScopes {
 public:
  void Declare(const std::string& prefix, const std::string& uri) {
    if (prefix.empty() || prefix == "xml" || uri.empty()) return;
    Map& map = m_open.empty() ? m_root : m_open.back().map;
    for (auto entry = map.begin(); entry != map.end();) {
      entry = entry->second == prefix ? map.erase(entry) : std::next(entry);
    }
    map[uri] = prefix;
  }

  void Start(const std::string& uri) {
    const bool isRoot = m_open.empty();
    if (!isRoot && !m_open.back().hasContent) m_text += '>';
    if (!isRoot) m_open.back().hasContent = true;
    m_open.push_back({"e", isRoot ? m_root : m_open.back().map, false});
    if (uri.empty()) {
      m_text += "<e";
    } else {
      const bool isKnown = m_open.back().map.count(uri) > 0;
      m_open.back().name = PrefixOf(uri) + ":e";
      m_text += '<' + m_open.back().name;
      if (!isKnown) m_text += " xmlns:" + PrefixOf(uri) + "=\"" + uri + '"';
    }
    if (!isRoot) return;
    for (const auto& [rootUri, prefix] : m_root) {
      if (prefix != "xml") m_text += " xmlns:" + prefix + "=\"" + rootUri + '"';
    }
  }

  void Attribute(const std::string& uri) {
    const bool isKnown = m_open.back().map.count(uri) > 0;
    const std::string& prefix = PrefixOf(uri);
    m_text += isKnown ? " " : " xmlns:" + prefix + "=\"" + uri + "\" ";
    m_text += prefix + ":a=\"\"";
  }

  void End() {
    m_text += m_open.back().hasContent ? "</" + m_open.back().name + ">" : "/>";
    m_open.pop_back();
  }

  bool IsOpen() const { return !m_open.empty(); }
  bool TakesAttributes() const { return IsOpen() && !m_open.back().hasContent; }
  const std::string& Text() const { return m_text; }

 private:
  using Map = std::map<std::string, std::string>;
  struct Element {
    std::string name;
    Map map;
    bool hasContent;
  };

  const std::string& PrefixOf(const std::string& uri) {
    Map& map = m_open.back().map;
    const auto known = map.find(uri);
    if (known != map.end()) return known->second;
    const auto isUsed = [&](const std::string& candidate) {
      for (const auto& entry : map) {
        if (entry.second == candidate) return true;
      }
      return false;
    };
    int index = 0;
    while (isUsed(CXmlWriter::NsIntToString(index))) {
      ++index;
    }
    return map[uri] = CXmlWriter::NsIntToString(index);
  }

  Map m_root{{CXmlWriter::XML_NAMESPACE, "xml"}};
  std::vector<Element> m_open;
  std::string m_text;
};

TEST(Prefixes, AreThoseOfThePlainestWay) {
  for (unsigned seed = 1; seed <= 2000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
    const unsigned uris = 1 + below(seed % 10 == 0 ? 60 : 6);
    const auto anyUri = [&] {
      const unsigned index = below(uris + 1);
      return index == 0 ? std::string() : "u" + std::to_string(index);
    };
    const char* const prefixes[] = {"AA", "AB", "AC", "p", "", "xml"};
    CTextStream stream;
    CXmlTextWriter writer(stream);
    writer.SetFormat(false);
    PlainScopes plain;
    for (int step = 0; step < 120; ++step) {
      const std::string uri = anyUri();
      const char* const prefix = prefixes[below(6)];
      switch (below(8)) {
        case 0:
          writer.AddNamespace(prefix, uri);
          plain.Declare(prefix, uri);
          break;
        case 1:
        case 2:
          if (!plain.IsOpen()) break;
          writer.WriteEndElement();
          plain.End();
          break;
        case 3:
        case 4:
          if (!plain.TakesAttributes() || uri.empty()) break;
          writer.WriteAttributeString("a", uri, "", ItemType::string);
          plain.Attribute(uri);
          break;
        default:
          writer.WriteStartElement("e", uri);
          plain.Start(uri);
      }
    }
    ASSERT_EQ(stream.CopyText(), plain.Text());
  }
}

}  // namespace
}  // namespace ZuXmlLib16
