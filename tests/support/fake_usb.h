// A tree of USB devices and hubs behind the imports of a program.
#ifndef VEXA_TESTS_SUPPORT_FAKE_USB_H_
#define VEXA_TESTS_SUPPORT_FAKE_USB_H_

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

struct FakeUsbDevice {
  std::wstring id;
  std::wstring hub;  // the device instance id of the parent
  uint32_t port = 1;
  std::optional<std::wstring> description = L"USB Mass Storage Device";  // nothing: the property is missing
  uint32_t port_properties = 0;
  uint16_t bcd_usb = 0x0200;
  uint8_t device_class = 0;
};

// While it lives, these are the present USB devices. Calls are recorded in the script with their arguments; what is
// closed twice or left open fails the test. One at a time, on one thread.
class FakeUsb {
 public:
  FakeUsb();
  ~FakeUsb();

  std::vector<FakeUsbDevice> devices;
  CallScript script;
  std::set<std::string> open;

 private:
  friend struct FakeUsbHook;

  template <typename Function>
  void Patch(const char* function, Function* replacement) {
    patches_.push_back(std::make_unique<ImportPatch>(function, replacement));
  }

  std::vector<std::unique_ptr<ImportPatch>> patches_;
  ImportPatch* create_ = nullptr;
  ImportPatch* close_ = nullptr;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_USB_H_
