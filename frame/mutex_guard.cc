#include "frame/mutex_guard.h"

#include <windows.h>

#include <utility>

#include "frame/log.h"

namespace vexa {

MutexWrapper::MutexWrapper() noexcept : mutex_(CreateMutexW(nullptr, FALSE, nullptr)) {
  if (mutex_ == nullptr) LogCritical("[MutexWrapper] CreateMutex error: %d", static_cast<int>(GetLastError()));
}

MutexWrapper::MutexWrapper(EcLogTag) noexcept : mutex_(CreateMutexW(nullptr, FALSE, kEcLogMutexName)) {
  if (mutex_ == nullptr) {
    LogCritical("[MutexWrapper_mutexname] CreateMutex error: %d", static_cast<int>(GetLastError()));
  }
}

MutexWrapper::MutexWrapper(FanTag, uint32_t timeout_ms) noexcept {
  SECURITY_DESCRIPTOR everyone;
  InitializeSecurityDescriptor(&everyone, SECURITY_DESCRIPTOR_REVISION);
  SetSecurityDescriptorDacl(&everyone, TRUE, nullptr, FALSE);
  SECURITY_ATTRIBUTES attributes{sizeof attributes, &everyone, FALSE};
  mutex_ = CreateMutexW(&attributes, FALSE, kFanMutexName);
  const DWORD error = GetLastError();
  if (mutex_ == nullptr) {
    LogCritical("[MutexWrapper_mutexname] CreateMutex error: %d", static_cast<int>(error));
    return;
  }
  if (error != ERROR_ALREADY_EXISTS) return;

  LogCritical(L"[MutexWrapper] %s has been called by other thread. Wait for the thread finished.", kFanMutexName);
  builder_ = GetCurrentThreadId();
  built_wait_ = Wait(timeout_ms);
  if (built_wait_ == WAIT_OBJECT_0) {
    LogInfo(L"[MutexWrapper] %s is finished by other thread. Wait for the thread finished.", kFanMutexName);
  } else if (built_wait_ == WAIT_TIMEOUT) {
    LogInfo("[MutexWrapper] WARNING: %s has been executing for over %d milliseconds. No more waiting.",
            "Global\\FancontrolMutex", static_cast<int>(timeout_ms));
  }
}

MutexWrapper& MutexWrapper::EcLog() noexcept {
  static MutexWrapper guard{EcLogTag{}};
  return guard;
}

MutexWrapper::~MutexWrapper() {
  if (mutex_ == nullptr) return;
  ReleaseMutex(mutex_);
  CloseHandle(mutex_);
}

uint32_t MutexWrapper::Lock(uint32_t timeout_ms) noexcept {
  if (mutex_ == nullptr) return 0;
  const bool waited = builder_ == GetCurrentThreadId() && built_wait_ != kNoWait;
  const DWORD result = waited ? std::exchange(built_wait_, kNoWait) : Wait(timeout_ms);
  return result == WAIT_OBJECT_0 ? 1 : 0;
}

uint32_t MutexWrapper::Unlock() noexcept {
  // Without a lock in between, what the wait while building gave is given back here, and no later lock may count on it.
  if (builder_ == GetCurrentThreadId()) built_wait_ = kNoWait;
  if (ReleaseMutex(mutex_)) return 1;
  LogCritical("[MutexWrapper] ReleaseMutex error: %d", static_cast<int>(GetLastError()));
  return 0;
}

DWORD MutexWrapper::Wait(uint32_t timeout_ms) noexcept {
  const DWORD result = WaitForSingleObject(mutex_, timeout_ms);
  if (result == WAIT_ABANDONED) ReleaseMutex(mutex_);
  return result;
}

}  // namespace vexa
