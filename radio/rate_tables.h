// Data rates of IEEE 802.11, in units of 0.5 Mbit/s, rounded half up.
#ifndef VEXA_RADIO_RATE_TABLES_H_
#define VEXA_RADIO_RATE_TABLES_H_

#include <cstdint>

namespace vexa {

// The indices of the tables' rows. 80+80 MHz has the rates of 160 MHz.
enum class ChannelWidth : uint8_t { k20, k40, k80, k160 };
enum class GuardInterval : uint8_t { k0_8us, k0_4us };  // HT and VHT: long, short
enum class HeGuardInterval : uint8_t { k0_8us, k1_6us, k3_2us };

inline constexpr uint8_t kMaxStreams = 4;  // that the tables cover

// HT (802.11n; MCS 0 to 7 of each stream count, 20 and 40 MHz) and VHT (802.11ac; MCS 0 to 9): the rates of the two are
// the same where both exist. streams 1 to 4. 0 for an MCS above 9, another stream count, and the combinations of VHT
// that the standard does not allow (IEEE 802.11-2020, 21.5).
[[nodiscard]] uint16_t VhtRate(uint8_t streams, ChannelWidth width, GuardInterval interval, uint8_t mcs) noexcept;

// HE (802.11ax). streams 1 to 4, MCS 0 to 11; 0 for others.
[[nodiscard]] uint16_t HeRate(uint8_t streams, ChannelWidth width, HeGuardInterval interval, uint8_t mcs) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_RATE_TABLES_H_
