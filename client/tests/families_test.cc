// The families beside the battery, on exports that answer from a map.
#include "client/families.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "client/exit_codes.h"
#include "client/keys.h"
#include "client/tests/fake_library.h"

namespace vexahealth {
namespace {

using enum Status;

struct Case {
  const char* command;
  Route route;
  std::vector<std::pair<std::string_view, uint32_t>> numbers;  // of a notebook with table 28 that answers nothing else
  std::vector<std::pair<std::string_view, const char*>> texts;
  std::vector<Expected> expected;
};

constexpr uint32_t kTo48V = 0xDC000000u | (480u << 17) | (150u << 8) | 240u;

const std::string k64 = std::string(64, 'x');
const char* const k64Characters = k64.c_str();

// clang-format off: a case in few lines
const Case kCases[] = {
    // Power data objects are taken apart; without a first one there is no source, and nothing of it.
    {"adapter", kDriver,
     {{"adapter.contract.word", 0x000641F4}, {"adapter.pdo.1.word", 0x0801912C}, {"adapter.pdo.2.word", kTo48V},
      {"adapter.source.temperature", 0}},
     {},
     {{"adapter.contract.word", 0x000641F4}, {"adapter.contract.supply", "fixed"},
      {"adapter.contract.min_voltage", 20000},
      {"adapter.contract.max_current", 5000}, {"adapter.contract.max_power", 100000},
      {"adapter.pdo.2.word", int64_t{kTo48V}},
      {"adapter.pdo.2.max_voltage", 48000}, {"adapter.pdo.2.max_current", kNotPresent},
      {"adapter.pdo.3.word", kNoAnswer},
      {"adapter.pdo.3.supply", kNoAnswer}, {"adapter.source.temperature", kNoAnswer}}},
    {"adapter", kDriver,
     {{"adapter.contract.word", 0}, {"adapter.pdo.1.word", 0}, {"adapter.source.vendor_id", 0}, {"adapter.alert", 0},
      {"adapter.source.temperature", 0}},
     {},
     {{"adapter.contract.word", kNotPresent}, {"adapter.contract.max_power", kNotPresent},
      {"adapter.pdo.1.word", kNotPresent},
      {"adapter.source.vendor_id", kNotPresent}, {"adapter.alert", kNotPresent},
      {"adapter.source.temperature", kNotPresent}}},
    {"adapter", kFirmware, {}, {}, {{"adapter.pdo.1.word", kUnsupported}}},

    // Wattages are asked whatever the version. What the firmware answers for a device that it does not know is 65534,
    // cut to 16 bits; the EC may mean it.
    {"adapter", kDriver, {{"ec.table_version", kSilent}, {"adapter.standard_power", 65}}, {},
     {{"adapter.standard_power", 65}}},
    {"adapter", kDriver, {{"adapter.standard_power", kAllOnes}}, {}, {{"adapter.standard_power", kUnsupported}}},
    {"adapter", kDriver, {{"adapter.standard_power", 70000}}, {}, {{"adapter.standard_power", kError}}},
    {"adapter", kDriver, {{"adapter.standard_power", 65534}}, {}, {{"adapter.standard_power", 65534}}},
    {"adapter", kFirmware, {{"adapter.standard_power", 65534}}, {}, {{"adapter.standard_power", kUnsupported}}},
    {"adapter", kFirmware, {{"adapter.standard_power", 65533}}, {}, {{"adapter.standard_power", 65533}}},
    {"adapter", kFirmware, {{"adapter.standard_power", kAllOnes}}, {}, {{"adapter.standard_power", kUnsupported}}},
    {"adapter", kFirmware, {{"adapter.standard_power", kSilent}}, {}, {{"adapter.standard_power", kNoAnswer}}},

    {"adapter", kDriver, {{"adapter.online", 0}}, {}, {{"adapter.online", false}}},
    {"adapter", kDriver, {{"adapter.online", 1}}, {}, {{"adapter.online", true}}},
    {"adapter", kDriver, {{"adapter.online", 255}}, {}, {{"adapter.online", kNoAnswer}}},

    // The part number keeps to its record.
    {"adapter", kDriver, {}, {{"adapter.controller_part", "VXPD5126"}}, {{"adapter.controller_part", "VXPD5126"}}},
    {"adapter", kDriver, {{"told length", 200}}, {{"adapter.controller_part", "VX"}},
     {{"adapter.controller_part", "VX"}}},
    {"adapter", kDriver, {{"told length", 1}}, {{"adapter.controller_part", "VX"}},
     {{"adapter.controller_part", kError}}},
    {"adapter", kDriver, {}, {{"adapter.controller_part", k64Characters}}, {{"adapter.controller_part", kError}}},
    {"adapter", kDriver, {}, {}, {{"adapter.controller_part", kNotPresent}}},
    {"adapter", kDriver, {{"adapter.controller_part", 0}}, {}, {{"adapter.controller_part", kNoAnswer}}},

    // As many fans as the machine has; the firmware tells one speed.
    {"thermal", kDriver, {{"fan.count", 2}, {"Quillo_Read_Fan 0", 3120}, {"Quillo_Read_Fan 1", 0}}, {},
     {{"fan.1.speed", 3120}, {"fan.2.speed", 0}, {"fan.3.speed", kNotPresent}}},
    {"thermal", kDriver, {{"fan.count", 2}, {"Quillo_Read_Fan 1", 0x10000}}, {},
     {{"fan.1.speed", kNoAnswer}, {"fan.2.speed", kError}}},
    {"thermal", kDriver, {{"Quillo_Read_Fan 0", 3120}}, {}, {{"fan.1.speed", kNoAnswer}}},
    {"thermal", kFirmware, {{"fan.count", 2}, {"Quillo_Read_Fan 0", 2500}}, {},
     {{"fan.1.speed", 2500}, {"fan.2.speed", kUnsupported}}},
    {"thermal", kDriver, {{"temperature.cpu", 0}, {"temperature.board", 0}}, {},
     {{"temperature.cpu", 0}, {"temperature.board", kNotPresent}}},
    {"thermal", kFirmware, {{"temperature.board", 0}}, {}, {{"temperature.board", 0}}},

    {"status", kDriver,
     {{"ec.kept_chip_name", 0x56583839}, {"ec.firmware_revision", 0x4142}, {"system.volume", 33},
      {"system.s_mode", 1}}, {},
     {{"ec.kept_chip_name", "VX89"}, {"ec.firmware_revision", "AB"}, {"system.volume", 33}, {"system.s_mode", true}}},
    {"status", kDriver, {{"ec.firmware_revision", VEXA_NO_FIRMWARE_REVISION}, {"system.volume", 101}}, {},
     {{"ec.firmware_revision", kUnsupported}, {"ec.kept_chip_name", kNoAnswer}, {"system.volume", kError},
      {"system.companion_app_version", kNotPresent}}},
    {"status", kFirmware,
     {{"ec.firmware_revision", VEXA_UNKNOWN_FIRMWARE_REVISION},
      {"system.volume", static_cast<uint32_t>(VEXA_NO_VOLUME)}},
     {{"system.companion_app_version", "1.2.3.4"}},
     {{"ec.firmware_revision", kUnsupported}, {"ec.kept_chip_name", kUnsupported}, {"system.volume", kNotPresent},
      {"system.companion_app_version", "1.2.3.4"}}},

    // Markers of the radios are no values; counts come out of their texts.
    {"radio", kDriver,
     {{"wifi.connected", VEXA_NOT_COLLECTED}, {"wifi.rssi", VEXA_COLLECT_FAILED}, {"wifi.band24.count", 0xFFFFFF00},
      {"bluetooth.used", VEXA_NOT_COLLECTED}},
     {{"wifi.card", "init_string"}, {"wifi.access_point_vendor", "error_string"}, {"wifi.rssi_main", "0:0"},
      {"wifi.band24.channel.6", "init_string"}, {"network.link", "Unknow"}},
     {{"wifi.connected", kNotPresent}, {"wifi.card", kNotPresent}, {"wifi.rssi", kNoAnswer},
      {"wifi.access_point_vendor", kNoAnswer}, {"wifi.rssi_main", kNotPresent}, {"wifi.phy", kNotPresent},
      {"wifi.band24.channel.6", kNotPresent}, {"wifi.band24.count", kError}, {"bluetooth.used", kNotPresent},
      {"network.link", kNotPresent}, {"usb.storage.ports", kNotPresent}}},
    {"radio", kDriver, {{"wifi.connected", VEXA_COLLECT_FAILED}, {"wifi.band5.count", VEXA_NOT_COLLECTED}},
     {{"wifi.rssi_main", "0:0"}},
     {{"wifi.connected", kNoAnswer}, {"wifi.band5.count", kNoAnswer}, {"wifi.rssi_main", kNoAnswer}}},
    {"radio", kDriver,
     {{"wifi.connected", 1}, {"wifi.channel", VEXA_NOT_COLLECTED}, {"wifi.band5.count", VEXA_NOT_COLLECTED}},
     {{"wifi.access_point_vendor", "00:11:22"}, {"wifi.rssi_main", "0:0"}},
     {{"wifi.channel", kNoAnswer}, {"wifi.band5.count", kNotCollected}, {"wifi.rssi_main", kNotCollected}}},
    {"radio", kDriver, {{"wifi.rssi", static_cast<uint32_t>(-52)}},
     {{"wifi.band24.channel.1", R"({"ch1":"3","ch11":"0","ch6":"2","others":"1"})"},
      {"wifi.band5.rssi.10", R"({"-10~-20":"1","-50~-60":"7","-90~-100":"2"})"},
      {"wifi.rssi_main", "-52:-58"},
      {"usb.storage.usb20", R"({"usb2_0":"1","usb2_1":"0","usb3_0":"0","usb3_1":"2","usb3_2":"0"})"},
      {"network.link", "WIFI"}, {"wifi.access_point_vendor", "00:11:22"}, {"wifi.card", "Wi-Fi 6"}},
     {{"wifi.rssi", -52}, {"wifi.rssi_main", -52}, {"wifi.rssi_aux", -58}, {"wifi.band24.channel.1", 3},
      {"wifi.band24.channel.6", 2}, {"wifi.band24.channel.11", 0}, {"wifi.band24.other_channels", 1},
      {"wifi.band5.rssi.10", 1}, {"wifi.band5.rssi.50", 7}, {"wifi.band5.rssi.90", 2},
      {"wifi.band5.rssi.20", kError},  // not in the text
      {"usb.storage.usb20", 1}, {"usb.storage.usb31", 2}, {"network.link", "WIFI"},
      {"wifi.access_point_vendor", "00:11:22"}, {"wifi.card", "Wi-Fi 6"}}},

    // What a machine may lack is absent when its query tells nothing.
    {"inventory", kDriver, {{"inventory.cpu_architecture", 12}, {"inventory.brightness", kAllOnes}},
     {{"inventory.serial_number", "S/N 1"}, {"inventory.memory_speed", "5600"}, {"inventory.ssd_free", "5,7;"},
      {"WMIGetSSDUsage 2", "A;B"}, {"inventory.wifi_adapter", "Wi-Fi 6"}},
     {{"inventory.serial_number", "S/N 1"}, {"inventory.memory_speed", 5600}, {"inventory.cpu_architecture", "ARM64"},
      {"inventory.ssd_free", "5,7;"}, {"inventory.ssd_serial_numbers", "A;B"}, {"inventory.wifi_adapter", "Wi-Fi 6"},
      {"inventory.cpu", kNoAnswer}, {"inventory.removable_disks", kNotPresent}, {"inventory.brightness", kNotPresent},
      {"inventory.hdd_free", kNotPresent}}},
    {"inventory", kDriver, {}, {{"inventory.memory_speed", "-1"}}, {{"inventory.memory_speed", kNoAnswer}}},
};
// clang-format on

class FamiliesTest : public testing::Test {
 protected:
  void SetUp() override {
    TheScript() = {};
    TheScript()["ec.table_version"] = 28;
    TheScript()["battery.voltage"] = 11405;
  }

  void Run(const char* command, std::string_view key = {}) {
    TheScript().calls.clear();
    const vexa::Library library = FakeLibrary();
    report_ = {.library = {.loaded = true, .ready = true, .route = scene_.route},
               .readings = CollectCommand(*FindCommand(command), ContextFor(library, scene_), key),
               .error = {}};
  }
  const Reading& At(std::string_view key) {
    const Reading* reading = FindReading(report_.readings, key);
    EXPECT_NE(reading, nullptr) << key;
    return *reading;
  }
  Status StatusOf(std::string_view key) { return At(key).status; }

  Scene scene_;
  Report report_;
};

TEST_F(FamiliesTest, WhatBecomesOfEachAnswer) {
  int number = 0;
  for (const Case& test : kCases) {
    SetUp();
    scene_.route = test.route;
    for (const auto& [key, answer] : test.numbers) TheScript()[key] = answer;
    for (const auto& [key, text] : test.texts) TheScript().SetText(key, text);
    Run(test.command);
    ++number;
    for (const Expected& expected : test.expected) expected.Check(report_.readings, std::to_string(number));
  }
}

TEST_F(FamiliesTest, TheTablesVersionDecidesWhatIsAsked) {
  TheScript()["cable.vendor_id"] = 0x1D5A;
  TheScript()["adapter.pdo.1.word"] = 0x0801912C;
  TheScript()["adapter.pd_charging"] = 1;
  for (const auto& [version, cable, object, pd] : {std::tuple{23u, kOk, kOk, kOk},
                                                   {22u, kUnsupported, kOk, kOk},
                                                   {14u, kUnsupported, kOk, kOk},
                                                   {13u, kUnsupported, kUnsupported, kOk},
                                                   {7u, kUnsupported, kUnsupported, kUnsupported}}) {
    TheScript()["ec.table_version"] = version;
    Run("adapter");
    EXPECT_EQ(StatusOf("cable.vendor_id"), cable) << version;
    EXPECT_EQ(TheScript().Called("Adapter_Read_PD_Get_Emark_VID"), cable == kOk) << version;
    EXPECT_EQ(StatusOf("adapter.pdo.1.word"), object) << version;
    EXPECT_EQ(StatusOf("adapter.pd_charging"), pd) << version;
  }
}

TEST_F(FamiliesTest, TheSystemAloneIsNoNews) {
  TheScript() = {};
  for (const auto& [key, number] : {std::pair{"system.volume", 33u},
                                    {"system.s_mode", 0u},
                                    {"system.tablet_mode", 0u},  // a constant of some boards
                                    {"adapter.online", 1u},
                                    {"ec.kept_chip_name", 0x56583839u},
                                    {"ec.firmware_revision", 0x4142u}}) {
    TheScript()[key] = number;
  }
  Run("status");
  EXPECT_EQ(ExitCodeFor(report_), kExitNoReadings);
  TheScript()["temperature.cpu"] = 50;
  TheScript()["ec.table_version"] = 28;
  Run("status");
  EXPECT_EQ(ExitCodeFor(report_), kExitOk);
}

TEST_F(FamiliesTest, WhatIsNotThereIsNotAsked) {
  TheScript()["fan.count"] = 1;
  Run("thermal");
  EXPECT_TRUE(TheScript().Called("Quillo_Read_Fan 0"));
  EXPECT_FALSE(TheScript().Called("Quillo_Read_Fan 1"));
  Run("radio");
  EXPECT_EQ(TheScript().Calls("RF_USBNum"), 1);                         // five rows, one answer
  EXPECT_FALSE(TheScript().Called("BatteryHealthyTable_ReadVersion"));  // radios need no EC
  TheScript().missing = {"Adapter_Read_PD_IC_PN", "Quillo_Read_Fan"};
  Run("status");
  EXPECT_EQ(StatusOf("adapter.controller_part"), kUnsupported);
  EXPECT_EQ(StatusOf("fan.1.speed"), kUnsupported);
}

TEST_F(FamiliesTest, BrokenCountsAreErrors) {
  for (const char* text : {"{\"ch1\":3}", "[]", "{", "", "{\"ch1\":\"-1\"}", "{\"ch1\":\"1x\"}", "null",
                           "{\"ch1\":\"99999999999\"}", "{\"ch1\":\"\"}"}) {
    TheScript().SetText("wifi.band24.channel.1", text);
    TheScript().SetText("wifi.rssi_main", "-52");
    Run("radio");
    EXPECT_EQ(StatusOf("wifi.band24.channel.1"), kError) << text;
    EXPECT_EQ(StatusOf("wifi.rssi_aux"), kError);
  }
}

TEST_F(FamiliesTest, ALongAnswerFindsRoom) {
  TheScript().SetText("inventory.serial_number", std::string(200000, 'x'));
  Run("inventory", "inventory.serial_number");
  EXPECT_EQ(At("inventory.serial_number").value, Value(std::string(200000, 'x')));
}

TEST_F(FamiliesTest, OneKeyAsksNoOtherQuery) {
  TheScript().SetText("inventory.cpu", "CPU");
  Run("status", "inventory.cpu");
  ASSERT_EQ(report_.readings.size(), 1u);
  EXPECT_EQ(At("inventory.cpu").value, Value("CPU"));
  for (const std::string& call : TheScript().calls) EXPECT_EQ(call, "WMIGetCPUInfo");
}

TEST_F(FamiliesTest, ALibraryThatIsNotReadyLeavesTheShape) {
  scene_.ready = false;
  Run("all");
  size_t rows = 0;
  for (const Family& family : Families()) rows += family.rows.size();
  EXPECT_EQ(report_.readings.size(), rows);
  EXPECT_EQ(StatusOf("fan.1.speed"), kNotCollected);
  EXPECT_EQ(StatusOf("adapter.controller_part"), kNotCollected);
}

TEST_F(FamiliesTest, EveryCommandPromisesTheSameKeysWhateverHappens) {
  for (const Command& command : Commands()) {
    Run(std::string(command.name).c_str());
    const std::vector<Reading> nothing = NothingOf(command, "why");
    ASSERT_EQ(report_.readings.size(), nothing.size()) << command.name;
    for (size_t i = 0; i < nothing.size(); ++i) EXPECT_EQ(report_.readings[i].row, nothing[i].row) << command.name;
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
