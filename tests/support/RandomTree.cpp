#include "support/RandomTree.h"

#include <set>
#include <utility>
#include <vector>

namespace ZuXmlLib16 {
namespace {

constexpr const char* kNames[] = {"a", "item", "_x.y-1", "\u540D", "Na\u00EFve"};
constexpr const char* kNamespaces[] = {"", "urn:one", "urn:two",
                                       "http://example.org/?a=1&b=<2>\"'"};
constexpr const char* kPieces[] = {"a",          "Z9 ",    " ",   "\n",   "&",  "<",     ">",
                                   "\"",         "'",      "]]>", "--",   "%s", "&amp;", "\u00E9",
                                   "\U0001F600", "\u20AC", "{[",  "\\u0", ",:", "\t",    "</item>"};
constexpr const char* kTab = "\t";

}  // namespace

std::size_t RandomTree::Below(std::size_t bound) {
  return std::uniform_int_distribution<std::size_t>(0, bound - 1)(m_generator);
}

const char* RandomTree::Name() {
  return kNames[Below(std::size(kNames))];
}

const char* RandomTree::Namespace() {
  return kNamespaces[Below(std::size(kNamespaces))];
}

std::string RandomTree::Text(bool isAttribute) {
  std::string text;
  for (std::size_t pieces = Below(12); pieces > 0; --pieces) {
    const char* const piece = kPieces[Below(std::size(kPieces))];
    if (!isAttribute || piece != std::string(kTab)) text += piece;
  }
  return text;
}

void RandomTree::AddAttributes(CElement& element) {
  std::set<std::pair<std::string, std::string>> names;
  for (std::size_t count = Below(4); count > 0; --count) {
    const char* const name = Name();
    const char* const namespaceUri = Namespace();
    if (!names.emplace(namespaceUri, name).second) continue;
    element.GetAttributes()->Add(name, Text(true).c_str(), namespaceUri);
  }
  if (OneIn(9)) element.GetAttributes()->Add("lang", "en", CXmlWriter::XML_NAMESPACE.c_str());
}

CSmartPtr<CElement> RandomTree::Make(int size) {
  CSmartPtr<CElement> root(new CElement(Name(), Namespace(), "##any", ""));
  std::vector<CElement*> elements{root.Get()};
  while (--size > 0) {
    CElement& parent = *elements[Below(elements.size())];
    elements.push_back(parent.GetElements()->Add(Name(), Namespace()).Get());
  }
  for (CElement* element : elements) {
    AddAttributes(*element);
    if (element->GetElements()->GetCount() == 0) element->SetText(Text(false).c_str());
  }
  return root;
}

std::string Outline(const CElement& root) {
  struct Place {
    const CElement* element;
    std::string indent;
  };
  std::string outline;
  std::vector<Place> pending{{&root, ""}};
  while (!pending.empty()) {
    const auto [element, indent] = pending.back();
    pending.pop_back();
    outline += indent + '{' + element->GetNamespace() + '}' + element->GetName() + '\n';
    for (const CAttribute* attribute : *element->GetAttributes()) {
      outline += indent + " @{" + attribute->GetNamespace() + '}' + attribute->GetName() + '=' +
                 attribute->GetValue() + '\n';
    }
    if (!element->GetText().empty()) outline += indent + " \"" + element->GetText() + "\"\n";
    const std::size_t firstChild = pending.size();
    for (const CElement* child : *element->GetElements())
      pending.insert(pending.begin() + static_cast<std::ptrdiff_t>(firstChild),
                     Place{child, indent + "  "});
  }
  return outline;
}

std::string Outline(const CXmlDocument& document) {
  CElement root("");
  root.CopyXmlElement(document.GetDocumentElement());
  return Outline(root);
}

}  // namespace ZuXmlLib16
