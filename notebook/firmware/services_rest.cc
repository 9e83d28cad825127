// Security of the connection, and the calls that the server has no part in.
#include "class_object.h"
#include "files.h"
#include "scenario/texts.h"
#include "services.h"

namespace firmware {
namespace {

// COLE_DEFAULT_PRINCIPAL is no pointer.
std::string PrincipalText(const OLECHAR* principal) {
  const auto number = reinterpret_cast<intptr_t>(principal);
  return number == 0 ? "-" : number == -1 ? "default" : Narrow(principal);
}

}  // namespace

HRESULT Services::SetBlanket(IUnknown*, DWORD authentication, DWORD authorization, OLECHAR* principal, DWORD level,
                             DWORD impersonation, void* identity, DWORD capabilities) {
  return Guarded([&]() -> HRESULT {
    const HRESULT result = notebook_->Meet(At(Step::kSetBlanket)).value_or(S_OK);
    notebook_->Log(scenario::Concat(
        "blanket ", key_, " authentication=", authentication, " authorization=", authorization,
        " principal=", PrincipalText(principal), " level=", level, " impersonation=", impersonation,
        " identity=", identity == nullptr ? "-" : "given", " capabilities=", capabilities, " -> ", ResultText(result)));
    if (FAILED(result)) return result;
    const std::lock_guard guard(lock_);
    blanket_ = {authentication, authorization, level, impersonation, capabilities};
    return result;
  });
}

HRESULT Services::QueryBlanket(IUnknown*, DWORD* authentication, DWORD* authorization, OLECHAR** principal,
                               DWORD* level, DWORD* impersonation, void** identity, DWORD* capabilities) {
  const std::lock_guard guard(lock_);
  const auto tell = [](DWORD* to, DWORD value) {
    if (to != nullptr) *to = value;
  };
  tell(authentication, blanket_.authentication);
  tell(authorization, blanket_.authorization);
  tell(level, blanket_.level);
  tell(impersonation, blanket_.impersonation);
  tell(capabilities, blanket_.capabilities);
  if (principal != nullptr) *principal = nullptr;
  if (identity != nullptr) *identity = nullptr;
  return S_OK;
}

HRESULT Services::CopyProxy(IUnknown* proxy, IUnknown** copy) {
  if (proxy == nullptr || copy == nullptr) return E_INVALIDARG;
  proxy->AddRef();
  *copy = proxy;
  return S_OK;
}

HRESULT Services::CancelAsyncCall(IWbemObjectSink* sink) {
  return PassOn([&](IWbemServices* up) { return up->CancelAsyncCall(sink); });
}

HRESULT Services::QueryObjectSink(LONG flags, IWbemObjectSink** sink) {
  return PassOn([&](IWbemServices* up) { return up->QueryObjectSink(flags, sink); });
}

HRESULT Services::PutClass(IWbemClassObject* object, LONG flags, IWbemContext* context, IWbemCallResult** result) {
  if (ClassObject::Own(object) != nullptr) return WBEM_E_NOT_SUPPORTED;
  return PassOn([&](IWbemServices* up) { return up->PutClass(Unwrapped(object), flags, context, result); });
}

HRESULT Services::DeleteClass(const BSTR name, LONG flags, IWbemContext* context, IWbemCallResult** result) {
  return PassOn([&](IWbemServices* up) { return up->DeleteClass(name, flags, context, result); });
}

HRESULT Services::CreateClassEnum(const BSTR superclass, LONG flags, IWbemContext* context,
                                  IEnumWbemClassObject** classes) {
  return PassOn([&](IWbemServices* up) { return up->CreateClassEnum(superclass, flags, context, classes); });
}

HRESULT Services::PutInstance(IWbemClassObject* object, LONG flags, IWbemContext* context, IWbemCallResult** result) {
  if (ClassObject::Own(object) != nullptr) return WBEM_E_NOT_SUPPORTED;
  return PassOn([&](IWbemServices* up) { return up->PutInstance(Unwrapped(object), flags, context, result); });
}

HRESULT Services::DeleteInstance(const BSTR path, LONG flags, IWbemContext* context, IWbemCallResult** result) {
  return PassOn([&](IWbemServices* up) { return up->DeleteInstance(path, flags, context, result); });
}

HRESULT Services::ExecNotificationQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                                        IEnumWbemClassObject** events) {
  return PassOn([&](IWbemServices* up) { return up->ExecNotificationQuery(language, query, flags, context, events); });
}

HRESULT Services::GetObjectAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) { return WBEM_E_NOT_SUPPORTED; }
HRESULT Services::PutClassAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::DeleteClassAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) { return WBEM_E_NOT_SUPPORTED; }
HRESULT Services::CreateClassEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::PutInstanceAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::DeleteInstanceAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::ExecNotificationQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}
HRESULT Services::ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*, IWbemObjectSink*) {
  return WBEM_E_NOT_SUPPORTED;
}

}  // namespace firmware
