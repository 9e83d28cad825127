#include "files.h"
#include "passed_on.h"
#include "variants.h"

namespace firmware {
namespace {

// Only handed-on objects answer for this interface; it adds no method and is never marshalled.
constexpr IID kPassedOnId = {0x1c9be0f4, 0x8d27, 0x4f5a, {0xb3, 0x6e, 0x0a, 0x41, 0xd9, 0x65, 0x2c, 0x88}};

}  // namespace

IWbemClassObject* Unwrapped(IWbemClassObject* object) {
  void* handed_on = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(kPassedOnId, &handed_on))) return object;
  object->Release();
  return static_cast<PassedOnObject*>(object)->upstream();
}

void HandOn(const Origin& origin, IWbemClassObject** object) {
  if (object == nullptr || *object == nullptr) return;
  Ref<IWbemClassObject> upstream(std::exchange(*object, nullptr));
  *object = new PassedOnObject(origin, std::move(upstream));
}

PassedOnObject::PassedOnObject(Origin origin, Ref<IWbemClassObject> upstream)
    : origin_(std::move(origin)), upstream_(std::move(upstream)) {}

HRESULT PassedOnObject::QueryInterface(REFIID id, void** object) {
  if (object == nullptr || !IsEqualIID(id, kPassedOnId)) return Counted::QueryInterface(id, object);
  *object = static_cast<IWbemClassObject*>(this);
  AddRef();
  return S_OK;
}

HRESULT PassedOnObject::Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) {
  return Guarded([&]() -> HRESULT {
    const std::string property = FromBstr(name);
    Effects effects;
    if (const auto failed = origin_.notebook->Meet(origin_.At(Step::kGet, property), effects)) return *failed;
    const HRESULT result = upstream_->Get(name, flags, value, type, flavor);
    if (FAILED(result) || !effects.raw || value == nullptr) return result;
    VariantClear(value);
    return ToVariant(*effects.raw, value);
  });
}

HRESULT PassedOnObject::Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) {
  return Guarded([&]() -> HRESULT {
    const std::string property = FromBstr(name);
    if (const auto failed = origin_.notebook->Meet(origin_.At(Step::kPut, property))) return *failed;
    return upstream_->Put(name, flags, value, type);
  });
}

HRESULT PassedOnObject::GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** in, IWbemClassObject** out) {
  return Guarded([&]() -> HRESULT {
    if (in != nullptr) *in = nullptr;
    if (out != nullptr) *out = nullptr;
    Origin parameters = origin_;
    parameters.method = FromBstr(name);
    if (const auto failed = origin_.notebook->Meet(parameters.At(Step::kGetMethod))) return *failed;
    const HRESULT result = upstream_->GetMethod(name, flags, in, out);
    HandOn(parameters, in);
    HandOn(parameters, out);
    return result;
  });
}

HRESULT PassedOnObject::SpawnInstance(LONG flags, IWbemClassObject** instance) {
  return Guarded([&]() -> HRESULT {
    if (instance != nullptr) *instance = nullptr;
    if (const auto failed = origin_.notebook->Meet(origin_.At(Step::kSpawnInstance))) return *failed;
    const HRESULT result = upstream_->SpawnInstance(flags, instance);
    HandOn(origin_, instance);
    return result;
  });
}

HRESULT PassedOnObject::SpawnDerivedClass(LONG flags, IWbemClassObject** derived) {
  return Guarded([&] {
    const HRESULT result = upstream_->SpawnDerivedClass(flags, derived);
    if (SUCCEEDED(result)) HandOn(origin_, derived);
    return result;
  });
}

HRESULT PassedOnObject::Clone(IWbemClassObject** copy) {
  return Guarded([&] {
    const HRESULT result = upstream_->Clone(copy);
    if (SUCCEEDED(result)) HandOn(origin_, copy);
    return result;
  });
}

HRESULT PassedOnObject::NextMethod(LONG flags, BSTR* name, IWbemClassObject** in, IWbemClassObject** out) {
  return Guarded([&] {
    const HRESULT result = upstream_->NextMethod(flags, name, in, out);
    if (result != S_OK) return result;
    HandOn(origin_, in);
    HandOn(origin_, out);
    return result;
  });
}

HRESULT PassedOnObject::CompareTo(LONG flags, IWbemClassObject* other) {
  return upstream_->CompareTo(flags, Unwrapped(other));
}

HRESULT PassedOnObject::PutMethod(LPCWSTR name, LONG flags, IWbemClassObject* in, IWbemClassObject* out) {
  return upstream_->PutMethod(name, flags, Unwrapped(in), Unwrapped(out));
}

HRESULT PassedOnObject::GetQualifierSet(IWbemQualifierSet** set) { return upstream_->GetQualifierSet(set); }
HRESULT PassedOnObject::Delete(LPCWSTR name) { return upstream_->Delete(name); }
HRESULT PassedOnObject::GetNames(LPCWSTR qualifier, LONG flags, VARIANT* value, SAFEARRAY** names) {
  return upstream_->GetNames(qualifier, flags, value, names);
}
HRESULT PassedOnObject::BeginEnumeration(LONG flags) { return upstream_->BeginEnumeration(flags); }
HRESULT PassedOnObject::Next(LONG flags, BSTR* name, VARIANT* value, CIMTYPE* type, LONG* flavor) {
  return upstream_->Next(flags, name, value, type, flavor);
}
HRESULT PassedOnObject::EndEnumeration() { return upstream_->EndEnumeration(); }
HRESULT PassedOnObject::GetPropertyQualifierSet(LPCWSTR property, IWbemQualifierSet** set) {
  return upstream_->GetPropertyQualifierSet(property, set);
}
HRESULT PassedOnObject::GetObjectText(LONG flags, BSTR* text) { return upstream_->GetObjectText(flags, text); }
HRESULT PassedOnObject::GetPropertyOrigin(LPCWSTR name, BSTR* class_name) {
  return upstream_->GetPropertyOrigin(name, class_name);
}
HRESULT PassedOnObject::InheritsFrom(LPCWSTR ancestor) { return upstream_->InheritsFrom(ancestor); }
HRESULT PassedOnObject::DeleteMethod(LPCWSTR name) { return upstream_->DeleteMethod(name); }
HRESULT PassedOnObject::BeginMethodEnumeration(LONG flags) { return upstream_->BeginMethodEnumeration(flags); }
HRESULT PassedOnObject::EndMethodEnumeration() { return upstream_->EndMethodEnumeration(); }
HRESULT PassedOnObject::GetMethodQualifierSet(LPCWSTR method, IWbemQualifierSet** set) {
  return upstream_->GetMethodQualifierSet(method, set);
}
HRESULT PassedOnObject::GetMethodOrigin(LPCWSTR name, BSTR* class_name) {
  return upstream_->GetMethodOrigin(name, class_name);
}

}  // namespace firmware
