// vexahealth.exe: reads the notebook's health through VexaWinIO64.dll and prints it, and changes settings on request.
#include <exception>
#include <string>
#include <vector>

#include "client/collect.h"
#include "client/exit_codes.h"
#include "client/json_report.h"
#include "client/machine.h"
#include "client/options.h"
#include "client/session.h"
#include "client/table.h"
#include "client/text.h"

namespace vexahealth {
namespace {

constexpr char kNotReady[] =
    "the library is not ready: InitializeWinIo answered 0. VexaSAIO.sys must lie beside VexaWinIO64.dll, and "
    "setting up its service needs administrator rights";

int PrintReport(const Report& report, const Options& options, int exit_code) {
  Complain(report.error);
  return Print(options.json ? JsonText(report) : TableText(report), exit_code);
}

int RunStatus(const Options& options) {
  Report report;
  const std::expected<Library, std::string> library = LoadBesideClient(report.library);
  if (!library) {
    report.error = library.error();
    report.readings = NothingCollected("VexaWinIO64.dll is not loaded");
    return PrintReport(report, options, kExitNotLoaded);
  }
  report.library.ready = library->initialize() == 1;
  report.library.route = ReadRoute();
  report.readings = Collect(library->rows, {.ready = report.library.ready,
                                            .may_wait = options.may_wait,
                                            .route = report.library.route,
                                            .decode = ActiveCodePageToUtf8,
                                            .power_line = ReadPowerLine});
  if (report.library.ready) {
    library->shutdown();
  } else {
    report.error = kNotReady;
  }
  return PrintReport(report, options, ExitCodeFor(report));
}

int RunVersion(const Options& options) {
  LibraryState state;
  const std::expected<Library, std::string> library = LoadBesideClient(state);
  const std::string error = library ? std::string() : library.error();
  Complain(error);
  const int exit_code = library ? kExitOk : kExitNotLoaded;
  if (options.json) return Print(JsonVersionText(state, error), exit_code);
  std::string text = "vexahealth " + std::string(kClientVersion) + "\n";
  if (state.version) text += Printf("VexaWinIO64.dll interface %u.%u\n", *state.version >> 16, *state.version & 0xFFFF);
  return Print(text, exit_code);
}

int RunUsageError(const Options& options) {
  Complain(options.text);
  WriteError("Run vexahealth --help for what is possible.\n");
  if (!options.json) return kExitUsage;
  if (options.settings) return Print(SettingsUsageJson(options.text), kExitUsage);
  const Report report{.library = {}, .readings = NothingCollected("wrong command line"), .error = options.text};
  return Print(JsonText(report), kExitUsage);
}

int Run(const std::vector<std::string>& arguments) {
  const Options options = ParseOptions(arguments);
  switch (options.action) {
    case Options::Action::kHelp: return Print(options.json ? JsonHelpText(options.text) : options.text, kExitOk);
    case Options::Action::kVersion: return RunVersion(options);
    case Options::Action::kUsageError: return RunUsageError(options);
    case Options::Action::kSettings: return RunSettings(options);
    case Options::Action::kChange: return RunChange(options);
    case Options::Action::kStatus: break;
  }
  return RunStatus(options);
}

}  // namespace
}  // namespace vexahealth

int wmain(int count, wchar_t** values) {
  try {
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(vexahealth::WideToUtf8(values[i]));
    return vexahealth::Run(arguments);
  } catch (const std::exception& error) {
    vexahealth::Complain(error.what());
    return vexahealth::kExitOutputFailed;
  }
}
