#include "tests/support/detection.h"

#include <gtest/gtest.h>

#include <string_view>

#include "frame/architecture.h"
#include "tests/support/arch_value.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

std::function<bool(USHORT* machine)> g_detection;
int g_detections = 0;

namespace {

using Function = BOOL WINAPI(HANDLE, USHORT*, USHORT*);
Function* g_system_detection = nullptr;
ImportPatch* g_lookup_patch = nullptr;

BOOL WINAPI Detect(HANDLE process, USHORT* process_machine, USHORT* machine) {
  ++g_detections;
  EXPECT_EQ(process, GetCurrentProcess());
  if (!g_detection) return g_system_detection(process, process_machine, machine);
  *process_machine = IMAGE_FILE_MACHINE_UNKNOWN;
  return g_detection(machine);
}

FARPROC WINAPI LookUp(HMODULE module, LPCSTR name) {
  const FARPROC found = g_lookup_patch->Original<FARPROC WINAPI(HMODULE, LPCSTR)>()(module, name);
  const bool is_ordinal = reinterpret_cast<uintptr_t>(name) < 0x10000;
  if (is_ordinal || std::string_view("IsWow64Process2") != name) return found;
  if (GetEnvironmentVariableW(kWithoutDetection, nullptr, 0) != 0) return nullptr;
  g_system_detection = reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(Detect));
}

class Detection : public testing::Environment {
 public:
  void SetUp() override {
    ImportPatch patch("GetProcAddress", LookUp);
    g_lookup_patch = &patch;
    ArchValue::Remove();
    (void)IsArchitectureARM64();
    ArchValue::Remove();
    g_lookup_patch = nullptr;
  }
};
[[maybe_unused]] testing::Environment* const g_environment = testing::AddGlobalTestEnvironment(new Detection);

}  // namespace

}  // namespace vexa::test
