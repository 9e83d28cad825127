// The nine query variants: what they send, how they join rows, and the line of every step that fails.
#include "wmi/query_engine.h"

#include "tests/support/wmi_test.h"
#include "wmi/bounded_task.h"

namespace vexa::test {
namespace {

constexpr wchar_t kQuery[] = L"select * from X where Name like '%s%%'";
constexpr wchar_t kDiskQuery[] = L"Select * from Win32_PerfFormattedData_PerfDisk_PhysicalDisk";

// A variant, called with leftovers in what it fills; its answers as one text.
struct Variant {
  const char* name;
  std::function<std::string(uint32_t com_flag)> call;
  std::string space;
  const wchar_t* query;
  std::string property;  // that it reads first of a row; "" for none
  WmiProperties row;
  std::string answer;         // to two of these rows
  std::string none;           // without any row
  std::string failed = none;  // when a step failed
};

// A call that fills a text by the rest of the arguments.
template <typename Read>
auto Filling(Read read) {
  return [read](uint32_t com_flag) {
    std::wstring text = L"left";
    read(text, com_flag);
    return Narrow(text.c_str());
  };
}

// clang-format off: one variant a row
const Variant kVariants[] = {
    {"ReadWMIEnumNum", [](uint32_t flag) { return std::to_string(ReadWMIEnumNum(L"ROOT\\WMI", kQuery, flag)); },
     "ROOT\\WMI", kQuery, "", {}, "2", "0"},
    {"ReadWMIProp", [](uint32_t flag) {
       uint32_t value = 99;
       const int32_t result = ReadWMIProp(L"ROOT\\CIMV2", kQuery, L"P", value, flag);
       return std::to_string(result) + " " + std::to_string(value);
     }, "ROOT\\CIMV2", kQuery, "P", {{L"P", Number(VT_I4, 5)}}, "0 5", "-1 0"},
    {"ReadWMIPropStr", Filling([](std::wstring& text, uint32_t flag) {
       ReadWMIPropStr(text, L"root\\Microsoft\\Windows\\Storage", kQuery, L"P", flag);
     }), "root\\Microsoft\\Windows\\Storage", kQuery, "P", {{L"P", Text(L"v")}}, "v;v", ""},
    {"ReadWMIPropStr2", Filling([](std::wstring& text, uint32_t flag) {
       uint32_t rows = 99, values = 99;
       ReadWMIPropStr2(text, L"ROOT\\CIMV2", kQuery, L"P", rows, values, flag);
     }), "ROOT\\CIMV2", kQuery, "P", {{L"P", Text(L"v")}}, "v,v", ""},
    {"ReadWMIPropStrWireless", Filling([](std::wstring& text, uint32_t flag) {
       ReadWMIPropStrWireless(text, L"ROOT\\CIMV2", kQuery, L"P", L"card", flag);
     }), "ROOT\\CIMV2", kQuery, "Name", {{L"Name", Text(L"card")}, {L"P", Text(L"7")}}, "7;7", "0", ""},
    {"ReadWMIPropStrDisplay", Filling([](std::wstring& text, uint32_t flag) {
       ReadWMIPropStrDisplay(text, L"ROOT\\WMI", kQuery, flag);
     }), "ROOT\\WMI", kQuery, "InstanceName",
     {{L"InstanceName", Text(L"D_0")}, {L"VideoOutputTechnology", Number(VT_I4, 5)}}, "D_0,vot=5;D_0,vot=5", ""},
    {"ReadWMIPropStrGPUUsage", Filling([](std::wstring& text, uint32_t flag) {
       ReadWMIPropStrGPUUsage(text, L"ROOT\\CIMV2", kQuery, flag);
     }), "ROOT\\CIMV2", kQuery, "UtilizationPercentage",
     {{L"UtilizationPercentage", Text(L"12")}, {L"Name", Text(L"pid_1")}}, "12,pid_1;12,pid_1", "0", ""},
    {"ReadWMIPropStrSDCardSize", Filling([](std::wstring& text, uint32_t flag) {
       ReadWMIPropStrSDCardSize(text, L"root\\Cimv2", kQuery, flag);
     }), "root\\Cimv2", kQuery, "Size", {{L"Size", Text(L"31914983424")}, {L"Caption", Text(L"SD")}},
     "31914983424,SD;31914983424,SD", ""},
    {"ReadWMIPropNumDiskInRW", [](uint32_t flag) { return std::to_string(ReadWMIPropNumDiskInRW(flag)); },
     "ROOT\\CIMV2", kDiskQuery, "Name", {{L"Name", Text(L"0 C:")}, {L"PercentDiskTime", Text(L"7")}}, "7", "0"},
};
// clang-format on

class QueryVariant : public PerRow<WmiTest, Variant> {
 protected:
  QueryVariant() { wmi.rows[row_.query] = {row_.row, row_.row}; }

  std::string Named(const std::string& text) const { return "[" + std::string(row_.name) + "] " + text; }
  const std::string left_ = "5 " + Named("Step7 Do CoUninitialize()");
  // A call that fails with this line and writes it to the event log as well.
  void ExpectFailure(const std::string& step, bool leaves = true, uint32_t com_flag = 1) {
    SCOPED_TRACE(step);
    EXPECT_EQ(row_.call(com_flag), row_.failed);
    wmi.Unblock();
    EXPECT_EQ(Lines(), (leaves ? Strings{"5 " + Named(step), left_} : Strings{"5 " + Named(step)}));
    EXPECT_THAT(event_log.TakeMessages(), ElementsAre(Named(step)));
    EXPECT_EQ(wmi.References(), 0);
    EXPECT_EQ(AutomationLedger::Live(), 0);
  }
};

TEST_P(QueryVariant, SendsEverythingAndReadsEveryRow) {
  EXPECT_EQ(row_.call(1), row_.answer);
  Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "Get " + row_.property + " 0"), row_.property.empty() ? 0 : 2);
  std::erase_if(calls, [](const std::string& call) { return call.starts_with("Get "); });
  EXPECT_THAT(calls, ElementsAre("CoInitializeEx 0", "CoCreateInstance WbemLocator null 1",
                                 "ConnectServer " + row_.space + " null null null 0 null",
                                 "CoSetProxyBlanket services 10 0 null 3 3 null 0",
                                 "ExecQuery WQL " + Narrow(row_.query) + " 30", "Next -1 1", "Next -1 1", "Next -1 1",
                                 "CoUninitialize"));
  EXPECT_THAT(Lines(), ElementsAre(left_));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
  EXPECT_THAT(wmi.TakeWaits(), Each(5000));
  EXPECT_EQ(wmi.apartments_of_tasks(), 1);
}

TEST_P(QueryVariant, CallersCom) {
  // Without COM on the thread.
  ExpectFailure("Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0", false, 0);
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  wmi.TakeCalls();
  EXPECT_EQ(row_.call(0), row_.answer);
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(calls.front(), "CoCreateInstance WbemLocator null 1");
  EXPECT_EQ(CountOf(calls, "CoUninitialize"), 0);
  EXPECT_THAT(Lines(), IsEmpty());
  CoUninitialize();
}

TEST_P(QueryVariant, NoRowsAndRowsWithoutTheProperties) {
  wmi.rows.clear();
  EXPECT_EQ(row_.call(1), row_.none);
  if (!row_.property.empty()) {
    wmi.rows[row_.query] = {{{L"Other", Text(L"1")}}, {}};
    EXPECT_EQ(row_.call(1), row_.none);
  }
  EXPECT_THAT(Lines(), Each(left_));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
}

TEST_P(QueryVariant, EachStepFailingInTurn) {
  const struct {
    const char* function;
    DWORD result;
    const char* line;
  } steps[] = {
      {"CoCreateInstance", 0x80040154, "Step2 Failed to create IWbemLocator object. Errorcode=0x80040154"},
      {"ConnectServer", 0x8004100E, "Step3 Could not connect. Errorcode=0x8004100e"},
      {"ConnectServer", 0, "Step3 Could not connect. Errorcode=0x0"},
      {"CoSetProxyBlanket", 0x80070005, "Step4 Could not set proxy blanket. Errorcode=0x80070005"},
      {"ExecQuery", 0x80041017, "Step5 Query failed.  Errorcode=0x80041017"},
      {"ExecQuery", 0, "Step5 Query failed.  Errorcode=0x0"},
  };
  for (const auto& step : steps) {
    wmi.script.Fail(step.function, step.result, 1);
    ExpectFailure(step.line);
    const Strings calls = wmi.TakeCalls();
    EXPECT_THAT(calls[calls.size() - 2], StartsWith(step.function));
  }
  wmi.script.Fail("CoInitializeEx", 0x80010106, 1);
  ExpectFailure("Step1 Failed to initialize COM library. Errorcode=0x80010106", false);
  EXPECT_THAT(wmi.TakeCalls(), ElementsAre("CoInitializeEx 0"));
  wmi.Block("ConnectServer");
  ExpectFailure("Step3 Connection timed out.");
  wmi.Block("ExecQuery");
  ExpectFailure("Step5 Query timed out.");
  EXPECT_THAT(wmi.TakeWaits(), AllOf(Not(IsEmpty()), Each(5000)));
}

// What was read up to then does not count. The cause is a line of the trace alone.
TEST_P(QueryVariant, WalkFailingInTheMiddle) {
  for (const int nth : {1, 2, 3}) {
    wmi.script.Fail("Next", 0x800706BA, nth);
    EXPECT_EQ(row_.call(1), row_.failed) << nth;
    EXPECT_THAT(Lines(), ElementsAre("5 " + Named("Could not Get the Next Object. Errorcode=0x800706ba"), left_));
    wmi.TakeCalls();
  }
  // A success code without a row is the end.
  wmi.script.Fail("Next", 0x40004, 3);
  EXPECT_EQ(row_.call(1), row_.answer);
  EXPECT_THAT(Lines(), ElementsAre(left_));
  EXPECT_THAT(event_log.TakeMessages(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, QueryVariant, testing::ValuesIn(kVariants), NameOfRow());

}  // namespace
}  // namespace vexa::test
