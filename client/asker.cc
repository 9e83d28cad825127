#include "client/asker.h"

#include <utility>

#include "client/firmware_rules.h"

namespace vexahealth {

Asker::Asker(const Context& context) : context_(context) {
  now_ = {.route = context.route, .ready = context.ready, .table = {}, .gauge_answers = false};
  if (!context.ready) return;
  const auto ask = [&context](std::string_view key) { return kRows[RowIndex(key)].ask(context); };
  if (FirmwareRoute()) {
    now_.gauge_answers = ShowsGauge(ask("battery.voltage")) || ShowsGauge(ask("battery.temperature"));
  } else {
    now_.table = TableStateFrom(ask("ec.table_version"));
  }
}

Reading Asker::Ask(const Row& row) const {
  if (std::optional<Reading> decided = WithoutCall(row)) return std::move(*decided);
  Answer answer = row.ask(context_);
  if (!FirmwareRoute() || row.gate == Gate::kLibrary) return Decide(row, answer, now_);
  if (row.on_firmware == OnFirmware::kSystem) return DecidePower(row, answer, context_.power_line());
  // A call that failed only once tells its value now.
  const bool again = row.on_firmware == OnFirmware::kMayBeZero && answer && answer->number == 0;
  return DecideFirmware(row, again ? row.ask(context_) : answer);
}

}  // namespace vexahealth
