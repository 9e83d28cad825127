#include "tests/support/process_counts.h"

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

namespace vexa::test {
namespace {

constexpr ULONG kHandleInformation = 16;

struct Entry {
  USHORT process, trace;
  BYTE type, flags;
  USHORT handle;
  void* object;
  ULONG access;
};
struct Table {
  ULONG count;
  Entry entries[1];
};
using Query = LONG NTAPI(ULONG, void*, ULONG, ULONG*);

}  // namespace

size_t OpenHandles() {
  static auto* const query = reinterpret_cast<Query*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  std::vector<uint64_t> memory(1 << 18);
  ULONG size = 0;
  if (query(kHandleInformation, memory.data(), static_cast<ULONG>(memory.size() * sizeof memory[0]), &size) < 0)
    return 0;
  const auto* table = reinterpret_cast<const Table*>(memory.data());
  size_t handles = 0;
  for (ULONG i = 0; i < table->count; ++i) {
    handles += table->entries[i].process == static_cast<USHORT>(GetCurrentProcessId());
  }
  return handles;
}

size_t RunningThreads() {
  size_t threads = 0;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{.dwSize = sizeof entry};
  for (BOOL found = Thread32First(snapshot, &entry); found; found = Thread32Next(snapshot, &entry)) {
    threads += entry.th32OwnerProcessID == GetCurrentProcessId();
  }
  CloseHandle(snapshot);
  return threads;
}

HeapUse UseOfHeaps() {
  HANDLE heaps[64];
  const DWORD count = std::min<DWORD>(GetProcessHeaps(std::size(heaps), heaps), std::size(heaps));
  HeapUse use;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if (!(entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)) continue;
      ++use.blocks;
      use.bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return use;
}

}  // namespace vexa::test
