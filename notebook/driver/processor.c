// What the processor tells.
#include <string.h>

#include "model.h"

void ReadCpuid(const Notebook* notebook, uint32_t leaf, uint32_t registers[4]) {
  memset(registers, 0, 4 * sizeof(uint32_t));
  for (uint32_t i = 0; i < RowCount(notebook, kImageCpuid); ++i) {
    if (notebook->leaves[i].leaf != leaf) continue;
    memcpy(registers, notebook->leaves[i].registers, 4 * sizeof(uint32_t));
    return;
  }
}

uint32_t ReadPowerLimit(const Notebook* notebook, uint32_t argument, uint32_t limit) {
  uint32_t answer = 0;
  for (uint32_t i = 0; i < RowCount(notebook, kImagePowerRows); ++i) {
    const ImagePowerRow* row = &notebook->power_rows[i];
    if (row->any) {
      answer = row->limits[limit];
    } else if (row->argument == argument) {
      return row->limits[limit];
    }
  }
  return answer;
}
