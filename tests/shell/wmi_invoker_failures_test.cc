// The three firmware method invokers when a step fails, hands out nothing, or does not come back.
#include <cstring>

#include "tests/shell/wmi_invoker_fixture.h"
#include "wmi/bounded_task.h"

namespace vexa::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class WmiInvokerFailures : public InvokerTest {};

TEST_P(WmiInvokerFailures, AbsentOutputAndEveryOtherTypeIsNoOutput) {
  wmi.firmware = [](const std::wstring&, const FakeWmi::Parameters&) { return WmiProperties(); };
  EXPECT_EQ(Call({}), invoker_.failed);
  ExpectFailure(std::string(invoker_.no_output) + "80041002");
  WmiValue date = Real64(45000.5);
  date.type = VT_DATE;
  for (const WmiValue& value : {Number(VT_EMPTY, 0), Number(VT_NULL, 0), Text(L"7"), Text(L""), Number(VT_BOOL, -1),
                                Real32(7), Real64(7), date, Number(VT_CY, 70000), Number(VT_ERROR, 7),
                                Number(VT_UNKNOWN, 0), Number(VT_DISPATCH, 0), Array(VT_UI1, {Number(VT_UI1, 7)}),
                                Array(VT_I4, {}), Texts({L"7"}), Array(VT_VARIANT, {Number(VT_I4, 7), Text(L"7")})}) {
    Answer(value);
    EXPECT_EQ(Call({}), invoker_.failed) << "type " << value.type;
    ExpectFailure(std::string(invoker_.no_output) + "80041005");
  }
}

TEST_P(WmiInvokerFailures, EachStepFailingInTurn) {
  const std::vector<std::string> none, both = {invoker_.first_line, invoker_.second_line};
  const struct {
    const char* function;
    int nth;
    std::string line;  // behind the name, up to the HRESULT
    std::vector<std::string> before;
  } steps[] = {
      {"CoCreateInstance", 1, Named("Step2 Failed to create IWbemLocator object. Errorcode=0x"), none},
      {"ConnectServer", 1, Named("Step3 Could not connect. Errorcode=0x"), none},
      {"CoSetProxyBlanket", 1, Named("Step4 Could not set proxy blanket. Errorcode=0x"), none},
      {"ExecQuery", 1, Named("Step5 Query failed. Errorcode=0x"), none},
      {"Next", 1, Named("Could not Get the Next Object. Errorcode=0x"), none},
      {"GetObject", 1, Named("Could not GetObject. Errorcode=0x"), none},
      {"GetMethod", 1, Named("Could not GetMethod. method=m, Errorcode=0x"), none},
      {"SpawnInstance", 1, Named("Could not SpawnInstance. method=m, Errorcode=0x"), none},
      {"Put", 1, Named("Could not put parameters. method=m, ID=0xff, Errorcode=0x"), {invoker_.first_line}},
      {"Put", 2, Named("Could not put parameters. method=m, ID=0xffffffff, Errorcode=0x"), both},
      {"Get", 1, Named("Could not Get method retrieves. method=m, Errorcode=0x"), both},
      {"ExecMethod", 1, Named("Could not execute method. method=m, Errorcode=0x"), both},
      {"Get", 2, invoker_.no_output, both},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(std::string(step.function) + " " + std::to_string(step.nth));
    wmi.script.Fail(step.function, 0x80041003, step.nth);
    EXPECT_EQ(Call(), invoker_.failed);
    ExpectFailure(step.line + "80041003", step.before);
    // Nothing follows but the clean-up.
    const std::vector<std::string> calls = wmi.TakeCalls();
    ASSERT_GE(calls.size(), 2u);
    EXPECT_THAT(calls[calls.size() - 2], testing::StartsWith(step.function));
    EXPECT_EQ(calls.back(), "CoUninitialize");
    EXPECT_EQ(wmi.References(), 0);
    EXPECT_EQ(AutomationLedger::Live(), 0);
  }
}

// A success that hands out nothing fails the step all the same.
TEST_P(WmiInvokerFailures, NothingHandedOut) {
  const struct {
    const char* function;
    DWORD result;
    std::string line;
  } steps[] = {
      {"ConnectServer", 0, Named("Step3 Could not connect. Errorcode=0x0")},
      {"ExecQuery", 0, Named("Step5 Query failed. Errorcode=0x0")},
      {"Next", 1, Named("Could not Get the Next Object. Errorcode=0x1")},
      {"Next", 0x40004, Named("Could not Get the Next Object. Errorcode=0x40004")},
      {"GetObject", 0, Named("Could not GetObject. Errorcode=0x0")},
      {"SpawnInstance", 0, Named("Could not SpawnInstance. method=m, Errorcode=0x0")},
      {"ExecMethod", 0, Named("Could not execute method. method=m, Errorcode=0x0")},
  };
  for (const auto& step : steps) {
    wmi.script.Fail(step.function, step.result, 1);
    EXPECT_EQ(Call({}), invoker_.failed) << step.function;
    ExpectFailure(step.line);
  }
  // An instance whose path is no text.
  wmi.rows.clear();
  for (const char* class_name : {"ATD_STS", "VexaObxWmi_WMNB"}) {
    wmi.rows[L"Select * from " + std::wstring(class_name, class_name + std::strlen(class_name))] = {
        {{L"__PATH", Number(VT_NULL, 0)}}};
  }
  EXPECT_EQ(Call({}), invoker_.failed);
  ExpectFailure(Named("Could not Get method retrieves. method=m, Errorcode=0x80041005"));
}

TEST_P(WmiInvokerFailures, EveryCallFailingAloneAndFromThereOn) {
  for (int i = 0; i < 14; ++i) {
    wmi.TakeCalls();
    wmi.script.FailOnly(i, 0x80070005);
    EXPECT_EQ(Call(), invoker_.failed) << i;
    wmi.TakeCalls();
    wmi.script.FailFrom(i, 0x80070005);
    EXPECT_EQ(Call(), invoker_.failed) << i;
    EXPECT_EQ(wmi.References(), 0) << i;
    EXPECT_EQ(AutomationLedger::Live(), 0) << i;
  }
  wmi.TakeCalls();
  wmi.script.FailOnly(-1, 0);
  EXPECT_EQ(Call(), "42");
}

TEST_P(WmiInvokerFailures, TimeOuts) {
  wmi.Block("ConnectServer");
  EXPECT_EQ(Call(), invoker_.failed);
  ExpectFailure(Named("Step3 Connection timed out."));
  EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1",
                                           "ConnectServer ROOT\\WMI null null null 0 null", "CoUninitialize"));
  EXPECT_THAT(wmi.TakeWaits(), testing::AllOf(Not(IsEmpty()), Each(5000)));
  EXPECT_EQ(CountTasks().abandoned, 1);
  EXPECT_GT(wmi.References(), 0);
  wmi.Unblock();
  EXPECT_EQ(wmi.References(), 0);

  wmi.Block("ExecQuery");
  EXPECT_EQ(Call(), invoker_.failed);
  ExpectFailure(invoker_.query_timeout);
  EXPECT_EQ(wmi.TakeCalls().size(), 6u);  // up to the query, and the clean-up
  EXPECT_THAT(wmi.TakeWaits(), testing::AllOf(Not(IsEmpty()), Each(5000)));
  EXPECT_EQ(CountTasks().abandoned, 1);
  // A hanging call that fails at last gives back as much.
  wmi.Unblock();
  wmi.script.Fail("ConnectServer", 0x80041003, 1);
  wmi.Block("ConnectServer");
  EXPECT_EQ(Call(), invoker_.failed);
  wmi.Unblock();
  EXPECT_EQ(wmi.References(), 0);
  EXPECT_EQ(AutomationLedger::Live(), 0);
  wmi.TakeCalls();
  EXPECT_EQ(Call(), "42");
}

INSTANTIATE_TEST_SUITE_P(Each, WmiInvokerFailures, testing::ValuesIn(kInvokers),
                         [](const auto& info) { return std::string(info.param.name); });

using AbandonedInvokers = WmiTest;

TEST_F(AbandonedInvokers, NinthCallStartsNothingAndEndsWithTheSameLine) {
  wmi.firmware = [](const std::wstring&, const FakeWmi::Parameters&) {
    return WmiProperties{{L"value", Number(VT_I4, 3)}};
  };
  wmi.Block("ConnectServer");
  for (int i = 0; i < 8; ++i) EXPECT_EQ(wmiMethod_ATD_STS(L"m", {}, L"value"), L"");
  EXPECT_EQ(CountTasks().abandoned, 8);
  EXPECT_EQ(wmi.TakeWaits().size() >= 8, true);
  EXPECT_EQ(CountOf(wmi.TakeCalls(), "ConnectServer ROOT\\WMI null null null 0 null"), 8);
  Lines();
  event_log.TakeMessages();
  EXPECT_EQ(wmiMethod_ATD_STS_UINT(L"m", {}, L"value"), 0u);
  EXPECT_THAT(Lines(), ElementsAre("5 [wmiMethod_ATD_STS_UINT] Step3 Connection timed out.",
                                   "5 [wmiMethod_ATD_STS_UINT] Do CoUninitialize()"));
  EXPECT_THAT(event_log.TakeMessages(), ElementsAre("[wmiMethod_ATD_STS_UINT] Step3 Connection timed out."));
  EXPECT_THAT(wmi.TakeWaits(), IsEmpty());
  EXPECT_THAT(wmi.TakeCalls(),
              ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1", "CoUninitialize"));
  EXPECT_EQ(wmi.apartments_of_tasks(), 8);
  wmi.Unblock();
  EXPECT_EQ(wmi.References(), 0);
  EXPECT_EQ(wmiMethod_ATD_STS_UINT(L"m", {}, L"value"), 3u);
}

BOOL WINAPI NoSubmission(PTP_SIMPLE_CALLBACK, PVOID, PTP_CALLBACK_ENVIRON) { return FALSE; }

TEST_F(AbandonedInvokers, PoolWithoutRoomIsAFailedConnection) {
  const ImportPatch pool("TrySubmitThreadpoolCallback", NoSubmission);
  EXPECT_EQ(wmiMethod_ATD_STS(L"m", {}, L"value"), L"");
  EXPECT_THAT(event_log.TakeMessages(),
              ElementsAre("[wmiMethod_ATD_STS] Step3 Could not connect. Errorcode=0x8007000e"));
}

}  // namespace
}  // namespace vexa::test
