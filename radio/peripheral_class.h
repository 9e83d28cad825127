// What the classes, versions and types of peripherals mean.
#ifndef VEXA_RADIO_PERIPHERAL_CLASS_H_
#define VEXA_RADIO_PERIPHERAL_CLASS_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "radio/count_text.h"

namespace vexa {

// The name of the major class in a Bluetooth class of device (Bluetooth assigned numbers, section 2.8), with its ";".
[[nodiscard]] std::string_view BluetoothClassName(uint32_t class_of_device) noexcept;

// USB mass-storage devices by the version of their descriptor.
class UsbVersionCounts {
 public:
  // A version without a key of its own is in no count.
  void Add(uint16_t bcd_usb) noexcept;
  [[nodiscard]] std::string Text() const { return CountText(counts_); }

 private:
  NamedCount counts_[5] = {{"usb2_0", 0}, {"usb2_1", 0}, {"usb3_0", 0}, {"usb3_1", 0}, {"usb3_2", 0}};
};

// A list whose items all end in `end`, cut after the last item that fits a VexaText.
[[nodiscard]] std::string_view WholeItems(std::string_view list, char end) noexcept;

// A row of the system's interface table.
struct NetworkInterface {
  uint32_t index;   // the system's
  uint32_t type;    // IANA ifType
  uint32_t medium;  // NDIS_PHYSICAL_MEDIUM
  bool hardware;
  bool up;
};

// "ETHERNET", else "WWANPP2", else "WIFI", by the hardware interfaces that are up; "Unknow" without any.
[[nodiscard]] std::string_view ConnectionName(std::span<const NetworkInterface> interfaces) noexcept;

// The index of the first Wi-Fi interface that is up, else of the first one; of hardware only. Nothing without one.
[[nodiscard]] std::optional<uint32_t> WifiIndex(std::span<const NetworkInterface> interfaces) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_PERIPHERAL_CLASS_H_
