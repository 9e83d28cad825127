#include "client/firmware_rules.h"

#include <utility>

#include "client/text.h"
#include "client/values.h"

namespace vexahealth {
namespace {

// The low half of 0xFFFFFFFE, by which the firmware says that it does not know a device. Bit 16 of it is set like that
// of an answer, so the library gives it as watts.
constexpr uint32_t kUnknownDevice = 0xFFFE;

Reading ZeroReading(const Row& row, CrossCheck check) {
  const bool system = row.on_firmware == OnFirmware::kSystem;
  if (row.on_firmware == OnFirmware::kNeverZero) {
    return Missing(row, Status::kNoAnswer,
                   "0: the firmware's call failed, or the gauge has no such value; a working gauge does not answer 0");
  }
  if (check != CrossCheck::kConfirmed) {
    return Missing(row, Status::kNoAnswer,
                   system ? "0 may mean unknown: the system does not say \"no external power\" right after"
                          : "0 may be a failed firmware call: neither voltage nor temperature answered right after");
  }
  return Ok(row, ValueFrom(row.kind, 0),
            system ? "cross-checked: the system says \"no external power\" right after"
                   : "cross-checked: 0 twice, and in between the gauge answered its voltage or temperature");
}

}  // namespace

std::optional<Reading> FirmwareWithoutCall(const Row& row, bool gauge_answers) {
  if (row.gate == Gate::kDriver) return Missing(row, Status::kUnsupported, "ARM64 machines need no kernel driver");
  switch (row.on_firmware) {
    case OnFirmware::kNothing: return Missing(row, Status::kUnsupported, "the firmware has no such value");
    case OnFirmware::kNeverZero:
    case OnFirmware::kMayBeZero:
      if (gauge_answers) return std::nullopt;
      return Missing(row, Status::kNoAnswer,
                     "voltage and temperature are both 0: failed firmware calls, or no battery");
    case OnFirmware::kSame:
    case OnFirmware::kPlain:
    case OnFirmware::kSystem: return std::nullopt;
  }
  return std::nullopt;
}

bool FirmwareNeedsCrossCheck(const Row& row, const Answer& answer) {
  const bool possible = row.on_firmware == OnFirmware::kMayBeZero || row.on_firmware == OnFirmware::kSystem;
  return possible && answer.form == Answer::Form::kNumber && answer.number == 0;
}

bool ShowsGauge(const Row& row, const Answer& answer) {
  return answer.form == Answer::Form::kNumber && answer.number != 0 && InRange(row.kind, answer.number);
}

Reading FirmwareNumber(const Row& row, const Answer& answer, CrossCheck check) {
  if (answer.number == VEXA_NO_ANSWER) return Missing(row, Status::kNoAnswer, "the library could not ask the firmware");
  if (row.reserved == Reserved::kNotOffered && answer.number == VEXA_NOT_AVAILABLE) return NotOffered(row);
  if (row.kind == Kind::kWatts && answer.number == kUnknownDevice) {
    return Missing(row, Status::kUnsupported, "the firmware does not know the question");
  }
  if (answer.number == 0 && row.on_firmware != OnFirmware::kPlain) return ZeroReading(row, check);
  if (!InRange(row.kind, answer.number)) return OutOfRange(row, answer);
  const bool system = row.on_firmware == OnFirmware::kSystem;
  return Ok(row, ValueFrom(row.kind, answer.number),
            system ? "by the system's power status" : NoteOn(row.kind, answer.number));
}

Reading FirmwareName(const Row& row, const Answer& answer) {
  if (answer.number == 1 && !answer.text.empty()) return Ok(row, answer.text);
  return Missing(row, Status::kNoAnswer, "the firmware's call failed, or the gauge has no name");
}

}  // namespace vexahealth
