// Every inventory export that is one query: the exact query, the lines, the answer to a row, to none and to a failure.
// What the engine makes of values and steps: query_engine_test, query_rows_test, variant_value_test.
#include "vexa/inventory.h"
#include "inventory/cpu_voltage.h"
#include "tests/support/wmi_test.h"

namespace vexa::test {
namespace {

using TextExport = uint32_t (*)(wchar_t*, uint32_t);
using NumberExport = uint32_t (*)(uint32_t);

constexpr uint32_t kCom = 1;

struct Member {
  std::string name;
  TextExport text;
  NumberExport number;
  std::string variant;  // of the engine
  std::string space;
  const wchar_t* query;
  std::vector<std::wstring> properties;
  std::string answer;  // to a row whose properties hold the texts "12", "13" and so on
  std::string failed;
  std::string none = failed;  // to no row
  std::string start = name + " Start", end = name + " End";
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

constexpr char kCim[] = "ROOT\\CIMV2", kWmi[] = "ROOT\\WMI", kStorage[] = "root\\Microsoft\\Windows\\Storage";
constexpr char kStr[] = "ReadWMIPropStr", kStr2[] = "ReadWMIPropStr2", kProp[] = "ReadWMIProp";
constexpr char kNoNumber[] = "4294967295";

#define TEXT_OF(export_name) #export_name, export_name, nullptr
#define NUMBER_OF(export_name) #export_name, nullptr, export_name

// clang-format off: one member a row
const Member kMembers[] = {
    {TEXT_OF(WMIGetMacAddress), kStr, kCim, kAdapters, {L"MACAddress"}, "12", ""},
    {TEXT_OF(WMIGetBoardUUID), kStr, kCim, kProduct, {L"UUID"}, "12", ""},
    {TEXT_OF(WMIGetComputerFamilyName), kStr, kCim, kSystem, {L"SystemFamily"}, "12", ""},
    {TEXT_OF(WMIGetGPUInfo), kStr, kCim, kVideo, {L"Caption"}, "12", ""},
    {TEXT_OF(WMIGetCPUInfo), kStr, kCim, kProcessor, {L"Name"}, "12", ""},
    {TEXT_OF(WMIGetMemModel), kStr, kCim, kMemory, {L"Partnumber"}, "12", ""},
    {TEXT_OF(WMIGetHDDSize), kStr, kCim, kFixed, {L"Size"}, "12", ""},
    {TEXT_OF(WMIGetHDDCaption), kStr, kCim, kFixed, {L"Caption"}, "12", ""},
    {TEXT_OF(WMIGetCardReaderCaption), kStr, kCim, kReader, {L"Caption"}, "12", ""},
    {TEXT_OF(WMIGetSDCardCaption), kStr, kCim, kRemovable, {L"Caption"}, "12", ""},
    {TEXT_OF(WMIGetHDDModel), kStr, kStorage, kHdd, {L"Model"}, "12", ""},
    {TEXT_OF(WMIGetHDDList), kStr, kStorage, kHdd, {L"DeviceId"}, "12", ""},
    {TEXT_OF(WMIGetSSDModel), kStr, kStorage, kSsd, {L"Model"}, "12", ""},
    {TEXT_OF(WMIGetSSDList), kStr, kStorage, kSsd, {L"DeviceId"}, "12", ""},
    {TEXT_OF(WMIGetLCDModel), kStr, kWmi, kMonitors, {L"UserFriendlyName"}, "12", ""},
    {TEXT_OF(WMIGetBiosReleaseDate), kStr, kCim, kBios, {L"ReleaseDate"}, "12", ""},
    {TEXT_OF(WMIGetBiosManufacture), kStr, kCim, kBoard, {L"Manufacturer"}, "12", ""},
    {TEXT_OF(WMIGetModelName), kStr, kCim, kBoard, {L"Product"}, "12", ""},
    {TEXT_OF(WMIGetProductName), kStr, kCim, kSystem, {L"Model"}, "12", ""},
    {TEXT_OF(WMIGetMemSize), kStr, kCim, kMemory, {L"Capacity"}, "12", ""},
    {TEXT_OF(WMIGetMemManufacture), kStr, kCim, kMemory, {L"Manufacturer"}, "12", ""},
    {TEXT_OF(WMIGetBiosVersion), kStr, kCim, kBios, {L"Name"}, "12", "", "", "WMIGetBiosVersion Start",
     "WMIGetBiosVersion END"},
    {TEXT_OF(WMIGetSN), kStr, kCim, kBios, {L"SerialNumber"}, "12", "", "", "WMIGetSN Start", "WMIGetSN END"},
    {TEXT_OF(WMIGetType2SN), kStr, kCim, kBoard, {L"SerialNumber"}, "12", "", "", "WMIGetType2SN Start",
     "WMIGetType2SN END"},
    {TEXT_OF(WMIGetPhysicalDiskInfo), kStr2, kStorage, kAllDisks, {L"Model", L"Size", L"MediaType", L"DeviceId"},
     "12,13,14,15", ""},
    {TEXT_OF(WMIGetHDDInfo), kStr2, kStorage, kHdd, {L"Model", L"Size", L"MediaType"}, "12,13,14", ""},
    {TEXT_OF(WMIGetMemInfo), kStr2, kCim, kMemory,
     {L"Manufacturer", L"PartNumber", L"Capacity", L"Speed", L"DeviceLocator"}, "12,13,14,15,16", "", "",
     "WMIGetMemProperties Start", "WMIGetMemProperties End"},
    {TEXT_OF(WMIGetSDCardSize), "ReadWMIPropStrSDCardSize", "root\\Cimv2", kRemovable, {L"Size", L"Caption"}, "12,13",
     ""},
    {TEXT_OF(WMIGetExternMonitorPropList), "ReadWMIPropStrDisplay", kWmi, kExternal,
     {L"InstanceName", L"VideoOutputTechnology"}, "12,vot=13", ""},
    {TEXT_OF(WMIGetMemFrequency), kProp, kCim, kMemory, {L"ConfiguredClockSpeed"}, "12", "-1"},
    {TEXT_OF(WMIGetSystemChassisTypes), kProp, kCim, kEnclosure, {L"ChassisTypes"}, "unknown", ""},
    {NUMBER_OF(WMIGetCPUArchitecture), kProp, kCim, kProcessor, {L"Architecture"}, "12", kNoNumber},
    {NUMBER_OF(WMIGetCPUUsg), kProp, kCim, kProcessor, {L"LoadPercentage"}, "12", kNoNumber},
    {"WMIGetCPUVoltage", nullptr, vexa::WMIGetCPUVoltage, kProp, kCim, kProcessor, {L"CurrentVoltage"}, "12", kNoNumber,
     kNoNumber, "WMIGetCPUUsg Start"},
    {NUMBER_OF(WMIGetMonitorBrightness), kProp, kWmi, kBrightness, {L"CurrentBrightness"}, "12", kNoNumber},
    {NUMBER_OF(WMIGetGPUUsg), "ReadWMIPropStrGPUUsage", kCim, kEngines, {L"UtilizationPercentage", L"Name"}, "12",
     kNoNumber, "0", "WMIGetCPUUsg Start", "WMIGetCPUUsg End"},
    {NUMBER_OF(WMIGetExternMonitorNum), "ReadWMIEnumNum", kWmi, kExternal, {}, "1", "0"},
};
// clang-format on

constexpr size_t kBufferLength = 256;

// The answer as text. Nothing is written behind the text's end, and the length returned is the text's.
std::string Ask(TextExport text, uint32_t com_flag = kCom) {
  std::wstring buffer(kBufferLength, L'#');
  const uint32_t length = text(buffer.data(), com_flag);
  EXPECT_EQ(buffer.find(L'\0'), length);
  EXPECT_EQ(buffer.find_last_not_of(L'#'), length);
  return Narrow(buffer.c_str());
}

class Inventory : public PerRow<WmiTest, Member> {
 protected:
  Inventory() {
    WmiProperties row;
    for (size_t i = 0; i < row_.properties.size(); ++i) row[row_.properties[i]] = Text(std::to_wstring(12 + i));
    wmi.rows[row_.query] = {row};
  }

  // The answer, and all lines of the call: the engine's own stand between.
  void Expect(const std::string& answer, const Strings& engine, uint32_t com_flag = kCom) {
    EXPECT_EQ(row_.text != nullptr ? Ask(row_.text, com_flag) : std::to_string(row_.number(com_flag)), answer);
    Strings expected = {"5 " + row_.start};
    for (const std::string& line : engine) expected.push_back("5 [" + row_.variant + "] " + line);
    if (row_.name == "WMIGetCPUArchitecture") {
      expected.push_back("5 WMIGetCPUArchitecture result = " + (answer == kNoNumber ? "-1" : answer));
    }
    expected.push_back("5 " + row_.end);
    EXPECT_EQ(Lines(), expected);
    EXPECT_EQ(wmi.References(), 0);
    EXPECT_EQ(AutomationLedger::Live(), 0);
  }
};

TEST_P(Inventory, OneQueryAndItsLines) {
  Expect(row_.answer, {"Step7 Do CoUninitialize()"});
  const Strings calls = wmi.TakeCalls();
  EXPECT_EQ(CountOf(calls, "ConnectServer " + row_.space + " null null null 0 null"), 1);
  EXPECT_EQ(CountOf(calls, "ExecQuery WQL " + Narrow(row_.query) + " 30"), 1);
  EXPECT_EQ(calls.front(), "CoInitializeEx 0");
  EXPECT_THAT(wmi.TakeWaits(), Each(5000));
}

TEST_P(Inventory, WithoutAnAnswer) {
  wmi.script.Fail("ExecQuery", 0x80070005, 1);
  Expect(row_.failed, {"Step5 Query failed.  Errorcode=0x80070005", "Step7 Do CoUninitialize()"});
  // The thread has no COM of its own.
  Expect(row_.failed, {"Step2 Failed to create IWbemLocator object. Errorcode=0x800401f0"}, 0);
  wmi.rows[row_.query] = {};
  Expect(row_.none, {"Step7 Do CoUninitialize()"});
  wmi.rows[row_.query] = {{{L"Other", Text(L"1")}}};
  Expect(row_.properties.empty() ? "1" : row_.none, {"Step7 Do CoUninitialize()"});
}

// Never cut, and not one character more.
TEST_P(Inventory, NullBufferTellsTheLength) {
  if (row_.text == nullptr) return;
  for (const std::wstring& property : row_.properties) {
    wmi.rows[row_.query].front()[property] = Text(std::wstring(3000, L'x'));
  }
  const uint32_t length = row_.text(nullptr, kCom);
  if (row_.variant != kProp) EXPECT_GE(length, 3000u);
  std::wstring buffer(length + 2, L'#');
  EXPECT_EQ(row_.text(buffer.data(), kCom), length);
  EXPECT_EQ(buffer.find(L'\0'), length);
  EXPECT_EQ(buffer.back(), L'#');
}

INSTANTIATE_TEST_SUITE_P(Each, Inventory, testing::ValuesIn(kMembers), NameOfRow());

class InventoryRows : public WmiTest {
 protected:
  std::string OfRows(TextExport text, const wchar_t* query, const std::vector<WmiProperties>& rows) {
    wmi.rows[query] = rows;
    return Ask(text);
  }
};

// A text ends at its first zero, and so does the length.
TEST_F(InventoryRows, TextWithAZero) {
  EXPECT_EQ(OfRows(WMIGetSN, kBios, {{{L"SerialNumber", Text(std::wstring(L"AB\0CD", 5))}}}), "AB");
}

TEST_F(InventoryRows, NumbersAsTexts) {
  const auto speed = [](const WmiValue& value) { return WmiProperties{{L"ConfiguredClockSpeed", value}}; };
  EXPECT_EQ(OfRows(WMIGetMemFrequency, kMemory,
                   {speed(Number(VT_I4, 4800)), speed(Number(VT_I4, 5600)), speed(Number(VT_NULL, 0))}),
            "5600");
  EXPECT_EQ(OfRows(WMIGetMemFrequency, kMemory, {speed(Text(L"4294967295"))}), "-1");
  // Of the chassis types the first counts.
  const auto form = [&](const std::vector<int>& types) {
    std::vector<WmiValue> numbers;
    for (const int type : types) numbers.push_back(Number(VT_I4, type));
    return OfRows(WMIGetSystemChassisTypes, kEnclosure, {{{L"ChassisTypes", Array(VT_I4, numbers)}}});
  };
  EXPECT_EQ(form({31, 3}), "Notebook");
  EXPECT_EQ(form({13, 10}), "Desktop");
  EXPECT_EQ(form({9}), "unknown");
  EXPECT_EQ(form({}), "");
}

TEST_F(InventoryRows, GraphicsLoadsAreAddedUpToAHundred) {
  const auto load = [](const wchar_t* percent, const wchar_t* name) {
    return WmiProperties{{L"UtilizationPercentage", Text(percent)}, {L"Name", Text(name)}};
  };
  wmi.rows[kEngines] = {load(L"12", L"pid_4_engtype_3D"), load(L"0", L"pid_5"), load(L"30", L"a;50,b")};
  EXPECT_EQ(WMIGetGPUUsg(kCom), 92u);  // a name with ";" counts as another engine
  wmi.rows[kEngines] = {load(L"60", L"a"), load(L"41", L"b")};
  EXPECT_EQ(WMIGetGPUUsg(kCom), 100u);
}

TEST_F(InventoryRows, FifthOemStringAlone) {
  const auto number = [&](const WmiValue& value) {
    return OfRows(WMIGet90Number, kSystem, {{{L"OEMStringArray", value}}});
  };
  EXPECT_EQ(number(Texts({L"0", L"1", L"2", L"3", L"90NB0XYZ-M00010", L"5"})), "90NB0XYZ-M00010");
  EXPECT_THAT(Lines(), ElementsAre("5 WMIGet90Number Start", "5 [ReadWMIPropStr] Step7 Do CoUninitialize()",
                                   "5 WMIGet90Number End"));
}

TEST_F(InventoryRows, SystemAndItsArchitectureAreTwoQueries) {
  const std::vector<WmiProperties> system = {
      {{L"Caption", Text(L"Microsoft Windows 11 Pro")}, {L"OSArchitecture", Text(L"64-bit")}}};
  EXPECT_EQ(OfRows(WMIGetOSInfo, kOs, system), "Microsoft Windows 11 Pro 64-bit");
  EXPECT_EQ(CountOf(wmi.TakeCalls(), "ExecQuery WQL " + Narrow(kOs) + " 30"), 2);
  EXPECT_THAT(Lines(), ElementsAre("5 WMIGetOSInfo Start", "5 [ReadWMIPropStr] Step7 Do CoUninitialize()",
                                   "5 [ReadWMIPropStr] Step7 Do CoUninitialize()", "5 WMIGetOSInfo End"));
  wmi.script.Fail("ExecQuery", 0x80041010, 1);
  EXPECT_EQ(Ask(WMIGetOSInfo), "64-bit");
  wmi.script.Fail("ExecQuery", 0x80041010, 2);
  EXPECT_EQ(Ask(WMIGetOSInfo), "Microsoft Windows 11 Pro");
  EXPECT_EQ(OfRows(WMIGetOSInfo, kOs, {{{L"Caption", Number(VT_I4, 5)}}}), "");
}

}  // namespace
}  // namespace vexa::test
