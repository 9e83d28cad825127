#include "tests/support/fake_wmi_objects.h"

namespace vexa::test {
namespace {

std::string ContextText(const IWbemContext* context, IWbemCallResult* const* result) {
  return std::string(context == nullptr ? "" : " context") + (result == nullptr ? "" : " result");
}

// A BSTR is more than a pointer to text: it knows its length.
std::string BstrText(const BSTR text) {
  if (text == nullptr) return "null";
  const std::string narrow = Narrow(text);
  return SysStringLen(text) == std::wstring_view(text).size() ? narrow : narrow + " (no BSTR)";
}

}  // namespace

HRESULT FakeClassObject::Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) {
  const std::string text = Narrow(name) + " " + std::to_string(flags) + (type || flavor ? " type" : "");
  if (const std::optional<HRESULT> failure = Enter("Get", text)) return *failure;
  if (const auto property = properties.find(name); property != properties.end()) {
    Store(property->second, value);
    return S_OK;
  }
  const std::optional<WmiValue> other = wmi.other_property ? wmi.other_property(name) : std::nullopt;
  if (!other) return WBEM_E_NOT_FOUND;
  Store(*other, value);
  return S_OK;
}

HRESULT FakeClassObject::Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) {
  const bool is_text = value->vt == VT_BSTR;
  const std::string text = Narrow(name) + " " + std::to_string(flags) + " " + std::to_string(value->vt) + " " +
                           (is_text ? BstrText(value->bstrVal) : "") + " " + std::to_string(type);
  if (const std::optional<HRESULT> failure = Enter("Put", text)) return *failure;
  if (is_text) parameters[name] = std::wstring(value->bstrVal, SysStringLen(value->bstrVal));
  return S_OK;
}

HRESULT FakeClassObject::SpawnInstance(LONG flags, IWbemClassObject** instance) {
  *instance = nullptr;
  if (const std::optional<HRESULT> failure = Enter("SpawnInstance", std::to_string(flags))) return *failure;
  *instance = wmi.Make<FakeClassObject>("in-parameters");
  return S_OK;
}

HRESULT FakeClassObject::GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** in, IWbemClassObject** out) {
  *in = nullptr;
  const std::string text = Narrow(name) + " " + std::to_string(flags) + (out == nullptr ? "" : " out");
  if (const std::optional<HRESULT> failure = Enter("GetMethod", text)) return *failure;
  if (!wmi.methods_without_parameters.contains(name)) *in = wmi.Make<FakeClassObject>("in-definition");
  return S_OK;
}

HRESULT FakeEnumerator::Next(LONG timeout, ULONG count, IWbemClassObject** objects, ULONG* returned) {
  *returned = 0;
  const std::string text = std::to_string(timeout) + " " + std::to_string(count);
  if (const std::optional<HRESULT> failure = Enter("Next", text)) return *failure;
  if (next_ == rows_.size()) return WBEM_S_FALSE;
  *objects = wmi.Make<FakeClassObject>("row", rows_[next_++]);
  *returned = 1;
  return S_OK;
}

HRESULT FakeWmiServices::GetObject(const BSTR path, LONG flags, IWbemContext* context, IWbemClassObject** object,
                                   IWbemCallResult** result) {
  *object = nullptr;
  const std::string text = BstrText(path) + " " + std::to_string(flags) + ContextText(context, result);
  if (const std::optional<HRESULT> failure = Enter("GetObject", text)) return *failure;
  *object = wmi.Make<FakeClassObject>("class");
  return S_OK;
}

HRESULT FakeWmiServices::ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                                   IEnumWbemClassObject** rows) {
  *rows = nullptr;
  const std::string text = BstrText(language) + " " + BstrText(query) + " " + Hex(static_cast<uintptr_t>(flags)) +
                           ContextText(context, nullptr);
  if (const std::optional<HRESULT> failure = Enter("ExecQuery", text)) return *failure;
  const auto answer = wmi.rows.find(query);
  *rows = wmi.Make<FakeEnumerator>(answer == wmi.rows.end() ? wmi.other_rows : answer->second);
  return S_OK;
}

HRESULT FakeWmiServices::ExecMethod(const BSTR path, const BSTR method, LONG flags, IWbemContext* context,
                                    IWbemClassObject* in, IWbemClassObject** out, IWbemCallResult** result) {
  *out = nullptr;
  auto* parameters = dynamic_cast<FakeClassObject*>(in);
  const std::string text = BstrText(path) + " " + BstrText(method) + " " + std::to_string(flags) + " " +
                           (parameters == nullptr ? "null" : parameters->kind) + ContextText(context, result);
  if (const std::optional<HRESULT> failure = Enter("ExecMethod", text)) return *failure;
  const FakeWmi::Parameters none;
  *out = wmi.Make<FakeClassObject>("answer", wmi.firmware(method, parameters ? parameters->parameters : none));
  return S_OK;
}

HRESULT FakeLocator::ConnectServer(const BSTR name_space, const BSTR user, const BSTR password, const BSTR locale,
                                   LONG flags, const BSTR authority, IWbemContext* context, IWbemServices** services) {
  *services = nullptr;
  const std::string text = BstrText(name_space) + " " + BstrText(user) + " " + BstrText(password) + " " +
                           BstrText(locale) + " " + std::to_string(flags) + " " + BstrText(authority) +
                           ContextText(context, nullptr);
  if (const std::optional<HRESULT> failure = Enter("ConnectServer", text)) return *failure;
  *services = wmi.Make<FakeWmiServices>();
  return S_OK;
}

}  // namespace vexa::test
