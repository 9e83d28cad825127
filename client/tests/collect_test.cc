#include "client/collect.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "client/exit_codes.h"
#include "client/tests/scripted_library.h"

namespace vexahealth {
namespace {

constexpr uint32_t kNoAnswer = 0x7FFFFFFF;
constexpr uint32_t kNotAvailable = 0xFFFFFFFF;

std::string AsItIs(std::string_view text) { return std::string(text); }

class CollectTest : public testing::Test {
 protected:
  void SetUp() override { TheScript() = HealthyScript(); }

  std::vector<Reading> Run(bool ready = true, bool may_wait = true) {
    readings_ = Collect({.resolve = ScriptedExports(),
                         .ready = ready,
                         .may_wait = may_wait,
                         .route = Route::kDriver,
                         .decode = AsItIs});
    return readings_;
  }
  const Reading& At(std::string_view key) { return readings_[RowIndex(key)]; }
  ptrdiff_t Calls(std::string_view key) { return std::ranges::count(TheScript().calls, key); }
  ptrdiff_t Count(Status status) { return std::ranges::count(readings_, status, &Reading::status); }

  std::vector<Reading> readings_;
};

TEST_F(CollectTest, AHealthyNotebookAnswersEverything) {
  Run();
  for (const Reading& reading : readings_) {
    const bool fourth_cell = reading.row->key == "battery.cell_voltage_4";
    EXPECT_EQ(reading.status, fourth_cell ? Status::kNotPresent : Status::kOk) << reading.row->key << reading.note;
    EXPECT_EQ(reading.value == Value(), fourth_cell) << reading.row->key;
  }
  EXPECT_EQ(At("battery.current").value, Value(int64_t{-1234}));
  EXPECT_EQ(At("battery.device_name").value, Value("PACK 3S1P"));
}

TEST_F(CollectTest, EveryReadingComesFromItsOwnExport) {
  for (const Row& row : kRows) {
    TheScript() = HealthyScript();
    if (row.signature == Signature::kNumber) {
      TheScript().numbers[row.key] = 1;
    } else {
      TheScript().texts[row.key] = "other";
    }
    Run();
    const Value expected = row.kind == Kind::kFlag               ? Value(true)
                           : row.kind == Kind::kInterfaceVersion ? Value("0.1")
                           : row.signature == Signature::kNumber ? Value(int64_t{1})
                                                                 : Value("other");
    if (row.gate != Gate::kTableWaits) {
      EXPECT_EQ(At(row.key).value, expected) << row.key;
    }
  }
}

TEST_F(CollectTest, ALibraryThatIsNotReadyIsAskedForItsVersionOnly) {
  Run(/*ready=*/false);
  EXPECT_EQ(TheScript().calls, std::vector<std::string_view>{"library.dll_version"});
  EXPECT_EQ(Count(Status::kNotCollected), static_cast<ptrdiff_t>(kRowCount - 1));
}

TEST_F(CollectTest, ASilentEcIsNotAskedFurther) {
  TheScript().numbers = {{"library.dll_version", 0x00010001},
                         {"driver.version", 0x00010002},
                         {"driver.reference_count", 1},
                         {"ec.chip_name", 0}};
  Run();
  EXPECT_EQ(Count(Status::kOk), 3);
  EXPECT_EQ(Count(Status::kNoAnswer), static_cast<ptrdiff_t>(kRowCount - 3));
  for (const std::string_view key : TheScript().calls) EXPECT_FALSE(key.starts_with("battery.")) << key;
}

TEST_F(CollectTest, WithoutATableOnlyTheGaugeIsAsked) {
  TheScript().numbers["ec.table_version"] = 0;
  TheScript().numbers["battery.device_name"] = 0;
  Run();
  EXPECT_EQ(At("ec.table_version").value, Value(int64_t{0}));
  EXPECT_EQ(At("battery.rsoc").status, Status::kUnsupported);
  EXPECT_EQ(At("battery.device_name").status, Status::kUnsupported);
  EXPECT_EQ(At("battery.manufacturer_smbus").status, Status::kOk);
  EXPECT_EQ(Calls("battery.rsoc"), 0);
}

TEST_F(CollectTest, AFlagThatFailsWithTheTableIsNoFalse) {
  // The EC falls silent when the flag's turn comes: the flag then reads 0.
  TheScript().numbers["battery.error"] = 1;
  TheScript().before_call = [](std::string_view key) {
    if (key != "battery.error") return;
    TheScript().numbers["battery.error"] = 0;
    TheScript().numbers["battery.voltage"] = kNoAnswer;
  };
  Run();
  EXPECT_EQ(At("battery.error").status, Status::kNoAnswer);
  EXPECT_EQ(At("battery.rsoc").status, Status::kOk);
  EXPECT_EQ(At("power.ac_present").status, Status::kNoAnswer);
}

TEST_F(CollectTest, ATableThatVanishesMakesZerosUnsupported) {
  TheScript().before_call = [](std::string_view key) {
    if (key != "battery.serial_number") return;
    TheScript().numbers["battery.serial_number"] = 0;
    TheScript().numbers["battery.voltage"] = kNotAvailable;
    TheScript().numbers["ec.table_version"] = 0;
  };
  Run();
  EXPECT_EQ(At("battery.serial_number").status, Status::kUnsupported);
}

TEST_F(CollectTest, NoBatteryIsToldAndTheWaitIsSpared) {
  for (auto& [key, number] : TheScript().numbers) {
    if (key.starts_with("battery.")) number = 0;
  }
  TheScript().numbers["battery.safety_status"] = kNoAnswer;
  TheScript().numbers["battery.device_name"] = 0;
  TheScript().numbers["power.ac_present"] = 1;
  Run();
  for (const Reading& reading : readings_) {
    EXPECT_EQ(reading.status, TellsBattery(*reading.row) ? Status::kNotPresent : Status::kOk) << reading.row->key;
  }
  EXPECT_EQ(Calls("battery.manufacture_information"), 0);
}

TEST_F(CollectTest, TheWaitCanBeLeftOut) {
  Run(/*ready=*/true, /*may_wait=*/false);
  EXPECT_EQ(At("battery.manufacture_information").status, Status::kNotCollected);
  EXPECT_EQ(Calls("battery.manufacture_information"), 0);
}

TEST_F(CollectTest, AMissingExportCostsOneReading) {
  readings_ = Collect({.resolve = ScriptedExports("battery.cycle_count"),
                       .ready = true,
                       .may_wait = true,
                       .route = Route::kDriver,
                       .decode = AsItIs});
  EXPECT_EQ(At("battery.cycle_count").status, Status::kUnsupported);
  EXPECT_EQ(Count(Status::kUnsupported), 1);
}

TEST_F(CollectTest, WithoutTheVoltageExportZerosAreCheckedByTheVersion) {
  readings_ = Collect({.resolve = ScriptedExports("battery.voltage"),
                       .ready = true,
                       .may_wait = true,
                       .route = Route::kDriver,
                       .decode = AsItIs});
  EXPECT_EQ(At("battery.error").status, Status::kOk);
}

TEST_F(CollectTest, ATextThatBreaksItsBufferIsAnError) {
  TheScript().texts["ec.chip_name"] = std::string(15, 'x');  // one more than with its terminator
  TheScript().texts["battery.device_name"] = std::string(32, 'x');
  TheScript().texts["battery.manufacture_information"] = std::string(1024, 'x');
  Run();
  EXPECT_EQ(At("ec.chip_name").status, Status::kError);
  EXPECT_EQ(At("battery.device_name").status, Status::kOk);
  EXPECT_EQ(At("battery.manufacture_information").status, Status::kError);
}

TEST_F(CollectTest, TheExitCodeNeedsNewsOfTheNotebook) {
  Report report{.library = {.path = {}, .loaded = true, .ready = true, .version = {}, .route = Route::kDriver},
                .readings = Run(),
                .error = {}};
  EXPECT_EQ(ExitCodeFor(report), kExitOk);
  report.library.ready = false;
  EXPECT_EQ(ExitCodeFor(report), kExitNoReadings);
  TheScript().numbers = {{"library.dll_version", 0x00010001}, {"driver.version", 2}, {"ec.chip_name", 0}};
  report.library.ready = true;
  report.readings = Run();
  EXPECT_EQ(ExitCodeFor(report), kExitNoReadings);
}

}  // namespace
}  // namespace vexahealth
