// Staged work with a bounded wait for each stage: what is asked of the system's wait, and what becomes of a task that
// nobody waits for.
#include "wmi/bounded_task.h"

#include <windows.h>

#include <objbase.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

#include "tests/support/process_counts.h"
#include "tests/support/shell_test.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vexa::test {
namespace {

// What the patched functions work on.
struct System {
  std::mutex mutex;
  std::vector<DWORD> waits;  // of callers; a task without work waits without end
  std::atomic<ULONGLONG> clock = 5000000;
  // Answers a caller's wait; null: as the system does.
  std::function<BOOL(PCONDITION_VARIABLE, PSRWLOCK)> wait;
  bool pool_fails = false;
  std::vector<void*> libraries;  // one a submission
  HRESULT apartment = S_OK;
  std::atomic<int> entered{0}, left{0};
  std::function<void()> on_leave;  // on the task's thread, which is in its apartment still
}* g_system = nullptr;

decltype(&SleepConditionVariableSRW) g_wait = nullptr;
decltype(&TrySubmitThreadpoolCallback) g_submit = nullptr;
decltype(&CoInitializeEx) g_enter = nullptr;
decltype(&CoUninitialize) g_leave = nullptr;

BOOL WINAPI Wait(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD ms, ULONG flags) {
  if (ms == INFINITE) return g_wait(condition, lock, ms, flags);
  {
    const std::lock_guard guard(g_system->mutex);
    g_system->waits.push_back(ms);
  }
  return g_system->wait ? g_system->wait(condition, lock) : g_wait(condition, lock, ms, flags);
}

BOOL WINAPI Submit(PTP_SIMPLE_CALLBACK callback, PVOID context, PTP_CALLBACK_ENVIRON environment) {
  if (g_system->pool_fails) return FALSE;
  const std::lock_guard guard(g_system->mutex);
  g_system->libraries.push_back(environment->RaceDll);
  return g_submit(callback, context, environment);
}

ULONGLONG WINAPI Clock() { return g_system->clock; }

HRESULT WINAPI EnterApartment(LPVOID reserved, DWORD model) {
  if (FAILED(g_system->apartment)) return g_system->apartment;
  if (model == COINIT_MULTITHREADED) ++g_system->entered;
  return g_enter(reserved, model);
}

void WINAPI LeaveApartment() {
  if (g_system->on_leave) g_system->on_leave();
  g_leave();
  ++g_system->left;
}

BOOL TimeOut(PCONDITION_VARIABLE, PSRWLOCK) {
  SetLastError(ERROR_TIMEOUT);
  return FALSE;
}

struct TestWork final : StagedWork {
  static inline std::atomic<int> live{0};
  TestWork() { ++live; }
  ~TestWork() override { --live; }
  HRESULT First() override { return first(); }
  HRESULT Second() override { return second(); }

  std::function<HRESULT()> first, second;
};

class BoundedTaskTest : public ShellTest {
 protected:
  BoundedTaskTest() {
    g_system = &system_;
    const auto patch = [this]<typename Function>(const char* name, Function* replacement, Function** original) {
      patches_.push_back(std::make_unique<ImportPatch>(name, replacement));
      *original = patches_.back()->template Original<Function>();
    };
    decltype(&GetTickCount64) clock = nullptr;
    patch("SleepConditionVariableSRW", Wait, &g_wait);
    patch("TrySubmitThreadpoolCallback", Submit, &g_submit);
    patch("CoInitializeEx", EnterApartment, &g_enter);
    patch("CoUninitialize", LeaveApartment, &g_leave);
    patch("GetTickCount64", Clock, &clock);
  }
  ~BoundedTaskTest() override {
    OpenGate();
    EXPECT_TRUE(WaitUntilEnded());
    EXPECT_EQ(TestWork::live, 0);
    patches_.clear();
    CloseHandle(gate_);
  }

  // Long enough that only a fault exceeds it.
  static bool WaitUntil(const std::function<bool()>& condition) {
    for (int i = 0; i < 10000 && !condition(); ++i) SleepEx(1, FALSE);
    return condition();
  }
  // Every task has ended and left its apartment.
  bool WaitUntilEnded() {
    return WaitUntil([this] { return CountTasks().live == 0 && system_.left == system_.entered; });
  }
  void OpenGate() { SetEvent(gate_); }
  void CloseGate() { ResetEvent(gate_); }

  HRESULT AwaitGate() {
    ++at_gate_;
    WaitForSingleObjectEx(gate_, INFINITE, FALSE);
    ++passed_;
    return 7;
  }

  static std::unique_ptr<TestWork> Work(std::function<HRESULT()> first, std::function<HRESULT()> second) {
    auto work = std::make_unique<TestWork>();
    work->first = std::move(first);
    work->second = std::move(second);
    return work;
  }
  // Waits at the gate in its first or second stage.
  std::unique_ptr<TestWork> Hanging(int stage = 1) {
    const auto wait = [this] { return AwaitGate(); };
    const auto pass = [] { return S_OK; };
    return stage == 1 ? Work(wait, pass) : Work(pass, wait);
  }
  static TaskOutcome Run(std::unique_ptr<StagedWork> work) {
    BoundedTask task;
    const TaskOutcome outcome = task.Run(work);
    EXPECT_EQ(work != nullptr, outcome.result.has_value());
    return outcome;
  }

  static constexpr TaskOutcome kFirstTimedOut{.stage = 1, .result = std::nullopt};
  static constexpr TaskOutcome kSecondTimedOut{.stage = 2, .result = std::nullopt};

  System system_;
  std::atomic<int> at_gate_{0}, passed_{0};
  HANDLE gate_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

TEST_F(BoundedTaskTest, RunsBothStagesOnAnotherThreadAndGivesTheWorkBack) {
  const DWORD caller = GetCurrentThreadId();
  DWORD first = caller, second = caller;
  std::unique_ptr<StagedWork> work =
      Work([&] { return first = GetCurrentThreadId(), S_FALSE; }, [&] { return second = GetCurrentThreadId(), 7; });
  StagedWork* const address = work.get();
  {
    BoundedTask task;
    EXPECT_EQ(task.Run(work), (TaskOutcome{.stage = 2, .result = 7}));
  }
  EXPECT_EQ(work.get(), address);
  EXPECT_NE(first, caller);
  EXPECT_EQ(first, second);
  EXPECT_THAT(system_.waits, Each(5000));
  EXPECT_EQ(CountTasks().abandoned, 0);
  EXPECT_EQ(system_.entered, 1);
  // This module stays mapped while the task runs.
  EXPECT_THAT(system_.libraries, ElementsAre(static_cast<void*>(&__ImageBase)));
}

TEST_F(BoundedTaskTest, FailuresEndWithTheirStageAndExceptionsStayInside) {
  using Stage = std::function<HRESULT()>;
  const struct {
    Stage stage;
    HRESULT result;
  } failures[] = {{[] { return E_ACCESSDENIED; }, E_ACCESSDENIED},
                  {[]() -> HRESULT { throw std::bad_alloc(); }, E_OUTOFMEMORY},
                  {[]() -> HRESULT { throw std::runtime_error("x"); }, E_OUTOFMEMORY},
                  {[]() -> HRESULT { throw 5; }, E_OUTOFMEMORY}};
  bool second_ran = false;
  for (const auto& failure : failures) {
    EXPECT_EQ(Run(Work(failure.stage, [&] { return second_ran = true, S_OK; })),
              (TaskOutcome{.stage = 1, .result = failure.result}));
    EXPECT_EQ(Run(Work([] { return S_OK; }, failure.stage)), (TaskOutcome{.stage = 2, .result = failure.result}));
  }
  EXPECT_FALSE(second_ran);
  system_.wait = TimeOut;
  EXPECT_EQ(Run(Work(
                [this]() -> HRESULT {
                  AwaitGate();
                  throw std::bad_alloc();
                },
                [] { return S_OK; })),
            kFirstTimedOut);
  OpenGate();
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(passed_, 1);
}

TEST_F(BoundedTaskTest, PoolWithoutRoomAndApartmentThatCannotBeEnteredAreFailures) {
  system_.pool_fails = true;
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Run(Hanging()), (TaskOutcome{.stage = 1, .result = E_OUTOFMEMORY}));
  EXPECT_THAT(system_.waits, IsEmpty());
  system_.pool_fails = false;
  system_.apartment = CO_E_INIT_TLS;
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Run(Hanging()), (TaskOutcome{.stage = 1, .result = CO_E_INIT_TLS}));
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(at_gate_, 0);
  EXPECT_EQ(system_.left, 0);
}

TEST_F(BoundedTaskTest, WithoutWorkTheThreadEndsAndEntersNoApartment) {
  for (int i = 0; i < 20; ++i) {
    const BoundedTask task;
    EXPECT_LE(CountTasks().live, 8);
  }
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(system_.entered, 0);
  EXPECT_FALSE(system_.libraries.empty());
}

TEST_F(BoundedTaskTest, AsksForFiveSecondsAndForTheRestWhenWokenForNothing) {
  const ULONGLONG steps[] = {1200, 3799, 1, 100000};
  size_t step = 0;
  system_.wait = [&](PCONDITION_VARIABLE condition, PSRWLOCK lock) -> BOOL {
    if (step == std::size(steps)) return TimeOut(condition, lock);
    system_.clock += steps[step++];
    return TRUE;
  };
  EXPECT_EQ(Run(Hanging()), kFirstTimedOut);
  EXPECT_THAT(system_.waits, ElementsAre(5000, 3800, 1, 0, 0));
  EXPECT_EQ(CountTasks().abandoned, 1);
}

// Nobody is woken between the stages: the caller sees at the end of the first stage's time that the second has begun.
TEST_F(BoundedTaskTest, SecondStageHasFiveSecondsFromItsOwnBeginning) {
  const auto late = [&](ULONGLONG first_ms) {
    CloseGate();
    system_.waits.clear();
    const int before = at_gate_;
    HANDLE first_done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    auto work = Hanging(2);
    work->first = [first_done] {
      WaitForSingleObjectEx(first_done, INFINITE, FALSE);
      return S_OK;
    };
    system_.wait = [&](PCONDITION_VARIABLE condition, PSRWLOCK lock) -> BOOL {
      if (at_gate_ == before) {
        system_.clock += first_ms;
        SetEvent(first_done);
        while (at_gate_ == before) (void)g_wait(condition, lock, 1, 0);
        system_.clock += 5000 - first_ms;
      }
      return TimeOut(condition, lock);
    };
    EXPECT_EQ(Run(std::move(work)), kSecondTimedOut);
    OpenGate();
    EXPECT_TRUE(WaitUntilEnded());
    CloseHandle(first_done);
    return system_.waits;
  };
  EXPECT_THAT(late(4900), ElementsAre(5000, 4900));
  EXPECT_THAT(late(1), ElementsAre(5000, 1));
}

TEST_F(BoundedTaskTest, AbandonedTaskGivesEverythingBackInItsApartment) {
  for (const int stage : {1, 2}) {
    CloseGate();
    passed_ = at_gate_ = 0;
    // Only once the stage that hangs has begun.
    system_.wait = [this](PCONDITION_VARIABLE condition, PSRWLOCK lock) -> BOOL {
      while (at_gate_ == 0) (void)g_wait(condition, lock, 1, 0);
      return TimeOut(condition, lock);
    };
    int live_when_left = -1;
    system_.on_leave = [&live_when_left] { live_when_left = TestWork::live; };
    auto work = Hanging(stage);
    bool second_ran = false;
    if (stage == 1) work->second = [&] { return second_ran = true, S_OK; };
    EXPECT_EQ(Run(std::move(work)), stage == 1 ? kFirstTimedOut : kSecondTimedOut);
    EXPECT_EQ(CountTasks().abandoned, 1);
    EXPECT_EQ(TestWork::live, 1);
    OpenGate();
    EXPECT_TRUE(WaitUntilEnded());
    EXPECT_EQ(passed_, 1);
    EXPECT_EQ(live_when_left, 0);
    // Nobody waits for what the first stage would have led to.
    EXPECT_FALSE(second_ran);
  }
}

TEST_F(BoundedTaskTest, ResultBetweenTheTimeOutAndTheAbandonmentCounts) {
  system_.wait = [this](PCONDITION_VARIABLE condition, PSRWLOCK lock) {
    OpenGate();
    while (!g_wait(condition, lock, 1000, 0)) {
    }
    return TimeOut(condition, lock);
  };
  EXPECT_EQ(Run(Hanging(2)), (TaskOutcome{.stage = 2, .result = 7}));
  EXPECT_EQ(CountTasks().abandoned, 0);
}

TEST_F(BoundedTaskTest, AfterEightAbandonedOnesNothingIsStarted) {
  system_.wait = TimeOut;
  for (int i = 1; i <= 8; ++i) {
    EXPECT_EQ(Run(Hanging()), kFirstTimedOut);
    EXPECT_EQ(CountTasks().abandoned, i);
  }
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Run(Hanging()), kFirstTimedOut);
  EXPECT_EQ(system_.libraries.size(), 8u);
  EXPECT_EQ(system_.waits.size(), 8u);
  EXPECT_EQ(TestWork::live, 8);
  OpenGate();
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(passed_, 8);
  // Room again.
  system_.wait = nullptr;
  EXPECT_TRUE(Run(Hanging()).result.has_value());
}

TEST_F(BoundedTaskTest, TwentyCallersHangingAtOnceNeverAbandonMoreThanEight) {
  // All of them are in their waits before the first is over.
  system_.wait = [](PCONDITION_VARIABLE condition, PSRWLOCK lock) { return g_wait(condition, lock, 300, 0); };
  std::atomic<int> ended{0}, timed_out{0}, most{0};
  {
    std::vector<std::jthread> callers;
    for (int i = 0; i < 20; ++i) {
      callers.emplace_back([&] {
        if (Run(Hanging()) == kFirstTimedOut) ++timed_out;
        ++ended;
      });
    }
    while (ended < 20) {
      const TaskCounts counts = CountTasks();
      most = std::max({most.load(), counts.live, counts.abandoned});
      SleepEx(1, FALSE);
    }
  }
  EXPECT_EQ(timed_out, 20);
  EXPECT_EQ(most, 8);
  EXPECT_EQ(CountTasks().abandoned, 8);
  EXPECT_EQ(system_.libraries.size(), 8u);
  EXPECT_EQ(at_gate_, 8);
  // The twelve without a place asked for no more time than the others.
  EXPECT_GE(system_.waits.size(), 20u);
  EXPECT_THAT(system_.waits, Each(5000));
}

TEST_F(BoundedTaskTest, CallerTakesThePlaceOfATaskThatEnds) {
  std::atomic<int> answered{0};
  {
    std::vector<std::jthread> callers;
    for (int i = 0; i < 30; ++i) {
      callers.emplace_back([&] {
        if (Run(Hanging()).result == S_OK) ++answered;
      });
    }
    EXPECT_TRUE(WaitUntil([this] { return at_gate_ == 8; }));
    OpenGate();
  }
  EXPECT_EQ(answered, 30);
  EXPECT_EQ(CountTasks().abandoned, 0);
}

TEST_F(BoundedTaskTest, ManyTasksLeaveNoHandlesAndThreadsBehind) {
  const auto run_batch = [this] {
    CloseGate();
    system_.wait = TimeOut;
    for (int i = 0; i < 8; ++i) EXPECT_EQ(Run(Hanging()), kFirstTimedOut);
    OpenGate();
    EXPECT_TRUE(WaitUntilEnded());
    system_.wait = nullptr;
    for (int i = 0; i < 8; ++i) EXPECT_TRUE(Run(Hanging(2)).result.has_value());
    EXPECT_TRUE(WaitUntilEnded());
  };
  run_batch();  // the pool's own threads and what COM keeps
  const size_t handles = OpenHandles(), threads = RunningThreads();
  ASSERT_GT(handles, 0u);
  ASSERT_GT(threads, 0u);
  for (int i = 0; i < 13; ++i) run_batch();
  EXPECT_EQ(passed_, 14 * 16);
  EXPECT_EQ(OpenHandles(), handles);
  // The pool may have grown by a few threads; one kept per task would be 104 or 208 of them.
  EXPECT_LT(RunningThreads(), threads + 20);
}

}  // namespace
}  // namespace vexa::test
