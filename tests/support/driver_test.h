// The fixture of tests about the driver service and what sets it up.
#ifndef VEXA_TESTS_SUPPORT_DRIVER_TEST_H_
#define VEXA_TESTS_SUPPORT_DRIVER_TEST_H_

#include "tests/support/fake_machine.h"
#include "tests/support/fake_services.h"
#include "tests/support/shell_test.h"

namespace vexa::test {

// One set of fakes; for tests that need several sets, outside of the fixture too.
struct DriverFakes {
  CallScript script;
  FakeServices services{script};
  FakeMachine machine{script};
  FakeService& service = services.service;
};

class DriverTest : public ShellTest, protected DriverFakes {};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_DRIVER_TEST_H_
