// What a notebook made from a scenario answers.
#include "test_notebook.h"

namespace scenario {
namespace {

TEST(Registers, AnswersAreWhereTheyBelong) {
  TestNotebook notebook(R"({ "ec": {
    "unlisted": { "byte": "0xA5" }, "healthy_table_version": 28,
    "information": { "registers": [ { "register": "0x12", "text": "AB" } ] },
    "groups": [
      { "group": 1, "registers": [
        { "offset": "0x30", "word": "0x1234" }, { "offset": "0x40", "dword": "0x89ABCDEF" },
        { "offset": "0x38", "word": -200 }, { "offset": "0x10", "text": "N", "size": 3 },
        { "offset": "0x60", "status": "0x80000001" } ] },
      { "group": 127, "fill": "offset" },
      { "group": 2, "fill": { "status": 9 } } ] } })");
  EXPECT_EQ(notebook.Read(0xBB, {0x50}), (EcAnswer{0, 28}));
  EXPECT_EQ(notebook.Read(0xBB, {0x12}), (EcAnswer{0, 'A'}));
  EXPECT_EQ(notebook.Read(0xBB, {0x14}), (EcAnswer{0, 0xA5}));
  EXPECT_EQ(notebook.Word(1, 0x30), 0x1234);
  EXPECT_EQ(notebook.Word(1, 0x40), 0xCDEF);
  EXPECT_EQ(notebook.Word(1, 0x42), 0x89AB);
  EXPECT_EQ(notebook.Word(1, 0x38), 0xFF38);
  EXPECT_EQ(notebook.Register(1, 0x11), (EcAnswer{0, 0}));
  EXPECT_EQ(notebook.Register(1, 0x13), (EcAnswer{0, 0xA5}));
  EXPECT_EQ(notebook.Register(1, 0x60), (EcAnswer{0x80000001, 0}));
  EXPECT_EQ(notebook.Register(127, 0xFE), (EcAnswer{0, 0xFE}));
  EXPECT_EQ(notebook.Register(2, 0), (EcAnswer{9, 0}));
  EXPECT_EQ(notebook.Set(2, 0, 1), (EcAnswer{9, 0}));
  EXPECT_EQ(notebook.Register(3, 0), (EcAnswer{0, 0xA5}));
  EXPECT_EQ(notebook.Read(0x42, {}), (EcAnswer{0, 0xA5}));
}

TEST(Registers, WritesDoWhatTheScenarioSays) {
  TestNotebook notebook(R"({ "ec": { "groups": [ { "group": 6, "registers": [
    { "offset": 1, "byte": "0x2D", "writable": true }, { "offset": 2, "byte": 7 },
    { "offset": "0x35", "clears": 1 } ] } ] } })");
  EXPECT_EQ(notebook.Set(6, 0x35, 0x09), (EcAnswer{0, 0}));
  EXPECT_EQ(notebook.Register(6, 1).byte, 0x24);
  EXPECT_EQ(notebook.Register(6, 0x35).byte, 0);
  notebook.Set(6, 1, 0x55);
  notebook.Set(6, 2, 0x55);
  EXPECT_EQ(notebook.Register(6, 1).byte, 0x55);
  EXPECT_EQ(notebook.Register(6, 2).byte, 7);
  // A write that asks for a byte gets 0; a read that asks for none too.
  EXPECT_EQ(notebook.Read(0xDD, {0x86, 1, 3}), (EcAnswer{0, 0}));
  EXPECT_EQ(notebook.Write(0xDD, {0x06, 2, 0}), (EcAnswer{0, 0}));
}

TEST(Lists, TheIndexRegisterSelects) {
  TestNotebook notebook(R"({ "ec": { "unlisted": { "byte": "0xEE" }, "groups": [ { "group": 2, "lists": [
    { "index": "0x11", "count": "0x10", "items": [
      [ { "offset": "0x08", "byte": 1 }, { "offset": "0x12", "byte": 41, "writable": true } ],
      [ { "offset": "0x08", "byte": 2 }, { "offset": "0x12", "byte": 43, "writable": true } ] ] },
    { "index": "0x32", "count": "0x30", "items": [
      [ { "offset": "0x33", "word": 3120 }, { "offset": "0x35", "byte": 96, "writable": true } ],
      [ { "offset": "0x33", "word": 2870 }, { "offset": "0x35", "byte": 88, "writable": true } ],
      [ { "offset": "0x33", "word": 1 }, { "offset": "0x35", "byte": 3, "writable": true } ] ] } ] } ] } })");
  EXPECT_EQ(notebook.Register(2, 0x10).byte, 2);
  EXPECT_EQ(notebook.Register(2, 0x30).byte, 3);
  EXPECT_EQ(notebook.Word(2, 0x33), 3120);
  notebook.Set(2, 0x32, 1);
  EXPECT_EQ(notebook.Register(2, 0x32).byte, 1);
  EXPECT_EQ(notebook.Word(2, 0x33), 2870);
  EXPECT_EQ(notebook.Register(2, 0x12).byte, 41);
  notebook.Set(2, 0x35, 10);
  notebook.Set(2, 0x33, 10);
  notebook.Set(2, 0x32, 2);
  EXPECT_EQ(notebook.Register(2, 0x35).byte, 3);
  notebook.Set(2, 0x32, 1);
  EXPECT_EQ(notebook.Register(2, 0x35).byte, 10);
  EXPECT_EQ(notebook.Word(2, 0x33), 2870);
  notebook.Set(2, 0x11, 1);
  EXPECT_EQ(notebook.Register(2, 0x08).byte, 2);
  // Beyond the last item there is nothing to read and nothing to change.
  notebook.Set(2, 0x11, 2);
  notebook.Set(2, 0x12, 1);
  notebook.Set(2, 0x32, 0);
  EXPECT_EQ(notebook.Word(2, 0x33), 3120);
  for (int index : {3, 255}) {
    notebook.Set(2, 0x32, static_cast<uint8_t>(index));
    notebook.Set(2, 0x35, 1);
    EXPECT_EQ(notebook.Register(2, 0x35), (EcAnswer{0, 0xEE}));
  }
}

constexpr char kHandshake[] = R"({ "ec": { "groups": [ { "group": 1, "handshake": { %,
  "hex": "560102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1EFF" } } ] } })";

std::string Handshake(std::string_view options) {
  std::string text = kHandshake;
  return text.replace(text.find('%'), 1, options);
}

TEST(Handshake, ReadyComesWithThePollAndTheDataWithIt) {
  TestNotebook notebook(Handshake(R"("ready_on_poll": 3)"));
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x00);
  notebook.Set(1, 0x5A, 0x11);
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x00);
  notebook.Set(1, 0x5A, 0x10);
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x80);
  EXPECT_EQ(notebook.Register(1, 0x60).byte, 0);
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x80);
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x10);
  EXPECT_EQ(notebook.Register(1, 0x60).byte, 0x56);
  EXPECT_EQ(notebook.Register(1, 0x7F).byte, 0xFF);
  EXPECT_EQ(notebook.Register(1, 0x80).byte, 0);
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x10);
  notebook.Set(1, 0x5A, 0x10);
  EXPECT_EQ(notebook.Register(1, 0x5B).byte, 0x80);
  EXPECT_EQ(notebook.Register(1, 0x60).byte, 0);
}

TEST(Handshake, NeverReadyAndTheOtherBits) {
  TestNotebook never(
      Handshake(R"("ready_on_poll": "never", "shows_busy": false, "precharge_timeout": true)"));
  never.Set(1, 0x5A, 0x10);
  for (int i = 0; i < 300; ++i) ASSERT_EQ(never.Register(1, 0x5B).byte, 0x40);
  EXPECT_EQ(never.Register(1, 0x60).byte, 0);
  TestNotebook under_way(Handshake(R"("ready_on_poll": 2, "under_way": true)"));
  EXPECT_EQ(under_way.Register(1, 0x5B).byte, 0x80);
  EXPECT_EQ(under_way.Register(1, 0x5B).byte, 0x10);
}

TEST(Gauge, CountLatchBytes) {
  TestNotebook notebook(R"({ "ec": { "unlisted": { "byte": "0xEE" }, "gauge": [
    { "register": "0x20", "text": "VEXA" }, { "register": "0x51", "dword": "0x04030201" },
    { "register": "0x21", "count": 200, "text": "X" }, { "register": "0x53", "status": 16 } ] } })");
  EXPECT_EQ(notebook.Read(0xDE, {2, 0}), (EcAnswer{0, 0xEE}));
  EXPECT_EQ(notebook.Read(0xDE, {3, 0x20}), (EcAnswer{0, 4}));
  EXPECT_EQ(notebook.Write(0xDE, {1, 0x20}), (EcAnswer{0, 0}));
  EXPECT_EQ(notebook.Read(0xDE, {3, 0x51}), (EcAnswer{0, 4}));
  EXPECT_EQ(notebook.Read(0xDE, {2, 3}), (EcAnswer{0, 'A'}));
  EXPECT_EQ(notebook.Read(0xDE, {2, 4}), (EcAnswer{0, 0xEE}));
  notebook.Write(0xDE, {1, 0x51});
  EXPECT_EQ(notebook.Read(0xDE, {2, 0}), (EcAnswer{0, 1}));
  EXPECT_EQ(notebook.Read(0xDE, {2, 3}), (EcAnswer{0, 4}));
  EXPECT_EQ(notebook.Read(0xDE, {3, 0x21}), (EcAnswer{0, 200}));
  EXPECT_EQ(notebook.Write(0xDE, {1, 0x53}), (EcAnswer{16, 0}));
  EXPECT_EQ(notebook.Read(0xDE, {2, 0}), (EcAnswer{0, 0xEE}));
  EXPECT_EQ(notebook.Read(0xDE, {3, 0x99}), (EcAnswer{0, 0xEE}));
}

TEST(Commands, TheLongestMatchAnswers) {
  TestNotebook notebook(R"({ "ec": { "unlisted": { "status": 4 }, "commands": [
    { "command": "0x87", "byte": 1 }, { "command": "0x87", "data": [0, "0x11"], "byte": 2 },
    { "command": "0x87", "data": [0], "status": 7 } ] } })");
  EXPECT_EQ(notebook.Read(0x87, {0, 0x11}), (EcAnswer{0, 2}));
  EXPECT_EQ(notebook.Read(0x87, {0, 0x11, 5}), (EcAnswer{0, 2}));
  EXPECT_EQ(notebook.Read(0x87, {0, 0x12}), (EcAnswer{7, 0}));
  EXPECT_EQ(notebook.Read(0x87, {}), (EcAnswer{0, 1}));
  EXPECT_EQ(notebook.Read(0x88, {}), (EcAnswer{4, 0}));
}

TEST(Ec, DataCountsThatAreNotAccepted) {
  TestNotebook notebook(R"({ "ec": { "groups": [ { "group": 1, "fill": "0x55" } ] } })");
  EXPECT_EQ(notebook.Read(0xBB, {0x50, 0}), (EcAnswer{2, 0}));
  EXPECT_EQ(notebook.Read(0xDD, {1, 0}), (EcAnswer{2, 0}));
  EXPECT_EQ(notebook.Read(0xDE, {3}), (EcAnswer{2, 0}));
  EXPECT_EQ(notebook.Read(0x87, {1, 2, 3, 4, 5, 6, 7, 8}), (EcAnswer{0, 0}));
  EXPECT_EQ(notebook.Read(0x87, std::vector<uint8_t>(9)), (EcAnswer{2, 0}));
  EXPECT_EQ(notebook.Read(0xDD, std::vector<uint8_t>(255)), (EcAnswer{2, 0}));
}

TEST(Acpi, DevsChangesWhatDstsAnswers) {
  TestNotebook notebook(R"({ "acpi": { "unlisted": { "result": "0xFFFFFFFE" }, "methods": [
    { "method": "DEVS", "arguments": ["0x60059"], "result": 1,
      "sets": { "method": "DSTS", "arguments": ["0x60059"], "mask": "0x0000FFFF" } },
    { "method": "DSTS", "arguments": ["0x60059"], "result": "0x00010000" },
    { "method": "DSTS", "arguments": ["0x1200F2", 2], "result": "0x00010041" },
    { "method": "GETX", "hex": "01 02 03 04 05 06" }, { "method": "BAD!", "fail": "0xC0000034" } ] } })");
  const auto word = [](const ControlAnswer& answer) {
    uint32_t value = 0;
    if (answer.bytes.size() >= 4) std::memcpy(&value, answer.bytes.data(), 4);
    return value;
  };
  EXPECT_EQ(word(notebook.Acpi("DEVS", {0x60059, 0x12340007})), 1u);
  EXPECT_EQ(word(notebook.Acpi("DSTS", {0x60059})), 0x00010007u);
  EXPECT_EQ(word(notebook.Acpi("DSTS", {0x1200F2, 2})), 0x00010041u);
  EXPECT_EQ(word(notebook.Acpi("DSTS", {0x1200F2, 3})), 0xFFFFFFFEu);
  EXPECT_EQ(word(notebook.Acpi("DSTS", {0x1200F2})), 0xFFFFFFFEu);
  EXPECT_EQ(notebook.Acpi("GETX", {}).bytes, (std::vector<uint8_t>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(notebook.Acpi("GETX", {}, 5).bytes, (std::vector<uint8_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(notebook.Acpi("BAD!", {1}).status, 0xC0000034u);
}

TEST(Processor, PowerLimitsByArgument) {
  TestNotebook notebook(R"({ "processor": { "power_limits": [
    { "limit1": 28, "limit2": 57 }, { "argument": "0x4142", "limit1": 45, "limit2": 64 } ] } })");
  std::vector<uint8_t> input(12, 0xCC);
  input[0] = 0x42, input[1] = 0x41, input[2] = 0, input[3] = 0;
  EXPECT_EQ(notebook.Control(0x80102074, input, 12).bytes,
            (std::vector<uint8_t>{0x42, 0x41, 0, 0, 45, 0, 0, 0, 0, 0, 0, 0}));
  input[0] = 0x43;
  EXPECT_EQ(notebook.Control(0x80102078, input, 12).bytes,
            (std::vector<uint8_t>{0x43, 0x41, 0, 0, 0, 0, 0, 0, 57, 0, 0, 0}));
}

}  // namespace
}  // namespace scenario
