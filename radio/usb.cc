// The USB devices, the disks and the HDMI monitors, as they were when first asked for.
#include <windows.h>

#include <setupapi.h>

#include <string>
#include <string_view>
#include <utility>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "frame/text_value.h"
#include "radio/peripheral_class.h"
#include "radio/peripheral_snapshots.h"
#include "radio/usb_port.h"
#include "vexa/peripherals.h"
#include "wmi/query_engine.h"

namespace vexa {

UsbSnapshot g_usb;

namespace {

constexpr std::wstring_view kMassStorage = L"USB Mass Storage Device";
constexpr uint8_t kClassByInterface = 0;  // the descriptor leaves the class to the device's interfaces
constexpr uint32_t kInitialiseCom = 1;

constexpr wchar_t kHdmiMonitors[] = L"SELECT * FROM WmiMonitorConnectionParams WHERE VideoOutputTechnology = 5";

struct UsbStorage {
  UsbVersionCounts versions;
  std::string ports;
};

void CountDevice(const UsbDevices& devices, UsbSnapshot& snapshot, UsbStorage& storage) {
  const DeviceHandle hub = devices.OpenHub();
  if (!hub) return;
  const std::optional<uint32_t> port = devices.PortNumber();
  const std::optional<std::wstring> description = devices.Text(SPDRP_DEVICEDESC);
  // Kept: read with the others, though nothing is decided by it.
  (void)devices.Text(SPDRP_DRIVER);
  if (!port) return;
  const std::optional<UsbPortProperties> properties = AskPortProperties(hub, *port);
  if (!properties) return;
  if (properties->user_connectable) ++(properties->type_c ? snapshot.type_c : snapshot.type_a);
  const std::optional<UsbDeviceDescriptor> descriptor = AskDeviceDescriptor(hub, *port);
  if (!descriptor || descriptor->device_class != kClassByInterface || description != kMassStorage) return;
  storage.versions.Add(descriptor->bcd_usb);
  storage.ports += NumberText(*port) + ",";
}

void CollectDevices(UsbSnapshot& snapshot) {
  UsbDevices devices;
  if (!devices) return;
  UsbStorage storage;
  while (devices.Next()) CountDevice(devices, snapshot, storage);
  snapshot.storage_versions = storage.versions.Text();
  snapshot.storage_ports = std::move(storage.ports);
}

void CollectUsb() noexcept {
  g_usb.transferring = ReadWMIPropNumDiskInRW(kInitialiseCom) > 0 ? 1 : 0;
  Guarded("RF_ReadUSB_Info", 0, [] {
    CollectDevices(g_usb);
    return 0;
  });
  g_usb.hdmi = ReadWMIEnumNum(L"ROOT\\WMI", kHdmiMonitors, kInitialiseCom) > 0 ? 1 : 0;
  g_usb.collected = true;
}

const UsbSnapshot& Usb(const char* uncollected_line) noexcept {
  if (!g_usb.collected) {
    LogInfo("%s", uncollected_line);
    CollectUsb();
  }
  return g_usb;
}

}  // namespace
}  // namespace vexa

uint32_t RF_USBIsTranster() noexcept { return vexa::Usb("[RF] RF_USBIsTranster FLAG FALSE").transferring; }

VexaText RF_USBNum() noexcept { return vexa::TextValue(vexa::Usb("[RF] RF_USBNum FLAG FALSE").storage_versions); }

uint32_t RF_USB_A_Num() noexcept { return vexa::Usb("[RF] RF_USB_A_Num FLAG FALSE").type_a; }

uint32_t RF_USB_C_Num() noexcept { return vexa::Usb("[RF] RF_USB_C_Num FLAG FALSE").type_c; }

VexaText RF_USBPort() noexcept {
  return vexa::TextValue(vexa::WholeItems(vexa::Usb("[RF] RF_USBPort FLAG FALSE").storage_ports, ','));
}

uint32_t RF_USBHDMIIsUsed() noexcept { return vexa::Usb("[RF] RF_USBHDMIIsUsed FLAG FALSE").hdmi; }
