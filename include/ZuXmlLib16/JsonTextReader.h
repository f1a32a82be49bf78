#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"
#include "ZuXmlLib16/JsonContext.h"

namespace ZuXmlLib16 {

/// Is told what a CJsonTextReader reads, in document order. Texts are in the local character set
/// and valid during the call only.
class ZUXMLLIB16_API IJsonReaderHandler : public CInstanceMonitor {
 public:
  using CInstanceMonitor::CInstanceMonitor;

  // The order of the virtual operations is binary interface.

  ~IJsonReaderHandler() override;
  virtual void ReadStartDocument() = 0;
  /// @return what CJsonTextReader::Read returns.
  virtual bool ReadEndDocument() = 0;
  /// The name of the member whose value comes next.
  virtual void ReadName(const std::string& name) = 0;
  virtual void ReadString(const std::string& value) = 0;
  /// @param text  the number exactly as written.
  virtual void ReadNumber(const std::string& text) = 0;
  virtual void ReadStartObject() = 0;
  virtual void ReadEndObject() = 0;
  virtual void ReadStartArray() = 0;
  virtual void ReadEndArray() = 0;
  virtual void ReadBool(bool value) = 0;
  virtual void ReadNull() = 0;
};

/// Tells where in a document something is.
class ZUXMLLIB16_API IErrorPathProvider {
 public:
  IErrorPathProvider() = default;
  IErrorPathProvider(const IErrorPathProvider&) = default;
  IErrorPathProvider& operator=(const IErrorPathProvider&) = default;
  virtual ~IErrorPathProvider();

  virtual std::string GetPath() const = 0;
};

/// Passes everything on to another handler and keeps track of the place.
class ZUXMLLIB16_API CJsonReaderDefaultHandler final : public IJsonReaderHandler,
                                                       public IErrorPathProvider {
 public:
  CJsonReaderDefaultHandler();
  ~CJsonReaderDefaultHandler() override;

  /// @param handler  not owned; null for none.
  void SetInnerHandler(IJsonReaderHandler* handler) { m_inner = handler; }

  void ReadStartDocument() override;
  /// @return what the inner handler returns; true without one.
  bool ReadEndDocument() override;
  void ReadName(const std::string& name) override;
  void ReadString(const std::string& value) override;
  void ReadNumber(const std::string& text) override;
  void ReadStartObject() override;
  void ReadEndObject() override;
  void ReadStartArray() override;
  void ReadEndArray() override;
  void ReadBool(bool value) override;
  void ReadNull() override;

  /// For every open object "/" and the name of its last member, for every open array "[n]" with the
  /// position of the item that comes or is being read, from 1: "/root/items[2]/name".
  std::string GetPath() const override;

 private:
  struct Level {
    bool isArray = false;
    bool hasName = false;
    std::string name;
    std::size_t completedItems = 0;
  };

  void Enter(bool isArray);
  void Leave();
  void CountValue();

  IJsonReaderHandler* m_inner = nullptr;
  std::vector<Level> m_levels;  // those that were left are used again
  std::size_t m_depth = 0;      // levels that are open
};

/// Reads JSON text (RFC 8259) and reports what it finds to a handler, without building anything.
/// More is accepted than the standard has: comments, when allowed, control characters in strings,
/// and anything behind the document's value. Line feeds inside strings, numbers and literals are
/// passed over.
class ZUXMLLIB16_API CJsonTextReader : public CInstanceMonitor {
 public:
  /// @param text  in the local character set; must outlive the reader.
  explicit CJsonTextReader(const std::string& text);
  CJsonTextReader(const CJsonTextReader&) = delete;
  CJsonTextReader& operator=(const CJsonTextReader&) = delete;
  ~CJsonTextReader() override;

  /// @param handler  not owned; null for none.
  void SetJsonReaderHandler(IJsonReaderHandler* handler) { m_handler.SetInnerHandler(handler); }
  /// Tells the place while Read runs and after it failed; valid as long as the reader.
  const IErrorPathProvider* GetErrorPathProvider() const { return &m_handler; }

  /// Whether "//" and "/*" begin comments; true by default.
  void SetAllowComments(bool allow) { m_allowComments = allow; }
  /// Reports the whole document as the value of a member of this name; "" (the default) does not.
  void SetRootElementName(const char* name);
  /// Takes both from the settings.
  void SetContext(const CJsonContext& settings);

  /// Reads the whole text.
  /// @return the result of the handler's ReadEndDocument; true without a handler.
  /// @throws CZuValidationException  malformed text, or values nested in 100 others; with line and
  /// position, both from 1, in its message, and the place as its path. The handler has then seen
  /// all that was before.
  bool Read();

 private:
  bool AtCharacter();
  bool AtToken();
  bool SkipComment();
  void ReadValue(int depth);
  void ReadObject(int depth);
  void ReadArray(int depth);
  void ReadText();
  void ReadEscape();
  void AppendUnicodeEscape();
  unsigned ReadHexDigits();
  unsigned PeekLowSurrogate() const;
  void ReadNumber();
  void ReadDigits();
  void ReadLiteral(const char* text, const char* name);
  [[noreturn]] void FailAtEnd(const char* expected) const;
  [[noreturn]] void FailAtCharacter(const char* expected) const;

  const std::string& m_text;
  CJsonReaderDefaultHandler m_handler;
  int m_depthLimit = 100;
  bool m_allowComments = true;
  std::string m_rootElementName;
  const char* m_next = nullptr;
  const char* m_end = nullptr;
  std::string m_string;  // the name, string or number being read
};

}  // namespace ZuXmlLib16
