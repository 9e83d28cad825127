#include "radio/elements.h"

#include <algorithm>
#include <cstddef>

namespace vexa {
namespace {

enum ElementId : uint8_t {
  kHtCapabilities = 45,
  kHtOperation = 61,
  kVhtCapabilities = 191,
  kVhtOperation = 192,
  kExtension = 255,
};
constexpr uint8_t kHeCapabilitiesExtension = 35;

// Least sizes of the bodies. A longer one is of a later edition of the standard, which adds at the end.
constexpr size_t kHtCapabilitiesSize = 26;
constexpr size_t kHtOperationSize = 22;
constexpr size_t kVhtCapabilitiesSize = 12;
constexpr size_t kVhtOperationSize = 5;
constexpr size_t kHeFixedSize = 18;  // extension id, 6 bytes of MAC and 11 of PHY capabilities
constexpr size_t kHeMapsSize = 4;    // of one width: receive map, transmit map

constexpr bool Bit(uint8_t byte, int bit) { return (byte >> bit & 1) != 0; }

// Fields are little-endian.
constexpr uint16_t Word(Bytes body, size_t offset) {
  return static_cast<uint16_t>(body[offset] | body[offset + 1] << 8);
}

std::optional<HtCapabilities> ReadHtCapabilities(Bytes body) noexcept {
  if (body.size() < kHtCapabilitiesSize) return std::nullopt;
  constexpr size_t kReceiveMcs = 3;
  HtCapabilities capabilities{.supports_40mhz = Bit(body[0], 1),
                              .short_interval_20mhz = Bit(body[0], 5),
                              .short_interval_40mhz = Bit(body[0], 6)};
  std::ranges::copy(body.subspan(kReceiveMcs, capabilities.receive_mcs.size()), capabilities.receive_mcs.begin());
  return capabilities;
}

std::optional<HtOperation> ReadHtOperation(Bytes body) noexcept {
  if (body.size() < kHtOperationSize) return std::nullopt;
  // 40 MHz is in use when the width field allows it and there is a secondary channel: 1 above, 3 below the primary one.
  const int secondary_channel = body[1] & 3;
  return HtOperation{.is_40mhz = Bit(body[1], 2) && (secondary_channel == 1 || secondary_channel == 3)};
}

std::optional<VhtCapabilities> ReadVhtCapabilities(Bytes body) noexcept {
  if (body.size() < kVhtCapabilitiesSize) return std::nullopt;
  const int width_set = body[0] >> 2 & 3;  // 1: 160 MHz, 2: 80+80 MHz too, 3: reserved
  return VhtCapabilities{.supports_160mhz = width_set == 1 || width_set == 2,
                         .short_interval_80mhz = Bit(body[0], 5),
                         .short_interval_160mhz = Bit(body[0], 6),
                         .receive_map = Word(body, 4)};
}

// Width 1 with a second centre segment: 160 MHz when the segments' centres are 8 channels apart (40 MHz), 80+80 when
// more than 16; other distances are reserved, and the second segment then means nothing.
VhtOperation::Width SegmentedWidth(int first, int second) {
  const int distance = second > first ? second - first : first - second;
  if (second == 0) return VhtOperation::Width::k80;
  if (distance == 8) return VhtOperation::Width::k160;
  return distance > 16 ? VhtOperation::Width::k80Plus80 : VhtOperation::Width::k80;
}

std::optional<VhtOperation> ReadVhtOperation(Bytes body) noexcept {
  using enum VhtOperation::Width;
  if (body.size() < kVhtOperationSize) return std::nullopt;
  switch (body[0]) {
    case 0: return VhtOperation{k20Or40};
    case 1: return VhtOperation{SegmentedWidth(body[1], body[2])};
    case 2: return VhtOperation{k160};
    case 3: return VhtOperation{k80Plus80};
    default: return std::nullopt;  // reserved
  }
}

std::optional<HeCapabilities> ReadHeCapabilities(Bytes body) noexcept {
  constexpr size_t kWidthSet = 7;  // the first byte of the PHY capabilities
  if (body.size() < kHeFixedSize + kHeMapsSize) return std::nullopt;
  const bool has_160mhz = Bit(body[kWidthSet], 3);
  const bool has_80_plus_80mhz = Bit(body[kWidthSet], 4);
  if (body.size() < kHeFixedSize + kHeMapsSize * (1u + has_160mhz + has_80_plus_80mhz)) return std::nullopt;

  HeCapabilities capabilities{.supports_40mhz_in_2_4ghz = Bit(body[kWidthSet], 1),
                              .supports_80mhz = Bit(body[kWidthSet], 2),
                              .receive_map = Word(body, kHeFixedSize)};
  size_t maps = kHeFixedSize + kHeMapsSize;
  if (has_160mhz) {
    capabilities.receive_map_160mhz = Word(body, maps);
    maps += kHeMapsSize;
  }
  if (has_80_plus_80mhz) capabilities.receive_map_80_plus_80mhz = Word(body, maps);
  return capabilities;
}

}  // namespace

RateElements ReadRateElements(Bytes elements) noexcept {
  RateElements found;
  ElementWalker walker(elements);
  while (const std::optional<Element> element = walker.Next()) {
    switch (element->id) {
      case kHtCapabilities:
        if (!found.ht) found.ht = ReadHtCapabilities(element->body);
        break;
      case kHtOperation:
        if (!found.ht_operation) found.ht_operation = ReadHtOperation(element->body);
        break;
      case kVhtCapabilities:
        if (!found.vht) found.vht = ReadVhtCapabilities(element->body);
        break;
      case kVhtOperation:
        if (!found.vht_operation) found.vht_operation = ReadVhtOperation(element->body);
        break;
      case kExtension:
        if (!element->body.empty() && element->body[0] == kHeCapabilitiesExtension && !found.he) {
          found.he = ReadHeCapabilities(element->body);
        }
        break;
      default: break;
    }
  }
  return found;
}

}  // namespace vexa
