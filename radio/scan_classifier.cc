#include "radio/scan_classifier.h"

#include <algorithm>

namespace vexa {
namespace {

constexpr size_t kGroupsPerBand = 4;

struct Range {
  uint32_t from_khz, to_khz;  // `to` is the first above it

  [[nodiscard]] constexpr bool Holds(uint32_t khz) const { return khz >= from_khz && khz < to_khz; }
};
// Each range is the group of the same index.
using Ranges = std::array<Range, kGroupsPerBand>;

constexpr uint32_t kFirst5GhzKhz = 5'001'000;
constexpr uint32_t kFirst6GhzRssiKhz = 5'851'000;

// The channels 1, 6 and 11; the last group takes everything else.
constexpr Ranges kChannels = {
    {{2'412'000, 2'413'000}, {2'437'000, 2'438'000}, {2'462'000, 2'463'000}, {0, kFirst5GhzKhz}}};
constexpr Ranges k5GhzBands = {
    {{5'151'000, 5'250'000}, {5'251'000, 5'350'000}, {5'471'000, 5'725'000}, {5'726'000, 5'850'000}}};
// 7,124,999 belongs to the last one.
constexpr Ranges k6GhzBands = {
    {{5'926'000, 6'425'000}, {6'426'000, 6'525'000}, {6'526'000, 6'875'000}, {6'876'000, 7'125'000}}};

// Whether there is a group for it.
bool Count(BandCounts<kGroupsPerBand>& band, const Ranges& ranges, uint32_t frequency_khz) {
  const auto range = std::ranges::find_if(ranges, [=](const Range& r) { return r.Holds(frequency_khz); });
  if (range == ranges.end()) return false;
  ++band.groups[static_cast<size_t>(range - ranges.begin())].count;
  ++band.count;
  return true;
}

}  // namespace

void RssiBuckets::Add(int32_t rssi_dbm) noexcept {
  constexpr int32_t kStep = 10;
  // From -11 down to -99.
  if (rssi_dbm >= -kStep || rssi_dbm <= -kStep * (static_cast<int32_t>(counts_.size()) + 1)) return;
  if (rssi_dbm % kStep != 0) ++counts_[static_cast<size_t>(-rssi_dbm / kStep - 1)].count;
}

void ScanClassifier::Add(uint32_t frequency_khz, int32_t rssi_dbm) noexcept {
  if (frequency_khz < kFirst5GhzKhz) {
    Count(band_2_4ghz_, kChannels, frequency_khz);
    band_2_4ghz_.rssi.Add(rssi_dbm);
    return;
  }
  if (!Count(band_5ghz_, k5GhzBands, frequency_khz)) Count(band_6ghz_, k6GhzBands, frequency_khz);
  // Kept: the buckets go by one limit and not by the bands, so a frequency in no band is still counted here.
  (frequency_khz < kFirst6GhzRssiKhz ? band_5ghz_ : band_6ghz_).rssi.Add(rssi_dbm);
}

}  // namespace vexa
