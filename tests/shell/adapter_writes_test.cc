// The adapter exports that write, and the data flags, which are cleared by reading them.
#include "ec/adapter_writes.h"
#include "tests/support/adapter_test.h"
#include "vexa/adapter.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Case {
  const char* name;
  uint32_t (*call)();
  int least_version;
  Exchanges writes;  // behind the version
  uint32_t below_version;
  const char* log_name;
};

const Case kCases[] = {
    {"ClearFlags", Adapter_Clear_Power_Data_Flag, 14, {"dd 86 01 00"}, 0, "Adapter_Clear_Power_Data_Flag"},
    {"ClearFlagsBitwise",
     [] { return Adapter_Clear_Power_Data_Flag_Bitwise(0xA4); },
     23,
     {"dd 86 35 a4"},
     0,
     "Adapter_Clear_Power_Data_Flag_Bitwise"},
    {"SetNotifyControl",
     [] { return Adapter_Set_Notify_Control(0xC3); },
     23,
     {"dd 86 36 c3"},
     0,
     "Adapter_Set_Notify_Control"},
    {"ClearChargerData",
     Adapter_Clear_Charger_Data,
     14,
     {"dd 86 27 00", "dd 86 28 00"},
     kNotAvailable,
     "Adapter_Clear_Charger_Data"},
    {"MonitorOn", [] { return Power_Set_Monitor_PowerDropped(1); }, 19, {"dd 87 09 85"}, 0, "Power_Dropped"},
    {"MonitorOff", [] { return Power_Set_Monitor_PowerDropped(0); }, 19, {"dd 87 09 05"}, 0, "Power_Dropped"},
    {"MonitorTwo", [] { return Power_Set_Monitor_PowerDropped(2); }, 19, {"dd 87 09 05"}, 0, "Power_Dropped"},
};

class AdapterWrites : public AdapterTest<testing::TestWithParam<Case>> {
 protected:
  const Exchanges all_ = BehindVersion(GetParam().writes);
};

TEST_P(AdapterWrites, Gate) {
  for (const int version : {0, GetParam().least_version - 1, GetParam().least_version, 22, 23, 24, 255}) {
    UseVersion(version);
    const bool passes = version >= GetParam().least_version;
    EXPECT_EQ(GetParam().call(), passes ? 1u : GetParam().below_version) << "version " << version;
    EXPECT_EQ(ec_.TakeExchanges(), passes ? all_ : FirstOf(all_, 1));
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(GetParam().log_name, std::to_string(version))));
  }
}

TEST_P(AdapterWrites, EachExchangeFailingInTurn) {
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < all_.size(); ++i) {
      UseVersion(28);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(GetParam().call(), i == 0 ? GetParam().below_version : 0) << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all_, i + 1));
      EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(GetParam().log_name, i == 0 ? "2147483647" : "28")));
    }
  }
}

TEST_P(AdapterWrites, TheFirmwareHasNone) {
  ArchValue::Set(L"ARM64");
  UseVersion(28);
  EXPECT_EQ(GetParam().call(), GetParam().below_version);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Members, AdapterWrites, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- Data flags ----

constexpr char kReadFlags[] = "dd 06 01 00 read";
constexpr char kClearFlags[] = "dd 86 35 81";
constexpr char kReadName[] = "Adapter_Read_Power_Data_Flag";
constexpr char kClearName[] = "Adapter_Clear_Power_Data_Flag_Bitwise";

using DataFlags = AdapterTest<>;

TEST_F(DataFlags, AreWrittenBackAboveVersion23) {
  for (const int version : {14, 22, 23}) {
    UseVersion(version);
    EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0x81u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, kReadFlags)) << version;
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(kReadName, std::to_string(version))));
  }
  for (const int version : {24, 255}) {
    UseVersion(version);
    EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0x81u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, kReadFlags, kReadVersion, kClearFlags)) << version;
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(kReadName, std::to_string(version)),
                                         VersionLine(kClearName, std::to_string(version))));
  }
  for (const int version : {0, 13}) {
    UseVersion(version);
    EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0u);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion)) << version;
  }
  ArchValue::Set(L"ARM64");
  UseVersion(24);
  EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(DataFlags, ThatWereReadAreToldWhateverBecomesOfTheClearing) {
  const Exchanges all{kReadVersion, kReadFlags, kReadVersion, kClearFlags};
  const uint32_t answers[] = {0, 0, 0x81, 0x81};
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < all.size(); ++i) {
      UseVersion(24);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(Adapter_Read_Power_Data_Flag(), answers[i]) << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all, i + 1));
    }
  }
  // The version that the clearing reads for itself counts, and 23 is enough for it.
  for (const uint8_t second : {22, 23}) {
    UseVersion(24);
    int versions = 0;
    ec_.answer = [&, second](const EcCommandRecord& record) {
      if (record.command == 0xBB) return EcReply{.value = versions++ == 0 ? uint8_t{24} : second};
      return EcReply{.value = 0x81};
    };
    EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0x81u);
    EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all, second == 22 ? 3 : 4));
  }
}

}  // namespace
}  // namespace vexa::test
