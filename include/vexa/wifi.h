/*
 * Wi-Fi: the link, and the access points around it. The exports RF_WiFi*, RF_PhyMode and RF_AP_MAC.
 *
 * All of them answer from one snapshot per process. The first call collects it; when that succeeds, every later call
 * answers from memory and nothing is ever scanned again in this process. After a failed collection each call tries
 * again. The system's own list of access points is read; no radio scan is started.
 *
 * A collection makes a handful of WLAN API calls, two of them for the list of access points per connected interface,
 * and loads the Wi-Fi chip vendor's library for the antenna readings when there is one; with an Intel component it
 * waits 1000 ms. The library sets no time limit on those calls: the system's WLAN service and the vendor's library end
 * them. Each collection leaves one WLAN client handle open for the life of the process.
 *
 * Three states of a value can be told apart. VEXA_NOT_COLLECTED or VEXA_NOT_COLLECTED_TEXT: nothing has filled it,
 * since there is no Wi-Fi interface, none is connected, the link in use is not Wi-Fi (counts), or the system does not
 * tell. VEXA_COLLECT_FAILED or VEXA_COLLECT_FAILED_TEXT: the collection failed, also without wlanapi.dll; the trace
 * tells at which call. Anything else is the value. Numbers are to be read as int32_t.
 *
 * A failed collection marks connected, card name, RSSI, channel, PHY mode, AP MAC and maximum rate; the counts, their
 * texts and the antenna readings keep what they held. A value that a later successful collection does not fill keeps
 * the mark of the failure before it.
 *
 * The count texts are JSON objects without blanks whose values are decimal texts, for instance
 * {"ch1":"3","ch11":"0","ch6":"2","others":"1"}; keys are in ascending order of their characters. All text but the
 * card's name is ASCII. Counted are the access points of the connected network's name (SSID), the connected one
 * included.
 *
 * Preconditions: none; InitializeWinIo is not needed. Threads: any, but one at a time: the snapshot has no lock, so
 * callers on several threads serialise themselves over all functions of this header and WMIGetWiFiBytesPersec.
 */
#ifndef VEXA_WIFI_H_
#define VEXA_WIFI_H_

#include <wchar.h>

#include "base.h"

/* The marks of base.h by names of this family. */
#define VEXA_WIFI_NOT_COLLECTED VEXA_NOT_COLLECTED
#define VEXA_WIFI_NOT_COLLECTED_TEXT VEXA_NOT_COLLECTED_TEXT
#define VEXA_WIFI_FAILED VEXA_COLLECT_FAILED
#define VEXA_WIFI_FAILED_TEXT VEXA_COLLECT_FAILED_TEXT

/* Least size in characters, terminator included, of the buffer of RF_WiFiCardName. */
#define VEXA_WIFI_CARD_NAME_CAPACITY 256

/* Least size in bytes, terminator included, of the buffer of RF_AP_MAC. */
#define VEXA_WIFI_AP_MAC_CAPACITY 13

VEXA_BEGIN_DECLS

/* ---- The link ---- */

/*
 * 1: a Wi-Fi interface is connected, 0: none is; VEXA_NOT_COLLECTED: there is no Wi-Fi interface;
 * VEXA_COLLECT_FAILED.
 */
uint32_t RF_WiFiIsConnected(void) VEXA_NOEXCEPT;

/*
 * Description of the Wi-Fi adapter: of the connected interface (the last one, if there are several), else of the first
 * interface. At most 255 UTF-16 code units, copied as the system gives them, unpaired surrogates included.
 *
 * name: buffer of at least VEXA_WIFI_CARD_NAME_CAPACITY characters; always terminated. Receives the name,
 * L"init_string" without a Wi-Fi interface, or L"error_string" when the collection failed.
 * Returns 0 when the text was copied, whichever of the three it is; 22 (EINVAL) when name is null.
 */
uint32_t RF_WiFiCardName(wchar_t* name) VEXA_NOEXCEPT;

/* Signal strength of the connected access point in dBm, negative. VEXA_NOT_COLLECTED, VEXA_COLLECT_FAILED. */
uint32_t RF_WiFiRssi(void) VEXA_NOEXCEPT;

/* Channel number of the connected interface. VEXA_NOT_COLLECTED, VEXA_COLLECT_FAILED. */
uint32_t RF_WiFiChannel(void) VEXA_NOEXCEPT;

/*
 * Kind of the connection: "FHSS", "DHSS", "IR baseband", "OFDM", "HRDSSS", "ERP", "802.11n", "802.11ac", "802.11ad",
 * "802.11ax", "802.11be", or "Other" for a value that is none of them (the names stand for the values 1 to 11 of the
 * WLAN API's DOT11_PHY_TYPE). "init_string", "error_string".
 */
VexaText RF_PhyMode(void) VEXA_NOEXCEPT;

/*
 * Vendor prefix of the connected access point's address: its first three octets as "00:11:22", upper-case hexadecimal.
 * The whole address is neither stored nor given.
 *
 * mac: buffer of at least VEXA_WIFI_AP_MAC_CAPACITY bytes; always terminated. Receives the prefix, "init_string" or
 * "error_string". Null is ignored.
 */
void RF_AP_MAC(char* mac) VEXA_NOEXCEPT;

/*
 * Greatest rate that the connected access point can receive, in Mbit/s, cut to a whole number: the largest of its HT,
 * VHT and HE rates (IEEE 802.11-2020 clauses 19.5 and 21.5, IEEE 802.11ax clause 27.5) for 1 to 4 spatial streams at
 * the channel width it operates at, as its beacon tells. 0 when the beacon has no such element (802.11a, b and g).
 * VEXA_NOT_COLLECTED, VEXA_COLLECT_FAILED.
 */
uint32_t RF_WiFiMaxRate(void) VEXA_NOEXCEPT;

/*
 * Signal strength at the main and at the auxiliary antenna in dBm, as "-52:-58", main first. From the chip vendor's
 * library when there is one that answers, else both are the signal strength of the access point. "0:0": nothing was
 * read.
 */
VexaText RF_WiFi_Main_Aux_Rssi(void) VEXA_NOEXCEPT;

/*
 * ---- Access points per band ----
 *
 * Bands go by the centre frequency. VEXA_NOT_COLLECTED ("init_string"): no link, the link in use is not Wi-Fi, or no
 * collection has succeeded.
 */

/* Access points below 5001 MHz. */
uint32_t RF_WiFi_2_4G_AP_Num(void) VEXA_NOEXCEPT;

/* Access points in the four 5 GHz bands: the sum of RF_WiFi_5G_AP_Band_Num. */
uint32_t RF_WiFi_5G_AP_Num(void) VEXA_NOEXCEPT;

/* Access points in the four 6 GHz bands: the sum of RF_WiFi_6G_AP_NUII_Num. */
uint32_t RF_WiFi_6G_AP_Num(void) VEXA_NOEXCEPT;

/*
 * 2.4 GHz by channel; keys "ch1", "ch11", "ch6" and "others", the last for every other frequency below 5001 MHz.
 */
VexaText RF_WiFi_2_4G_AP_Ch_Num(void) VEXA_NOEXCEPT;

/*
 * 5 GHz by band; keys "band1" (5151 to 5250 MHz), "band2" (5251 to 5350), "band3" (5471 to 5725), "band4" (5726 to
 * 5850); the upper end does not belong to the band.
 */
VexaText RF_WiFi_5G_AP_Band_Num(void) VEXA_NOEXCEPT;

/*
 * 6 GHz by band; keys "nuii5" (5926 to 6425 MHz), "nuii6" (6426 to 6525), "nuii7" (6526 to 6875), "nuii8" (6876 to
 * 7124.999); the upper end does not belong to the band, but for the last.
 */
VexaText RF_WiFi_6G_AP_NUII_Num(void) VEXA_NOEXCEPT;

/*
 * ---- Access points by signal strength ----
 *
 * Keys "-10~-20", "-20~-30", ... "-90~-100". Each holds the nine values between its ends: an access point at exactly
 * -10, -20, ... -100 dBm, above -11 or below -99 is in none. The 5 GHz text covers 5001 MHz up to 5851 MHz, the 6 GHz
 * text everything above, also frequencies that are in no band. "init_string" as above.
 */
VexaText RF_WiFi_2_4G_AP_RSSI_Num(void) VEXA_NOEXCEPT;
VexaText RF_WiFi_5G_AP_RSSI_Num(void) VEXA_NOEXCEPT;
VexaText RF_WiFi_6G_AP_RSSI_Num(void) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_WIFI_H_ */
