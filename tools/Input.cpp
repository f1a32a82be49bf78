#include "tools/Input.h"

#include <vector>

#include "ZuXmlLib16/SerializationContext.h"
#include "tools/Locale.h"

namespace ZuXmlTool {

void Load(ZuXmlLib16::CXmlDocument& document, const std::string& path, Progress& progress) {
  const std::vector<unsigned char> bytes =
      ReadAll(path, document.GetContext().GetMaxDocumentSize(), progress);
  if (MayLoseText(bytes)) progress.Tell("there is no UTF-8 locale, so that characters become '?'");
  progress.Show("parsing", bytes.size());
  document.LoadXmlStream(bytes.data(), bytes.size());
}

}  // namespace ZuXmlTool
