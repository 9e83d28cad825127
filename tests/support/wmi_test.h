// The fixture of tests about what goes through WMI.
#ifndef VEXA_TESTS_SUPPORT_WMI_TEST_H_
#define VEXA_TESTS_SUPPORT_WMI_TEST_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/event_log.h"
#include "tests/support/fake_wmi.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {

class WmiTest : public testing::Test {
 protected:
  WmiTest() {
    TraceRecorder::Get().Enable(0);
    TraceRecorder::Get().TakeEvents();
  }

  // "5 text" per line since the last time.
  static std::vector<std::string> Lines() { return TraceRecorder::Get().TakeLines(); }

  EventLog event_log;
  FakeWmi wmi;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_WMI_TEST_H_
