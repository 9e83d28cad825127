// A failure at every call of an initialisation that has to move the driver service.
#include "tests/support/lifecycle_test.h"
#include "vexa/lifecycle.h"

namespace vexa::test {
namespace {

// One initialisation that has to move the service; the fakes check handles and memory on every way out.
uint32_t InitializeMoved(bool only, int failing, std::string* function) {
  DriverFakes fakes;
  g_library = {};
  fakes.service.state = SERVICE_RUNNING;
  fakes.service.binary_path = L"\\??\\C:\\Old\\VexaSAIO.sys";
  only ? fakes.script.FailOnly(failing, 5) : fakes.script.FailFrom(failing, 5);
  const uint32_t result = InitializeWinIo();
  EXPECT_EQ(g_library.references, result);
  EXPECT_EQ(g_library.initialised, result == 1);
  EXPECT_EQ(g_library.driver != INVALID_HANDLE_VALUE, result == 1);
  EXPECT_EQ(fakes.machine.open_devices, static_cast<int>(result));
  const Strings calls = fakes.script.Take();
  *function = failing < static_cast<int>(calls.size()) ? calls[failing].substr(0, calls[failing].find(' ')) : "";
  EXPECT_EQ(CountOf(calls, "ReleaseMutex mutex"), 0);
  g_library = {};
  return result;
}

TEST(DriverSetupSweep, EachCallFailingAlone) {
  const ArchValue arch(L"x64");
  Strings results;
  std::string function;
  for (int i = 0; i < 100; ++i) {
    const uint32_t result = InitializeMoved(true, i, &function);
    if (function.empty()) break;
    results.push_back(function + " " + std::to_string(result));
  }
  EXPECT_THAT(results,
              ElementsAre("GetModuleFileNameW 0", "PathRemoveFileSpecW 0",
                          // A service that can't be looked at is removed and created, wherever it is.
                          "OpenSCManagerW 1", "OpenServiceW 1", "OpenSCManagerW 1", "OpenServiceW 1",
                          "QueryServiceConfigW 1", "LocalAlloc 1", "QueryServiceConfigW 1", "PathRemoveFileSpecW 0",
                          "CreateMutexW 1", "GetFileAttributesW 1",
                          // One that can't be stopped or deleted stands in the way of the new one.
                          "OpenSCManagerW 0", "OpenServiceW 0", "QueryServiceStatus 0", "ControlService 0", "Sleep 1",
                          "QueryServiceStatus 1", "OpenSCManagerW 0", "OpenServiceW 0", "QueryServiceConfigW 0",
                          "LocalAlloc 0", "QueryServiceConfigW 0", "DeleteService 0", "Sleep 1", "OpenSCManagerW 0",
                          "CreateServiceW 0", "OpenSCManagerW 0", "OpenServiceW 0", "QueryServiceStatus 0",
                          "StartServiceW 0", "Sleep 1", "QueryServiceStatus 0", "CloseHandle 1", "CreateFileW 1"));
}

TEST(DriverSetupSweep, EveryCallFailingFromOneOn) {
  const ArchValue arch(L"x64");
  std::string function;
  for (int i = 0; i < 35; ++i) {
    EXPECT_EQ(InitializeMoved(false, i, &function), 0u) << i;
    EXPECT_NE(function, "") << i;
  }
  EXPECT_EQ(InitializeMoved(false, 35, &function), 1u);
}

}  // namespace
}  // namespace vexa::test
