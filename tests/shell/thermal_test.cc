// Fans and temperatures on the driver route: each export's gate, its exchanges byte for byte, and each of them failing.
#include <algorithm>

#include "tests/support/adapter_test.h"
#include "vexa/thermal.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct Case {
  const char* name;
  uint32_t (*call)();
  Exchanges behind_version;
  uint32_t value;
  uint32_t no_table;
  uint32_t on_failure;
  const char* line;  // of the gate, without "5 [EC_BH][" and the version
};

// clang-format off: one member a row
const Case kCases[] = {
    {"FanCounts", HealthyTable_FanCounts, {"dd 02 30 00 read"}, 0xB0, kNoAnswer, kNoAnswer,
     "HealthyTable_FanCounts] Fail. BatteryHealthyTable version: "},
    {"GetFanTestMode", HealthyTable_GetFanTestMode, {"dd 02 31 00 read"}, 0xB1, kNoAnswer, kNoAnswer,
     "HealthyTable_GetFanTestMode] Fail. BatteryHealthyTable version: "},
    {"SetFanIndex0", [] { return HealthyTable_SetFanIndex(0); }, {"dd 82 32 00"}, 1, 0, 0,
     "HealthyTable_SetFanIndex] Fail. BatteryHealthyTable version: "},
    {"SetFanIndex4", [] { return HealthyTable_SetFanIndex(4); }, {"dd 82 32 04"}, 1, 0, 0,
     "HealthyTable_SetFanIndex] Fail. BatteryHealthyTable version: "},
    {"SetFanPwmDuty", [] { return HealthyTable_SetFanPwmDuty(0xFE); }, {"dd 82 35 fe"}, 1, 0, 0,
     "HealthyTable_SetFanPwmDuty] Fail. BatteryHealthyTable version: "},
    {"FanRPM", HealthyTable_FanRPM, {"dd 02 34 00 read", "dd 02 33 00 read"}, 0xB4B3, kNotAvailable, kNoAnswer,
     "HealthyTable_FanRPM] Fail. BatteryHealthyTable version: "},
    {"CpuTemperature", HealthyTable_Read_Cpu_Temperature, {"dd 02 00 00 read"}, 0x80, kNoAnswer, kNoAnswer,
     "HealthyTable_Read_Cpu_Temperature] BatteryHealthyTable version: "},
    {"QuilloCpuTemperature", Quillo_Read_Cpu_Temperature, {"dd 02 00 00 read"}, 0x80, kNoAnswer, kNoAnswer,
     "Quillo_Read_Cpu_Temperature] BatteryHealthyTable version: "},
    {"BoardTemperature", HealthyTable_Read_BoardTS0L_Temperature,
     {"dd 02 10 00 read", "dd 82 11 00", "dd 02 12 00 read"}, 0x92, kNoAnswer, kNoAnswer,
     "HealthyTable_Read_BoardTS0L_Temperature] BatteryHealthyTable version: "},
};
// clang-format on

Exchanges WithVersion(Exchanges exchanges) {
  exchanges.insert(exchanges.begin(), kReadVersion);
  return exchanges;
}

class ThermalMember : public AdapterTest<testing::TestWithParam<Case>> {
 protected:
  std::string GateLine(const char* version) { return std::string("5 [EC_BH][") + GetParam().line + version; }
};

TEST_P(ThermalMember, SendsItsExchangesAtEveryVersion) {
  for (const int version : {1, 23, 24, 28, 255}) {
    UseVersion(version);
    EXPECT_EQ(GetParam().call(), GetParam().value) << "version " << version;
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(WithVersion(GetParam().behind_version)));
    EXPECT_THAT(TakeLines(), IsEmpty());
  }
}

TEST_P(ThermalMember, WithoutTableSendsNothingMore) {
  UseVersion(0);
  EXPECT_EQ(GetParam().call(), GetParam().no_table);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
  EXPECT_THAT(TakeLines(), ElementsAre(GateLine("0")));
}

TEST_P(ThermalMember, EachExchangeFailingInTurn) {
  const Exchanges all = WithVersion(GetParam().behind_version);
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < all.size(); ++i) {
      UseVersion(1);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(GetParam().call(), i == 0 ? GetParam().no_table : GetParam().on_failure) << "exchange " << i;
      EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(FirstOf(all, i + 1)));
      EXPECT_THAT(TakeLines(), ElementsAreArray(i == 0 ? Exchanges{GateLine("2147483647")} : Exchanges{}));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Members, ThermalMember, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

// An EC with this many fans, which knows which one is selected. Speeds and selections are by index.
class Thermal : public AdapterTest<> {
 protected:
  void UseFans(uint8_t count) {
    UseVersion(28);
    selected_ = 0;
    ec_.answer = [this, count](const EcCommandRecord& record) {
      const uint8_t offset = record.data[1];
      if (record.command == 0xBB) return EcReply{.value = 28};
      if (record.data[0] == 0x82 && offset == 0x32) selected_ = record.data[2];
      if (offset == 0x30) return EcReply{.value = count};
      return EcReply{.value = static_cast<uint8_t>(offset == 0x34 ? 0x0B + selected_ : 0xF0 + selected_)};
    };
  }

  // What a fan costs: its selection and its speed, each behind its own version.
  static void AddFan(Exchanges& all, const std::string& selection) {
    if (!selection.empty()) all.insert(all.end(), {kReadVersion, selection});
    all.insert(all.end(), {kReadVersion, "dd 02 34 00 read", "dd 02 33 00 read"});
  }

  uint8_t selected_ = 0;
};

TEST_F(Thermal, FanIndexAboveFourSendsNothing) {
  UseVersion(28);
  for (const uint32_t index : {5u, 255u, 256u, 0xFFFFFFFFu}) EXPECT_EQ(HealthyTable_SetFanIndex(index), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(Thermal, WithoutBoardSensorsNoneIsSelected) {
  UseVersion(28);
  ec_.answer = [](const EcCommandRecord& record) {
    return EcReply{.value = static_cast<uint8_t>(record.command == 0xBB ? 28 : 0)};
  };
  EXPECT_EQ(HealthyTable_Read_BoardTS0L_Temperature(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 02 10 00 read"));
}

TEST_F(Thermal, AllFansInTurn) {
  UseFans(2);
  uint32_t rpm[] = {1, 1, 1};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm), 0x0CF1u);
  EXPECT_THAT(rpm, ElementsAre(0x0BF0u, 0x0CF1u, 1u));
  Exchanges all{kReadVersion, "dd 02 30 00 read"};
  AddFan(all, "dd 82 32 00");
  AddFan(all, "dd 82 32 01");
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(all));
}

TEST_F(Thermal, AllFansWithoutAnyAndWithoutACount) {
  UseFans(0);
  uint32_t rpm[] = {1, 1};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm), 0u);
  EXPECT_THAT(rpm, ElementsAre(1u, 1u));
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 02 30 00 read"));
  for (int failing = 0; failing < 2; ++failing) {
    UseFans(2);
    ec_.FailExchange(failing, ScriptedEc::Failure::kStatus);
    rpm[0] = 1;
    EXPECT_EQ(HealthyTable_Read_Fan(rpm), kNoAnswer);
    EXPECT_THAT(rpm, ElementsAre(kNotAvailable, 1u));
    EXPECT_EQ(ec_.TakeExchanges().size(), static_cast<size_t>(failing) + 1);
  }
  EXPECT_EQ(HealthyTable_Read_Fan(nullptr), kNoAnswer);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

// One fan that can't be selected or read does not end the others.
TEST_F(Thermal, AllFansWithOneExchangeFailing) {
  const struct {
    int exchange;
    uint32_t first, second;
    size_t exchanges;
  } failures[] = {
      {2, 0x0BF0, 0x0CF1, 11},         // version before the first selection: nothing is selected, fan 0 still is
      {3, 0x0BF0, 0x0CF1, 12},         // the first selection
      {4, kNotAvailable, 0x0CF1, 10},  // version before the first speed
      {5, kNoAnswer, 0x0CF1, 11},      // high byte
      {6, kNoAnswer, 0x0CF1, 12},      // low byte
      {11, 0x0BF0, kNoAnswer, 12},
  };
  for (const auto& failure : failures) {
    UseFans(2);
    ec_.FailExchange(failure.exchange, ScriptedEc::Failure::kStatus);
    uint32_t rpm[] = {1, 1};
    EXPECT_EQ(HealthyTable_Read_Fan(rpm), failure.second);
    EXPECT_THAT(rpm, ElementsAre(failure.first, failure.second)) << failure.exchange;
    EXPECT_EQ(ec_.TakeExchanges().size(), failure.exchanges) << failure.exchange;
  }
}

// The EC's largest count: every slot is written and no other; no index beyond 4 is sent.
TEST_F(Thermal, AllFansOfALyingCount) {
  UseFans(255);
  std::vector<uint32_t> rpm(VEXA_FAN_SLOTS + 1, 1);
  EXPECT_EQ(HealthyTable_Read_Fan(rpm.data()), 0x0FF4u);
  EXPECT_EQ(rpm[3], 0x0EF3u);
  EXPECT_TRUE(std::all_of(rpm.begin() + 4, rpm.begin() + 255, [](uint32_t slot) { return slot == 0x0FF4; }));
  EXPECT_EQ(rpm[255], 1u);
  Exchanges sent = ec_.TakeExchanges();
  std::erase_if(sent, [](const std::string& exchange) { return !exchange.starts_with("dd 82"); });
  EXPECT_THAT(sent, ElementsAre("dd 82 32 00", "dd 82 32 01", "dd 82 32 02", "dd 82 32 03", "dd 82 32 04"));
}

TEST_F(Thermal, OneFan) {
  UseFans(2);
  EXPECT_EQ(Quillo_Read_Fan(1), 0x0CF1u);
  Exchanges all{kReadVersion, "dd 02 30 00 read"};
  AddFan(all, "dd 82 32 01");
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(all));

  EXPECT_EQ(Quillo_Read_Fan(2), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 02 30 00 read"));

  // A negative index is below every count, and none that can be selected.
  EXPECT_EQ(Quillo_Read_Fan(-1), 0x0CF1u);
  all = {kReadVersion, "dd 02 30 00 read"};
  AddFan(all, "");
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(all));
}

TEST_F(Thermal, OneFanWithEachExchangeFailingInTurn) {
  const struct {
    uint32_t answer;
    size_t exchanges;
  } failures[] = {
      {0x0CF1, 6},         // version before the count: a count without an answer is above every index
      {0x0CF1, 7},         // count
      {0x0BF0, 6},         // version before the selection: fan 0 is still selected
      {0x0CF1, 7},         // selection; this EC took it before it failed
      {kNotAvailable, 5},  // version before the speed
      {kNoAnswer, 6},      // high byte
      {kNoAnswer, 7},      // low byte
  };
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < std::size(failures); ++i) {
      UseFans(2);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(Quillo_Read_Fan(1), failures[i].answer) << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges().size(), failures[i].exchanges) << "exchange " << i;
    }
  }
}

}  // namespace
}  // namespace vexa::test
