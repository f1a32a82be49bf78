#include "ZuXmlLib16/Encoder.h"
#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/FastInfosetWriter.h"
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

/// Writes the object as the whole of the writer's document.
void WriteRoot(const CXmlObjectBase& object, CXmlWriter& writer,
               const CSerializationContext& context) {
  const std::string targetNamespace = object.GetTargetNamespace();
  object.ToXml_Int(&writer, true, targetNamespace.c_str(), context, false);
  writer.Close();
}

/// Writes the object as a document into the stream.
void WriteDocument(const CXmlObjectBase& object, CTextStream& stream, bool includeDocHeader,
                   bool prettyPrint, EOLType eol, const CSerializationContext& context) {
  CXmlTextWriter writer(stream);
  writer.Open();
  writer.SetFormat(prettyPrint);
  writer.SetIndentChars(context.GetIndentChars().c_str());
  writer.SetEOLType(eol);
  writer.SetWriteDefaultElementValues(context.GetWriteDefaultElementValues());
  if (includeDocHeader) writer.WriteStartDocument();
  WriteRoot(object, writer, context);
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

/// The formats that this version declares but does not write or read.
[[noreturn]] void RefuseFormat(const char* format) {
  CheckVersion();
  ThrowUnsupportedFormat(format);
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
  CheckVersion();
  CTextStream stream;
  WriteDocument(*this, stream, includeDocHeader, prettyPrint, eol, context);
  return stream.CopyText();
}

CBinaryData CXmlObjectBase::ToXmlStream(bool includeDocHeader, bool prettyPrint,
                                        XmlEncoding encoding, EOLType eol,
                                        const CSerializationContext& context,
                                        CompressionType compression) const {
  CheckVersion();
  CTextStream stream(encoding);
  WriteDocument(*this, stream, includeDocHeader, prettyPrint, eol, context);
  CBinaryData data = stream.GetEncodedStream();
  CZuZip::CompressData(data, compression);
  return data;
}

void CXmlObjectBase::ToXmlFile(const char* fileName, bool includeDocHeader, bool prettyPrint,
                               XmlEncoding encoding, EOLType eol,
                               const CSerializationContext& context,
                               CompressionType compression) const {
  if (compression == CompressionType::Zlib) ThrowZlibOnlyForStreams();
  if (writeDirectlyToFiles && compression == CompressionType::None) {
    CheckVersion();
    CFileTextStream stream(fileName, encoding);
    return WriteDocument(*this, stream, includeDocHeader, prettyPrint, eol, context);
  }
  const CBinaryData data =
      ToXmlStream(includeDocHeader, prettyPrint, encoding, eol, context, compression);
  CFileBinaryStream(fileName, encoding, data).ToFile();
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

// clang-format off
void CXmlObjectBase::ToJsonFile(const char*, bool, XmlEncoding, EOLType, const CSerializationContext&,
                                CompressionType compression) const {
  if (compression == CompressionType::Zlib) ThrowZlibOnlyForStreams();
  RefuseFormat("JSON");
}
std::string CXmlObjectBase::ToJson(bool, EOLType, const CSerializationContext&) const { RefuseFormat("JSON"); }
CBinaryData CXmlObjectBase::ToJsonStream(bool, XmlEncoding, EOLType, const CSerializationContext&, CompressionType) const { RefuseFormat("JSON"); }
void CXmlObjectBase::FromJsonFile(const char*, const CSerializationContext&) { RefuseFormat("JSON"); }
void CXmlObjectBase::FromJson(const char*, const CSerializationContext&) { RefuseFormat("JSON"); }
void CXmlObjectBase::FromJson(const wchar_t*, const CSerializationContext&) { RefuseFormat("JSON"); }
void CXmlObjectBase::FromJsonStream(unsigned char*, unsigned long, const CSerializationContext&) { RefuseFormat("JSON"); }
void CXmlObjectBase::FromJsonStream(const CBinaryData&, const CSerializationContext&) { RefuseFormat("JSON"); }
// clang-format on

}  // namespace ZuXmlLib16
