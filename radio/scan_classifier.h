// Access points by band, channel group and signal strength.
#ifndef VEXA_RADIO_SCAN_CLASSIFIER_H_
#define VEXA_RADIO_SCAN_CLASSIFIER_H_

#include <array>
#include <cstdint>
#include <string>

#include "radio/count_text.h"

namespace vexa {

// How many access points are at each signal strength, in steps of ten dBm.
class RssiBuckets {
 public:
  // Kept: a bucket holds the nine values between two multiples of ten; a multiple itself is in none.
  void Add(int32_t rssi_dbm) noexcept;
  [[nodiscard]] std::string Text() const { return CountText(counts_); }

 private:
  std::array<NamedCount, 9> counts_ = {{{"-10~-20", 0},
                                        {"-20~-30", 0},
                                        {"-30~-40", 0},
                                        {"-40~-50", 0},
                                        {"-50~-60", 0},
                                        {"-60~-70", 0},
                                        {"-70~-80", 0},
                                        {"-80~-90", 0},
                                        {"-90~-100", 0}}};
};

template <size_t kGroups>
struct BandCounts {
  int32_t count = 0;
  std::array<NamedCount, kGroups> groups;
  RssiBuckets rssi;
};

// Frequencies are those of the channel's centre, signal strengths in dBm.
class ScanClassifier {
 public:
  void Add(uint32_t frequency_khz, int32_t rssi_dbm) noexcept;

  [[nodiscard]] const auto& band_2_4ghz() const noexcept { return band_2_4ghz_; }
  [[nodiscard]] const auto& band_5ghz() const noexcept { return band_5ghz_; }
  [[nodiscard]] const auto& band_6ghz() const noexcept { return band_6ghz_; }

 private:
  BandCounts<4> band_2_4ghz_{.groups = {{{"ch1", 0}, {"ch6", 0}, {"ch11", 0}, {"others", 0}}}};
  BandCounts<4> band_5ghz_{.groups = {{{"band1", 0}, {"band2", 0}, {"band3", 0}, {"band4", 0}}}};
  BandCounts<4> band_6ghz_{.groups = {{{"nuii5", 0}, {"nuii6", 0}, {"nuii7", 0}, {"nuii8", 0}}}};
};

}  // namespace vexa

#endif  // VEXA_RADIO_SCAN_CLASSIFIER_H_
