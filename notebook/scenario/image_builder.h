// Gathers the records of an image and lays them out.
#ifndef NOTEBOOK_SCENARIO_IMAGE_BUILDER_H_
#define NOTEBOOK_SCENARIO_IMAGE_BUILDER_H_

#include <array>
#include <cstdint>
#include <vector>

#include "image.h"

namespace scenario {

using Block = std::array<ImageCell, IMAGE_BLOCK_CELLS>;

struct ImageBuilder {
  ImageBuilder();

  ImageHeader header{};
  std::vector<Block> blocks;
  std::vector<ImageList> lists;
  std::vector<uint8_t> list_values;
  std::vector<ImageGaugeRegister> gauge;
  std::vector<ImageCommand> commands;
  std::vector<ImageCpuidLeaf> leaves;
  std::vector<ImagePowerRow> power_rows;
  std::vector<ImageAcpiMethod> methods;
  std::vector<uint8_t> acpi_bytes;
  std::vector<ImageRule> rules;

  int handshake_line = 0;  // of the scenario; 0 while there is none

  // The image's bytes; empty when they would exceed IMAGE_MAX_SIZE.
  std::vector<uint8_t> Build() const;
};

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_IMAGE_BUILDER_H_
