// What other families need to know about the Wi-Fi interface.
#ifndef VEXA_RADIO_WIFI_INTERFACE_H_
#define VEXA_RADIO_WIFI_INTERFACE_H_

#include <cstdint>
#include <optional>
#include <string_view>

namespace vexa {

// The adapter's description from the Wi-Fi snapshot, which is collected first when it has not been: that is logged as
// "[RF] RF_WiFiCardName FLAG FALSE". L"init_string" without a Wi-Fi interface, L"error_string" when the collection
// failed. Valid until the next collection.
[[nodiscard]] std::wstring_view WifiAdapterName();

// The system's index of the Wi-Fi interface: of hardware interfaces of type 71 (IEEE 802.11), the first that is up,
// else the first. Nothing without one. Looks each time and logs nothing.
[[nodiscard]] std::optional<uint32_t> WifiInterfaceIndex();

}  // namespace vexa

#endif  // VEXA_RADIO_WIFI_INTERFACE_H_
