// Clearing single data flags, for the export that reads them.
#ifndef VEXA_EC_ADAPTER_WRITES_H_
#define VEXA_EC_ADAPTER_WRITES_H_

#include <cstdint>

namespace vexa {

// Clears the data flags whose bits `mask` has. From version 23, which it reads for itself. Returns 1 when the EC
// accepted it, 0 when not.
uint32_t Adapter_Clear_Power_Data_Flag_Bitwise(uint8_t mask) noexcept;

}  // namespace vexa

#endif  // VEXA_EC_ADAPTER_WRITES_H_
