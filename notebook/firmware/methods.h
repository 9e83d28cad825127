// The firmware's own two classes and what their methods do.
#ifndef NOTEBOOK_FIRMWARE_METHODS_H_
#define NOTEBOOK_FIRMWARE_METHODS_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "model.h"
#include "state.h"

namespace firmware {

inline constexpr std::string_view kFirmwareNamespace = "ROOT\\WMI";
inline constexpr std::string_view kEcClass = "ATD_STS";
inline constexpr std::string_view kDeviceClass = "VexaObxWmi_WMNB";

// The firmware's classes as tables, with as many rows as the model has instances.
std::vector<Table> FirmwareTables(const Model& model);

const Method* FindMethod(const ClassShape& shape, std::string_view name);

// Carries out a method of one of the two classes. `inputs` are in the order of the method's definition, and complete.
// The answer is the out-parameter's value.
uint32_t ExecuteMethod(const Model& model, State& state, std::string_view class_name, std::string_view method,
                       const Arguments& inputs);

// What DSTS answers for a device at that state.
uint32_t DeviceStatus(const DeviceModel& model, const State& state, uint32_t device);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_METHODS_H_
