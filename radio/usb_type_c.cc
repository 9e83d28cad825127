// Whether one USB device is plugged into a type-C port.
#include <windows.h>

#include <optional>
#include <string>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "radio/usb_port.h"
#include "vexa/peripherals.h"

namespace vexa {
namespace {

// Device instance ids differ by more than case.
bool IsSameId(const std::wstring& id, const wchar_t* other) {
  return CompareStringOrdinal(id.c_str(), -1, other, -1, TRUE) == CSTR_EQUAL;
}

bool Find(UsbDevices& devices, const wchar_t* device_instance_id) {
  while (devices.Next()) {
    const std::optional<std::wstring> id = devices.InstanceId();
    if (id && IsSameId(*id, device_instance_id)) return true;
  }
  return false;
}

uint32_t AskPort(const UsbDevices& device, const DeviceHandle& hub) {
  const std::optional<uint32_t> port = device.PortNumber();
  if (!port) return VEXA_USB_PORT_UNKNOWN;
  const std::optional<UsbPortProperties> properties = AskPortProperties(hub, *port);
  if (!properties) {
    LogInfo("[RF] RF_USBISTYPEC DeviceIoControl hUsbHub failed w/err 0x%08lx\n", GetLastError());
    return VEXA_USB_PORT_UNKNOWN;
  }
  return properties->type_c ? VEXA_USB_PORT_TYPE_C : VEXA_USB_PORT_OTHER;
}

uint32_t FindPort(const wchar_t* device_instance_id) {
  LogBuilt(TraceLevel::kVerbose,
           [=] { return WideLine(L"[RF] RF_USBISTYPEC Start with deviceID = ", device_instance_id); });
  uint32_t result = VEXA_USB_PORT_UNKNOWN;
  UsbDevices devices;
  if (Find(devices, device_instance_id)) {
    const DeviceHandle hub = devices.OpenHub();
    if (!hub) {
      LogInfo("[RF] RF_USBISTYPEC CreateFile hUsbHub fail.");
      return VEXA_USB_PORT_UNKNOWN;
    }
    result = AskPort(devices, hub);
  }
  LogInfo("[RF] RF_USBISTYPEC return with result = %d", static_cast<int>(result));
  return result;
}

}  // namespace
}  // namespace vexa

uint32_t RF_USBISTYPEC(const wchar_t* device_instance_id) noexcept {
  using namespace vexa;
  if (device_instance_id == nullptr) return VEXA_USB_PORT_UNKNOWN;
  return Guarded("RF_USBISTYPEC", uint32_t{VEXA_USB_PORT_UNKNOWN}, [=] { return FindPort(device_instance_id); });
}
