// A whole scenario: from its text to what the pieces of the notebook read.
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

// One section for the piece that reads it itself ("firmware", "radios"), or nothing and what is wrong in `faults`. The other
// sections are checked too.
std::string ScenarioOf(std::string_view section, std::string_view text, Faults& faults);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_SCENARIO_H_
