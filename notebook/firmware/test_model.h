// Models from scenario texts.
#ifndef NOTEBOOK_FIRMWARE_TEST_MODEL_H_
#define NOTEBOOK_FIRMWARE_TEST_MODEL_H_

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "section.h"

namespace firmware {

// The model of a "firmware" section without faults.
inline Model ModelOf(std::string_view section) {
  Faults faults;
  const std::optional<Model> model = ReadFirmwareScenario("{\"firmware\":" + std::string(section) + "}", faults);
  for (const scenario::Fault& fault : faults.List()) ADD_FAILURE() << fault.line << ": " << fault.message;
  return model.value_or(Model{});
}

// "LINE: message" for each fault of a section that begins on line 1.
inline std::vector<std::string> FaultsOf(std::string_view section) {
  Faults faults;
  const std::optional<Model> model = ReadFirmwareScenario("{\"firmware\":" + std::string(section) + "}", faults);
  EXPECT_EQ(model.has_value(), faults.Empty());
  std::vector<std::string> list;
  for (const scenario::Fault& fault : faults.List()) list.push_back(std::to_string(fault.line) + ": " + fault.message);
  return list;
}

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_TEST_MODEL_H_
