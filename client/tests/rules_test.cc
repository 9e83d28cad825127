#include "client/rules.h"

#include <gtest/gtest.h>

#include <vector>

namespace vexahealth {
namespace {

constexpr uint32_t kNoAnswer = 0x7FFFFFFF;
constexpr uint32_t kNotAvailable = 0xFFFFFFFF;

Answer Number(uint32_t number) { return {.form = Answer::Form::kNumber, .number = number, .text = {}}; }
Answer Text(uint32_t number, std::string text) { return {.form = Answer::Form::kText, .number = number, .text = text}; }

Circumstances WithTable(uint32_t version) {
  return {.route = Route::kDriver, .ready = true, .table = TableStateFrom(Number(version))};
}

Reading Decided(std::string_view key, const Answer& answer, CrossCheck check = CrossCheck::kNone,
                const Circumstances& now = WithTable(12)) {
  return Decide(kRows[RowIndex(key)], answer, now, check);
}

std::optional<Status> StatusWithoutCall(std::string_view key, const Circumstances& now) {
  const std::optional<Reading> reading = DecideWithoutCall(kRows[RowIndex(key)], now);
  if (!reading) return std::nullopt;
  EXPECT_NE(reading->note, "");
  return reading->status;
}

TEST(TableState, VersionZeroIsNoTableAndNonsenseIsUnreadable) {
  EXPECT_EQ(TableStateFrom(Number(0)).kind, TableState::Kind::kAbsent);
  EXPECT_EQ(TableStateFrom(Number(255)).kind, TableState::Kind::kPresent);
  EXPECT_EQ(TableStateFrom(Number(256)).kind, TableState::Kind::kUnreadable);
  EXPECT_EQ(TableStateFrom(Number(kNoAnswer)).kind, TableState::Kind::kUnreadable);
  EXPECT_EQ(TableStateFrom({}).kind, TableState::Kind::kUnreadable);
}

TEST(WithoutCall, ALibraryThatIsNotReadyIsNotAsked) {
  Circumstances now = WithTable(12);
  now.ready = false;
  EXPECT_EQ(StatusWithoutCall("battery.rsoc", now), Status::kNotCollected);
  EXPECT_EQ(StatusWithoutCall("driver.version", now), Status::kNotCollected);
  EXPECT_EQ(StatusWithoutCall("ec.chip_id", now), Status::kNotCollected);
  EXPECT_EQ(StatusWithoutCall("library.dll_version", now), std::nullopt);
}

TEST(WithoutCall, NoTableLeavesTheEcAndTheGauge) {
  const Circumstances now = WithTable(0);
  EXPECT_EQ(StatusWithoutCall("battery.rsoc", now), Status::kUnsupported);
  EXPECT_EQ(StatusWithoutCall("power.ac_present", now), Status::kUnsupported);
  EXPECT_EQ(StatusWithoutCall("battery.manufacture_information", now), Status::kUnsupported);
  EXPECT_EQ(StatusWithoutCall("battery.device_name", now), std::nullopt);
  EXPECT_EQ(StatusWithoutCall("ec.chip_id", now), std::nullopt);
}

TEST(WithoutCall, AnUnreadableVersionStopsTheTableAndTheGauge) {
  const Circumstances now = WithTable(kNoAnswer);
  EXPECT_EQ(StatusWithoutCall("battery.rsoc", now), Status::kNoAnswer);
  EXPECT_EQ(StatusWithoutCall("battery.error", now), Status::kNoAnswer);
  EXPECT_EQ(StatusWithoutCall("battery.safety_status", now), Status::kNoAnswer);
  EXPECT_EQ(StatusWithoutCall("ec.vendor_type", now), std::nullopt);
}

TEST(WithoutCall, ManufactureInformationNeedsVersion10) {
  EXPECT_EQ(StatusWithoutCall("battery.manufacture_information", WithTable(9)), Status::kUnsupported);
  EXPECT_EQ(StatusWithoutCall("battery.manufacture_information", WithTable(10)), std::nullopt);
}

TEST(Numbers, ThePlainAnswerIsOk) {
  const Reading reading = Decided("battery.rsoc", Number(87));
  EXPECT_EQ(reading.status, Status::kOk);
  EXPECT_EQ(reading.value, Value(int64_t{87}));
  EXPECT_EQ(reading.note, "");
}

TEST(Numbers, NoAnswerIsNeverAValue) {
  for (const Row& row : kRows) {
    if (row.signature != Signature::kNumber || row.section == Section::kLibrary) continue;
    const Reading reading = Decide(row, Number(kNoAnswer), WithTable(12), CrossCheck::kConfirmed);
    EXPECT_EQ(reading.status, Status::kNoAnswer) << row.key;
    EXPECT_EQ(reading.value, Value()) << row.key;
  }
}

TEST(Numbers, StatusBitsUseAllOf32) {
  EXPECT_EQ(Decided("battery.safety_status", Number(0)).status, Status::kOk);
  EXPECT_EQ(Decided("battery.safety_status", Number(kNotAvailable)).value, Value(int64_t{0xFFFFFFFF}));
}

TEST(Numbers, AMissingExportIsUnsupportedAndNamed) {
  const Reading reading = Decided("battery.rsoc", Answer{});
  EXPECT_EQ(reading.status, Status::kUnsupported);
  EXPECT_NE(reading.note.find("BatteryHealthyTable_Rsoc"), std::string::npos);
}

TEST(Numbers, AnswersOutsideTheContractAreErrors) {
  EXPECT_EQ(Decided("battery.rsoc", Number(101)).status, Status::kError);
  EXPECT_EQ(Decided("battery.error", Number(2)).status, Status::kError);
  EXPECT_EQ(Decided("battery.voltage", Number(0x10000)).status, Status::kError);
  EXPECT_EQ(Decided("ec.chip_id", Number(kNotAvailable)).status, Status::kError);
}

std::vector<std::string_view> DoubtfulAt(uint32_t number) {
  std::vector<std::string_view> keys;
  for (const Row& row : kRows) {
    if (row.signature == Signature::kNumber && NeedsCrossCheck(row, Number(number), Route::kDriver))
      keys.push_back(row.key);
  }
  return keys;
}

TEST(DoubtfulAnswers, AreTheDocumentedOnesOnly) {
  EXPECT_EQ(DoubtfulAt(0),
            (std::vector<std::string_view>{
                "battery.serial_number", "battery.design_voltage", "battery.rsoc", "battery.remaining_capacity",
                "battery.full_charge_capacity", "battery.cell_voltage_1", "battery.cell_voltage_2",
                "battery.cell_voltage_3", "battery.cell_voltage_4", "battery.gauge_chip", "battery.error",
                "battery.fully_charged", "charger.timeout_status", "power.ac_present", "lid.state"}));
  EXPECT_EQ(DoubtfulAt(kNotAvailable),
            (std::vector<std::string_view>{"battery.manufacture_date", "battery.cycle_count", "battery.temperature",
                                           "battery.voltage", "battery.current", "battery.charging_current",
                                           "battery.charging_voltage"}));
  EXPECT_EQ(DoubtfulAt(1), std::vector<std::string_view>{});
}

TEST(DoubtfulAnswers, ZeroIsOkOnlyWhenTheTableAnswersRightAfter) {
  const Reading confirmed = Decided("battery.error", Number(0), CrossCheck::kConfirmed);
  EXPECT_EQ(confirmed.status, Status::kOk);
  EXPECT_EQ(confirmed.value, Value(false));
  EXPECT_NE(confirmed.note, "");
  EXPECT_EQ(Decided("battery.error", Number(0), CrossCheck::kNoAnswer).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.error", Number(0), CrossCheck::kNone).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.error", Number(0), CrossCheck::kNoTable).status, Status::kUnsupported);
}

TEST(DoubtfulAnswers, AllOnesIsMinusOneForCurrentsOnly) {
  const Reading current = Decided("battery.current", Number(kNotAvailable), CrossCheck::kConfirmed);
  EXPECT_EQ(current.status, Status::kOk);
  EXPECT_EQ(current.value, Value(int64_t{-1}));
  EXPECT_EQ(Decided("battery.current", Number(kNotAvailable), CrossCheck::kNoAnswer).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.cycle_count", Number(kNotAvailable), CrossCheck::kConfirmed).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.cycle_count", Number(kNotAvailable), CrossCheck::kNoTable).status, Status::kUnsupported);
}

TEST(CrossChecks, OnlyAPlainVoltageConfirms) {
  EXPECT_EQ(CrossCheckFrom(Number(11400), {}), CrossCheck::kConfirmed);
  EXPECT_EQ(CrossCheckFrom(Number(0), {}), CrossCheck::kConfirmed);
  EXPECT_EQ(CrossCheckFrom(Number(kNoAnswer), Number(12)), CrossCheck::kNoAnswer);
  EXPECT_EQ(CrossCheckFrom(Number(0x10000), Number(12)), CrossCheck::kNoAnswer);
  EXPECT_EQ(CrossCheckFrom(Number(kNotAvailable), Number(0)), CrossCheck::kNoTable);
  EXPECT_EQ(CrossCheckFrom(Number(kNotAvailable), Number(12)), CrossCheck::kNoAnswer);
  EXPECT_EQ(CrossCheckFrom(Number(kNotAvailable), Number(kNoAnswer)), CrossCheck::kNoAnswer);
}

TEST(CrossChecks, WithoutTheVoltageExportTheVersionDecides) {
  EXPECT_EQ(CrossCheckFrom({}, Number(12)), CrossCheck::kConfirmed);
  EXPECT_EQ(CrossCheckFrom({}, Number(0)), CrossCheck::kNoTable);
  EXPECT_EQ(CrossCheckFrom({}, Number(kNoAnswer)), CrossCheck::kNoAnswer);
  EXPECT_EQ(CrossCheckFrom({}, {}), CrossCheck::kNoAnswer);
}

TEST(Driver, ZeroIsNoVersion) {
  const Circumstances now = WithTable(12);
  EXPECT_EQ(Decided("driver.version", Number(0), CrossCheck::kNone, now).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("driver.version", Number(kNoAnswer), CrossCheck::kNone, now).status, Status::kOk);
}

TEST(Texts, OkNeedsBothTheAnswerAndCharacters) {
  EXPECT_EQ(Decided("battery.device_name", Text(1, "GB4")).status, Status::kOk);
  EXPECT_EQ(Decided("battery.device_name", Text(1, "")).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.device_name", Text(0, "left over")).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.device_name", Text(7, "GB4")).status, Status::kError);
  EXPECT_EQ(Decided("battery.device_name", {.form = Answer::Form::kUnterminated, .number = 1, .text = {}}).status,
            Status::kError);
}

TEST(Texts, FailureWithoutATableIsUnsupportedExceptForTheEcsOwnName) {
  EXPECT_EQ(Decided("battery.device_name", Text(0, ""), CrossCheck::kNone, WithTable(0)).status, Status::kUnsupported);
  EXPECT_EQ(Decided("ec.chip_name", Text(0, ""), CrossCheck::kNone, WithTable(0)).status, Status::kNoAnswer);
}

TEST(Information, EmptyIsNoAnswerAndZeroBytesAreTold) {
  EXPECT_EQ(Decided("battery.manufacture_information", Text(0, "")).status, Status::kNoAnswer);
  EXPECT_EQ(Decided("battery.manufacture_information", Text(0, "0x1,0xff")).note, "");
  const Reading reading = Decided("battery.manufacture_information", Text(0, "0x1,0x0"));
  EXPECT_EQ(reading.status, Status::kOk);
  EXPECT_NE(reading.note, "");
}

}  // namespace
}  // namespace vexahealth
