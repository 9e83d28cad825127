#include "tests/support/automation_ledger.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

#include <mutex>
#include <set>

namespace vexa::test {
namespace {

std::mutex g_mutex;
std::set<const void*> g_live;
int g_freed_unknown = 0;

// What the import table held.
decltype(&SysAllocString) g_alloc = nullptr;
decltype(&SysAllocStringLen) g_alloc_length = nullptr;
decltype(&SysFreeString) g_free = nullptr;
decltype(&SafeArrayCreateVector) g_create_vector = nullptr;
decltype(&SafeArrayGetElement) g_get_element = nullptr;
decltype(&VariantClear) g_clear = nullptr;

template <typename Pointer>
Pointer Made(Pointer pointer) {
  const std::lock_guard lock(g_mutex);
  if (pointer != nullptr) g_live.insert(pointer);
  return pointer;
}

void Freed(const void* pointer) {
  const std::lock_guard lock(g_mutex);
  if (pointer != nullptr && g_live.erase(pointer) == 0) ++g_freed_unknown;
}

const void* Contents(const VARIANT& value) {
  if (value.vt == VT_BSTR) return value.bstrVal;
  return value.vt & VT_ARRAY ? value.parray : nullptr;
}

BSTR WINAPI Alloc(const OLECHAR* text) { return Made(g_alloc(text)); }
BSTR WINAPI AllocLength(const OLECHAR* text, UINT length) { return Made(g_alloc_length(text, length)); }
SAFEARRAY* WINAPI CreateVector(VARTYPE type, LONG first, ULONG count) {
  return Made(g_create_vector(type, first, count));
}

void WINAPI Free(BSTR text) {
  Freed(text);
  g_free(text);
}

HRESULT WINAPI GetElement(SAFEARRAY* array, LONG* indices, void* element) {
  const HRESULT result = g_get_element(array, indices, element);
  VARTYPE type = VT_EMPTY;
  if (FAILED(result) || FAILED(SafeArrayGetVartype(array, &type))) return result;
  if (type == VT_BSTR) Made(*static_cast<BSTR*>(element));
  if (type == VT_VARIANT) Made(Contents(*static_cast<VARIANT*>(element)));
  return result;
}

HRESULT WINAPI Clear(VARIANT* value) {
  Freed(Contents(*value));
  return g_clear(value);
}

}  // namespace

AutomationLedger::AutomationLedger() {
  g_live.clear();
  g_freed_unknown = 0;
  const auto patch = [this]<typename Function>(const char* name, Function* replacement, Function** original) {
    // The tests' own objects make and free some too; a library beside the program need not use them all.
    const HMODULE program = GetModuleHandleW(nullptr);
    *original = nullptr;
    for (const HMODULE module : std::set{program, PatchedModule()}) {
      if (FindImport(module, name) == nullptr) continue;
      patches_.push_back(std::make_unique<ImportPatch>(name, replacement, module));
      *original = patches_.back()->template Original<Function>();
    }
    ASSERT_NE(*original, nullptr) << name;
  };
  patch("SysAllocString", Alloc, &g_alloc);
  patch("SysAllocStringLen", AllocLength, &g_alloc_length);
  patch("SysFreeString", Free, &g_free);
  patch("SafeArrayCreateVector", CreateVector, &g_create_vector);
  patch("SafeArrayGetElement", GetElement, &g_get_element);
  patch("VariantClear", Clear, &g_clear);
}

AutomationLedger::~AutomationLedger() {
  patches_.clear();
  EXPECT_EQ(Live(), 0) << "texts or arrays left";
  EXPECT_EQ(g_freed_unknown, 0) << "texts or arrays freed twice";
}

int AutomationLedger::Live() {
  const std::lock_guard lock(g_mutex);
  return static_cast<int>(g_live.size());
}

}  // namespace vexa::test
