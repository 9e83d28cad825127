#include "client/wmi_classes.h"

#include <windows.h>

#include <wbemidl.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

namespace vexahealth {
namespace {

template <typename Interface>
struct Releaser {
  void operator()(Interface* object) const { object->Release(); }
};
template <typename Interface>
using ComOwner = std::unique_ptr<Interface, Releaser<Interface>>;

struct BstrFree {
  void operator()(wchar_t* text) const { SysFreeString(text); }
};
using Bstr = std::unique_ptr<wchar_t, BstrFree>;

class ComApartment {
 public:
  ComApartment() : result_(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
  ~ComApartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  HRESULT result_;
};

HRESULT Connect(ComOwner<IWbemServices>& services) {
  IWbemLocator* created = nullptr;
  HRESULT result = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                    reinterpret_cast<void**>(&created));
  if (FAILED(result)) return result;
  const ComOwner<IWbemLocator> locator(created);
  const Bstr name_space(SysAllocString(L"ROOT\\WMI"));
  IWbemServices* connected = nullptr;
  result = locator->ConnectServer(name_space.get(), nullptr, nullptr, nullptr, WBEM_FLAG_CONNECT_USE_MAX_WAIT, nullptr,
                                  nullptr, &connected);
  if (FAILED(result) || connected == nullptr) return FAILED(result) ? result : E_UNEXPECTED;
  services.reset(connected);
  return CoSetProxyBlanket(connected, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                           RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
}

HRESULT LookFor(IWbemServices& services, std::string_view name) {
  const Bstr path(SysAllocString(std::wstring(name.begin(), name.end()).c_str()));
  IWbemClassObject* found = nullptr;
  const HRESULT result = services.GetObject(path.get(), 0, nullptr, &found, nullptr);
  const ComOwner<IWbemClassObject> owner(found);
  return result;
}

}  // namespace

std::vector<WmiClassFacts> LookForWmiClasses(std::span<const std::string_view> names) {
  using State = WmiClassFacts::State;
  const ComApartment apartment;
  ComOwner<IWbemServices> services;
  const HRESULT connected = Connect(services);
  std::vector<WmiClassFacts> classes;
  for (const std::string_view name : names) {
    const HRESULT result = FAILED(connected) ? connected : LookFor(*services, name);
    // Without the firmware's classes some systems have no such namespace.
    constexpr HRESULT kMissing[] = {static_cast<HRESULT>(WBEM_E_NOT_FOUND), static_cast<HRESULT>(WBEM_E_INVALID_CLASS),
                                    static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE)};
    const bool missing = std::ranges::find(kMissing, result) != std::end(kMissing);
    const State state = SUCCEEDED(result) ? State::kPresent : missing ? State::kMissing : State::kUnknown;
    classes.push_back({.name = name, .state = state, .error = static_cast<uint32_t>(result)});
  }
  return classes;
}

}  // namespace vexahealth
