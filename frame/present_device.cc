#include "frame/present_device.h"

#include <array>

namespace vexa {
namespace {

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

std::optional<PresentDevice> PresentDevice::Find(const wchar_t* enumerator, std::wstring_view hardware_id) {
  PresentDevice found;
  found.set_ = DeviceInfoSet(SetupDiGetClassDevsW(nullptr, enumerator, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
  if (!found.set_) return std::nullopt;
  for (DWORD index = 0; SetupDiEnumDeviceInfo(found.set_.get(), index, &found.device_); ++index) {
    std::array<wchar_t, kListBytes / sizeof(wchar_t)> ids{};
    DWORD size = 0;
    if (SetupDiGetDeviceRegistryPropertyW(found.set_.get(), &found.device_, SPDRP_HARDWAREID, nullptr,
                                          reinterpret_cast<BYTE*>(ids.data()), kListBytes, &size) &&
        ListHolds(std::wstring_view(ids.data(), ids.size()), hardware_id)) {
      return found;
    }
  }
  return std::nullopt;
}

RegistryKey PresentDevice::OpenKey() const {
  const HKEY key = SetupDiOpenDevRegKey(set_.get(), &device_, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
  return RegistryKey(key == INVALID_HANDLE_VALUE ? nullptr : key);
}

}  // namespace vexa
