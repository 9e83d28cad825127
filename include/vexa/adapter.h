/*
 * Power adapter, its USB Power Delivery (PD) contract, and the power source: the exports Adapter_* and Power_*.
 *
 * On x64 machines each call reads afresh from the embedded controller (EC) through the kernel driver: one exchange for
 * the version of the healthy table, then one for each byte, and two for each byte of the three adapter wattages. One
 * exchange is one DeviceIoControl; the library sets no time limit on it, the driver ends it. InitializeWinIo comes
 * first, except for Power_Read_ACDCMode. The exchanges of a call are not held together: a value of several bytes that
 * changes in between may mix old and new ones.
 *
 * On ARM64 machines the firmware tells only the three adapter wattages, by one request to its ACPI device, which needs
 * no InitializeWinIo and lasts as long as the firmware takes. Power_Read_ACDCMode works everywhere. Every other export
 * sends nothing there and answers its value for a version below its own.
 *
 * Each export has a least version of the healthy table (see BatteryHealthyTable_ReadVersion), stated beside it. Below
 * it, without a table, and when the version can't be read, no further exchange takes place, and the export answers:
 *
 *   kind A   VEXA_NOT_AVAILABLE, and VEXA_NO_ANSWER when a later exchange fails
 *   kind B   0, and 0 when a later exchange fails: 0 is ambiguous
 *
 * A 32-bit reading of kind A may equal one of these values by chance; no object of the PD standard does.
 *
 * Power data objects (PDOs), alerts and extended capabilities are those of the USB Power Delivery standard, revision
 * 3.1; the library hands them on as they are. All numbers are unsigned.
 *
 * Threads: any export of this header may be called from any thread at any time.
 */
#ifndef VEXA_ADAPTER_H_
#define VEXA_ADAPTER_H_

#include "base.h"

/* Number of source PDOs that the EC keeps: an index is below this. */
#define VEXA_PDO_COUNT 7

/* Size of the array in VexaPdIcPartNumber, terminator included. */
#define VEXA_PD_IC_PN_CAPACITY 64

/* Answer of Power_Read_ACDCMode when the system does not know the power source or does not answer. */
#define VEXA_AC_LINE_UNKNOWN 255u

/* Part number of the PD controller. */
typedef struct VexaPdIcPartNumber {
  /* Bytes that the EC says the part number has, 0 to 255; 0 on failure. */
  uint32_t told_length;
  /* Bytes that were read and stand in text: told_length, at most VEXA_PD_IC_PN_CAPACITY - 1. */
  uint32_t length;
  /* The bytes as the EC holds them, followed by zeros: always terminated. */
  char text[VEXA_PD_IC_PN_CAPACITY];
} VexaPdIcPartNumber;

VEXA_BEGIN_DECLS

/* ---- Source capabilities and contract ---- */

/*
 * PDO of the attached source; 0: the source has none at this place. Kind A, from version 14.
 *
 * index: 0 to VEXA_PDO_COUNT - 1; any other answers VEXA_NOT_AVAILABLE without an exchange.
 *
 * Bits 31-30 tell its kind: 0 fixed supply (bits 19-10 voltage in 50 mV, bits 9-0 current in 10 mA), 1 battery,
 * 2 variable supply, 3 augmented (bits 29-28: 0 programmable supply, 1 adjustable voltage in the extended power range,
 * 2 the same in the standard power range).
 */
uint32_t Adapter_Read_PDO(uint32_t index) VEXA_NOEXCEPT;

/* Adapter_Read_PDO of index 0, 1, ... 6. */
uint32_t Adapter_Read_PDO1(void) VEXA_NOEXCEPT;
uint32_t Adapter_Read_PDO2(void) VEXA_NOEXCEPT;
uint32_t Adapter_Read_PDO3(void) VEXA_NOEXCEPT;
uint32_t Adapter_Read_PDO4(void) VEXA_NOEXCEPT;
uint32_t Adapter_Read_PDO5(void) VEXA_NOEXCEPT;
uint32_t Adapter_Read_PDO6(void) VEXA_NOEXCEPT;
uint32_t Adapter_Read_PDO7(void) VEXA_NOEXCEPT;

/* The PDO that the contract rests on, as Adapter_Read_PDO; 0: no contract. Kind A, from version 14. */
uint32_t Adapter_Read_Contract_PDO(void) VEXA_NOEXCEPT;

/* The EC's wattage record of the PDOs, 32 bits as the EC holds them. Kind A, from version 14. */
uint32_t Adapter_Read_PDO_Watt(void) VEXA_NOEXCEPT;

/* Type byte of the last alert data object (ADO). Kind B, from version 14. */
uint32_t Adapter_Read_PD_ADO(void) VEXA_NOEXCEPT;

/* ---- What the source says about itself: its extended capabilities (VID, PID, XID, versions) and its status ---- */

/* USB vendor id of the source, 16 bits. Kind A, from version 14. */
uint32_t Adapter_Read_PD_Get_Source_Cap_Extend_VID(void) VEXA_NOEXCEPT;

/* Product id of the source, 16 bits. Kind A, from version 14. */
uint32_t Adapter_Read_PD_Get_Source_Cap_Extend_PID(void) VEXA_NOEXCEPT;

/* Id that the certification gave the source, 32 bits; 0: none. Kind A, from version 14. */
uint32_t Adapter_Read_PD_Get_Source_Cap_Extend_XID(void) VEXA_NOEXCEPT;

/* Firmware version of the source, one byte. Kind B, from version 14. */
uint32_t Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion(void) VEXA_NOEXCEPT;

/* Hardware version of the source, one byte. Kind B, from version 14. */
uint32_t Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion(void) VEXA_NOEXCEPT;

/* Temperature inside the source in degrees Celsius, one byte; 0: it does not tell. Kind B, from version 14. */
uint32_t Adapter_Read_PD_Get_Status_Temperature(void) VEXA_NOEXCEPT;

/* Event flags of the source's status, one byte. Kind B, from version 14. */
uint32_t Adapter_Read_PD_Get_Status_EventFlag(void) VEXA_NOEXCEPT;

/* ---- The cable's electronic marker (Emark) ---- */

/* Vendor id, 32 bits as the EC holds them. Kind B, from version 23. */
uint32_t Adapter_Read_PD_Get_Emark_VID(void) VEXA_NOEXCEPT;

/* Product id, 16 bits. Kind B, from version 23. */
uint32_t Adapter_Read_PD_Get_Emark_PID(void) VEXA_NOEXCEPT;

/* Id that the certification gave the cable, 32 bits. Kind B, from version 23. */
uint32_t Adapter_Read_PD_Get_Emark_XID(void) VEXA_NOEXCEPT;

/* What else the marker tells, 32 bits as the EC holds them. Kind B, from version 23. */
uint32_t Adapter_Read_PD_Get_Emark_Other(void) VEXA_NOEXCEPT;

/* ---- Wattages in watts, 16 bits; from version 28 on x64 machines, without a version on ARM64 ---- */

/*
 * Wattage of the adapter that the machine is sold with.
 *
 * VEXA_NOT_AVAILABLE: the machine has the ACPI device VEXA2025, with which the wattage is not told; or the version was
 * read and is below 28; or, on ARM64, the firmware's ACPI device can't be opened, refuses, or has no value.
 * VEXA_NO_ANSWER: an exchange failed on x64, or memory is short. A version that can't be read does not keep the wattage
 * from being read.
 * On ARM64 firmware that knows no wattage may make 65534 of its "no such value".
 */
uint32_t Adapter_Read_Standard_Watt(void) VEXA_NOEXCEPT;

/* Least wattage that is enough for the machine; otherwise as Adapter_Read_Standard_Watt. */
uint32_t Adapter_Read_Sufficient_Watt(void) VEXA_NOEXCEPT;

/* Wattage of the adapter at the champion port; otherwise as Adapter_Read_Standard_Watt. */
uint32_t Adapter_Read_ChampionPort_Watt(void) VEXA_NOEXCEPT;

/* ---- Charger, PD controller and data flags; the meaning of single bits is the EC's own ---- */

/* Configuration byte of the EC's power data. Kind B, from version 14. */
uint32_t Adapter_Read_Power_Big_Data_Config(void) VEXA_NOEXCEPT;

/* Charger interrupt byte. Kind B, from version 14. */
uint32_t Adapter_Read_Charger_Interrupt(void) VEXA_NOEXCEPT;

/* Charger information byte. Kind B, from version 14. */
uint32_t Adapter_Read_Charger_Information(void) VEXA_NOEXCEPT;

/*
 * Part number of the PD controller. From version 14.
 *
 * record: always filled; all zero on failure. A part number that is longer than the record is cut.
 * Returns 1 when it was read, also when it has no byte; 0 when the version is below 14 or can't be read, an exchange
 * failed, on ARM64, and when record is null.
 */
uint32_t Adapter_Read_PD_IC_PN(VexaPdIcPartNumber* record) VEXA_NOEXCEPT;

/*
 * Data flags: which of the EC's power data are new. Kind B, from version 14.
 * Reading changes them: above version 23 the flags that were read are cleared in the EC, so each is seen by one reader
 * only. Flags whose clearing fails are answered all the same, and once more by the next call.
 */
uint32_t Adapter_Read_Power_Data_Flag(void) VEXA_NOEXCEPT;

/* ---- Writing. 1: the EC accepted it. 0: it did not, the version is below the least one, or ARM64 ---- */

/* Clears all data flags. From version 14. */
uint32_t Adapter_Clear_Power_Data_Flag(void) VEXA_NOEXCEPT;

/*
 * Clears the charger interrupt and then the charger information. From version 14.
 * VEXA_NOT_AVAILABLE below version 14, when the version can't be read, and on ARM64; 0 when an exchange failed. When it
 * was the first, the information is left as it is.
 */
uint32_t Adapter_Clear_Charger_Data(void) VEXA_NOEXCEPT;

/* Sets the notification control byte. From version 23. value: 0 to 255, its bits are the EC's own. */
uint32_t Adapter_Set_Notify_Control(uint8_t value) VEXA_NOEXCEPT;

/* Has the EC watch for drops of the power (enable: 1) or no longer (0). From version 19; only bit 0 counts. */
uint32_t Power_Set_Monitor_PowerDropped(uint32_t enable) VEXA_NOEXCEPT;

/* ---- Power source ---- */

/* Power line as the system knows it: 0 on battery, 1 on external power, VEXA_AC_LINE_UNKNOWN. Any machine. */
uint32_t Power_Read_ACDCMode(void) VEXA_NOEXCEPT;

/*
 * 1: the machine runs on a USB-PD source. 0: it does not, the version is below 8, an exchange failed, or ARM64. A
 * machine that supports no normal adapter answers 1 on any external power. Where both kinds are supported, a version
 * below 11 can't tell them apart and answers 0.
 */
uint32_t Power_PD_Charging(void) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_ADAPTER_H_ */
