// What notebooks made from scenarios answer and log, request by request: exchanges.txt.
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <limits>
#include <sstream>

#include "test_cases.h"
#include "test_notebook.h"
#include "texts.h"

namespace scenario {
namespace {

struct Control {
  std::string_view name;
  uint32_t code, input, output;
};
constexpr Control kControls[] = {{"ec", kEcCode, 16, 16},
                                 {"acpi", kAcpiCode, 8, 1024},
                                 {"version", 0x80102040, 0, 4},
                                 {"references", 0x80102044, 0, 4},
                                 {"cpuid", 0x80102068, 21, 16},
                                 {"power_limit1", 0x80102074, 12, 12},
                                 {"power_limit2", 0x80102078, 12, 12},
                                 {"package_power", 0x8010207C, 0, 8}};

uint32_t Number(const std::string& text, int base = 0) {
  return static_cast<uint32_t>(std::stoul(text, nullptr, base));
}

// The input record that the words of a request stand for.
std::vector<uint8_t> Record(const Control& control, const std::vector<std::string>& words) {
  std::vector<uint8_t> record(control.input);
  const auto add_word = [&record](uint32_t word) {
    for (int i = 0; i < 4; ++i) record.push_back(static_cast<uint8_t>(word >> (8 * i)));
  };
  if (control.code == kEcCode) {
    record[0] = static_cast<uint8_t>(Number(words[1]));
    for (size_t i = 2; i < words.size(); ++i) {
      if (words[i] == "count") {
        record[1] = static_cast<uint8_t>(Number(words[++i]));
      } else if (words[i] == "read" || words[i] == "write") {
        record[10] = words[i] == "read";
      } else {
        record[2 + record[1]++] = static_cast<uint8_t>(Number(words[i], 16));
      }
    }
  } else if (control.code == kAcpiCode) {
    record.assign(words[1].begin(), words[1].end());
    std::ranges::replace(record, '?', '\n');
    add_word(static_cast<uint32_t>(4 * (words.size() - 2)));
    for (size_t i = 2; i < words.size(); ++i) add_word(words[i] == "..." ? 0 : Number(words[i]));
  } else if (words.size() > 1) {
    record.clear();
    add_word(Number(words[1]));
    record.resize(control.input);
    record.back() = control.input == 21 ? 21 : 0;
  }
  return record;
}

// The line of the log that the request ends in, and what it does not tell: the answer's bytes where they are wanted, a
// delay.
std::string LineOf(TestNotebook& notebook, std::string request, bool bytes_wanted) {
  uint32_t room = 0;
  if (request.starts_with("output ")) {
    room = Number(request.substr(7));
    request.erase(0, request.find(": ") + 2);
  }
  std::istringstream stream(request);
  const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
  if (words[0] == "open") {
    const auto device = words[1] == "OBXACPI" ? kDeviceAcpi : kDeviceSaio;
    const RuleEffects effects = ApplyRules(&notebook.notebook(), kRuleOpen, device, nullptr);
    return request + (effects.effects & kEffectFail ? " -> failed " + Hex(effects.fail, 8) : " -> opened");
  }
  const bool unknown = words[0] == "control";
  const auto known = std::ranges::find(kControls, std::string_view(words[0]), &Control::name);
  if (!unknown && known == std::end(kControls)) return "no such request";
  Control control = unknown ? Control{"", Number(words[1]), 0, 0} : *known;
  const size_t lengths = unknown ? 2 : 1;
  std::vector<uint8_t> record;
  if (words.size() > lengths && words[lengths] == "input") {
    record.resize(Number(words[lengths + 1]));
    control.output = Number(words[lengths + 3]);
  } else {
    record = Record(control, words);
  }
  const bool acpi = (control.code == kAcpiCode) != unknown && control.code != 0x80102048;
  const ControlAnswer answer =
      notebook.Control(control.code, record, room != 0 ? room : control.output, acpi ? kDeviceAcpi : kDeviceSaio);
  std::ostringstream line;
  line << answer.line.substr(0, answer.line.find('\n'));
  if (answer.delay_ms != 0) line << " after " << answer.delay_ms << " ms";
  if (bytes_wanted) line << " |" << std::hex;
  for (size_t i = 0; bytes_wanted && i < answer.bytes.size(); ++i) {
    line << (answer.bytes[i] < 16 ? " 0" : " ") << int{answer.bytes[i]};
  }
  return line.str();
}

TEST(Exchanges, AreAnsweredAndLogged) {
  const std::vector<TestCase> cases = ReadCases(TEST_FOLDER "/exchanges.txt");
  EXPECT_GT(cases.size(), 15u);
  for (const TestCase& one : cases) {
    SCOPED_TRACE(one.name);
    const auto begin = std::ranges::find(one.lines, "==");
    std::string text;
    for (auto line = one.lines.begin(); line != begin; ++line) text += *line + "\n";
    TestNotebook notebook(text);
    for (auto line = begin + 1; line < one.lines.end(); ++line) {
      const size_t times = line->find(" x ");
      const std::string expected = times == std::string::npos ? *line : line->substr(times + 3);
      const size_t room = expected.find(": ");
      for (unsigned i = times == std::string::npos ? 1 : Number(*line); i > 0; --i) {
        const std::string found =
            LineOf(notebook, expected.substr(0, expected.find(" -> ")), expected.find(" |") != std::string::npos);
        EXPECT_EQ(found, room == std::string::npos ? expected : expected.substr(room + 2));
      }
    }
  }
}

TEST(Exchanges, AcpiRecordsMustTellTheirOwnLength) {
  TestNotebook notebook("{}");
  for (const uint8_t length : {3, 4, 0xFC}) {
    const uint8_t high = length == 0xFC ? 0xFF : 0;
    const ControlAnswer answer =
        notebook.Control(kAcpiCode, {'D', 'S', 'T', 'S', length, high, high, high, 1, 2, 3}, 1024, kDeviceAcpi);
    EXPECT_EQ(answer.status, length == 3 ? 0u : 0xC000000Du) << int{length};
  }
}

TEST(Exchanges, ARulesCountThatRanFullStaysThere) {
  TestNotebook notebook(
      R"({ "rules": [ { "on": { "ec_command": "0xDD" }, "nth": 1, "then": { "driver_status": 5 } } ] })");
  notebook.notebook().rules[0].seen = std::numeric_limits<uint32_t>::max();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(notebook.Byte(1, 9), 0);
}

}  // namespace
}  // namespace scenario
