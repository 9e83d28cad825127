// What the firmware's methods answer and remember.
#include "methods.h"

#include <gtest/gtest.h>

#include <sstream>

#include "object.h"
#include "scenario/test_cases.h"
#include "test_model.h"

namespace firmware {
namespace {

const Model& Firmware() {
  static const Model& model = *new Model(ModelOf(R"({
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
    } })"));
  return model;
}

// A method with its arguments.
uint32_t Call(State& state, const std::string& call) {
  std::istringstream words(call);
  std::string method, argument;
  words >> method;
  Arguments arguments;
  while (words >> argument && argument != "->") arguments.emplace_back("", std::stoull(argument, nullptr, 0));
  return ExecuteMethod(Firmware(), state, method[0] == 'D' ? kDeviceClass : kEcClass, method, arguments);
}

TEST(FirmwareMethods, AnswerAndRemember) {
  State state{.scenario = "a"};
  for (const std::string& line : scenario::LinesOfCase(TEST_FOLDER "/firmware_calls.txt", "calls")) {
    if (!line.starts_with('#'))
      EXPECT_EQ(Call(state, line), std::stoul(line.substr(line.find(" -> ") + 4), nullptr, 0)) << line;
  }
  EXPECT_EQ(state.controls.at(0x00120057), 80u);

  // The state outlives its process, and ends with its scenario.
  state.counters["connect ROOT\\WMI"] = 3;
  state.rules = {1, 0, 7};
  const std::string text = StateToJson(state);
  EXPECT_EQ(StateFromJson(text, "a"), state);
  EXPECT_EQ(StateFromJson(text, "b"), State{.scenario = "b"});
  for (size_t length = 0; length + 2 < text.size(); ++length) {
    ASSERT_EQ(StateFromJson(text.substr(0, length), "a"), State{.scenario = "a"}) << length;
  }
  EXPECT_EQ(StateFromJson("{\"scenario\":\"a\",\"devices\":[1]}", "a"), State{.scenario = "a"});
}

TEST(FirmwareMethods, NeedAllOfTheirParameters) {
  const std::vector<Table> tables = FirmwareTables(Firmware());
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
