// Tests of the firmware as Windows programs meet it. The program registers the server that lies beside it, and puts the
// registry back at the end.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "firmware/files.h"
#include "firmware/registration.h"
#include "fixture.h"

namespace firmware {

const std::wstring& TestFolder() {
  static const std::wstring& folder = *new std::wstring([] {
    std::wstring path(MAX_PATH + 1, L'\0');
    path.resize(GetTempPathW(MAX_PATH, path.data()));
    path += L"vexa-firmware-test";
    CreateDirectoryW(path.c_str(), nullptr);
    return path + L"\\";
  }());
  return folder;
}

HMODULE Server() {
  static const HMODULE server = [] {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.find_last_of(L'\\') + 1);
    return LoadLibraryW((path + L"vexa-firmware.dll").c_str());
  }();
  return server;
}

namespace {

HRESULT CallServer(const char* function) {
  return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(Server(), function)))();
}

// A registry value as it was found, put back at the end.
class KeptValue {
 public:
  KeptValue(const wchar_t* key, const wchar_t* value) : key_(key), value_(value), text_(ReadRegistry(key, value)) {}
  ~KeptValue() {
    if (text_) {
      WriteRegistry(key_, value_, *text_);
    } else {
      RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key_, value_);
    }
  }
  KeptValue(const KeptValue&) = delete;
  KeptValue& operator=(const KeptValue&) = delete;

 private:
  const wchar_t* key_;
  const wchar_t* value_;
  std::optional<std::wstring> text_;
};

int RunTests() {
  const KeptValue server(kLocatorKey, nullptr);
  const KeptValue original(kNotebookKey, kOriginalPathValue);
  const KeptValue threading(kNotebookKey, kOriginalThreadingValue);
  const KeptValue scenario(kNotebookKey, L"Firmware");
  WriteRegistry(kNotebookKey, L"Firmware", TestFolder() + L"firmware.json");
  if (FAILED(CallServer("DllRegisterServer"))) {
    std::fprintf(stderr, "the server cannot be registered\n");
    return EXIT_FAILURE;
  }
  return RUN_ALL_TESTS();
}

}  // namespace
}  // namespace firmware

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (firmware::Server() == nullptr) {
    std::fprintf(stderr, "vexa-firmware.dll does not lie beside the program\n");
    return EXIT_FAILURE;
  }
  return firmware::RunTests();
}
