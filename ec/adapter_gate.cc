#include "ec/adapter_gate.h"

#include "frame/log.h"
#include "vexa/battery.h"

namespace vexa {

uint32_t ReadAndLogVersion(const char* log_name) {
  const uint32_t version = BatteryHealthyTable_ReadVersion();
  LogInfo("[EC_BH][%s] BatteryHealthyTable version: %u", log_name, version);
  return version;
}

}  // namespace vexa
