// Walks the tree of a document directly and lets elements go while the document is still being
// read.

#include <clocale>
#include <iostream>

#include "ZuXmlLib16.h"

using namespace ZuXmlLib16;

namespace {

const char* const kReadings =
    "<r:readings xmlns:r='urn:example:readings'>"
    "<r:reading unit='C'>21.5</r:reading><r:reading unit='C'>21.7</r:reading>"
    "<r:note>window open</r:note><r:reading unit='C'>19.2</r:reading>"
    "</r:readings>";

int readings = 0;

/// Counts the readings and discards them at once, so that memory does not grow with their number.
bool CountReading(CXmlElement* element) {
  if (element->GetLocalName() != "reading") return false;
  ++readings;
  return true;
}

}  // namespace

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  try {
    CXmlDocument document;
    document.LoadXml(kReadings);
    for (const CXmlElement* element = document.GetDocumentElement()->GetFirstElement();
         element != nullptr; element = element->GetNextSiblingElement()) {
      std::cout << element->GetXPath() << " = " << element->GetText();
      for (const CXmlAttribute* attribute : element->GetAttributes()) {
        std::cout << ' ' << attribute->GetLocalName() << '=' << attribute->GetValue();
      }
      std::cout << '\n';
    }

    CXmlDocument filtered(CountReading);
    filtered.LoadXml(kReadings);
    std::cout << readings << " readings; left in the tree: "
              << filtered.GetDocumentElement()->GetFirstElement()->GetXPath() << '\n';
  } catch (const CZuException& failure) {
    std::cerr << failure.GetFullMessage() << '\n';
    return 1;
  }
  return 0;
}
