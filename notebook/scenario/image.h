// The flat binary image of a scenario: written by vexa-scenario, read by the driver. Little-endian, every
// field aligned to its own size, every section to 8 bytes.
//
// The driver keeps the image in memory as its working state. Fields marked "working" are 0 on disk.
#ifndef NOTEBOOK_SCENARIO_IMAGE_H_
#define NOTEBOOK_SCENARIO_IMAGE_H_

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#define IMAGE_MAGIC 0x4B4E5856u  // "VXNK"
#define IMAGE_VERSION 1u
#define IMAGE_MAX_SIZE 0x100000u
#define IMAGE_BLOCK_CELLS 256u
#define IMAGE_GROUPS 128u  // bit 7 of a group number means "write"
#define IMAGE_NO_BLOCK 0xFFu
#define IMAGE_MAX_BLOCKS 129u  // one for each group and one for the information registers
#define IMAGE_MAX_LISTS 255u
#define IMAGE_MAX_LIST_VALUES 65536u
#define IMAGE_MAX_GAUGE 256u
#define IMAGE_MAX_ROWS 1024u  // of each other section
#define IMAGE_MAX_ACPI_BYTES 65536u
#define IMAGE_MAX_DELAY_MS 600000u
#define IMAGE_EC_DATA 8u
#define IMAGE_GAUGE_BYTES 32u
#define IMAGE_HANDSHAKE_BYTES 32u
#define IMAGE_ACPI_ARGUMENTS 4u
#define IMAGE_ACPI_OUTPUT 1024u

// Section order in the header, and the record each section holds.
enum ImageSectionId {
  kImageBlocks,      // ImageCell[256]
  kImageLists,       // ImageList
  kImageListValues,  // uint8_t
  kImageGauge,       // ImageGaugeRegister
  kImageCommands,    // ImageCommand
  kImageCpuid,       // ImageCpuidLeaf
  kImagePowerRows,   // ImagePowerRow
  kImageAcpi,        // ImageAcpiMethod
  kImageAcpiBytes,   // uint8_t
  kImageRules,       // ImageRule
  kImageSectionCount
};

enum ImageReadAction {
  kReadByte,           // value
  kReadItem,           // value is the column of list `target`; the row is the selected item
  kReadSelected,       // the index selected in list `target`
  kReadHandshake,      // the status bits of the manufacture-information handshake
  kReadHandshakeData,  // value is the index of the data byte; 0 until the data is ready
  kReadActionCount
};

enum ImageWriteAction {
  kWriteIgnored,  // accepted, without effect
  kWriteStored,   // becomes the register's byte; with kReadItem, the selected item's
  kWriteSelect,   // selects an item of list `target`
  kWriteClear,    // clears the given bits of register `target` of the same group
  kWriteRequest,  // starts the handshake when it is the request value
  kWriteActionCount
};

typedef struct ImageCell {
  uint32_t status;  // the driver status of reads and writes; 0: the register answers
  uint8_t value;
  uint8_t on_read;
  uint8_t on_write;
  uint8_t target;
} ImageCell;

typedef struct ImageList {
  uint32_t first_value;  // of item 0, column 0; values are stored item by item
  uint8_t items;
  uint8_t columns;
  uint8_t selected;  // working
  uint8_t reserved;
} ImageList;

typedef struct ImageGaugeRegister {
  uint32_t status;
  uint8_t number;
  uint8_t count;   // the byte count that is told
  uint8_t length;  // the bytes there are
  uint8_t reserved;
  uint8_t bytes[IMAGE_GAUGE_BYTES];
} ImageGaugeRegister;

// Answers EC commands that begin with these data bytes. The longest match wins.
typedef struct ImageCommand {
  uint32_t status;
  uint8_t command;
  uint8_t length;
  uint8_t value;
  uint8_t reserved;
  uint8_t data[IMAGE_EC_DATA];
} ImageCommand;

typedef struct ImageCpuidLeaf {
  uint32_t leaf;
  uint32_t registers[4];  // EAX, EBX, ECX, EDX
} ImageCpuidLeaf;

typedef struct ImagePowerRow {
  uint32_t any;  // 1: for every argument without a row of its own
  uint32_t argument;
  uint32_t limits[2];
} ImagePowerRow;

// Answers calls that begin with these arguments. The longest match wins.
typedef struct ImageAcpiMethod {
  char name[4];
  uint32_t argument_count;
  uint32_t arguments[IMAGE_ACPI_ARGUMENTS];
  uint32_t fail;  // an NTSTATUS, or 0
  uint32_t first_byte;
  uint32_t byte_count;
  uint32_t sets;       // 1 + the row whose first output word the last argument changes, or 0
  uint32_t sets_mask;  // the bits that change
  uint32_t reserved;
} ImageAcpiMethod;

enum ImageRuleKind { kRuleControl, kRuleEc, kRuleOpen, kRuleKindCount };

enum ImageRuleEffect {
  kEffectFail = 1,
  kEffectStatus = 2,
  kEffectDelay = 4,
  kEffectLength = 8,
  kEffectByte = 16,
};

enum ImageDevice { kDeviceSaio, kDeviceAcpi, kDeviceCount };

typedef struct ImageRule {
  uint32_t subject;  // kRuleControl: control code; kRuleOpen: device
  uint32_t first;    // the first and last matching exchange that the rule acts on, counted from 1
  uint32_t last;
  uint32_t effects;
  uint32_t fail;
  uint32_t status;
  uint32_t delay_ms;
  uint32_t length;
  uint32_t seen;  // working: matching exchanges since the image was loaded
  uint8_t kind;
  uint8_t byte;
  uint8_t command;  // kRuleEc, with the first `data_length` data bytes
  uint8_t data_length;
  uint8_t data[IMAGE_EC_DATA];
} ImageRule;

enum ImageHandshakeFlag {
  kHandshakePrechargeTimeout = 1,
  kHandshakeUnderWay = 2,   // a request is under way from the start
  kHandshakeShowsBusy = 4,  // the busy bit is set while a request is under way
};

typedef struct ImageHandshake {
  uint8_t flags;
  uint8_t request_value;
  uint8_t ready_on_poll;  // 1: the first status read after the request; 0: never
  uint8_t under_way;      // working
  uint8_t polls;          // working
  uint8_t ready;          // working
  uint8_t reserved[2];
  uint8_t data[IMAGE_HANDSHAKE_BYTES];
} ImageHandshake;

typedef struct ImageSection {
  uint32_t offset;  // from the start of the image
  uint32_t count;   // records
} ImageSection;

typedef struct ImageHeader {
  uint32_t magic;
  uint32_t version;
  uint32_t size;      // of the whole image
  uint32_t checksum;  // ImageChecksum of everything after this field
  ImageSection sections[kImageSectionCount];
  uint32_t log;  // 1: exchanges are logged
  uint32_t start_delay_ms;
  uint32_t start_status;  // an NTSTATUS with which the start fails, or 0
  uint32_t driver_version;
  uint32_t acpi_fail;  // for calls that no row answers: an NTSTATUS, or 0 and the result
  uint32_t acpi_result;
  ImageCell unlisted;  // what any register or command without an entry answers
  uint64_t package_power;
  int64_t frequencies[4];  // Intel current, Intel maximum, other current, other maximum
  uint32_t voltage;
  uint16_t latched;           // working: 1 + the latched gauge register's row
  uint8_t information_block;  // block of the information registers, or IMAGE_NO_BLOCK
  uint8_t reserved;
  uint8_t group_blocks[IMAGE_GROUPS];
  ImageHandshake handshake;
} ImageHeader;

static_assert(sizeof(ImageCell) == 8, "cell");
static_assert(sizeof(ImageList) == 8, "list");
static_assert(sizeof(ImageGaugeRegister) == 40, "gauge register");
static_assert(sizeof(ImageCommand) == 16, "command");
static_assert(sizeof(ImageCpuidLeaf) == 20, "leaf");
static_assert(sizeof(ImagePowerRow) == 16, "power row");
static_assert(sizeof(ImageAcpiMethod) == 48, "method");
static_assert(sizeof(ImageRule) == 48, "rule");
static_assert(sizeof(ImageHandshake) == 40, "handshake");
static_assert(offsetof(ImageHeader, log) == 96, "section table");
static_assert(offsetof(ImageHeader, package_power) == 128, "processor");
static_assert(offsetof(ImageHeader, group_blocks) == 176, "group table");
static_assert(sizeof(ImageHeader) == 344, "header");

#define IMAGE_CHECKED_FROM offsetof(ImageHeader, sections)

// 32-bit FNV-1a.
static inline uint32_t ImageChecksum(const uint8_t* bytes, size_t count) {
  uint32_t sum = 2166136261u;
  for (size_t i = 0; i < count; ++i) sum = (sum ^ bytes[i]) * 16777619u;
  return sum;
}

#endif  // NOTEBOOK_SCENARIO_IMAGE_H_
