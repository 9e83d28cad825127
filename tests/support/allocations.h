// Counts this program's allocations by operator new.
#ifndef VEXA_TESTS_SUPPORT_ALLOCATIONS_H_
#define VEXA_TESTS_SUPPORT_ALLOCATIONS_H_

#include <cstddef>

namespace vexa::test {

// Since the program began, over all threads.
size_t AllocationCount();

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_ALLOCATIONS_H_
