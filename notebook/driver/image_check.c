// Checks of an image, done once when it is loaded, so that the exchanges need none.
#include "model.h"

static const struct {
  uint32_t record_size;
  uint32_t limit;
} kSections[kImageSectionCount] = {
    [kImageBlocks] = {sizeof(ImageCell) * IMAGE_BLOCK_CELLS, IMAGE_MAX_BLOCKS},
    [kImageLists] = {sizeof(ImageList), IMAGE_MAX_LISTS},
    [kImageListValues] = {1, IMAGE_MAX_LIST_VALUES},
    [kImageGauge] = {sizeof(ImageGaugeRegister), IMAGE_MAX_GAUGE},
    [kImageCommands] = {sizeof(ImageCommand), IMAGE_MAX_ROWS},
    [kImageCpuid] = {sizeof(ImageCpuidLeaf), IMAGE_MAX_ROWS},
    [kImagePowerRows] = {sizeof(ImagePowerRow), IMAGE_MAX_ROWS},
    [kImageAcpi] = {sizeof(ImageAcpiMethod), IMAGE_MAX_ROWS},
    [kImageAcpiBytes] = {1, IMAGE_MAX_ACPI_BYTES},
    [kImageRules] = {sizeof(ImageRule), IMAGE_MAX_ROWS},
};

// A status that fails a request must be an error, or the request would not end.
static int FailGood(uint32_t status) { return status == 0 || status >= 0xC0000000u; }

static int SectionsGood(const ImageHeader* header) {
  for (unsigned i = 0; i < kImageSectionCount; ++i) {
    const ImageSection* section = &header->sections[i];
    if (section->offset < sizeof(ImageHeader) || section->offset % 8 != 0) return 0;
    if (section->count > kSections[i].limit || section->offset > header->size) return 0;
    if (section->count * kSections[i].record_size > header->size - section->offset) return 0;
  }
  return 1;
}

static int CellGood(const Notebook* notebook, const ImageCell* cell) {
  const uint32_t lists = RowCount(notebook, kImageLists);
  if (cell->on_read >= kReadActionCount || cell->on_write >= kWriteActionCount) return 0;
  if ((cell->on_read == kReadItem || cell->on_read == kReadSelected || cell->on_write == kWriteSelect) &&
      cell->target >= lists) {
    return 0;
  }
  if (cell->on_read == kReadItem && cell->value >= notebook->lists[cell->target].columns) return 0;
  return cell->on_read != kReadHandshakeData || cell->value < IMAGE_HANDSHAKE_BYTES;
}

static int BlocksGood(const Notebook* notebook) {
  const ImageHeader* header = notebook->header;
  const uint32_t blocks = RowCount(notebook, kImageBlocks);
  if (header->information_block != IMAGE_NO_BLOCK && header->information_block >= blocks) return 0;
  for (unsigned i = 0; i < IMAGE_GROUPS; ++i) {
    if (header->group_blocks[i] != IMAGE_NO_BLOCK && header->group_blocks[i] >= blocks) return 0;
  }
  for (uint32_t i = 0; i < blocks * IMAGE_BLOCK_CELLS; ++i) {
    if (!CellGood(notebook, &notebook->cells[i])) return 0;
  }
  return header->unlisted.on_read == kReadByte && header->unlisted.on_write == kWriteIgnored;
}

static int ListsGood(const Notebook* notebook) {
  const uint32_t values = RowCount(notebook, kImageListValues);
  for (uint32_t i = 0; i < RowCount(notebook, kImageLists); ++i) {
    const ImageList* list = &notebook->lists[i];
    if (list->first_value > values) return 0;
    if ((uint32_t)list->items * list->columns > values - list->first_value) return 0;
  }
  return 1;
}

static int RowsGood(const Notebook* notebook) {
  for (uint32_t i = 0; i < RowCount(notebook, kImageGauge); ++i) {
    if (notebook->gauge[i].length > IMAGE_GAUGE_BYTES) return 0;
  }
  for (uint32_t i = 0; i < RowCount(notebook, kImageCommands); ++i) {
    if (notebook->commands[i].length > IMAGE_EC_DATA) return 0;
  }
  for (uint32_t i = 0; i < RowCount(notebook, kImageRules); ++i) {
    const ImageRule* rule = &notebook->rules[i];
    if (rule->kind >= kRuleKindCount || rule->data_length > IMAGE_EC_DATA) return 0;
    if (rule->delay_ms > IMAGE_MAX_DELAY_MS || !FailGood(rule->fail)) return 0;
  }
  return notebook->header->start_delay_ms <= IMAGE_MAX_DELAY_MS && FailGood(notebook->header->start_status);
}

static int AcpiGood(const Notebook* notebook) {
  const uint32_t methods = RowCount(notebook, kImageAcpi);
  const uint32_t bytes = RowCount(notebook, kImageAcpiBytes);
  for (uint32_t i = 0; i < methods; ++i) {
    const ImageAcpiMethod* method = &notebook->methods[i];
    if (method->argument_count > IMAGE_ACPI_ARGUMENTS || method->byte_count > IMAGE_ACPI_OUTPUT) return 0;
    if (method->first_byte > bytes || method->byte_count > bytes - method->first_byte) return 0;
    if (method->sets > methods || !FailGood(method->fail)) return 0;
    if (method->sets != 0 && notebook->methods[method->sets - 1].byte_count < 4) return 0;
  }
  return FailGood(notebook->header->acpi_fail);
}

static void SetPointers(uint8_t* image, Notebook* notebook) {
  ImageHeader* header = (ImageHeader*)image;
  const ImageSection* sections = header->sections;
  notebook->header = header;
  notebook->cells = (ImageCell*)(image + sections[kImageBlocks].offset);
  notebook->lists = (ImageList*)(image + sections[kImageLists].offset);
  notebook->list_values = image + sections[kImageListValues].offset;
  notebook->gauge = (ImageGaugeRegister*)(image + sections[kImageGauge].offset);
  notebook->commands = (ImageCommand*)(image + sections[kImageCommands].offset);
  notebook->leaves = (ImageCpuidLeaf*)(image + sections[kImageCpuid].offset);
  notebook->power_rows = (ImagePowerRow*)(image + sections[kImagePowerRows].offset);
  notebook->methods = (ImageAcpiMethod*)(image + sections[kImageAcpi].offset);
  notebook->acpi_bytes = image + sections[kImageAcpiBytes].offset;
  notebook->rules = (ImageRule*)(image + sections[kImageRules].offset);
}

// Working fields begin at 0 whatever the file holds.
static void ResetWorkingFields(Notebook* notebook) {
  ImageHandshake* handshake = &notebook->header->handshake;
  handshake->under_way = (handshake->flags & kHandshakeUnderWay) != 0;
  handshake->polls = 0;
  handshake->ready = 0;
  notebook->header->latched = 0;
  for (uint32_t i = 0; i < RowCount(notebook, kImageLists); ++i) notebook->lists[i].selected = 0;
  for (uint32_t i = 0; i < RowCount(notebook, kImageRules); ++i) notebook->rules[i].seen = 0;
}

ImageFault AttachImage(uint8_t* image, size_t size, Notebook* notebook) {
  const ImageHeader* header = (const ImageHeader*)image;
  if (size >= sizeof(uint32_t) && header->magic != IMAGE_MAGIC) return kImageWrongMagic;
  if (size < IMAGE_CHECKED_FROM) return kImageTruncated;
  if (header->version != IMAGE_VERSION) return kImageWrongVersion;
  if (size < sizeof(ImageHeader) || size < header->size) return kImageTruncated;
  if (size > header->size) return kImageInconsistent;
  if (header->checksum != ImageChecksum(image + IMAGE_CHECKED_FROM, size - IMAGE_CHECKED_FROM)) {
    return kImageWrongChecksum;
  }
  Notebook candidate;
  if (!SectionsGood(header)) return kImageInconsistent;
  SetPointers(image, &candidate);
  if (!ListsGood(&candidate) || !BlocksGood(&candidate) || !RowsGood(&candidate) || !AcpiGood(&candidate)) {
    return kImageInconsistent;
  }
  ResetWorkingFields(&candidate);
  *notebook = candidate;
  return kImageGood;
}
