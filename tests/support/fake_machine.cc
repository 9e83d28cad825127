#include "tests/support/fake_machine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace vexa::test {
namespace {

FakeMachine* g_machine = nullptr;

constexpr wchar_t kDevice[] = L"\\\\.\\VexaSAIO";

}  // namespace

struct FakeMachineHook {
  static void WINAPI Pause(DWORD ms) { (void)g_machine->script_.Fails("Sleep", std::to_string(ms)); }

  static HANDLE WINAPI Mutex(LPSECURITY_ATTRIBUTES attributes, BOOL owned, LPCWSTR name) {
    const std::string text = (attributes ? "attributes " : "null ") + std::to_string(owned) + " " + Narrow(name);
    if (g_machine->script_.Fails("CreateMutexW", text)) return nullptr;
    ++g_machine->open_mutexes;
    const HANDLE mutex = g_machine->NewHandle("mutex");
    SetLastError(g_machine->mutex_exists ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return mutex;
  }

  static DWORD WINAPI Wait(HANDLE handle, DWORD ms) {
    const FakeMachine::Handle* known = g_machine->Find(handle);
    if (known == nullptr) return g_machine->Original<DWORD WINAPI(HANDLE, DWORD)>("WaitForSingleObject")(handle, ms);
    if (g_machine->script_.Fails("WaitForSingleObject", known->kind + " " + std::to_string(ms))) return WAIT_FAILED;
    return g_machine->wait_result;
  }

  static BOOL WINAPI Release(HANDLE handle) {
    const FakeMachine::Handle* known = g_machine->Find(handle);
    if (known == nullptr) return g_machine->Original<BOOL WINAPI(HANDLE)>("ReleaseMutex")(handle);
    return !g_machine->script_.Fails("ReleaseMutex", known->kind);
  }

  static BOOL WINAPI Close(HANDLE handle) {
    FakeMachine::Handle* known = g_machine->Find(handle);
    if (known == nullptr) return g_machine->Original<BOOL WINAPI(HANDLE)>("CloseHandle")(handle);
    if (!known->open) {
      ADD_FAILURE() << known->kind << " closed twice";
      SetLastError(ERROR_INVALID_HANDLE);
      return FALSE;
    }
    known->open = false;
    --(known->kind == "mutex" ? g_machine->open_mutexes : g_machine->open_devices);
    (void)g_machine->script_.Fails("CloseHandle", known->kind);
    SetLastError(ERROR_SUCCESS);
    return TRUE;
  }

  static DWORD WINAPI ModuleName(HMODULE module, LPWSTR path, DWORD size) {
    const std::string text = (module == GetModuleHandleW(nullptr) ? "own " : "other ") + std::to_string(size);
    if (g_machine->script_.Fails("GetModuleFileNameW", text)) return 0;
    const std::wstring& whole = g_machine->module_path;
    const auto length = std::min<DWORD>(static_cast<DWORD>(whole.size()), size - 1);
    std::wmemcpy(path, whole.c_str(), length);
    path[length] = L'\0';
    if (length == whole.size()) return length;
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
  }

  static BOOL WINAPI RemoveFileSpec(LPWSTR path) {
    if (g_machine->script_.Fails("PathRemoveFileSpecW", Narrow(path))) return FALSE;
    return g_machine->Original<BOOL WINAPI(LPWSTR)>("PathRemoveFileSpecW")(path);
  }

  static DWORD WINAPI Attributes(LPCWSTR path) {
    if (g_machine->script_.Fails("GetFileAttributesW", Narrow(path))) return INVALID_FILE_ATTRIBUTES;
    if (g_machine->driver_file_exists) return FILE_ATTRIBUTE_ARCHIVE;
    SetLastError(ERROR_FILE_NOT_FOUND);
    return INVALID_FILE_ATTRIBUTES;
  }

  static HANDLE WINAPI Open(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES attributes, DWORD creation,
                            DWORD flags, HANDLE pattern) {
    if (std::wcscmp(name, kDevice) != 0) {
      return g_machine->Original<decltype(Open)>("CreateFileW")(name, access, share, attributes, creation, flags,
                                                                pattern);
    }
    const std::string text = Narrow(name) + " " + Hex(access) + " share " + Hex(share) +
                             (attributes ? " attributes " : " null ") + Hex(creation) + " " + Hex(flags) +
                             (pattern ? " pattern" : " null");
    if (g_machine->script_.Fails("CreateFileW", text)) return INVALID_HANDLE_VALUE;
    ++g_machine->open_devices;
    return g_machine->NewHandle("device");
  }

  static BOOL WINAPI Control(HANDLE handle, DWORD code, LPVOID, DWORD in_size, LPVOID out, DWORD out_size,
                             LPDWORD returned, LPOVERLAPPED) {
    const FakeMachine::Handle* known = g_machine->Find(handle);
    const std::string device = handle == INVALID_HANDLE_VALUE ? "none" : known == nullptr ? "other" : known->kind;
    *returned = 0;
    if (g_machine->script_.Fails("DeviceIoControl", device + " " + Hex(code) + " " + std::to_string(in_size) + " " +
                                                        std::to_string(out_size))) {
      return FALSE;
    }
    const auto answer = g_machine->answers.find(code);
    if (known == nullptr || !known->open || answer == g_machine->answers.end() || out_size != sizeof answer->second) {
      SetLastError(ERROR_INVALID_HANDLE);
      return FALSE;
    }
    std::memcpy(out, &answer->second, *returned = out_size);
    return TRUE;
  }
};

FakeMachine::FakeMachine(CallScript& script) : script_(script) {
  g_machine = this;
  Patch("Sleep", FakeMachineHook::Pause);
  Patch("CreateMutexW", FakeMachineHook::Mutex);
  Patch("WaitForSingleObject", FakeMachineHook::Wait);
  Patch("ReleaseMutex", FakeMachineHook::Release);
  Patch("CloseHandle", FakeMachineHook::Close);
  Patch("GetModuleFileNameW", FakeMachineHook::ModuleName);
  Patch("PathRemoveFileSpecW", FakeMachineHook::RemoveFileSpec);
  Patch("GetFileAttributesW", FakeMachineHook::Attributes);
  Patch("CreateFileW", FakeMachineHook::Open);
  Patch("DeviceIoControl", FakeMachineHook::Control);
}

FakeMachine::~FakeMachine() {
  EXPECT_EQ(open_mutexes, 0) << "mutex left open";
  g_machine = nullptr;
}

HANDLE FakeMachine::NewHandle(const char* kind) {
  // Numbers that no real handle has, and that are never used again.
  const auto handle = reinterpret_cast<HANDLE>(0x7E000000 + 16 * handles_.size());
  handles_[handle] = {kind, true};
  return handle;
}

FakeMachine::Handle* FakeMachine::Find(HANDLE handle) {
  const auto known = handles_.find(handle);
  return known == handles_.end() ? nullptr : &known->second;
}

}  // namespace vexa::test
