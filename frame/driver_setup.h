// Makes sure that the driver service exists, points at this library's driver file, and runs.
#ifndef VEXA_FRAME_DRIVER_SETUP_H_
#define VEXA_FRAME_DRIVER_SETUP_H_

#include <cstdint>

namespace vexa {

enum class DriverSetup : uint32_t {
  kFailed = 0,
  kRunning = 1,
  kNoMutex = 2,  // the installer's mutex can't be created: nothing was installed or started, the device may still open
};

// Waits at most 5000 ms for another installer, besides the waits of the service routines.
[[nodiscard]] DriverSetup EnsureIoDriverRunning();

}  // namespace vexa

#endif  // VEXA_FRAME_DRIVER_SETUP_H_
