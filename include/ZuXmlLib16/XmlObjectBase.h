#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/CriticalSection.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/Streams.h"
#include "ZuXmlLib16/TextRef.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16 {

class CElement;
class CXmlCollectionBase;
class CXmlElement;
class CXmlObjectBase;

/// Which XML declaration a Fast Infoset document carries (ITU-T Rec. X.891, C.2).
enum class FInfoDecl : std::int32_t {
  None = 0,
  Finf,
  FinfStandaloneYes,
  FinfStandaloneNo,
  V10,
  V10StandaloneYes,
  V10StandaloneNo,
  V11,
  V11StandaloneYes,
  V11StandaloneNo,
};

/// Receives the change events of collections.
class ZUXMLLIB16_API IEventSink {
 public:
  enum class MsgType : std::int32_t {
    Changed = 0,
    Added = 1,
    AddComplete = 2,
    Removed = 3,
    RemoveComplete = 4,
  };

  /// @param sender  the collection that changed
  /// @param data    Added, AddComplete: the item; Removed, RemoveComplete: an int index or null;
  /// else null
  virtual void OnEvent(CXmlObjectBase* sender, MsgType type, void* data) = 0;

 protected:
  ~IEventSink() = default;
};

/// An object that can be nil (xsi:nil, XML Schema Part 1, 2.6.2).
class ZUXMLLIB16_API INillable {
 public:
  virtual bool IsNil() const = 0;
  virtual void SetNil(bool nil) = 0;

 protected:
  ~INillable() = default;
};

/// Root of every object that can be written and read. Reference counted: an object starts with a
/// count of 0 and is deleted by the Release that brings the count back to 0; CSmartPtr does both.
/// The count may be used from any thread; everything else of one object belongs to one thread at a
/// time.
///
/// Every public To... and From... operation first compares the declared generator version with that
/// of the library and throws CZuException "Wrong Version (...)" when they differ.
class ZUXMLLIB16_API CXmlObjectBase : public IEventSink {
 public:
  CXmlObjectBase();
  CXmlObjectBase(const CXmlObjectBase&) = delete;
  CXmlObjectBase& operator=(const CXmlObjectBase&) = delete;

  /// Objects come from memory made for many small ones that go together. The size tells their
  /// place, hence no delete without it.
  // NOLINTBEGIN(misc-new-delete-overloads)
  static void* operator new(std::size_t sizeInBytes);
  static void* operator new(std::size_t /*sizeInBytes*/, void* place) noexcept { return place; }
  static void operator delete(void* object, std::size_t sizeInBytes) noexcept;
  static void operator delete(void* /*object*/, void* /*place*/) noexcept {}
  static void* operator new(std::size_t sizeInBytes, std::align_val_t alignment);
  static void operator delete(void* object, std::size_t sizeInBytes,
                              std::align_val_t alignment) noexcept;
  // NOLINTEND(misc-new-delete-overloads)

  // The order of the virtual operations is binary interface.

  /// Does nothing here.
  void OnEvent(CXmlObjectBase* sender, MsgType type, void* data) override;
  /// The object that represents this one to the outside.
  virtual CXmlObjectBase* GetBase() = 0;

  /// Writes the object as an XML document into a file.
  /// @param compression  None or Gzip.
  /// @throws CZuException  "ZLIB Compression only available for To Stream methods." before anything
  /// else;
  ///                       "Failed to write data to the file [%s]."; "Failed to compress data. ..."
  ///                       for documents too small to shrink.
  virtual void ToXmlFile(const char* fileName, bool includeDocHeader, bool prettyPrint,
                         XmlEncoding encoding, EOLType eol, const CSerializationContext& context,
                         CompressionType compression) const;
  virtual void ToFastInfosetFile(const char* fileName, FInfoDecl declaration,
                                 const CSerializationContext& context,
                                 CompressionType compression) const;
  virtual void ToJsonFile(const char* fileName, bool prettyPrint, XmlEncoding encoding, EOLType eol,
                          const CSerializationContext& context, CompressionType compression) const;
  /// @return the object as an XML document in the local character set; its declaration names no
  /// encoding.
  virtual std::string ToXml(bool includeDocHeader, bool prettyPrint, EOLType eol,
                            const CSerializationContext& context) const;
  virtual std::string ToJson(bool prettyPrint, EOLType eol,
                             const CSerializationContext& context) const;
  /// @return the encoded, and on request compressed, bytes of the XML document.
  virtual CBinaryData ToXmlStream(bool includeDocHeader, bool prettyPrint, XmlEncoding encoding,
                                  EOLType eol, const CSerializationContext& context,
                                  CompressionType compression) const;
  virtual CBinaryData ToFastInfosetStream(FInfoDecl declaration,
                                          const CSerializationContext& context,
                                          CompressionType compression) const;
  virtual CBinaryData ToJsonStream(bool prettyPrint, XmlEncoding encoding, EOLType eol,
                                   const CSerializationContext& context,
                                   CompressionType compression) const;
  /// Reads a file: XML text in any encoding that the parser knows, plain or compressed with gzip or
  /// zlib.
  /// @throws CZuException  file, parser and size-limit errors; CZuValidationException with a path
  /// where the
  ///                       document does not fit the object. What was read before the failure
  ///                       stays.
  virtual void FromXmlFile(const char* fileName, const CSerializationContext& context);
  virtual void FromJsonFile(const char* fileName, const CSerializationContext& context);
  /// Reads NUL-terminated XML text (UTF-8, or what its declaration says).
  virtual void FromXml(const char* xml, const CSerializationContext& context);
  /// Reads NUL-terminated wide XML text; of each character the low 16 bits count.
  virtual void FromXml(const wchar_t* xml, const CSerializationContext& context);
  virtual void FromJson(const char* json, const CSerializationContext& context);
  virtual void FromJson(const wchar_t* json, const CSerializationContext& context);
  /// Reads bytes, as FromXmlFile reads those of a file. The buffer stays the caller's.
  virtual void FromXmlStream(unsigned char* data, unsigned long size,
                             const CSerializationContext& context);
  virtual void FromXmlStream(const CBinaryData& data, const CSerializationContext& context);
  virtual void FromJsonStream(unsigned char* data, unsigned long size,
                              const CSerializationContext& context);
  virtual void FromJsonStream(const CBinaryData& data, const CSerializationContext& context);
  /// Reads an element of a document that the caller owns.
  virtual void FromXmlElement(const CXmlElement* element, const CSerializationContext& context);
  /// Reads an untyped element.
  virtual void FromXmlElement(const CElement* element, const CSerializationContext& context);

  virtual ~CXmlObjectBase();

  /// Namespace of this object's element.
  virtual std::string GetTargetNamespace() const = 0;
  /// Namespace restriction of this object.
  virtual std::string GetNamespace() const = 0;

  /// Writes the attributes into the start tag that is open in writer; nothing here.
  virtual void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const;
  /// Writes the object through writer.
  virtual void ToXml_Int(CXmlWriter* writer, bool isDocumentRoot, const char* namespaceUri,
                         const CSerializationContext& context, bool isOptionalChoice) const = 0;
  /// Reads the object from parentElement, whose children are taken from firstChildElement on.
  /// @return the first child that was not taken, or null.
  virtual CXmlElement* FromXml_Int(CXmlElement* parentElement, CXmlElement* firstChildElement,
                                   const CSerializationContext& context, bool isOptionalChoice) = 0;

  /// @return the count after the change.
  std::int64_t AddRef();
  std::int64_t Release();

  std::string GetElementName() const { return m_elementName; }
  void SetElementName(CTextRef name) { m_elementName = name; }

  CXmlObjectBase* GetBase() const { return const_cast<CXmlObjectBase*>(this)->GetBase(); }

  /// These let one object drive another.
  static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isDocumentRoot,
                        const char* namespaceUri, const CSerializationContext& context,
                        bool isOptionalChoice);
  static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* parentElement,
                                  CXmlElement* firstChildElement,
                                  const CSerializationContext& context);
  static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                  const CSerializationContext& context);

  // Change events of collections; a null sink is skipped.
  static void FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection);
  static void FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                       void* item);
  static void FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                               void* item);
  /// @param index  -1 passes null to the sink.
  static void FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                          int index);
  static void FireOnCollectionRemoveCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                                  int index);

  // Helpers of property setters. selected is the object's record of the member that its choice
  // holds, "" for none. All that refuse throw CZuInvalidStateException "The Property ... is already
  // set. ...".

  /// Strict on purpose: with valid set, anything but selected == name throws, an empty selection
  /// too.
  static void Choice_SetElementValid(bool valid, const char* name, std::string& selected);
  static void Choice_SelectElement(const char* name, CXmlObjectBase* value, std::string& selected);
  static void Choice_CollectionChanged(const char* name, long count, std::string& selected);
  /// Lets the collection read from cursor unless itemsRead is above 0; moves cursor and counts when
  /// it took something. When the count check throws, cursor is already moved and itemsRead
  /// unchanged.
  static void Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* parent,
                                     CXmlElement*& cursor, long& itemsRead,
                                     const CSerializationContext& context);
  /// @throws CZuInvalidParamException  for null.
  static void Throw_IfPropertyIsNull(CXmlObjectBase* value, const char* propertyName);
  /// @throws CZuInvalidParamException  when value is not null and is named otherwise.
  static void Throw_IfElementNameDiffers(CXmlObjectBase* value, const char* expectedName);

  /// Namespace wildcard tests, see CXmlObjectHelper.
  bool TestNamespace(const char* namespaceUri, const char* restriction,
                     const char* targetNamespace) const;
  bool IsNamespaceValid(const char* namespaceUri, const char* restriction,
                        const char* targetNamespace) const;
  bool DoesElementNameMatch(const CSerializationContext& context, const CXmlElement* element,
                            const char* name, const char* namespaceUri) const;

  /// Process-wide: whether ToXmlFile and ToJsonFile write to the file while the document is
  /// produced, instead of writing a finished document. Off when the library is loaded.
  static void AsyncToXmlFile(bool direct);
  /// Process-wide: sets CEncoder::ASCII_ONLY.
  static void ASCIIOnly(bool copyUnchanged);

 protected:
  const std::string& ElementName() const { return m_elementName; }

 private:
  std::string m_elementName;
  CZUCriticalSection m_lock;
  std::int64_t m_referenceCount = 0;
};

}  // namespace ZuXmlLib16
