#include "ZuXmlLib16/XmlDocument.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/ExpatReader.h"
#include "ZuXmlLib16/FastInfosetReader.h"
#include "ZuXmlLib16/JsonReaderToXmlHandler.h"
#include "ZuXmlLib16/Streams.h"
#include "core/Errors.h"
#include "json/JsonToTree.h"
#include "xml/CharacterSet.h"
#include "xml/Inflate.h"
#include "xml/XmlTree.h"

namespace ZuXmlLib16 {
namespace {

struct Bytes {
  std::unique_ptr<unsigned char[]> data;
  unsigned long size = 0;
};

Bytes NewBytes(unsigned long size) {
  Bytes bytes;
  bytes.data.reset(new unsigned char[size]);
  bytes.size = size;
  return bytes;
}

/// UTF-16LE with its byte order mark; of each character the low 16 bits.
Bytes Utf16LittleEndian(const wchar_t* text, std::size_t length) {
  Bytes bytes = NewBytes(2 * (length + 1));
  unsigned char* out = bytes.data.get();
  *out++ = 0xFF;
  *out++ = 0xFE;
  for (; length > 0; --length, ++text) {
    const auto character = static_cast<char16_t>(*text);
    *out++ = static_cast<unsigned char>(character & 0xFF);
    *out++ = static_cast<unsigned char>((character >> 8) & 0xFF);
  }
  return bytes;
}

void CheckSize(unsigned long size, const CSerializationContext& context) {
  const unsigned long limit = context.GetMaxDocumentSize();
  if (limit != 0 && size > limit) ThrowDocumentTooLarge(limit);
}

/// The file itself with its size; errno is 0 before each call whose failure is reported.
class InputFile {
 public:
  explicit InputFile(const char* path)
      : m_path(CTextRef(path)), m_file(std::fopen(m_path.c_str(), "rt")) {
    if (!m_file) ThrowFileOpenFailed(m_path);
    struct stat status = {};
    errno = 0;
    if (fstat(fileno(m_file.get()), &status) != 0) ThrowFileSizeFailed(m_path, errno);
    m_size = static_cast<unsigned long>(std::max<off_t>(status.st_size, 0));
  }

  unsigned long Size() const { return m_size; }

  Bytes Read() {
    Bytes bytes = NewBytes(m_size);
    errno = 0;
    const std::size_t got = std::fread(bytes.data.get(), 1, m_size, m_file.get());
    if (got == 0 || got < m_size) ThrowFileReadFailed(m_path, errno);
    return bytes;
  }

 private:
  std::string m_path;
  detail::FilePtr m_file;
  unsigned long m_size = 0;
};

Bytes ReadFile(const char* path, const CSerializationContext& context) {
  InputFile file(path);
  CheckSize(file.Size(), context);
  return file.Read();
}

std::string LocalText(const unsigned char* utf8, unsigned long size) {
  std::string local;
  detail::AppendUtf8AsLocal(local, reinterpret_cast<const char*>(utf8), size);
  return local;
}

}  // namespace

/// Lends the input to the document while it is parsed.
class CXmlDocument::InputScope {
 public:
  InputScope(CXmlDocument& document, const unsigned char* data, unsigned long size)
      : m_document(document) {
    document.m_input = data;
    document.m_inputLength = size;
  }
  InputScope(const InputScope&) = delete;
  InputScope& operator=(const InputScope&) = delete;
  ~InputScope() {
    m_document.m_input = nullptr;
    m_document.m_inputLength = 0;
  }

 private:
  CXmlDocument& m_document;
};

CXmlDocument::CXmlDocument() : CXmlDocument(nullptr, CSerializationContext::m_defaultContext) {}

CXmlDocument::CXmlDocument(const CSerializationContext& context) : CXmlDocument(nullptr, context) {}

CXmlDocument::CXmlDocument(ElementFilter filter)
    : CXmlDocument(filter, CSerializationContext::m_defaultContext) {}

CXmlDocument::CXmlDocument(ElementFilter filter, const CSerializationContext& context)
    : CInstanceMonitor("CXmlDocument"),
      m_tree(std::make_unique<detail::XmlTree>(*this, filter)),
      m_schemaType(context.GetSchemaType()),
      m_context(&context) {}

CXmlDocument::~CXmlDocument() = default;

void CXmlDocument::Cleanup() {
  m_tree->Clear();
  m_aliases.clear();
}

CXmlElement* CXmlDocument::GetDocumentElement() const {
  return m_tree->Root();
}

void CXmlDocument::LoadXml(const char* xml) {
  Cleanup();
  const CTextRef text(xml);
  if (text.empty()) ThrowXmlStringEmpty();
  CheckSize(text.size(), *m_context);
  ParseText(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

void CXmlDocument::LoadXml(const wchar_t* xml) {
  Cleanup();
  const std::size_t length = xml != nullptr ? std::wcslen(xml) : 0;
  if (length == 0) ThrowXmlStringEmpty();
  CheckSize(2 * length, *m_context);
  const Bytes bytes = Utf16LittleEndian(xml, length);
  ParseText(bytes.data.get(), bytes.size);
}

void CXmlDocument::LoadXmlStream(const unsigned char* data, unsigned long size) {
  Cleanup();
  if (data == nullptr || size == 0) ThrowXmlStreamEmpty();
  CheckSize(size, *m_context);
  Parse(data, size);
}

void CXmlDocument::Load(const char* path) {
  Cleanup();
  const Bytes bytes = ReadFile(path, *m_context);
  Parse(bytes.data.get(), bytes.size);
}

CBinaryData CXmlDocument::LoadJson(const char* json) {
  return ConvertJson(TakeJson(json));
}

CBinaryData CXmlDocument::LoadJson(const wchar_t* json) {
  return ConvertJson(TakeJson(json));
}

CBinaryData CXmlDocument::LoadJsonStream(const unsigned char* data, unsigned long size) {
  return ConvertJson(TakeJsonStream(data, size));
}

CBinaryData CXmlDocument::LoadJsonFile(const char* path) {
  return ConvertJson(TakeJsonFile(path));
}

void CXmlDocument::ReadJson(const char* json) {
  BuildFromJson(TakeJson(json));
}

void CXmlDocument::ReadJson(const wchar_t* json) {
  BuildFromJson(TakeJson(json));
}

void CXmlDocument::ReadJsonStream(const unsigned char* data, unsigned long size) {
  BuildFromJson(TakeJsonStream(data, size));
}

void CXmlDocument::ReadJsonFile(const char* path) {
  BuildFromJson(TakeJsonFile(path));
}

std::string CXmlDocument::TakeJson(const char* json) {
  Cleanup();
  const CTextRef text(json);
  if (text.empty()) ThrowJsonStringEmpty();
  CheckSize(text.size(), *m_context);
  return std::string(text);
}

std::string CXmlDocument::TakeJson(const wchar_t* json) {
  Cleanup();
  const std::size_t length = json != nullptr ? std::wcslen(json) : 0;
  if (length == 0) ThrowJsonStringEmpty();
  CheckSize(length * sizeof(wchar_t), *m_context);
  const CBinaryData utf8 = CEncoder::UnicodeToUtf8Binary(json);
  return LocalText(utf8.GetData(), utf8.GetLength());
}

std::string CXmlDocument::TakeJsonStream(const unsigned char* data, unsigned long size) {
  Cleanup();
  if (data == nullptr || size == 0) ThrowJsonStreamEmpty();
  CheckSize(size, *m_context);
  return DecodeJson(data, size);
}

std::string CXmlDocument::TakeJsonFile(const char* path) {
  Cleanup();
  const Bytes bytes = ReadFile(path, *m_context);
  return DecodeJson(bytes.data.get(), bytes.size);
}

std::string CXmlDocument::DecodeJson(const unsigned char* data, unsigned long size) const {
  const detail::Inflated inflated = detail::Inflate(data, size, m_context->GetMaxDocumentSize());
  switch (inflated.status) {
    case detail::InflateStatus::NotCompressed:
      break;
    case detail::InflateStatus::Complete:
      data = inflated.data.get();
      size = inflated.length;
      break;
    case detail::InflateStatus::Damaged:  // fails at its first byte
      try {
        ConvertJson(LocalText(data, size));
      } catch (const CZuException& failure) {
        ThrowDamagedInput(failure.GetMessage(), inflated.cause);
      }
  }
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const bool isMarked = size >= kByteOrderMark.size() &&
                        std::memcmp(data, kByteOrderMark.data(), kByteOrderMark.size()) == 0;
  const std::size_t skipped = isMarked ? kByteOrderMark.size() : 0;
  return LocalText(data + skipped, size - skipped);
}

CBinaryData CXmlDocument::ConvertJson(const std::string& json) const {
  CJsonReaderToXmlHandler converter(*m_context);
  CJsonTextReader reader(json);
  reader.SetContext(m_context->GetJsonContext());
  reader.SetJsonReaderHandler(&converter);
  reader.Read();
  return converter.GetXml();
}

void CXmlDocument::BuildFromJson(const std::string& json) {
  detail::JsonToTree(json, *this, *m_tree);
}

void CXmlDocument::Parse(const unsigned char* data, unsigned long size) {
  const detail::Inflated inflated = detail::Inflate(data, size, m_context->GetMaxDocumentSize());
  switch (inflated.status) {
    case detail::InflateStatus::NotCompressed:
      return ParseInflated(data, size);
    case detail::InflateStatus::Complete:
      return ParseInflated(inflated.data.get(), inflated.length);
    case detail::InflateStatus::Damaged:
      break;
  }
  try {
    ParseText(data, size);
  } catch (const CZuException& failure) {
    ThrowDamagedInput(failure.GetMessage(), inflated.cause);
  }
}

void CXmlDocument::ParseInflated(const unsigned char* data, unsigned long size) {
  {
    const InputScope scope(*this, data, size);
    if (CFastInfosetReader(*this).Parse()) return;
  }
  ParseText(data, size);
}

void CXmlDocument::ParseText(const unsigned char* data, unsigned long size) {
  const InputScope scope(*this, data, size);
  CExpatReader reader(*this);
  reader.CreateParser();
  reader.Parse(true);
}

CXmlElement* CXmlDocument::AddDocElement(CTextRef namespaceUri, CTextRef localName) {
  const std::string newNamespace(namespaceUri);  // the arguments may be names of the tree that goes
  const std::string newName(localName);
  m_tree->Clear();
  return m_tree->Open(m_tree->NameOf(newNamespace, newName));
}

CXmlElement* CXmlDocument::AddChildElement(CTextRef namespaceUri, CTextRef localName) {
  return m_tree->Open(m_tree->NameOf(namespaceUri, localName));
}

void CXmlDocument::EndElement() {
  m_tree->Close();
}

void CXmlDocument::AddElementAttribute(CXmlElement* element, CTextRef localName, CTextRef value,
                                       CTextRef namespaceUri) {
  if (element == nullptr) ThrowPropertyIsNull("element");
  element->AddAttribute(localName, value, namespaceUri);
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text,
                                         unsigned long length) {
  if (element == nullptr) ThrowPropertyIsNull("element");
  std::string kept(text != nullptr ? text : "", text != nullptr ? strnlen(text, length) : 0);
  kept.erase(std::remove(kept.begin(), kept.end(), '\r'), kept.end());
  element->AppendText(kept.c_str());
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text) {
  AppendTextExcludingCR(element, text, CTextRef(text).size());
}

void CXmlDocument::AddNamespaceAlias(CTextRef prefix, CTextRef namespaceUri) {
  const auto known = m_aliases.find(prefix);
  if (known != m_aliases.end()) {
    m_tree->DeclareAgain(prefix, known->second, namespaceUri);
    known->second = namespaceUri;
  } else {
    m_aliases.emplace(prefix, namespaceUri);
  }
}

const std::string& CXmlDocument::LookupNamespaceFromAlias(CTextRef prefix,
                                                          const CXmlElement* element) const {
  const detail::PrefixHistory& history = m_tree->Prefixes();
  return history.Knows(prefix) ? history.Find(element, prefix) : LookupNamespaceFromAlias(prefix);
}

const std::string& CXmlDocument::LookupNamespaceFromAlias(CTextRef prefix) const {
  static const std::string empty;
  const auto entry = m_aliases.find(prefix);
  return entry != m_aliases.end() ? entry->second : empty;
}

const std::string& CXmlDocument::LookupAliasFromNamespace(CTextRef namespaceUri) const {
  static const std::string empty;
  const auto entry = std::find_if(m_aliases.begin(), m_aliases.end(),
                                  [&](const auto& alias) { return alias.second == namespaceUri; });
  return entry != m_aliases.end() ? entry->first : empty;
}

}  // namespace ZuXmlLib16
