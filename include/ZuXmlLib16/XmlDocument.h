#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"
#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

class CXmlAttribute;
class CXmlDocument;
class CXmlElement;

namespace detail {

class PrefixHistory;
class XmlTree;

/// What an attribute's name means to the readers of objects.
enum class AttributeKind : std::int8_t { Plain, Namespace, Nil };

/// A name of a document, kept once: many elements and attributes share it.
struct XmlName {
  std::string namespaceUri;
  std::string localName;
  AttributeKind kind = AttributeKind::Plain;
  const char* spelling = nullptr;     ///< as the parser gives it: namespace URI, '|', local name
  XmlName* next = nullptr;            ///< the name that came after this one last time
  XmlName* otherNext = nullptr;       ///< another one that did before, null for none
  XmlName* firstAttribute = nullptr;  ///< the first attribute of the last element of this name
};

/// Text in the memory of a document; becomes a std::string when somebody asks for one.
class DocumentText {
 public:
  DocumentText() = default;
  explicit DocumentText(std::string_view text) : m_view(text) {}

  std::string_view View() const { return m_view; }
  const std::string& AsString(XmlTree& tree) const;
  void Append(XmlTree& tree, std::string_view text);

 private:
  std::string& Materialise(XmlTree& tree) const;

  mutable std::unique_ptr<std::string> m_string;
  mutable std::string_view m_view;
};

ZUXMLLIB16_API void* AllocateFrom(XmlTree& tree, std::size_t sizeInBytes);

/// Takes memory from a document, which frees all of it at once.
template <class T>
class DocumentAllocator {
 public:
  using value_type = T;

  explicit DocumentAllocator(XmlTree& tree) : m_tree(&tree) {}
  template <class U>
  explicit DocumentAllocator(const DocumentAllocator<U>& other) : m_tree(other.Tree()) {}

  T* allocate(std::size_t count) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): the items may be pointers
    return static_cast<T*>(AllocateFrom(*m_tree, count * sizeof(T)));
  }
  void deallocate(T*, std::size_t) {}
  XmlTree* Tree() const { return m_tree; }
  bool operator==(const DocumentAllocator& other) const { return m_tree == other.m_tree; }
  bool operator!=(const DocumentAllocator& other) const { return m_tree != other.m_tree; }

 private:
  XmlTree* m_tree;
};

}  // namespace detail

/// The attributes of an element, in the order of the input.
using CXmlAttributes = std::vector<CXmlAttribute*, detail::DocumentAllocator<CXmlAttribute*>>;

/// An attribute of a CXmlElement, owned by it. Lives in the memory of the document.
class ZUXMLLIB16_API CXmlAttribute : public CInstanceMonitor {
 public:
  /// The attribute only points back to element, it is not added to it (see
  /// CXmlElement::AddAttribute).
  CXmlAttribute(const CXmlElement* element, CTextRef localName, CTextRef value,
                CTextRef namespaceUri);
  CXmlAttribute(const CXmlAttribute&) = delete;
  CXmlAttribute& operator=(const CXmlAttribute&) = delete;
  ~CXmlAttribute() override;

  const std::string& GetLocalName() const { return m_name->localName; }
  const std::string& GetNamespaceURI() const { return m_name->namespaceUri; }
  const std::string& GetValue() const;
  /// The value without making a std::string of it; valid as long as the attribute.
  std::string_view GetValueView() const { return m_value.View(); }
  /// The element's path, "/", and the name behind "@", e.g. "/a/b/p:@c".
  std::string GetXPath() const;

  /// Whether it is a declaration or xsi:type, xsi:schemaLocation or xsi:noNamespaceSchemaLocation.
  bool IsNamespaceAttribute() const { return m_name->kind == detail::AttributeKind::Namespace; }
  /// Whether it is xsi:nil.
  bool IsNilAttribute() const { return m_name->kind == detail::AttributeKind::Nil; }

 private:
  friend class detail::XmlTree;
  CXmlAttribute(const CXmlElement* element, const detail::XmlName* name, std::string_view value);

  const CXmlElement* m_element;
  const detail::XmlName* m_name;
  detail::DocumentText m_value;
};

/// An element of a CXmlDocument. It owns its children and attributes; its memory is the document's.
/// Text is in the local character set. Not locked: a document and all its nodes belong to one
/// thread at a time.
class ZUXMLLIB16_API CXmlElement : public CInstanceMonitor {
 public:
  /// An element that is not part of the tree yet.
  /// @throws CZuInvalidParamException  when document is null.
  CXmlElement(const CXmlDocument* document, const CXmlElement* parent);
  CXmlElement(const CXmlElement&) = delete;
  CXmlElement& operator=(const CXmlElement&) = delete;
  /// Destroys the whole subtree.
  ~CXmlElement() override;

  /// Appends a new child, owned by this element.
  CXmlElement* CreateNewChildElement();
  /// Unlinks the last child; takes time in proportion to the number of children.
  /// @return the child, which the caller deletes before the document goes, or null.
  CXmlElement* RemoveLastChildElement();

  void SetElementName(CTextRef localName);
  void SetNamespace(CTextRef namespaceUri);
  /// @param length  bytes of text to append; the text ends at the first NUL too.
  void AppendText(const char* text, int length);
  void AppendText(const char* text);
  void AddAttribute(CTextRef localName, CTextRef value, CTextRef namespaceUri);

  const CXmlDocument* GetDocument() const { return m_document; }
  /// The first child, null when there is none.
  CXmlElement* GetFirstElement() const { return m_firstChild; }
  CXmlElement* GetNextSiblingElement() const { return m_nextSibling; }
  const std::string& GetNamespaceURI() const { return m_name->namespaceUri; }
  const std::string& GetLocalName() const { return m_name->localName; }
  /// All character data directly inside the element.
  const std::string& GetText() const;
  /// The text without making a std::string of it; valid until text is appended.
  std::string_view GetTextView() const { return m_text.View(); }
  const CXmlAttributes& GetAttributes() const;
  /// The value of the first attribute of this name; a shared empty string when there is none.
  const std::string& GetAttribute(CTextRef localName, CTextRef namespaceUri) const;

  /// The local name, with the prefix that the document declares for the namespace.
  std::string GetQName() const;
  /// The QName, with "[n]" (from 1) when the parent has several children of that QName.
  std::string GetNameWithPredicate() const;
  /// The path from the root, e.g. "/a/b[2]".
  std::string GetXPath() const;

 protected:
  CXmlElement(const CXmlDocument* document, const CXmlElement* parent, const detail::XmlName* name);

 private:
  friend class CXmlAttribute;
  friend class detail::PrefixHistory;
  friend class detail::XmlTree;

  class PrefixTable;

  std::string GetNameWithPredicate(const PrefixTable& prefixes) const;
  void DestroyChildren();

  const CXmlDocument* m_document;
  const CXmlElement* m_parent;
  CXmlElement* m_nextSibling = nullptr;
  CXmlElement* m_firstChild = nullptr;
  CXmlElement* m_lastChild = nullptr;
  CXmlAttributes* m_attributes = nullptr;  // null while there are none
  detail::DocumentText m_text;
  const detail::XmlName* m_name;
};

/// The tree that every input becomes: a document owns all its nodes, names and texts. It can be
/// loaded again; each load drops the previous tree. After a failed load it holds what was built so
/// far.
class ZUXMLLIB16_API CXmlDocument : public CInstanceMonitor {
 public:
  /// Called for every completed element; true discards it. Not followed for the document element.
  using ElementFilter = bool (*)(CXmlElement* element);

  CXmlDocument();
  /// @param context  must outlive the document.
  explicit CXmlDocument(const CSerializationContext& context);
  explicit CXmlDocument(ElementFilter filter);
  CXmlDocument(ElementFilter filter, const CSerializationContext& context);
  CXmlDocument(const CXmlDocument&) = delete;
  CXmlDocument& operator=(const CXmlDocument&) = delete;
  ~CXmlDocument() override;

  /// Drops the tree, the prefixes and the input.
  virtual void Cleanup();

  /// The root or null.
  CXmlElement* GetDocumentElement() const;

  // What is loaded must not lie in the document's own tree, which goes first. All loaders throw
  // CZuException: "<parser's text> at line <n>" for XML that is not well-formed, "Failed to parse
  // FastInfoset. " and so on (see CFastInfosetReader), and "The document is larger than the limit
  // of %s bytes." (see CSerializationContext::GetMaxDocumentSize).

  /// Parses NUL-terminated XML text.
  /// @throws CZuException  "XML String is empty!" for null or empty text.
  void LoadXml(const char* xml);
  /// The same for wide characters, of each of which the low 16 bits count.
  void LoadXml(const wchar_t* xml);
  /// Parses bytes: XML text or Fast Infoset, plain or compressed with gzip or zlib. The bytes stay
  /// the caller's and are not used after the call.
  /// @throws CZuException  "XML Stream is empty!".
  void LoadXmlStream(const unsigned char* data, unsigned long size);
  /// Parses the bytes of a file, as LoadXmlStream does.
  /// @throws CZuException  "Failed to open the file [%s]." and its siblings.
  void Load(const char* path);

  // JSON text becomes XML text, which the caller loads like any other. All throw
  // CZuValidationException for JSON that is malformed or has no counterpart in XML (see
  // CJsonTextReader, CJsonReaderToXmlHandler); the path is then the place in the JSON document.

  /// @param json  NUL-terminated, in the local character set.
  /// @return XML in UTF-8.
  /// @throws CZuException  "JSON String is empty!" for null or empty text.
  CBinaryData LoadJson(const char* json);
  CBinaryData LoadJson(const wchar_t* json);
  /// @param data  UTF-8, with or without its byte order mark, plain or compressed.
  /// @throws CZuException  "JSON Stream is empty!".
  CBinaryData LoadJsonStream(const unsigned char* data, unsigned long size);
  /// @throws CZuException  "Failed to open the file [%s]." and its siblings.
  CBinaryData LoadJsonFile(const char* path);

  // The same with the tree of that XML text for the result, which takes less time than the text.

  void ReadJson(const char* json);
  void ReadJson(const wchar_t* json);
  void ReadJsonStream(const unsigned char* data, unsigned long size);
  void ReadJsonFile(const char* path);

  // Building, for readers. Names are copied.

  /// Makes the document element and opens it; an earlier tree is dropped.
  CXmlElement* AddDocElement(CTextRef namespaceUri, CTextRef localName);
  /// Appends a child to the innermost open element and opens it.
  CXmlElement* AddChildElement(CTextRef namespaceUri, CTextRef localName);
  /// Closes the innermost open element and asks the element filter about it.
  void EndElement();
  void AddElementAttribute(CXmlElement* element, CTextRef localName, CTextRef value,
                           CTextRef namespaceUri);
  /// Appends text up to length bytes or its first NUL, without its carriage returns.
  void AppendTextExcludingCR(CXmlElement* element, const char* text, unsigned long length);
  void AppendTextExcludingCR(CXmlElement* element, const char* text);
  /// Records a prefix that the element opened next declares; a later declaration of the same prefix
  /// replaces it.
  void AddNamespaceAlias(CTextRef prefix, CTextRef namespaceUri);

  /// @return the URI last declared for the prefix, or "".
  const std::string& LookupNamespaceFromAlias(CTextRef prefix) const;
  /// @return the URI that the prefix stands for at an element of this document, or "".
  const std::string& LookupNamespaceFromAlias(CTextRef prefix, const CXmlElement* element) const;
  /// @return the first prefix, in ascending order, declared for the URI, or "".
  const std::string& LookupAliasFromNamespace(CTextRef namespaceUri) const;

  const CSerializationContext& GetContext() const { return *m_context; }

 private:
  friend class CExpatReader;
  friend class CFastInfosetReader;
  friend class CXmlAttribute;
  friend class CXmlElement;

  class InputScope;

  void Parse(const unsigned char* data, unsigned long size);
  void ParseInflated(const unsigned char* data, unsigned long size);
  void ParseText(const unsigned char* data, unsigned long size);
  // The JSON text of an input, in the local character set; the tree is dropped.
  std::string TakeJson(const char* json);
  std::string TakeJson(const wchar_t* json);
  std::string TakeJsonStream(const unsigned char* data, unsigned long size);
  std::string TakeJsonFile(const char* path);
  std::string DecodeJson(const unsigned char* data, unsigned long size) const;
  CBinaryData ConvertJson(const std::string& json) const;
  void BuildFromJson(const std::string& json);

  std::unique_ptr<detail::XmlTree> m_tree;
  std::map<std::string, std::string, std::less<>> m_aliases;  // prefix -> namespace URI
  const unsigned char* m_input = nullptr;                     // while a load runs
  unsigned long m_inputLength = 0;
  SchemaType m_schemaType;
  const CSerializationContext* m_context;
};

}  // namespace ZuXmlLib16
