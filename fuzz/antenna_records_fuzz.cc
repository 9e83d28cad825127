// The answers of the Wi-Fi chip vendors' libraries.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "radio/antenna_records.h"

namespace {

void Check(const vexa::AntennaReadings& readings) {
  for (const auto& dbm : {readings.main_dbm, readings.aux_dbm}) {
    if (dbm && (*dbm < -127 || *dbm > -1)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr vexa::AdapterId kAdapter = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  constexpr vexa::MacAddress kBssid = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
  const vexa::Bytes record(data, size);
  if (vexa::AdapterListHolds(record, kAdapter) && size < 4 + kAdapter.size()) std::abort();
  Check(vexa::ReadBssStatistics(record, kBssid));
  Check(vexa::ReadStatisticsOid(record));
  return 0;
}
