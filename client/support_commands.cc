#include "client/support_commands.h"

#include "client/doctor_facts.h"
#include "client/exit_codes.h"
#include "client/machine.h"
#include "client/session.h"
#include "client/trace_session.h"

namespace vexahealth {

int RunDoctor(const Options& options) {
  const DoctorFacts facts = GatherDoctorFacts();
  const std::vector<DoctorCheck> checks = Judge(facts);
  return Print(options.json() ? DoctorJson(facts, checks) : DoctorText(facts, checks), DoctorExitCode(facts, checks));
}

// Lines come as they happen, JSON when the time is over.
int RunTrace(const Options& options) {
  const std::string time = NowUtc();
  std::vector<TraceEvent> events;
  bool written = true;
  const std::string error = Trace(options.seconds, options.level, [&](const TraceEvent& event) {
    if (options.json()) {
      events.push_back(event);
    } else {
      written = WriteOutput(TraceLine(event)) && written;
    }
  });
  Complain(error);
  const int exit_code = error.empty() ? kExitOk : kExitNoTracing;
  if (options.json()) return Print(TraceJson(time, error, events), exit_code);
  return written ? exit_code : int{kExitOutputFailed};
}

}  // namespace vexahealth
