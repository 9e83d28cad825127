#include "client/firmware_zeros.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace vexahealth {
namespace {

constexpr std::array<std::string_view, 4> kCells = {"battery.cell_voltage_1", "battery.cell_voltage_2",
                                                    "battery.cell_voltage_3", "battery.cell_voltage_4"};

void Drop(std::span<Reading> readings, std::string_view key, const char* note) {
  Reading& reading = readings[RowIndex(key)];
  reading.status = Status::kNoAnswer;
  reading.value = {};
  reading.note = note;
}

void CompareCharge(std::span<Reading> readings) {
  const std::optional<int64_t> percent = NumberOf(readings, "battery.rsoc");
  const std::optional<int64_t> remaining = NumberOf(readings, "battery.remaining_capacity");
  const std::optional<int64_t> full = NumberOf(readings, "battery.full_charge_capacity");
  if (percent == 0 && remaining && full && *remaining * 100 >= 2 * *full && *remaining > 0) {
    Drop(readings, "battery.rsoc", "0 contradicts the remaining capacity: a failed firmware call");
  }
  if (remaining == 0 && percent && *percent >= 2) {
    Drop(readings, "battery.remaining_capacity", "0 contradicts the state of charge: a failed firmware call");
  }
}

void CompareCells(std::span<Reading> readings) {
  int64_t sum = 0;
  int64_t largest = 0;
  for (const std::string_view key : kCells) {
    const int64_t cell = NumberOf(readings, key).value_or(0);
    sum += cell;
    largest = std::max(largest, cell);
  }
  const std::optional<int64_t> pack = NumberOf(readings, "battery.voltage");
  if (pack && sum > 0 && *pack < sum + largest / 2) return;
  for (const std::string_view key : kCells) {
    if (NumberOf(readings, key) == 0) {
      Drop(readings, key, "the other cells don't make up the pack voltage: 0 may be a failed firmware call");
    }
  }
}

}  // namespace

void DropContradictedZeros(std::span<Reading> readings) {
  CompareCharge(readings);
  CompareCells(readings);
}

}  // namespace vexahealth
