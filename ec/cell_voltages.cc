#include "ec/cell_voltages.h"

#include "ec/healthy_table.h"
#include "frame/line.h"
#include "frame/log.h"

namespace vexa {
namespace {

constexpr uint8_t kFirstCellOffset = 0x48;

std::optional<std::array<uint16_t, 4>> ReadCells() noexcept {
  std::array<uint16_t, 4> cells_mv{};
  for (uint8_t i = 0; i < cells_mv.size(); ++i) {
    const std::optional<uint16_t> cell = ReadTableWord(kBatteryGroup, static_cast<uint8_t>(kFirstCellOffset + 2 * i));
    if (!cell) return std::nullopt;
    cells_mv[i] = *cell;
  }
  return cells_mv;
}

}  // namespace

std::optional<std::array<uint16_t, 4>> ReadCellVoltages() {
  const uint32_t version = ReadTableVersion();
  const auto cells_mv = HasTable(version) ? ReadCells() : std::nullopt;
  if (!cells_mv) {
    LogBuilt(TraceLevel::kVerbose, [version] {
      return Line("[EC_BH][BatteryHealthyTable_CellVoltage] BatteryHealthyTable version: ", version);
    });
  }
  return cells_mv;
}

}  // namespace vexa
