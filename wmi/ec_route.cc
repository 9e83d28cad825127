#include "wmi/ec_route.h"

#include <windows.h>

#include "frame/export_wall.h"
#include "frame/log.h"
#include "vexa/firmware_ec.h"
#include "wmi/decimal.h"
#include "wmi/firmware_answer.h"
#include "wmi/method_invoker.h"
#include "wmi/query_engine.h"

namespace vexa {
namespace {

constexpr wchar_t kValue[] = L"value";
constexpr size_t kMaxFirmwareVersion = 299;

WmiParamMap Parameters(uint8_t command_code, uint8_t param0) {
  return {{L"commandcode", WideDecimal(command_code)}, {L"param0", WideDecimal(param0)}};
}

std::wstring ReadAnswer(uint8_t command_code, uint8_t param0) {
  LogInfo(L"[ATD_STS_ec_read] commandCode=%x, param0=%x", command_code, param0);
  std::wstring answer = wmiMethod_ATD_STS(L"ec_read_command_byte", Parameters(command_code, param0), kValue);
  LogInfo(L"[ATD_STS_ec_read] output=%s", answer.c_str());
  return answer;
}

uint32_t BatteryMethod(const char* name, const wchar_t* method, uint8_t command_code, uint8_t param0) noexcept {
  return Guarded(name, 0u, [&] { return wmiMethod_ATD_STS_UINT(method, Parameters(command_code, param0), kValue); });
}

// In the active code page; empty when it can't be read.
std::string ReadFirmwareVersion() {
  std::wstring version;
  ReadWMIPropStr(version, L"ROOT\\CIMV2", L"select * from Win32_Bios", L"Name", 1);
  if (version.size() > kMaxFirmwareVersion) version.resize(kMaxFirmwareVersion);
  return Narrow(version);
}

// A version that can't be read or split follows the newer rule.
bool OlderWriteRule() {
  const std::string version = ReadFirmwareVersion();
  if (version.empty()) return false;
  const std::vector<std::string> fields = SplitVersion(version);
  LogInfo("[ATD_STS_ec_write1] name=%s, version=%s", fields[0].c_str(), fields.size() > 1 ? fields[1].c_str() : "");
  return FollowsOlderWriteRule(fields);
}

}  // namespace

std::wstring ATD_STS_ec_get_version() noexcept {
  return Guarded("ATD_STS_ec_get_version", std::wstring(),
                 [] { return wmiMethod_ATD_STS(L"ec_get_version", {}, L"version"); });
}

std::wstring ATD_STS_ec_read(uint8_t command_code, uint8_t param0) noexcept {
  return Guarded("ATD_STS_ec_read", std::wstring(), [&] { return ReadAnswer(command_code, param0); });
}

uint32_t ATD_STS_ec_write(uint8_t command_code, uint8_t param0, uint8_t param1) noexcept {
  return Guarded("ATD_STS_ec_write", 0u, [&]() -> uint32_t {
    LogInfo(L"[ATD_STS_ec_write1] commandCode=%x, param0=%x, param1=%x", command_code, param0, param1);
    WmiParamMap parameters = Parameters(command_code, param0);
    parameters[L"param1"] = WideDecimal(param1);
    const std::wstring answer = wmiMethod_ATD_STS(L"ec_write_command_byte", parameters, kValue);
    LogInfo(L"[ATD_STS_ec_write1] result=%s", answer.c_str());
    return WriteAccepted(answer, OlderWriteRule()) ? 1 : 0;
  });
}

uint32_t ATD_STS_battery_read_byte(uint8_t command_code, uint8_t param0) noexcept {
  return BatteryMethod("ATD_STS_battery_read_byte", L"battery_read_command_byte", command_code, param0);
}

uint32_t ATD_STS_battery_read_by_index(uint8_t command_code, uint8_t param0) noexcept {
  return BatteryMethod("ATD_STS_battery_read_by_index", L"battery_read_command_by_index", command_code, param0);
}

uint32_t ATD_STS_battery_write_byte(uint8_t command_code, uint8_t param0) noexcept {
  return BatteryMethod("ATD_STS_battery_write_byte", L"battery_write_command_byte", command_code, param0);
}

}  // namespace vexa

int32_t WOA_EC_read(uint8_t offset, uint8_t table) noexcept {
  using namespace vexa;
  return Guarded("WOA_EC_read", static_cast<int32_t>(VEXA_NO_ANSWER), [&]() -> int32_t {
    if (const std::optional<int32_t> number = AnswerNumber(ReadAnswer(offset, table))) return *number;
    // Kept: the labels are swapped against the arguments' meaning.
    LogInfo(L"[WOA_EC_read] TableIndex=%x, CmdCode=%x, try to parse wresult with error", offset, table);
    return VEXA_NO_ANSWER;
  });
}

uint32_t WOA_EC_write(uint8_t offset, uint8_t table, uint8_t value) noexcept {
  return vexa::ATD_STS_ec_write(offset, table, value);
}
