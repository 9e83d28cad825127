// What the library adds to the driver's exchanges and the registry's reads.
#include "bench/driver_route.h"

#include <windows.h>

#include "bench/paired.h"
#include "frame/ec_command.h"
#include "frame/library_state.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

// Keeps results alive.
volatile uint32_t g_sink;

uint8_t BareExchange(uint8_t command, uint8_t count, uint8_t first, uint8_t second) {
  EcCommandRecord record{};
  record.command = command;
  record.data_count = count;
  record.data[0] = first;
  record.data[1] = second;
  record.read_flag = 1;
  DWORD returned = 0;
  DeviceIoControl(g_library.driver, 0x80102070, &record, sizeof record, &record, sizeof record, &returned, nullptr);
  return record.result;
}

void BareRegistryRead() {
  HKEY key = nullptr;
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Vexa\\Config", 0, KEY_READ, &key);
  wchar_t text[64];
  DWORD type = 0;
  DWORD size = sizeof text;
  RegQueryValueExW(key, L"Arch", nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
  RegCloseKey(key);
  g_sink = text[0];
}

void LibraryExchange() {
  constexpr uint8_t kData[] = {1, 0x30, 0};
  uint32_t status = 0;
  g_sink = RwEcCmd(sizeof kData, 0xDD, kData, 1, &status);
}
void DeviceExchange() { g_sink = BareExchange(0xDD, 3, 1, 0x30); }

void LibraryExport() { g_sink = BatteryHealthyTable_Rsoc(); }
void BareExport() {
  BareRegistryRead();
  g_sink = BareExchange(0xBB, 1, 0x50, 0);
  g_sink = BareExchange(0xDD, 3, 1, 0x31);
  g_sink = BareExchange(0xDD, 3, 1, 0x30);
}

}  // namespace

bool CompareDriverRoute() {
  // Both are measured, whatever the first gives.
  const bool exchange = Compare({.name = "RwEcCmd / DeviceIoControl",
                                 .library = LibraryExchange,
                                 .bare = DeviceExchange,
                                 .limit = 1.02,
                                 .pairs = 600,
                                 .calls_per_block = 40,
                                 .may_allocate = false});
  const bool reading = Compare({.name = "Rsoc / registry read + exchanges",
                                .library = LibraryExport,
                                .bare = BareExport,
                                .limit = 1.05,
                                .pairs = 600,
                                .calls_per_block = 40,
                                .may_allocate = false});
  return exchange && reading;
}

}  // namespace vexa
