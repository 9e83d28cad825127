// The program's calls to the registry: recorded, failing on demand, else carried out.
#ifndef VEXA_TESTS_SUPPORT_REGISTRY_SCRIPT_H_
#define VEXA_TESTS_SUPPORT_REGISTRY_SCRIPT_H_

#include <windows.h>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

// One at a time. At its end every key opened meanwhile must have been closed.
class RegistryScript {
 public:
  RegistryScript();
  ~RegistryScript();

  // "read" and "open" (a key, for reading or with other rights), "create" and "set", with their arguments. What fails
  // does so with ERROR_ACCESS_DENIED.
  CallScript script;

 private:
  friend struct RegistryScriptHook;

  int open_keys_ = 0;
  ImportPatch open_;
  ImportPatch create_;
  ImportPatch set_;
  ImportPatch close_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_REGISTRY_SCRIPT_H_
