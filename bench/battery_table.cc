#include "bench/battery_table.h"

#include <windows.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "bench/bare_calls.h"
#include "bench/paired.h"
#include "frame/ec_command.h"
#include "tests/support/import_patch.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

// Where a value lies in the EC's table, high byte first, and how the firmware is asked for it.
struct Value {
  uint32_t (*read)();
  uint8_t group;
  uint8_t offsets[2];
  uint8_t bytes;
  const wchar_t* method;  // null: the firmware is not asked
  const wchar_t* command_code;
  const wchar_t* param0;
};

constexpr wchar_t kByte[] = L"battery_read_command_byte";
constexpr wchar_t kIndex[] = L"battery_read_command_by_index";

constexpr Value kValues[] = {
    {BatteryHealthyTable_ManufactureDate, 1, {0x55, 0x54}, 2, kByte, L"27", L"2"},
    {BatteryHealthyTable_SerialNumber, 1, {0x29, 0x28}, 2, kByte, L"28", L"2"},
    {BatteryHealthyTable_DesignVoltage, 1, {0x2D, 0x2C}, 2, kByte, L"25", L"2"},
    {BatteryHealthyTable_CycleCount, 1, {0x2F, 0x2E}, 2, kByte, L"23", L"2"},
    {BatteryHealthyTable_Rsoc, 1, {0x31, 0x30}, 2, kByte, L"13", L"1"},
    {BatteryHealthyTable_Temperature, 1, {0x35, 0x34}, 2, kByte, L"8", L"2"},
    {BatteryHealthyTable_PackageVoltage, 1, {0x37, 0x36}, 2, kByte, L"9", L"2"},
    {BatteryHealthyTable_Current, 1, {0x39, 0x38}, 2, kByte, L"10", L"2"},
    {BatteryHealthyTable_ChargingCurrent, 1, {0x3D, 0x3C}, 2, nullptr, nullptr, nullptr},
    {BatteryHealthyTable_ChargingVoltage, 1, {0x3F, 0x3E}, 2, kByte, L"21", L"2"},
    {BatteryHealthyTable_RemainingCapacity, 1, {0x41, 0x40}, 2, kByte, L"15", L"2"},
    {BatteryHealthyTable_FullChargeCapacity, 1, {0x43, 0x42}, 2, kByte, L"16", L"2"},
    {BatteryHealthyTable_CellVoltage1, 1, {0x49, 0x48}, 2, kByte, L"63", L"2"},
    {BatteryHealthyTable_CellVoltage2, 1, {0x4B, 0x4A}, 2, kByte, L"62", L"2"},
    {BatteryHealthyTable_CellVoltage3, 1, {0x4D, 0x4C}, 2, kByte, L"61", L"2"},
    {BatteryHealthyTable_CellVoltage4, 1, {0x4F, 0x4E}, 2, kByte, L"60", L"2"},
    {BatteryHealthyTable_GaugeIC, 1, {0x13}, 1, kIndex, L"32", L"4"},
    {BatteryHealthyTable_BatteryError, 1, {0x01}, 1, kByte, L"153", L"2"},
    {BatteryHealthyTable_FullCharged, 1, {0x01}, 1, nullptr, nullptr, nullptr},
    {BatteryHealthyTable_TimeoutStatus, 1, {0x03}, 1, nullptr, nullptr, nullptr},
    {BatteryHealthyTable_ACStatus, 1, {0x00}, 1, nullptr, nullptr, nullptr},
    {BatteryHealthyTable_LidStatus, 3, {0x01}, 1, nullptr, nullptr, nullptr},
};

volatile uint32_t g_sink;

void LibraryTable() {
  for (const Value& value : kValues) g_sink = value.read();
}

// The table's version, then the value's bytes.
void BareDriverTable() {
  for (const Value& value : kValues) {
    g_sink = BareRouteRead();
    g_sink = BareExchange(0xBB, 1, 0x50);
    for (uint8_t i = 0; i < value.bytes; ++i) g_sink = BareExchange(0xDD, 3, value.group, value.offsets[i]);
  }
}

void BareFirmwareTable() {
  for (const Value& value : kValues) {
    g_sink = BareRouteRead();
    if (value.method != nullptr) g_sink = BareFirmwareCall(value.method, value.command_code, value.param0);
  }
  SYSTEM_POWER_STATUS power;
  GetSystemPowerStatus(&power);
  g_sink = power.ACLineStatus;
}

using Request = std::array<uint8_t, sizeof(EcCommandRecord)>;
std::vector<Request> g_requests;
decltype(&DeviceIoControl) g_device_control = nullptr;

BOOL WINAPI RecordRequest(HANDLE device, DWORD code, LPVOID in, DWORD in_size, LPVOID out, DWORD out_size,
                          LPDWORD returned, LPOVERLAPPED overlapped) {
  Request request{};
  std::memcpy(request.data(), in, in_size < request.size() ? in_size : request.size());
  g_requests.push_back(request);
  return g_device_control(device, code, in, in_size, out, out_size, returned, overlapped);
}

std::vector<Request> RequestsOf(void (*table)()) {
  const test::ImportPatch patch("DeviceIoControl", RecordRequest);
  g_device_control = patch.Original<std::remove_pointer_t<decltype(g_device_control)>>();
  g_requests.clear();
  table();
  return g_requests;
}

// Nothing is asked of the EC but what is written out above, in that order.
bool AsksForNothingElse() {
  const std::vector<Request> library = RequestsOf(LibraryTable), bare = RequestsOf(BareDriverTable);
  const bool same = library == bare;
  std::printf("battery table: %zu values in %zu exchanges, %zu needed%s\n", std::size(kValues), library.size(),
              bare.size(), same ? "" : "  DIFFERENT");
  return same;
}

}  // namespace

bool CompareBatteryTableOnDriver() {
  const bool same = AsksForNothingElse();
  return Compare({.name = "battery table / registry + exchanges",
                  .library = LibraryTable,
                  .bare = BareDriverTable,
                  .limit = 1.05,
                  .pairs = 400,
                  .calls_per_block = 1,
                  .may_allocate = false}) &&
         same;
}

bool CompareBatteryTableOnFirmware() {
  for (const Value& value : kValues) {
    if (value.method == nullptr) continue;
    const auto bare = static_cast<uint16_t>(BareFirmwareCall(value.method, value.command_code, value.param0));
    const auto library = static_cast<uint16_t>(value.read());
    // Flags are one bit of what the firmware answers.
    if (library == bare || library == (bare >> 7 & 1)) continue;
    std::printf("register %ls: library %u, bare %u\n", value.command_code, library, bare);
    return false;
  }
  return Compare({.name = "battery table / registry + firmware",
                  .library = LibraryTable,
                  .bare = BareFirmwareTable,
                  .limit = 1.05,
                  .pairs = 200,
                  .calls_per_block = 1,
                  .may_allocate = true});
}

}  // namespace vexa
