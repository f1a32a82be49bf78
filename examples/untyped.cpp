// Reads a document without generated classes, looks at it, changes it and writes it again.

#include <clocale>
#include <iostream>

#include "ZuXmlLib16.h"

using namespace ZuXmlLib16;

namespace {

const char* const kBooks =
    "<books xmlns='urn:example:books'>"
    "<book id='1'><title>The river</title><price>12.50</price></book>"
    "<book id='2'><title>Caf\xC3\xA9 north</title><price>8.00</price></book>"
    "</books>";

void PrintTitles(const CElement& books) {
  for (const CElement* book : *books.GetElements()) {
    const CSmartPtr<CAttribute> id = book->GetAttributes()->Item(0);
    const CSmartPtr<CElement> title = book->GetElements()->Item(0);
    std::cout << id->GetValue() << ": " << title->GetText() << '\n';
  }
}

void AddBook(const CElement& books) {
  const CSmartPtr<CElement> book = books.GetElements()->Add("book", "urn:example:books");
  book->GetAttributes()->Add("id", "3");
  book->GetElements()->Add("title")->SetText("Harbor & bridge");
  book->GetElements()->Add("price")->SetText("19.00");
}

}  // namespace

int main() {
  // Text is in the character set of the locale. The "C" locale, in which every program starts, has
  // ASCII only.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  CSerializationContext options;
  options.SetDefaultNamespaceURI("urn:example:books");
  const CSmartPtr<CElement> books(new CElement("books"));
  try {
    books->FromXml(kBooks);
    PrintTitles(*books);
    AddBook(*books);
    std::cout << books->ToXml(true, true, EOLType::Lf, options);
    books->ToXmlFile("books.xml.gz", true, false, XmlEncoding::Utf8, EOLType::Lf, options,
                     CompressionType::Gzip);
    books->FromXmlFile("books.xml.gz", options);
    std::cout << books->GetElements()->GetCount() << " books in books.xml.gz\n";
  } catch (const CZuException& failure) {
    std::cerr << failure.GetFullMessage() << '\n';
    return 1;
  }

  try {
    books->FromXml("<books>\n<book></books>");
  } catch (const CZuException& failure) {
    std::cout << "As expected: " << failure.GetMessage() << '\n';  // mismatched tag at line 2
  }
  return 0;
}
