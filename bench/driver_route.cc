// What the library adds to the driver's exchanges and the registry's reads.
#include <windows.h>

#include "bench/bare_calls.h"
#include "bench/battery_table.h"
#include "bench/comparisons.h"
#include "bench/paired.h"
#include "frame/ec_command.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

// Keeps results alive.
volatile uint32_t g_sink;

void LibraryExchange() {
  constexpr uint8_t kData[] = {1, 0x30, 0};
  uint32_t status = 0;
  g_sink = RwEcCmd(sizeof kData, 0xDD, kData, 1, &status);
}
void DeviceExchange() { g_sink = BareExchange(0xDD, 3, 1, 0x30); }

void LibraryExport() { g_sink = BatteryHealthyTable_Rsoc(); }
void BareExport() {
  g_sink = BareRouteRead();
  g_sink = BareExchange(0xBB, 1, 0x50);
  g_sink = BareExchange(0xDD, 3, 1, 0x31);
  g_sink = BareExchange(0xDD, 3, 1, 0x30);
}

}  // namespace

bool CompareDriverRoute() {
  // All are measured, whatever the first gives.
  const bool exchange = Compare({.name = "RwEcCmd / DeviceIoControl",
                                 .library = LibraryExchange,
                                 .bare = DeviceExchange,
                                 .limit = 1.02,
                                 .pairs = 4000,
                                 .calls_per_block = 4,
                                 .may_allocate = false});
  const bool reading = Compare({.name = "Rsoc / registry read + exchanges",
                                .library = LibraryExport,
                                .bare = BareExport,
                                .limit = 1.05,
                                .pairs = 600,
                                .calls_per_block = 40,
                                .may_allocate = false});
  const bool table = CompareBatteryTableOnDriver();
  return exchange && reading && table;
}

bool CompareFirmwareRoute() { return CompareBatteryTableOnFirmware(); }

}  // namespace vexa
