// The driver's thin wrappers, the ACPI channel, USB hubs and the debug-log folder: what is sent, and answers of every
// wrong length, of which what did not come counts as zero, and nothing outside the record is touched, whatever length
// is told.
#include <cstring>

#include "frame/acpi_channel.h"
#include "frame/debug_log_folder.h"
#include "frame/driver_channel.h"
#include "frame/ec_command.h"
#include "frame/handles.h"
#include "frame/library_state.h"
#include "radio/usb_port.h"
#include "tests/support/ec_test.h"
#include "tests/support/opened_device.h"

namespace vexa::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr DWORD kLengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 0xFFFFFFFF};

// A device behind DeviceIoControl: what it was asked last, and what it answers: 0x81 0x82 and so on, or `answer`.
struct Device {
  DWORD length = 16;  // that it tells
  Bytes answer;
  bool fails = false;
  DWORD code = 0, out_size = 0;
  Bytes in;
  int requests = 0;
} g_device;

BOOL WINAPI Control(HANDLE, DWORD code, LPVOID in, DWORD in_size, LPVOID out, DWORD size, LPDWORD returned,
                    LPOVERLAPPED) {
  const auto* const sent = static_cast<uint8_t*>(in);
  g_device.code = code;
  g_device.out_size = size;
  g_device.in.assign(sent, sent + in_size);
  ++g_device.requests;
  if (g_device.fails) return FALSE;
  auto* const bytes = static_cast<uint8_t*>(out);
  if (!g_device.answer.empty()) g_device.length = static_cast<DWORD>(g_device.answer.size());
  for (DWORD i = 0; i < std::min(g_device.length, size); ++i) {
    bytes[i] = g_device.answer.empty() ? static_cast<uint8_t>(0x81 + i) : g_device.answer[i];
  }
  *returned = g_device.length;
  return TRUE;
}

// The number of `size` bytes from `offset` on, of which only those that came are not zero.
uint64_t Came(DWORD offset, DWORD size) {
  uint64_t number = 0;
  for (DWORD i = 0; i < size && offset + i < g_device.length; ++i) number |= uint64_t{0x81 + offset + i} << 8 * i;
  return number;
}

class DeviceChannels : public ShellTest {
 protected:
  DeviceChannels() { g_device = {}; }
  ~DeviceChannels() override { g_library = {}; }

  ArchValue arch_{L"x64"};
  ImportPatch control_{"DeviceIoControl", Control};
};

TEST_F(DeviceChannels, NumbersOfTheDriver) {
  const struct {
    DWORD code;
    uint64_t (*call)();
    DWORD offset, size;  // of the number in the answer
    size_t in_size;
    DWORD out_size;
  } wrappers[] = {
      {0x80102040, [] { return uint64_t{ReadDriverVersion()}; }, 0, 4, 0, 4},
      {0x80102044, [] { return uint64_t{ReadDriverReferenceCount()}; }, 0, 4, 0, 4},
      {0x80102074, [] { return uint64_t{ReadCpuPowerLimit1(0xAABBCCDD)}; }, 4, 4, 12, 12},
      {0x80102078, [] { return uint64_t{ReadCpuPowerLimit2(0xAABBCCDD)}; }, 8, 4, 12, 12},
      {0x8010207C, [] { return uint64_t{ReadCpuPackagePower()}; }, 0, 4, 0, 8},
      {0x80102080, [] { return uint64_t{ReadCpuVoltage()}; }, 0, 4, 0, 8},
      {0x80102084, [] { return static_cast<uint64_t>(ReadCpuFrequency(CpuVendor::kIntel)); }, 0, 8, 0, 8},
      {0x80102088, [] { return static_cast<uint64_t>(ReadCpuMaxFrequency(CpuVendor::kIntel)); }, 0, 8, 0, 8},
      {0x80102090, [] { return static_cast<uint64_t>(ReadCpuFrequency(CpuVendor::kOther)); }, 0, 8, 0, 8},
      {0x80102094, [] { return static_cast<uint64_t>(ReadCpuMaxFrequency(CpuVendor::kOther)); }, 0, 8, 0, 8},
  };
  for (const auto& wrapper : wrappers) {
    SCOPED_TRACE(wrapper.code);
    // They don't test whether the library is initialised: the request itself decides.
    for (const DWORD length : kLengths) {
      g_device.length = length;
      EXPECT_EQ(wrapper.call(), Came(wrapper.offset, wrapper.size)) << length;
    }
    EXPECT_EQ(g_device.code, wrapper.code);
    EXPECT_EQ(g_device.in.size(), wrapper.in_size);
    EXPECT_EQ(g_device.out_size, wrapper.out_size);
    if (wrapper.in_size == 12)
      EXPECT_THAT(Bytes(&g_device.in[0], &g_device.in[4]), ElementsAre(0xDD, 0xCC, 0xBB, 0xAA));
    g_device.fails = true;
    EXPECT_EQ(wrapper.call(), 0u);
    g_device.fails = false;
  }
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(DeviceChannels, CpuIdNeedsInitialisationAndNamesItsLength) {
  EXPECT_FALSE(ReadCpuId(7));
  EXPECT_EQ(g_device.requests, 0);
  g_library.initialised = true;
  for (const DWORD length : kLengths) {
    g_device.length = length;
    const CpuIdAnswer answer = ReadCpuId(7).value();
    EXPECT_EQ(answer.eax, Came(0, 4));
    EXPECT_EQ(answer.edx, Came(12, 4));
  }
  EXPECT_EQ(g_device.code, 0x80102068u);
  ASSERT_EQ(g_device.in.size(), 21u);
  EXPECT_EQ(g_device.in[0], 7);
  EXPECT_EQ(g_device.in[20], 21);
  EXPECT_EQ(g_device.out_size, 16u);
}

TEST_F(DeviceChannels, VendorTest) {
  const auto vendor = [](const std::string& registers) {
    g_device.answer = Bytes(4, 0);
    g_device.answer.insert(g_device.answer.end(), registers.begin(), registers.end());
    return ReadCpuVendor();
  };
  g_library.initialised = true;
  EXPECT_EQ(vendor("GenuntelineI"), CpuVendor::kIntel);
  EXPECT_EQ(g_device.in[0], 0);
  EXPECT_EQ(vendor("GenuineIntel"), CpuVendor::kOther);  // in another order
  EXPECT_EQ(vendor("AuthcAMDenti"), CpuVendor::kOther);
  g_device.fails = true;
  EXPECT_EQ(vendor("GenuntelineI"), CpuVendor::kOther);
  g_device = {};
  g_library.initialised = false;
  EXPECT_EQ(vendor("GenuntelineI"), CpuVendor::kOther);
  ArchValue::Set(L"ARM64");
  g_library.initialised = true;
  EXPECT_EQ(vendor("GenuntelineI"), CpuVendor::kArm64);
  EXPECT_EQ(g_device.requests, 0);
}

// An answer without its status word is a success, and one without its byte is 0.
TEST_F(DeviceChannels, EcCommand) {
  g_library.initialised = true;
  for (const DWORD length : kLengths) {
    g_device.length = length;
    constexpr uint8_t kData[] = {0x01, 0x31};
    uint32_t status = 0x5A5A5A5A;
    EXPECT_EQ(RwEcCmd(2, 0xDD, kData, 1, &status), Came(11, 1)) << length;
    EXPECT_EQ(status, Came(12, 4)) << length;
    EXPECT_EQ(g_device.code, 0x80102070u);
  }
}

TEST_F(DeviceChannels, UsbHubs) {
  const DeviceHandle hub(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  for (const DWORD length : kLengths) {
    g_device.length = length;
    const auto properties = AskPortProperties(hub, 0);
    EXPECT_EQ(g_device.code, 0x220458u);
    ASSERT_TRUE(properties);
    // 0x89
    EXPECT_EQ(properties->user_connectable, length > 8) << length;
    EXPECT_EQ(properties->type_c, length > 8) << length;
    const auto descriptor = AskDeviceDescriptor(hub, 0);
    EXPECT_EQ(g_device.code, 0x220410u);
    ASSERT_TRUE(descriptor);
    EXPECT_EQ(descriptor->bcd_usb, Came(14, 2)) << length;
    EXPECT_EQ(descriptor->device_class, Came(16, 1)) << length;
  }
}

// ---- ACPI ----

class AcpiChannel : public DeviceChannels {
 protected:
  OpenedDevice opened_;
};

TEST_F(AcpiChannel, EachMethodItsRecordAndItsLines) {
  const struct {
    uint32_t (*call)(uint32_t, uint32_t*);
    uint32_t argument;
    Bytes in;
    Strings lines;  // of a call that succeeds; the last one only then
  } methods[] = {
      {AcpiDsts,
       0x00060094,
       {'D', 'S', 'T', 'S', 4, 0, 0, 0, 0x94, 0x00, 0x06, 0x00},
       {"5 [ACPI_OBX_DSTS] Arg = 0x60094", "5 [ACPI_OBX_DSTS] return = 0x84838281"}},
      {AcpiDstsWithValue,
       0x11223344,
       {'D', 'S', 'T', 'S', 8, 0, 0, 0, 0xF2, 0x00, 0x12, 0x00, 0x44, 0x33, 0x22, 0x11},
       {}},
      {AcpiDevs,
       80,
       {'D', 'E', 'V', 'S', 8, 0, 0, 0, 0x59, 0x00, 0x06, 0x00, 80, 0, 0, 0},
       {"5 [ACPI_OBX_DEVS] Arg0 = 0x60059, Arg1 = 0x50", "5 [ACPI_OBX_DEVS] return = 0x84838281"}},
  };
  for (const auto& method : methods) {
    uint32_t result = 0xDEAD;
    g_device = {};
    EXPECT_EQ(method.call(method.argument, &result), 1u);
    EXPECT_EQ(result, 0x84838281u);
    EXPECT_EQ(opened_.name, L"\\\\.\\OBXACPI");
    EXPECT_EQ(opened_.access, GENERIC_READ | GENERIC_WRITE);
    EXPECT_EQ(opened_.share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
    EXPECT_EQ(opened_.disposition, DWORD{OPEN_EXISTING});
    EXPECT_EQ(opened_.flags, 0u);
    EXPECT_EQ(g_device.code, 0x0022240Cu);
    EXPECT_EQ(g_device.out_size, 1024u);
    EXPECT_EQ(g_device.in, method.in);
    EXPECT_EQ(Lines(), method.lines);
    for (const DWORD length : kLengths) {
      g_device.length = length;
      EXPECT_EQ(method.call(1, &result), 1u);
      EXPECT_EQ(result, length < 4 ? 0u : 0x84838281u) << length;
    }
    Lines();
    g_device.fails = true;
    EXPECT_EQ(method.call(method.argument, &result), 0u);
    EXPECT_EQ(Lines(), FirstOf(method.lines, 1));
    EXPECT_EQ(opened_.open, 0);
    opened_.opens = false;
    g_device.requests = 0;
    EXPECT_EQ(method.call(1, &result), 0u);
    EXPECT_EQ(g_device.requests, 0);
    opened_.opens = true;
    Lines();
  }
}

TEST_F(AcpiChannel, GeneralFormCopiesWhatBothSidesHold) {
  const std::byte arguments[3] = {std::byte{7}, std::byte{8}, std::byte{9}};
  std::byte room[17] = {};
  size_t copied = 99;
  for (const DWORD length : kLengths) {
    g_device.length = length;
    EXPECT_EQ(AcpiMethod("OBXD", arguments, std::span(room).first(16), &copied), 1u);
    EXPECT_EQ(copied, std::min<size_t>(length, 16));
    EXPECT_EQ(room[16], std::byte{0});
  }
  EXPECT_EQ(room[15], std::byte{0x90});
  EXPECT_THAT(g_device.in, ElementsAre('O', 'B', 'X', 'D', 3, 0, 0, 0, 7, 8, 9));
  EXPECT_EQ(AcpiMethod("OBXD", {}, room, &copied), 1u);
  EXPECT_THAT(g_device.in, ElementsAre('O', 'B', 'X', 'D', 0, 0, 0, 0));
  g_device.fails = true;
  EXPECT_EQ(AcpiMethod("OBXD", {}, room, &copied), 0u);
  EXPECT_EQ(copied, 0u);
}

// ---- Debug-log folder ----

TEST(DebugLogFolder, CreatesEveryLevelAndSucceedsAgain) {
  const wchar_t* levels[] = {
      L"C:\\ProgramData\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis\\DebugLog",
      L"C:\\ProgramData\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis",
      L"C:\\ProgramData\\Vexa\\Vexa System Control Interface",
      L"C:\\ProgramData\\Vexa",
  };
  for (const wchar_t* level : levels) RemoveDirectoryW(level);
  EXPECT_TRUE(CreateDebugLogFolder());
  for (const wchar_t* level : levels) EXPECT_NE(GetFileAttributesW(level), INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(CreateDebugLogFolder());
  RemoveDirectoryW(levels[0]);
  // A file where a folder should be can't be helped, and is told.
  CloseHandle(CreateFileW(levels[0], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  EXPECT_FALSE(CreateDebugLogFolder());
  DeleteFileW(levels[0]);
}

}  // namespace
}  // namespace vexa::test
