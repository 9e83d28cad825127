// The firmware's methods through the whole sequence of a caller.
#include <gmock/gmock.h>

#include "caller.h"
#include "firmware/files.h"
#include "fixture.h"

namespace firmware {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kScenario[] = R"({
  "ec": { "version": 7, "instances": 2,
    "tables": [ { "table": 1, "registers": [ { "offset": 2, "byte": 0, "write_code": "0x82" } ] } ],
    "gauge": [ { "register": 13, "word": 84 }, { "register": 32, "text": "VXB2" } ] },
  "devices": { "list": [
    { "device": "0x00110019", "status": "0x00010000", "accepts": [0, 1], "mask": 1 } ] } })";
constexpr unsigned kQuietFan = 0x00110019;

class Methods : public FirmwareTest {
 protected:
  Methods() { UseScenario(kScenario); }
};

TEST_F(Methods, AnswerAsTheScenarioSays) {
  const Answer answer = ReadBattery(13, 2);
  EXPECT_EQ(answer.failed_step, "");
  EXPECT_EQ(answer.type, VT_I4);
  EXPECT_EQ(answer.number, 84);
  EXPECT_EQ(ReadBattery(99, 2).number, -1);
  EXPECT_EQ(CallEc(L"battery_read_command_by_index", {{L"commandcode", L"32"}, {L"param0", L"4"}}).number, '2');
  EXPECT_EQ(CallEc(L"ec_get_version", {}, L"version").number, 7);
  EXPECT_EQ(CallEc(L"ec_write_command_byte", {{L"commandcode", L"130"}, {L"param0", L"1"}, {L"param1", L"2"}}).number,
            0);
  EXPECT_EQ(CallEc(L"ec_read_command_byte", {{L"commandcode", L"2"}, {L"param0", L"1"}}).number, 2);
}

TEST_F(Methods, TheLogTellsEachCall) {
  ReadBattery(13, 2);
  SetDevice(kQuietFan, 7);
  CallEc(L"battery_read_command_byte", {{L"commandcode", L"300"}});
  CallEc(L"battery_read_command_byte", {{L"commandcode", L"3"}});
  const std::string connect = "connect ROOT\\WMI -> 0x00000000";
  const std::string blanket =
      "blanket ROOT\\WMI authentication=10 authorization=0 principal=- level=3 impersonation=3 identity=- "
      "capabilities=0 -> 0x00000000";
  const std::string query = "query ROOT\\WMI flags=0x30 Select * from ATD_STS -> rows=2";
  EXPECT_THAT(
      Log(), ElementsAre(connect, blanket, query,
                         "method ATD_STS.battery_read_command_byte commandcode=13 param0=2 -> value=84", connect,
                         blanket, "query ROOT\\WMI flags=0x30 Select * from VexaObxWmi_WMNB -> rows=1",
                         "method VexaObxWmi_WMNB.DEVS Device_ID=1114137 Control_status=7 -> result=0", connect, blanket,
                         query, "put ATD_STS.battery_read_command_byte commandcode=300 -> failed 0x80041005", connect,
                         blanket, query, "method ATD_STS.battery_read_command_byte -> failed 0x8004102f"));
}

// Another process sees it too: tests/e2e/run_test.sh.
TEST_F(Methods, TheStateEndsWithTheScenario) {
  EXPECT_EQ(ReadDevice(kQuietFan).number, 65536);
  EXPECT_EQ(SetDevice(kQuietFan, 1).number, 1);
  EXPECT_EQ(ReadDevice(kQuietFan).number, 65537);
  EXPECT_THAT(State(), HasSubstr("\"method VexaObxWmi_WMNB.DSTS\": 2"));
  EXPECT_THAT(State(), HasSubstr("\"connect ROOT\\\\WMI\": 3"));
  UseScenario(kScenario);
  EXPECT_EQ(ReadDevice(kQuietFan).number, 65536);
}

TEST_F(Methods, WrongCallsFail) {
  for (const auto& [answer, step] : {std::pair{CallEc(L"no_such_method", {}), "GetMethod"},
                                     {CallEc(L"ec_get_version", {}, L"value"), "Get value"},
                                     {CallEc(L"ec_read_command_byte", {{L"param1", L"1"}}), "Put"}}) {
    EXPECT_EQ(answer.failed_step, step);
    EXPECT_EQ(answer.result, static_cast<HRESULT>(WBEM_E_NOT_FOUND)) << step;
  }
}

TEST_F(Methods, PathsMustNameAnInstance) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"\\\\.\\root\\wmi"), S_OK);
  const auto call = [&](const wchar_t* path) {
    return caller.services()->ExecMethod(Bstr(path), Bstr(L"ec_get_version"), 0, nullptr, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(call(L"ATD_STS"), static_cast<HRESULT>(WBEM_E_INVALID_OBJECT_PATH));
  EXPECT_EQ(call(L"ATD_STS.InstanceName=\"ACPI\\\\PNP0C14\\\\1_2\""), static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  EXPECT_EQ(call(L"ATD_STS.InstanceName=\"ACPI\\\\PNP0C14\\\\1_1\""), S_OK);
  EXPECT_EQ(call(L"atd_sts=\"ACPI\\\\PNP0C14\\\\1_0\""), S_OK);
}

TEST_F(Methods, ObjectsAreCountedAndABlanketIsRemembered) {
  EXPECT_EQ(Objects("IWbemServices"), 0);
  EXPECT_EQ(Objects("IDispatch"), -1);
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IWbemClassObject> row = caller.FirstRow(L"select * from ATD_STS");
  ASSERT_TRUE(row);
  for (const auto& [name, count] : {std::pair{"IWbemLocator", 1},
                                    {"IWbemServices", 1},
                                    {"IEnumWbemClassObject", 0},
                                    {"IWbemClassObject", 1},
                                    {static_cast<const char*>(nullptr), 3}}) {
    EXPECT_EQ(Objects(name), count);
  }
  ASSERT_EQ(caller.SetBlanket(), S_OK);
  DWORD level = 0, impersonation = 0;
  ASSERT_EQ(CoQueryProxyBlanket(caller.services(), nullptr, nullptr, nullptr, &level, &impersonation, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(level, 3u);
  EXPECT_EQ(impersonation, 3u);
}

}  // namespace
}  // namespace firmware
