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
  // Lines of the events, each of which carries the provider's and the event's metadata.
  static Lines CheckedLines(TraceRecorder& recorder) {
    Lines lines;
    for (const TraceEvent& event : recorder.TakeEvents()) {
      lines.push_back(ToText(event));
      EXPECT_EQ(event.traits, Bytes("\x11\0VexaSysAnlsSrv\0"));
      EXPECT_EQ(event.metadata, Bytes("\x14\0\0VexaWinDll\0wstr\0\x01"));
      const EVENT_DESCRIPTOR& told = event.descriptor;
      EXPECT_THAT((std::vector<int>{told.Id, told.Version, told.Channel, told.Opcode, told.Task}),
                  ElementsAre(0, 0, 11, 0, 0));
      EXPECT_EQ(told.Level, event.level);
      EXPECT_EQ(told.Keyword, 0u);
    }
    return lines;
  }
};

TEST_F(Trace, OfAnInstallation) {
  Library library;
  TraceRecorder& recorder = Record(library, 5);
  EXPECT_EQ(library.InitializeWinIo(), 1u);
  EXPECT_THAT(CheckedLines(recorder),
              ElementsAre("1 TraceLoggingRegister++++++", "5 InitializeWinIo() Enter [0]",
                          "5 [VexaWinDll][IsArchitectureARM64] cannot get REG_ARCHITECTURE key",
                          "5 Driver [VexaSAIO] does NOT exist\n", "5 Attempt to remove driver [VexaSAIO]",
                          "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424",
                          "5 Attempt to install driver [VexaSAIO] with path [\\??\\C:\\Vexa\\VexaSAIO.sys]",
                          "1 Successfully install driver [VexaSAIO]", "5 Service [VexaSAIO] StartService successfully.",
                          "5 Starting service [VexaSAIO].", "5 Successfully start service [VexaSAIO].",
                          "5 InitializeWinIo() Exit [1]"));
  constexpr GUID kProvider = {0xf952fc4a, 0x5222, 0x4dbb, {0x93, 0x02, 0xc9, 0xb9, 0xdd, 0x9d, 0x7c, 0x9c}};
  EXPECT_EQ(recorder.provider, kProvider);
  EXPECT_EQ(recorder.set_class, 2u);
  EXPECT_EQ(recorder.set_traits, Bytes("\x11\0VexaSysAnlsSrv\0"));
  library.Number("BatteryHealthyTable_Rsoc");
  library.TraceOutput(4, L"ab");
  library.TraceOutputCritical(4, L"cd");
  library.ShutdownWinIo();
  EXPECT_EQ(library.StopWinIoDriver(0), 1u);
  EXPECT_THAT(CheckedLines(recorder),
              ElementsAre("5 [RwEcCmd] cmd: 0xbb DataList: 0x50 ReadData",
                          "5 [RwEcCmd] cmd: 0xdd DataList: 0x1 0x31 0x0 ReadData",
                          "5 [RwEcCmd] cmd: 0xdd DataList: 0x1 0x30 0x0 ReadData", "4 ab", "1 cd",
                          "5 ShutdownWinIo() Enter [1]", "5 ShutdownWinIo() Exit [0]", "5 Stopping service [VexaSAIO].",
                          "5 Successful to stop service [VexaSAIO]."));
  EXPECT_EQ(recorder.registrations, 1);
  EXPECT_TRUE(library.Free());
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
    EXPECT_EQ(recorder.TakeLines(), level == 5 ? Lines{"1 TraceLoggingUnregister-----"} : Lines{});
    EXPECT_EQ(recorder.registrations, 1);
    EXPECT_EQ(recorder.unregistrations, 1);
  }
}

TEST_F(Trace, NothingHappensWhenNothingIsCalled) {
  Library library;
  TraceRecorder& recorder = Record(library, 5);
  EXPECT_EQ(library.GetIoDllVersion(), 65537u);
  EXPECT_TRUE(library.Free());
  EXPECT_EQ(recorder.registrations + recorder.unregistrations, 0);
  EXPECT_THAT(recorder.TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vexa::test
