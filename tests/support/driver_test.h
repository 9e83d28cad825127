// The fixture of tests about the driver service and what sets it up.
#ifndef VEXA_TESTS_SUPPORT_DRIVER_TEST_H_
#define VEXA_TESTS_SUPPORT_DRIVER_TEST_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/fake_machine.h"
#include "tests/support/fake_services.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {

// One set of fakes and an empty trace; for tests that need several sets, outside of the fixture too.
struct DriverFakes {
  DriverFakes() { TraceRecorder::Get().TakeEvents(); }

  // "5 text" per line since the last time.
  static std::vector<std::string> Lines() { return TraceRecorder::Get().TakeLines(); }

  CallScript script;
  FakeServices services{script};
  FakeMachine machine{script};
  FakeService& service = services.service;
};

class DriverTest : public testing::Test, protected DriverFakes {};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_DRIVER_TEST_H_
