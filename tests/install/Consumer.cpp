// A program of somebody else: sees the installed headers only.

#include <ZuXmlLib16.h>

#include <cstdio>
#include <string>

using namespace ZuXmlLib16;

int main() {
  const CSmartPtr<CElement> element(new CElement("any"));
  element->FromXml("<a n='1'><b>2</b></a>");
  const std::string text =
      element->ToXml(false, false, EOLType::Lf, CSerializationContext::m_defaultContext);
  std::puts(text.c_str());
  if (text != "<a n=\"1\"><b>2</b></a>") return 1;
  try {
    element->FromXml("<a");
  } catch (const CZuException& error) {  // type information crosses the library's border
    std::puts(error.GetMessage().c_str());
    return 0;
  }
  return 1;
}
