// Guards an EC exchange of several commands against other threads and processes.
#ifndef VEXA_FRAME_MUTEX_GUARD_H_
#define VEXA_FRAME_MUTEX_GUARD_H_

#include <windows.h>

#include <cstdint>

namespace vexa {

inline constexpr wchar_t kFanMutexName[] = L"Global\\FancontrolMutex";
inline constexpr wchar_t kEcLogMutexName[] = L"Global\\SaveEcLogMutex";

// Owns one Win32 mutex. A mutex belongs to a thread: lock and unlock on the same one. Nothing here throws.
class MutexWrapper {
 public:
  // A mutex of this process only.
  MutexWrapper() noexcept;

  // The process-wide guard of the EC log snapshot, made on first use, kept until the process ends.
  static MutexWrapper& EcLog() noexcept;

  // A guard on kFanMutexName, which every account in every session may open. When the mutex exists already, waits for
  // it at once, for at most `timeout_ms`; that wait is this guard's lock, won or lost.
  static MutexWrapper Fan(uint32_t timeout_ms) noexcept { return MutexWrapper(FanTag{}, timeout_ms); }

  // Releases, owned or not, and closes.
  ~MutexWrapper();

  MutexWrapper(const MutexWrapper&) = delete;
  MutexWrapper& operator=(const MutexWrapper&) = delete;

  // 1 when the mutex is now owned. 0 after the time-out, without a handle, or when the wait that was done while
  // building was lost. Kept: an abandoned mutex gives 0, unlike in the driver set-up; it is given back, so that the
  // next caller succeeds.
  [[nodiscard]] uint32_t Lock(uint32_t timeout_ms) noexcept;

  // 1 when the mutex was released. Also gives back what the wait while building won, if nothing locked since.
  uint32_t Unlock() noexcept;

 private:
  struct FanTag {};
  struct EcLogTag {};
  explicit MutexWrapper(EcLogTag) noexcept;
  MutexWrapper(FanTag, uint32_t timeout_ms) noexcept;

  // The raw wait result; an abandoned mutex has been given back.
  DWORD Wait(uint32_t timeout_ms) noexcept;

  HANDLE mutex_ = nullptr;
  // Outcome of the wait done while building, until the builder's first lock or unlock ends it. Only the building thread
  // looks at it: a mutex that it won is its own.
  DWORD built_wait_ = kNoWait;
  DWORD builder_ = 0;

  static constexpr DWORD kNoWait = WAIT_FAILED - 1;
};

}  // namespace vexa

#endif  // VEXA_FRAME_MUTEX_GUARD_H_
