// What the Wi-Fi chip vendors' libraries answer, as bytes of a length that they tell: nothing behind it is read. All
// numbers are little-endian.
#ifndef VEXA_RADIO_ANTENNA_RECORDS_H_
#define VEXA_RADIO_ANTENNA_RECORDS_H_

#include <array>
#include <cstdint>
#include <optional>

#include "radio/bss_list.h"
#include "radio/elements.h"

namespace vexa {

using AdapterId = std::array<uint8_t, 16>;  // the bytes of a GUID

// Nothing for an antenna that the record does not hold, or whose reading can't be one: -127 to -1 dBm are.
struct AntennaReadings {
  std::optional<int32_t> main_dbm, aux_dbm;
};

// WifiGetAdapterList: a 32-bit count, then that many ids of 16 bytes. Whether the adapter is among those that are there
// as a whole.
[[nodiscard]] bool AdapterListHolds(Bytes list, const AdapterId& adapter) noexcept;

// WifiGetBSSConfigurationStatistics: the 6 bytes of the BSSID, a 16-bit number of antennas, then one signed 32-bit dBm
// each, main before auxiliary. Nothing in a record of another access point.
[[nodiscard]] AntennaReadings ReadBssStatistics(Bytes record, const MacAddress& bssid) noexcept;

// OID 0xFFEDD012: signed 32-bit dBm of the main and of the auxiliary antenna.
[[nodiscard]] AntennaReadings ReadStatisticsOid(Bytes record) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_ANTENNA_RECORDS_H_
