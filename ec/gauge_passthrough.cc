#include "ec/gauge_passthrough.h"

#include <algorithm>

#include "ec/healthy_table.h"
#include "frame/ec_command.h"
#include "frame/export_wall.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

constexpr uint8_t kPassThrough = 0xDE;

// First input byte of a pass-through command; the second is the register or the index.
enum Selector : uint8_t {
  kSelectRegister = 1,  // no answer: the EC fetches the register's value from the gauge
  kReadByte = 2,        // one byte of the fetched value
  kReadCount = 3,       // length of the register's value in bytes
};

uint32_t ReadGaugeNumber(const char* export_name, GaugeRegister gauge_register) noexcept {
  return Guarded(export_name, uint32_t{VEXA_NO_ANSWER}, [&]() -> uint32_t {
    if (OnFirmwareRoute(export_name)) return VEXA_NO_ANSWER;
    return ReadGaugeBlock(gauge_register).and_then(BlockNumber).value_or(VEXA_NO_ANSWER);
  });
}

}  // namespace

std::optional<GaugeBlock> ReadGaugeBlock(GaugeRegister gauge_register) noexcept {
  const auto number = static_cast<uint8_t>(gauge_register);
  const std::optional<uint8_t> count = ReadEc(kPassThrough, {kReadCount, number});
  if (!count || !WriteEc(kPassThrough, {kSelectRegister, number})) return std::nullopt;

  GaugeBlock block;
  block.size = std::min<size_t>(*count, kMaxGaugeBlock);
  for (size_t i = 0; i < block.size; ++i) {
    const std::optional<uint8_t> byte = ReadEc(kPassThrough, {kReadByte, static_cast<uint8_t>(i)});
    if (!byte) return std::nullopt;
    block.bytes[i] = *byte;
  }
  return block;
}

std::string BlockText(const GaugeBlock& block) {
  const auto end = std::find(block.bytes.begin(), block.bytes.begin() + block.size, uint8_t{0});
  return std::string(block.bytes.begin(), end);
}

std::optional<uint32_t> BlockNumber(const GaugeBlock& block) noexcept {
  if (block.size == 0) return std::nullopt;
  uint32_t number = 0;
  for (size_t i = std::min<size_t>(block.size, sizeof number); i-- > 0;) number = number << 8 | block.bytes[i];
  return number;
}

}  // namespace vexa

uint32_t BatteryHealthyTable_SafetyStatus() noexcept {
  return vexa::ReadGaugeNumber("BatteryHealthyTable_SafetyStatus", vexa::GaugeRegister::kSafetyStatus);
}

uint32_t BatteryHealthyTable_PFStatus() noexcept {
  return vexa::ReadGaugeNumber("BatteryHealthyTable_PFStatus", vexa::GaugeRegister::kPermanentFailureStatus);
}
