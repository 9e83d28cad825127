// The EC's named values: which command, group, offset and length, and the healthy-table version that brought each.
//
// Constant data in the order in which the EC log snapshot walks it. Pure: no EC traffic here.
#ifndef VEXA_EC_CATALOGUE_H_
#define VEXA_EC_CATALOGUE_H_

#include <cstdint>
#include <span>
#include <string_view>

namespace vexa {

inline constexpr uint8_t kEcInfoRead = 0xBB;     // EC information register
inline constexpr uint8_t kEcTableAccess = 0xDD;  // healthy-table group
inline constexpr uint8_t kSubTable = 0xFF;       // not a command: refers to a sub-table
inline constexpr uint8_t kGroupWrite = 0x80;     // in a group number: written, not read

enum EcGroup : uint8_t {
  kBatteryGroup = 1,
  kThermalGroup = 2,
  kGpioGroup = 3,
  kOtherGroup = 4,
  kPdControllerGroup = 5,
  kAdapterGroup = 6,
  kPowerEventGroup = 7,
  kConsumerGroup = 8,
  kWattageGroup = 0x0C,
};

struct EcCommandEntry {
  std::string_view name;
  uint32_t word;  // in a header row: the number of rows, header included (its byte 2: the first offset of a sub-table)
  uint8_t min_version;

  // Byte 0 is the least significant.
  constexpr uint8_t command() const { return static_cast<uint8_t>(word); }
  constexpr uint8_t group() const { return static_cast<uint8_t>(word >> 8); }
  constexpr uint8_t offset() const { return static_cast<uint8_t>(word >> 16); }
  constexpr uint8_t length() const { return static_cast<uint8_t>(word >> 24); }

  constexpr bool is_sub_table() const { return command() == kSubTable; }
  constexpr uint8_t sub_table() const { return group(); }
};

// Rows behind a header row.
using EcCommandTable = std::span<const EcCommandEntry>;

// A row is read only at its minimum version or above; versions compare as signed numbers.
constexpr bool IsSupported(const EcCommandEntry& row, int32_t table_version) {
  return table_version >= static_cast<int32_t>(row.min_version);
}

// The tables that the snapshot always walks, in order; kConsumerCommands comes behind them on consumer projects.
extern const EcCommandTable kEcInfoCommands;
extern const EcCommandTable kBatteryPowerCommands;
extern const EcCommandTable kThermalCommands;
extern const EcCommandTable kGpioCommands;
extern const EcCommandTable kOtherCommands;
extern const EcCommandTable kConsumerCommands;

// The item sub-tables, 3 to 6: a count, an index register that selects one item, and the item's values. Every other
// number gives an empty table: 0, 1, 2 and 7 are readers of their own.
EcCommandTable ItemSubTable(uint8_t number);

// Whether the project-information byte marks a project whose snapshot includes the consumer table.
constexpr bool HasConsumerTable(uint8_t project_information) { return (project_information & 0x70) == 0; }

}  // namespace vexa

#endif  // VEXA_EC_CATALOGUE_H_
