// Owners of what Windows hands out: one alias per kind, from its closer and its invalid value.
#ifndef VEXA_FRAME_HANDLES_H_
#define VEXA_FRAME_HANDLES_H_

#include <windows.h>

#include <setupapi.h>

#include <cstddef>
#include <utility>

namespace vexa {

template <typename Handle, auto kClose, auto kInvalid = nullptr>
class Owner {
 public:
  Owner() noexcept = default;
  explicit Owner(Handle handle) noexcept : handle_(handle) {}
  Owner(Owner&& other) noexcept : handle_(std::exchange(other.handle_, Invalid())) {}
  Owner& operator=(Owner&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Owner() {
    if (*this) kClose(handle_);
  }

  [[nodiscard]] Handle get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != Invalid(); }
  // For functions that store a new handle; the owner must be empty.
  [[nodiscard]] Handle* put() noexcept { return &handle_; }

 private:
  static Handle Invalid() noexcept {
    if constexpr (std::is_same_v<decltype(kInvalid), std::nullptr_t>) {
      return nullptr;
    } else {
      return reinterpret_cast<Handle>(kInvalid);
    }
  }

  Handle handle_ = Invalid();
};

using EventSource = Owner<HANDLE, DeregisterEventSource>;
using KernelHandle = Owner<HANDLE, CloseHandle>;
using DeviceHandle = Owner<HANDLE, CloseHandle, -1LL>;  // INVALID_HANDLE_VALUE
using ServiceHandle = Owner<SC_HANDLE, CloseServiceHandle>;
using RegistryKey = Owner<HKEY, RegCloseKey>;
using LoadedLibrary = Owner<HMODULE, FreeLibrary>;
using LocalMemory = Owner<void*, LocalFree>;
using DeviceInfoSet = Owner<HDEVINFO, SetupDiDestroyDeviceInfoList, -1LL>;  // INVALID_HANDLE_VALUE

}  // namespace vexa

#endif  // VEXA_FRAME_HANDLES_H_
