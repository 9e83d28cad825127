#include "frame/registry.h"

#include <windows.h>

#include "frame/handles.h"

namespace vexa {
namespace {

constexpr size_t kTextCapacity = 64;

}  // namespace

std::wstring ReadRegistryText(const wchar_t* key_name, const wchar_t* value) {
  RegistryKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return kRegistryReadError;

  // Most values are short: one read, without an allocation.
  wchar_t text[kTextCapacity] = {};
  DWORD type = REG_NONE;
  DWORD size = sizeof text - sizeof(wchar_t);
  const LSTATUS status = RegQueryValueExW(key.get(), value, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
  if ((status != ERROR_SUCCESS && status != ERROR_MORE_DATA) || type != REG_SZ) return kRegistryReadError;
  if (status == ERROR_SUCCESS) return text;

  std::wstring long_text(size / sizeof(wchar_t) + 1, L'\0');
  if (RegQueryValueExW(key.get(), value, nullptr, &type, reinterpret_cast<BYTE*>(long_text.data()), &size) !=
          ERROR_SUCCESS ||
      type != REG_SZ) {
    return kRegistryReadError;
  }
  return long_text.c_str();
}

bool RegistryKeyOpens(const wchar_t* key_name) {
  RegistryKey key;
  return RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

bool WriteRegistryText(const wchar_t* key_name, const wchar_t* value, const std::wstring& text) {
  RegistryKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, KEY_WRITE, key.put()) != ERROR_SUCCESS &&
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                      key.put(), nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key.get(), value, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size) ==
         ERROR_SUCCESS;
}

}  // namespace vexa
