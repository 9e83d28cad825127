// wlanapi.dll behind the imports that load it, and the interface table that tells what the link is.
#ifndef VEXA_TESTS_SUPPORT_FAKE_WLAN_H_
#define VEXA_TESTS_SUPPORT_FAKE_WLAN_H_

#include <windows.h>

#include <wlanapi.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "radio/bss_list.h"
#include "tests/support/call_script.h"
#include "tests/support/fake_interfaces.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

struct FakeAccessPoint {
  std::string ssid;
  MacAddress bssid{};
  int32_t rssi_dbm = -55;
  uint32_t frequency_khz = 2'412'000;
  std::string elements;
  bool secured = true;
};

struct FakeWlanInterface {
  WLAN_INTERFACE_STATE state = wlan_interface_state_connected;
  std::wstring description = L"Test Wi-Fi";
  // The connection.
  std::string ssid = "home";
  MacAddress bssid = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
  uint32_t phy_type = 10;
  uint32_t channel = 6;
  std::vector<FakeAccessPoint> access_points;
};

// While it lives, the library of that name is this one. Calls are recorded in the script by the functions' names; what
// it hands out ends at a page that can't be read, and is to be freed exactly once. One at a time, on one thread.
class FakeWlan {
 public:
  explicit FakeWlan(CallScript& script);
  ~FakeWlan();

  std::vector<FakeWlanInterface> interfaces;
  std::set<std::string> missing_functions;
  bool missing_library = false;
  // Answers that are shorter than what they are to hold.
  DWORD connection_bytes = sizeof(WLAN_CONNECTION_ATTRIBUTES), channel_bytes = sizeof(ULONG);
  bool null_interfaces = false, null_bss_lists = false;  // although the call succeeds
  FakeInterfaces network;                                // one Wi-Fi adapter

  int open_clients = 0;
  [[nodiscard]] size_t open_memory() const { return memory_.size(); }

 private:
  friend struct FakeWlanHook;

  void* HandOut(const std::string& bytes);

  CallScript& script_;
  std::map<void*, std::unique_ptr<GuardedBuffer>> memory_;
  ImportPatch load_, find_;
};

// The interface's id, by its place in the list.
GUID WlanInterfaceId(size_t index);

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_WLAN_H_
