#include "frame/registry.h"

#include <windows.h>

#include <charconv>

#include "frame/handles.h"

namespace vexa {
namespace {

constexpr size_t kTextCapacity = 64;

RegistryKey OpenForReading(const wchar_t* key_name) {
  RegistryKey key;
  (void)RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, KEY_READ, key.put());
  return key;
}

bool WriteValue(const wchar_t* key_name, const wchar_t* value, DWORD type, const void* data, size_t size) {
  RegistryKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, KEY_WRITE, key.put()) != ERROR_SUCCESS &&
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, key_name, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                      key.put(), nullptr) != ERROR_SUCCESS) {
    return false;
  }
  return RegSetValueExW(key.get(), value, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)) ==
         ERROR_SUCCESS;
}

// Nothing unless the text is one decimal number of 32 bits and nothing else.
std::optional<uint32_t> WholeNumber(const std::wstring& text) {
  std::string digits;
  for (const wchar_t character : text) digits += character < 0x80 ? static_cast<char>(character) : '?';
  uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = error == std::errc() && end == digits.data() + digits.size();
  return whole ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<std::wstring> ReadTextValue(HKEY key, const wchar_t* value) {
  // Most values are short: one read, without an allocation.
  wchar_t text[kTextCapacity] = {};
  DWORD type = REG_NONE;
  DWORD size = sizeof text - sizeof(wchar_t);
  const LSTATUS status = RegQueryValueExW(key, value, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
  if ((status != ERROR_SUCCESS && status != ERROR_MORE_DATA) || type != REG_SZ) return std::nullopt;
  if (status == ERROR_SUCCESS) return text;

  std::wstring long_text(size / sizeof(wchar_t) + 1, L'\0');
  if (RegQueryValueExW(key, value, nullptr, &type, reinterpret_cast<BYTE*>(long_text.data()), &size) != ERROR_SUCCESS ||
      type != REG_SZ) {
    return std::nullopt;
  }
  return long_text.c_str();
}

std::wstring ReadRegistryText(const wchar_t* key_name, const wchar_t* value) {
  const RegistryKey key = OpenForReading(key_name);
  if (!key) return kRegistryReadError;
  return ReadTextValue(key.get(), value).value_or(kRegistryReadError);
}

bool RegistryKeyOpens(const wchar_t* key_name) { return static_cast<bool>(OpenForReading(key_name)); }

std::optional<uint32_t> ReadRegistryNumber(const wchar_t* key_name, const wchar_t* value) {
  const RegistryKey key = OpenForReading(key_name);
  if (!key) return std::nullopt;
  uint32_t number = 0;
  DWORD type = REG_NONE;
  DWORD size = sizeof number;
  const LSTATUS status = RegQueryValueExW(key.get(), value, nullptr, &type, reinterpret_cast<BYTE*>(&number), &size);
  if (type == REG_SZ) return ReadTextValue(key.get(), value).and_then(WholeNumber);
  return status == ERROR_SUCCESS && type == REG_DWORD && size == sizeof number ? std::optional(number) : std::nullopt;
}

bool WriteRegistryText(const wchar_t* key_name, const wchar_t* value, const std::wstring& text) {
  return WriteValue(key_name, value, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

bool WriteRegistryNumber(const wchar_t* key_name, const wchar_t* value, uint32_t number) {
  return WriteValue(key_name, value, REG_DWORD, &number, sizeof number);
}

}  // namespace vexa
