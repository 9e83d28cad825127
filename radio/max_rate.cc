#include "radio/max_rate.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "radio/rate_tables.h"

namespace vexa {
namespace {

// The MCS maps of VHT and HE: two bits per stream count.
constexpr uint8_t kNotSupported = 3;
constexpr uint8_t kVhtHighestMcs[kNotSupported] = {7, 8, 9};
constexpr uint8_t kHeHighestMcs[kNotSupported] = {7, 9, 11};

constexpr uint8_t MapCode(uint16_t map, uint8_t streams) { return map >> 2 * (streams - 1) & 3; }

// What VHT and HE operate at.
struct Operating {
  ChannelWidth width;
  bool is_80_plus_80mhz = false;
};

// Nothing when the elements don't tell: the width that the access point supports then counts. HE Operation is not read.
std::optional<Operating> OperatingWidth(const RateElements& elements) {
  if (elements.ht_operation && !elements.ht_operation->is_40mhz) return Operating{ChannelWidth::k20};
  if (elements.vht_operation) {
    switch (elements.vht_operation->width) {
      case VhtOperation::Width::k80: return Operating{ChannelWidth::k80};
      case VhtOperation::Width::k160: return Operating{ChannelWidth::k160};
      case VhtOperation::Width::k80Plus80: return Operating{ChannelWidth::k160, true};
      case VhtOperation::Width::k20Or40: break;
    }
    const bool is_20mhz = !elements.ht_operation && elements.ht && !elements.ht->supports_40mhz;
    return Operating{is_20mhz ? ChannelWidth::k20 : ChannelWidth::k40};
  }
  // Without VHT this is the 2.4 GHz band, where nothing is wider.
  if (elements.ht_operation && !elements.vht) return Operating{ChannelWidth::k40};
  return std::nullopt;
}

uint16_t HtCandidate(const RateElements& elements) {
  if (!elements.ht) return 0;
  const bool is_40mhz = elements.ht->supports_40mhz && (!elements.ht_operation || elements.ht_operation->is_40mhz);
  const ChannelWidth width = is_40mhz ? ChannelWidth::k40 : ChannelWidth::k20;
  const bool is_short = is_40mhz ? elements.ht->short_interval_40mhz : elements.ht->short_interval_20mhz;
  const GuardInterval interval = is_short ? GuardInterval::k0_4us : GuardInterval::k0_8us;
  uint16_t best = 0;
  for (uint8_t streams = 1; streams <= kMaxStreams; ++streams) {
    const uint8_t mcs_bits = elements.ht->receive_mcs[streams - 1];
    if (mcs_bits == 0) continue;
    const auto mcs = static_cast<uint8_t>(std::bit_width(mcs_bits) - 1);
    best = std::max(best, VhtRate(streams, width, interval, mcs));
  }
  return best;
}

bool HasShortInterval(const RateElements& elements, ChannelWidth width) {
  switch (width) {
    // The bits of 20 and 40 MHz are in HT Capabilities, for VHT too.
    case ChannelWidth::k20: return elements.ht && elements.ht->short_interval_20mhz;
    case ChannelWidth::k40: return elements.ht && elements.ht->short_interval_40mhz;
    case ChannelWidth::k80: return elements.vht->short_interval_80mhz;
    default: return elements.vht->short_interval_160mhz;
  }
}

uint16_t VhtCandidate(const RateElements& elements, const std::optional<Operating>& operating) {
  if (!elements.vht) return 0;
  const ChannelWidth supported = elements.vht->supports_160mhz ? ChannelWidth::k160 : ChannelWidth::k80;
  const ChannelWidth width = operating ? std::min(operating->width, supported) : supported;
  const GuardInterval interval = HasShortInterval(elements, width) ? GuardInterval::k0_4us : GuardInterval::k0_8us;
  uint16_t best = 0;
  for (uint8_t streams = 1; streams <= kMaxStreams; ++streams) {
    const uint8_t code = MapCode(elements.vht->receive_map, streams);
    if (code == kNotSupported) continue;
    uint8_t mcs = kVhtHighestMcs[code];
    uint16_t rate = VhtRate(streams, width, interval, mcs);
    // A combination that is not allowed steps down; MCS 0 is always allowed.
    while (rate == 0) rate = VhtRate(streams, width, interval, --mcs);
    best = std::max(best, rate);
  }
  return best;
}

ChannelWidth SupportedWidth(const HeCapabilities& he) {
  if (he.receive_map_160mhz || he.receive_map_80_plus_80mhz) return ChannelWidth::k160;
  if (he.supports_80mhz) return ChannelWidth::k80;
  return he.supports_40mhz_in_2_4ghz ? ChannelWidth::k40 : ChannelWidth::k20;
}

// The two maps of 160 MHz: the one of the operating kind, or else the one that is there.
uint16_t WideMap(const HeCapabilities& he, bool is_80_plus_80mhz) {
  const auto& [wanted, other] = is_80_plus_80mhz ? std::pair(he.receive_map_80_plus_80mhz, he.receive_map_160mhz)
                                                 : std::pair(he.receive_map_160mhz, he.receive_map_80_plus_80mhz);
  return wanted ? *wanted : *other;
}

uint16_t HeCandidate(const RateElements& elements, const std::optional<Operating>& operating) {
  if (!elements.he) return 0;
  const HeCapabilities& he = *elements.he;
  const ChannelWidth supported = SupportedWidth(he);
  const ChannelWidth width = operating ? std::min(operating->width, supported) : supported;
  const uint16_t map =
      width == ChannelWidth::k160 ? WideMap(he, operating && operating->is_80_plus_80mhz) : he.receive_map;
  uint16_t best = 0;
  for (uint8_t streams = 1; streams <= kMaxStreams; ++streams) {
    const uint8_t code = MapCode(map, streams);
    if (code == kNotSupported) continue;
    best = std::max(best, HeRate(streams, width, HeGuardInterval::k0_8us, kHeHighestMcs[code]));
  }
  return best;
}

}  // namespace

uint32_t MaxRateMbps(Bytes elements) noexcept {
  const RateElements found = ReadRateElements(elements);
  const std::optional<Operating> operating = OperatingWidth(found);
  const uint16_t half_units =
      std::max({HtCandidate(found), VhtCandidate(found, operating), HeCandidate(found, operating)});
  return half_units >> 1;
}

}  // namespace vexa
