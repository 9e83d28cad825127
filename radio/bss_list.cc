#include "radio/bss_list.h"

#include <algorithm>
#include <cstring>

namespace vexa {
namespace {

using namespace bss_layout;

constexpr size_t kCount = 4;

template <typename Number>
Number Read(Bytes bytes, size_t offset) {
  Number number;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

// `entry` reaches to the end of the list: the elements stand behind the entries, at an offset from their own one.
Bytes Elements(Bytes entry) {
  const size_t offset = Read<uint32_t>(entry, kElementsOffset);
  const size_t size = Read<uint32_t>(entry, kElementsSize);
  if (offset < kEntrySize || offset > entry.size()) return {};
  return entry.subspan(offset, std::min(size, entry.size() - offset));
}

}  // namespace

BssList::BssList(Bytes list) noexcept : list_(list) {
  if (list.size() < kEntries) return;
  size_ = std::min<size_t>(Read<uint32_t>(list, kCount), (list.size() - kEntries) / kEntrySize);
}

BssEntry BssList::operator[](size_t index) const noexcept {
  const Bytes entry = list_.subspan(kEntries + index * kEntrySize);
  const size_t ssid_length = std::min<size_t>(Read<uint32_t>(entry, kSsidLength), kMaxSsidLength);
  return {.ssid = entry.subspan(kSsid, ssid_length),
          .bssid = Read<MacAddress>(entry, kBssid),
          .rssi_dbm = Read<int32_t>(entry, kRssi),
          .frequency_khz = Read<uint32_t>(entry, kFrequency),
          .elements = Elements(entry)};
}

std::optional<BssEntry> BssList::Find(Bytes ssid, const MacAddress& bssid) const noexcept {
  for (size_t i = 0; i < size_; ++i) {
    const BssEntry entry = (*this)[i];
    if (std::ranges::equal(entry.ssid, ssid) && entry.bssid == bssid) return entry;
  }
  return std::nullopt;
}

}  // namespace vexa
