// The fixture of tests that initialise the library on fakes.
#ifndef VEXA_TESTS_SUPPORT_LIFECYCLE_TEST_H_
#define VEXA_TESTS_SUPPORT_LIFECYCLE_TEST_H_

#include "frame/library_state.h"
#include "tests/support/arch_value.h"
#include "tests/support/driver_test.h"

namespace vexa::test {

// A machine on the driver route, the library as after loading.
class LifecycleTest : public DriverTest {
 protected:
  LifecycleTest() { g_library = {}; }
  ~LifecycleTest() override { g_library = {}; }

  // What a failed InitializeWinIo leaves behind.
  static void ExpectUntouched() {
    EXPECT_EQ(g_library.references, 0u);
    EXPECT_FALSE(g_library.initialised);
    EXPECT_EQ(g_library.driver, INVALID_HANDLE_VALUE);
  }

  ArchValue arch{L"x64"};
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_LIFECYCLE_TEST_H_
