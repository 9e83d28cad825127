// COM for the length of a scope.
#ifndef VEXA_WMI_COM_APARTMENT_H_
#define VEXA_WMI_COM_APARTMENT_H_

#include <windows.h>

#include <objbase.h>

namespace vexa {

// Enters an apartment, the multithreaded one by default, unless `wanted` is false, and leaves it again when entering
// succeeded.
class ComApartment {
 public:
  explicit ComApartment(bool wanted = true, DWORD model = COINIT_MULTITHREADED) noexcept
      : result_(wanted ? CoInitializeEx(nullptr, model) : S_FALSE),
        entered_(wanted && SUCCEEDED(result_)) {}
  ~ComApartment() {
    if (entered_) CoUninitialize();
  }

  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

  [[nodiscard]] HRESULT result() const noexcept { return result_; }
  [[nodiscard]] bool entered() const noexcept { return entered_; }

 private:
  HRESULT result_;
  bool entered_;
};

}  // namespace vexa

#endif  // VEXA_WMI_COM_APARTMENT_H_
