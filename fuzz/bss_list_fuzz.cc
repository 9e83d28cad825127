// The list of access points with whatever counts, offsets and sizes, and all that is made of its entries.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "radio/bss_list.h"
#include "radio/max_rate.h"
#include "radio/scan_classifier.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr uint8_t kSsid[] = {'h', 'o', 'm', 'e'};
  constexpr vexa::MacAddress kBssid = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
  const vexa::BssList list({data, size});
  vexa::ScanClassifier classifier;
  for (size_t i = 0; i < list.size(); ++i) {
    const vexa::BssEntry entry = list[i];
    if (entry.ssid.size() > vexa::kMaxSsidLength) std::abort();
    if (entry.elements.data() + entry.elements.size() > data + size) std::abort();
    classifier.Add(entry.frequency_khz, entry.rssi_dbm);
    (void)vexa::MaxRateMbps(entry.elements);
  }
  const size_t counted = static_cast<size_t>(classifier.band_2_4ghz().count) +
                         static_cast<size_t>(classifier.band_5ghz().count) +
                         static_cast<size_t>(classifier.band_6ghz().count);
  if (counted > list.size()) std::abort();
  const auto found = list.Find(kSsid, kBssid);
  if (found && (found->bssid != kBssid || found->ssid.size() != sizeof kSsid)) std::abort();
  return 0;
}
