/*
 * System inventory: board, BIOS, processor, memory, disks, displays, adapters. The exports WMIGet* that ask the system's
 * WMI classes (Win32_*, MSFT_*, WmiMonitor*); the values and their units are those of the classes.
 *
 * com_flag, last argument of every function: non-zero initialises COM for the call; with 0 the calling thread must be in
 * the multithreaded apartment already. On a thread of a single-threaded apartment every call fails.
 *
 * Waits: a call is one WMI query unless stated otherwise. Each query may take 5 seconds for the connection and 5 seconds
 * for the query; fetching its rows has no bound. At most 8 queries of a process connect at once; waiting for a turn is
 * part of the first 5 seconds. InitializeWinIo is not needed. Threads: any, at any time.
 *
 * Numbers: VEXA_NOT_AVAILABLE when the query failed, or when no row has the value.
 *
 * Texts: the answer is written into the caller's buffer and terminated; it is empty when a step failed or nothing was
 * found. THE BUFFER'S SIZE IS NOT KNOWN to the library, and an answer is never cut: it must hold the longest answer that
 * the machine can give. Each function states a least size, a constant VEXA_..._CAPACITY in characters with the
 * terminator; it covers every machine that keeps to the standards (SMBIOS, DDR, NVMe), but a system with hundreds of
 * devices, or firmware with hostile texts, can answer more, and then writes beyond such a buffer.
 *
 * To learn the length: every text function returns the number of characters of its answer, without the terminator, and
 * with a null buffer it asks and returns that number without writing. A second call can answer longer when hardware was
 * plugged in meanwhile, so leave room. 0 stands for an empty answer.
 *
 * Formats, stable from this version on:
 *  - one value per row: the rows' values, joined with ";", in the order of WMI; rows without the value are left out;
 *  - several values per row: the values joined with "," in the order stated, each place kept also when its value is
 *    missing (",,"); rows joined with ";". A row without any of the values is left out;
 *  - numbers inside texts are decimal, 64-bit ones in full; a 32-bit one above 2147483647 shows as a negative number,
 *    as WMI delivers it.
 * A value that holds a joiner is not marked or changed: "Maker Co., Ltd." as the first of five values makes six fields,
 * and "a;b" makes two rows. Who takes such a text apart counts the fields of each row, and takes the fields of known form
 * (numbers) from the end.
 */
#ifndef VEXA_INVENTORY_H_
#define VEXA_INVENTORY_H_

#include <wchar.h>

#include "base.h"

/* Least sizes of buffers in characters, terminator included. */
#define VEXA_INVENTORY_CAPACITY 4096 /* enough wherever one of the sizes below is */

#define VEXA_90_NUMBER_CAPACITY 256
#define VEXA_BIOS_MANUFACTURE_CAPACITY 256
#define VEXA_BIOS_RELEASE_DATE_CAPACITY 64
#define VEXA_BIOS_VERSION_CAPACITY 256
#define VEXA_BOARD_UUID_CAPACITY 64
#define VEXA_CARD_READER_CAPTION_CAPACITY 1024
#define VEXA_COMPUTER_FAMILY_NAME_CAPACITY 256
#define VEXA_CPU_INFO_CAPACITY 512
#define VEXA_EXTERN_MONITOR_PROP_LIST_CAPACITY 4096
#define VEXA_GPU_INFO_CAPACITY 1024
#define VEXA_HDD_CAPTION_CAPACITY 2048
#define VEXA_HDD_INFO_CAPACITY 4096
#define VEXA_HDD_LIST_CAPACITY 1024
#define VEXA_HDD_MODEL_CAPACITY 2048
#define VEXA_HDD_SIZE_CAPACITY 1024
#define VEXA_HDD_USAGE_CAPACITY 4096 /* each of both buffers */
#define VEXA_LCD_MODEL_CAPACITY 512
#define VEXA_MAC_ADDRESS_CAPACITY 1024
#define VEXA_MEM_FREQUENCY_CAPACITY 16
#define VEXA_MEM_INFO_CAPACITY 4096
#define VEXA_MEM_MANUFACTURE_CAPACITY 1024
#define VEXA_MEM_MODEL_CAPACITY 1024
#define VEXA_MEM_SIZE_CAPACITY 1024
#define VEXA_MODEL_NAME_CAPACITY 256
#define VEXA_OS_INFO_CAPACITY 256
#define VEXA_PHYSICAL_DISK_INFO_CAPACITY 4096
#define VEXA_PRODUCT_NAME_CAPACITY 256
#define VEXA_SD_CARD_CAPTION_CAPACITY 1024
#define VEXA_SD_CARD_SIZE_CAPACITY 2048
#define VEXA_SN_CAPACITY 256
#define VEXA_SSD_LIST_CAPACITY 1024
#define VEXA_SSD_MODEL_CAPACITY 2048
#define VEXA_SSD_USAGE_CAPACITY 4096 /* each of both buffers */
#define VEXA_SYSTEM_CHASSIS_TYPES_CAPACITY 16
#define VEXA_TYPE2_SN_CAPACITY 256
#define VEXA_WIFI_BYTES_PERSEC_CAPACITY 256

/* Answer of WMIGetCPUArchitecture on ARM64 machines. */
#define VEXA_CPU_ARCHITECTURE_ARM64 12u

VEXA_BEGIN_DECLS

/* ---- Board and BIOS (SMBIOS texts) ---- */

/* UUID of the machine, such as "4C4C4544-0051-3610-8052-B4C04F4E4431". text: VEXA_BOARD_UUID_CAPACITY. */
uint32_t WMIGetBoardUUID(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Product family. text: VEXA_COMPUTER_FAMILY_NAME_CAPACITY. */
uint32_t WMIGetComputerFamilyName(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Product name of the system. text: VEXA_PRODUCT_NAME_CAPACITY. */
uint32_t WMIGetProductName(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Product name of the baseboard. text: VEXA_MODEL_NAME_CAPACITY. */
uint32_t WMIGetModelName(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Manufacturer of the baseboard, the function's name notwithstanding. text: VEXA_BIOS_MANUFACTURE_CAPACITY. */
uint32_t WMIGetBiosManufacture(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Name of the BIOS, which carries its version. text: VEXA_BIOS_VERSION_CAPACITY. */
uint32_t WMIGetBiosVersion(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Date of the BIOS in CIM form, "20250317000000.000000+000". text: VEXA_BIOS_RELEASE_DATE_CAPACITY. */
uint32_t WMIGetBiosReleaseDate(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Serial number of the system. text: VEXA_SN_CAPACITY. */
uint32_t WMIGetSN(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Serial number of the baseboard (SMBIOS type 2). text: VEXA_TYPE2_SN_CAPACITY. */
uint32_t WMIGetType2SN(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* The fifth of the firmware's OEM strings (SMBIOS type 11), the order number; empty when there are fewer.
 * text: VEXA_90_NUMBER_CAPACITY. */
uint32_t WMIGet90Number(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * Form of the machine by its first chassis type (SMBIOS type 3): "Notebook" for 10, 30, 31, 32, "Desktop" for 3, 13, 35,
 * "unknown" for every other one. Empty when the query failed or no row has one. text: VEXA_SYSTEM_CHASSIS_TYPES_CAPACITY.
 */
uint32_t WMIGetSystemChassisTypes(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* ---- Operating system and processor ---- */

/* Caption and architecture with a blank between, "Microsoft Windows 11 Pro 64-bit"; the one alone when the other is not
 * there. Two queries. text: VEXA_OS_INFO_CAPACITY. */
uint32_t WMIGetOSInfo(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Name of each processor. text: VEXA_CPU_INFO_CAPACITY. */
uint32_t WMIGetCPUInfo(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Architecture by Win32_Processor: 0 x86, 5 ARM, 9 x64, VEXA_CPU_ARCHITECTURE_ARM64. */
uint32_t WMIGetCPUArchitecture(uint32_t com_flag) VEXA_NOEXCEPT;

/* Load of the last listed processor in percent. WMI measures it while it answers, for about a second. */
uint32_t WMIGetCPUUsg(uint32_t com_flag) VEXA_NOEXCEPT;

/* ---- Memory ---- */

/* Part number of each module. text: VEXA_MEM_MODEL_CAPACITY. */
uint32_t WMIGetMemModel(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Capacity of each module in bytes. text: VEXA_MEM_SIZE_CAPACITY. */
uint32_t WMIGetMemSize(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Manufacturer of each module. text: VEXA_MEM_MANUFACTURE_CAPACITY. */
uint32_t WMIGetMemManufacture(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* "manufacturer,part number,capacity in bytes,speed in MT/s,slot" of each module. text: VEXA_MEM_INFO_CAPACITY. */
uint32_t WMIGetMemInfo(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Configured speed of the last listed module in MT/s as decimal text; "-1" when the query failed or no module has one.
 * text: VEXA_MEM_FREQUENCY_CAPACITY. */
uint32_t WMIGetMemFrequency(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* ---- Disks: hard disks and solid-state disks by media type; the storage classes need Windows 8 or later ---- */

/* "model,size in bytes,media type,device id" of each disk; media type 3: hard disk, 4: solid-state disk.
 * text: VEXA_PHYSICAL_DISK_INFO_CAPACITY. */
uint32_t WMIGetPhysicalDiskInfo(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* "model,size in bytes,media type" of each hard disk. text: VEXA_HDD_INFO_CAPACITY. */
uint32_t WMIGetHDDInfo(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Model of each hard disk. text: VEXA_HDD_MODEL_CAPACITY. */
uint32_t WMIGetHDDModel(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Device id of each hard disk. text: VEXA_HDD_LIST_CAPACITY. */
uint32_t WMIGetHDDList(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Model of each solid-state disk. text: VEXA_SSD_MODEL_CAPACITY. */
uint32_t WMIGetSSDModel(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Device id of each solid-state disk. text: VEXA_SSD_LIST_CAPACITY. */
uint32_t WMIGetSSDList(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Size in bytes of each fixed disk of any kind. text: VEXA_HDD_SIZE_CAPACITY. */
uint32_t WMIGetHDDSize(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Caption of each fixed disk of any kind. text: VEXA_HDD_CAPTION_CAPACITY. */
uint32_t WMIGetHDDCaption(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * Free space of the hard disks' volumes.
 *
 * free_bytes: per disk the free bytes of its volumes in the order of the partitions, joined with ","; disks joined with
 * ";". A partition without a volume, or whose volume can't be asked, is left out. A disk without volumes, or whose number
 * can't be found, keeps its place as an empty one, so that a text of ";" stands for two such disks.
 * serials: the serial numbers of the same disks in the same order, as WMI gives them, joined with ";". A disk without a
 * serial number is in neither text; a serial number that holds ";" counts as two disks.
 * Each buffer: VEXA_HDD_USAGE_CAPACITY; either may be null.
 *
 * Returns the length of the longer text; with room for it and its terminator either buffer is large enough.
 *
 * A disk is found by its serial number: the last disk whose serial contains it, without regard to blanks around it. Two
 * disks of which one's serial is part of the other's can thus show the same volumes.
 *
 * One query for the serial numbers, two per disk and one per volume, each with the waits of a query: 3 disks with 4
 * volumes each are 19 queries.
 */
uint32_t WMIGetHDDUsage(wchar_t* free_bytes, wchar_t* serials, uint32_t com_flag) VEXA_NOEXCEPT;

/* The same of the solid-state disks. Each buffer: VEXA_SSD_USAGE_CAPACITY. */
uint32_t WMIGetSSDUsage(wchar_t* free_bytes, wchar_t* serials, uint32_t com_flag) VEXA_NOEXCEPT;

/* Caption of the built-in card reader, when it is of the known kind. text: VEXA_CARD_READER_CAPTION_CAPACITY. */
uint32_t WMIGetCardReaderCaption(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Caption of each removable disk. text: VEXA_SD_CARD_CAPTION_CAPACITY. */
uint32_t WMIGetSDCardCaption(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* "size in bytes,caption" of each removable disk; a reader without a card has no size and is left out.
 * text: VEXA_SD_CARD_SIZE_CAPACITY. */
uint32_t WMIGetSDCardSize(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* ---- Displays and graphics ---- */

/* Caption of each video controller. text: VEXA_GPU_INFO_CAPACITY. */
uint32_t WMIGetGPUInfo(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Load of the graphics engines of all processes, added up, in percent: 0 to 100; 0 also when there is no engine. */
uint32_t WMIGetGPUUsg(uint32_t com_flag) VEXA_NOEXCEPT;

/* Name of each monitor, built-in or external, that tells one in its EDID. text: VEXA_LCD_MODEL_CAPACITY. */
uint32_t WMIGetLCDModel(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* Brightness of the built-in display in percent. */
uint32_t WMIGetMonitorBrightness(uint32_t com_flag) VEXA_NOEXCEPT;

/* Number of external monitors. 0 also when the query failed. */
uint32_t WMIGetExternMonitorNum(uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * "instance name,vot=technology" of each external monitor; the technology is the decimal number of
 * D3DKMDT_VIDEO_OUTPUT_TECHNOLOGY, such as 5 for HDMI and 10 for DisplayPort.
 * text: VEXA_EXTERN_MONITOR_PROP_LIST_CAPACITY.
 */
uint32_t WMIGetExternMonitorPropList(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/* ---- Network ---- */

/* Address of each physical adapter, "00:11:22:33:44:55". text: VEXA_MAC_ADDRESS_CAPACITY. */
uint32_t WMIGetMacAddress(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

/*
 * Name of the Wi-Fi adapter.
 *
 * name: receives a text that the caller frees with CoTaskMemFree, empty when there is no Wi-Fi adapter (then nothing is
 * asked) or when the query failed; null only when memory is short. Not null. Returns the text's length, 0 when it is
 * empty or name is null.
 */
uint32_t WMIGetWiFiCardName(wchar_t** name, uint8_t com_flag) VEXA_NOEXCEPT;

/*
 * "received,sent" of the Wi-Fi adapter in bytes per second, each "0" when the system counts no such adapter. Empty when
 * a query failed. Two queries; the first call of a process may read the Wi-Fi state first, as RF_WiFiCardName does, and
 * like that needs callers who don't call it from two threads at once. text: VEXA_WIFI_BYTES_PERSEC_CAPACITY.
 */
uint32_t WMIGetWiFiBytesPersec(wchar_t* text, uint32_t com_flag) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_INVENTORY_H_ */
