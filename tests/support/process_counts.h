// What this process holds of the system.
#ifndef VEXA_TESTS_SUPPORT_PROCESS_COUNTS_H_
#define VEXA_TESTS_SUPPORT_PROCESS_COUNTS_H_

#include <cstddef>

namespace vexa::test {

// From the system's table of handles: the process's own count is 0 on some systems.
size_t OpenHandles();
size_t RunningThreads();

struct HeapUse {
  size_t blocks = 0, bytes = 0;
};
// Of all heaps: that of the process, where COM's texts, arrays and task memory live, and those of the C runtimes.
HeapUse UseOfHeaps();

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_PROCESS_COUNTS_H_
