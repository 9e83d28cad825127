// All inventory exports of the shipped library, on the inventories of the simulated notebook's scenarios and on the
// system's own classes.
#include <winsock2.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <fstream>
#include <iterator>
#include <map>

#include "tests/e2e/loaded.h"
#include "tests/support/answer_table.h"
#include "tests/support/fake_interfaces.h"

namespace vexa::test {
namespace {

constexpr uint32_t kCom = 1;
constexpr size_t kExports = 42;

std::string Utf8(const wchar_t* text) {
  char narrow[3 * VEXA_INVENTORY_CAPACITY];
  WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow, sizeof narrow, nullptr, nullptr);
  return narrow;
}

class InventoryOnNotebook : public testing::Test {
 protected:
  InventoryOnNotebook() {
    // What an earlier program left would name a Wi-Fi adapter, whose rates then show.
    DeleteFileW(L"C:\\vexa-notebook\\radios.json");
    // Wine's machine has no Wi-Fi: a wired interface, a filter over the Wi-Fi adapter, and the adapter itself.
    interfaces_.list = {{6, 7, true, true}, {71, 40, false, true}, {71, 12, true, true}};
  }

  // As the table writes it, by the kind behind the export's name.
  std::string Ask(const std::string& row) const {
    const std::string name = row.substr(0, row.find(':')), kind = row.substr(name.size());
    EXPECT_NE(GetProcAddress(library_.module(), name.c_str()), nullptr) << name;
    if (kind == ":number") return std::to_string(library_.Export<decltype(WMIGetCPUUsg)>(name)(kCom));
    wchar_t text[VEXA_INVENTORY_CAPACITY], second[VEXA_INVENTORY_CAPACITY];
    if (kind == ":two") {
      library_.Export<decltype(WMIGetSSDUsage)>(name)(text, second, kCom);
      return Utf8(text) + "|" + Utf8(second);
    }
    if (kind == ":allocated") {
      wchar_t* allocated = nullptr;
      EXPECT_EQ(library_.Export<decltype(WMIGetWiFiCardName)>(name)(&allocated, kCom), std::wcslen(allocated));
      const std::string answer = Utf8(allocated);
      CoTaskMemFree(allocated);
      return answer.empty() ? "empty" : answer;
    }
    EXPECT_EQ(library_.Export<decltype(WMIGetSN)>(name)(text, kCom), std::wcslen(text)) << name;
    return *text == L'\0' ? "empty" : Utf8(text);
  }

  const AnswerTable table_{DATA_FOLDER "/inventory.tsv"};
  const ScenarioFile scenario_{L"Firmware", L"inventory-test.json"};
  Loaded library_;  // freed when its imports are its own again
  FakeInterfaces interfaces_{library_.module()};
};

TEST_F(InventoryOnNotebook, OfEveryScenario) {
  ASSERT_EQ(table_.rows.size(), kExports);
  for (const std::string& scenario : table_.scenarios) {
    SCOPED_TRACE(scenario);
    std::ifstream file(SCENARIO_FOLDER "/" + scenario + ".json", std::ios::binary);
    ASSERT_TRUE(file.good());
    scenario_.Use({std::istreambuf_iterator<char>(file), {}});
    if (scenario == "bare-inventory") interfaces_.list.clear();
    for (const auto& [name, values] : table_.rows) {
      const std::string& expected = values[table_.Column(scenario)];
      const std::string answer = Ask(name);
      if (expected != "?") EXPECT_EQ(answer, expected) << name;
    }
  }
}

TEST_F(InventoryOnNotebook, RatesOfTheAdapterThatTheWiFiStateNames) {
  wchar_t card[VEXA_WIFI_CARD_NAME_CAPACITY];
  ASSERT_EQ(library_.Export<decltype(RF_WiFiCardName)>("RF_WiFiCardName")(card), 0u);
  std::string counted = Utf8(card);
  for (char& c : counted) c = c == '(' ? '[' : c == ')' ? ']' : c == '#' || c == '/' || c == '\\' ? '_' : c;
  scenario_.Use(R"({"firmware": {"tables": [{"namespace": "ROOT\\CIMV2",
    "class": "Win32_PerfFormattedData_Tcpip_Networkinterface",
    "properties": {"Name": "string", "BytesReceivedPersec": "uint64", "BytesSentPersec": "uint32"},
    "rows": [{"Name": "other", "BytesReceivedPersec": 1, "BytesSentPersec": 2},
             {"Name": ")" +
                counted + R"(", "BytesReceivedPersec": 5000000000, "BytesSentPersec": 4294967295}]}]}})");
  // A 32-bit property travels as a signed number.
  EXPECT_EQ(Ask("WMIGetWiFiBytesPersec"), "5000000000,-1");
}

// What the system that the tests run on answers by itself.
TEST_F(InventoryOnNotebook, ClassesOfTheSystemItself) {
  scenario_.TakeAway();
  std::map<std::string, std::string> answers;
  for (const auto& row : table_.rows) answers[row.name] = Ask(row.name);
  for (const auto& [name, answer] : answers) {
    const bool answered = answer != "empty" && answer != "4294967295" && answer != "|" && answer != "-1";
    std::printf("%-28s %s %s\n", name.c_str(), answered ? "answers" : "-", answer.c_str());
  }
  for (const char* name :
       {"BiosManufacture", "BiosReleaseDate", "BiosVersion", "BoardUUID", "CPUInfo", "GPUInfo", "MacAddress", "MemInfo",
        "MemSize", "ModelName", "OSInfo", "ProductName", "SN", "SystemChassisTypes", "Type2SN"}) {
    const std::string whole = std::string("WMIGet") + name;
    EXPECT_NE(answers.at(whole), "empty") << name;
    // A null buffer gets the length alone.
    if (whole != "WMIGetMemInfo") continue;
    EXPECT_EQ(library_.Export<decltype(WMIGetSN)>(whole)(nullptr, kCom), answers.at(whole).size());
  }
  EXPECT_NE(answers.at("WMIGetMemFrequency"), "-1");
  SYSTEM_INFO system;
  GetNativeSystemInfo(&system);
  EXPECT_EQ(answers.at("WMIGetCPUArchitecture:number"), std::to_string(system.wProcessorArchitecture));
}

}  // namespace
}  // namespace vexa::test
