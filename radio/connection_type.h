// The kind of the machine's network link.
#ifndef VEXA_RADIO_CONNECTION_TYPE_H_
#define VEXA_RADIO_CONNECTION_TYPE_H_

#include <string_view>

namespace vexa {

inline constexpr std::string_view kConnectionWifi = "WIFI";

// "ETHERNET", "WWANPP2", "WIFI" or "Unknow", the last also when the interface table can't be read. Looks each time and
// logs nothing.
[[nodiscard]] std::string_view ConnectionType();

}  // namespace vexa

#endif  // VEXA_RADIO_CONNECTION_TYPE_H_
