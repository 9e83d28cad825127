#include "wmi/bounded_task.h"

#include <atomic>
#include <new>
#include <utility>

#include "wmi/com_apartment.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vexa {
namespace {

// A sleeping thread's wake-up can take as long as a whole local query.
constexpr LONGLONG kSpinUs = 200;
// A thread that has not begun by then waits for a processor, perhaps for this one.
constexpr LONGLONG kBeginUs = 20;
constexpr DWORD kNotBegun = ~DWORD{0};

class Locked {
 public:
  explicit Locked(SRWLOCK& lock) noexcept : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
  ~Locked() { ReleaseSRWLockExclusive(&lock_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  SRWLOCK& lock_;
};

DWORD MillisecondsUntil(ULONGLONG deadline) noexcept {
  const ULONGLONG now = GetTickCount64();
  return now < deadline ? static_cast<DWORD>(deadline - now) : 0;
}

// Every task holds a place from before its thread is asked for until that thread is done with it.
struct Places {
  SRWLOCK lock = SRWLOCK_INIT;
  CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
  int taken = 0;
  int abandoned = 0;
} g_places;

bool TakePlace() noexcept {
  const Locked locked(g_places.lock);
  if (g_places.taken == kMaxTasks) return false;
  ++g_places.taken;
  return true;
}

// Waits for a place while one of those taken can still come back in time.
bool AwaitPlace(ULONGLONG deadline) noexcept {
  const Locked locked(g_places.lock);
  while (g_places.taken == kMaxTasks) {
    if (g_places.abandoned == kMaxTasks) return false;
    const bool woken = SleepConditionVariableSRW(&g_places.changed, &g_places.lock, MillisecondsUntil(deadline), 0);
    if (!woken && g_places.taken == kMaxTasks) return false;
  }
  ++g_places.taken;
  return true;
}

void LeavePlace(bool abandoned) noexcept {
  {
    const Locked locked(g_places.lock);
    --g_places.taken;
    if (abandoned) --g_places.abandoned;
  }
  WakeConditionVariable(&g_places.changed);
}

void AbandonPlace() noexcept {
  const Locked locked(g_places.lock);
  if (++g_places.abandoned == kMaxTasks) WakeAllConditionVariable(&g_places.changed);
}

template <typename Call>
HRESULT ResultOf(Call call) noexcept {
  try {
    return call();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

// Shared by the caller and the pool's thread; whoever ends last frees it.
struct BoundedTask::Task {
  // The stages have their own numbers.
  enum Phase { kWithoutWork = 0, kFirst = 1, kSecond = 2, kEnded = 3, kCancelled = 4 };

  std::atomic<int> owners = 2;
  SRWLOCK lock = SRWLOCK_INIT;
  CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
  // Written under the lock; what was written before it may be read without.
  std::atomic<int> phase = kWithoutWork;
  std::atomic<DWORD> processor = kNotBegun;  // that the work was begun on
  bool abandoned = false;
  ULONGLONG second_began_ms = 0;
  // The caller's before and after the stages, the thread's during them.
  std::unique_ptr<StagedWork> work;
  TaskOutcome outcome{};

  void Drop() noexcept {
    if (--owners == 0) delete this;
  }
  bool In(Phase wanted) const noexcept { return phase.load(std::memory_order_acquire) == wanted; }
  void MoveTo(Phase next) noexcept {
    {
      const Locked locked(lock);
      phase.store(next, std::memory_order_release);
    }
    WakeConditionVariable(&changed);
  }

  void AwaitWork() noexcept;
  bool BeginSecond() noexcept;
  TaskOutcome RunStages() noexcept;
  bool HandOver(const TaskOutcome& ended) noexcept;
  bool SpinUntilEnded() const noexcept;
  TaskOutcome AwaitEnd(ULONGLONG deadline) noexcept;
};

// Ends with the caller's preparations, for the caller's object always says how it goes on.
void BoundedTask::Task::AwaitWork() noexcept {
  const Locked locked(lock);
  while (In(kWithoutWork)) SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
  processor.store(GetCurrentProcessorNumber(), std::memory_order_relaxed);
}

// False when nobody waits for the second stage.
bool BoundedTask::Task::BeginSecond() noexcept {
  const Locked locked(lock);
  if (abandoned) return false;
  second_began_ms = GetTickCount64();
  // The caller sees it when the time of the first stage is over, and need not be woken for it.
  phase.store(kSecond, std::memory_order_release);
  return true;
}

TaskOutcome BoundedTask::Task::RunStages() noexcept {
  const HRESULT first = ResultOf([this] { return work->First(); });
  if (FAILED(first) || !BeginSecond()) return {.stage = 1, .result = first};
  return {.stage = 2, .result = ResultOf([this] { return work->Second(); })};
}

// To a caller who still waits; else the work is given back here. Returns whether the task was abandoned.
bool BoundedTask::Task::HandOver(const TaskOutcome& ended) noexcept {
  bool waited_for;
  {
    const Locked locked(lock);
    waited_for = !abandoned;
    if (waited_for) {
      outcome = ended;
      phase.store(kEnded, std::memory_order_release);
    }
  }
  if (waited_for) {
    WakeConditionVariable(&changed);
  } else {
    work.reset();
  }
  return !waited_for;
}

// Whether the stages have ended before it is worth sleeping for them.
bool BoundedTask::Task::SpinUntilEnded() const noexcept {
  LARGE_INTEGER frequency, begin, now;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&begin);
  for (;;) {
    for (int i = 0; i < 100; ++i) {
      // Without the lock: a caller who met the thread at it would go to sleep after all.
      if (In(kEnded)) return true;
      YieldProcessor();
    }
    const DWORD used = processor.load(std::memory_order_relaxed);
    if (used == GetCurrentProcessorNumber()) return false;
    QueryPerformanceCounter(&now);
    const LONGLONG spun_us = (now.QuadPart - begin.QuadPart) * 1000000 / frequency.QuadPart;
    if (spun_us >= (used == kNotBegun ? kBeginUs : kSpinUs)) return false;
  }
}

TaskOutcome BoundedTask::Task::AwaitEnd(ULONGLONG deadline) noexcept {
  if (SpinUntilEnded()) return outcome;
  const Locked locked(lock);
  for (int stage = kFirst; !In(kEnded); stage = phase) {
    if (stage == kSecond) deadline = second_began_ms + kWmiWaitMs;
    const bool woken = SleepConditionVariableSRW(&changed, &lock, MillisecondsUntil(deadline), 0);
    if (!woken && phase == stage) {
      abandoned = true;
      AbandonPlace();
      return {.stage = stage, .result = std::nullopt};
    }
  }
  return outcome;
}

class BoundedTask::Pool {
 public:
  // For a place that was taken.
  static Start Submit(Task*& task) noexcept {
    task = new (std::nothrow) Task;
    if (task != nullptr) {
      TP_CALLBACK_ENVIRON environment;
      InitializeThreadpoolEnvironment(&environment);
      // The pool holds a reference to this library until the callback has returned.
      SetThreadpoolCallbackLibrary(&environment, &__ImageBase);
      const bool submitted = TrySubmitThreadpoolCallback(Callback, task, &environment);
      DestroyThreadpoolEnvironment(&environment);
      if (submitted) return Start::kStarted;
      delete std::exchange(task, nullptr);
    }
    LeavePlace(false);
    return Start::kRefused;
  }

 private:
  static void CALLBACK Callback(PTP_CALLBACK_INSTANCE, void* context) noexcept {
    auto* task = static_cast<Task*>(context);
    task->AwaitWork();
    bool abandoned = false;
    // Not before there is work: the caller's preparations may depend on whether the process has an apartment.
    if (!task->In(Task::kCancelled)) {
      const ComApartment apartment;
      abandoned = task->HandOver(apartment.entered() ? task->RunStages()
                                                     : TaskOutcome{.stage = 1, .result = apartment.result()});
    }
    task->Drop();
    LeavePlace(abandoned);
  }
};

TaskCounts CountTasks() noexcept {
  const Locked locked(g_places.lock);
  return {.live = g_places.taken, .abandoned = g_places.abandoned};
}

BoundedTask::BoundedTask() noexcept : start_(TakePlace() ? Pool::Submit(task_) : Start::kNoPlace) {}

BoundedTask::~BoundedTask() {
  if (task_ == nullptr) return;
  if (task_->In(Task::kWithoutWork)) task_->MoveTo(Task::kCancelled);
  task_->Drop();
}

TaskOutcome BoundedTask::Run(std::unique_ptr<StagedWork>& work) noexcept {
  const ULONGLONG deadline = GetTickCount64() + kWmiWaitMs;
  if (start_ == Start::kNoPlace) {
    if (!AwaitPlace(deadline)) {
      work.reset();
      return {.stage = 1, .result = std::nullopt};
    }
    start_ = Pool::Submit(task_);
  }
  if (start_ == Start::kRefused) return {.stage = 1, .result = E_OUTOFMEMORY};
  task_->work = std::move(work);
  task_->MoveTo(Task::kFirst);
  const TaskOutcome outcome = task_->AwaitEnd(deadline);
  if (outcome.result) work = std::move(task_->work);
  return outcome;
}

}  // namespace vexa
