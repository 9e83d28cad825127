#include "registration.h"

#include <optional>
#include <string>

#include "files.h"
#include "names.h"

namespace firmware {
namespace {

constexpr wchar_t kThreadingModel[] = L"ThreadingModel";

std::wstring PathOf(HMODULE module) {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

bool IsRegistered(const std::wstring& path) {
  const std::optional<std::wstring> registered = ReadRegistry(kLocatorKey, nullptr);
  return registered && SameName(Narrow(*registered), Narrow(path));
}

// Copies a value of the class's entry to a value of the notebook's key.
LSTATUS Remember(const wchar_t* value, const wchar_t* as) {
  const std::optional<std::wstring> text = ReadRegistry(kLocatorKey, value);
  return text ? WriteRegistry(kNotebookKey, as, *text) : ERROR_SUCCESS;
}

LSTATUS Restore(const wchar_t* value, const wchar_t* from) {
  const std::optional<std::wstring> text = ReadRegistry(kNotebookKey, from);
  RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kNotebookKey, from);
  return text ? WriteRegistry(kLocatorKey, value, *text) : RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kLocatorKey, value);
}

}  // namespace

HRESULT Register(HMODULE server) {
  const std::wstring path = PathOf(server);
  if (!IsRegistered(path)) {
    // A server of this kind in another folder has remembered the original already.
    const bool known = ReadRegistry(kNotebookKey, kOriginalPathValue).has_value();
    LSTATUS status = known ? ERROR_SUCCESS : Remember(nullptr, kOriginalPathValue);
    if (status == ERROR_SUCCESS && !known) status = Remember(kThreadingModel, kOriginalThreadingValue);
    if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  }
  LSTATUS status = WriteRegistry(kLocatorKey, nullptr, path);
  if (status == ERROR_SUCCESS) status = WriteRegistry(kLocatorKey, kThreadingModel, L"Both");
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT Unregister(HMODULE server) {
  if (!IsRegistered(PathOf(server))) return S_OK;
  const LSTATUS path = Restore(nullptr, kOriginalPathValue);
  const LSTATUS threading = Restore(kThreadingModel, kOriginalThreadingValue);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(path != ERROR_SUCCESS ? path : threading));
}

}  // namespace firmware
