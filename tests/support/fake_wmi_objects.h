// The scripted WMI's objects.
#ifndef VEXA_TESTS_SUPPORT_FAKE_WMI_OBJECTS_H_
#define VEXA_TESTS_SUPPORT_FAKE_WMI_OBJECTS_H_

#include <windows.h>

#include <wbemidl.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/fake_wmi.h"

namespace vexa::test {

struct FakeObject {
  FakeObject(FakeWmi& owner, const char* name) : wmi(owner), kind(name) {}
  virtual ~FakeObject() = default;

  FakeWmi& wmi;
  const char* kind;
  std::atomic<int> references{1};
};

// A method that the library has no business with.
#define VEXA_UNUSED(name, ...) \
  HRESULT STDMETHODCALLTYPE name(__VA_ARGS__) override { return Unused(#name); }

template <typename Interface>
class FakeInterface : public Interface, public FakeObject {
 public:
  using FakeObject::FakeObject;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualGUID(id, IID_IUnknown)) return E_NOINTERFACE;
    *object = static_cast<IUnknown*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    if (references++ < 1) wmi.Complain(std::string(kind) + " used after its release");
    return static_cast<ULONG>(references);
  }
  ULONG STDMETHODCALLTYPE Release() override {
    if (--references < 0) wmi.Complain(std::string(kind) + " released too often");
    return static_cast<ULONG>(references);
  }

 protected:
  HRESULT Unused(const char* name) {
    wmi.Complain(std::string(kind) + ": unexpected " + name);
    return E_NOTIMPL;
  }
  std::optional<HRESULT> Enter(const char* function, const std::string& text) {
    if (references < 1) wmi.Complain(std::string(kind) + " called after its release");
    return wmi.Enter(function, text);
  }
};

// Classes, definitions of in-parameters, their instances, answers, and rows.
class FakeClassObject final : public FakeInterface<IWbemClassObject> {
 public:
  FakeClassObject(FakeWmi& owner, const char* name, WmiProperties values = {})
      : FakeInterface(owner, name), properties(std::move(values)) {}

  HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  HRESULT STDMETHODCALLTYPE Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) override;
  HRESULT STDMETHODCALLTYPE SpawnInstance(LONG flags, IWbemClassObject** instance) override;
  HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** in, IWbemClassObject** out) override;

  VEXA_UNUSED(GetQualifierSet, IWbemQualifierSet**)
  VEXA_UNUSED(Delete, LPCWSTR)
  VEXA_UNUSED(GetNames, LPCWSTR, LONG, VARIANT*, SAFEARRAY**)
  VEXA_UNUSED(BeginEnumeration, LONG)
  VEXA_UNUSED(Next, LONG, BSTR*, VARIANT*, CIMTYPE*, LONG*)
  VEXA_UNUSED(EndEnumeration)
  VEXA_UNUSED(GetPropertyQualifierSet, LPCWSTR, IWbemQualifierSet**)
  VEXA_UNUSED(Clone, IWbemClassObject**)
  VEXA_UNUSED(GetObjectText, LONG, BSTR*)
  VEXA_UNUSED(SpawnDerivedClass, LONG, IWbemClassObject**)
  VEXA_UNUSED(CompareTo, LONG, IWbemClassObject*)
  VEXA_UNUSED(GetPropertyOrigin, LPCWSTR, BSTR*)
  VEXA_UNUSED(InheritsFrom, LPCWSTR)
  VEXA_UNUSED(PutMethod, LPCWSTR, LONG, IWbemClassObject*, IWbemClassObject*)
  VEXA_UNUSED(DeleteMethod, LPCWSTR)
  VEXA_UNUSED(BeginMethodEnumeration, LONG)
  VEXA_UNUSED(NextMethod, LONG, BSTR*, IWbemClassObject**, IWbemClassObject**)
  VEXA_UNUSED(EndMethodEnumeration)
  VEXA_UNUSED(GetMethodQualifierSet, LPCWSTR, IWbemQualifierSet**)
  VEXA_UNUSED(GetMethodOrigin, LPCWSTR, BSTR*)

  WmiProperties properties;
  FakeWmi::Parameters parameters;  // that were put
};

class FakeEnumerator final : public FakeInterface<IEnumWbemClassObject> {
 public:
  FakeEnumerator(FakeWmi& owner, std::vector<WmiProperties> rows)
      : FakeInterface(owner, "enumerator"), rows_(std::move(rows)) {}

  HRESULT STDMETHODCALLTYPE Next(LONG timeout, ULONG count, IWbemClassObject** objects, ULONG* returned) override;

  VEXA_UNUSED(Reset)
  VEXA_UNUSED(NextAsync, ULONG, IWbemObjectSink*)
  VEXA_UNUSED(Clone, IEnumWbemClassObject**)
  VEXA_UNUSED(Skip, LONG, ULONG)

 private:
  std::vector<WmiProperties> rows_;
  size_t next_ = 0;
};

class FakeWmiServices final : public FakeInterface<IWbemServices> {
 public:
  explicit FakeWmiServices(FakeWmi& owner) : FakeInterface(owner, "services") {}

  HRESULT STDMETHODCALLTYPE GetObject(const BSTR path, LONG flags, IWbemContext* context, IWbemClassObject** object,
                                      IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                                      IEnumWbemClassObject** rows) override;
  HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR path, const BSTR method, LONG flags, IWbemContext* context,
                                       IWbemClassObject* in, IWbemClassObject** out, IWbemCallResult** result) override;

  VEXA_UNUSED(OpenNamespace, const BSTR, LONG, IWbemContext*, IWbemServices**, IWbemCallResult**)
  VEXA_UNUSED(CancelAsyncCall, IWbemObjectSink*)
  VEXA_UNUSED(QueryObjectSink, LONG, IWbemObjectSink**)
  VEXA_UNUSED(GetObjectAsync, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(PutClass, IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**)
  VEXA_UNUSED(PutClassAsync, IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(DeleteClass, const BSTR, LONG, IWbemContext*, IWbemCallResult**)
  VEXA_UNUSED(DeleteClassAsync, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(CreateClassEnum, const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**)
  VEXA_UNUSED(CreateClassEnumAsync, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(PutInstance, IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**)
  VEXA_UNUSED(PutInstanceAsync, IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(DeleteInstance, const BSTR, LONG, IWbemContext*, IWbemCallResult**)
  VEXA_UNUSED(DeleteInstanceAsync, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(CreateInstanceEnum, const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**)
  VEXA_UNUSED(CreateInstanceEnumAsync, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(ExecQueryAsync, const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(ExecNotificationQuery, const BSTR, const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**)
  VEXA_UNUSED(ExecNotificationQueryAsync, const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*)
  VEXA_UNUSED(ExecMethodAsync, const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*, IWbemObjectSink*)
};

class FakeLocator final : public FakeInterface<IWbemLocator> {
 public:
  explicit FakeLocator(FakeWmi& owner) : FakeInterface(owner, "locator") {}

  HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR name_space, const BSTR user, const BSTR password,
                                          const BSTR locale, LONG flags, const BSTR authority, IWbemContext* context,
                                          IWbemServices** services) override;
};

#undef VEXA_UNUSED

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_WMI_OBJECTS_H_
