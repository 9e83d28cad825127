// What the library adds to the driver's exchanges and the registry's reads, as ratios measured side by side.
//
// Each pair times a block of the library's calls and a block of the bare equivalent, one right after the other and in
// alternating order; the ratio is the median over the pairs, the spread its quartiles.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "frame/ec_command.h"
#include "frame/library_state.h"
#include "tests/support/allocations.h"
#include "vexa/battery.h"
#include "vexa/lifecycle.h"

namespace vexa {
namespace {

constexpr int kPairs = 600;
constexpr int kCallsPerBlock = 40;

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

int64_t Time(void (*call)()) {
  LARGE_INTEGER begin, end;
  QueryPerformanceCounter(&begin);
  for (int i = 0; i < kCallsPerBlock; ++i) call();
  QueryPerformanceCounter(&end);
  return end.QuadPart - begin.QuadPart;
}

double At(const std::vector<double>& sorted, double part) {
  return sorted[static_cast<size_t>(part * static_cast<double>(sorted.size() - 1))];
}

size_t AllocationsOf(void (*call)()) {
  const size_t before = test::AllocationCount();
  call();
  return test::AllocationCount() - before;
}

// Returns whether the ratio keeps its limit and the library allocated nothing.
bool Compare(const char* name, void (*library)(), void (*bare)(), double limit) {
  std::vector<double> ratios, bare_us;
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  Time(library);
  Time(bare);
  for (int pair = 0; pair < kPairs; ++pair) {
    int64_t library_ticks = 0, bare_ticks = 0;
    if (pair % 2 == 0) {
      library_ticks = Time(library);
      bare_ticks = Time(bare);
    } else {
      bare_ticks = Time(bare);
      library_ticks = Time(library);
    }
    ratios.push_back(static_cast<double>(library_ticks) / static_cast<double>(bare_ticks));
    bare_us.push_back(static_cast<double>(bare_ticks) * 1e6 / static_cast<double>(frequency.QuadPart) / kCallsPerBlock);
  }
  const size_t allocations = AllocationsOf(library);
  std::ranges::sort(ratios);
  std::ranges::sort(bare_us);
  const double ratio = At(ratios, 0.5);
  std::printf("%-34s ratio %.3f (quartiles %.3f to %.3f, limit %.2f), bare %.1f us, allocations %zu\n", name, ratio,
              At(ratios, 0.25), At(ratios, 0.75), limit, At(bare_us, 0.5), allocations);
  return ratio <= limit && allocations == 0;
}

}  // namespace
}  // namespace vexa

int main() {
  if (InitializeWinIo() != 1) {
    std::fprintf(stderr, "the library is not ready\n");
    return 1;
  }
  // Both are measured, whatever the first gives.
  const bool exchange = vexa::Compare("RwEcCmd / DeviceIoControl", vexa::LibraryExchange, vexa::DeviceExchange, 1.02);
  const bool reading = vexa::Compare("Rsoc / registry read + exchanges", vexa::LibraryExport, vexa::BareExport, 1.05);
  ShutdownWinIo();
  return exchange && reading ? 0 : 1;
}
