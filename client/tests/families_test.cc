// The families beside the battery, on exports that answer from a map.
#include "client/families.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>

#include "client/exit_codes.h"
#include "client/keys.h"

namespace vexahealth {
namespace {

struct Library {
  std::map<std::string_view, uint32_t> numbers;
  std::map<std::string_view, std::string> texts;
  std::vector<std::string> calls;
};
Library g_library;

uint32_t NumberFor(std::string_view name, uint32_t otherwise = VEXA_NO_ANSWER) {
  g_library.calls.emplace_back(name);
  const auto found = g_library.numbers.find(name);
  return found == g_library.numbers.end() ? otherwise : found->second;
}

std::string TextFor(std::string_view name) {
  g_library.calls.emplace_back(name);
  return g_library.texts[name];
}

VexaText ValueFor(std::string_view name) {
  VexaText value{};
  const std::string text = TextFor(name);
  std::memcpy(value.text, text.data(), std::min(text.size(), sizeof value.text - 1));
  return value;
}

uint32_t WideFor(std::string_view name, wchar_t* buffer) {
  const std::string text = TextFor(name);
  if (buffer != nullptr) std::copy_n(std::wstring(text.begin(), text.end()).c_str(), text.size() + 1, buffer);
  return static_cast<uint32_t>(text.size());
}

#define NUMBER(name) {#name, reinterpret_cast<AnyExport>(+[]() noexcept -> uint32_t { return NumberFor(#name); })}
#define VALUE(name) {#name, reinterpret_cast<AnyExport>(+[]() noexcept -> VexaText { return ValueFor(#name); })}
#define COM_NUMBER(name) \
  {#name, reinterpret_cast<AnyExport>(+[](uint32_t) noexcept -> uint32_t { return NumberFor(#name); })}
#define COM_TEXT(name)                 \
  {#name, reinterpret_cast<AnyExport>( \
              +[](wchar_t* buffer, uint32_t) noexcept -> uint32_t { return WideFor(#name, buffer); })}

const std::map<std::string_view, AnyExport> kExports = {
    NUMBER(BatteryHealthyTable_ReadVersion),
    NUMBER(BatteryHealthyTable_PackageVoltage),
    NUMBER(BatteryHealthyTable_Temperature),
    NUMBER(Power_Read_ACDCMode),
    NUMBER(Power_PD_Charging),
    NUMBER(Adapter_Read_Standard_Watt),
    NUMBER(Adapter_Read_Contract_PDO),
    NUMBER(Adapter_Read_PDO1),
    NUMBER(Adapter_Read_PDO2),
    NUMBER(Adapter_Read_PD_Get_Source_Cap_Extend_VID),
    NUMBER(Adapter_Read_PD_Get_Emark_VID),
    NUMBER(Adapter_Read_PD_ADO),
    NUMBER(HealthyTable_FanCounts),
    NUMBER(HealthyTable_Read_Cpu_Temperature),
    NUMBER(HealthyTable_Read_BoardTS0L_Temperature),
    NUMBER(EC_ReadEcChipName),
    NUMBER(EC_ReadEcFwRev),
    NUMBER(System_Check_S_Mode),
    NUMBER(RF_WiFiIsConnected),
    NUMBER(RF_WiFiRssi),
    NUMBER(RF_WiFi_2_4G_AP_Num),
    NUMBER(RF_BTIsUsed),
    NUMBER(RF_BTConnectedNum),
    VALUE(RF_WiFi_Main_Aux_Rssi),
    VALUE(RF_WiFi_2_4G_AP_Ch_Num),
    VALUE(RF_WiFi_5G_AP_RSSI_Num),
    VALUE(RF_PhyMode),
    VALUE(RF_BTConnectedType),
    VALUE(RF_USBNum),
    VALUE(RF_USBPort),
    VALUE(RF_Net_Connected_Type),
    COM_NUMBER(WMIGetCPUArchitecture),
    COM_NUMBER(WMIGetMonitorBrightness),
    COM_TEXT(WMIGetSN),
    COM_TEXT(WMIGetCPUInfo),
    COM_TEXT(WMIGetMemFrequency),
    COM_TEXT(WMIGetSDCardCaption),
    {"Quillo_Read_Fan", reinterpret_cast<AnyExport>(+[](int32_t index) noexcept -> uint32_t {
       return NumberFor(index == 0 ? "fan 0" : index == 1 ? "fan 1" : "fan beyond");
     })},
    {"System_Read_VolumeLevel", reinterpret_cast<AnyExport>(+[](uint8_t) noexcept -> int32_t {
       return static_cast<int32_t>(NumberFor("volume"));
     })},
    {"Adapter_Read_PD_IC_PN", reinterpret_cast<AnyExport>(+[](VexaPdIcPartNumber* record) noexcept -> uint32_t {
       const std::string text = TextFor("part");
       record->told_length = NumberFor("told", static_cast<uint32_t>(text.size()));
       record->length = static_cast<uint32_t>(text.size());
       std::memcpy(record->text, text.data(), std::min(text.size(), sizeof record->text));
       return NumberFor("part read", 1);
     })},
    {"RF_WiFiCardName", reinterpret_cast<AnyExport>(+[](wchar_t* name) noexcept -> uint32_t {
       WideFor("card", name);
       return 0;
     })},
    {"RF_AP_MAC", reinterpret_cast<AnyExport>(+[](char* mac) noexcept {
       const std::string text = TextFor("mac");
       std::memcpy(mac, text.c_str(), text.size() + 1);
     })},
    {"WMIGetSSDUsage",
     reinterpret_cast<AnyExport>(+[](wchar_t* free_bytes, wchar_t* serials, uint32_t) noexcept -> uint32_t {
       return std::max(WideFor("ssd free", free_bytes), WideFor("ssd serials", serials));
     })},
    {"WMIGetWiFiCardName", reinterpret_cast<AnyExport>(+[](wchar_t** name, uint8_t) noexcept -> uint32_t {
       const std::string text = TextFor("wifi adapter");
       *name = new wchar_t[text.size() + 1];
       return WideFor("wifi adapter", *name);
     })},
};

#undef COM_TEXT
#undef COM_NUMBER
#undef VALUE
#undef NUMBER

std::string AsItIs(std::string_view text) { return std::string(text); }
std::string Narrowed(std::wstring_view text) { return {text.begin(), text.end()}; }

class FamiliesTest : public testing::Test {
 protected:
  void SetUp() override {
    g_library = {};
    g_library.numbers = {{"BatteryHealthyTable_ReadVersion", 28}, {"BatteryHealthyTable_PackageVoltage", 11405}};
  }

  void Run(const char* command, std::string_view key = {}) {
    g_library.calls.clear();
    readings_ = CollectCommand(*FindCommand(command),
                               {.resolve =
                                    [](const char* name) {
                                      const auto found = kExports.find(name);
                                      return found == kExports.end() ? AnyExport{} : found->second;
                                    },
                                .ready = ready_,
                                .route = route_,
                                .decode = AsItIs,
                                .decode_wide = Narrowed,
                                .free_text = [](wchar_t* text) { delete[] text; },
                                .power_line = [] { return PowerLine::kOffline; }},
                               key);
  }
  const Reading& At(std::string_view key) {
    const Reading* reading = FindReading(readings_, key);
    EXPECT_NE(reading, nullptr) << key;
    return *reading;
  }
  Status StatusOf(std::string_view key) { return At(key).status; }
  Value ValueOf(std::string_view key) { return At(key).value; }
  ptrdiff_t Calls(std::string_view name) { return std::ranges::count(g_library.calls, name); }
  void Set(std::string_view name, uint32_t number) { g_library.numbers[name] = number; }

  bool ready_ = true;
  Route route_ = Route::kDriver;
  std::vector<Reading> readings_;
};

Value Number(int64_t number) { return number; }

TEST_F(FamiliesTest, AContractIsTakenApart) {
  Set("Adapter_Read_Contract_PDO", 0x000641F4);
  Set("Adapter_Read_PDO1", 0x0801912C);
  Set("Adapter_Read_PDO2", 0xDC000000u | (480u << 17) | (150u << 8) | 240u);
  Run("adapter");
  EXPECT_EQ(ValueOf("adapter.contract.word"), Number(0x000641F4));
  EXPECT_EQ(ValueOf("adapter.contract.supply"), Value("fixed"));
  EXPECT_EQ(ValueOf("adapter.contract.min_voltage"), Number(20000));
  EXPECT_EQ(ValueOf("adapter.contract.max_current"), Number(5000));
  EXPECT_EQ(ValueOf("adapter.contract.max_power"), Number(100000));
  EXPECT_EQ(ValueOf("adapter.pdo.2.word"), Number(0xDFC096F0));
  EXPECT_EQ(ValueOf("adapter.pdo.2.max_voltage"), Number(48000));
  EXPECT_EQ(StatusOf("adapter.pdo.2.max_current"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("adapter.pdo.3.word"), Status::kUnsupported);  // no such export here
  EXPECT_EQ(StatusOf("adapter.pdo.3.supply"), Status::kUnsupported);
}

TEST_F(FamiliesTest, WithoutASourceThereIsNothingOfIt) {
  Set("Adapter_Read_Contract_PDO", 0);
  Set("Adapter_Read_PDO1", 0);
  Set("Adapter_Read_PDO2", VEXA_NO_ANSWER);
  Set("Adapter_Read_PD_Get_Source_Cap_Extend_VID", 0);
  Set("Adapter_Read_PD_ADO", 0);
  Run("adapter");
  for (const char* key : {"adapter.contract.word", "adapter.contract.max_power", "adapter.pdo.1.word",
                          "adapter.source.vendor_id", "adapter.alert"}) {
    EXPECT_EQ(StatusOf(key), Status::kNotPresent) << key;
  }
  EXPECT_EQ(StatusOf("adapter.pdo.2.word"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("adapter.pdo.2.supply"), Status::kNoAnswer);
}

TEST_F(FamiliesTest, TheTablesVersionDecidesWhatIsAsked) {
  Set("Adapter_Read_PD_Get_Emark_VID", 0x1D5A);
  Set("Adapter_Read_PDO1", 0x0801912C);
  for (const auto& [version, cable, object, pd] :
       {std::tuple{28u, Status::kOk, Status::kOk, Status::kOk},
        {23u, Status::kOk, Status::kOk, Status::kOk},
        {22u, Status::kUnsupported, Status::kOk, Status::kOk},
        {14u, Status::kUnsupported, Status::kOk, Status::kOk},
        {13u, Status::kUnsupported, Status::kUnsupported, Status::kOk},
        {7u, Status::kUnsupported, Status::kUnsupported, Status::kUnsupported}}) {
    Set("BatteryHealthyTable_ReadVersion", version);
    Set("Power_PD_Charging", 1);
    Run("adapter");
    EXPECT_EQ(StatusOf("cable.vendor_id"), cable) << version;
    EXPECT_EQ(Calls("Adapter_Read_PD_Get_Emark_VID"), cable == Status::kOk ? 1 : 0) << version;
    EXPECT_EQ(StatusOf("adapter.pdo.1.word"), object) << version;
    EXPECT_EQ(StatusOf("adapter.pd_charging"), pd) << version;
  }
}

TEST_F(FamiliesTest, WattagesAreAskedWhateverTheVersion) {
  for (const auto& [answer, status] : {std::pair{65u, Status::kOk},
                                       {VEXA_NOT_AVAILABLE, Status::kUnsupported},
                                       {VEXA_NO_ANSWER, Status::kNoAnswer},
                                       {70000u, Status::kError}}) {
    for (const Route route : {Route::kDriver, Route::kFirmware}) {
      route_ = route;
      Set("Adapter_Read_Standard_Watt", answer);
      Set("BatteryHealthyTable_ReadVersion", VEXA_NO_ANSWER);
      Run("adapter");
      EXPECT_EQ(StatusOf("adapter.standard_power"), status) << answer;
    }
  }
  EXPECT_EQ(StatusOf("adapter.pdo.1.word"), Status::kUnsupported);  // the firmware has none

  // What the firmware answers for a device that it does not know, cut to 16 bits. The EC may mean it.
  Set("Adapter_Read_Standard_Watt", 65534);
  Run("adapter");
  EXPECT_EQ(StatusOf("adapter.standard_power"), Status::kUnsupported);
  Set("Adapter_Read_Standard_Watt", 65533);
  Run("adapter");
  EXPECT_EQ(ValueOf("adapter.standard_power"), Number(65533));
  route_ = Route::kDriver;
  Set("Adapter_Read_Standard_Watt", 65534);
  Run("adapter");
  EXPECT_EQ(ValueOf("adapter.standard_power"), Number(65534));
}

TEST_F(FamiliesTest, PowerLineHasThreeStates) {
  for (const auto& [line, value, status] : {std::tuple{0u, Value(false), Status::kOk},
                                            {1u, Value(true), Status::kOk},
                                            {255u, Value(), Status::kNoAnswer},
                                            {7u, Value(), Status::kError}}) {
    Set("Power_Read_ACDCMode", line);
    Run("adapter");
    EXPECT_EQ(ValueOf("adapter.online"), value) << line;
    EXPECT_EQ(StatusOf("adapter.online"), status) << line;
  }
}

TEST_F(FamiliesTest, ThePartNumberKeepsToItsRecord) {
  g_library.texts["part"] = "VXPD5126";
  Run("adapter");
  EXPECT_EQ(ValueOf("adapter.controller_part"), Value("VXPD5126"));
  Set("told", 200);
  Run("adapter");
  EXPECT_EQ(At("adapter.controller_part").note, "longer than the record: cut");
  Set("told", 2);
  Run("adapter");
  EXPECT_EQ(StatusOf("adapter.controller_part"), Status::kError);
  g_library.numbers.erase("told");
  g_library.texts["part"] = std::string(64, 'x');
  Run("adapter");
  EXPECT_EQ(StatusOf("adapter.controller_part"), Status::kError);
  g_library.texts["part"].clear();
  Run("adapter");
  EXPECT_EQ(StatusOf("adapter.controller_part"), Status::kNotPresent);
  Set("part read", 0);
  Run("adapter");
  EXPECT_EQ(StatusOf("adapter.controller_part"), Status::kNoAnswer);
}

TEST_F(FamiliesTest, AsManyFansAsTheMachineHas) {
  Set("HealthyTable_FanCounts", 2);
  Set("fan 0", 3120);
  Set("fan 1", 0);
  Run("thermal");
  EXPECT_EQ(ValueOf("fan.1.speed"), Number(3120));
  EXPECT_EQ(ValueOf("fan.2.speed"), Number(0));
  EXPECT_EQ(At("fan.2.speed").note, "the fan stands still");
  EXPECT_EQ(StatusOf("fan.3.speed"), Status::kNotPresent);
  EXPECT_EQ(Calls("fan beyond"), 0);

  Set("fan 0", VEXA_NO_ANSWER);
  Set("fan 1", 0x10000);
  Run("thermal");
  EXPECT_EQ(StatusOf("fan.1.speed"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("fan.2.speed"), Status::kError);

  Set("HealthyTable_FanCounts", VEXA_NO_ANSWER);
  Run("thermal");
  EXPECT_EQ(StatusOf("fan.1.speed"), Status::kNoAnswer);
  EXPECT_EQ(Calls("fan 0"), 0);

  route_ = Route::kFirmware;
  Set("HealthyTable_FanCounts", 2);
  Set("fan 0", 2500);
  Run("thermal");
  EXPECT_EQ(ValueOf("fan.1.speed"), Number(2500));
  EXPECT_EQ(StatusOf("fan.2.speed"), Status::kUnsupported);
  EXPECT_EQ(Calls("fan 1"), 0);
}

TEST_F(FamiliesTest, TemperaturesOfZero) {
  Set("HealthyTable_Read_Cpu_Temperature", 0);
  Set("HealthyTable_Read_BoardTS0L_Temperature", 0);
  Run("thermal");
  EXPECT_EQ(ValueOf("temperature.cpu"), Number(0));
  EXPECT_EQ(StatusOf("temperature.board"), Status::kNotPresent);
  route_ = Route::kFirmware;
  Run("thermal");
  EXPECT_EQ(ValueOf("temperature.board"), Number(0));
}

TEST_F(FamiliesTest, IdentityAndSystemBelongToTheStatus) {
  Set("EC_ReadEcChipName", 0x56583839);
  Set("EC_ReadEcFwRev", 0x4142);
  Set("volume", 33);
  Set("System_Check_S_Mode", 1);
  Run("status");
  EXPECT_EQ(ValueOf("ec.kept_chip_name"), Value("VX89"));
  EXPECT_EQ(ValueOf("ec.firmware_revision"), Value("AB"));
  EXPECT_EQ(ValueOf("system.volume"), Number(33));
  EXPECT_EQ(ValueOf("system.s_mode"), Value(true));
  for (const uint32_t none : {VEXA_NO_FIRMWARE_REVISION, VEXA_UNKNOWN_FIRMWARE_REVISION}) {
    Set("EC_ReadEcFwRev", none);
    Run("status");
    EXPECT_EQ(StatusOf("ec.firmware_revision"), Status::kUnsupported);
  }
  Set("EC_ReadEcFwRev", 0x4142);
  Set("EC_ReadEcChipName", VEXA_NO_ANSWER);
  for (const auto& [route, status] :
       {std::pair{Route::kDriver, Status::kNoAnswer}, {Route::kFirmware, Status::kUnsupported}}) {
    route_ = route;
    Run("status");
    EXPECT_EQ(StatusOf("ec.kept_chip_name"), status);
    EXPECT_EQ(ValueOf("ec.firmware_revision"), Value("AB"));
  }
  route_ = Route::kDriver;
  Set("volume", static_cast<uint32_t>(VEXA_NO_VOLUME));
  Run("status");
  EXPECT_EQ(StatusOf("system.volume"), Status::kNotPresent);
  Set("volume", 101);
  Run("status");
  EXPECT_EQ(StatusOf("system.volume"), Status::kError);
}

TEST_F(FamiliesTest, TheSystemAloneIsNoNews) {
  Report report{.library = {.loaded = true, .ready = true, .route = Route::kDriver}, .readings = {}, .error = {}};
  g_library.numbers = {{"volume", 33},
                       {"System_Check_S_Mode", 0},
                       {"Power_Read_ACDCMode", 1},
                       {"EC_ReadEcChipName", 0x56583839},
                       {"EC_ReadEcFwRev", 0x4142}};
  Run("status");
  report.readings = readings_;
  EXPECT_EQ(ExitCodeFor(report), kExitNoReadings);
  g_library.numbers["HealthyTable_Read_Cpu_Temperature"] = 50;
  g_library.numbers["BatteryHealthyTable_ReadVersion"] = 28;
  Run("status");
  report.readings = readings_;
  EXPECT_EQ(ExitCodeFor(report), kExitOk);
}

TEST_F(FamiliesTest, RadioMarkersAreNoValues) {
  Set("RF_WiFiIsConnected", VEXA_NOT_COLLECTED);
  Set("RF_WiFiRssi", VEXA_COLLECT_FAILED);
  Set("RF_WiFi_2_4G_AP_Num", 0xFFFFFF00);
  g_library.texts = {{"card", "init_string"},
                     {"mac", "error_string"},
                     {"RF_WiFi_Main_Aux_Rssi", "0:0"},
                     {"RF_PhyMode", ""},
                     {"RF_WiFi_2_4G_AP_Ch_Num", "init_string"}};
  Run("radio");
  EXPECT_EQ(StatusOf("wifi.connected"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("wifi.card"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("wifi.rssi"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("wifi.access_point_vendor"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("wifi.rssi_main"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("wifi.phy"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("wifi.band24.channel.6"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("wifi.band24.count"), Status::kError);
}

TEST_F(FamiliesTest, CountsComeOutOfTheirTexts) {
  Set("RF_WiFiRssi", static_cast<uint32_t>(-52));
  g_library.texts = {{"RF_WiFi_2_4G_AP_Ch_Num", R"({"ch1":"3","ch11":"0","ch6":"2","others":"1"})"},
                     {"RF_WiFi_5G_AP_RSSI_Num", R"({"-10~-20":"1","-50~-60":"7","-90~-100":"2"})"},
                     {"RF_WiFi_Main_Aux_Rssi", "-52:-58"},
                     {"RF_USBNum", R"({"usb2_0":"1","usb2_1":"0","usb3_0":"0","usb3_1":"2","usb3_2":"0"})"},
                     {"RF_Net_Connected_Type", "WIFI"},
                     {"mac", "00:11:22"},
                     {"card", "Wi-Fi 6"}};
  Run("radio");
  EXPECT_EQ(ValueOf("wifi.rssi"), Number(-52));
  EXPECT_EQ(ValueOf("wifi.rssi_main"), Number(-52));
  EXPECT_EQ(ValueOf("wifi.rssi_aux"), Number(-58));
  EXPECT_EQ(ValueOf("wifi.band24.channel.1"), Number(3));
  EXPECT_EQ(ValueOf("wifi.band24.channel.6"), Number(2));
  EXPECT_EQ(ValueOf("wifi.band24.channel.11"), Number(0));
  EXPECT_EQ(ValueOf("wifi.band24.other_channels"), Number(1));
  EXPECT_EQ(ValueOf("wifi.band5.rssi.10"), Number(1));
  EXPECT_EQ(ValueOf("wifi.band5.rssi.50"), Number(7));
  EXPECT_EQ(ValueOf("wifi.band5.rssi.90"), Number(2));
  EXPECT_EQ(StatusOf("wifi.band5.rssi.20"), Status::kError);  // not in the text
  EXPECT_EQ(ValueOf("usb.storage.usb20"), Number(1));
  EXPECT_EQ(ValueOf("usb.storage.usb31"), Number(2));
  EXPECT_EQ(ValueOf("network.link"), Value("WIFI"));
  EXPECT_EQ(ValueOf("wifi.access_point_vendor"), Value("00:11:22"));
  EXPECT_EQ(Calls("RF_USBNum"), 1);
  EXPECT_EQ(Calls("BatteryHealthyTable_ReadVersion"), 0);  // radios need no EC
}

TEST_F(FamiliesTest, BrokenCountsAreErrors) {
  for (const char* text : {"{\"ch1\":3}", "[]", "{", "", "{\"ch1\":\"-1\"}", "{\"ch1\":\"1x\"}", "null",
                           "{\"ch1\":\"99999999999\"}", "{\"ch1\":\"\"}"}) {
    g_library.texts["RF_WiFi_2_4G_AP_Ch_Num"] = text;
    g_library.texts["RF_WiFi_Main_Aux_Rssi"] = "-52";
    Run("radio");
    EXPECT_EQ(StatusOf("wifi.band24.channel.1"), Status::kError) << text;
    EXPECT_EQ(StatusOf("wifi.rssi_aux"), Status::kError);
  }
}

TEST_F(FamiliesTest, InventoryTellsAbsenceFromFailure) {
  g_library.texts = {{"WMIGetSN", "S/N 1"},
                     {"WMIGetMemFrequency", "5600"},
                     {"ssd free", "5,7;"},
                     {"ssd serials", "A;B"},
                     {"wifi adapter", "Wi-Fi 6"}};
  Set("WMIGetCPUArchitecture", 12);
  Set("WMIGetMonitorBrightness", VEXA_NOT_AVAILABLE);
  Run("inventory");
  EXPECT_EQ(ValueOf("inventory.serial_number"), Value("S/N 1"));
  EXPECT_EQ(ValueOf("inventory.memory_speed"), Number(5600));
  EXPECT_EQ(ValueOf("inventory.cpu_architecture"), Value("ARM64"));
  EXPECT_EQ(ValueOf("inventory.ssd_free"), Value("5,7;"));
  EXPECT_EQ(ValueOf("inventory.ssd_serial_numbers"), Value("A;B"));
  EXPECT_EQ(ValueOf("inventory.wifi_adapter"), Value("Wi-Fi 6"));
  EXPECT_EQ(StatusOf("inventory.cpu"), Status::kNoAnswer);
  EXPECT_EQ(StatusOf("inventory.removable_disks"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("inventory.brightness"), Status::kNotPresent);
  EXPECT_EQ(StatusOf("inventory.hdd_free"), Status::kUnsupported);
  g_library.texts["WMIGetMemFrequency"] = "-1";
  Run("inventory");
  EXPECT_EQ(StatusOf("inventory.memory_speed"), Status::kNoAnswer);
}

TEST_F(FamiliesTest, ALongAnswerFindsRoom) {
  g_library.texts["WMIGetSN"] = std::string(200000, 'x');
  Run("inventory", "inventory.serial_number");
  ASSERT_EQ(readings_.size(), 1u);
  EXPECT_EQ(ValueOf("inventory.serial_number"), Value(std::string(200000, 'x')));
}

TEST_F(FamiliesTest, OneKeyAsksNoOtherQuery) {
  g_library.texts["WMIGetCPUInfo"] = "CPU";
  Run("status", "inventory.cpu");
  ASSERT_EQ(readings_.size(), 1u);
  EXPECT_EQ(At("inventory.cpu").value, Value("CPU"));
  for (const std::string& call : g_library.calls) EXPECT_EQ(call, "WMIGetCPUInfo");
}

TEST_F(FamiliesTest, ALibraryThatIsNotReadyLeavesTheShape) {
  ready_ = false;
  Run("all");
  size_t rows = 0;
  for (const Family& family : Families()) rows += family.rows.size();
  EXPECT_EQ(readings_.size(), rows);
  EXPECT_EQ(StatusOf("fan.1.speed"), Status::kNotCollected);
  EXPECT_EQ(StatusOf("adapter.controller_part"), Status::kNotCollected);
}

TEST_F(FamiliesTest, EveryCommandPromisesTheSameKeysWhateverHappens) {
  for (const Command& command : Commands()) {
    Run(std::string(command.name).c_str());
    const std::vector<Reading> nothing = NothingOf(command, "why");
    ASSERT_EQ(readings_.size(), nothing.size()) << command.name;
    for (size_t i = 0; i < nothing.size(); ++i) EXPECT_EQ(readings_[i].row, nothing[i].row) << command.name;
  }
}

TEST(Keys, NoKeyStandsTwiceAndEveryOneIsInACommand) {
  std::map<std::string_view, int> seen;
  for (const Family& family : Families()) {
    for (const Row& row : family.rows) {
      EXPECT_EQ(++seen[row.key], 1) << row.key;
      EXPECT_EQ(FindRow(row.key), &row);
      const bool shown = std::ranges::any_of(Commands(), [&row](const Command& command) {
        return command.name != "all" && std::ranges::find(command.sections, row.section) != command.sections.end();
      });
      EXPECT_TRUE(shown) << row.key;
    }
  }
}

}  // namespace
}  // namespace vexahealth
