#include "wmi/session.h"

#include <cstdarg>
#include <memory>
#include <utility>

#include "frame/line.h"
#include "frame/log.h"
#include "wmi/bounded_task.h"

namespace vexa {
namespace {

// First connects, then queries.
struct ConnectAndQuery final : StagedWork {
  ConnectAndQuery(ComPtr<IWbemLocator> wmi, const wchar_t* wanted_space, const wchar_t* wanted_query)
      : locator(std::move(wmi)), name_space(MakeBstr(wanted_space)), query(MakeBstr(wanted_query)) {}

  HRESULT First() override {
    connected = locator->ConnectServer(name_space.get(), nullptr, nullptr, nullptr, 0, nullptr, nullptr,
                                       services.GetAddressOf());
    return connected;
  }

  HRESULT Second() override {
    if (!services) return S_OK;
    blanket = CoSetProxyBlanket(services.Get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                                RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
    if (FAILED(blanket)) return blanket;
    return services->ExecQuery(language.get(), query.get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
                               nullptr, rows.GetAddressOf());
  }

  const ComPtr<IWbemLocator> locator;
  const Bstr name_space, language = MakeBstr(L"WQL"), query;
  HRESULT connected = S_OK;
  ComPtr<IWbemServices> services;
  HRESULT blanket = S_OK;
  ComPtr<IEnumWbemClassObject> rows;
};

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

std::optional<WmiSession> WmiSession::Open(const WmiCaller& caller, const wchar_t* name_space, const wchar_t* query) {
  BoundedTask task;  // its thread wakes while the locator is made
  ComPtr<IWbemLocator> locator;
  const HRESULT created = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                           reinterpret_cast<void**>(locator.GetAddressOf()));
  if (FAILED(created)) {
    LogStep(L"[%s] Step2 Failed to create IWbemLocator object. Errorcode=0x%s", caller.name,
            ResultText(created).c_str());
    return std::nullopt;
  }

  std::unique_ptr<StagedWork> work = std::make_unique<ConnectAndQuery>(std::move(locator), name_space, query);
  const TaskOutcome outcome = task.Run(work);
  if (!outcome.result) {
    LogStep(outcome.stage == 1 ? L"[%s] Step3 Connection timed out." : caller.query_timed_out, caller.name);
    return std::nullopt;
  }
  auto& done = static_cast<ConnectAndQuery&>(*work);
  if (outcome.stage == 1 || !done.services) {
    LogStep(L"[%s] Step3 Could not connect. Errorcode=0x%s", caller.name,
            ResultText(outcome.stage == 1 ? *outcome.result : done.connected).c_str());
    return std::nullopt;
  }
  if (FAILED(done.blanket)) {
    LogStep(L"[%s] Step4 Could not set proxy blanket. Errorcode=0x%s", caller.name, ResultText(done.blanket).c_str());
    return std::nullopt;
  }
  if (FAILED(*outcome.result) || !done.rows) {
    LogStep(caller.query_failed, caller.name, ResultText(*outcome.result).c_str());
    return std::nullopt;
  }
  return WmiSession(std::move(done.services), std::move(done.rows));
}

}  // namespace vexa
