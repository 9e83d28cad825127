// Where the machine's power comes from.
#include "tests/support/adapter_test.h"
#include "vexa/adapter.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const Exchanges kAll{kReadVersion, "dd 01 00 00 read", "dd 04 08 00 read", "dd 04 0c 00 read"};
constexpr char kVersionLine[] = "5 [Power_PD_Charging] BatteryHealthyTable version: ";

class PdCharging : public AdapterTest<> {
 protected:
  void Use(int version, uint8_t source, uint8_t type, uint8_t jack) {
    UseVersion(version);
    ec_.answer = [=](const EcCommandRecord& record) {
      if (record.command == 0xBB) return EcReply{.value = static_cast<uint8_t>(version)};
      if (record.data[0] == 1) return EcReply{.value = source};
      return EcReply{.value = record.data[1] == 0x08 ? type : jack};
    };
  }
};

TEST_F(PdCharging, EachDecision) {
  const struct {
    int version;
    uint8_t source, type, jack;
    uint32_t answer;
    size_t exchanges;
  } cases[] = {
      {0, 0x01, 0x60, 0, 0, 1},  {1, 0x01, 0x60, 0, 0, 2},      {7, 0x01, 0x60, 0, 0, 2},   // no adapter types yet
      {8, 0x01, 0x60, 0, 1, 3},  {28, 0xFE, 0x60, 0, 0, 2},                                 // on battery
      {28, 0xFF, 0x00, 1, 1, 3}, {28, 0x01, 0x7F, 1, 1, 3},     {28, 0x01, 0x1F, 1, 1, 3},  // no normal adapter
      {28, 0x01, 0x80, 0, 0, 3}, {28, 0x01, 0x9F, 0, 0, 3},                                 // no PD adapter
      {10, 0x01, 0xE0, 0, 0, 3}, {11, 0x01, 0xE0, 0, 1, 4},                                 // no jack told yet
      {28, 0x01, 0xA0, 0, 1, 4}, {28, 0x01, 0xC0, 0, 1, 4},     {28, 0x01, 0xA0, 1, 0, 4},
      {28, 0x01, 0xC0, 2, 1, 4}, {255, 0x01, 0xE0, 0xFF, 1, 4},
  };
  for (const auto& c : cases) {
    Use(c.version, c.source, c.type, c.jack);
    EXPECT_EQ(Power_PD_Charging(), c.answer) << c.version << " " << int{c.source} << " " << int{c.type};
    EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kAll, c.exchanges)) << c.version << " " << int{c.type};
  }
}

TEST_F(PdCharging, EachExchangeFailingInTurn) {
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < kAll.size(); ++i) {
      Use(28, 1, 0xE0, 0);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(Power_PD_Charging(), 0u) << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges(), FirstOf(kAll, i + 1));
    }
  }
}

TEST_F(PdCharging, TellsWhatItFound) {
  Use(28, 1, 0x80, 0);
  Power_PD_Charging();
  EXPECT_THAT(TakeLines(),
              ElementsAre(std::string(kVersionLine) + "28", "5 [Power_PD_Charging] bAC = 1",
                          "5 [Power_PD_Charging] bNormalAdapter = true", "5 [Power_PD_Charging] bPDAdapter = false"));
  Use(28, 1, 0x20, 0);
  Power_PD_Charging();
  const std::vector<std::string> lines = TakeLines();
  EXPECT_THAT(lines, ElementsAre(testing::_, testing::_, "5 [Power_PD_Charging] bNormalAdapter = false",
                                 "5 [Power_PD_Charging] bPDAdapter = true"));
  Use(28, 2, 0, 0);
  Power_PD_Charging();
  EXPECT_THAT(TakeLines(), ElementsAre(std::string(kVersionLine) + "28", "5 [Power_PD_Charging] bAC = 0"));
  Use(0, 1, 0, 0);
  Power_PD_Charging();
  EXPECT_THAT(TakeLines(), ElementsAre(std::string(kVersionLine) + "0"));
}

TEST_F(PdCharging, TheFirmwareDoesNotTell) {
  ArchValue::Set(L"ARM64");
  Use(28, 1, 0x60, 0);
  EXPECT_EQ(Power_PD_Charging(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_EQ(TakeLines().back(), std::string(kVersionLine) + "2147483647");
}

// ---- Power line ----

struct {
  BYTE line;
  BOOL succeeds;
} g_power;

BOOL WINAPI AnswerPowerStatus(LPSYSTEM_POWER_STATUS status) {
  *status = {};
  status->ACLineStatus = g_power.line;
  return g_power.succeeds;
}

TEST(PowerLine, IsTheSystemsOwnByte) {
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
