/*
 * Battery, charger and EC identity from the EC's healthy table: the exports BatteryHealthyTable_*.
 *
 * Every call reads afresh; nothing is cached. On x64 machines a call is a handful of exchanges with the embedded
 * controller (EC) through the kernel driver, one DeviceIoControl each, and needs InitializeWinIo first. The library
 * sets no time limit on an exchange: the driver ends it.
 *
 * On ARM64 machines the same values come from the battery gauge through the firmware's WMI methods, and InitializeWinIo
 * is not needed. There is no healthy table and no version: a number that the firmware does not give reads 0, so that 0 is
 * ambiguous there. A number takes one WMI call, a name one per character; a call may wait 5 seconds for the connection and
 * 5 seconds for the class, and as long as the firmware takes. Of these the firmware has no value: the numbers and the
 * name of the EC itself, both gauge status words, full charged (all VEXA_NO_ANSWER or empty), charging current, time-out
 * status and lid (all 0), and the manufacture information (empty). Not on a thread of a single-threaded apartment.
 *
 * The healthy table has a version (BatteryHealthyTable_ReadVersion). Version 0 means that the EC has no table: each
 * export then answers the value stated beside it as "no table", and so it does when the version can't be read.
 * VEXA_NO_ANSWER means that the version was read and a later exchange failed. Callers for whom "no table" and a true
 * reading look alike (value 0) read the version first.
 *
 * Units are the gauge's own, by the Smart Battery Data standard (SBS 1.1): mV, mA, 0.1 K; capacities in mAh or 10 mWh as
 * bit 15 of the battery mode says.
 *
 * Threads: any export of this header may be called from any thread at any time, but for the four that read the gauge
 * through the EC's SMBus pass-through on x64 machines: BatteryHealthyTable_SafetyStatus, _PFStatus, _DeviceName and
 * _ManufactureNameBySMBus. The EC fetches one value for all programs on the machine and hands it out byte by byte; a
 * second of these calls in between makes the first one go on with the other's bytes, and nothing shows it. Callers let no
 * two of them overlap, nor two calls of BatteryHealthyTable_BatteryInformation: each asks the EC to fetch anew what the
 * other reads.
 */
#ifndef VEXA_BATTERY_H_
#define VEXA_BATTERY_H_

#include "base.h"

/* Least size of the caller's buffer, terminator included, of the exports that fill one. */
#define VEXA_EC_CHIP_NAME_CAPACITY 15
#define VEXA_MANUFACTURE_NAME_CAPACITY 33
#define VEXA_DEVICE_NAME_CAPACITY 33

VEXA_BEGIN_DECLS

/* ---- The EC itself ---- */

/* Version of the healthy table, 0 to 255; 0: the EC has none. VEXA_NO_ANSWER when it can't be read. */
uint32_t BatteryHealthyTable_ReadVersion(void) VEXA_NOEXCEPT;

/* Bit 7 of the EC's project information: 0 or 1. VEXA_NO_ANSWER when it can't be read. */
uint32_t BatteryHealthyTable_ReadVendorType(void) VEXA_NOEXCEPT;

/* Chip id of the EC, one byte. VEXA_NO_ANSWER when it can't be read. */
uint32_t BatteryHealthyTable_ECChipID(void) VEXA_NOEXCEPT;

/*
 * Name of the EC chip, at most 14 characters.
 *
 * text: buffer of at least VEXA_EC_CHIP_NAME_CAPACITY bytes; always terminated, empty on failure and on ARM64.
 * Returns 1 when the name was read, 0 when not or when text is null.
 */
uint32_t BatteryHealthyTable_ECChipName(char* text) VEXA_NOEXCEPT;

/* ---- Battery names ---- */

/*
 * Manufacturer of the battery from the healthy table, at most 16 characters.
 *
 * text: buffer of at least VEXA_MANUFACTURE_NAME_CAPACITY bytes; always terminated, empty on failure.
 * Returns 1 when the name was read, 0 when not (no table, or an exchange failed) or when text is null.
 */
uint32_t BatteryHealthyTable_ManufactureName(char* text) VEXA_NOEXCEPT;

/* The same from the gauge itself by the EC's SMBus pass-through (register 0x20), at most 32 characters. */
uint32_t BatteryHealthyTable_ManufactureNameBySMBus(char* text) VEXA_NOEXCEPT;

/*
 * Device name of the battery from the gauge (register 0x21), at most 32 characters.
 *
 * text: buffer of at least VEXA_DEVICE_NAME_CAPACITY bytes; as for the manufacturer's name.
 */
uint32_t BatteryHealthyTable_DeviceName(char* text) VEXA_NOEXCEPT;

/* ---- Battery and charger numbers ---- */

/* Date of manufacture: day in bits 0-4, month in bits 5-8, year since 1980 in bits 9-15.
 * No table: VEXA_NOT_AVAILABLE. */
uint32_t BatteryHealthyTable_ManufactureDate(void) VEXA_NOEXCEPT;

/* Serial number, 16 bits. No table: 0. */
uint32_t BatteryHealthyTable_SerialNumber(void) VEXA_NOEXCEPT;

/* Design voltage in mV. No table: 0. */
uint32_t BatteryHealthyTable_DesignVoltage(void) VEXA_NOEXCEPT;

/* Charge cycles so far. No table: VEXA_NOT_AVAILABLE. */
uint32_t BatteryHealthyTable_CycleCount(void) VEXA_NOEXCEPT;

/* Relative state of charge in percent of the full-charge capacity. No table: 0. */
uint32_t BatteryHealthyTable_Rsoc(void) VEXA_NOEXCEPT;

/* Temperature of the pack in 0.1 K. No table: VEXA_NOT_AVAILABLE. */
uint32_t BatteryHealthyTable_Temperature(void) VEXA_NOEXCEPT;

/* Voltage of the pack in mV. No table: VEXA_NOT_AVAILABLE. */
uint32_t BatteryHealthyTable_PackageVoltage(void) VEXA_NOEXCEPT;

/*
 * Current in mA, to be read as int32_t: negative while discharging. No table: VEXA_NOT_AVAILABLE, which can't be told
 * from -1 mA.
 */
uint32_t BatteryHealthyTable_Current(void) VEXA_NOEXCEPT;

/* Charging current that the gauge asks for, in mA, to be read as int32_t. No table: VEXA_NOT_AVAILABLE (or -1 mA). */
uint32_t BatteryHealthyTable_ChargingCurrent(void) VEXA_NOEXCEPT;

/* Charging voltage that the gauge asks for, in mV. No table: VEXA_NOT_AVAILABLE. */
uint32_t BatteryHealthyTable_ChargingVoltage(void) VEXA_NOEXCEPT;

/* Remaining capacity in the gauge's unit. No table: 0. */
uint32_t BatteryHealthyTable_RemainingCapacity(void) VEXA_NOEXCEPT;

/* Full-charge capacity in the gauge's unit. No table: 0. */
uint32_t BatteryHealthyTable_FullChargeCapacity(void) VEXA_NOEXCEPT;

/* Voltage of one cell in mV; a pack with fewer cells reports 0 for the others. No table: 0. */
uint32_t BatteryHealthyTable_CellVoltage1(void) VEXA_NOEXCEPT;
uint32_t BatteryHealthyTable_CellVoltage2(void) VEXA_NOEXCEPT;
uint32_t BatteryHealthyTable_CellVoltage3(void) VEXA_NOEXCEPT;
uint32_t BatteryHealthyTable_CellVoltage4(void) VEXA_NOEXCEPT;

/* Code of the gauge chip, one byte. No table: 0. */
uint32_t BatteryHealthyTable_GaugeIC(void) VEXA_NOEXCEPT;

/*
 * Safety status of the gauge (register 0x51), 32 bits, by the SMBus pass-through. VEXA_NO_ANSWER on any failure, and for
 * a register without a value.
 */
uint32_t BatteryHealthyTable_SafetyStatus(void) VEXA_NOEXCEPT;

/* Permanent-failure status of the gauge (register 0x53): as the safety status. */
uint32_t BatteryHealthyTable_PFStatus(void) VEXA_NOEXCEPT;

/* ---- Flags: 0 also stands for a failed exchange and for no table ---- */

/* 1: the EC reports a battery error. */
uint32_t BatteryHealthyTable_BatteryError(void) VEXA_NOEXCEPT;

/* 1: the battery is fully charged. */
uint32_t BatteryHealthyTable_FullCharged(void) VEXA_NOEXCEPT;

/* Charge-error status byte of the EC; 0: no charge time-out. */
uint32_t BatteryHealthyTable_TimeoutStatus(void) VEXA_NOEXCEPT;

/* 1: external power is present. */
uint32_t BatteryHealthyTable_ACStatus(void) VEXA_NOEXCEPT;

/* Lid state byte of the EC. No table: 0; a failed exchange: VEXA_NO_ANSWER. */
uint32_t BatteryHealthyTable_LidStatus(void) VEXA_NOEXCEPT;

/* ---- Manufacture information ---- */

/*
 * The 32 bytes of the battery's manufacture information as "0x.." texts in lower-case hexadecimal without leading
 * zeros, joined by commas. The EC fetches them from the gauge on request, so this call waits: up to 3 pauses of
 * 1000 ms. Needs table version 10. Empty when the version is below that, the EC reports an abnormal precharge
 * time-out, or the data does not become ready. A single byte that can't be read reads as 0x0, and so may
 * any of them when two calls overlap: callers let no two overlap.
 */
VexaText BatteryHealthyTable_BatteryInformation(void) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_BATTERY_H_ */
