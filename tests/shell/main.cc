#include <gtest/gtest.h>

#include "frame/trace.h"
#include "tests/support/trace_recorder.h"

// The recorder stays in place until the process has ended: the library unregisters with the exit handlers.
int main(int argc, char** argv) {
  static auto* recorder = new vexa::test::TraceRecorder;
  recorder->level_at_registration = 0;
  (void)vexa::TraceEnabled(vexa::TraceLevel::kCritical);  // registers
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
