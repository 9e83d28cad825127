// bluetoothapis.dll behind the imports that load it.
#ifndef VEXA_TESTS_SUPPORT_FAKE_BLUETOOTH_H_
#define VEXA_TESTS_SUPPORT_FAKE_BLUETOOTH_H_

#include <windows.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

struct FakeRadio {
  std::vector<uint32_t> devices;  // classes of the connected ones
};

// While it lives, the library of that name is this one. Calls are recorded in the script; a handle that is closed twice
// or left open fails the test. One at a time, on one thread.
class FakeBluetooth {
 public:
  FakeBluetooth();
  ~FakeBluetooth();

  std::vector<FakeRadio> radios;
  std::set<std::string> missing_functions;
  CallScript script;  // also of "LoadLibraryExW", the load of the library

  // "kind number" of what is open.
  std::set<std::string> open;

 private:
  friend struct FakeBluetoothHook;

  ImportPatch load_;
  ImportPatch find_;
  ImportPatch close_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_BLUETOOTH_H_
