// What the firmware remembers between calls, in every process.
#ifndef NOTEBOOK_FIRMWARE_STATE_H_
#define NOTEBOOK_FIRMWARE_STATE_H_

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "model.h"

namespace firmware {

struct State {
  std::string scenario{};                   // stamp of the scenario that it belongs to
  std::map<uint32_t, uint32_t> controls{};  // last accepted control value by device
  std::map<EcPlace, uint8_t> ec{};          // bytes written
  std::map<uint8_t, uint8_t> gauge{};       // bytes written, by register
  std::map<std::string, uint64_t> counters{};
  std::vector<uint64_t> rules{};

  bool operator==(const State&) const = default;
};

std::string StateToJson(const State& state);

// What `text` holds when it belongs to the scenario with that stamp; else a new state.
State StateFromJson(std::string_view text, std::string_view scenario);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_STATE_H_
