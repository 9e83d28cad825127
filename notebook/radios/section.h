// The "radios" section of a scenario.
#ifndef NOTEBOOK_RADIOS_SECTION_H_
#define NOTEBOOK_RADIOS_SECTION_H_

#include <optional>
#include <string_view>
#include <vector>

#include "model.h"
#include "scenario/faults.h"
#include "scenario/json_value.h"
#include "scenario/object_reader.h"

namespace radios {

using scenario::Faults;
using scenario::JsonValue;
using scenario::ObjectReader;

// Reads the section; what is wrong is in `faults`.
Model ReadRadiosSection(const JsonValue& value, Faults& faults);

// Parts of the section.
std::vector<WlanInterface> ReadWlan(const JsonValue& value, Faults& faults);
std::vector<BluetoothRadio> ReadBluetooth(const JsonValue& value, Faults& faults);

// Members that several parts have. What is missing or bad reads as empty; what is missing and needed is a fault.
Address ReadAddress(const ObjectReader& row, std::string_view key, Faults& faults);
Guid ReadGuid(const ObjectReader& row, std::string_view key, Faults& faults);
std::u16string ReadName(const ObjectReader& row, std::string_view key, size_t limit, Faults& faults);
std::optional<uint32_t> ReadOptional(const ObjectReader& row, std::string_view key, scenario::Range range);

// The model of a whole scenario, or of one that holds only this section. Nothing when there are faults.
std::optional<Model> ReadRadiosScenario(std::string_view text, Faults& faults);

}  // namespace radios

#endif  // NOTEBOOK_RADIOS_SECTION_H_
