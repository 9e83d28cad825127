// Objects of the system's own WMI, handed on so that the rules see them and their references are counted.
#ifndef NOTEBOOK_FIRMWARE_PASSED_ON_H_
#define NOTEBOOK_FIRMWARE_PASSED_ON_H_

#include <wbemcli.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "com.h"
#include "notebook.h"

namespace firmware {

// Where an object came from.
struct Origin {
  std::shared_ptr<const Notebook> notebook;
  std::string namespace_key{};
  std::string class_name{};
  std::string method{};  // whose parameters the object holds

  Exchange At(Step step, std::string_view property = {}) const {
    return {step, namespace_key, class_name, method, property, nullptr};
  }
};

// What the system's own WMI made: the object behind a handed-on one, or the object itself.
IWbemClassObject* Unwrapped(IWbemClassObject* object);

// Puts a handed-on object in the place of what `object` points to. Null pointers stay.
void HandOn(const Origin& origin, IWbemClassObject** object);

// An enumerator whose rows the rules can hold back, delay or fail.
class RuledEnumerator : public Counted<ObjectKind::kEnumerator, IEnumWbemClassObject> {
 public:
  HRESULT STDMETHODCALLTYPE Next(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG* returned) final;
  HRESULT STDMETHODCALLTYPE NextAsync(ULONG count, IWbemObjectSink* sink) final;

 protected:
  explicit RuledEnumerator(Origin origin) : origin_(std::move(origin)) {}

  // Under the lock: gives up to `count` rows; `objects` holds null pointers, `given` is 0. Fewer than asked for are no
  // failure.
  virtual HRESULT Take(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG& given) = 0;

  const Origin& origin() const { return origin_; }
  std::mutex& lock() { return lock_; }

 private:
  const Origin origin_;
  std::mutex lock_;                   // guards what follows, and what Take() uses
  std::optional<Effects> pending_{};  // of a call that ran out of time
};

class PassedOnEnumerator final : public RuledEnumerator {
 public:
  // At most `rows` rows are given when it is set.
  PassedOnEnumerator(Origin origin, Ref<IEnumWbemClassObject> upstream, std::optional<uint32_t> rows);

  HRESULT STDMETHODCALLTYPE Reset() override;
  HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject** copy) override;
  HRESULT STDMETHODCALLTYPE Skip(LONG timeout_ms, ULONG count) override;

 private:
  HRESULT Take(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG& given) override;

  const Ref<IEnumWbemClassObject> upstream_;
  std::optional<uint32_t> rows_left_;  // under the lock
};

class PassedOnObject final : public Counted<ObjectKind::kClassObject, IWbemClassObject> {
 public:
  PassedOnObject(Origin origin, Ref<IWbemClassObject> upstream);

  IWbemClassObject* upstream() const { return upstream_.Get(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;

  HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  HRESULT STDMETHODCALLTYPE Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) override;
  HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** in, IWbemClassObject** out) override;
  HRESULT STDMETHODCALLTYPE SpawnInstance(LONG flags, IWbemClassObject** instance) override;
  HRESULT STDMETHODCALLTYPE SpawnDerivedClass(LONG flags, IWbemClassObject** derived) override;
  HRESULT STDMETHODCALLTYPE Clone(IWbemClassObject** copy) override;
  HRESULT STDMETHODCALLTYPE NextMethod(LONG flags, BSTR* name, IWbemClassObject** in, IWbemClassObject** out) override;
  HRESULT STDMETHODCALLTYPE CompareTo(LONG flags, IWbemClassObject* other) override;
  HRESULT STDMETHODCALLTYPE PutMethod(LPCWSTR name, LONG flags, IWbemClassObject* in, IWbemClassObject* out) override;

  HRESULT STDMETHODCALLTYPE GetQualifierSet(IWbemQualifierSet** set) override;
  HRESULT STDMETHODCALLTYPE Delete(LPCWSTR name) override;
  HRESULT STDMETHODCALLTYPE GetNames(LPCWSTR qualifier, LONG flags, VARIANT* value, SAFEARRAY** names) override;
  HRESULT STDMETHODCALLTYPE BeginEnumeration(LONG flags) override;
  HRESULT STDMETHODCALLTYPE Next(LONG flags, BSTR* name, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  HRESULT STDMETHODCALLTYPE EndEnumeration() override;
  HRESULT STDMETHODCALLTYPE GetPropertyQualifierSet(LPCWSTR property, IWbemQualifierSet** set) override;
  HRESULT STDMETHODCALLTYPE GetObjectText(LONG flags, BSTR* text) override;
  HRESULT STDMETHODCALLTYPE GetPropertyOrigin(LPCWSTR name, BSTR* class_name) override;
  HRESULT STDMETHODCALLTYPE InheritsFrom(LPCWSTR ancestor) override;
  HRESULT STDMETHODCALLTYPE DeleteMethod(LPCWSTR name) override;
  HRESULT STDMETHODCALLTYPE BeginMethodEnumeration(LONG flags) override;
  HRESULT STDMETHODCALLTYPE EndMethodEnumeration() override;
  HRESULT STDMETHODCALLTYPE GetMethodQualifierSet(LPCWSTR method, IWbemQualifierSet** set) override;
  HRESULT STDMETHODCALLTYPE GetMethodOrigin(LPCWSTR name, BSTR* class_name) override;

 private:
  const Origin origin_;
  const Ref<IWbemClassObject> upstream_;
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_PASSED_ON_H_
