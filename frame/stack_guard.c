// The stack protector's canary and what its finding ends in. The canary is the security cookie that the load
// configuration names: the system's loader replaces its default value before any code of the module runs.
#include <windows.h>

#include <intrin.h>

ULONG_PTR __stack_chk_guard = 0x00002B992DDFA232;

// Some loaders seed it from the clock and the process's number alone: two processes can have the same. This runs before
// any function that looks at it. The high word stays zero, as the loader leaves it.
__attribute__((constructor, no_stack_protector)) static void StirCanary(void) {
  LARGE_INTEGER ticks;
  QueryPerformanceCounter(&ticks);
  const ULONG_PTR spread = ((ULONG_PTR)ticks.QuadPart ^ (ULONG_PTR)&ticks) * 0x9E3779B97F4A7C15;
  __stack_chk_guard = (__stack_chk_guard ^ spread) & 0x0000FFFFFFFFFFFF;
}

// The process ends at once, without handlers: nothing that stands on the stack can be trusted any more.
__attribute__((noreturn)) void __stack_chk_fail(void) { __fastfail(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE); }

// The name is the linker's. Imported libraries are looked for in the system's folder only.
extern const IMAGE_LOAD_CONFIG_DIRECTORY64 _load_config_used;
const IMAGE_LOAD_CONFIG_DIRECTORY64 _load_config_used = {
    .Size = sizeof(IMAGE_LOAD_CONFIG_DIRECTORY64),
    .DependentLoadFlags = LOAD_LIBRARY_SEARCH_SYSTEM32,
    .SecurityCookie = (ULONG_PTR)&__stack_chk_guard,
};
_Static_assert(offsetof(IMAGE_LOAD_CONFIG_DIRECTORY64, SecurityCookie) == 0x58, "as the loader reads it");
