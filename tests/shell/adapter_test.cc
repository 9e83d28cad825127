// The adapter exports with an algorithm of their own: the PD controller's part number, the data flags, which are
// cleared by reading them, and where the machine's power comes from.
#include "vexa/adapter.h"

#include <cstring>

#include "tests/support/ec_test.h"

namespace vexa::test {
namespace {

class PartNumber : public EcTest {
 protected:
  // An EC that says the part number has `length` bytes, and goes on with letters beyond it.
  void UseLength(uint8_t length, int version = 28) {
    UseEc(version, [=](const EcCommandRecord& record) {
      return record.data[1] == 1 ? length : 'A' + (record.data[1] - 2) % 26;
    });
    std::memset(&guarded_, 0x5A, sizeof guarded_);
  }
  void ExpectFailure(size_t exchanges) {
    EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 0u);
    ExpectEmptied();
    EXPECT_EQ(ec_.TakeExchanges().size(), exchanges);
  }
  void ExpectEmptied() {
    const VexaPdIcPartNumber empty{};
    EXPECT_EQ(std::memcmp(&record_, &empty, sizeof empty), 0);
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
  EXPECT_THAT(TakeLines(), ElementsAre(VersionLine("Adapter_Read_PD_IC_PN", "14")));
  UseLength(0);
  EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 1u);
  ExpectEmptied();
  // A longer one is cut to the record.
  for (const int length : {63, 64, 255}) {
    UseLength(static_cast<uint8_t>(length));
    EXPECT_EQ(Adapter_Read_PD_IC_PN(&record_), 1u);
    EXPECT_EQ(record_.told_length, static_cast<uint32_t>(length));
    EXPECT_EQ(record_.length, 63u);
    EXPECT_EQ(std::string(record_.text, 64),
              "ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJK" + std::string(1, '\0'));
    EXPECT_EQ(ec_.TakeExchanges().size(), 2u + 63u);
    EXPECT_THAT(guarded_.rest, Each(0x5A));
  }
}

TEST_F(PartNumber, FailuresLeaveTheRecordEmpty) {
  FailEachExchange(5, [&] { UseLength(3); }, [&](size_t i, ScriptedEc::Failure) { ExpectFailure(i + 1); });
  UseLength(3, 13);
  ExpectFailure(1);
  EXPECT_EQ(Adapter_Read_PD_IC_PN(nullptr), 0u);
  ArchValue::Set(L"ARM64");
  UseLength(3);
  ExpectFailure(0);
}

// ---- Data flags ----

const Strings kFlagExchanges{kReadVersion, "dd 06 01 00 read", kReadVersion, "dd 86 35 81"};
using DataFlags = EcTest;

TEST_F(DataFlags, AreWrittenBackAboveVersion23) {
  for (const int version : {0, 13, 14, 22, 23, 24, 255}) {
    SCOPED_TRACE(version);
    UseVersion(version);
    const size_t steps = version < 14 ? 1 : version < 24 ? 2 : 4;
    EXPECT_EQ(Adapter_Read_Power_Data_Flag(), steps == 1 ? 0u : 0x81u);
    EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kFlagExchanges, steps));
    const std::string number = std::to_string(version);
    EXPECT_EQ(TakeLines(), FirstOf({VersionLine("Adapter_Read_Power_Data_Flag", number),
                                    VersionLine("Adapter_Clear_Power_Data_Flag_Bitwise", number)},
                                   steps == 4 ? 2 : 1));
  }
  ArchValue::Set(L"ARM64");
  UseVersion(24);
  EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(DataFlags, ThatWereReadAreToldWhateverBecomesOfTheClearing) {
  FailEachExchange(
      4, [&] { UseVersion(24); },
      [&](size_t i, ScriptedEc::Failure) {
        EXPECT_EQ(Adapter_Read_Power_Data_Flag(), i < 2 ? 0u : 0x81u);
        EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kFlagExchanges, i + 1));
      });
  // The version that the clearing reads for itself counts, and 23 is enough for it.
  for (const uint8_t second : {22, 23}) {
    UseVersion(24);
    int versions = 0;
    ec_.answer = [&, second](const EcCommandRecord& record) {
      if (record.command == 0xBB) return EcReply{.value = versions++ == 0 ? uint8_t{24} : second};
      return EcReply{.value = 0x81};
    };
    EXPECT_EQ(Adapter_Read_Power_Data_Flag(), 0x81u);
    EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kFlagExchanges, second == 22 ? 3 : 4));
  }
}

// ---- Power source ----

const Strings kSourceExchanges{kReadVersion, "dd 01 00 00 read", "dd 04 08 00 read", "dd 04 0c 00 read"};

class PdCharging : public EcTest {
 protected:
  void Use(int version, uint8_t source, uint8_t type, uint8_t jack) {
    UseEc(version, [=](const EcCommandRecord& record) {
      return record.data[0] == 1 ? source : record.data[1] == 0x08 ? type : jack;
    });
  }
};

TEST_F(PdCharging, EachDecision) {
  const struct {
    int version;
    uint8_t source, type, jack;
    uint32_t answer;
    size_t exchanges;
    const char* found;  // AC, normal and PD adapter, as far as they are told
  } cases[] = {
      // no adapter types yet
      {0, 0x01, 0x60, 0, 0, 1, ""},
      {1, 0x01, 0x60, 0, 0, 2, "1"},
      {7, 0x01, 0x60, 0, 0, 2, "1"},
      {8, 0x01, 0x60, 0, 1, 3, "1ft"},
      // on battery
      {28, 0xFE, 0x60, 0, 0, 2, "0"},
      // no normal adapter
      {28, 0xFF, 0x00, 1, 1, 3, "1ff"},
      {28, 0x01, 0x7F, 1, 1, 3, "1ft"},
      {28, 0x01, 0x1F, 1, 1, 3, "1ff"},
      // no PD adapter
      {28, 0x01, 0x80, 0, 0, 3, "1tf"},
      {28, 0x01, 0x9F, 0, 0, 3, "1tf"},
      // no jack told yet
      {10, 0x01, 0xE0, 0, 0, 3, "1tt"},
      {11, 0x01, 0xE0, 0, 1, 4, "1tt"},
      {28, 0x01, 0xA0, 0, 1, 4, "1tt"},
      {28, 0x01, 0xC0, 0, 1, 4, "1tt"},
      {28, 0x01, 0xA0, 1, 0, 4, "1tt"},
      {28, 0x01, 0xC0, 2, 1, 4, "1tt"},
      {255, 0x01, 0xE0, 0xFF, 1, 4, "1tt"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.version << " " << int{c.source} << " " << int{c.type});
    Use(c.version, c.source, c.type, c.jack);
    EXPECT_EQ(Power_PD_Charging(), c.answer);
    EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kSourceExchanges, c.exchanges));
    const std::string found = c.found;
    Strings lines{"5 [Power_PD_Charging] BatteryHealthyTable version: " + std::to_string(c.version)};
    if (!found.empty()) lines.push_back("5 [Power_PD_Charging] bAC = " + found.substr(0, 1));
    if (found.size() > 1) {
      const auto text = [&](size_t i) { return found[i] == 't' ? "true" : "false"; };
      lines.push_back(std::string("5 [Power_PD_Charging] bNormalAdapter = ") + text(1));
      lines.push_back(std::string("5 [Power_PD_Charging] bPDAdapter = ") + text(2));
    }
    EXPECT_EQ(TakeLines(), lines);
  }
}

TEST_F(PdCharging, WithoutAnAnswerAndOnTheFirmwareRoute) {
  FailEachExchange(
      4, [&] { Use(28, 1, 0xE0, 0); },
      [&](size_t i, ScriptedEc::Failure) {
        EXPECT_EQ(Power_PD_Charging(), 0u);
        EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kSourceExchanges, i + 1));
      });
  ArchValue::Set(L"ARM64");
  Use(28, 1, 0x60, 0);
  EXPECT_EQ(Power_PD_Charging(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_EQ(TakeLines().back(), "5 [Power_PD_Charging] BatteryHealthyTable version: 2147483647");
}

struct {
  BYTE line;
  BOOL succeeds;
} g_power;

BOOL WINAPI AnswerPowerStatus(LPSYSTEM_POWER_STATUS status) {
  *status = {};
  status->ACLineStatus = g_power.line;
  return g_power.succeeds;
}

TEST(PowerLine, IsTheSystemsOwnByteOnBothRoutes) {
  const ImportPatch patch("GetSystemPowerStatus", AnswerPowerStatus);
  for (const wchar_t* arch : {L"x64", L"ARM64"}) {
    const ArchValue value(arch);
    for (const BYTE line : {0, 1, 2, 255}) {
      g_power = {line, TRUE};
      EXPECT_EQ(Power_Read_ACDCMode(), uint32_t{line});
      g_power.succeeds = FALSE;
      EXPECT_EQ(Power_Read_ACDCMode(), 255u);
    }
  }
}

}  // namespace
}  // namespace vexa::test
