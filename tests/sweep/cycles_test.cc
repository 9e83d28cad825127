// The library loaded, used and freed very many times.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/arch_value.h"
#include "tests/support/process_counts.h"
#include "vexa/vexa.h"

namespace vexa::test {
namespace {

// A copy of its own, which nothing else in this process keeps.
constexpr wchar_t kOriginal[] = L"VexaWinIO64.dll";
constexpr wchar_t kLibrary[] = L"VexaCycles.dll";

int Cycles() {
  const char* const text = std::getenv("VEXA_SWEEP_CALLS");
  return text == nullptr ? 1000 : std::atoi(text);
}

template <typename Function>
Function* Find(HMODULE library, const char* name, Function*) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

void LoadUseAndFree() {
  const HMODULE library = LoadLibraryW(kLibrary);
  ASSERT_NE(library, nullptr);
  char time[VEXA_LOCAL_TIME_CAPACITY];
  Find(library, "TraceOutput", ::TraceOutput)(10, L"cycle");
  EXPECT_EQ(Find(library, "System_Read_LocalTime", ::System_Read_LocalTime)(time), sizeof time - 1);
  EXPECT_NE(Find(library, "BatteryHealthyTable_Rsoc", ::BatteryHealthyTable_Rsoc)(), 1u);
  ASSERT_TRUE(FreeLibrary(library));
  ASSERT_EQ(GetModuleHandleW(kLibrary), nullptr) << "it stays loaded";
}

// Of this program, with a backslash.
std::wstring Folder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring text = path;
  return text.substr(0, text.rfind(L'\\') + 1);
}

TEST(Cycles, LoadedUsedAndFreed) {
  ASSERT_TRUE(CopyFileW((Folder() + kOriginal).c_str(), (Folder() + kLibrary).c_str(), FALSE));
  // On the firmware's route a thread of the pool may still hold the library for a moment after the answer.
  const ArchValue route(L"x64");
  for (int i = 0; i < 20; ++i) LoadUseAndFree();
  const size_t handles = OpenHandles(), threads = RunningThreads();
  const HeapUse heap = UseOfHeaps();
  for (int i = 0; i < Cycles() && !HasFatalFailure(); ++i) LoadUseAndFree();
  EXPECT_EQ(OpenHandles(), handles);
  EXPECT_EQ(RunningThreads(), threads);
  const HeapUse now = UseOfHeaps();
  EXPECT_LE(now.blocks, heap.blocks);
  EXPECT_LE(now.bytes, heap.bytes);
  DeleteFileW((Folder() + kLibrary).c_str());
}

}  // namespace
}  // namespace vexa::test
