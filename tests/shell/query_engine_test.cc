// The nine query variants: what they send, how they join rows, and the line of every step that fails.
#include "wmi/query_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/wmi_test.h"
#include "wmi/bounded_task.h"

namespace vexa::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr wchar_t kQuery[] = L"select * from X where Name like '%s%%'";
constexpr wchar_t kDiskQuery[] = L"Select * from Win32_PerfFormattedData_PerfDisk_PhysicalDisk";

// A variant, called with leftovers in what it fills; its answers as one text.
struct Variant {
  const char* name;
  std::string (*call)(uint32_t com_flag);
  const char* space;
  const wchar_t* query;
  const char* property;  // that it reads first of a row; "" for none
  WmiProperties row;
  std::string answer;  // to two of these rows
  std::string none;    // without any row
};

std::string Joined(const std::wstring& text) { return Narrow(text.c_str()); }

const Variant kVariants[] = {
    {"ReadWMIEnumNum",
     [](uint32_t flag) { return std::to_string(ReadWMIEnumNum(L"ROOT\\WMI", kQuery, flag)); },
     "ROOT\\WMI",
     kQuery,
     "",
     {},
     "2",
     "0"},
    {"ReadWMIProp",
     [](uint32_t flag) {
       uint32_t value = 99;
       const int32_t result = ReadWMIProp(L"ROOT\\CIMV2", kQuery, L"P", value, flag);
       return std::to_string(result) + " " + std::to_string(value);
     },
     "ROOT\\CIMV2",
     kQuery,
     "P",
     {{L"P", Number(VT_I4, 5)}},
     "0 5",
     "-1 0"},
    {"ReadWMIPropStr",
     [](uint32_t flag) {
       std::wstring text = L"left";
       ReadWMIPropStr(text, L"root\\Microsoft\\Windows\\Storage", kQuery, L"P", flag);
       return Joined(text);
     },
     "root\\Microsoft\\Windows\\Storage",
     kQuery,
     "P",
     {{L"P", Text(L"v")}},
     "v;v",
     ""},
    {"ReadWMIPropStr2",
     [](uint32_t flag) {
       std::wstring text = L"left";
       uint32_t rows = 99, values = 99;
       ReadWMIPropStr2(text, L"ROOT\\CIMV2", kQuery, L"P", rows, values, flag);
       return Joined(text);
     },
     "ROOT\\CIMV2",
     kQuery,
     "P",
     {{L"P", Text(L"v")}},
     "v,v",
     ""},
    {"ReadWMIPropStrWireless",
     [](uint32_t flag) {
       std::wstring text = L"left";
       ReadWMIPropStrWireless(text, L"ROOT\\CIMV2", kQuery, L"P", L"card", flag);
       return Joined(text);
     },
     "ROOT\\CIMV2",
     kQuery,
     "Name",
     {{L"Name", Text(L"card")}, {L"P", Text(L"7")}},
     "7;7",
     "0"},
    {"ReadWMIPropStrDisplay",
     [](uint32_t flag) {
       std::wstring text = L"left";
       ReadWMIPropStrDisplay(text, L"ROOT\\WMI", kQuery, flag);
       return Joined(text);
     },
     "ROOT\\WMI",
     kQuery,
     "InstanceName",
     {{L"InstanceName", Text(L"D_0")}, {L"VideoOutputTechnology", Number(VT_I4, 5)}},
     "D_0,vot=5;D_0,vot=5",
     ""},
    {"ReadWMIPropStrGPUUsage",
     [](uint32_t flag) {
       std::wstring text = L"left";
       ReadWMIPropStrGPUUsage(text, L"ROOT\\CIMV2", kQuery, flag);
       return Joined(text);
     },
     "ROOT\\CIMV2",
     kQuery,
     "UtilizationPercentage",
     {{L"UtilizationPercentage", Text(L"12")}, {L"Name", Text(L"pid_1")}},
     "12,pid_1;12,pid_1",
     "0"},
    {"ReadWMIPropStrSDCardSize",
     [](uint32_t flag) {
       std::wstring text = L"left";
       ReadWMIPropStrSDCardSize(text, L"root\\Cimv2", kQuery, flag);
       return Joined(text);
     },
     "root\\Cimv2",
     kQuery,
     "Size",
     {{L"Size", Text(L"31914983424")}, {L"Caption", Text(L"SD")}},
     "31914983424,SD;31914983424,SD",
     ""},
    {"ReadWMIPropNumDiskInRW",
     [](uint32_t flag) { return std::to_string(ReadWMIPropNumDiskInRW(flag)); },
     "ROOT\\CIMV2",
     kDiskQuery,
     "Name",
     {{L"Name", Text(L"0 C:")}, {L"PercentDiskTime", Text(L"7")}},
     "7",
     "0"},
};

class QueryVariant : public WmiTest, public testing::WithParamInterface<Variant> {
 protected:
  // A "0" that stands for no row does not stand for a failure: that text stays empty.
  std::string Failed() const {
    const std::string name = variant_.name;
    return name == "ReadWMIPropStrWireless" || name == "ReadWMIPropStrGPUUsage" ? "" : variant_.none;
  }

  QueryVariant() { wmi.rows[variant_.query] = {variant_.row, variant_.row}; }

  std::string Named(const std::string& text) const { return "[" + std::string(variant_.name) + "] " + text; }
  // A call with the COM flag that failed with this line and wrote it to the event log as well.
  void ExpectFailure(const std::string& line) {
    EXPECT_THAT(Lines(), ElementsAre("5 " + line, "5 " + Named("Step7 Do CoUninitialize()")));
    EXPECT_THAT(event_log.TakeMessages(), ElementsAre(line));
    EXPECT_EQ(wmi.References(), 0);
    EXPECT_EQ(AutomationLedger::Live(), 0);
  }

  const Variant& variant_ = GetParam();
};

TEST_P(QueryVariant, SendsEverythingAndReadsEveryRow) {
  EXPECT_EQ(variant_.call(1), variant_.answer);
  std::vector<std::string> calls = wmi.TakeCalls();
  const std::string property = "Get " + std::string(variant_.property) + " 0";
  EXPECT_EQ(CountOf(calls, property), variant_.property[0] == '\0' ? 0 : 2);
  std::erase_if(calls, [](const std::string& call) { return call.starts_with("Get "); });
  EXPECT_THAT(calls, ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1",
                                 "ConnectServer " + std::string(variant_.space) + " null null null 0 null",
                                 "CoSetProxyBlanket services 10 0 null 3 3 null 0",
                                 "ExecQuery WQL " + Narrow(variant_.query) + " 30", "Next -1 1", "Next -1 1",
                                 "Next -1 1", "CoUninitialize"));
  EXPECT_THAT(Lines(), ElementsAre("5 " + Named("Step7 Do CoUninitialize()")));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  EXPECT_THAT(wmi.TakeWaits(), Each(5000));
  EXPECT_EQ(wmi.apartments_of_tasks(), 1);
}

TEST_P(QueryVariant, CallersCom) {
  // Without COM on the thread.
  EXPECT_EQ(variant_.call(0), Failed());
  EXPECT_THAT(Lines(), ElementsAre("5 " + Named("Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0")));
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  wmi.TakeCalls();
  EXPECT_EQ(variant_.call(0), variant_.answer);
  const std::vector<std::string> calls = wmi.TakeCalls();
  EXPECT_EQ(calls.front(), "CoCreateInstance WbemLocator null 1");
  EXPECT_EQ(CountOf(calls, "CoUninitialize"), 0);
  EXPECT_THAT(Lines(), IsEmpty());
  CoUninitialize();
}

TEST_P(QueryVariant, NoRowsAndRowsWithoutTheProperties) {
  wmi.rows.clear();
  EXPECT_EQ(variant_.call(1), variant_.none);
  if (variant_.property[0] != '\0') {
    wmi.rows[variant_.query] = {{{L"Other", Text(L"1")}}, {}};
    EXPECT_EQ(variant_.call(1), variant_.none);
  }
  EXPECT_THAT(Lines(), Each("5 " + Named("Step7 Do CoUninitialize()")));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
}

TEST_P(QueryVariant, EachStepFailingInTurn) {
  const struct {
    const char* function;
    DWORD result;
    std::string line;
  } steps[] = {
      {"CoCreateInstance", 0x80040154, "Step2 Failed to create IWbemLocator object. Errorcode=0x80040154"},
      {"ConnectServer", 0x8004100E, "Step3 Could not connect. Errorcode=0x8004100e"},
      {"ConnectServer", 0, "Step3 Could not connect. Errorcode=0x0"},
      {"CoSetProxyBlanket", 0x80070005, "Step4 Could not set proxy blanket. Errorcode=0x80070005"},
      {"ExecQuery", 0x80041017, "Step5 Query failed.  Errorcode=0x80041017"},
      {"ExecQuery", 0, "Step5 Query failed.  Errorcode=0x0"},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(step.function);
    wmi.script.Fail(step.function, step.result, 1);
    EXPECT_EQ(variant_.call(1), Failed());
    ExpectFailure(Named(step.line));
    const std::vector<std::string> calls = wmi.TakeCalls();
    EXPECT_THAT(calls[calls.size() - 2], testing::StartsWith(step.function));
  }
  wmi.script.Fail("CoInitializeEx", 0x80010106, 1);
  EXPECT_EQ(variant_.call(1), Failed());
  const std::string line = Named("Step1 Failed to initialize COM library. Errorcode=0x80010106");
  EXPECT_THAT(Lines(), ElementsAre("5 " + line));
  EXPECT_THAT(event_log.TakeMessages(), ElementsAre(line));
  EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoInitializeEx 0"));
}

// What was read up to then does not count.
TEST_P(QueryVariant, WalkFailingInTheMiddle) {
  for (const int nth : {1, 2, 3}) {
    wmi.script.Fail("Next", 0x800706BA, nth);
    EXPECT_EQ(variant_.call(1), Failed()) << nth;
    wmi.TakeCalls();
  }
  // A success code without a row is the end.
  wmi.script.Fail("Next", 0x40004, 3);
  EXPECT_EQ(variant_.call(1), variant_.answer);
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
}

TEST_P(QueryVariant, TimeOuts) {
  wmi.Block("ConnectServer");
  EXPECT_EQ(variant_.call(1), Failed());
  wmi.Unblock();
  ExpectFailure(Named("Step3 Connection timed out."));
  wmi.Block("ExecQuery");
  EXPECT_EQ(variant_.call(1), Failed());
  wmi.Unblock();
  ExpectFailure(Named("Step5 Query timed out."));
  EXPECT_THAT(wmi.TakeWaits(), testing::AllOf(Not(IsEmpty()), Each(5000)));
}

TEST_P(QueryVariant, EveryCallFailingAloneAndFromThereOn) {
  for (int i = 0; i < 20; ++i) {
    wmi.TakeCalls();
    wmi.script.FailOnly(i, 0x80070005);
    (void)variant_.call(1);
    if (wmi.TakeCalls().size() <= static_cast<size_t>(i)) break;
    wmi.script.FailFrom(i, 0x80070005);
    (void)variant_.call(1);
    EXPECT_EQ(wmi.References(), 0) << i;
    EXPECT_EQ(AutomationLedger::Live(), 0) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Each, QueryVariant, testing::ValuesIn(kVariants),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vexa::test
