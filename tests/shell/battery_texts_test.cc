// Strings of the battery family, the SMBus pass-through and the manufacture-information handshake.
#include <map>

#include "ec/cell_voltages.h"
#include "ec/ec_information.h"
#include "tests/support/ec_test.h"
#include "vexa/battery.h"

namespace vexa::test {
namespace {

std::vector<DWORD> g_sleeps;
void WINAPI RecordSleep(DWORD ms) { g_sleeps.push_back(ms); }

class BatteryTexts : public EcTest {
 protected:
  BatteryTexts() {
    g_sleeps.clear();
    ec_.answer = [this](const EcCommandRecord& record) { return EcReply{.value = Answer(record)}; };
    info_[0x50] = 28;
  }

  uint8_t Answer(const EcCommandRecord& record) {
    if (record.command == 0xBB) return info_[record.data[0]];
    if (record.command == 0xDD) return battery_[record.data[1]];
    switch (record.data[0]) {
      case 3: return static_cast<uint8_t>(gauge_[record.data[1]].size());
      case 1: gauge_register_ = record.data[1]; return 0;
      default: return static_cast<uint8_t>(gauge_[gauge_register_].at(record.data[1]));
    }
  }
  static void Put(std::map<uint8_t, uint8_t>& registers, uint8_t first, const std::string& text) {
    for (const char c : text) registers[first++] = static_cast<uint8_t>(c);
  }
  // The text; an empty one is a failure unless that is expected otherwise.
  static std::string Call(uint32_t (*read)(char*), uint32_t expected = 1) {
    char buffer[64];
    std::fill_n(buffer, sizeof buffer, '~');
    EXPECT_EQ(read(buffer), expected);
    return buffer;
  }

  std::map<uint8_t, uint8_t> info_, battery_;
  std::map<uint8_t, std::string> gauge_;
  uint8_t gauge_register_ = 0;
  ImportPatch sleep_{"Sleep", RecordSleep};
};

TEST_F(BatteryTexts, ChipName) {
  Put(info_, 0x12, "CHIP8987");
  info_[0x11] = 4;
  EXPECT_EQ(Call(BatteryHealthyTable_ECChipName), "CHIP");
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("bb 11 read", "bb 12 read", "bb 13 read", "bb 14 read", "bb 15 read"));
  // A length beyond the buffer's promise is cut; a zero ends the name early.
  info_[0x11] = 255;
  Put(info_, 0x12, "ABCDEFGHIJKLMNOPQRSTU");
  EXPECT_EQ(Call(BatteryHealthyTable_ECChipName), "ABCDEFGHIJKLMN");
  info_[0x14] = 0;
  EXPECT_EQ(Call(BatteryHealthyTable_ECChipName), "AB");
  EXPECT_THAT(TakeLines(), IsEmpty());
  info_[0x14] = 'C';
  FailEachExchange(
      15, [&] { ec_.TakeExchanges(); },
      [&](size_t, ScriptedEc::Failure) {
        EXPECT_EQ(Call(BatteryHealthyTable_ECChipName, 0), "");
        EXPECT_THAT(TakeLines(), ElementsAre("5 [EC_BH][BatteryHealthyTable_ECChipName] Fail."));
      });
}

TEST_F(BatteryTexts, ManufacturerFromTheTable) {
  Put(battery_, 0x10, "VXB2-CELLCO");
  EXPECT_EQ(Call(BatteryHealthyTable_ManufactureName), "VXB2-CELLCO");
  EXPECT_THAT(TakeLines(), ElementsAre("5 [EC_BH][BatteryHealthyTable_ManufactureName] ManufactureName: VXB2-CELLCO"));
  const Strings exchanges = ec_.TakeExchanges();
  ASSERT_EQ(exchanges.size(), 13u);  // version, eleven characters, the zero behind them
  EXPECT_EQ(exchanges[1], "dd 01 10 00 read");
  EXPECT_EQ(exchanges[12], "dd 01 1b 00 read");
  Put(battery_, 0x10, std::string(20, 'M'));
  EXPECT_EQ(Call(BatteryHealthyTable_ManufactureName), std::string(16, 'M'));
  // "%" in a name reaches the trace as it is.
  Put(battery_, 0x10, std::string("%s%n\0", 5));
  EXPECT_EQ(Call(BatteryHealthyTable_ManufactureName), "%s%n");
  EXPECT_THAT(TakeLines(), Contains("5 [EC_BH][BatteryHealthyTable_ManufactureName] ManufactureName: %s%n"));
}

TEST_F(BatteryTexts, GaugeNamesByPassThrough) {
  gauge_[0x20] = "CELLCO";
  gauge_[0x21] = "51-N14";
  EXPECT_EQ(Call(BatteryHealthyTable_ManufactureNameBySMBus), "CELLCO");
  EXPECT_THAT(ec_.TakeExchanges(),
              ElementsAre("bb 50 read", "de 03 20 read", "de 01 20", "de 02 00 read", "de 02 01 read", "de 02 02 read",
                          "de 02 03 read", "de 02 04 read", "de 02 05 read"));
  EXPECT_EQ(Call(BatteryHealthyTable_DeviceName), "51-N14");
  gauge_[0x21] = std::string(200, 'D');
  EXPECT_EQ(Call(BatteryHealthyTable_DeviceName), std::string(32, 'D'));
  gauge_[0x21] = "";
  EXPECT_EQ(Call(BatteryHealthyTable_DeviceName), "");
}

TEST_F(BatteryTexts, NameFailuresNameTheExport) {
  gauge_[0x20] = gauge_[0x21] = "ABC";
  Put(battery_, 0x10, "ABC");
  const struct {
    uint32_t (*read)(char*);
    std::string name;
    size_t exchanges;
  } members[] = {{BatteryHealthyTable_ManufactureName, "BatteryHealthyTable_ManufactureName", 5},
                 {BatteryHealthyTable_ManufactureNameBySMBus, "BatteryHealthyTable_ManufactureNameBySMBus", 6},
                 {BatteryHealthyTable_DeviceName, "BatteryHealthyTable_DeviceName", 6}};
  for (const auto& member : members) {
    const auto expect_failure = [&](const char* version, size_t exchanges) {
      EXPECT_EQ(Call(member.read, 0), "") << member.name;
      EXPECT_EQ(ec_.TakeExchanges().size(), exchanges);
      EXPECT_THAT(TakeLines(),
                  ElementsAre("5 [EC_BH][" + member.name + "] Fail. BatteryHealthyTable version: " + version));
    };
    FailEachExchange(
        member.exchanges, [&] { ec_.TakeExchanges(); },
        [&](size_t i, ScriptedEc::Failure) { expect_failure(i == 0 ? "2147483647" : "28", i + 1); });
    info_[0x50] = 0;
    expect_failure("0", 1);
    info_[0x50] = 28;
    EXPECT_EQ(member.read(nullptr), 0u);
    EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  }
}

TEST_F(BatteryTexts, GaugeStatusWords) {
  gauge_[0x51] = std::string("\x01\x02\x03\x84", 4);
  gauge_[0x53] = std::string("\x0F\xF0", 2);
  EXPECT_EQ(BatteryHealthyTable_SafetyStatus(), 0x84030201u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("de 03 51 read", "de 01 51", "de 02 00 read", "de 02 01 read",
                                               "de 02 02 read", "de 02 03 read"));
  EXPECT_EQ(BatteryHealthyTable_PFStatus(), 0xF00Fu);
  gauge_[0x53] = "";
  EXPECT_EQ(BatteryHealthyTable_PFStatus(), kNoAnswer);
  gauge_[0x53] = std::string("\1\2\3\4\5\6", 6);
  EXPECT_EQ(BatteryHealthyTable_PFStatus(), 0x04030201u);
  FailEachExchange(
      6, [&] { ec_.TakeExchanges(); },
      [&](size_t, ScriptedEc::Failure) { EXPECT_EQ(BatteryHealthyTable_SafetyStatus(), kNoAnswer); });
}

TEST_F(BatteryTexts, EcNumbers) {
  info_[0x51] = 0x80;
  info_[0x10] = 0x87;
  EXPECT_EQ(BatteryHealthyTable_ReadVersion(), 28u);
  EXPECT_EQ(BatteryHealthyTable_ReadVendorType(), 1u);
  info_[0x51] = 0x7F;
  EXPECT_EQ(BatteryHealthyTable_ReadVendorType(), 0u);
  EXPECT_EQ(BatteryHealthyTable_ECChipID(), 0x87u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("bb 50 read", "bb 51 read", "bb 51 read", "bb 10 read"));
  EXPECT_THAT(TakeLines(), IsEmpty());
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 0x80, .status = 1}; };
  EXPECT_EQ(BatteryHealthyTable_ReadVersion(), kNoAnswer);
  EXPECT_EQ(BatteryHealthyTable_ReadVendorType(), kNoAnswer);
  EXPECT_EQ(BatteryHealthyTable_ECChipID(), kNoAnswer);
  EXPECT_THAT(TakeLines(), ElementsAre("5 [EC_BH][BatteryHealthyTable_ReadVendorType] Fail.",
                                       "5 [EC_BH][BatteryHealthyTable_ECChipID] Fail."));
}

TEST_F(BatteryTexts, FirmwareRouteAsksTheEcForNone) {
  ArchValue::Set(L"ARM64");
  for (uint32_t (*const call)() : {BatteryHealthyTable_ReadVersion, BatteryHealthyTable_ECChipID,
                                   BatteryHealthyTable_SafetyStatus, BatteryHealthyTable_PFStatus}) {
    EXPECT_EQ(call(), kNoAnswer);
  }
  EXPECT_EQ(Call(BatteryHealthyTable_ECChipName, 0), "");
  EXPECT_STREQ(BatteryHealthyTable_BatteryInformation().text, "");
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(BatteryTexts, Companions) {
  Put(info_, 0x20, "N14-1.07.AB");
  EXPECT_EQ(ReadFirmwareRevisionWithProjectName(), "N14-1.07.AB");
  Put(info_, 0x20, std::string(0x40, 'R'));
  EXPECT_EQ(ReadFirmwareRevisionWithProjectName(), std::string(48, 'R'));
  info_[0x50] = 28;
  Put(battery_, 0x48, "\x10\x0E\x11\x0E\x12\x0E\x13\x0F");
  ec_.TakeExchanges();
  EXPECT_THAT(ReadCellVoltages(), testing::Optional(ElementsAre(0x0E10, 0x0E11, 0x0E12, 0x0F13)));
  const Strings exchanges = ec_.TakeExchanges();
  EXPECT_EQ(exchanges.size(), 9u);
  EXPECT_EQ(exchanges[1], "dd 01 49 00 read");
  Lines();
  ec_.FailExchange(8, ScriptedEc::Failure::kStatus);
  EXPECT_EQ(ReadCellVoltages(), std::nullopt);
  info_[0x50] = 0;
  EXPECT_EQ(ReadCellVoltages(), std::nullopt);
  ec_.TakeExchanges();
  ec_.FailExchange(0, ScriptedEc::Failure::kStatus);
  EXPECT_EQ(ReadFirmwareRevisionWithProjectName(), std::nullopt);
  EXPECT_THAT(TakeLines(), ElementsAre(VersionLine("BatteryHealthyTable_CellVoltage", "28"),
                                       VersionLine("BatteryHealthyTable_CellVoltage", "0"),
                                       "5 [EC_BH][BatteryHealthyTable_FWRevisionWithProjectName] Fail."));
}

class Handshake : public BatteryTexts {
 protected:
  // The lines, without the name that all of them begin with.
  static Strings Steps() {
    constexpr std::string_view kName = "5 [EC_BH][BatteryHealthyTable_BatteryInformation] ";
    Strings lines = TakeLines();
    for (std::string& line : lines) {
      if (line.starts_with(kName)) line.erase(0, kName.size());
    }
    return lines;
  }
  static std::string Call() { return BatteryHealthyTable_BatteryInformation().text; }
};

constexpr char kStatus[] = "dd 01 5b 00 read", kRequest[] = "dd 81 5a 10", kChargeError[] = "dd 01 03 00 read";
constexpr char kTimeOut[] = "Get ManufactureInfo data timeout";

TEST_F(Handshake, RequestsThenReadsAscending) {
  info_[0x50] = 10;
  int polls = 0;
  ec_.answer = [&](const EcCommandRecord& record) {
    const uint8_t offset = record.data[1];
    if (record.command == 0xDD && offset == 0x5B) return EcReply{.value = ++polls == 4 ? uint8_t{0x10} : uint8_t{0}};
    return EcReply{.value =
                       record.command == 0xDD && offset >= 0x60 ? static_cast<uint8_t>(offset - 0x60) : Answer(record)};
  };
  EXPECT_EQ(Call(),
            "0x0,0x1,0x2,0x3,0x4,0x5,0x6,0x7,0x8,0x9,0xa,0xb,0xc,0xd,0xe,0xf,0x10,0x11,0x12,0x13,0x14,0x15,"
            "0x16,0x17,0x18,0x19,0x1a,0x1b,0x1c,0x1d,0x1e,0x1f");
  const Strings exchanges = ec_.TakeExchanges();
  ASSERT_EQ(exchanges.size(), 39u);
  EXPECT_THAT(FirstOf(exchanges, 8), ElementsAre(kReadVersion, kStatus, kChargeError, kRequest, kStatus, kStatus,
                                                 kStatus, "dd 01 60 00 read"));
  EXPECT_EQ(exchanges.back(), "dd 01 7f 00 read");
  EXPECT_THAT(g_sleeps, ElementsAre(1000, 1000));
  EXPECT_THAT(Steps(), ElementsAre("Set ManufactureInfo data request"));
}

TEST_F(Handshake, RefusesOldTablesAndPrechargeTimeouts) {
  info_[0x50] = 9;
  EXPECT_EQ(Call(), "");
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
  info_[0x50] = 28;
  battery_[0x5B] = 0x50;
  EXPECT_EQ(Call(), "");
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, kStatus));
  EXPECT_THAT(Steps(), ElementsAre("Fail. BatteryHealthyTable version < 10, version: 9", "Abnormal Precharge Timeout"));
}

TEST_F(Handshake, BusyOrBlockedSendsNoRequestAndGivesUpAfterFourPolls) {
  battery_[0x5B] = 0x80;
  EXPECT_EQ(Call(), "");
  // Busy: the charge-error byte is not even read.
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion, kStatus, kStatus, kStatus, kStatus, kStatus));
  EXPECT_THAT(g_sleeps, ElementsAre(1000, 1000, 1000));
  battery_[0x5B] = 0;
  battery_[0x03] = 0x04;
  EXPECT_EQ(Call(), "");
  EXPECT_THAT(ec_.TakeExchanges(), Not(Contains(kRequest)));
  EXPECT_THAT(Steps(), ElementsAre(kTimeOut, kTimeOut));
}

TEST_F(Handshake, FailedReadsCountAsZero) {
  // Version unreadable: not below 10, and the handshake runs into its time-out.
  ec_.answer = [](const EcCommandRecord&) { return EcReply{.value = 0xFF, .status = 5}; };
  EXPECT_EQ(Call(), "");
  EXPECT_THAT(ec_.TakeExchanges(), Contains(kRequest));
  EXPECT_EQ(g_sleeps.size(), 3u);
  // A single data byte that can't be read is 0x0; the status bytes are ready at once.
  ec_.answer = [](const EcCommandRecord& record) {
    if (record.command == 0xBB) return EcReply{.value = 28};
    if (record.data[1] == 0x5B) return EcReply{.value = 0x10};
    return EcReply{.value = 0xAB, .status = record.data[1] == 0x61 ? 5u : 0u};
  };
  EXPECT_THAT(Call(), StartsWith("0xab,0x0,0xab,"));
}

}  // namespace
}  // namespace vexa::test
