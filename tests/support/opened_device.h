// A device that CreateFileW opens and CloseHandle closes, in place of the system's.
#ifndef VEXA_TESTS_SUPPORT_OPENED_DEVICE_H_
#define VEXA_TESTS_SUPPORT_OPENED_DEVICE_H_

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/support/import_patch.h"

namespace vexa::test {

// While it lives, every file that `module` (the program itself by default) opens is this device, and it may close
// nothing else. One at a time.
class OpenedDevice {
 public:
  explicit OpenedDevice(HMODULE module = GetModuleHandleW(nullptr))
      : open_("CreateFileW", Open, module), close_("CloseHandle", Close, module) {
    current_ = this;
  }
  ~OpenedDevice() { current_ = nullptr; }

  bool opens = true;
  int open = 0, total = 0;
  // Of the last call.
  std::wstring name;
  DWORD access = 0, share = 0, disposition = 0, flags = 0;

 private:
  static inline OpenedDevice* current_ = nullptr;
  static inline const HANDLE kHandle = reinterpret_cast<HANDLE>(uintptr_t{0xAC91});

  static HANDLE WINAPI Open(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                            DWORD flags, HANDLE) {
    OpenedDevice& self = *current_;
    self.name = name;
    self.access = access;
    self.share = share;
    self.disposition = disposition;
    self.flags = flags;
    if (!self.opens) return INVALID_HANDLE_VALUE;
    ++self.open;
    ++self.total;
    return kHandle;
  }
  static BOOL WINAPI Close(HANDLE handle) {
    EXPECT_EQ(handle, kHandle);
    --current_->open;
    return TRUE;
  }

  ImportPatch open_;
  ImportPatch close_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_OPENED_DEVICE_H_
