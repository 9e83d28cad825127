// Initialising and shutting down: counts, the flag, the device, and the small exports beside them.
#include "vexa/lifecycle.h"

#include "tests/support/lifecycle_test.h"

namespace vexa::test {
namespace {

constexpr char kOpenAlone[] = "CreateFileW \\\\.\\VexaSAIO c0000000 share 0 null 3 80 null";
constexpr char kOpenShared[] = "CreateFileW \\\\.\\VexaSAIO c0000000 share 3 null 3 80 null";

// The service is registered in the library's folder and runs: nothing to install.
class Lifecycle : public LifecycleTest {
 protected:
  Lifecycle() {
    service.binary_path = L"\\??\\D:\\Tools\\VexaSAIO.sys";
    service.state = SERVICE_RUNNING;
  }
};

TEST_F(Lifecycle, RunningServiceIsOnlyLookedAt) {
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_THAT(
      script.Take(),
      ElementsAre("GetModuleFileNameW own 260", "PathRemoveFileSpecW D:\\Tools\\VexaWinIO64.dll",
                  "OpenSCManagerW null null f003f", "OpenServiceW VexaSAIO f01ff", "OpenSCManagerW null null f003f",
                  "OpenServiceW VexaSAIO 1", "QueryServiceConfigW 0", "LocalAlloc", "QueryServiceConfigW sized",
                  "PathRemoveFileSpecW \\??\\D:\\Tools\\VexaSAIO.sys", "OpenSCManagerW null null f003f",
                  "OpenServiceW VexaSAIO 14", "QueryServiceStatus", kOpenAlone));
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [0]", "5 Driver [VexaSAIO] Exists\n",
                                   "5 A [\\??\\D:\\Tools]", "5 B [\\??\\D:\\Tools]",
                                   "5 Service [VexaSAIO] is already running.", "5 InitializeWinIo() Exit [1]"));
  EXPECT_TRUE(g_library.initialised);
  EXPECT_EQ(g_library.references, 1u);
}

TEST_F(Lifecycle, FurtherCallsOnlyCount) {
  ShutdownWinIo();  // before it was ever initialised: a line
  EXPECT_THAT(script.Take(), IsEmpty());
  ExpectUntouched();
  ASSERT_EQ(InitializeWinIo(), 1u);
  const HANDLE device = g_library.driver;
  script.Take();
  Lines();
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [1]", "5 InitializeWinIo() Exit [2]"));
  ShutdownWinIo();
  EXPECT_THAT(Lines(), ElementsAre("5 ShutdownWinIo() Enter [2]", "5 ShutdownWinIo() Exit [1]"));
  EXPECT_THAT(script.Take(), IsEmpty());
  EXPECT_TRUE(g_library.initialised);
  EXPECT_EQ(machine.open_devices, 1);

  ShutdownWinIo();
  EXPECT_THAT(Lines(), ElementsAre("5 ShutdownWinIo() Enter [1]", "5 ShutdownWinIo() Exit [0]"));
  // The device alone: the service keeps running, and the closed handle stays where it was.
  EXPECT_THAT(script.Take(), ElementsAre("CloseHandle device"));
  EXPECT_EQ(service.state, static_cast<DWORD>(SERVICE_RUNNING));
  EXPECT_FALSE(g_library.initialised);
  EXPECT_EQ(g_library.driver, device);

  // One more is one too many: nothing is closed twice, nothing wraps.
  ShutdownWinIo();
  EXPECT_THAT(Lines(), ElementsAre("5 ShutdownWinIo() Enter [0]", "5 ShutdownWinIo() Exit [0]"));
  EXPECT_EQ(g_library.references, 0u);
  EXPECT_THAT(script.Take(), IsEmpty());

  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(script.Take().size(), 14u);  // the whole set-up again
  EXPECT_NE(g_library.driver, device);
  EXPECT_EQ(machine.open_devices, 1);
}

TEST_F(Lifecycle, DeviceInUseIsOpenedShared) {
  script.Fail("CreateFileW", ERROR_SHARING_VIOLATION, 1);
  EXPECT_EQ(InitializeWinIo(), 1u);
  const Strings calls = script.Take();
  EXPECT_EQ(CountOf(calls, kOpenAlone), 1);
  EXPECT_EQ(calls.back(), kOpenShared);
  EXPECT_EQ(machine.open_devices, 1);
  EXPECT_EQ(g_library.references, 1u);
}

TEST_F(Lifecycle, DeviceThatDoesNotOpenEitherWayIsAFailure) {
  script.Fail("CreateFileW", ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(InitializeWinIo(), 0u);
  const Strings calls = script.Take();
  EXPECT_THAT(std::vector(calls.end() - 2, calls.end()), ElementsAre(kOpenAlone, kOpenShared));
  EXPECT_EQ(Lines().back(), "5 Service [VexaSAIO] is already running.");
  ExpectUntouched();
}

TEST_F(Lifecycle, ServiceThatDoesNotStartIsAFailure) {
  service.state = SERVICE_STOPPED;
  service.state_after_start = SERVICE_STOPPED;
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_EQ(machine.open_devices, 0);
  EXPECT_EQ(Lines().back(), "1 ERROR: Failed to start service [VexaSAIO].");
  ExpectUntouched();
}

TEST_F(Lifecycle, StartTakesTheMutexItself) {
  service.state = SERVICE_STOPPED;
  machine.mutex_exists = true;
  machine.wait_result = WAIT_TIMEOUT;
  EXPECT_EQ(InitializeWinIo(), 0u);
  EXPECT_EQ(CountOf(script.Take(), "WaitForSingleObject mutex 3500"), 1);
  ExpectUntouched();

  // Without a mutex nothing is started, but that is no failure, and the device may open.
  script.Fail("CreateMutexW", ERROR_ACCESS_DENIED, 1);
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(service.state, static_cast<DWORD>(SERVICE_STOPPED));
  EXPECT_EQ(machine.open_devices, 1);
}

TEST_F(Lifecycle, FlagWithoutCountIsReady) {
  g_library.initialised = true;
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(g_library.references, 1u);
  EXPECT_THAT(script.Take(), IsEmpty());
}

TEST_F(Lifecycle, FirmwareRouteTouchesNothing) {
  ArchValue::Set(L"ARM64");
  machine.answers = {{0x80102040, 5}, {0x80102044, 6}};
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(g_library.references, 1u);
  EXPECT_TRUE(g_library.initialised);
  EXPECT_EQ(g_library.driver, INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetDriverVersion(), 0u);
  EXPECT_EQ(GetRefCount(), 0u);
  EXPECT_EQ(InitializeWinIo(), 1u);
  ShutdownWinIo();
  ShutdownWinIo();
  EXPECT_FALSE(g_library.initialised);
  EXPECT_THAT(script.Take(), IsEmpty());
  EXPECT_THAT(Lines(), ElementsAre("5 InitializeWinIo() Enter [0]", "5 InitializeWinIo() Exit [1]",
                                   "5 InitializeWinIo() Enter [1]", "5 InitializeWinIo() Exit [2]",
                                   "5 ShutdownWinIo() Enter [2]", "5 ShutdownWinIo() Exit [1]",
                                   "5 ShutdownWinIo() Enter [1]", "5 ShutdownWinIo() Exit [0]"));
}

TEST_F(Lifecycle, RouteIsChosenAnewAtEachCall) {
  ArchValue::Set(L"arm64");  // not the firmware's
  EXPECT_EQ(InitializeWinIo(), 1u);
  EXPECT_EQ(machine.open_devices, 1);
  ArchValue::Set(L"ARM64");
  ShutdownWinIo();
  EXPECT_FALSE(g_library.initialised);
  EXPECT_EQ(machine.open_devices, 1);
}

TEST_F(Lifecycle, DriverAnswersItsVersionAndItsOwnCount) {
  machine.answers = {{0x80102040, 0x00030007}, {0x80102044, 0xFFFFFFFE}};
  const struct {
    uint32_t (*call)();
    uint32_t answer;
    std::string code;
  } readers[] = {{GetDriverVersion, 0x00030007, "80102040"}, {GetRefCount, 0xFFFFFFFE, "80102044"}};
  for (const auto& reader : readers) {
    EXPECT_EQ(reader.call(), 0u);
    EXPECT_THAT(script.Take(), ElementsAre("DeviceIoControl none " + reader.code + " 0 4"));
    ASSERT_EQ(InitializeWinIo(), 1u);
    script.Take();
    EXPECT_EQ(reader.call(), reader.answer);
    EXPECT_THAT(script.Take(), ElementsAre("DeviceIoControl device " + reader.code + " 0 4"));
    script.Fail("DeviceIoControl", ERROR_GEN_FAILURE, 1);
    EXPECT_EQ(reader.call(), 0u);
    ShutdownWinIo();
    EXPECT_EQ(reader.call(), 0u);
    g_library = {};
    script.Take();
  }
}

TEST_F(Lifecycle, SmallExportsNeedNothing) {
  EXPECT_EQ(GetIoDllVersion(), 65537u);
  EXPECT_EQ(wmiadd(41), 42u);
  EXPECT_EQ(wmiadd(0xFFFFFFFF), 0u);
  EXPECT_THAT(script.Take(), IsEmpty());
}

TEST_F(Lifecycle, StoppingTheDriverHandsItsOptionOn) {
  machine.mutex_exists = true;
  machine.wait_result = WAIT_TIMEOUT;
  EXPECT_EQ(StopWinIoDriver(0), 0u);
  EXPECT_EQ(service.state, static_cast<DWORD>(SERVICE_RUNNING));
  for (const uint32_t option : {1u, 0x100u, 0xFFFFFFFFu}) {
    service.state = SERVICE_RUNNING;
    EXPECT_EQ(StopWinIoDriver(option), 1u);
    EXPECT_EQ(service.state, static_cast<DWORD>(SERVICE_STOPPED));
  }
}

}  // namespace
}  // namespace vexa::test
