// One device control request, from its lengths to its answer. Also free of the operating system.
#ifndef NOTEBOOK_DRIVER_EXCHANGE_H_
#define NOTEBOOK_DRIVER_EXCHANGE_H_

#include "log_line.h"
#include "model.h"

#ifdef __cplusplus
extern "C" {
#endif

// NTSTATUS values of requests that are not carried out.
#define EXCHANGE_INVALID_PARAMETER 0xC000000Du
#define EXCHANGE_UNKNOWN_CODE 0xC0000010u
#define EXCHANGE_BUFFER_TOO_SMALL 0xC0000023u

typedef struct Exchange {
  enum ImageDevice device;
  uint32_t code;
  uint8_t* buffer;  // holds the input, then the output; aligned to 8 bytes
  uint32_t input_length;
  uint32_t output_length;
  uint32_t references;  // open handles of the EC device
  uint32_t status;      // NTSTATUS
  uint32_t written;     // output bytes
  const struct ControlCode* control;
  RuleEffects effects;
} Exchange;

// Checks the request and counts it in the rules. The caller waits for effects.delay_ms before it goes on.
// `line` receives the request's half of the log line, or is null.
void BeginExchange(Notebook* notebook, Exchange* exchange, LogLine* line);

// Answers it, unless it has failed already. `line` receives the answer's half.
void FinishExchange(Notebook* notebook, Exchange* exchange, LogLine* line);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // NOTEBOOK_DRIVER_EXCHANGE_H_
