// The WLAN service's list of access points (WLAN_BSS_LIST), read as bytes: its counts, offsets and sizes come through a
// driver from what strangers send, so none of them is believed. Offsets are those of 64-bit Windows.
#ifndef VEXA_RADIO_BSS_LIST_H_
#define VEXA_RADIO_BSS_LIST_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "radio/elements.h"

namespace vexa {

using MacAddress = std::array<uint8_t, 6>;

inline constexpr size_t kMaxSsidLength = 32;

struct BssEntry {
  Bytes ssid;
  MacAddress bssid;
  int32_t rssi_dbm;
  uint32_t frequency_khz;  // of the channel's centre
  Bytes elements;          // empty when their place is not inside the list
};

class BssList {
 public:
  // The whole list, as many bytes as its first field tells. It must outlive this and the entries.
  explicit BssList(Bytes list) noexcept;

  // Entries that are there as a whole, however many the list claims.
  [[nodiscard]] size_t size() const noexcept { return size_; }
  [[nodiscard]] BssEntry operator[](size_t index) const noexcept;

  // The first entry with this name and this address.
  [[nodiscard]] std::optional<BssEntry> Find(Bytes ssid, const MacAddress& bssid) const noexcept;

 private:
  Bytes list_;
  size_t size_ = 0;
};

// Where the fields are; checked against the system's own structures where those are known.
namespace bss_layout {
inline constexpr size_t kEntries = 8;
inline constexpr size_t kEntrySize = 360;
inline constexpr size_t kSsidLength = 0;
inline constexpr size_t kSsid = 4;
inline constexpr size_t kBssid = 40;
inline constexpr size_t kRssi = 56;
inline constexpr size_t kFrequency = 92;
inline constexpr size_t kElementsOffset = 352;
inline constexpr size_t kElementsSize = 356;
}  // namespace bss_layout

}  // namespace vexa

#endif  // VEXA_RADIO_BSS_LIST_H_
