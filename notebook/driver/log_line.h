// One line of the log, built in place; text that does not fit is cut.
#ifndef NOTEBOOK_DRIVER_LOG_LINE_H_
#define NOTEBOOK_DRIVER_LOG_LINE_H_

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct LogLine {
  uint32_t length;
  char text[404];
} LogLine;

void AddText(LogLine* line, const char* text);

// Printable ASCII as it is, anything else as "?".
void AddName(LogLine* line, const char* name, uint32_t length);

// Lower-case hexadecimal with at least `digits` digits, without prefix.
void AddHex(LogLine* line, uint64_t value, unsigned digits);

void AddDecimal(LogLine* line, uint32_t value);

// Ends the line; there is always room for it.
void EndLine(LogLine* line);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // NOTEBOOK_DRIVER_LOG_LINE_H_
