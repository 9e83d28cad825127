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

struct EcAnswer {
  uint32_t status;
  int byte;
  bool operator==(const EcAnswer&) const = default;
};
inline void PrintTo(const EcAnswer& answer, std::ostream* out) {
  *out << "status " << answer.status << " byte " << answer.byte;
}

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

  ControlAnswer EcControl(uint8_t command, const std::vector<uint8_t>& data, bool read) {
    std::vector<uint8_t> record(16);
    record[0] = command;
    record[1] = static_cast<uint8_t>(data.size());
    for (size_t i = 0; i < data.size() && i < 8; ++i) record[2 + i] = data[i];
    record[10] = read;
    return Control(kEcCode, record, 16);
  }

  EcAnswer Read(uint8_t command, const std::vector<uint8_t>& data) { return Ec(command, data, true); }
  EcAnswer Write(uint8_t command, const std::vector<uint8_t>& data) { return Ec(command, data, false); }
  EcAnswer Register(uint8_t group, uint8_t offset) { return Read(0xDD, {group, offset, 0}); }
  EcAnswer Set(uint8_t group, uint8_t offset, uint8_t value) {
    return Write(0xDD, {static_cast<uint8_t>(group | 0x80), offset, value});
  }

  // Little-endian.
  int Word(uint8_t group, uint8_t offset) {
    return Register(group, offset).byte + 256 * Register(group, static_cast<uint8_t>(offset + 1)).byte;
  }

  ControlAnswer Acpi(std::string_view method, const std::vector<uint32_t>& arguments,
                     uint32_t output_length = 1024) {
    std::vector<uint8_t> record(8 + 4 * arguments.size());
    const auto length = static_cast<uint32_t>(4 * arguments.size());
    std::memcpy(record.data(), method.data(), 4);
    std::memcpy(record.data() + 4, &length, 4);
    if (length != 0) std::memcpy(record.data() + 8, arguments.data(), length);
    return Control(kAcpiCode, record, output_length, kDeviceAcpi);
  }

  Notebook& notebook() { return notebook_; }

 private:
  EcAnswer Ec(uint8_t command, const std::vector<uint8_t>& data, bool read) {
    const ControlAnswer answer = EcControl(command, data, read);
    EXPECT_EQ(answer.status, 0u);
    if (answer.bytes.size() != 16) return {0xFFFFFFFF, -1};
    uint32_t status;
    std::memcpy(&status, answer.bytes.data() + 12, 4);
    return {status, answer.bytes[11]};
  }

  std::vector<uint8_t> image_;
  Notebook notebook_{};
};

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_TEST_NOTEBOOK_H_
