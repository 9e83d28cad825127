// Every inventory export that is one query: the exact query, the lines, the answer to each type of value, failing
// steps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <sstream>

#include "inventory/cpu_voltage.h"
#include "tests/support/call_script.h"
#include "tests/support/wmi_test.h"
#include "vexa/inventory.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using TextExport = uint32_t (*)(wchar_t*, uint32_t);
using NumberExport = uint32_t (*)(uint32_t);

constexpr uint32_t kCom = 1;
constexpr char kNoNumber[] = "4294967295";

// How an answer is made of a row's values.
enum class Kind { kValue, kRecord, kDisplay, kNumber, kNumberText, kChassis, kLoads, kCount };

struct Member {
  const char* name;
  Kind kind;
  TextExport text;
  NumberExport number;
  const char* space;
  const wchar_t* query;
  std::vector<std::wstring> properties;  // in the order of the answer
  const char* variant;
  const char* start;
  const char* end;
};

constexpr wchar_t kAdapters[] = L"select * from win32_NetworkAdapter where physicalAdapter='true'";
constexpr wchar_t kProduct[] = L"select * from Win32_ComputerSystemProduct";
constexpr wchar_t kSystem[] = L"select * from win32_ComputerSystem";
constexpr wchar_t kEnclosure[] = L"select * from Win32_SystemEnclosure";
constexpr wchar_t kAllDisks[] = L"select * from MSFT_PhysicalDisk where mediatype=3 or mediatype=4";
constexpr wchar_t kHdd[] = L"select * from MSFT_PhysicalDisk where mediatype=3";
constexpr wchar_t kSsd[] = L"select * from MSFT_PhysicalDisk where mediatype=4";
constexpr wchar_t kVideo[] = L"select * from win32_VideoController";
constexpr wchar_t kProcessor[] = L"select * from Win32_Processor";
constexpr wchar_t kMemory[] = L"select * from Win32_PhysicalMemory";
constexpr wchar_t kFixed[] = L"select * from Win32_DiskDrive where MediaType='Fixed hard disk media'";
constexpr wchar_t kRemovable[] = L"select * from Win32_DiskDrive where MediaType='Removable Media'";
constexpr wchar_t kReader[] = L"select * from Win32_PnpEntity where DeviceID like '%VID_0BDA&PID_0129%'";
constexpr wchar_t kMonitors[] = L"SELECT * FROM WMIMonitorID";
constexpr wchar_t kExternal[] = L"SELECT * FROM WmiMonitorConnectionParams WHERE VideoOutputTechnology != 2147483648";
constexpr wchar_t kBios[] = L"select * from Win32_Bios";
constexpr wchar_t kBoard[] = L"select * from Win32_Baseboard";
constexpr wchar_t kBrightness[] = L"select * from WmiMonitorBrightness";
constexpr wchar_t kEngines[] = L"SELECT * FROM Win32_PerfFormattedData_GPUPerformanceCounters_GPUEngine";
constexpr wchar_t kOs[] = L"select * from Win32_OperatingSystem";

constexpr char kCim[] = "ROOT\\CIMV2";
constexpr char kWmi[] = "ROOT\\WMI";
constexpr char kStorage[] = "root\\Microsoft\\Windows\\Storage";

Member Value(const char* name, TextExport text, const char* space, const wchar_t* query, const wchar_t* property,
             const char* start, const char* end) {
  return {name, Kind::kValue, text, nullptr, space, query, {property}, "ReadWMIPropStr", start, end};
}

#define VALUE(name, space, query, property) Value(#name, ::name, space, query, property, #name " Start", #name " End")

const Member kMembers[] = {
    VALUE(WMIGetMacAddress, kCim, kAdapters, L"MACAddress"),
    VALUE(WMIGetBoardUUID, kCim, kProduct, L"UUID"),
    VALUE(WMIGetComputerFamilyName, kCim, kSystem, L"SystemFamily"),
    VALUE(WMIGetGPUInfo, kCim, kVideo, L"Caption"),
    VALUE(WMIGetCPUInfo, kCim, kProcessor, L"Name"),
    VALUE(WMIGetMemModel, kCim, kMemory, L"Partnumber"),
    VALUE(WMIGetHDDSize, kCim, kFixed, L"Size"),
    VALUE(WMIGetHDDCaption, kCim, kFixed, L"Caption"),
    VALUE(WMIGetCardReaderCaption, kCim, kReader, L"Caption"),
    VALUE(WMIGetSDCardCaption, kCim, kRemovable, L"Caption"),
    VALUE(WMIGetHDDModel, kStorage, kHdd, L"Model"),
    VALUE(WMIGetHDDList, kStorage, kHdd, L"DeviceId"),
    VALUE(WMIGetSSDModel, kStorage, kSsd, L"Model"),
    VALUE(WMIGetSSDList, kStorage, kSsd, L"DeviceId"),
    VALUE(WMIGetBiosReleaseDate, kCim, kBios, L"ReleaseDate"),
    VALUE(WMIGetBiosManufacture, kCim, kBoard, L"Manufacturer"),
    VALUE(WMIGetModelName, kCim, kBoard, L"Product"),
    VALUE(WMIGetProductName, kCim, kSystem, L"Model"),
    VALUE(WMIGetMemSize, kCim, kMemory, L"Capacity"),
    VALUE(WMIGetMemManufacture, kCim, kMemory, L"Manufacturer"),
    Value("WMIGetBiosVersion", WMIGetBiosVersion, kCim, kBios, L"Name", "WMIGetBiosVersion Start",
          "WMIGetBiosVersion END"),
    Value("WMIGetSN", WMIGetSN, kCim, kBios, L"SerialNumber", "WMIGetSN Start", "WMIGetSN END"),
    Value("WMIGetType2SN", WMIGetType2SN, kCim, kBoard, L"SerialNumber", "WMIGetType2SN Start", "WMIGetType2SN END"),
    {"WMIGetPhysicalDiskInfo",
     Kind::kRecord,
     WMIGetPhysicalDiskInfo,
     nullptr,
     kStorage,
     kAllDisks,
     {L"Model", L"Size", L"MediaType", L"DeviceId"},
     "ReadWMIPropStr2",
     "WMIGetPhysicalDiskInfo Start",
     "WMIGetPhysicalDiskInfo End"},
    {"WMIGetHDDInfo",
     Kind::kRecord,
     WMIGetHDDInfo,
     nullptr,
     kStorage,
     kHdd,
     {L"Model", L"Size", L"MediaType"},
     "ReadWMIPropStr2",
     "WMIGetHDDInfo Start",
     "WMIGetHDDInfo End"},
    {"WMIGetMemInfo",
     Kind::kRecord,
     WMIGetMemInfo,
     nullptr,
     kCim,
     kMemory,
     {L"Manufacturer", L"PartNumber", L"Capacity", L"Speed", L"DeviceLocator"},
     "ReadWMIPropStr2",
     "WMIGetMemProperties Start",
     "WMIGetMemProperties End"},
    {"WMIGetSDCardSize",
     Kind::kRecord,
     WMIGetSDCardSize,
     nullptr,
     "root\\Cimv2",
     kRemovable,
     {L"Size", L"Caption"},
     "ReadWMIPropStrSDCardSize",
     "WMIGetSDCardSize Start",
     "WMIGetSDCardSize End"},
    {"WMIGetExternMonitorPropList",
     Kind::kDisplay,
     WMIGetExternMonitorPropList,
     nullptr,
     kWmi,
     kExternal,
     {L"InstanceName", L"VideoOutputTechnology"},
     "ReadWMIPropStrDisplay",
     "WMIGetExternMonitorPropList Start",
     "WMIGetExternMonitorPropList End"},
    {"WMIGetCPUArchitecture",
     Kind::kNumber,
     nullptr,
     WMIGetCPUArchitecture,
     kCim,
     kProcessor,
     {L"Architecture"},
     "ReadWMIProp",
     "WMIGetCPUArchitecture Start",
     "WMIGetCPUArchitecture End"},
    {"WMIGetCPUUsg",
     Kind::kNumber,
     nullptr,
     WMIGetCPUUsg,
     kCim,
     kProcessor,
     {L"LoadPercentage"},
     "ReadWMIProp",
     "WMIGetCPUUsg Start",
     "WMIGetCPUUsg End"},
    {"WMIGetCPUVoltage",
     Kind::kNumber,
     nullptr,
     vexa::WMIGetCPUVoltage,
     kCim,
     kProcessor,
     {L"CurrentVoltage"},
     "ReadWMIProp",
     "WMIGetCPUUsg Start",
     "WMIGetCPUVoltage End"},
    {"WMIGetMonitorBrightness",
     Kind::kNumber,
     nullptr,
     WMIGetMonitorBrightness,
     kWmi,
     kBrightness,
     {L"CurrentBrightness"},
     "ReadWMIProp",
     "WMIGetMonitorBrightness Start",
     "WMIGetMonitorBrightness End"},
    {"WMIGetMemFrequency",
     Kind::kNumberText,
     WMIGetMemFrequency,
     nullptr,
     kCim,
     kMemory,
     {L"ConfiguredClockSpeed"},
     "ReadWMIProp",
     "WMIGetMemFrequency Start",
     "WMIGetMemFrequency End"},
    {"WMIGetSystemChassisTypes",
     Kind::kChassis,
     WMIGetSystemChassisTypes,
     nullptr,
     kCim,
     kEnclosure,
     {L"ChassisTypes"},
     "ReadWMIProp",
     "WMIGetSystemChassisTypes Start",
     "WMIGetSystemChassisTypes End"},
    {"WMIGetGPUUsg",
     Kind::kLoads,
     nullptr,
     WMIGetGPUUsg,
     kCim,
     kEngines,
     {L"UtilizationPercentage", L"Name"},
     "ReadWMIPropStrGPUUsage",
     "WMIGetCPUUsg Start",
     "WMIGetCPUUsg End"},
    {"WMIGetExternMonitorNum",
     Kind::kCount,
     nullptr,
     WMIGetExternMonitorNum,
     kWmi,
     kExternal,
     {},
     "ReadWMIEnumNum",
     "WMIGetExternMonitorNum Start",
     "WMIGetExternMonitorNum End"},
};

constexpr size_t kBufferLength = 256;

// The answer as text. Nothing is written behind the text's end, and the length returned is the text's.
std::string Ask(TextExport text, uint32_t com_flag) {
  std::wstring buffer(kBufferLength, L'#');
  const uint32_t length = text(buffer.data(), com_flag);
  EXPECT_LT(length, kBufferLength);
  EXPECT_EQ(buffer.find(L'\0'), length);
  EXPECT_EQ(buffer.find_last_not_of(L'#'), length);
  return Narrow(buffer.c_str());
}

std::string Ask(const Member& member, uint32_t com_flag = kCom) {
  return member.text != nullptr ? Ask(member.text, com_flag) : std::to_string(member.number(com_flag));
}

// A value as each kind of reader takes it; nothing where it takes none.
struct Sample {
  const char* name;
  WmiValue value;
  std::optional<std::string> text;
  std::optional<std::string> converted;
  std::optional<uint32_t> number;
};

const Sample kSamples[] = {
    {"text", Text(L"word"), "word", "word", {}},
    {"digits", Text(L"2147483653"), "2147483653", "2147483653", 2147483653u},
    {"64-bit digits", Text(L"4294967299"), "4294967299", "4294967299", 3u},
    {"joiners", Text(L"a;b,c"), "a;b,c", "a;b,c", {}},
    {"format", Text(L"100%s%n"), "100%s%n", "100%s%n", {}},
    {"empty text", Text(L""), {}, "", {}},
    {"null", Number(VT_NULL, 0), {}, {}, {}},
    {"empty", Number(VT_EMPTY, 0), {}, {}, {}},
    {"object", Number(VT_UNKNOWN, 0), {}, {}, {}},
    {"integer", Number(VT_I4, 31), {}, "31", 31u},
    {"negative", Number(VT_I4, -1), {}, "-1", 0xFFFFFFFF},
    {"byte", Number(VT_UI1, 200), {}, "200", 200u},
    {"64-bit", Number(VT_UI8, 0x100000005), {}, "4294967301", 5u},
    {"boolean", Number(VT_BOOL, -1), {}, "true", 1u},
    {"real", Real64(1.5), {}, "1.5", {}},
    {"numbers", Array(VT_I4, {Number(VT_I4, 10), Number(VT_I4, 3)}), {}, "10;3", 10u},
    {"texts", Texts({L"12", L"b"}), {}, "12;b", 12u},
    {"no elements", Array(VT_I4, {}), {}, "", {}},
};

class Inventory : public WmiTest, public testing::WithParamInterface<Member> {
 protected:
  Inventory() : member_(GetParam()) {}

  WmiProperties Row(const WmiValue& value) const {
    WmiProperties row;
    for (const std::wstring& property : member_.properties) row[property] = value;
    return row;
  }

  // The answer to one row in which `first` and `rest` stand for the first property and all others.
  std::string Expected(const Sample& first, const Sample& rest) const {
    switch (member_.kind) {
      case Kind::kValue: return first.text.value_or("");
      case Kind::kRecord: {
        // A card without a size is left out; a disk without a model is not.
        const bool needs_first = std::string(member_.name) == "WMIGetSDCardSize";
        if (!first.converted && (needs_first || !rest.converted)) return "";
        std::string text = first.converted.value_or("");
        for (size_t i = 1; i < member_.properties.size(); ++i) text += "," + rest.converted.value_or("");
        return text;
      }
      case Kind::kDisplay: return first.converted ? *first.converted + ",vot=" + rest.converted.value_or("") : "";
      case Kind::kNumber: return first.number ? std::to_string(*first.number) : kNoNumber;
      case Kind::kNumberText: return first.number ? std::to_string(static_cast<int32_t>(*first.number)) : "-1";
      case Kind::kChassis: {
        if (!first.number) return "";
        return *first.number == 10 || *first.number == 31 ? "Notebook" : *first.number == 3 ? "Desktop" : "unknown";
      }
      case Kind::kLoads: {
        // What stands before a ";" counts as an engine.
        if (!first.converted) return "0";
        std::istringstream engines(*first.converted + "," + rest.converted.value_or(""));
        double sum = 0;
        for (std::string engine; std::getline(engines, engine, ';');) {
          sum += std::isdigit(static_cast<unsigned char>(engine[0])) ? std::stod(engine) : 0;
        }
        return std::to_string(static_cast<int>(std::min(sum, 100.0)));
      }
      case Kind::kCount: return "1";
    }
    return "";
  }

  std::string Failed() const {
    switch (member_.kind) {
      case Kind::kNumber:
      case Kind::kLoads: return kNoNumber;
      case Kind::kNumberText: return "-1";
      case Kind::kCount: return "0";
      default: return "";
    }
  }
  std::string WithoutRows() const { return member_.kind == Kind::kLoads ? "0" : Failed(); }

  // All lines of a call, the engine's own between.
  void ExpectLines(const std::vector<std::string>& engine) {
    std::vector<std::string> lines = Lines();
    const std::string result = "5 WMIGetCPUArchitecture result = ";
    if (std::string(member_.name) == "WMIGetCPUArchitecture") {
      ASSERT_GE(lines.size(), 2u);
      EXPECT_THAT(lines[lines.size() - 2], testing::StartsWith(result));
      lines.erase(lines.end() - 2);
    }
    std::vector<std::string> expected = {"5 " + std::string(member_.start)};
    for (const std::string& line : engine) expected.push_back("5 [" + std::string(member_.variant) + "] " + line);
    expected.push_back("5 " + std::string(member_.end));
    EXPECT_EQ(lines, expected);
  }

  const Member& member_;
};

TEST_P(Inventory, OneQueryAndItsLines) {
  wmi.rows[member_.query] = {Row(Text(L"12"))};
  const Sample twelve = {"", {}, "12", "12", 12u};
  EXPECT_EQ(Ask(member_), Expected(twelve, twelve));
  ExpectLines({"Step7 Do CoUninitialize()"});
  const std::vector<std::string> calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "ConnectServer " + std::string(member_.space) + " null null null 0 null"), 1);
  EXPECT_EQ(CountOf(calls, "ExecQuery WQL " + Narrow(member_.query) + " 30"), 1);
  EXPECT_EQ(calls.front(), "CoInitializeEx 0");
  EXPECT_EQ(calls.back(), "CoUninitialize");
  EXPECT_THAT(wmi.TakeWaits(), testing::Each(5000));
}

TEST_P(Inventory, EveryTypeOfValueInEveryProperty) {
  for (const Sample& sample : kSamples) {
    SCOPED_TRACE(sample.name);
    wmi.rows[member_.query] = {Row(sample.value)};
    EXPECT_EQ(Ask(member_), Expected(sample, sample));
    // The first property alone, and all but the first.
    if (member_.properties.size() < 2) continue;
    const Sample one = {"", Number(VT_I4, 1), {}, "1", 1u};
    wmi.rows[member_.query] = {Row(one.value)};
    wmi.rows[member_.query].front()[member_.properties[0]] = sample.value;
    EXPECT_EQ(Ask(member_), Expected(sample, one));
    wmi.rows[member_.query] = {Row(sample.value)};
    wmi.rows[member_.query].front()[member_.properties[0]] = one.value;
    EXPECT_EQ(Ask(member_), Expected(one, sample));
  }
  EXPECT_EQ(AutomationLedger::Live(), 0);
}

TEST_P(Inventory, NoRowsAndRowsWithoutThePropertyAreNoAnswer) {
  EXPECT_EQ(Ask(member_), WithoutRows());
  ExpectLines({"Step7 Do CoUninitialize()"});
  wmi.rows[member_.query] = {{{L"Other", Text(L"1")}}};
  EXPECT_EQ(Ask(member_), member_.kind == Kind::kCount ? "1" : WithoutRows());
}

TEST_P(Inventory, EachStepFailing) {
  const struct {
    const char* function;
    std::string line;
  } steps[] = {
      {"CoCreateInstance", "Step2 Failed to create IWbemLocator object. Errorcode=0x80070005"},
      {"ConnectServer", "Step3 Could not connect. Errorcode=0x80070005"},
      {"CoSetProxyBlanket", "Step4 Could not set proxy blanket. Errorcode=0x80070005"},
      {"ExecQuery", "Step5 Query failed.  Errorcode=0x80070005"},
  };
  wmi.rows[member_.query] = {Row(Text(L"12"))};
  for (const auto& step : steps) {
    SCOPED_TRACE(step.function);
    wmi.script.Fail(step.function, 0x80070005, 1);
    EXPECT_EQ(Ask(member_), Failed());
    ExpectLines({step.line, "Step7 Do CoUninitialize()"});
    EXPECT_EQ(wmi.References(), 0);
  }
  wmi.script.Fail("Next", 0x80070005, 1);
  EXPECT_EQ(Ask(member_), Failed());
  ExpectLines({"Step7 Do CoUninitialize()"});
  wmi.script.Fail("CoInitializeEx", 0x80010106, 1);
  EXPECT_EQ(Ask(member_), Failed());
  ExpectLines({"Step1 Failed to initialize COM library. Errorcode=0x80010106"});
  // The thread has no COM of its own.
  EXPECT_EQ(Ask(member_, 0), Failed());
  ExpectLines({"Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0"});
  EXPECT_EQ(AutomationLedger::Live(), 0);
}

TEST_P(Inventory, NullBufferTellsTheLength) {
  if (member_.text == nullptr) return;
  const std::wstring longest(3000, L'x');
  wmi.rows[member_.query] = {Row(Text(longest))};
  const uint32_t length = member_.text(nullptr, kCom);
  const bool is_text = member_.kind == Kind::kValue || member_.kind == Kind::kRecord || member_.kind == Kind::kDisplay;
  if (is_text) EXPECT_GE(length, longest.size());
  // Never cut, and not one character more.
  std::wstring buffer(length + 2, L'#');
  EXPECT_EQ(member_.text(buffer.data(), kCom), length);
  EXPECT_EQ(buffer.find(L'\0'), length);
  EXPECT_EQ(buffer.back(), L'#');
}

INSTANTIATE_TEST_SUITE_P(Each, Inventory, testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.name); });

class InventoryRows : public WmiTest {};

TEST_F(InventoryRows, OrderAndJoiners) {
  wmi.rows[kAdapters] = {{{L"MACAddress", Text(L"00:11:22:33:44:55")}},
                         {{L"MACAddress", Number(VT_NULL, 0)}},
                         {{L"MACAddress", Text(L"66:77:88:99:AA:BB")}}};
  EXPECT_EQ(Ask(WMIGetMacAddress, kCom), "00:11:22:33:44:55;66:77:88:99:AA:BB");
  wmi.rows[kAllDisks] = {{{L"Model", Text(L"Disk, large")},
                          {L"Size", Text(L"1000204886016")},
                          {L"MediaType", Number(VT_I4, 4)},
                          {L"DeviceId", Text(L"0")}},
                         {{L"Other", Text(L"x")}},
                         {{L"MediaType", Number(VT_I4, 3)}},
                         {{L"Model", Text(L"")}, {L"Size", Text(L"1")}, {L"DeviceId", Text(L"2")}}};
  EXPECT_EQ(Ask(WMIGetPhysicalDiskInfo, kCom), "Disk, large,1000204886016,4,0;,,3,;,1,,2");
  wmi.rows[kExternal] = {{{L"InstanceName", Text(L"DISPLAY\\A_0")}, {L"VideoOutputTechnology", Number(VT_I4, 10)}},
                         {{L"InstanceName", Text(L"B,vot=1;C")}, {L"VideoOutputTechnology", Number(VT_I4, 5)}}};
  EXPECT_EQ(Ask(WMIGetExternMonitorPropList, kCom), "DISPLAY\\A_0,vot=10;B,vot=1;C,vot=5");
  EXPECT_EQ(WMIGetExternMonitorNum(kCom), 2u);
  // A text ends at its first zero, and so does the length.
  wmi.rows[kBios] = {{{L"SerialNumber", Text(std::wstring(L"AB\0CD", 5))}}};
  EXPECT_EQ(Ask(WMIGetSN, kCom), "AB");
}

TEST_F(InventoryRows, LastRowIsTheNumber) {
  const auto speed = [](const WmiValue& value) { return WmiProperties{{L"ConfiguredClockSpeed", value}}; };
  wmi.rows[kMemory] = {speed(Number(VT_I4, 4800)), speed(Number(VT_I4, 5600)), speed(Number(VT_NULL, 0))};
  EXPECT_EQ(Ask(WMIGetMemFrequency, kCom), "5600");
  wmi.rows[kMemory] = {speed(Text(L"4294967295"))};
  EXPECT_EQ(Ask(WMIGetMemFrequency, kCom), "-1");
}

TEST_F(InventoryRows, ArchitectureIsLoggedSigned) {
  wmi.rows[kProcessor] = {{{L"Architecture", Number(VT_I4, 12)}}};
  EXPECT_EQ(WMIGetCPUArchitecture(kCom), VEXA_CPU_ARCHITECTURE_ARM64);
  EXPECT_EQ(Lines()[2], "5 WMIGetCPUArchitecture result = 12");
  wmi.rows.clear();
  EXPECT_EQ(WMIGetCPUArchitecture(kCom), VEXA_NOT_AVAILABLE);
  EXPECT_EQ(Lines()[2], "5 WMIGetCPUArchitecture result = -1");
}

TEST_F(InventoryRows, FirstChassisTypeCounts) {
  const auto form = [&](const WmiValue& value) {
    wmi.rows[kEnclosure] = {{{L"ChassisTypes", value}}};
    return Ask(WMIGetSystemChassisTypes, kCom);
  };
  EXPECT_EQ(form(Array(VT_I4, {Number(VT_I4, 31), Number(VT_I4, 3)})), "Notebook");
  EXPECT_EQ(form(Array(VT_I4, {Number(VT_I4, 13), Number(VT_I4, 10)})), "Desktop");
  EXPECT_EQ(form(Array(VT_I4, {Number(VT_I4, 9)})), "unknown");
  EXPECT_EQ(form(Array(VT_I4, {})), "");
}

TEST_F(InventoryRows, GraphicsLoadsAreAddedUpToAHundred) {
  const auto load = [](const wchar_t* percent, const wchar_t* name) {
    return WmiProperties{{L"UtilizationPercentage", Text(percent)}, {L"Name", Text(name)}};
  };
  wmi.rows[kEngines] = {load(L"12", L"pid_4_engtype_3D"), load(L"0", L"pid_5"), load(L"30", L"a;50,b")};
  EXPECT_EQ(WMIGetGPUUsg(kCom), 92u);  // a name with ";" counts as another engine
  wmi.rows[kEngines] = {load(L"60", L"a"), load(L"41", L"b")};
  EXPECT_EQ(WMIGetGPUUsg(kCom), 100u);
  wmi.rows[kEngines] = {load(L"18446744073709551615", L"a"), load(L"x", L"b")};
  EXPECT_EQ(WMIGetGPUUsg(kCom), 100u);
}

TEST_F(InventoryRows, MonitorNamesAreArraysOfCharacters) {
  const auto codes = [](VARTYPE type, const std::wstring& text) {
    std::vector<WmiValue> elements;
    for (const wchar_t c : text) elements.push_back(Number(type, c));
    return WmiProperties{{L"UserFriendlyName", Array(type, elements)}};
  };
  wmi.rows[kMonitors] = {codes(VT_I4, std::wstring(L"LP140 \u00e9\0\0x", 10)),
                         codes(VT_UI2, L"U2720Q"),
                         codes(VT_I4, L""),
                         codes(VT_I4, std::wstring(L"\0A", 2)),
                         {{L"UserFriendlyName", Texts({L"a", L"b"})}},
                         {{L"UserFriendlyName", Number(VT_I4, 65)}},
                         {{L"UserFriendlyName", Number(VT_NULL, 0)}},
                         {{L"UserFriendlyName", Text(L"as text")}}};
  EXPECT_EQ(Ask(WMIGetLCDModel, kCom), "LP140 \u00e9;U2720Q;as text");
  const std::vector<std::string> lines = Lines();
  EXPECT_EQ(lines.front(), "5 WMIGetLCDModel Start");
  EXPECT_EQ(lines[1], "5 [ReadWMIPropStr] SysStringLen(temp) == 0 , propname = UserFriendlyName");
  EXPECT_EQ(lines.back(), "5 WMIGetLCDModel End");
  EXPECT_EQ(CountOf(wmi.TakeCalls(), "ConnectServer ROOT\\WMI null null null 0 null"), 1);
}

TEST_F(InventoryRows, FifthOemStringAlone) {
  wmi.rows[kSystem] = {{{L"OEMStringArray", Texts({L"0", L"1", L"2", L"3", L"90NB0XYZ-M00010", L"5"})}}};
  EXPECT_EQ(Ask(WMIGet90Number, kCom), "90NB0XYZ-M00010");
  EXPECT_THAT(Lines(), ElementsAre("5 WMIGet90Number Start", "5 [ReadWMIPropStr] Step7 Do CoUninitialize()",
                                   "5 WMIGet90Number End"));
  wmi.rows[kSystem] = {{{L"OEMStringArray", Texts({L"0", L"1", L"2", L"3"})}}};
  EXPECT_EQ(Ask(WMIGet90Number, kCom), "");
  wmi.rows[kSystem] = {{{L"OEMStringArray", Number(VT_NULL, 0)}}};
  EXPECT_EQ(Ask(WMIGet90Number, kCom), "");
}

TEST_F(InventoryRows, SystemAndItsArchitectureAreTwoQueries) {
  wmi.rows[kOs] = {{{L"Caption", Text(L"Microsoft Windows 11 Pro")}, {L"OSArchitecture", Text(L"64-bit")}}};
  EXPECT_EQ(Ask(WMIGetOSInfo, kCom), "Microsoft Windows 11 Pro 64-bit");
  EXPECT_EQ(CountOf(wmi.TakeCalls(), "ExecQuery WQL " + Narrow(kOs) + " 30"), 2);
  EXPECT_THAT(Lines(), ElementsAre("5 WMIGetOSInfo Start", "5 [ReadWMIPropStr] Step7 Do CoUninitialize()",
                                   "5 [ReadWMIPropStr] Step7 Do CoUninitialize()", "5 WMIGetOSInfo End"));
  wmi.script.Fail("ExecQuery", 0x80041010, 1);
  EXPECT_EQ(Ask(WMIGetOSInfo, kCom), "64-bit");
  wmi.script.Fail("ExecQuery", 0x80041010, 2);
  EXPECT_EQ(Ask(WMIGetOSInfo, kCom), "Microsoft Windows 11 Pro");
  wmi.rows[kOs] = {{{L"Caption", Number(VT_I4, 5)}}};
  EXPECT_EQ(Ask(WMIGetOSInfo, kCom), "");
}

}  // namespace
}  // namespace vexa::test
