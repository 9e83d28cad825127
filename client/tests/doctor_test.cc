// What the doctor makes of what it finds, and who may write into a folder.
#include "client/doctor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "client/exit_codes.h"
#include "client/folder_rights.h"

namespace vexahealth {
namespace {

DoctorFacts Healthy() {
  return {.time = "2026-02-03T08:05:00.000Z",
          .system = "Windows 10.0.22631",
          .native_machine = "x64",
          .client_machine = "x64",
          .elevated = true,
          .library = {.path = "C:\\Vexa\\VexaWinIO64.dll",
                      .loaded = true,
                      .ready = true,
                      .version = 0x00010001,
                      .route = Route::kDriver},
          .library_error = {},
          .driver_file = "C:\\Vexa\\VexaSAIO.sys",
          .driver_file_exists = true,
          .service = {.state = ServiceFacts::State::kRunning, .path = "\\??\\c:\\vexa\\VexaSAIO.sys"},
          .driver_version = 0x00010203,
          .table_version = 28,
          .classes = {{.name = "ATD_STS", .state = WmiClassFacts::State::kMissing},
                      {.name = "VexaObxWmi_WMNB", .state = WmiClassFacts::State::kPresent}},
          .folders = {{.path = "C:\\Vexa", .known = true, .writers = {}}}};
}

DoctorFacts Arm64() {
  DoctorFacts facts = Healthy();
  facts.native_machine = facts.client_machine = "ARM64";
  facts.library.route = Route::kFirmware;
  facts.service = {.state = ServiceFacts::State::kMissing};
  facts.driver_file_exists = false;
  facts.driver_version = facts.table_version = std::nullopt;
  facts.classes[0].state = WmiClassFacts::State::kPresent;
  return facts;
}

const DoctorCheck& At(const std::vector<DoctorCheck>& checks, std::string_view name) {
  const auto found = std::ranges::find(checks, name, &DoctorCheck::name);
  if (found != checks.end()) return *found;
  static const DoctorCheck none;
  ADD_FAILURE() << name;
  return none;
}

TEST(Doctor, HealthyMachinesHaveNoProblemAndNoWarning) {
  for (const DoctorFacts& facts : {Healthy(), Arm64()}) {
    const std::vector<DoctorCheck> checks = Judge(facts);
    for (const DoctorCheck& check : checks) {
      EXPECT_TRUE(check.grade == Grade::kGood || check.grade == Grade::kInfo) << check.text;
    }
    EXPECT_EQ(DoctorExitCode(facts, checks), kExitOk);
  }
  const std::vector<DoctorCheck> checks = Judge(Arm64());
  EXPECT_EQ(std::ranges::count(checks, "service", &DoctorCheck::name), 0);  // no driver there
}

TEST(Doctor, EachFaultIsToldWhereItIs) {
  struct Fault {
    const char* check;
    Grade grade;
    const char* words;
    void (*make)(DoctorFacts&);
    int exit_code;
  };
  using State = ServiceFacts::State;
  const Fault faults[] = {
      {"machine", Grade::kProblem, "made for this", [](DoctorFacts& f) { f.native_machine = "ARM64"; }, 1},
      {"rights", Grade::kWarning, "no administrator", [](DoctorFacts& f) { f.elevated = false; }, 0},
      {"route", Grade::kWarning, "Arch", [](DoctorFacts& f) { f.library.route = Route::kUnknown; }, 0},
      {"driver file", Grade::kProblem, "is missing", [](DoctorFacts& f) { f.driver_file_exists = false; }, 1},
      {"service", Grade::kProblem, "not installed", [](DoctorFacts& f) { f.service.state = State::kMissing; }, 1},
      {"service", Grade::kProblem, "stopped", [](DoctorFacts& f) { f.service.state = State::kStopped; }, 1},
      {"service", Grade::kWarning, "error 5",
       [](DoctorFacts& f) { f.service = {.state = State::kUnknown, .path = {}, .error = 5}; }, 0},
      {"service", Grade::kWarning, "another file",
       [](DoctorFacts& f) { f.service.path = "\\??\\C:\\Old\\VexaSAIO.sys"; }, 0},
      {"start", Grade::kProblem, "answered 0", [](DoctorFacts& f) { f.library.ready = false; }, 1},
      {"start", Grade::kProblem, "does not tell", [](DoctorFacts& f) { f.driver_version = 0; }, 1},
      {"EC", Grade::kProblem, "not answer", [](DoctorFacts& f) { f.table_version = VEXA_NO_ANSWER; }, 1},
      {"EC", Grade::kWarning, "no healthy table", [](DoctorFacts& f) { f.table_version = 0; }, 0},
      {"folder", Grade::kWarning, "Everyone, Users",
       [](DoctorFacts& f) { f.folders[0].writers = {"Everyone", "Users"}; }, 0},
      {"folder", Grade::kWarning, "can't be read", [](DoctorFacts& f) { f.folders[0].known = false; }, 0},
  };
  for (const Fault& fault : faults) {
    DoctorFacts facts = Healthy();
    fault.make(facts);
    const std::vector<DoctorCheck> checks = Judge(facts);
    EXPECT_EQ(At(checks, fault.check).grade, fault.grade) << fault.words;
    EXPECT_NE(At(checks, fault.check).text.find(fault.words), std::string::npos) << At(checks, fault.check).text;
    EXPECT_EQ(DoctorExitCode(facts, checks), fault.exit_code) << fault.words;
    const auto bad = [](const DoctorCheck& check) { return check.grade >= Grade::kWarning; };
    EXPECT_EQ(std::ranges::count_if(checks, bad), 1) << fault.words;
  }
}

TEST(Doctor, TheFolderOfADriverElsewhere) {
  DoctorFacts facts = Healthy();
  EXPECT_EQ(OtherDriverFolder(facts), "");
  facts.service.path = "\\??\\D:\\Old\\VexaSAIO.sys";
  EXPECT_EQ(OtherDriverFolder(facts), "D:\\Old");
  facts.service.path = "VexaSAIO.sys";
  EXPECT_EQ(OtherDriverFolder(facts), "");
  facts.service.path.clear();
  EXPECT_EQ(OtherDriverFolder(facts), "");
}

TEST(Doctor, TheClassesThatTheRouteNeeds) {
  using State = WmiClassFacts::State;
  DoctorFacts facts = Arm64();
  facts.classes[0].state = State::kMissing;
  EXPECT_EQ(At(Judge(facts), "WMI").grade, Grade::kProblem);
  facts.classes[0] = {.name = "ATD_STS", .state = State::kUnknown, .error = 0x80041003};
  EXPECT_EQ(At(Judge(facts), "WMI").grade, Grade::kWarning);
  EXPECT_NE(At(Judge(facts), "WMI").text.find("0x80041003"), std::string::npos);
}

TEST(Doctor, WithoutALibraryTheRestIsStillTold) {
  DoctorFacts facts = Healthy();
  facts.library = {.path = "C:\\Vexa\\VexaWinIO64.dll"};
  facts.library_error = "missing \x1b[2J";
  const std::vector<DoctorCheck> checks = Judge(facts);
  EXPECT_EQ(At(checks, "library").grade, Grade::kProblem);
  EXPECT_EQ(At(checks, "folder").grade, Grade::kGood);
  EXPECT_EQ(DoctorExitCode(facts, checks), kExitNotLoaded);
  EXPECT_EQ(DoctorText(facts, checks).find('\x1b'), std::string::npos);
  const auto json = nlohmann::json::parse(DoctorJson(facts, checks));
  EXPECT_EQ(json["error"], "missing \x1b[2J");
  EXPECT_EQ(json["checks"].size(), checks.size());
}

constexpr uint32_t kRead = 0x00120089;
constexpr uint32_t kModify = 0x001301BF;

TEST(OrdinaryWriters, AllowedUnlessDeniedBefore) {
  using Entries = std::vector<AccessEntry>;
  const AccessEntry administrators = {.mask = 0x001F01FF, .sid = "S-1-5-32-544"};
  const AccessEntry users_read = {.mask = kRead, .sid = "S-1-5-32-545"};
  const AccessEntry users_modify = {.mask = kModify, .sid = "S-1-5-32-545"};
  EXPECT_TRUE(OrdinaryWriters(Entries{administrators, users_read}).empty());
  EXPECT_EQ(OrdinaryWriters(Entries{administrators, users_modify}), std::vector<std::string>{"Users"});
  EXPECT_TRUE(
      OrdinaryWriters(Entries{{.allows = false, .mask = kModify, .sid = "S-1-5-32-545"}, users_modify}).empty());
  EXPECT_EQ(OrdinaryWriters(Entries{users_modify, {.allows = false, .mask = kModify, .sid = "S-1-5-32-545"}}).size(),
            1u);
  EXPECT_TRUE(OrdinaryWriters(Entries{{.inherit_only = true, .mask = kModify, .sid = "S-1-5-32-545"}}).empty());
  // One account, but neither the administrators' own nor the one that this runs as.
  const AccessEntry account = {.mask = kModify, .sid = "S-1-5-21-1-2-3-1500"};
  EXPECT_EQ(OrdinaryWriters(Entries{account, users_modify, account}),
            (std::vector<std::string>{"S-1-5-21-1-2-3-1500", "Users"}));
  EXPECT_TRUE(OrdinaryWriters(Entries{account}, account.sid).empty());
  for (const char* sid : {"S-1-5-18", "S-1-5-80-956008885-1", "S-1-3-0", "S-1-5-21-1-2-3-500", "S-1-5-21-1-2-3-512"}) {
    EXPECT_TRUE(OrdinaryWriters(Entries{{.mask = kModify, .sid = sid}}).empty()) << sid;
  }
  EXPECT_TRUE(OrdinaryWriters(Entries{}).empty());
  EXPECT_EQ(OrdinaryWriters(std::nullopt), std::vector<std::string>{"Everyone"});
}

TEST(OrdinaryWriters, EachDangerousRightOfEachGroup) {
  for (const uint32_t right : {0x2u, 0x4u, 0x40u, 0x10000u, 0x40000u, 0x80000u, 0x10000000u, 0x40000000u}) {
    for (const char* sid : {"S-1-1-0", "S-1-5-11", "S-1-5-32-545", "S-1-5-4", "S-1-5-7", "S-1-5-32-546"}) {
      EXPECT_EQ(OrdinaryWriters(std::vector<AccessEntry>{{.mask = right, .sid = sid}}).size(), 1u) << right << sid;
    }
  }
  for (const uint32_t right : {0x1u, 0x8u, 0x10u, 0x20u, 0x80u, 0x100u, 0x20000u, 0x100000u, 0x80000000u}) {
    EXPECT_TRUE(OrdinaryWriters(std::vector<AccessEntry>{{.mask = right, .sid = "S-1-1-0"}}).empty()) << right;
  }
}

}  // namespace
}  // namespace vexahealth
