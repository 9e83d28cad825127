// Power data objects (PDOs) of a source, as the USB Power Delivery standard, revision 3.2, lays them out (tables of the
// source PDOs in section 6.4.1).
#ifndef CLIENT_POWER_OBJECT_H_
#define CLIENT_POWER_OBJECT_H_

#include <cstdint>
#include <optional>
#include <string>

namespace vexahealth {

enum class Supply {
  kFixed,
  kBattery,
  kVariable,
  kProgrammable,   // PPS, in the standard power range
  kAdjustableEpr,  // AVS of the extended power range
  kAdjustableSpr,  // AVS of the standard power range
  kReserved,
};

struct PowerObject {
  Supply supply = Supply::kReserved;
  int min_millivolts = 0;  // equal to the largest for a fixed supply
  int max_millivolts = 0;
  std::optional<int> max_milliamps;   // not told by a battery and by an AVS of the extended range
  std::optional<int> max_milliwatts;  // what the object promises at most; not told by a reserved one
};

// From the 32 bits of a source PDO that is not 0. Any word has an answer; reserved kinds have no numbers.
[[nodiscard]] PowerObject DecodePowerObject(uint32_t word);

// "fixed", "battery", "variable", "pps", "epr_avs", "spr_avs" and "reserved".
std::string SupplyName(Supply supply);

// "fixed 20 V, 3 A, 60 W"; "none" for 0.
std::string PowerObjectText(uint32_t word);

}  // namespace vexahealth

#endif  // CLIENT_POWER_OBJECT_H_
