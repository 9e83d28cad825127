// The adapter and USB-PD numbers, and the part number of the PD controller.
#include <algorithm>
#include <cstring>

#include "tests/support/adapter_test.h"
#include "vexa/adapter.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct Case {
  const char* name;
  uint32_t (*call)();
  int least_version;
  Exchanges reads;  // behind the version
  uint32_t value;   // on the EC of AdapterTest
  struct {
    uint32_t below_version, on_failure;
  } refusal;
  const char* log_name = nullptr;  // null: as the export
};

// clang-format off: one member a row
const Case kCases[] = {
    {"Adapter_Read_Power_Big_Data_Config", Adapter_Read_Power_Big_Data_Config, 14, {"dd 06 00 00 read"}, 0x80, {0, 0}},
    {"Adapter_Read_PDO1", Adapter_Read_PDO1, 14,
     {"dd 06 05 00 read", "dd 06 04 00 read", "dd 06 03 00 read", "dd 06 02 00 read"},
     0x85848382, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_PDO2", Adapter_Read_PDO2, 14,
     {"dd 06 09 00 read", "dd 06 08 00 read", "dd 06 07 00 read", "dd 06 06 00 read"},
     0x89888786, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_PDO3", Adapter_Read_PDO3, 14,
     {"dd 06 0d 00 read", "dd 06 0c 00 read", "dd 06 0b 00 read", "dd 06 0a 00 read"},
     0x8D8C8B8A, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_PDO4", Adapter_Read_PDO4, 14,
     {"dd 06 11 00 read", "dd 06 10 00 read", "dd 06 0f 00 read", "dd 06 0e 00 read"},
     0x91908F8E, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_PDO5", Adapter_Read_PDO5, 14,
     {"dd 06 15 00 read", "dd 06 14 00 read", "dd 06 13 00 read", "dd 06 12 00 read"},
     0x95949392, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_PDO6", Adapter_Read_PDO6, 14,
     {"dd 06 19 00 read", "dd 06 18 00 read", "dd 06 17 00 read", "dd 06 16 00 read"},
     0x99989796, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_PDO7", Adapter_Read_PDO7, 14,
     {"dd 06 1d 00 read", "dd 06 1c 00 read", "dd 06 1b 00 read", "dd 06 1a 00 read"},
     0x9D9C9B9A, {kNotAvailable, kNoAnswer}, "Adapter_Read_PDO"},
    {"Adapter_Read_Contract_PDO", Adapter_Read_Contract_PDO, 14,
     {"dd 06 21 00 read", "dd 06 20 00 read", "dd 06 1f 00 read", "dd 06 1e 00 read"},
     0xA1A09F9E, {kNotAvailable, kNoAnswer}},
    {"Adapter_Read_PDO_Watt", Adapter_Read_PDO_Watt, 14,
     {"dd 06 25 00 read", "dd 06 24 00 read", "dd 06 23 00 read", "dd 06 22 00 read"},
     0xA5A4A3A2, {kNotAvailable, kNoAnswer}},
    {"Adapter_Read_PD_ADO", Adapter_Read_PD_ADO, 14, {"dd 06 26 00 read"}, 0xA6, {0, 0}},
    {"Adapter_Read_Charger_Interrupt", Adapter_Read_Charger_Interrupt, 14, {"dd 06 27 00 read"}, 0xA7, {0, 0}},
    {"Adapter_Read_Charger_Information", Adapter_Read_Charger_Information, 14, {"dd 06 28 00 read"}, 0xA8, {0, 0}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_VID", Adapter_Read_PD_Get_Source_Cap_Extend_VID, 14,
     {"dd 06 2a 00 read", "dd 06 29 00 read"}, 0xAAA9, {kNotAvailable, kNoAnswer}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_PID", Adapter_Read_PD_Get_Source_Cap_Extend_PID, 14,
     {"dd 06 2c 00 read", "dd 06 2b 00 read"}, 0xACAB, {kNotAvailable, kNoAnswer}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_XID", Adapter_Read_PD_Get_Source_Cap_Extend_XID, 14,
     {"dd 06 30 00 read", "dd 06 2f 00 read", "dd 06 2e 00 read", "dd 06 2d 00 read"},
     0xB0AFAEAD, {kNotAvailable, kNoAnswer}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion", Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion, 14,
     {"dd 06 31 00 read"}, 0xB1, {0, 0}},
    {"Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion", Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion, 14,
     {"dd 06 32 00 read"}, 0xB2, {0, 0}},
    {"Adapter_Read_PD_Get_Status_Temperature", Adapter_Read_PD_Get_Status_Temperature, 14,
     {"dd 06 33 00 read"}, 0xB3, {0, 0}},
    {"Adapter_Read_PD_Get_Status_EventFlag", Adapter_Read_PD_Get_Status_EventFlag, 14,
     {"dd 06 34 00 read"}, 0xB4, {0, 0}},
    {"Adapter_Read_PD_Get_Emark_VID", Adapter_Read_PD_Get_Emark_VID, 23,
     {"dd 06 3a 00 read", "dd 06 39 00 read", "dd 06 38 00 read", "dd 06 37 00 read"}, 0xBAB9B8B7, {0, 0}},
    {"Adapter_Read_PD_Get_Emark_PID", Adapter_Read_PD_Get_Emark_PID, 23,
     {"dd 06 42 00 read", "dd 06 41 00 read"}, 0xC2C1, {0, 0}},
    {"Adapter_Read_PD_Get_Emark_XID", Adapter_Read_PD_Get_Emark_XID, 23,
     {"dd 06 3e 00 read", "dd 06 3d 00 read", "dd 06 3c 00 read", "dd 06 3b 00 read"}, 0xBEBDBCBB, {0, 0}},
    {"Adapter_Read_PD_Get_Emark_Other", Adapter_Read_PD_Get_Emark_Other, 23,
     {"dd 06 4a 00 read", "dd 06 49 00 read", "dd 06 48 00 read", "dd 06 47 00 read"}, 0xCAC9C8C7, {0, 0}},
};
// clang-format on

class AdapterValues : public AdapterTest<testing::TestWithParam<Case>> {
 protected:
  const Exchanges all_ = BehindVersion(GetParam().reads);
  const char* const log_name_ = GetParam().log_name != nullptr ? GetParam().log_name : GetParam().name;
};

TEST_P(AdapterValues, FromTheirLeastVersionOn) {
  for (const int version : {GetParam().least_version, 23, 24, 28, 255}) {
    UseVersion(version);
    EXPECT_EQ(GetParam().call(), GetParam().value) << "version " << version;
    EXPECT_EQ(ec_.TakeExchanges(), all_);
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(log_name_, std::to_string(version))));
  }
}

TEST_P(AdapterValues, BelowItNothingIsRead) {
  for (const int version : {0, 13, GetParam().least_version - 1}) {
    UseVersion(version);
    EXPECT_EQ(GetParam().call(), GetParam().refusal.below_version) << "version " << version;
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(log_name_, std::to_string(version))));
  }
}

TEST_P(AdapterValues, EachExchangeFailingInTurn) {
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < all_.size(); ++i) {
      UseVersion(28);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(GetParam().call(), i == 0 ? GetParam().refusal.below_version : GetParam().refusal.on_failure)
          << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all_, i + 1));
      EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(log_name_, i == 0 ? "2147483647" : "28")));
    }
  }
}

TEST_P(AdapterValues, TheFirmwareHasNone) {
  ArchValue::Set(L"ARM64");
  UseVersion(28);
  EXPECT_EQ(GetParam().call(), GetParam().refusal.below_version);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_THAT(TakeLines(), ElementsAre("5 [BatteryHealthyTable_ReadVersion] ARM64: using WMImethods.",
                                       VersionLine(log_name_, "2147483647")));
}

INSTANTIATE_TEST_SUITE_P(Members, AdapterValues, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

using Pdo = AdapterTest<>;

TEST_F(Pdo, AnIndexBeyondTheLastSendsNothing) {
  UseVersion(28);
  for (const uint32_t index : {7u, 8u, 255u, 256u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Adapter_Read_PDO(index), kNotAvailable) << index;
  }
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_EQ(Adapter_Read_PDO(6), 0x9D9C9B9Au);
}

// ---- Part number ----

class PartNumber : public AdapterTest<> {
 protected:
  // An EC that says the part number has `length` bytes, and goes on with letters beyond it.
  void UseLength(uint8_t length, int version = 28) {
    UseVersion(version);
    ec_.answer = [=](const EcCommandRecord& record) {
      if (record.command == 0xBB) return EcReply{.value = static_cast<uint8_t>(version)};
      if (record.data[1] == 1) return EcReply{.value = length};
      return EcReply{.value = static_cast<uint8_t>('A' + (record.data[1] - 2) % 26)};
    };
    std::memset(&guarded_, 0x5A, sizeof guarded_);
  }
  bool IsRestUntouched() const {
    return std::ranges::all_of(guarded_.rest, [](uint8_t byte) { return byte == 0x5A; });
  }
  bool IsEmptied() const {
    const VexaPdIcPartNumber empty{};
    return std::memcmp(&record_, &empty, sizeof empty) == 0;
  }

  struct {
    VexaPdIcPartNumber record;
    uint8_t rest[256];
  } guarded_;
  VexaPdIcPartNumber& record_ = guarded_.record;
};

TEST_F(PartNumber, AsLongAsTheEcSays) {
  UseLength(3, 14);
  EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 1u);
  EXPECT_EQ(record_.told_length, 3u);
  EXPECT_EQ(record_.length, 3u);
  EXPECT_STREQ(record_.text, "ABC");
  EXPECT_EQ(record_.text[VEXA_PD_IC_PN_CAPACITY - 1], '\0');
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, "dd 05 01 00 read", "dd 05 02 00 read", "dd 05 03 00 read",
                                               "dd 05 04 00 read"));
  EXPECT_THAT(TakeLines(), ElementsAre("5 [EC_BH][Adapter_Read_PD_IC_PN] BatteryHealthyTable version: 14"));
  UseLength(0);
  EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 1u);
  EXPECT_TRUE(IsEmptied());
}

TEST_F(PartNumber, ALongerOneIsCutToTheRecord) {
  for (const int length : {63, 64, 255}) {
    UseLength(static_cast<uint8_t>(length));
    EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 1u);
    EXPECT_EQ(record_.told_length, static_cast<uint32_t>(length));
    EXPECT_EQ(record_.length, 63u);
    EXPECT_EQ(std::string(record_.text, 64),
              "ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJK" + std::string(1, '\0'));
    EXPECT_EQ(ec_.TakeExchanges().size(), 2u + 63u);
    EXPECT_TRUE(IsRestUntouched());
  }
}

TEST_F(PartNumber, FailuresLeaveTheRecordEmpty) {
  for (const ScriptedEc::Failure failure : kFailures) {
    for (int i = 0; i < 5; ++i) {
      UseLength(3);
      ec_.FailExchange(i, failure);
      EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 0u);
      EXPECT_TRUE(IsEmptied()) << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges().size(), static_cast<size_t>(i) + 1);
    }
  }
  UseLength(3, 13);
  EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 0u);
  EXPECT_TRUE(IsEmptied());
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
  EXPECT_EQ(Adapter_Read_PD_IC_PN(nullptr), 0u);
  ArchValue::Set(L"ARM64");
  UseLength(3);
  EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 0u);
  EXPECT_TRUE(IsEmptied());
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

}  // namespace
}  // namespace vexa::test
