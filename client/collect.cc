#include "client/collect.h"

#include <optional>
#include <string_view>
#include <utility>

#include "client/firmware_rules.h"
#include "client/firmware_zeros.h"
#include "client/presence.h"
#include "client/rules.h"

namespace vexahealth {
namespace {

constexpr size_t kWaiting = kRowCount - 1;  // the export that may wait for seconds

class Collector {
 public:
  Collector(const RowExports& exports, const CollectOptions& options) : exports_(exports), options_(options) {
    now_ = {.route = options.route, .ready = options.ready, .table = {}, .gauge_answers = false};
    if (!options.ready) return;
    if (FirmwareRoute()) {
      now_.gauge_answers = GaugeAnswers();
    } else {
      now_.table = TableStateFrom(CallRow("ec.table_version"));
    }
  }

  bool FirmwareRoute() const { return options_.route == Route::kFirmware; }

  std::optional<Reading> WithoutCall(size_t index) const { return DecideWithoutCall(kRows[index], now_); }

  Reading Collect(size_t index) const {
    const Row& row = kRows[index];
    if (std::optional<Reading> decided = WithoutCall(index)) return std::move(*decided);
    Answer answer = Call(row, exports_[index], options_.decode, nullptr);
    const CrossCheck check = NeedsCrossCheck(row, answer, now_.route) ? CrossCheckNow(row) : CrossCheck::kNone;
    // A call that failed only once tells its value now.
    if (FirmwareRoute() && check == CrossCheck::kConfirmed) answer = Call(row, exports_[index], nullptr, nullptr);
    return Decide(row, answer, now_, check);
  }

 private:
  // Of numbers only.
  Answer CallRow(std::string_view key) const {
    const size_t index = RowIndex(key);
    return Call(kRows[index], exports_[index], nullptr, nullptr);
  }

  bool GaugeAnswers() const {
    for (const std::string_view key : {"battery.voltage", "battery.temperature"}) {
      if (ShowsGauge(kRows[RowIndex(key)], CallRow(key))) return true;
    }
    return false;
  }

  CrossCheck CrossCheckNow(const Row& row) const {
    if (!FirmwareRoute()) {
      const Answer voltage = CallRow("battery.voltage");
      return CrossCheckFrom(voltage, WantsVersion(voltage) ? CallRow("ec.table_version") : Answer{});
    }
    const bool system = row.on_firmware == OnFirmware::kSystem;
    const bool confirmed = system ? options_.power_line() == PowerLine::kOffline : GaugeAnswers();
    return confirmed ? CrossCheck::kConfirmed : CrossCheck::kNoAnswer;
  }

  const RowExports& exports_;
  const CollectOptions& options_;
  Circumstances now_;
};

}  // namespace

std::vector<Reading> Collect(const RowExports& exports, const CollectOptions& options) {
  const Collector collector(exports, options);
  std::vector<Reading> readings = NothingCollected("left out: it can wait for 3 seconds");
  for (size_t i = 0; i < kWaiting; ++i) readings[i] = collector.Collect(i);

  const bool absent = BatteryAbsent(readings);
  if (std::optional<Reading> decided = collector.WithoutCall(kWaiting)) {
    readings[kWaiting] = std::move(*decided);
  } else if (options.may_wait && !absent) {
    readings[kWaiting] = collector.Collect(kWaiting);
  }
  if (absent) {
    MarkBatteryAbsent(readings);
  } else {
    MarkAbsentCells(readings);
  }
  if (collector.FirmwareRoute()) DropContradictedZeros(readings);
  return readings;
}

}  // namespace vexahealth
