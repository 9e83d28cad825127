// The parts of the system that every export shares, in memory: registry, small files, devices, trace and event log,
// system facts, the default speaker.
#ifndef VEXA_TESTS_SWEEP_FAKE_SYSTEM_H_
#define VEXA_TESTS_SWEEP_FAKE_SYSTEM_H_

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/import_patch.h"

namespace vexa::test {

// Patches the library under test while it lives. One at a time.
class FakeSystem {
 public:
  FakeSystem();
  ~FakeSystem();

  // As at the beginning: the route's value, and nothing that was written since. An empty route: not detected yet.
  void Reset(const std::wstring& arch);

  // Stored texts are this one from now on.
  void UseLongTexts(const std::wstring& text);

  USHORT machine = IMAGE_FILE_MACHINE_AMD64;

  // A session takes every line of the library, once it has registered.
  static void EnableTracing();

  // Numbers that no real handle has, and that are never used again.
  uintptr_t NewHandle() { return next_handle_ += 16; }

 private:
  friend struct FakeSystemHook;
  struct Value {
    DWORD type;
    std::string bytes;
  };
  using Name = std::pair<std::wstring, std::wstring>;  // key and value, in lower case

  template <typename Function>
  void Patch(const char* function, Function* replacement) {
    patches_[function] = std::make_unique<ImportPatch>(function, replacement);
  }
  template <typename Function>
  Function* Original(const char* function, Function*) {
    return patches_.at(function)->Original<Function>();
  }

  uintptr_t next_handle_ = 0x7C000000;
  std::map<uintptr_t, std::wstring> keys_;  // that are open
  std::map<Name, Value> values_;
  std::wstring long_text_;
  std::map<std::string, std::unique_ptr<ImportPatch>> patches_;
};

inline constexpr uint8_t kNewestTable = 28;

// The driver's and the firmware's devices behind DeviceIoControl; other requests go where they went before.
class FakeDevices {
 public:
  FakeDevices();

  static inline uint8_t table_version = kNewestTable;

 private:
  ImportPatch patch_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_FAKE_SYSTEM_H_
