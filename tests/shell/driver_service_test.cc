// Starting and stopping the driver service: two routines of one shape, each step failing in turn.
#include "frame/driver_service.h"

#include "tests/support/driver_test.h"

namespace vexa::test {
namespace {

struct Routine {
  std::string name;
  uint32_t (*run)(uint32_t);
  DWORD before, after;  // states of the service
  std::string rights;   // asked of it, in hexadecimal
  std::string control;
  int poll_limit, wait_ms;
  // Lines, those with an error without its number.
  std::string query_failed, nothing_to_do, control_failed;
  Strings progress;
  std::string succeeded, failed, over_limit;
};

// clang-format off: one text a row
const Routine kRoutines[] = {
    {"StartWinIoDriverEx", StartWinIoDriverEx, SERVICE_STOPPED, SERVICE_RUNNING, "14", "StartServiceW 0", 3000, 3500,
     "1 ERROR: Failed to send start control to service [VexaSAIO]. Error code=",
     "5 Service [VexaSAIO] is already running.",
     "1 ERROR: Failed to send start control to service [VexaSAIO]. Error code=",
     {"5 Service [VexaSAIO] StartService successfully.", "5 Starting service [VexaSAIO]."},
     "5 Successfully start service [VexaSAIO].",
     "1 ERROR: Failed to start service [VexaSAIO].",
     "5 WARNING: Service [VexaSAIO] starting timeout [3000 ms] exceeds. Spent [3000 ms]."},
    {"StopWinIoDriverEx", StopWinIoDriverEx, SERVICE_RUNNING, SERVICE_STOPPED, "24", "ControlService 1", 2000, 2500,
     "1 ERROR: Failed to query status of service [VexaSAIO]. Error code=",
     "5 Service [VexaSAIO] is not running.",
     "1 ERROR: Failed to send control [SERVICE_CONTROL_STOP] to service [VexaSAIO]. Error code=",
     {"5 Stopping service [VexaSAIO]."},
     "5 Successful to stop service [VexaSAIO].",
     "1 ERROR: Failed to stop service [VexaSAIO].",
     "5 WARNING: Service [VexaSAIO] stopping timeout [2000 ms] exceeds. Spent [2000 ms]."},
};
// clang-format on

constexpr char kCreateMutex[] = "CreateMutexW null 1 VEXAWINIO_!@#$%^&*";

Strings Join(std::initializer_list<Strings> parts) {
  Strings all;
  for (const Strings& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

class DriverControl : public PerRow<DriverTest, Routine> {
 protected:
  // A run from the state before: its result, its calls behind the first look at the state, its lines.
  void Expect(uint32_t holds_mutex, uint32_t result, const Strings& calls, const Strings& lines) {
    service.state = row_.before;
    EXPECT_EQ(row_.run(holds_mutex), result);
    EXPECT_EQ(script.Take(),
              Join({{"OpenSCManagerW null null f003f", "OpenServiceW VexaSAIO " + row_.rights, "QueryServiceStatus"},
                    calls}));
    EXPECT_EQ(Lines(), lines);
  }
  // The service stays pending for so many polls of the routine.
  void PendFor(int polls) { service.start_polls = service.stop_polls = polls; }

  const Strings done_ = Join({row_.progress, {row_.succeeded}});
  const Strings poll_ = {"Sleep 1", "QueryServiceStatus"};
  const std::string wait_ = "WaitForSingleObject mutex " + std::to_string(row_.wait_ms);
  const std::string waiting_ = "5 [" + row_.name + "] has been called by other thread. Wait for the thread finished.";
  const std::string finished_ = "5 [" + row_.name + "] is finished by other thread. Wait for the thread finished.";
};

TEST_P(DriverControl, ControlsAndPolls) {
  Expect(1, 1, Join({{row_.control}, poll_}), done_);  // under the caller's mutex
  // The own mutex is held until the last poll, and closed unreleased.
  PendFor(1);
  Expect(0, 1, Join({{kCreateMutex, row_.control}, poll_, poll_, {"CloseHandle mutex"}}), done_);
  // Without a mutex it succeeds and controls nothing.
  script.Fail("CreateMutexW", ERROR_ACCESS_DENIED);
  Expect(0, 1, {kCreateMutex}, {"5 [" + row_.name + "] Create mutex failed. Error code=0x00000005"});
  // With nothing to do no mutex is touched.
  service.state = row_.after;
  EXPECT_EQ(row_.run(0), 1u);
  EXPECT_EQ(script.Take().size(), 3u);
  EXPECT_THAT(Lines(), ElementsAre(row_.nothing_to_do));
}

TEST_P(DriverControl, EachFailingStepEndsItWithItsErrorCode) {
  const struct {
    std::string function;
    DWORD error;
    std::string line;
    size_t calls;
  } steps[] = {
      {"OpenSCManagerW", 5, "1 ERROR: Failed to open service control manager. Error code=0x00000005", 1},
      {"OpenServiceW", 1060, "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424", 2},
      {"QueryServiceStatus", 0x80070006, row_.query_failed + "0x80070006", 3},
      {row_.control.substr(0, row_.control.find(' ')), 1058, row_.control_failed + "0x00000422", 6},
  };
  service.state = row_.before;
  for (const auto& step : steps) {
    script.Fail(step.function, step.error, 1);
    EXPECT_EQ(row_.run(0), 0u) << step.function;
    EXPECT_EQ(script.Take().size(), step.calls) << step.function;
    EXPECT_THAT(Lines(), ElementsAre(step.line));
  }
}

TEST_P(DriverControl, WaitsForAnotherHolderOfTheMutex) {
  machine.mutex_exists = true;
  const Strings calls = Join({{kCreateMutex, wait_, row_.control}, poll_, {"CloseHandle mutex"}});
  Expect(0, 1, calls, Join({{waiting_, finished_}, done_}));
  // Abandoned, or a wait that fails: carries on without the line.
  for (const DWORD result : {WAIT_ABANDONED, WAIT_FAILED}) {
    machine.wait_result = result;
    Expect(0, 1, calls, Join({{waiting_}, done_}));
  }
  // Given up when it stays taken; the starting routine names the other one. A caller that has it waits for nothing.
  machine.wait_result = WAIT_TIMEOUT;
  Expect(0, 0, {kCreateMutex, wait_, "CloseHandle mutex"},
         {waiting_, "5 WARNING: [StopWinIoDriverEx] has been executing for over " + std::to_string(row_.wait_ms) +
                        " ms. No more waiting."});
  Expect(1, 1, Join({{row_.control}, poll_}), done_);
}

TEST_P(DriverControl, PollsUpToItsLimit) {
  const int limit = row_.poll_limit;
  for (const int pending : {limit - 2, limit - 1, limit, 2 * limit}) {
    SCOPED_TRACE(pending);
    service.state = row_.before;
    PendFor(pending);
    const bool succeeds = pending < limit;
    EXPECT_EQ(row_.run(1), succeeds ? 1u : 0u);
    const int polls = std::min(pending + 1, limit);
    const Strings calls = script.Take();
    EXPECT_EQ(CountOf(calls, "Sleep 1"), polls);
    EXPECT_EQ(CountOf(calls, "QueryServiceStatus"), polls + 1);
    EXPECT_EQ(Lines(), Join({row_.progress,
                             polls == limit ? Strings{row_.over_limit} : Strings{},
                             {succeeds ? row_.succeeded : row_.failed}}));
  }
}

TEST_P(DriverControl, AnyOtherFinalStateIsAFailure) {
  for (const DWORD state : {row_.before, DWORD{SERVICE_PAUSED}}) {
    service.state_after_start = service.state_after_stop = state;
    Expect(1, 0, Join({{row_.control}, poll_}), Join({row_.progress, {row_.failed}}));
  }
}

INSTANTIATE_TEST_SUITE_P(Routines, DriverControl, testing::ValuesIn(kRoutines), NameOfRow());

TEST_F(DriverTest, StartedBySomebodyElseMeanwhileIsRunning) {
  script.Fail("StartServiceW", ERROR_SERVICE_ALREADY_RUNNING);
  EXPECT_EQ(StartWinIoDriverEx(0), 1u);
  EXPECT_EQ(machine.open_mutexes, 0);
  EXPECT_THAT(Lines(), ElementsAre("5 Service [VexaSAIO] is already running."));
}

}  // namespace
}  // namespace vexa::test
