#include "wmi/firmware_device.h"

#include <windows.h>

#include <setupapi.h>

#include <array>
#include <string_view>

#include "frame/handles.h"

namespace vexa {
namespace {

constexpr std::wstring_view kHardwareId = L"ACPI\\VEXA2018";
constexpr DWORD kListBytes = 8192;

// Looks an entry up in a list of terminated texts; the list itself may lack its end.
bool ListHolds(std::wstring_view list, std::wstring_view entry) {
  while (!list.empty()) {
    const size_t end = list.find(L'\0');
    if (list.substr(0, end) == entry) return true;
    if (end == std::wstring_view::npos) return false;
    list.remove_prefix(end + 1);
  }
  return false;
}

}  // namespace

bool IsObxWmiDevicePresent() {
  const DeviceInfoSet devices(SetupDiGetClassDevsW(nullptr, L"ACPI", nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
  if (!devices) return false;
  SP_DEVINFO_DATA device{.cbSize = sizeof device};
  for (DWORD index = 0; SetupDiEnumDeviceInfo(devices.get(), index, &device); ++index) {
    std::array<wchar_t, kListBytes / sizeof(wchar_t)> ids{};
    DWORD size = 0;
    if (SetupDiGetDeviceRegistryPropertyW(devices.get(), &device, SPDRP_HARDWAREID, nullptr,
                                          reinterpret_cast<BYTE*>(ids.data()), kListBytes, &size) &&
        ListHolds(std::wstring_view(ids.data(), ids.size()), kHardwareId)) {
      return true;
    }
  }
  return false;
}

}  // namespace vexa
