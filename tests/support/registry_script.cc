#include "tests/support/registry_script.h"

#include <gtest/gtest.h>

#include <string>

namespace vexa::test {
namespace {

RegistryScript* g_registry = nullptr;

std::string KeyText(HKEY root, LPCWSTR name, REGSAM access) {
  return (root == HKEY_LOCAL_MACHINE ? "HKLM " : "? ") + Narrow(name) + " " + Hex(access);
}

}  // namespace

struct RegistryScriptHook {
  static LSTATUS Count(LSTATUS status) {
    if (status == ERROR_SUCCESS) ++g_registry->open_keys_;
    return status;
  }
  static LSTATUS WINAPI Open(HKEY root, LPCWSTR name, DWORD options, REGSAM access, PHKEY key) {
    const char* const call = access == KEY_READ ? "read" : "open";
    if (g_registry->script.Fails(call, KeyText(root, name, access))) return ERROR_ACCESS_DENIED;
    return Count(g_registry->open_.Original<decltype(Open)>()(root, name, options, access, key));
  }
  static LSTATUS WINAPI Create(HKEY root, LPCWSTR name, DWORD reserved, LPWSTR kind, DWORD options, REGSAM access,
                               LPSECURITY_ATTRIBUTES attributes, PHKEY key, LPDWORD disposition) {
    if (g_registry->script.Fails("create", KeyText(root, name, access))) return ERROR_ACCESS_DENIED;
    return Count(g_registry->create_.Original<decltype(Create)>()(root, name, reserved, kind, options, access,
                                                                  attributes, key, disposition));
  }
  static LSTATUS WINAPI Set(HKEY key, LPCWSTR value, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    if (g_registry->script.Fails("set", Narrow(value) + " " + Hex(type) + " " + Hex(size))) return ERROR_ACCESS_DENIED;
    return g_registry->set_.Original<decltype(Set)>()(key, value, reserved, type, data, size);
  }
  static LSTATUS WINAPI Close(HKEY key) {
    --g_registry->open_keys_;
    return g_registry->close_.Original<decltype(Close)>()(key);
  }
};

RegistryScript::RegistryScript()
    : open_("RegOpenKeyExW", RegistryScriptHook::Open),
      create_("RegCreateKeyExW", RegistryScriptHook::Create),
      set_("RegSetValueExW", RegistryScriptHook::Set),
      close_("RegCloseKey", RegistryScriptHook::Close) {
  g_registry = this;
}

RegistryScript::~RegistryScript() {
  EXPECT_EQ(open_keys_, 0) << "registry key left open";
  g_registry = nullptr;
}

}  // namespace vexa::test
