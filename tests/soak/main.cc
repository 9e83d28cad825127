// All exports of the shipped library for a given time on the simulated notebook; what it holds must not grow.
//
//   soak_test.exe SECONDS
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "tests/support/import_patch.h"
#include "tests/support/process_counts.h"
#include "tests/sweep/exports.h"

namespace vexa::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWarmUpRounds = 5;
constexpr int kRoundsPerDriverStop = 40;
constexpr auto kReportPeriod = std::chrono::seconds(30);
constexpr auto kLongestRest = std::chrono::seconds(60);
constexpr size_t kThreadsAtRest = 1;

// ---- The library ----

std::atomic<long long> g_blocks = 0, g_allocations = 0;
decltype(&std::malloc) g_malloc = nullptr;
decltype(&std::free) g_free = nullptr;

void* CountedMalloc(size_t size) {
  void* const block = g_malloc(size);
  if (block != nullptr) ++g_blocks, ++g_allocations;
  return block;
}
void CountedFree(void* block) {
  if (block != nullptr) --g_blocks;
  g_free(block);
}
void WINAPI NoSleep(DWORD) { SwitchToThread(); }

// Objects of the simulated firmware: each lives while anybody holds a reference to it.
LONG FirmwareObjects() {
  const FARPROC count = GetProcAddress(GetModuleHandleW(L"vexa-firmware.dll"), "VexaFirmwareObjects");
  return count == nullptr ? 0 : reinterpret_cast<LONG(WINAPI*)()>(reinterpret_cast<void*>(count))();
}

struct Library {
  Library() : module(LoadLibraryW(L"VexaWinIO64.dll")) {
    if (module == nullptr) std::exit((std::printf("the library can't be loaded: error %lu\n", GetLastError()), 1));
    sleep = std::make_unique<ImportPatch>("Sleep", NoSleep, module);
    allocate = std::make_unique<ImportPatch>("malloc", CountedMalloc, module);
    g_malloc = allocate->Original<std::remove_pointer_t<decltype(g_malloc)>>();
    release = std::make_unique<ImportPatch>("free", CountedFree, module);
    g_free = release->Original<std::remove_pointer_t<decltype(g_free)>>();
  }

  template <typename Function, typename... Arguments>
  auto Call(const char* name, Function*, Arguments... arguments) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)))(arguments...);
  }

  HMODULE module;
  std::unique_ptr<ImportPatch> sleep, allocate, release;
};

// ---- What is held ----

constexpr const char* kKinds[] = {"kernel handles",
                                  "threads",
                                  "blocks of the library's heap",
                                  "blocks of all heaps",
                                  "bytes of all heaps",
                                  "COM objects of the firmware"};
// No memory of its own, which would be counted.
using Counts = std::array<long long, std::size(kKinds)>;

Counts HeldNow() {
  const HeapUse heaps = UseOfHeaps();
  return {static_cast<long long>(OpenHandles()), static_cast<long long>(RunningThreads()), g_blocks,
          static_cast<long long>(heaps.blocks),  static_cast<long long>(heaps.bytes),      FirmwareObjects()};
}

std::string Text(const Counts& counts) {
  std::string text;
  for (size_t i = 0; i < counts.size(); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(counts[i]) + " " + kKinds[i];
  }
  return text;
}

// What is held when nothing happens: the pool's idle threads, and what each of them holds, have gone.
Counts HeldAtRest() {
  const auto end = Clock::now() + kLongestRest;
  while (RunningThreads() > kThreadsAtRest && Clock::now() < end) Sleep(100);
  return HeldNow();
}

// ---- Rounds ----

bool IsCalledApart(std::string_view name) {
  return name == "InitializeWinIo" || name == "ShutdownWinIo" || name == "StopWinIoDriver";
}

struct Soak {
  // Every export once, between an initialisation and its end.
  void Round() {
    library.Call("InitializeWinIo", ::InitializeWinIo);
    for (const Export& one : Exports()) {
      if (!IsCalledApart(one.name)) Use(one);
    }
    library.Call("HealthyTable_SetFanTestMode", ::HealthyTable_SetFanTestMode, 0);
    library.Call("ShutdownWinIo", ::ShutdownWinIo);
    if (++rounds % kRoundsPerDriverStop == 0) library.Call("StopWinIoDriver", ::StopWinIoDriver, 0);
  }

  void Use(const Export& one) {
    Arguments arguments([](std::string_view name) {
      return name == "device_instance_id" ? L"USB\\VID_0781&PID_5581\\1" : L"C:\\Vexa";
    });
    const Answer answer = one.call(GetProcAddress(library.module, one.name), arguments);
    ++calls;
    if (answer.faults.empty()) return;
    ++faults;
    std::printf("%s: %s\n", one.name, Describe(answer).c_str());
  }

  Library library;
  long rounds = 0, calls = 0, faults = 0;
};

int Run(int seconds) {
  Soak soak;
  for (int i = 0; i < kWarmUpRounds; ++i) soak.Round();
  const Counts before = HeldAtRest();
  std::printf("after %d rounds: %s\n", kWarmUpRounds, Text(before).c_str());
  std::fflush(stdout);
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  for (auto report = Clock::now() + kReportPeriod; Clock::now() < end;) {
    soak.Round();
    if (Clock::now() < report) continue;
    report += kReportPeriod;
    std::printf("%ld rounds, %ld calls: %s\n", soak.rounds, soak.calls, Text(HeldNow()).c_str());
    std::fflush(stdout);
  }
  Counts growth = HeldAtRest();
  for (size_t i = 0; i < growth.size(); ++i) growth[i] -= before[i];
  std::printf("%ld rounds, %ld calls, %lld allocations of the library, growth: %s\n", soak.rounds, soak.calls,
              g_allocations.load(), Text(growth).c_str());
  const long failed = soak.faults + std::ranges::count_if(growth, [](long long count) { return count > 0; });
  std::printf("%d passed, %ld failed\n", failed == 0 ? 1 : 0, failed);
  return failed == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vexa::test

int main(int argc, char** argv) {
  setvbuf(stdout, nullptr, _IOFBF, 4096);
  return vexa::test::Run(argc > 1 ? std::atoi(argv[1]) : 3600);
}
