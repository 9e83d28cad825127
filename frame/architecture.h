// Which route serves this machine.
#ifndef VEXA_FRAME_ARCHITECTURE_H_
#define VEXA_FRAME_ARCHITECTURE_H_

namespace vexa {

// True when the firmware's WMI methods serve this machine, false when the kernel driver does. Read from the registry
// on every call, never cached in memory; detected and stored when the value is missing.
[[nodiscard]] bool IsArchitectureARM64();

// Whether the system inventory says that the processor is an ARM64 one; false also when it can't be asked. May wait for
// the inventory's 5 seconds and 5 seconds. Defined beside the inventory.
[[nodiscard]] bool ProcessorIsArm64() noexcept;

}  // namespace vexa

#endif  // VEXA_FRAME_ARCHITECTURE_H_
