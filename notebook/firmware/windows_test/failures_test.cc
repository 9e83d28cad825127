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

class Failures : public FirmwareTest {
 protected:
  Failures() { ResetEvent(release_); }
  ~Failures() override {
    ResetEvent(release_);
    CloseHandle(release_);
  }

  void UseRules(const std::string& rules) {
    UseScenario(R"({ "ec": { "gauge": [ { "register": 13, "word": 84 } ] }, "rules": [)" + rules + "] }");
  }
  // All rows of the firmware's class, after a connection.
  Ref<IEnumWbemClassObject> Rows() {
    EXPECT_EQ(caller_.Connect(L"ROOT\\WMI"), S_OK);
    return caller_.Query(L"select * from ATD_STS");
  }

  const HANDLE release_ = CreateEventW(nullptr, TRUE, FALSE, L"Global\\vexa-firmware-release");
  Caller caller_;
};

// The named step fails with the code that is asked for, nothing before it, and nothing is left behind.
TEST_F(Failures, EndTheCallAtTheirStep) {
  constexpr std::pair<const char*, const char*> kSteps[] = {
      {R"("step": "CreateInstance")", "CreateInstance"},
      {R"("step": "ConnectServer", "namespace": "root\\wmi")", "ConnectServer"},
      {R"("step": "SetBlanket")", "SetBlanket"},
      {R"("step": "ExecQuery", "class": "ATD_STS")", "ExecQuery"},
      {R"("step": "Next", "namespace": "root/WMI", "class": "ATD_STS")", "Next"},
      {R"("step": "GetObject", "namespace": "root/WMI", "class": "ATD_STS")", "GetObject"},
      {R"("step": "GetMethod", "namespace": "root/WMI", "method": "battery_read_command_byte")", "GetMethod"},
      {R"("step": "SpawnInstance", "method": "battery_read_command_byte")", "SpawnInstance"},
      {R"("step": "Put", "namespace": "root/WMI", "property": "param0")", "Put"},
      {R"("step": "Get", "property": "__PATH")", "Get __PATH"},
      {R"("step": "ExecMethod", "namespace": "root/WMI", "inputs": { "commandcode": 13 })", "ExecMethod"},
      {R"("step": "Get", "method": "battery_read_command_byte", "property": "value")", "Get value"}};
  for (const auto& [on, step] : kSteps) {
    SCOPED_TRACE(step);
    UseRules(R"({ "on": {)" + std::string(on) + R"(}, "nth": 2, "then": { "fail": "0x800706BA" } })");
    EXPECT_EQ(ReadBattery(13, 2).number, 84);
    const Answer answer = ReadBattery(13, 2);
    EXPECT_EQ(answer.failed_step, step);
    EXPECT_EQ(answer.result, static_cast<HRESULT>(0x800706BA));
    EXPECT_EQ(ReadBattery(13, 2).number, 84);
    EXPECT_THAT(Log(), Contains(HasSubstr("0x800706ba")));
    EXPECT_EQ(Objects(), 0);
  }
}

TEST_F(Failures, OtherNumbersOfInstances) {
  UseRules(R"({ "on": { "step": "ExecQuery" }, "nth": 1, "then": { "rows": 0 } },
              { "on": { "step": "ExecQuery" }, "nth": 2, "then": { "rows": 3 } })");
  const Answer none = ReadBattery(13, 2);
  EXPECT_EQ(none.failed_step, "Next");
  EXPECT_EQ(none.result, WBEM_S_FALSE);
  IWbemClassObject* objects[5] = {};
  ULONG count = 0;
  EXPECT_EQ(Rows()->Next(WBEM_INFINITE, 5, objects, &count), WBEM_S_FALSE);
  EXPECT_EQ(count, 3u);
  for (ULONG i = 0; i < count; ++i) objects[i]->Release();
  // A success code without an object.
  UseRules(R"({ "on": { "step": "Next" }, "then": { "fail": 0 } })");
  ASSERT_EQ(caller_.Connect(L"ROOT\\WMI"), S_OK);
  EXPECT_FALSE(caller_.FirstRow(L"select * from ATD_STS"));
}

TEST_F(Failures, OtherOutParameters) {
  UseRules(R"({ "on": { "step": "ExecMethod" }, "nth": 1, "then": { "absent": true } },
              { "on": { "step": "ExecMethod" }, "nth": 2, "then": { "value": -3 } },
              { "on": { "step": "Get", "property": "value" }, "nth": 3, "then": { "raw": { "vt": 8, "value": "84" } } })");
  const Answer absent = ReadBattery(13, 2);
  EXPECT_EQ(absent.failed_step, "Get value");
  EXPECT_EQ(absent.result, static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  EXPECT_EQ(ReadBattery(13, 2).number, -3);
  EXPECT_EQ(ReadBattery(13, 2).type, VT_BSTR);
  EXPECT_EQ(ReadBattery(13, 2).number, 84);
}

TEST_F(Failures, ANextWithATimeLimitReturnsAndCanBeTriedAgain) {
  Ref<IWbemClassObject> row, other;
  ULONG count = 9;
  UseRules(R"({ "on": { "step": "Next" }, "then": { "delay_ms": 30 } })");
  Ref<IEnumWbemClassObject> rows = Rows();
  for (const LONG limit_ms : {0, 20}) {
    EXPECT_EQ(rows->Next(limit_ms, 1, row.Out(), &count), WBEM_S_TIMEDOUT);
    EXPECT_EQ(count, 0u);
  }
  EXPECT_EQ(rows->Next(20, 1, row.Out(), &count), WBEM_S_NO_ERROR);
  EXPECT_EQ(count, 1u);

  UseRules(R"({ "on": { "step": "Next" }, "nth": 1, "then": { "hang": true } })");
  rows = Rows();
  EXPECT_EQ(rows->Next(0, 1, other.Out(), &count), WBEM_S_TIMEDOUT);
  EXPECT_EQ(rows->Next(1, 1, other.Out(), &count), WBEM_S_TIMEDOUT);
  SetEvent(release_);
  EXPECT_EQ(rows->Next(WBEM_INFINITE, 1, other.Out(), &count), WBEM_S_NO_ERROR);
}

TEST_F(Failures, HangingCallsEndWithTheRelease) {
  for (const std::string step : {"ConnectServer ROOT\\WMI", "ExecQuery ATD_STS", "Next ATD_STS",
                                 "ExecMethod ATD_STS.battery_read_command_byte"}) {
    SCOPED_TRACE(step);
    ResetEvent(release_);
    UseRules(R"({ "on": { "step": ")" + step.substr(0, step.find(' ')) +
             R"(" }, "nth": 1, "then": { "hang": true } })");
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
}

}  // namespace
}  // namespace firmware
