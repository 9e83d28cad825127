#include "wmi/firmware_device.h"

#include "frame/present_device.h"

namespace vexa {

bool IsObxWmiDevicePresent() { return PresentDevice::Find(L"ACPI", L"ACPI\\VEXA2018").has_value(); }

}  // namespace vexa
