// The standard battery class on a scripted battery device.
#include "frame/battery_class.h"
#include "tests/support/shell_test.h"

#include <windows.h>

#include <batclass.h>
#include <setupapi.h>

#include <cstring>

namespace vexa::test {
namespace {

const HANDLE kBattery = reinterpret_cast<HANDLE>(uintptr_t{0xBA77});
const HDEVINFO kDevices = reinterpret_cast<HDEVINFO>(uintptr_t{0xDE71});

// Step by step what the device does, and what was asked of it.
struct BatteryDevice {
  bool found = true, listed = true, opens = true;
  ULONG tag = 7;
  BATTERY_INFORMATION information{.Capabilities = BATTERY_SYSTEM_BATTERY,
                                  .DesignedCapacity = 50000,
                                  .FullChargedCapacity = 40000,
                                  .CycleCount = 123};
  BATTERY_STATUS status{.Capacity = 30000, .Voltage = 12000, .Rate = -6000};
  std::wstring name = L"CELLCO";
  DWORD failing = 0;  // control code
  int failing_level = -1;
  size_t longest = 256;   // bytes of an answer that come
  DWORD told_length = 0;  // the length that is told; 0: the true one
  Strings asked;
  int open_devices = 0, open_sets = 0;
} g_battery;

HDEVINFO WINAPI GetClassDevs(const GUID* id, PCWSTR, HWND, DWORD flags) {
  EXPECT_EQ(id->Data1, 0x72631E54u);
  EXPECT_EQ(flags, DWORD{DIGCF_PRESENT | DIGCF_DEVICEINTERFACE});
  if (!g_battery.found) return INVALID_HANDLE_VALUE;
  ++g_battery.open_sets;
  return kDevices;
}
BOOL WINAPI EnumInterfaces(HDEVINFO, PSP_DEVINFO_DATA, const GUID*, DWORD index, PSP_DEVICE_INTERFACE_DATA) {
  EXPECT_EQ(index, 0u);
  return g_battery.listed;
}
BOOL WINAPI GetDetail(HDEVINFO, PSP_DEVICE_INTERFACE_DATA, PSP_DEVICE_INTERFACE_DETAIL_DATA_W detail, DWORD size,
                      PDWORD needed, PSP_DEVINFO_DATA) {
  constexpr wchar_t kPath[] = L"\\\\?\\battery#0";
  if (needed != nullptr) *needed = sizeof(DWORD) + sizeof kPath;
  if (detail == nullptr) return FALSE;
  EXPECT_EQ(detail->cbSize, 8u);
  EXPECT_GE(size, sizeof(DWORD) + sizeof kPath);
  std::memcpy(detail->DevicePath, kPath, sizeof kPath);
  return TRUE;
}
BOOL WINAPI DestroyList(HDEVINFO set) {
  EXPECT_EQ(set, kDevices);
  --g_battery.open_sets;
  return TRUE;
}
HANDLE WINAPI Open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) {
  EXPECT_STREQ(path, L"\\\\?\\battery#0");
  EXPECT_EQ(access, GENERIC_READ | GENERIC_WRITE);
  EXPECT_EQ(share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
  if (!g_battery.opens) return INVALID_HANDLE_VALUE;
  ++g_battery.open_devices;
  return kBattery;
}
BOOL WINAPI Close(HANDLE handle) {
  EXPECT_EQ(handle, kBattery);
  --g_battery.open_devices;
  return TRUE;
}

BOOL WINAPI Control(HANDLE, DWORD code, LPVOID in, DWORD, LPVOID out, DWORD out_size, LPDWORD returned, LPOVERLAPPED) {
  int level = -1;
  const auto answer = [&](const void* data, size_t size) {
    EXPECT_LE(size, out_size);
    if (code == g_battery.failing && (g_battery.failing_level < 0 || level == g_battery.failing_level)) return FALSE;
    size = std::min(size, g_battery.longest);
    std::memcpy(out, data, size);
    *returned = g_battery.told_length != 0 ? g_battery.told_length : static_cast<DWORD>(size);
    return TRUE;
  };
  if (code == 0x294040) {
    EXPECT_EQ(*static_cast<ULONG*>(in), 0u);
    g_battery.asked.push_back("tag");
    return answer(&g_battery.tag, sizeof g_battery.tag);
  }
  if (code == 0x29404C) {
    EXPECT_EQ(static_cast<BATTERY_WAIT_STATUS*>(in)->BatteryTag, g_battery.tag);
    g_battery.asked.push_back("status");
    return answer(&g_battery.status, sizeof g_battery.status);
  }
  const auto* query = static_cast<BATTERY_QUERY_INFORMATION*>(in);
  EXPECT_EQ(query->BatteryTag, g_battery.tag);
  level = query->InformationLevel;
  g_battery.asked.push_back("information " + std::to_string(level));
  if (level == 0) return answer(&g_battery.information, sizeof g_battery.information);
  EXPECT_EQ(out_size, 256u);
  return answer(g_battery.name.data(), std::min<size_t>(g_battery.name.size() * 2, 256));
}

class BatteryClass : public ShellTest {
 protected:
  BatteryClass() { g_battery = {}; }
  ~BatteryClass() override {
    EXPECT_EQ(g_battery.open_devices, 0);
    EXPECT_EQ(g_battery.open_sets, 0);
  }

  ImportPatch devs_{"SetupDiGetClassDevsW", GetClassDevs};
  ImportPatch enum_{"SetupDiEnumDeviceInterfaces", EnumInterfaces};
  ImportPatch detail_{"SetupDiGetDeviceInterfaceDetailW", GetDetail};
  ImportPatch destroy_{"SetupDiDestroyDeviceInfoList", DestroyList};
  ImportPatch open_{"CreateFileW", Open};
  ImportPatch close_{"CloseHandle", Close};
  ImportPatch control_{"DeviceIoControl", Control};
};

TEST_F(BatteryClass, WholeSnapshotInOrder) {
  const BatterySnapshot snapshot = ReadBatterySnapshot();
  EXPECT_THAT(g_battery.asked, ElementsAre("tag", "information 0", "status", "tag", "information 6"));
  EXPECT_EQ(snapshot.designed_capacity, 50000u);
  EXPECT_EQ(snapshot.full_charged_capacity, 40000u);
  EXPECT_EQ(snapshot.cycle_count, 123u);
  EXPECT_FLOAT_EQ(snapshot.health_ratio, 0.8f);
  EXPECT_EQ(snapshot.voltage, 12000u);
  EXPECT_EQ(snapshot.capacity, 30000u);
  EXPECT_EQ(snapshot.rate, -6000);
  EXPECT_FLOAT_EQ(snapshot.rate_per_voltage, -0.5f);
  EXPECT_EQ(snapshot.manufacturer, L"CELLCO");
}

TEST_F(BatteryClass, NothingMoreWithoutATag) {
  g_battery.tag = 0;
  EXPECT_EQ(ReadBatterySnapshot().designed_capacity, 0u);
  EXPECT_THAT(g_battery.asked, ElementsAre("tag"));
}

TEST_F(BatteryClass, StatusOnlyOfASystemBatteryAndNoDivisionByZero) {
  g_battery.information.Capabilities = 0x7FFFFFFF;
  g_battery.information.DesignedCapacity = 0;
  BatterySnapshot snapshot = ReadBatterySnapshot();
  EXPECT_THAT(g_battery.asked, ElementsAre("tag", "information 0", "tag", "information 6"));
  EXPECT_EQ(snapshot.health_ratio, 0.0f);
  g_battery.information.Capabilities = BATTERY_SYSTEM_BATTERY;
  g_battery.status.Voltage = 0;
  snapshot = ReadBatterySnapshot();
  EXPECT_EQ(snapshot.rate_per_voltage, 0.0f);
  EXPECT_EQ(snapshot.rate, -6000);
}

TEST_F(BatteryClass, UnterminatedNameIsCut) {
  g_battery.name = std::wstring(200, L'N');
  EXPECT_EQ(ReadBatterySnapshot().manufacturer, std::wstring(127, L'N'));
}

TEST_F(BatteryClass, EachStepFailing) {
  g_battery.found = false;
  EXPECT_EQ(ReadBatterySnapshot().tag, 0u);
  g_battery = {.listed = false};
  EXPECT_EQ(ReadBatterySnapshot().tag, 0u);
  g_battery = {.opens = false};
  EXPECT_EQ(ReadBatterySnapshot().tag, 0u);
  EXPECT_THAT(g_battery.asked, IsEmpty());
  g_battery = {.failing = 0x29404C};
  EXPECT_EQ(ReadBatterySnapshot().cycle_count, 123u);
  EXPECT_EQ(g_battery.asked.back(), "information 6");
  g_battery = {.failing = 0x294044, .failing_level = 0};
  EXPECT_EQ(ReadBatterySnapshot().manufacturer, L"CELLCO");
  g_battery = {.failing = 0x294044, .failing_level = 6};
  EXPECT_EQ(ReadBatterySnapshot().manufacturer, L"");
}

TEST_F(BatteryClass, AnswersOfEveryLength) {
  for (size_t length = 0; length <= 17; ++length) {
    g_battery.longest = length;
    const BatterySnapshot snapshot = ReadBatterySnapshot();
    EXPECT_EQ(snapshot.tag, length == 0 ? 0u : 7u) << length;
    EXPECT_EQ(snapshot.designed_capacity, length < 13 ? 0u : length == 13 ? 0x50u : 50000u) << length;
    EXPECT_EQ(snapshot.full_charged_capacity, length < 17 ? 0u : 0x40u) << length;
    EXPECT_EQ(snapshot.manufacturer, std::wstring(L"CELLCO").substr(0, (length + 1) / 2)) << length;
  }
  g_battery.longest = 256;
  g_battery.told_length = 0xFFFFFFFF;
  EXPECT_EQ(ReadBatterySnapshot().manufacturer, L"CELLCO");
}

}  // namespace
}  // namespace vexa::test
