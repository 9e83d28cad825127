// The information elements of a beacon or probe response (IEEE 802.11-2020, 9.4.2): bytes that strangers send.
#ifndef VEXA_RADIO_ELEMENTS_H_
#define VEXA_RADIO_ELEMENTS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace vexa {

using Bytes = std::span<const uint8_t>;

struct Element {
  uint8_t id;
  Bytes body;  // behind the length; of an extension element (255) it begins with the extension id
};

// Element by element, also those inside none: what a vendor element wraps is not looked at.
class ElementWalker {
 public:
  explicit ElementWalker(Bytes elements) noexcept : rest_(elements) {}

  // Nothing at the end, and from the first element on that is longer than what is left.
  [[nodiscard]] std::optional<Element> Next() noexcept {
    if (rest_.size() < kHeaderSize) return std::nullopt;
    const size_t length = rest_[1];
    if (length > rest_.size() - kHeaderSize) return std::nullopt;
    const Element element{rest_[0], rest_.subspan(kHeaderSize, length)};
    rest_ = rest_.subspan(kHeaderSize + length);
    return element;
  }

 private:
  static constexpr size_t kHeaderSize = 2;

  Bytes rest_;
};

// HT Capabilities (id 45).
struct HtCapabilities {
  bool supports_40mhz;
  bool short_interval_20mhz, short_interval_40mhz;
  std::array<uint8_t, 4> receive_mcs;  // per stream count, from 1: bit n for MCS n
};

// HT Operation (id 61).
struct HtOperation {
  bool is_40mhz;
};

// VHT Capabilities (id 191).
struct VhtCapabilities {
  bool supports_160mhz;
  bool short_interval_80mhz, short_interval_160mhz;
  uint16_t receive_map;  // per stream count two bits, from the lowest: 0 to 2, 3 for "not supported"
};

// VHT Operation (id 192).
struct VhtOperation {
  enum class Width : uint8_t { k20Or40, k80, k160, k80Plus80 };
  Width width;
};

// HE Capabilities (id 255, extension id 35).
struct HeCapabilities {
  bool supports_40mhz_in_2_4ghz;
  bool supports_80mhz;  // and 40 MHz, in 5 and 6 GHz
  uint16_t receive_map;
  std::optional<uint16_t> receive_map_160mhz, receive_map_80_plus_80mhz;
};

// What a beacon tells about rates: of each kind the first element that is long enough for its kind.
struct RateElements {
  std::optional<HtCapabilities> ht;
  std::optional<HtOperation> ht_operation;
  std::optional<VhtCapabilities> vht;
  std::optional<VhtOperation> vht_operation;
  std::optional<HeCapabilities> he;
};

[[nodiscard]] RateElements ReadRateElements(Bytes elements) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_ELEMENTS_H_
