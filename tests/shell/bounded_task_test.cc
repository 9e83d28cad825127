// Tasks with a bounded wait: what is asked of the system's wait, and what becomes of a task that nobody waits for.
#include "wmi/bounded_task.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "tests/support/import_patch.h"
#include "tests/support/process_counts.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What the patched functions work on.
struct System {
  std::vector<DWORD> waits;
  ULONGLONG clock = 5000000;
  // Answers a wait; null: as the system does.
  std::function<BOOL(PCONDITION_VARIABLE, PSRWLOCK)> wait;
  bool pool_fails = false;
  int submissions = 0;
  std::vector<void*> libraries;
  std::atomic<int> entered{0}, left{0};
  std::function<void()> on_leave;  // on the task's thread, which is in its apartment still
}* g_system = nullptr;

decltype(&SleepConditionVariableSRW) g_wait = nullptr;
decltype(&TrySubmitThreadpoolCallback) g_submit = nullptr;
decltype(&CoInitializeEx) g_enter = nullptr;
decltype(&CoUninitialize) g_leave = nullptr;

BOOL WINAPI Wait(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD ms, ULONG flags) {
  g_system->waits.push_back(ms);
  return g_system->wait ? g_system->wait(condition, lock) : g_wait(condition, lock, ms, flags);
}

BOOL WINAPI Submit(PTP_SIMPLE_CALLBACK callback, PVOID context, PTP_CALLBACK_ENVIRON environment) {
  if (g_system->pool_fails) return FALSE;
  ++g_system->submissions;
  g_system->libraries.push_back(environment->RaceDll);
  return g_submit(callback, context, environment);
}

ULONGLONG WINAPI Clock() { return g_system->clock; }

HRESULT WINAPI EnterApartment(LPVOID reserved, DWORD model) {
  if (model == COINIT_MULTITHREADED) ++g_system->entered;
  return g_enter(reserved, model);
}

void WINAPI LeaveApartment() {
  if (g_system->on_leave) g_system->on_leave();
  g_leave();
  ++g_system->left;
}

// An object that counts how many of its kind live.
class Counted final : public IUnknown {
 public:
  static inline std::atomic<int> live{0};
  static inline std::atomic<int> added{0};  // references beyond the first of each
  static ComPtr<IUnknown> Make() {
    ComPtr<IUnknown> object;
    object.Attach(new Counted);
    return object;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override {
    ++added;
    return ++references_;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 private:
  Counted() { ++live; }
  ~Counted() { --live; }
  std::atomic<ULONG> references_{1};
};

BOOL TimeOut(PCONDITION_VARIABLE, PSRWLOCK) {
  SetLastError(ERROR_TIMEOUT);
  return FALSE;
}

class BoundedTask : public testing::Test {
 protected:
  BoundedTask() {
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
  ~BoundedTask() override {
    OpenGate();
    EXPECT_TRUE(WaitUntilEnded());
    EXPECT_EQ(Counted::live, 0);
    patches_.clear();
    CloseHandle(gate_);
  }

  // Every task has ended and left its apartment. Long enough that only a fault exceeds it.
  bool WaitUntilEnded() {
    const auto ended = [this] { return AbandonedTasks() == 0 && system_.left == system_.entered; };
    for (int i = 0; i < 10000 && !ended(); ++i) SleepEx(1, FALSE);
    return ended();
  }
  void OpenGate() { SetEvent(gate_); }
  void CloseGate() { ResetEvent(gate_); }

  // Holds an object, waits at the gate, hands out another object.
  TaskWork Hanging() {
    return [held = Counted::Make(), gate = gate_, this]() -> TaskOutcome {
      WaitForSingleObjectEx(gate, INFINITE, FALSE);
      ++worked_;
      return {.result = 7, .object = Counted::Make()};
    };
  }

  System system_;
  std::atomic<int> worked_{0};
  HANDLE gate_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

TEST_F(BoundedTask, HandsOverTheOutcomeOfAnotherThread) {
  OpenGate();
  const DWORD caller = GetCurrentThreadId();
  DWORD thread = caller;
  const std::optional<TaskOutcome> outcome = RunBounded([&, inner = Hanging()] {
    thread = GetCurrentThreadId();
    return inner();
  });
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(outcome->result, 7);
  EXPECT_NE(outcome->object.Get(), nullptr);
  EXPECT_NE(thread, caller);
  EXPECT_EQ(Counted::live, 1);  // the work's own is given back by now
  EXPECT_THAT(system_.waits, testing::Each(5000));
  EXPECT_EQ(AbandonedTasks(), 0);
  EXPECT_EQ(system_.entered, 1);
  // This module stays mapped while the task runs.
  EXPECT_THAT(system_.libraries, ElementsAre(static_cast<void*>(&__ImageBase)));
}

// A copy would be given back by the task's thread some time after the caller has gone on.
TEST_F(BoundedTask, HandsOverItsOnlyReference) {
  Counted::added = 0;
  const std::optional<TaskOutcome> outcome =
      RunBounded([]() -> TaskOutcome { return {.result = S_OK, .object = Counted::Make()}; });
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(Counted::added, 0);
}

TEST_F(BoundedTask, AsksForFiveSecondsAndForTheRestWhenWokenForNothing) {
  const ULONGLONG steps[] = {1200, 3799, 1, 100000};
  size_t step = 0;
  system_.wait = [&](PCONDITION_VARIABLE condition, PSRWLOCK lock) -> BOOL {
    if (step == std::size(steps)) return TimeOut(condition, lock);
    system_.clock += steps[step++];
    return TRUE;
  };
  EXPECT_EQ(RunBounded(Hanging()), std::nullopt);
  EXPECT_THAT(system_.waits, ElementsAre(5000, 3800, 1, 0, 0));
  EXPECT_EQ(AbandonedTasks(), 1);
}

TEST_F(BoundedTask, AbandonedTaskGivesEverythingBackInItsApartment) {
  system_.wait = TimeOut;
  int live_when_left = -1;
  system_.on_leave = [&live_when_left] { live_when_left = Counted::live; };
  EXPECT_EQ(RunBounded(Hanging()), std::nullopt);
  EXPECT_THAT(system_.waits, ElementsAre(5000));
  EXPECT_EQ(AbandonedTasks(), 1);
  EXPECT_EQ(Counted::live, 1);
  OpenGate();
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(worked_, 1);
  EXPECT_EQ(Counted::live, 0);
  EXPECT_EQ(live_when_left, 0);
}

TEST_F(BoundedTask, ResultBetweenTheTimeOutAndTheAbandonmentCounts) {
  system_.wait = [this](PCONDITION_VARIABLE condition, PSRWLOCK lock) {
    OpenGate();
    while (!g_wait(condition, lock, 1000, 0)) {
    }
    return TimeOut(condition, lock);
  };
  const std::optional<TaskOutcome> outcome = RunBounded(Hanging());
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(outcome->result, 7);
  EXPECT_EQ(AbandonedTasks(), 0);
}

TEST_F(BoundedTask, AtMostEightAreAbandoned) {
  system_.wait = TimeOut;
  for (int i = 1; i <= 8; ++i) {
    EXPECT_EQ(RunBounded(Hanging()), std::nullopt);
    EXPECT_EQ(AbandonedTasks(), i);
  }
  EXPECT_EQ(system_.submissions, 8);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(RunBounded(Hanging()), std::nullopt);
  EXPECT_EQ(system_.submissions, 8);
  EXPECT_EQ(system_.waits.size(), 8u);
  EXPECT_EQ(AbandonedTasks(), 8);
  EXPECT_EQ(Counted::live, 8);
  OpenGate();
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(worked_, 8);
  // Room again.
  system_.wait = nullptr;
  EXPECT_TRUE(RunBounded(Hanging()).has_value());
}

TEST_F(BoundedTask, PoolWithoutRoom) {
  system_.pool_fails = true;
  for (int i = 0; i < 10; ++i) {
    const std::optional<TaskOutcome> outcome = RunBounded(Hanging());
    ASSERT_TRUE(outcome.has_value());
    EXPECT_EQ(outcome->result, E_OUTOFMEMORY);
  }
  EXPECT_THAT(system_.waits, IsEmpty());
  EXPECT_EQ(worked_, 0);
  EXPECT_EQ(Counted::live, 0);
}

TEST_F(BoundedTask, ExceptionsOfTheWorkStayInside) {
  const std::function<void()> throws[] = {[] { throw std::bad_alloc(); }, [] { throw std::runtime_error("x"); },
                                          [] { throw 5; }};
  for (const auto& raise : throws) {
    const std::optional<TaskOutcome> outcome = RunBounded([raise, held = Counted::Make()]() -> TaskOutcome {
      raise();
      return {};
    });
    ASSERT_TRUE(outcome.has_value());
    EXPECT_EQ(outcome->result, E_OUTOFMEMORY);
    EXPECT_EQ(outcome->object.Get(), nullptr);
  }
  system_.wait = TimeOut;
  const TaskWork hanging = Hanging();
  EXPECT_EQ(RunBounded([hanging]() -> TaskOutcome {
              hanging();
              throw std::bad_alloc();
            }),
            std::nullopt);
  OpenGate();
  EXPECT_TRUE(WaitUntilEnded());
  EXPECT_EQ(worked_, 1);
}

TEST_F(BoundedTask, ManyTasksLeaveNoHandlesAndThreadsBehind) {
  const auto run_batch = [this] {
    CloseGate();
    system_.wait = TimeOut;
    for (int i = 0; i < 8; ++i) EXPECT_EQ(RunBounded(Hanging()), std::nullopt);
    OpenGate();
    EXPECT_TRUE(WaitUntilEnded());
    system_.wait = nullptr;
    for (int i = 0; i < 8; ++i) EXPECT_TRUE(RunBounded(Hanging()).has_value());
    EXPECT_TRUE(WaitUntilEnded());
  };
  run_batch();  // the pool's own threads and what COM keeps
  const size_t handles = OpenHandles(), threads = RunningThreads();
  ASSERT_GT(handles, 0u);
  ASSERT_GT(threads, 0u);
  for (int i = 0; i < 13; ++i) run_batch();
  EXPECT_EQ(worked_, 14 * 16);
  // The pool may have grown by a few threads; one thing kept per task would be 104 or 208 of them.
  EXPECT_LT(OpenHandles(), handles + 60);
  EXPECT_LT(RunningThreads(), threads + 20);
}

}  // namespace
}  // namespace vexa::test
