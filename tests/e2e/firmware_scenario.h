// The scenario of the simulated firmware, for the length of a test.
#ifndef VEXA_TESTS_E2E_FIRMWARE_SCENARIO_H_
#define VEXA_TESTS_E2E_FIRMWARE_SCENARIO_H_

#include <windows.h>

#include <cstdio>
#include <string>

namespace vexa::test {

// The firmware reads a file in the folder for temporary files, where its state and its log lie beside it.
class FirmwareScenario {
 public:
  FirmwareScenario() {
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    path_ = std::wstring(temp) + L"firmware-route-test.json";
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Vexa\\Notebook", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                    nullptr);
    RegSetValueExW(key_, L"Firmware", 0, REG_SZ, reinterpret_cast<const BYTE*>(path_.c_str()),
                   static_cast<DWORD>((path_.size() + 1) * sizeof(wchar_t)));
  }
  ~FirmwareScenario() {
    RegDeleteValueW(key_, L"Firmware");
    RegCloseKey(key_);
    DeleteFileW(path_.c_str());
  }

  FirmwareScenario(const FirmwareScenario&) = delete;
  FirmwareScenario& operator=(const FirmwareScenario&) = delete;

  // Each file has a length of its own, by which the firmware sees that it is another one.
  void Give(const std::string& json) {
    const std::string text = json + std::string(++files_, ' ');
    FILE* file = _wfopen(path_.c_str(), L"wb");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  }
  // No file at all: everything but the firmware's own namespace is the system's.
  void TakeAway() { DeleteFileW(path_.c_str()); }

 private:
  std::wstring path_;
  HKEY key_ = nullptr;
  size_t files_ = 0;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_FIRMWARE_SCENARIO_H_
