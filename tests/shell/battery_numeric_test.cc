// The numeric battery family on an EC whose registers tell their own offset: a swapped byte, a wrong offset or a lost
// sign shows in the number.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/arch_value.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/trace_recorder.h"
#include "vexa/battery.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr char kReadVersion[] = "bb 50 read";
constexpr uint32_t kNoAnswer = 0x7FFFFFFF;

struct Case {
  const char* name;
  uint32_t (*call)();
  std::vector<std::string> reads;  // behind the version
  uint32_t value;                  // on the EC that tells offsets
  uint32_t no_table;
  uint32_t on_failure;
  const char* line;  // of version 0, without the number
};

// clang-format off: one member a row
const Case kCases[] = {
    {"ManufactureDate", BatteryHealthyTable_ManufactureDate, {"dd 01 55 00 read", "dd 01 54 00 read"}, 0x5554,
     0xFFFFFFFF, kNoAnswer, "BatteryHealthyTable_ManufactureDate] Fail. BatteryHealthyTable version: "},
    {"SerialNumber", BatteryHealthyTable_SerialNumber, {"dd 01 29 00 read", "dd 01 28 00 read"}, 0x2928, 0, kNoAnswer,
     "BatteryHealthyTable_SerialNumber] Fail. BatteryHealthyTable version: "},
    {"DesignVoltage", BatteryHealthyTable_DesignVoltage, {"dd 01 2d 00 read", "dd 01 2c 00 read"}, 0x2D2C, 0,
     kNoAnswer, "BatteryHealthyTable_DesignVoltage] Fail. BatteryHealthyTable version: "},
    {"CycleCount", BatteryHealthyTable_CycleCount, {"dd 01 2f 00 read", "dd 01 2e 00 read"}, 0x2F2E, 0xFFFFFFFF,
     kNoAnswer, "BatteryHealthyTable_CycleCount] BatteryHealthyTable version: "},
    {"Rsoc", BatteryHealthyTable_Rsoc, {"dd 01 31 00 read", "dd 01 30 00 read"}, 0x3130, 0, kNoAnswer,
     "BatteryHealthyTable_Rsoc] BatteryHealthyTable version: "},
    {"Temperature", BatteryHealthyTable_Temperature, {"dd 01 35 00 read", "dd 01 34 00 read"}, 0x3534, 0xFFFFFFFF,
     kNoAnswer, "BatteryHealthyTable_Temperature] Fail. BatteryHealthyTable version: "},
    {"PackageVoltage", BatteryHealthyTable_PackageVoltage, {"dd 01 37 00 read", "dd 01 36 00 read"}, 0x3736,
     0xFFFFFFFF, kNoAnswer, "BatteryHealthyTable_PackageVoltage] Fail. BatteryHealthyTable version: "},
    {"Current", BatteryHealthyTable_Current, {"dd 01 39 00 read", "dd 01 38 00 read"}, 0x3938, 0xFFFFFFFF, kNoAnswer,
     "BatteryHealthyTable_Current] Fail. BatteryHealthyTable version: "},
    {"ChargingCurrent", BatteryHealthyTable_ChargingCurrent, {"dd 01 3d 00 read", "dd 01 3c 00 read"}, 0x3D3C,
     0xFFFFFFFF, kNoAnswer, "BatteryHealthyTable_ChargingCurrent] Fail. BatteryHealthyTable version: "},
    {"ChargingVoltage", BatteryHealthyTable_ChargingVoltage, {"dd 01 3f 00 read", "dd 01 3e 00 read"}, 0x3F3E,
     0xFFFFFFFF, kNoAnswer, "BatteryHealthyTable_ChargingVoltage] Fail. BatteryHealthyTable version: "},
    {"RemainingCapacity", BatteryHealthyTable_RemainingCapacity, {"dd 01 41 00 read", "dd 01 40 00 read"}, 0x4140, 0,
     kNoAnswer, "BatteryHealthyTable_RemainingCapacity] BatteryHealthyTable version: "},
    {"FullChargeCapacity", BatteryHealthyTable_FullChargeCapacity, {"dd 01 43 00 read", "dd 01 42 00 read"}, 0x4342,
     0, kNoAnswer, "BatteryHealthy_FullChargeCapacity] Fail. BatteryHealthyTable version: "},
    {"CellVoltage1", BatteryHealthyTable_CellVoltage1, {"dd 01 49 00 read", "dd 01 48 00 read"}, 0x4948, 0, kNoAnswer,
     "BatteryHealthyTable_CellVoltage1] Fail. BatteryHealthyTable version: "},
    {"CellVoltage2", BatteryHealthyTable_CellVoltage2, {"dd 01 4b 00 read", "dd 01 4a 00 read"}, 0x4B4A, 0, kNoAnswer,
     "BatteryHealthyTable_CellVoltage2] Fail. BatteryHealthyTable version: "},
    {"CellVoltage3", BatteryHealthyTable_CellVoltage3, {"dd 01 4d 00 read", "dd 01 4c 00 read"}, 0x4D4C, 0, kNoAnswer,
     "BatteryHealthyTable_CellVoltage3] Fail. BatteryHealthyTable version: "},
    {"CellVoltage4", BatteryHealthyTable_CellVoltage4, {"dd 01 4f 00 read", "dd 01 4e 00 read"}, 0x4F4E, 0, kNoAnswer,
     "BatteryHealthyTable_CellVoltage4] Fail. BatteryHealthyTable version: "},
    {"GaugeIC", BatteryHealthyTable_GaugeIC, {"dd 01 13 00 read"}, 0x13, 0, kNoAnswer,
     "BatteryHealthyTable_GaugeIC] Fail. BatteryHealthyTable version: "},
    {"BatteryError", BatteryHealthyTable_BatteryError, {"dd 01 01 00 read"}, 0, 0, 0,
     "BatteryHealthyTable_BatteryError] Fail. BatteryHealthyTable version: "},
    {"FullCharged", BatteryHealthyTable_FullCharged, {"dd 01 01 00 read"}, 0, 0, 0,
     "BatteryHealthyTable_FullCharged] Fail. BatteryHealthyTable version: "},
    {"TimeoutStatus", BatteryHealthyTable_TimeoutStatus, {"dd 01 03 00 read"}, 3, 0, 0,
     "BatteryHealthyTable_TimeoutStatus] Fail. BatteryHealthyTable version: "},
    {"ACStatus", BatteryHealthyTable_ACStatus, {"dd 01 00 00 read"}, 0, 0, 0,
     "BatteryHealthyTable_ACStatus] Fail. BatteryHealthyTable version: "},
    {"LidStatus", BatteryHealthyTable_LidStatus, {"dd 03 01 00 read"}, 1, 0, kNoAnswer,
     "BatteryHealthyTable_LidStatus] BatteryHealthyTable version: "},
};
// clang-format on

std::vector<std::string> WithVersion(const std::vector<std::string>& reads) {
  std::vector<std::string> all{kReadVersion};
  all.insert(all.end(), reads.begin(), reads.end());
  return all;
}

class BatteryNumeric : public testing::TestWithParam<Case> {
 protected:
  // An EC of this table version whose other registers tell their offset.
  void UseVersion(uint8_t version) {
    ec_.answer = [version](const EcCommandRecord& record) {
      return EcReply{.value = record.command == 0xBB ? version : record.data[1]};
    };
  }
  // The battery lines alone, without those of the channel.
  std::vector<std::string> TakeBatteryLines() {
    std::vector<std::string> lines = TraceRecorder::Get().TakeLines();
    std::erase_if(lines, [](const std::string& line) { return line.find("[RwEcCmd]") != std::string::npos; });
    return lines;
  }

  ArchValue arch_{L"x64"};
  ScriptedEc ec_;
};

TEST_P(BatteryNumeric, ReadsHighByteThenLowAtEveryVersion) {
  for (const int version : {1, 9, 10, 28, 255}) {
    UseVersion(static_cast<uint8_t>(version));
    EXPECT_EQ(GetParam().call(), GetParam().value) << "version " << version;
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(WithVersion(GetParam().reads)));
  }
}

TEST_P(BatteryNumeric, WithoutTableAnswersItsOwnValueAndReadsNothing) {
  UseVersion(0);
  TraceRecorder::Get().TakeLines();
  EXPECT_EQ(GetParam().call(), GetParam().no_table);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
  EXPECT_THAT(TakeBatteryLines(), ElementsAre(std::string("5 [EC_BH][") + GetParam().line + "0"));
}

TEST_P(BatteryNumeric, EachExchangeFailingInTurn) {
  for (const ScriptedEc::Failure failure : {ScriptedEc::Failure::kStatus, ScriptedEc::Failure::kRequest}) {
    const std::vector<std::string> all = WithVersion(GetParam().reads);
    for (size_t i = 0; i < all.size(); ++i) {
      UseVersion(28);
      ec_.FailExchange(static_cast<int>(i), failure);
      TraceRecorder::Get().TakeLines();
      // A version that can't be read is no table; a value that can't be read is no answer.
      EXPECT_EQ(GetParam().call(), i == 0 ? GetParam().no_table : GetParam().on_failure) << "exchange " << i;
      EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(all.begin(), all.begin() + static_cast<ptrdiff_t>(i) + 1));
      if (i == 0) {
        EXPECT_THAT(TakeBatteryLines(), ElementsAre(std::string("5 [EC_BH][") + GetParam().line + "2147483647"));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Members, BatteryNumeric, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

// A register that holds one word everywhere.
uint32_t OnWord(uint32_t (*call)(), uint16_t word) {
  ArchValue arch(L"x64");
  ScriptedEc ec;
  ec.answer = [word](const EcCommandRecord& record) {
    if (record.command == 0xBB) return EcReply{.value = 28};
    return EcReply{.value = static_cast<uint8_t>(record.data[1] % 2 == 1 ? word >> 8 : word)};
  };
  return call();
}

TEST(BatteryNumericSigns, OnlyCurrentsAreSigned) {
  EXPECT_EQ(OnWord(BatteryHealthyTable_Current, 0xFF38), 0xFFFFFF38u);
  EXPECT_EQ(OnWord(BatteryHealthyTable_Current, 0x8000), 0xFFFF8000u);
  EXPECT_EQ(OnWord(BatteryHealthyTable_Current, 0x7FFF), 0x7FFFu);
  EXPECT_EQ(OnWord(BatteryHealthyTable_ChargingCurrent, 0xFFFF), 0xFFFFFFFFu);
  EXPECT_EQ(OnWord(BatteryHealthyTable_Temperature, 0xFF38), 0xFF38u);
  EXPECT_EQ(OnWord(BatteryHealthyTable_CellVoltage4, 0xFFFF), 0xFFFFu);
  EXPECT_EQ(OnWord(BatteryHealthyTable_Rsoc, 0x8000), 0x8000u);
}

TEST(BatteryNumericFlags, EachFlagIsOneBit) {
  ArchValue arch(L"x64");
  ScriptedEc ec;
  uint8_t status = 0;
  ec.answer = [&](const EcCommandRecord& record) {
    return EcReply{.value = record.command == 0xBB ? uint8_t{28} : status};
  };
  struct {
    uint32_t (*call)();
    uint8_t bit;
  } const flags[] = {{BatteryHealthyTable_BatteryError, 0x80},
                     {BatteryHealthyTable_FullCharged, 0x10},
                     {BatteryHealthyTable_ACStatus, 0x01}};
  for (const auto& flag : flags) {
    status = flag.bit;
    EXPECT_EQ(flag.call(), 1u);
    status = static_cast<uint8_t>(~flag.bit);
    EXPECT_EQ(flag.call(), 0u);
  }
}

}  // namespace
}  // namespace vexa::test
