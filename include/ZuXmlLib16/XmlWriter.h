#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"
#include "ZuXmlLib16/ItemType.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

/// Line ends of text output.
enum class EOLType : std::int32_t { CrLf = 0, Lf = 1 };

/// Prefixes by namespace URI.
using CNamespaceMap = std::map<std::string, std::string, std::less<>>;

namespace detail {
class PrefixScope;
}

/// The sink that every object writes itself to, whatever the format. Keeps the open elements and
/// the namespace scopes; texts are in the local character set and end at their first NUL. Used by
/// one thread at a time.
class ZUXMLLIB16_API CXmlWriter : public CInstanceMonitor {
 public:
  /// Namespace of the prefix "xml", which every scope knows and no output declares.
  static const std::string XML_NAMESPACE;

  /// Where an element stands in writing the items of a collection; for formats with arrays.
  enum class ContextState : std::int32_t {
    Normal = 0,
    CollectionPending = 1,
    CollectionOpen = 2,
    CollectionEnded = 3,
  };

  /// An open element with its namespace scope. It owns its parent. A scope is shared with the
  /// parent until the element declares something of its own.
  class ZUXMLLIB16_API CXmlWriterContext {
   public:
    /// A nested element.
    CXmlWriterContext(CTextRef name, CTextRef namespaceUri,
                      std::unique_ptr<CXmlWriterContext>&& parent);
    /// The root, with a scope of its own.
    CXmlWriterContext(CTextRef name, CTextRef namespaceUri, CTextRef defaultNamespace,
                      const CNamespaceMap& namespaceMap,
                      std::unique_ptr<CXmlWriterContext>&& parent);
    CXmlWriterContext(const CXmlWriterContext&) = delete;
    CXmlWriterContext& operator=(const CXmlWriterContext&) = delete;
    virtual ~CXmlWriterContext();

    const std::string& GetName() const { return m_name; }
    const std::string& GetNamespace() const { return m_namespaceUri; }
    /// Child elements started so far.
    std::uint64_t GetChildCount() const { return m_childCount; }
    /// 0 for the root.
    std::uint64_t GetDepth() const { return m_depth; }
    bool IsStartTagOpen() const { return m_isStartTagOpen; }
    ContextState GetState() const { return m_state; }
    CXmlWriterContext* GetParent() const { return m_parent.get(); }

    /// The default namespace and the prefixes in scope.
    const std::string& GetDefaultNamespace() const;
    CNamespaceMap GetNamespaceMap() const;
    void SetDefaultNamespace(CTextRef namespaceUri);
    /// Inserts or replaces.
    void SetNamespaceMapValue(CTextRef namespaceUri, CTextRef prefix);
    /// The prefix of the namespace; an empty one is inserted for a namespace that has none.
    std::string& GetNamespaceMapValue(const std::string& namespaceUri);
    std::string& GetNamespaceMapValue(const char* namespaceUri);
    /// The prefix of the namespace, null when it has none; inserts nothing.
    const std::string* FindPrefix(std::string_view namespaceUri) const;
    /// Gives a namespace the first prefix of AA, AB, ... that is free here.
    const std::string& AllocatePrefix(std::string_view namespaceUri);

   private:
    friend class CXmlWriter;
    friend class CXmlTextWriter;
    friend class CFastInfosetWriter;

    /// Makes the object anew, keeping the memory of its strings.
    void Reuse(CTextRef name, CTextRef namespaceUri, std::unique_ptr<CXmlWriterContext>&& parent);
    detail::PrefixScope& OwnScope();
    void TakeScope(std::unique_ptr<detail::PrefixScope> scope);

    std::uint64_t m_childCount = 0;
    bool m_isStartTagOpen = true;
    std::uint64_t m_depth = 0;
    std::string m_namespaceUri;
    std::string m_name;
    std::string m_prefix;             // of the tags, "" for none
    std::uint64_t m_prefixStamp = 0;  // of the scope in which the namespace has this prefix
    std::unique_ptr<CXmlWriterContext> m_parent;
    ContextState m_state = ContextState::Normal;
    detail::PrefixScope* m_scope = nullptr;  // own, or that of the nearest ancestor with one
    std::unique_ptr<detail::PrefixScope> m_ownScope;  // null while nothing is declared here
  };

  CXmlWriter(const CXmlWriter&) = delete;
  CXmlWriter& operator=(const CXmlWriter&) = delete;

  // The order of the virtual operations is binary interface.

  ~CXmlWriter() override;
  virtual void Open();
  /// @throws CZuException  "An Element has not been closed."
  virtual void Close();
  /// Sets the default namespace of the root, or of the open element's scope. Writes nothing.
  virtual void SetDefaultNamespace(CTextRef namespaceUri);
  /// Declares a prefix for the root, or in the open element's scope. Writes nothing. Ignored are
  /// the prefixes "", "xml" and "xmlns", the empty namespace and that of "xml", which cannot be
  /// declared.
  virtual void AddNamespace(CTextRef prefix, CTextRef namespaceUri);
  virtual void WriteComment(CTextRef text) = 0;
  /// @param instruction  complete, "<?name data?>".
  virtual void WritePI(CTextRef instruction) = 0;
  virtual void WriteInlineSchema(CTextRef schema) = 0;
  virtual void WriteStartElement(CTextRef localName, CTextRef namespaceUri) = 0;
  /// @param isDefault  the text is the default value of the schema.
  virtual void WriteString(CTextRef text, ItemType type, bool isDefault) = 0;
  virtual void WriteEndElement() = 0;
  virtual void WriteAttributeString(CTextRef localName, CTextRef namespaceUri, CTextRef value,
                                    ItemType type) = 0;
  /// Writes xsi:type.
  virtual void WriteAttributeType(CTextRef typeNamespaceUri, CTextRef typeName, ItemType type) = 0;
  /// Writes xsi:nil="true".
  virtual void WriteAttributeNil() = 0;

  /// Whether the format has arrays: only then do states matter.
  bool HasArrays() const { return m_hasArrays; }
  /// Sets the state of the open element; nothing when none is open.
  void SetContextState(ContextState state);

  /// The first prefix of AA, AB, ... that no entry of map has.
  static std::string GetUniquePrefix(const CNamespaceMap& map);
  /// AA for 0, AZ for 25, BA for 26, AAA for 676.
  static std::string NsIntToString(int index);

 protected:
  explicit CXmlWriter(const char* className, bool hasArrays = false);

  CXmlWriterContext* Current() const { return m_context.get(); }
  /// What is declared before the first element is opened.
  const std::string& RootDefaultNamespace() const;
  CNamespaceMap RootNamespaceMap() const;
  /// Its prefix of a namespace, null for none.
  const std::string* FindRootPrefix(std::string_view namespaceUri) const;
  CXmlWriterContext& PushContext(CTextRef localName, CTextRef namespaceUri);
  /// Closes the innermost element; its parent becomes current.
  void PopContext();
  bool WasElementOpened() const { return m_wasElementOpened; }

 private:
  CXmlWriterContext& PushRoot(CTextRef localName, CTextRef namespaceUri);

  std::unique_ptr<CXmlWriterContext> m_context;
  std::unique_ptr<detail::PrefixScope> m_rootScope;
  std::unique_ptr<CXmlWriterContext> m_spare;  // closed elements, to be used again
  bool m_wasElementOpened = false;
  bool m_hasArrays;
};

}  // namespace ZuXmlLib16
