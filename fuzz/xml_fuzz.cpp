// Any bytes, loaded as a stream, either give a tree or a CZuException. The objects read from a
// tree, written and read again are the same, unless a text begins with the mark of a CDATA section,
// which the writer takes for markup.

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "tests/support/SameTree.h"

using namespace ZuXmlLib16;

namespace {

constexpr unsigned long kMaxDocumentSize = 1 << 20;
constexpr const char* kCDataStart = "<![CDATA[";

/// Loading other than with the default options; what comes out does not matter.
void LoadInOtherWays(const std::uint8_t* data, std::size_t size) {
  CSerializationContext context;
  context.SetMaxDocumentSize(kMaxDocumentSize);
  context.SetStripCDATA(false);
  context.SetSchemaType(SchemaType::NoNamespaces);
  try {
    CXmlDocument document(context);
    document.LoadXmlStream(data, size);
  } catch (const CZuException&) {
  }
}

/// Takes out of an attribute what the writer does not keep there: carriage returns are dropped, and
/// a parser reads a tab as a blank.
std::string AsWritten(std::string value) {
  value.erase(std::remove(value.begin(), value.end(), '\r'), value.end());
  std::replace(value.begin(), value.end(), '\t', ' ');
  return value;
}

/// Whether a namespace is written as it is, and not as AsWritten says.
bool IsKept(const std::string& namespaceUri) {
  return namespaceUri.find_first_of("\r\t") == std::string::npos;
}

/// Prepares a tree that was read for the comparison.
/// @return false when it cannot be compared.
bool Prepare(CElement& root) {
  std::vector<CElement*> pending{&root};
  while (!pending.empty()) {
    CElement& element = *pending.back();
    pending.pop_back();
    if (element.GetText().rfind(kCDataStart, 0) == 0) return false;
    if (!IsKept(element.GetNamespace())) return false;
    for (CAttribute* attribute : *element.GetAttributes()) {
      if (!IsKept(attribute->GetNamespace())) return false;
      attribute->SetValue(AsWritten(attribute->GetValue()).c_str());
    }
    for (CElement* child : *element.GetElements()) {
      pending.push_back(child);
    }
  }
  return true;
}

void CheckRoundTrip(CElement& root, bool prettyPrint, const CSerializationContext& context) {
  const CBinaryData written = root.ToXmlStream(true, prettyPrint, XmlEncoding::Utf8, EOLType::Lf,
                                               context, CompressionType::None);
  CSmartPtr<CElement> again(new CElement("again"));
  again->FromXmlStream(written, context);
  // Layout becomes part of texts that stand beside elements.
  if (!prettyPrint && !IsSameTree(root, *again)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
  if (!isUtf8) return 0;
  LoadInOtherWays(data, size);
  CSerializationContext context;
  context.SetMaxDocumentSize(kMaxDocumentSize);
  CSmartPtr<CElement> root(new CElement("root"));
  try {
    std::vector<unsigned char> bytes(data, data + size);
    root->FromXmlStream(bytes.data(), bytes.size(), context);
  } catch (const CZuException&) {
    return 0;
  }
  if (!Prepare(*root)) return 0;
  // References to entities may have made more than the limit: what is written is longer then.
  context.SetMaxDocumentSize(0);
  CheckRoundTrip(*root, false, context);
  CheckRoundTrip(*root, true, context);
  return 0;
}
