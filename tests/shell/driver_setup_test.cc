// Where the library finds its driver, and when it installs it.
#include "tests/support/lifecycle_test.h"
#include "vexa/lifecycle.h"

namespace vexa::test {
namespace {

constexpr char kManager[] = "OpenSCManagerW null null f003f";
constexpr char kMutex[] = "CreateMutexW null 1 VEXAWINIO_!@#$%^&*";
constexpr char kCreate[] =
    "CreateServiceW VexaSAIO VexaSAIO f01ff type 1 start 3 error 1 path \\??\\D:\\Tools\\VexaSAIO.sys null null null "
    "null null";
constexpr char kWaiting[] = "1 EnsureIoDriverRunning() has been called by other thread. Wait for the thread finished.";
constexpr char kFinished[] = "5 EnsureIoDriverRunning() is finished by other thread. Wait for the thread finished.";
constexpr char kGaveUp[] = "5 WARNING: EnsureIoDriverRunning() has been executing for over 3 seconds. No more waiting.";

class DriverSetupTest : public LifecycleTest {
 protected:
  DriverSetupTest() { service.exists = false; }

  // Registered elsewhere, and running.
  void RegisterElsewhere() {
    service.exists = true;
    service.state = SERVICE_RUNNING;
    service.binary_path = L"\\??\\C:\\Old\\VexaSAIO.sys";
  }
};

TEST_F(DriverSetupTest, InstallsAndStartsWhatIsAbsent) {
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_THAT(
      script.Take(),
      ElementsAre("GetModuleFileNameW own 260", "PathRemoveFileSpecW D:\\Tools\\VexaWinIO64.dll", kManager,
                  "OpenServiceW VexaSAIO f01ff", kMutex, "GetFileAttributesW D:\\Tools\\VexaSAIO.sys", kManager,
                  "OpenServiceW VexaSAIO 24", "Sleep 50", kManager, kCreate, kManager, "OpenServiceW VexaSAIO 14",
                  "QueryServiceStatus", "StartServiceW 0", "Sleep 1", "QueryServiceStatus", "CloseHandle mutex",
                  "CreateFileW \\\\.\\VexaSAIO c0000000 share 0 null 3 80 null"));
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [0]", "5 Driver [VexaSAIO] does NOT exist\n",
                                   "5 Attempt to remove driver [VexaSAIO]",
                                   "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424",
                                   "5 Attempt to install driver [VexaSAIO] with path [\\??\\D:\\Tools\\VexaSAIO.sys]",
                                   "1 Successfully install driver [VexaSAIO]",
                                   "5 Service [VexaSAIO] StartService successfully.", "5 Starting service [VexaSAIO].",
                                   "5 Successfully start service [VexaSAIO].", "5 InitializeWinIo() Exit [1]"));
}

TEST_F(DriverSetupTest, RemovesAndCreatesWhatIsRegisteredElsewhere) {
  RegisterElsewhere();
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(service.binary_path, L"\\??\\D:\\Tools\\VexaSAIO.sys");
  EXPECT_THAT(Lines(),
              ElementsAre("5 InitializeWinIo() Enter [0]", "5 Driver [VexaSAIO] Exists\n", "5 A [\\??\\C:\\Old]",
                          "5 B [\\??\\D:\\Tools]", "5 Driver path is NOT latest.",
                          "5 Attempt to remove driver [VexaSAIO]", "5 Stopping service [VexaSAIO].",
                          "5 Successful to stop service [VexaSAIO].", "1 Successfully to delete service [VexaSAIO].",
                          "5 Attempt to install driver [VexaSAIO] with path [\\??\\D:\\Tools\\VexaSAIO.sys]",
                          "1 Successfully install driver [VexaSAIO]", "5 Service [VexaSAIO] StartService successfully.",
                          "5 Starting service [VexaSAIO].", "5 Successfully start service [VexaSAIO].",
                          "5 InitializeWinIo() Exit [1]"));
}

TEST_F(DriverSetupTest, ServicePathFollowsTheLibrarysFolder) {
  const struct {
    const wchar_t* module;
    const wchar_t* service_path;
    const char* driver_file;
  } cases[] = {
      {L"C:\\Windows\\System32\\v.dll", L"\\SystemRoot\\System32\\VexaSAIO.sys", "C:\\Windows\\System32\\VexaSAIO.sys"},
      {L"c:\\WINDOWS\\system32\\Vexa\\v.dll", L"\\SystemRoot\\system32\\Vexa\\VexaSAIO.sys",
       "c:\\WINDOWS\\system32\\Vexa\\VexaSAIO.sys"},
      {L"C:\\Windows\\v.dll", L"\\SystemRoot\\VexaSAIO.sys", "C:\\Windows\\VexaSAIO.sys"},
      {L"C:\\v.dll", L"\\??\\C:\\VexaSAIO.sys", "C:\\\\VexaSAIO.sys"},
  };
  for (const auto& one : cases) {
    service = {.exists = false};
    machine.module_path = one.module;
    EXPECT_EQ(InitializeWinIo(), 1u);
    EXPECT_EQ(service.binary_path, one.service_path);
    EXPECT_THAT(script.Take(), Contains(std::string("GetFileAttributesW ") + one.driver_file));
    // What it registered it also recognises.
    g_library = {};
    Lines();
    EXPECT_EQ(InitializeWinIo(), 1u);
    EXPECT_THAT(Lines(), Not(Contains("5 Driver path is NOT latest."))) << one.driver_file;
    EXPECT_EQ(CountOf(script.Take(), "Sleep 50"), 0);
    g_library = {};
  }
}

TEST_F(DriverSetupTest, CaseOfTheRegisteredFolderDoesNotMatter) {
  RegisterElsewhere();
  service.binary_path = L"\\??\\d:\\TOOLS\\vexasaio.SYS";
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_THAT(Lines(), Not(Contains("5 Driver path is NOT latest.")));
  // A folder that begins alike is another one.
  service.binary_path = L"\\??\\D:\\Tools2\\VexaSAIO.sys";
  g_library = {};
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_THAT(Lines(), Contains("5 Driver path is NOT latest."));
}

TEST_F(DriverSetupTest, MissingDriverFileStillStartsWhatIsRegistered) {
  RegisterElsewhere();
  service.state = SERVICE_STOPPED;
  machine.driver_file_exists = false;
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(service.binary_path, L"\\??\\C:\\Old\\VexaSAIO.sys");
  EXPECT_THAT(Lines(),
              IsSupersetOf({"5 Driver path is NOT latest.", "1 Driver file [D:\\Tools\\VexaSAIO.sys] not found.",
                            "5 Successfully start service [VexaSAIO]."}));
  EXPECT_EQ(machine.open_mutexes, 0);

  service.exists = false;
  g_library = {};
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [0]", "5 Driver [VexaSAIO] does NOT exist\n",
                                   "1 Driver file [D:\\Tools\\VexaSAIO.sys] not found.",
                                   "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424"));
  ExpectUntouched();
}

TEST_F(DriverSetupTest, ModulePathThatCanNotBeHad) {
  script.Fail("GetModuleFileNameW", 5, 1);
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_EQ(Lines().back(), "1 ERROR: Failed to get current module path. Error code=0x00000005");
  script.Fail("PathRemoveFileSpecW", 6, 1);
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_EQ(Lines().back(),
            "1 ERROR: PathRemoveFileSpecW(\"D:\\Tools\\VexaWinIO64.dll\") failed. Error code=0x00000006");
  // Cut by the buffer.
  machine.module_path = L"D:\\" + std::wstring(257, L'f') + L"\\v.dll";
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_EQ(Lines().back(), "1 ERROR: Failed to get current module path. Error code=0x0000007a");
  EXPECT_EQ(CountOf(script.Take(), kManager), 0);
  ExpectUntouched();
}

TEST_F(DriverSetupTest, RegisteredPathThatCanNotBeRead) {
  RegisterElsewhere();
  script.Fail("QueryServiceConfigW", 5, 1);
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_THAT(Lines(),
              IsSupersetOf({"1 ERROR: Failed to query configuration of service [VexaSAIO]. Error code=0x00000005",
                            "5 WARNING: Failed to get driver [VexaSAIO] path\n", "5 A []", "5 B [\\??\\D:\\Tools]",
                            "5 Driver path is NOT latest.", "1 Successfully install driver [VexaSAIO]"}));

  g_library = {};
  RegisterElsewhere();
  script.Fail("PathRemoveFileSpecW", 6, 2);
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_EQ(Lines().back(),
            "1 ERROR: PathRemoveFileSpecW(\"\\??\\C:\\Old\\VexaSAIO.sys\") failed. Error code=0x00000006");
  ExpectUntouched();
}

TEST_F(DriverSetupTest, WaitsForAnotherInstaller) {
  machine.mutex_exists = true;
  machine.wait_result = WAIT_TIMEOUT;
  EXPECT_EQ(InitializeWinIo(), 0u);
  const Strings calls = script.Take();
  EXPECT_THAT(std::vector(calls.end() - 3, calls.end()),
              ElementsAre(kMutex, "WaitForSingleObject mutex 5000", "CloseHandle mutex"));
  EXPECT_THAT(Lines(),
              ElementsAre("5 InitializeWinIo() Enter [0]", "5 Driver [VexaSAIO] does NOT exist\n", kWaiting, kGaveUp));
  ExpectUntouched();

  for (const DWORD result : {WAIT_OBJECT_0, WAIT_ABANDONED, WAIT_FAILED}) {
    service = {.exists = false};
    machine.wait_result = result;
    EXPECT_EQ(InitializeWinIo(), 1u);
    const Strings lines = Lines();
    EXPECT_EQ(CountOf(lines, kWaiting), 1);
    EXPECT_EQ(CountOf(lines, kFinished), result == WAIT_OBJECT_0 ? 1 : 0);
    EXPECT_EQ(CountOf(script.Take(), kCreate), 1);
    g_library = {};
  }
}

TEST_F(DriverSetupTest, WithoutMutexOnlyTheDeviceIsTried) {
  script.Fail("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_FALSE(service.exists);
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [0]", "5 Driver [VexaSAIO] does NOT exist\n",
                                   "1 [EnsureIoDriverRunning] Create mutex failed. Error code=0x00000005",
                                   "5 InitializeWinIo() Exit [1]"));
  g_library = {};
  script.Fail("CreateFileW", ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(InitializeWinIo(), 0u);
  ExpectUntouched();
}

TEST_F(DriverSetupTest, ServiceThatCanNotBeCreated) {
  RegisterElsewhere();
  script.Fail("CreateServiceW", 1078);
  EXPECT_EQ(InitializeWinIo(), 0u);
  // Nothing is rolled back.
  EXPECT_FALSE(service.exists);
  EXPECT_EQ(script.Take().back(), "CloseHandle mutex");
  Strings lines = Lines();
  EXPECT_THAT(std::vector(lines.end() - 2, lines.end()),
              ElementsAre("1 ERROR: Failed to create service [VexaSAIO]. Error code=0x00000436",
                          "1 ERROR: Failed to install driver [VexaSAIO]"));
  ExpectUntouched();

  script.Fail("OpenSCManagerW", 5);
  EXPECT_EQ(InitializeWinIo(), 0u);
  constexpr char kNoManager[] = "1 ERROR: Failed to open service control manager. Error code=0x00000005";
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [0]", kNoManager, "5 Driver [VexaSAIO] does NOT exist\n",
                                   "5 Attempt to remove driver [VexaSAIO]", kNoManager,
                                   "5 Attempt to install driver [VexaSAIO] with path [\\??\\D:\\Tools\\VexaSAIO.sys]",
                                   kNoManager, "1 ERROR: Failed to install driver [VexaSAIO]"));
}

// One initialisation that has to move the service; the fakes check handles and memory on every way out.
uint32_t InitializeMoved(int failing, std::string* function) {
  DriverFakes fakes;
  g_library = {};
  fakes.service.state = SERVICE_RUNNING;
  fakes.service.binary_path = L"\\??\\C:\\Old\\VexaSAIO.sys";
  fakes.script.FailOnly(failing, 5);
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

TEST(DriverSetup, EachCallFailingAlone) {
  const ArchValue arch(L"x64");
  Strings results;
  std::string function;
  for (int i = 0; i < 100; ++i) {
    const uint32_t result = InitializeMoved(i, &function);
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

}  // namespace
}  // namespace vexa::test
