#include "exchange.h"

#include <string.h>

enum ControlKind {
  kVersion,
  kReferences,
  kCpuid,
  kEc,
  kPowerLimit1,
  kPowerLimit2,
  kPackagePower,
  kVoltage,
  kFrequency,
  kAcpi,
};

struct ControlCode {
  uint32_t code;
  enum ImageDevice device;
  enum ControlKind kind;
  uint32_t input_length;
  uint32_t output_length;  // at least
  uint32_t index;          // kFrequency: of the answer in the image
  const char* name;
};

enum {
  kAcpiHeaderLength = 8,
  kCpuidInputLength = 21,
  kAcpiArgumentsLogged = 16,
};

static const struct ControlCode kControlCodes[] = {
    {0x80102070, kDeviceSaio, kEc, sizeof(EcRecord), sizeof(EcRecord), 0, "ec"},
    {0x80102040, kDeviceSaio, kVersion, 0, 4, 0, "version"},
    {0x80102044, kDeviceSaio, kReferences, 0, 4, 0, "references"},
    {0x80102068, kDeviceSaio, kCpuid, kCpuidInputLength, 16, 0, "cpuid"},
    {0x80102074, kDeviceSaio, kPowerLimit1, 12, 12, 0, "power_limit1"},
    {0x80102078, kDeviceSaio, kPowerLimit2, 12, 12, 0, "power_limit2"},
    {0x8010207C, kDeviceSaio, kPackagePower, 0, 8, 0, "package_power"},
    {0x80102080, kDeviceSaio, kVoltage, 0, 8, 0, "voltage"},
    {0x80102084, kDeviceSaio, kFrequency, 0, 8, 0, "frequency_intel"},
    {0x80102088, kDeviceSaio, kFrequency, 0, 8, 1, "max_frequency_intel"},
    {0x80102090, kDeviceSaio, kFrequency, 0, 8, 2, "frequency_other"},
    {0x80102094, kDeviceSaio, kFrequency, 0, 8, 3, "max_frequency_other"},
    {0x0022240C, kDeviceAcpi, kAcpi, kAcpiHeaderLength, 4, 0, "acpi"},
};

static const struct ControlCode* FindControlCode(enum ImageDevice device, uint32_t code) {
  for (size_t i = 0; i < sizeof(kControlCodes) / sizeof(kControlCodes[0]); ++i) {
    if (kControlCodes[i].code == code && kControlCodes[i].device == device) return &kControlCodes[i];
  }
  return NULL;
}

static uint32_t WordAt(const Exchange* exchange, uint32_t offset) {
  uint32_t word;
  memcpy(&word, exchange->buffer + offset, sizeof(word));
  return word;
}

static uint32_t CheckRequest(const Exchange* exchange) {
  const struct ControlCode* control = exchange->control;
  if (control == NULL) return EXCHANGE_UNKNOWN_CODE;
  if (control->kind == kAcpi) {
    if (exchange->input_length < kAcpiHeaderLength) return EXCHANGE_INVALID_PARAMETER;
    if (WordAt(exchange, 4) != exchange->input_length - kAcpiHeaderLength) return EXCHANGE_INVALID_PARAMETER;
  } else if (exchange->input_length != control->input_length) {
    return EXCHANGE_INVALID_PARAMETER;
  }
  if (control->kind == kCpuid && exchange->buffer[kCpuidInputLength - 1] != kCpuidInputLength) {
    return EXCHANGE_INVALID_PARAMETER;
  }
  return exchange->output_length < control->output_length ? EXCHANGE_BUFFER_TOO_SMALL : 0;
}

static void LogBadRequest(const Exchange* exchange, LogLine* line) {
  if (exchange->control != NULL) {
    AddText(line, exchange->control->name);
  } else {
    AddText(line, "control 0x");
    AddHex(line, exchange->code, 8);
  }
  AddText(line, " input ");
  AddDecimal(line, exchange->input_length);
  AddText(line, " output ");
  AddDecimal(line, exchange->output_length);
}

static void LogEcRequest(const Exchange* exchange, LogLine* line) {
  const EcRecord* record = (const EcRecord*)exchange->buffer;
  AddText(line, "ec 0x");
  AddHex(line, record->command, 2);
  for (unsigned i = 0; i < record->count && i < IMAGE_EC_DATA; ++i) {
    AddText(line, " ");
    AddHex(line, record->data[i], 2);
  }
  if (record->count > IMAGE_EC_DATA) {
    AddText(line, " count ");
    AddDecimal(line, record->count);
  }
  AddText(line, record->read != 0 ? " read" : " write");
}

static void LogAcpiRequest(const Exchange* exchange, LogLine* line) {
  const uint32_t words = (exchange->input_length - kAcpiHeaderLength) / 4;
  AddText(line, "acpi ");
  AddName(line, (const char*)exchange->buffer, 4);
  for (uint32_t i = 0; i < words && i < kAcpiArgumentsLogged; ++i) {
    AddText(line, " 0x");
    AddHex(line, WordAt(exchange, kAcpiHeaderLength + 4 * i), 8);
  }
  if (words > kAcpiArgumentsLogged) AddText(line, " ...");
}

static void LogRequest(const Exchange* exchange, LogLine* line) {
  const enum ControlKind kind = exchange->control->kind;
  if (kind == kEc) {
    LogEcRequest(exchange, line);
  } else if (kind == kAcpi) {
    LogAcpiRequest(exchange, line);
  } else {
    AddText(line, exchange->control->name);
    if (exchange->input_length != 0) {
      AddText(line, " 0x");
      AddHex(line, WordAt(exchange, 0), 8);
    }
  }
}

void BeginExchange(Notebook* notebook, Exchange* exchange, LogLine* line) {
  exchange->control = FindControlCode(exchange->device, exchange->code);
  exchange->status = CheckRequest(exchange);
  exchange->written = 0;
  exchange->effects.effects = 0;
  if (exchange->status != 0) {
    if (line != NULL) LogBadRequest(exchange, line);
    return;
  }
  if (line != NULL) LogRequest(exchange, line);
  if (RowCount(notebook, kImageRules) == 0) return;
  const EcRecord* record = exchange->control->kind == kEc ? (const EcRecord*)exchange->buffer : NULL;
  exchange->effects = ApplyRules(notebook, kRuleControl, exchange->code, record);
  if (exchange->effects.effects & kEffectFail) exchange->status = exchange->effects.fail;
}

static void AnswerEc(Notebook* notebook, Exchange* exchange) {
  EcRecord* record = (EcRecord*)exchange->buffer;
  const RuleEffects* effects = &exchange->effects;
  if (effects->effects & kEffectStatus) {
    record->status = effects->status;
    record->result = 0;
  } else {
    EcExchange(notebook, record);
  }
  if (effects->effects & kEffectByte) record->result = effects->byte;
}

static void AnswerAcpi(Notebook* notebook, Exchange* exchange) {
  const uint32_t words = (exchange->input_length - kAcpiHeaderLength) / 4;
  const uint32_t* arguments = (const uint32_t*)(exchange->buffer + kAcpiHeaderLength);
  char name[4];
  memcpy(name, exchange->buffer, sizeof(name));
  exchange->status = AcpiCall(notebook, name, arguments, words, exchange->buffer, exchange->output_length,
                              &exchange->written);
}

static void Answer(Notebook* notebook, Exchange* exchange) {
  const ImageHeader* header = notebook->header;
  uint32_t* words = (uint32_t*)exchange->buffer;
  const uint32_t argument = exchange->input_length >= 4 ? words[0] : 0;
  exchange->written = exchange->control->output_length;
  switch (exchange->control->kind) {
    case kVersion:
      words[0] = header->driver_version;
      break;
    case kReferences:
      words[0] = exchange->references;
      break;
    case kCpuid:
      ReadCpuid(notebook, argument, words);
      break;
    case kEc:
      AnswerEc(notebook, exchange);
      break;
    case kPowerLimit1:
      words[1] = ReadPowerLimit(notebook, argument, 0);
      words[2] = 0;
      break;
    case kPowerLimit2:
      words[1] = 0;
      words[2] = ReadPowerLimit(notebook, argument, 1);
      break;
    case kPackagePower:
      memcpy(words, &header->package_power, 8);
      break;
    case kVoltage:
      words[0] = header->voltage;
      words[1] = 0;
      break;
    case kFrequency:
      memcpy(words, &header->frequencies[exchange->control->index], 8);
      break;
    case kAcpi:
      AnswerAcpi(notebook, exchange);
      break;
  }
}

static void LogAnswer(const Exchange* exchange, LogLine* line) {
  const enum ControlKind kind = exchange->control->kind;
  const EcRecord* record = (const EcRecord*)exchange->buffer;
  if (kind == kEc) {
    AddText(line, " 0x");
    AddHex(line, record->result, 2);
    AddText(line, " status 0x");
    AddHex(line, record->status, 1);
  } else if (kind == kPackagePower || kind == kFrequency) {
    uint64_t wide;
    memcpy(&wide, exchange->buffer, sizeof(wide));
    AddText(line, " 0x");
    AddHex(line, wide, 16);
  } else {
    const uint32_t first = kind == kPowerLimit1 ? 1 : kind == kPowerLimit2 ? 2 : 0;
    const uint32_t count = kind == kCpuid ? 4 : kind == kAcpi && exchange->written < 4 ? 0 : 1;
    for (uint32_t i = first; i < first + count; ++i) {
      AddText(line, " 0x");
      AddHex(line, WordAt(exchange, 4 * i), 8);
    }
  }
}

static void LogOutcome(const Exchange* exchange, LogLine* line) {
  AddText(line, " ->");
  if (exchange->status != 0) {
    AddText(line, " failed 0x");
    AddHex(line, exchange->status, 8);
  } else {
    LogAnswer(exchange, line);
  }
}

void FinishExchange(Notebook* notebook, Exchange* exchange, LogLine* line) {
  if (exchange->status == 0) Answer(notebook, exchange);
  if (line != NULL) LogOutcome(exchange, line);
  const int cut = (exchange->effects.effects & kEffectLength) && exchange->effects.length < exchange->written;
  if (cut) exchange->written = exchange->effects.length;
  if (line == NULL) return;
  if (exchange->status == 0 && (cut || exchange->control->kind == kAcpi)) {
    AddText(line, " length ");
    AddDecimal(line, exchange->written);
  }
  EndLine(line);
}
