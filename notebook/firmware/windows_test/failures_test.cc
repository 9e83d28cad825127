// Failures on demand, at every step of a caller.
#include <gmock/gmock.h>

#include <thread>

#include "caller.h"
#include "fixture.h"

namespace firmware {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr wchar_t kReleaseEvent[] = L"Global\\vexa-firmware-release";

struct StepCase {
  const char* on;
  const char* failed_step;
};

class Failing : public FirmwareTest, public testing::WithParamInterface<StepCase> {};

// The named step fails with the code that is asked for, nothing before it, and nothing is left behind.
TEST_P(Failing, EndsTheCallThere) {
  UseScenario(std::string(R"({ "ec": { "gauge": [ { "register": 13, "word": 84 } ] },
    "rules": [ { "on": {)") +
              GetParam().on + R"(}, "nth": 2, "then": { "fail": "0x800706BA" } } ] })");
  EXPECT_EQ(ReadBattery(13, 2).number, 84);
  const Answer answer = ReadBattery(13, 2);
  EXPECT_EQ(answer.failed_step, GetParam().failed_step);
  EXPECT_EQ(answer.result, static_cast<HRESULT>(0x800706BA));
  EXPECT_EQ(ReadBattery(13, 2).number, 84);
  EXPECT_THAT(Log(), Contains(HasSubstr("0x800706ba")));
}

INSTANTIATE_TEST_SUITE_P(
    Steps, Failing,
    testing::Values(
        StepCase{R"("step": "CreateInstance")", "CreateInstance"},
        StepCase{R"("step": "ConnectServer", "namespace": "root\\wmi")", "ConnectServer"},
        StepCase{R"("step": "SetBlanket")", "SetBlanket"},
        StepCase{R"("step": "ExecQuery", "class": "ATD_STS")", "ExecQuery"},
        StepCase{R"("step": "Next", "namespace": "root/WMI", "class": "ATD_STS")", "Next"},
        StepCase{R"("step": "GetObject", "namespace": "root/WMI", "class": "ATD_STS")", "GetObject"},
        StepCase{R"("step": "GetMethod", "namespace": "root/WMI", "method": "battery_read_command_byte")", "GetMethod"},
        StepCase{R"("step": "SpawnInstance", "method": "battery_read_command_byte")", "SpawnInstance"},
        StepCase{R"("step": "Put", "namespace": "root/WMI", "property": "param0")", "Put"},
        StepCase{R"("step": "Get", "property": "__PATH")", "Get __PATH"},
        StepCase{R"("step": "ExecMethod", "namespace": "root/WMI", "inputs": { "commandcode": 13 })", "ExecMethod"},
        StepCase{R"("step": "Get", "method": "battery_read_command_byte", "property": "value")", "Get value"}),
    [](const auto& info) {
      std::string name = info.param.failed_step;
      std::erase_if(name, [](char c) { return c == ' ' || c == '_'; });
      return name;
    });

class Answers : public FirmwareTest {
 protected:
  void UseRule(const std::string& rule) {
    UseScenario(R"({ "ec": { "gauge": [ { "register": 13, "word": 84 } ] }, "rules": [)" + rule + "] }");
  }
};

TEST_F(Answers, NoInstanceAndSeveral) {
  UseRule(R"({ "on": { "step": "ExecQuery" }, "nth": 1, "then": { "rows": 0 } },
             { "on": { "step": "ExecQuery" }, "nth": 2, "then": { "rows": 3 } })");
  const Answer none = ReadBattery(13, 2);
  EXPECT_EQ(none.failed_step, "Next");
  EXPECT_EQ(none.result, WBEM_S_FALSE);
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IEnumWbemClassObject> rows = caller.Query(L"select * from ATD_STS");
  IWbemClassObject* objects[5] = {};
  ULONG count = 0;
  EXPECT_EQ(rows->Next(WBEM_INFINITE, 5, objects, &count), WBEM_S_FALSE);
  EXPECT_EQ(count, 3u);
  for (ULONG i = 0; i < count; ++i) objects[i]->Release();
}

TEST_F(Answers, OutParameters) {
  UseRule(R"({ "on": { "step": "ExecMethod" }, "nth": 1, "then": { "absent": true } },
             { "on": { "step": "ExecMethod" }, "nth": 2, "then": { "value": -3 } },
             { "on": { "step": "Get", "property": "value" }, "nth": 3, "then": { "raw": { "vt": 8, "value": "84" } } })");
  const Answer absent = ReadBattery(13, 2);
  EXPECT_EQ(absent.failed_step, "Get value");
  EXPECT_EQ(absent.result, static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  EXPECT_EQ(ReadBattery(13, 2).number, -3);
  EXPECT_EQ(ReadBattery(13, 2).type, VT_BSTR);
  EXPECT_EQ(ReadBattery(13, 2).number, 84);
}

TEST_F(Answers, ASuccessCodeWithoutAnObject) {
  UseRule(R"({ "on": { "step": "Next" }, "then": { "fail": 0 } })");
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  EXPECT_FALSE(caller.FirstRow(L"select * from ATD_STS"));
}

TEST_F(Answers, ANextWithATimeLimitCanBeTriedAgain) {
  UseRule(R"({ "on": { "step": "Next" }, "then": { "delay_ms": 30 } })");
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IEnumWbemClassObject> rows = caller.Query(L"select * from ATD_STS");
  Ref<IWbemClassObject> row;
  ULONG count = 9;
  EXPECT_EQ(rows->Next(0, 1, row.Out(), &count), WBEM_S_TIMEDOUT);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(rows->Next(20, 1, row.Out(), &count), WBEM_S_TIMEDOUT);
  EXPECT_EQ(rows->Next(20, 1, row.Out(), &count), WBEM_S_NO_ERROR);
  EXPECT_EQ(count, 1u);
}

class Hanging : public FirmwareTest, public testing::WithParamInterface<const char*> {
 protected:
  Hanging() : release_(CreateEventW(nullptr, TRUE, FALSE, kReleaseEvent)) { ResetEvent(release_); }
  ~Hanging() override {
    ResetEvent(release_);
    CloseHandle(release_);
  }

  HANDLE release_;
};

TEST_P(Hanging, EndsWithTheRelease) {
  const std::string step = GetParam();
  UseScenario(R"({ "ec": { "gauge": [ { "register": 13, "word": 84 } ] },
    "rules": [ { "on": { "step": ")" +
              step.substr(0, step.find(' ')) + R"(" }, "nth": 1, "then": { "hang": true } } ] })");
  Answer answer;
  std::thread caller([&answer] { answer = ReadBattery(13, 2); });
  AwaitLine("hang " + step);
  EXPECT_THAT(Log(), Not(Contains("released " + step)));
  SetEvent(release_);
  caller.join();
  EXPECT_EQ(answer.failed_step, "");
  EXPECT_EQ(answer.number, 84);
  EXPECT_THAT(Log(), Contains("released " + step));
}

INSTANTIATE_TEST_SUITE_P(Steps, Hanging,
                         testing::Values("ConnectServer ROOT\\WMI", "ExecQuery ATD_STS", "Next ATD_STS",
                                         "ExecMethod ATD_STS.battery_read_command_byte"),
                         [](const auto& info) {
                           const std::string step = info.param;
                           return step.substr(0, step.find(' '));
                         });

TEST_F(Hanging, ANextWithATimeLimitReturns) {
  UseScenario(R"({ "ec": {}, "rules": [ { "on": { "step": "Next" }, "nth": 1, "then": { "hang": true } } ] })");
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IEnumWbemClassObject> rows = caller.Query(L"select * from ATD_STS");
  Ref<IWbemClassObject> row;
  ULONG count = 0;
  EXPECT_EQ(rows->Next(0, 1, row.Out(), &count), WBEM_S_TIMEDOUT);
  EXPECT_EQ(rows->Next(1, 1, row.Out(), &count), WBEM_S_TIMEDOUT);
  SetEvent(release_);
  EXPECT_EQ(rows->Next(WBEM_INFINITE, 1, row.Out(), &count), WBEM_S_NO_ERROR);
}

}  // namespace
}  // namespace firmware
