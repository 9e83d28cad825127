// The USB devices that are present, and the ports of the hubs that they are plugged into.
#ifndef VEXA_RADIO_USB_PORT_H_
#define VEXA_RADIO_USB_PORT_H_

#include <windows.h>

#include <setupapi.h>

#include <cstdint>
#include <optional>
#include <string>

#include "frame/handles.h"

namespace vexa {

struct UsbPortProperties {
  bool user_connectable;
  bool type_c;
};

struct UsbDeviceDescriptor {
  uint16_t bcd_usb;
  uint8_t device_class;
};

// The present devices of the USB device interface class.
class UsbDevices {
 public:
  UsbDevices();

  // Whether the system can list them.
  explicit operator bool() const { return static_cast<bool>(set_); }
  // Goes to the next device, first to the first one. False when there are no more.
  [[nodiscard]] bool Next();

  // Of the current device: nothing when the system does not tell, or tells it in more than 259 characters.
  [[nodiscard]] std::optional<std::wstring> InstanceId() const;
  [[nodiscard]] std::optional<std::wstring> Text(DWORD property) const;
  [[nodiscard]] std::optional<uint32_t> PortNumber() const;
  // The hub that it is plugged into; an empty owner when it can't be found or opened.
  [[nodiscard]] DeviceHandle OpenHub() const;

 private:
  [[nodiscard]] bool Property(DWORD property, void* value, DWORD size) const;

  DeviceInfoSet set_;
  DWORD next_ = 0;
  SP_DEVINFO_DATA device_{};
};

// What a hub tells about one of its ports; nothing, with the last error set, when the request fails.
[[nodiscard]] std::optional<UsbPortProperties> AskPortProperties(const DeviceHandle& hub, uint32_t port);
[[nodiscard]] std::optional<UsbDeviceDescriptor> AskDeviceDescriptor(const DeviceHandle& hub, uint32_t port);

}  // namespace vexa

#endif  // VEXA_RADIO_USB_PORT_H_
