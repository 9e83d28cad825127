#include "client/presence.h"

#include <algorithm>
#include <array>
#include <optional>

namespace vexahealth {
namespace {

constexpr std::array<std::string_view, 4> kCells = {"battery.cell_voltage_1", "battery.cell_voltage_2",
                                                    "battery.cell_voltage_3", "battery.cell_voltage_4"};

void MarkAbsent(Reading& reading, const char* note) {
  reading.status = Status::kNotPresent;
  reading.value = {};
  reading.note = note;
}

}  // namespace

bool BatteryAbsent(std::span<const Reading> readings) {
  constexpr std::string_view kEvidence[] = {"battery.voltage", "battery.rsoc", "battery.full_charge_capacity"};
  constexpr std::string_view kContrary[] = {
      "battery.current", "battery.remaining_capacity", kCells[0], kCells[1], kCells[2], kCells[3]};
  return std::ranges::all_of(kEvidence, [&](auto key) { return NumberOf(readings, key) == 0; }) &&
         std::ranges::all_of(kContrary, [&](auto key) { return NumberOf(readings, key).value_or(0) == 0; });
}

void MarkBatteryAbsent(std::span<Reading> readings) {
  const Reading& error = readings[RowIndex("battery.error")];
  for (Reading& reading : readings) {
    if (!TellsBattery(*reading.row)) continue;
    if (reading.status == Status::kUnsupported) continue;
    if (&reading == &error && reading.value == Value(true)) continue;
    MarkAbsent(reading, "no battery: voltage, charge and full-charge capacity are 0");
  }
}

void MarkAbsentCells(std::span<Reading> readings) {
  const std::optional<int64_t> pack = NumberOf(readings, "battery.voltage");
  if (!pack) return;
  int64_t sum = 0;
  int64_t largest = 0;
  size_t present = 0;  // cells up to the last one with a voltage
  for (size_t i = 0; i < kCells.size(); ++i) {
    const std::optional<int64_t> cell = NumberOf(readings, kCells[i]);
    if (!cell) return;
    sum += *cell;
    largest = std::max(largest, *cell);
    if (*cell != 0) present = i + 1;
  }
  const bool explained = *pack < sum + largest / 2;
  if (present == 0 || !explained) return;
  for (size_t i = present; i < kCells.size(); ++i) {
    MarkAbsent(readings[RowIndex(kCells[i])], "the other cells make up the pack voltage");
  }
}

}  // namespace vexahealth
