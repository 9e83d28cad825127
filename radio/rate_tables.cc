#include "radio/rate_tables.h"

#include <array>
#include <cstddef>

namespace vexa {
namespace {

constexpr uint8_t kVhtMcsCount = 10;
constexpr uint8_t kHeMcsCount = 12;
constexpr size_t kWidths = 4;

struct Modulation {
  uint8_t bits_per_symbol;
  uint8_t coded_parts, coding_parts;  // coding rate: the first over the second
};
constexpr Modulation kModulations[kVhtMcsCount] = {{1, 1, 2}, {2, 1, 2}, {2, 3, 4}, {4, 1, 2}, {4, 3, 4},
                                                   {6, 2, 3}, {6, 3, 4}, {6, 5, 6}, {8, 3, 4}, {8, 5, 6}};
constexpr uint16_t kDataSubcarriers[kWidths] = {52, 108, 234, 468};
constexpr uint8_t kSymbolTenthsOfUs[] = {40, 36};  // by guard interval

constexpr bool IsAllowed(uint8_t streams, ChannelWidth width, uint8_t mcs) {
  switch (width) {
    case ChannelWidth::k20: return mcs != 9 || streams == 3;
    case ChannelWidth::k80: return mcs != 6 || streams != 3;
    case ChannelWidth::k160: return mcs != 9 || streams != 3;
    default: return true;
  }
}

constexpr uint16_t Rate(uint8_t streams, ChannelWidth width, GuardInterval interval, uint8_t mcs) {
  if (!IsAllowed(streams, width, mcs)) return 0;
  const Modulation& modulation = kModulations[mcs];
  // Bits of one symbol over its duration, twice that for the unit.
  const uint32_t bits = uint32_t{kDataSubcarriers[static_cast<size_t>(width)]} * modulation.bits_per_symbol *
                        modulation.coded_parts * streams;
  const uint32_t numerator = 2 * bits * 10;
  const uint32_t denominator = uint32_t{modulation.coding_parts} * kSymbolTenthsOfUs[static_cast<size_t>(interval)];
  return static_cast<uint16_t>((2 * numerator + denominator) / (2 * denominator));
}

using VhtRow = std::array<uint16_t, kVhtMcsCount>;
// By streams, width, guard interval.
constexpr auto kVhtRates = [] {
  std::array<std::array<std::array<VhtRow, 2>, kWidths>, kMaxStreams> rates{};
  for (uint8_t streams = 1; streams <= kMaxStreams; ++streams) {
    for (uint8_t width = 0; width < kWidths; ++width) {
      for (uint8_t interval = 0; interval < 2; ++interval) {
        for (uint8_t mcs = 0; mcs < kVhtMcsCount; ++mcs) {
          rates[streams - 1][width][interval][mcs] =
              Rate(streams, static_cast<ChannelWidth>(width), static_cast<GuardInterval>(interval), mcs);
        }
      }
    }
  }
  return rates;
}();

using HeRow = uint16_t[kHeMcsCount];
// One stream, by width and guard interval: 0.8, 1.6, 3.2 us.
// Kept: 178 stands for 138 (20 MHz MCS 5, 40 MHz MCS 3) and 512 for 432 (80 MHz MCS 4, 160 MHz MCS 2), as callers know
// them.
constexpr HeRow kHeRates[kWidths][3] = {{{17, 34, 52, 69, 103, 178, 155, 172, 206, 229, 258, 287},
                                         {16, 33, 49, 65, 98, 130, 146, 163, 195, 217, 244, 271},
                                         {15, 29, 44, 59, 88, 117, 132, 146, 176, 195, 219, 244}},
                                        {{34, 69, 103, 178, 206, 275, 310, 344, 413, 459, 516, 574},
                                         {33, 65, 98, 130, 195, 260, 293, 325, 390, 433, 488, 542},
                                         {29, 59, 88, 117, 176, 234, 263, 293, 351, 390, 439, 488}},
                                        {{72, 144, 216, 288, 512, 576, 649, 721, 865, 961, 1081, 1201},
                                         {68, 136, 204, 272, 408, 544, 613, 681, 817, 907, 1021, 1134},
                                         {61, 123, 184, 245, 368, 490, 551, 613, 735, 817, 919, 1021}},
                                        {{144, 288, 512, 576, 865, 1153, 1297, 1441, 1729, 1922, 2162, 2402},
                                         {136, 272, 408, 544, 817, 1089, 1225, 1361, 1633, 1815, 2042, 2269},
                                         {123, 245, 368, 490, 735, 980, 1103, 1225, 1470, 1633, 1838, 2042}}};

static_assert(kHeRates[3][0][kHeMcsCount - 1] * kMaxStreams <= UINT16_MAX);

}  // namespace

uint16_t VhtRate(uint8_t streams, ChannelWidth width, GuardInterval interval, uint8_t mcs) noexcept {
  if (streams == 0 || streams > kMaxStreams || mcs >= kVhtMcsCount) return 0;
  return kVhtRates[streams - 1][static_cast<size_t>(width)][static_cast<size_t>(interval)][mcs];
}

uint16_t HeRate(uint8_t streams, ChannelWidth width, HeGuardInterval interval, uint8_t mcs) noexcept {
  if (streams == 0 || streams > kMaxStreams || mcs >= kHeMcsCount) return 0;
  return static_cast<uint16_t>(streams * kHeRates[static_cast<size_t>(width)][static_cast<size_t>(interval)][mcs]);
}

}  // namespace vexa
