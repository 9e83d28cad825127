// The three firmware method invokers as one table: what they send, what they take and answer, and every step that
// fails, hands out nothing, or does not come back.
#include "tests/support/wmi_test.h"
#include "wmi/bounded_task.h"
#include "wmi/method_invoker.h"

namespace vexa::test {
namespace {

struct Invoker {
  std::string name;
  std::string (*call)(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name);
  std::string failed;      // answer when a step failed
  std::string minus_one;   // answer to 0xFFFFFFFF
  std::string class_name;  // of the query and the class
  std::string path;        // of its instance
  std::string cim_type;    // of the in-parameters
  std::string parameter;   // line of a parameter of method "m", up to its name
  std::string number;      // between the parameter's name and its number
  std::string no_output;   // of out-parameter "o", up to the HRESULT
  std::string value;       // line, up to the value
  std::string query_timeout;
};

// clang-format off: one text a row
const Invoker kInvokers[] = {
    {"wmiMethod", [](const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name) {
       return Narrow(wmiMethod(method, params, out_name, 1).c_str());
     }, "", "-1", "VexaObxWmi_WMNB", "VexaObxWmi_WMNB.InstanceName=\"100%s\"", "19",
     "Create the values for the in parameters method=m first=", " second=0x",
     "Could not get output. method=m, OutName=o, Errorcode=0x", "varReturnValue=", "Step5 Query timed out."},
    {"wmiMethod_ATD_STS", [](const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name) {
       return Narrow(wmiMethod_ATD_STS(method, params, out_name).c_str());
     }, "", "4294967295", "ATD_STS", "ATD_STS.InstanceName=\"EC0\"", "17",
     "Create the values for the in parameters. method=m, first=", ", second=0x",
     "Could not get output method=m, OutName=o. Errorcode=0x", "varReturnValue =", "Step5 Query timed out."},
    {"wmiMethod_ATD_STS_UINT", [](const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name) {
       return std::to_string(wmiMethod_ATD_STS_UINT(method, params, out_name));
     }, "0", "4294967295", "ATD_STS", "ATD_STS.InstanceName=\"EC0\"", "17",
     "Create the values for the in parameters. method=m, first=", ", second=0x",
     "Could not get output. method=m, OutName=o, Errorcode=0x", "varReturnValue=", "Step6 Query timed out."},
};
// clang-format on

class WmiInvoker : public PerRow<WmiTest, Invoker> {
 protected:
  WmiInvoker() { Answer(Number(VT_I4, 42)); }

  void Answer(const WmiValue& value) {
    wmi.firmware = [value](const std::wstring&, const FakeWmi::Parameters&) { return WmiProperties{{L"o", value}}; };
  }
  std::string Call(const WmiParamMap& params) { return row_.call(L"m", params, L"o"); }
  std::string Call() { return Call({{L"b", L"-1"}, {L"a", L"255"}}); }
  // "5 [name] text" of each.
  Strings LinesOf(const Strings& texts) const {
    Strings lines;
    for (const std::string& text : texts) lines.push_back("5 [" + row_.name + "] " + text);
    return lines;
  }
  Strings ParameterLines(size_t count) const {
    return FirstOf({row_.parameter + "a" + row_.number + "ff", row_.parameter + "b" + row_.number + "ffffffff"}, count);
  }
  // A call that fails with this line, writes it to the event log as well, and gives everything back.
  void ExpectFailure(const std::string& line, const WmiParamMap& params = {}, size_t parameters_told = 0) {
    SCOPED_TRACE(line);
    EXPECT_EQ(Call(params), row_.failed);
    wmi.Unblock();
    Strings texts = ParameterLines(parameters_told);
    texts.insert(texts.end(), {line, "Do CoUninitialize()"});
    EXPECT_EQ(Lines(), LinesOf(texts));
    EXPECT_THAT(event_log.TakeMessages(), ElementsAre("[" + row_.name + "] " + line));
    EXPECT_EQ(wmi.References(), 0);
    EXPECT_EQ(AutomationLedger::Live(), 0);
  }
};

TEST_P(WmiInvoker, SendsEverythingAndAnswersTheValue) {
  FakeWmi::Parameters received;
  wmi.firmware = [&received](const std::wstring& method, const FakeWmi::Parameters& in) {
    EXPECT_EQ(method, L"m");
    received = in;
    return WmiProperties{{L"o", Number(VT_I4, 42)}, {L"other", Number(VT_I4, 1)}};
  };
  EXPECT_EQ(Call(), "42");
  EXPECT_THAT(
      wmi.TakeCalls(),
      ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1",
                  "ConnectServer ROOT\\WMI null null null 0 null", "CoSetProxyBlanket services 10 0 null 3 3 null 0",
                  "ExecQuery WQL Select * from " + row_.class_name + " 30", "Next -1 1",
                  "GetObject " + row_.class_name + " 0", "GetMethod m 0", "SpawnInstance 0",
                  "Put a 0 8 255 " + row_.cim_type, "Put b 0 8 -1 " + row_.cim_type, "Get __PATH 0",
                  "ExecMethod " + row_.path + " m 0 in-parameters", "Get o 0", "CoUninitialize"));
  EXPECT_EQ(received, (FakeWmi::Parameters{{L"a", L"255"}, {L"b", L"-1"}}));
  Strings texts = ParameterLines(2);
  texts.insert(texts.end(), {row_.value + "42", "Do CoUninitialize()"});
  EXPECT_EQ(Lines(), LinesOf(texts));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  EXPECT_THAT(wmi.TakeWaits(), Each(5000));
  EXPECT_EQ(wmi.apartments_of_tasks(), 1);
}

TEST_P(WmiInvoker, WithoutParametersNothingIsPut) {
  EXPECT_EQ(Call({}), "42");
  EXPECT_THAT(wmi.TakeCalls(),
              IsSupersetOf({std::string("SpawnInstance 0"), "ExecMethod " + row_.path + " m 0 in-parameters"}));
  // A method that takes none has no definition of them to spawn from.
  wmi.methods_without_parameters = {L"m"};
  EXPECT_EQ(Call({}), "42");
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "SpawnInstance 0"), 0);
  EXPECT_EQ(CountOf(calls, "ExecMethod " + row_.path + " m 0 null"), 1);
  Lines();
  ExpectFailure("Could not SpawnInstance. method=m, Errorcode=0x80041002", {{L"a", L"1"}});
}

TEST_P(WmiInvoker, IntegersOfEveryWidthAreTheirLow32Bits) {
  const std::string ones = row_.minus_one;
  // clang-format off: side by side
  const struct {
    VARTYPE type;
    int64_t bits;
    std::string value;
  } integers[] = {
      {VT_I1, -1, "255"}, {VT_UI1, 0xFF, "255"}, {VT_I2, -2, "65534"}, {VT_UI2, 0xFFFF, "65535"},
      {VT_I4, 0x7FFFFFFF, "2147483647"}, {VT_INT, 7, "7"}, {VT_UI4, 0x10001, "65537"}, {VT_UINT, 0, "0"},
      {VT_I8, 0x500000006, "6"}, {VT_UI8, 0x10000, "65536"}, {VT_I4, -1, ones}, {VT_UI4, -1, ones}, {VT_I8, -1, ones}};
  // clang-format on
  for (const auto& integer : integers) {
    Answer(Number(integer.type, integer.bits));
    EXPECT_EQ(Call({}), integer.value) << "type " << integer.type;
    EXPECT_EQ(Lines(), LinesOf({row_.value + integer.value, "Do CoUninitialize()"}));
  }
}

TEST_P(WmiInvoker, AbsentOutputAndEveryOtherTypeIsNoOutput) {
  WmiValue date = Real64(45000.5);
  date.type = VT_DATE;
  for (const WmiValue& value : {Number(VT_EMPTY, 0), Number(VT_NULL, 0), Text(L"7"), Text(L""), Number(VT_BOOL, -1),
                                Real32(7), Real64(7), date, Number(VT_CY, 70000), Number(VT_ERROR, 7),
                                Number(VT_UNKNOWN, 0), Number(VT_DISPATCH, 0), Array(VT_UI1, {Number(VT_UI1, 7)}),
                                Array(VT_I4, {}), Texts({L"7"}), Array(VT_VARIANT, {Number(VT_I4, 7), Text(L"7")})}) {
    SCOPED_TRACE(value.type);
    Answer(value);
    ExpectFailure(row_.no_output + "80041005");
  }
  wmi.firmware = [](const std::wstring&, const FakeWmi::Parameters&) { return WmiProperties(); };
  ExpectFailure(row_.no_output + "80041002");
}

TEST_P(WmiInvoker, OnlyTheFirstInstanceIsUsed) {
  for (auto& [query, rows] : wmi.rows) rows = {{{L"__PATH", Text(L"first")}}, {{L"__PATH", Text(L"second")}}};
  EXPECT_EQ(Call({}), "42");
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "Next -1 1"), 1);
  EXPECT_EQ(CountOf(calls, "ExecMethod first m 0 in-parameters"), 1);
  Lines();
  for (auto& [query, rows] : wmi.rows) rows = {{{L"__PATH", Number(VT_NULL, 0)}}};
  ExpectFailure("Could not Get method retrieves. method=m, Errorcode=0x80041005");
  wmi.rows.clear();
  ExpectFailure("Could not Get the Next Object. Errorcode=0x1");
}

TEST_P(WmiInvoker, ParameterTextsThatAreNoNumberEndTheCall) {
  for (const wchar_t* text : {L"", L" ", L"abc", L"-", L"+-1", L"x1"}) {
    EXPECT_EQ(Call({{L"a", text}}), row_.failed);
    EXPECT_EQ(Lines(), LinesOf({"exception: invalid stol argument", "Do CoUninitialize()"}));
  }
  for (const wchar_t* text : {L"2147483648", L"-2147483649", L"4294967295", L"99999999999999999999999"}) {
    EXPECT_EQ(Call({{L"a", text}}), row_.failed);
    EXPECT_EQ(Lines(), LinesOf({"exception: stol argument out of range", "Do CoUninitialize()"}));
  }
  EXPECT_THAT(wmi.TakeCalls(), Not(Contains(StartsWith("Put"))));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  // The parameters before it have been put; the method is not called.
  EXPECT_EQ(Call({{L"a", L"255"}, {L"b", L"x"}, {L"c", L"1"}}), row_.failed);
  EXPECT_EQ(LastOf(wmi.TakeCalls(), 2)[0], "Put a 0 8 255 " + row_.cim_type);
  // What the conversion takes goes out as the text it came as.
  EXPECT_EQ(Call({{L"a", L" +12abc"}, {L"b", L"-2147483648"}, {L"c", L"2147483647"}, {L"d", L"007"}}), "42");
  EXPECT_THAT(wmi.TakeCalls(),
              IsSupersetOf({"Put a 0 8  +12abc " + row_.cim_type, "Put b 0 8 -2147483648 " + row_.cim_type,
                            "Put c 0 8 2147483647 " + row_.cim_type, "Put d 0 8 007 " + row_.cim_type}));
}

TEST_P(WmiInvoker, PercentSignsInTexts) {
  wmi.firmware = [](const std::wstring&, const FakeWmi::Parameters&) { return WmiProperties(); };
  EXPECT_EQ(row_.call(L"100%s%n", {{L"%d", L"1"}}, L"%x"), row_.failed);
  const Strings messages = event_log.TakeMessages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_THAT(messages[0], AllOf(HasSubstr("method=100%s%n, OutName=%x"), EndsWith("Errorcode=0x80041002")));
  EXPECT_THAT(Lines(),
              ElementsAre(HasSubstr("first=%d"), "5 " + messages[0], "5 [" + row_.name + "] Do CoUninitialize()"));
}

// A thread that has COM already: the second entering succeeds with S_FALSE and is undone as well.
TEST_P(WmiInvoker, ApartmentEnteredBefore) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  wmi.script.Fail("CoInitializeEx", S_FALSE, 1);
  wmi.TakeCalls();
  EXPECT_EQ(Call(), "42");
  EXPECT_EQ(CountOf(wmi.TakeCalls(), "CoUninitialize"), 1);
  CoUninitialize();
}

// A success that hands out nothing fails the step all the same.
TEST_P(WmiInvoker, EachStepFailingOrHandingOutNothing) {
  const struct {
    const char* function;
    int nth;
    std::string line;  // up to the HRESULT
    size_t parameters_told;
    Strings successes;  // that fail the step too
  } steps[] = {
      {"CoCreateInstance", 1, "Step2 Failed to create IWbemLocator object. Errorcode=0x", 0, {}},
      {"ConnectServer", 1, "Step3 Could not connect. Errorcode=0x", 0, {"0"}},
      {"CoSetProxyBlanket", 1, "Step4 Could not set proxy blanket. Errorcode=0x", 0, {}},
      {"ExecQuery", 1, "Step5 Query failed. Errorcode=0x", 0, {"0"}},
      {"Next", 1, "Could not Get the Next Object. Errorcode=0x", 0, {"1", "40004"}},
      {"GetObject", 1, "Could not GetObject. Errorcode=0x", 0, {"0"}},
      {"GetMethod", 1, "Could not GetMethod. method=m, Errorcode=0x", 0, {}},
      {"SpawnInstance", 1, "Could not SpawnInstance. method=m, Errorcode=0x", 0, {"0"}},
      {"Put", 1, "Could not put parameters. method=m, ID=0xff, Errorcode=0x", 1, {}},
      {"Put", 2, "Could not put parameters. method=m, ID=0xffffffff, Errorcode=0x", 2, {}},
      {"Get", 1, "Could not Get method retrieves. method=m, Errorcode=0x", 2, {}},
      {"ExecMethod", 1, "Could not execute method. method=m, Errorcode=0x", 2, {"0"}},
      {"Get", 2, row_.no_output, 2, {}},
  };
  for (const auto& step : steps) {
    Strings results = step.successes;
    results.push_back("80041003");
    for (const std::string& result : results) {
      wmi.script.Fail(step.function, static_cast<DWORD>(std::stoul(result, nullptr, 16)), step.nth);
      ExpectFailure(step.line + result, {{L"b", L"-1"}, {L"a", L"255"}}, step.parameters_told);
      // Nothing follows but the clean-up.
      EXPECT_THAT(LastOf(wmi.TakeCalls(), 2), ElementsAre(StartsWith(step.function), "CoUninitialize"));
    }
  }
}

TEST_P(WmiInvoker, TimeOuts) {
  wmi.Block("ConnectServer");
  EXPECT_EQ(Call(), row_.failed);
  EXPECT_EQ(CountTasks().abandoned, 1);
  EXPECT_GT(wmi.References(), 0);
  EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1",
                                           "ConnectServer ROOT\\WMI null null null 0 null", "CoUninitialize"));
  wmi.Unblock();
  EXPECT_EQ(wmi.References(), 0);
  Lines();
  event_log.TakeMessages();
  wmi.Block("ConnectServer");
  ExpectFailure("Step3 Connection timed out.");
  wmi.TakeCalls();
  wmi.Block("ExecQuery");
  ExpectFailure(row_.query_timeout);
  EXPECT_EQ(wmi.TakeCalls().size(), 6u);  // up to the query, and the clean-up
  EXPECT_THAT(wmi.TakeWaits(), AllOf(Not(IsEmpty()), Each(5000)));
  // A hanging call that fails at last gives back as much.
  wmi.script.Fail("ConnectServer", 0x80041003, 1);
  wmi.Block("ConnectServer");
  ExpectFailure("Step3 Connection timed out.");
  EXPECT_EQ(Call(), "42");
}

INSTANTIATE_TEST_SUITE_P(Each, WmiInvoker, testing::ValuesIn(kInvokers), NameOfRow());

using WmiInvokerCom = WmiTest;

TEST_F(WmiInvokerCom, FailureToEnterIsToldByOneInvokerOnly) {
  for (const auto& [result, text] : {std::pair{0x80010106u, "0x80010106"}, {0x8007000Eu, "0x8007000e"}}) {
    wmi.script.Fail("CoInitializeEx", result);
    EXPECT_EQ(wmiMethod(L"m", {}, L"o", 1), L"");
    const std::string line = std::string("[wmiMethod] Step1 Failed to initialize COM library. Errorcode=") + text;
    EXPECT_THAT(Lines(), ElementsAre("5 " + line));
    EXPECT_THAT(event_log.TakeMessages(), ElementsAre(line));
    EXPECT_EQ(wmiMethod_ATD_STS(L"m", {}, L"o"), L"");
    EXPECT_EQ(wmiMethod_ATD_STS_UINT(L"m", {}, L"o"), 0u);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
    EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoInitializeEx 0", "CoInitializeEx 0", "CoInitializeEx 0"));
  }
}

TEST_F(WmiInvokerCom, WithoutTheFlagTheCallersComIsUsed) {
  EXPECT_EQ(wmiMethod(L"m", {}, L"o", 0), L"");
  EXPECT_THAT(event_log.TakeMessages(),
              ElementsAre("[wmiMethod] Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0"));
  EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoCreateInstance WbemLocator null 1"));
  Lines();
  AnswerRequests([](const std::string&) { return WmiProperties{{L"device_status", Number(VT_I4, 65537)}}; });
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  wmi.TakeCalls();
  EXPECT_EQ(wmiMethod(L"DSTS", {{L"Device_ID", L"1179735"}}, L"device_status", 0), L"65537");
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(calls.front(), "CoCreateInstance WbemLocator null 1");
  EXPECT_EQ(calls.back(), "Get device_status 0");
  EXPECT_THAT(
      Lines(),
      ElementsAre("5 [wmiMethod] Create the values for the in parameters method=DSTS first=Device_ID second=0x120057",
                  "5 [wmiMethod] varReturnValue=65537"));
  // Any other flag than zero asks for COM.
  EXPECT_EQ(wmiMethod(L"DSTS", {}, L"device_status", 0x80000000), L"65537");
  EXPECT_EQ(wmi.TakeCalls().front(), "CoInitializeEx 0");
  CoUninitialize();
}

BOOL WINAPI NoSubmission(PTP_SIMPLE_CALLBACK, PVOID, PTP_CALLBACK_ENVIRON) { return FALSE; }

TEST_F(WmiInvokerCom, PoolWithoutRoomIsAFailedConnection) {
  const ImportPatch pool("TrySubmitThreadpoolCallback", NoSubmission);
  EXPECT_EQ(wmiMethod_ATD_STS(L"m", {}, L"value"), L"");
  EXPECT_THAT(event_log.TakeMessages(),
              ElementsAre("[wmiMethod_ATD_STS] Step3 Could not connect. Errorcode=0x8007000e"));
}

}  // namespace
}  // namespace vexa::test
