#pragma once

#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/XmlDocument.h"
#include "xml/Arena.h"
#include "xml/PrefixHistory.h"

namespace ZuXmlLib16::detail {

/// Everything a CXmlDocument owns: the memory of its nodes and texts, its names, the root, and the
/// elements that are still open while it is built.
class XmlTree {
 public:
  XmlTree(const CXmlDocument& document, CXmlDocument::ElementFilter filter)
      : m_document(document), m_filter(filter) {}
  XmlTree(const XmlTree&) = delete;
  XmlTree& operator=(const XmlTree&) = delete;
  ~XmlTree() { Clear(); }

  void Clear();
  CXmlElement* Root() const { return m_root; }
  CXmlElement* InnermostOpen() const { return m_open.empty() ? nullptr : m_open.back().element; }

  /// The name that a parser spells so ("uri|local" or "local", UTF-8). guess is tried first; it may
  /// be null.
  XmlName* NameOfSpelling(const char* spelling, XmlName* guess) {
    if (guess != nullptr && std::strcmp(guess->spelling, spelling) == 0) return guess;
    return FindOrAddSpelling(spelling);
  }
  const XmlName* NameOf(std::string_view namespaceUri, std::string_view localName);

  /// Opens a child of the innermost open element, or the root.
  CXmlElement* Open(const XmlName* name);
  /// Adds text to the innermost open element. Mostly it is the only one.
  /// @param isLasting  whether the text lasts as long as the tree and need not be copied.
  void AddText(std::string_view text, bool isLasting);
  void Close();
  /// Gives the elements that are still open the text they have so far.
  void KeepOpenText();

  /// A child of parent that is not open.
  CXmlElement* AddChild(CXmlElement& parent, const XmlName* name);
  CXmlAttributes& AttributesOf(CXmlElement& element);
  const CXmlAttributes& NoAttributes() const { return m_noAttributes; }
  CXmlAttribute* AddAttribute(CXmlElement& element, const XmlName* name, std::string_view value) {
    return AddLastingAttribute(element, name, CopyText(value));
  }
  /// The same with a value that lasts as long as the tree.
  CXmlAttribute* AddLastingAttribute(CXmlElement& element, const XmlName* name,
                                     std::string_view value);

  void* Allocate(std::size_t sizeInBytes) { return m_nodes.Allocate(sizeInBytes); }
  /// A copy for one node, which goes when that is discarded.
  std::string_view CopyText(std::string_view text) { return CopyInto(m_nodes, text); }
  /// A copy for any number of nodes.
  std::string_view CopySharedText(std::string_view text) { return CopyInto(m_shared, text); }
  /// A declaration, of the element that opens next, of a prefix that was declared before.
  void DeclareAgain(std::string_view prefix, std::string_view before,
                    std::string_view namespaceUri) {
    if (before != namespaceUri || m_prefixes.Knows(prefix)) {
      m_prefixes.Declare(prefix, before, namespaceUri);
    }
  }
  const PrefixHistory& Prefixes() const { return m_prefixes; }
  void CountString() { ++m_stringCount; }
  /// To be called before a node is added elsewhere than at the innermost open element: memory is
  /// then no longer taken in the order of the elements.
  void StopRewinding() { m_mayRewind = false; }

 private:
  struct OpenElement {
    CXmlElement* element;
    CXmlElement* previousSibling;
    std::size_t textStart;  // in m_openText
  };

  static std::string_view CopyInto(Arena& arena, std::string_view text);
  XmlName* FindOrAddSpelling(std::string_view spelling);
  XmlName* AddName(std::string_view key, std::string_view namespaceUri, std::string_view localName);
  void Discard(const OpenElement& closed);
  void DestroyRoot();

  const CXmlDocument& m_document;
  CXmlDocument::ElementFilter m_filter;
  const CXmlAttributes m_noAttributes{DocumentAllocator<CXmlAttribute*>(*this)};
  Arena m_nodes;
  Arena m_shared;  // keys of names, and texts, that do not belong to one node
  std::deque<XmlName> m_names;
  std::map<std::string_view, XmlName*>
      m_nameIndex;  // ordered: nobody can choose names that collide
  PrefixHistory m_prefixes;
  CXmlElement* m_root = nullptr;
  std::vector<OpenElement> m_open;
  std::string m_openText;  // of the open elements that have several texts, one behind the other
  std::size_t m_stringCount = 0;  // texts that became a std::string since the tree was empty
  bool m_mayRewind = true;        // whether a discarded element gives its memory back at once
};

}  // namespace ZuXmlLib16::detail
