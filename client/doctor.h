// What decides whether the library works on this machine, in one block to paste into a report.
#ifndef CLIENT_DOCTOR_H_
#define CLIENT_DOCTOR_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/reading.h"

namespace vexahealth {

// The driver's service as the service manager has it.
struct ServiceFacts {
  enum class State { kUnknown, kMissing, kStopped, kRunning, kOther };

  State state = State::kUnknown;
  std::string path;    // as stored: "\??\C:\..."
  uint32_t error = 0;  // why the state is unknown
};

// A class of the firmware in ROOT\WMI.
struct WmiClassFacts {
  enum class State { kUnknown, kMissing, kPresent };

  std::string_view name;
  State state = State::kUnknown;
  uint32_t error = 0;  // HRESULT: why it is unknown
};

struct FolderFacts {
  std::string path;
  bool known = false;  // whether its access-control list could be read
  std::vector<std::string> writers;
};

struct DoctorFacts {
  std::string time;
  std::string system;          // "Windows 10.0.22631"
  std::string native_machine;  // "x64", "ARM64", empty: unknown
  std::string client_machine;
  std::optional<bool> elevated;
  std::string account;  // that this runs as, "S-1-5-21-..."; empty: unknown
  LibraryState library;
  std::string library_error;
  std::string driver_file;  // where it must lie; empty on ARM64
  bool driver_file_exists = false;
  ServiceFacts service;
  std::optional<uint32_t> driver_version;
  std::optional<uint32_t> table_version;
  std::vector<WmiClassFacts> classes;
  std::vector<FolderFacts> folders;
};

enum class Grade { kInfo, kGood, kWarning, kProblem };

struct DoctorCheck {
  std::string_view name;
  Grade grade = Grade::kInfo;
  std::string text;
};

// The folder of the driver that the service runs where that is another than the library's; else empty.
[[nodiscard]] std::string OtherDriverFolder(const DoctorFacts& facts);

[[nodiscard]] std::vector<DoctorCheck> Judge(const DoctorFacts& facts);

// kExitNotLoaded, kExitNoReadings with a problem, else kExitOk.
[[nodiscard]] int DoctorExitCode(const DoctorFacts& facts, const std::vector<DoctorCheck>& checks);

[[nodiscard]] std::string DoctorText(const DoctorFacts& facts, const std::vector<DoctorCheck>& checks);
[[nodiscard]] std::string DoctorJson(const DoctorFacts& facts, const std::vector<DoctorCheck>& checks);

}  // namespace vexahealth

#endif  // CLIENT_DOCTOR_H_
