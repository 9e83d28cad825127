#include "client/asker.h"

#include <utility>

#include "client/firmware_rules.h"

namespace vexahealth {

Asker::Asker(const Context& context) : context_(context) {
  now_ = {.route = context.route, .ready = context.ready, .table = {}, .gauge_answers = false};
  if (!context.ready) return;
  if (FirmwareRoute()) {
    now_.gauge_answers = GaugeAnswers();
  } else {
    now_.table = TableStateFrom(CallKey("ec.table_version"));
  }
}

std::optional<Reading> Asker::WithoutCall(const Row& row) const { return DecideWithoutCall(row, now_); }

Reading Asker::Ask(const Row& row) const {
  if (std::optional<Reading> decided = WithoutCall(row)) return std::move(*decided);
  Answer answer = CallRow(row);
  const CrossCheck check = NeedsCrossCheck(row, answer, now_.route) ? CrossCheckNow(row) : CrossCheck::kNone;
  // A call that failed only once tells its value now.
  if (FirmwareRoute() && check == CrossCheck::kConfirmed) answer = CallRow(row);
  return Decide(row, answer, now_, check);
}

Answer Asker::CallRow(const Row& row) const {
  return Call(row, context_.resolve(row.export_name), context_.decode, context_.decode_wide);
}

Answer Asker::CallKey(std::string_view key) const { return CallRow(kRows[RowIndex(key)]); }

bool Asker::GaugeAnswers() const {
  for (const std::string_view key : {"battery.voltage", "battery.temperature"}) {
    if (ShowsGauge(kRows[RowIndex(key)], CallKey(key))) return true;
  }
  return false;
}

CrossCheck Asker::CrossCheckNow(const Row& row) const {
  if (!FirmwareRoute()) {
    const Answer voltage = CallKey("battery.voltage");
    return CrossCheckFrom(voltage, WantsVersion(voltage) ? CallKey("ec.table_version") : Answer{});
  }
  const bool system = row.on_firmware == OnFirmware::kSystem;
  const bool confirmed = system ? context_.power_line() == PowerLine::kOffline : GaugeAnswers();
  return confirmed ? CrossCheck::kConfirmed : CrossCheck::kNoAnswer;
}

}  // namespace vexahealth
