// Replaces entries of a loaded module's import table, by function name, whichever DLL they come from.
#ifndef VEXA_TESTS_SUPPORT_IMPORT_PATCH_H_
#define VEXA_TESTS_SUPPORT_IMPORT_PATCH_H_

#include <windows.h>

#include <string>

namespace vexa::test {

// The module whose calls are replaced unless another one is named: the program itself, or what was set last.
HMODULE PatchedModule();
void SetPatchedModule(HMODULE module);

// While it lives, calls that `module` makes to `function` go to `replacement`.
// Patches of one function nest: the one that ends restores what it found.
class ImportPatch {
 public:
  template <typename Function>
  ImportPatch(const char* function, Function* replacement, HMODULE module = PatchedModule())
      : ImportPatch(module, function, reinterpret_cast<void*>(replacement)) {}
  ~ImportPatch();

  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

  // What the table held before, to be called by a replacement that passes calls on.
  template <typename Function>
  Function* Original() const {
    return reinterpret_cast<Function*>(original_);
  }

 private:
  ImportPatch(HMODULE module, const char* function, void* replacement);

  void** entry_ = nullptr;
  void* original_ = nullptr;
};

// The import table's entry; null when the module does not import the function.
void** FindImport(HMODULE module, const std::string& function);

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_IMPORT_PATCH_H_
