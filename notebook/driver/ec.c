// EC commands: information registers, group registers, the gauge pass-through and the table of other
// commands.
#include "model.h"

enum EcCommand {
  kReadInformation = 0xBB,
  kAccessGroup = 0xDD,
  kGaugePassThrough = 0xDE,
};

enum { kGroupWrite = 0x80 };

static ImageCell* BlockCells(Notebook* notebook, uint8_t block) {
  return block == IMAGE_NO_BLOCK ? NULL : notebook->cells + (size_t)block * IMAGE_BLOCK_CELLS;
}

static uint32_t ReadBlock(Notebook* notebook, uint8_t block, uint8_t offset, uint8_t* value) {
  const ImageCell* cells = BlockCells(notebook, block);
  return ReadCell(notebook, cells == NULL ? &notebook->header->unlisted : &cells[offset], value);
}

static uint32_t WriteGroup(Notebook* notebook, uint8_t group, uint8_t offset, uint8_t value) {
  ImageCell* cells = BlockCells(notebook, notebook->header->group_blocks[group]);
  if (cells == NULL) return notebook->header->unlisted.status;
  return WriteCell(notebook, cells, &cells[offset], value);
}

static int CommandMatches(const ImageCommand* row, const EcRecord* record) {
  if (row->command != record->command || row->length > record->count) return 0;
  for (unsigned i = 0; i < row->length; ++i) {
    if (row->data[i] != record->data[i]) return 0;
  }
  return 1;
}

static uint32_t OtherCommand(const Notebook* notebook, const EcRecord* record, uint8_t* value) {
  const ImageCommand* best = NULL;
  for (uint32_t i = 0; i < RowCount(notebook, kImageCommands); ++i) {
    const ImageCommand* row = &notebook->commands[i];
    if (CommandMatches(row, record) && (best == NULL || row->length > best->length)) best = row;
  }
  if (best == NULL) return ReadCell(notebook, &notebook->header->unlisted, value);
  *value = best->value;
  return best->status;
}

void EcExchange(Notebook* notebook, EcRecord* record) {
  static const uint8_t kDataCounts[] = {
      [kReadInformation] = 1,
      [kAccessGroup] = 3,
      [kGaugePassThrough] = 2,
  };
  const uint8_t* data = record->data;
  uint8_t expected = record->command < sizeof(kDataCounts) ? kDataCounts[record->command] : 0;
  uint8_t value = 0;
  if (record->count > IMAGE_EC_DATA || (expected != 0 && record->count != expected)) {
    record->status = kEcInvalidDataCount;
  } else if (record->command == kReadInformation) {
    record->status = ReadBlock(notebook, notebook->header->information_block, data[0], &value);
  } else if (record->command == kAccessGroup && (data[0] & kGroupWrite) == 0) {
    record->status = ReadBlock(notebook, notebook->header->group_blocks[data[0]], data[1], &value);
  } else if (record->command == kAccessGroup) {
    record->status = WriteGroup(notebook, data[0] & ~kGroupWrite, data[1], data[2]);
  } else if (record->command == kGaugePassThrough) {
    record->status = GaugeExchange(notebook, data, &value);
  } else {
    record->status = OtherCommand(notebook, record, &value);
  }
  record->result = record->status == kEcSuccess && record->read != 0 ? value : 0;
}
