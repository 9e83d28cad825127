// The processor's voltage, which no export gives yet.
#ifndef VEXA_INVENTORY_CPU_VOLTAGE_H_
#define VEXA_INVENTORY_CPU_VOLTAGE_H_

#include <cstdint>

namespace vexa {

// In tenths of a volt while bit 7 is set, else bits that name possible voltages (SMBIOS type 4); VEXA_NOT_AVAILABLE
// when the query failed or there is none. Waits and `com_flag` as for the inventory exports.
uint32_t WMIGetCPUVoltage(uint32_t com_flag) noexcept;

}  // namespace vexa

#endif  // VEXA_INVENTORY_CPU_VOLTAGE_H_
