// The shipped library on the simulated radios: it is loaded anew for each test, with a scenario of the test's own.
#ifndef VEXA_TESTS_E2E_RADIOS_H_
#define VEXA_TESTS_E2E_RADIOS_H_

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "vexa/vexa.h"

namespace vexa::test {

inline constexpr wchar_t kLibrary[] = L"C:\\Vexa\\VexaWinIO64.dll";
inline constexpr wchar_t kNotebookKey[] = L"SOFTWARE\\Vexa\\Notebook";
inline constexpr uint32_t kNotCollected = 0xFFFFFC18;
inline constexpr uint32_t kFailed = 0x7FFFFFFF;

inline std::wstring TempFile(const wchar_t* name) {
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  return std::wstring(folder) + name;
}

// A scenario's file, named in the registry as long as this lives.
class ScenarioFile {
 public:
  ScenarioFile(const wchar_t* value, const wchar_t* name) : value_(value), path_(TempFile(name)) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, kNotebookKey, value, REG_SZ, path_.c_str(),
                    static_cast<DWORD>((path_.size() + 1) * sizeof(wchar_t)));
  }
  ~ScenarioFile() {
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kNotebookKey, value_);
    DeleteFileW(path_.c_str());
  }
  ScenarioFile(const ScenarioFile&) = delete;
  ScenarioFile& operator=(const ScenarioFile&) = delete;

  // Each text gets a length of its own, by which a reader sees that it is another one.
  void Use(const std::string& text) const {
    static int files = 0;
    const std::string whole = text + std::string(++files, ' ');
    FILE* file = _wfopen(path_.c_str(), L"wb");
    std::fwrite(whole.data(), 1, whole.size(), file);
    std::fclose(file);
  }

 private:
  const wchar_t* value_;
  std::wstring path_;
};

// The library, loaded anew: its snapshots are empty.
class Loaded {
 public:
  Loaded()
      : module_(LoadLibraryExW(kLibrary, nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32)) {
    if (module_ == nullptr) ADD_FAILURE() << "the library can't be loaded: " << GetLastError();
  }
  ~Loaded() {
    FreeLibrary(module_);
    EXPECT_EQ(GetModuleHandleW(L"VexaWinIO64.dll"), nullptr) << "the library is still loaded";
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;

  HMODULE module() const { return module_; }
  template <typename Function>
  Function* Export(const char* name, Function*) const {
    return reinterpret_cast<Function*>(GetProcAddress(module_, name));
  }
  uint32_t Number(const char* name) const { return Export(name, &RF_BTIsUsed)(); }
  std::string Text(const char* name) const { return Export(name, &RF_BTConnectedType)().text; }

 private:
  HMODULE module_;
};

// A number of a library's counts; 0 when it has not counted that.
inline int Count(const wchar_t* file, const std::string& what) {
  FILE* counts = _wfopen(TempFile(file).c_str(), L"rb");
  if (counts == nullptr) return 0;
  char text[8192] = {};
  std::fread(text, 1, sizeof text - 1, counts);
  std::fclose(counts);
  const char* found = std::strstr(text, ("\"" + what + "\": ").c_str());
  return found == nullptr ? 0 : std::atoi(found + what.size() + 4);
}

class Radios : public testing::Test {
 protected:
  Radios() { firmware_.Use(R"({"firmware": {"log": false}})"); }

  void UseRadios(const std::string& section) { radios_.Use("{\"radios\": {" + section + "}}"); }

  ScenarioFile radios_{L"Radios", L"radios-test.json"};
  ScenarioFile firmware_{L"Firmware", L"radios-firmware-test.json"};
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_RADIOS_H_
