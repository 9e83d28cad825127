// check.exe: runs the checks of parts.txt on this machine and writes one report.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "parts.h"

namespace vexa::check {
namespace {

constexpr char kUsage[] =
    "usage: check.exe [PART...]\n"
    "       check.exe --list       what there is\n"
    "\n"
    "Without a PART, all run that change nothing on the machine for good. Run it as administrator. report.txt, beside\n"
    "this program, has every output and verdict. Afterwards the driver's service points into this folder: the "
    "product's next\n"
    "start puts it right.\n"
    "\n"
    "Exit codes: 0 nothing failed, 1 something failed, 2 wrong command line or list\n";

struct Closer {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, Closer>;

struct Counts {
  unsigned passed = 0, failed = 0, look = 0, skipped = 0;
};

std::string OwnFolder() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string text(path);
  return text.substr(0, text.rfind('\\') + 1);
}

class Report {
 public:
  explicit Report(const std::string& path) {
    SECURITY_ATTRIBUTES inherited{.nLength = sizeof inherited, .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
    file_.reset(CreateFileA(path.c_str(), FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file_.get() == INVALID_HANDLE_VALUE) file_.release();
  }
  explicit operator bool() const { return file_ != nullptr; }
  HANDLE file() const { return file_.get(); }

  void Line(const std::string& text) const {
    const std::string line = text + "\r\n";
    DWORD written = 0;
    WriteFile(file_.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  }
  // Also for whoever watches.
  void Verdict(const std::string& text) const {
    Line(text);
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
  }

 private:
  Handle file_;
};

enum class Ending { kEnded, kNotThere, kTooLong };

struct Outcome {
  Ending ending;
  DWORD code;
};

// The program and whatever it starts are ended when its time is up.
Outcome RunStep(const std::string& command, const std::string& folder, unsigned limit_s, HANDLE output) {
  SECURITY_ATTRIBUTES inherited{.nLength = sizeof inherited, .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
  const Handle nothing(
      CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr));
  STARTUPINFOA start{.cb = sizeof start,
                     .dwFlags = STARTF_USESTDHANDLES,
                     .hStdInput = nothing.get(),
                     .hStdOutput = output,
                     .hStdError = output};
  PROCESS_INFORMATION made{};
  std::string line = command;
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, folder.c_str(), &start,
                      &made)) {
    return {Ending::kNotThere, GetLastError()};
  }
  const Handle process(made.hProcess), thread(made.hThread), job(CreateJobObjectA(nullptr, nullptr));
  AssignProcessToJobObject(job.get(), process.get());
  ResumeThread(thread.get());
  if (WaitForSingleObject(process.get(), limit_s * 1000) != WAIT_OBJECT_0) {
    TerminateJobObject(job.get(), 1);
    return {Ending::kTooLong, 0};
  }
  DWORD code = 0;
  GetExitCodeProcess(process.get(), &code);
  return {Ending::kEnded, code};
}

std::string Machine() {
  SYSTEM_INFO info{};
  GetNativeSystemInfo(&info);
  return info.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_ARM64 ? "arm64" : "x64";
}

bool DriverIsRegistered() {
  HKEY key = nullptr;
  const bool there = RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\VexaSAIO", 0, KEY_READ,
                                   &key) == ERROR_SUCCESS;
  if (there) RegCloseKey(key);
  return there;
}

// Why a part does not run here; empty when it does.
std::string Obstacle(const Part& part, bool named, const std::string& folder) {
  if (!part.machine.empty() && part.machine != Machine()) return "it is for " + part.machine;
  if (part.named_only && !named) return "it runs only when it is named";
  // The library registers the driver file that lies beside it.
  if (part.real_driver && Machine() == "x64" &&
      GetFileAttributesA((folder + "VexaSAIO.sys").c_str()) == INVALID_FILE_ATTRIBUTES) {
    return "it wants a copy of the notebook's own VexaSAIO.sys beside check.exe";
  }
  if (part.free_driver && DriverIsRegistered()) {
    return "the service VexaSAIO is registered, and this check would replace it; it wants a machine without";
  }
  return "";
}

// False: the part failed.
bool RunSteps(const Part& part, const std::string& folder, const Report& report) {
  bool good = true;
  for (const Step& step : part.steps) {
    const bool must = step.kind == Step::Kind::kRun;
    report.Line("> " + step.command);
    const Outcome outcome = RunStep(step.command, folder, part.limit_s, report.file());
    switch (outcome.ending) {
      case Ending::kNotThere:
        report.Line("(can't be started: error " + std::to_string(outcome.code) + ")");
        good = good && !must;
        break;
      case Ending::kTooLong:
        report.Line("(ended after " + std::to_string(part.limit_s) + " s)");
        good = good && !must;
        break;
      case Ending::kEnded:
        if (outcome.code != 0) report.Line("(exit code " + std::to_string(outcome.code) + ")");
        good = good && !(must && outcome.code != 0);
    }
  }
  return good;
}

void RunPart(const Part& part, bool named, const std::string& folder, const Report& report, Counts& counts) {
  report.Line("");
  report.Line("== " + part.name + ": " + part.title);
  if (const std::string why = Obstacle(part, named, folder); !why.empty()) {
    ++counts.skipped;
    return report.Verdict("skip " + part.name + ": " + why);
  }
  Handle held;
  if (!part.hold.empty()) {
    held.reset(CreateFileA(part.hold.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (held.get() == INVALID_HANDLE_VALUE) {
      held.release();
      ++counts.failed;
      return report.Verdict("FAIL " + part.name + ": " + part.hold + " can't be opened");
    }
  }
  if (!RunSteps(part, folder, report)) {
    ++counts.failed;
    return report.Verdict("FAIL " + part.name);
  }
  ++(part.look.empty() ? counts.passed : counts.look);
  report.Verdict(part.look.empty() ? "ok " + part.name : "look " + part.name + ": " + part.look);
}

int Main(const std::vector<std::string>& names) {
  const std::string folder = OwnFolder();
  std::ifstream stream(folder + "parts.txt", std::ios::binary);
  const auto parts = ReadParts(std::string(std::istreambuf_iterator<char>(stream), {}));
  if (!stream || !parts || parts->empty()) {
    std::fprintf(stderr, "parts.txt: %s\n", parts ? "can't be read" : parts.error().c_str());
    return 2;
  }
  if (names == std::vector<std::string>{"--list"}) {
    for (const Part& part : *parts) std::printf("%-18s %s\n", part.name.c_str(), part.title.c_str());
    return 0;
  }
  for (const std::string& name : names) {
    if (std::ranges::contains(*parts, name, &Part::name)) continue;
    std::fprintf(stderr, "no part \"%s\"\n%s", name.c_str(), kUsage);
    return 2;
  }
  const Report report(folder + "report.txt");
  if (!report) {
    std::fprintf(stderr, "report.txt can't be written\n");
    return 2;
  }
  SYSTEMTIME now{};
  GetSystemTime(&now);
  char date[32];
  std::snprintf(date, sizeof date, "%04u-%02u-%02uT%02u:%02u:%02uZ", now.wYear, now.wMonth, now.wDay, now.wHour,
                now.wMinute, now.wSecond);
  report.Line("VexaWinIO64 check, " + Machine() + ", " + date);
  Counts counts;
  for (const Part& part : *parts) {
    const bool named = std::ranges::contains(names, part.name);
    if (named || names.empty()) RunPart(part, named, folder, report, counts);
  }
  report.Verdict(std::to_string(counts.look) + " to look at, " + std::to_string(counts.skipped) + " skipped");
  report.Verdict(std::to_string(counts.passed) + " passed, " + std::to_string(counts.failed) + " failed");
  return counts.failed == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vexa::check

int main(int argc, char** argv) { return vexa::check::Main({argv + 1, argv + argc}); }
