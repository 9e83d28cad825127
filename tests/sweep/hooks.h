// Stands between the library under test and the system: every call that can fail is counted, may be made to fail, and
// what it hands out is accounted for.
#ifndef VEXA_TESTS_SWEEP_HOOKS_H_
#define VEXA_TESTS_SWEEP_HOOKS_H_

#include <windows.h>

namespace vexa::test {

// Puts the hooks in front of whatever the library's import table holds now. To be done again when that has changed.
void InstallHooks(HMODULE library);
void RemoveHooks();

// The library's allocations; for as long as it is loaded.
void InstallHeapHooks(HMODULE library);
void FreeOfLibrary(void* block);

// Callbacks of the thread pool that have not returned.
int RunningTasks();

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_HOOKS_H_
