#include "class_object.h"

#include <algorithm>

#include "files.h"
#include "methods.h"
#include "names.h"
#include "results.h"
#include "scenario/texts.h"
#include "variants.h"

namespace firmware {
namespace {

BSTR NewBstr(const std::string& text) { return SysAllocString(Wide(text).c_str()); }

// Which properties GetNames and BeginEnumeration give, by their flags.
bool Chosen(LONG flags, const ObjectProperty& property, const Object& object) {
  const LONG origin = flags & WBEM_MASK_CONDITION_ORIGIN;
  if (origin == WBEM_FLAG_SYSTEM_ONLY && !property.system) return false;
  if ((origin == WBEM_FLAG_NONSYSTEM_ONLY || origin == WBEM_FLAG_LOCAL_ONLY) && property.system) return false;
  if (origin == WBEM_FLAG_PROPAGATED_ONLY) return false;
  if ((flags & WBEM_FLAG_KEYS_ONLY) == 0) return true;
  return std::ranges::any_of(object.shape->properties,
                             [&](const Property& p) { return p.key && p.name == property.name; });
}

HRESULT Deliver(const ObjectProperty& property, VARIANT* value, CIMTYPE* type, LONG* flavor) {
  if (value != nullptr) {
    const HRESULT result = ToVariant(property.value, value);
    if (FAILED(result)) return result;
  }
  if (type != nullptr) *type = property.type.Code();
  if (flavor != nullptr) *flavor = property.system ? WBEM_FLAVOR_ORIGIN_SYSTEM : WBEM_FLAVOR_ORIGIN_LOCAL;
  return S_OK;
}

// A SAFEARRAY of texts.
HRESULT NamesArray(const std::vector<std::string>& names, SAFEARRAY** array) {
  Datum datum{.vt = kVtArray | kVtBstr, .has_items = true};
  for (const std::string& name : names) datum.items.push_back(Datum::Text(name));
  VARIANT variant;
  const HRESULT result = ToVariant(datum, &variant);
  *array = SUCCEEDED(result) ? V_ARRAY(&variant) : nullptr;
  return result;
}

}  // namespace

ClassObject::ClassObject(std::shared_ptr<const Notebook> notebook, Object object)
    : notebook_(std::move(notebook)),
      namespace_key_(NamespaceName(object.namespace_name)),
      object_(std::move(object)) {}

const Object* ClassObject::Own(IWbemClassObject* object) {
  void* own = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(kOwnObjectId, &own))) return nullptr;
  object->Release();
  return &static_cast<ClassObject*>(object)->object_;
}

HRESULT ClassObject::QueryInterface(REFIID id, void** object) {
  if (object == nullptr || !IsEqualIID(id, kOwnObjectId)) return Counted::QueryInterface(id, object);
  *object = static_cast<IWbemClassObject*>(this);
  AddRef();
  return S_OK;
}

Exchange ClassObject::At(Step step, std::string_view property) const {
  const bool parameters = !object_.owner.empty();
  return {.step = step,
          .namespace_name = parameters ? std::string_view(kFirmwareNamespace) : std::string_view(namespace_key_),
          .class_name = parameters ? object_.owner : object_.shape->name,
          .method = object_.method,
          .property = property,
          .inputs = &object_.inputs};
}

HRESULT ClassObject::Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) {
  return Guarded([&]() -> HRESULT {
    if (name == nullptr || flags != 0) return WBEM_E_INVALID_PARAMETER;
    if (value != nullptr) VariantInit(value);
    const std::string property_name = Narrow(name);
    Effects effects;
    if (const auto failed = notebook_->Meet(At(Step::kGet, property_name), effects)) return *failed;
    const std::lock_guard guard(lock_);
    std::optional<ObjectProperty> property = FindProperty(object_, property_name);
    if (!property) return WBEM_E_NOT_FOUND;
    if (effects.raw) property->value = *effects.raw;
    return Deliver(*property, value, type, flavor);
  });
}

HRESULT ClassObject::Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) {
  return Guarded([&]() -> HRESULT {
    if (name == nullptr || flags != 0) return WBEM_E_INVALID_PARAMETER;
    const std::string property = Narrow(name);
    if (const auto failed = notebook_->Meet(At(Step::kPut, property))) return *failed;
    const std::lock_guard guard(lock_);
    const Datum datum = value != nullptr ? FromVariant(*value) : Datum{};
    const auto result = static_cast<HRESULT>(PutProperty(object_, property, datum, type));
    if (FAILED(result)) {
      notebook_->Log(scenario::Concat("put ", object_.owner.empty() ? object_.shape->name : object_.owner, ".",
                                      object_.method, " ", property, "=", datum.text.value_or("?"), " -> failed ",
                                      ResultText(result)));
    }
    return result;
  });
}

HRESULT ClassObject::GetNames(LPCWSTR qualifier, LONG flags, VARIANT*, SAFEARRAY** names) {
  return Guarded([&]() -> HRESULT {
    if (names == nullptr) return WBEM_E_INVALID_PARAMETER;
    *names = nullptr;
    if (qualifier != nullptr || (flags & WBEM_MASK_PRIMARY_CONDITION) != 0) return WBEM_E_NOT_SUPPORTED;
    const std::lock_guard guard(lock_);
    std::vector<std::string> chosen;
    for (const ObjectProperty& property : PropertiesOf(object_)) {
      if (Chosen(flags, property, object_)) chosen.push_back(property.name);
    }
    return NamesArray(chosen, names);
  });
}

HRESULT ClassObject::BeginEnumeration(LONG flags) {
  return Guarded([&]() -> HRESULT {
    const std::lock_guard guard(lock_);
    enumerated_ = PropertiesOf(object_);
    std::erase_if(enumerated_, [&](const ObjectProperty& property) { return !Chosen(flags, property, object_); });
    next_property_ = 0;
    enumerating_ = true;
    return S_OK;
  });
}

HRESULT ClassObject::Next(LONG flags, BSTR* name, VARIANT* value, CIMTYPE* type, LONG* flavor) {
  return Guarded([&]() -> HRESULT {
    if (flags != 0) return WBEM_E_INVALID_PARAMETER;
    const std::lock_guard guard(lock_);
    if (!enumerating_) return WBEM_E_UNEXPECTED;
    if (next_property_ == enumerated_.size()) return WBEM_S_NO_MORE_DATA;
    const ObjectProperty& property = enumerated_[next_property_];
    const HRESULT result = Deliver(property, value, type, flavor);
    if (FAILED(result)) return result;
    if (name != nullptr) *name = NewBstr(property.name);
    ++next_property_;
    return S_OK;
  });
}

HRESULT ClassObject::EndEnumeration() {
  const std::lock_guard guard(lock_);
  enumerating_ = false;
  return S_OK;
}

HRESULT ClassObject::Clone(IWbemClassObject** copy) {
  return Guarded([&]() -> HRESULT {
    if (copy == nullptr) return WBEM_E_INVALID_PARAMETER;
    const std::lock_guard guard(lock_);
    *copy = new ClassObject(notebook_, object_);
    return S_OK;
  });
}

HRESULT ClassObject::SpawnInstance(LONG flags, IWbemClassObject** instance) {
  return Guarded([&]() -> HRESULT {
    if (instance == nullptr || flags != 0) return WBEM_E_INVALID_PARAMETER;
    *instance = nullptr;
    if (const auto failed = notebook_->Meet(At(Step::kSpawnInstance))) return *failed;
    const std::lock_guard guard(lock_);
    *instance = new ClassObject(notebook_, SpawnFrom(object_));
    return S_OK;
  });
}

HRESULT ClassObject::GetPropertyOrigin(LPCWSTR name, BSTR* class_name) {
  return Guarded([&]() -> HRESULT {
    if (name == nullptr || class_name == nullptr) return WBEM_E_INVALID_PARAMETER;
    *class_name = nullptr;
    const std::lock_guard guard(lock_);
    const std::optional<ObjectProperty> property = FindProperty(object_, Narrow(name));
    if (!property) return WBEM_E_NOT_FOUND;
    *class_name = NewBstr(property->system ? "___SYSTEM" : object_.shape->name);
    return S_OK;
  });
}

HRESULT ClassObject::InheritsFrom(LPCWSTR ancestor) {
  return Guarded([&]() -> HRESULT {
    if (ancestor == nullptr) return WBEM_E_INVALID_PARAMETER;
    return SameName(Narrow(ancestor), object_.shape->name) ? WBEM_S_NO_ERROR : WBEM_S_FALSE;
  });
}

}  // namespace firmware
