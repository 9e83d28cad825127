// The text exports that are one query: one row each.
#include "inventory/answer.h"
#include "vexa/inventory.h"
#include "wmi/query_engine.h"

namespace vexa {
namespace {

struct TextMember {
  const char* name;
  const char* start_line;
  const char* end_line;
  void (*read)(std::wstring& text, const TextMember& member, uint32_t com_flag);
  const wchar_t* name_space;
  const wchar_t* query;
  const wchar_t* properties;  // one, or several with "," between
};

// One value per row.
void Values(std::wstring& text, const TextMember& member, uint32_t com_flag) {
  ReadWMIPropStr(text, member.name_space, member.query, member.properties, com_flag);
}

// Several values per row.
void Records(std::wstring& text, const TextMember& member, uint32_t com_flag) {
  uint32_t rows = 0, values = 0;
  ReadWMIPropStr2(text, member.name_space, member.query, member.properties, rows, values, com_flag);
}

void CardSizes(std::wstring& text, const TextMember& member, uint32_t com_flag) {
  ReadWMIPropStrSDCardSize(text, member.name_space, member.query, com_flag);
}

void Displays(std::wstring& text, const TextMember& member, uint32_t com_flag) {
  ReadWMIPropStrDisplay(text, member.name_space, member.query, com_flag);
}

// The system's caption and its architecture: a query each, a blank between.
void SystemAndArchitecture(std::wstring& text, const TextMember& member, uint32_t com_flag) {
  Values(text, member, com_flag);
  std::wstring architecture;
  ReadWMIPropStr(architecture, member.name_space, member.query, L"OSArchitecture", com_flag);
  if (!text.empty() && !architecture.empty()) text += L' ';
  text += architecture;
}

// Not a part of each export: there are 31 of them.
[[gnu::noinline]] uint32_t Answer(const TextMember& member, wchar_t* text, uint32_t com_flag) noexcept {
  return AnswerText(member.name, member.start_line, member.end_line, text,
                    [&](std::wstring& answer) { member.read(answer, member, com_flag); });
}

constexpr wchar_t kFixedDisks[] = L"select * from Win32_DiskDrive where MediaType='Fixed hard disk media'";
constexpr wchar_t kRemovableDisks[] = L"select * from Win32_DiskDrive where MediaType='Removable Media'";
constexpr wchar_t kHardDisks[] = L"select * from MSFT_PhysicalDisk where mediatype=3";
constexpr wchar_t kSolidStateDisks[] = L"select * from MSFT_PhysicalDisk where mediatype=4";
constexpr wchar_t kMemory[] = L"select * from Win32_PhysicalMemory";
constexpr wchar_t kSystem[] = L"select * from win32_ComputerSystem";
constexpr wchar_t kBios[] = L"select * from Win32_Bios";
constexpr wchar_t kBaseboard[] = L"select * from Win32_Baseboard";

}  // namespace
}  // namespace vexa

// A row of the family: the export, and what TextMember holds behind its name.
#define VEXA_TEXT_MEMBER(export_name, ...)                          \
  uint32_t export_name(wchar_t* text, uint32_t com_flag) noexcept { \
    using namespace vexa;                                           \
    static constexpr TextMember kMember{#export_name, __VA_ARGS__}; \
    return Answer(kMember, text, com_flag);                         \
  }

VEXA_TEXT_MEMBER(WMIGetMacAddress, "WMIGetMacAddress Start", "WMIGetMacAddress End", Values, kCimNamespace,
                 L"select * from win32_NetworkAdapter where physicalAdapter='true'", L"MACAddress")
VEXA_TEXT_MEMBER(WMIGetBoardUUID, "WMIGetBoardUUID Start", "WMIGetBoardUUID End", Values, kCimNamespace,
                 L"select * from Win32_ComputerSystemProduct", L"UUID")
VEXA_TEXT_MEMBER(WMIGetComputerFamilyName, "WMIGetComputerFamilyName Start", "WMIGetComputerFamilyName End", Values,
                 kCimNamespace, kSystem, L"SystemFamily")
VEXA_TEXT_MEMBER(WMIGetPhysicalDiskInfo, "WMIGetPhysicalDiskInfo Start", "WMIGetPhysicalDiskInfo End", Records,
                 kStorageNamespace, L"select * from MSFT_PhysicalDisk where mediatype=3 or mediatype=4",
                 L"Model,Size,MediaType,DeviceId")
VEXA_TEXT_MEMBER(WMIGetHDDInfo, "WMIGetHDDInfo Start", "WMIGetHDDInfo End", Records, kStorageNamespace, kHardDisks,
                 L"Model,Size,MediaType")
VEXA_TEXT_MEMBER(WMIGetGPUInfo, "WMIGetGPUInfo Start", "WMIGetGPUInfo End", Values, kCimNamespace,
                 L"select * from win32_VideoController", L"Caption")
VEXA_TEXT_MEMBER(WMIGetOSInfo, "WMIGetOSInfo Start", "WMIGetOSInfo End", SystemAndArchitecture, kCimNamespace,
                 L"select * from Win32_OperatingSystem", L"Caption")
VEXA_TEXT_MEMBER(WMIGetCPUInfo, "WMIGetCPUInfo Start", "WMIGetCPUInfo End", Values, kCimNamespace,
                 L"select * from Win32_Processor", L"Name")
VEXA_TEXT_MEMBER(WMIGetMemModel, "WMIGetMemModel Start", "WMIGetMemModel End", Values, kCimNamespace, kMemory,
                 L"Partnumber")
// Kept: the lines name another function.
VEXA_TEXT_MEMBER(WMIGetMemInfo, "WMIGetMemProperties Start", "WMIGetMemProperties End", Records, kCimNamespace, kMemory,
                 L"Manufacturer,PartNumber,Capacity,Speed,DeviceLocator")
VEXA_TEXT_MEMBER(WMIGetHDDSize, "WMIGetHDDSize Start", "WMIGetHDDSize End", Values, kCimNamespace, kFixedDisks, L"Size")
VEXA_TEXT_MEMBER(WMIGetHDDCaption, "WMIGetHDDCaption Start", "WMIGetHDDCaption End", Values, kCimNamespace, kFixedDisks,
                 L"Caption")
VEXA_TEXT_MEMBER(WMIGetCardReaderCaption, "WMIGetCardReaderCaption Start", "WMIGetCardReaderCaption End", Values,
                 kCimNamespace, L"select * from Win32_PnpEntity where DeviceID like '%VID_0BDA&PID_0129%'", L"Caption")
VEXA_TEXT_MEMBER(WMIGetSDCardCaption, "WMIGetSDCardCaption Start", "WMIGetSDCardCaption End", Values, kCimNamespace,
                 kRemovableDisks, L"Caption")
// Kept: another spelling of the namespace.
VEXA_TEXT_MEMBER(WMIGetSDCardSize, "WMIGetSDCardSize Start", "WMIGetSDCardSize End", CardSizes, L"root\\Cimv2",
                 kRemovableDisks, L"Size,Caption")
VEXA_TEXT_MEMBER(WMIGetHDDModel, "WMIGetHDDModel Start", "WMIGetHDDModel End", Values, kStorageNamespace, kHardDisks,
                 L"Model")
VEXA_TEXT_MEMBER(WMIGetHDDList, "WMIGetHDDList Start", "WMIGetHDDList End", Values, kStorageNamespace, kHardDisks,
                 L"DeviceId")
VEXA_TEXT_MEMBER(WMIGetSSDModel, "WMIGetSSDModel Start", "WMIGetSSDModel End", Values, kStorageNamespace,
                 kSolidStateDisks, L"Model")
VEXA_TEXT_MEMBER(WMIGetSSDList, "WMIGetSSDList Start", "WMIGetSSDList End", Values, kStorageNamespace, kSolidStateDisks,
                 L"DeviceId")
VEXA_TEXT_MEMBER(WMIGetLCDModel, "WMIGetLCDModel Start", "WMIGetLCDModel End", Values, kWmiNamespace,
                 L"SELECT * FROM WMIMonitorID", L"UserFriendlyName")
VEXA_TEXT_MEMBER(WMIGetExternMonitorPropList, "WMIGetExternMonitorPropList Start", "WMIGetExternMonitorPropList End",
                 Displays, kWmiNamespace,
                 L"SELECT * FROM WmiMonitorConnectionParams WHERE VideoOutputTechnology != 2147483648",
                 L"VideoOutputTechnology,InstanceName")
VEXA_TEXT_MEMBER(WMIGetBiosReleaseDate, "WMIGetBiosReleaseDate Start", "WMIGetBiosReleaseDate End", Values,
                 kCimNamespace, kBios, L"ReleaseDate")
VEXA_TEXT_MEMBER(WMIGetBiosManufacture, "WMIGetBiosManufacture Start", "WMIGetBiosManufacture End", Values,
                 kCimNamespace, kBaseboard, L"Manufacturer")
// Kept: "END" of three members is upper-case.
VEXA_TEXT_MEMBER(WMIGetBiosVersion, "WMIGetBiosVersion Start", "WMIGetBiosVersion END", Values, kCimNamespace, kBios,
                 L"Name")
VEXA_TEXT_MEMBER(WMIGetSN, "WMIGetSN Start", "WMIGetSN END", Values, kCimNamespace, kBios, L"SerialNumber")
VEXA_TEXT_MEMBER(WMIGetType2SN, "WMIGetType2SN Start", "WMIGetType2SN END", Values, kCimNamespace, kBaseboard,
                 L"SerialNumber")
VEXA_TEXT_MEMBER(WMIGetModelName, "WMIGetModelName Start", "WMIGetModelName End", Values, kCimNamespace, kBaseboard,
                 L"Product")
VEXA_TEXT_MEMBER(WMIGetProductName, "WMIGetProductName Start", "WMIGetProductName End", Values, kCimNamespace, kSystem,
                 L"Model")
VEXA_TEXT_MEMBER(WMIGetMemSize, "WMIGetMemSize Start", "WMIGetMemSize End", Values, kCimNamespace, kMemory, L"Capacity")
VEXA_TEXT_MEMBER(WMIGetMemManufacture, "WMIGetMemManufacture Start", "WMIGetMemManufacture End", Values, kCimNamespace,
                 kMemory, L"Manufacturer")
VEXA_TEXT_MEMBER(WMIGet90Number, "WMIGet90Number Start", "WMIGet90Number End", Values, kCimNamespace, kSystem,
                 L"OEMStringArray")
