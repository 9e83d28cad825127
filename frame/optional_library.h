// System libraries that some systems lack: not in the import table, loaded on first use.
#ifndef VEXA_FRAME_OPTIONAL_LIBRARY_H_
#define VEXA_FRAME_OPTIONAL_LIBRARY_H_

#include <windows.h>

#include <atomic>

namespace vexa {

// Taken from the system's folder only, and kept until the process ends. Any thread.
class OptionalLibrary {
 public:
  explicit constexpr OptionalLibrary(const wchar_t* file) noexcept : file_(file) {}

  // Null without the library or the function; the last error then is 126 (ERROR_MOD_NOT_FOUND) or 127
  // (ERROR_PROC_NOT_FOUND). A missing library is looked for again by the next call.
  template <typename Function>
  [[nodiscard]] Function* Find(const char* function) noexcept {
    const HMODULE module = Load();
    return module == nullptr ? nullptr : reinterpret_cast<Function*>(GetProcAddress(module, function));
  }

 private:
  // Two threads that load at once hold two references, which does no harm: none is ever given back.
  HMODULE Load() noexcept {
    HMODULE module = module_.load(std::memory_order_acquire);
    if (module != nullptr) return module;
    module = LoadLibraryExW(file_, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (module != nullptr) module_.store(module, std::memory_order_release);
    return module;
  }

  const wchar_t* file_;
  std::atomic<HMODULE> module_ = nullptr;
};

}  // namespace vexa

#endif  // VEXA_FRAME_OPTIONAL_LIBRARY_H_
