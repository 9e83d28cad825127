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

TEST_F(Methods, TheStateIsSharedByProcessesAndEndsWithTheScenario) {
  EXPECT_EQ(ReadDevice(kQuietFan).number, 65536);
  std::wstring program(32768, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
  std::wstring command = L"\"" + program + L"\" --set 1114137 1";
  STARTUPINFOW start{.cb = sizeof(start)};
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
  DWORD code = 99;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  EXPECT_EQ(code, 1u);
  EXPECT_EQ(ReadDevice(kQuietFan).number, 65537);
  EXPECT_THAT(State(), HasSubstr("\"method VexaObxWmi_WMNB.DSTS\": 2"));
  EXPECT_THAT(State(), HasSubstr("\"connect ROOT\\\\WMI\": 3"));
  UseScenario(kScenario);
  EXPECT_EQ(ReadDevice(kQuietFan).number, 65536);
}

TEST_F(Methods, WrongCallsFail) {
  const Answer no_method = CallEc(L"no_such_method", {});
  EXPECT_EQ(no_method.failed_step, "GetMethod");
  EXPECT_EQ(no_method.result, static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  const Answer no_output = CallEc(L"ec_get_version", {}, L"value");
  EXPECT_EQ(no_output.failed_step, "Get value");
  EXPECT_EQ(no_output.result, static_cast<HRESULT>(WBEM_E_NOT_FOUND));
  const Answer no_parameter = CallEc(L"ec_read_command_byte", {{L"param1", L"1"}});
  EXPECT_EQ(no_parameter.failed_step, "Put");
  EXPECT_EQ(no_parameter.result, static_cast<HRESULT>(WBEM_E_NOT_FOUND));
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

TEST_F(Methods, ObjectsAreCounted) {
  EXPECT_EQ(Objects("IWbemServices"), 0);
  EXPECT_EQ(Objects("IDispatch"), -1);
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  const Ref<IWbemClassObject> row = caller.FirstRow(L"select * from ATD_STS");
  ASSERT_TRUE(row);
  EXPECT_EQ(Objects("IWbemLocator"), 1);
  EXPECT_EQ(Objects("IWbemServices"), 1);
  EXPECT_EQ(Objects("IEnumWbemClassObject"), 0);
  EXPECT_EQ(Objects("IWbemClassObject"), 1);
  EXPECT_EQ(Objects(), 3);
}

TEST_F(Methods, ABlanketIsRemembered) {
  Caller caller;
  ASSERT_EQ(caller.Connect(L"ROOT\\WMI"), S_OK);
  ASSERT_EQ(CoSetProxyBlanket(caller.services(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                              RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE),
            S_OK);
  DWORD level = 0, impersonation = 0;
  ASSERT_EQ(CoQueryProxyBlanket(caller.services(), nullptr, nullptr, nullptr, &level, &impersonation, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(level, 3u);
  EXPECT_EQ(impersonation, 3u);
}

}  // namespace
}  // namespace firmware
