// The static objects that initialisers of other files may use, in the order of their dependencies.
// Generated code runs before main, and load order between files is not defined, so these come
// first.

#include "ZuXmlLib16/SerializationContext.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "ZuXmlLib16/XmlWriter.h"

namespace ZuXmlLib16 {

// Running out of memory while the library is loaded ends the program either way.
// NOLINTBEGIN(cert-err58-cpp)

__attribute__((init_priority(101))) const std::string CXmlWriter::XML_NAMESPACE =
    "http://www.w3.org/XML/1998/namespace";

__attribute__((init_priority(102))) CSerializationContext CSerializationContext::m_defaultContext;

// NOLINTEND(cert-err58-cpp)

}  // namespace ZuXmlLib16
