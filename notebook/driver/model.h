// What the notebook answers, decided without the operating system: the driver calls it on each request, and
// the scenario tests call it on Linux.
#ifndef NOTEBOOK_DRIVER_MODEL_H_
#define NOTEBOOK_DRIVER_MODEL_H_

#include "../scenario/image.h"

#ifdef __cplusplus
extern "C" {
#endif

enum EcStatus {
  kEcSuccess = 0,
  kEcInvalidDataCount = 2,  // VEXAIO_STATUS_INVALID_DATANUM
};

// The record of an EC command, sent and received.
typedef struct EcRecord {
  uint8_t command;
  uint8_t count;
  uint8_t data[IMAGE_EC_DATA];
  uint8_t read;
  uint8_t result;
  uint32_t status;
} EcRecord;
static_assert(sizeof(EcRecord) == 16 && offsetof(EcRecord, status) == 12, "EC record");

typedef enum ImageFault {
  kImageGood,
  kImageTruncated,
  kImageWrongMagic,
  kImageWrongVersion,
  kImageWrongChecksum,
  kImageInconsistent,
} ImageFault;

// An image that passed every check, with pointers into it.
typedef struct Notebook {
  ImageHeader* header;
  ImageCell* cells;  // block b begins at cells[b * IMAGE_BLOCK_CELLS]
  ImageList* lists;
  uint8_t* list_values;
  ImageGaugeRegister* gauge;
  ImageCommand* commands;
  ImageCpuidLeaf* leaves;
  ImagePowerRow* power_rows;
  ImageAcpiMethod* methods;
  uint8_t* acpi_bytes;
  ImageRule* rules;
} Notebook;

// Checks everything that the functions below rely on. `image` must be aligned to 8 bytes and outlive
// `notebook`, which is set only when the image is good.
ImageFault AttachImage(uint8_t* image, size_t size, Notebook* notebook);

// Number of records in a section.
static inline uint32_t RowCount(const Notebook* notebook, enum ImageSectionId section) {
  return notebook->header->sections[section].count;
}

// Carries out one EC command; sets the record's result and status.
void EcExchange(Notebook* notebook, EcRecord* record);

// The parts of it.
uint32_t ReadCell(const Notebook* notebook, const ImageCell* cell, uint8_t* value);
uint32_t WriteCell(Notebook* notebook, ImageCell* block, ImageCell* cell, uint8_t value);
uint8_t PollHandshake(ImageHandshake* handshake);
void RequestHandshake(ImageHandshake* handshake, uint8_t value);
uint32_t GaugeExchange(Notebook* notebook, const uint8_t* data, uint8_t* value);

// One call of an ACPI method. Writes at most `capacity` bytes to `output` and their number to `length`;
// returns an NTSTATUS. `output` may be the buffer that `arguments` lie in.
uint32_t AcpiCall(Notebook* notebook, const char name[4], const uint32_t* arguments, uint32_t count,
                  uint8_t* output, uint32_t capacity, uint32_t* length);

// EAX, EBX, ECX, EDX; all 0 for a leaf that is not listed.
void ReadCpuid(const Notebook* notebook, uint32_t leaf, uint32_t registers[4]);

// Power limit 0 or 1 for the caller's argument; 0 when no row answers.
uint32_t ReadPowerLimit(const Notebook* notebook, uint32_t argument, uint32_t limit);

// What the rules do to one exchange. Only fields whose effect bit is set mean anything.
typedef struct RuleEffects {
  uint32_t effects;
  uint32_t fail;
  uint32_t status;
  uint32_t delay_ms;
  uint32_t length;
  uint8_t byte;
} RuleEffects;

// Counts the exchange in every rule that it matches, and gathers the effects of those that are due; of two
// due rules with the same effect the first one in the scenario wins. `ec` is null for anything but an EC
// command.
RuleEffects ApplyRules(Notebook* notebook, enum ImageRuleKind kind, uint32_t subject, const EcRecord* ec);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // NOTEBOOK_DRIVER_MODEL_H_
