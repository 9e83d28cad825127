// The "firmware" section of a scenario.
#ifndef NOTEBOOK_FIRMWARE_SECTION_H_
#define NOTEBOOK_FIRMWARE_SECTION_H_

#include <optional>
#include <string>
#include <string_view>

#include "model.h"
#include "scenario/faults.h"
#include "scenario/json_value.h"

namespace firmware {

using scenario::Faults;
using scenario::JsonValue;

// Reads the section; what is wrong is in `faults`.
Model ReadFirmwareSection(const JsonValue& value, Faults& faults);

// Parts of the section.
EcModel ReadEc(const JsonValue& value, Faults& faults);
DeviceModel ReadDevices(const JsonValue& value, Faults& faults);
Table ReadTable(const JsonValue& value, Faults& faults);
Rule ReadRule(const JsonValue& value, Faults& faults);

// A value of a property. `{"vt": ...}` gives any VARIANT; everything else must fit the type.
Datum ReadValue(const JsonValue& value, std::string_view name, CimType type, Faults& faults);
Datum ReadRawValue(const JsonValue& value, Faults& faults);

// The model of a whole scenario, or of one that holds only this section. Nothing when there are faults.
std::optional<Model> ReadFirmwareScenario(std::string_view text, Faults& faults);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_SECTION_H_
