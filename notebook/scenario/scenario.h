// A whole scenario: from its text to what the driver and the firmware read.
#ifndef NOTEBOOK_SCENARIO_SCENARIO_H_
#define NOTEBOOK_SCENARIO_SCENARIO_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "faults.h"

namespace scenario {

inline constexpr size_t kMaxScenarioSize = 4 << 20;

// The image, or nothing and what is wrong in `faults`.
std::vector<uint8_t> CompileScenario(std::string_view text, Faults& faults);

// What the firmware reads, or nothing and what is wrong in `faults`. The other sections are checked too.
std::string FirmwareScenario(std::string_view text, Faults& faults);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_SCENARIO_H_
