// What the firmware's methods answer and remember.
#include "methods.h"

#include <gtest/gtest.h>

#include "object.h"
#include "test_model.h"

namespace firmware {
namespace {

class Firmware : public testing::Test {
 protected:
  uint32_t Ec(std::string_view method, std::initializer_list<uint64_t> inputs) {
    return Call(kEcClass, method, inputs);
  }
  uint32_t Device(std::string_view method, std::initializer_list<uint64_t> inputs) {
    return Call(kDeviceClass, method, inputs);
  }

  Model model_ = ModelOf(R"({
    "ec": {
      "version": 7, "unlisted": "0xEEEE0000", "accepted": 3, "refused": 4,
      "tables": [
        { "table": 1, "registers": [
          { "offset": 2, "byte": 5, "write_code": "0x82" },
          { "offset": 8, "word": "0x0C30" },
          { "offset": 11, "byte": 2, "writable": true } ] },
        { "table": 3, "registers": [ { "offset": 2, "byte": 41 } ] } ],
      "gauge": [
        { "register": 10, "word": -1420 },
        { "register": 13, "word": "0x1254", "writable": true },
        { "register": 32, "text": "VXB2" },
        { "register": 33, "count": 200, "hex": "41" } ]
    },
    "devices": {
      "unlisted": { "status": -2, "result": 9 },
      "list": [
        { "device": "0x00110019", "status": "0x00010000", "accepts": [0, 1], "mask": 1 },
        { "device": "0x00120057", "status": "0x00010000", "accepts": [60, 80, 100], "refused": 5 },
        { "device": 3, "status": "0xABCD0001", "accepts": "any", "mask": "0xFFFF", "accepted": 8 } ]
    } })");
  State state_;

 private:
  uint32_t Call(std::string_view class_name, std::string_view method, std::initializer_list<uint64_t> inputs) {
    Arguments arguments;
    for (uint64_t input : inputs) arguments.emplace_back("", input);
    return ExecuteMethod(model_, state_, class_name, method, arguments);
  }
};

TEST_F(Firmware, EcTables) {
  EXPECT_EQ(Ec("ec_get_version", {}), 7u);
  EXPECT_EQ(Ec("ec_read_command_byte", {8, 1}), 0x30u);
  EXPECT_EQ(Ec("ec_read_command_byte", {9, 1}), 0x0Cu);
  EXPECT_EQ(Ec("ec_read_command_byte", {2, 3}), 41u);
  EXPECT_EQ(Ec("ec_read_command_byte", {1, 2}), 0xEEEE0000u);
  EXPECT_EQ(Ec("ec_read_command_byte", {8, 3}), 0xEEEE0000u);
}

TEST_F(Firmware, EcWritesGoWhereTheirCommandCodeSays) {
  EXPECT_EQ(Ec("ec_write_command_byte", {0x82, 1, 2}), 3u);
  EXPECT_EQ(Ec("ec_read_command_byte", {2, 1}), 2u);
  EXPECT_EQ(Ec("ec_write_command_byte", {11, 1, 255}), 3u);
  EXPECT_EQ(Ec("ec_read_command_byte", {11, 1}), 255u);
  EXPECT_EQ(Ec("ec_write_command_byte", {2, 1, 9}), 4u);
  EXPECT_EQ(Ec("ec_write_command_byte", {8, 1, 9}), 4u);
  EXPECT_EQ(Ec("ec_write_command_byte", {0x82, 3, 9}), 4u);
  EXPECT_EQ(Ec("ec_read_command_byte", {2, 1}), 2u);
}

TEST_F(Firmware, Gauge) {
  EXPECT_EQ(Ec("battery_read_command_byte", {10, 2}), 0xFA74u);
  EXPECT_EQ(Ec("battery_read_command_byte", {10, 1}), 0x74u);
  EXPECT_EQ(Ec("battery_read_command_byte", {10, 0}), 0xEEEE0000u);
  EXPECT_EQ(Ec("battery_read_command_byte", {10, 3}), 0xEEEE0000u);
  EXPECT_EQ(Ec("battery_read_command_byte", {32, 2}), 0xEEEE0000u);
  EXPECT_EQ(Ec("battery_read_command_by_index", {32, 0}), 4u);
  EXPECT_EQ(Ec("battery_read_command_by_index", {32, 4}), uint32_t{'2'});
  EXPECT_EQ(Ec("battery_read_command_by_index", {32, 5}), 0xEEEE0000u);
  EXPECT_EQ(Ec("battery_read_command_by_index", {33, 0}), 200u);
  EXPECT_EQ(Ec("battery_read_command_by_index", {10, 0}), 0xEEEE0000u);
  EXPECT_EQ(Ec("battery_write_command_byte", {13, 0x63}), 3u);
  EXPECT_EQ(Ec("battery_read_command_byte", {13, 2}), 0x1263u);
  EXPECT_EQ(Ec("battery_write_command_byte", {10, 1}), 4u);
}

TEST_F(Firmware, DevicesShowTheirControlWhereTheMaskSays) {
  EXPECT_EQ(Device("DSTS", {0x00110019}), 65536u);
  EXPECT_EQ(Device("DEVS", {0x00110019, 1}), 1u);
  EXPECT_EQ(Device("DSTS", {0x00110019}), 65537u);
  EXPECT_EQ(Device("DEVS", {0x00110019, 2}), 0u);
  EXPECT_EQ(Device("DSTS", {0x00110019}), 65537u);
  EXPECT_EQ(Device("DEVS", {0x00120057, 80}), 1u);
  EXPECT_EQ(Device("DEVS", {0x00120057, 81}), 5u);
  EXPECT_EQ(Device("DSTS", {0x00120057}), 65536u);
  EXPECT_EQ(state_.controls.at(0x00120057), 80u);
  EXPECT_EQ(Device("DEVS", {3, 0xFFFFFFFF}), 8u);
  EXPECT_EQ(Device("DSTS", {3}), 0xABCDFFFFu);
  EXPECT_EQ(Device("DSTS", {4}), 0xFFFFFFFEu);
  EXPECT_EQ(Device("DEVS", {4, 1}), 9u);
}

TEST_F(Firmware, TheStateOutlivesItsProcess) {
  state_.scenario = "a";
  Ec("ec_write_command_byte", {0x82, 1, 2});
  Ec("battery_write_command_byte", {13, 0x63});
  Device("DEVS", {0x00110019, 1});
  state_.counters["connect ROOT\\WMI"] = 3;
  state_.rules = {1, 0, 7};
  const std::string text = StateToJson(state_);
  EXPECT_EQ(StateFromJson(text, "a"), state_);
  EXPECT_EQ(StateFromJson(text, "b"), State{.scenario = "b"});
  for (size_t length = 0; length + 2 < text.size(); ++length) {
    ASSERT_EQ(StateFromJson(text.substr(0, length), "a"), State{.scenario = "a"}) << length;
  }
  EXPECT_EQ(StateFromJson("{\"scenario\":\"a\",\"devices\":[1]}", "a"), State{.scenario = "a"});
}

TEST_F(Firmware, CallsNeedAllOfTheirParameters) {
  const std::vector<Table> tables = FirmwareTables(model_);
  ASSERT_EQ(tables.size(), 2u);
  const ClassShape& shape = *tables[0].shape;
  const Method* method = FindMethod(shape, "EC_WRITE_command_byte");
  ASSERT_NE(method, nullptr);
  Object inputs = SpawnFrom(ParametersOf(shape, *method, method->inputs));
  EXPECT_FALSE(ArgumentsOf(nullptr, *method));
  EXPECT_EQ(PutProperty(inputs, "param1", Datum::Text("3"), 17), 0u);
  EXPECT_EQ(PutProperty(inputs, "COMMANDCODE", Datum::Text("1"), 17), 0u);
  EXPECT_FALSE(ArgumentsOf(&inputs, *method));
  EXPECT_EQ(PutProperty(inputs, "param0", Datum::Text("2"), 0), 0u);
  EXPECT_EQ(ArgumentsOf(&inputs, *method), (Arguments{{"commandcode", 1}, {"param0", 2}, {"param1", 3}}));
  EXPECT_EQ(ArgumentsOf(nullptr, *FindMethod(shape, "ec_get_version")), Arguments{});
}

}  // namespace
}  // namespace firmware
