// What every COM object of the server is made of.
#ifndef NOTEBOOK_FIRMWARE_COM_H_
#define NOTEBOOK_FIRMWARE_COM_H_

#include <unknwn.h>
#include <windows.h>

#include <atomic>
#include <new>
#include <string_view>
#include <utility>

namespace firmware {

// The interfaces whose objects are counted.
enum class ObjectKind { kClassFactory, kLocator, kServices, kEnumerator, kClassObject };

void CountObject(ObjectKind kind, LONG change);

// Objects of all kinds that live.
LONG LiveObjects();

// Objects that live behind an interface ("IWbemServices"); -1 when the server has no objects of that name.
LONG LiveObjectsOf(std::string_view interface_name);

// Runs the body of an interface's method. Nothing may throw across the interface.
template <typename Body>
HRESULT Guarded(Body body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

// An owned reference.
template <typename T>
class Ref {
 public:
  Ref() = default;
  explicit Ref(T* adopted) : object_(adopted) {}
  Ref(const Ref& other) : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~Ref() {
    if (object_ != nullptr) object_->Release();
  }
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* Get() const { return object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  T* Detach() { return std::exchange(object_, nullptr); }

  // For out-parameters; the reference must be empty.
  T** Out() { return &object_; }
  void** OutVoid() { return reinterpret_cast<void**>(&object_); }

 private:
  T* object_ = nullptr;
};

// A counted object behind some interfaces. The creator owns the first reference.
template <ObjectKind kind, typename First, typename... Others>
class Counted : public First, public Others... {
 public:
  Counted() { CountObject(kind, 1); }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, __uuidof(First))) *object = static_cast<First*>(this);
    ((IsEqualIID(id, __uuidof(Others)) ? void(*object = static_cast<Others*>(this)) : void()), ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

 protected:
  virtual ~Counted() { CountObject(kind, -1); }

 private:
  std::atomic<ULONG> references_ = 1;
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_COM_H_
