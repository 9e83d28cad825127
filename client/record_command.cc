// vexahealth record: this machine as a scenario of the simulated notebook.
#include "client/exit_codes.h"
#include "client/machine.h"
#include "client/recording.h"
#include "client/session.h"

namespace vexahealth {

int RunRecord(const Options& options) {
  std::string scenario;
  const Serials serials = options.show_serials ? Serials::kShow : Serials::kMask;
  const int exit_code = WithSession(
      options.may_wait, [&](Session& session) { scenario = ScenarioText(Record(session, NowUtc()), serials); });
  if (exit_code != kExitOk) return exit_code;
  if (!WriteFileAt(options.output, scenario)) {
    Complain(options.output + " can't be written");
    return kExitOutputFailed;
  }
  return kExitOk;
}

}  // namespace vexahealth
