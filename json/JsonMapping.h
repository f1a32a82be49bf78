#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "json/JsonTape.h"
#include "xml/PersistentMap.h"

namespace ZuXmlLib16 {

class CSerializationContext;

namespace detail {

/// A prefix that an element declares; "" for the default namespace.
struct XmlDeclaration {
  std::string_view prefix;
  std::string_view namespaceUri;
};

struct XmlQName {
  std::string_view prefix;
  std::string_view localName;
  std::string_view namespaceUri;
};

struct XmlAttributeEvent {
  XmlQName name;
  std::string_view value;
};

/// Takes an XML document in parts. All texts are in UTF-8, without characters that XML forbids.
class XmlSink {
 public:
  XmlSink() = default;
  XmlSink(const XmlSink&) = delete;
  XmlSink& operator=(const XmlSink&) = delete;
  virtual ~XmlSink() = default;

  /// The texts are valid during the call only. Attributes differ in namespace or local name.
  virtual void StartElement(const XmlQName& name, const std::vector<XmlDeclaration>& declarations,
                            const std::vector<XmlAttributeEvent>& attributes) = 0;
  /// @param text  not empty.
  virtual void AddText(std::string_view text) = 0;
  /// @param name  without its namespace.
  virtual void EndElement(const XmlQName& name) = 0;
};

/// Turns a JSON document into XML:
/// - a member becomes an element of its name, an array one element for each item;
/// - "@name" is an attribute, "@xmlns" and "@xmlns:p" are declarations of the element around them,
///   wherever they stand in their object; "#text" and "" are its text;
/// - null is an element with xsi:nil;
/// - the only member of the outermost object is the root.
class JsonMapping {
 public:
  /// All must outlive the mapping.
  JsonMapping(const JsonTape& tape, const CSerializationContext& context, XmlSink& sink);

  /// @throws CZuValidationException  JSON that has no counterpart in XML, with the place in the
  /// JSON document as its path.
  void Convert();

 private:
  /// The namespaces in scope.
  struct Scope {
    struct Entry {
      std::string_view namespaceUri;
      std::size_t scope;        // number of the scope that declares it
      std::size_t declaration;  // its index among those of the element
    };
    PersistentMap<Entry> prefixes;
    std::string_view defaultNamespace;
    std::size_t nilCandidate = 0;  // those before it stand for other namespaces
  };

  /// A container whose items are visited, or an element that is open.
  struct Frame {
    std::size_t container;  // item of the array or of the element's value; kNone: the document
    std::size_t name;       // item that names the element; kNone: no element
    std::size_t next;
    std::size_t end;
    bool hasScope;
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct HashedAttribute {
    std::size_t hash;  // of its name
    std::size_t index;
  };

  void Visit(std::size_t container);
  void VisitTopLevel();
  void VisitMember();
  void VisitText();
  void Enter(std::size_t name);
  void Leave();
  /// @param name  the item that names the element; its value is being visited.
  void StartElement(std::size_t name);
  void CollectAttributes(std::size_t object);
  void CollectAttribute(const JsonTape::Item& item);
  void ResolveAttributes();
  void AddNil();
  void DropRepeatedAttributes();
  bool IsOutsideRoot() const { return m_openElements == 0; }

  std::string_view ResolvePrefix(std::string_view prefix);
  void Declare(std::string_view prefix, std::string_view namespaceUri);
  Scope& OwnScope();
  /// A prefix for xsi:nil.
  std::string_view NilPrefix();
  const Scope::Entry* SkipNilCandidates(Scope& scope);
  std::string_view NilCandidate(std::size_t index);

  /// Where the item is that is being visited.
  std::string Path() const;

  const JsonTape& m_tape;
  XmlSink& m_sink;
  bool m_hasNamespaces;
  std::map<std::string, std::string, std::less<>> m_aliases;  // prefix -> namespace URI
  std::vector<Frame> m_frames;
  std::vector<Scope> m_scopes;
  std::deque<std::string> m_nilCandidates;
  std::size_t m_item = 0;  // being visited
  std::size_t m_openElements = 0;
  bool m_hasRoot = false;
  // Of the element that is being started.
  std::vector<XmlDeclaration> m_declarations;
  std::vector<XmlAttributeEvent> m_attributes;
  std::vector<std::size_t> m_attributeItems;
  std::vector<HashedAttribute> m_attributeOrder;
};

}  // namespace detail
}  // namespace ZuXmlLib16
