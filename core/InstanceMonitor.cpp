#include "ZuXmlLib16/InstanceMonitor.h"

namespace ZuXmlLib16 {

CInstanceMonitor::~CInstanceMonitor() = default;

}  // namespace ZuXmlLib16
