// The kernel-driver service "VexaSAIO": installed, started, stopped, removed and re-pointed through the service
// manager.
//
// Every routine opens the service manager for itself and closes what it opened. Numbers returned are 1 for success and
// 0 for failure, since exports hand them on. All log their failures with the Win32 error.
#ifndef VEXA_FRAME_DRIVER_SERVICE_H_
#define VEXA_FRAME_DRIVER_SERVICE_H_

#include <cstdint>
#include <string>

namespace vexa {

inline constexpr wchar_t kServiceName[] = L"VexaSAIO";
inline constexpr wchar_t kDriverFileName[] = L"\\VexaSAIO.sys";

// Serialises installing, starting and stopping among the processes of one session.
// Kept: its owner closes the handle without releasing the mutex. While the owner's thread lives, waiters time out; they
// see an abandoned mutex, and carry on, when it ends. Other processes may run builds that rely on it.
inline constexpr wchar_t kServiceMutexName[] = L"VEXAWINIO_!@#$%^&*";

inline constexpr uint32_t kEnsureWaitMs = 5000;
inline constexpr uint32_t kStartWaitMs = 3500;
inline constexpr uint32_t kStopWaitMs = 2500;
inline constexpr int kStartPollLimit = 3000;  // iterations of Sleep(1), not measured time
inline constexpr int kStopPollLimit = 2000;

// Whether the service is registered. An error other than "does not exist" counts as registered; a service manager that
// can't be opened counts as not.
[[nodiscard]] bool DriverServiceExists();

// Starts the service and waits until it runs. `holds_mutex` is 1 when the caller already holds the mutex.
// Kept: when the mutex can't be created, 1 without starting anything.
uint32_t StartWinIoDriverEx(uint32_t holds_mutex);

// Stops the service and waits until it has stopped. Kept: 1 without stopping when the mutex can't be created.
uint32_t StopWinIoDriverEx(uint32_t holds_mutex);

uint32_t CreateDriverService(const std::wstring& driver_path);

// Stops, then deletes the service. The caller holds the mutex.
void RemoveDriverService();

// The service's binary path, into a buffer of kDriverPathCapacity characters.
inline constexpr uint32_t kDriverPathCapacity = 260;
uint32_t GetDriverPath(wchar_t* path);

uint32_t ChangeDriverPath(const wchar_t* driver_path);
uint32_t ChangeDriverStartType(uint32_t start_type);

}  // namespace vexa

#endif  // VEXA_FRAME_DRIVER_SERVICE_H_
