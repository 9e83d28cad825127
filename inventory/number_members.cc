// The exports that are one number, as a number or as text: one row each.
#include <cstdint>

#include "frame/architecture.h"
#include "frame/line.h"
#include "inventory/answer.h"
#include "inventory/cpu_voltage.h"
#include "inventory/texts.h"
#include "vexa/inventory.h"
#include "wmi/decimal.h"
#include "wmi/query_engine.h"

namespace vexa {
namespace {

struct NumberMember {
  const char* name;
  const char* start_line;
  const char* end_line;
  const wchar_t* name_space;
  const wchar_t* query;
  const wchar_t* property;
  const char* result_line = nullptr;  // completed by the number
};

constexpr wchar_t kProcessor[] = L"select * from Win32_Processor";
constexpr wchar_t kMemory[] = L"select * from Win32_PhysicalMemory";
constexpr wchar_t kEnclosure[] = L"select * from Win32_SystemEnclosure";

uint32_t AnswerNumber(const NumberMember& member, uint32_t com_flag) noexcept {
  return Guarded(member.name, uint32_t{VEXA_NOT_AVAILABLE}, [&] {
    LogText(TraceLevel::kVerbose, member.start_line);
    uint32_t number = 0;
    if (ReadWMIProp(member.name_space, member.query, member.property, number, com_flag) != 0) {
      number = VEXA_NOT_AVAILABLE;
    }
    if (member.result_line != nullptr) {
      LogBuilt(TraceLevel::kVerbose, [&] { return Line(member.result_line, static_cast<int32_t>(number)); });
    }
    LogText(TraceLevel::kVerbose, member.end_line);
    return number;
  });
}

}  // namespace

bool ProcessorIsArm64() noexcept { return WMIGetCPUArchitecture(1) == VEXA_CPU_ARCHITECTURE_ARM64; }

}  // namespace vexa

// A row of the family: the function, and what NumberMember holds behind its name.
#define VEXA_NUMBER_MEMBER(function, ...)                          \
  uint32_t function(uint32_t com_flag) noexcept {                  \
    using namespace vexa;                                          \
    static constexpr NumberMember kMember{#function, __VA_ARGS__}; \
    return AnswerNumber(kMember, com_flag);                        \
  }

VEXA_NUMBER_MEMBER(WMIGetCPUArchitecture, "WMIGetCPUArchitecture Start", "WMIGetCPUArchitecture End", kCimNamespace,
                   kProcessor, L"Architecture", "WMIGetCPUArchitecture result = ")
VEXA_NUMBER_MEMBER(WMIGetCPUUsg, "WMIGetCPUUsg Start", "WMIGetCPUUsg End", kCimNamespace, kProcessor, L"LoadPercentage")
VEXA_NUMBER_MEMBER(WMIGetMonitorBrightness, "WMIGetMonitorBrightness Start", "WMIGetMonitorBrightness End",
                   kWmiNamespace, L"select * from WmiMonitorBrightness", L"CurrentBrightness")
// Kept: the first line names the processor's load.
VEXA_NUMBER_MEMBER(vexa::WMIGetCPUVoltage, "WMIGetCPUUsg Start", "WMIGetCPUVoltage End", kCimNamespace, kProcessor,
                   L"CurrentVoltage")

// Kept: the lines name the processor's load.
uint32_t WMIGetGPUUsg(uint32_t com_flag) noexcept {
  using namespace vexa;
  return Guarded("WMIGetGPUUsg", uint32_t{VEXA_NOT_AVAILABLE}, [com_flag] {
    LogInfo("WMIGetCPUUsg Start");
    std::wstring engines;
    ReadWMIPropStrGPUUsage(engines, kCimNamespace,
                           L"SELECT * FROM Win32_PerfFormattedData_GPUPerformanceCounters_GPUEngine", com_flag);
    const uint32_t load = engines.empty() ? VEXA_NOT_AVAILABLE : SumOfLoads(engines);
    LogInfo("WMIGetCPUUsg End");
    return load;
  });
}

uint32_t WMIGetExternMonitorNum(uint32_t com_flag) noexcept {
  using namespace vexa;
  return Guarded("WMIGetExternMonitorNum", 0u, [com_flag] {
    LogInfo("WMIGetExternMonitorNum Start");
    const uint32_t monitors = ReadWMIEnumNum(
        kWmiNamespace, L"SELECT * FROM WmiMonitorConnectionParams WHERE VideoOutputTechnology != 2147483648", com_flag);
    LogInfo("WMIGetExternMonitorNum End");
    return monitors;
  });
}

uint32_t WMIGetMemFrequency(wchar_t* text, uint32_t com_flag) noexcept {
  using namespace vexa;
  return AnswerText("WMIGetMemFrequency", "WMIGetMemFrequency Start", "WMIGetMemFrequency End", text,
                    [com_flag](std::wstring& answer) {
                      uint32_t speed = 0;
                      const int32_t result =
                          ReadWMIProp(kCimNamespace, kMemory, L"ConfiguredClockSpeed", speed, com_flag);
                      answer = WideDecimal(result == 0 ? static_cast<int32_t>(speed) : -1);
                    });
}

uint32_t WMIGetSystemChassisTypes(wchar_t* text, uint32_t com_flag) noexcept {
  using namespace vexa;
  return AnswerText("WMIGetSystemChassisTypes", "WMIGetSystemChassisTypes Start", "WMIGetSystemChassisTypes End", text,
                    [com_flag](std::wstring& answer) {
                      uint32_t type = 0;
                      const int32_t result = ReadWMIProp(kCimNamespace, kEnclosure, L"ChassisTypes", type, com_flag);
                      if (result == 0) answer = ChassisForm(type);
                    });
}
