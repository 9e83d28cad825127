// What lies around the driver service, behind the imports of a program: the library's file and the driver's, sleeps,
// the named mutex and the driver's device.
#ifndef VEXA_TESTS_SUPPORT_FAKE_MACHINE_H_
#define VEXA_TESTS_SUPPORT_FAKE_MACHINE_H_

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

// While it lives, no sleep and no wait of the program lasts, and its device is not opened. Calls are recorded in the
// script with their arguments; calls on files and handles of others pass through. A mutex or device handle that is
// closed twice, or a mutex left open, fails the test.
class FakeMachine {
 public:
  explicit FakeMachine(CallScript& script);
  ~FakeMachine();

  std::wstring module_path = L"D:\\Tools\\VexaWinIO64.dll";
  bool driver_file_exists = true;
  // Whether another process has the mutex already, and how waits for it end.
  bool mutex_exists = false;
  DWORD wait_result = WAIT_OBJECT_0;
  // What the device answers, by control code; other requests fail.
  std::map<DWORD, uint32_t> answers;

  int open_mutexes = 0;
  int open_devices = 0;

 private:
  friend struct FakeMachineHook;
  HANDLE NewHandle(const char* kind);
  // Null when it is the handle of somebody else.
  struct Handle {
    std::string kind;
    bool open;
  };
  Handle* Find(HANDLE handle);
  template <typename Function>
  void Patch(const char* function, Function* replacement) {
    patches_[function] = std::make_unique<ImportPatch>(function, replacement);
  }
  template <typename Function>
  Function* Original(const char* function) {
    return patches_.at(function)->Original<Function>();
  }

  CallScript& script_;
  std::map<HANDLE, Handle> handles_;
  std::map<std::string, std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_MACHINE_H_
