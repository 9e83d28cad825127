// Runs work of unbounded duration beside the caller, who waits for a bounded time.
#ifndef VEXA_WMI_BOUNDED_TASK_H_
#define VEXA_WMI_BOUNDED_TASK_H_

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>

namespace vexa {

inline constexpr uint32_t kWmiWaitMs = 5000;  // for each stage
inline constexpr int kMaxTasks = 8;           // live at once, so no more than these can be abandoned

// Work in two stages, and its results. Owns everything that it touches (references, texts): it may outlive its caller.
class StagedWork {
 public:
  virtual ~StagedWork() = default;
  // The second stage runs when the first succeeds and its caller still waits.
  virtual HRESULT First() = 0;
  virtual HRESULT Second() = 0;
};

struct TaskOutcome {
  int stage;                      // the last one begun, 1 or 2
  std::optional<HRESULT> result;  // of that stage; nothing when it took longer than kWmiWaitMs

  bool operator==(const TaskOutcome&) const = default;
};

// One run of staged work on a thread of the system's pool, in the multithreaded apartment. The thread is woken when
// this object is made, so that the caller can prepare the work meanwhile; without work it ends.
class BoundedTask {
 public:
  BoundedTask() noexcept;
  ~BoundedTask();
  BoundedTask(const BoundedTask&) = delete;
  BoundedTask& operator=(const BoundedTask&) = delete;

  // To be called once. Waits at most kWmiWaitMs for each stage, and leaves the work with its results in `work`. After a
  // time-out `work` is null: the task is abandoned. It runs to the end of its stage, keeps this library mapped, and
  // gives back what it holds, in its apartment. While kMaxTasks others live, waiting for one of them to end is part of
  // the first stage's time; when all of them are abandoned, that stage is over at once. A pool without room and an
  // apartment that can't be entered are failures of the first stage.
  [[nodiscard]] TaskOutcome Run(std::unique_ptr<StagedWork>& work) noexcept;

 private:
  struct Task;
  enum class Start { kNoPlace, kRefused, kStarted };
  class Pool;

  Task* task_ = nullptr;
  Start start_;
};

struct TaskCounts {
  int live;
  int abandoned;
};

// Tasks that have not ended yet, and those among them whose callers have gone.
[[nodiscard]] TaskCounts CountTasks() noexcept;

}  // namespace vexa

#endif  // VEXA_WMI_BOUNDED_TASK_H_
