// A notebook made from scenario text, asked the way the driver is asked.
#ifndef NOTEBOOK_SCENARIO_TEST_NOTEBOOK_H_
#define NOTEBOOK_SCENARIO_TEST_NOTEBOOK_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "../driver/exchange.h"
#include "scenario.h"

namespace scenario {

inline constexpr uint32_t kEcCode = 0x80102070;
inline constexpr uint32_t kAcpiCode = 0x0022240C;

struct ControlAnswer {
  uint32_t status = 0;  // NTSTATUS
  std::vector<uint8_t> bytes;
  uint32_t delay_ms = 0;
  std::string line;  // of the log
};

// "FILE-like" list of faults: one "LINE: message" per entry.
inline std::vector<std::string> FaultsOf(std::string_view text) {
  Faults faults;
  const std::vector<uint8_t> image = CompileScenario(text, faults);
  EXPECT_EQ(image.empty(), !faults.Empty());
  std::vector<std::string> list;
  for (const Fault& fault : faults.List()) list.push_back(std::to_string(fault.line) + ": " + fault.message);
  return list;
}

class TestNotebook {
 public:
  explicit TestNotebook(std::string_view text) {
    Faults faults;
    image_ = CompileScenario(text, faults);
    for (const Fault& fault : faults.List()) ADD_FAILURE() << fault.line << ": " << fault.message;
    if (image_.empty()) return;
    EXPECT_EQ(AttachImage(image_.data(), image_.size(), &notebook_), kImageGood);
  }

  ControlAnswer Control(uint32_t code, const std::vector<uint8_t>& input, uint32_t output_length,
                        ImageDevice device = kDeviceSaio) {
    alignas(8) uint8_t buffer[2048] = {};
    std::ranges::copy(input, buffer);
    Exchange exchange{};
    exchange.device = device;
    exchange.code = code;
    exchange.buffer = buffer;
    exchange.input_length = static_cast<uint32_t>(input.size());
    exchange.output_length = output_length;
    exchange.references = 3;
    LogLine line{};
    BeginExchange(&notebook_, &exchange, &line);
    ControlAnswer answer;
    if (exchange.effects.effects & kEffectDelay) answer.delay_ms = exchange.effects.delay_ms;
    FinishExchange(&notebook_, &exchange, &line);
    answer.status = exchange.status;
    if (exchange.status == 0) answer.bytes.assign(buffer, buffer + exchange.written);
    answer.line.assign(line.text, line.length);
    return answer;
  }

  // A register of a group; -1 when it has no answer.
  int Byte(uint8_t group, uint8_t offset) {
    std::vector<uint8_t> record = {0xDD, 3, group, offset};
    record.resize(16);
    record[10] = 1;
    const ControlAnswer answer = Control(kEcCode, record, 16);
    return answer.bytes.size() == 16 && std::ranges::count(answer.bytes.begin() + 12, answer.bytes.end(), 0) == 4
               ? answer.bytes[11]
               : -1;
  }
  // Little-endian.
  int Word(uint8_t group, uint8_t offset) {
    return Byte(group, offset) + 256 * Byte(group, static_cast<uint8_t>(offset + 1));
  }

  Notebook& notebook() { return notebook_; }

 private:
  std::vector<uint8_t> image_;
  Notebook notebook_{};
};

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_TEST_NOTEBOOK_H_
