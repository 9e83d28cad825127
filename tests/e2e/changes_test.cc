// What reaches the driver and changes the notebook, and when the scenario behind it changes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"
#include "tests/support/arch_value.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Changes : public EndToEnd {
 protected:
  const Library library_;
};

// Bytes and order of every member are pinned on a scripted driver; here they arrive as they were made.
TEST_F(Changes, ExchangesArriveAsTheyWereMade) {
  const Ready ready(library_);
  EXPECT_EQ(library_.GetRefCount(), 1u);
  EXPECT_THAT(TakeDriverLog(), ElementsAre("open VexaSAIO handles 1", "references -> 0x00000001"));
  EXPECT_EQ(library_.Number("BatteryHealthyTable_ManufactureDate"), 23153u);
  EXPECT_EQ(library_.Number("BatteryHealthyTable_SafetyStatus"), 0u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 01 55 00 read -> 0x5a status 0x0",
                          "ec 0xdd 01 54 00 read -> 0x71 status 0x0", "ec 0xde 03 51 read -> 0x04 status 0x0",
                          "ec 0xde 01 51 write -> 0x00 status 0x0", "ec 0xde 02 00 read -> 0x00 status 0x0",
                          "ec 0xde 02 01 read -> 0x00 status 0x0", "ec 0xde 02 02 read -> 0x00 status 0x0",
                          "ec 0xde 02 03 read -> 0x00 status 0x0"));
  library_.BatteryHealthyTable_BatteryInformation();
  const Lines handshake = TakeExchanges();
  ASSERT_EQ(handshake.size(), 37u);
  EXPECT_EQ(handshake[3], "dd 81 5a 10 write");
  EXPECT_EQ(handshake.back(), "dd 01 7f 00 read");
}

TEST_F(Changes, NothingArrivesBeforeInitializeAndAfterTheLastShutdown) {
  const auto expect_refusals = [this] {
    for (const char* name : {"ReadVersion", "ReadVendorType", "SafetyStatus"}) {
      EXPECT_EQ(library_.Number(std::string("BatteryHealthyTable_") + name), VEXA_NO_ANSWER) << name;
    }
    EXPECT_EQ(library_.Number("BatteryHealthyTable_CycleCount"), VEXA_NOT_AVAILABLE);
    EXPECT_EQ(library_.Number("BatteryHealthyTable_Rsoc"), 0u);
    char text[33] = "left over";
    EXPECT_EQ(library_.Text("BatteryHealthyTable_DeviceName", text), 0u);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(library_.GetDriverVersion(), 0u);
    EXPECT_EQ(library_.GetRefCount(), 0u);
    EXPECT_THAT(TakeExchanges(), IsEmpty());
  };
  // Running, so that a request could reach it.
  RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys");
  ASSERT_TRUE(StartRegisteredService());
  expect_refusals();
  {
    const Ready ready(library_);
  }
  expect_refusals();
}

TEST_F(Changes, WhatIsWrittenStays) {
  const Ready ready(library_);
  EXPECT_EQ(library_.Number("Adapter_Read_Power_Data_Flag"), 0x2Du);
  EXPECT_EQ(library_.Number("Adapter_Read_Power_Data_Flag"), 0u);
  EXPECT_EQ(library_.Number("Adapter_Clear_Charger_Data"), 1u);
  EXPECT_EQ(library_.Number("Adapter_Read_Charger_Interrupt"), 0u);
  EXPECT_EQ(library_.Number("Adapter_Read_Charger_Information"), 0u);

  uint32_t rpm[VEXA_FAN_SLOTS] = {};
  EXPECT_EQ(library_.HealthyTable_Read_Fan(rpm), 2870u);
  EXPECT_THAT(std::vector(rpm, rpm + 3), ElementsAre(3120, 2870, 0));
  EXPECT_EQ(library_.Quillo_Read_Fan(0), 3120u);
  EXPECT_EQ(library_.Quillo_Read_Fan(2), 0u);
  EXPECT_EQ(library_.HealthyTable_SetFanIndex(1), 1u);
  EXPECT_EQ(library_.Number("HealthyTable_FanRPM"), 2870u);
  for (const uint32_t mode : {1u, 0u}) {
    EXPECT_EQ(library_.HealthyTable_SetFanTestMode(mode), 1u);
    EXPECT_EQ(library_.HealthyTable_SetFanPwmDuty(200), 1u);
    EXPECT_EQ(library_.Number("HealthyTable_GetFanTestMode"), mode);
  }

  TakeExchanges();
  EXPECT_EQ(library_.Adapter_Set_Notify_Control(0xC3), 1u);
  EXPECT_EQ(library_.Power_Set_Monitor_PowerDropped(1), 1u);
  EXPECT_THAT(TakeExchanges(), ElementsAre("bb 50 read", "dd 86 36 c3 write", "bb 50 read", "dd 87 09 85 write"));
}

// The notebook's driver provides the firmware's ACPI device too.
TEST_F(Changes, OnTheFirmwareRouteWattagesComeFromTheAcpiDevice) {
  constexpr std::pair<const char*, uint32_t> kWatts[] = {{"Adapter_Read_Standard_Watt", 100},
                                                         {"Adapter_Read_Sufficient_Watt", 65},
                                                         {"Adapter_Read_ChampionPort_Watt", 300}};
  const Ready ready(library_);
  library_.GetRefCount();
  TakeDriverLog();
  {
    const ArchValue arch(L"ARM64");
    for (const auto& [name, watts] : kWatts) EXPECT_EQ(library_.Number(name), watts) << name;
    EXPECT_EQ(library_.Number("Adapter_Read_Contract_PDO"), VEXA_NOT_AVAILABLE);
    EXPECT_THAT(TakeDriverLog(),
                ElementsAre("open OBXACPI handles 1", "acpi DSTS 0x001200f2 0x00000001 -> 0x00010064 length 4",
                            "open OBXACPI handles 1", "acpi DSTS 0x001200f2 0x00000002 -> 0x00010041 length 4",
                            "open OBXACPI handles 1", "acpi DSTS 0x001200f2 0x00000003 -> 0x0001012c length 4"));
  }
  // Machines with the wattage device tell none.
  constexpr wchar_t kKey[] = L"SYSTEM\\CurrentControlSet\\Enum\\ACPI\\VEXA2025";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  RegCloseKey(key);
  for (const auto& [name, watts] : kWatts) EXPECT_EQ(library_.Number(name), VEXA_NOT_AVAILABLE) << name;
  EXPECT_THAT(TakeDriverLog(), IsEmpty());
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
  EXPECT_EQ(library_.Number(kWatts[0].first), 100u);
}

// What this system lacks gives the documented answers, on the library as it is shipped.
TEST_F(Changes, NoneOfTheSystemAround) {
  wchar_t version[VEXA_VERSION_CAPACITY] = L"as it was";
  library_.GetUWPVersion(version);
  library_.GetInfVersion(version);
  EXPECT_EQ(std::wstring(version), L"as it was");
  char text[VEXA_LOCAL_TIME_CAPACITY] = {};
  EXPECT_EQ(library_.System_Read_LocalTime(text), 19u);
  for (const uint8_t flag : {uint8_t{0}, uint8_t{1}}) {
    const int32_t volume = library_.System_Read_VolumeLevel(flag);
    EXPECT_TRUE(volume >= -1 && volume <= 100) << volume;
  }
  EXPECT_THAT(library_.Number("Power_Read_ACDCMode"), testing::AnyOf(0u, 1u, 255u));
  Peer peer;
  EXPECT_EQ(peer.Ask("number System_Check_S_Mode"), Lines{"= 0"});
  EXPECT_THAT(peer.Ask("trace"), testing::Contains("5 [System_Check_S_Mode] Load Dll Error, error = 126"));
}

TEST_F(Changes, OfTheScenarioComeWhileNoHandleIsOpen) {
  const auto expect_cycles = [this](uint32_t cycles) {
    EXPECT_EQ(library_.Number("BatteryHealthyTable_CycleCount"), cycles);
  };
  {
    const Ready ready(library_);
    expect_cycles(63);
    UseScenario("worn-battery");
    expect_cycles(63);
  }
  {
    const Ready ready(library_);
    expect_cycles(912);
  }
  EXPECT_EQ(library_.StopWinIoDriver(0), 1u);
  constexpr size_t kSizes[] = {0, 3, 100, 2000};
  for (const size_t size : kSizes) {
    UseBrokenImage("healthy-x64", size);
    EXPECT_EQ(library_.InitializeWinIo(), 0u) << size;
    EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
  }
  UseScenario("healthy-x64");
  {
    const Ready ready(library_);
    expect_cycles(63);
  }
  // The running driver refuses to be opened. Not every system tells the caller so; none gets an answer.
  for (const size_t size : kSizes) {
    UseBrokenImage("healthy-x64", size);
    const Ready ready(library_);
    EXPECT_EQ(library_.GetRefCount(), 0u) << size;
    EXPECT_EQ(library_.Number("BatteryHealthyTable_ReadVersion"), VEXA_NO_ANSWER);
  }
  UseScenario("healthy-x64");
  const Ready ready(library_);
  expect_cycles(63);
}

}  // namespace
}  // namespace vexa::test
