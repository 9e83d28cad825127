// A device that the system has, by its hardware id.
#ifndef VEXA_FRAME_PRESENT_DEVICE_H_
#define VEXA_FRAME_PRESENT_DEVICE_H_

#include <windows.h>

#include <setupapi.h>

#include <optional>
#include <string_view>

#include "frame/handles.h"

namespace vexa {

class PresentDevice {
 public:
  // The first present device below an enumerator ("ACPI") with this hardware id; nothing without one.
  [[nodiscard]] static std::optional<PresentDevice> Find(const wchar_t* enumerator, std::wstring_view hardware_id);

  // The device's own registry key, for reading; an empty owner when it has none.
  [[nodiscard]] RegistryKey OpenKey() const;

 private:
  DeviceInfoSet set_;
  mutable SP_DEVINFO_DATA device_{.cbSize = sizeof device_};
};

}  // namespace vexa

#endif  // VEXA_FRAME_PRESENT_DEVICE_H_
