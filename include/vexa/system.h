/*
 * State of the operating system and of what is installed: tablet mode, volume, local time, S mode, versions.
 *
 * Every call asks afresh; nothing is cached. The library waits for nothing here; the system's own calls take as long
 * as they take. Only System_Read_TabletMode needs InitializeWinIo. Threads: any, at any time.
 */
#ifndef VEXA_SYSTEM_H_
#define VEXA_SYSTEM_H_

#include <wchar.h>

#include "base.h"

/* Least size in bytes, terminator included, of the buffer of System_Read_LocalTime. */
#define VEXA_LOCAL_TIME_CAPACITY 20

/* Least size in characters, terminator included, of the buffers of GetUWPVersion and GetInfVersion. */
#define VEXA_VERSION_CAPACITY 64

/* System_Read_VolumeLevel: there is no volume to be read. */
#define VEXA_NO_VOLUME (-1)

VEXA_BEGIN_DECLS

/*
 * The EC's tablet-mode byte, 0 to 255; 0: a notebook. 0 also on machines whose EC reports no firmware revision
 * (EC_ReadEcFwRev: VEXA_NO_FIRMWARE_REVISION): they have no such command, and are not asked. VEXA_NO_ANSWER when the
 * EC does not answer; always so before InitializeWinIo and on ARM64 machines, where only the kernel driver could ask.
 */
uint32_t System_Read_TabletMode(void) VEXA_NOEXCEPT;

/*
 * Master volume of the default speaker in percent, 0 to 100, cut to a whole number (33.9 % is 33); muting does not
 * show.
 *
 * initialize_com: non-zero initialises COM for the call (single-threaded apartment; a thread that is in an apartment
 * already stays in it); with 0 the calling thread must be in an apartment.
 *
 * Returns VEXA_NO_VOLUME when there is no default speaker, the thread has no COM, or the speaker does not tell.
 */
int32_t System_Read_VolumeLevel(uint8_t initialize_com) VEXA_NOEXCEPT;

/*
 * The local time as "2026-02-03 09:05:00".
 *
 * text: buffer of at least VEXA_LOCAL_TIME_CAPACITY bytes, all of which are written. Returns the number of
 * characters, always 19; 0 when text is null.
 */
uint32_t System_Read_LocalTime(char* text) VEXA_NOEXCEPT;

/*
 * 1 when Windows runs in S mode (locked down, or trying it), 0 when not. 0 also when the system can't tell: it has no
 * wldp.dll, or one without that query, or the query fails; the trace tells which. Loads wldp.dll from the system
 * folder for the length of the call.
 */
uint32_t System_Check_S_Mode(void) VEXA_NOEXCEPT;

/*
 * Version of the companion app from the store, for example "4.1.0.0".
 *
 * text: buffer of at least VEXA_VERSION_CAPACITY characters. It is left as it was when the app is not installed, when
 * the system has no such packages (before Windows 8.1), when anything fails, and when what stands in the version's
 * place is too long for the capacity. Null: nothing is done. The package family is a setting of the build.
 */
void GetUWPVersion(wchar_t* text) VEXA_NOEXCEPT;

/*
 * Driver version of the device "Vexa System Control Interface V2", as its driver's INF file states it.
 *
 * text: buffer of at least VEXA_VERSION_CAPACITY characters. It is left as it was when no such device is present,
 * when anything fails, and when the version is too long for the capacity. Null: nothing is done.
 */
void GetInfVersion(wchar_t* text) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_SYSTEM_H_ */
