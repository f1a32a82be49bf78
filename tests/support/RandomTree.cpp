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

void RandomTree::SpellText(const std::string& text, bool isAttribute, std::string& out) {
  for (const char character : text) {
    const bool isPlain = std::string("&<>\"\n").find(character) == std::string::npos;
    const bool isAscii = static_cast<unsigned char>(character) < 128;
    if (!isAttribute && OneIn(20) && isAscii) {
      out += std::string("<![CDATA[") + character + "]]>";
    } else if (isPlain) {
      out += character;
    } else {
      out += "&#" + std::to_string(static_cast<int>(character)) + ';';
    }
  }
}

void RandomTree::SpellStartTag(const CElement& element, const std::string& tag, std::string& out) {
  const auto spellDeclaration = [&](const std::string& name, const std::string& namespaceUri) {
    out += OneIn(3) ? "\n " + name + " = \"" : ' ' + name + "=\"";
    SpellText(namespaceUri, true, out);
    out += '"';
  };
  out += '<' + tag;
  const std::size_t colon = tag.find(':');
  spellDeclaration(colon == std::string::npos ? "xmlns" : "xmlns:" + tag.substr(0, colon),
                   element.GetNamespace());
  int count = 0;
  for (const CAttribute* attribute : *element.GetAttributes()) {
    std::string name = attribute->GetName();
    if (attribute->GetNamespace() == CXmlWriter::XML_NAMESPACE) {
      name = "xml:" + name;
    } else if (!attribute->GetNamespace().empty()) {
      const std::string prefix = "p" + std::to_string(count++);
      spellDeclaration("xmlns:" + prefix, attribute->GetNamespace());
      name = prefix + ':' + name;
    }
    out += ' ' + name + "=\"";
    SpellText(attribute->GetValue(), true, out);
    out += '"';
  }
  out += '>';
}

std::string RandomTree::SpellXml(const CElement& root) {
  struct Step {
    const CElement* element;  // to be started, or null
    std::string endTag;       // to be written, when there is no element
  };
  std::string out = "<?xml version='1.0'?>\n<!-- made by chance -->\n";
  std::vector<Step> pending{{&root, ""}};
  while (!pending.empty()) {
    const Step step = pending.back();
    pending.pop_back();
    if (step.element == nullptr) {
      out += step.endTag;
      continue;
    }
    const bool hasPrefix = !step.element->GetNamespace().empty() && OneIn(2);
    const std::string tag = (hasPrefix ? "e:" : "") + step.element->GetName();
    SpellStartTag(*step.element, tag, out);
    SpellText(step.element->GetText(), false, out);
    const CSmartPtr<CElementCol> children = step.element->GetElements();
    if (children->GetCount() > 0 && OneIn(2)) out += "\n\t";
    pending.push_back({nullptr, "</" + tag + '>'});
    const std::size_t firstChild = pending.size();
    for (const CElement* child : *children)
      pending.insert(pending.begin() + static_cast<std::ptrdiff_t>(firstChild), Step{child, ""});
  }
  return out;
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
