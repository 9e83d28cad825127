/* Shared by every header of the library: types, reserved values, linkage. */
#ifndef VEXA_BASE_H_
#define VEXA_BASE_H_

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define VEXA_BEGIN_DECLS extern "C" {
#define VEXA_END_DECLS }
#define VEXA_NOEXCEPT noexcept
#else
#define VEXA_BEGIN_DECLS
#define VEXA_END_DECLS
#define VEXA_NOEXCEPT
#endif

/*
 * The source did not answer: the embedded controller (EC) reported an error, the driver request failed, the library
 * is not initialised, or this machine's route has no such value. Which of them, the trace tells.
 */
#define VEXA_NO_ANSWER 0x7FFFFFFFu

/* Failure value of those exports for which 0 is a valid reading; each export says whether it uses it. */
#define VEXA_NOT_AVAILABLE 0xFFFFFFFFu

/*
 * Markers of the radio and peripheral exports, which answer from a snapshot: nothing was there to collect, and collecting
 * failed (the next call tries again). As int32_t the first is -1000. The texts stand where a value is a text.
 */
#define VEXA_NOT_COLLECTED 0xFFFFFC18u
#define VEXA_COLLECT_FAILED 0x7FFFFFFFu
#define VEXA_NOT_COLLECTED_TEXT "init_string"
#define VEXA_COLLECT_FAILED_TEXT "error_string"

/* Size of the array in VexaText, terminator included. */
#define VEXA_TEXT_CAPACITY 1024

/*
 * A text returned by value, so that no memory changes hands: always terminated, cut at VEXA_TEXT_CAPACITY - 1 bytes,
 * empty when there is nothing to tell. Bytes are in the system's active code page.
 */
typedef struct VexaText {
  char text[VEXA_TEXT_CAPACITY];
} VexaText;

#endif /* VEXA_BASE_H_ */
