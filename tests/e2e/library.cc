#include "tests/e2e/library.h"

#include <cstdio>
#include <cstdlib>

namespace vexa::test {

Library::Library(const wchar_t* file) : module_(LoadLibraryW(file)) {
  if (module_ != nullptr) return;
  std::fprintf(stderr, "%ls can't be loaded: error %lu\n", file, GetLastError());
  std::abort();
}

bool Library::Free() {
  if (module_ == nullptr) return true;
  wchar_t file[MAX_PATH] = {};
  GetModuleFileNameW(module_, file, MAX_PATH);
  FreeLibrary(module_);
  module_ = nullptr;
  return GetModuleHandleW(file) == nullptr;
}

Library::Export Library::Find(const char* name) const {
  const FARPROC address = GetProcAddress(module_, name);
  if (address == nullptr) {
    std::fprintf(stderr, "%s is not exported\n", name);
    std::abort();
  }
  return {address};
}

uint32_t Library::Number(const char* name) const {
  decltype(&::BatteryHealthyTable_Rsoc) function = Find(name);
  return function();
}

uint32_t Library::Text(const char* name, char* text) const {
  decltype(&::BatteryHealthyTable_DeviceName) function = Find(name);
  return function(text);
}

}  // namespace vexa::test
