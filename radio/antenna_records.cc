#include "radio/antenna_records.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vexa {
namespace {

constexpr int32_t kLeastDbm = -127;
constexpr int32_t kGreatestDbm = -1;

template <typename Number>
std::optional<Number> Read(Bytes record, size_t offset) {
  if (record.size() < sizeof(Number) || offset > record.size() - sizeof(Number)) return std::nullopt;
  Number number;
  std::memcpy(&number, record.data() + offset, sizeof number);
  return number;
}

std::optional<int32_t> ReadDbm(Bytes record, size_t offset) {
  const std::optional<int32_t> dbm = Read<int32_t>(record, offset);
  return dbm && *dbm >= kLeastDbm && *dbm <= kGreatestDbm ? dbm : std::nullopt;
}

}  // namespace

bool AdapterListHolds(Bytes list, const AdapterId& adapter) noexcept {
  const std::optional<uint32_t> count = Read<uint32_t>(list, 0);
  if (!count) return false;
  list = list.subspan(sizeof *count);
  const size_t whole = std::min<size_t>(*count, list.size() / adapter.size());
  for (size_t i = 0; i < whole; ++i) {
    if (std::ranges::equal(list.subspan(i * adapter.size(), adapter.size()), adapter)) return true;
  }
  return false;
}

AntennaReadings ReadBssStatistics(Bytes record, const MacAddress& bssid) noexcept {
  constexpr size_t kAntennas = 6, kReadings = 8;
  const std::optional<MacAddress> address = Read<MacAddress>(record, 0);
  const std::optional<uint16_t> antennas = Read<uint16_t>(record, kAntennas);
  if (!address || *address != bssid || !antennas) return {};
  AntennaReadings readings;
  if (*antennas >= 1) readings.main_dbm = ReadDbm(record, kReadings);
  if (*antennas >= 2) readings.aux_dbm = ReadDbm(record, kReadings + sizeof(int32_t));
  return readings;
}

AntennaReadings ReadStatisticsOid(Bytes record) noexcept {
  return {.main_dbm = ReadDbm(record, 0), .aux_dbm = ReadDbm(record, sizeof(int32_t))};
}

}  // namespace vexa
