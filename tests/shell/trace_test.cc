// Levels, registration and texts of the trace, as a trace session sees them.
#include "frame/trace.h"

#include "frame/log.h"
#include "tests/support/allocations.h"
#include "tests/support/event_log.h"
#include "tests/support/shell_test.h"
#include "vexa/trace.h"

namespace vexa::test {
namespace {

class Trace : public ShellTest {
 protected:
  Trace() {
    recorder_.Enable(0);
    recorder_.TakeEvents();
  }
  ~Trace() override { recorder_.Enable(0); }

  void WriteEveryLevel() {
    for (int level = 0; level <= 6; ++level) WriteTrace(static_cast<TraceLevel>(level), L"x");
  }

  TraceRecorder& recorder_ = TraceRecorder::Get();
};

TEST_F(Trace, RegistersOnceWithItsIdentity) {
  WriteEveryLevel();
  EXPECT_EQ(recorder_.registrations, 1);
  EXPECT_EQ(recorder_.set_class, 2u);
  const std::string traits(recorder_.set_traits.begin(), recorder_.set_traits.end());
  EXPECT_EQ(traits, std::string("\x11\0VexaSysAnlsSrv\0", 17));
  const GUID id = {0xf952fc4a, 0x5222, 0x4dbb, {0x93, 0x02, 0xc9, 0xb9, 0xdd, 0x9d, 0x7c, 0x9c}};
  EXPECT_TRUE(IsEqualGUID(recorder_.provider, id));
}

TEST_F(Trace, LevelsOutsideOneToFiveAreDropped) {
  WriteEveryLevel();
  EXPECT_THAT(recorder_.TakeLines(), ElementsAre("1 x", "2 x", "3 x", "4 x", "5 x"));
}

TEST_F(Trace, SessionLevelDecides) {
  recorder_.Enable(4);
  WriteEveryLevel();
  EXPECT_THAT(recorder_.TakeLines(), ElementsAre("1 x", "2 x", "3 x", "4 x"));
  recorder_.Enable(1);
  WriteEveryLevel();
  EXPECT_THAT(recorder_.TakeLines(), ElementsAre("1 x"));
  recorder_.Enable(255);
  WriteEveryLevel();
  EXPECT_EQ(recorder_.TakeLines().size(), 5u);
  recorder_.Control(2, 1);  // a capture-state request changes nothing
  WriteEveryLevel();
  EXPECT_EQ(recorder_.TakeLines().size(), 5u);
  recorder_.Disable();
  WriteEveryLevel();
  EXPECT_THAT(recorder_.TakeLines(), IsEmpty());
}

TEST_F(Trace, EventBytes) {
  LogCritical("ab");
  const std::vector<TraceEvent> events = recorder_.TakeEvents();
  ASSERT_EQ(events.size(), 1u);
  const TraceEvent& event = events[0];
  EXPECT_EQ(event.descriptor.Id, 0);
  EXPECT_EQ(event.descriptor.Channel, 11);
  EXPECT_EQ(event.descriptor.Level, 1);
  EXPECT_EQ(event.descriptor.Opcode, 0);
  EXPECT_EQ(event.descriptor.Keyword, 0u);
  EXPECT_EQ(event.traits, recorder_.set_traits);
  const std::string metadata(event.metadata.begin(), event.metadata.end());
  EXPECT_EQ(metadata, std::string("\x14\0\0VexaWinDll\0wstr\0\x01", 20));
  EXPECT_THAT(event.payload, ElementsAre('a', 0, 'b', 0, 0, 0));
}

TEST_F(Trace, PrintfLines) {
  LogInfo(L"Driver [%s] Exists\n", L"VexaSAIO");
  LogInfo("InitializeWinIo() Enter [%d]", 3);
  LogCritical(L"ERROR: code=0x%08lx, %d of %s", 5ul, -1, L"\u00e4\u4e2d");
  LogCritical("narrow %s 0x%08x", "text", 0xABu);
  const std::string long_text(70000, 'y');
  LogInfo("%s", long_text.c_str());
  EXPECT_THAT(recorder_.TakeEvents(),
              ElementsAre(TraceEvent{.level = 5, .text = "Driver [VexaSAIO] Exists\n"},
                          TraceEvent{.level = 5, .text = "InitializeWinIo() Enter [3]"},
                          TraceEvent{.level = 1, .text = "ERROR: code=0x00000005, -1 of \u00e4\u4e2d"},
                          TraceEvent{.level = 1, .text = "narrow text 0x000000ab"},
                          testing::Field(&TraceEvent::payload, testing::SizeIs(140002))));
}

TEST_F(Trace, FinishedTextsAreNeverFormats) {
  LogText(TraceLevel::kVerbose, "100%s %n %");
  LogBuilt(TraceLevel::kCritical, [] { return std::string("%d"); });
  LogText(TraceLevel::kVerbose, "");
  EXPECT_THAT(recorder_.TakeLines(), ElementsAre("5 100%s %n %", "1 %d", "5 "));
}

TEST_F(Trace, DisabledLinesAreNotBuilt) {
  recorder_.Enable(1);
  const size_t before = AllocationCount();
  LogInfo("%s", "a text that is longer than any short string optimisation holds");
  LogInfo(L"%s", L"a text that is longer than any short string optimisation holds");
  LogBuilt(TraceLevel::kVerbose, []() -> std::string {
    ADD_FAILURE();
    return {};
  });
  EXPECT_EQ(AllocationCount(), before);
}

TEST_F(Trace, CallersLines) {
  TraceOutput(4, L"ab");
  TraceOutputCritical(4, L"abcdef");
  EXPECT_THAT(recorder_.TakeLines(), ElementsAre("4 ab", "1 ab"));
  // Nothing, too short, negative: no event.
  TraceOutput(4, nullptr);
  for (const int32_t length : {1, 0, -1, INT32_MIN}) TraceOutput(length, L"ab");
  EXPECT_THAT(recorder_.TakeLines(), IsEmpty());
  // Half a character behind the last whole one, and a zero in the middle.
  TraceOutput(3, "a\0b");
  TraceOutput(6, L"a\0b");
  EXPECT_THAT(recorder_.TakeLines(), ElementsAre("4 ab", "4 a"));
}

std::string g_debug_text;
std::wstring g_wide_debug_text;
void WINAPI RecordDebugText(const char* text) { g_debug_text = text; }
void WINAPI RecordWideDebugText(const wchar_t* text) { g_wide_debug_text = text; }

TEST_F(Trace, DebugLinesGoToTheDebuggerOnlyAndAreCut) {
  const ImportPatch narrow("OutputDebugStringA", RecordDebugText);
  const ImportPatch wide("OutputDebugStringW", RecordWideDebugText);
  DebugPrint("%d%%", 5);
  DebugPrint(L"[%s]", L"x");
  EXPECT_EQ(g_debug_text, "<VexaWinDll> 5%");
  EXPECT_EQ(g_wide_debug_text, L"<VexaWinDll> [x]");
  DebugPrint("%s", std::string(5000, 'z').c_str());
  DebugPrint(L"%s", std::wstring(5000, L'z').c_str());
  EXPECT_EQ(g_debug_text.size(), 1023u);
  EXPECT_EQ(g_wide_debug_text.size(), 1023u);
  EXPECT_THAT(recorder_.TakeLines(), IsEmpty());
}

TEST_F(Trace, EventLogTakesOneWarningAndIsClosed) {
  EventLog log;
  WriteEventLog(L"100% %s");
  EXPECT_THAT(log.TakeMessages(), ElementsAre("100% %s"));
  log.opens = false;
  WriteEventLog(L"lost");
  EXPECT_THAT(log.TakeMessages(), IsEmpty());
}

}  // namespace
}  // namespace vexa::test
