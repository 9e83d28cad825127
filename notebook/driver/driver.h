// The parts of the driver that use the operating system.
#ifndef NOTEBOOK_DRIVER_DRIVER_H_
#define NOTEBOOK_DRIVER_DRIVER_H_

#include <ddk/wdm.h>

#include "exchange.h"

enum { kPathCapacity = 300 };

// A path as the kernel knows it, terminated.
typedef struct Path {
  WCHAR text[kPathCapacity];
} Path;

// Where the image and the log are.
typedef struct Settings {
  Path image;
  Path log;
} Settings;

NTSTATUS ReadSettings(Settings* settings);

// Tells whether a file is still the one that was read.
typedef struct FileIdentity {
  LARGE_INTEGER written;
  LARGE_INTEGER size;
  uint32_t head[4];  // magic, version, size and checksum of the image
} FileIdentity;

// Reads the image into a new pool block, which the caller frees with ExFreePool. When the file is the one
// that `identity` tells, leaves *bytes null; else sets `identity` to what was read.
NTSTATUS ReadImageFile(const Path* path, FileIdentity* identity, uint8_t** bytes, size_t* size);

NTSTATUS OpenLog(const Path* path, HANDLE* log);
NTSTATUS AppendToLog(HANDLE log, const LogLine* line);

#endif  // NOTEBOOK_DRIVER_DRIVER_H_
