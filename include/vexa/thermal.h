/*
 * Fans and temperatures: the exports HealthyTable_* and Quillo_*.
 *
 * Every call reads afresh; nothing is cached. On x64 machines a call is a handful of exchanges with the embedded
 * controller (EC) through the kernel driver, one DeviceIoControl each, and needs InitializeWinIo first; the driver,
 * not the library, ends an exchange. On ARM64 machines each value is one or two calls of the firmware's WMI methods;
 * InitializeWinIo is not needed. Each such call may wait 5 seconds for the connection and 5 seconds for the class,
 * and as long as the firmware takes; not on a thread of a single-threaded apartment.
 *
 * "No table" below means that the EC has no healthy table (BatteryHealthyTable_ReadVersion answers 0) or that its
 * version can't be read; every table has these values. ARM64 machines have no table, and "no table" never applies
 * there.
 *
 * Fans are selected one at a time, by one index for all programs on the machine. Only Quillo_Read_Fan takes the mutex
 * "Global\FancontrolMutex" for itself; between the calls of a program that selects and reads by itself, the selection
 * may be changed by another. The firmware of ARM64 machines tells one speed and selects nothing.
 *
 * Threads: any export of this header may be called from any thread at any time; about the thread that turns the fan
 * test mode on see HealthyTable_SetFanTestMode.
 */
#ifndef VEXA_THERMAL_H_
#define VEXA_THERMAL_H_

#include "base.h"

/* Highest index that HealthyTable_SetFanIndex takes. */
#define VEXA_MAX_FAN_INDEX 4u

/* Slots of the array of HealthyTable_Read_Fan: as many fans as the EC's one-byte count can tell. */
#define VEXA_FAN_SLOTS 255

/* Bounds of the waits for the fan mutex, in ms. */
#define VEXA_FAN_TEST_MODE_WAIT_MS 10000
#define VEXA_FAN_READ_WAIT_MS 5000

VEXA_BEGIN_DECLS

/* ---- Fans ---- */

/* Number of fans, 0 to 255. VEXA_NO_ANSWER when it can't be read, and for no table. */
uint32_t HealthyTable_FanCounts(void) VEXA_NOEXCEPT;

/*
 * Selects the fan that HealthyTable_FanRPM and HealthyTable_SetFanPwmDuty speak of.
 *
 * index: 0 to VEXA_MAX_FAN_INDEX. Whether the machine has that fan is not checked. Returns 1 when the EC took it. 0
 * when not: a larger index (nothing is sent), a failed exchange, no table, and always on ARM64, whose firmware
 * selects nothing.
 */
uint32_t HealthyTable_SetFanIndex(uint32_t index) VEXA_NOEXCEPT;

/*
 * Speed of the selected fan in revolutions per minute, 0 to 65535. VEXA_NO_ANSWER when a byte of it can't be read;
 * VEXA_NOT_AVAILABLE for no table. The EC gives the two bytes one after the other, the high one first.
 */
uint32_t HealthyTable_FanRPM(void) VEXA_NOEXCEPT;

/*
 * Selects and reads each fan in turn, without the fan mutex.
 *
 * rpm: array of HealthyTable_FanCounts() slots; VEXA_FAN_SLOTS are always enough. Slot i receives what
 * HealthyTable_FanRPM answers after index i was selected, whether the EC took the index or not: from index 5 on, and
 * on ARM64, the slots repeat the fan that is selected. When the number of fans can't be read, the first slot receives
 * VEXA_NOT_AVAILABLE: the array has at least one slot, whatever the count. A firmware's count above VEXA_FAN_SLOTS is
 * cut.
 *
 * Returns what the last slot received; 0 when there are no fans (no slot is written); the value that
 * HealthyTable_FanCounts gave, VEXA_NO_ANSWER, when that is none; VEXA_NO_ANSWER, and nothing is sent, when rpm is
 * null.
 */
uint32_t HealthyTable_Read_Fan(uint32_t* rpm) VEXA_NOEXCEPT;

/*
 * Speed of one fan in revolutions per minute, as HealthyTable_FanRPM gives it, under the fan mutex: no other call of
 * this export, in no process, changes the selection meanwhile.
 *
 * index: 0 to one less than the number of fans. At or above the number the answer is 0. A negative index selects
 * nothing and reads the fan that is selected. If the EC refuses the selection the speed is that of the fan selected
 * before.
 *
 * Waits at most VEXA_FAN_READ_WAIT_MS for the mutex. The process's first call does so once more while another
 * thread's first call is waiting.
 *
 * Returns VEXA_NO_ANSWER, and sends nothing, when the mutex can't be had in time, when its owner died holding it
 * (that once; the next call succeeds), or when it could not be created: it is created with the process's first call
 * and never again. Else VEXA_NO_ANSWER when the speed can't be read, VEXA_NOT_AVAILABLE for no table.
 */
uint32_t Quillo_Read_Fan(int32_t index) VEXA_NOEXCEPT;

/* ---- Fan test mode ---- */

/*
 * Test mode of the fans: 0 off, 1 on; on x64 the EC's byte as it is. VEXA_NO_ANSWER when it can't be read, and for no
 * table.
 */
uint32_t HealthyTable_GetFanTestMode(void) VEXA_NOEXCEPT;

/*
 * Turns the fans' test mode on or off; in test mode the fans follow HealthyTable_SetFanPwmDuty and no temperature.
 *
 * mode: 0 off, 1 on. Every other value is on as well; on ARM64 the firmware gets its low seven bits as they are.
 *
 * Turning on takes the mutex "Global\FancontrolMutex" and keeps it: test mode belongs to the thread that took it, and
 * until that thread turns it off, every other thread's attempt to turn it on, and every Quillo_Read_Fan of other
 * threads and processes, fails after its wait. It is counted: a thread that turns it on twice turns it off twice. A
 * thread that ends without turning it off leaves the mutex abandoned, and the EC in test mode.
 *
 * Turning off needs no mutex to write, so any thread, in any process, can end test mode in the EC. It releases only
 * what its own thread holds: off by another thread leaves the mutex with its owner.
 *
 * Waits at most VEXA_FAN_TEST_MODE_WAIT_MS for the mutex when turning on, and once more while another thread's first
 * call is waiting; so does the process's first call when turning off, if another program has the mutex open. On ARM64
 * two WMI calls follow, the second for the BIOS version.
 *
 * Returns 1 when the EC took the mode. 0 when turning on could not have the mutex (in time; its owner died holding
 * it, that once; it could not be created with the process's first call), and nothing was sent; and 0 for no table or
 * when the EC did not take the mode. The mutex after a 0 of turning on: given back for no table, kept when the EC did
 * not take the mode. Turning off after such a 0 is right in every case.
 */
uint32_t HealthyTable_SetFanTestMode(uint32_t mode) VEXA_NOEXCEPT;

/*
 * Sets the duty of the selected fan's PWM signal, in the EC's own steps; it lasts while test mode is on.
 *
 * Returns 1 when the EC took it. 0 when not: a failed exchange, no table, and always on ARM64, whose firmware has
 * none.
 */
uint32_t HealthyTable_SetFanPwmDuty(uint8_t duty) VEXA_NOEXCEPT;

/* ---- Temperatures, in the EC's unit: degrees C on the notebooks known so far ---- */

/*
 * Temperature of the CPU, one byte; Quillo_Read_Cpu_Temperature is the same by another name. VEXA_NO_ANSWER when it
 * can't be read, and for no table.
 */
uint32_t HealthyTable_Read_Cpu_Temperature(void) VEXA_NOEXCEPT;
uint32_t Quillo_Read_Cpu_Temperature(void) VEXA_NOEXCEPT;

/*
 * Temperature of board sensor 0, one byte; 0 also when there is no board sensor. On x64 it selects that sensor, for
 * all programs. VEXA_NO_ANSWER when an exchange fails, and for no table.
 */
uint32_t HealthyTable_Read_BoardTS0L_Temperature(void) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_THERMAL_H_ */
