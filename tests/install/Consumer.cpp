// A program of somebody else: sees the installed headers only.

#include <ZuXmlLib16/Exceptions.h>
#include <ZuXmlLib16/FormatString.h>

#include <cstdio>

int main() {
  try {
    throw ZuXmlLib16::CZuInvalidValueException(ZuXmlLib16::FormatString("value %d", 7));
  } catch (const ZuXmlLib16::CZuValidationException&
               error) {  // type information crosses the library's border
    std::puts(error.GetMessage().c_str());
    return error.GetMessage() == "value 7" ? 0 : 1;
  }
}
