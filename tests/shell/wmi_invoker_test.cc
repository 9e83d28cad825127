// The three firmware method invokers: what they send, what they take and what they answer.
#include "tests/shell/wmi_invoker_fixture.h"

namespace vexa::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class WmiInvoker : public InvokerTest {};

TEST_P(WmiInvoker, SendsEverythingAndAnswersTheValue) {
  FakeWmi::Parameters received;
  wmi.firmware = [&received](const std::wstring& method, const FakeWmi::Parameters& in) {
    EXPECT_EQ(method, L"m");
    received = in;
    return WmiProperties{{L"o", Number(VT_I4, 42)}, {L"other", Number(VT_I4, 1)}};
  };
  EXPECT_EQ(Call(), "42");
  const std::string class_name = invoker_.class_name, path = invoker_.path, type = invoker_.cim_type;
  EXPECT_THAT(
      wmi.TakeCalls(),
      ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1",
                  "ConnectServer ROOT\\WMI null null null 0 null", "CoSetProxyBlanket services 10 0 null 3 3 null 0",
                  "ExecQuery WQL Select * from " + class_name + " 30", "Next -1 1", "GetObject " + class_name + " 0",
                  "GetMethod m 0", "SpawnInstance 0", "Put a 0 8 255 " + type, "Put b 0 8 -1 " + type, "Get __PATH 0",
                  "ExecMethod " + path + " m 0 in-parameters", "Get o 0", "CoUninitialize"));
  EXPECT_EQ(received, (FakeWmi::Parameters{{L"a", L"255"}, {L"b", L"-1"}}));
  EXPECT_THAT(Lines(), ElementsAre(invoker_.first_line, invoker_.second_line, std::string(invoker_.value) + "42",
                                   "5 " + Named("Do CoUninitialize()")));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  EXPECT_THAT(wmi.TakeWaits(), Each(5000));
  EXPECT_EQ(wmi.apartments_of_tasks(), 1);
}

TEST_P(WmiInvoker, WithoutParametersNothingIsPut) {
  EXPECT_EQ(Call({}), "42");
  EXPECT_THAT(wmi.TakeCalls(),
              testing::IsSupersetOf(
                  {std::string("SpawnInstance 0"), "ExecMethod " + std::string(invoker_.path) + " m 0 in-parameters"}));
  // A method that takes none has no definition of them to spawn from.
  wmi.methods_without_parameters = {L"m"};
  EXPECT_EQ(Call({}), "42");
  const std::vector<std::string> calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "SpawnInstance 0"), 0);
  EXPECT_EQ(CountOf(calls, "ExecMethod " + std::string(invoker_.path) + " m 0 null"), 1);
  Lines();
  EXPECT_EQ(Call({{L"a", L"1"}}), invoker_.failed);
  ExpectFailure(Named("Could not SpawnInstance. method=m, Errorcode=0x80041002"));
}

TEST_P(WmiInvoker, IntegersOfEveryWidthAreTheirLow32Bits) {
  const struct {
    VARTYPE type;
    int64_t bits;
    const char* value;
  } integers[] = {{VT_I1, -1, "255"},
                  {VT_UI1, 0xFF, "255"},
                  {VT_I2, -2, "65534"},
                  {VT_UI2, 0xFFFF, "65535"},
                  {VT_I4, 0x7FFFFFFF, "2147483647"},
                  {VT_INT, 7, "7"},
                  {VT_UI4, 0x10001, "65537"},
                  {VT_UINT, 0, "0"},
                  {VT_I8, 0x500000006, "6"},
                  {VT_UI8, 0x10000, "65536"}};
  for (const auto& integer : integers) {
    Answer(Number(integer.type, integer.bits));
    EXPECT_EQ(Call(), integer.value) << "type " << integer.type;
  }
  for (const VARTYPE type : {VT_I4, VT_UI4, VT_INT, VT_UINT, VT_I8}) {
    Answer(Number(type, -1));
    Lines();
    EXPECT_EQ(Call({}), invoker_.minus_one) << "type " << type;
    EXPECT_THAT(Lines(),
                ElementsAre(std::string(invoker_.value) + invoker_.minus_one, "5 " + Named("Do CoUninitialize()")));
  }
}

TEST_P(WmiInvoker, OnlyTheFirstInstanceIsUsed) {
  for (auto& [query, rows] : wmi.rows) {
    rows = {{{L"__PATH", Text(L"first")}}, {{L"__PATH", Text(L"second")}}};
  }
  EXPECT_EQ(Call({}), "42");
  const std::vector<std::string> calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "Next -1 1"), 1);
  EXPECT_EQ(CountOf(calls, "ExecMethod first m 0 in-parameters"), 1);
  wmi.rows.clear();
  Lines();
  EXPECT_EQ(Call({}), invoker_.failed);
  ExpectFailure(Named("Could not Get the Next Object. Errorcode=0x1"));
}

TEST_P(WmiInvoker, ParameterTextsThatAreNoNumberEndTheCall) {
  for (const wchar_t* text : {L"", L" ", L"abc", L"-", L"+-1", L"x1"}) {
    EXPECT_EQ(Call({{L"a", text}}), invoker_.failed);
    EXPECT_THAT(Lines(),
                ElementsAre("5 " + Named("exception: invalid stol argument"), "5 " + Named("Do CoUninitialize()")));
  }
  for (const wchar_t* text : {L"2147483648", L"-2147483649", L"4294967295", L"99999999999999999999999"}) {
    EXPECT_EQ(Call({{L"a", text}}), invoker_.failed);
    EXPECT_THAT(Lines(), ElementsAre("5 " + Named("exception: stol argument out of range"),
                                     "5 " + Named("Do CoUninitialize()")));
  }
  EXPECT_THAT(wmi.TakeCalls(), Not(testing::Contains(testing::StartsWith("Put"))));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  // The parameters before it have been put; the method is not called.
  EXPECT_EQ(Call({{L"a", L"255"}, {L"b", L"x"}, {L"c", L"1"}}), invoker_.failed);
  const std::vector<std::string> calls = wmi.TakeCalls();
  EXPECT_EQ(calls[calls.size() - 2], "Put a 0 8 255 " + std::string(invoker_.cim_type));
  // What the conversion takes goes out as the text it came as.
  EXPECT_EQ(Call({{L"a", L" +12abc"}, {L"b", L"-2147483648"}, {L"c", L"2147483647"}, {L"d", L"007"}}), "42");
  const std::string type = invoker_.cim_type;
  EXPECT_THAT(wmi.TakeCalls(), testing::IsSupersetOf({"Put a 0 8  +12abc " + type, "Put b 0 8 -2147483648 " + type,
                                                      "Put c 0 8 2147483647 " + type, "Put d 0 8 007 " + type}));
}

TEST_P(WmiInvoker, PercentSignsInTexts) {
  wmi.firmware = [](const std::wstring&, const FakeWmi::Parameters&) { return WmiProperties(); };
  EXPECT_EQ(invoker_.call(L"100%s%n", {{L"%d", L"1"}}, L"%x"), invoker_.failed);
  const std::vector<std::string> messages = event_log.TakeMessages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_THAT(messages[0], testing::AllOf(testing::HasSubstr("method=100%s%n, OutName=%x"),
                                          testing::EndsWith("Errorcode=0x80041002")));
  EXPECT_THAT(Lines(),
              ElementsAre(testing::HasSubstr("first=%d"), "5 " + messages[0], "5 " + Named("Do CoUninitialize()")));
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

INSTANTIATE_TEST_SUITE_P(Each, WmiInvoker, testing::ValuesIn(kInvokers),
                         [](const auto& info) { return std::string(info.param.name); });

using WmiInvokerCom = WmiTest;

TEST_F(WmiInvokerCom, FailureToEnterIsToldByOneInvokerOnly) {
  for (const DWORD result : {0x80010106u, 0x8007000Eu}) {
    wmi.script.Fail("CoInitializeEx", result);
    EXPECT_EQ(wmiMethod(L"m", {}, L"o", 1), L"");
    const std::string line = result == 0x80010106u
                                 ? "[wmiMethod] Step1 Failed to initialize COM library. Errorcode=0x80010106"
                                 : "[wmiMethod] Step1 Failed to initialize COM library. Errorcode=0x8007000e";
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
  const std::string line = "[wmiMethod] Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0";
  EXPECT_THAT(Lines(), ElementsAre("5 " + line));
  EXPECT_THAT(event_log.TakeMessages(), ElementsAre(line));
  EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoCreateInstance WbemLocator null 1"));

  wmi.firmware = [](const std::wstring&, const FakeWmi::Parameters&) {
    return WmiProperties{{L"device_status", Number(VT_I4, 65537)}};
  };
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  wmi.TakeCalls();
  EXPECT_EQ(wmiMethod(L"DSTS", {{L"Device_ID", L"1179735"}}, L"device_status", 0), L"65537");
  const std::vector<std::string> calls = wmi.TakeCalls();
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

}  // namespace
}  // namespace vexa::test
