// All inventory exports of the shipped library, on the inventories of the simulated notebook's scenarios and on the
// system's own classes.
#include <winsock2.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <fstream>
#include <iterator>
#include <map>

#include "tests/e2e/firmware_scenario.h"
#include "tests/support/fake_interfaces.h"
#include "vexa/vexa.h"

namespace vexa::test {
namespace {

constexpr uint32_t kCom = 1;

constexpr const char* kTexts[] = {"WMIGet90Number",
                                  "WMIGetBiosManufacture",
                                  "WMIGetBiosReleaseDate",
                                  "WMIGetBiosVersion",
                                  "WMIGetBoardUUID",
                                  "WMIGetCPUInfo",
                                  "WMIGetCardReaderCaption",
                                  "WMIGetComputerFamilyName",
                                  "WMIGetExternMonitorPropList",
                                  "WMIGetGPUInfo",
                                  "WMIGetHDDCaption",
                                  "WMIGetHDDInfo",
                                  "WMIGetHDDList",
                                  "WMIGetHDDModel",
                                  "WMIGetHDDSize",
                                  "WMIGetLCDModel",
                                  "WMIGetMacAddress",
                                  "WMIGetMemFrequency",
                                  "WMIGetMemInfo",
                                  "WMIGetMemManufacture",
                                  "WMIGetMemModel",
                                  "WMIGetMemSize",
                                  "WMIGetModelName",
                                  "WMIGetOSInfo",
                                  "WMIGetPhysicalDiskInfo",
                                  "WMIGetProductName",
                                  "WMIGetSDCardCaption",
                                  "WMIGetSDCardSize",
                                  "WMIGetSN",
                                  "WMIGetSSDList",
                                  "WMIGetSSDModel",
                                  "WMIGetSystemChassisTypes",
                                  "WMIGetType2SN",
                                  "WMIGetWiFiBytesPersec"};
constexpr const char* kNumbers[] = {"WMIGetCPUArchitecture", "WMIGetCPUUsg", "WMIGetExternMonitorNum", "WMIGetGPUUsg",
                                    "WMIGetMonitorBrightness"};
constexpr const char* kUsages[] = {"WMIGetHDDUsage", "WMIGetSSDUsage"};
constexpr size_t kExports = 42;

using Answers = std::map<std::string, std::string>;

std::string Utf8(const wchar_t* text) {
  char narrow[3 * VEXA_INVENTORY_CAPACITY];
  WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow, sizeof narrow, nullptr, nullptr);
  return narrow;
}

struct Library {
  ~Library() { FreeLibrary(module); }
  HMODULE module = LoadLibraryExW(L"C:\\Vexa\\VexaWinIO64.dll", nullptr,
                                  LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
};

class InventoryOnNotebook : public testing::Test {
 protected:
  InventoryOnNotebook() {
    // What an earlier program left would name a Wi-Fi adapter, whose rates then show.
    DeleteFileW(L"C:\\vexa-notebook\\radios.json");
    // Wine's machine has no Wi-Fi: a wired interface, a filter over the Wi-Fi adapter, and the adapter itself.
    interfaces_.list = {{6, 7, true, true}, {71, 40, false, true}, {71, 12, true, true}};
  }

  void Use(const char* scenario) {
    std::ifstream file(std::string(SCENARIO_FOLDER "/") + scenario + ".json", std::ios::binary);
    ASSERT_TRUE(file.good()) << scenario;
    scenario_.Give({std::istreambuf_iterator<char>(file), {}});
  }

  template <typename Function>
  Function* Export(const char* name, Function*) const {
    const auto found = GetProcAddress(library_.module, name);
    EXPECT_NE(found, nullptr) << name;
    return reinterpret_cast<Function*>(found);
  }

  // The answers of all exports.
  Answers Ask() const {
    Answers answers;
    wchar_t text[VEXA_INVENTORY_CAPACITY], second[VEXA_INVENTORY_CAPACITY];
    for (const char* name : kTexts) {
      const auto function = Export(name, &WMIGetSN);
      const uint32_t length = function(text, kCom);
      EXPECT_EQ(length, std::wcslen(text)) << name;
      EXPECT_EQ(function(nullptr, kCom), length) << name;
      answers[name] = Utf8(text);
    }
    for (const char* name : kNumbers) answers[name] = std::to_string(Export(name, &WMIGetCPUUsg)(kCom));
    for (const char* name : kUsages) {
      Export(name, &WMIGetSSDUsage)(text, second, kCom);
      answers[name] = Utf8(text) + "|" + Utf8(second);
    }
    wchar_t* card = nullptr;
    EXPECT_EQ(Export("WMIGetWiFiCardName", &WMIGetWiFiCardName)(&card, kCom), std::wcslen(card));
    answers["WMIGetWiFiCardName"] = Utf8(card);
    CoTaskMemFree(card);
    return answers;
  }

  static void ExpectAnswers(const Answers& found, const Answers& expected) {
    for (const auto& [name, answer] : expected) EXPECT_EQ(found.at(name), answer) << name;
  }

  FirmwareScenario scenario_;
  Library library_;  // freed when its imports are its own again
  FakeInterfaces interfaces_{library_.module};
};

// The shape that the scenarios of one machine have in common.
Answers Healthy() {
  return {
      {"WMIGet90Number", "90NB1A01-M00110"},
      {"WMIGetBiosManufacture", "Vexa Computers Co., Ltd."},
      {"WMIGetBiosReleaseDate", "20250317000000.000000+000"},
      {"WMIGetBiosVersion", "AL14.311"},
      {"WMIGetBoardUUID", "7F1E4C52-8A3B-4D6E-9C01-0A1B2C3D4E5F"},
      {"WMIGetCPUArchitecture", "9"},
      {"WMIGetCPUInfo", "Example(R) Octa(TM) 8-Core 2.8 GHz"},
      {"WMIGetCPUUsg", "7"},
      {"WMIGetCardReaderCaption", "Example USB 2.0 Card Reader"},
      {"WMIGetComputerFamilyName", "Vexa Arclight"},
      {"WMIGetExternMonitorNum", "1"},
      {"WMIGetExternMonitorPropList", "DISPLAY\\EXP2700\\4&1a2b3c4d&0&UID41039_0,vot=5"},
      {"WMIGetGPUInfo", "Example Graphics 780"},
      {"WMIGetGPUUsg", "14"},
      {"WMIGetHDDCaption", "EXAMPLE NVMe 1TB"},
      {"WMIGetHDDInfo", ""},
      {"WMIGetHDDList", ""},
      {"WMIGetHDDModel", ""},
      {"WMIGetHDDSize", "1024203640320"},
      {"WMIGetHDDUsage", "|"},
      {"WMIGetLCDModel", "EX 27 4K"},
      {"WMIGetMacAddress", "02:00:5E:10:00:01;02:00:5E:10:00:02"},
      {"WMIGetMemFrequency", "5200"},
      {"WMIGetMemInfo",
       "Example Memory,EX5-16G-5600,17179869184,5600,Controller0-ChannelA;"
       "Example Memory,EX5-16G-5600,17179869184,5600,Controller1-ChannelA"},
      {"WMIGetMemManufacture", "Example Memory;Example Memory"},
      {"WMIGetMemModel", "EX5-16G-5600;EX5-16G-5600"},
      {"WMIGetMemSize", "17179869184;17179869184"},
      {"WMIGetModelName", "AL14"},
      {"WMIGetMonitorBrightness", "62"},
      {"WMIGetOSInfo", "Microsoft Windows 11 Pro 64-bit"},
      {"WMIGetPhysicalDiskInfo", "EXAMPLE NVMe 1TB,1024209543168,4,0"},
      {"WMIGetProductName", "Vexa Arclight 14"},
      {"WMIGetSDCardCaption", "SDHC Card"},
      {"WMIGetSDCardSize", "31914983424,SDHC Card"},
      {"WMIGetSN", "VXN0CV12345678"},
      {"WMIGetSSDList", "0"},
      {"WMIGetSSDModel", "EXAMPLE NVMe 1TB"},
      {"WMIGetSSDUsage", "71303168,734003200000|E823_8FA6_BF53_0001_001B_448B_4A12_3456."},
      {"WMIGetSystemChassisTypes", "Notebook"},
      {"WMIGetType2SN", "L1N0CX01Y234567E"},
      {"WMIGetWiFiBytesPersec", "0,0"},
      {"WMIGetWiFiCardName", "Vexa Wi-Fi 6E Adapter 160MHz"},
  };
}

TEST_F(InventoryOnNotebook, HealthyNotebooks) {
  Answers expected = Healthy();
  ASSERT_EQ(expected.size(), kExports);
  for (const char* scenario : {"healthy-x64", "no-battery"}) {
    SCOPED_TRACE(scenario);
    Use(scenario);
    EXPECT_EQ(Ask(), expected);
  }
  Use("healthy-arm64");
  expected["WMIGet90Number"] = "90NB1A01-M00220";
  expected["WMIGetBiosVersion"] = "AL14A.207";
  expected["WMIGetBoardUUID"] = "7F1E4C52-8A3B-4D6E-9C01-0A1B2C3D4E6F";
  expected["WMIGetCPUArchitecture"] = "12";
  expected["WMIGetCPUInfo"] = "Example Octa 8-Core ARM64 3.4 GHz";
  expected["WMIGetModelName"] = "AL14A";
  expected["WMIGetOSInfo"] = "Microsoft Windows 11 Pro ARM 64-bit Processor";
  expected["WMIGetProductName"] = "Vexa Arclight 14 A";
  EXPECT_EQ(Ask(), expected);
}

TEST_F(InventoryOnNotebook, NothingThatCanBeLacking) {
  Use("bare-inventory");
  interfaces_.list.clear();
  Answers expected = Healthy();
  for (const char* name :
       {"WMIGet90Number", "WMIGetCardReaderCaption", "WMIGetExternMonitorPropList", "WMIGetGPUInfo", "WMIGetHDDCaption",
        "WMIGetHDDSize", "WMIGetLCDModel", "WMIGetMacAddress", "WMIGetMemInfo", "WMIGetMemManufacture",
        "WMIGetMemModel", "WMIGetMemSize", "WMIGetPhysicalDiskInfo", "WMIGetSDCardCaption", "WMIGetSDCardSize",
        "WMIGetSSDList", "WMIGetSSDModel", "WMIGetWiFiCardName"}) {
    expected[name] = "";
  }
  expected["WMIGetExternMonitorNum"] = "0";
  expected["WMIGetGPUUsg"] = "0";
  expected["WMIGetMemFrequency"] = "-1";
  expected["WMIGetMonitorBrightness"] = "4294967295";
  expected["WMIGetSSDUsage"] = "|";
  expected["WMIGetSystemChassisTypes"] = "unknown";
  EXPECT_EQ(Ask(), expected);
}

TEST_F(InventoryOnNotebook, ManyDisksAndMonitors) {
  Use("full-inventory");
  ExpectAnswers(
      Ask(),
      {{"WMIGetPhysicalDiskInfo",
        "EXAMPLE NVMe 1TB,1000000000000,4,0;EXAMPLE NVMe 2TB,2000000000000,4,1;EXAMPLE SATA 4TB,3000000000000,4,2;"
        "EXAMPLE HDD 8TB,1000000000000,3,3;EXAMPLE HDD 9TB,2000000000000,3,4"},
       {"WMIGetHDDInfo", "EXAMPLE HDD 8TB,1000000000000,3;EXAMPLE HDD 9TB,2000000000000,3"},
       {"WMIGetHDDList", "3;4"},
       {"WMIGetHDDModel", "EXAMPLE HDD 8TB;EXAMPLE HDD 9TB"},
       {"WMIGetSSDList", "0;1;2"},
       {"WMIGetSSDModel", "EXAMPLE NVMe 1TB;EXAMPLE NVMe 2TB;EXAMPLE SATA 4TB"},
       {"WMIGetSSDUsage",
        "1000000000001,1000000000002,1000000000003,1000000000004;900000000001,900000000002,900000000003,900000000004;"
        "800000000001,800000000002,800000000003,800000000004"
        "|E823_8FA6_BF53_0001.;  S5H2NS1X123456  ;50%[x]'\\\"_1"},
       // The disk without a serial number is in neither text.
       {"WMIGetHDDUsage", "700000000001,700000000002,700000000003,700000000004|     WD-WX21D1234567"},
       {"WMIGetHDDSize", "1000000000000;2000000000000;3000000000000;1000000000000;2000000000000"},
       {"WMIGetSDCardCaption", "Empty Reader;SDHC Card;SDXC Card"},
       {"WMIGetSDCardSize", "31914983424,SDHC Card;63864569856,SDXC Card"},
       {"WMIGetExternMonitorNum", "3"},
       {"WMIGetExternMonitorPropList",
        "DISPLAY\\EXP2700\\4&1a2b3c4d&0&UID41039_0,vot=5;DISPLAY\\EXP3201\\4&1a2b3c4d&0&UID41040_0,vot=10;"
        "DISPLAY\\EXP1900\\4&1a2b3c4d&0&UID41041_0,vot=0"},
       {"WMIGetLCDModel", "EX 27 4K;EX 32; curved"},
       {"WMIGetGPUInfo", "Example Graphics 780;Example Discrete Graphics 4060"},
       {"WMIGetGPUUsg", "100"},
       {"WMIGetMemInfo",
        "Example Memory Co., Ltd.,EX5-16G-5600,17179869184,5600,Controller0-ChannelA;"
        "Example Memory,EX5-16G-5600,17179869184,,Controller1-ChannelA"},
       {"WMIGetMemManufacture", "Example Memory Co., Ltd.;Example Memory"},
       {"WMIGetSystemChassisTypes", "Notebook"}});
}

TEST_F(InventoryOnNotebook, RatesOfTheAdapterThatTheWiFiStateNames) {
  wchar_t card[VEXA_WIFI_CARD_NAME_CAPACITY];
  ASSERT_EQ(Export("RF_WiFiCardName", &RF_WiFiCardName)(card), 0u);
  std::string counted = Utf8(card);
  for (char& c : counted) c = c == '(' ? '[' : c == ')' ? ']' : c == '#' || c == '/' || c == '\\' ? '_' : c;
  scenario_.Give(R"({"firmware": {"tables": [{"namespace": "ROOT\\CIMV2",
    "class": "Win32_PerfFormattedData_Tcpip_Networkinterface",
    "properties": {"Name": "string", "BytesReceivedPersec": "uint64", "BytesSentPersec": "uint32"},
    "rows": [{"Name": "other", "BytesReceivedPersec": 1, "BytesSentPersec": 2},
             {"Name": ")" +
                 counted + R"(", "BytesReceivedPersec": 5000000000, "BytesSentPersec": 4294967295}]}]}})");
  // A 32-bit property travels as a signed number.
  EXPECT_EQ(Ask()["WMIGetWiFiBytesPersec"], "5000000000,-1");
}

// What the system that the tests run on answers by itself.
TEST_F(InventoryOnNotebook, ClassesOfTheSystemItself) {
  scenario_.TakeAway();
  const Answers answers = Ask();
  ASSERT_EQ(answers.size(), kExports);
  for (const auto& [name, answer] : answers) {
    const bool answered = !answer.empty() && answer != "4294967295" && answer != "|" && answer != "-1";
    std::printf("%-28s %s %s\n", name.c_str(), answered ? "answers" : "-", answer.c_str());
  }
  for (const char* name :
       {"WMIGetBiosManufacture", "WMIGetBiosReleaseDate", "WMIGetBiosVersion", "WMIGetBoardUUID", "WMIGetCPUInfo",
        "WMIGetGPUInfo", "WMIGetMacAddress", "WMIGetMemInfo", "WMIGetMemSize", "WMIGetModelName", "WMIGetOSInfo",
        "WMIGetProductName", "WMIGetSN", "WMIGetSystemChassisTypes", "WMIGetType2SN"}) {
    EXPECT_NE(answers.at(name), "") << name;
  }
  EXPECT_NE(answers.at("WMIGetMemFrequency"), "-1");
  SYSTEM_INFO system;
  GetNativeSystemInfo(&system);
  EXPECT_EQ(answers.at("WMIGetCPUArchitecture"), std::to_string(system.wProcessorArchitecture));
}

}  // namespace
}  // namespace vexa::test
