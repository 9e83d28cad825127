/*
 * What is attached to the machine besides Wi-Fi: Bluetooth devices, USB ports and sticks, HDMI, and the kind of network
 * link.
 *
 * The Bluetooth and the USB exports each answer from a snapshot of their own, which the first call of any of them
 * collects. It is never refreshed after that: a program that wants a later picture loads the library anew. Only a failed
 * Bluetooth collection is tried again, by every call, until it succeeds once. RF_Net_Connected_Type and RF_USBISTYPEC
 * look each time.
 *
 * InitializeWinIo is not needed, and nothing here touches the embedded controller.
 *
 * Threads: any, but the snapshots are not locked: calls of the Bluetooth exports must not overlap, nor those of the USB
 * exports.
 */
#ifndef VEXA_PERIPHERALS_H_
#define VEXA_PERIPHERALS_H_

#include <wchar.h>

#include "base.h"

/* RF_USBISTYPEC. */
#define VEXA_USB_PORT_UNKNOWN 0u /* no such device, or its hub does not tell */
#define VEXA_USB_PORT_OTHER 1u
#define VEXA_USB_PORT_TYPE_C 2u

VEXA_BEGIN_DECLS

/* ---- Bluetooth ---- */

/*
 * Collecting asks the Bluetooth radios for the devices that are connected now; there is no inquiry over the air, and the
 * library sets no time limit on the system's calls. Without a Bluetooth radio the values stay VEXA_NOT_COLLECTED, and that
 * counts as success. On systems without bluetoothapis.dll each call fails.
 */

/*
 * Whether devices are connected: 1 or 0, of the last radio. VEXA_NOT_COLLECTED: there is no radio. VEXA_COLLECT_FAILED:
 * the Bluetooth system did not answer.
 */
uint32_t RF_BTIsUsed(void) VEXA_NOEXCEPT;

/*
 * Number of connected devices on the last radio that has any. VEXA_NOT_COLLECTED: no radio, or no device on any.
 * VEXA_COLLECT_FAILED: the Bluetooth system did not answer.
 */
uint32_t RF_BTConnectedNum(void) VEXA_NOEXCEPT;

/*
 * The kinds of these devices, one word for each in the order of the system's list, each ended by ";". By the major device
 * class of the Bluetooth assigned numbers (bits 8 to 12 of the class of device), spelled exactly so:
 *   "Computer;" "Phone;" "LAN/NetWortk Access point;" "Audio/Video;" "Peripheral;" "Imaging;" "Wearable;" "Toy;" "Health;"
 *   "Uncategorized;" and "Others;" for the rest.
 * VEXA_NOT_COLLECTED_TEXT: no radio, or no device on any. VEXA_COLLECT_FAILED_TEXT: the Bluetooth system did not answer,
 * or memory is short.
 */
VexaText RF_BTConnectedType(void) VEXA_NOEXCEPT;

/* ---- USB, disks, HDMI ---- */

/*
 * Collecting walks the USB devices that are present and asks the hub of each about its port. It also makes two WMI
 * queries, each of which may wait 5 seconds for the connection and 5 seconds for the query; COM is initialised for them as
 * a multithreaded apartment, so on a thread of a single-threaded apartment they fail. It happens once per process,
 * whatever fails: a device whose parent, hub or port can't be asked is left out.
 */

/* 1: a disk was busy while collecting (its share of time was above 0 percent), else 0, also when WMI did not answer. */
uint32_t RF_USBIsTranster(void) VEXA_NOEXCEPT;

/*
 * Number of USB mass-storage devices by the USB version of their device descriptor (bcdUSB, USB 2.0 section 9.6.1), as one
 * JSON object with text values, for instance {"usb2_0":"1","usb2_1":"0","usb3_0":"0","usb3_1":"2","usb3_2":"0"}. Devices
 * of another version are in no count. A mass-storage device is one whose descriptor leaves the class to its interfaces and
 * whose description in the system is "USB Mass Storage Device"; where the system's language has another text for it,
 * none is found.
 * VEXA_NOT_COLLECTED_TEXT: the system can't list its USB devices, or memory is short.
 */
VexaText RF_USBNum(void) VEXA_NOEXCEPT;

/*
 * Port number of each of these devices on its hub, in decimal, each followed by ","; empty when there is none. Whole
 * numbers only: what does not fit the text is left out.
 * VEXA_NOT_COLLECTED_TEXT: the system can't list its USB devices, or memory is short.
 */
VexaText RF_USBPort(void) VEXA_NOEXCEPT;

/*
 * Number of user-accessible ports with a device on them whose connector is not type C, and of those whose connector is, as
 * the hubs report it. A port counts once for each USB device present on it.
 */
uint32_t RF_USB_A_Num(void) VEXA_NOEXCEPT;
uint32_t RF_USB_C_Num(void) VEXA_NOEXCEPT;

/* 1: an HDMI monitor was connected while collecting, else 0, also when WMI did not answer. */
uint32_t RF_USBHDMIIsUsed(void) VEXA_NOEXCEPT;

/*
 * Whether a USB device is plugged into a type-C port.
 *
 * device_instance_id: for instance L"USB\\VID_0781&PID_5581\\4C530001", terminated; case does not matter. Null is no device.
 * Returns VEXA_USB_PORT_TYPE_C or VEXA_USB_PORT_OTHER; VEXA_USB_PORT_UNKNOWN when no such USB device is present or its hub
 * can't be asked.
 */
uint32_t RF_USBISTYPEC(const wchar_t* device_instance_id) VEXA_NOEXCEPT;

/* ---- Network link ---- */

/*
 * The kind of the network link, from the hardware interfaces that are up: "ETHERNET", else "WWANPP2" (mobile broadband), else
 * "WIFI", else "Unknow" (spelled so), also when the interface table can't be read. Empty only when memory is short.
 */
VexaText RF_Net_Connected_Type(void) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_PERIPHERALS_H_ */
