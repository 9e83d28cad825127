/*
 * A caller's own lines in the library's trace.
 *
 * The library reports what it does as events named "VexaWinDll" of the TraceLogging provider "VexaSysAnlsSrv"
 * {f952fc4a-5222-4dbb-9302-c9b9dd9d7c9c}, each with one UTF-16 field "wstr". While no session listens, a line costs
 * a comparison.
 */
#ifndef VEXA_TRACE_H_
#define VEXA_TRACE_H_

#include "base.h"

VEXA_BEGIN_DECLS

/*
 * Writes a line at level 4 (informational).
 *
 * length: size of the text in bytes without its terminator; less than 2 writes nothing.
 * text:   UTF-16, need not be terminated; a null pointer writes nothing. The line ends at the first zero character.
 *
 * Never fails visibly and never waits. A line longer than an ETW event (64 KB) is dropped by the system. Threads: any.
 */
void TraceOutput(int32_t length, const void* text) VEXA_NOEXCEPT;

/* The same at level 1 (critical). */
void TraceOutputCritical(int32_t length, const void* text) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_TRACE_H_ */
