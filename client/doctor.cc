#include "client/doctor.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "client/exit_codes.h"
#include "client/json_parts.h"
#include "client/text.h"

namespace vexahealth {
namespace {

using enum Grade;

constexpr size_t kNameWidth = 12;

std::string_view GradeName(Grade grade) {
  switch (grade) {
    case kInfo: return "info";
    case kGood: return "good";
    case kWarning: return "warning";
    case kProblem: return "problem";
  }
  return "problem";
}

DoctorCheck Library(const DoctorFacts& facts) {
  if (!facts.library.loaded) return {"library", kProblem, facts.library_error};
  const uint32_t version = facts.library.version.value_or(0);
  return {"library", kGood, facts.library.path + Printf(", interface %u.%u", version >> 16, version & 0xFFFF)};
}

DoctorCheck Machine(const DoctorFacts& facts) {
  const std::string text = "client for " + facts.client_machine + " on " +
                           (facts.native_machine.empty() ? "a machine that does not tell" : facts.native_machine);
  // An emulated x64 client loads the x64 library, whose driver can't run there.
  const bool emulated = !facts.native_machine.empty() && facts.native_machine != facts.client_machine;
  return {"machine", emulated ? kProblem : kInfo, text + (emulated ? ": take the one made for this machine" : "")};
}

DoctorCheck Rights(const DoctorFacts& facts) {
  if (!facts.elevated) return {"rights", kInfo, "unknown"};
  if (*facts.elevated) return {"rights", kGood, "administrator"};
  return {"rights", kWarning, "no administrator: the driver can't be set up, and the firmware's methods may refuse"};
}

DoctorCheck RouteCheck(const DoctorFacts& facts) {
  switch (facts.library.route) {
    case Route::kDriver: return {"route", kInfo, "x64: through the kernel driver"};
    case Route::kFirmware: return {"route", kInfo, "ARM64: through the firmware's WMI methods"};
    case Route::kUnknown: break;
  }
  return {"route", kWarning, "\"Arch\" is not in the registry: the library could not write it, or never ran"};
}

// "C:\Folder\File.sys" of what the service manager stores.
std::string_view PlainPath(std::string_view stored) {
  if (stored.starts_with("\\??\\")) stored.remove_prefix(4);
  return stored;
}

bool SameFile(std::string_view stored, std::string_view path) {
  stored = PlainPath(stored);
  return std::ranges::equal(stored, path,
                            [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

DoctorCheck Service(const DoctorFacts& facts) {
  const ServiceFacts& service = facts.service;
  using State = ServiceFacts::State;
  switch (service.state) {
    case State::kUnknown: return {"service", kWarning, Printf("VexaSAIO can't be asked (error %u)", service.error)};
    case State::kMissing: return {"service", kProblem, "VexaSAIO is not installed"};
    case State::kRunning: break;
    case State::kStopped: return {"service", kProblem, "VexaSAIO is stopped: " + service.path};
    case State::kOther: return {"service", kProblem, "VexaSAIO is neither running nor stopped: " + service.path};
  }
  if (!SameFile(service.path, facts.driver_file)) {
    return {"service", kWarning, "VexaSAIO runs another file: " + service.path};
  }
  return {"service", kGood, "VexaSAIO is running: " + service.path};
}

DoctorCheck Start(const DoctorFacts& facts) {
  if (!facts.library.ready) return {"start", kProblem, "InitializeWinIo answered 0"};
  if (facts.library.route == Route::kFirmware) return {"start", kGood, "InitializeWinIo answered 1"};
  const uint32_t version = facts.driver_version.value_or(0);
  if (version == 0) return {"start", kProblem, "InitializeWinIo answered 1, but the driver does not tell its version"};
  return {"start", kGood, Printf("InitializeWinIo answered 1, driver 0x%08x", version)};
}

DoctorCheck Controller(const DoctorFacts& facts) {
  const uint32_t version = facts.table_version.value_or(VEXA_NO_ANSWER);
  if (version == VEXA_NO_ANSWER) return {"EC", kProblem, "it does not answer"};
  if (version == 0) return {"EC", kWarning, "it answers, and has no healthy table"};
  return {"EC", kGood, Printf("healthy table %u", version)};
}

DoctorCheck WmiClass(const WmiClassFacts& facts, Route route) {
  const std::string name = "ROOT\\WMI " + std::string(facts.name);
  // Settings need the one, the EC of ARM64 machines the other.
  const bool needed = route == Route::kFirmware || facts.name != "ATD_STS";
  switch (facts.state) {
    case WmiClassFacts::State::kPresent: return {"WMI", kGood, name};
    case WmiClassFacts::State::kMissing: return {"WMI", needed ? kProblem : kInfo, name + " does not exist"};
    case WmiClassFacts::State::kUnknown: break;
  }
  return {"WMI", kWarning, name + Printf(" can't be asked (0x%08x)", facts.error)};
}

DoctorCheck Folder(const FolderFacts& folder) {
  if (!folder.known) return {"folder", kWarning, folder.path + ": its access rights can't be read"};
  if (folder.writers.empty()) return {"folder", kGood, folder.path + " can be written by administrators only"};
  std::string text = folder.path + " can be written by ordinary users: ";
  for (const std::string& writer : folder.writers) text += (writer == folder.writers.front() ? "" : ", ") + writer;
  return {"folder", kWarning, text + "; what they put there runs with administrator rights"};
}

}  // namespace

std::string OtherDriverFolder(const DoctorFacts& facts) {
  if (facts.service.path.empty() || SameFile(facts.service.path, facts.driver_file)) return {};
  const std::string_view path = PlainPath(facts.service.path);
  const size_t slash = path.rfind('\\');
  return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash));
}

std::vector<DoctorCheck> Judge(const DoctorFacts& facts) {
  std::vector<DoctorCheck> checks = {{"client", kInfo, std::string(kClientVersion)},
                                     {"system", kInfo, facts.system},
                                     Machine(facts),
                                     Rights(facts),
                                     Library(facts)};
  if (facts.library.loaded) {
    checks.push_back(RouteCheck(facts));
    if (facts.library.route != Route::kFirmware) {
      checks.push_back({"driver file", facts.driver_file_exists ? kGood : kProblem,
                        facts.driver_file + (facts.driver_file_exists ? "" : " is missing")});
      checks.push_back(Service(facts));
    }
    checks.push_back(Start(facts));
    if (facts.library.route != Route::kFirmware && facts.library.ready) checks.push_back(Controller(facts));
  }
  for (const WmiClassFacts& wmi_class : facts.classes) checks.push_back(WmiClass(wmi_class, facts.library.route));
  for (const FolderFacts& folder : facts.folders) checks.push_back(Folder(folder));
  return checks;
}

int DoctorExitCode(const DoctorFacts& facts, const std::vector<DoctorCheck>& checks) {
  if (!facts.library.loaded) return kExitNotLoaded;
  return std::ranges::find(checks, kProblem, &DoctorCheck::grade) == checks.end() ? kExitOk : kExitNoReadings;
}

std::string DoctorText(const DoctorFacts& facts, const std::vector<DoctorCheck>& checks) {
  std::string text = "vexahealth doctor, " + facts.time + "\n";
  for (const DoctorCheck& check : checks) {
    const std::string_view grade = GradeName(check.grade);
    text += "  " + std::string(grade) + std::string(9 - grade.size(), ' ') + std::string(check.name) +
            std::string(kNameWidth - check.name.size(), ' ') + EscapeForTerminal(check.text, Backslash::kKeep) + "\n";
  }
  return text;
}

std::string DoctorJson(const DoctorFacts& facts, const std::vector<DoctorCheck>& checks) {
  Json document = Document();
  document["command"] = "doctor";
  document["time"] = TextOrNull(facts.time);
  document["error"] = TextOrNull(facts.library_error);
  document["library"] = LibraryJson(facts.library);
  Json& list = document["checks"] = Json::array();
  for (const DoctorCheck& check : checks) {
    list.push_back(
        {{"name", check.name}, {"verdict", GradeName(check.grade)}, {"text", WellFormedUtf8(check.text)}});
  }
  return Dump(document);
}

}  // namespace vexahealth
