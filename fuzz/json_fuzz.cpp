// Any bytes, loaded as a JSON stream, give either a CZuException or XML that parses, and then the
// tree that is made without that XML is the same; with namespaces and without. Objects read from
// such a tree are the same after they were written with strict escaping and read again, as long as
// they are not nested too deeply for the reader.

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "tests/support/SameTree.h"

using namespace ZuXmlLib16;

namespace {

/// An item of an array is two levels of JSON.
constexpr int kMaxDepth = 48;

void Require(bool isSo) {
  if (!isSo) std::abort();
}

/// The objects of a document, whatever its depth.
CSmartPtr<CElement> Objects(const CXmlDocument& document) {
  CSmartPtr<CElement> root(new CElement(""));
  root->CopyXmlElement(document.GetDocumentElement());
  return root;
}

/// @return the objects, null when the bytes are no document.
CSmartPtr<CElement> Read(const std::uint8_t* data, std::size_t size,
                         const CSerializationContext& context) {
  CXmlDocument document(context);
  try {
    document.ReadJsonStream(data, size);
  } catch (const CZuException& failure) {
    try {
      document.LoadJsonStream(data, size);
    } catch (const CZuException& sameFailure) {
      Require(failure.GetMessage() == sameFailure.GetMessage());
      return nullptr;
    }
    std::abort();
  }
  CSmartPtr<CElement> root = Objects(document);
  const CBinaryData xml = document.LoadJsonStream(data, size);
  document.LoadXmlStream(xml.GetData(), xml.GetLength());
  Require(IsSameTree(*root, *Objects(document)));
  return root;
}

/// Gives every namespace of the tree a prefix.
/// @return the depth of the tree.
int DeclareNamespaces(const CElement& root, CSerializationContext& context) {
  int depth = 0;
  const auto declare = [&](const std::string& namespaceUri) {
    CNamespaceAliasMap& aliases = context.GetNamespaceAliases();
    if (namespaceUri.empty() || aliases.DoesNamespaceExist(namespaceUri.c_str())) return;
    const std::string prefix = "n" + std::to_string(aliases.GetNamespaceCount());
    aliases.Add(prefix.c_str(), namespaceUri.c_str());
  };
  std::vector<std::pair<const CElement*, int>> pending{{&root, 1}};
  while (!pending.empty()) {
    const auto [element, level] = pending.back();
    pending.pop_back();
    if (level > depth) depth = level;
    declare(element->GetNamespace());
    for (const CAttribute* attribute : *element->GetAttributes()) {
      declare(attribute->GetNamespace());
    }
    for (const CElement* child : *element->GetElements()) {
      pending.emplace_back(child, level + 1);
    }
  }
  return depth;
}

void CheckRoundTrip(const CElement& root) {
  CSerializationContext context;
  context.GetJsonContext().SetStrictEscaping(true);
  if (DeclareNamespaces(root, context) > kMaxDepth) return;
  for (const bool isPretty : {false, true}) {
    CSmartPtr<CElement> again(new CElement(""));
    again->FromJsonStream(
        root.ToJsonStream(isPretty, XmlEncoding::Utf8, EOLType::Lf, context, CompressionType::None),
        context);
    Require(IsSameTree(root, *again));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
  if (!isUtf8) return 0;
  CSerializationContext context;
  context.SetMaxDocumentSize(0);
  if (const CSmartPtr<CElement> root = Read(data, size, context)) CheckRoundTrip(*root);
  context.SetSchemaType(SchemaType::NoNamespaces);
  context.GetJsonContext().SetRootElementName("root");
  Read(data, size, context);
  return 0;
}
