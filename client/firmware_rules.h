// From answers to readings on machines whose gauge is read through the firmware's methods (ARM64).
//
// There is no healthy table there, so its version decides nothing, and every gauge export answers 0 when the firmware's
// method failed. A 0 is therefore never believed by itself:
//
// - Where a working gauge can't answer 0 (pack voltage, temperature, design voltage, full-charge capacity, date, cell
//   1), 0 is no answer.
// - Elsewhere (charge, current, serial number, cells that a small pack lacks, ...) 0 is believed when the gauge answers
//   right after, which vexa.hpp finds out, and the export then answers 0 again.
// - What is still believed then must fit the other readings: see firmware_zeros.h.
//
// A gauge that answers neither voltage nor temperature at the start is not asked for the rest: the firmware does not
// answer, or there is no battery, which can't be told apart.
#ifndef CLIENT_FIRMWARE_RULES_H_
#define CLIENT_FIRMWARE_RULES_H_

#include <optional>

#include "client/ask.h"

namespace vexahealth {

// The reading of a row that needs no call: the firmware has no such value, or its gauge does not answer.
[[nodiscard]] std::optional<Reading> FirmwareWithoutCall(const Row& row, bool gauge_answers);

// Whether this answer, the pack voltage or the temperature, shows that the gauge works.
bool ShowsGauge(const Answer& answer);

[[nodiscard]] Reading DecideFirmware(const Row& row, const Answer& answer);

// External power, which the system tells there: a 0 that may mean "unknown" needs the system's own word.
[[nodiscard]] Reading DecidePower(const Row& row, const Answer& answer, PowerLine line);

}  // namespace vexahealth

#endif  // CLIENT_FIRMWARE_RULES_H_
