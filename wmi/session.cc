#include "wmi/session.h"

#include <cstdarg>
#include <utility>

#include "frame/line.h"
#include "frame/log.h"

namespace vexa {
namespace {

// Runs a call that stores an interface on a bounded task, and gives the interface back typed.
template <typename Interface, typename Call>
std::optional<std::pair<HRESULT, ComPtr<Interface>>> CallBounded(Call call) {
  std::optional<TaskOutcome> outcome = RunBounded([call = std::move(call)]() -> TaskOutcome {
    ComPtr<Interface> object;
    const HRESULT result = call(object.GetAddressOf());
    return {.result = result, .object = object};
  });
  if (!outcome) return std::nullopt;
  // The task stored exactly this interface as its base.
  ComPtr<Interface> object = static_cast<Interface*>(outcome->object.Get());
  return std::pair(outcome->result, std::move(object));
}

}  // namespace

std::wstring ResultText(HRESULT result) {
  const std::string text = HexText(static_cast<uint32_t>(result));
  return std::wstring(text.begin(), text.end());
}

void LogStep(const wchar_t* format, ...) noexcept {
  va_list arguments;
  va_start(arguments, format);
  LogToTraceAndEventLog(format, arguments);
  va_end(arguments);
}

std::optional<WmiSession> WmiSession::Open(const WmiCaller& caller, const wchar_t* name_space) {
  ComPtr<IWbemLocator> locator;
  HRESULT result = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                    reinterpret_cast<void**>(locator.GetAddressOf()));
  if (FAILED(result)) {
    LogStep(L"[%s] Step2 Failed to create IWbemLocator object. Errorcode=0x%s", caller.name,
            ResultText(result).c_str());
    return std::nullopt;
  }

  auto connected =
      CallBounded<IWbemServices>([locator, name_space = std::wstring(name_space)](IWbemServices** services) {
        const Bstr text = MakeBstr(name_space.c_str());
        return locator->ConnectServer(text.get(), nullptr, nullptr, nullptr, 0, nullptr, nullptr, services);
      });
  if (!connected) {
    LogStep(L"[%s] Step3 Connection timed out.", caller.name);
    return std::nullopt;
  }
  auto& [connect_result, services] = *connected;
  if (FAILED(connect_result) || !services) {
    LogStep(L"[%s] Step3 Could not connect. Errorcode=0x%s", caller.name, ResultText(connect_result).c_str());
    return std::nullopt;
  }

  result = CoSetProxyBlanket(services.Get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                             RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
  if (FAILED(result)) {
    LogStep(L"[%s] Step4 Could not set proxy blanket. Errorcode=0x%s", caller.name, ResultText(result).c_str());
    return std::nullopt;
  }
  return WmiSession(std::move(services));
}

ComPtr<IEnumWbemClassObject> WmiSession::Query(const WmiCaller& caller, const wchar_t* query) const {
  auto answered = CallBounded<IEnumWbemClassObject>(
      [services = services_, query = std::wstring(query)](IEnumWbemClassObject** rows) {
        const Bstr language = MakeBstr(L"WQL");
        const Bstr text = MakeBstr(query.c_str());
        return services->ExecQuery(language.get(), text.get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
                                   nullptr, rows);
      });
  if (!answered) {
    LogStep(caller.query_timed_out, caller.name);
    return {};
  }
  auto& [result, rows] = *answered;
  if (FAILED(result) || !rows) {
    LogStep(caller.query_failed, caller.name, ResultText(result).c_str());
    return {};
  }
  return std::move(rows);
}

}  // namespace vexa
