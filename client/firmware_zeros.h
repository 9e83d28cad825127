// Zeros that other readings contradict, on machines whose gauge is read through the firmware's methods. There a fault
// that hits one gauge value only reads as 0 while everything else answers.
#ifndef CLIENT_FIRMWARE_ZEROS_H_
#define CLIENT_FIRMWARE_ZEROS_H_

#include <span>

#include "client/reading.h"

namespace vexahealth {

// Turns into kNoAnswer:
// - a state of charge of 0 % beside a remaining capacity of 2 % of the full-charge capacity or more, and a remaining
//   capacity of 0 beside a state of charge of 2 % or more (1 % may be rounding);
// - cells of 0 mV where the cells that answered leave half a cell's worth of the pack voltage or more unexplained.
// To be called after MarkAbsentCells.
void DropContradictedZeros(std::span<Reading> readings);

}  // namespace vexahealth

#endif  // CLIENT_FIRMWARE_ZEROS_H_
