// Selecting and driving the fans, and what the fan mutex guards.
#include <algorithm>
#include <cstdint>

#include "ec/healthy_table.h"
#include "frame/export_wall.h"
#include "frame/log.h"
#include "frame/mutex_guard.h"
#include "vexa/firmware_ec.h"
#include "vexa/thermal.h"

namespace vexa {
namespace {

constexpr uint8_t kTestModeOffset = 0x31;
constexpr uint8_t kFanIndexOffset = 0x32;
constexpr uint8_t kFanDutyOffset = 0x35;

constexpr uint8_t kFirmwareTestModeWrite = 0x82;
constexpr uint8_t kFirmwareFans = 1;

// Gives the mutex back at the end of the scope, unless it is kept.
class FanLock {
 public:
  explicit FanLock(MutexWrapper& guard) noexcept : guard_(&guard) {}
  ~FanLock() {
    if (guard_ != nullptr) guard_->Unlock();
  }

  FanLock(const FanLock&) = delete;
  FanLock& operator=(const FanLock&) = delete;

  void Keep() noexcept { guard_ = nullptr; }

 private:
  MutexWrapper* guard_;
};

uint32_t WriteFan(const char* name, uint8_t offset, uint8_t value, const char* no_table_line) noexcept {
  return Guarded(name, 0u, [&]() -> uint32_t {
    if (OnFirmwareRoute(name)) return 0;
    return PassesTableGate(no_table_line) && WriteTableByte(kThermalGroup, offset, value) ? 1 : 0;
  });
}

uint32_t SetTestMode(uint32_t mode) {
  LogInfo("[EC_BH][HealthyTable_SetFanTestMode]");
  static MutexWrapper guard = MutexWrapper::Fan(VEXA_FAN_TEST_MODE_WAIT_MS);
  const bool on = mode != 0;
  if (on && guard.Lock(VEXA_FAN_TEST_MODE_WAIT_MS) == 0) return 0;
  FanLock lock(guard);
  bool written = false;
  if (OnFirmwareRoute("HealthyTable_SetFanTestMode", "[EC_BH]")) {
    written = WOA_EC_write(kFirmwareTestModeWrite, kFirmwareFans, static_cast<uint8_t>((mode & 0x7F) * 2)) != 0;
  } else {
    if (!PassesTableGate("[EC_BH][HealthyTable_SetFanTestMode] Fail. BatteryHealthyTable version: ")) return 0;
    written = WriteTableByte(kThermalGroup, kTestModeOffset, on ? 1 : 0);
  }
  // Kept: as long as test mode is on, no other process is to drive the fans; also when the EC did not take the mode.
  if (on) lock.Keep();
  return written ? 1 : 0;
}

uint32_t ReadFanUnderMutex(int32_t index) {
  static MutexWrapper guard = MutexWrapper::Fan(VEXA_FAN_READ_WAIT_MS);
  if (guard.Lock(VEXA_FAN_READ_WAIT_MS) == 0) return VEXA_NO_ANSWER;
  const FanLock lock(guard);
  // Kept: compared as signed numbers, and whether the EC took the index is not looked at: the firmware route selects
  // nothing and has a speed all the same.
  if (index >= static_cast<int32_t>(HealthyTable_FanCounts())) return 0;
  HealthyTable_SetFanIndex(static_cast<uint32_t>(index));
  return HealthyTable_FanRPM();
}

}  // namespace
}  // namespace vexa

uint32_t HealthyTable_SetFanIndex(uint32_t index) noexcept {
  if (index > VEXA_MAX_FAN_INDEX) return 0;
  return vexa::WriteFan("HealthyTable_SetFanIndex", vexa::kFanIndexOffset, static_cast<uint8_t>(index),
                        "[EC_BH][HealthyTable_SetFanIndex] Fail. BatteryHealthyTable version: ");
}

uint32_t HealthyTable_SetFanPwmDuty(uint8_t duty) noexcept {
  return vexa::WriteFan("HealthyTable_SetFanPwmDuty", vexa::kFanDutyOffset, duty,
                        "[EC_BH][HealthyTable_SetFanPwmDuty] Fail. BatteryHealthyTable version: ");
}

uint32_t HealthyTable_SetFanTestMode(uint32_t mode) noexcept {
  return vexa::Guarded("HealthyTable_SetFanTestMode", 0u, [=] { return vexa::SetTestMode(mode); });
}

uint32_t HealthyTable_Read_Fan(uint32_t* rpm) noexcept {
  if (rpm == nullptr) return VEXA_NO_ANSWER;
  const uint32_t count = HealthyTable_FanCounts();
  if (count >= VEXA_NO_ANSWER) {
    rpm[0] = VEXA_NOT_AVAILABLE;
    return count;
  }
  uint32_t last = count;
  for (uint32_t i = 0; i < std::min<uint32_t>(count, VEXA_FAN_SLOTS); ++i) {
    HealthyTable_SetFanIndex(i);
    last = rpm[i] = HealthyTable_FanRPM();
  }
  return last;
}

uint32_t Quillo_Read_Fan(int32_t index) noexcept {
  return vexa::Guarded("Quillo_Read_Fan", uint32_t{VEXA_NO_ANSWER}, [=] { return vexa::ReadFanUnderMutex(index); });
}
