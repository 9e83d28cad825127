// Answers of every wrong length, on every control code that the library sends: what did not come counts as zero, and
// nothing outside the record is touched, whatever length is told.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "frame/acpi_channel.h"
#include "frame/driver_channel.h"
#include "frame/ec_command.h"
#include "frame/handles.h"
#include "frame/library_state.h"
#include "radio/usb_port.h"
#include "tests/support/import_patch.h"
#include "tests/support/opened_device.h"

namespace vexa::test {
namespace {

constexpr DWORD kLengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17, 0xFFFFFFFF};

// The device answers this many bytes, 0x81 0x82 and so on, as far as there is room for them.
DWORD g_length;
DWORD g_code;  // of the last request

BOOL WINAPI Answer(HANDLE, DWORD code, LPVOID, DWORD, LPVOID out, DWORD size, LPDWORD returned, LPOVERLAPPED) {
  g_code = code;
  auto* const bytes = static_cast<uint8_t*>(out);
  for (DWORD i = 0; i < std::min(g_length, size); ++i) bytes[i] = static_cast<uint8_t>(0x81 + i);
  *returned = g_length;
  return TRUE;
}

// The number of `size` bytes from `offset` on, of which only those that came are not zero.
uint64_t Came(DWORD offset, DWORD size) {
  uint64_t number = 0;
  for (DWORD i = 0; i < size && offset + i < g_length; ++i) number |= uint64_t{0x81 + offset + i} << 8 * i;
  return number;
}

class AnswerLengths : public testing::Test {
 protected:
  AnswerLengths() { g_library.initialised = true; }
  ~AnswerLengths() override { g_library.initialised = false; }

  ImportPatch control_{"DeviceIoControl", Answer};
};

TEST_F(AnswerLengths, NumbersOfTheDriver) {
  const struct {
    DWORD code;
    uint64_t (*call)();
    DWORD offset, size;
  } wrappers[] = {
      {0x80102040, [] { return uint64_t{ReadDriverVersion()}; }, 0, 4},
      {0x80102044, [] { return uint64_t{ReadDriverReferenceCount()}; }, 0, 4},
      {0x80102074, [] { return uint64_t{ReadCpuPowerLimit1(0)}; }, 4, 4},
      {0x80102078, [] { return uint64_t{ReadCpuPowerLimit2(0)}; }, 8, 4},
      {0x8010207C, [] { return uint64_t{ReadCpuPackagePower()}; }, 0, 4},
      {0x80102080, [] { return uint64_t{ReadCpuVoltage()}; }, 0, 4},
      {0x80102084, [] { return static_cast<uint64_t>(ReadCpuFrequency(CpuVendor::kIntel)); }, 0, 8},
      {0x80102088, [] { return static_cast<uint64_t>(ReadCpuMaxFrequency(CpuVendor::kIntel)); }, 0, 8},
      {0x80102090, [] { return static_cast<uint64_t>(ReadCpuFrequency(CpuVendor::kOther)); }, 0, 8},
      {0x80102094, [] { return static_cast<uint64_t>(ReadCpuMaxFrequency(CpuVendor::kOther)); }, 0, 8},
      {0x80102068, [] { return uint64_t{ReadCpuId(0).value().eax}; }, 0, 4},
      {0x80102068, [] { return uint64_t{ReadCpuId(0).value().edx}; }, 12, 4},
  };
  for (const auto& wrapper : wrappers) {
    for (const DWORD length : kLengths) {
      g_length = length;
      EXPECT_EQ(wrapper.call(), Came(wrapper.offset, wrapper.size)) << std::hex << wrapper.code << " " << length;
      EXPECT_EQ(g_code, wrapper.code);
    }
  }
}

// An answer without its status word is a success, and one without its byte is 0.
TEST_F(AnswerLengths, EcCommand) {
  for (const DWORD length : kLengths) {
    g_length = length;
    constexpr uint8_t kData[] = {0x01, 0x31};
    uint32_t status = 0x5A5A5A5A;
    EXPECT_EQ(RwEcCmd(2, 0xDD, kData, 1, &status), Came(11, 1)) << length;
    EXPECT_EQ(status, Came(12, 4)) << length;
    EXPECT_EQ(g_code, 0x80102070u);
  }
}

TEST_F(AnswerLengths, AcpiMethodsAreZeroBelowAWord) {
  const OpenedDevice device;
  for (const DWORD length : kLengths) {
    g_length = length;
    for (const auto call : {AcpiDsts, AcpiDstsWithValue, AcpiDevs}) {
      uint32_t result = 0x5A5A5A5A;
      EXPECT_EQ(call(1, &result), 1u);
      EXPECT_EQ(result, length < 4 ? 0u : 0x84838281u) << length;
      EXPECT_EQ(g_code, 0x0022240Cu);
    }
    std::byte room[17] = {};
    size_t copied = 99;
    EXPECT_EQ(AcpiMethod("TEST", {}, std::span(room).first(16), &copied), 1u);
    EXPECT_EQ(copied, std::min<size_t>(length, 16));
    EXPECT_EQ(room[16], std::byte{0});
  }
}

TEST_F(AnswerLengths, UsbHubs) {
  const DeviceHandle hub(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  for (const DWORD length : kLengths) {
    g_length = length;
    const auto properties = AskPortProperties(hub, 0);
    EXPECT_EQ(g_code, 0x220458u);
    ASSERT_TRUE(properties);
    // 0x89
    EXPECT_EQ(properties->user_connectable, length > 8) << length;
    EXPECT_EQ(properties->type_c, length > 8) << length;
    const auto descriptor = AskDeviceDescriptor(hub, 0);
    EXPECT_EQ(g_code, 0x220410u);
    ASSERT_TRUE(descriptor);
    EXPECT_EQ(descriptor->bcd_usb, Came(14, 2)) << length;
    EXPECT_EQ(descriptor->device_class, Came(16, 1)) << length;
  }
}

}  // namespace
}  // namespace vexa::test
