// Models from scenario texts.
#ifndef NOTEBOOK_FIRMWARE_TEST_MODEL_H_
#define NOTEBOOK_FIRMWARE_TEST_MODEL_H_

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "section.h"

namespace firmware {

// The model of a "firmware" section without faults.
inline Model ModelOf(std::string_view section) {
  Faults faults;
  const std::optional<Model> model = ReadFirmwareScenario("{\"firmware\":" + std::string(section) + "}", faults);
  for (const scenario::Fault& fault : faults.List()) ADD_FAILURE() << fault.line << ": " << fault.message;
  return model.value_or(Model{});
}

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_TEST_MODEL_H_
