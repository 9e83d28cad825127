#include "client/session.h"

#include "client/exit_codes.h"
#include "client/machine.h"
#include "client/settings_calls.h"
#include "client/settings_report.h"
#include "client/text.h"

namespace vexahealth {
namespace {

int PrintSettings(SettingsReport report, const Options& options, int exit_code) {
  Complain(report.error);
  return Print(options.json ? SettingsJson(report) : SettingsTable(report), exit_code);
}

int PrintNotLoaded(SettingsReport report, std::string error, const Options& options) {
  report.error = std::move(error);
  report.settings = NothingCollected("VexaWinIO64.dll is not loaded", kSettingRows);
  return PrintSettings(std::move(report), options, kExitNotLoaded);
}

}  // namespace

void Complain(const std::string& text) {
  if (!text.empty()) WriteError("vexahealth: " + EscapeForTerminal(text, Backslash::kKeep) + "\n");
}

int Print(const std::string& text, int exit_code) { return WriteOutput(text) ? exit_code : int{kExitOutputFailed}; }

std::expected<Library, std::string> LoadBesideClient(LibraryState& state) {
  const std::optional<std::wstring> folder = OwnFolder();
  if (!folder) return std::unexpected("the client's own folder can't be found");
  const std::wstring path = *folder + kLibraryFile;
  state.path = WideToUtf8(path);
  std::expected<Library, std::string> library = LoadVexaLibrary(path);
  if (library) {
    state.loaded = true;
    state.version = library->interface_version();
  }
  return library;
}

int RunSettings(const Options& options) {
  SettingsReport report;
  const std::expected<Library, std::string> library = LoadBesideClient(report.library);
  if (!library) return PrintNotLoaded(std::move(report), library.error(), options);
  report.settings = DecideSettings(AskSettings(library->settings, WideToUtf8));
  report.library.route = ReadRoute();
  const bool answered = FirmwareAnswered(report.settings);
  if (!answered) report.error = "the firmware answered neither for the charge limit nor for the quiet fan";
  return PrintSettings(std::move(report), options, answered ? kExitOk : kExitNoReadings);
}

int RunChange(const Options& options) {
  SettingsReport report;
  report.change = Change{.request = options.change};
  const std::expected<Library, std::string> library = LoadBesideClient(report.library);
  if (!library) return PrintNotLoaded(std::move(report), library.error(), options);
  const ChangeFacts facts = CarryOut(options.change, library->settings);
  report.change = DecideChange(options.change, facts);
  report.settings = DecideSettings(NewestAnswers(facts));
  report.library.route = ReadRoute();
  report.error = report.change->error;
  const int exit_code = ExitCodeFor(report.change->outcome);
  return PrintSettings(std::move(report), options, exit_code);
}

std::string SettingsUsageJson(const std::string& error) {
  return SettingsJson(
      {.library = {}, .change = {}, .settings = NothingCollected("wrong command line", kSettingRows), .error = error});
}

}  // namespace vexahealth
