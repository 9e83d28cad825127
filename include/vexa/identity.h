/*
 * Identity of the embedded controller (EC): chip, firmware revision, project.
 *
 * All four go through the kernel driver, on every machine: they need InitializeWinIo, and on ARM64 machines, which
 * have no such driver, the EC never answers. The EC's exchanges are not bounded by the library: the driver ends them.
 *
 * Three of them ask the EC once per machine. What it answered is kept in the registry, under
 * HKEY_LOCAL_MACHINE\SOFTWARE\Vexa\Vexa System Control Interface\VexaSystemAnalysis, in the DWORD values "EcChipId",
 * "EcChipName" and "EcFwRev", and from then on every call in every process answers from there, without the EC and
 * without InitializeWinIo. The library never refreshes a value: after an update of the EC's firmware, delete
 * "EcFwRev". A decimal text in place of the number is taken as the number; anything else counts as missing and is
 * replaced. An EC that does not answer leaves the registry as it is. Storing needs administrator rights; without them
 * each call asks the EC.
 *
 * Threads: any, at any time. Two first calls at once both ask the EC and both store the same.
 */
#ifndef VEXA_IDENTITY_H_
#define VEXA_IDENTITY_H_

#include "base.h"

/* EC_ReadEcFwRev: the EC reports no revision. */
#define VEXA_NO_FIRMWARE_REVISION 65535u

/* EC_ReadEcFwRev: the EC reports a revision of two hexadecimal digits that is not a known one. */
#define VEXA_UNKNOWN_FIRMWARE_REVISION 0x7FFFu

VEXA_BEGIN_DECLS

/* Chip id, one byte. VEXA_NO_ANSWER when the EC does not answer. Kept. */
uint32_t EC_ReadEcChipId(void) VEXA_NOEXCEPT;

/*
 * The first four characters of the chip's name, the first in the top byte. VEXA_NO_ANSWER when the EC does not
 * answer. Kept.
 */
uint32_t EC_ReadEcChipName(void) VEXA_NOEXCEPT;

/*
 * Firmware revision: its two characters, the first in bits 8-15. Kept.
 *
 * VEXA_NO_FIRMWARE_REVISION when the EC reports none, VEXA_NO_ANSWER when it does not answer. Of revisions whose
 * characters are both hexadecimal digits ("0" to "9", "A" to "F") only "AB", "AC" and "CF" are known (0x4142, 0x4143,
 * 0x4346); every other one answers VEXA_UNKNOWN_FIRMWARE_REVISION.
 */
uint32_t EC_ReadEcFwRev(void) VEXA_NOEXCEPT;

/*
 * Project information byte; bit 7: the EC reports a firmware revision. VEXA_NO_ANSWER when it does not answer. Not
 * kept.
 */
uint32_t EC_ReadProjectInformation(void) VEXA_NOEXCEPT;

VEXA_END_DECLS

#endif /* VEXA_IDENTITY_H_ */
