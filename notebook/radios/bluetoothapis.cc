// bluetoothapis.dll of the simulated notebook: the searches for radios and for the devices that they know.
#include <windows.h>

#include <bluetoothapis.h>

#include <algorithm>
#include <iterator>
#include <map>

#include "notebook.h"

namespace {

using namespace radios;

Notebook& BluetoothNotebook() {
  static Notebook& notebook = *new Notebook(L"bluetoothapis-counts.json");
  return notebook;
}

// A search under way.
template <typename Item>
struct Search {
  std::vector<Item> items;
  size_t next = 0;

  const Item* Take() { return next < items.size() ? &items[next++] : nullptr; }
};

template <typename Item>
struct Searches {
  std::map<HANDLE, Search<Item>> open;
  uintptr_t opened = 0;

  HANDLE Open(Search<Item> search) {
    const auto handle = reinterpret_cast<HANDLE>(++opened);
    open[handle] = std::move(search);
    return handle;
  }
};

struct State {
  Searches<BluetoothRadio> radios;
  Searches<BluetoothDevice> devices;
  std::map<HANDLE, BluetoothRadio> handed_out;  // by the handle of the radio, which the caller closes
  uint32_t events = 0;
};

// Only within a call.
State& Bluetooth() {
  static State& state = *new State;
  return state;
}

// A radio's handle is an event of this name; the event lives as long as the caller's handle.
std::wstring EventName(uint32_t number) {
  return L"vexa-bluetooth-radio-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(number);
}

void CountOpen() {
  int64_t open = 0;
  for (uint32_t i = 1; i <= Bluetooth().events; ++i) {
    const HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, EventName(i).c_str());
    if (event == nullptr) continue;
    ++open;
    CloseHandle(event);
  }
  BluetoothNotebook().Set("radio handles open", open);
  BluetoothNotebook().Set("radio searches open", static_cast<int64_t>(Bluetooth().radios.open.size()));
  BluetoothNotebook().Set("device searches open", static_cast<int64_t>(Bluetooth().devices.open.size()));
}

// Runs a call that answers through the last error.
bool Run(const char* call, const Notebook::Answer& answer) {
  const DWORD error = BluetoothNotebook().Run(call, [&answer](const Model& model) {
    const DWORD result = answer(model);
    CountOpen();
    return result;
  });
  SetLastError(error);
  return error == ERROR_SUCCESS;
}

uint64_t AddressNumber(const Address& address) {
  uint64_t number = 0;
  for (const uint8_t byte : address) number = number << 8 | byte;
  return number;
}

DWORD TakeRadio(Search<BluetoothRadio>& search, HANDLE* handle) {
  const BluetoothRadio* radio = search.Take();
  if (radio == nullptr) return ERROR_NO_MORE_ITEMS;
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, EventName(++Bluetooth().events).c_str());
  if (event == nullptr) return GetLastError();
  Bluetooth().handed_out[event] = *radio;
  *handle = event;
  return ERROR_SUCCESS;
}

DWORD TakeDevice(Search<BluetoothDevice>& search, BLUETOOTH_DEVICE_INFO* info) {
  if (info->dwSize != sizeof *info) return ERROR_REVISION_MISMATCH;
  const BluetoothDevice* device = search.Take();
  if (device == nullptr) return ERROR_NO_MORE_ITEMS;
  *info = {};
  info->dwSize = sizeof *info;
  info->Address.ullLong = AddressNumber(device->address);
  info->ulClassofDevice = device->device_class;
  info->fConnected = device->connected;
  info->fRemembered = info->fAuthenticated = TRUE;
  CopyName(info->szName, device->name);
  return ERROR_SUCCESS;
}

// All devices are remembered and authenticated ones.
bool IsWanted(const BluetoothDevice& device, const BLUETOOTH_DEVICE_SEARCH_PARAMS& wanted) {
  return wanted.fReturnRemembered || wanted.fReturnAuthenticated || (wanted.fReturnConnected && device.connected);
}

Search<BluetoothDevice> DevicesFor(const BluetoothRadio& radio, const BLUETOOTH_DEVICE_SEARCH_PARAMS& wanted) {
  Search<BluetoothDevice> search;
  std::ranges::copy_if(radio.devices, std::back_inserter(search.items),
                       [&wanted](const BluetoothDevice& device) { return IsWanted(device, wanted); });
  return search;
}

template <typename Item>
DWORD CloseSearch(Searches<Item>& searches, HANDLE find) {
  if (searches.open.erase(find) == 1) return ERROR_SUCCESS;
  BluetoothNotebook().Count("closed what was not open");
  return ERROR_INVALID_HANDLE;
}

}  // namespace

extern "C" {

HBLUETOOTH_RADIO_FIND WINAPI BluetoothFindFirstRadio(const BLUETOOTH_FIND_RADIO_PARAMS* wanted, HANDLE* radio) {
  HANDLE find = nullptr;
  Run("BluetoothFindFirstRadio", [&](const Model& model) -> DWORD {
    if (wanted == nullptr || radio == nullptr) return ERROR_INVALID_PARAMETER;
    if (wanted->dwSize != sizeof *wanted) return ERROR_REVISION_MISMATCH;
    Search<BluetoothRadio> search{model.bluetooth};
    const DWORD taken = TakeRadio(search, radio);
    if (taken == ERROR_SUCCESS) find = Bluetooth().radios.Open(std::move(search));
    return taken;
  });
  return find;
}

WINBOOL WINAPI BluetoothFindNextRadio(HBLUETOOTH_RADIO_FIND find, HANDLE* radio) {
  return Run("BluetoothFindNextRadio", [=](const Model&) -> DWORD {
    const auto search = Bluetooth().radios.open.find(find);
    if (search == Bluetooth().radios.open.end() || radio == nullptr) return ERROR_INVALID_HANDLE;
    return TakeRadio(search->second, radio);
  });
}

WINBOOL WINAPI BluetoothFindRadioClose(HBLUETOOTH_RADIO_FIND find) {
  return Run("BluetoothFindRadioClose", [=](const Model&) { return CloseSearch(Bluetooth().radios, find); });
}

DWORD WINAPI BluetoothGetRadioInfo(HANDLE handle, PBLUETOOTH_RADIO_INFO info) {
  Run("BluetoothGetRadioInfo", [=](const Model&) -> DWORD {
    const auto radio = Bluetooth().handed_out.find(handle);
    if (radio == Bluetooth().handed_out.end()) return ERROR_INVALID_HANDLE;
    if (info == nullptr || info->dwSize != sizeof *info) return ERROR_REVISION_MISMATCH;
    *info = {};
    info->dwSize = sizeof *info;
    info->address.ullLong = AddressNumber(radio->second.address);
    info->ulClassofDevice = radio->second.device_class;
    CopyName(info->szName, radio->second.name);
    return ERROR_SUCCESS;
  });
  return GetLastError();
}

HBLUETOOTH_DEVICE_FIND WINAPI BluetoothFindFirstDevice(const BLUETOOTH_DEVICE_SEARCH_PARAMS* wanted,
                                                       BLUETOOTH_DEVICE_INFO* info) {
  HANDLE find = nullptr;
  Run("BluetoothFindFirstDevice", [&](const Model&) -> DWORD {
    if (wanted == nullptr || info == nullptr) return ERROR_INVALID_PARAMETER;
    if (wanted->dwSize != sizeof *wanted) return ERROR_REVISION_MISMATCH;
    const auto radio = Bluetooth().handed_out.find(wanted->hRadio);
    if (radio == Bluetooth().handed_out.end()) return ERROR_INVALID_HANDLE;
    Search<BluetoothDevice> search = DevicesFor(radio->second, *wanted);
    const DWORD taken = TakeDevice(search, info);
    if (taken == ERROR_SUCCESS) find = Bluetooth().devices.Open(std::move(search));
    return taken;
  });
  return find;
}

WINBOOL WINAPI BluetoothFindNextDevice(HBLUETOOTH_DEVICE_FIND find, BLUETOOTH_DEVICE_INFO* info) {
  return Run("BluetoothFindNextDevice", [=](const Model&) -> DWORD {
    const auto search = Bluetooth().devices.open.find(find);
    if (search == Bluetooth().devices.open.end() || info == nullptr) return ERROR_INVALID_HANDLE;
    return TakeDevice(search->second, info);
  });
}

WINBOOL WINAPI BluetoothFindDeviceClose(HBLUETOOTH_DEVICE_FIND find) {
  return Run("BluetoothFindDeviceClose", [=](const Model&) { return CloseSearch(Bluetooth().devices, find); });
}

}  // extern "C"
