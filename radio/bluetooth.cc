// The Bluetooth radios and the devices connected to them.
#include <windows.h>

#include <bluetoothapis.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "frame/export_wall.h"
#include "frame/handles.h"
#include "frame/log.h"
#include "frame/text_value.h"
#include "radio/peripheral_class.h"
#include "radio/peripheral_snapshots.h"
#include "vexa/peripherals.h"

namespace vexa {

BluetoothSnapshot g_bluetooth;
OptionalLibrary g_bluetooth_library(L"bluetoothapis.dll");

namespace {

static_assert(sizeof(BLUETOOTH_FIND_RADIO_PARAMS) == 4);
static_assert(sizeof(BLUETOOTH_RADIO_INFO) == 520);
static_assert(sizeof(BLUETOOTH_DEVICE_INFO) == 560);

struct BluetoothApi {
  decltype(&BluetoothFindFirstRadio) find_first_radio;
  decltype(&BluetoothFindNextRadio) find_next_radio;
  decltype(&BluetoothFindRadioClose) close_radio_search;
  decltype(&BluetoothGetRadioInfo) get_radio_info;
  decltype(&BluetoothFindFirstDevice) find_first_device;
  decltype(&BluetoothFindNextDevice) find_next_device;
  decltype(&BluetoothFindDeviceClose) close_device_search;
};

template <typename Function>
bool Bind(Function*& function, const char* name) {
  function = g_bluetooth_library.Find<Function>(name);
  return function != nullptr;
}

// Nothing, with the last error set, when the library or one of its functions is missing.
std::optional<BluetoothApi> BindApi() {
  BluetoothApi api{};
  const bool bound =
      Bind(api.find_first_radio, "BluetoothFindFirstRadio") && Bind(api.find_next_radio, "BluetoothFindNextRadio") &&
      Bind(api.close_radio_search, "BluetoothFindRadioClose") && Bind(api.get_radio_info, "BluetoothGetRadioInfo") &&
      Bind(api.find_first_device, "BluetoothFindFirstDevice") &&
      Bind(api.find_next_device, "BluetoothFindNextDevice") &&
      Bind(api.close_device_search, "BluetoothFindDeviceClose");
  return bound ? std::optional(api) : std::nullopt;
}

// Both kinds of search are handles with a closing function of their own.
using Search = std::unique_ptr<void, BOOL(WINAPI*)(HANDLE)>;

// After a search found nothing more: whether it has come to its end, and not to an error.
bool HasEnded(const char* line) {
  const DWORD error = GetLastError();
  LogInfo("%s", line);
  return error == ERROR_NO_MORE_ITEMS;
}

// The connected devices of one radio. False when a step failed.
bool CollectDevices(const BluetoothApi& api, HANDLE radio, BluetoothSnapshot& snapshot) {
  BLUETOOTH_DEVICE_SEARCH_PARAMS wanted{.dwSize = sizeof wanted, .fReturnConnected = TRUE, .hRadio = radio};
  BLUETOOTH_DEVICE_INFO device{};
  device.dwSize = sizeof device;
  const Search search(api.find_first_device(&wanted, &device), api.close_device_search);
  snapshot.used = search ? 1 : 0;
  // Kept: the device search that finds nothing writes the radio search's line.
  if (!search) return HasEnded("BluetoothFindFirstRadio error");
  snapshot.connected = 0;
  snapshot.types.clear();
  do {
    ++snapshot.connected;
    snapshot.types += BluetoothClassName(device.ulClassofDevice);
  } while (api.find_next_device(search.get(), &device));
  return HasEnded("BluetoothFindNextDevice error");
}

bool CollectRadio(const BluetoothApi& api, HANDLE radio, BluetoothSnapshot& snapshot) {
  LogInfo("BluetoothGetRadioInfo start");
  BLUETOOTH_RADIO_INFO information{};
  information.dwSize = sizeof information;
  return api.get_radio_info(radio, &information) == ERROR_SUCCESS && CollectDevices(api, radio, snapshot);
}

// False when a step failed. A radio search that breaks off in the middle counts as ended.
bool CollectRadios(BluetoothSnapshot& snapshot) {
  LogInfo("BluetoothFindFirstRadio start");
  const std::optional<BluetoothApi> api = BindApi();
  if (!api) return HasEnded("BluetoothFindFirstRadio error");
  BLUETOOTH_FIND_RADIO_PARAMS wanted{.dwSize = sizeof wanted};
  HANDLE found = nullptr;
  const Search search(api->find_first_radio(&wanted, &found), api->close_radio_search);
  if (!search) return HasEnded("BluetoothFindFirstRadio error");
  do {
    const KernelHandle radio(std::exchange(found, nullptr));
    if (!CollectRadio(*api, radio.get(), snapshot)) return false;
  } while (api->find_next_radio(search.get(), &found));
  return true;
}

void CollectBluetooth() noexcept {
  LogInfo("RF_ReadBT_Info start");
  BluetoothSnapshot fresh;
  if (Guarded("RF_ReadBT_Info", false, [&fresh] { return CollectRadios(fresh); })) {
    LogInfo("RF_ReadBT_Info End");
    g_bluetooth = std::move(fresh);
    g_bluetooth.collected = true;
  } else {
    g_bluetooth.used = g_bluetooth.connected = VEXA_COLLECT_FAILED;
    g_bluetooth.types = VEXA_COLLECT_FAILED_TEXT;
    g_bluetooth.collected = false;
  }
}

const BluetoothSnapshot& Bluetooth(const char* uncollected_line) noexcept {
  if (!g_bluetooth.collected) {
    LogInfo("%s", uncollected_line);
    CollectBluetooth();
  }
  return g_bluetooth;
}

}  // namespace
}  // namespace vexa

uint32_t RF_BTIsUsed() noexcept { return vexa::Bluetooth("[RF] RF_BTIsUsed FLAG FALSE").used; }

uint32_t RF_BTConnectedNum() noexcept { return vexa::Bluetooth("[RF] RF_BTConnectedNum FLAG FALSE").connected; }

VexaText RF_BTConnectedType() noexcept {
  return vexa::TextValue(vexa::WholeItems(vexa::Bluetooth("[RF] RF_BTConnectedType FLAG FALSE").types, ';'));
}
