#include "locator.h"

#include "files.h"
#include "methods.h"
#include "names.h"
#include "scenario/texts.h"
#include "services.h"
#include "upstream.h"
#include "variants.h"

namespace firmware {
namespace {

std::atomic<LONG> locks;

// What a caller gave besides the namespace.
std::string ExtraText(const BSTR user, const BSTR locale, const BSTR authority, LONG flags) {
  std::string text;
  const auto add = [&text](std::string_view name, const BSTR value) {
    if (value != nullptr && *value != L'\0') text += scenario::Concat(" ", name, "=", Narrow(value));
  };
  add("user", user);
  add("locale", locale);
  add("authority", authority);
  if (flags != 0) text += " flags=" + scenario::Hex(static_cast<uint32_t>(flags));
  return text;
}

}  // namespace

Locator::Locator(std::shared_ptr<const Notebook> notebook) : notebook_(std::move(notebook)) {}

HRESULT Locator::ConnectServer(const BSTR name, const BSTR user, const BSTR password, const BSTR locale, LONG flags,
                               const BSTR authority, IWbemContext* context, IWbemServices** services) {
  return Guarded([&]() -> HRESULT {
    if (services == nullptr || name == nullptr) return WBEM_E_INVALID_PARAMETER;
    *services = nullptr;
    const HRESULT result = Connect(name, user, password, locale, flags, authority, context, services);
    const std::string key = NamespaceName(Narrow(name));
    if (SUCCEEDED(result)) notebook_->Count("connect " + key);
    notebook_->Log(
        scenario::Concat("connect ", key, ExtraText(user, locale, authority, flags), " -> ", ResultText(result)));
    return result;
  });
}

HRESULT Locator::Connect(const BSTR name, const BSTR user, const BSTR password, const BSTR locale, LONG flags,
                         const BSTR authority, IWbemContext* context, IWbemServices** services) {
  const std::string key = NamespaceName(Narrow(name));
  const Exchange exchange{.step = Step::kConnectServer, .namespace_name = key};
  if (const auto failed = notebook_->Meet(exchange)) return *failed;
  if (!notebook_->Good() && key == kFirmwareNamespace) return WBEM_E_INITIALIZATION_FAILURE;
  Ref<IWbemServices> upstream;
  if (!notebook_->HasNamespace(key)) {
    Ref<IWbemLocator> locator;
    HRESULT result = NewUpstreamLocator(locator.Out());
    if (SUCCEEDED(result)) {
      result = locator->ConnectServer(name, user, password, locale, flags, authority, context, upstream.Out());
    }
    if (FAILED(result)) return result;
  }
  *services = new Services(notebook_, name, std::move(upstream));
  return WBEM_S_NO_ERROR;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) {
  return Guarded([&]() -> HRESULT {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    const std::shared_ptr<const Notebook> notebook = Notebook::Current();
    if (const auto failed = notebook->Meet({.step = Step::kCreateInstance})) return *failed;
    const Ref<Locator> locator(new Locator(notebook));
    return locator->QueryInterface(id, object);
  });
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  locks += lock ? 1 : -1;
  return S_OK;
}

LONG ClassFactory::Locks() { return locks; }

}  // namespace firmware
