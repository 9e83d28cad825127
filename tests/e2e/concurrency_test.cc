// Many callers at once: threads over the readings that any thread may ask for at any time, and processes over the fan
// mutex, whose owners die.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;


// Without arguments, without an effect, safe on any thread at any time.
constexpr const char* kReadings[] = {
    "GetDriverVersion",
    "GetIoDllVersion",
    "GetRefCount",
    "BatteryHealthyTable_ACStatus",
    "BatteryHealthyTable_BatteryError",
    "BatteryHealthyTable_CellVoltage1",
    "BatteryHealthyTable_CellVoltage2",
    "BatteryHealthyTable_CellVoltage3",
    "BatteryHealthyTable_CellVoltage4",
    "BatteryHealthyTable_ChargingCurrent",
    "BatteryHealthyTable_ChargingVoltage",
    "BatteryHealthyTable_Current",
    "BatteryHealthyTable_CycleCount",
    "BatteryHealthyTable_DesignVoltage",
    "BatteryHealthyTable_ECChipID",
    "BatteryHealthyTable_FullChargeCapacity",
    "BatteryHealthyTable_FullCharged",
    "BatteryHealthyTable_GaugeIC",
    "BatteryHealthyTable_LidStatus",
    "BatteryHealthyTable_ManufactureDate",
    "BatteryHealthyTable_PackageVoltage",
    "BatteryHealthyTable_ReadVendorType",
    "BatteryHealthyTable_ReadVersion",
    "BatteryHealthyTable_RemainingCapacity",
    "BatteryHealthyTable_Rsoc",
    "BatteryHealthyTable_SerialNumber",
    "BatteryHealthyTable_Temperature",
    "BatteryHealthyTable_TimeoutStatus",
    "Adapter_Read_ChampionPort_Watt",
    "Adapter_Read_Charger_Information",
    "Adapter_Read_Charger_Interrupt",
    "Adapter_Read_Contract_PDO",
    "Adapter_Read_PDO1",
    "Adapter_Read_PDO2",
    "Adapter_Read_PDO3",
    "Adapter_Read_PDO4",
    "Adapter_Read_PDO5",
    "Adapter_Read_PDO6",
    "Adapter_Read_PDO7",
    "Adapter_Read_PDO_Watt",
    "Adapter_Read_PD_ADO",
    "Adapter_Read_PD_Get_Emark_Other",
    "Adapter_Read_PD_Get_Emark_PID",
    "Adapter_Read_PD_Get_Emark_VID",
    "Adapter_Read_PD_Get_Emark_XID",
    "Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion",
    "Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion",
    "Adapter_Read_PD_Get_Source_Cap_Extend_PID",
    "Adapter_Read_PD_Get_Source_Cap_Extend_VID",
    "Adapter_Read_PD_Get_Source_Cap_Extend_XID",
    "Adapter_Read_PD_Get_Status_EventFlag",
    "Adapter_Read_PD_Get_Status_Temperature",
    "Adapter_Read_Power_Big_Data_Config",
    "Adapter_Read_Standard_Watt",
    "Adapter_Read_Sufficient_Watt",
    "Power_PD_Charging",
    "Power_Read_ACDCMode",
    "HealthyTable_FanCounts",
    "HealthyTable_FanRPM",
    "HealthyTable_GetFanTestMode",
    "HealthyTable_Read_Cpu_Temperature",
    "EC_ReadEcChipId",
    "EC_ReadEcChipName",
    "EC_ReadEcFwRev",
    "System_Check_S_Mode",
    "System_Read_TabletMode",
};

class Concurrency : public EndToEnd {};

TEST_F(Concurrency, ThirtyTwoThreadsReadWhatOneReads) {
  constexpr int kThreads = 32;
  constexpr size_t kCount = std::size(kReadings);
  UseScenario("worn-battery");
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  std::array<uint32_t, kCount> alone;
  for (size_t i = 0; i < kCount; ++i) alone[i] = library.Number(kReadings[i]);
  std::array<char, 33> maker{};
  EXPECT_EQ(library.Text("BatteryHealthyTable_ManufactureName", maker.data()), 1u);

  std::atomic<int> wrong = 0;
  std::atomic<const char*> wrong_name = nullptr;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        for (size_t i = 0; i < kCount; ++i) {
          const size_t at = (i + static_cast<size_t>(thread) * 2) % kCount;
          if (library.Number(kReadings[at]) == alone[at]) continue;
          ++wrong;
          wrong_name = kReadings[at];
        }
        std::array<char, 33> text{};
        if (library.Text("BatteryHealthyTable_ManufactureName", text.data()) != 1 || text != maker) ++wrong;
      });
    }
  }
  EXPECT_EQ(wrong, 0) << (wrong_name != nullptr ? wrong_name.load() : "a text");
  EXPECT_EQ(library.GetRefCount(), 1u);
}

// How many owners die: few in the daily run, 100 when VEXA_DYING_OWNERS says so.
int DyingOwners() {
  const char* const owners = std::getenv("VEXA_DYING_OWNERS");
  return owners != nullptr ? std::atoi(owners) : 8;
}

// Seven processes wait for the fan mutex when the eighth, which has it, is killed: one of them finds it abandoned and
// fails, the others read, and the next owner gets it.
TEST_F(Concurrency, EightProcessesWhoseOwnerIsKilled) {
  constexpr size_t kProcesses = 8;
  std::array<std::unique_ptr<Peer>, kProcesses> peers;
  const auto begin = [](std::unique_ptr<Peer>& peer) {
    peer = std::make_unique<Peer>();
    ASSERT_EQ(peer->Ask("initialize").back(), "= 1");
    ASSERT_EQ(peer->Ask("number HealthyTable_FanCounts").back(), "= 2");
    // Builds the guard.
    ASSERT_EQ(peer->Ask("fan 1").back(), "= 2870");
  };
  for (auto& peer : peers) begin(peer);
  for (int i = 0; i < DyingOwners(); ++i) {
    SCOPED_TRACE(i);
    auto& owner = peers[static_cast<size_t>(i) % kProcesses];
    ASSERT_EQ(owner->Ask("testmode 1"), (Lines{"wait 10000", "waited 0", "= 1"}));
    for (auto& peer : peers) {
      if (peer == owner) continue;
      peer->Tell("fan 1");
      ASSERT_EQ(peer->Line(), "wait 5000");
    }
    owner->Kill();
    Lines answers;
    for (auto& peer : peers) {
      if (peer == owner) continue;
      const Lines answer = peer->Answer();
      answers.push_back(answer.front() + " " + answer.back());
    }
    std::sort(answers.begin(), answers.end());
    const std::string read = "waited 0 = 2870";
    ASSERT_THAT(answers, ElementsAre(read, read, read, read, read, read, "waited 128 = 2147483647"));
    begin(owner);
  }
}

}  // namespace
}  // namespace vexa::test
