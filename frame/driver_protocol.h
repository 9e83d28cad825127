// What travels between the library and the kernel driver: control codes and records, little-endian, byte-packed.
#ifndef VEXA_FRAME_DRIVER_PROTOCOL_H_
#define VEXA_FRAME_DRIVER_PROTOCOL_H_

#include <cstddef>
#include <cstdint>

namespace vexa {

// Device type 0x8010, buffered, any access.
enum class ControlCode : uint32_t {
  kDriverVersion = 0x80102040,         // out: 32-bit version
  kDriverReferenceCount = 0x80102044,  // out: 32-bit count
  kCpuId = 0x80102068,                 // in: CpuIdRequest, out: CpuIdAnswer
  kEcCommand = 0x80102070,             // in and out: EcCommandRecord
  kPowerLimit1 = 0x80102074,           // in and out: PowerLimitRecord
  kPowerLimit2 = 0x80102078,           // in and out: PowerLimitRecord
  kPackagePower = 0x8010207C,          // out: 64-bit
  kCpuVoltage = 0x80102080,            // out: 8 bytes, the answer in the low 32 bits
  kIntelFrequency = 0x80102084,        // out: 64-bit signed
  kIntelMaxFrequency = 0x80102088,     // out: 64-bit signed
  kOtherFrequency = 0x80102090,        // out: 64-bit signed
  kOtherMaxFrequency = 0x80102094,     // out: 64-bit signed
};

inline constexpr size_t kMaxEcData = 8;

#pragma pack(push, 1)

struct EcCommandRecord {
  uint8_t command;
  uint8_t data_count;
  uint8_t data[kMaxEcData];
  uint8_t read_flag;  // 1 when the command returns a byte
  uint8_t result;
  uint32_t status;  // 0: success
};

struct CpuIdRequest {
  uint32_t leaf;
  uint8_t unused[16];
  uint8_t length;  // of this record
};

struct CpuIdAnswer {
  uint32_t eax, ebx, ecx, edx;
};

struct PowerLimitRecord {
  uint32_t firmware_revision;
  uint32_t limit1;
  uint32_t limit2;
};

#pragma pack(pop)

static_assert(sizeof(EcCommandRecord) == 16 && offsetof(EcCommandRecord, data) == 2);
static_assert(offsetof(EcCommandRecord, read_flag) == 10 && offsetof(EcCommandRecord, result) == 11);
static_assert(offsetof(EcCommandRecord, status) == 12);
static_assert(sizeof(CpuIdRequest) == 21 && offsetof(CpuIdRequest, length) == 20);
static_assert(sizeof(CpuIdAnswer) == 16);
static_assert(sizeof(PowerLimitRecord) == 12 && offsetof(PowerLimitRecord, limit2) == 8);

}  // namespace vexa

#endif  // VEXA_FRAME_DRIVER_PROTOCOL_H_
