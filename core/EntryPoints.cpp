#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/FastInfosetWriter.h"
#include "ZuXmlLib16/JsonTextWriter.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "ZuXmlLib16/XmlObjectBase.h"
#include "ZuXmlLib16/XmlTextWriter.h"
#include "ZuXmlLib16/Zip.h"
#include "core/Errors.h"
#include "core/LocalXml.h"
#include "core/Version.h"
#include "xml/CharacterSet.h"

namespace ZuXmlLib16 {
namespace {

bool writeDirectlyToFiles = false;

void WriteRoot(const CXmlObjectBase& object, CXmlWriter& writer,
               const CSerializationContext& context) {
  const std::string targetNamespace = object.GetTargetNamespace();
  object.ToXml_Int(&writer, true, targetNamespace.c_str(), context, false);
}

/// Writes the object as a document into the stream.
void WriteXml(const CXmlObjectBase& object, CTextStream& stream, bool includeDocHeader,
              bool prettyPrint, EOLType eol, const CSerializationContext& context) {
  CXmlTextWriter writer(stream);
  writer.Open();
  writer.SetFormat(prettyPrint);
  writer.SetIndentChars(context.GetIndentChars().c_str());
  writer.SetEOLType(eol);
  writer.SetWriteDefaultElementValues(context.GetWriteDefaultElementValues());
  if (includeDocHeader) writer.WriteStartDocument();
  WriteRoot(object, writer, context);
  writer.Close();
}

void WriteJson(const CXmlObjectBase& object, CTextStream& stream, bool prettyPrint, EOLType eol,
               const CSerializationContext& context) {
  CJsonTextWriter writer(stream, context.GetJsonContext());
  writer.Open();
  writer.SetFormat(prettyPrint);
  writer.SetIndentChars(context.GetIndentChars().c_str());
  writer.SetEOLType(eol);
  writer.WriteStartDocument();
  WriteRoot(object, writer, context);
  writer.WriteEndDocument();
  writer.Close();
}

/// The text that write puts into a stream.
template <class Write>
std::string MakeText(Write write) {
  CheckVersion();
  CTextStream stream;
  write(stream);
  return stream.CopyText();
}

/// The same as bytes.
template <class Write>
CBinaryData MakeBytes(XmlEncoding encoding, CompressionType compression, Write write) {
  CheckVersion();
  CTextStream stream(encoding);
  write(stream);
  CBinaryData data = stream.GetEncodedStream();
  CZuZip::CompressData(data, compression);
  return data;
}

/// Puts a text document into a file.
/// @param write      puts it into a stream.
/// @param makeBytes  gives the bytes of it, compressed.
template <class Write, class MakeBytes>
void WriteFile(const char* fileName, XmlEncoding encoding, CompressionType compression, Write write,
               MakeBytes makeBytes) {
  if (compression == CompressionType::Zlib) ThrowZlibOnlyForStreams();
  if (writeDirectlyToFiles && compression == CompressionType::None) {
    CheckVersion();
    CFileTextStream stream(fileName, encoding);
    return write(stream);
  }
  CFileBinaryStream(fileName, encoding, makeBytes()).ToFile();
}

/// Reads the object from a document that load fills.
template <class Load>
void ReadDocument(CXmlObjectBase& object, const CSerializationContext& context, Load load) {
  CheckVersion();
  CXmlDocument document(context);
  load(document);
  CXmlElement* const root = document.GetDocumentElement();
  object.FromXml_Int(root, root->GetFirstElement(), context, false);
}

/// The same for JSON.
template <class Read>
void ReadJsonDocument(CXmlObjectBase& object, const CSerializationContext& context, Read read) {
  if (context.GetJsonContext().GetSupportRoundtrip() == JsonRoundTrip::Full) {
    return ReadDocument(object, context, read);
  }
  // Nothing in such JSON has a namespace, so that none may be asked for.
  CSerializationContext unqualified(context);
  unqualified.SetIgnoreNamespaces(true);
  ReadDocument(object, unqualified, read);
}

}  // namespace

std::string detail::LocalXmlAsUtf8(std::string xml) {
  if (CEncoder::ASCII_ONLY || LocaleIsUtf8()) return xml;
  const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(xml.c_str());
  return {reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength()};
}

void CXmlObjectBase::AsyncToXmlFile(bool direct) {
  writeDirectlyToFiles = direct;
}

std::string CXmlObjectBase::ToXml(bool includeDocHeader, bool prettyPrint, EOLType eol,
                                  const CSerializationContext& context) const {
  return MakeText([&](CTextStream& stream) {
    WriteXml(*this, stream, includeDocHeader, prettyPrint, eol, context);
  });
}

CBinaryData CXmlObjectBase::ToXmlStream(bool includeDocHeader, bool prettyPrint,
                                        XmlEncoding encoding, EOLType eol,
                                        const CSerializationContext& context,
                                        CompressionType compression) const {
  return MakeBytes(encoding, compression, [&](CTextStream& stream) {
    WriteXml(*this, stream, includeDocHeader, prettyPrint, eol, context);
  });
}

void CXmlObjectBase::ToXmlFile(const char* fileName, bool includeDocHeader, bool prettyPrint,
                               XmlEncoding encoding, EOLType eol,
                               const CSerializationContext& context,
                               CompressionType compression) const {
  WriteFile(
      fileName, encoding, compression,
      [&](CTextStream& stream) {
        WriteXml(*this, stream, includeDocHeader, prettyPrint, eol, context);
      },
      [&] {
        return ToXmlStream(includeDocHeader, prettyPrint, encoding, eol, context, compression);
      });
}

std::string CXmlObjectBase::ToJson(bool prettyPrint, EOLType eol,
                                   const CSerializationContext& context) const {
  return MakeText(
      [&](CTextStream& stream) { WriteJson(*this, stream, prettyPrint, eol, context); });
}

CBinaryData CXmlObjectBase::ToJsonStream(bool prettyPrint, XmlEncoding encoding, EOLType eol,
                                         const CSerializationContext& context,
                                         CompressionType compression) const {
  return MakeBytes(encoding, compression, [&](CTextStream& stream) {
    WriteJson(*this, stream, prettyPrint, eol, context);
  });
}

void CXmlObjectBase::ToJsonFile(const char* fileName, bool prettyPrint, XmlEncoding encoding,
                                EOLType eol, const CSerializationContext& context,
                                CompressionType compression) const {
  WriteFile(
      fileName, encoding, compression,
      [&](CTextStream& stream) { WriteJson(*this, stream, prettyPrint, eol, context); },
      [&] { return ToJsonStream(prettyPrint, encoding, eol, context, compression); });
}

void CXmlObjectBase::FromXml(const char* xml, const CSerializationContext& context) {
  ReadDocument(*this, context, [&](CXmlDocument& document) { document.LoadXml(xml); });
}

void CXmlObjectBase::FromXml(const wchar_t* xml, const CSerializationContext& context) {
  ReadDocument(*this, context, [&](CXmlDocument& document) { document.LoadXml(xml); });
}

void CXmlObjectBase::FromXmlFile(const char* fileName, const CSerializationContext& context) {
  ReadDocument(*this, context, [&](CXmlDocument& document) { document.Load(fileName); });
}

void CXmlObjectBase::FromXmlStream(unsigned char* data, unsigned long size,
                                   const CSerializationContext& context) {
  ReadDocument(*this, context, [&](CXmlDocument& document) { document.LoadXmlStream(data, size); });
}

void CXmlObjectBase::FromXmlStream(const CBinaryData& data, const CSerializationContext& context) {
  FromXmlStream(data.GetData(), data.GetLength(), context);
}

void CXmlObjectBase::FromJson(const char* json, const CSerializationContext& context) {
  ReadJsonDocument(*this, context, [&](CXmlDocument& document) { document.ReadJson(json); });
}

void CXmlObjectBase::FromJson(const wchar_t* json, const CSerializationContext& context) {
  ReadJsonDocument(*this, context, [&](CXmlDocument& document) { document.ReadJson(json); });
}

void CXmlObjectBase::FromJsonFile(const char* fileName, const CSerializationContext& context) {
  ReadJsonDocument(*this, context,
                   [&](CXmlDocument& document) { document.ReadJsonFile(fileName); });
}

void CXmlObjectBase::FromJsonStream(unsigned char* data, unsigned long size,
                                    const CSerializationContext& context) {
  ReadJsonDocument(*this, context,
                   [&](CXmlDocument& document) { document.ReadJsonStream(data, size); });
}

void CXmlObjectBase::FromJsonStream(const CBinaryData& data, const CSerializationContext& context) {
  FromJsonStream(data.GetData(), data.GetLength(), context);
}

void CXmlObjectBase::FromXmlElement(const CXmlElement* element,
                                    const CSerializationContext& context) {
  CheckVersion();
  if (element == nullptr) ThrowPropertyIsNull("element");
  FromXml_Int(const_cast<CXmlElement*>(element), element->GetFirstElement(), context, false);
}

void CXmlObjectBase::FromXmlElement(const CElement* element, const CSerializationContext& context) {
  CheckVersion();
  if (element == nullptr) ThrowPropertyIsNull("element");
  // Options of the default context shall not get into what is read.
  const CSerializationContext plain;
  FromXml(detail::LocalXmlAsUtf8(element->ToXml(false, false, EOLType::Lf, plain)).c_str(),
          context);
}

CBinaryData CXmlObjectBase::ToFastInfosetStream(FInfoDecl declaration,
                                                const CSerializationContext& context,
                                                CompressionType compression) const {
  CheckVersion();
  CBinaryStream stream;
  CFastInfosetWriter writer(stream, context.GetFIContext());
  writer.SetDeclaration(declaration);
  writer.SetWriteDefaultElementValues(context.GetWriteDefaultElementValues());
  writer.Open();
  WriteRoot(*this, writer, context);
  writer.Close();
  CBinaryData data = stream.GetBinaryStream();
  CZuZip::CompressData(data, compression);
  return data;
}

void CXmlObjectBase::ToFastInfosetFile(const char* fileName, FInfoDecl declaration,
                                       const CSerializationContext& context,
                                       CompressionType compression) const {
  if (compression == CompressionType::Zlib) ThrowZlibOnlyForStreams();
  const CBinaryData data = ToFastInfosetStream(declaration, context, compression);
  // No byte order mark: the bytes are no text.
  CFileBinaryStream(fileName, XmlEncoding::Utf8, data).ToFile();
}

}  // namespace ZuXmlLib16
