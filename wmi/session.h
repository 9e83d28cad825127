// One query in one WMI namespace: locator, bounded connect, proxy blanket, bounded query.
#ifndef VEXA_WMI_SESSION_H_
#define VEXA_WMI_SESSION_H_

#include <windows.h>

#include <oleauto.h>
#include <wbemidl.h>
#include <wrl/client.h>

#include <new>
#include <optional>
#include <string>
#include <utility>

#include "frame/handles.h"

namespace vexa {

using Microsoft::WRL::ComPtr;

using Bstr = Owner<BSTR, SysFreeString>;

// A null BSTR is a text too, an empty one: without memory nothing may be sent.
inline BSTR AllocateBstr(const wchar_t* text) {
  if (const BSTR allocated = SysAllocString(text)) return allocated;
  throw std::bad_alloc();
}

inline Bstr MakeBstr(const wchar_t* text) { return Bstr(AllocateBstr(text)); }

// Owns a VARIANT's contents. Its bytes beyond the value are zero before a reader fills it.
class Variant {
 public:
  Variant() noexcept = default;
  ~Variant() { VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  [[nodiscard]] VARIANT* put() noexcept { return &value_; }
  [[nodiscard]] const VARIANT& get() const noexcept { return value_; }

 private:
  VARIANT value_{};
};

// What differs between callers in the lines of the common steps.
struct WmiCaller {
  const wchar_t* name;
  const wchar_t* query_timed_out;  // "%s": the name
  const wchar_t* query_failed;     // "%s": the name, "%s": the HRESULT
};

// Lower-case hexadecimal without leading zeros.
std::wstring ResultText(HRESULT result);

// A failing step: a verbose line, and the same text as a warning in the event log.
void LogStep(const wchar_t* format, ...) noexcept;

// The answer to a query, and the connection to the namespace that gave it. Belongs to threads of the multithreaded
// apartment.
class WmiSession {
 public:
  // Nothing, with the failing step logged, when the locator can't be created (the calling thread has no COM), when
  // connecting fails or takes longer than 5 seconds, when the proxy blanket is refused, or when the WQL query fails or
  // takes longer than 5 seconds.
  [[nodiscard]] static std::optional<WmiSession> Open(const WmiCaller& caller, const wchar_t* name_space,
                                                      const wchar_t* query);

  [[nodiscard]] IWbemServices* services() const noexcept { return services_.Get(); }
  [[nodiscard]] IEnumWbemClassObject* rows() const noexcept { return rows_.Get(); }

 private:
  WmiSession(ComPtr<IWbemServices> services, ComPtr<IEnumWbemClassObject> rows) noexcept
      : services_(std::move(services)), rows_(std::move(rows)) {}

  ComPtr<IWbemServices> services_;
  ComPtr<IEnumWbemClassObject> rows_;
};

}  // namespace vexa

#endif  // VEXA_WMI_SESSION_H_
