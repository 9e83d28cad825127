// Runs work of unbounded duration beside the caller, who waits for a bounded time.
#ifndef VEXA_WMI_BOUNDED_TASK_H_
#define VEXA_WMI_BOUNDED_TASK_H_

#include <windows.h>

#include <unknwn.h>
#include <wrl/client.h>

#include <cstdint>
#include <functional>
#include <optional>

namespace vexa {

using Microsoft::WRL::ComPtr;

struct TaskOutcome {
  HRESULT result = E_FAIL;
  ComPtr<IUnknown> object;
};

// Must own everything that it touches (references, texts): it may outlive its caller.
using TaskWork = std::function<TaskOutcome()>;

inline constexpr uint32_t kWmiWaitMs = 5000;
inline constexpr int kMaxAbandonedTasks = 8;

// Runs `work` on a thread of the system's pool, in the multithreaded apartment, and waits at most kWmiWaitMs for it.
// Nothing when the time is over: the task is then abandoned. It runs on, keeps this library mapped, and gives back what
// it holds when it ends. While kMaxAbandonedTasks of them live, nothing is started, and the answer is nothing as well.
[[nodiscard]] std::optional<TaskOutcome> RunBounded(TaskWork work);

// Abandoned tasks that have not ended yet.
[[nodiscard]] int AbandonedTasks() noexcept;

}  // namespace vexa

#endif  // VEXA_WMI_BOUNDED_TASK_H_
