// What this process holds of the system.
#ifndef VEXA_TESTS_SUPPORT_PROCESS_COUNTS_H_
#define VEXA_TESTS_SUPPORT_PROCESS_COUNTS_H_

#include <cstddef>

namespace vexa::test {

// From the system's table of handles: the process's own count is 0 on some systems.
size_t OpenHandles();
size_t RunningThreads();

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_PROCESS_COUNTS_H_
