#include "wmi/bounded_task.h"

#include <windows.h>

#include <atomic>
#include <memory>
#include <utility>

#include "wmi/com_apartment.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vexa {
namespace {

constexpr int kSpins = 1000;  // some 10 to 40 us

std::atomic<int> g_abandoned{0};

// Shared by the caller and the task; whoever ends last frees it.
struct Task {
  TaskWork work;
  SRWLOCK lock = SRWLOCK_INIT;
  CONDITION_VARIABLE ended = CONDITION_VARIABLE_INIT;
  // Written under the lock; read without it only to find out early that the work has ended.
  std::atomic<bool> done = false;
  // Under the lock.
  bool abandoned = false;
  TaskOutcome outcome;
};

class Locked {
 public:
  explicit Locked(SRWLOCK& lock) noexcept : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
  ~Locked() { ReleaseSRWLockExclusive(&lock_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  SRWLOCK& lock_;
};

TaskOutcome RunWork(TaskWork& work) noexcept {
  try {
    return work();
  } catch (...) {
    return {.result = E_OUTOFMEMORY, .object = {}};
  }
}

// Hands the outcome to a caller who still waits. Returns whether there was none any more.
bool HandOver(Task& task, TaskOutcome& outcome) noexcept {
  const Locked locked(task.lock);
  task.done = true;
  if (task.abandoned) return true;
  task.outcome.result = outcome.result;
  // Assigning would copy, and the reference left here would outlive the caller's call.
  task.outcome.object.Swap(outcome.object);
  WakeConditionVariable(&task.ended);
  return false;
}

void CALLBACK RunTask(PTP_CALLBACK_INSTANCE, void* context) {
  const std::unique_ptr<std::shared_ptr<Task>> task(static_cast<std::shared_ptr<Task>*>(context));
  bool abandoned = false;
  {
    // What the task holds is given back before it leaves the apartment.
    const ComApartment apartment;
    TaskOutcome outcome = RunWork((*task)->work);
    (*task)->work = nullptr;
    abandoned = HandOver(**task, outcome);
  }
  if (abandoned) --g_abandoned;
}

bool Submit(const std::shared_ptr<Task>& task) {
  TP_CALLBACK_ENVIRON environment;
  InitializeThreadpoolEnvironment(&environment);
  // The pool holds a reference to this library until the callback has returned.
  SetThreadpoolCallbackLibrary(&environment, &__ImageBase);
  auto context = std::make_unique<std::shared_ptr<Task>>(task);
  const bool submitted = TrySubmitThreadpoolCallback(RunTask, context.get(), &environment);
  if (submitted) (void)context.release();
  DestroyThreadpoolEnvironment(&environment);
  return submitted;
}

}  // namespace

int AbandonedTasks() noexcept { return g_abandoned; }

std::optional<TaskOutcome> RunBounded(TaskWork work) {
  if (g_abandoned >= kMaxAbandonedTasks) return std::nullopt;
  const auto task = std::make_shared<Task>();
  task->work = std::move(work);
  if (!Submit(task)) return TaskOutcome{.result = E_OUTOFMEMORY, .object = {}};

  // Most calls end before a sleeping thread could be woken.
  for (int spins = 0; spins < kSpins && !task->done.load(std::memory_order_acquire); ++spins) YieldProcessor();
  const Locked locked(task->lock);
  const ULONGLONG deadline = GetTickCount64() + kWmiWaitMs;
  for (DWORD left_ms = kWmiWaitMs; !task->done;) {
    if (!SleepConditionVariableSRW(&task->ended, &task->lock, left_ms, 0) && !task->done) {
      task->abandoned = true;
      ++g_abandoned;
      return std::nullopt;
    }
    // Woken for nothing: the rest of the time.
    const ULONGLONG now = GetTickCount64();
    left_ms = now < deadline ? static_cast<DWORD>(deadline - now) : 0;
  }
  return std::move(task->outcome);
}

}  // namespace vexa
