#pragma once

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// The generator version that the program's generated code was made with. A generated module
/// declares it once, before first use, by one object at namespace scope. The last declaration
/// counts; without one, the version of the library is assumed.
class ZUXMLLIB16_API CGeneratorVersion {
 public:
  CGeneratorVersion(int major, int minor) noexcept { Declare(major, minor); }

  static void Declare(int major, int minor) noexcept;
};

/// The version of the library itself.
ZUXMLLIB16_API const char* GetRuntimeVersion();

}  // namespace ZuXmlLib16
