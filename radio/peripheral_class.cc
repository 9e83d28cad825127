#include "radio/peripheral_class.h"

#include <algorithm>
#include <iterator>

#include "vexa/base.h"

namespace vexa {
namespace {

constexpr uint32_t kMajorClassShift = 8;
constexpr uint32_t kMajorClassMask = 31;
constexpr uint32_t kUncategorized = 31;

// By major class, from 1 on.
constexpr std::string_view kMajorClasses[] = {
    "Computer;",
    "Phone;",
    "LAN/NetWortk Access point;",  // Kept: callers compare with this spelling.
    "Audio/Video;",
    "Peripheral;",
    "Imaging;",
    "Wearable;",
    "Toy;",
    "Health;",
};
static_assert(std::size(kMajorClasses) == 9);

// In the order of UsbVersionCounts.
constexpr uint16_t kUsbVersions[] = {0x0200, 0x0210, 0x0300, 0x0310, 0x0320};

constexpr uint32_t kMediumBluetooth = 10;  // a network over Bluetooth looks like Ethernet otherwise

struct LinkKind {
  uint32_t type;
  std::string_view name;
};

// Best first.
constexpr uint32_t kWifiType = 71;
constexpr LinkKind kLinkKinds[] = {{6, "ETHERNET"}, {244, "WWANPP2"}, {kWifiType, "WIFI"}};

}  // namespace

std::string_view BluetoothClassName(uint32_t class_of_device) noexcept {
  const uint32_t major = (class_of_device >> kMajorClassShift) & kMajorClassMask;
  if (major == kUncategorized) return "Uncategorized;";
  return major >= 1 && major <= std::size(kMajorClasses) ? kMajorClasses[major - 1] : "Others;";
}

void UsbVersionCounts::Add(uint16_t bcd_usb) noexcept {
  static_assert(std::size(kUsbVersions) == std::size(decltype(counts_){}));
  const auto version = std::ranges::find(kUsbVersions, bcd_usb);
  if (version != std::end(kUsbVersions)) ++counts_[version - kUsbVersions].count;
}

std::string_view WholeItems(std::string_view list, char end) noexcept {
  constexpr size_t kLongest = VEXA_TEXT_CAPACITY - 1;
  return list.size() <= kLongest ? list : list.substr(0, list.rfind(end, kLongest - 1) + 1);
}

std::string_view ConnectionName(std::span<const NetworkInterface> interfaces) noexcept {
  for (const LinkKind& kind : kLinkKinds) {
    if (std::ranges::any_of(interfaces, [&kind](const NetworkInterface& entry) {
          return entry.type == kind.type && entry.hardware && entry.up && entry.medium != kMediumBluetooth;
        })) {
      return kind.name;
    }
  }
  return "Unknow";  // Kept: callers compare with this spelling.
}

std::optional<uint32_t> WifiIndex(std::span<const NetworkInterface> interfaces) noexcept {
  std::optional<uint32_t> first;
  for (const NetworkInterface& entry : interfaces) {
    if (entry.type != kWifiType || !entry.hardware) continue;
    if (entry.up) return entry.index;
    if (!first) first = entry.index;
  }
  return first;
}

}  // namespace vexa
