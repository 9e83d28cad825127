// The driver's thin wrappers, the ACPI channel, the battery class and the debug-log folder.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "frame/acpi_channel.h"
#include "frame/debug_log_folder.h"
#include "frame/driver_channel.h"
#include "frame/library_state.h"
#include "tests/support/arch_value.h"
#include "tests/support/opened_device.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

struct Request {
  uint32_t code;
  Bytes in;
  size_t out_size;
};

class DeviceChannels : public testing::Test {
 protected:
  DeviceChannels() {
    TraceRecorder::Get().Enable(0);
    TraceRecorder::Get().TakeEvents();
    driver_.device = [this](uint32_t code, const Bytes& in, Bytes& out) {
      requests_.push_back({code, in, out.size()});
      if (fails_) return false;
      for (size_t i = 0; i < out.size(); ++i) out[i] = static_cast<uint8_t>(first_ + i);
      if (!answer_.empty()) out = answer_;
      return true;
    };
  }

  Request Take() {
    EXPECT_EQ(requests_.size(), 1u);
    Request request = requests_.empty() ? Request{} : requests_.front();
    requests_.clear();
    return request;
  }

  ArchValue arch_{L"x64"};
  ScriptedEc driver_;
  std::vector<Request> requests_;
  Bytes answer_;
  uint8_t first_ = 1;
  bool fails_ = false;
};

TEST_F(DeviceChannels, EachWrapperHasItsCodeShapeAndAnswer) {
  const struct {
    int64_t (*call)();
    uint32_t code;
    size_t in_size, out_size;
    int64_t answer;
  } wrappers[] = {
      {[] { return int64_t{ReadDriverVersion()}; }, 0x80102040, 0, 4, 0x04030201},
      {[] { return int64_t{ReadDriverReferenceCount()}; }, 0x80102044, 0, 4, 0x04030201},
      {[] { return int64_t{ReadCpuPowerLimit1(0xAABBCCDD)}; }, 0x80102074, 12, 12, 0x08070605},
      {[] { return int64_t{ReadCpuPowerLimit2(0xAABBCCDD)}; }, 0x80102078, 12, 12, 0x0C0B0A09},
      {[] { return int64_t{ReadCpuPackagePower()}; }, 0x8010207C, 0, 8, 0x04030201},
      {[] { return int64_t{ReadCpuVoltage()}; }, 0x80102080, 0, 8, 0x04030201},
      {[] { return ReadCpuFrequency(CpuVendor::kIntel); }, 0x80102084, 0, 8, 0x0807060504030201},
      {[] { return ReadCpuFrequency(CpuVendor::kOther); }, 0x80102090, 0, 8, 0x0807060504030201},
      {[] { return ReadCpuMaxFrequency(CpuVendor::kIntel); }, 0x80102088, 0, 8, 0x0807060504030201},
      {[] { return ReadCpuMaxFrequency(CpuVendor::kOther); }, 0x80102094, 0, 8, 0x0807060504030201},
  };
  for (const auto& wrapper : wrappers) {
    // They don't test whether the library is initialised: the request itself decides.
    g_library.initialised = false;
    fails_ = false;
    answer_.clear();
    EXPECT_EQ(wrapper.call(), wrapper.answer) << std::hex << wrapper.code;
    const Request request = Take();
    EXPECT_EQ(request.code, wrapper.code);
    EXPECT_EQ(request.in.size(), wrapper.in_size);
    EXPECT_EQ(request.out_size, wrapper.out_size);
    if (wrapper.in_size == 12)
      EXPECT_THAT(Bytes(request.in.begin(), request.in.begin() + 4), ElementsAre(0xDD, 0xCC, 0xBB, 0xAA));
    fails_ = true;
    EXPECT_EQ(wrapper.call(), 0);
    requests_.clear();
  }
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), IsEmpty());
}

TEST_F(DeviceChannels, ShortAnswersLeaveZeros) {
  answer_ = {0xFF};
  EXPECT_EQ(ReadDriverVersion(), 0xFFu);
  EXPECT_EQ(ReadCpuPackagePower(), 0xFFu);
  EXPECT_EQ(ReadCpuPowerLimit2(0x01020304), 0u);
  EXPECT_EQ(ReadCpuFrequency(CpuVendor::kIntel), 0xFF);
}

TEST_F(DeviceChannels, CpuIdNeedsInitialisationAndNamesItsLength) {
  const std::optional<CpuIdAnswer> answer = ReadCpuId(7);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->eax, 0x04030201u);
  EXPECT_EQ(answer->edx, 0x100F0E0Du);
  const Request request = Take();
  EXPECT_EQ(request.code, 0x80102068u);
  ASSERT_EQ(request.in.size(), 21u);
  EXPECT_EQ(request.in[0], 7);
  EXPECT_EQ(request.in[20], 21);
  EXPECT_EQ(request.out_size, 16u);
  g_library.initialised = false;
  EXPECT_FALSE(ReadCpuId(7));
  EXPECT_THAT(requests_, IsEmpty());
}

TEST_F(DeviceChannels, VendorTest) {
  const auto set = [this](const char* ebx, const char* ecx, const char* edx) {
    answer_ = Bytes(16, 0);
    std::memcpy(&answer_[4], ebx, 4);
    std::memcpy(&answer_[8], ecx, 4);
    std::memcpy(&answer_[12], edx, 4);
  };
  set("Genu", "ntel", "ineI");
  EXPECT_EQ(ReadCpuVendor(), CpuVendor::kIntel);
  EXPECT_EQ(Take().in[0], 0);
  set("Genu", "ineI", "ntel");
  EXPECT_EQ(ReadCpuVendor(), CpuVendor::kOther);
  set("Auth", "cAMD", "enti");
  EXPECT_EQ(ReadCpuVendor(), CpuVendor::kOther);
  set("Genu", "ntel", "ineI");
  fails_ = true;
  EXPECT_EQ(ReadCpuVendor(), CpuVendor::kOther);
  requests_.clear();
  fails_ = false;
  g_library.initialised = false;
  EXPECT_EQ(ReadCpuVendor(), CpuVendor::kOther);
  ArchValue::Set(L"ARM64");
  g_library.initialised = true;
  EXPECT_EQ(ReadCpuVendor(), CpuVendor::kArm64);
  EXPECT_THAT(requests_, IsEmpty());
}

// ---- ACPI ----

class AcpiChannel : public DeviceChannels {
 protected:
  OpenedDevice opened_;
  uint32_t result_ = 0xDEAD;
};

TEST_F(AcpiChannel, RecordsOfTheThreeForms) {
  EXPECT_EQ(AcpiDsts(0x00060094, &result_), 1u);
  EXPECT_EQ(result_, 0x04030201u);
  EXPECT_EQ(opened_.name, L"\\\\.\\OBXACPI");
  EXPECT_EQ(opened_.access, GENERIC_READ | GENERIC_WRITE);
  EXPECT_EQ(opened_.share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
  EXPECT_EQ(opened_.disposition, DWORD{OPEN_EXISTING});
  EXPECT_EQ(opened_.flags, 0u);
  Request request = Take();
  EXPECT_EQ(request.code, 0x0022240Cu);
  EXPECT_EQ(request.out_size, 1024u);
  EXPECT_THAT(request.in, ElementsAre('D', 'S', 'T', 'S', 4, 0, 0, 0, 0x94, 0x00, 0x06, 0x00));
  EXPECT_THAT(TraceRecorder::Get().TakeLines(),
              ElementsAre("5 [ACPI_OBX_DSTS] Arg = 0x60094", "5 [ACPI_OBX_DSTS] return = 0x4030201"));

  EXPECT_EQ(AcpiDstsWithValue(0x11223344, &result_), 1u);
  EXPECT_THAT(Take().in, ElementsAre('D', 'S', 'T', 'S', 8, 0, 0, 0, 0xF2, 0x00, 0x12, 0x00, 0x44, 0x33, 0x22, 0x11));
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), IsEmpty());

  EXPECT_EQ(AcpiDevs(80, &result_), 1u);
  EXPECT_THAT(Take().in, ElementsAre('D', 'E', 'V', 'S', 8, 0, 0, 0, 0x59, 0x00, 0x06, 0x00, 80, 0, 0, 0));
  EXPECT_THAT(TraceRecorder::Get().TakeLines(),
              ElementsAre("5 [ACPI_OBX_DEVS] Arg0 = 0x60059, Arg1 = 0x50", "5 [ACPI_OBX_DEVS] return = 0x4030201"));
  EXPECT_EQ(opened_.total, 3);
  EXPECT_EQ(opened_.open, 0);
}

TEST_F(AcpiChannel, ShortAnswersAreZeroAndFailuresCloseTheDevice) {
  answer_ = {1, 2, 3};
  EXPECT_EQ(AcpiDsts(1, &result_), 1u);
  EXPECT_EQ(result_, 0u);
  fails_ = true;
  TraceRecorder::Get().TakeEvents();
  EXPECT_EQ(AcpiDevs(1, &result_), 0u);
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), ElementsAre("5 [ACPI_OBX_DEVS] Arg0 = 0x60059, Arg1 = 0x1"));
  EXPECT_EQ(opened_.open, 0);
  requests_.clear();
  opened_.opens = false;
  EXPECT_EQ(AcpiDsts(1, &result_), 0u);
  EXPECT_THAT(requests_, IsEmpty());
}

TEST_F(AcpiChannel, GeneralFormCopiesWhatBothSidesHold) {
  const std::byte arguments[3] = {std::byte{7}, std::byte{8}, std::byte{9}};
  std::byte buffer[6] = {};
  size_t copied = 99;
  answer_ = {10, 20, 30, 40};
  EXPECT_EQ(AcpiMethod("OBXD", arguments, std::span(buffer, 5), &copied), 1u);
  EXPECT_EQ(copied, 4u);
  EXPECT_EQ(buffer[3], std::byte{40});
  EXPECT_THAT(Take().in, ElementsAre('O', 'B', 'X', 'D', 3, 0, 0, 0, 7, 8, 9));
  answer_ = Bytes(1024, 0xEE);
  EXPECT_EQ(AcpiMethod("OBXD", {}, std::span(buffer, 5), &copied), 1u);
  EXPECT_EQ(copied, 5u);
  EXPECT_EQ(buffer[5], std::byte{0});
  EXPECT_THAT(requests_.back().in, ElementsAre('O', 'B', 'X', 'D', 0, 0, 0, 0));
  fails_ = true;
  EXPECT_EQ(AcpiMethod("OBXD", {}, buffer, &copied), 0u);
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
  const HANDLE file = CreateFileW(levels[0], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  CloseHandle(file);
  EXPECT_FALSE(CreateDebugLogFolder());
  DeleteFileW(levels[0]);
}

}  // namespace
}  // namespace vexa::test
