// The trace of the shipped library, from its first line to its unloading.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Bytes of a literal, embedded zeros included, without the terminator that the compiler adds.
template <size_t kSize>
std::vector<uint8_t> Bytes(const char (&text)[kSize]) {
  return {text, text + kSize - 1};
}

class Trace : public EndToEnd {
 protected:
  // Never taken out of the table: the library calls it until it is unloaded, and then the table is gone.
  static TraceRecorder& Record(const Library& library, int level) {
    auto* recorder = new TraceRecorder(library.module());
    recorder->level_at_registration = level;
    return *recorder;
  }
};

TEST_F(Trace, OfAnInstallation) {
  Library library;
  TraceRecorder& recorder = Record(library, 5);
  EXPECT_EQ(library.InitializeWinIo(), 1u);
  EXPECT_THAT(recorder.TakeLines(),
              ElementsAre("1 TraceLoggingRegister++++++", "5 InitializeWinIo() Enter [0]",
                          "5 [VexaWinDll][IsArchitectureARM64] cannot get REG_ARCHITECTURE key",
                          "5 Driver [VexaSAIO] does NOT exist\n", "5 Attempt to remove driver [VexaSAIO]",
                          "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424",
                          "5 Attempt to install driver [VexaSAIO] with path [\\??\\C:\\Vexa\\VexaSAIO.sys]",
                          "1 Successfully install driver [VexaSAIO]",
                          "5 Service [VexaSAIO] StartService successfully.", "5 Starting service [VexaSAIO].",
                          "5 Successfully start service [VexaSAIO].", "5 InitializeWinIo() Exit [1]"));
  library.InitializeWinIo();
  library.Number("BatteryHealthyTable_Rsoc");
  library.ShutdownWinIo();
  library.ShutdownWinIo();
  EXPECT_EQ(library.StopWinIoDriver(0), 1u);
  EXPECT_THAT(recorder.TakeLines(),
              ElementsAre("5 InitializeWinIo() Enter [1]", "5 InitializeWinIo() Exit [2]",
                          "5 [RwEcCmd] cmd: 0xbb DataList: 0x50 ReadData",
                          "5 [RwEcCmd] cmd: 0xdd DataList: 0x1 0x31 0x0 ReadData",
                          "5 [RwEcCmd] cmd: 0xdd DataList: 0x1 0x30 0x0 ReadData",
                          "5 ShutdownWinIo() Enter [2]", "5 ShutdownWinIo() Exit [1]",
                          "5 ShutdownWinIo() Enter [1]", "5 ShutdownWinIo() Exit [0]",
                          "5 Stopping service [VexaSAIO].", "5 Successful to stop service [VexaSAIO]."));
  EXPECT_EQ(recorder.registrations, 1);
  EXPECT_TRUE(library.Free());
}

TEST_F(Trace, OfAServiceThatIsMoved) {
  RegisterService(L"\\??\\C:\\Vexa-other\\VexaSAIO.sys");
  const Library library;
  TraceRecorder& recorder = Record(library, 5);
  const Ready ready(library);
  const std::vector<std::string> lines = recorder.TakeLines();
  EXPECT_THAT(std::vector(lines.begin() + 3, lines.end()),
              ElementsAre("5 Driver [VexaSAIO] Exists\n", "5 A [\\??\\C:\\Vexa-other]",
                          "5 B [\\??\\C:\\Vexa]", "5 Driver path is NOT latest.",
                          "5 Attempt to remove driver [VexaSAIO]",
                          "5 Service [VexaSAIO] is not running.",
                          "1 Successfully to delete service [VexaSAIO].",
                          "5 Attempt to install driver [VexaSAIO] with path [\\??\\C:\\Vexa\\VexaSAIO.sys]",
                          "1 Successfully install driver [VexaSAIO]",
                          "5 Service [VexaSAIO] StartService successfully.", "5 Starting service [VexaSAIO].",
                          "5 Successfully start service [VexaSAIO].", "5 InitializeWinIo() Exit [1]"));
}

TEST_F(Trace, OfARefusedExchangeAndADriverStatus) {
  UseScenario("silent-ec");
  const Library library;
  TraceRecorder& recorder = Record(library, 5);
  library.Number("BatteryHealthyTable_ReadVersion");
  EXPECT_THAT(recorder.TakeLines(),
              testing::AllOf(testing::Contains("5 [RwEcCmd] cmd: 0xbb DataList: 0x50 ReadData"),
                             testing::Contains("5 [RwEcCmd] IOstatus = VEXAIO_STATUS_NO_INITIALIZED")));
  const Ready ready(library);
  recorder.TakeLines();
  library.Number("BatteryHealthyTable_FullChargeCapacity");
  EXPECT_THAT(recorder.TakeLines(),
              ElementsAre("5 [RwEcCmd] cmd: 0xbb DataList: 0x50 ReadData", "1 [RwEcCmd] IOstatus = 5",
                          "5 [EC_BH][BatteryHealthy_FullChargeCapacity] Fail. BatteryHealthyTable version: "
                          "2147483647"));
}

TEST_F(Trace, OnlyAtTheLevelsThatASessionWants) {
  const Library library;
  TraceRecorder& recorder = Record(library, 1);
  const Ready ready(library);
  EXPECT_THAT(recorder.TakeLines(),
              ElementsAre("1 TraceLoggingRegister++++++",
                          "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424",
                          "1 Successfully install driver [VexaSAIO]"));
  library.TraceOutput(4, L"ab");
  library.TraceOutputCritical(4, L"cd");
  EXPECT_THAT(recorder.TakeLines(), ElementsAre("1 cd"));
  recorder.Enable(4);
  library.TraceOutput(4, L"ab");
  library.TraceOutput(1, L"ab");
  library.TraceOutput(4, nullptr);
  EXPECT_THAT(recorder.TakeLines(), ElementsAre("4 ab"));
  recorder.Disable();
  library.TraceOutputCritical(4, L"cd");
  EXPECT_THAT(recorder.TakeLines(), IsEmpty());
}

TEST_F(Trace, BytesOfTheEvents) {
  const Library library;
  TraceRecorder& recorder = Record(library, 5);
  library.TraceOutputCritical(4, L"ab");
  library.TraceOutput(4, L"ab");
  library.ShutdownWinIo();
  const std::vector<uint8_t> traits = Bytes("\x11\0VexaSysAnlsSrv\0");
  constexpr GUID kProvider = {0xf952fc4a, 0x5222, 0x4dbb, {0x93, 0x02, 0xc9, 0xb9, 0xdd, 0x9d, 0x7c, 0x9c}};
  EXPECT_EQ(recorder.provider, kProvider);
  EXPECT_EQ(recorder.set_class, 2u);
  EXPECT_EQ(recorder.set_traits, traits);
  const std::vector<TraceEvent> events = recorder.TakeEvents();
  ASSERT_EQ(events.size(), 5u);
  const UCHAR levels[] = {1, 1, 4, 5, 5};
  for (size_t i = 0; i < events.size(); ++i) {
    EXPECT_EQ(events[i].traits, traits);
    EXPECT_EQ(events[i].metadata, Bytes("\x14\0\0VexaWinDll\0wstr\0\x01"));
    const EVENT_DESCRIPTOR& descriptor = events[i].descriptor;
    EXPECT_EQ(descriptor.Level, levels[i]);
    EXPECT_EQ(descriptor.Channel, 11);
    EXPECT_EQ(descriptor.Id, 0);
    EXPECT_EQ(descriptor.Version, 0);
    EXPECT_EQ(descriptor.Opcode, 0);
    EXPECT_EQ(descriptor.Task, 0);
    EXPECT_EQ(descriptor.Keyword, 0u);
  }
  EXPECT_EQ(events[2].payload, Bytes("a\0b\0\0\0"));
}

TEST_F(Trace, EndsWhenTheLibraryIsFreed) {
  for (const int level : {5, -1}) {
    SCOPED_TRACE(level);
    Library library;
    TraceRecorder& recorder = Record(library, level);
    library.ShutdownWinIo();
    recorder.TakeLines();
    EXPECT_EQ(recorder.unregistrations, 0);
    EXPECT_TRUE(library.Free());
    if (level == 5) {
      EXPECT_THAT(recorder.TakeLines(), ElementsAre("1 TraceLoggingUnregister-----"));
    } else {
      EXPECT_THAT(recorder.TakeLines(), IsEmpty());
    }
    EXPECT_EQ(recorder.registrations, 1);
    EXPECT_EQ(recorder.unregistrations, 1);
  }
}

TEST_F(Trace, NothingHappensWhenNothingIsCalled) {
  Library library;
  TraceRecorder& recorder = Record(library, 5);
  EXPECT_EQ(library.GetIoDllVersion(), 65537u);
  EXPECT_TRUE(library.Free());
  EXPECT_EQ(recorder.registrations, 0);
  EXPECT_EQ(recorder.unregistrations, 0);
  EXPECT_THAT(recorder.TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vexa::test
