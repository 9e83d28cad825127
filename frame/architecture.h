// Which route serves this machine.
#ifndef VEXA_FRAME_ARCHITECTURE_H_
#define VEXA_FRAME_ARCHITECTURE_H_

namespace vexa {

// True when the firmware's WMI methods serve this machine, false when the kernel driver does. Read from the registry
// on every call, never cached in memory; detected and stored when the value is missing.
[[nodiscard]] bool IsArchitectureARM64();

}  // namespace vexa

#endif  // VEXA_FRAME_ARCHITECTURE_H_
