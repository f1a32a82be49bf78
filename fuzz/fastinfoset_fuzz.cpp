// Any octets behind the identification of Fast Infoset either give a tree or a CZuException "Failed
// to parse FastInfoset. ...". The objects read from a tree, written as Fast Infoset and read again
// are the same, unless a text begins with the mark of a CDATA section, which the writer takes for
// markup, or a namespace has carriage returns, without which it is another one.

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "tests/support/SameTree.h"

using namespace ZuXmlLib16;

namespace {

constexpr unsigned long kMaxDocumentSize = 1 << 20;
constexpr const char* kCDataStart = "<![CDATA[";

void Require(bool isSo) {
  if (!isSo) std::abort();
}

/// @return whether the root was read.
bool Read(CElement& root, std::vector<unsigned char>& octets,
          const CSerializationContext& context) {
  try {
    root.FromXmlStream(octets.data(), octets.size(), context);
  } catch (const CZuValidationException&) {
    return false;  // nested deeper than objects are read
  } catch (const CZuException& failure) {
    Require(failure.GetMessage().rfind("Failed to parse FastInfoset. ", 0) == 0);
    return false;
  }
  return true;
}

bool HasCR(const std::string& text) {
  return text.find('\r') != std::string::npos;
}

/// Takes out of a tree what the writer does not keep, the carriage returns of attributes.
/// @return false when it cannot be compared.
bool Prepare(CElement& root) {
  std::vector<CElement*> pending{&root};
  while (!pending.empty()) {
    CElement& element = *pending.back();
    pending.pop_back();
    if (element.GetText().rfind(kCDataStart, 0) == 0 || HasCR(element.GetNamespace())) return false;
    for (CAttribute* attribute : *element.GetAttributes()) {
      if (HasCR(attribute->GetNamespace())) return false;
      std::string value = attribute->GetValue();
      value.erase(std::remove(value.begin(), value.end(), '\r'), value.end());
      attribute->SetValue(value.c_str());
    }
    for (CElement* child : *element.GetElements()) {
      pending.push_back(child);
    }
  }
  return true;
}

void ReadInOtherWays(std::vector<unsigned char>& octets) {
  CSerializationContext context;
  context.SetMaxDocumentSize(kMaxDocumentSize);
  context.SetStripCDATA(false);
  context.SetSchemaType(SchemaType::NoNamespaces);
  CSmartPtr<CElement> root(new CElement("root"));
  Read(*root, octets, context);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
  if (!isUtf8) return 0;
  std::vector<unsigned char> octets{0xE0, 0, 0, 1};
  octets.insert(octets.end(), data, data + size);
  ReadInOtherWays(octets);
  CSerializationContext context;
  context.SetMaxDocumentSize(kMaxDocumentSize);
  CSmartPtr<CElement> root(new CElement("root"));
  if (!Read(*root, octets, context) || !Prepare(*root)) return 0;
  const CBinaryData written =
      root->ToFastInfosetStream(FInfoDecl::None, context, CompressionType::None);
  CSmartPtr<CElement> again(new CElement("again"));
  again->FromXmlStream(written, context);
  Require(IsSameTree(*root, *again));
  return 0;
}
