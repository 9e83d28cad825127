// What the exports answer on each scenario, and what the registry keeps of it over processes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"
#include "tests/support/answer_table.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/import_patch.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;

int g_pauses = 0;

// The handshake counts its polls and not the time between them, so that its pauses need not be made.
void WINAPI CountedSecond(DWORD milliseconds) {
  EXPECT_EQ(milliseconds, 1000u);
  ++g_pauses;
}

std::string AnswerOfText(const Library& library, const std::string& name, size_t capacity) {
  const GuardedBuffer buffer(capacity);
  const uint32_t answer = library.Text(name, buffer.data());
  EXPECT_TRUE(buffer.IsTerminated() && buffer.IsUntouchedAround()) << name;
  const std::string text(buffer.data(), strnlen(buffer.data(), capacity));
  if (answer == 0) EXPECT_EQ(text, "") << name;
  return answer == 0 ? "-" : text.empty() ? "empty" : text;
}

std::string AnswerOfPart(const Library& library, uint32_t& told_length) {
  VexaPdIcPartNumber part;
  std::memset(&part, 0x5A, sizeof part);
  const uint32_t answer = library.Adapter_Read_PD_IC_PN(&part);
  told_length = part.told_length;
  EXPECT_EQ(strnlen(part.text, sizeof part.text), part.length);
  if (answer == 0) EXPECT_EQ(part.length, 0u);
  return answer == 0 ? "-" : part.text;
}

// As the table writes it: a number in the expected one's base.
std::string Answer(const Library& library, const std::string& name, const std::string& expected) {
  static uint32_t told_length = 0;
  const size_t colon = name.find(':');
  if (colon != std::string::npos)
    return AnswerOfText(library, name.substr(0, colon), std::stoul(name.substr(colon + 1)));
  if (name == "Adapter_Read_PD_IC_PN") return AnswerOfPart(library, told_length);
  if (name == "BatteryHealthyTable_BatteryInformation") {
    const VexaText information = library.BatteryHealthyTable_BatteryInformation();
    const size_t length = strnlen(information.text, sizeof information.text);
    EXPECT_LE(length, 159u);
    return length == 0 ? "empty" : std::string(information.text, length);
  }
  const uint32_t number = name == "(pauses of a second)" ? static_cast<uint32_t>(std::exchange(g_pauses, 0))
                          : name == "(told length)"      ? told_length
                                                         : library.Number(name);
  if (expected.empty()) return "";
  const uint32_t wanted = expected == "fail"   ? VEXA_NO_ANSWER
                          : expected == "void" ? VEXA_NOT_AVAILABLE
                                               : static_cast<uint32_t>(std::stoll(expected, nullptr, 0));
  return number == wanted ? expected : std::to_string(number);
}

// Begins and ends without anything that the registry keeps.
class Readings : public EndToEnd {
 protected:
  static constexpr wchar_t kKey[] = L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis";
  static constexpr const wchar_t* kKept[] = {L"EcChipId", L"EcChipName", L"EcFwRev"};

  Readings() { Forget(); }
  ~Readings() override { Forget(); }
  static void Forget() {
    for (const wchar_t* value : kKept) RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kKey, value);
  }
  static bool IsKept(const wchar_t* value) {
    return RegGetValueW(HKEY_LOCAL_MACHINE, kKey, value, RRF_RT_REG_DWORD, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
  }
};

// Also of scenarios that came after the table was written: they are survived.
TEST_F(Readings, OfEveryScenario) {
  const AnswerTable table("C:\\vexa-notebook\\x64_readings.tsv");
  const std::vector<std::string> scenarios = AllScenarios();
  EXPECT_THAT(scenarios, testing::IsSupersetOf(table.scenarios));
  EXPECT_GT(table.rows.size(), 75u);
  const Library library;
  for (const std::string& scenario : scenarios) {
    SCOPED_TRACE(scenario);
    UseScenario(scenario);
    Forget();
    const Ready ready(library);
    const ImportPatch sleep("Sleep", CountedSecond, library.module());
    g_pauses = 0;
    const size_t column = table.Column(scenario);
    for (const auto& [name, values] : table.rows) {
      const std::string expected = column < values.size() ? values[column] : "";
      const std::string answer = Answer(library, name, expected);
      if (!expected.empty()) EXPECT_EQ(answer, expected) << name;
    }
    library.GetDriverVersion();
    library.GetRefCount();
    if (column == table.scenarios.size()) continue;
    for (const wchar_t* value : kKept) EXPECT_EQ(IsKept(value), scenario != "silent-ec");
  }
}

// Cut answers leave zeros where they end; a failed one, and one with a status, ends the reading.
TEST_F(Readings, OfAnswersThatAreCutAndFail) {
  UseScenario("hostile-answers");
  const Library library;
  {
    const Ready ready(library);
    EXPECT_EQ(library.GetDriverVersion(), 0xFFu);
    EXPECT_EQ(library.GetRefCount(), 0u);
  }
  UseScenario("short-answers");
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  EXPECT_EQ(library.GetDriverVersion(), 0x00030201u);
  EXPECT_EQ(library.GetRefCount(), 0u);
  constexpr std::pair<const char*, uint32_t> kAnswers[] = {{"CycleCount", 0x002E},
                                                           {"Rsoc", 0x3130},
                                                           {"Temperature", 0x0034},
                                                           {"PackageVoltage", VEXA_NO_ANSWER},
                                                           {"Current", VEXA_NO_ANSWER},
                                                           {"GaugeIC", VEXA_NO_ANSWER},
                                                           {"ACStatus", 0}};
  for (const auto& [name, answer] : kAnswers) {
    EXPECT_EQ(library.Number(std::string("BatteryHealthyTable_") + name), answer) << name;
  }
  EXPECT_EQ(AnswerOfText(library, "BatteryHealthyTable_ManufactureName", 33), "-");
}

TEST_F(Readings, TheEcIsAskedOnceForItsIdentityOverTwoProcesses) {
  Peer first, second;
  EXPECT_EQ(first.Ask("initialize"), Lines{"= 1"});
  const auto ask_all = [](Peer& peer) {
    EXPECT_EQ(peer.Ask("number EC_ReadEcChipId"), Lines{"= 133"});
    EXPECT_EQ(peer.Ask("number EC_ReadEcChipName"), Lines{"= 1448622137"});
    EXPECT_EQ(peer.Ask("number EC_ReadEcFwRev"), Lines{"= 16706"});
  };
  ask_all(first);
  EXPECT_THAT(TakeExchanges(), ElementsAre("bb 10 read", "bb 12 read", "bb 13 read", "bb 14 read", "bb 15 read",
                                           "bb 51 read", "bb 03 read", "bb 04 read"));
  // Without a ready driver and with one.
  ask_all(second);
  EXPECT_EQ(second.Ask("initialize"), Lines{"= 1"});
  ask_all(second);
  EXPECT_THAT(TakeExchanges(), testing::IsEmpty());
}

}  // namespace
}  // namespace vexa::test
