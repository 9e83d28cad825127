// Methods of the ACPI device.
#include <string.h>

#include "model.h"

static int MethodMatches(const ImageAcpiMethod* method, const char name[4], const uint32_t* arguments,
                         uint32_t count) {
  if (memcmp(method->name, name, sizeof(method->name)) != 0 || method->argument_count > count) return 0;
  return memcmp(method->arguments, arguments, method->argument_count * sizeof(uint32_t)) == 0;
}

static const ImageAcpiMethod* FindMethod(const Notebook* notebook, const char name[4],
                                         const uint32_t* arguments, uint32_t count) {
  const ImageAcpiMethod* best = NULL;
  for (uint32_t i = 0; i < RowCount(notebook, kImageAcpi); ++i) {
    const ImageAcpiMethod* method = &notebook->methods[i];
    if (!MethodMatches(method, name, arguments, count)) continue;
    if (best == NULL || method->argument_count > best->argument_count) best = method;
  }
  return best;
}

// Changes the first output word of the row that `method` sets; the row has at least 4 bytes.
static void SetResult(Notebook* notebook, const ImageAcpiMethod* method, uint32_t value) {
  uint8_t* bytes = notebook->acpi_bytes + notebook->methods[method->sets - 1].first_byte;
  uint32_t word;
  memcpy(&word, bytes, sizeof(word));
  word = (word & ~method->sets_mask) | (value & method->sets_mask);
  memcpy(bytes, &word, sizeof(word));
}

uint32_t AcpiCall(Notebook* notebook, const char name[4], const uint32_t* arguments, uint32_t count,
                  uint8_t* output, uint32_t capacity, uint32_t* length) {
  const ImageAcpiMethod* method = FindMethod(notebook, name, arguments, count);
  const void* bytes = &notebook->header->acpi_result;
  uint32_t byte_count = sizeof(notebook->header->acpi_result);
  *length = 0;
  if (method == NULL && notebook->header->acpi_fail != 0) return notebook->header->acpi_fail;
  if (method != NULL) {
    if (method->fail != 0) return method->fail;
    if (method->sets != 0 && count != 0) SetResult(notebook, method, arguments[count - 1]);
    bytes = notebook->acpi_bytes + method->first_byte;
    byte_count = method->byte_count;
  }
  *length = byte_count < capacity ? byte_count : capacity;
  memcpy(output, bytes, *length);
  return 0;
}
