// A program that calls the firmware's methods, with every step it takes.
#ifndef NOTEBOOK_FIRMWARE_WINDOWS_TEST_CALLER_H_
#define NOTEBOOK_FIRMWARE_WINDOWS_TEST_CALLER_H_

#include <windows.h>

#include <wbemcli.h>

#include <string>
#include <utility>
#include <vector>

#include "firmware/com.h"

namespace firmware {

// A text as COM wants it.
class Bstr {
 public:
  explicit Bstr(const std::wstring& text) : text_(SysAllocString(text.c_str())) {}
  ~Bstr() { SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

// A VARIANT that is cleared at the end.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  explicit Value(const std::wstring& text) {
    V_VT(&variant_) = VT_BSTR;
    V_BSTR(&variant_) = SysAllocString(text.c_str());
  }
  ~Value() { VariantClear(&variant_); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;

  VARIANT* operator&() { return &variant_; }
  VARTYPE type() const { return V_VT(&variant_); }
  LONG number() const { return V_I4(&variant_); }
  const VARIANT& variant() const { return variant_; }
  // The text; "not a text" for other types.
  std::wstring text() const;

 private:
  VARIANT variant_;
};

using Inputs = std::vector<std::pair<std::wstring, std::wstring>>;

// How a call ended: its answer, or the step that failed.
struct Answer {
  std::string failed_step{};
  HRESULT result = S_OK;
  VARTYPE type = VT_EMPTY;
  LONG number = 0;
};

// In the multithreaded apartment while it lives.
class Caller {
 public:
  Caller() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
  ~Caller() {
    services_ = {};
    locator_ = {};
    CoUninitialize();
  }
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;

  HRESULT Connect(const std::wstring& namespace_name);
  HRESULT SetBlanket();
  IWbemServices* services() const { return services_.Get(); }
  Ref<IEnumWbemClassObject> Query(const std::wstring& query, HRESULT* result = nullptr, LONG flags = 0x30);
  // The first row of a query, or an empty reference.
  Ref<IWbemClassObject> FirstRow(const std::wstring& query);

  // The whole sequence, from the locator on.
  Answer Call(const std::wstring& class_name, const std::wstring& method, const Inputs& inputs,
              const std::wstring& output);

 private:
  Answer Execute(const std::wstring& class_name, const std::wstring& method, const Inputs& inputs,
                 const std::wstring& output);

  Ref<IWbemLocator> locator_;
  Ref<IWbemServices> services_;
};

// Shorthands for the two classes.
Answer CallEc(const std::wstring& method, const Inputs& inputs, const std::wstring& output = L"value");
Answer ReadBattery(int number, int length);
Answer ReadDevice(unsigned device);
Answer SetDevice(unsigned device, unsigned control);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_WINDOWS_TEST_CALLER_H_
