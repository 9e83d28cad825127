// Starting and stopping the driver service: two routines of one shape, each step failing in turn.
#include "frame/driver_service.h"

#include "tests/support/driver_test.h"

namespace vexa::test {
namespace {

using Texts = Strings;

struct Routine {
  const char* name;
  uint32_t (*run)(uint32_t);
  bool starts;
  Texts opening;  // calls, up to the first look at the state
  std::string control;
  std::string query_failed;  // lines, those with an error without its number
  std::string nothing_to_do;
  std::string control_failed;
  Texts progress;
  std::string succeeded;
  std::string failed;
  int poll_limit;
  std::string over_limit;
  std::string wait;
  std::string no_mutex;
  std::string waiting;
  std::string finished;
  std::string gave_up;
};

const Routine kRoutines[] = {
    {
        "Start",
        StartWinIoDriverEx,
        true,
        {"OpenSCManagerW null null f003f", "OpenServiceW VexaSAIO 14", "QueryServiceStatus"},
        "StartServiceW 0",
        "1 ERROR: Failed to send start control to service [VexaSAIO]. Error code=",
        "5 Service [VexaSAIO] is already running.",
        "1 ERROR: Failed to send start control to service [VexaSAIO]. Error code=",
        {"5 Service [VexaSAIO] StartService successfully.", "5 Starting service [VexaSAIO]."},
        "5 Successfully start service [VexaSAIO].",
        "1 ERROR: Failed to start service [VexaSAIO].",
        3000,
        "5 WARNING: Service [VexaSAIO] starting timeout [3000 ms] exceeds. Spent [3000 ms].",
        "WaitForSingleObject mutex 3500",
        "5 [StartWinIoDriverEx] Create mutex failed. Error code=",
        "5 [StartWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
        "5 [StartWinIoDriverEx] is finished by other thread. Wait for the thread finished.",
        "5 WARNING: [StopWinIoDriverEx] has been executing for over 3500 ms. No more waiting.",
    },
    {
        "Stop",
        StopWinIoDriverEx,
        false,
        {"OpenSCManagerW null null f003f", "OpenServiceW VexaSAIO 24", "QueryServiceStatus"},
        "ControlService 1",
        "1 ERROR: Failed to query status of service [VexaSAIO]. Error code=",
        "5 Service [VexaSAIO] is not running.",
        "1 ERROR: Failed to send control [SERVICE_CONTROL_STOP] to service [VexaSAIO]. Error code=",
        {"5 Stopping service [VexaSAIO]."},
        "5 Successful to stop service [VexaSAIO].",
        "1 ERROR: Failed to stop service [VexaSAIO].",
        2000,
        "5 WARNING: Service [VexaSAIO] stopping timeout [2000 ms] exceeds. Spent [2000 ms].",
        "WaitForSingleObject mutex 2500",
        "5 [StopWinIoDriverEx] Create mutex failed. Error code=",
        "5 [StopWinIoDriverEx] has been called by other thread. Wait for the thread finished.",
        "5 [StopWinIoDriverEx] is finished by other thread. Wait for the thread finished.",
        "5 WARNING: [StopWinIoDriverEx] has been executing for over 2500 ms. No more waiting.",
    },
};

constexpr char kCreateMutex[] = "CreateMutexW null 1 VEXAWINIO_!@#$%^&*";

Texts Join(std::initializer_list<Texts> parts) {
  Texts all;
  for (const Texts& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

class DriverControl : public DriverTest, public testing::WithParamInterface<Routine> {
 protected:
  DriverControl() { service.state = routine.starts ? SERVICE_STOPPED : SERVICE_RUNNING; }

  // The service stays pending for so many polls of the routine.
  void PendFor(int polls) { service.start_polls = service.stop_polls = polls; }

  const Routine& routine = GetParam();
};

TEST_P(DriverControl, UnderTheCallersMutexItControlsAndPollsOnce) {
  EXPECT_EQ(routine.run(1), 1u);
  EXPECT_THAT(script.Take(),
              ElementsAreArray(Join({routine.opening, {routine.control, "Sleep 1", "QueryServiceStatus"}})));
  EXPECT_THAT(Lines(), ElementsAreArray(Join({routine.progress, {routine.succeeded}})));
}

TEST_P(DriverControl, OwnMutexIsHeldUntilTheLastPollAndClosedUnreleased) {
  PendFor(1);
  EXPECT_EQ(routine.run(0), 1u);
  EXPECT_THAT(script.Take(), ElementsAreArray(Join({routine.opening,
                                                    {kCreateMutex, routine.control, "Sleep 1", "QueryServiceStatus",
                                                     "Sleep 1", "QueryServiceStatus", "CloseHandle mutex"}})));
  EXPECT_THAT(Lines(), ElementsAreArray(Join({routine.progress, {routine.succeeded}})));
}

TEST_P(DriverControl, NothingToDoTouchesNoMutex) {
  service.state = routine.starts ? SERVICE_RUNNING : SERVICE_STOPPED;
  script.Fail("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(routine.run(0), 1u);
  EXPECT_THAT(script.Take(), ElementsAreArray(routine.opening));
  EXPECT_THAT(Lines(), ElementsAre(routine.nothing_to_do));
}

TEST_P(DriverControl, EachFailingStepEndsItWithItsErrorCode) {
  const std::string control = routine.control.substr(0, routine.control.find(' '));
  const struct {
    std::string function;
    DWORD error;
    std::string line;
    size_t calls;
  } steps[] = {
      {"OpenSCManagerW", 5, "1 ERROR: Failed to open service control manager. Error code=0x00000005", 1},
      {"OpenServiceW", 1060, "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424", 2},
      {"QueryServiceStatus", 0x80070006, routine.query_failed + "0x80070006", 3},
      {control, 1058, routine.control_failed + "0x00000422", 6},
  };
  for (const auto& step : steps) {
    script.Fail(step.function, step.error, 1);
    EXPECT_EQ(routine.run(0), 0u) << step.function;
    EXPECT_EQ(script.Take().size(), step.calls) << step.function;
    EXPECT_THAT(Lines(), ElementsAre(step.line));
  }
}

TEST_P(DriverControl, WithoutMutexItSucceedsAndControlsNothing) {
  script.Fail("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(routine.run(0), 1u);
  EXPECT_THAT(script.Take(), ElementsAreArray(Join({routine.opening, {kCreateMutex}})));
  EXPECT_THAT(Lines(), ElementsAre(routine.no_mutex + "0x00000005"));
}

TEST_P(DriverControl, WaitsForAnotherHolderOfTheMutex) {
  machine.mutex_exists = true;
  EXPECT_EQ(routine.run(0), 1u);
  const Texts calls =
      Join({routine.opening,
            {kCreateMutex, routine.wait, routine.control, "Sleep 1", "QueryServiceStatus", "CloseHandle mutex"}});
  EXPECT_THAT(script.Take(), ElementsAreArray(calls));
  EXPECT_THAT(Lines(),
              ElementsAreArray(Join({{routine.waiting, routine.finished}, routine.progress, {routine.succeeded}})));

  // Abandoned, or a wait that fails: carries on without the line.
  for (const DWORD result : {WAIT_ABANDONED, WAIT_FAILED}) {
    service.state = routine.starts ? SERVICE_STOPPED : SERVICE_RUNNING;
    machine.wait_result = result;
    EXPECT_EQ(routine.run(0), 1u);
    EXPECT_THAT(script.Take(), ElementsAreArray(calls));
    EXPECT_THAT(Lines(), ElementsAreArray(Join({{routine.waiting}, routine.progress, {routine.succeeded}})));
  }
}

TEST_P(DriverControl, GivesUpWhenTheMutexStaysTaken) {
  machine.mutex_exists = true;
  machine.wait_result = WAIT_TIMEOUT;
  EXPECT_EQ(routine.run(0), 0u);
  EXPECT_THAT(script.Take(),
              ElementsAreArray(Join({routine.opening, {kCreateMutex, routine.wait, "CloseHandle mutex"}})));
  EXPECT_THAT(Lines(), ElementsAre(routine.waiting, routine.gave_up));
  // A caller that holds the mutex does not wait for itself.
  EXPECT_EQ(routine.run(1), 1u);
}

TEST_P(DriverControl, PollsUpToItsLimit) {
  const struct {
    int pending;
    int polls;
    bool warns;
    bool succeeds;
  } cases[] = {
      {routine.poll_limit - 2, routine.poll_limit - 1, false, true},
      {routine.poll_limit - 1, routine.poll_limit, true, true},
      {routine.poll_limit, routine.poll_limit, true, false},
      {2 * routine.poll_limit, routine.poll_limit, true, false},
  };
  for (const auto& one : cases) {
    service.state = routine.starts ? SERVICE_STOPPED : SERVICE_RUNNING;
    PendFor(one.pending);
    EXPECT_EQ(routine.run(1), one.succeeds ? 1u : 0u) << one.pending;
    const Texts calls = script.Take();
    EXPECT_EQ(CountOf(calls, "Sleep 1"), one.polls);
    EXPECT_EQ(CountOf(calls, "QueryServiceStatus"), one.polls + 1);
    EXPECT_THAT(Lines(), ElementsAreArray(Join({routine.progress,
                                                one.warns ? Texts{routine.over_limit} : Texts{},
                                                {one.succeeds ? routine.succeeded : routine.failed}})));
  }
}

TEST_P(DriverControl, AnyOtherFinalStateIsAFailure) {
  for (const DWORD state : {routine.starts ? SERVICE_STOPPED : SERVICE_RUNNING, SERVICE_PAUSED}) {
    service.state = routine.starts ? SERVICE_STOPPED : SERVICE_RUNNING;
    service.state_after_start = service.state_after_stop = state;
    EXPECT_EQ(routine.run(0), 0u);
    EXPECT_THAT(Lines(), ElementsAreArray(Join({routine.progress, {routine.failed}})));
  }
}

INSTANTIATE_TEST_SUITE_P(Routines, DriverControl, testing::ValuesIn(kRoutines),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(DriverTest, StartedBySomebodyElseMeanwhileIsRunning) {
  script.Fail("StartServiceW", ERROR_SERVICE_ALREADY_RUNNING);
  EXPECT_EQ(StartWinIoDriverEx(0), 1u);
  EXPECT_EQ(machine.open_mutexes, 0);
  EXPECT_THAT(Lines(), ElementsAre("5 Service [VexaSAIO] is already running."));
}

}  // namespace
}  // namespace vexa::test
