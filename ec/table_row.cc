#include "ec/table_row.h"

#include "ec/catalogue.h"
#include "frame/ec_command.h"
#include "vexa/base.h"

namespace vexa {
namespace {

constexpr uint8_t kMaxFailures = 3;

}  // namespace

uint32_t ReadEcTableValue(uint8_t command, uint8_t group, uint32_t offset, uint8_t length, uint8_t value,
                          uint8_t& failures) noexcept {
  if (failures > kMaxFailures) return VEXA_NO_ANSWER;
  const bool writes = (group & kGroupWrite) != 0;
  uint32_t accumulated = 0;
  for (uint32_t step = 0; step < length; ++step) {
    uint32_t status = kEcSuccess;
    uint8_t byte = 0;
    if (command == kEcInfoRead) {
      byte = RwEcCmd(1, command, &group, 1, &status);
    } else {
      const uint8_t data[] = {group, StepOffset(offset, length, step), writes ? value : uint8_t{0}};
      byte = RwEcCmd(sizeof data, command, data, writes ? 0 : 1, &status);
    }
    if (status != kEcSuccess) {
      ++failures;
      return VEXA_NO_ANSWER;
    }
    failures = 0;
    accumulated = FoldTableByte(accumulated, step, byte);
  }
  return accumulated;
}

}  // namespace vexa
