#include "tests/support/import_patch.h"

#include <cstdio>
#include <cstdlib>

namespace vexa::test {
namespace {

HMODULE g_patched_module = nullptr;

void WriteEntry(void** entry, void* value) {
  DWORD protection = 0;
  VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection);
  *entry = value;
  VirtualProtect(entry, sizeof *entry, protection, &protection);
}

}  // namespace

HMODULE PatchedModule() { return g_patched_module != nullptr ? g_patched_module : GetModuleHandleW(nullptr); }
void SetPatchedModule(HMODULE module) { g_patched_module = module; }

void** FindImport(HMODULE module, const std::string& function) {
  auto* base = reinterpret_cast<BYTE*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* imports = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; imports->Name != 0; ++imports) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA64*>(base + imports->OriginalFirstThunk);
    auto* entries = reinterpret_cast<void**>(base + imports->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++entries) {
      if (IMAGE_SNAP_BY_ORDINAL64(names->u1.Ordinal)) continue;
      const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
      if (function == reinterpret_cast<const char*>(name->Name)) return entries;
    }
  }
  return nullptr;
}

ImportPatch::ImportPatch(HMODULE module, const char* function, void* replacement)
    : entry_(FindImport(module, function)) {
  if (entry_ == nullptr) {
    // A patch that takes no effect would let its test pass for the wrong reason.
    std::fprintf(stderr, "import %s is not in the table\n", function);
    std::abort();
  }
  original_ = *entry_;
  WriteEntry(entry_, replacement);
}

ImportPatch::~ImportPatch() { WriteEntry(entry_, original_); }

}  // namespace vexa::test
