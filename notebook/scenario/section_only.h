// One section of a scenario for the piece of the notebook that reads it itself.
#ifndef NOTEBOOK_SCENARIO_SECTION_ONLY_H_
#define NOTEBOOK_SCENARIO_SECTION_ONLY_H_

#include <string>
#include <string_view>

#include "json_value.h"

namespace scenario {

// The scenario as text with no other section in it.
std::string SectionOnly(const JsonValue& document, std::string_view key);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_SECTION_ONLY_H_
