// What is not there at all: the battery, or cells that the pack does not have. Told from readings already
// taken.
#ifndef CLIENT_PRESENCE_H_
#define CLIENT_PRESENCE_H_

#include <span>

#include "client/reading.h"

namespace vexahealth {

// True when the table answered and says that there is no pack: pack voltage, state of charge and full-charge
// capacity are all 0, and no other measured value (current, remaining capacity, a cell) contradicts. A pack
// that is only empty keeps its full-charge capacity. False whenever one of the three could not be read.
bool BatteryAbsent(std::span<const Reading> readings);

// Turns the battery's readings into kNotPresent. Readings that the library or the EC does not support stay,
// and so does a battery error that the EC reports. AC, lid, charger and EC identity are untouched.
void MarkBatteryAbsent(std::span<Reading> readings);

// Turns cells that read 0 mV into kNotPresent where the pack has fewer: the cells after the last one with a
// voltage, as long as the others explain the pack voltage. A 0 that leaves a cell's worth of pack voltage
// unexplained stays.
void MarkAbsentCells(std::span<Reading> readings);

}  // namespace vexahealth

#endif  // CLIENT_PRESENCE_H_
