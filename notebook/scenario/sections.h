// The top-level sections of a scenario. Each reads its own object into the image.
#ifndef NOTEBOOK_SCENARIO_SECTIONS_H_
#define NOTEBOOK_SCENARIO_SECTIONS_H_

#include "faults.h"
#include "image_builder.h"
#include "json_value.h"

namespace scenario {

void ReadDriverSection(const JsonValue& value, ImageBuilder& image, Faults& faults);
void ReadEcSection(const JsonValue& value, ImageBuilder& image, Faults& faults);
void ReadProcessorSection(const JsonValue& value, ImageBuilder& image, Faults& faults);
void ReadAcpiSection(const JsonValue& value, ImageBuilder& image, Faults& faults);
void ReadRulesSection(const JsonValue& value, ImageBuilder& image, Faults& faults);

// Only look for faults: the firmware and the radios read their sections themselves.
void CheckFirmwareSection(const JsonValue& value, ImageBuilder& image, Faults& faults);
void CheckRadiosSection(const JsonValue& value, ImageBuilder& image, Faults& faults);

// Part of the "ec" section: one entry of "groups".
void ReadGroup(const JsonValue& value, ImageBuilder& image, Faults& faults);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_SECTIONS_H_
