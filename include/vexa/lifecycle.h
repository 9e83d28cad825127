/*
 * Start-up, shut-down and versions.
 *
 * Calling order: InitializeWinIo, any readings, ShutdownWinIo as often as InitializeWinIo answered 1. Loading and
 * unloading the library does nothing by itself. Exports that need no driver may be called without InitializeWinIo.
 */
#ifndef VEXA_LIFECYCLE_H_
#define VEXA_LIFECYCLE_H_

#include "base.h"

/* The answer of GetIoDllVersion: major version 1 in the high half, minor version 1 in the low half. */
#define VEXA_IO_DLL_VERSION 0x00010001u

VEXA_BEGIN_DECLS

/*
 * Makes the library ready and counts this call.
 *
 * On ARM64 machines it only counts. On x64 machines it makes sure that the kernel-driver service "VexaSAIO" exists,
 * points at VexaSAIO.sys in the library's own folder, and runs, then opens its device. A service that points elsewhere
 * is removed and created again. Needs administrator rights unless the device can be opened as it is.
 *
 * Returns 1 when ready; 0 when not, the count unchanged: the module path can't be had, another process has been
 * installing for more than 5000 ms, the service can't be created or started, or the device can't be opened.
 * Nothing is rolled back: a service that was removed and can't be created again stays removed.
 *
 * Waits at most 5000 ms for another installer, 3500 ms for another starter, 2000 and 3000 polls of 1 ms for the
 * service to stop and start.
 *
 * Threads: any; but the state is not locked. Two first calls at once may both run the set-up; the later handle wins.
 */
uint32_t InitializeWinIo(void) VEXA_NOEXCEPT;

/*
 * Takes one count back; at zero the driver's device is closed. The service keeps running (see StopWinIoDriver).
 * Without a preceding successful InitializeWinIo it changes nothing. Threads: as InitializeWinIo; no reading may be
 * under way when the count reaches zero.
 */
void ShutdownWinIo(void) VEXA_NOEXCEPT;

/*
 * Version word of the kernel driver. 0 on ARM64 machines, before InitializeWinIo, and when the request fails.
 * Threads: any.
 */
uint32_t GetDriverVersion(void) VEXA_NOEXCEPT;

/*
 * The kernel driver's own count of its users, over all processes; not the count of InitializeWinIo calls.
 * 0 on ARM64 machines, before InitializeWinIo, and when the request fails. Threads: any.
 */
uint32_t GetRefCount(void) VEXA_NOEXCEPT;

/* Version of this interface: always VEXA_IO_DLL_VERSION. Threads: any. */
uint32_t GetIoDllVersion(void) VEXA_NOEXCEPT;

/*
 * Stops the driver service.
 *
 * holds_mutex: 0 for callers of this export (the library then takes the mutex that serialises installing, starting
 * and stopping); 1 when the caller holds that mutex already.
 *
 * Returns 1 when the service is stopped, was not running, or the mutex can't be created (nothing is stopped then);
 * 0 when the service manager or the service can't be opened, the service can't be asked for its state or refuses to
 * stop, another process holds the mutex for more than 2500 ms, or the service does not stop within 2000 polls of 1 ms.
 * Threads: any.
 */
uint32_t StopWinIoDriver(uint32_t holds_mutex) VEXA_NOEXCEPT;

/* x + 1, wrapping at 32 bits: tells that the library is loaded and called rightly. Threads: any. */
uint32_t wmiadd(uint32_t x) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_LIFECYCLE_H_ */
