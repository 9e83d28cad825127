// vexahealth.exe: reads the notebook's health through VexaWinIO64.dll and prints it, and changes settings on request.
#include <exception>
#include <string>
#include <vector>

#include "client/completion.h"
#include "client/exit_codes.h"
#include "client/json_report.h"
#include "client/keys.h"
#include "client/machine.h"
#include "client/options.h"
#include "client/session.h"
#include "client/support_commands.h"

namespace vexahealth {
namespace {

int Run(const std::vector<std::string>& arguments) {
  const Options options = ParseOptions(arguments);
  switch (options.action) {
    case Options::Action::kHelp: return Print(options.json() ? JsonHelpText(options.text) : options.text, kExitOk);
    case Options::Action::kVersion: return RunVersion(options);
    case Options::Action::kUsageError: return RunUsageError(options);
    case Options::Action::kChange: return RunChange(options);
    case Options::Action::kRecord: return RunRecord(options);
    case Options::Action::kReport: return RunReport(options);
    case Options::Action::kKeys: return Print(options.json() ? KeysJson() : KeysTable(), kExitOk);
    case Options::Action::kCompletion: return Print(CompletionScript(options.shell), kExitOk);
    case Options::Action::kDoctor: return RunDoctor(options);
    case Options::Action::kTrace: return RunTrace(options);
    case Options::Action::kReadings:
    case Options::Action::kGet: break;
  }
  return RunReadings(options);
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
