// The driver service's registration: looked for, created, read, changed and removed.
#include "frame/driver_service.h"
#include "tests/support/driver_test.h"

namespace vexa::test {
namespace {

constexpr char kNoManager[] = "1 ERROR: Failed to open service control manager. Error code=0x00000005";
constexpr char kNoService[] = "1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000005";
constexpr char kNotRunning[] = "5 Service [VexaSAIO] is not running.";
constexpr char kDeleted[] = "1 Successfully to delete service [VexaSAIO].";

class DriverConfig : public DriverTest {
 protected:
  // The service manager and then the service can't be opened: result 0 and the line of each.
  template <typename Run>
  void CheckOpening(Run run) {
    script.Fail("OpenSCManagerW", 5, 1);
    EXPECT_EQ(run(), 0u);
    EXPECT_THAT(Lines(), ElementsAre(kNoManager));
    script.Fail("OpenServiceW", 5, 1);
    EXPECT_EQ(run(), 0u);
    EXPECT_THAT(Lines(), ElementsAre(kNoService));
    script.Take();
  }

  // A configuration query's three steps, each failing once.
  struct Step {
    const char* function;
    int nth;
    DWORD error;
    const char* line;
  };
  static constexpr Step kQuerySteps[] = {
      {"QueryServiceConfigW", 1, 5,
       "1 ERROR: Failed to query configuration of service [VexaSAIO]. Error code=0x00000005"},
      {"LocalAlloc", 1, 8, "1 ERROR: Failed to query configuration of service [VexaSAIO]. Error code=0x00000008"},
      {"QueryServiceConfigW", 2, 122,
       "1 ERROR: Failed to query configuration of service [VexaSAIO]. Error code=0x0000007a"},
  };
};

TEST_F(DriverConfig, ExistsUnlessItIsKnownNotTo) {
  EXPECT_TRUE(DriverServiceExists());
  EXPECT_THAT(script.Take(), ElementsAre("OpenSCManagerW null null f003f", "OpenServiceW VexaSAIO f01ff"));
  script.Fail("OpenServiceW", ERROR_ACCESS_DENIED, 1);
  EXPECT_TRUE(DriverServiceExists());
  service.exists = false;
  EXPECT_FALSE(DriverServiceExists());
  EXPECT_THAT(Lines(), IsEmpty());

  service.exists = true;
  script.Fail("OpenSCManagerW", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(DriverServiceExists());
  EXPECT_THAT(Lines(), ElementsAre(kNoManager));
}

TEST_F(DriverConfig, CreatesADemandStartKernelDriver) {
  service.exists = false;
  EXPECT_EQ(CreateDriverService(L"\\??\\D:\\Tools\\VexaSAIO.sys"), 1u);
  EXPECT_THAT(script.Take(), ElementsAre("OpenSCManagerW null null f003f",
                                         "CreateServiceW VexaSAIO VexaSAIO f01ff type 1 start 3 error 1 path "
                                         "\\??\\D:\\Tools\\VexaSAIO.sys null null null null null"));
  EXPECT_THAT(Lines(), IsEmpty());

  EXPECT_EQ(CreateDriverService(L"\\??\\E:\\VexaSAIO.sys"), 0u);  // exists now
  EXPECT_THAT(Lines(), ElementsAre("1 ERROR: Failed to create service [VexaSAIO]. Error code=0x00000431"));
  script.Fail("OpenSCManagerW", 5);
  EXPECT_EQ(CreateDriverService(L"\\??\\E:\\VexaSAIO.sys"), 0u);
  EXPECT_THAT(Lines(), ElementsAre(kNoManager));
}

TEST_F(DriverConfig, RemovingStopsFirstThenDeletes) {
  service.state = SERVICE_RUNNING;
  machine.mutex_exists = true;  // the caller has it
  machine.wait_result = WAIT_TIMEOUT;
  RemoveDriverService();
  EXPECT_FALSE(service.exists);
  EXPECT_THAT(script.Take(),
              ElementsAre("OpenSCManagerW null null f003f", "OpenServiceW VexaSAIO 24", "QueryServiceStatus",
                          "ControlService 1", "Sleep 1", "QueryServiceStatus", "OpenSCManagerW null null f003f",
                          "OpenServiceW VexaSAIO f01ff", "QueryServiceConfigW 0", "LocalAlloc",
                          "QueryServiceConfigW sized", "DeleteService"));
  EXPECT_THAT(Lines(),
              ElementsAre("5 Stopping service [VexaSAIO].", "5 Successful to stop service [VexaSAIO].", kDeleted));

  // Absent: nothing to open, nothing deleted.
  RemoveDriverService();
  EXPECT_THAT(Lines(), ElementsAre("1 ERROR: Failed to get handle of service [VexaSAIO]. Error code=0x00000424"));
}

TEST_F(DriverConfig, WhatDoesNotStopIsNotDeleted) {
  service.state = SERVICE_RUNNING;
  service.state_after_stop = SERVICE_RUNNING;
  RemoveDriverService();
  EXPECT_TRUE(service.exists);
  EXPECT_EQ(CountOf(script.Take(), "DeleteService"), 0);
  EXPECT_THAT(Lines(), ElementsAre("5 Stopping service [VexaSAIO].", "1 ERROR: Failed to stop service [VexaSAIO]."));
}

TEST_F(DriverConfig, EachFailingStepOfRemovalKeepsTheService) {
  std::vector<Step> steps{{"OpenSCManagerW", 2, 5, kNoManager}, {"OpenServiceW", 2, 5, kNoService}};
  steps.insert(steps.end(), std::begin(kQuerySteps), std::end(kQuerySteps));
  steps.push_back({"DeleteService", 1, 1072, "1 ERROR: Failed to delete service [VexaSAIO]. Error code=0x00000430"});
  for (const Step& step : steps) {
    script.Fail(step.function, step.error, step.nth);
    RemoveDriverService();
    EXPECT_TRUE(service.exists) << step.function;
    EXPECT_THAT(Lines(), ElementsAre(kNotRunning, step.line));
  }
}

TEST_F(DriverConfig, ReadsThePathAsItIsRegistered) {
  service.binary_path = L"\\SystemRoot\\System32\\VexaSAIO.sys";
  wchar_t path[260] = {};
  EXPECT_EQ(GetDriverPath(path), 1u);
  EXPECT_STREQ(path, L"\\SystemRoot\\System32\\VexaSAIO.sys");
  EXPECT_THAT(Lines(), IsEmpty());
  service.binary_path.clear();
  EXPECT_EQ(GetDriverPath(path), 1u);
  EXPECT_STREQ(path, L"");
}

TEST_F(DriverConfig, PathMustFitWithItsTerminator) {
  wchar_t path[261] = {};
  path[260] = L'!';
  service.binary_path.assign(259, L'p');
  EXPECT_EQ(GetDriverPath(path), 1u);
  EXPECT_EQ(path, std::wstring(259, L'p'));
  EXPECT_THAT(Lines(), IsEmpty());

  wchar_t untouched[261] = L"untouched";
  service.binary_path.assign(260, L'p');
  EXPECT_EQ(GetDriverPath(untouched), 0u);
  EXPECT_STREQ(untouched, L"untouched");
  EXPECT_EQ(path[260], L'!');
  EXPECT_THAT(Lines(), ElementsAre("1 ERROR: Buffer size [260] is not enough for the length [261] of service "
                                   "[VexaSAIO] path."));
}

TEST_F(DriverConfig, EachFailingStepOfReadingThePath) {
  wchar_t path[260] = L"untouched";
  CheckOpening([&] { return GetDriverPath(path); });
  for (const Step& step : kQuerySteps) {
    script.Fail(step.function, step.error, step.nth);
    EXPECT_EQ(GetDriverPath(path), 0u) << step.function;
    EXPECT_THAT(Lines(), ElementsAre(step.line));
  }
  EXPECT_STREQ(path, L"untouched");
}

TEST_F(DriverConfig, ChangesThePathOrTheStartTypeAlone) {
  const struct {
    uint32_t (*change)();
    const char* call;
    const char* success;  // Kept: the wording of the path, for the start type too
    const char* failure;
  } changes[] = {
      {[] { return ChangeDriverPath(L"\\??\\E:\\100%s\\VexaSAIO.sys"); },
       "ChangeServiceConfigW type ffffffff start ffffffff error ffffffff path \\??\\E:\\100%s\\VexaSAIO.sys "
       "null null null null null null",
       "5 Successfully change binary path of service [VexaSAIO] to [\\??\\E:\\100%s\\VexaSAIO.sys]. Error "
       "code=0x00000000",
       "1 ERROR: Failed to change binary path of service [VexaSAIO] to [\\??\\E:\\100%s\\VexaSAIO.sys]. "
       "Error code=0x00000430"},
      {[] { return ChangeDriverStartType(SERVICE_DISABLED); },
       "ChangeServiceConfigW type ffffffff start 4 error ffffffff path null null null null null null null",
       "5 Successfully change binary path of service [VexaSAIO] to [4]. Error code=0x00000000",
       "1 ERROR: Failed to change start type of service [VexaSAIO] to [4]. Error code=0x00000430"},
  };
  for (const auto& one : changes) {
    CheckOpening(one.change);
    EXPECT_EQ(one.change(), 1u);
    EXPECT_EQ(script.Take().back(), one.call);
    EXPECT_THAT(Lines(), ElementsAre(one.success));
    script.Fail("ChangeServiceConfigW", 1072, 1);
    EXPECT_EQ(one.change(), 0u);
    EXPECT_THAT(Lines(), ElementsAre(one.failure));
    script.Take();
  }
}

}  // namespace
}  // namespace vexa::test
