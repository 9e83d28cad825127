// The registry value that chooses the route, for the length of a test.
#ifndef VEXA_TESTS_SUPPORT_ARCH_VALUE_H_
#define VEXA_TESTS_SUPPORT_ARCH_VALUE_H_

#include <windows.h>

#include <string>

namespace vexa::test {

inline constexpr wchar_t kConfigKeyName[] = L"SOFTWARE\\Vexa\\Config";

class ArchValue {
 public:
  explicit ArchValue(const std::wstring& text) { Set(text); }
  ~ArchValue() { Remove(); }

  static void Set(const std::wstring& text) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, kConfigKeyName, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    RegSetValueExW(key, L"Arch", 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }

  static void Remove() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kConfigKeyName, L"Arch"); }
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_ARCH_VALUE_H_
