#include "guarded_memory.h"

#include <windows.h>

namespace radios {
namespace {

constexpr size_t kPage = 4096;
constexpr size_t kAlignment = 8;

constexpr size_t RoundUp(size_t size, size_t unit) { return (size + unit - 1) / unit * unit; }

}  // namespace

void* GuardedMemory::Allocate(size_t size) {
  const size_t usable = RoundUp(size, kPage);
  auto* pages = static_cast<char*>(VirtualAlloc(nullptr, usable + kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  DWORD before = 0;
  if (pages == nullptr || !VirtualProtect(pages + usable, kPage, PAGE_NOACCESS, &before)) return nullptr;
  void* memory = pages + usable - RoundUp(size, kAlignment);
  blocks_[memory] = pages;
  return memory;
}

bool GuardedMemory::Free(void* memory) {
  const auto block = blocks_.find(memory);
  if (block == blocks_.end()) return false;
  VirtualFree(block->second, 0, MEM_RELEASE);
  blocks_.erase(block);
  return true;
}

}  // namespace radios
