// The manufacture-information handshake: the EC fetches 32 bytes from the gauge on request.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "vexa/battery.h"

namespace vexa {
namespace {

constexpr uint32_t kLeastVersion = 10;
constexpr uint8_t kChargeErrorOffset = 0x03;
constexpr uint8_t kRequestOffset = 0x5A;
constexpr uint8_t kHandshakeOffset = 0x5B;
constexpr uint8_t kDataOffset = 0x60;
constexpr uint8_t kDataSize = 32;

constexpr uint8_t kDataReady = 0x10;  // of the handshake byte
constexpr uint8_t kPrechargeTimeout = 0x40;
constexpr uint8_t kBusy = 0x80;
constexpr uint8_t kChargeErrorBlocks = 0x04;  // of the charge-error byte
constexpr uint8_t kRequestData = 0x10;        // written to the request register

constexpr int kPollLimit = 4;
constexpr DWORD kPollPauseMs = 1000;

// A failed read of a status byte counts as no bit set.
uint8_t ReadStatus(uint8_t offset) noexcept { return ReadTableByte(kBatteryGroup, offset).value_or(0); }

bool WaitForData() noexcept {
  for (int poll = 1;; ++poll) {
    if (ReadStatus(kHandshakeOffset) & kDataReady) return true;
    if (poll == kPollLimit) return false;
    Sleep(kPollPauseMs);
  }
}

std::string ReadData() {
  std::string text;
  for (uint8_t i = 0; i < kDataSize; ++i) {
    text += i == 0 ? "0x" : ",0x";
    text += HexText(ReadStatus(static_cast<uint8_t>(kDataOffset + i)));
  }
  return text;
}

std::string ReadBatteryInformation() {
  if (OnFirmwareRoute("BatteryHealthyTable_BatteryInformation")) return {};
  const uint32_t version = ReadTableVersion();
  // A version that can't be read is not below the least one: the handshake itself then finds no answer.
  if (version < kLeastVersion) {
    LogBuilt(TraceLevel::kVerbose, [version] {
      return Line("[EC_BH][BatteryHealthyTable_BatteryInformation] Fail. BatteryHealthyTable version < 10, version: ",
                  version);
    });
    return {};
  }

  const uint8_t handshake = ReadStatus(kHandshakeOffset);
  if (handshake & kPrechargeTimeout) {
    LogInfo("[EC_BH][BatteryHealthyTable_BatteryInformation] Abnormal Precharge Timeout");
    return {};
  }
  if (!(handshake & kBusy) && !(ReadStatus(kChargeErrorOffset) & kChargeErrorBlocks)) {
    LogInfo("[EC_BH][BatteryHealthyTable_BatteryInformation] Set ManufactureInfo data request");
    // A request that is not accepted shows as data that never becomes ready.
    (void)WriteTableByte(kBatteryGroup, kRequestOffset, kRequestData);
  }
  if (!WaitForData()) {
    LogInfo("[EC_BH][BatteryHealthyTable_BatteryInformation] Get ManufactureInfo data timeout");
    return {};
  }
  return ReadData();
}

}  // namespace
}  // namespace vexa

VexaText BatteryHealthyTable_BatteryInformation() noexcept {
  using namespace vexa;
  return Guarded("BatteryHealthyTable_BatteryInformation", VexaText{}, [] {
    VexaText answer{};
    const std::string text = ReadBatteryInformation();
    // 32 bytes make at most 159 characters.
    std::memcpy(answer.text, text.c_str(), text.size() + 1);
    return answer;
  });
}
