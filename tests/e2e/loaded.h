// The shipped library, loaded anew for a test, and the scenarios of the pieces of the notebook that read a file.
#ifndef VEXA_TESTS_E2E_LOADED_H_
#define VEXA_TESTS_E2E_LOADED_H_

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "vexa/vexa.h"

namespace vexa::test {

// Where the scripts put it.
inline constexpr wchar_t kLibraryFile[] = L"C:\\Vexa\\VexaWinIO64.dll";

inline std::wstring TempFile(const wchar_t* name) {
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  return std::wstring(folder) + name;
}

// A scenario's file, named in the registry as long as this lives.
class ScenarioFile {
 public:
  ScenarioFile(const wchar_t* value, const wchar_t* name) : value_(value), path_(TempFile(name)) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, value, REG_SZ, path_.c_str(),
                    static_cast<DWORD>((path_.size() + 1) * sizeof(wchar_t)));
  }
  ~ScenarioFile() {
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kKey, value_);
    TakeAway();
  }
  ScenarioFile(const ScenarioFile&) = delete;
  ScenarioFile& operator=(const ScenarioFile&) = delete;

  // Each text gets a length of its own, by which a reader sees that it is another one.
  void Use(const std::string& text) const {
    static size_t files = 0;
    const std::string whole = text + std::string(++files, ' ');
    FILE* file = _wfopen(path_.c_str(), L"wb");
    std::fwrite(whole.data(), 1, whole.size(), file);
    std::fclose(file);
  }
  void TakeAway() const { DeleteFileW(path_.c_str()); }

 private:
  static constexpr wchar_t kKey[] = L"SOFTWARE\\Vexa\\Notebook";
  const wchar_t* value_;
  std::wstring path_;
};

// The library, loaded anew: its snapshots are empty.
class Loaded {
 public:
  explicit Loaded(const wchar_t* file = kLibraryFile)
      : module_(LoadLibraryExW(file, nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32)) {
    if (module_ == nullptr) ADD_FAILURE() << "the library can't be loaded: " << GetLastError();
  }
  ~Loaded() {
    Free();
    EXPECT_TRUE(WaitUntilUnloaded()) << "the library is still loaded";
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;

  // False when the library stays: a call that hangs keeps it.
  bool Free() {
    if (module_ != nullptr) FreeLibrary(std::exchange(module_, nullptr));
    return !IsLoaded();
  }
  static bool IsLoaded() { return GetModuleHandleW(L"VexaWinIO64.dll") != nullptr; }
  static bool WaitUntilUnloaded() {
    for (int i = 0; i < 1000 && IsLoaded(); ++i) Sleep(10);
    return !IsLoaded();
  }

  HMODULE module() const { return module_; }
  template <typename Function>
  Function* Export(const std::string& name) const {
    const FARPROC address = GetProcAddress(module_, name.c_str());
    if (address == nullptr) {
      std::fprintf(stderr, "%s is not exported\n", name.c_str());
      std::abort();
    }
    return reinterpret_cast<Function*>(address);
  }
  uint32_t Number(const std::string& name) const { return Export<decltype(RF_BTIsUsed)>(name)(); }
  std::string Text(const std::string& name) const { return Export<decltype(RF_BTConnectedType)>(name)().text; }

 private:
  HMODULE module_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_LOADED_H_
