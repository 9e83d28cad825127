// The part of IWbemClassObject that deals with methods, and what is not supported.
#include "class_object.h"
#include "files.h"
#include "methods.h"

namespace firmware {
namespace {

template <typename T>
HRESULT Unsupported(T** out) {
  if (out != nullptr) *out = nullptr;
  return WBEM_E_NOT_SUPPORTED;
}

}  // namespace

void ClassObject::GiveParameters(const Method& method, const std::vector<Property>& parameters,
                                 IWbemClassObject** out) const {
  if (out == nullptr) return;
  *out = parameters.empty() ? nullptr : new ClassObject(notebook_, ParametersOf(*object_.shape, method, parameters));
}

HRESULT ClassObject::GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** in, IWbemClassObject** out) {
  return Guarded([&]() -> HRESULT {
    if (name == nullptr || flags != 0) return WBEM_E_INVALID_PARAMETER;
    if (in != nullptr) *in = nullptr;
    if (out != nullptr) *out = nullptr;
    const std::string method_name = Narrow(name);
    Exchange exchange = At(Step::kGetMethod);
    exchange.method = method_name;
    if (const auto failed = notebook_->Meet(exchange)) return *failed;
    if (!object_.is_class) return WBEM_E_ILLEGAL_OPERATION;
    const Method* method = FindMethod(*object_.shape, method_name);
    if (method == nullptr) return WBEM_E_NOT_FOUND;
    GiveParameters(*method, method->inputs, in);
    GiveParameters(*method, method->outputs, out);
    return S_OK;
  });
}

HRESULT ClassObject::BeginMethodEnumeration(LONG) {
  if (!object_.is_class) return WBEM_E_ILLEGAL_OPERATION;
  const std::lock_guard guard(lock_);
  next_method_ = 0;
  enumerating_methods_ = true;
  return S_OK;
}

HRESULT ClassObject::NextMethod(LONG flags, BSTR* name, IWbemClassObject** in, IWbemClassObject** out) {
  return Guarded([&]() -> HRESULT {
    if (flags != 0) return WBEM_E_INVALID_PARAMETER;
    const std::lock_guard guard(lock_);
    if (!enumerating_methods_) return WBEM_E_UNEXPECTED;
    if (next_method_ == object_.shape->methods.size()) return WBEM_S_NO_MORE_DATA;
    const Method& method = object_.shape->methods[next_method_++];
    if (name != nullptr) *name = SysAllocString(Wide(method.name).c_str());
    GiveParameters(method, method.inputs, in);
    GiveParameters(method, method.outputs, out);
    return S_OK;
  });
}

HRESULT ClassObject::EndMethodEnumeration() {
  const std::lock_guard guard(lock_);
  enumerating_methods_ = false;
  return S_OK;
}

HRESULT ClassObject::GetMethodOrigin(LPCWSTR name, BSTR* class_name) {
  return Guarded([&]() -> HRESULT {
    if (name == nullptr || class_name == nullptr) return WBEM_E_INVALID_PARAMETER;
    *class_name = nullptr;
    if (FindMethod(*object_.shape, Narrow(name)) == nullptr) return WBEM_E_NOT_FOUND;
    *class_name = SysAllocString(Wide(object_.shape->name).c_str());
    return S_OK;
  });
}

HRESULT ClassObject::GetQualifierSet(IWbemQualifierSet** set) { return Unsupported(set); }
HRESULT ClassObject::GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet** set) { return Unsupported(set); }
HRESULT ClassObject::GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet** set) { return Unsupported(set); }
HRESULT ClassObject::GetObjectText(LONG, BSTR* text) { return Unsupported(text); }
HRESULT ClassObject::SpawnDerivedClass(LONG, IWbemClassObject** derived) { return Unsupported(derived); }
HRESULT ClassObject::CompareTo(LONG, IWbemClassObject*) { return WBEM_E_NOT_SUPPORTED; }
HRESULT ClassObject::Delete(LPCWSTR) { return WBEM_E_NOT_SUPPORTED; }
HRESULT ClassObject::PutMethod(LPCWSTR, LONG, IWbemClassObject*, IWbemClassObject*) { return WBEM_E_NOT_SUPPORTED; }
HRESULT ClassObject::DeleteMethod(LPCWSTR) { return WBEM_E_NOT_SUPPORTED; }

}  // namespace firmware
