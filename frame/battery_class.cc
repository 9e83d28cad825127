#include "frame/battery_class.h"

#include <windows.h>

#include <winioctl.h>

#include <batclass.h>
#include <setupapi.h>

#include <cstddef>
#include <vector>

#include "frame/handles.h"

namespace vexa {
namespace {

constexpr GUID kBatteryInterface = {0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};
constexpr size_t kNameBytes = 256;

static_assert(IOCTL_BATTERY_QUERY_TAG == 0x294040);
static_assert(IOCTL_BATTERY_QUERY_INFORMATION == 0x294044);
static_assert(IOCTL_BATTERY_QUERY_STATUS == 0x29404C);

DeviceHandle OpenFirstBattery() {
  const DeviceInfoSet devices(
      SetupDiGetClassDevsW(&kBatteryInterface, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
  if (!devices) return {};
  SP_DEVICE_INTERFACE_DATA interface_data{.cbSize = sizeof interface_data};
  if (!SetupDiEnumDeviceInterfaces(devices.get(), nullptr, &kBatteryInterface, 0, &interface_data)) return {};

  DWORD size = 0;
  SetupDiGetDeviceInterfaceDetailW(devices.get(), &interface_data, nullptr, 0, &size, nullptr);
  if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W)) return {};
  std::vector<std::byte> memory(size);
  auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(memory.data());
  detail->cbSize = sizeof *detail;
  if (!SetupDiGetDeviceInterfaceDetailW(devices.get(), &interface_data, detail, size, nullptr, nullptr)) return {};
  return DeviceHandle(CreateFileW(detail->DevicePath, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
}

template <typename In, typename Out>
bool Request(HANDLE battery, DWORD code, In& in, Out& out) {
  DWORD returned = 0;
  return DeviceIoControl(battery, code, &in, sizeof in, &out, sizeof out, &returned, nullptr);
}

// 0 when there is no battery.
ULONG QueryTag(HANDLE battery) {
  ULONG wait_ms = 0;
  ULONG tag = 0;
  return Request(battery, IOCTL_BATTERY_QUERY_TAG, wait_ms, tag) ? tag : 0;
}

void ReadStatus(HANDLE battery, BatterySnapshot& snapshot) {
  BATTERY_WAIT_STATUS query{.BatteryTag = snapshot.tag};
  BATTERY_STATUS status{};
  if (!Request(battery, IOCTL_BATTERY_QUERY_STATUS, query, status)) return;
  snapshot.voltage = status.Voltage;
  snapshot.capacity = status.Capacity;
  snapshot.rate = static_cast<int32_t>(status.Rate);
  if (status.Voltage != 0) {
    snapshot.rate_per_voltage = static_cast<float>(snapshot.rate) / static_cast<float>(status.Voltage);
  }
}

void ReadInformation(HANDLE battery, BatterySnapshot& snapshot) {
  BATTERY_QUERY_INFORMATION query{.BatteryTag = snapshot.tag, .InformationLevel = BatteryInformation};
  BATTERY_INFORMATION information{};
  if (!Request(battery, IOCTL_BATTERY_QUERY_INFORMATION, query, information)) return;
  snapshot.designed_capacity = information.DesignedCapacity;
  snapshot.full_charged_capacity = information.FullChargedCapacity;
  snapshot.cycle_count = information.CycleCount;
  if (information.DesignedCapacity != 0) {
    snapshot.health_ratio =
        static_cast<float>(information.FullChargedCapacity) / static_cast<float>(information.DesignedCapacity);
  }
  if (information.Capabilities & BATTERY_SYSTEM_BATTERY) ReadStatus(battery, snapshot);
}

void ReadManufacturer(HANDLE battery, BatterySnapshot& snapshot) {
  BATTERY_QUERY_INFORMATION query{.BatteryTag = QueryTag(battery), .InformationLevel = BatteryManufactureName};
  wchar_t name[kNameBytes / sizeof(wchar_t)] = {};
  if (!Request(battery, IOCTL_BATTERY_QUERY_INFORMATION, query, name)) return;
  name[std::size(name) - 1] = L'\0';
  snapshot.manufacturer = name;
}

}  // namespace

BatterySnapshot ReadBatterySnapshot() {
  BatterySnapshot snapshot;
  const DeviceHandle battery = OpenFirstBattery();
  if (!battery) return snapshot;
  snapshot.tag = QueryTag(battery.get());
  if (snapshot.tag == 0) return snapshot;
  ReadInformation(battery.get(), snapshot);
  ReadManufacturer(battery.get(), snapshot);
  return snapshot;
}

}  // namespace vexa
