#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ZuXmlLib16/JsonTextReader.h"
#include "xml/Arena.h"

namespace ZuXmlLib16::detail {

/// A JSON document as a row of items in document order. It is kept whole before it becomes XML,
/// since a declaration of a namespace may stand behind the names that need it.
class JsonTape final : public IJsonReaderHandler {
 public:
  enum class Kind : std::int8_t { Scalar, Null, Object, Array };

  /// What the name of a member makes of it.
  enum class Role : std::int8_t {
    Element,
    Attribute,    ///< "@name"
    Declaration,  ///< "@xmlns" or "@xmlns:prefix"
    Text,         ///< "#text" or ""
  };

  /// A value with its name, when it has one. Texts are in UTF-8 and XML has all their characters.
  struct Item {
    const char* name = nullptr;  // as an XML name; of a declaration the prefix
    std::size_t nameLength = 0;
    std::size_t prefixLength = 0;  // of that name
    std::size_t nameOffset = 0;    // of that name, from the start of the name as it was written
    const char* value = nullptr;   // of a scalar
    std::size_t size = 0;          // of a scalar the bytes of its text, of an object its attributes
    std::size_t end = 0;           // the next item that is not inside of this one
    Kind kind = Kind::Scalar;
    Role role = Role::Element;
    bool isNameChanged = false;  // to be one of XML, and stands behind the written one
    bool hasNullText = false;    // an object with a text that is null
  };

  /// @param hasNamespaces  whether names have prefixes, which "@xmlns" members declare.
  explicit JsonTape(bool hasNamespaces);
  JsonTape(const JsonTape&) = delete;
  JsonTape& operator=(const JsonTape&) = delete;
  ~JsonTape() override;

  std::size_t Count() const { return m_count; }
  const Item& operator[](std::size_t index) const {
    return m_blocks[index / kBlockItems][index % kBlockItems];
  }
  static std::string_view Prefix(const Item& item) { return {item.name, item.prefixLength}; }
  /// The name without its prefix.
  static std::string_view LocalName(const Item& item) {
    const std::size_t before = item.prefixLength > 0 ? item.prefixLength + 1 : 0;
    return {item.name + before, item.nameLength - before};
  }
  static std::string_view NameAsWritten(const Item& item) {
    return {item.name - item.nameOffset,
            item.nameOffset + (item.isNameChanged ? 0 : item.nameLength)};
  }
  static std::string_view Value(const Item& scalar) { return {scalar.value, scalar.size}; }

  void ReadStartDocument() override;
  bool ReadEndDocument() override;
  void ReadName(const std::string& name) override;
  void ReadString(const std::string& value) override { AddScalar(value); }
  void ReadNumber(const std::string& text) override { AddScalar(text); }
  void ReadStartObject() override { Open(Kind::Object); }
  void ReadEndObject() override { Close(); }
  void ReadStartArray() override { Open(Kind::Array); }
  void ReadEndArray() override { Close(); }
  void ReadBool(bool value) override { AddScalar(value ? "true" : "false"); }
  void ReadNull() override { Add(Kind::Null); }

 private:
  static constexpr std::size_t kBlockItems = 512;

  void SetXmlName(std::string_view written, std::size_t offset);
  Item& Add(Kind kind);
  void AddScalar(std::string_view text);
  void Open(Kind kind);
  void Close();
  /// A copy in UTF-8.
  std::string_view Store(std::string_view local);
  std::string_view Copy(std::string_view text);
  std::string Repaired(std::string_view local) const;

  Arena m_memory;  // of items and texts
  std::vector<Item*> m_blocks;
  std::size_t m_count = 0;
  std::vector<Item*> m_open;
  Item m_named;  // the item whose name was read last
  bool m_isNamed = false;
  bool m_hasNamespaces;
  bool m_isLocalUtf8;
};

}  // namespace ZuXmlLib16::detail
