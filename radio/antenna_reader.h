// Signal strength per antenna, from the Wi-Fi chip vendor's library.
#ifndef VEXA_RADIO_ANTENNA_READER_H_
#define VEXA_RADIO_ANTENNA_READER_H_

#include <windows.h>

#include <cstdint>
#include <optional>

#include "radio/bss_list.h"

namespace vexa {

// Fills both readings, in dBm. `access_point_dbm` is the signal strength of the connected access point, `bssid` its
// address: a reading that no vendor's library gives is that, or unchanged without it. Waits 1000 ms where the Intel
// component is.
void ReadAntennas(const GUID& interface_id, const MacAddress& bssid, std::optional<int32_t> access_point_dbm,
                  int32_t& main_dbm, int32_t& aux_dbm);

}  // namespace vexa

#endif  // VEXA_RADIO_ANTENNA_READER_H_
