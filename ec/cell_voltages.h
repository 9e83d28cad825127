// All cell voltages in one pass, for the EC log snapshot.
#ifndef VEXA_EC_CELL_VOLTAGES_H_
#define VEXA_EC_CELL_VOLTAGES_H_

#include <array>
#include <cstdint>
#include <optional>

namespace vexa {

// In mV, cell 1 first. Nothing, with a log line, when there is no healthy table or an exchange fails.
// Driver route only.
[[nodiscard]] std::optional<std::array<uint16_t, 4>> ReadCellVoltages();

}  // namespace vexa

#endif  // VEXA_EC_CELL_VOLTAGES_H_
