// The ACPI device of the hotkey utility.
#ifndef VEXA_WMI_FIRMWARE_DEVICE_H_
#define VEXA_WMI_FIRMWARE_DEVICE_H_

namespace vexa {

// Whether a present device of the ACPI enumerator has the hardware id "ACPI\VEXA2018". False also when the devices
// can't be listed.
[[nodiscard]] bool IsObxWmiDevicePresent();

}  // namespace vexa

#endif  // VEXA_WMI_FIRMWARE_DEVICE_H_
