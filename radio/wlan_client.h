// The system's WLAN service, by wlanapi.dll.
#ifndef VEXA_RADIO_WLAN_CLIENT_H_
#define VEXA_RADIO_WLAN_CLIENT_H_

#include <windows.h>

#include <wlanapi.h>

#include <cstdint>
#include <expected>
#include <optional>

#include "frame/handles.h"
#include "radio/elements.h"

namespace vexa {

void FreeWlanMemory(void* memory) noexcept;
using WlanInterfaces = Owner<WLAN_INTERFACE_INFO_LIST*, FreeWlanMemory>;
using WlanBssList = Owner<WLAN_BSS_LIST*, FreeWlanMemory>;

// Kept: a client is never closed; it stays open until the process ends.
class WlanClient {
 public:
  // Errors are the system's codes; without wlanapi.dll, ERROR_MOD_NOT_FOUND.
  [[nodiscard]] static std::expected<WlanClient, DWORD> Open();

  [[nodiscard]] std::expected<WlanInterfaces, DWORD> Interfaces() const;

  // Nothing when the call fails or answers less than the whole value.
  [[nodiscard]] std::optional<WLAN_ASSOCIATION_ATTRIBUTES> Connection(const GUID& interface_id) const;
  [[nodiscard]] std::optional<uint32_t> Channel(const GUID& interface_id) const;

  // Infrastructure networks of that name, or of every name (null). An owner of nothing is a list without entries.
  [[nodiscard]] std::expected<WlanBssList, DWORD> AccessPoints(const GUID& interface_id, const DOT11_SSID* ssid,
                                                               bool security_enabled) const;

 private:
  explicit WlanClient(HANDLE handle) noexcept : handle_(handle) {}

  HANDLE handle_;
};

// The whole list, as long as it says it is.
[[nodiscard]] Bytes BytesOf(const WlanBssList& list) noexcept;

}  // namespace vexa

#endif  // VEXA_RADIO_WLAN_CLIENT_H_
