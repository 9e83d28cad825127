#include "client/firmware_rules.h"

#include <string>

#include "client/rules.h"
#include "client/values.h"

namespace vexahealth {
namespace {

// The low half of 0xFFFFFFFE, by which the firmware says that it does not know a device. Bit 16 of it is set like that
// of an answer, so the library gives it as watts.
constexpr uint32_t kUnknownDevice = 0xFFFE;

}  // namespace

std::optional<Reading> FirmwareWithoutCall(const Row& row, bool gauge_answers) {
  if (row.gate == Gate::kDriver) return Missing(row, Status::kUnsupported, "ARM64 machines need no kernel driver");
  if (!row.facts().on_arm64) return Missing(row, Status::kUnsupported, "the firmware has no such value");
  const bool gauge = row.on_firmware == OnFirmware::kNeverZero || row.on_firmware == OnFirmware::kMayBeZero;
  if (!gauge || gauge_answers) return std::nullopt;
  return Missing(row, Status::kNoAnswer, "voltage and temperature are both 0: failed firmware calls, or no battery");
}

bool ShowsGauge(const Answer& answer) {
  return answer && answer->number != 0 && InRange(Kind::kMillivolts, answer->number);
}

Reading DecideFirmware(const Row& row, const Answer& answer) {
  const bool text = row.kind == Kind::kText;
  if (text && (!answer || answer->text.empty())) {
    return Missing(row, answer ? vexa::Reason::kNoAnswer : answer.error(),
                   "the firmware's call failed, or the gauge has no name");
  }
  if (!answer) {
    return Missing(row, answer.error(),
                   answer.error() == vexa::Reason::kUnsupported
                       ? "this machine does not tell it"
                       : "the firmware did not answer, or not right after a 0 that may be a failed call of it");
  }
  if (row.kind == Kind::kWatts && answer->number == kUnknownDevice) {
    return Missing(row, Status::kUnsupported, "the firmware does not know the question");
  }
  const bool zero = answer->number == 0 && !text;
  if (zero && row.on_firmware == OnFirmware::kNeverZero) {
    return Missing(row, Status::kNoAnswer,
                   "0: the firmware's call failed, or the gauge has no such value; a working gauge does not answer 0");
  }
  return InItsRange(row, *answer,
                    zero && row.on_firmware == OnFirmware::kMayBeZero
                        ? "cross-checked: 0 twice, and in between the gauge answered its voltage or temperature"
                        : NoteOn(row.kind, answer->number));
}

Reading DecidePower(const Row& row, const Answer& answer, PowerLine line) {
  if (answer && answer->number != 0) return Ok(row, true, "by the system's power status");
  if (!answer && answer.error() == vexa::Reason::kMissingExport) return Missing(row, answer.error(), {});
  if (line == PowerLine::kOffline) {
    return Ok(row, false, "cross-checked: the system says \"no external power\" right after");
  }
  return Missing(row, Status::kNoAnswer,
                 "0 may mean unknown: the system does not say \"no external power\" right after");
}

}  // namespace vexahealth
