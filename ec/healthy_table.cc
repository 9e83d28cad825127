#include "ec/healthy_table.h"

#include "frame/architecture.h"
#include "frame/log.h"

namespace vexa {

bool OnFirmwareRoute(const char* export_name) {
  if (!IsArchitectureARM64()) return false;
  LogInfo("[%s] ARM64: using WMImethods.", export_name);
  return true;
}

}  // namespace vexa
