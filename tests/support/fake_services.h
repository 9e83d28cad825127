// A service manager that knows one service, behind the imports of a program.
#ifndef VEXA_TESTS_SUPPORT_FAKE_SERVICES_H_
#define VEXA_TESTS_SUPPORT_FAKE_SERVICES_H_

#include <windows.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

struct FakeService {
  bool exists = true;
  bool marked_for_delete = false;  // gone when its last handle is closed
  DWORD state = SERVICE_STOPPED;
  DWORD start_type = SERVICE_DEMAND_START;
  std::wstring binary_path;
  // How many status queries after a start or a stop still see it pending, and what it becomes then.
  int start_polls = 0;
  DWORD state_after_start = SERVICE_RUNNING;
  int stop_polls = 0;
  DWORD state_after_stop = SERVICE_STOPPED;
  int pending_polls = 0;  // that are left
};

// While it lives, the program's calls to the service manager reach it. Each is recorded in the script with its
// arguments, except closings. A call without the access right it needs fails as on Windows. A handle that is used
// after it was closed, closed twice or left open, and memory that is left allocated, fail the test. Giving back clears
// the last error, as it may on Windows.
class FakeServices {
 public:
  explicit FakeServices(CallScript& script);
  ~FakeServices();

  FakeService service;

 private:
  friend struct FakeServicesHook;
  struct Handle {
    bool is_manager;
    DWORD access;
    bool open;
  };

  SC_HANDLE NewHandle(bool is_manager, DWORD access);
  // Whether the handle may be used so; sets the error when it may not.
  bool MayUse(SC_HANDLE handle, bool is_manager, DWORD right);
  void Close(SC_HANDLE handle);
  void FillStatus(SERVICE_STATUS* status);
  template <typename Function>
  void Patch(const char* function, Function* replacement) {
    patches_.push_back(std::make_unique<ImportPatch>(function, replacement));
  }

  CallScript& script_;
  std::map<SC_HANDLE, Handle> handles_;
  std::set<HLOCAL> memory_;
  ImportPatch allocate_;
  ImportPatch free_;
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_SERVICES_H_
