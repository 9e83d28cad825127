// IWbemClassObject over the server's own objects.
#ifndef NOTEBOOK_FIRMWARE_CLASS_OBJECT_H_
#define NOTEBOOK_FIRMWARE_CLASS_OBJECT_H_

#include <wbemcli.h>

#include <memory>
#include <mutex>
#include <vector>

#include "com.h"
#include "notebook.h"
#include "object.h"

namespace firmware {

// Only the server's own objects answer for this interface; it adds no method and is never marshalled.
inline constexpr IID kOwnObjectId = {0x7d2b6a1e, 0x40c5, 0x4b0f, {0x9a, 0x11, 0x52, 0xc3, 0x0e, 0x77, 0x94, 0xd6}};

class ClassObject final : public Counted<ObjectKind::kClassObject, IWbemClassObject> {
 public:
  ClassObject(std::shared_ptr<const Notebook> notebook, Object object);

  // What an object of a caller holds; null when it is not the server's own.
  static const Object* Own(IWbemClassObject* object);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;

  HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  HRESULT STDMETHODCALLTYPE Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) override;
  HRESULT STDMETHODCALLTYPE GetNames(LPCWSTR qualifier, LONG flags, VARIANT* value, SAFEARRAY** names) override;
  HRESULT STDMETHODCALLTYPE BeginEnumeration(LONG flags) override;
  HRESULT STDMETHODCALLTYPE Next(LONG flags, BSTR* name, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  HRESULT STDMETHODCALLTYPE EndEnumeration() override;
  HRESULT STDMETHODCALLTYPE Clone(IWbemClassObject** copy) override;
  HRESULT STDMETHODCALLTYPE SpawnInstance(LONG flags, IWbemClassObject** instance) override;
  HRESULT STDMETHODCALLTYPE GetPropertyOrigin(LPCWSTR name, BSTR* class_name) override;
  HRESULT STDMETHODCALLTYPE InheritsFrom(LPCWSTR ancestor) override;
  HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** in, IWbemClassObject** out) override;
  HRESULT STDMETHODCALLTYPE BeginMethodEnumeration(LONG flags) override;
  HRESULT STDMETHODCALLTYPE NextMethod(LONG flags, BSTR* name, IWbemClassObject** in, IWbemClassObject** out) override;
  HRESULT STDMETHODCALLTYPE EndMethodEnumeration() override;
  HRESULT STDMETHODCALLTYPE GetMethodOrigin(LPCWSTR name, BSTR* class_name) override;

  // Not supported: qualifiers, text form, comparison, and changes of a definition.
  HRESULT STDMETHODCALLTYPE GetQualifierSet(IWbemQualifierSet** set) override;
  HRESULT STDMETHODCALLTYPE GetPropertyQualifierSet(LPCWSTR property, IWbemQualifierSet** set) override;
  HRESULT STDMETHODCALLTYPE GetMethodQualifierSet(LPCWSTR method, IWbemQualifierSet** set) override;
  HRESULT STDMETHODCALLTYPE GetObjectText(LONG flags, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE SpawnDerivedClass(LONG flags, IWbemClassObject** derived) override;
  HRESULT STDMETHODCALLTYPE CompareTo(LONG flags, IWbemClassObject* other) override;
  HRESULT STDMETHODCALLTYPE Delete(LPCWSTR name) override;
  HRESULT STDMETHODCALLTYPE PutMethod(LPCWSTR name, LONG flags, IWbemClassObject* in, IWbemClassObject* out) override;
  HRESULT STDMETHODCALLTYPE DeleteMethod(LPCWSTR name) override;

 private:
  Exchange At(Step step, std::string_view property = {}) const;
  // `out` may be null; it gets null when there are no parameters.
  void GiveParameters(const Method& method, const std::vector<Property>& parameters, IWbemClassObject** out) const;

  const std::shared_ptr<const Notebook> notebook_;
  const std::string namespace_key_;
  std::mutex lock_;  // guards what follows
  Object object_;
  std::vector<ObjectProperty> enumerated_{};
  size_t next_property_ = 0;
  bool enumerating_ = false;
  size_t next_method_ = 0;
  bool enumerating_methods_ = false;
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_CLASS_OBJECT_H_
