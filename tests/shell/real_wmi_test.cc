// The query engine on the WMI of the system that the tests run on, nothing replaced: where the simulated firmware is
// registered, it has no scenario meanwhile, and passes everything on.
#include "frame/log.h"
#include "tests/e2e/loaded.h"
#include "tests/support/shell_test.h"
#include "wmi/query_engine.h"

namespace vexa::test {
namespace {

constexpr wchar_t kCim[] = L"ROOT\\CIMV2";
constexpr uint32_t kWithCom = 1;

std::wstring Texts(const wchar_t* query, const wchar_t* property) {
  std::wstring text = L"(untouched)";
  ReadWMIPropStr(text, kCim, query, property, kWithCom);
  return text;
}

uint32_t Number(const wchar_t* query, const wchar_t* property) {
  uint32_t value = 0;
  EXPECT_EQ(ReadWMIProp(kCim, query, property, value, kWithCom), 0) << Narrow(query);
  return value;
}

class RealWmi : public ShellTest {
 protected:
  RealWmi() { scenario_.TakeAway(); }

  const ScenarioFile scenario_{L"Firmware", L"real-wmi-test.json"};
};

TEST_F(RealWmi, TextsOfClassesThatEverySystemHas) {
  const struct {
    const wchar_t* query;
    const wchar_t* property;
  } texts[] = {
      {L"select * from Win32_Processor", L"Name"},
      {L"select * from Win32_OperatingSystem", L"Caption"},
      {L"select * from Win32_OperatingSystem", L"OSArchitecture"},
      {L"select * from win32_ComputerSystem", L"UserName"},
      {L"select * from Win32_Bios", L"Name"},
      {L"select * from Win32_BaseBoard", L"Manufacturer"},
      {L"select * from Win32_ComputerSystemProduct", L"UUID"},
      {L"select * from Win32_VideoController", L"Name"},
  };
  for (const auto& one : texts) {
    const std::wstring text = Texts(one.query, one.property);
    EXPECT_FALSE(text.empty() || text == L"(untouched)") << Narrow(one.query) << " " << Narrow(one.property);
  }
  EXPECT_EQ(Texts(L"select * from Win32_LogicalDisk where DeviceID = 'C:'", L"DeviceID"), L"C:");
  EXPECT_THAT(Narrow(Texts(L"select * from Win32_Process", L"Name").c_str()), HasSubstr("shell_test.exe"));
}

TEST_F(RealWmi, NumbersAgreeWithTheSystemsOwn) {
  SYSTEM_INFO system;
  GetNativeSystemInfo(&system);
  EXPECT_EQ(Number(L"select * from Win32_Processor", L"Architecture"), system.wProcessorArchitecture);
  EXPECT_EQ(Number(L"select * from Win32_Processor", L"NumberOfLogicalProcessors"), system.dwNumberOfProcessors);
  EXPECT_EQ(Number(L"select * from Win32_OperatingSystem", L"OSLanguage"), GetSystemDefaultLangID());
  const std::wstring own = L"select * from Win32_Process where ProcessId = " + std::to_wstring(GetCurrentProcessId());
  EXPECT_EQ(ReadWMIEnumNum(kCim, own.c_str(), kWithCom), 1u);
  EXPECT_GE(ReadWMIEnumNum(kCim, L"select * from Win32_Process", kWithCom), 2u);
}

TEST_F(RealWmi, QueriesWithoutAnAnswer) {
  uint32_t value = 5;
  EXPECT_EQ(ReadWMIProp(kCim, L"select * from Win32_Processor", L"NoSuchProperty", value, kWithCom), -1);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(Texts(L"select * from Win32_Processor", L"NoSuchProperty"), L"");
  EXPECT_EQ(Texts(L"select * from Win32_Process where ProcessId = 1", L"Name"), L"");
  EXPECT_EQ(Texts(L"this is no query", L"Name"), L"");
  EXPECT_EQ(ReadWMIEnumNum(L"ROOT\\NoSuchNamespace", L"select * from Win32_Processor", kWithCom), 0u);
  // This thread has no COM: without the flag the locator can't be created.
  TraceRecorder::Get().Enable(0);
  TraceRecorder::Get().TakeEvents();
  std::wstring text;
  ReadWMIPropStr(text, kCim, L"select * from Win32_Processor", L"Name", 0);
  EXPECT_EQ(text, L"");
  EXPECT_THAT(Lines(),
              ElementsAre("5 [ReadWMIPropStr] Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0"));
}

}  // namespace
}  // namespace vexa::test
