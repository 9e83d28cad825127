/*
 * The embedded controller (EC) byte by byte through the firmware's WMI class ATD_STS: the route of ARM64 machines.
 *
 * Each call makes its own WMI connection: it may wait up to 5 seconds for the connection and 5 seconds for the class, and
 * as long as the firmware takes for the method itself. At most 8 WMI calls of a process connect at once; waiting for a
 * turn is part of the first 5 seconds. InitializeWinIo is not needed. Threads: any, except one of a single-threaded
 * apartment, where the call fails.
 */
#ifndef VEXA_FIRMWARE_EC_H_
#define VEXA_FIRMWARE_EC_H_

#include "base.h"

VEXA_BEGIN_DECLS

/*
 * Reads one byte of an EC table.
 *
 * offset: byte within the table. table: number of the table (1: fans, 3: temperatures).
 * Returns the firmware's answer, 0 to 2147483646; VEXA_NO_ANSWER when the call fails or the answer is no such number.
 */
int32_t WOA_EC_read(uint8_t offset, uint8_t table) VEXA_NOEXCEPT;

/*
 * Writes one byte of an EC table. Returns 1 when the firmware accepted it, 0 when not. On early firmware of two models,
 * whose answer can't be told from none, 1 also when there was no answer. Makes two WMI calls: the second asks for the
 * BIOS version, by which it tells those models.
 */
uint32_t WOA_EC_write(uint8_t offset, uint8_t table, uint8_t value) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_FIRMWARE_EC_H_ */
