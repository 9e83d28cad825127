// The section as scenarios write it: what it means, apart from its faults: scenario/faults.txt.
#include "section.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace radios {
namespace {

using testing::ElementsAre;

std::optional<Model> Read(const std::string& section, Faults& faults) {
  return ReadRadiosScenario("{\"radios\":" + section + "}", faults);
}

Model ModelOf(const std::string& section) {
  Faults faults;
  const std::optional<Model> model = Read(section, faults);
  for (const scenario::Fault& fault : faults.List()) ADD_FAILURE() << fault.line << ": " << fault.message;
  return model.value_or(Model{});
}

TEST(RadiosSection, WithoutASectionThereIsNone) {
  Faults faults;
  const std::optional<Model> model = ReadRadiosScenario(R"({ "ec": {} })", faults);
  ASSERT_TRUE(model);
  EXPECT_FALSE(model->wlan);
  EXPECT_TRUE(model->bluetooth.empty());
  EXPECT_TRUE(ModelOf(R"({ "wlan": {} })").wlan->empty());
}

TEST(RadiosSection, AnAccessPointInAllItsForms) {
  const Model model = ModelOf(R"({ "wlan": { "interfaces": [ {
    "guid": "{01234567-89AB-cdef-0123-456789abcdef}", "name": "ä\ud83d\ude00", "state": "connected", "channel": 36,
    "connection": { "ssid": { "hex": "00 FF", "length": 33 }, "bssid": "00:11:22:aA:Bb:ff", "phy": 10, "answer_size": 4,
                    "profile": { "utf16": "D83D 0041" } },
    "networks": [ { "ssid": "é", "bssid": "00:00:00:00:00:01", "rssi_dbm": -52, "frequency_khz": 5180000,
      "elements": [ { "id": 0, "hex": "41" }, { "extension": 35, "hex": "01 02" }, { "raw": "2D FF" } ],
      "told_offset": "0xFFFFFFFF", "told_size": 7 } ],
    "told_count": 9, "told_size": 8 } ] } })");
  const WlanInterface& wlan = model.wlan->at(0);
  EXPECT_EQ(wlan.guid.first, 0x01234567u);
  EXPECT_EQ(wlan.guid.second, 0x89AB);
  EXPECT_EQ(wlan.guid.third, 0xCDEF);
  EXPECT_THAT(wlan.guid.rest, ElementsAre(0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF));
  EXPECT_EQ(wlan.name, u"\u00E4\U0001F600");
  EXPECT_EQ(wlan.state, 1u);
  EXPECT_EQ(wlan.channel, 36u);
  EXPECT_EQ(wlan.told_count, 9u);
  EXPECT_EQ(wlan.told_size, 8u);
  EXPECT_THAT(wlan.connection->ssid.bytes, ElementsAre(0x00, 0xFF));
  EXPECT_EQ(wlan.connection->ssid.told_length, 33u);
  EXPECT_THAT(wlan.connection->bssid, ElementsAre(0x00, 0x11, 0x22, 0xAA, 0xBB, 0xFF));
  EXPECT_EQ(wlan.connection->profile, (std::u16string{char16_t{0xD83D}, u'A'}));
  EXPECT_EQ(wlan.connection->answer_size, 4u);
  const Network& network = wlan.networks.at(0);
  EXPECT_THAT(network.ssid.bytes, ElementsAre(0xC3, 0xA9));
  EXPECT_EQ(network.ssid.told_length, 2u);
  EXPECT_EQ(network.rssi_dbm, -52);
  EXPECT_THAT(network.elements, ElementsAre(0, 1, 0x41, 255, 3, 35, 1, 2, 0x2D, 0xFF));
  EXPECT_EQ(network.told_offset, 0xFFFFFFFFu);
  EXPECT_EQ(network.told_size, 7u);
  EXPECT_TRUE(network.security);
}

TEST(RadiosSection, BluetoothNetworkAndRules) {
  const Model model = ModelOf(R"({
    "bluetooth": { "radios": [ { "name": "r", "address": "01:02:03:04:05:06", "devices": [
      { "name": { "utf16": "DC00" }, "address": "0a:0b:0c:0d:0e:0f", "class": "0x240404", "connected": false } ] } ] },
    "network": [ { "index": 7, "type": 71, "medium": 9, "up": false } ],
    "rules": [ { "on": { "call": "WlanQueryInterface", "opcode": 7 }, "nth": 2, "then": { "fail": 5 } },
               { "on": { "call": "GetIfTable2Ex" }, "from": 3, "then": { "delay_ms": 10 } } ] })");
  const BluetoothDevice& device = model.bluetooth.at(0).devices.at(0);
  EXPECT_EQ(device.name, std::u16string(1, char16_t{0xDC00}));
  EXPECT_EQ(device.device_class, 0x240404u);
  EXPECT_FALSE(device.connected);
  EXPECT_EQ(model.network.at(0).type, 71u);
  EXPECT_TRUE(model.network.at(0).hardware);
  EXPECT_FALSE(model.network.at(0).up);
  EXPECT_EQ(model.rules.at(0).opcode, 7u);
  EXPECT_EQ(model.rules.at(0).first, 2u);
  EXPECT_EQ(model.rules.at(0).last, 2u);
  EXPECT_EQ(model.rules.at(0).fail, 5u);
  EXPECT_EQ(model.rules.at(1).first, 3u);
  EXPECT_GT(model.rules.at(1).last, 1000000u);
}

}  // namespace
}  // namespace radios
