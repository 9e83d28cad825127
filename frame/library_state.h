// The process-wide state that the driver route rests on.
#ifndef VEXA_FRAME_LIBRARY_STATE_H_
#define VEXA_FRAME_LIBRARY_STATE_H_

#include <windows.h>

#include <cstdint>

namespace vexa {

// Kept: plain variables without a lock. Two threads that initialise at once may both run the set-up, and the driver
// handle keeps its stale value after it was closed; callers rely on neither being "repaired".
struct LibraryState {
  HANDLE driver = INVALID_HANDLE_VALUE;  // \\.\VexaSAIO
  uint32_t references = 0;               // InitializeWinIo calls that succeeded, less ShutdownWinIo
  bool initialised = false;              // EC commands may be sent
};

extern LibraryState g_library;

}  // namespace vexa

#endif  // VEXA_FRAME_LIBRARY_STATE_H_
