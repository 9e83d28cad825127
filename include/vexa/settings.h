/*
 * Firmware settings: the battery's charge limit ("battery health") and the quiet fan.
 *
 * They go through the firmware's WMI class VexaObxWmi_WMNB; the library also knows where they are remembered outside the
 * firmware: the registry key of the hotkey utility on machines that have its ACPI device, else small files in a
 * per-user application folder, whose path is kept in the registry under the name of the signed-in user.
 *
 * com_flag, last argument of every function: non-zero initialises COM for the call; with 0 the calling thread must be in
 * the multithreaded apartment already.
 *
 * Waits: a WMI call may take 5 seconds for the connection and 5 seconds for the class; the firmware's method itself is
 * not bounded. WMISetBatteryHealth and WMISetQuietFan make two such calls, the others at most one. At most 8 WMI calls of
 * a process connect at once; waiting for a turn is part of the first 5 seconds. InitializeWinIo is not needed. Threads:
 * any, except one of a single-threaded apartment.
 */
#ifndef VEXA_SETTINGS_H_
#define VEXA_SETTINGS_H_

#include <wchar.h>

#include "base.h"

/* Least size in characters, terminator included, of the buffer of WMIGetAppPath. */
#define VEXA_APP_PATH_CAPACITY 260

/* WMICheckQuietFanSupport: the firmware has no quiet fan, or did not answer. */
#define VEXA_NOT_SUPPORTED 0xFFFFFFFFu

VEXA_BEGIN_DECLS

/*
 * Remembers the application folder of the signed-in user. path: a folder, terminated, not null.
 * Returns 1 when it was stored, 0 when not (the registry key can't be written, or path is null).
 */
uint32_t WMISetAppPath(const wchar_t* path, uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * The application folder of the signed-in user.
 *
 * path: buffer of at least VEXA_APP_PATH_CAPACITY characters; receives the stored path, cut to the capacity, or the text
 * "ERROR_READREG" when there is none. Returns 1 when there was one, 0 when not or when path is null.
 */
uint32_t WMIGetAppPath(wchar_t* path, uint32_t com_flag) VEXA_NOEXCEPT;

/* 1 when the stored application folder exists, else 0. */
uint32_t WMICheckAppExist(uint32_t com_flag) VEXA_NOEXCEPT;

/* 1 when the firmware can limit the charge, 0 when not or when it does not answer. */
uint32_t WMICheckBatteryHealthSupport(uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * The remembered charge limit in percent: 100, 80 or 60 from the hotkey utility's key, 100 for everything unknown. On
 * machines without the utility's device, the number in the battery-health file, whatever it is; 100 when there is none.
 * The firmware itself can't be asked.
 */
uint32_t WMIGetBatteryHealth(uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * Tells the firmware to charge to `level` percent. The level is not checked here: 60, 80 and 100 are those that firmware
 * knows. Returns 1 when the firmware accepted it, else 0. Remembers nothing.
 */
uint32_t WMISetBatteryHealth(int32_t level, uint32_t com_flag) VEXA_NOEXCEPT;

/* Writes `level` into the battery-health file of the application folder. Returns 1 when it was written, else 0. */
uint32_t WMISetBatteryHealthToUser(int32_t level, uint32_t com_flag) VEXA_NOEXCEPT;

/* The firmware's quiet fan: 1 on, 0 off, VEXA_NOT_SUPPORTED. */
uint32_t WMICheckQuietFanSupport(uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * The remembered quiet-fan mode: 1 to 3 from the hotkey utility's key, 0 for everything unknown. On machines without the
 * utility's device, the number in the quiet-fan file; 0 when there is none.
 */
uint32_t WMIGetQuietFan(uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * Switches the firmware's quiet fan; on: 0 off, else on. Returns 1 when the firmware accepted it, else 0. Accepted, it is
 * also written into the quiet-fan file when the application folder exists; a failed write does not change the answer.
 */
uint32_t WMISetQuietFan(uint8_t on, uint32_t com_flag) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_SETTINGS_H_ */
