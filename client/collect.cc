#include "client/collect.h"

#include <optional>
#include <utility>

#include "client/firmware_zeros.h"
#include "client/presence.h"

namespace vexahealth {
namespace {

constexpr size_t kWaiting = kRowCount - 1;  // the export that may wait for seconds

}  // namespace

std::vector<Reading> Collect(const Asker& asker) {
  std::vector<Reading> readings = NothingCollected("left out: it can wait for 3 seconds");
  for (size_t i = 0; i < kWaiting; ++i) readings[i] = asker.Ask(kRows[i]);

  const bool absent = BatteryAbsent(readings);
  const Context& context = asker.context();
  if (std::optional<Reading> decided = asker.WithoutCall(kRows[kWaiting])) {
    readings[kWaiting] = std::move(*decided);
  } else if (context.may_wait && !absent && (!context.wanted || context.wanted(kRows[kWaiting]))) {
    if (context.progress) context.progress(kRows[kWaiting].label);
    readings[kWaiting] = asker.Ask(kRows[kWaiting]);
  }
  if (absent) {
    MarkBatteryAbsent(readings);
  } else {
    MarkAbsentCells(readings);
  }
  if (asker.FirmwareRoute()) DropContradictedZeros(readings);
  return readings;
}

std::vector<Reading> Collect(const Context& context) { return Collect(Asker(context)); }

}  // namespace vexahealth
