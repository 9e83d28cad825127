// Lengths, rules and the log: one whole request.
#include <limits>

#include "test_notebook.h"

namespace scenario {
namespace {

TEST(Lengths, WrongOnesAreRefusedAndNotCounted) {
  TestNotebook notebook(R"({ "rules": [
    { "on": { "control_code": "0x80102070" }, "nth": 1, "then": { "fail": "0xC0000001" } } ] })");
  EXPECT_EQ(notebook.Control(kEcCode, std::vector<uint8_t>(15), 16).status, 0xC000000Du);
  EXPECT_EQ(notebook.Control(kEcCode, std::vector<uint8_t>(17), 16).status, 0xC000000Du);
  EXPECT_EQ(notebook.Control(kEcCode, std::vector<uint8_t>(16), 15).status, 0xC0000023u);
  EXPECT_EQ(notebook.Control(kEcCode, std::vector<uint8_t>(16), 64).status, 0xC0000001u);
  EXPECT_EQ(notebook.Control(kEcCode, std::vector<uint8_t>(16), 64).bytes.size(), 16u);
  EXPECT_EQ(notebook.Control(0x80102040, {0}, 4).status, 0xC000000Du);
  EXPECT_EQ(notebook.Control(0x80102040, {}, 3).status, 0xC0000023u);
  EXPECT_EQ(notebook.Control(0x80102048, {}, 4).status, 0xC0000010u);
  EXPECT_EQ(notebook.Control(kAcpiCode, std::vector<uint8_t>(8), 4).status, 0xC0000010u);
  EXPECT_EQ(notebook.Control(0x80102040, {}, 4, kDeviceAcpi).status, 0xC0000010u);
  std::vector<uint8_t> cpuid(21);
  EXPECT_EQ(notebook.Control(0x80102068, cpuid, 16).status, 0xC000000Du);
  cpuid[20] = 21;
  EXPECT_EQ(notebook.Control(0x80102068, cpuid, 16).bytes.size(), 16u);
}

TEST(Lengths, AcpiRecordsMustTellTheirOwn) {
  TestNotebook notebook("{}");
  const auto status = [&](std::vector<uint8_t> input) {
    return notebook.Control(kAcpiCode, input, 1024, kDeviceAcpi).status;
  };
  EXPECT_EQ(status({'D', 'S', 'T', 'S', 0, 0, 0}), 0xC000000Du);
  EXPECT_EQ(status({'D', 'S', 'T', 'S', 0, 0, 0, 0}), 0u);
  EXPECT_EQ(status({'D', 'S', 'T', 'S', 4, 0, 0, 0}), 0xC000000Du);
  EXPECT_EQ(status({'D', 'S', 'T', 'S', 0xFC, 0xFF, 0xFF, 0xFF, 1, 2, 3, 4}), 0xC000000Du);
  EXPECT_EQ(status({'D', 'S', 'T', 'S', 3, 0, 0, 0, 1, 2, 3}), 0u);
}

constexpr char kEcho[] =
    R"({ "ec": { "groups": [ { "group": 1, "fill": "offset" }, { "group": 2, "fill": "offset" } ] },
  "rules": [ % ] })";

std::string WithRules(std::string_view rules) {
  std::string text = kEcho;
  return text.replace(text.find('%'), 1, rules);
}

// The bytes read from one register in a row; -1 for a failed request, the negative status for a driver
// status.
std::vector<int> Reads(TestNotebook& notebook, uint8_t group, uint8_t offset, int count) {
  std::vector<int> seen;
  for (int i = 0; i < count; ++i) {
    const ControlAnswer answer = notebook.EcControl(0xDD, {group, offset, 0}, true);
    if (answer.status != 0) {
      seen.push_back(-1);
    } else {
      seen.push_back(answer.bytes[12] != 0 ? -answer.bytes[12] : answer.bytes[11]);
    }
  }
  return seen;
}

TEST(Rules, TheNthMatchingExchangeOnly) {
  TestNotebook notebook(WithRules(
      R"({
      "on": { "ec_command": "0xDD", "group": 1, "offset": "0x31" }, "nth": 3,
      "then": { "fail": "0xC0000001" } })"));
  EXPECT_EQ(Reads(notebook, 1, 0x31, 2), (std::vector<int>{0x31, 0x31}));
  Reads(notebook, 1, 0x30, 5);
  Reads(notebook, 2, 0x31, 5);
  notebook.Set(1, 0x31, 0);
  EXPECT_EQ(Reads(notebook, 1, 0x31, 3), (std::vector<int>{-1, 0x31, 0x31}));
}

TEST(Rules, EveryOneFromTheNthOn) {
  TestNotebook notebook(WithRules(
      R"({ "on": { "ec_command": "0xDD", "group": 1 }, "from": 3, "then": { "driver_status": 5 } })"));
  EXPECT_EQ(Reads(notebook, 1, 9, 4), (std::vector<int>{9, 9, -5, -5}));
  EXPECT_EQ(Reads(notebook, 2, 9, 1), (std::vector<int>{9}));
}

TEST(Rules, ReadsAndWritesAreDifferentExchanges) {
  TestNotebook notebook(WithRules(
      R"({ "on": { "ec_command": "0xDD", "group": 1, "write": true }, "then": { "driver_status": 5 } })"));
  EXPECT_EQ(Reads(notebook, 1, 9, 1), (std::vector<int>{9}));
  EXPECT_EQ(notebook.Set(1, 9, 0).status, 5u);
}

TEST(Rules, EachCountsOnItsOwnAndTheFirstDueWins) {
  TestNotebook notebook(WithRules(R"(
    { "on": { "ec_command": "0xDD", "group": 1 }, "nth": 2, "then": { "driver_status": 5 } },
    { "on": { "control_code": "0x80102070" }, "from": 2, "then": { "driver_status": 6, "delay_ms": 70 } },
    { "on": { "ec_command": "0xDD" }, "nth": 4, "then": { "fail": "0xC0000001", "delay_ms": 90 } })"));
  EXPECT_EQ(Reads(notebook, 1, 9, 4), (std::vector<int>{9, -5, -6, -1}));
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 9, 0}, true).delay_ms, 70u);
}

TEST(Rules, AFailedExchangeIsNotCarriedOut) {
  TestNotebook notebook(R"({ "ec": { "groups": [ { "group": 1, "registers": [
    { "offset": 1, "byte": 1, "writable": true } ] } ] }, "rules": [
    { "on": { "ec_command": "0xDD", "data": ["0x81"] }, "nth": 1, "then": { "fail": "0xC0000001" } },
    { "on": { "ec_command": "0xDD", "data": ["0x81"] }, "nth": 2, "then": { "driver_status": 5 } },
    { "on": { "ec_command": "0xDD", "data": ["0x81"] }, "nth": 3, "then": { "answer_length": 0 } } ] })");
  EXPECT_EQ(notebook.EcControl(0xDD, {0x81, 1, 7}, false).status, 0xC0000001u);
  EXPECT_EQ(notebook.EcControl(0xDD, {0x81, 1, 8}, false).bytes[12], 5);
  EXPECT_EQ(notebook.Register(1, 1).byte, 1);
  EXPECT_EQ(notebook.EcControl(0xDD, {0x81, 1, 9}, false).bytes.size(), 0u);
  EXPECT_EQ(notebook.Register(1, 1).byte, 9);
}

TEST(Rules, ByteAndLengthOfTheAnswer) {
  TestNotebook notebook(WithRules(R"(
    { "on": { "ec_command": "0xDD" }, "nth": 1, "then": { "byte": "0xAB" } },
    { "on": { "ec_command": "0xDD" }, "nth": 2, "then": { "driver_status": 5, "byte": "0xCD" } },
    { "on": { "ec_command": "0xDD" }, "nth": 3, "then": { "answer_length": 11 } },
    { "on": { "ec_command": "0xDD" }, "nth": 4, "then": { "answer_length": 17 } })"));
  EXPECT_EQ(notebook.Register(1, 9), (EcAnswer{0, 0xAB}));
  EXPECT_EQ(notebook.Register(1, 9), (EcAnswer{5, 0xCD}));
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 9, 0}, true).bytes.size(), 11u);
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 9, 0}, true).bytes.size(), 16u);
}

TEST(Rules, ACountThatRanFullStaysThere) {
  TestNotebook notebook(
      WithRules(R"({ "on": { "ec_command": "0xDD" }, "nth": 1, "then": { "driver_status": 5 } })"));
  notebook.notebook().rules[0].seen = std::numeric_limits<uint32_t>::max();
  EXPECT_EQ(Reads(notebook, 1, 9, 3), (std::vector<int>{9, 9, 9}));
}

TEST(Rules, OpensAreCountedByDevice) {
  TestNotebook notebook(
      R"({ "rules": [ { "on": { "open": "OBXACPI" }, "nth": 2, "then": { "fail": "0xC0000022" } } ] })");
  const auto open = [&](ImageDevice device) {
    return ApplyRules(&notebook.notebook(), kRuleOpen, device, nullptr).effects;
  };
  EXPECT_EQ(open(kDeviceAcpi), 0u);
  EXPECT_EQ(open(kDeviceSaio), 0u);
  EXPECT_EQ(open(kDeviceSaio), 0u);
  EXPECT_EQ(open(kDeviceAcpi), static_cast<uint32_t>(kEffectFail));
}

TEST(Log, LinesAreAsDocumented) {
  TestNotebook notebook(R"({ "driver": { "version": "0x10203" },
    "ec": { "groups": [ { "group": 1, "fill": "offset" } ] },
    "processor": { "package_power": -1, "power_limits": [ { "limit1": 28, "limit2": 57 } ],
                   "cpuid": [ { "leaf": 1, "eax": 2, "edx": "0xBFEBFBFF" } ] },
    "rules": [ { "on": { "ec_command": "0xDD", "data": [1, 2] }, "then": { "fail": "0xC0000001" } },
               { "on": { "ec_command": "0xDD", "data": [1, 3] }, "then": { "driver_status": "0x15" } },
               { "on": { "ec_command": "0xDD", "data": [1, 4] }, "then": { "answer_length": 4 } } ] })");
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 0x31, 0}, true).line, "ec 0xdd 01 31 00 read -> 0x31 status 0x0\n");
  EXPECT_EQ(notebook.EcControl(0xDD, {0x81, 0x5A, 0x10}, false).line,
            "ec 0xdd 81 5a 10 write -> 0x00 status 0x0\n");
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 2, 0}, true).line, "ec 0xdd 01 02 00 read -> failed 0xc0000001\n");
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 3, 0}, true).line, "ec 0xdd 01 03 00 read -> 0x00 status 0x15\n");
  EXPECT_EQ(notebook.EcControl(0xDD, {1, 4, 0}, true).line,
            "ec 0xdd 01 04 00 read -> 0x04 status 0x0 length 4\n");
  EXPECT_EQ(notebook.EcControl(0x05, std::vector<uint8_t>(9), true).line,
            "ec 0x05 00 00 00 00 00 00 00 00 count 9 read -> 0x00 status 0x2\n");
  EXPECT_EQ(notebook.Control(0x80102040, {}, 4).line, "version -> 0x00010203\n");
  EXPECT_EQ(notebook.Control(0x80102044, {}, 4).line, "references -> 0x00000003\n");
  EXPECT_EQ(notebook.Control(0x8010207C, {}, 8).line, "package_power -> 0xffffffffffffffff\n");
  EXPECT_EQ(notebook.Control(0x80102078, std::vector<uint8_t>(12, 1), 12).line,
            "power_limit2 0x01010101 -> 0x00000039\n");
  std::vector<uint8_t> cpuid(21);
  cpuid[0] = 1, cpuid[20] = 21;
  EXPECT_EQ(notebook.Control(0x80102068, cpuid, 16).line,
            "cpuid 0x00000001 -> 0x00000002 0x00000000 0x00000000 0xbfebfbff\n");
  EXPECT_EQ(notebook.Control(0x80102048, {1}, 4).line,
            "control 0x80102048 input 1 output 4 -> failed 0xc0000010\n");
  EXPECT_EQ(notebook.Acpi("DSTS", {0x1200F2, 1}).line,
            "acpi DSTS 0x001200f2 0x00000001 -> 0x00000000 length 4\n");
  EXPECT_EQ(notebook.Acpi(std::string_view("A\n\0b", 4), {}).line, "acpi A??b -> 0x00000000 length 4\n");
  const std::string longest = notebook.Acpi("DSTS", std::vector<uint32_t>(250)).line;
  EXPECT_EQ(longest.substr(longest.size() - 33), "00000 ... -> 0x00000000 length 4\n");
}

}  // namespace
}  // namespace scenario
