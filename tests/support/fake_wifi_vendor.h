// The Wi-Fi chip vendors' libraries, and the device and the folder that they are found by.
#ifndef VEXA_TESTS_SUPPORT_FAKE_WIFI_VENDOR_H_
#define VEXA_TESTS_SUPPORT_FAKE_WIFI_VENDOR_H_

#include <windows.h>

#include <setupapi.h>

#include <cstdint>
#include <set>
#include <string>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

// Calls are recorded in the script by the functions' names. What is opened is to be given back.
class FakeWifiVendor {
 public:
  explicit FakeWifiVendor(CallScript& script);
  ~FakeWifiVendor();

  // The Intel component: its device, and where its registry key says the library is.
  bool intel_present = false;
  std::wstring intel_path = L"C:\\Drivers\\wifi\\component.dll";
  DWORD intel_path_type = REG_SZ;
  std::string adapter_list, bss_statistics;
  // The Realtek library beside the host program.
  bool realtek_present = false;
  std::wstring host_program = L"C:\\Program Files\\Host\\host.exe";
  uint32_t realtek_adapters = 1;
  std::string statistics_oid;

  std::set<std::string> missing_functions;
  uint32_t claimed_size = 0;  // of every record, when not 0
  int open = 0;               // sets, keys and libraries

 private:
  friend struct FakeWifiVendorHook;

  CallScript& script_;
  ImportPatch devices_, next_, property_, destroy_, open_key_, query_value_, close_key_, load_, free_, find_,
      file_name_, sleep_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_WIFI_VENDOR_H_
