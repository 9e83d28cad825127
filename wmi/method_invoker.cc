#include "wmi/method_invoker.h"

#include <windows.h>

#include <wbemidl.h>

#include <optional>
#include <utility>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "wmi/com_apartment.h"
#include "wmi/decimal.h"
#include "wmi/session.h"
#include "wmi/variant_value.h"

namespace vexa {
namespace {

constexpr wchar_t kFirmwareNamespace[] = L"ROOT\\WMI";

struct Invoker {
  WmiCaller caller;
  const char* narrow_name;
  const wchar_t* class_name;
  const wchar_t* query;
  CIMTYPE parameter_type;
  bool logs_com_failure;
  const wchar_t* parameter_line;  // name, method, parameter, value in hexadecimal
  const wchar_t* no_output_line;  // name, method, out-parameter, HRESULT
  const wchar_t* value_line;      // name, value
};

constexpr wchar_t kQueryTimedOut[] = L"[%s] Step5 Query timed out.";
constexpr wchar_t kQueryFailed[] = L"[%s] Step5 Query failed. Errorcode=0x%s";
constexpr wchar_t kNoOutput[] = L"[%s] Could not get output. method=%s, OutName=%s, Errorcode=0x%s";
constexpr wchar_t kParameter[] = L"[%s] Create the values for the in parameters. method=%s, first=%s, second=0x%s";
constexpr wchar_t kReturnValue[] = L"[%s] varReturnValue=%s";

constexpr Invoker kWmiMethod = {
    .caller = {L"wmiMethod", kQueryTimedOut, kQueryFailed},
    .narrow_name = "wmiMethod",
    .class_name = L"VexaObxWmi_WMNB",
    .query = L"Select * from VexaObxWmi_WMNB",
    .parameter_type = CIM_UINT32,
    .logs_com_failure = true,
    .parameter_line = L"[%s] Create the values for the in parameters method=%s first=%s second=0x%s",
    .no_output_line = kNoOutput,
    .value_line = kReturnValue,
};
constexpr Invoker kAtdSts = {
    .caller = {L"wmiMethod_ATD_STS", kQueryTimedOut, kQueryFailed},
    .narrow_name = "wmiMethod_ATD_STS",
    .class_name = L"ATD_STS",
    .query = L"Select * from ATD_STS",
    .parameter_type = CIM_UINT8,
    .logs_com_failure = false,
    .parameter_line = kParameter,
    .no_output_line = L"[%s] Could not get output method=%s, OutName=%s. Errorcode=0x%s",
    .value_line = L"[%s] varReturnValue =%s",
};
constexpr Invoker kAtdStsUint = {
    // Kept: a time-out of the query speaks of step 6 here.
    .caller = {L"wmiMethod_ATD_STS_UINT", L"[%s] Step6 Query timed out.", kQueryFailed},
    .narrow_name = "wmiMethod_ATD_STS_UINT",
    .class_name = L"ATD_STS",
    .query = L"Select * from ATD_STS",
    .parameter_type = CIM_UINT8,
    .logs_com_failure = false,
    .parameter_line = kParameter,
    .no_output_line = kNoOutput,
    .value_line = kReturnValue,
};

// One call of one method: the steps behind the session, each of which logs its failure.
class MethodCall {
 public:
  MethodCall(const Invoker& invoker, const std::wstring& method) : invoker_(invoker), method_(method) {}

  std::optional<int32_t> Run(const WmiParamMap& params, const std::wstring& out_name) {
    const std::optional<WmiSession> session = WmiSession::Open(invoker_.caller, kFirmwareNamespace, invoker_.query);
    if (!session) return std::nullopt;
    const ComPtr<IWbemClassObject> instance = FirstInstance(*session);
    if (!instance) return std::nullopt;
    const std::optional<ComPtr<IWbemClassObject>> in = SpawnParameters(*session, params.empty());
    if (!in || !PutParameters(in->Get(), params)) return std::nullopt;
    const ComPtr<IWbemClassObject> out = Execute(*session, instance.Get(), in->Get());
    if (!out) return std::nullopt;
    return ReadOutput(out.Get(), out_name);
  }

 private:
  const wchar_t* name() const { return invoker_.caller.name; }

  // Only the first instance is ever used.
  ComPtr<IWbemClassObject> FirstInstance(const WmiSession& session) {
    ComPtr<IWbemClassObject> instance;
    ULONG count = 0;
    const HRESULT result = session.rows()->Next(static_cast<LONG>(WBEM_INFINITE), 1, instance.GetAddressOf(), &count);
    // No instance is a success code.
    if (FAILED(result) || count == 0 || !instance) {
      LogStep(L"[%s] Could not Get the Next Object. Errorcode=0x%s", name(), ResultText(result).c_str());
      return {};
    }
    return instance;
  }

  // The in-parameters' object; null for a method that has none.
  std::optional<ComPtr<IWbemClassObject>> SpawnParameters(const WmiSession& session, bool none_wanted) {
    ComPtr<IWbemClassObject> definition;
    const Bstr class_name = MakeBstr(invoker_.class_name);
    HRESULT result = session.services()->GetObject(class_name.get(), 0, nullptr, definition.GetAddressOf(), nullptr);
    if (FAILED(result) || !definition) {
      LogStep(L"[%s] Could not GetObject. Errorcode=0x%s", name(), ResultText(result).c_str());
      return std::nullopt;
    }
    ComPtr<IWbemClassObject> in_definition;
    result = definition->GetMethod(method_.c_str(), 0, in_definition.GetAddressOf(), nullptr);
    if (FAILED(result)) {
      LogStep(L"[%s] Could not GetMethod. method=%s, Errorcode=0x%s", name(), method_.c_str(),
              ResultText(result).c_str());
      return std::nullopt;
    }
    ComPtr<IWbemClassObject> in;
    if (!in_definition && none_wanted) return in;
    result = in_definition ? in_definition->SpawnInstance(0, in.GetAddressOf()) : WBEM_E_NOT_FOUND;
    if (FAILED(result) || !in) {
      LogStep(L"[%s] Could not SpawnInstance. method=%s, Errorcode=0x%s", name(), method_.c_str(),
              ResultText(result).c_str());
      return std::nullopt;
    }
    return in;
  }

  bool PutParameters(IWbemClassObject* in, const WmiParamMap& params) {
    for (const auto& [parameter, text] : params) {
      const auto number = static_cast<uint32_t>(ParseLong(text));  // throws for a text that is no number
      LogInfo(invoker_.parameter_line, name(), method_.c_str(), parameter.c_str(),
              ResultText(static_cast<HRESULT>(number)).c_str());
      // The text travels, not the number: WMI converts it to the parameter's type.
      Variant value;
      value.put()->bstrVal = AllocateBstr(text.c_str());
      value.put()->vt = VT_BSTR;
      const HRESULT result = in->Put(parameter.c_str(), 0, value.put(), invoker_.parameter_type);
      if (FAILED(result)) {
        LogStep(L"[%s] Could not put parameters. method=%s, ID=0x%s, Errorcode=0x%s", name(), method_.c_str(),
                ResultText(static_cast<HRESULT>(number)).c_str(), ResultText(result).c_str());
        return false;
      }
    }
    return true;
  }

  ComPtr<IWbemClassObject> Execute(const WmiSession& session, IWbemClassObject* instance, IWbemClassObject* in) {
    Variant path;
    HRESULT result = instance->Get(L"__PATH", 0, path.put(), nullptr, nullptr);
    if (SUCCEEDED(result) && path.get().vt != VT_BSTR) result = WBEM_E_TYPE_MISMATCH;
    if (FAILED(result)) {
      LogStep(L"[%s] Could not Get method retrieves. method=%s, Errorcode=0x%s", name(), method_.c_str(),
              ResultText(result).c_str());
      return {};
    }
    ComPtr<IWbemClassObject> out;
    const Bstr method = MakeBstr(method_.c_str());
    result =
        session.services()->ExecMethod(path.get().bstrVal, method.get(), 0, nullptr, in, out.GetAddressOf(), nullptr);
    if (FAILED(result) || !out) {
      LogStep(L"[%s] Could not execute method. method=%s, Errorcode=0x%s", name(), method_.c_str(),
              ResultText(result).c_str());
      return {};
    }
    return out;
  }

  std::optional<int32_t> ReadOutput(IWbemClassObject* out, const std::wstring& out_name) {
    Variant value;
    HRESULT result = out->Get(out_name.c_str(), 0, value.put(), nullptr, nullptr);
    const std::optional<int32_t> number = SUCCEEDED(result) ? IntegerMember(value.get()) : std::nullopt;
    if (!number) {
      if (SUCCEEDED(result)) result = WBEM_E_TYPE_MISMATCH;
      LogStep(invoker_.no_output_line, name(), method_.c_str(), out_name.c_str(), ResultText(result).c_str());
    }
    return number;
  }

  const Invoker& invoker_;
  const std::wstring& method_;
};

// The whole call: COM, the steps, the answer's line by `text_of`, clean-up. Nothing when any step failed.
template <typename TextOf>
std::optional<int32_t> Invoke(const Invoker& invoker, bool wants_com, const std::wstring& method,
                              const WmiParamMap& params, const std::wstring& out_name, TextOf text_of) noexcept {
  const ComApartment apartment(wants_com);
  if (wants_com && !apartment.entered()) {
    if (invoker.logs_com_failure) {
      Guarded(invoker.narrow_name, 0, [&] {
        LogStep(L"[%s] Step1 Failed to initialize COM library. Errorcode=0x%s", invoker.caller.name,
                ResultText(apartment.result()).c_str());
        return 0;
      });
    }
    return std::nullopt;
  }
  const std::optional<int32_t> answer =
      Guarded(invoker.narrow_name, std::optional<int32_t>(), [&]() -> std::optional<int32_t> {
        const std::optional<int32_t> value = MethodCall(invoker, method).Run(params, out_name);
        if (value) LogInfo(invoker.value_line, invoker.caller.name, text_of(*value).c_str());
        return value;
      });
  if (apartment.entered()) LogInfo(L"[%s] Do CoUninitialize()", invoker.caller.name);
  return answer;
}

std::wstring SignedText(int32_t value) { return WideDecimal(value); }
std::wstring UnsignedText(int32_t value) { return WideDecimal(static_cast<uint32_t>(value)); }

template <typename TextOf>
std::wstring InvokeForText(const Invoker& invoker, bool wants_com, const std::wstring& method,
                           const WmiParamMap& params, const std::wstring& out_name, TextOf text_of) noexcept {
  const std::optional<int32_t> value = Invoke(invoker, wants_com, method, params, out_name, text_of);
  return Guarded(invoker.narrow_name, std::wstring(), [&] { return value ? text_of(*value) : std::wstring(); });
}

}  // namespace

std::wstring wmiMethod(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name,
                       uint32_t com_flag) noexcept {
  return InvokeForText(kWmiMethod, com_flag != 0, method, params, out_name, SignedText);
}

std::wstring wmiMethod_ATD_STS(const std::wstring& method, const WmiParamMap& params,
                               const std::wstring& out_name) noexcept {
  return InvokeForText(kAtdSts, true, method, params, out_name, UnsignedText);
}

uint32_t wmiMethod_ATD_STS_UINT(const std::wstring& method, const WmiParamMap& params,
                                const std::wstring& out_name) noexcept {
  return static_cast<uint32_t>(Invoke(kAtdStsUint, true, method, params, out_name, UnsignedText).value_or(0));
}

}  // namespace vexa
