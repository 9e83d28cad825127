// What reaches the driver, and when the scenario behind it changes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// An opening is carried out, and logged, behind the back of its caller; an exchange after it is not.
void SkipOpening(const Library& library) {
  EXPECT_EQ(library.GetRefCount(), 1u);
  EXPECT_THAT(TakeDriverLog(), ElementsAre("open VexaSAIO handles 1", "references -> 0x00000001"));
}

using Exchanges = EndToEnd;

TEST_F(Exchanges, OfANumberAFlagAndTheIdentity) {
  const Library library;
  const Ready ready(library);
  SkipOpening(library);
  EXPECT_EQ(library.Number("BatteryHealthyTable_ManufactureDate"), 23153u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 01 55 00 read -> 0x5a status 0x0",
                          "ec 0xdd 01 54 00 read -> 0x71 status 0x0"));
  EXPECT_EQ(library.Number("BatteryHealthyTable_ACStatus"), 1u);
  EXPECT_EQ(library.Number("BatteryHealthyTable_LidStatus"), 1u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 01 00 00 read -> 0x01 status 0x0",
                          "ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 03 01 00 read -> 0x01 status 0x0"));
  EXPECT_EQ(library.Number("BatteryHealthyTable_ReadVendorType"), 1u);
  EXPECT_EQ(library.Number("BatteryHealthyTable_ECChipID"), 0x85u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xbb 51 read -> 0x80 status 0x0", "ec 0xbb 10 read -> 0x85 status 0x0"));
}

TEST_F(Exchanges, OfTheGauge) {
  const Library library;
  const Ready ready(library);
  SkipOpening(library);
  EXPECT_EQ(library.Number("BatteryHealthyTable_SafetyStatus"), 0u);
  EXPECT_THAT(TakeDriverLog(),
              ElementsAre("ec 0xde 03 51 read -> 0x04 status 0x0", "ec 0xde 01 51 write -> 0x00 status 0x0",
                          "ec 0xde 02 00 read -> 0x00 status 0x0", "ec 0xde 02 01 read -> 0x00 status 0x0",
                          "ec 0xde 02 02 read -> 0x00 status 0x0", "ec 0xde 02 03 read -> 0x00 status 0x0"));
  EXPECT_EQ(library.Number("BatteryHealthyTable_PFStatus"), 0u);
  EXPECT_THAT(TakeDriverLog(), testing::Contains("ec 0xde 01 53 write -> 0x00 status 0x0"));
}

TEST_F(Exchanges, OfTheHandshake) {
  const Library library;
  const Ready ready(library);
  SkipOpening(library);
  library.BatteryHealthyTable_BatteryInformation();
  const std::vector<std::string> log = TakeDriverLog();
  ASSERT_EQ(log.size(), 37u);
  EXPECT_THAT(std::vector(log.begin(), log.begin() + 6),
              ElementsAre("ec 0xbb 50 read -> 0x1c status 0x0", "ec 0xdd 01 5b 00 read -> 0x00 status 0x0",
                          "ec 0xdd 01 03 00 read -> 0x00 status 0x0",
                          "ec 0xdd 81 5a 10 write -> 0x00 status 0x0",
                          "ec 0xdd 01 5b 00 read -> 0x10 status 0x0",
                          "ec 0xdd 01 60 00 read -> 0x56 status 0x0"));
  EXPECT_EQ(log.back(), "ec 0xdd 01 7f 00 read -> 0xa5 status 0x0");
}

// What a few members answer when nothing can be asked.
const char* const kNoAnswer[] = {"BatteryHealthyTable_ReadVersion", "BatteryHealthyTable_ReadVendorType",
                                 "BatteryHealthyTable_ECChipID", "BatteryHealthyTable_SafetyStatus",
                                 "BatteryHealthyTable_PFStatus"};
const char* const kNotAvailable[] = {"BatteryHealthyTable_ManufactureDate", "BatteryHealthyTable_CycleCount",
                                     "BatteryHealthyTable_Temperature", "BatteryHealthyTable_PackageVoltage",
                                     "BatteryHealthyTable_Current", "BatteryHealthyTable_ChargingCurrent",
                                     "BatteryHealthyTable_ChargingVoltage"};
const char* const kZero[] = {"BatteryHealthyTable_SerialNumber", "BatteryHealthyTable_Rsoc",
                             "BatteryHealthyTable_GaugeIC", "BatteryHealthyTable_ACStatus",
                             "BatteryHealthyTable_LidStatus"};

TEST_F(Exchanges, NoneBeforeInitializeAndAfterTheLastShutdown) {
  const Library library;
  const auto expect_refusals = [&] {
    for (const char* name : kNoAnswer) EXPECT_EQ(library.Number(name), 0x7FFFFFFFu) << name;
    for (const char* name : kNotAvailable) EXPECT_EQ(library.Number(name), 0xFFFFFFFFu) << name;
    for (const char* name : kZero) EXPECT_EQ(library.Number(name), 0u) << name;
    char text[33] = "left over";
    EXPECT_EQ(library.Text("BatteryHealthyTable_DeviceName", text), 0u);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(library.GetDriverVersion(), 0u);
    EXPECT_EQ(library.GetRefCount(), 0u);
  };
  // Running, so that a request could reach it.
  RegisterService(L"\\??\\C:\\Vexa\\VexaSAIO.sys");
  ASSERT_TRUE(StartRegisteredService());
  expect_refusals();
  EXPECT_THAT(TakeDriverLog(), IsEmpty());
  {
    const Ready ready(library);
    SkipOpening(library);
  }
  expect_refusals();
  EXPECT_THAT(TakeDriverLog(), IsEmpty());
}

using Switch = EndToEnd;

TEST_F(Switch, OfTheScenarioWhileNoHandleIsOpen) {
  const Library library;
  {
    const Ready ready(library);
    EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 63u);
    UseScenario("worn-battery");
    EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 63u);
  }
  {
    const Ready ready(library);
    EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 912u);
  }
  EXPECT_EQ(library.StopWinIoDriver(0), 1u);
  UseScenario("healthy-x64");
  const Ready ready(library);
  EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 63u);
}

TEST_F(Switch, ToABrokenImage) {
  const Library library;
  const size_t sizes[] = {0, 3, 100, 2000};
  for (const size_t size : sizes) {
    UseBrokenImage("healthy-x64", size);
    EXPECT_EQ(library.InitializeWinIo(), 0u) << size;
    EXPECT_EQ(ServiceState(), DWORD{SERVICE_STOPPED});
  }
  UseScenario("healthy-x64");
  {
    const Ready ready(library);
    EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 63u);
  }
  // The running driver refuses to be opened. Not every system tells the caller so; none gets an answer.
  for (const size_t size : sizes) {
    UseBrokenImage("healthy-x64", size);
    const Ready ready(library);
    EXPECT_EQ(library.GetRefCount(), 0u) << size;
    EXPECT_EQ(library.Number("BatteryHealthyTable_ReadVersion"), 0x7FFFFFFFu);
  }
  UseScenario("healthy-x64");
  const Ready ready(library);
  EXPECT_EQ(library.Number("BatteryHealthyTable_CycleCount"), 63u);
}

}  // namespace
}  // namespace vexa::test
